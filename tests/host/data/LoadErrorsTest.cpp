// LoadErrorsTest.cpp - every load error of LoadErrors.txt, word for word
//
// The data, the dictionary and the message of each case are kept in LoadErrors.txt, the way a
// compiler keeps its diagnostic tests; this runner loads each and compares the message.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "host/CaseFileText.h"
#include "host/data/DataError.h"
#include "host/data/DatasetLoader.h"

namespace {

struct LoadErrorCase {
  int line = 0;
  std::string csv;
  std::string dictionary;
  DatasetLoadOptions options;
  std::string message;
};

void PrintTo(const LoadErrorCase& errorCase, std::ostream* out) {
  *out << "LoadErrors.txt:" << errorCase.line;
}

std::vector<LoadErrorCase> ReadCases() {
  std::vector<LoadErrorCase> cases;
  LoadErrorCase next;
  for (const auto& [number, key, value] : ReadCaseLines("host/data/LoadErrors.txt")) {
    if (key == "csv") {
      next.csv = UnescapeCaseText(value);
    } else if (key == "dict") {
      next.dictionary = UnescapeCaseText(value);
    } else if (key == "options") {
      std::istringstream words(value);
      for (std::string word; words >> word;) {
        const std::string setting = word.substr(word.find('=') + 1);
        if (word.rfind("weight=", 0) == 0) next.options.weightVariable = setting;
        if (word.rfind("split=", 0) == 0) next.options.splitVariables = {setting};
        if (word.rfind("layout=", 0) == 0) next.options.splitLayout = setting;
      }
    } else if (key == "error") {
      next.line = number;
      next.message = value;
      cases.push_back(next);
      next.dictionary.clear();  // the data stays for the next case, the rest is the case's own
      next.options = {};
    } else {
      ADD_FAILURE() << "LoadErrors.txt:" << number << ": not a case line";
    }
  }
  return cases;
}

class LoadErrors : public ::testing::TestWithParam<LoadErrorCase> {};

TEST_P(LoadErrors, NameWhatAndWhere) {
  const LoadErrorCase& c = GetParam();
  try {
    DatasetLoader::LoadText(c.csv, c.dictionary, c.options, "survey.csv", "survey.dict.json");
    ADD_FAILURE() << "the load succeeded";
  } catch (const DataError& error) {
    EXPECT_EQ(error.what(), c.message);
  }
}

INSTANTIATE_TEST_SUITE_P(Corpus, LoadErrors, ::testing::ValuesIn(ReadCases()),
                         [](const ::testing::TestParamInfo<LoadErrorCase>& info) {
                           return "Line" + std::to_string(info.param.line);
                         });

}  // namespace
