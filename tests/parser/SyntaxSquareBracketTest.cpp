// SyntaxSquareBracketTest.cpp - the statistics a total category gets once the table completes them (what
// brackets and TOTALS clauses hand to the variables, and their errors, are cases of diagnostics.txt)
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "parser/Statistics.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"

namespace {

// Name tokens of `statistics`, joined by commas.
std::string Tokens(const std::vector<Statistics*>& statistics) {
  std::string list;
  for (const Statistics* statistic : statistics) {
    list += (list.empty() ? "" : ",") + statistic->GetNameToken();
  }
  return list;
}

TEST(SyntaxTotalsTest, CompletedStatisticsFillTheTotalCategory) {
  // x: scale, nothing asked; b: categorical with a TOTALS clause; c: categorical with
  // COLPCT.COUNT and a total category from CATEGORIES; w: categorical, total category, no
  // statistics; s (a string): categorical, no total category.
  const KeptParse parse("QUILT /TABLE x + b [C] [TOTALS [ROWPCT.COUNT]] + c [C] [COLPCT.COUNT] + w [C] + s.");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  std::vector<std::string> stats;
  std::vector<std::string> totalStats;
  for (SyntaxVariableName* variable : parse.Tables().at(0)->GetTableVarList()) {
    const std::string name = variable->GetNameToken();
    if (name == "c" || name == "w") {
      variable->SetIsTotalNo(false);
    }
    variable->CompleteStatistics();
    stats.push_back(Tokens(variable->GetStatistics()));
    totalStats.push_back(Tokens(variable->GetTotalStats()));
  }
  // Stacked after a variable with statistics, w and s get the default COUNT.
  EXPECT_EQ(stats, (std::vector<std::string>{"MEAN", "COUNT", "COLPCT.COUNT", "COUNT", "COUNT"}));
  // The clause wins over the categories' list; without a clause the total shows what the
  // categories show, and plain COUNT when they show nothing; s has no total category.
  EXPECT_EQ(totalStats, (std::vector<std::string>{"", "ROWPCT.COUNT", "COLPCT.COUNT", "COUNT", ""}));
}

}  // namespace
