// SyntaxSigTestSubcommandTest.cpp - SIGTEST keywords, its ALPHA level, and the chi-square request it
// registers
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxSigTestSubcommand.h"
#include "parser/TableSettings.h"

namespace {

// SIGTEST shares the table's registry and the ALPHA rules.
TEST(SyntaxSigTestSubcommandTest, ChiSquareRequestsAndTheirChecks) {
  TableSettings settings;
  RecordingParent table("TABLE");
  auto request = [&](std::vector<Event> events) {
    auto* sigTest = new SyntaxSigTestSubcommand(settings);
    table.Add(sigTest);
    return RunSubcommand(*sigTest, events, ".");
  };
  EventOutcome outcome = request({Key("TYPE"), Word("CHISQUARE"), Key("ALPHA"), Num(0.1, "0.10"),
                                  Key("CATEGORIES"), Word("SUBTOTALS"), Key("INCLUDEMRSETS"), Word("NO")});
  ASSERT_FALSE(outcome.threw);
  ASSERT_EQ(settings.GetSigTestSettings().size(), 1u);
  const SigTestSettings first = settings.GetSigTestSettings()[0];
  EXPECT_EQ(first._type, TableEncryptionCodes::kSigTestChiSquare);
  EXPECT_EQ(first._alphaText, "0.10");
  EXPECT_TRUE(first._includeSubtotals);
  EXPECT_FALSE(first._includeMRSets);
  EXPECT_TRUE(settings.HasChiSquareTest());

  outcome = request({Key("TYPE"), Word("CHISQUARE")});
  ASSERT_EQ(outcome.reported.size(), 1u);
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"SIGTEST", "Chi-square"}));
  EXPECT_EQ(settings.GetSigTestSettings().at(0)._alphaText, "0.05");

  outcome = request({Key("ALPHA"), Num(0.01, "0.01")});
  ASSERT_TRUE(outcome.threw);
  EXPECT_EQ(outcome.error.key, msg::kIncompleteSubcommand);
  EXPECT_EQ(outcome.error.arguments, (std::vector<std::string>{".", "SIGTEST"}));

  outcome = request({Key("ALPHA"), Num(1, "1")});
  EXPECT_EQ(outcome.error.key, msg::kInvalidAlpha);

  // SIGTEST takes one level only, and no COMPARETEST keyword.
  outcome = request({Key("TYPE"), Word("CHISQUARE"), Key("ALPHA"), Num(0.05, "0.05"), Num(0.01, "0.01")});
  EXPECT_EQ(outcome.error.key, msg::kUnknownKeyword);
  outcome = request({Key("MERGE"), Word("YES")});
  EXPECT_EQ(outcome.error.arguments, (std::vector<std::string>{"SIGTEST", "MERGE"}));

  outcome = request({Key("TYPE"), Word("CHISQUARE"), Key("TYPE"), Word("CHISQUARE")});
  ASSERT_FALSE(outcome.threw);
  EXPECT_EQ(outcome.reported.at(0).arguments, (std::vector<std::string>{"SIGTEST", "TYPE"}));

  // An empty SIGTEST asks for nothing.
  TableSettings untouched;
  SyntaxSigTestSubcommand empty(untouched);
  EXPECT_FALSE(RunSubcommand(empty, {}, ".").threw);
  EXPECT_TRUE(untouched.GetSigTestSettings().empty());
}

}  // namespace
