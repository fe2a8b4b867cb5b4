// DatasetLoader.h - builds a Dataset from a CSV file and its JSON dictionary
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class Dataset;

/// What the command line may change about loading. Empty fields leave the dictionary's
/// choice in place.
struct DatasetLoadOptions {
  char delimiter = ',';                     // field separator of the CSV text
  std::string weightVariable;               // case weight; overrides the dictionary when not empty
  std::vector<std::string> splitVariables;  // split variables; override the dictionary when not empty
  std::string splitLayout;                  // "separate" | "layered"; empty: the dictionary's, else separate
  bool stream = false;          // false: every case is read into memory; true: each pass reads the file
  std::size_t chunkBytes = 0;   // size of each read of the file; 0: 1 MiB (small values in tests)
  int threads = 1;              // streamed passes: 2 or more read the file on a thread of its own
};

/// Reads CSV data (RFC 4180, UTF-8, a header row of variable names) and an optional JSON
/// dictionary into a Dataset. With `stream` set the data set holds no case: each pass over
/// it reads the file again, converting only the variables the pass uses, and the whole file
/// is read at load time only when the dictionary leaves a type, width, format or measurement
/// level to the data. Without it every case is read into memory, every field checked. Every problem in either is a DataError naming the file and
/// the line and column, or the JSON path, and the offending text.
class DatasetLoader {
 public:
  /// Loads `csvPath` ("-": standard input; gzip data is recognised and inflated).
  /// `dictionaryPath` empty: NAME.dict.json beside NAME.csv or NAME.csv.gz is used when it
  /// exists, else everything is inferred from the data.
  static std::shared_ptr<Dataset> LoadFiles(const std::string& csvPath, const std::string& dictionaryPath,
                                            const DatasetLoadOptions& options);
  /// Loads from text; `dictionaryJson` may be empty (infer everything). The names are used
  /// in error messages.
  static std::shared_ptr<Dataset> LoadText(const std::string& csvText, const std::string& dictionaryJson,
                                           const DatasetLoadOptions& options,
                                           const std::string& csvName = "data.csv",
                                           const std::string& dictionaryName = "data.dict.json");
};
