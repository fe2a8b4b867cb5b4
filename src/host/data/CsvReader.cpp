// CsvReader.cpp - the field scanner of CSV text
#include "host/data/CsvReader.h"

#include <utility>

#include "host/data/DataError.h"

struct CsvReader::Data {
  std::string_view _text;
  char _delimiter = ',';
  std::string _sourceName;
  std::size_t _position = 0;       // next byte to read
  std::size_t _line = 1;           // line of _position
  std::size_t _fieldLine = 1;      // line where the latest field started
  std::size_t _recordLine = 1;     // line where the current record started
  bool _inRecord = false;          // a record is open and may have more fields
  std::string _scratch;            // unescaped text of a quoted field with doubled quotes
};

CsvReader::CsvReader(std::string_view text, char delimiter, std::string sourceName)
    : _data(std::make_unique<Data>()) {
  _data->_text = text;
  _data->_delimiter = delimiter;
  _data->_sourceName = std::move(sourceName);
  if (text.size() >= 3 && text.substr(0, 3) == "\xEF\xBB\xBF") _data->_position = 3;
}

CsvReader::~CsvReader() = default;

bool CsvReader::NextRecord() {
  Data& data = *_data;
  if (data._inRecord) SkipRestOfRecord();
  const std::string_view text = data._text;
  // Empty lines carry no record.
  while (data._position < text.size()) {
    const char character = text[data._position];
    if (character == '\n') {
      ++data._position;
      ++data._line;
    } else if (character == '\r' && data._position + 1 < text.size() && text[data._position + 1] == '\n') {
      data._position += 2;
      ++data._line;
    } else {
      break;
    }
  }
  if (data._position >= text.size()) return false;
  data._inRecord = true;
  data._recordLine = data._line;
  data._fieldLine = data._line;
  return true;
}

bool CsvReader::NextField(std::string_view& field, const std::string& columnName) {
  Data& data = *_data;
  if (!data._inRecord) return false;
  const std::string_view text = data._text;
  const std::size_t size = text.size();
  const char delimiter = data._delimiter;
  data._fieldLine = data._line;
  std::size_t position = data._position;

  // Ends the field at `position`, which stands on a delimiter, a line end or the end.
  const auto finish = [&](std::size_t end) {
    if (end < size && text[end] == delimiter) {
      data._position = end + 1;
      return;
    }
    data._inRecord = false;
    if (end < size && text[end] == '\r') ++end;
    if (end < size && text[end] == '\n') {
      ++end;
      ++data._line;
    }
    data._position = end;
  };
  const auto where = [&]() {
    std::string prefix = data._sourceName + ":" + std::to_string(data._fieldLine) + ": ";
    if (!columnName.empty()) prefix += "column '" + columnName + "': ";
    return prefix;
  };

  if (position < size && text[position] == '"') {
    ++position;
    const std::size_t start = position;
    bool escaped = false;
    while (true) {
      if (position >= size) throw DataError(where() + "quoted field never ends");
      const char character = text[position];
      if (character == '"') {
        if (position + 1 < size && text[position + 1] == '"') {
          escaped = true;
          position += 2;
          continue;
        }
        break;
      }
      if (character == '\n') ++data._line;
      ++position;
    }
    const std::string_view raw = text.substr(start, position - start);
    ++position;  // the closing quote
    if (position < size && text[position] != delimiter && text[position] != '\n' &&
        !(text[position] == '\r' && position + 1 < size && text[position + 1] == '\n') &&
        !(text[position] == '\r' && position + 1 == size)) {
      throw DataError(where() + "text after the closing quote");
    }
    if (escaped) {
      data._scratch.clear();
      for (std::size_t i = 0; i < raw.size(); ++i) {
        data._scratch.push_back(raw[i]);
        if (raw[i] == '"') ++i;
      }
      field = data._scratch;
    } else {
      field = raw;
    }
    finish(position);
    return true;
  }
  const std::size_t start = position;
  while (position < size) {
    const char character = text[position];
    if (character == delimiter || character == '\n') break;
    if (character == '\r' && (position + 1 == size || text[position + 1] == '\n')) break;
    ++position;
  }
  field = text.substr(start, position - start);
  finish(position);
  return true;
}

std::size_t CsvReader::SkipRestOfRecord() {
  std::size_t count = 0;
  std::string_view field;
  while (NextField(field, std::string())) ++count;
  return count;
}

std::size_t CsvReader::GetLine() const { return _data->_fieldLine; }
std::size_t CsvReader::GetRecordLine() const { return _data->_recordLine; }
std::size_t CsvReader::GetOffset() const { return _data->_position; }
