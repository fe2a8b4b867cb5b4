// KeywordSubcommandTest.cpp - what a command cannot hand a keyword subcommand whole (what they hand on
// when valid, their refusals and repeats are cases of diagnostics.txt)
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "parser/SyntaxHideSmallCountsSubcommand.h"

namespace {

// ".5" gives the integer reader of HIDESMALLCOUNTS nothing to read (a command would end at
// its period).
TEST(KeywordSubcommandTest, HideSmallCountsRefusesANumberWithoutIntegerPart) {
  SyntaxHideSmallCountsSubcommand notNumber;
  EXPECT_EQ(RunSubcommand(notNumber, {Key("COUNT"), Num(0.5, ".5")}, ".").error.arguments,
            (std::vector<std::string>{"HIDESMALLCOUNTS", ".5"}));
}

}  // namespace
