// DiagnosticCorpusTest.cpp - runs every command of diagnostics.txt and checks the messages it ends in and the
// dump lines it leaves
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/output/MessageCatalogue.h"
#include "host/output/MessageKeys.h"

namespace {

// How a case ends: thrown, or reported at warning or error level while the parse goes on,
// or with nothing reported at all.
enum class Outcome { kThrown = 0, kWarning = 2, kReported = 3, kClean = -1 };

struct CorpusCase {
  int line = 0;  // in diagnostics.txt, for failure messages
  Outcome outcome = Outcome::kThrown;
  std::vector<CatalogueMessage> messages;  // the thrown one, or every one reported, in order
  std::string command;
  std::vector<std::string> fragments;      // texts the dumps of the parse must contain
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

// Reads "<level> <name> [<arguments>]" from `text` at `from`, returning the place after the
// bracket, or npos when the text cannot be read.
std::size_t ReadMessage(const std::string& text, std::size_t from, CatalogueMessage& message) {
  const std::size_t nameStart = text.find(' ', from);
  const std::size_t open = text.find(" [", nameStart);
  std::size_t close = text.find("] ", open);
  if (close == std::string::npos && open != std::string::npos && text.back() == ']') close = text.size() - 1;
  if (nameStart == std::string::npos || open == std::string::npos || close == std::string::npos) {
    return std::string::npos;
  }
  const std::string level = text.substr(from, nameStart - from);
  EXPECT_TRUE(level == "error" || level == "warning" || level == "report") << text;
  message.level = level == "error" ? 0 : level == "warning" ? 2 : 3;
  const std::string name = text.substr(nameStart + 1, open - nameStart - 1);
  const char* key = MessageCatalogue::FindKey(name);
  EXPECT_NE(key, nullptr) << "no catalogue entry named " << name;
  message.key = key == nullptr ? name : key;
  message.arguments = Split(text.substr(open + 2, close - open - 2), '|');
  return close + 1;
}

// Reads the cases; a line it cannot read fails the test that reads the file rather than
// being passed over.
std::vector<CorpusCase> ReadCorpus() {
  std::ifstream file(std::string(QUILT_SOURCE_DIR) + "/tests/parser/diagnostics.txt");
  EXPECT_TRUE(file.good()) << "tests/parser/diagnostics.txt cannot be read";
  std::vector<CorpusCase> cases;
  std::string text;
  for (int number = 1; std::getline(file, text); ++number) {
    if (text.empty() || text[0] == '#') continue;
    if ((text[0] == '+' || text[0] == '=') && cases.empty()) {
      ADD_FAILURE() << "diagnostics.txt:" << number << ": a continuation before any case";
      continue;
    }
    if (text.rfind("= ", 0) == 0) {
      cases.back().fragments.push_back(text.substr(2));
      continue;
    }
    CorpusCase row;
    row.line = number;
    row.messages.emplace_back();
    if (text.rfind("+ ", 0) == 0) {
      if (ReadMessage(text, 2, row.messages[0]) != text.size()) {
        ADD_FAILURE() << "diagnostics.txt:" << number << ": cannot read \"" << text << '"';
      }
      cases.back().messages.push_back(row.messages[0]);
      continue;
    }
    const bool clean = text.rfind("ok ", 0) == 0;
    const std::size_t rest = clean ? 2 : ReadMessage(text, 0, row.messages[0]);
    if (rest == std::string::npos || rest + 1 >= text.size() || text[rest] != ' ') {
      ADD_FAILURE() << "diagnostics.txt:" << number << ": cannot read \"" << text << '"';
      continue;
    }
    row.outcome = clean ? Outcome::kClean : static_cast<Outcome>(row.messages[0].level);
    if (clean) row.messages.clear();
    row.command = text.substr(rest + 1);
    cases.push_back(row);
  }
  return cases;
}

// A command starting "@survey " runs on the sample survey, "@sets " on the sets dictionary,
// any other on the test dictionary (ParserTestSupport.h).
void Check(const CorpusCase& row) {
  SCOPED_TRACE("diagnostics.txt:" + std::to_string(row.line) + ": " + row.command.substr(0, 100));
  std::string command = row.command;
  std::shared_ptr<const Dataset> dataset = TestDataset();
  for (const auto& [marker, data] : {std::pair{std::string("@survey "), SurveyDataset()},
                                     std::pair{std::string("@sets "), SetsDataset()}}) {
    if (command.rfind(marker, 0) == 0) {
      command = command.substr(marker.size());
      dataset = data;
    }
  }
  const KeptParse parse(command, dataset);
  if (row.outcome == Outcome::kThrown) {
    EXPECT_TRUE(row.messages.size() == 1 && row.fragments.empty()) << "an error case takes no \"+\" or \"=\" lines";
    ASSERT_FALSE(parse.Succeeded());
    EXPECT_EQ(parse.Error().key, row.messages[0].key);
    EXPECT_EQ(parse.Error().arguments, row.messages[0].arguments);
    return;
  }
  // After a warning the parse goes on to the end; what follows a report (a set dropped) may
  // still end the command.
  if (row.outcome != Outcome::kReported) {
    EXPECT_TRUE(parse.Succeeded()) << parse.Error().key;
  }
  ASSERT_EQ(parse.Reported().size(), row.messages.size()) << (parse.Reported().empty() ? "" : parse.Reported()[0].key);
  for (std::size_t index = 0; index < row.messages.size(); ++index) {
    EXPECT_EQ(parse.Reported()[index].key, row.messages[index].key) << index;
    EXPECT_EQ(parse.Reported()[index].arguments, row.messages[index].arguments) << index;
    EXPECT_EQ(parse.Reported()[index].level, row.messages[index].level) << index;
  }
  const std::string dumps = parse.Dump() + parse.ParseDump() + parse.Settings();
  for (const std::string& fragment : row.fragments) {
    // A final "$" ties the text to the end of its line.
    const std::string text = fragment.back() == '$' ? fragment.substr(0, fragment.size() - 1) + "\n" : fragment;
    EXPECT_NE(dumps.find(text), std::string::npos) << "no \"" << fragment << "\" in\n" << dumps;
  }
}

TEST(DiagnosticCorpus, EveryCommandEndsInItsMessages) {
  const std::vector<CorpusCase> cases = ReadCorpus();
  EXPECT_GT(cases.size(), 90u) << "the corpus was not read whole";
  for (const CorpusCase& row : cases) Check(row);
}

// Commands whose size is the point are built here rather than written out.
TEST(DiagnosticCorpus, BoundsOfNestingAndStacking) {
  std::string stacked = "QUILT /TABLE a";
  for (int term = 1; term < 1001; ++term) stacked += " + a";
  const KeptParse deep("QUILT /TABLE " + std::string(101, '(') + "a" + std::string(101, ')') + ".");
  EXPECT_EQ(deep.Error().key, msg::kNestingTooDeep);
  EXPECT_EQ(deep.Error().arguments, (std::vector<std::string>{"TABLE", "(", "100"}));
  const KeptParse wide(stacked + ".");
  EXPECT_EQ(wide.Error().key, msg::kTooManyStackedTerms);
  EXPECT_EQ(wide.Error().arguments, (std::vector<std::string>{"1", "1000"}));
}

}  // namespace
