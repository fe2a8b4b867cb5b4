// CsvCaseSourceTest.cpp - a data set read from its file at each pass gives what a loaded one holds
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/data/DataError.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcDSIterator.h"

namespace {

// Every read of a whole pass as text: what NextCase returned, the group end, and the bytes
// of every variable the accessors give (also during boundary reads and after the end).
std::string Pass(const std::shared_ptr<Dataset>& dataset) {
  ProcDSIterator iterator(dataset);
  std::string reads;
  for (int zeros = 0; zeros < 2;) {
    const int more = iterator.NextCase();
    reads += std::to_string(more) + (iterator.SplitGroupEnd() ? "|" : ":");
    for (int index = 0; index < dataset->GetVariableCount(); ++index) {
      const OBS* cells = iterator.GetObsPointer(static_cast<unsigned>(index));
      reads.append(reinterpret_cast<const char*>(cells), 8u * static_cast<unsigned>(dataset->GetCellsPerCase(index)));
    }
    if (more == 0) ++zeros;
  }
  return reads;
}


// Texts whose records the chunk ends cut everywhere: a byte order mark, CR LF, blank lines,
// quoted line ends and doubled quotes, a CR alone; split groups that come back.
TEST(CsvCaseSource, StreamedPassesMatchTheLoadedDataSetForEveryChunkSize) {
  struct Row {
    const char* csv;
    std::vector<std::string> splits;
  };
  const Row rows[] = {
      {"\xEF\xBB\xBFid,name,score\r\n1,\"Ann \"\"A\"\"\",2.5\r\n\r\n2,\"two\r\nlines\",\r\n3,Bob,-1e3\r\n", {}},
      {"g,x,t\n1,5,a\n1,6,b\n2,7,\"c\nd\"\n2,8,e\r1,9,f", {"g"}},
      {"g,h,x\n1,a,1\n1,a,2\n1,b,3\n2,b,4\n", {"g", "h"}},
  };
  for (const Row& row : rows) {
    DatasetLoadOptions options;
    options.splitVariables = row.splits;
    const std::string loaded = Pass(DatasetLoader::LoadText(row.csv, "", options));
    options.stream = true;
    for (const std::size_t chunk : {4, 5, 7, 0}) {
      options.chunkBytes = chunk;
      options.threads = chunk == 5 ? 2 : 1;  // read ahead on a thread of its own
      EXPECT_EQ(Pass(DatasetLoader::LoadText(row.csv, "", options)), loaded) << row.csv << " chunk " << chunk;
    }
  }
}

// Errors name the same line whether the text is read whole or in small chunks, at load
// (inference) or during a pass (declared columns are not read before it).
TEST(CsvCaseSource, ErrorsNameTheSameLineInSmallChunks) {
  const std::string declared = R"({"variables": [{"name": "a", "type": "numeric", "format": "F2.0", "measure": "scale"},
                                                 {"name": "b", "type": "string", "width": 3}]})";
  struct Row {
    std::string csv;
    std::string dictionary;
    std::string message;  // worked out by hand from the text
  };
  const Row rows[] = {
      {"a,b\n\"x\ny\",1\n2,\"open\n", "", "data.csv:4: column 'b': quoted field never ends"},
      {"a,b\n1,2\n\n3\n", "", "data.csv:4: 1 field, but the header has 2 columns"},
      {"a,b\n1,\"x\ny\"\nz,q\n", declared, "data.csv:4: column 'a': 'z' is not a number"},
      {"a,b\n1,abc\n2,abcd\n", declared, "data.csv:3: column 'b': 'abcd' is longer than the width 3"},
  };
  for (const Row& row : rows) {
    for (const bool stream : {false, true}) {
      for (const std::size_t chunk : {4, 6, 0}) {
        DatasetLoadOptions options;
        options.stream = stream;
        options.chunkBytes = chunk;
        options.threads = chunk == 6 ? 2 : 1;
        std::string message;
        try {
          Pass(DatasetLoader::LoadText(row.csv, row.dictionary, options));
        } catch (const DataError& error) {
          message = error.what();
        }
        EXPECT_EQ(message, row.message) << row.csv << " stream " << stream << " chunk " << chunk;
      }
    }
  }
}

}  // namespace
