// SyntaxTitlesSubcommandTest.cpp - TITLES texts: lines, parameters, and what reaches the table
#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "parser/SyntaxMiscSubcommands.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTitlesSubcommand.h"
#include "parser/TableSettings.h"

namespace {

// A TITLES under a real table whose expression text is "A > B".
struct Fixture {
  TableSettings settings;
  SyntaxTableSubcommand table{1};
  SyntaxTitlesSubcommand* titles = nullptr;

  Fixture() {
    AttachTestDataSource(table);
    table.AddExpressionToken("a", /*isWord=*/true);
    table.AddExpressionToken(">", /*isWord=*/false);
    table.AddExpressionToken("b", /*isWord=*/true);
    titles = new SyntaxTitlesSubcommand(settings);
    table.Add(titles);
  }

  // Delivers the events as the reader does, then the end of the subcommand from the
  // converter that is current, up to (not including) the table.
  EventOutcome Run(const std::vector<Event>& events) {
    return RunEvents([&] {
      SyntaxConverter* current = Deliver(*titles, events);
      while (current != &table) {
        current->ValidateAndCommit("/");
        current = current->GetParent();
      }
    });
  }
};

std::string Today(const char* pattern) {
  const std::time_t now = std::time(nullptr);
  char buffer[128] = {};
  std::strftime(buffer, sizeof buffer, pattern, std::localtime(&now));
  return buffer;
}

TEST(SyntaxTitlesSubcommandTest, EachKeywordFillsItsSlot) {
  Fixture fixture;
  const EventOutcome outcome = fixture.Run({Key("TITLE"), Lit("Sales"), Lit("by region"), Key("CAPTION"),
                                            Lit("Source: survey"), Key("CORNER"), Lit("n")});
  ASSERT_FALSE(outcome.threw) << outcome.error.key;
  EXPECT_TRUE(outcome.reported.empty());
  // Two literals under one keyword are two lines.
  EXPECT_EQ(fixture.settings.GetTitleText(), "Sales\nby region");
  EXPECT_EQ(fixture.settings.GetCaption(), "Source: survey");
  EXPECT_EQ(fixture.settings.GetCornerText(), "n");
}

TEST(SyntaxTitlesSubcommandTest, ParametersAreReplacedAsWritten) {
  Fixture fixture;
  ASSERT_FALSE(fixture.Run({Key("TITLE"), Lit(")TABLE on )DATE; )table stays")}).threw);
  EXPECT_EQ(fixture.settings.GetTitleText(), "A > B on " + Today("%x") + "; )table stays");

  Fixture time;
  ASSERT_FALSE(time.Run({Key("CAPTION"), Lit(")TIME")}).threw);
  // The time is taken when the text completes; it can only have moved forward since.
  EXPECT_EQ(time.settings.GetCaption().size(), Today("%X").size());
  EXPECT_EQ(time.settings.GetCaption().find(")TIME"), std::string::npos);
}

// An empty TITLES asks for nothing (its refusals are lines of diagnostics.txt).
TEST(SyntaxTitlesSubcommandTest, AnEmptySubcommandSetsNothing) {
  Fixture nothing;
  EXPECT_FALSE(nothing.Run({}).threw);
  EXPECT_FALSE(nothing.settings.HasTitle());
}

}  // namespace
