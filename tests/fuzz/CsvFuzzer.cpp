// CsvFuzzer.cpp - libFuzzer harness: any bytes as a CSV data file, with the inferred dictionary
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "host/data/DataError.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcDSIterator.h"

// The first byte picks the delimiter, so that every delimiter the command line offers is
// explored, whether the text is read in 4 to 35 byte chunks (records cut anywhere) or
// whole, and whether the cases are loaded or streamed through an iterator (reading ahead on
// a thread of its own or not); the rest is the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static const char kDelimiters[] = {',', ';', '\t', '|'};
  DatasetLoadOptions options;
  options.delimiter = kDelimiters[data[0] % sizeof kDelimiters];
  options.chunkBytes = (data[0] & 0x80) != 0 ? 4 + ((data[0] >> 2) & 0x1f) : 0;
  options.stream = (data[0] & 0x40) != 0;
  options.threads = (data[0] & 0x20) != 0 ? 2 : 1;
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  try {
    const std::shared_ptr<Dataset> dataset = DatasetLoader::LoadText(text, "", options);
    if (options.stream) {
      ProcDSIterator iterator(dataset);
      while (iterator.NextCase() != 0) {
      }
    }
  } catch (const DataError&) {
  }
  return 0;
}
