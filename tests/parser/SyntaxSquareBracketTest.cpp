// SyntaxSquareBracketTest.cpp - statistics, measurement marks and TOTALS clauses in square brackets
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
#include "parser/Statistics.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/SyntaxVariableName.h"

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

// The value of `field` ("stats=" or "totalstats=") on a variable's dump line, up to the next
// blank, or "none" when the line has no such field.
std::string FieldOf(const std::string& dump, const std::string& name, const std::string& field = "stats=") {
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
  EXPECT_EQ(FieldOf(outcome.dump, c.variable), c.expected) << outcome.dump;
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

// The bracket and TOTALS errors are cases of diagnostics.txt (DiagnosticCorpusTest).

struct TotalsCase {
  const char* command;
  const char* variable;
  const char* stats;       // statistics of the categories afterwards
  const char* totalStats;  // statistics of the total category
};

class TotalsStatistics : public testing::TestWithParam<TotalsCase> {};

TEST_P(TotalsStatistics, GoToTheTotalCategory) {
  const TotalsCase& c = GetParam();
  const ParseOutcome outcome = ParseCommand(c.command);
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  EXPECT_TRUE(outcome.reported.empty()) << outcome.reported[0].key;
  EXPECT_EQ(FieldOf(outcome.dump, c.variable, "stats="), c.stats) << outcome.dump;
  EXPECT_EQ(FieldOf(outcome.dump, c.variable, "totalstats="), c.totalStats) << outcome.dump;
}

INSTANTIATE_TEST_SUITE_P(
    Commands, TotalsStatistics,
    testing::Values(
        // Test variables are numeric of unknown level, hence scale; [C] first makes them
        // categorical. A categorical variable with totals alone gets a default COUNT.
        TotalsCase{"QUILT /TABLE a [C] [TOTALS [COUNT]].", "a", "COUNT", "COUNT"},
        // Statistics beside TOTALS in the same bracket replace the default.
        TotalsCase{"QUILT /TABLE a [C] [TOTALS [COUNT] COLPCT.COUNT].", "a", "COLPCT.COUNT", "COUNT"},
        TotalsCase{"QUILT /TABLE a [C] [COLPCT.COUNT TOTALS [COUNT ROWPCT.COUNT]].", "a", "COLPCT.COUNT",
                   "COUNT,ROWPCT.COUNT"},
        // A set is categorical from the start; after a parenthesis every leaf gets the totals.
        TotalsCase{"QUILT /TABLE $cats [TOTALS [RESPONSES]].", "$cats", "COUNT", "RESPONSES"},
        TotalsCase{"QUILT /TABLE (a > b) [C] [TOTALS [COUNT]].", "b", "COUNT", "COUNT"},
        TotalsCase{"QUILT /TABLE (a > b) [C] [TOTALS [COUNT]].", "a", "none", "none"}));

TEST(SyntaxTotalsTest, ScaleVariableGetsNoTotalsButAWarning) {
  const ParseOutcome outcome = ParseCommand("QUILT /TABLE x [TOTALS [COUNT]].");
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  ASSERT_EQ(outcome.reported.size(), 1u);
  EXPECT_EQ(outcome.reported[0].key, msg::kTotalsForVariable);
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"TABLE", "x"}));
  EXPECT_EQ(FieldOf(outcome.dump, "x", "totalstats="), "none") << outcome.dump;
}

TEST(SyntaxTotalsTest, SecondTotalsClauseWarnsAndAddsToTheFirst) {
  const ParseOutcome outcome = ParseCommand("QUILT /TABLE a [C] [TOTALS [COUNT]] [TOTALS [ROWPCT.COUNT]].");
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  ASSERT_EQ(outcome.reported.size(), 1u);
  EXPECT_EQ(outcome.reported[0].key, msg::kDuplicateWarningFromVariable);
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"TABLE", "TOTALS", "a"}));
  EXPECT_EQ(FieldOf(outcome.dump, "a", "totalstats="), "COUNT,ROWPCT.COUNT") << outcome.dump;
}

// Name tokens of `statistics`, joined by commas.
std::string Tokens(const std::vector<Statistics*>& statistics) {
  std::string list;
  for (const Statistics* statistic : statistics) {
    list += (list.empty() ? "" : ",") + statistic->GetNameToken();
  }
  return list;
}

TEST(SyntaxTotalsTest, CompletedStatisticsFillTheTotalCategory) {
  // a: scale, nothing asked; b: categorical with a TOTALS clause; c: categorical with
  // COLPCT.COUNT and a total category from CATEGORIES; w: categorical, total category, no
  // statistics; s (a string): categorical, no total category.
  std::vector<std::string> stats;
  std::vector<std::string> totalStats;
  const EventOutcome outcome =
      ParseAndInspect("QUILT /TABLE a + b [C] [TOTALS [ROWPCT.COUNT]] + c [C] [COLPCT.COUNT] + w [C] + s.",
                      [&](SyntaxTablesCommand& root) {
                        for (SyntaxVariableName* variable : root.GetTable().at(0)->GetTableVarList()) {
                          const std::string name = variable->GetNameToken();
                          if (name == "c" || name == "w") {
                            variable->SetIsTotalNo(false);
                          }
                          variable->CompleteStatistics();
                          stats.push_back(Tokens(variable->GetStatistics()));
                          totalStats.push_back(Tokens(variable->GetTotalStats()));
                        }
                      });
  ASSERT_FALSE(outcome.threw) << outcome.error.key;
  // Stacked after a variable with statistics, w and s get the default COUNT.
  EXPECT_EQ(stats, (std::vector<std::string>{"MEAN", "COUNT", "COLPCT.COUNT", "COUNT", "COUNT"}));
  // The clause wins over the categories' list; without a clause the total shows what the
  // categories show, and plain COUNT when they show nothing; s has no total category.
  EXPECT_EQ(totalStats, (std::vector<std::string>{"", "ROWPCT.COUNT", "COLPCT.COUNT", "COUNT", ""}));
}

}  // namespace
