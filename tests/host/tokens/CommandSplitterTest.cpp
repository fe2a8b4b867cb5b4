// CommandSplitterTest.cpp - where commands of a file begin and end
#include "host/tokens/CommandSplitter.h"

#include <gtest/gtest.h>

#include "host/tokens/LexicalError.h"

namespace {

TEST(CommandSplitter, CutsAtPeriodsThatEndALine) {
  const auto commands = CommandSplitter::Split(
      "* a comment\n"
      "QUILT /TABLE a [COLPCT.COUNT F5.2]\n"
      "  /TITLES TITLE='Ends. Here.'.  \n"
      "\n"
      "# another comment\n"
      "quilt /TABLE b BY c [COUNT] /CRITERIA CILEVEL=0.05.\n",
      /*requireFinalPeriod=*/true);
  ASSERT_EQ(commands.size(), 2u);
  EXPECT_EQ(commands[0].firstLine, 2);
  EXPECT_EQ(commands[0].text, "QUILT /TABLE a [COLPCT.COUNT F5.2]\n  /TITLES TITLE='Ends. Here.'");
  EXPECT_EQ(commands[1].firstLine, 6);
  EXPECT_EQ(commands[1].text, "quilt /TABLE b BY c [COUNT] /CRITERIA CILEVEL=0.05");
}

TEST(CommandSplitter, APeriodInsideQuotesAtTheLineEndDoesNotEndTheCommand) {
  // The open quote is the lexer's to report; the splitter only must not cut there.
  const auto commands = CommandSplitter::Split("QUILT /TITLES TITLE='a.\n/TABLE x.", true);
  ASSERT_EQ(commands.size(), 1u);
  EXPECT_EQ(commands[0].text, "QUILT /TITLES TITLE='a.\n/TABLE x");
}

TEST(CommandSplitter, TheLastPeriodMayBeLeftOutWhenAllowed) {
  const auto commands = CommandSplitter::Split("QUILT /TABLE x", /*requireFinalPeriod=*/false);
  ASSERT_EQ(commands.size(), 1u);
  EXPECT_EQ(commands[0].text, "QUILT /TABLE x");
  EXPECT_THROW(CommandSplitter::Split("QUILT /TABLE x", /*requireFinalPeriod=*/true), LexicalError);
}

TEST(CommandSplitter, TextBetweenCommandsMustStartWithTheCommandWord) {
  try {
    CommandSplitter::Split("QUILT /TABLE x.\n  TABLES y.\n", true);
    FAIL();
  } catch (const LexicalError& error) {
    EXPECT_EQ(error.GetLine(), 2);
    EXPECT_EQ(error.GetColumn(), 3);
  }
  EXPECT_THROW(CommandSplitter::Split("QUILTS /TABLE x.", true), LexicalError);
}

TEST(CommandSplitter, BareCommandWordIsACommand) {
  const auto commands = CommandSplitter::Split("QUILT.", true);
  ASSERT_EQ(commands.size(), 1u);
  EXPECT_EQ(commands[0].text, "QUILT");
}

}  // namespace
