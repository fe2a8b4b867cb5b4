// DatasetLoader.cpp - CSV data and JSON dictionary into a Dataset, in one numeric pass plus one for strings
#include "host/data/DatasetLoader.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "host/Utf8Text.h"
#include "host/data/CsvReader.h"
#include "host/data/DataError.h"
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
  kColumnString,        // filled in the second pass
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
  std::vector<OBS> cells;     // the column's data
};

constexpr int kMaximumInferredDecimals = 16;
constexpr std::size_t kMaximumStringWidth = 32767;

// kNumberOutOfRange: a number whose magnitude no double holds (1e400, 1e-400);
// kNumberNotFinite: the texts "nan", "inf" and "infinity", which from_chars reads.
enum NumberResult { kNumberOk, kNumberEmpty, kNumberInvalid, kNumberOutOfRange, kNumberNotFinite };

bool IsBlank(char character) {
  return character == ' ' || character == '\t';
}

// Reads a numeric field: blanks around it are ignored; empty (or a lone ".") is
// system-missing. Reports the length of the integer part and the digits after the point,
// from which an inferred format takes its width and decimals.
NumberResult ParseNumericField(std::string_view field, double& value, int& integerLength, int& decimals) {
  const char* begin = field.data();
  const char* end = begin + field.size();
  while (begin < end && IsBlank(*begin)) ++begin;
  while (end > begin && IsBlank(end[-1])) --end;
  if (begin == end || (end - begin == 1 && *begin == '.')) return kNumberEmpty;
  const char* digits = begin;
  bool negative = false;
  if (*digits == '-' || *digits == '+') {
    negative = *digits == '-';
    ++digits;
  }
  // Plain decimals of up to 15 digits are the common case in survey data. Their digits
  // form an integer m exactly representable in a double, and m / 10^d is then the correctly
  // rounded value, the same double the general parser gives.
  if (end - digits > 0 && end - digits <= 16) {
    static constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    long long mantissa = 0;
    int digitCount = 0;
    const char* point = nullptr;
    const char* cursor = digits;
    for (; cursor < end; ++cursor) {
      const char character = *cursor;
      if (character >= '0' && character <= '9') {
        mantissa = mantissa * 10 + (character - '0');
        ++digitCount;
      } else if (character == '.' && point == nullptr) {
        point = cursor;
      } else {
        break;
      }
    }
    if (cursor == end && digitCount > 0 && digitCount <= 15) {
      const int fractionDigits = point != nullptr ? static_cast<int>(end - point - 1) : 0;
      value = static_cast<double>(mantissa);
      if (fractionDigits > 0) value /= kPowersOfTen[fractionDigits];
      if (negative) value = -value;
      integerLength = static_cast<int>((point != nullptr ? point : end) - digits) + (negative ? 1 : 0);
      decimals = fractionDigits;
      return kNumberOk;
    }
  }
  if (digits == end) return kNumberInvalid;
  const auto result = std::from_chars(digits, end, value);
  if (result.ptr != end) return kNumberInvalid;
  if (result.ec == std::errc::result_out_of_range) return kNumberOutOfRange;
  if (result.ec != std::errc()) return kNumberInvalid;
  if (!std::isfinite(value)) return kNumberNotFinite;
  if (negative) value = -value;
  const char* point =
      static_cast<const char*>(std::memchr(digits, '.', static_cast<std::size_t>(end - digits)));
  const char* exponent = digits;
  while (exponent < end && *exponent != 'e' && *exponent != 'E') ++exponent;
  const char* integerEnd = point != nullptr && point < exponent ? point : exponent;
  integerLength = static_cast<int>(integerEnd - digits) + (negative ? 1 : 0);
  decimals = point != nullptr && point < exponent ? static_cast<int>(exponent - point - 1) : 0;
  return kNumberOk;
}

std::size_t TrimmedLength(std::string_view field) {
  std::size_t length = field.size();
  while (length > 0 && field[length - 1] == ' ') --length;
  return length;
}

std::string Quote(std::string_view text) {
  return Utf8Text::Quoted(text);
}

// Why a field that looked like a number cannot be one.
const char* NumberProblem(NumberResult result) {
  return result == kNumberOutOfRange ? " is out of the range of numbers" : " is not a number";
}

