// DictionaryFuzzer.cpp - libFuzzer harness: any bytes as the JSON dictionary of a small fixed CSV
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/data/DataError.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"

namespace {

// Numeric, string and date-like columns, and members for both kinds of set, so that every
// part of a dictionary has something to apply to.
const char* const kCsv =
    "id,region,city,wave,tv,web,b1,b2,wt,day\n"
    "1,1,Leeds,1,1,0,2,3,0.5,01/02/2024\n"
    "2,2,York,1,0,1,1,,1.5,03/04/2024\n"
    "3,1,,2,1,1,3,1,2,\n";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string dictionary(reinterpret_cast<const char*>(data), size);
  if (dictionary.empty()) return 0;  // an empty dictionary means "infer everything"
  try {
    (void)DatasetLoader::LoadText(kCsv, dictionary, DatasetLoadOptions(), "fuzz.csv", "fuzz.dict.json");
  } catch (const DataError&) {
  }
  return 0;
}
