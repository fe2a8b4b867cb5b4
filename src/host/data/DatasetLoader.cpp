// DatasetLoader.cpp - CSV data and JSON dictionary into a Dataset: header, type inference, then the cases
#include "host/data/DatasetLoader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "host/Utf8Text.h"
#include "host/data/AdjustMeasurementLevels.h"
#include "host/data/CsvCaseSource.h"
#include "host/data/CsvField.h"
#include "host/data/CsvReader.h"
#include "host/data/DataError.h"
#include "host/data/DataInput.h"
#include "host/data/DataProgress.h"
#include "host/data/Dataset.h"
#include "host/data/DictionaryReader.h"
#include "host/data/FormatConversion.h"
#include "host/data/FormatText.h"
#include "host/data/HostStrings.h"
#include "host/data/TARN_Variable.h"
#include "host/data/TextFile.h"

namespace {

enum ColumnKind {
  kColumnNumeric,       // declared numeric: every field must be a number
  kColumnUndetermined,  // numeric while every field is a number, else string
  kColumnString,        // text
  kColumnDateTime,      // numeric, read from date and time text by its format
};

// Everything known about one CSV column while loading.
struct Column {
  std::string name;      // header text
  int declaration = -1;  // index among the dictionary's declarations, -1 when unlisted
  ColumnKind kind = kColumnUndetermined;
  int declaredWidth = 0;   // stated string width, 0 when not stated
  bool hasFormat = false;  // `format` was stated
  TARN_Format format;
  std::size_t maxLength = 0;  // longest text without trailing blanks (string width inference)
  int maxIntegerLength = 0;   // longest integer part with its sign (F width inference)
  int maxDecimals = 0;        // most digits after the point (F decimals inference)
  bool sawNumber = false;     // some field held a number
  std::size_t longestLine = 0;  // line of the first field of maxLength bytes
  std::string unreadable;       // first number text that no double holds (1e400, nan), for an error
  std::size_t unreadableLine = 0;
  // The level the data suggest, worked out in the inference pass of a data set read per
  // pass (a loaded one works it out from its column when asked): nominal while every valid
  // value is an integer and there are few distinct ones.
  bool levelWanted = false;
  bool levelScale = false;
  std::vector<double> distinctValues;
  std::unique_ptr<TARN_Variable> probe;  // the declared missing values, for levelWanted
};

constexpr int kMaximumInferredDecimals = 16;
constexpr std::size_t kMaximumStringWidth = 32767;
constexpr std::size_t kLoadBlockCases = 4096;

std::string Quote(std::string_view text) {
  return Utf8Text::Quoted(text);
}

class Loader {
 public:
  Loader(std::unique_ptr<DataInput> input, const std::string& dictionaryJson, const DatasetLoadOptions& options,
         const std::string& csvName, const std::string& dictionaryName)
      : _input(std::move(input)), _options(options), _csvName(csvName), _dictionaryName(dictionaryName) {
    if (!dictionaryJson.empty())
      _dictionary = std::make_unique<DictionaryReader>(dictionaryJson, dictionaryName);
  }

  std::shared_ptr<Dataset> Load() {
    ReadHeader();
    MatchDeclarations();
    // A data set read per pass needs the whole file read here only for what the dictionary
    // leaves open; a loaded one reads it anyway, and checks every field on the way.
    if (!_options.stream || NeedsInference()) Infer();
    return Build();
  }

 private:
  std::string Where(std::size_t line) const { return _csvName + ":" + std::to_string(line) + ": "; }

  void ReadHeader() {
    _reader = std::make_unique<CsvReader>(*_input, _options.delimiter, _csvName, ChunkBytes());
    std::vector<std::string_view> fields;
    if (!_reader->ReadRecord(fields))
      throw DataError(_csvName + ": the file is empty (it needs a header row of variable names)");
    for (const std::string_view field : fields) {
      Column column;
      const std::size_t number = _columns.size() + 1;
      column.name = std::string(CsvField::TrimBlanks(field));
      if (column.name.empty())
        throw DataError(Where(1) + "column " + std::to_string(number) + " has no name");
      const int validity = ValidateTARNName(column.name.c_str());
      if (validity != kNameValid) {
        throw DataError(Where(1) + "column " + std::to_string(number) + ": " + Quote(column.name) +
                        " is not a valid variable name");
      }
      for (const Column& earlier : _columns) {
        if (TARNMBstricmp_A(earlier.name.c_str(), column.name.c_str()) == 0) {
          throw DataError(Where(1) + "column " + std::to_string(number) + ": " + Quote(column.name) +
                          " is a second column of that name");
        }
      }
      _columns.push_back(std::move(column));
    }
    std::vector<std::string> names;
    for (const Column& column : _columns) names.push_back(column.name);
    _reader->SetColumnNames(names);
  }