// A file mapped read-only into memory: the data file is scanned in place, with no copy.
class MappedFile {
 public:
  MappedFile(const std::string& path, const std::string& what) {
    TextFile::CheckNotDirectory(path, what);
    const int descriptor = ::open(path.c_str(), O_RDONLY);
    if (descriptor < 0)
      throw DataError(path + ": cannot open the " + what + " (" + std::strerror(errno) + ")");
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
      ::close(descriptor);
      // Not a plain file (a pipe, say): read it the ordinary way.
      _copy = TextFile::Read(path, what);
      _text = _copy;
      return;
    }
    _size = static_cast<std::size_t>(status.st_size);
    if (_size > 0) {
      void* address = ::mmap(nullptr, _size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, descriptor, 0);
      if (address == MAP_FAILED) {
        ::close(descriptor);
        throw DataError(path + ": cannot read the " + what + " (" + std::strerror(errno) + ")");
      }
      _address = address;
      _text = std::string_view(static_cast<const char*>(address), _size);
    }
    ::close(descriptor);
    try {
      TextFile::CheckNoNulByte(_text, path, what);
    } catch (...) {
      if (_address != nullptr) ::munmap(_address, _size);
      throw;
    }
  }
  ~MappedFile() {
    if (_address != nullptr) ::munmap(_address, _size);
  }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  std::string_view Text() const { return _text; }

 private:
  void* _address = nullptr;
  std::size_t _size = 0;
  std::string _copy;       // the text when the file could not be mapped
  std::string_view _text;  // the whole file
};

