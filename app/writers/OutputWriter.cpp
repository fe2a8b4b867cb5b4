// OutputWriter.cpp - walking the document and choosing a writer by name
#include "writers/OutputWriter.h"

#include "host/output/BpError.h"
#include "host/output/OutputDocument.h"
#include "writers/HtmlWriter.h"
#include "writers/JsonWriter.h"
#include "writers/TableLayout.h"
#include "writers/TextWriter.h"
#include "writers/XlsxWriter.h"

std::unique_ptr<OutputWriter> OutputWriter::Create(const std::string& format, const WriterOptions& options) {
  if (format == "text") return std::make_unique<TextWriter>(options);
  if (format == "json") return std::make_unique<JsonWriter>();
  if (format == "html") return std::make_unique<HtmlWriter>();
  if (format == "xlsx") return std::make_unique<XlsxWriter>();
  return nullptr;
}

void OutputWriter::Write(const OutputDocument& document, std::ostream& out) {
  BeginDocument(out);
  for (const OutputItem* item : document.Items()) WriteItem(*item, 0, out);
  EndDocument(out);
}

void OutputWriter::WriteItem(const OutputItem& item, int depth, std::ostream& out) {
  switch (item.kind) {
    case OutputItem::kHeading:
      // A heading with nothing to show under it (a procedure that ended before any table
      // and reported nothing) would only be noise.
      if (item.IsEmptyHeading()) return;
      BeginHeading(item.text, depth, out);
      for (const OutputItem* child : item.GetChildren()) WriteItem(*child, depth + 1, out);
      EndHeading(depth, out);
      break;
    case OutputItem::kTable: {
      const TableLayout layout(*item.GetTable());
      WriteTable(layout, out);
      break;
    }
    case OutputItem::kMessage:
      WriteMessage(item.level, item.text, out);
      break;
  }
}

std::string OutputWriter::LevelName(int level) {
  if (level >= kBpLevelFatal) return "Fatal error";
  if (level >= kBpLevelError) return "Error";
  return "Warning";
}

std::string OutputWriter::CellDisplay(const LayoutCell& cell) {
  std::string text = cell.text;
  for (const std::string& marker : cell.markers) text += " " + marker;
  if (!cell.noteMarks.empty()) {
    text += " [";
    for (std::size_t i = 0; i < cell.noteMarks.size(); ++i) text += (i == 0 ? "" : ",") + cell.noteMarks[i];
    text += "]";
  }
  return text;
}
