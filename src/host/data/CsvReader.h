// CsvReader.h - splits RFC 4180 text into fields in place, tracking line numbers
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

/// Walks CSV text field by field without copying, except for quoted fields with doubled
/// quotes, which are unescaped into a scratch buffer reused from field to field. Lines end
/// with LF or CR LF; a field may be quoted and then hold delimiters, quotes ("") and line
/// ends. A UTF-8 byte order mark at the start is skipped. Errors are DataErrors naming the
/// source name and line.
class CsvReader {
public:
  /// `text` must outlive the reader; `sourceName` prefixes error messages.
  CsvReader(std::string_view text, char delimiter, std::string sourceName);
  ~CsvReader();
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  /// Moves to the start of the next record, skipping lines that are entirely empty. False
  /// at the end of the text.
  bool NextRecord();
  /// Reads the next field of the current record into `field` (valid until the next call).
  /// False when the record has no more fields. Throws DataError for a quoted field that
  /// never ends or has text after its closing quote; `columnName` names the column in that
  /// message (may be empty).
  bool NextField(std::string_view& field, const std::string& columnName);
  /// Skips the rest of the current record's fields and returns how many there were.
  std::size_t SkipRestOfRecord();
  /// Line on which the latest field (or record) started, 1-based.
  std::size_t GetLine() const;
  /// Line on which the current record started.
  std::size_t GetRecordLine() const;
  /// Byte offset of the reading position (for row-count estimates).
  std::size_t GetOffset() const;

private:
  struct Data;
  std::unique_ptr<Data> _data;
};
