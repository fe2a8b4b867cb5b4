// SyntaxTableSubcommandValidationTest.cpp - the table's final checks: tests that cannot run, label-moving CLABELS, titles, CI level
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DissectionTestSupport.h"
#include "SubcommandTestSupport.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/output/MessageKeys.h"
#include "parser/Statistics.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"

namespace {

const int kWarning = 2;  // kBpLevelWarning: the test is dropped, the command goes on

struct Message {
  std::string key;
  std::vector<std::string> arguments;
};

struct TestCase {
  const char* command;
  std::vector<Message> reported;  // in order, each at the warning level
  const char* remaining;          // the tests left on the table, as the parse dump lists them
};

// The "tests:" line of a parse dump, without its label.
std::string TestsLine(const std::string& dump) {
  const std::string marker = "  tests: ";
  const size_t at = dump.find(marker);
  if (at == std::string::npos) {
    return "?";
  }
  const size_t begin = at + marker.size();
  return dump.substr(begin, dump.find('\n', begin) - begin);
}

class SignificanceChecks : public testing::TestWithParam<TestCase> {};

TEST_P(SignificanceChecks, DropTestsNoCubeCanTakeWithTheirReasons) {
  const TestCase& c = GetParam();
  const TablesOutcome outcome = ParseTables(c.command);
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  ASSERT_EQ(outcome.reported.size(), c.reported.size()) << (outcome.reported.empty() ? "" : outcome.reported[0].key);
  for (size_t index = 0; index < c.reported.size(); ++index) {
    EXPECT_EQ(outcome.reported[index].key, c.reported[index].key) << index;
    EXPECT_EQ(outcome.reported[index].arguments, c.reported[index].arguments) << index;
    EXPECT_EQ(outcome.reported[index].level, kWarning) << index;
  }
  EXPECT_EQ(TestsLine(outcome.parseDump), c.remaining);
}

const char* const kChi = "chisquare(alpha=0.05 adjust=1 mrsets=1)";
const char* const kMeans = "means(alpha=0.05 adjust=1 mrsets=1)";
const char* const kProp = "proportions(alpha=0.05 adjust=1 mrsets=1)";

// A table without TITLES is named by its number, "1". The weighted cases weight by w.
INSTANTIATE_TEST_SUITE_P(
    Commands, SignificanceChecks,
    testing::Values(
        TestCase{"QUILT /TABLE a BY b /SIGTEST TYPE=CHISQUARE.", {}, kChi},
        // Unweighted counts serve an unweighted table.
        TestCase{"QUILT /TABLE a BY b [UCOUNT] /SIGTEST TYPE=CHISQUARE.", {}, kChi},
        TestCase{"QUILT /TABLE a BY a /SIGTEST TYPE=CHISQUARE.",
                 {{msg::kChiSquareSkippedSameVariables, {"1"}}, {msg::kChiSquareSkippedNoEligibleCube, {"1"}}},
                 "none"},
        TestCase{"QUILT /TABLE a BY a /TITLES TITLE='Brands' /SIGTEST TYPE=CHISQUARE.",
                 {{msg::kChiSquareSkippedSameVariables, {"Brands"}},
                  {msg::kChiSquareSkippedNoEligibleCube, {"Brands"}}},
                 "none"},
        // A summarized variable, or a table without columns, gives nothing to test, and no
        // reason beyond the missing cube.
        TestCase{"QUILT /TABLE x BY a /SIGTEST TYPE=CHISQUARE.", {{msg::kChiSquareSkippedNoEligibleCube, {"1"}}}, "none"},
        TestCase{"QUILT /TABLE a /SIGTEST TYPE=CHISQUARE.", {{msg::kChiSquareSkippedNoEligibleCube, {"1"}}}, "none"},
        // Table percentages are no counts the test can use.
        TestCase{"QUILT /TABLE a BY b [TABLEPCT.COUNT] /SIGTEST TYPE=CHISQUARE.",
                 {{msg::kChiSquareSkippedNoSimpleStats, {"1"}}, {msg::kChiSquareSkippedNoEligibleCube, {"1"}}},
                 "none"},
        TestCase{"QUILT /WEIGHT VARIABLE=w /TABLE a BY b [UCOUNT] /SIGTEST TYPE=CHISQUARE.",
                 {{msg::kChiSquareSkippedNoWeightStats, {"1"}}, {msg::kChiSquareSkippedNoEligibleCube, {"1"}}},
                 "none"},
        // Weighted and unweighted counts side by side: tested, with a warning.
        TestCase{"QUILT /WEIGHT VARIABLE=w /TABLE a BY b [COUNT UCOUNT] /SIGTEST TYPE=CHISQUARE.",
                 {{msg::kChiSquareSkippedCombinedStats, {"1"}}},
                 kChi},
        // Row percentages serve chi-square but not the proportions test.
        TestCase{"QUILT /TABLE a BY b [ROWPCT.COUNT] /COMPARETEST TYPE=PROP.",
                 {{msg::kColumnProportionsSkippedNoSimpleStats, {"1"}}, {msg::kColumnProportionsSkippedNoEligibleCube, {"1"}}},
                 "none"},
        TestCase{"QUILT /TABLE x BY a /COMPARETEST TYPE=MEAN.", {}, kMeans},
        // x summarized in the layers: the means of one column cannot be compared.
        TestCase{"QUILT /TABLE a BY b BY x /COMPARETEST TYPE=MEAN.",
                 {{msg::kPairwiseComparisonsSkippedScaleInColumn, {}}, {msg::kPairwiseComparisonsSkippedNoEligibleCube, {"1"}}},
                 "none"},
        TestCase{"QUILT /WEIGHT VARIABLE=w /TABLE x [SUM] BY a /COMPARETEST TYPE=MEAN.",
                 {{msg::kPairwiseComparisonsSkippedNoWeightStats, {"1"}}, {msg::kPairwiseComparisonsSkippedNoEligibleCube, {"1"}}},
                 "none"},
        TestCase{"QUILT /WEIGHT VARIABLE=w /TABLE x [MEAN UMEAN] BY a /COMPARETEST TYPE=MEAN.",
                 {{msg::kPairwiseComparisonsSkippedCombinedStats, {"1"}}},
                 kMeans},
        TestCase{"QUILT /WEIGHT VARIABLE=w /TABLE a BY b [UCOUNT] /COMPARETEST TYPE=PROP.",
                 {{msg::kColumnProportionsSkippedNoWeightStats, {"1"}}, {msg::kColumnProportionsSkippedNoEligibleCube, {"1"}}},
                 "none"},
        TestCase{"QUILT /WEIGHT VARIABLE=w /TABLE a BY b [COUNT UCOLPCT] /COMPARETEST TYPE=PROP.",
                 {{msg::kColumnProportionsSkippedCombinedStats, {"1"}}},
                 kProp},
        // Unweighted data and a scale variable with neither mean.
        TestCase{"QUILT /TABLE x [SUM] BY a /COMPARETEST TYPE=MEAN.",
                 {{msg::kPairwiseComparisonsSkippedNoSimpleStats, {"1"}}, {msg::kPairwiseComparisonsSkippedNoEligibleCube, {"1"}}},
                 "none"},
        // Reasons from several cubes come once each, in a fixed order whatever the order of the
        // cubes: here the weight problem of a BY c stands before the combined counts of a BY b.
        TestCase{"QUILT /WEIGHT VARIABLE=w /TABLE a BY b [COUNT UCOUNT] + c [UCOUNT] + d [UCOUNT]"
                 " /SIGTEST TYPE=CHISQUARE.",
                 {{msg::kChiSquareSkippedNoWeightStats, {"1"}},
                  {msg::kChiSquareSkippedCombinedStats, {"1"}}},
                 kChi},
        // The same variable in rows and columns reports ahead of the weight problem of the other cube.
        TestCase{"QUILT /WEIGHT VARIABLE=w /TABLE a BY c [UCOUNT] + a /TITLES TITLE='Mix' /SIGTEST TYPE=CHISQUARE.",
                 {{msg::kChiSquareSkippedSameVariables, {"Mix"}},
                  {msg::kChiSquareSkippedNoWeightStats, {"Mix"}},
                  {msg::kChiSquareSkippedNoEligibleCube, {"Mix"}}},
                 "none"},
        // A dropped test leaves the others in place.
        TestCase{"QUILT /TABLE x BY a /SIGTEST TYPE=CHISQUARE /COMPARETEST TYPE=MEAN.", {{msg::kChiSquareSkippedNoEligibleCube, {"1"}}}, kMeans},
        // Moved labels: no test at all, and no cube is asked.
        TestCase{"QUILT /TABLE a BY a /SIGTEST TYPE=CHISQUARE /CLABELS COLLABELS=OPPOSITE.",
                 {{msg::kChiSquareMovedLabels, {}}},
                 "none"},
        TestCase{"QUILT /TABLE x BY a /COMPARETEST TYPE=MEAN /CLABELS COLLABELS=OPPOSITE.",
                 {{msg::kPairwiseComparisonsMovedLabels, {}}},
                 "none"},
        // Two tests dropped: in the order they were requested.
        TestCase{"QUILT /TABLE a BY b /COMPARETEST TYPE=PROP /SIGTEST TYPE=CHISQUARE /CLABELS COLLABELS=LAYER.",
                 {{msg::kColumnProportionsMovedLabels, {}}, {msg::kChiSquareMovedLabels, {}}},
                 "none"}));

// Sources that may share their labels; the refusals are lines of diagnostics.txt.
// a and b label 1 "Low", 2 "High"; d labels only 3.
TEST(ComperimeterChecks, SourcesThatShareLabelsAreAccepted) {
  const char* const commands[] = {
      "QUILT /TABLE a + b BY e /CLABELS ROWLABELS=OPPOSITE.",
      // A new value joins the merged labels.
      "QUILT /TABLE a + d BY e /CLABELS ROWLABELS=OPPOSITE.",
      // Only leaves are sources: a is the outer variable of the nesting.
      "QUILT /TABLE c > a BY e /CLABELS ROWLABELS=LAYER.",
      // The other axis may hold anything.
      "QUILT /TABLE a + c BY e /CLABELS COLLABELS=OPPOSITE.",
      "QUILT /TABLE $dich BY e /CLABELS ROWLABELS=OPPOSITE.",
  };
  for (const char* command : commands) {
    const TablesOutcome outcome = ParseTables(command);
    EXPECT_TRUE(outcome.succeeded) << command << ": " << outcome.error.key;
  }
}

// Runs the comperimeter check of the first table after changing its variables with `change`.
EventOutcome CheckAfter(const char* command, TableEncryptionCodes::CLabelOption option,
                        const std::function<void(const std::vector<SyntaxVariableName*>&)>& change) {
  EventOutcome checked;
  const TablesOutcome outcome = ParseTables(command, [&](std::vector<SyntaxTableSubcommand*>& tables) {
    SyntaxTableSubcommand& table = *tables.at(0);
    table.GetTableSettings().SetCLabelOption(option);
    change(table.GetTableVarList());
    checked = RunEvents([&] { table.ValidateComperimeterRequest(); });
  });
  EXPECT_TRUE(outcome.succeeded) << outcome.error.key;
  return checked;
}

TEST(ComperimeterChecks, SourcesMustShareTheirCategoryOptions) {
  // a and b agree on labels, but only a shows a total category.
  const EventOutcome total = CheckAfter("QUILT /TABLE a + b BY e.", TableEncryptionCodes::kCLabelRowOpposite,
                                        [](const std::vector<SyntaxVariableName*>& vars) { vars[0]->SetIsTotalNo(false); });
  ASSERT_TRUE(total.threw);
  EXPECT_EQ(total.error.key, msg::kMovedLabelsCategoriesDiffer);
  // Both show it, under different labels.
  const EventOutcome label = CheckAfter("QUILT /TABLE a + b BY e.", TableEncryptionCodes::kCLabelRowOpposite,
                                        [](const std::vector<SyntaxVariableName*>& vars) {
                                          vars[0]->SetIsTotalNo(false);
                                          vars[1]->SetIsTotalNo(false);
                                          vars[1]->SetTotalLabel("All");
                                        });
  ASSERT_TRUE(label.threw);
  EXPECT_EQ(label.error.key, total.error.key);
  // Without a total category its label does not matter.
  const EventOutcome noTotal =
      CheckAfter("QUILT /TABLE a + b BY e.", TableEncryptionCodes::kCLabelRowOpposite,
                 [](const std::vector<SyntaxVariableName*>& vars) { vars[1]->SetTotalLabel("All"); });
  EXPECT_FALSE(noTotal.threw) << noTotal.error.key;
}

TEST(ComperimeterChecks, ADataDependentSortAnywhereIsRefused) {
  // e stands in the columns; the rows are moved, and still its sort by a statistic counts.
  const EventOutcome sorted =
      CheckAfter("QUILT /TABLE a + b BY e.", TableEncryptionCodes::kCLabelRowOpposite,
                 [](const std::vector<SyntaxVariableName*>& vars) {
                   vars[2]->SetSortKey(TableEncryptionCodes::kSortKeyStatistic);
                 });
  ASSERT_TRUE(sorted.threw);
  EXPECT_EQ(sorted.error.key, msg::kMovedLabelsDataDependentSorting);
  EXPECT_EQ(sorted.error.arguments, (std::vector<std::string>{"TABLE", "e"}));
}

TEST(TableTitles, EqualTitlesGetOneMoreTrailingBlankEach) {
  std::vector<std::string> titles;
  const TablesOutcome outcome = ParseTables(
      "QUILT /TABLE a /TITLES TITLE='Brand' /TABLE b /TABLE c /TITLES TITLE='Brand'"
      " /TABLE d /TITLES TITLE='Brand' /TABLE e /TITLES TITLE='Warnings'.",
      [&](std::vector<SyntaxTableSubcommand*>& tables) {
        for (SyntaxTableSubcommand* table : tables) {
          titles.push_back(table->GetTitle());
        }
      });
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  // A table without TITLE is named by its number; "Warnings" would be taken for the
  // host's own warnings table and gets a blank.
  EXPECT_EQ(titles, (std::vector<std::string>{"Brand", "2", "Brand ", "Brand  ", "Warnings "}));
}

TEST(TableCommit, TheConfidenceLevelReachesEveryStatisticOfTheTable) {
  std::vector<std::string> levels;
  const TablesOutcome outcome =
      ParseTables("QUILT /TABLE x [MEAN.LCL] + y BY a /CRITERIA CILEVEL=90.", [&](std::vector<SyntaxTableSubcommand*>& tables) {
        for (const SyntaxVariableName* var : tables.at(0)->GetTableVarList()) {
          for (const Statistics* statistic : var->GetStatistics()) {
            levels.push_back(var->GetNameToken() + ":" + statistic->GetNameToken() + "@" + statistic->GetCILevelString());
          }
        }
      });
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  // y's MEAN is the default a scale variable gets once the expression is complete; a is a
  // categorical beside summaries and has none of its own.
  EXPECT_EQ(levels, (std::vector<std::string>{"x:MEAN.LCL@90", "y:MEAN@90"}));
}

TEST(TableCommit, TheLaterOfTwoCriteriaReachesTheStatistics) {
  // Each slash commits the table's level into its statistics again, and so does the period,
  // so the last CRITERIA wins whether a slash or the period follows it.
  const char* const commands[] = {
      "QUILT /TABLE x [MEAN.LCL] BY a /CRITERIA CILEVEL=90 /CRITERIA CILEVEL=99.",
      "QUILT /TABLE x [MEAN.LCL] BY a /CRITERIA CILEVEL=90 /CRITERIA CILEVEL=99 /TITLES TITLE='t'.",
  };
  for (const char* command : commands) {
    std::string level;
    const TablesOutcome outcome = ParseTables(command, [&](std::vector<SyntaxTableSubcommand*>& tables) {
      level = tables.at(0)->GetTableVarList().at(0)->GetStatistics().at(0)->GetCILevelString();
    });
    ASSERT_TRUE(outcome.succeeded) << command << ": " << outcome.error.key;
    EXPECT_EQ(level, "99") << command;
  }
}

}  // namespace
