// LexerTest.cpp - reserved words in any case, the token dump, a command cut from a file
//
// Token kinds, operator codes, numbers, literals, comments, where commands begin and end and
// the errors of both are cases of TokenCases.txt.
#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <string>
#include <vector>

#include "host/tokens/CommandSplitter.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/LexicalError.h"

namespace {

using Code = TokenSequenceBase::OperatorCode;

// Reserved words in any case; punctuators, numbers and positions are checked by
// LexerPropertyTest over every entry of the same table.
TEST(Lexer, EveryReservedWordOfTheTableCarriesItsCodeInAnyCase) {
  struct Entry {
    const char* spelling;
    Code code;
  };
  const Entry entries[] = {
#define RESERVED_WORD(code, spelling) {spelling, TokenSequenceBase::kOp##code},
#include "host/tokens/TokenKinds.def"
  };
  for (const Entry& entry : entries) {
    std::string lower = entry.spelling;
    for (char& character : lower)
      character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    for (const std::string& spelling : {std::string(entry.spelling), lower, lower + "x"}) {
      const LexedCommand command = Lexer::Lex(spelling);
      ASSERT_EQ(command.tokens.size(), 1u) << spelling;
      EXPECT_EQ(command.tokens[0].type, TokenSequenceBase::kTokenWord) << spelling;
      // A longer word that merely starts with the reserved one has no code.
      EXPECT_EQ(command.tokens[0].operatorCode, spelling == lower + "x" ? TokenSequenceBase::kOpNone : entry.code) << spelling;
    }
  }
}

TEST(Lexer, DumpShowsEveryField) {
  std::ostringstream out;
  Lexer::Lex("a GT -1.5 'x'").Dump(out);
  EXPECT_EQ(out.str(),
            "word op=0 'a' @1:1\n"
            "word op=2(>) 'GT' @1:3\n"
            "number op=0 '-1.5' = -1.5 @1:6\n"
            "quoted text op=0 'x' @1:11\n");
}

// A command cut from a file lexes with the positions of the file.
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

}  // namespace
