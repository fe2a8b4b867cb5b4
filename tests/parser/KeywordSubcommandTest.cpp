// KeywordSubcommandTest.cpp - what the keyword subcommands of a table (SLABELS, CLABELS, SIGTEST) and
// the small global ones (HIDESMALLCOUNTS, SMISSING) hand on when they are valid. CRITERIA: the
// summaries golden and diagnostics.txt. Their refusals and repeats are cases of diagnostics.txt.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "SubcommandTestSupport.h"
#include "parser/SyntaxCLabelsSubcommand.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxHideSmallCountsSubcommand.h"
#include "parser/SyntaxSLabelsSubcommand.h"
#include "parser/SyntaxSMissingSubcommand.h"
#include "parser/SyntaxSigTestSubcommand.h"
#include "parser/TableSettings.h"

namespace {

// Runs a table-level subcommand of type `Sub` under a stand-in table and commits it.
template <class Sub>
EventOutcome Request(TableSettings& settings, const std::vector<Event>& events, RecordingParent* table = nullptr) {
  RecordingParent own("TABLE");
  RecordingParent& parent = table != nullptr ? *table : own;
  auto* subcommand = new Sub(settings);
  parent.Add(subcommand);
  return RunSubcommand(*subcommand, events, ".");
}

TEST(KeywordSubcommandTest, SLabelsPositionAndVisibilityReachTheTable) {
  TableSettings settings;
  RecordingParent table("TABLE");
  EXPECT_FALSE(settings.IsSLabelPositionSet());
  ASSERT_FALSE(Request<SyntaxSLabelsSubcommand>(settings, {Key("POSITION"), Word("ROW"), Key("VISIBLE"), Word("NO")},
                                                &table)
                   .threw);
  EXPECT_EQ(settings.GetSLabelPosition(), PresentationCodes::kSLabelRow);
  EXPECT_TRUE(settings.IsSLabelPositionSet());
  EXPECT_FALSE(settings.GetSLabelVisibility());
  EXPECT_TRUE(settings.IsSLabelVisibilitySet());
  EXPECT_EQ(table.GetChildren().at(0)->GetType(), kConverterSLabels);

  // Only what is given is committed: a second SLABELS with POSITION alone warns for it.
  const EventOutcome second = Request<SyntaxSLabelsSubcommand>(settings, {Key("POSITION"), Word("LAYER")}, &table);
  ASSERT_EQ(second.reported.size(), 1u);
  EXPECT_EQ(second.reported[0].arguments, (std::vector<std::string>{"SLABELS", "POSITION"}));
  EXPECT_EQ(settings.GetSLabelPosition(), PresentationCodes::kSLabelLayer);
  EXPECT_FALSE(settings.GetSLabelVisibility());
}

TEST(KeywordSubcommandTest, EachCLabelsFormGivesItsOption) {
  using Codes = TableEncryptionCodes;
  const std::vector<std::tuple<std::vector<Event>, Codes::CLabelOption>> cases = {
      {{Word("AUTO")}, Codes::kCLabelAuto},
      {{Key("ROWLABELS"), Word("OPPOSITE")}, Codes::kCLabelRowOpposite},
      {{Key("COLLABELS"), Word("opposite")}, Codes::kCLabelColOpposite},
      {{Key("ROWLABELS"), Word("LAYER")}, Codes::kCLabelRowLayer},
      {{Key("COLLABELS"), Word("LAYER")}, Codes::kCLabelColLayer},
  };
  for (const auto& [events, option] : cases) {
    TableSettings settings;
    const EventOutcome outcome = Request<SyntaxCLabelsSubcommand>(settings, events);
    ASSERT_FALSE(outcome.threw) << option;
    EXPECT_TRUE(outcome.reported.empty());
    EXPECT_EQ(settings.GetCLabelOption(), option);
  }
}

TEST(KeywordSubcommandTest, AChiSquareRequestReachesTheTable) {
  TableSettings settings;
  const EventOutcome outcome = Request<SyntaxSigTestSubcommand>(
      settings, {Key("TYPE"), Word("CHISQUARE"), Key("ALPHA"), Num(0.1, "0.10"), Key("CATEGORIES"), Word("SUBTOTALS"),
                 Key("INCLUDEMRSETS"), Word("NO")});
  ASSERT_FALSE(outcome.threw);
  ASSERT_EQ(settings.GetSigTestSettings().size(), 1u);
  const SigTestSettings first = settings.GetSigTestSettings()[0];
  EXPECT_EQ(first._type, TableEncryptionCodes::kSigTestChiSquare);
  EXPECT_EQ(first._alphaText, "0.10");
  EXPECT_TRUE(first._includeSubtotals);
  EXPECT_FALSE(first._includeMRSets);
  EXPECT_TRUE(settings.HasChiSquareTest());

  // An empty SIGTEST asks for nothing.
  TableSettings untouched;
  EXPECT_FALSE(Request<SyntaxSigTestSubcommand>(untouched, {}).threw);
  EXPECT_TRUE(untouched.GetSigTestSettings().empty());
}

// HIDESMALLCOUNTS alone hides below 5; COUNT is read as an integer: 5.9 is 5.
TEST(KeywordSubcommandTest, HideSmallCountsReadsItsCountAsAnInteger) {
  SyntaxHideSmallCountsSubcommand hide;
  ASSERT_FALSE(RunSubcommand(hide, {}, ".").threw);
  EXPECT_TRUE(hide.GetHideSmallCountsSet());
  EXPECT_EQ(hide.GetHideSmallCountsValue(), 5);
  EXPECT_EQ(hide.GetType(), kConverterHideSmallCounts);

  for (const auto& [value, text, expected] : {std::tuple{2.0, "2", 2}, {10.0, "10", 10}, {5.9, "5.9", 5}}) {
    SyntaxHideSmallCountsSubcommand counted;
    ASSERT_FALSE(RunSubcommand(counted, {Key("COUNT"), Num(value, text)}, ".").threw) << text;
    EXPECT_EQ(counted.GetHideSmallCountsValue(), expected) << text;
  }
  // ".5" gives the integer reader nothing to read (a command would end at its period).
  SyntaxHideSmallCountsSubcommand notNumber;
  EXPECT_EQ(RunSubcommand(notNumber, {Key("COUNT"), Num(0.5, ".5")}, ".").error.arguments,
            (std::vector<std::string>{"HIDESMALLCOUNTS", ".5"}));
}

// SMISSING: pairwise by default; its words may be abbreviated and are not case sensitive.
TEST(KeywordSubcommandTest, SMissingWordsAndTheirEffect) {
  SyntaxSMissingSubcommand defaults;
  EXPECT_TRUE(defaults.GetIsPairwise());
  const std::vector<std::tuple<const char*, bool>> cases = {{"listwise", false}, {"VAR", true}};
  for (const auto& [word, pairwise] : cases) {
    SyntaxSMissingSubcommand smissing;
    EXPECT_FALSE(RunSubcommand(smissing, {Word(word)}, ".").threw) << word;
    EXPECT_EQ(smissing.GetIsPairwise(), pairwise) << word;
  }
}

}  // namespace
