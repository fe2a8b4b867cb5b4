// SyntaxCompareTestSubcommandTest.cpp - COMPARETEST keywords, ALPHA levels, and what reaches the table
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxCompareTestSubcommand.h"
#include "parser/TableSettings.h"

namespace {

// A COMPARETEST under a table, as the table subcommand creates it.
struct Fixture {
  TableSettings settings;
  RecordingParent table{"TABLE"};
  SyntaxCompareTestSubcommand* compare = nullptr;

  Fixture() {
    compare = new SyntaxCompareTestSubcommand(settings);
    table.Add(compare);
  }

  EventOutcome Run(const std::vector<Event>& events) { return RunSubcommand(*compare, events); }
};

TEST(SyntaxCompareTestSubcommandTest, DefaultsOfAPlainRequest) {
  Fixture fixture;
  const EventOutcome outcome = fixture.Run({Key("TYPE"), Word("PROP")});
  ASSERT_FALSE(outcome.threw);
  EXPECT_TRUE(outcome.reported.empty());
  ASSERT_EQ(fixture.settings.GetSigTestSettings().size(), 1u);
  const SigTestSettings& test = fixture.settings.GetSigTestSettings()[0];
  EXPECT_EQ(test._type, TableEncryptionCodes::kSigTestProportions);
  EXPECT_EQ(test._alpha, 0.05);
  EXPECT_EQ(test._alphaText, "0.05");
  EXPECT_EQ(test._alpha2, 0.0);
  EXPECT_EQ(test._adjustType, PresentationCodes::kAdjustBonferroni);
  EXPECT_TRUE(test._originColumn);
  EXPECT_TRUE(test._includeMRSets);
  EXPECT_FALSE(test._includeSubtotals);
  EXPECT_TRUE(test._meansVarianceAllCats);
  EXPECT_FALSE(test._merge);
  EXPECT_FALSE(test._showSig);
  EXPECT_EQ(test._sigDigits, 3);
  EXPECT_TRUE(test._styleApa);
  EXPECT_TRUE(fixture.settings.HasColPropTest());
  EXPECT_FALSE(fixture.settings.HasPairWiseTest());
}

TEST(SyntaxCompareTestSubcommandTest, EveryKeywordReachesTheSettings) {
  Fixture fixture;
  const EventOutcome outcome = fixture.Run(
      {Key("TYPE"), Word("mean"), Key("ADJUST"), Word("BH"), Key("ORIGIN"), Word("COLUMN"), Key("CATEGORIES"),
       Word("SUBTOTALS"), Key("INCLUDEMRSETS"), Word("NO"), Key("MEANSVARIANCE"), Word("TESTEDCATS"),
       Key("STYLE"), Word("SIMPLE"), Key("SHOWSIG"), Word("YES"), Key("SIGDIGS"), Num(5, "5")});
  ASSERT_FALSE(outcome.threw);
  const SigTestSettings& test = fixture.settings.GetSigTestSettings().at(0);
  EXPECT_EQ(test._type, TableEncryptionCodes::kSigTestMeans);
  EXPECT_EQ(test._adjustType, PresentationCodes::kAdjustBH);
  EXPECT_TRUE(test._includeSubtotals);
  EXPECT_FALSE(test._includeMRSets);
  EXPECT_FALSE(test._meansVarianceAllCats);
  EXPECT_FALSE(test._styleApa);
  EXPECT_TRUE(test._showSig);
  EXPECT_EQ(test._sigDigits, 5);
}

TEST(SyntaxCompareTestSubcommandTest, TwoAlphaLevelsKeepTheSmallerFirst) {
  Fixture fixture;
  const EventOutcome outcome =
      fixture.Run({Key("TYPE"), Word("PROP"), Key("ALPHA"), Num(0.05, "0.05"), Num(0.01, ".01")});
  ASSERT_FALSE(outcome.threw);
  const SigTestSettings& test = fixture.settings.GetSigTestSettings().at(0);
  EXPECT_EQ(test._alpha, 0.01);
  EXPECT_EQ(test._alphaText, ".01");  // texts move with their values
  EXPECT_EQ(test._alpha2, 0.05);
  EXPECT_EQ(test._alpha2Text, "0.05");

  Fixture ascending;
  ascending.Run({Key("TYPE"), Word("PROP"), Key("ALPHA"), Num(0.01, "0.01"), Num(0.1, "0.1")});
  EXPECT_EQ(ascending.settings.GetSigTestSettings().at(0)._alpha2Text, "0.1");
}

TEST(SyntaxCompareTestSubcommandTest, EqualAlphaLevelsAreReportedAndOneIsKept) {
  Fixture fixture;
  const EventOutcome outcome =
      fixture.Run({Key("TYPE"), Word("PROP"), Key("ALPHA"), Num(0.05, "0.05"), Num(0.05, "0.05")});
  ASSERT_FALSE(outcome.threw);
  ASSERT_EQ(outcome.reported.size(), 1u);
  EXPECT_EQ(outcome.reported[0].key, msg::kAlphaValuesEqual);
  const SigTestSettings& test = fixture.settings.GetSigTestSettings().at(0);
  EXPECT_EQ(test._alpha, 0.05);
  EXPECT_EQ(test._alpha2, 0.0);
  EXPECT_TRUE(test._alpha2Text.empty());
}

TEST(SyntaxCompareTestSubcommandTest, MergeConflictsAreReportedAndResolved) {
  {
    // Merged results cannot show p-values: the test runs unmerged.
    Fixture fixture;
    const EventOutcome outcome =
        fixture.Run({Key("TYPE"), Word("PROP"), Key("MERGE"), Word("YES"), Key("SHOWSIG"), Word("YES")});
    ASSERT_FALSE(outcome.threw);
    ASSERT_EQ(outcome.reported.size(), 1u);
    EXPECT_EQ(outcome.reported[0].key, msg::kMergeCannotShowPValues);
    EXPECT_FALSE(fixture.settings.GetSigTestSettings().at(0)._merge);
  }
  {
    // APA marks in the main table allow one level: the smaller one, 0.01, stays.
    Fixture fixture;
    const EventOutcome outcome =
        fixture.Run({Key("TYPE"), Word("PROP"), Key("MERGE"), Word("YES"), Key("STYLE"), Word("APA"),
                     Key("ALPHA"), Num(0.05, "0.05"), Num(0.01, "0.01")});
    ASSERT_FALSE(outcome.threw);
    ASSERT_EQ(outcome.reported.size(), 1u);
    EXPECT_EQ(outcome.reported[0].key, msg::kOneAlphaWithApaStyle);
    const SigTestSettings& test = fixture.settings.GetSigTestSettings().at(0);
    EXPECT_TRUE(test._merge);
    EXPECT_EQ(test._alpha, 0.01);
    EXPECT_EQ(test._alpha2, 0.0);
    EXPECT_TRUE(test._alpha2Text.empty());
  }
}

// MERGE alone is no request: nothing is registered and nothing reported (ALPHA alone is a
// line of diagnostics.txt).
TEST(SyntaxCompareTestSubcommandTest, APresentationKeywordAloneIsNoRequest) {
  Fixture fixture;
  const EventOutcome outcome = fixture.Run({Key("MERGE"), Word("YES")});
  EXPECT_FALSE(outcome.threw);
  EXPECT_TRUE(outcome.reported.empty());
  EXPECT_TRUE(fixture.settings.GetSigTestSettings().empty());
}

TEST(SyntaxCompareTestSubcommandTest, SigDigitsIsTruncatedAndHeldInRange) {
  struct Case {
    double value;
    int expected;
  };
  for (const Case& row : std::vector<Case>{{0, 1}, {40, 16}, {2.9, 2}, {16, 16}, {-3, 1}}) {
    Fixture fixture;
    fixture.Run({Key("TYPE"), Word("PROP"), Key("SIGDIGS"), Num(row.value, std::to_string(row.value))});
    EXPECT_EQ(fixture.settings.GetSigTestSettings().at(0)._sigDigits, row.expected) << row.value;
  }
}

TEST(SyntaxCompareTestSubcommandTest, RepeatedKeywordsWarnExceptThePresentationOnes) {
  Fixture fixture;
  const EventOutcome outcome =
      fixture.Run({Key("TYPE"), Word("PROP"), Key("TYPE"), Word("MEAN"), Key("ADJUST"), Word("NONE"),
                   Key("ADJ"), Word("BH"), Key("MERGE"), Word("NO"), Key("MERGE"), Word("NO"), Key("STYLE"),
                   Word("APA"), Key("STYLE"), Word("SIMPLE")});
  ASSERT_FALSE(outcome.threw);
  ASSERT_EQ(outcome.reported.size(), 2u);
  EXPECT_EQ(outcome.reported[0].key, msg::kDuplicateWarning);
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"COMPARETEST", "TYPE"}));
  EXPECT_EQ(outcome.reported[1].arguments, (std::vector<std::string>{"COMPARETEST", "ADJUST"}));
  const SigTestSettings& test = fixture.settings.GetSigTestSettings().at(0);
  EXPECT_EQ(test._type, TableEncryptionCodes::kSigTestMeans);
  EXPECT_EQ(test._adjustType, PresentationCodes::kAdjustBH);
  EXPECT_FALSE(test._styleApa);
}

