// CsvReader.h - splits RFC 4180 text into fields in place, tracking line numbers
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Walks CSV text record by record and field by field without copying, except for quoted
/// fields with doubled quotes, which are unescaped into scratch buffers. Lines end with LF,
/// CR LF or a CR alone; a field may be quoted and then hold delimiters, quotes ("") and line ends. A
/// UTF-8 byte order mark at the start is skipped, and lines that are entirely empty carry
/// no record. Errors are DataErrors naming the source, the line and the column.
class CsvReader {
 public:
  /// `text` must outlive the reader; `sourceName` prefixes error messages.
  CsvReader(std::string_view text, char delimiter, std::string sourceName);
  ~CsvReader();
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  /// Names of the columns, by field position, for error messages (from the header row).
  void SetColumnNames(std::vector<std::string> names);
  /// Moves to the start of the next record. False at the end of the text.
  bool NextRecord();
  /// Reads the next field of the current record into `field` (valid until the next call).
  /// False when the record has no more fields. Throws DataError for a quoted field that
  /// never ends or has text after its closing quote.
  bool NextField(std::string_view& field);
  /// Reads the whole next record into `fields` (each valid until the next ReadRecord, also
  /// the unescaped ones).
  /// False at the end of the text. The fast way through large files.
  bool ReadRecord(std::vector<std::string_view>& fields);
  /// Skips the rest of the current record's fields and returns how many there were.
  std::size_t SkipRestOfRecord();
  /// Line on which the latest field started, 1-based.
  std::size_t GetLine() const;
  /// Line on which the current record started.
  std::size_t GetRecordLine() const;
  /// Line on which field `index` of the latest ReadRecord started.
  std::size_t GetFieldLine(std::size_t index) const;
  /// Byte offset of the reading position (for row-count estimates).
  std::size_t GetOffset() const;

 private:
  struct Data;
  void ScanField(std::string_view& field);
  [[noreturn]] void Fail(const char* what) const;

  std::unique_ptr<Data> _data;
};
