// SyntaxTableSubcommandTest.cpp - the table's own refusals: hidden source categories under SIGTEST, the axis count
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/output/MessageKeys.h"

namespace {

struct TableCase {
  const char* name;
  const char* command;
  const char* key;  // empty: the command is accepted
  std::vector<std::string> arguments;
};

class TableRefusals : public ::testing::TestWithParam<TableCase> {};

TEST_P(TableRefusals, NameWhatCannotStand) {
  const TableCase& row = GetParam();
  const ParseOutcome outcome = ParseCommand(row.command);
  if (std::string(row.key).empty()) {
    EXPECT_TRUE(outcome.succeeded) << outcome.error.key;
    return;
  }
  ASSERT_FALSE(outcome.succeeded);
  EXPECT_EQ(outcome.error.key, row.key);
  EXPECT_EQ(outcome.error.arguments, row.arguments);
}

const TableCase kTableCases[] = {
    // A chi-square test needs the source categories that a hidden computed category would take away.
    {"HiddenSourcesUnderSigTest",
     "QUILT /PCOMPUTE &top=EXPR([1]+[2]) /PPROPERTIES &top HIDESOURCECATS=YES /TABLE a BY b /SIGTEST TYPE=CHISQUARE.",
     msg::kSourceCategoriesHiddenWithSigTest,
     {"top"}},
    // Only the PPROPERTIES that hides them counts, and any of several PCOMPUTEs.
    {"SecondComputedCategoryHidden",
     "QUILT /PCOMPUTE &low=EXPR([1]) /PCOMPUTE &top=EXPR([1]+[2]) /PPROPERTIES &low LABEL='Low'"
     " /PPROPERTIES &top HIDESOURCECATS=YES /TABLE a BY b /SIGTEST TYPE=CHISQUARE.",
     msg::kSourceCategoriesHiddenWithSigTest,
     {"top"}},
    {"SourcesShownUnderSigTest",
     "QUILT /PCOMPUTE &top=EXPR([1]+[2]) /PPROPERTIES &top HIDESOURCECATS=NO /TABLE a BY b /SIGTEST TYPE=CHISQUARE.",
     "",
     {}},
    // COMPARETEST makes no such check.
    {"HiddenSourcesUnderCompareTest",
     "QUILT /PCOMPUTE &top=EXPR([1]+[2]) /PPROPERTIES &top HIDESOURCECATS=YES /TABLE a BY b /COMPARETEST TYPE=PROP.",
     "",
     {}},
    // Three axes at most: the third BY is refused by name, even in a later table.
    {"ThirdBy", "QUILT /TABLE a /TABLE a BY b BY c BY d.", msg::kIncorrectSequence, {"TABLE", "BY"}},
    {"TwoBysAreThreeAxes", "QUILT /TABLE a BY b BY c.", "", {}},
};

INSTANTIATE_TEST_SUITE_P(Commands, TableRefusals, ::testing::ValuesIn(kTableCases),
                         [](const ::testing::TestParamInfo<TableCase>& info) { return std::string(info.param.name); });

}  // namespace
