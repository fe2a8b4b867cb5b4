// SyntaxCriteriaSubcommandTest.cpp - what CRITERIA CILEVEL hands to the table (its errors are lines of diagnostics.txt)
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "parser/SyntaxCriteriaSubcommand.h"
#include "parser/TableSettings.h"

namespace {

EventOutcome Request(TableSettings& settings, const std::vector<Event>& events) {
  RecordingParent table("TABLE");
  auto* criteria = new SyntaxCriteriaSubcommand(settings);
  table.Add(criteria);
  return RunSubcommand(*criteria, events);
}

TEST(SyntaxCriteriaSubcommandTest, LevelIsKeptWithItsText) {
  TableSettings settings;
  EXPECT_EQ(settings.GetCILevelString(), "95");
  ASSERT_FALSE(Request(settings, {Key("CILEVEL"), Num(99.5, "99.50")}).threw);
  EXPECT_EQ(settings.GetCILevelValue(), 99.5);
  EXPECT_EQ(settings.GetCILevelString(), "99.50");

  TableSettings untouched;
  ASSERT_FALSE(Request(untouched, {}).threw);
  EXPECT_EQ(untouched.GetCILevelValue(), 95.0);
}

}  // namespace
