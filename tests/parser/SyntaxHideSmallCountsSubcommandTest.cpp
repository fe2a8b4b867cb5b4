// SyntaxHideSmallCountsSubcommandTest.cpp - HIDESMALLCOUNTS and its COUNT threshold
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "SubcommandTestSupport.h"
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

// COUNT is read as an integer: 5.9 is 5. The refused values are lines of diagnostics.txt.
TEST(SyntaxHideSmallCountsSubcommandTest, CountIsReadAsAnInteger) {
  for (const auto& [value, text, expected] : {std::tuple{2.0, "2", 2}, {10.0, "10", 10}, {5.9, "5.9", 5}}) {
    SyntaxHideSmallCountsSubcommand hide;
    ASSERT_FALSE(RunSubcommand(hide, {Key("COUNT"), Num(value, text)}, ".").threw) << text;
    EXPECT_EQ(hide.GetHideSmallCountsValue(), expected) << text;
  }
  // ".5" gives the integer reader nothing to read (a command would end at its period).
  SyntaxHideSmallCountsSubcommand notNumber;
  EXPECT_EQ(RunSubcommand(notNumber, {Key("COUNT"), Num(0.5, ".5")}, ".").error.arguments,
            (std::vector<std::string>{"HIDESMALLCOUNTS", ".5"}));
}

}  // namespace
