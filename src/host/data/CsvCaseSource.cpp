// CsvCaseSource.cpp - one pass over a CSV file: field counts checked, selected fields converted into cells
#include "host/data/CsvCaseSource.h"

#include <atomic>
#include <condition_variable>
#include <cstring>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include "host/Utf8Text.h"
#include "host/data/CsvField.h"
#include "host/data/CsvReader.h"
#include "host/data/DataError.h"
#include "host/data/DataInput.h"
#include "host/data/FormatConversion.h"
#include "host/data/FormatText.h"

struct CsvCaseSource::Data {
  std::unique_ptr<DataInput> _input;
  char _delimiter = ',';
  std::vector<CsvColumnReading> _columns;  // dictionary order
  std::size_t _fieldCount = 0;
  std::size_t _chunkBytes = 1 << 20;
  std::unique_ptr<CsvReader> _reader;   // the current pass
  std::vector<int> _selected;           // dictionary indices read by the current pass
  std::vector<char> _isSelected;        // by dictionary index
  std::vector<std::string_view> _fields;
  bool _ended = false;
  std::size_t _blockCases = 8192;
  bool _readAhead = false;
  std::atomic<std::size_t> _bytesRead{0};
  // Reading ahead: the thread fills the blocks of _ready in order; the caller takes them.
  struct Block {
    std::vector<std::vector<OBS>> _cells;
    std::size_t _count = 0;
    std::exception_ptr _error;  // what reading this block threw; the pass ends with it
  };
  std::thread _thread;
  std::mutex _mutex;
  std::condition_variable _changed;
  std::vector<Block> _ready;  // read, not yet taken (at most kBlocksAhead)
  std::vector<std::vector<std::vector<OBS>>> _spare;  // cells taken and handed back, for reuse
  bool _stopping = false;
  bool _threadDone = false;
  static constexpr std::size_t kBlocksAhead = 2;

  // Reads one block in the caller's thread (or the read-ahead thread).
  std::size_t Fill(std::vector<std::vector<OBS>>& cells);
  void ReadAhead();

  std::string Where(std::size_t line) const { return _input->GetName() + ":" + std::to_string(line) + ": "; }

  [[noreturn]] void FailField(std::size_t field, const CsvColumnReading& column, const std::string& problem) const {
    throw DataError(Where(_reader->GetFieldLine(field)) + "column '" + column.name + "': " + problem);
  }

  void ReadNumber(const CsvColumnReading& column, std::string_view field, OBS& cell) const {
    // A one-digit code is the most common field of survey data.
    if (field.size() == 1 && field[0] >= '0' && field[0] <= '9') {
      cell.number = static_cast<double>(field[0] - '0');
      return;
    }
    double value = TARN_SystemMissing();
    int integerLength = 0;
    int decimals = 0;
    const CsvNumberResult result = CsvField::ParseNumber(field, value, integerLength, decimals);
    if (result == kNumberOk) {
      cell.number = value;
      return;
    }
    if (result != kNumberEmpty) {
      FailField(column.field, column, Utf8Text::Quoted(field) + CsvField::NumberProblem(result));
    }
    cell.number = TARN_SystemMissing();
  }

  void ReadDateTime(const CsvColumnReading& column, std::string_view field, OBS& cell) const {
    cell.number = TARN_SystemMissing();
    const std::string_view trimmed = CsvField::TrimBlanks(field);
    if (trimmed.empty()) return;
    const std::string text(trimmed);
    if (FromString(text.c_str(), column.format, &cell) != 0) {
      FailField(column.field, column,
                Utf8Text::Quoted(text) + " is not a " + FormatToText(column.format) + " value");
    }
  }

  void ReadString(const CsvColumnReading& column, std::string_view field, OBS* cells) const {
    const std::size_t length = CsvField::TrimmedLength(field);
    if (length > static_cast<std::size_t>(column.width)) {
      FailField(column.field, column,
                Utf8Text::Quoted(field) + " is longer than the width " + std::to_string(column.width));
    }
    const std::size_t invalid = Utf8Text::FindInvalidByte(field.substr(0, length));
    if (invalid != Utf8Text::kAllValid) {
      FailField(column.field, column,
                Utf8Text::NameByte(static_cast<unsigned char>(field[invalid])) + " at byte " +
                    std::to_string(invalid + 1) + " of " + Utf8Text::Quoted(field) +
                    " is not UTF-8 text (save the file as UTF-8)");
    }
    const std::size_t cellCount = static_cast<std::size_t>(ObsLength(column.width));
    std::memset(cells, ' ', cellCount * sizeof(OBS));
    if (length > 0) std::memcpy(cells->bytes, field.data(), length);
  }
};

CsvCaseSource::CsvCaseSource(std::unique_ptr<DataInput> input, char delimiter,
                             std::vector<CsvColumnReading> columns, std::size_t fieldCount,
                             std::size_t chunkBytes)
    : _data(std::make_unique<Data>()) {
  _data->_input = std::move(input);
  _data->_delimiter = delimiter;
  _data->_columns = std::move(columns);
  _data->_fieldCount = fieldCount;
  _data->_chunkBytes = chunkBytes;
}

CsvCaseSource::~CsvCaseSource() {
  Stop();
}

void CsvCaseSource::Stop() {
  Data& data = *_data;
  if (!data._thread.joinable()) return;
  {
    std::lock_guard<std::mutex> lock(data._mutex);
    data._stopping = true;
  }
  data._changed.notify_all();
  data._thread.join();
}

void CsvCaseSource::SetReadAhead(bool readAhead) {
  _data->_readAhead = readAhead;
}

