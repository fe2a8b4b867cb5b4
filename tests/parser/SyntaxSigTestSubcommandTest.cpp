// SyntaxSigTestSubcommandTest.cpp - SIGTEST keywords, its ALPHA level, and the chi-square request it
// registers
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "parser/SyntaxSigTestSubcommand.h"
#include "parser/TableSettings.h"

namespace {

// What a SIGTEST hands to the table (its errors and repeats are lines of diagnostics.txt and
// rows of the duplicate-warning table).
TEST(SyntaxSigTestSubcommandTest, AChiSquareRequestReachesTheTable) {
  TableSettings settings;
  RecordingParent table("TABLE");
  auto* sigTest = new SyntaxSigTestSubcommand(settings);
  table.Add(sigTest);
  const EventOutcome outcome =
      RunSubcommand(*sigTest,
                    {Key("TYPE"), Word("CHISQUARE"), Key("ALPHA"), Num(0.1, "0.10"), Key("CATEGORIES"),
                     Word("SUBTOTALS"), Key("INCLUDEMRSETS"), Word("NO")},
                    ".");
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
  SyntaxSigTestSubcommand empty(untouched);
  EXPECT_FALSE(RunSubcommand(empty, {}, ".").threw);
  EXPECT_TRUE(untouched.GetSigTestSettings().empty());
}

}  // namespace
