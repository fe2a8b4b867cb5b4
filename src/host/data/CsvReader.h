// CsvReader.h - splits RFC 4180 text into records and fields, reading its input in chunks, tracking line numbers
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class DataInput;

/// Walks CSV text record by record without copying fields, except for quoted fields with
/// doubled quotes, which are unescaped into scratch buffers. The text comes from a
/// DataInput a chunk at a time: only the chunk being read and the start of a record cut by
/// its end are in memory, so a file of any size is read in constant memory. Lines end with
/// LF, CR LF or a CR alone; a field may be quoted and then hold delimiters, quotes ("") and
/// line ends. A UTF-8 byte order mark at the start is skipped, and lines that are entirely
/// empty carry no record. Errors are DataErrors naming the source, the line and the column;
/// a NUL byte anywhere is one (the file is not text).
class CsvReader {
 public:
  /// Reads `input` from where it stands; the input must outlive the reader. `sourceName`
  /// prefixes error messages. `chunkBytes` is the size of each read (small values exercise
  /// records cut by chunk ends in tests).
  CsvReader(DataInput& input, char delimiter, std::string sourceName, std::size_t chunkBytes = 1 << 20);
  ~CsvReader();
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  /// Names of the columns, by field position, for error messages (from the header row).
  void SetColumnNames(std::vector<std::string> names);
  /// Reads the whole next record into `fields` (each valid until the next ReadRecord, also
  /// the unescaped ones). False at the end of the text. Throws DataError for a quoted field
  /// that never ends or has text after its closing quote.
  bool ReadRecord(std::vector<std::string_view>& fields);
  /// Line on which the current record started, 1-based.
  std::size_t GetRecordLine() const;
  /// Line on which field `index` of the latest ReadRecord started.
  std::size_t GetFieldLine(std::size_t index) const;
  /// Bytes of text read so far (for progress reports).
  std::size_t GetBytesRead() const;

 private:
  struct Data;
  bool StartRecord();
  bool ScanPlainRecord(std::vector<std::string_view>& fields);
  void ScanField(std::string_view& field);
  bool Refill();
  [[noreturn]] void Fail(const char* what) const;

  std::unique_ptr<Data> _data;
};
