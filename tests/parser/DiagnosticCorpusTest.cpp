// DiagnosticCorpusTest.cpp - runs every command of diagnostics.txt and checks the message it ends in
#include <gtest/gtest.h>

#include <fstream>
#include <utility>
#include <sstream>
#include <string>
#include <vector>

#include "CategoriesTestSupport.h"
#include "DissectionTestSupport.h"
#include "ParserTestSupport.h"
#include "host/output/MessageCatalogue.h"
#include "host/output/MessageKeys.h"

namespace {

// How a case ends: thrown, or reported at warning or error level while the parse goes on.
enum class Outcome { kThrown = 0, kWarning = 2, kReported = 3 };

struct CorpusCase {
  int line = 0;  // in diagnostics.txt, for failure messages
  Outcome outcome = Outcome::kThrown;
  std::string name;
  std::vector<std::string> arguments;
  std::string command;
};

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  if (text.empty()) return parts;
  std::string part;
  std::istringstream in(text);
  while (std::getline(in, part, separator)) parts.push_back(part);
  if (text.back() == separator) parts.emplace_back();
  return parts;
}

// Reads "<error|warning> <name> [<arguments>] <command>" lines; a line it cannot read fails
// the test that reads the file rather than being passed over.
std::vector<CorpusCase> ReadCorpus() {
  std::ifstream file(std::string(QUILT_SOURCE_DIR) + "/tests/parser/diagnostics.txt");
  EXPECT_TRUE(file.good()) << "tests/parser/diagnostics.txt cannot be read";
  std::vector<CorpusCase> cases;
  std::string text;
  for (int number = 1; std::getline(file, text); ++number) {
    if (text.empty() || text[0] == '#') continue;
    CorpusCase row;
    row.line = number;
    const std::size_t nameStart = text.find(' ');
    const std::size_t open = text.find(" [", nameStart);
    const std::size_t close = text.find("] ", open);
    if (nameStart == std::string::npos || open == std::string::npos || close == std::string::npos) {
      ADD_FAILURE() << "diagnostics.txt:" << number << ": cannot read \"" << text << '"';
      continue;
    }
    const std::string level = text.substr(0, nameStart);
    EXPECT_TRUE(level == "error" || level == "warning" || level == "report") << "diagnostics.txt:" << number;
    row.outcome = level == "error" ? Outcome::kThrown : level == "warning" ? Outcome::kWarning : Outcome::kReported;
    row.name = text.substr(nameStart + 1, open - nameStart - 1);
    row.arguments = Split(text.substr(open + 2, close - open - 2), '|');
    row.command = text.substr(close + 2);
    cases.push_back(row);
  }
  return cases;
}

struct Result {
  bool succeeded = false;
  CatalogueMessage error;
  std::vector<CatalogueMessage> reported;
};

// A command starting "@survey " runs on the sample survey, "@sets " on the sets dictionary
// (CategoriesTestSupport.h), "@tables " on the dissection data set (DissectionTestSupport.h);
// any other on the parser tests' dictionary.
Result Parse(const std::string& command) {
  if (command.rfind("@tables ", 0) == 0) {
    const TablesOutcome outcome = ParseTables(command.substr(8));
    return {outcome.succeeded, outcome.error, outcome.reported};
  }
  for (const auto& [marker, dataset] : {std::pair{std::string("@survey "), SurveyDataset()},
                                        std::pair{std::string("@sets "), SetsDataset()}}) {
    if (command.rfind(marker, 0) == 0) {
      const KeptParse parse(command.substr(marker.size()), dataset);
      return {parse.Succeeded(), parse.Error(), parse.Reported()};
    }
  }
  const ParseOutcome outcome = ParseCommand(command);
  return {outcome.succeeded, outcome.error, outcome.reported};
}

void Check(const CorpusCase& row) {
  SCOPED_TRACE("diagnostics.txt:" + std::to_string(row.line) + ": " + row.command.substr(0, 100));
  const char* key = MessageCatalogue::FindKey(row.name);
  ASSERT_NE(key, nullptr) << "no catalogue entry named " << row.name;
  const Result result = Parse(row.command);
  if (row.outcome == Outcome::kThrown) {
    ASSERT_FALSE(result.succeeded);
    EXPECT_EQ(result.error.key, key);
    EXPECT_EQ(result.error.arguments, row.arguments);
    return;
  }
  // After a warning the parse goes on to the end; what follows a report (a set dropped) may
  // still end the command.
  if (row.outcome == Outcome::kWarning) {
    EXPECT_TRUE(result.succeeded) << result.error.key;
  }
  ASSERT_FALSE(result.reported.empty());
  EXPECT_EQ(result.reported[0].key, key);
  EXPECT_EQ(result.reported[0].arguments, row.arguments);
  EXPECT_EQ(result.reported[0].level, static_cast<int>(row.outcome));
}

TEST(DiagnosticCorpus, EveryCommandEndsInItsMessage) {
  const std::vector<CorpusCase> cases = ReadCorpus();
  EXPECT_GT(cases.size(), 90u) << "the corpus was not read whole";
  for (const CorpusCase& row : cases) Check(row);
}

// Commands whose size is the point are built here rather than written out.
TEST(DiagnosticCorpus, BoundsOfNestingAndStacking) {
  std::string stacked = "QUILT /TABLE a";
  for (int term = 1; term < 1001; ++term) stacked += " + a";
  Check({0, Outcome::kThrown, "NestingTooDeep", {"TABLE", "(", "100"},
         "QUILT /TABLE " + std::string(101, '(') + "a" + std::string(101, ')') + "."});
  Check({0, Outcome::kThrown, "TooManyStackedTerms", {"1", "1000"}, stacked + "."});
}

}  // namespace
