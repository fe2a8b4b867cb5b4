// SyntaxTablesCommandCommitTest.cpp - the global subcommands copied into every table when the command ends
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CategoriesTestSupport.h"
#include "parser/PresentationCodes.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"

namespace {

TEST(SyntaxTablesCommandCommitTest, FormatAndSMissingReachEveryTable) {
  KeptParse parse(
      "QUILT /FORMAT MINCOLWIDTH=50 MAXCOLWIDTH=200 EMPTY='-' MISSING='n/a' /SMISSING LISTWISE "
      "/TABLE q1 /TABLE q2.");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  ASSERT_EQ(parse.Root()->GetTable().size(), 2u);
  for (SyntaxTableSubcommand* table : parse.Root()->GetTable()) {
    const TableSettings& settings = table->GetTableSettings();
    // Widths in points, the default unit.
    EXPECT_EQ(settings.GetMinColumnWidthPoints(), 50.0);
    EXPECT_EQ(settings.GetMaxColumnWidthPoints(), 200.0);
    EXPECT_EQ(settings.GetEmptyStringType(), PresentationCodes::kString);
    EXPECT_EQ(settings.GetEmptyString(), "-");
    EXPECT_EQ(settings.GetMissingString(), "n/a");
    EXPECT_FALSE(settings.GetIsPairwise());
  }
}

TEST(SyntaxTablesCommandCommitTest, WithoutGlobalSubcommandsTheDefaultsStand) {
  KeptParse parse("QUILT /TABLE q1.");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  const TableSettings& settings = parse.Root()->GetTable()[0]->GetTableSettings();
  EXPECT_FALSE(settings.HasMinColumnWidth());
  EXPECT_FALSE(settings.HasMaxColumnWidth());
  EXPECT_EQ(settings.GetEmptyStringType(), PresentationCodes::kEmptyFormatZero);
  EXPECT_EQ(settings.GetMissingString(), ".");
  EXPECT_TRUE(settings.GetIsPairwise());
  EXPECT_EQ(parse.Variable("q1")->GetVLabelsOption(), PresentationCodes::kVLabelDefault);
}

TEST(SyntaxTablesCommandCommitTest, VLabelsReachVariablesAndSetsByNameOrIndex) {
  KeptParse parse(
      "QUILT /VLABELS VARIABLES=q1 DISPLAY=NAME /VLABELS VARIABLES=$media DISPLAY=NONE "
      "/TABLE q1 + q2 BY $media /TABLE q1.");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  EXPECT_EQ(parse.Variable("q1")->GetVLabelsOption(), PresentationCodes::kVLabelName);
  EXPECT_EQ(parse.Variable("q1", 1)->GetVLabelsOption(), PresentationCodes::kVLabelName);
  EXPECT_EQ(parse.Variable("q2")->GetVLabelsOption(), PresentationCodes::kVLabelDefault);
  EXPECT_EQ(parse.Variable("$media")->GetVLabelsOption(), PresentationCodes::kVLabelNone);
  // A later request for all replaces every earlier one.
  KeptParse all(
      "QUILT /VLABELS VARIABLES=q1 DISPLAY=NAME /VLABELS VARIABLES=ALL DISPLAY=BOTH /TABLE q1 + q2.");
  ASSERT_TRUE(all.Succeeded()) << all.Error().key;
  EXPECT_EQ(all.Variable("q1")->GetVLabelsOption(), PresentationCodes::kVLabelBoth);
  EXPECT_EQ(all.Variable("q2")->GetVLabelsOption(), PresentationCodes::kVLabelBoth);
}

}  // namespace
