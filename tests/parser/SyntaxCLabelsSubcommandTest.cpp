// SyntaxCLabelsSubcommandTest.cpp - CLABELS options and the words valid in each state
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
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

}  // namespace
