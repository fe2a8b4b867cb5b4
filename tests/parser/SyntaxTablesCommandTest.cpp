// SyntaxTablesCommandTest.cpp - the command root: which subcommand opens where, duplicates, the base weight
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "SubcommandTestSupport.h"
#include "parser/SyntaxHideSmallCountsSubcommand.h"
#include "host/data/HostRecords.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/TableSettings.h"
#include "parser/VLabelsSettings.h"

namespace {


TEST(SyntaxTablesCommand, RepeatedVLabelsAndWeightAreNoDuplicates) {
  const ParseOutcome outcome =
      ParseCommand("QUILT /VLABELS VARIABLES=a DISPLAY=NAME /VLABELS VARIABLES=b DISPLAY=LABEL /TABLE a.");
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  EXPECT_TRUE(outcome.reported.empty());
}

TEST(SyntaxTablesCommand, TableLevelSubcommandsOpenAfterTheirTable) {
  const ParseOutcome outcome = ParseCommand(
      "QUILT /TABLE a /TITLES TITLE='x' /SLABELS POSITION=ROW /CLABELS AUTO /CRITERIA CILEVEL=90 "
      "/COMPARETEST TYPE=PROP /SIGTEST TYPE=CHISQUARE /TABLE b.");
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  EXPECT_EQ(outcome.tableNumbers, (std::vector<int>{1, 2}));
}

TEST(SyntaxTablesCommand, ABaseWeightReplacesTheCaseWeightForTheRun) {
  // The host's weighting word is positive while case weighting is active; a valid base
  // weight clears it (the entry restores it afterwards).
  const std::int64_t saved = ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset);
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, 1);
  SyntaxTablesCommand root;
  root.SetBaseWeightVariable(3, "d");
  EXPECT_EQ(ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset), 0);
  EXPECT_EQ(SyntaxConverter::GetBaseWeightVarIndex(), 3);
  EXPECT_EQ(root.GetBaseWeightVarName(), "d");

  // An unknown variable keeps its name for messages but changes nothing.
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, 1);
  SyntaxTablesCommand other;
  other.SetBaseWeightVariable(-1, "nosuch");
  EXPECT_EQ(ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset), 1);
  EXPECT_EQ(SyntaxConverter::GetBaseWeightVarIndex(), -1);
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, saved);
}

// Through whole commands: only a WEIGHT that names a numeric variable clears the word, and
// only a positive word (case weighting on) is cleared; the entry puts it back after the run.
TEST(SyntaxTablesCommand, TheHostWeightWordIsClearedOnlyByAValidBaseWeight) {
  struct Row {
    const char* command;
    std::int64_t before;
    std::int64_t after;
    bool thrown;
  };
  const Row rows[] = {
      {"QUILT /WEIGHT VARIABLE=w /TABLE a.", 1, 0, false},
      {"QUILT /WEIGHT VARIABLE=w /TABLE a.", 3, 0, false},
      {"QUILT /WEIGHT VARIABLE=w /TABLE a.", 0, 0, false},
      {"QUILT /WEIGHT VARIABLE=w /TABLE a.", -2, -2, false},
      {"QUILT /TABLE a.", 1, 1, false},
      {"QUILT /WEIGHT VARIABLE=nosuch /TABLE a.", 1, 1, true},
      {"QUILT /WEIGHT VARIABLE=s /TABLE a.", 1, 1, true},
  };
  const std::int64_t saved = ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset);
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.command) + " with the word at " + std::to_string(row.before));
    WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, row.before);
    const EventOutcome outcome = ParseAndInspect(row.command, [](SyntaxTablesCommand&) {});
    EXPECT_EQ(outcome.threw, row.thrown) << outcome.error.key;
    EXPECT_EQ(ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset), row.after);
  }
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, saved);
}

TEST(SyntaxTablesCommand, WithoutHideSmallCountsNothingIsHidden) {
  SyntaxTablesCommand root;
  EXPECT_FALSE(root.GetHideSmallCountsSet());
  EXPECT_EQ(root.GetHideSmallCountsValue(), 0);
  EXPECT_TRUE(root.GetTable().empty());
}

TEST(SyntaxTablesCommand, SettingsStartEmptyOnTheRootAndEachTable) {
  SyntaxTablesCommand root;
  EXPECT_TRUE(root.GetVLabelsSettings().IsEmpty());
  auto* table = dynamic_cast<SyntaxTableSubcommand*>(root.SubCommandString("TABLE"));
  ASSERT_NE(table, nullptr);
  EXPECT_FALSE(table->GetTableSettings().HasChiSquareTest());
  EXPECT_EQ(root.GetTable().size(), 1u);
}

TEST(SyntaxTablesCommand, HideSmallCountsIsReadFromTheLatestSubcommand) {
  SyntaxTablesCommand root;
  auto* hide = dynamic_cast<SyntaxHideSmallCountsSubcommand*>(root.SubCommandString("HIDESMALLCOUNTS"));
  ASSERT_NE(hide, nullptr);
  const EventOutcome outcome = RunEvents([&] {
    Deliver(*hide, {Key("COUNT"), Num(10, "10")});
    hide->ValidateAndCommit(".");
  });
  ASSERT_FALSE(outcome.threw);
  EXPECT_TRUE(root.GetHideSmallCountsSet());
  EXPECT_EQ(root.GetHideSmallCountsValue(), 10);
}

}  // namespace
