// SyntaxSMissingSubcommandTest.cpp - SMISSING chooses pairwise or listwise deletion
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxSMissingSubcommand.h"

namespace {

TEST(SyntaxSMissingSubcommandTest, WordsAndTheirEffect) {
  SyntaxSMissingSubcommand defaults;
  EXPECT_TRUE(defaults.GetIsPairwise());

  SyntaxSMissingSubcommand listwise;
  EXPECT_FALSE(RunEvents([&] { listwise.String("listwise"); }).threw);
  EXPECT_FALSE(listwise.GetIsPairwise());

  SyntaxSMissingSubcommand abbreviated;
  EXPECT_FALSE(RunEvents([&] { abbreviated.String("VAR"); }).threw);  // keywords may be abbreviated
  EXPECT_TRUE(abbreviated.GetIsPairwise());

  SyntaxSMissingSubcommand unknown;
  const EventOutcome outcome = RunEvents([&] { unknown.String("PAIRWISE"); });
  ASSERT_TRUE(outcome.threw);
  EXPECT_EQ(outcome.error.arguments, (std::vector<std::string>{"SMISSING", "PAIRWISE"}));
}

}  // namespace