  std::size_t ChunkBytes() const { return _options.chunkBytes > 0 ? _options.chunkBytes : std::size_t{1} << 20; }

  void MatchDeclarations() {
    // Dictionary order: the listed variables, then the other columns in file order.
    if (_dictionary) {
      const auto& declarations = _dictionary->GetDeclarations();
      for (std::size_t d = 0; d < declarations.size(); ++d) {
        const VariableDeclaration& declaration = declarations[d];
        std::size_t found = _columns.size();
        for (std::size_t c = 0; c < _columns.size(); ++c) {
          if (TARNMBstricmp_A(_columns[c].name.c_str(), declaration.name.c_str()) == 0) found = c;
        }
        if (found == _columns.size()) {
          throw DataError(_dictionary->Where(declaration.path + ".name") + Quote(declaration.name) +
                          " is not a column of " + _csvName);
        }
        Column& column = _columns[found];
        column.declaration = static_cast<int>(d);
        column.name = declaration.name;
        column.hasFormat = declaration.hasFormat;
        column.format = declaration.format;
        column.declaredWidth = declaration.width;
        if (declaration.declaredType == 0) {
          column.kind = declaration.hasFormat && IsDateTimeFormat(declaration.format.Type()) ? kColumnDateTime
                                                                                             : kColumnNumeric;
        } else if (declaration.declaredType == 1) {
          column.kind = kColumnString;
          if (column.declaredWidth == 0 && declaration.hasFormat)
            column.declaredWidth = declaration.format.Width();
        }
        _order.push_back(found);
      }
    }
    for (std::size_t c = 0; c < _columns.size(); ++c) {
      if (_columns[c].declaration < 0) _order.push_back(c);
    }
  }

  // Whether the file must be read before the data set is complete: for a type, a width, a
  // format or a measurement level that only the data can tell.
  bool NeedsInference() {
    bool needed = false;
    for (Column& column : _columns) {
      switch (column.kind) {
        case kColumnUndetermined:
          needed = true;
          break;
        case kColumnString:
          needed = needed || column.declaredWidth == 0;
          break;
        case kColumnNumeric:
        case kColumnDateTime: {
          if (column.kind == kColumnNumeric && !column.hasFormat) needed = true;
          if (column.declaration < 0) break;
          auto probe = std::make_unique<TARN_Variable>(0);
          probe->SetName(column.name.c_str());
          probe->SetFormat(column.hasFormat ? column.format : kDefaultFormat);
          _dictionary->ApplyDetails(static_cast<std::size_t>(column.declaration), *probe);
          if (probe->GetMeasurementLevel() == kMeasureUnknown && probe->GetValueLabels() == nullptr) {
            column.levelWanted = true;
            column.probe = std::move(probe);
            needed = true;
          }
          break;
        }
      }
      if (column.declaration < 0) column.levelWanted = true;
    }
    return needed;
  }

  // Checks the field count of the record just read.
  void CheckFieldCount(std::size_t count) const {
    if (count != _columns.size()) {
      throw DataError(Where(_reader->GetRecordLine()) + std::to_string(count) + " field" +
                      (count == 1 ? "" : "s") + ", but the header has " + std::to_string(_columns.size()) +
                      " columns");
    }
  }

  // The inference pass: every record's field count, every number and date, the longest
  // text of each column that may hold text, and the levels asked for. Nothing is kept.
  void Infer() {
    const std::size_t columnCount = _columns.size();
    std::vector<std::string_view> fields;
    fields.reserve(columnCount);
    std::size_t records = 0;
    while (_reader->ReadRecord(fields)) {
      CheckFieldCount(fields.size());
      for (std::size_t index = 0; index < columnCount; ++index) {
        _fieldIndex = index;
        InferField(_columns[index], fields[index]);
      }
      if (++records % kLoadBlockCases == 0) DataProgress::Report(records, _reader->GetBytesRead());
    }
    DataProgress::Finish();
    CheckUnreadableNumbers();
  }

