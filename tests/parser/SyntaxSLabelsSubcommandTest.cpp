// SyntaxSLabelsSubcommandTest.cpp - SLABELS position and visibility, and repeats across subcommands
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxSLabelsSubcommand.h"
#include "parser/TableSettings.h"

namespace {

EventOutcome Request(TableSettings& settings, RecordingParent& table, const std::vector<Event>& events) {
  auto* slabels = new SyntaxSLabelsSubcommand(settings);
  table.Add(slabels);
  return RunSubcommand(*slabels, events);
}

TEST(SyntaxSLabelsSubcommandTest, PositionAndVisibilityReachTheTable) {
  TableSettings settings;
  RecordingParent table("TABLE");
  EXPECT_FALSE(settings.IsSLabelPositionSet());
  ASSERT_FALSE(Request(settings, table, {Key("POSITION"), Word("ROW"), Key("VISIBLE"), Word("NO")}).threw);
  EXPECT_EQ(settings.GetSLabelPosition(), PresentationCodes::kSLabelRow);
  EXPECT_TRUE(settings.IsSLabelPositionSet());
  EXPECT_FALSE(settings.GetSLabelVisibility());
  EXPECT_TRUE(settings.IsSLabelVisibilitySet());
  EXPECT_EQ(table.GetChildren().at(0)->GetType(), kConverterSLabels);

  // Only what is given is committed: a second SLABELS with POSITION alone warns for it.
  const EventOutcome second = Request(settings, table, {Key("POSITION"), Word("LAYER")});
  ASSERT_EQ(second.reported.size(), 1u);
  EXPECT_EQ(second.reported[0].arguments, (std::vector<std::string>{"SLABELS", "POSITION"}));
  EXPECT_EQ(settings.GetSLabelPosition(), PresentationCodes::kSLabelLayer);
  EXPECT_FALSE(settings.GetSLabelVisibility());
}

}  // namespace
