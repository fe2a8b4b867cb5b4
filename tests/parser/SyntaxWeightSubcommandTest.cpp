// SyntaxWeightSubcommandTest.cpp - WEIGHT picks a numeric base weight and hands it to the command root
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/SyntaxWeightSubcommand.h"

namespace {

struct Fixture {
  SyntaxTablesCommand root;
  SyntaxWeightSubcommand* weight = nullptr;

  Fixture() {
    weight = new SyntaxWeightSubcommand(&root);
    root.Add(weight);
    AttachTestDataSource(*weight);  // also clears the run's base weight
  }

  EventOutcome Run(const std::vector<Event>& events) { return RunSubcommand(*weight, events, "."); }
};

TEST(SyntaxWeightSubcommandTest, ANumericVariableBecomesTheBaseWeight) {
  Fixture fixture;
  ASSERT_FALSE(fixture.Run({Key("VARIABLE"), Word("w")}).threw);
  EXPECT_EQ(SyntaxConverter::GetBaseWeightVarIndex(), 7);  // w is the eighth variable of the test dictionary
  EXPECT_EQ(fixture.root.GetBaseWeightVarName(), "w");
  EXPECT_TRUE(fixture.weight->IsDataBaseWeighted());
}

// A string variable is refused and no base weight is set (the other refusals are lines of
// diagnostics.txt, as is a repeated VARIABLE).
TEST(SyntaxWeightSubcommandTest, AStringVariableIsRefused) {
  Fixture fixture;
  const EventOutcome outcome = fixture.Run({Key("VARIABLE"), Word("s")});
  ASSERT_TRUE(outcome.threw);
  EXPECT_EQ(outcome.error.key, msg::kVariableIsNotNumeric);
  EXPECT_EQ(outcome.error.arguments, (std::vector<std::string>{"WEIGHT", "s"}));
  EXPECT_EQ(SyntaxConverter::GetBaseWeightVarIndex(), -1);
}

}  // namespace