  void InferField(Column& column, std::string_view field) {
    switch (column.kind) {
      case kColumnString:
        NoteLength(column, field);
        return;
      case kColumnDateTime:
        CheckDateTimeField(column, field);
        return;
      case kColumnNumeric:
      case kColumnUndetermined:
        break;
    }
    double value = TARN_SystemMissing();
    int integerLength = 0;
    int decimals = 0;
    const CsvNumberResult result = CsvField::ParseNumber(field, value, integerLength, decimals);
    if (result != kNumberOk && result != kNumberEmpty) {
      if (column.kind == kColumnNumeric) {
        throw DataError(Where(_reader->GetFieldLine(_fieldIndex)) + "column '" + column.name +
                        "': " + Quote(field) + CsvField::NumberProblem(result));
      }
      if (result == kNumberInvalid) {
        // Text in an undeclared column: it is a string column after all.
        column.kind = kColumnString;
        NoteLength(column, field);
        return;
      }
      // "1e400" or "nan" among numbers is an error, not a reason to read the column as text;
      // only if the column turns out to hold text ("Nan" among first names) is it harmless.
      if (column.unreadable.empty()) {
        column.unreadable = std::string(field);
        column.unreadableLine = _reader->GetFieldLine(_fieldIndex);
      }
    } else if (result == kNumberOk) {
      column.sawNumber = true;
      column.maxIntegerLength = std::max(column.maxIntegerLength, integerLength);
      column.maxDecimals = std::max(column.maxDecimals, decimals);
      NoteLevel(column, value);
    }
    if (column.kind == kColumnUndetermined) NoteLength(column, field);
  }

  // As Dataset suggests a level from a loaded column: user-missing values do not count; a
  // value that is not an integer, or one distinct value too many, makes the column scale.
  static void NoteLevel(Column& column, double value) {
    if (!column.levelWanted || column.levelScale) return;
    if (column.probe) {
      OBS cell;
      cell.number = value;
      if (column.probe->IsUserMissing(&cell)) return;
    }
    if (value != std::floor(value) || !std::isfinite(value)) {
      column.levelScale = true;
      return;
    }
    if (std::find(column.distinctValues.begin(), column.distinctValues.end(), value) !=
        column.distinctValues.end())
      return;
    if (static_cast<int>(column.distinctValues.size()) == kMaximumNominalDistinctValues) {
      column.levelScale = true;
      return;
    }
    column.distinctValues.push_back(value);
  }

  // Keeps the length of the longest text and where it stands, for a column that may be read
  // as strings.
  void NoteLength(Column& column, std::string_view field) const {
    const std::size_t length = CsvField::TrimmedLength(field);
    if (length <= column.maxLength) return;
    column.maxLength = length;
    column.longestLine = _reader->GetFieldLine(_fieldIndex);
  }

  // A column read as numbers must not hold a number text that no double holds.
  void CheckUnreadableNumbers() const {
    for (const Column& column : _columns) {
      if (column.kind == kColumnString || column.unreadable.empty()) continue;
      double value = 0;
      int integerLength = 0;
      int decimals = 0;
      const CsvNumberResult result = CsvField::ParseNumber(column.unreadable, value, integerLength, decimals);
      throw DataError(Where(column.unreadableLine) + "column '" + column.name +
                      "': " + Quote(column.unreadable) + CsvField::NumberProblem(result) +
                      " (leave the field empty for a missing value)");
    }
  }

  void CheckDateTimeField(Column& column, std::string_view field) {
    const std::string_view trimmed = CsvField::TrimBlanks(field);
    if (trimmed.empty()) return;
    const std::string text(trimmed);
    OBS cell;
    if (FromString(text.c_str(), column.format, &cell) != 0) {
      throw DataError(Where(_reader->GetFieldLine(_fieldIndex)) + "column '" + column.name +
                      "': " + Quote(text) + " is not a " + FormatToText(column.format) + " value");
    }
    NoteLevel(column, cell.number);
  }

