// CsvFuzzer.cpp - libFuzzer harness: any bytes as a CSV data file, with the inferred dictionary
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/data/DataError.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"

// The first byte picks the delimiter, so that every delimiter the command line offers is
// explored; the rest is the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static const char kDelimiters[] = {',', ';', '\t', '|'};
  DatasetLoadOptions options;
  options.delimiter = kDelimiters[data[0] % sizeof kDelimiters];
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  try {
    (void)DatasetLoader::LoadText(text, "", options);
  } catch (const DataError&) {
  }
  return 0;
}
