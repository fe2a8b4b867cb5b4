// CsvReader.cpp - the field scanner of CSV text, refilled chunk by chunk from its input
#include "host/data/CsvReader.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <utility>

#include "host/data/DataError.h"
#include "host/data/DataInput.h"

namespace {

// Thrown by the scanner when a record runs into the end of the chunk before the end of the
// data: the record is read again once the next chunk is in.
struct IncompleteRecord {};

}  // namespace

struct CsvReader::Data {
  DataInput* _input = nullptr;
  std::size_t _chunkBytes = 1 << 20;
  std::vector<char> _storage;             // the chunk being read; its first _size bytes hold text
  std::size_t _size = 0;
  bool _final = false;                    // the chunk holds the end of the data
  std::size_t _consumed = 0;              // bytes of text before the chunk's first byte
  std::string_view _text;                 // the chunk's text
  char _delimiter = ',';
  std::string _sourceName;
  std::vector<std::string> _columnNames;  // for messages, by field position
  std::size_t _position = 0;              // next byte to read in the chunk
  std::size_t _line = 1;                  // line of _position
  std::size_t _fieldLine = 1;             // line where the latest field started
  std::size_t _recordLine = 1;            // line where the current record started
  std::size_t _fieldIndex = 0;            // position of the next field in its record
  bool _inRecord = false;                 // a record is open and may have more fields
  // Unescaped quoted fields, one buffer per field position. A deque, because growing it
  // must not move the buffers: the fields of the record read so far still point into them
  // (a vector would move short strings, whose text lives inside the string object).
  std::deque<std::string> _scratch;
  std::vector<std::size_t> _fieldLines;   // lines of the latest record's fields, when it spanned lines

  bool _stops[256] = {};                  // bytes that end an unquoted field: the delimiter, LF, CR

  // True when reading at `position` needs text the chunk does not hold yet.
  bool Beyond(std::size_t position) const { return !_final && position >= _size; }
};

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
      if (position >= size) {
        if (data.Beyond(position)) throw IncompleteRecord();
        Fail("quoted field never ends");
      }
      const char character = text[position];
      if (character == '"') {
        // A quote as the chunk's last byte may be the first of a doubled one.
        if (data.Beyond(position + 1)) throw IncompleteRecord();
        if (position + 1 < size && text[position + 1] == '"') {
          escaped = true;
          position += 2;
          continue;
        }
        break;
      }
      if (character == '\n' || character == '\r') {
        if (character == '\r' && data.Beyond(position + 1)) throw IncompleteRecord();
        if (character == '\n' || position + 1 == size || text[position + 1] != '\n') ++data._line;
      }
      ++position;
    }
    const std::string_view raw = text.substr(start, position - start);
    ++position;  // the closing quote
    if (data.Beyond(position)) throw IncompleteRecord();
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
    if (data.Beyond(position)) throw IncompleteRecord();
    field = text.substr(start, position - start);
    end = position;
  }
  ++data._fieldIndex;
  if (end < size && text[end] == delimiter) {
    data._position = end + 1;
    return;
  }
  data._inRecord = false;
  if (end >= size) {
    data._position = end;
    return;
  }
  // CR LF, LF, or a CR alone (as old Mac files end their lines).
  if (text[end] == '\r' && data.Beyond(end + 1)) throw IncompleteRecord();
  data._position = end + (text[end] == '\r' && end + 1 < size && text[end + 1] == '\n' ? 2 : 1);
  ++data._line;
}

void CsvReader::Fail(const char* what) const {
  const Data& data = *_data;
  std::string message = data._sourceName + ":" + std::to_string(data._fieldLine) + ": ";
  if (data._fieldIndex < data._columnNames.size())
    message += "column '" + data._columnNames[data._fieldIndex] + "': ";
  throw DataError(message + what);
}

CsvReader::CsvReader(DataInput& input, char delimiter, std::string sourceName, std::size_t chunkBytes)
    : _data(std::make_unique<Data>()) {
  _data->_input = &input;
  _data->_chunkBytes = std::max<std::size_t>(chunkBytes, 4);  // the first read holds a byte order mark whole
  _data->_delimiter = delimiter;
  _data->_sourceName = std::move(sourceName);
  _data->_stops[static_cast<unsigned char>(delimiter)] = true;
  _data->_stops[static_cast<unsigned char>('\n')] = true;
  _data->_stops[static_cast<unsigned char>('\r')] = true;
}

CsvReader::~CsvReader() = default;

void CsvReader::SetColumnNames(std::vector<std::string> names) {
  _data->_columnNames = std::move(names);
}

