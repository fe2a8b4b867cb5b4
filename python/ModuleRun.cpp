// ModuleRun.cpp - loads the call's data set, runs each command into its own document, reads the results
#include "ModuleRun.h"

#include <fstream>
#include <memory>
#include <sstream>

#include "QuiltProgram.h"
#include "host/data/ActiveDataSet.h"
#include "host/data/DataError.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/HostRecords.h"
#include "host/data/SplitGroupListener.h"
#include "host/output/BpError.h"
#include "host/output/OutputDocument.h"
#include "host/tokens/CommandSplitter.h"
#include "host/tokens/LexicalError.h"
#include "writers/HtmlWriter.h"
#include "writers/TableLayout.h"
#include "writers/TextWriter.h"
#include "writers/Utf8Repair.h"

namespace {

// The writers draw one table at a time for a notebook cell and for print().
class TableHtml : public HtmlWriter {
 public:
  std::string Draw(const TableLayout& layout) {
    std::ostringstream out;
    WriteTable(layout, out);
    return out.str();
  }
};

class TableText : public TextWriter {
 public:
  TableText() : TextWriter(WriterOptions{}) {}
  std::string Draw(const TableLayout& layout) {
    std::ostringstream out;
    WriteTable(layout, out);
    return out.str();
  }
};

std::string Valid(const std::string& text) {
  return Utf8Repair::Repaired(text);
}

std::vector<std::string> Valid(const std::vector<std::string>& texts) {
  std::vector<std::string> valid;
  for (const std::string& text : texts) valid.push_back(Valid(text));
  return valid;
}

std::vector<std::vector<std::string>> LabelPaths(const std::vector<AxisEntry>& entries) {
  std::vector<std::vector<std::string>> paths;
  for (const AxisEntry& entry : entries) paths.push_back(Valid(entry.labelPath));
  return paths;
}

const char* LevelKey(int level) {
  if (level >= kBpLevelFatal) return "fatal";
  if (level >= kBpLevelError) return "error";
  return "warning";
}

ModuleTable ReadTable(const DeliveredTable& table) {
  const TableLayout layout(table);
  ModuleTable read;
  read.title = Valid(table.title);
  read.subtype = Valid(table.subtype);
  read.mergedTitle = Valid(table.mergedTitle);
  read.caption = Valid(table.caption);
  read.corner = Valid(table.corner);
  read.titleNotes = Valid(table.tableNoteMarks);
  read.captionNotes = Valid(table.captionNoteMarks);
  for (const DeliveredNote& note : table.notes) read.notes.emplace_back(Valid(note.mark), Valid(note.text));
  read.rows = LabelPaths(layout.GetRows().entries);
  read.columns = LabelPaths(layout.GetColumns().entries);
  read.layers = LabelPaths(layout.GetLayers());
  read.rowLevels = layout.GetRows().levels;
  read.columnLevels = layout.GetColumns().levels;
  for (std::size_t layerIndex = 0; layerIndex < read.layers.size() && !layout.IsEmpty(); ++layerIndex) {
    for (std::size_t rowIndex = 0; rowIndex < read.rows.size(); ++rowIndex) {
      for (std::size_t columnIndex = 0; columnIndex < read.columns.size(); ++columnIndex) {
        const LayoutCell& cell = layout.GetCell(static_cast<int>(layerIndex), static_cast<int>(rowIndex),
                                                static_cast<int>(columnIndex));
        if (!cell.present) continue;
        read.cells.push_back({static_cast<int>(layerIndex), static_cast<int>(rowIndex),
                              static_cast<int>(columnIndex), Valid(cell.text), cell.hasNumber, cell.number,
                              Valid(cell.markers), Valid(cell.noteMarks)});
      }
    }
  }
  read.html = Valid(TableHtml().Draw(layout));
  read.text = Valid(TableText().Draw(layout));
  return read;
}

void ReadItems(const std::vector<const OutputItem*>& items, int command, std::vector<std::string>& headings,
               ModuleRunResult& result) {
  for (const OutputItem* item : items) {
    switch (item->kind) {
      case OutputItem::kHeading:
        if (item->IsEmptyHeading()) break;
        headings.push_back(Valid(item->text));
        ReadItems(item->GetChildren(), command, headings, result);
        headings.pop_back();
        break;
      case OutputItem::kTable:
        result.tables.push_back(ReadTable(*item->GetTable()));
        result.tables.back().command = command;
        result.tables.back().headings = headings;
        break;
      case OutputItem::kMessage:
        result.messages.push_back({command, LevelKey(item->level), Valid(item->text), headings, ""});
        break;
    }
  }
}

std::shared_ptr<Dataset> LoadDataset(const ModuleRunOptions& options) {
  DatasetLoadOptions loadOptions;
  loadOptions.weightVariable = options.weightVariable;
  loadOptions.splitVariables = options.splitVariables;
  if (!options.csvPath.empty() && options.dictionaryJson.empty())
    return DatasetLoader::LoadFiles(options.csvPath, options.dictionaryPath, loadOptions);
  // A dictionary given as JSON text goes with the data as text: a file is read whole first.
  std::string csvText = options.csvText;
  std::string csvName = options.csvName;
  if (!options.csvPath.empty()) {
    std::ifstream file(options.csvPath, std::ios::binary);
    if (!file) throw DataError(options.csvPath + ": cannot read the data file");
    std::ostringstream buffer;
    buffer << file.rdbuf();
    csvText = buffer.str();
    csvName = options.csvPath;
  }
  return DatasetLoader::LoadText(csvText, options.dictionaryJson, loadOptions, csvName,
                                 csvName + " dictionary");
}

// Takes the process-wide state of a run and gives it back on every way out.
class InstalledRun {
 public:
  explicit InstalledRun(std::shared_ptr<Dataset> dataset) {
    SetUpHostRecords(*dataset, /*controlPackage=*/false);
    ActiveDataSet::Install(std::move(dataset));
    SplitGroupListener::Install(
        [](const SplitGroupPairs& pairs) { OutputDocument::Current().SetSplitPairs(pairs); });
  }
  ~InstalledRun() {
    OutputDocument::Install(nullptr);
    SplitGroupListener::Install(nullptr);
    ActiveDataSet::Clear();
  }
  InstalledRun(const InstalledRun&) = delete;
  InstalledRun& operator=(const InstalledRun&) = delete;
};

}  // namespace

ModuleRunResult ModuleRun::Run(const ModuleRunOptions& options) {
  ModuleRunResult result;
  std::vector<QuiltProgram::Command> commands;
  try {
    for (const CommandText& piece : CommandSplitter::Split(options.commands, /*requireFinalPeriod=*/false)) {
      commands.push_back({options.origin, piece.firstLine, piece.text});
      result.commandPlaces.emplace_back(Valid(options.origin), piece.firstLine);
    }
  } catch (const LexicalError& error) {
    const std::string place =
        options.origin + ":" + std::to_string(error.GetLine()) + ":" + std::to_string(error.GetColumn());
    result.messages.push_back({-1, "fatal", Valid(error.GetProblem()), {}, Valid(place)});
    return result;
  }
  const InstalledRun installed(LoadDataset(options));
  for (std::size_t index = 0; index < commands.size(); ++index) {
    // A document per command, so that each result knows the command it came from.
    OutputDocument document;
    OutputDocument::Install(&document);
    QuiltProgram::RunCommand(commands[index]);
    OutputDocument::Install(nullptr);
    std::vector<std::string> headings;
    ReadItems(document.Items(), static_cast<int>(index), headings, result);
  }
  return result;
}
