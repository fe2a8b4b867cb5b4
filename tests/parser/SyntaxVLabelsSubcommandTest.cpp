// SyntaxVLabelsSubcommandTest.cpp - VLABELS: an unknown name before TO, a range left open, and how requests
// merge (ranges, repeats and sets through whole commands are cases of diagnostics.txt)
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxVLabelsSubcommand.h"
#include "parser/VLabelsSettings.h"

namespace {

// Positions in the test dictionary: a 0, b 1, c 2, ..., w 7 (ParserTestSupport.h).
struct Fixture {
  VLabelsSettings settings;
  RecordingParent root{"QUILT"};
  SyntaxVLabelsSubcommand* vlabels = nullptr;

  Fixture() {
    vlabels = new SyntaxVLabelsSubcommand(settings);
    root.Add(vlabels);
    AttachTestDataSource(*vlabels);
  }

  EventOutcome Run(const std::vector<Event>& events) { return RunSubcommand(*vlabels, events, "."); }
};

TEST(SyntaxVLabelsSubcommandTest, UnknownNamesWarnAndCannotStartARange) {
  Fixture fixture;
  const EventOutcome outcome = fixture.Run({Key("VARIABLES"), Word("nosuch"), To(), Word("b")});
  ASSERT_EQ(outcome.reported.size(), 1u);
  EXPECT_EQ(outcome.reported[0].key, msg::kUnknownVariableInSubcommand);
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"nosuch", "VLABELS"}));
  ASSERT_TRUE(outcome.threw);
  EXPECT_EQ(outcome.error.key, msg::kUnknownKeyword);
  EXPECT_EQ(outcome.error.arguments, (std::vector<std::string>{"VLABELS", "TO"}));
}

// A range left open at the period (the other refusals are lines of diagnostics.txt).
TEST(SyntaxVLabelsSubcommandTest, AnOpenRangeEndsTheCommand) {
  Fixture openRange;
  const EventOutcome outcome = openRange.Run({Key("VARIABLES"), Word("a"), To()});
  EXPECT_EQ(outcome.error.key, msg::kUnknownKeyword);
  EXPECT_EQ(outcome.error.arguments, (std::vector<std::string>{"VLABELS", "."}));
}

TEST(SyntaxVLabelsSubcommandTest, LaterRequestsWinAndAllWipesEarlierOnes) {
  VLabelsSettings settings;
  settings.SetVLabels(std::vector<int>{0, 1}, PresentationCodes::kVLabelName);
  settings.SetVLabels(std::vector<int>{1}, PresentationCodes::kVLabelLabel);
  settings.SetVLabels(std::vector<std::string>{"$dich"}, PresentationCodes::kVLabelName);
  settings.SetVLabels(std::vector<std::string>{"$DICH"}, PresentationCodes::kVLabelNone);
  EXPECT_EQ(settings.GetByIndex().at(0), PresentationCodes::kVLabelName);
  EXPECT_EQ(settings.GetByIndex().at(1), PresentationCodes::kVLabelLabel);
  ASSERT_EQ(settings.GetBySet().size(), 1u);
  EXPECT_EQ(settings.GetBySet()[0]._option, PresentationCodes::kVLabelNone);
  settings.SetVLabels(PresentationCodes::kVLabelBoth);
  EXPECT_TRUE(settings.GetByIndex().empty());
  EXPECT_TRUE(settings.GetBySet().empty());
  EXPECT_TRUE(settings.IsForAll());
  EXPECT_FALSE(settings.IsEmpty());
}

}  // namespace
