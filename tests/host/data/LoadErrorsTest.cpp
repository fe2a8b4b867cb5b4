// LoadErrorsTest.cpp - every load error of LoadErrors.txt, word for word
//
// The data, the dictionary and the message of each case are kept in LoadErrors.txt, the way a
// compiler keeps its diagnostic tests; this runner loads each and compares the message.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

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

// \n, \r, \\ and \xHH stand for their bytes.
std::string Unescape(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      bytes += text[i];
    } else if (text[++i] == 'x') {
      bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      bytes += text[i] == 'n' ? '\n' : text[i] == 'r' ? '\r' : text[i];
    }
  }
  return bytes;
}

std::vector<LoadErrorCase> ReadCases() {
  std::ifstream file(std::filesystem::path(QUILT_SOURCE_DIR) / "tests/host/data/LoadErrors.txt");
  std::vector<LoadErrorCase> cases;
  LoadErrorCase next;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.empty() || line[0] == '#') continue;
    const std::size_t colon = line.find(':');
    const std::string key = line.substr(0, colon);
    const std::string value =
        colon != std::string::npos && line.size() > colon + 2 ? line.substr(colon + 2) : "";
    if (key == "csv") {
      next.csv = Unescape(value);
    } else if (key == "dict") {
      next.dictionary = Unescape(value);
    } else if (key == "options") {
      std::istringstream words(value);
      for (std::string word; words >> word;) {
        const std::string setting = word.substr(word.find('=') + 1);
        if (word.rfind("weight=", 0) == 0) next.options.weightVariable = setting;
        if (word.rfind("split=", 0) == 0) next.options.splitVariables = {setting};
        if (word.rfind("layout=", 0) == 0) next.options.splitLayout = setting;
        if (word.rfind("delimiter=", 0) == 0) next.options.delimiter = setting[0];
      }
    } else if (key == "error") {
      next.line = number;
      next.message = value;
      cases.push_back(next);
      next.dictionary.clear();  // the data stays for the next case, the rest is the case's own
      next.options = {};
    } else {
      ADD_FAILURE() << "LoadErrors.txt:" << number << ": not a case line: " << line;
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
