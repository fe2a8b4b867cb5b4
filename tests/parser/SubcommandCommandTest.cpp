// SubcommandCommandTest.cpp - the statistics clause and the subcommands through whole commands
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxTablesCommand.h"

namespace {

// The finished tree, one converter per line, with the fields each converter dumps.
std::string DumpOf(const std::string& command, EventOutcome& outcome) {
  std::string dump;
  outcome = ParseAndInspect(command, [&dump](SyntaxTablesCommand& root) {
    std::ostringstream out;
    root.Dump(out);
    dump = out.str();
  });
  return dump;
}

TEST(SubcommandCommandTest, TableLevelSubcommandsKeepWhatTheCommandSaid) {
  EventOutcome outcome;
  const std::string dump = DumpOf(
      "QUILT /TABLE a BY b [C] /COMPARETEST TYPE=PROP ALPHA=0.05 0.01 SIGDIGS=4 /SIGTEST TYPE=CHISQUARE ALPHA=0.1"
      " /TITLES TITLE=')TABLE' 'second line' /CRITERIA CILEVEL=90 /SLABELS POSITION=ROW"
      " /CLABELS COLLABELS=LAYER.",
      outcome);
  ASSERT_FALSE(outcome.threw) << outcome.error.key;
  // Moving the column labels to the layers leaves no columns to test: both tests are
  // dropped with a warning, in the order they were requested.
  ASSERT_EQ(outcome.reported.size(), 2u);
  EXPECT_EQ(outcome.reported[0].key, msg::kColumnProportionsMovedLabels);
  EXPECT_EQ(outcome.reported[1].key, msg::kChiSquareMovedLabels);
  // The smaller level comes first; the texts stay as written.
  EXPECT_NE(dump.find("type=2 alpha=0.01 alpha2=0.05 adjust=1 merge=0 showSig=0 sigDigits=4"),
            std::string::npos)
      << dump;
  EXPECT_NE(dump.find("type=1 alpha=0.1"), std::string::npos) << dump;
  // The expression text, upper-cased, in place of )TABLE; the literals are two lines.
  EXPECT_NE(dump.find("text=\"A BY B\nsecond line\""), std::string::npos) << dump;
  EXPECT_NE(dump.find("ciLevel=90"), std::string::npos) << dump;
  EXPECT_NE(dump.find("position=1 visible=1"), std::string::npos) << dump;
  EXPECT_NE(dump.find("option=4 set=1"), std::string::npos) << dump;  // COLLABELS=LAYER
}

TEST(SubcommandCommandTest, StatisticsKeepTheirOptions) {
  EventOutcome outcome;
  const std::string dump =
      DumpOf("QUILT /TABLE a [PTILE 25 'Quartile' COMMA8.2, MEAN.LCL 'Low )CILEVEL'].", outcome);
  ASSERT_FALSE(outcome.threw) << outcome.error.key;
  EXPECT_NE(dump.find("name=PTILE 25 label=\"Quartile\""), std::string::npos) << dump;
  EXPECT_NE(dump.find("format=3/40.2"), std::string::npos) << dump;
  EXPECT_NE(dump.find("label=\"Low ^1\" labelDefault=0 labelParameter=1"), std::string::npos) << dump;
}

TEST(SubcommandCommandTest, GlobalSubcommandsReachTheRoot) {
  std::string weightName;
  std::ostringstream dump;
  const EventOutcome outcome = ParseAndInspect(
      "QUILT /VLABELS VARIABLES=a TO c DISPLAY=NAME /WEIGHT VARIABLE=w /HIDESMALLCOUNTS COUNT=3"
      " /FORMAT MINCOLWIDTH=1 UNITS=INCHES /SMISSING LISTWISE /TABLE a.",
      [&](SyntaxTablesCommand& root) {
        weightName = root.GetBaseWeightVarName();
        root.Dump(dump);
      });
  ASSERT_FALSE(outcome.threw) << outcome.error.key;
  EXPECT_TRUE(outcome.reported.empty());
  EXPECT_EQ(weightName, "w");
  EXPECT_EQ(SyntaxConverter::GetBaseWeightVarIndex(), 4);  // w is the fifth variable of the test dictionary
  EXPECT_NE(dump.str().find("hide=1 value=3"), std::string::npos) << dump.str();
  // 1 inch is 72 points; once converted the widths are in points.
  EXPECT_NE(dump.str().find("min=1 minPoints=72 max=default maxPoints=0 units=0"), std::string::npos)
      << dump.str();
  EXPECT_NE(dump.str().find("pairwise=0"), std::string::npos) << dump.str();
  EXPECT_NE(dump.str().find("all=0 option=1 indices=1,2,3"), std::string::npos) << dump.str();  // a TO c
}

}  // namespace
