// SyntaxFormatSubcommandTest.cpp - FORMAT widths in points, their bounds and order, and the cell texts
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "SubcommandTestSupport.h"
#include "parser/PresentationCodes.h"
#include "parser/SyntaxFormatSubcommand.h"

namespace {

struct Fixture {
  RecordingParent root{"QUILT"};
  SyntaxFormatSubcommand* format = nullptr;

  Fixture() {
    format = new SyntaxFormatSubcommand;
    root.Add(format);
  }

  EventOutcome Run(const std::vector<Event>& events) { return RunSubcommand(*format, events, "."); }
};

// The bounds are inclusive, in points (the refused widths are lines of diagnostics.txt).
TEST(SyntaxFormatSubcommandTest, WidthBoundsAreInclusive) {
  for (const auto& [keyword, value] :
       {std::pair{"MINCOLWIDTH", 15.0}, {"MINCOLWIDTH", 2000.0}, {"MAXCOLWIDTH", 2000.0}}) {
    Fixture fixture;
    const EventOutcome outcome = fixture.Run({Key(keyword), Num(value, std::to_string(value))});
    EXPECT_FALSE(outcome.threw) << keyword << " " << value << ": " << outcome.error.key;
  }
}

TEST(SyntaxFormatSubcommandTest, UnitsApplyWhereverTheyStand) {
  for (const bool unitsFirst : {true, false}) {
    Fixture fixture;
    std::vector<Event> events = {Key("MINCOLWIDTH"), Num(1, "1")};
    const std::vector<Event> units = {Key("UNITS"), Word("INCHES")};
    events.insert(unitsFirst ? events.begin() : events.end(), units.begin(), units.end());
    ASSERT_FALSE(fixture.Run(events).threw);
    EXPECT_TRUE(fixture.format->HasMinColumnWidth());
    EXPECT_DOUBLE_EQ(fixture.format->GetMinColumnWidthPoints(), 72.0);  // 1 inch = 72 points
    EXPECT_FALSE(fixture.format->HasMaxColumnWidth());
  }
  Fixture cm;
  ASSERT_FALSE(cm.Run({Key("MAXCOLWIDTH"), Num(2.54, "2.54"), Key("UNITS"), Word("cm")}).threw);
  EXPECT_DOUBLE_EQ(cm.format->GetMaxColumnWidthPoints(), 72.0);  // 2.54 cm = 1 inch
}

TEST(SyntaxFormatSubcommandTest, DefaultCancelsANumericWidth) {
  Fixture fixture;
  const EventOutcome outcome =
      fixture.Run({Key("MAXCOLWIDTH"), Num(100, "100"), Key("MAXCOLWIDTH"), Word("DEFAULT")});
  ASSERT_FALSE(outcome.threw);
  ASSERT_EQ(outcome.reported.size(), 1u);  // the repeated keyword
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"FORMAT", "MAXCOLWIDTH"}));
  EXPECT_FALSE(fixture.format->HasMaxColumnWidth());
}

// The defaults and a literal EMPTY are cases of diagnostics.txt.
TEST(SyntaxFormatSubcommandTest, EmptyBlankAndMissingText) {
  Fixture blank;
  ASSERT_FALSE(blank.Run({Key("EMPTY"), Word("BLANK"), Key("MISSING"), Lit("n/a")}).threw);
  EXPECT_EQ(blank.format->GetEmptyStringType(), PresentationCodes::kEmptyFormatBlank);
  EXPECT_EQ(blank.format->GetMissingString(), "n/a");
}

}  // namespace
