// SyntaxCLabelsSubcommandTest.cpp - CLABELS options and the words valid in each state
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxCLabelsSubcommand.h"
#include "parser/TableSettings.h"

namespace {

struct Outcome {
  EventOutcome events;
  TableEncryptionCodes::CLabelOption option;
};

Outcome Request(const std::vector<Event>& events) {
  TableSettings settings;
  RecordingParent table("TABLE");
  auto* clabels = new SyntaxCLabelsSubcommand(settings);
  table.Add(clabels);
  Outcome outcome;
  outcome.events = RunSubcommand(*clabels, events);
  outcome.option = settings.GetCLabelOption();
  return outcome;
}

TEST(SyntaxCLabelsSubcommandTest, EachFormGivesItsOption) {
  struct Case {
    std::vector<Event> events;
    TableEncryptionCodes::CLabelOption option;
  };
  const std::vector<Case> cases = {
      {{Word("AUTO")}, TableEncryptionCodes::kCLabelAuto},
      {{Key("ROWLABELS"), Word("OPPOSITE")}, TableEncryptionCodes::kCLabelRowOpposite},
      {{Key("COLLABELS"), Word("opposite")}, TableEncryptionCodes::kCLabelColOpposite},
      {{Key("ROWLABELS"), Word("LAYER")}, TableEncryptionCodes::kCLabelRowLayer},
      {{Key("COLLABELS"), Word("LAYER")}, TableEncryptionCodes::kCLabelColLayer},
  };
  for (const Case& row : cases) {
    const Outcome outcome = Request(row.events);
    ASSERT_FALSE(outcome.events.threw) << row.option;
    EXPECT_TRUE(outcome.events.reported.empty());
    EXPECT_EQ(outcome.option, row.option);
  }
}

TEST(SyntaxCLabelsSubcommandTest, ASecondOptionWarnsAndWins) {
  Outcome outcome = Request({Key("ROWLABELS"), Word("OPPOSITE"), Key("COLLABELS"), Word("LAYER")});
  ASSERT_EQ(outcome.events.reported.size(), 1u);
  EXPECT_EQ(outcome.events.reported[0].arguments, (std::vector<std::string>{"CLABELS", "COLLABELS"}));
  EXPECT_EQ(outcome.option, TableEncryptionCodes::kCLabelColLayer);

  outcome = Request({Key("ROWLABELS"), Word("LAYER"), Word("AUTO")});
  ASSERT_EQ(outcome.events.reported.size(), 1u);
  EXPECT_EQ(outcome.events.reported[0].arguments, (std::vector<std::string>{"CLABELS", "AUTO"}));
  EXPECT_EQ(outcome.option, TableEncryptionCodes::kCLabelAuto);
}

TEST(SyntaxCLabelsSubcommandTest, WordsOutOfPlace) {
  struct Case {
    std::vector<Event> events;
    std::string offending;
  };
  const std::vector<Case> cases = {
      {{Word("OPPOSITE")}, "OPPOSITE"},  // only after ROWLABELS or COLLABELS
      {{Word("LAYER")}, "LAYER"},       {{Key("ROWLABELS"), Word("AUTO")}, "AUTO"},
      {{Key("AUTO")}, "AUTO"},          {{Key("ROWLABELS"), Key("COLLABELS")}, "COLLABELS"},
  };
  for (const Case& row : cases) {
    const Outcome outcome = Request(row.events);
    ASSERT_TRUE(outcome.events.threw) << row.offending;
    EXPECT_EQ(outcome.events.error.key, msg::kUnknownKeyword);
    EXPECT_EQ(outcome.events.error.arguments, (std::vector<std::string>{"CLABELS", row.offending}));
  }
  EXPECT_EQ(Request({Key("COLLABELS")}).events.error.key, msg::kIncompleteSubcommand);
}

}  // namespace