TEST(SyntaxCompareTestSubcommandTest, OneTestOfEachTypePerTableTheLastStands) {
  TableSettings settings;
  RecordingParent table("TABLE");
  auto request = [&](std::vector<Event> events) {
    auto* compare = new SyntaxCompareTestSubcommand(settings);
    table.Add(compare);
    return RunSubcommand(*compare, events);
  };
  request({Key("TYPE"), Word("MEAN"), Key("ALPHA"), Num(0.1, "0.1")});
  request({Key("TYPE"), Word("PROP")});
  const EventOutcome third = request({Key("TYPE"), Word("MEAN"), Key("ALPHA"), Num(0.01, "0.01")});
  ASSERT_EQ(third.reported.size(), 1u);
  EXPECT_EQ(third.reported[0].key, msg::kDuplicateWarning);
  EXPECT_EQ(third.reported[0].arguments, (std::vector<std::string>{"COMPARETEST", "Pairwise comparisons"}));
  const std::vector<SigTestSettings>& tests = settings.GetSigTestSettings();
  ASSERT_EQ(tests.size(), 2u);
  EXPECT_EQ(tests[0]._type, TableEncryptionCodes::kSigTestProportions);
  EXPECT_EQ(tests[1]._type, TableEncryptionCodes::kSigTestMeans);
  EXPECT_EQ(tests[1]._alphaText, "0.01");
}

}  // namespace