// Large columns are written once, front to back; on huge pages that costs a few hundred
// page faults instead of tens of thousands. Only a hint: without support nothing changes.
void AdviseHugePages(void* address, std::size_t bytes) {
  constexpr std::uintptr_t kHugePage = 2u << 20;
  const auto begin = (reinterpret_cast<std::uintptr_t>(address) + kHugePage - 1) & ~(kHugePage - 1);
  const auto end = (reinterpret_cast<std::uintptr_t>(address) + bytes) & ~(kHugePage - 1);
  if (end > begin) ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

// An upper bound of the number of records after the header: the line ends left in the text,
// plus one for a last line without one. Exact for files without quoted line ends or blank
// lines, and cheap (memchr runs at memory speed), so numeric columns are allocated once.
std::size_t CountRecordsAtMost(std::string_view text, std::size_t headerEnd) {
  std::size_t count = 0;
  const char* position = text.data() + headerEnd;
  const char* const end = text.data() + text.size();
  while (position < end) {
    const void* found = std::memchr(position, '\n', static_cast<std::size_t>(end - position));
    if (found == nullptr) return count + 1;
    ++count;
    position = static_cast<const char*>(found) + 1;
  }
  return count;
}

class Loader {
 public:
  Loader(std::string_view csvText, const std::string& dictionaryJson, const DatasetLoadOptions& options,
         const std::string& csvName, const std::string& dictionaryName)
      : _text(csvText), _options(options), _csvName(csvName), _dictionaryName(dictionaryName) {
    if (!dictionaryJson.empty())
      _dictionary = std::make_unique<DictionaryReader>(dictionaryJson, dictionaryName);
  }

  std::shared_ptr<Dataset> Load() {
    ReadHeader();
    MatchDeclarations();
    ReadNumbers();
    ReadStrings();
    return Build();
  }

 private:
  std::string Where(std::size_t line) const { return _csvName + ":" + std::to_string(line) + ": "; }

  void ReadHeader() {
    _reader = std::make_unique<CsvReader>(_text, _options.delimiter, _csvName);
    if (!_reader->NextRecord())
      throw DataError(_csvName + ": the file is empty (it needs a header row of variable names)");
    std::string_view field;
    while (_reader->NextField(field)) {
      Column column;
      const std::size_t number = _columns.size() + 1;
      std::string_view name = field;
      while (!name.empty() && IsBlank(name.front())) name.remove_prefix(1);
      while (!name.empty() && IsBlank(name.back())) name.remove_suffix(1);
      column.name = std::string(name);
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
    _headerEnd = _reader->GetOffset();
    std::vector<std::string> names;
    for (const Column& column : _columns) names.push_back(column.name);
    _reader->SetColumnNames(names);
  }

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

  // Checks the field count of the record just read.
  void CheckFieldCount(std::size_t count) const {
    if (count != _columns.size()) {
      throw DataError(Where(_reader->GetRecordLine()) + std::to_string(count) + " field" +
                      (count == 1 ? "" : "s") + ", but the header has " + std::to_string(_columns.size()) +
                      " columns");
    }
  }

  void ReadNumbers() {
    // A record takes at least one byte per column (its delimiters and line end), which bounds
    // the estimate where blank lines are many and columns wide.
    const std::size_t estimate =
        std::min(CountRecordsAtMost(_text, _headerEnd),
                 (_text.size() - _headerEnd) / std::max<std::size_t>(_columns.size(), 1) + 1);
    for (Column& column : _columns) {
      if (column.kind == kColumnString) continue;
      column.cells.reserve(estimate);
      AdviseHugePages(column.cells.data(), column.cells.capacity() * sizeof(OBS));
    }
    const std::size_t columnCount = _columns.size();
    std::vector<std::string_view> fields;
    fields.reserve(columnCount);
    while (_reader->ReadRecord(fields)) {
      CheckFieldCount(fields.size());
      for (std::size_t index = 0; index < columnCount; ++index) {
        _fieldIndex = index;
        ReadNumericField(_columns[index], fields[index]);
      }
      ++_caseCount;
    }
    CheckUnreadableNumbers();
  }

  void ReadNumericField(Column& column, std::string_view field) {
    switch (column.kind) {
      case kColumnString:
        NoteLength(column, field);
        return;
      case kColumnDateTime:
        ReadDateTimeField(column, field);
        return;
      case kColumnNumeric:
      case kColumnUndetermined:
        break;
    }
    double value = TARN_SystemMissing();
    int integerLength = 0;
    int decimals = 0;
    const NumberResult result = ParseNumericField(field, value, integerLength, decimals);
    if (result != kNumberOk && result != kNumberEmpty) {
      if (column.kind == kColumnNumeric) {
        throw DataError(Where(_reader->GetFieldLine(_fieldIndex)) + "column '" + column.name +
                        "': " + Quote(field) + NumberProblem(result));
      }
      if (result == kNumberInvalid) {
        // Text in an undeclared column: it is a string column after all.
        column.kind = kColumnString;
        column.cells = std::vector<OBS>();
        NoteLength(column, field);
        return;
      }
      // "1e400" or "nan" among numbers is an error, not a reason to read the column as text;
      // only if the column turns out to hold text ("Nan" among first names) is it harmless.
      if (column.unreadable.empty()) {
        column.unreadable = std::string(field);
        column.unreadableLine = _reader->GetFieldLine(_fieldIndex);
      }
      value = TARN_SystemMissing();
    } else if (result == kNumberOk) {
      column.sawNumber = true;
      column.maxIntegerLength = std::max(column.maxIntegerLength, integerLength);
      column.maxDecimals = std::max(column.maxDecimals, decimals);
    } else {
      value = TARN_SystemMissing();
    }
    if (column.kind == kColumnUndetermined) NoteLength(column, field);
    OBS cell;
    cell.number = value;
    column.cells.push_back(cell);
  }

  // Keeps the length of the longest text and where it stands, for a column that may be read
  // as strings.
  void NoteLength(Column& column, std::string_view field) const {
    const std::size_t length = TrimmedLength(field);
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
      const NumberResult result = ParseNumericField(column.unreadable, value, integerLength, decimals);
      throw DataError(Where(column.unreadableLine) + "column '" + column.name +
                      "': " + Quote(column.unreadable) + NumberProblem(result) +
                      " (leave the field empty for a missing value)");
    }
  }

  void ReadDateTimeField(Column& column, std::string_view field) {
    OBS cell;
    cell.number = TARN_SystemMissing();
    std::size_t begin = 0;
    std::size_t end = field.size();
    while (begin < end && IsBlank(field[begin])) ++begin;
    while (end > begin && IsBlank(field[end - 1])) --end;
    if (begin < end) {
      const std::string text(field.substr(begin, end - begin));
      if (FromString(text.c_str(), column.format, &cell) != 0) {
        throw DataError(Where(_reader->GetFieldLine(_fieldIndex)) + "column '" + column.name +
                        "': " + Quote(text) + " is not a " + FormatToText(column.format) + " value");
      }
    }
    column.cells.push_back(cell);
  }

  // The second pass, only when there are string columns: copies their texts into cells.
  void ReadStrings() {
    std::vector<std::size_t> stringColumns;
    for (std::size_t c = 0; c < _columns.size(); ++c) {
      Column& column = _columns[c];
      if (column.kind != kColumnString) continue;
      if (column.declaredWidth > 0) {
        // Checked in the pass below with the line of the offending field.
      } else {
        if (column.maxLength > kMaximumStringWidth) {
          throw DataError(Where(column.longestLine) + "column '" + column.name + "': a text of " +
                          std::to_string(column.maxLength) + " bytes is longer than the limit of " +
                          std::to_string(kMaximumStringWidth) + " bytes");
        }
        column.declaredWidth = static_cast<int>(std::max<std::size_t>(column.maxLength, 1));
      }
      const std::size_t cellsPerCase = static_cast<std::size_t>(ObsLength(column.declaredWidth));
      OBS blank;
      std::memset(blank.bytes, ' ', sizeof blank.bytes);
      column.cells.assign(_caseCount * cellsPerCase, blank);
      stringColumns.push_back(c);
    }
    if (stringColumns.empty()) return;
    CsvReader reader(_text, _options.delimiter, _csvName);
    reader.NextRecord();  // the header
    reader.SkipRestOfRecord();
    std::vector<std::string_view> fields;
    std::size_t caseIndex = 0;
    while (reader.ReadRecord(fields)) {
      for (std::size_t c : stringColumns) {
        Column& column = _columns[c];
        const std::string_view field = fields[c];
        const std::size_t length = TrimmedLength(field);
        if (length > static_cast<std::size_t>(column.declaredWidth)) {
          throw DataError(Where(reader.GetFieldLine(c)) + "column '" + column.name + "': " + Quote(field) +
                          " is longer than the width " + std::to_string(column.declaredWidth));
        }
        const std::size_t invalid = Utf8Text::FindInvalidByte(field.substr(0, length));
        if (invalid != Utf8Text::kAllValid) {
          throw DataError(Where(reader.GetFieldLine(c)) + "column '" + column.name +
                          "': " + Utf8Text::NameByte(static_cast<unsigned char>(field[invalid])) +
                          " at byte " + std::to_string(invalid + 1) + " of " + Quote(field) +
                          " is not UTF-8 text (save the file as UTF-8)");
        }
        const std::size_t cellsPerCase = static_cast<std::size_t>(ObsLength(column.declaredWidth));
        std::memcpy(column.cells[caseIndex * cellsPerCase].bytes, field.data(), length);
      }
      ++caseIndex;
    }
  }

  TARN_Format InferredNumericFormat(const Column& column) const {
    if (!column.sawNumber) return kDefaultFormat;
    const int decimals = std::min(column.maxDecimals, kMaximumInferredDecimals);
    const int width = std::max(column.maxIntegerLength, 1) + (decimals > 0 ? decimals + 1 : 0);
    return TARN_Format(kFormatF, width, decimals);
  }

  std::shared_ptr<Dataset> Build() {
    auto dataset = std::make_shared<Dataset>();
    std::vector<std::vector<OBS>> columns;
    for (std::size_t c : _order) {
      Column& column = _columns[c];
      const bool isString = column.kind == kColumnString;
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
      dataset->AddVariable(variable);
      if (column.cells.capacity() > column.cells.size() + column.cells.size() / 16)
        column.cells.shrink_to_fit();
      columns.push_back(std::move(column.cells));
    }
    dataset->SetCaseData(std::move(columns), _caseCount);
    if (_dictionary) _dictionary->AddSets(*dataset);
    SetWeight(*dataset);
    SetSplit(*dataset);
    return dataset;
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

  std::string_view _text;
  const DatasetLoadOptions& _options;
  std::string _csvName;
  std::string _dictionaryName;
  std::unique_ptr<DictionaryReader> _dictionary;  // null without a dictionary
  std::unique_ptr<CsvReader> _reader;             // the numeric pass
  std::vector<Column> _columns;                   // CSV order
  std::vector<std::size_t> _order;                // dictionary order as indices into _columns
  std::size_t _headerEnd = 0;                     // byte offset just past the header row
  std::size_t _caseCount = 0;
  std::size_t _fieldIndex = 0;  // the field being read, for messages
};

}  // namespace

std::shared_ptr<Dataset> DatasetLoader::LoadFiles(const std::string& csvPath,
                                                  const std::string& dictionaryPath,
                                                  const DatasetLoadOptions& options) {
  const MappedFile csvFile(csvPath, "data file");
  std::string dictionaryName = dictionaryPath;
  std::string dictionaryJson;
  if (dictionaryName.empty()) {
    const std::filesystem::path path(csvPath);
    const std::filesystem::path beside = path.parent_path() / (path.stem().string() + ".dict.json");
    std::error_code error;
    if (std::filesystem::exists(beside, error)) dictionaryName = beside.string();
  }
  if (!dictionaryName.empty()) {
    dictionaryJson = TextFile::Read(dictionaryName, "dictionary");
    if (dictionaryJson.find_first_not_of(" \t\r\n") == std::string::npos) {
      throw DataError(dictionaryName + ": the dictionary is empty");
    }
  }
  Loader loader(csvFile.Text(), dictionaryJson, options, csvPath, dictionaryName);
  return loader.Load();
}

std::shared_ptr<Dataset> DatasetLoader::LoadText(const std::string& csvText,
                                                 const std::string& dictionaryJson,
                                                 const DatasetLoadOptions& options,
                                                 const std::string& csvName,
                                                 const std::string& dictionaryName) {
  Loader loader(csvText, dictionaryJson, options, csvName, dictionaryName);
  return loader.Load();
}