void CsvCaseSource::Start(const std::vector<int>& selected, std::size_t blockCases) {
  Stop();
  Data& data = *_data;
  const int count = static_cast<int>(data._columns.size());
  data._isSelected.assign(data._columns.size(), selected.empty() ? 1 : 0);
  for (int index : selected) {
    if (index >= 0 && index < count) data._isSelected[static_cast<std::size_t>(index)] = 1;
  }
  data._selected.clear();
  for (int index = 0; index < count; ++index) {
    if (data._isSelected[static_cast<std::size_t>(index)] != 0) data._selected.push_back(index);
  }
  data._blockCases = std::max<std::size_t>(blockCases, 1);
  data._reader.reset();
  data._input->Rewind();
  data._bytesRead = 0;
  data._reader =
      std::make_unique<CsvReader>(*data._input, data._delimiter, data._input->GetName(), data._chunkBytes);
  std::vector<std::string> names(data._fieldCount);
  for (const CsvColumnReading& column : data._columns) {
    if (column.field < names.size()) names[column.field] = column.name;
  }
  data._reader->SetColumnNames(std::move(names));
  // The header was read and checked when the data set was loaded.
  data._ended = !data._reader->ReadRecord(data._fields);
  data._ready.clear();
  data._stopping = false;
  data._threadDone = false;
  if (data._readAhead && !data._ended) data._thread = std::thread([&data] { data.ReadAhead(); });
}

void CsvCaseSource::Data::ReadAhead() {
  while (true) {
    Block block;
    {
      std::unique_lock<std::mutex> lock(_mutex);
      _changed.wait(lock, [this] { return _stopping || _ready.size() < kBlocksAhead; });
      if (_stopping) break;
      if (!_spare.empty()) {
        block._cells = std::move(_spare.back());
        _spare.pop_back();
      }
    }
    try {
      block._count = Fill(block._cells);
    } catch (...) {
      block._error = std::current_exception();
    }
    const bool last = block._count == 0 || block._error != nullptr;
    {
      std::lock_guard<std::mutex> lock(_mutex);
      _ready.push_back(std::move(block));
      if (last) _threadDone = true;
    }
    _changed.notify_all();
    if (last) break;
  }
}

std::size_t CsvCaseSource::Data::Fill(std::vector<std::vector<OBS>>& cells) {
  cells.resize(_columns.size());
  if (_ended || _reader == nullptr) return 0;
  const std::size_t capacity = _blockCases;
  for (int index : _selected) {
    const CsvColumnReading& column = _columns[static_cast<std::size_t>(index)];
    const std::size_t perCase = column.kind == kCsvCellString ? static_cast<std::size_t>(ObsLength(column.width)) : 1;
    cells[static_cast<std::size_t>(index)].resize(capacity * perCase);
  }
  std::size_t count = 0;
  while (count < capacity) {
    if (!_reader->ReadRecord(_fields)) {
      _ended = true;
      break;
    }
    const std::size_t fieldCount = _fields.size();
    if (fieldCount != _fieldCount) {
      throw DataError(Where(_reader->GetRecordLine()) + std::to_string(fieldCount) + " field" +
                      (fieldCount == 1 ? "" : "s") + ", but the header has " + std::to_string(_fieldCount) +
                      " columns");
    }
    for (int index : _selected) {
      const CsvColumnReading& column = _columns[static_cast<std::size_t>(index)];
      std::vector<OBS>& target = cells[static_cast<std::size_t>(index)];
      const std::string_view field = _fields[column.field];
      switch (column.kind) {
        case kCsvCellNumber:
          ReadNumber(column, field, target[count]);
          break;
        case kCsvCellDateTime:
          ReadDateTime(column, field, target[count]);
          break;
        case kCsvCellString:
          ReadString(column, field, &target[count * static_cast<std::size_t>(ObsLength(column.width))]);
          break;
      }
    }
    ++count;
  }
  for (int index : _selected) {
    const CsvColumnReading& column = _columns[static_cast<std::size_t>(index)];
    const std::size_t perCase = column.kind == kCsvCellString ? static_cast<std::size_t>(ObsLength(column.width)) : 1;
    cells[static_cast<std::size_t>(index)].resize(count * perCase);
  }
  _bytesRead = _reader->GetBytesRead();
  return count;
}

std::size_t CsvCaseSource::ReadBlock(std::vector<std::vector<OBS>>& cells) {
  Data& data = *_data;
  if (!data._thread.joinable()) return data.Fill(cells);
  Data::Block block;
  {
    std::unique_lock<std::mutex> lock(data._mutex);
    data._changed.wait(lock, [&data] { return !data._ready.empty() || data._threadDone; });
    if (data._ready.empty()) {
      cells.resize(data._columns.size());
      for (std::vector<OBS>& column : cells) column.clear();
      return 0;
    }
    block = std::move(data._ready.front());
    data._ready.erase(data._ready.begin());
  }
  if (block._error) {
    Stop();
    std::rethrow_exception(block._error);
  }
  std::swap(cells, block._cells);
  {
    std::lock_guard<std::mutex> lock(data._mutex);
    data._spare.push_back(std::move(block._cells));
  }
  data._changed.notify_all();
  return block._count;
}

bool CsvCaseSource::IsSelected(int index) const {
  return index >= 0 && static_cast<std::size_t>(index) < _data->_isSelected.size() &&
         _data->_isSelected[static_cast<std::size_t>(index)] != 0;
}

std::size_t CsvCaseSource::GetBytesRead() const {
  return _data->_bytesRead;
}


const std::string& CsvCaseSource::GetName() const {
  return _data->_input->GetName();
}