  // The width of a string column: stated, else its longest text.
  void SettleStringWidth(Column& column) const {
    if (column.declaredWidth > 0) return;
    if (column.maxLength > kMaximumStringWidth) {
      throw DataError(Where(column.longestLine) + "column '" + column.name + "': a text of " +
                      std::to_string(column.maxLength) + " bytes is longer than the limit of " +
                      std::to_string(kMaximumStringWidth) + " bytes");
    }
    column.declaredWidth = static_cast<int>(std::max<std::size_t>(column.maxLength, 1));
  }

  TARN_Format InferredNumericFormat(const Column& column) const {
    if (!column.sawNumber) return kDefaultFormat;
    const int decimals = std::min(column.maxDecimals, kMaximumInferredDecimals);
    const int width = std::max(column.maxIntegerLength, 1) + (decimals > 0 ? decimals + 1 : 0);
    return TARN_Format(kFormatF, width, decimals);
  }

  std::shared_ptr<Dataset> Build() {
    auto dataset = std::make_shared<Dataset>();
    std::vector<CsvColumnReading> readings;
    for (std::size_t c : _order) {
      Column& column = _columns[c];
      const bool isString = column.kind == kColumnString;
      if (isString) SettleStringWidth(column);
      TARN_Variable variable(isString ? column.declaredWidth : 0);
      variable.SetName(column.name.c_str());
      if (column.hasFormat) {
        TARN_Format format = column.format;
        if (isString && format.Type() == kFormatA && format.Width() != column.declaredWidth) {
          format = TARN_Format(kFormatA, column.declaredWidth, 0);
        }
        variable.SetFormat(format);
      } else if (!isString) {
        variable.SetFormat(InferredNumericFormat(column));
      }
      if (column.declaration >= 0)
        _dictionary->ApplyDetails(static_cast<std::size_t>(column.declaration), variable);
      const int index = dataset->AddVariable(variable);
      if (_options.stream && !isString && column.levelWanted) {
        dataset->SetSuggestedMeasurementLevel(index, column.levelScale ? kMeasureScale : kMeasureNominal);
      }
      CsvColumnReading reading;
      reading.name = column.name;
      reading.field = c;
      reading.kind = isString ? kCsvCellString : column.kind == kColumnDateTime ? kCsvCellDateTime : kCsvCellNumber;
      reading.format = column.format;
      reading.width = isString ? column.declaredWidth : 0;
      readings.push_back(std::move(reading));
    }
    _reader.reset();
    auto source = std::make_shared<CsvCaseSource>(std::move(_input), _options.delimiter, std::move(readings),
                                                  _columns.size(), ChunkBytes());
    if (_options.stream) {
      source->SetReadAhead(_options.threads > 1);
      dataset->SetCaseSource(source);
    } else {
      ReadAllCases(*dataset, *source);
    }
    if (_dictionary) _dictionary->AddSets(*dataset);
    SetWeight(*dataset);
    SetSplit(*dataset);
    return dataset;
  }

  // A loaded data set holds every case: the blocks of one pass appended column by column.
  static void ReadAllCases(Dataset& dataset, CsvCaseSource& source) {
    std::vector<std::vector<OBS>> columns(static_cast<std::size_t>(dataset.GetVariableCount()));
    std::vector<std::vector<OBS>> block;
    std::size_t caseCount = 0;
    source.Start({}, kLoadBlockCases);
    while (const std::size_t count = source.ReadBlock(block)) {
      for (std::size_t index = 0; index < columns.size(); ++index) {
        columns[index].insert(columns[index].end(), block[index].begin(), block[index].end());
      }
      caseCount += count;
    }
    for (std::vector<OBS>& column : columns) {
      if (column.capacity() > column.size() + column.size() / 16) column.shrink_to_fit();
    }
    dataset.SetCaseData(std::move(columns), caseCount);
  }

