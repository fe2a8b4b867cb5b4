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
  EXPECT_EQ(SyntaxConverter::GetBaseWeightVarIndex(), 4);  // w is the fifth variable of the test dictionary
  EXPECT_EQ(fixture.root.GetBaseWeightVarName(), "w");
  EXPECT_TRUE(fixture.weight->IsDataBaseWeighted());
}

TEST(SyntaxWeightSubcommandTest, RejectedVariables) {
  struct Case {
    std::vector<Event> events;
    const char* key;
    std::vector<std::string> arguments;
  };
  const std::vector<Case> cases = {
      {{Key("VARIABLE"), Word("s")}, msg::kVariableIsNotNumeric, {"WEIGHT", "s"}},
      {{Key("VARIABLE"), Word("nosuch")}, msg::kUnrecognizedVariableInSubcommand, {"nosuch", "WEIGHT"}},
      {{Key("VARIABLE")}, msg::kIncompleteSubcommand, {".", "WEIGHT"}},
      {{Key("VAR"), Num(1, "1")}, msg::kUnknownKeyword, {"WEIGHT", "1"}},
      {{Word("w")}, msg::kUnknownKeyword, {"WEIGHT", "w"}},
      {{Key("CASES")}, msg::kUnknownKeyword, {"WEIGHT", "CASES"}},
  };
  for (const Case& row : cases) {
    Fixture fixture;
    const EventOutcome outcome = fixture.Run(row.events);
    ASSERT_TRUE(outcome.threw) << row.arguments.back();
    EXPECT_EQ(outcome.error.key, row.key);
    EXPECT_EQ(outcome.error.arguments, row.arguments);
    EXPECT_EQ(SyntaxConverter::GetBaseWeightVarIndex(), -1);
  }
}

TEST(SyntaxWeightSubcommandTest, ARepeatedVariableWarnsAndTheLaterOneStands) {
  Fixture fixture;
  const EventOutcome outcome = fixture.Run({Key("VARIABLE"), Word("a"), Key("VARIABLE"), Word("b")});
  ASSERT_FALSE(outcome.threw);
  ASSERT_EQ(outcome.reported.size(), 1u);
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"WEIGHT", "VARIABLE"}));
  EXPECT_EQ(fixture.root.GetBaseWeightVarName(), "b");
  EXPECT_EQ(SyntaxConverter::GetBaseWeightVarIndex(), 2);
}

}  // namespace
