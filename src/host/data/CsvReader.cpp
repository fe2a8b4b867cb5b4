// CsvReader.cpp - the field scanner of CSV text
#include "host/data/CsvReader.h"

#include <deque>
#include <utility>

#include "host/data/DataError.h"

struct CsvReader::Data {
  std::string_view _text;
  char _delimiter = ',';
  std::string _sourceName;
  std::vector<std::string> _columnNames;  // for messages, by field position
  std::size_t _position = 0;              // next byte to read
  std::size_t _line = 1;                  // line of _position
  std::size_t _fieldLine = 1;             // line where the latest field started
  std::size_t _recordLine = 1;            // line where the current record started
  std::size_t _fieldIndex = 0;            // position of the next field in its record
  bool _inRecord = false;                 // a record is open and may have more fields
  bool _multiLineRecord = false;          // the latest ReadRecord spanned lines
  // Unescaped quoted fields, one buffer per field position. A deque, because growing it
  // must not move the buffers: the fields of the record read so far still point into them
  // (a vector would move short strings, whose text lives inside the string object).
  std::deque<std::string> _scratch;
  std::vector<std::size_t> _fieldLines;   // lines of the latest ReadRecord's fields, when it spanned lines
};

namespace {

// Bytes of the line end at `position`: 2 for CR LF, 1 for LF or a CR alone (as old Mac
// files end their lines), 0 when no line ends there.
std::size_t LineEndLength(std::string_view text, std::size_t position) {
  if (position >= text.size()) return 0;
  if (text[position] == '\n') return 1;
  if (text[position] != '\r') return 0;
  return position + 1 < text.size() && text[position + 1] == '\n' ? 2 : 1;
}

}  // namespace

// Reads one field at _position; the caller has checked that a record is open. Defined
// before its callers so the compiler can inline it into the record loop.
void CsvReader::ScanField(std::string_view& field) {
  Data& data = *_data;
  const std::string_view text = data._text;
  const std::size_t size = text.size();
  const char delimiter = data._delimiter;
  data._fieldLine = data._line;
  std::size_t position = data._position;
  std::size_t end = 0;
  if (position < size && text[position] == '"') {
    ++position;
    const std::size_t start = position;
    bool escaped = false;
    while (true) {
      if (position >= size) Fail("quoted field never ends");
      const char character = text[position];
      if (character == '"') {
        if (position + 1 < size && text[position + 1] == '"') {
          escaped = true;
          position += 2;
          continue;
        }
        break;
      }
      if (character == '\n' || (character == '\r' && (position + 1 == size || text[position + 1] != '\n'))) {
        ++data._line;
      }
      ++position;
    }
    const std::string_view raw = text.substr(start, position - start);
    ++position;  // the closing quote
    const bool atEnd =
        position >= size || text[position] == delimiter || text[position] == '\n' || text[position] == '\r';
    if (!atEnd) Fail("text after the closing quote");
    if (escaped) {
      if (data._scratch.size() <= data._fieldIndex) data._scratch.resize(data._fieldIndex + 1);
      std::string& scratch = data._scratch[data._fieldIndex];
      scratch.clear();
      for (std::size_t i = 0; i < raw.size(); ++i) {
        scratch.push_back(raw[i]);
        if (raw[i] == '"') ++i;
      }
      field = scratch;
    } else {
      field = raw;
    }
    end = position;
  } else {
    const std::size_t start = position;
    while (position < size) {
      const char character = text[position];
      if (character == delimiter || character == '\n' || character == '\r') break;
      ++position;
    }
    field = text.substr(start, position - start);
    end = position;
  }
  ++data._fieldIndex;
  if (end < size && text[end] == delimiter) {
    data._position = end + 1;
    return;
  }
  data._inRecord = false;
  data._position = end + LineEndLength(text, end);
  if (data._position > end) ++data._line;
}

void CsvReader::Fail(const char* what) const {
  const Data& data = *_data;
  std::string message = data._sourceName + ":" + std::to_string(data._fieldLine) + ": ";
  if (data._fieldIndex < data._columnNames.size())
    message += "column '" + data._columnNames[data._fieldIndex] + "': ";
  throw DataError(message + what);
}

CsvReader::CsvReader(std::string_view text, char delimiter, std::string sourceName)
    : _data(std::make_unique<Data>()) {
  _data->_text = text;
  _data->_delimiter = delimiter;
  _data->_sourceName = std::move(sourceName);
  if (text.size() >= 3 && text.substr(0, 3) == "\xEF\xBB\xBF") _data->_position = 3;
}

CsvReader::~CsvReader() = default;

void CsvReader::SetColumnNames(std::vector<std::string> names) {
  _data->_columnNames = std::move(names);
}

bool CsvReader::NextRecord() {
  Data& data = *_data;
  if (data._inRecord) SkipRestOfRecord();
  const std::string_view text = data._text;
  while (data._position < text.size()) {
    const std::size_t lineEnd = LineEndLength(text, data._position);
    if (lineEnd == 0) break;
    data._position += lineEnd;
    ++data._line;
  }
  if (data._position >= text.size()) return false;
  data._inRecord = true;
  data._recordLine = data._line;
  data._fieldLine = data._line;
  data._fieldIndex = 0;
  return true;
}

bool CsvReader::NextField(std::string_view& field) {
  if (!_data->_inRecord) return false;
  ScanField(field);
  return true;
}

bool CsvReader::ReadRecord(std::vector<std::string_view>& fields) {
  fields.clear();
  if (!NextRecord()) return false;
  Data& data = *_data;
  data._fieldLines.clear();
  std::string_view field;
  while (data._inRecord) {
    ScanField(field);
    // Lines are kept per field only for the rare record with a quoted line end in it; the
    // fields before the first such one all stand on the record's line.
    if (data._fieldLine != data._recordLine) {
      data._fieldLines.resize(fields.size(), data._recordLine);
      data._fieldLines.push_back(data._fieldLine);
    }
    fields.push_back(field);
  }
  return true;
}

std::size_t CsvReader::SkipRestOfRecord() {
  std::size_t count = 0;
  std::string_view field;
  while (NextField(field)) ++count;
  return count;
}

std::size_t CsvReader::GetLine() const {
  return _data->_fieldLine;
}
std::size_t CsvReader::GetRecordLine() const {
  return _data->_recordLine;
}

std::size_t CsvReader::GetFieldLine(std::size_t index) const {
  const Data& data = *_data;
  return index < data._fieldLines.size() ? data._fieldLines[index] : data._recordLine;
}

std::size_t CsvReader::GetOffset() const {
  return _data->_position;
}
