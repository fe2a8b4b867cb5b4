// CsvCaseSource.cpp - one pass over a CSV file: field counts checked, selected fields converted into cells
#include "host/data/CsvCaseSource.h"

#include <cstring>
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

  std::string Where(std::size_t line) const { return _input->GetName() + ":" + std::to_string(line) + ": "; }

  [[noreturn]] void FailField(std::size_t field, const CsvColumnReading& column, const std::string& problem) const {
    throw DataError(Where(_reader->GetFieldLine(field)) + "column '" + column.name + "': " + problem);
  }

  void ReadNumber(const CsvColumnReading& column, std::string_view field, OBS& cell) const {
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

CsvCaseSource::~CsvCaseSource() = default;

void CsvCaseSource::Start(const std::vector<int>& selected) {
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
  data._reader.reset();
  data._input->Rewind();
  data._reader =
      std::make_unique<CsvReader>(*data._input, data._delimiter, data._input->GetName(), data._chunkBytes);
  // The header was read and checked when the data set was loaded.
  data._ended = !data._reader->ReadRecord(data._fields);
  std::vector<std::string> names(data._fieldCount);
  for (const CsvColumnReading& column : data._columns) {
    if (column.field < names.size()) names[column.field] = column.name;
  }
  data._reader->SetColumnNames(std::move(names));
}

std::size_t CsvCaseSource::ReadBlock(std::vector<std::vector<OBS>>& cells, std::size_t capacity) {
  Data& data = *_data;
  cells.resize(data._columns.size());
  if (data._ended || data._reader == nullptr) return 0;
  for (int index : data._selected) {
    const CsvColumnReading& column = data._columns[static_cast<std::size_t>(index)];
    const std::size_t perCase = column.kind == kCsvCellString ? static_cast<std::size_t>(ObsLength(column.width)) : 1;
    cells[static_cast<std::size_t>(index)].resize(capacity * perCase);
  }
  std::size_t count = 0;
  while (count < capacity) {
    if (!data._reader->ReadRecord(data._fields)) {
      data._ended = true;
      break;
    }
    const std::size_t fieldCount = data._fields.size();
    if (fieldCount != data._fieldCount) {
      throw DataError(data.Where(data._reader->GetRecordLine()) + std::to_string(fieldCount) + " field" +
                      (fieldCount == 1 ? "" : "s") + ", but the header has " + std::to_string(data._fieldCount) +
                      " columns");
    }
    for (int index : data._selected) {
      const CsvColumnReading& column = data._columns[static_cast<std::size_t>(index)];
      std::vector<OBS>& target = cells[static_cast<std::size_t>(index)];
      const std::string_view field = data._fields[column.field];
      switch (column.kind) {
        case kCsvCellNumber:
          data.ReadNumber(column, field, target[count]);
          break;
        case kCsvCellDateTime:
          data.ReadDateTime(column, field, target[count]);
          break;
        case kCsvCellString:
          data.ReadString(column, field, &target[count * static_cast<std::size_t>(ObsLength(column.width))]);
          break;
      }
    }
    ++count;
  }
  for (int index : data._selected) {
    const CsvColumnReading& column = data._columns[static_cast<std::size_t>(index)];
    const std::size_t perCase = column.kind == kCsvCellString ? static_cast<std::size_t>(ObsLength(column.width)) : 1;
    cells[static_cast<std::size_t>(index)].resize(count * perCase);
  }
  return count;
}

bool CsvCaseSource::IsSelected(int index) const {
  return index >= 0 && static_cast<std::size_t>(index) < _data->_isSelected.size() &&
         _data->_isSelected[static_cast<std::size_t>(index)] != 0;
}

std::size_t CsvCaseSource::GetBytesRead() const {
  return _data->_reader ? _data->_reader->GetBytesRead() : 0;
}

std::size_t CsvCaseSource::GetFileBytesRead() const {
  return _data->_input->GetRawBytesRead();
}

const std::string& CsvCaseSource::GetName() const {
  return _data->_input->GetName();
}
