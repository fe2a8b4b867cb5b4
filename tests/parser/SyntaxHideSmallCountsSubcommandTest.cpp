// SyntaxHideSmallCountsSubcommandTest.cpp - HIDESMALLCOUNTS and its COUNT threshold
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxHideSmallCountsSubcommand.h"

namespace {

TEST(SyntaxHideSmallCountsSubcommandTest, PresenceAloneHidesBelowFive) {
  SyntaxHideSmallCountsSubcommand hide;
  ASSERT_FALSE(RunSubcommand(hide, {}, ".").threw);
  EXPECT_TRUE(hide.GetHideSmallCountsSet());
  EXPECT_EQ(hide.GetHideSmallCountsValue(), 5);
  EXPECT_EQ(hide.GetType(), kConverterHideSmallCounts);
}

TEST(SyntaxHideSmallCountsSubcommandTest, CountIsReadAsAnInteger) {
  struct Case {
    double value;
    const char* text;
    int expected;  // 0: InvalidHideSmallCountValue
  };
  const std::vector<Case> cases = {{2, "2", 2}, {10, "10", 10},  {5.9, "5.9", 5},
                                   {1, "1", 0}, {1.9, "1.9", 0}, {-4, "-4", 0}};
  for (const Case& row : cases) {
    SyntaxHideSmallCountsSubcommand hide;
    const EventOutcome outcome = RunSubcommand(hide, {Key("COUNT"), Num(row.value, row.text)}, ".");
    if (row.expected == 0) {
      ASSERT_TRUE(outcome.threw) << row.text;
      // The key stands by itself, with no placeholder.
      EXPECT_EQ(outcome.error.key, msg::kInvalidHideSmallCountValue);
      EXPECT_TRUE(outcome.error.arguments.empty());
      continue;
    }
    ASSERT_FALSE(outcome.threw) << row.text;
    EXPECT_EQ(hide.GetHideSmallCountsValue(), row.expected) << row.text;
  }
}

TEST(SyntaxHideSmallCountsSubcommandTest, MisplacedAndRepeatedValues) {
  SyntaxHideSmallCountsSubcommand noKeyword;
  EXPECT_EQ(RunSubcommand(noKeyword, {Num(3, "3")}, ".").error.arguments,
            (std::vector<std::string>{"HIDESMALLCOUNTS", "3"}));
  SyntaxHideSmallCountsSubcommand open;
  EXPECT_EQ(RunSubcommand(open, {Key("COUNT")}, ".").error.key, msg::kIncompleteSubcommand);
  SyntaxHideSmallCountsSubcommand notNumber;
  // ".5" gives sscanf no integer to read.
  EXPECT_EQ(RunSubcommand(notNumber, {Key("COUNT"), Num(0.5, ".5")}, ".").error.arguments,
            (std::vector<std::string>{"HIDESMALLCOUNTS", ".5"}));
  SyntaxHideSmallCountsSubcommand repeated;
  const EventOutcome outcome = RunSubcommand(repeated, {Key("COUNT"), Num(3, "3"), Key("COUNT"), Num(7, "7")}, ".");
  ASSERT_EQ(outcome.reported.size(), 1u);
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"HIDESMALLCOUNTS", "COUNT"}));
  EXPECT_EQ(repeated.GetHideSmallCountsValue(), 7);
}

}  // namespace