  void SetWeight(Dataset& dataset) const {
    const bool fromOptions = !_options.weightVariable.empty();
    const std::string name = fromOptions   ? _options.weightVariable
                             : _dictionary ? _dictionary->GetWeight()
                                           : "";
    if (name.empty()) return;
    const std::string where = fromOptions ? "--weight: " : _dictionary->Where("weight");
    const int index = dataset.FindVariable(name);
    if (index < 0) throw DataError(where + Quote(name) + " is not a variable of " + _csvName);
    if (dataset.GetVariable(index).GetType() != 0) {
      throw DataError(where + Quote(name) + " is a string variable; a weight must be numeric");
    }
    dataset.SetWeightVariable(index);
  }

  void SetSplit(Dataset& dataset) const {
    const bool fromOptions = !_options.splitVariables.empty();
    const std::vector<std::string> names = fromOptions   ? _options.splitVariables
                                           : _dictionary ? _dictionary->GetSplitVariables()
                                                         : std::vector<std::string>();
    std::string layoutText = _options.splitLayout;
    std::string layoutWhere = "--split-layout: ";
    if (layoutText.empty() && _dictionary) {
      layoutText = _dictionary->GetSplitLayout();
      layoutWhere = _dictionary->Where("split.layout");
    }
    if (!layoutText.empty() && layoutText != "separate" && layoutText != "layered") {
      throw DataError(layoutWhere + Quote(layoutText) + " is not separate or layered");
    }
    std::vector<int> indices;
    for (std::size_t i = 0; i < names.size(); ++i) {
      const std::string where =
          fromOptions ? "--split: " : _dictionary->Where("split.variables[" + std::to_string(i) + "]");
      const int index = dataset.FindVariable(names[i]);
      if (index < 0) throw DataError(where + Quote(names[i]) + " is not a variable of " + _csvName);
      if (std::find(indices.begin(), indices.end(), index) != indices.end()) {
        throw DataError(where + Quote(names[i]) + " is named twice");
      }
      indices.push_back(index);
    }
    dataset.SetSplitVariables(indices, layoutText == "layered" ? kSplitLayered : kSplitSeparate);
  }

  std::unique_ptr<DataInput> _input;
  const DatasetLoadOptions& _options;
  std::string _csvName;
  std::string _dictionaryName;
  std::unique_ptr<DictionaryReader> _dictionary;  // null without a dictionary
  std::unique_ptr<CsvReader> _reader;             // the header and the inference pass
  std::vector<Column> _columns;                   // CSV order
  std::vector<std::size_t> _order;                // dictionary order as indices into _columns
  std::size_t _fieldIndex = 0;  // the field being read, for messages
};

// NAME.dict.json beside NAME.csv (or NAME.csv.gz), when it exists.
std::string DictionaryBeside(const std::string& csvPath) {
  if (csvPath == "-") return "";
  std::filesystem::path path(csvPath);
  if (path.extension() == ".gz") path = path.parent_path() / path.stem();
  const std::filesystem::path beside = path.parent_path() / (path.stem().string() + ".dict.json");
  std::error_code error;
  return std::filesystem::exists(beside, error) ? beside.string() : "";
}

}  // namespace

std::shared_ptr<Dataset> DatasetLoader::LoadFiles(const std::string& csvPath,
                                                  const std::string& dictionaryPath,
                                                  const DatasetLoadOptions& options) {
  std::unique_ptr<DataInput> input = DataInput::OpenFile(csvPath, "data file");
  const std::string dictionaryName = dictionaryPath.empty() ? DictionaryBeside(csvPath) : dictionaryPath;
  std::string dictionaryJson;
  if (!dictionaryName.empty()) {
    dictionaryJson = TextFile::Read(dictionaryName, "dictionary");
    if (dictionaryJson.find_first_not_of(" \t\r\n") == std::string::npos) {
      throw DataError(dictionaryName + ": the dictionary is empty");
    }
  }
  const std::string csvName = input->GetName();
  Loader loader(std::move(input), dictionaryJson, options, csvName, dictionaryName);
  return loader.Load();
}

std::shared_ptr<Dataset> DatasetLoader::LoadText(const std::string& csvText,
                                                 const std::string& dictionaryJson,
                                                 const DatasetLoadOptions& options,
                                                 const std::string& csvName,
                                                 const std::string& dictionaryName) {
  Loader loader(DataInput::FromText(csvText, csvName), dictionaryJson, options, csvName, dictionaryName);
  return loader.Load();
}
