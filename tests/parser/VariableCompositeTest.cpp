// VariableCompositeTest.cpp - table expressions cut into sub-table cubes: nesting, crossing and stacking (refused crossings are lines of diagnostics.txt)
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "parser/Statistics.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/VariableComposite.h"

namespace {

struct CubeCase {
  const char* expression;
  std::vector<std::string> cubes;  // SummarizeCube of each cube, in order
};

class Dissection : public testing::TestWithParam<CubeCase> {};

TEST_P(Dissection, GivesTheSubTablesInOrder) {
  const CubeCase& c = GetParam();
  const KeptParse parse(std::string("QUILT /TABLE ") + c.expression + ".");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  EXPECT_EQ(parse.Cubes(), std::vector<std::vector<std::string>>{c.cubes}) << parse.ParseDump();
}

// a..e are categorical, x and y scale. Each expected list was worked out by hand from the
// nesting, crossing and stacking rules; "*" marks the variable that carries the statistics.
INSTANTIATE_TEST_SUITE_P(
    Expressions, Dissection,
    testing::Values(
        // Stacked rows crossed with one column: one sub-table per stacked term; with no
        // statistics asked, COUNT goes on the column (the last axis).
        CubeCase{"a + b BY c", {"a BY c*", "b BY c*"}},
        // An empty row axis adds nothing: one cube of c alone, in the columns.
        CubeCase{"BY c", {"- BY c*"}},
        CubeCase{"BY BY c", {"- BY - BY c*"}},
        CubeCase{"a BY BY c", {"a BY - BY c*"}},
        // Where the default COUNT falls: innermost of the first axis followed by another
        // axis, or the last variable.
        CubeCase{"a > b BY c > d", {"a>b* BY c>d"}},
        CubeCase{"a > b BY c", {"a>b BY c*"}},
        CubeCase{"a > b", {"a>b*"}},
        CubeCase{"a BY b", {"a BY b*"}},
        CubeCase{"a > b > c", {"a>b>c*"}},
        // Nesting over a stack makes one sub-table per stacked term.
        CubeCase{"a > (b + c)", {"a>b*", "a>c*"}},
        // Crossing two stacks: the first operand's terms outermost.
        CubeCase{"(a + b) BY (c + d)", {"a BY c*", "a BY d*", "b BY c*", "b BY d*"}},
        // Two scale variables share one cube: two summaries of the same categories.
        CubeCase{"x + y", {"{x,y}"}},
        CubeCase{"a > b + x + y", {"a>b*", "{x,y}"}},
        CubeCase{"x + y + a", {"{x,y}", "a*"}},
        // The first cube of (a > y) has a categorical variable, so x keeps its own.
        CubeCase{"x + (a > y)", {"{x}", "a {y}"}},
        CubeCase{"x + a > b", {"{x}", "a>b*"}},
        CubeCase{"a + x", {"a*", "{x}"}},
        // Summaries meeting at the seam of a stack merge ...
        CubeCase{"(a + x) + (y + b)", {"a*", "{x,y}", "b*"}},
        // ... and a scale variable stacked before a summary cube stands first in it.
        CubeCase{"y + (x + a)", {"{y,x}", "a*"}},
        // No seam of summaries: the cubes stay apart.
        CubeCase{"(x + a) + (y + b)", {"{x}", "a*", "{y}", "b*"}},
        // A cube without statistics accepts a scale variable by nesting or crossing.
        CubeCase{"(a + b) > x", {"a {x}", "b {x}"}},
        CubeCase{"(x + y) BY (a + b)", {"- BY a {x,y}", "- BY b {x,y}"}},
        // A variable with statistics crossed (not nested) with one without.
        CubeCase{"a [COUNT] BY b", {"a* BY b"}},
        CubeCase{"$cats [COUNT] BY $dich", {"$cats* BY $dich"}},
        // A bracket after a paren reaches the leaves; the outer variable of a nesting is no leaf.
        CubeCase{"(a > b) [COUNT] BY c", {"a>b* BY c"}}));

// The statistics of each variable of the table, after the parse, as "name:TOKENS" with a
// trailing "~" when the list is a removable default.
std::vector<std::string> StatisticsOfVariables(const std::string& command) {
  std::vector<std::string> lists;
  const KeptParse parse(command);
  EXPECT_TRUE(parse.Succeeded()) << command << ": " << parse.Error().key;
  for (const SyntaxVariableName* var : parse.Tables().at(0)->GetTableVarList()) {
    std::string list = var->GetNameToken() + ":";
    for (const Statistics* statistic : var->GetStatistics()) {
      list += (list.back() == ':' ? "" : ",") + statistic->GetNameToken();
    }
    lists.push_back(list + (var->GetIsStatRemovable() ? "~" : ""));
  }
  return lists;
}

TEST(Dissection, StackedOperandsThatDisagreeGetDefaultStatistics) {
  struct Case {
    const char* command;
    std::vector<std::string> statistics;
  };
  const std::vector<Case> cases = {
      // b is stacked with a variable that has statistics: it gets a removable COUNT.
      {"QUILT /TABLE a [COUNT] + b.", {"a:COUNT", "b:COUNT~"}},
      {"QUILT /TABLE a + b [COLPCT.COUNT].", {"a:COUNT~", "b:COLPCT.COUNT"}},
      // A categorical stacked with a scale variable gets COUNT; the scale variable gets
      // MEAN once the expression is complete.
      {"QUILT /TABLE x + a.", {"x:MEAN", "a:COUNT~"}},
      // The composite's first statistics (b's COUNT) make the stacked c take the default.
      {"QUILT /TABLE (a > b) [COUNT] + c.", {"a:", "b:COUNT", "c:COUNT~"}},
      // A scale summary beside a nesting: the nesting's inner variable takes COUNT.
      {"QUILT /TABLE x + a > b.", {"x:MEAN", "a:", "b:COUNT~"}},
      // Without statistics anywhere each sub-table still gets COUNT on its own carrier.
      {"QUILT /TABLE a + b BY c.", {"a:", "b:", "c:COUNT~"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(StatisticsOfVariables(c.command), c.statistics) << c.command;
  }
}

TEST(Dissection, CompositeLookUpsAnswerOverAllCubes) {
  const KeptParse parse("QUILT /TABLE (a + b) BY (c + a) + x.");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  // "+" binds tighter than BY: (a + b) crossed with the three terms c, a and x, six cubes.
  EXPECT_EQ(parse.Cubes().at(0).size(), 6u) << parse.ParseDump();
  VariableComposite& table = *parse.Tables().at(0);
  EXPECT_EQ(table.GetCatVarNameList(), (std::vector<std::string>{"a", "c", "b"}));
  // a stands twice in the expression: two nodes, each listed once although each appears in
  // two cubes.
  EXPECT_EQ(table.GetCategoricalVariables("A").size(), 2u);
  EXPECT_EQ(table.GetCategoricalVariables("c").size(), 1u);
  EXPECT_EQ(table.GetScaleVariables("x").size(), 1u);
  EXPECT_TRUE(table.CatVarNameExist("b"));
  EXPECT_TRUE(table.ScaleVarNameExist("X"));
  EXPECT_FALSE(table.ScaleVarNameExist("a") || table.CatVarNameExist("x"));
}

}  // namespace
