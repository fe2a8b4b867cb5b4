// CommandSplitterTest.cpp - where the commands of a file begin and end
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/tokens/CommandSplitter.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/LexicalError.h"

namespace {

struct SplitCase {
  const char* description;
  const char* input;
  std::vector<CommandText> commands;  // firstLine and text of each
};

void PrintTo(const SplitCase& splitCase, std::ostream* out) {
  *out << splitCase.description;
}

class CommandSplitterCases : public ::testing::TestWithParam<SplitCase> {};

TEST_P(CommandSplitterCases, CutsCommands) {
  const SplitCase& splitCase = GetParam();
  const std::vector<CommandText> commands =
      CommandSplitter::Split(splitCase.input, /*requireFinalPeriod=*/false);
  ASSERT_EQ(commands.size(), splitCase.commands.size()) << splitCase.description;
  for (std::size_t index = 0; index < commands.size(); ++index) {
    EXPECT_EQ(commands[index].firstLine, splitCase.commands[index].firstLine) << splitCase.description;
    EXPECT_EQ(commands[index].text, splitCase.commands[index].text) << splitCase.description;
  }
}

INSTANTIATE_TEST_SUITE_P(
    CommandSplitter, CommandSplitterCases,
    ::testing::Values(
        SplitCase{"periods inside words, numbers and quotes do not end a command",
                  "* a comment\n"
                  "QUILT /TABLE a [COLPCT.COUNT F5.2]\n"
                  "  /TITLES TITLE='Ends. Here.'.  \n"
                  "\n"
                  "# another comment\n"
                  "quilt /TABLE b BY c [COUNT] /CRITERIA CILEVEL=0.05.\n",
                  {{2, "QUILT /TABLE a [COLPCT.COUNT F5.2]\n  /TITLES TITLE='Ends. Here.'"},
                   {6, "quilt /TABLE b BY c [COUNT] /CRITERIA CILEVEL=0.05"}}},
        // A number at the end of a line gives its period to the command: "95." is 95 and the end.
        SplitCase{"a trailing period after digits ends the command",
                  "QUILT /CRITERIA CILEVEL=95.\nQUILT /TABLE x.",
                  {{1, "QUILT /CRITERIA CILEVEL=95"}, {2, "QUILT /TABLE x"}}},
        SplitCase{"a period inside quotes at the line end does not end the command",
                  "QUILT /TITLES TITLE='a.\n/TABLE x.",
                  {{1, "QUILT /TITLES TITLE='a.\n/TABLE x"}}},
        SplitCase{"a period in a comment does not end the command; one before it does",
                  "QUILT /TABLE a # rows.\n  # first split.\n  BY b. # done.\nQUILT /TABLE c.",
                  {{1, "QUILT /TABLE a # rows.\n  # first split.\n  BY b"}, {4, "QUILT /TABLE c"}}},
        SplitCase{"comment commands run to a period, a blank line or a QUILT line",
                  "*  one line.\n"
                  "COMMENT two\n lines, don't stop here\n  but here.\n"
                  "comment no period\n\n"
                  "* no period either\n"
                  "QUILT /TABLE a.\n",
                  {{8, "QUILT /TABLE a"}}},
        SplitCase{"the last command may leave out its period",
                  "QUILT /TABLE x BY y\n\n",
                  {{1, "QUILT /TABLE x BY y"}}},
        SplitCase{"a QUILT line ends a command that has no period",
                  "QUILT /TABLE x\nQUILT /TABLE y.",
                  {{1, "QUILT /TABLE x"}, {2, "QUILT /TABLE y"}}},
        SplitCase{"a lone command word is a command", "QUILT.", {{1, "QUILT"}}},
        SplitCase{"byte order mark and CR LF line ends",
                  "\xEF\xBB\xBFQUILT /TABLE a\r\n  BY b.\r\n",
                  {{1, "QUILT /TABLE a\n  BY b"}}},
        SplitCase{"nothing but comments", "# a\n\n* b.\n   # c\n", {}}));

TEST(CommandSplitter, PiecesLexWithPositionsOfTheFile) {
  const auto commands = CommandSplitter::Split("# header\nQUILT /TABLE a\n  BY 'b.\n", false);
  ASSERT_EQ(commands.size(), 1u);
  try {
    Lexer::Lex(commands[0].text, commands[0].firstLine);
    FAIL() << "the open quote is not reported";
  } catch (const LexicalError& error) {
    EXPECT_STREQ(error.what(), "line 3, column 6: unterminated quoted text");
  }
}

TEST(CommandSplitter, TheRequiredPeriodMayNotBeLeftOut) {
  EXPECT_EQ(CommandSplitter::Split("QUILT /TABLE x.\n", /*requireFinalPeriod=*/true).size(), 1u);
  const char* inputs[] = {"QUILT /TABLE x\n  BY y  \n\n", "QUILT /TABLE x\n  BY y\nQUILT /TABLE z."};
  for (const char* input : inputs) {
    try {
      CommandSplitter::Split(input, /*requireFinalPeriod=*/true);
      FAIL() << input;
    } catch (const LexicalError& error) {
      // Reported just after the last text of the command: line 2 "  BY y" ends at column 6.
      EXPECT_STREQ(error.what(),
                   "line 2, column 7: the command that starts on line 1 has no terminating period");
    }
  }
}

TEST(CommandSplitter, TextBetweenCommandsMustStartWithTheCommandWord) {
  struct Case {
    const char* input;
    int line;
    int column;
  };
  const Case cases[] = {
      {"QUILT /TABLE x.\n  TABLES y.\n", 2, 3},
      {"QUILTS /TABLE x.", 1, 1},
      {"QUILT.X /TABLE x.", 1, 1},
      {"#header\nQUILT /TABLE x.", 1, 1},  // "#header" is a name, not a comment
      {"\n\n\t/TABLE x.", 3, 2},
  };
  for (const Case& testCase : cases) {
    try {
      CommandSplitter::Split(testCase.input, false);
      FAIL() << testCase.input;
    } catch (const LexicalError& error) {
      EXPECT_EQ(error.GetLine(), testCase.line) << testCase.input;
      EXPECT_EQ(error.GetColumn(), testCase.column) << testCase.input;
      EXPECT_EQ(error.GetProblem(), "expected a command starting with QUILT") << testCase.input;
    }
  }
}

}  // namespace
