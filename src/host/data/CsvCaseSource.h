// CsvCaseSource.h - a CSV file as a stream of case blocks, converting only the variables a pass reads
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "host/data/Obs.h"
#include "host/data/TARN_Format.h"

class DataInput;

/// How one variable's cells are read from its CSV column.
enum CsvCellKind {
  kCsvCellNumber,    // a number; anything else is an error
  kCsvCellDateTime,  // date and time text read by the variable's format
  kCsvCellString,    // text of at most `width` bytes, valid UTF-8
};

/// One variable of the data set as read from the file. Plain value type.
struct CsvColumnReading {
  std::string name;            // variable name, for messages
  std::size_t field = 0;       // its field position in each record
  CsvCellKind kind = kCsvCellNumber;
  TARN_Format format;          // kCsvCellDateTime: the format the text is read by
  int width = 0;               // kCsvCellString: the string width
};

/// The cases of a CSV file, delivered in blocks of columns. Each pass (Start) reads the
/// file from its first byte again and converts only the variables it is asked for; every
/// record's field count is checked and each converted field is checked as the loader would,
/// with the same messages. Nothing but the current chunk and block is held, so memory does
/// not grow with the number of cases.
class CsvCaseSource {
 public:
  /// `columns` are the data set's variables in dictionary order; `fieldCount` is the header's
  /// number of columns. `chunkBytes` is the size of each read (small in tests).
  CsvCaseSource(std::unique_ptr<DataInput> input, char delimiter, std::vector<CsvColumnReading> columns,
                std::size_t fieldCount, std::size_t chunkBytes = 1 << 20);
  ~CsvCaseSource();
  CsvCaseSource(const CsvCaseSource&) = delete;
  CsvCaseSource& operator=(const CsvCaseSource&) = delete;

  /// With `readAhead` each pass has a thread of its own that reads and converts the next
  /// blocks while the caller works on the current one; the blocks, and so every result,
  /// are the same. Off by default.
  void SetReadAhead(bool readAhead);
  /// Starts a pass over the cases from the first one, reading the variables `selected`
  /// (dictionary indices, any order; empty reads every variable) in blocks of `blockCases`.
  void Start(const std::vector<int>& selected, std::size_t blockCases = 8192);
  /// Reads the next block of cases into `cells`, which is resized to one vector per
  /// variable; each selected variable's vector receives count * cells-per-case cells, the
  /// others are left empty. The vectors may be swapped for others: pointers into them hold
  /// until the next call. Returns the count; 0 at the end of the data. Throws DataError for
  /// bad data, after delivering every block before it.
  std::size_t ReadBlock(std::vector<std::vector<OBS>>& cells);
  /// Ends the current pass early (its read-ahead thread stops); Start begins a new one.
  void Stop();
  /// Whether variable `index` is read by the current pass.
  bool IsSelected(int index) const;
  /// Bytes of CSV text read by the current pass, up to the latest block (progress reports).
  std::size_t GetBytesRead() const;
  /// The name of the data file in messages.
  const std::string& GetName() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
