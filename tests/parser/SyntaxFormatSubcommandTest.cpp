// SyntaxFormatSubcommandTest.cpp - FORMAT widths in points, their bounds and order, and the cell texts
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/output/MessageKeys.h"
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

TEST(SyntaxFormatSubcommandTest, WidthBoundsAreCheckedInPoints) {
  struct Case {
    std::vector<Event> events;
    const char* key;  // null: accepted
    const char* text;
  };
  const std::vector<Case> cases = {
      {{Key("MINCOLWIDTH"), Num(14, "14")}, msg::kIncorrectMinimumWidth, "14"},
      {{Key("MINCOLWIDTH"), Num(2001, "2001")}, msg::kIncorrectMinimumWidth, "2001"},
      {{Key("MINCOLWIDTH"), Num(15, "15")}, nullptr, ""},
      {{Key("MINCOLWIDTH"), Num(2000, "2000")}, nullptr, ""},
      {{Key("MAXCOLWIDTH"), Num(14.5, "14.5")}, msg::kIncorrectMaximumWidth, "14.5"},
      {{Key("MAXCOLWIDTH"), Num(2000, "2000")}, nullptr, ""},
      // 28 inches are 2016 points, above the bound.
      {{Key("UNITS"), Word("INCHES"), Key("MAXCOLWIDTH"), Num(28, "28")}, msg::kIncorrectMaximumWidth, "28"},
      // 0.5 cm are 0.5 * 72 / 2.54 = 14.17 points, below the bound.
      {{Key("MINCOLWIDTH"), Num(0.5, "0.5"), Key("UNITS"), Word("CM")}, msg::kIncorrectMinimumWidth, "0.5"},
      // 1 cm (28.3 points) passes, 0.5 cm is smaller: the pair check comes first.
      {{Key("MINCOLWIDTH"), Num(1, "1"), Key("MAXCOLWIDTH"), Num(0.5, "0.5"), Key("UNITS"), Word("CM")},
       msg::kMinimumWidthAboveMaximum,
       "1"},
  };
  for (const Case& row : cases) {
    Fixture fixture;
    const EventOutcome outcome = fixture.Run(row.events);
    if (row.key == nullptr) {
      EXPECT_FALSE(outcome.threw) << outcome.error.key;
      continue;
    }
    ASSERT_TRUE(outcome.threw) << row.key;
    EXPECT_EQ(outcome.error.key, row.key);
    EXPECT_EQ(outcome.error.arguments, (std::vector<std::string>{"FORMAT", row.text}));
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

TEST(SyntaxFormatSubcommandTest, UnitsWithoutAWidthWarn) {
  Fixture fixture;
  const EventOutcome outcome = fixture.Run({Key("UNITS"), Word("cm")});
  ASSERT_FALSE(outcome.threw);
  ASSERT_EQ(outcome.reported.size(), 1u);
  EXPECT_EQ(outcome.reported[0].key, msg::kUnitsWithoutWidth);
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"FORMAT", "UNITS=CM"}));
}

TEST(SyntaxFormatSubcommandTest, EmptyAndMissingTexts) {
  Fixture defaults;
  ASSERT_FALSE(defaults.Run({}).threw);
  EXPECT_EQ(defaults.format->GetEmptyStringType(), PresentationCodes::kEmptyFormatZero);
  EXPECT_EQ(defaults.format->GetMissingString(), ".");

  Fixture blank;
  ASSERT_FALSE(blank.Run({Key("EMPTY"), Word("BLANK"), Key("MISSING"), Lit("n/a")}).threw);
  EXPECT_EQ(blank.format->GetEmptyStringType(), PresentationCodes::kEmptyFormatBlank);
  EXPECT_EQ(blank.format->GetMissingString(), "n/a");

  Fixture literal;
  ASSERT_FALSE(literal.Run({Key("EMPTY"), Lit("-")}).threw);
  EXPECT_EQ(literal.format->GetEmptyStringType(), PresentationCodes::kString);
  EXPECT_EQ(literal.format->GetEmptyString(), "-");
}

TEST(SyntaxFormatSubcommandTest, MisplacedValuesAndMissingValues) {
  struct Case {
    std::vector<Event> events;
    const char* key;
    std::vector<std::string> arguments;
  };
  const char* const unknown = msg::kUnknownKeyword;
  const std::vector<Case> cases = {
      {{Key("UNITS"), Word("FEET")}, unknown, {"FORMAT", "FEET"}},
      {{Key("MISSING"), Word("DOT")}, unknown, {"FORMAT", "DOT"}},  // MISSING takes a literal
      {{Key("EMPTY"), Num(0, "0")}, unknown, {"FORMAT", "0"}},
      {{Key("MINCOLWIDTH"), Key("UNITS")}, unknown, {"FORMAT", "UNITS"}},
      {{Key("WIDTH")}, unknown, {"FORMAT", "WIDTH"}},
      {{Key("MINCOLWIDTH")}, msg::kIncompleteSubcommand, {".", "FORMAT"}},
  };
  for (const Case& row : cases) {
    Fixture fixture;
    const EventOutcome outcome = fixture.Run(row.events);
    ASSERT_TRUE(outcome.threw) << row.arguments.back();
    EXPECT_EQ(outcome.error.key, row.key);
    EXPECT_EQ(outcome.error.arguments, row.arguments);
  }
}

}  // namespace
