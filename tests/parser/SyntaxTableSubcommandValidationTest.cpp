// SyntaxTableSubcommandValidationTest.cpp - the table's final checks that a command alone cannot reach
// (label-moving CLABELS over changed category options), titles, CI level. Tests that cannot run and the
// refusals of moved labels are cases of diagnostics.txt.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "SubcommandTestSupport.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/output/MessageKeys.h"
#include "parser/Statistics.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"

namespace {

// Runs the comperimeter check of the first table after changing its variables with `change`.
EventOutcome CheckAfter(const char* command, TableEncryptionCodes::CLabelOption option,
                        const std::function<void(const std::vector<SyntaxVariableName*>&)>& change) {
  const KeptParse parse(command);
  EXPECT_TRUE(parse.Succeeded()) << parse.Error().key;
  SyntaxTableSubcommand& table = *parse.Tables().at(0);
  table.GetTableSettings().SetCLabelOption(option);
  change(table.GetTableVarList());
  return RunEvents([&] { table.ValidateComperimeterRequest(); });
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
  const KeptParse parse(
      "QUILT /TABLE a /TITLES TITLE='Brand' /TABLE b /TABLE c /TITLES TITLE='Brand'"
      " /TABLE d /TITLES TITLE='Brand' /TABLE e /TITLES TITLE='Warnings'.");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  std::vector<std::string> titles;
  for (SyntaxTableSubcommand* table : parse.Tables()) {
    titles.push_back(table->GetTitle());
  }
  // A table without TITLE is named by its number; "Warnings" would be taken for the
  // host's own warnings table and gets a blank.
  EXPECT_EQ(titles, (std::vector<std::string>{"Brand", "2", "Brand ", "Brand  ", "Warnings "}));
}

TEST(TableCommit, TheConfidenceLevelReachesEveryStatisticOfTheTable) {
  const KeptParse parse("QUILT /TABLE x [MEAN.LCL] + y BY a /CRITERIA CILEVEL=90.");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  std::vector<std::string> levels;
  for (const SyntaxVariableName* var : parse.Tables().at(0)->GetTableVarList()) {
    for (const Statistics* statistic : var->GetStatistics()) {
      levels.push_back(var->GetNameToken() + ":" + statistic->GetNameToken() + "@" + statistic->GetCILevelString());
    }
  }
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
    const KeptParse parse(command);
    ASSERT_TRUE(parse.Succeeded()) << command << ": " << parse.Error().key;
    EXPECT_EQ(parse.Tables().at(0)->GetTableVarList().at(0)->GetStatistics().at(0)->GetCILevelString(), "99")
        << command;
  }
}

}  // namespace