bool CsvReader::Refill() {
  Data& data = *_data;
  if (data._final) return false;
  // Keep the record that the chunk's end cut, from its first byte.
  const std::size_t kept = data._size - data._position;
  if (kept > 0) std::memmove(data._storage.data(), data._storage.data() + data._position, kept);
  data._consumed += data._position;
  data._position = 0;
  // A record longer than a chunk doubles the room, so that it is read again only a few times.
  const std::size_t target = std::max(data._chunkBytes, kept * 2);
  // One byte more for the line end placed after the text, where the plain record scan stops.
  if (data._storage.size() < target + 1) data._storage.resize(target + 1);
  std::size_t filled = kept;
  while (filled < target) {
    const std::size_t count = data._input->Read(data._storage.data() + filled, target - filled);
    if (count == 0) {
      data._final = true;
      break;
    }
    filled += count;
  }
  data._size = filled;
  data._storage[filled] = '\n';
  data._text = std::string_view(data._storage.data(), data._size);
  const void* nul = filled > kept && data._input->IsFile() ? std::memchr(data._storage.data() + kept, '\0', filled - kept) : nullptr;
  if (nul != nullptr) {
    const char* begin = data._storage.data();
    const auto offset = static_cast<std::size_t>(static_cast<const char*>(nul) - begin);
    const std::size_t line = data._line + static_cast<std::size_t>(std::count(begin, begin + offset, '\n'));
    throw DataError(data._sourceName + ":" + std::to_string(line) + ": byte 0x00 at byte " +
                    std::to_string(data._consumed + offset + 1) + " of the file: the data file is not text");
  }
  if (data._consumed == 0 && kept == 0 && data._text.substr(0, 3) == "\xEF\xBB\xBF") data._position = 3;
  return true;
}

bool CsvReader::StartRecord() {
  Data& data = *_data;
  const std::string_view text = data._text;
  while (true) {
    if (data.Beyond(data._position)) throw IncompleteRecord();
    if (data._position >= text.size()) return false;
    const char character = text[data._position];
    if (character == '\n') {
      data._position += 1;
    } else if (character == '\r') {
      if (data.Beyond(data._position + 1)) throw IncompleteRecord();
      data._position += data._position + 1 < text.size() && text[data._position + 1] == '\n' ? 2 : 1;
    } else {
      break;
    }
    ++data._line;
  }
  data._inRecord = true;
  data._recordLine = data._line;
  data._fieldLine = data._line;
  data._fieldIndex = 0;
  return true;
}

// The common record: no quoted field, on one line, whole in the chunk, read in one tight
// loop (the line end placed after the chunk's text stops it without a bounds check). False,
// with nothing changed, for any other record: the general scanner reads it.
bool CsvReader::ScanPlainRecord(std::vector<std::string_view>& fields) {
  Data& data = *_data;
  const char* const begin = data._storage.data();
  const char* const end = begin + data._size;
  const bool* const stops = data._stops;
  const char delimiter = data._delimiter;
  const char* p = begin + data._position;
  while (true) {
    if (*p == '"') {
      fields.clear();
      return false;
    }
    const char* const start = p;
    while (!stops[static_cast<unsigned char>(*p)]) ++p;
    fields.emplace_back(start, static_cast<std::size_t>(p - start));
    if (p == end) {
      // The chunk ends here: the record is whole only at the end of the data.
      if (!data._final) {
        fields.clear();
        return false;
      }
      break;
    }
    if (*p != delimiter) {
      if (*p == '\r') {
        if (p + 1 == end && !data._final) {
          fields.clear();
          return false;
        }
        if (p + 1 < end && p[1] == '\n') ++p;
      }
      ++p;
      ++data._line;
      break;
    }
    ++p;
  }
  data._position = static_cast<std::size_t>(p - begin);
  data._inRecord = false;
  data._fieldIndex = fields.size();
  data._fieldLine = data._recordLine;
  data._fieldLines.clear();
  return true;
}

bool CsvReader::ReadRecord(std::vector<std::string_view>& fields) {
  Data& data = *_data;
  std::string_view field;
  while (true) {
    const std::size_t start = data._position;
    const std::size_t line = data._line;
    try {
      fields.clear();
      if (!StartRecord()) return false;
      if (ScanPlainRecord(fields)) return true;
      data._fieldLines.clear();
      while (data._inRecord) {
        ScanField(field);
        // Lines are kept per field only for the rare record with a quoted line end in it;
        // the fields before the first such one all stand on the record's line.
        if (data._fieldLine != data._recordLine) {
          data._fieldLines.resize(fields.size(), data._recordLine);
          data._fieldLines.push_back(data._fieldLine);
        }
        fields.push_back(field);
      }
      return true;
    } catch (const IncompleteRecord&) {
      data._position = start;
      data._line = line;
      data._inRecord = false;
      Refill();
    }
  }
}

std::size_t CsvReader::GetRecordLine() const {
  return _data->_recordLine;
}

std::size_t CsvReader::GetFieldLine(std::size_t index) const {
  const Data& data = *_data;
  return index < data._fieldLines.size() ? data._fieldLines[index] : data._recordLine;
}

std::size_t CsvReader::GetBytesRead() const {
  return _data->_consumed + _data->_position;
}
