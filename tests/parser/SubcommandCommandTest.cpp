// SubcommandCommandTest.cpp - the global subcommands through one whole command (the table-level ones:
// DuplicateWarningTest, the parse-dump goldens and SyntaxTableSubcommandValidationTest)
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "parser/SyntaxTablesCommand.h"

namespace {

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
