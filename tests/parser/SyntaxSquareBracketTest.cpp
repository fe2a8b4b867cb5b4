// SyntaxSquareBracketTest.cpp - statistics, measurement marks and their checks in square brackets
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/output/MessageKeys.h"

namespace {

// The dump line of the variable or set `name`, or empty.
std::string LineOf(const std::string& dump, const std::string& name) {
  const std::string marker = " name=" + name + " ";
  const std::size_t at = dump.find(marker);
  if (at == std::string::npos) {
    return "";
  }
  const std::size_t begin = dump.rfind('\n', at) + 1;
  return dump.substr(begin, dump.find('\n', at) - begin);
}

// What a variable's dump line says of its statistics: "stats=..." up to the next blank, or
// "none" when it has none.
std::string StatsOf(const std::string& dump, const std::string& name, const std::string& field = "stats=") {
  const std::string line = LineOf(dump, name);
  const std::size_t at = line.find(" " + field);
  if (at == std::string::npos) {
    return "none";
  }
  const std::size_t begin = at + 1 + field.size();
  const std::size_t end = line.find(' ', begin);
  return line.substr(begin, end == std::string::npos ? std::string::npos : end - begin);
}

struct StatsCase {
  const char* command;
  const char* variable;
  const char* expected;  // its statistics, in order, or "none"
};

class BracketStatistics : public testing::TestWithParam<StatsCase> {};

TEST_P(BracketStatistics, ReachTheVariablesTheBracketFollows) {
  const StatsCase& c = GetParam();
  const ParseOutcome outcome = ParseCommand(c.command);
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  EXPECT_EQ(StatsOf(outcome.dump, c.variable), c.expected) << outcome.dump;
}

INSTANTIATE_TEST_SUITE_P(Commands, BracketStatistics,
                         testing::Values(
                             // A bracket right after a variable belongs to that variable only
                             // (brackets after parentheses are pinned by the parse-dump goldens).
                             StatsCase{"QUILT /TABLE a [COUNT] + x [MAXIMUM].", "a", "COUNT"},
                             StatsCase{"QUILT /TABLE a [COUNT] + x [MAXIMUM].", "x", "MAXIMUM"},
                             // A set takes the statistics of responses.
                             StatsCase{"QUILT /TABLE $cats [RESPONSES COUNT].", "$cats", "RESPONSES,COUNT"}));

TEST(SyntaxSquareBracketTest, MeasurementMarkChangesTheVariableType) {
  const ParseOutcome categorical = ParseCommand("QUILT /TABLE a [C] BY b.");
  ASSERT_TRUE(categorical.succeeded) << categorical.error.key;
  EXPECT_NE(LineOf(categorical.dump, "a").find(" type=C"), std::string::npos) << categorical.dump;

  // A mark after a parenthesis reaches every variable in it, leaf or not.
  const ParseOutcome nested = ParseCommand("QUILT /TABLE (a > b) [C].");
  ASSERT_TRUE(nested.succeeded) << nested.error.key;
  EXPECT_NE(LineOf(nested.dump, "a").find(" type=C"), std::string::npos) << nested.dump;
  EXPECT_NE(LineOf(nested.dump, "b").find(" type=C"), std::string::npos) << nested.dump;

  // S and then C on the same variable: the later mark wins, with a warning.
  const ParseOutcome twice = ParseCommand("QUILT /TABLE a [S] [C].");
  ASSERT_TRUE(twice.succeeded) << twice.error.key;
  ASSERT_EQ(twice.reported.size(), 1u);
  EXPECT_EQ(twice.reported[0].key, msg::kDuplicateWarningFromVariable);
  EXPECT_EQ(twice.reported[0].arguments, (std::vector<std::string>{"TABLE", "C", "a"}));
  EXPECT_NE(LineOf(twice.dump, "a").find(" type=C"), std::string::npos) << twice.dump;
}

// The bracket errors are cases of diagnostics.txt (DiagnosticCorpusTest).

}  // namespace
