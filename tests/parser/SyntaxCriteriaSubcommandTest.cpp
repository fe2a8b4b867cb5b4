// SyntaxCriteriaSubcommandTest.cpp - CRITERIA CILEVEL bounds and what reaches the table
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxCriteriaSubcommand.h"
#include "parser/TableSettings.h"

namespace {

EventOutcome Request(TableSettings& settings, const std::vector<Event>& events) {
  RecordingParent table("TABLE");
  auto* criteria = new SyntaxCriteriaSubcommand(settings);
  table.Add(criteria);
  return RunSubcommand(*criteria, events);
}

TEST(SyntaxCriteriaSubcommandTest, LevelIsKeptWithItsText) {
  TableSettings settings;
  EXPECT_EQ(settings.GetCILevelString(), "95");
  ASSERT_FALSE(Request(settings, {Key("CILEVEL"), Num(99.5, "99.50")}).threw);
  EXPECT_EQ(settings.GetCILevelValue(), 99.5);
  EXPECT_EQ(settings.GetCILevelString(), "99.50");

  TableSettings untouched;
  ASSERT_FALSE(Request(untouched, {}).threw);
  EXPECT_EQ(untouched.GetCILevelValue(), 95.0);
}

TEST(SyntaxCriteriaSubcommandTest, BoundsAreOpen) {
  for (const double value : {0.0, 100.0, -1.0, 150.0}) {
    TableSettings settings;
    const std::string text = std::to_string(value);
    const EventOutcome outcome = Request(settings, {Key("CILEVEL"), Num(value, text)});
    ASSERT_TRUE(outcome.threw) << text;
    EXPECT_EQ(outcome.error.key, msg::kInvalidCiLevel);
    EXPECT_EQ(outcome.error.arguments, (std::vector<std::string>{"CRITERIA", text}));
  }
}

TEST(SyntaxCriteriaSubcommandTest, RepeatsAndMisplacedValues) {
  TableSettings settings;
  const EventOutcome repeated =
      Request(settings, {Key("CILEVEL"), Num(90, "90"), Key("CILEVEL"), Num(80, "80")});
  ASSERT_EQ(repeated.reported.size(), 1u);
  EXPECT_EQ(repeated.reported[0].arguments, (std::vector<std::string>{"CRITERIA", "CILEVEL"}));
  EXPECT_EQ(settings.GetCILevelString(), "80");

  EXPECT_EQ(Request(settings, {Num(90, "90")}).error.arguments, (std::vector<std::string>{"CRITERIA", "90"}));
  EXPECT_EQ(Request(settings, {Key("ALPHA")}).error.arguments,
            (std::vector<std::string>{"CRITERIA", "ALPHA"}));
  EXPECT_EQ(Request(settings, {Key("CILEVEL")}).error.key, msg::kIncompleteSubcommand);
}

}  // namespace
