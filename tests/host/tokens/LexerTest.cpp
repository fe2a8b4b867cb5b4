// LexerTest.cpp - token kinds, operator codes, numbers, literals, comments, positions and errors
#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <string>
#include <vector>

#include "host/tokens/Lexer.h"
#include "host/tokens/LexicalError.h"

namespace {

using Type = TokenSequenceBase::TokenType;
using Code = TokenSequenceBase::OperatorCode;

constexpr Type kWord = TokenSequenceBase::kTokenWord;
constexpr Type kNumber = TokenSequenceBase::kTokenNumber;
constexpr Type kLiteral = TokenSequenceBase::kTokenLiteral;
constexpr Type kOperator = TokenSequenceBase::kTokenOperator;
constexpr Code kNone = TokenSequenceBase::kOpNone;

/// What a case expects: its tokens joined by "|", each written kind:text, where the kind is
/// w (word), n (number), l (quoted text) or o (operator). A word that carries an operator
/// code adds "=" and the code's spelling: "w:GT=>".
struct LexCase {
  const char* input;
  const char* tokens;
};

void PrintTo(const LexCase& lexCase, std::ostream* out) {
  *out << lexCase.input;
}

std::string Describe(const Token& token) {
  const char* spelling = TokenSequenceBase::GetOperatorSpelling(token.operatorCode);
  switch (token.type) {
    case kOperator:
      // An operator is named by its code; a text that differs from the code's spelling shows.
      return "o:" + std::string(spelling) + (token.text == spelling ? "" : "~" + token.text);
    case kNumber:
      return "n:" + token.text;
    case kLiteral:
      return "l:" + token.text;
    default:
      return "w:" + token.text + (token.operatorCode == kNone ? "" : "=" + std::string(spelling));
  }
}

class LexerTokens : public ::testing::TestWithParam<LexCase> {};

TEST_P(LexerTokens, ProducesTypesCodesAndTexts) {
  const LexCase& lexCase = GetParam();
  std::string described;
  for (const Token& token : Lexer::Lex(lexCase.input).tokens) {
    described += (described.empty() ? "" : "|") + Describe(token);
  }
  EXPECT_EQ(described, lexCase.tokens) << lexCase.input;
}

INSTANTIATE_TEST_SUITE_P(
    Lexer, LexerTokens,
    ::testing::Values(
    LexCase{"a GT b>c gt d GTE BYE",
            "w:a|w:GT=>|w:b|o:>|w:c|w:gt=>|w:d|w:GTE|w:BYE"},
    LexCase{"[LO THRU 5]",
            "o:[|w:LO|w:THRU|n:5|o:]"},
    // Dotted keywords and formats are single words.
    LexCase{"[COLPCT.COUNT F5.2 COMMA10.1 MEAN.LCL DOLLAR12.2]",
            "o:[|w:COLPCT.COUNT|w:F5.2|w:COMMA10.1|w:MEAN.LCL|w:DOLLAR12.2|o:]"},
    // Names may hold $ @ # _ and UTF-8 letters.
    LexCase{"$media @x #temp q_1 Q#2 gr\xC3\xB6\xC3\x9F"
            "e",
            "w:$media|w:@x|w:#temp|w:q_1|w:Q#2|w:gr\xC3\xB6\xC3\x9F"
            "e"},
    // Commas separate like blanks.
    LexCase{"[1, 2,3 ,a]",
            "o:[|n:1|n:2|n:3|w:a|o:]"},
    // A sign directly before a digit belongs to the number, unless it follows an operand
    // with nothing between.
    LexCase{"[1 -1,-2 +3]",
            "o:[|n:1|n:-1|n:-2|n:+3|o:]"},
    LexCase{"2-1 2+1 2 - 1",
            "n:2|o:-|n:1|n:2|o:+|n:1|n:2|o:-|n:1"},
    LexCase{"TOTAL-1 (3)-1 [4]-1 'a'-1",
            "w:TOTAL|o:-|n:1|o:(|n:3|o:)|o:-|n:1|o:[|n:4|o:]|o:-|n:1|l:a|o:-|n:1"},
    // After an operator, "=" or THRU the sign is the number's.
    LexCase{"(-2*-3) =-5 THRU-1 a=+.5",
            "o:(|n:-2|o:*|n:-3|o:)|o:=|n:-5|w:THRU|n:-1|w:a|o:=|n:+.5"},
    // A sign not before a digit is an operator.
    LexCase{"a+b -c - x",
            "w:a|o:+|w:b|o:-|w:c|o:-|w:x"},
    LexCase{"0.05 1e3 2.5E-2 .5 5. 7e+1",
            "n:0.05|n:1e3|n:2.5E-2|n:.5|n:5.|n:7e+1"},
    // Both quote kinds; a doubled quote of the same kind is one, the other kind is itself.
    LexCase{"'it''s' \"say \"\"hi\"\"\" 'say \"hi\"' \"it's\" '' ' a, b '",
            "l:it's|l:say \"hi\"|l:say \"hi\"|l:it's|l:|l: a, b "},
    // Comment markers inside quotes are text.
    LexCase{"'# not // a comment'",
            "l:# not // a comment"},
    LexCase{"/PCOMPUTE &top2 = EXPR([4]+[5])",
            "o:/|w:PCOMPUTE|o:&|w:top2|o:=|w:EXPR|o:(|o:[|n:4|o:]|o:+|o:[|n:5|o:]|o:)"},
    // The longest operator wins: "**" is power, "***" is power then times.
    LexCase{"a**2*b***c",
            "w:a|o:**|n:2|o:*|w:b|o:**|o:*|w:c"},
    // "//" is always two slashes, for the parser to refuse.
    LexCase{"a //TABLE b//",
            "w:a|o:/|o:/|w:TABLE|w:b|o:/|o:/"},
    // Comments run to the end of the line; blanks, tabs and CR LF line ends separate.
    LexCase{"a # note, with 'quote\r\n\tb # more. text\n#\nc,# last",
            "w:a|w:b|w:c"},
    LexCase{"QUILT //",
            "w:QUILT|o:/|o:/"}));

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
      EXPECT_EQ(command.tokens[0].type, kWord) << spelling;
      // A longer word that merely starts with the reserved one has no code.
      EXPECT_EQ(command.tokens[0].operatorCode, spelling == lower + "x" ? kNone : entry.code) << spelling;
    }
  }
}

TEST(Lexer, EmptyOrCommentOnlyTextHasNoTokens) {
  EXPECT_TRUE(Lexer::Lex("").tokens.empty());
  EXPECT_TRUE(Lexer::Lex(" ,\t\n# only a comment\n").tokens.empty());
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

struct ErrorCase {
  const char* input;
  int line;
  int column;
  const char* problem;
};

void PrintTo(const ErrorCase& errorCase, std::ostream* out) {
  *out << errorCase.input;
}

class LexerErrors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(LexerErrors, NameLineAndColumn) {
  const ErrorCase& errorCase = GetParam();
  try {
    Lexer::Lex(errorCase.input, /*firstLine=*/1);
    FAIL() << "no error for " << errorCase.input;
  } catch (const LexicalError& error) {
    EXPECT_EQ(error.GetLine(), errorCase.line);
    EXPECT_EQ(error.GetColumn(), errorCase.column);
    EXPECT_EQ(error.GetProblem(), errorCase.problem);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Lexer, LexerErrors,
    ::testing::Values(ErrorCase{"QUILT /TITLES TITLE='open", 1, 21, "unterminated quoted text"},
                      // A literal ends on its line.
                      ErrorCase{"QUILT\n 'a\n'", 2, 2, "unterminated quoted text"},
                      ErrorCase{"x \"it''s", 1, 3, "unterminated quoted text"},
                      ErrorCase{"QUILT /TABLE a < b", 1, 16, "unexpected '<'"},
                      ErrorCase{"a ;", 1, 3, "unexpected ';'"},
                      ErrorCase{"a\n\x01", 2, 1, "unexpected byte 0x01"},
                      ErrorCase{"QUILT /TABLE a. /TABLE b", 1, 15,
                                "unexpected '.' (a period ends a command only at the end of a line)"},
                      ErrorCase{"a . b", 1, 3,
                                "unexpected '.' (a period ends a command only at the end of a line)"},
                      ErrorCase{"[COUNT 2x]", 1, 8, "malformed number '2x'"},
                      ErrorCase{"  1.5.2", 1, 3, "malformed number '1.5.2'"},
                      ErrorCase{"-3abc", 1, 1, "malformed number '-3abc'"},
                      ErrorCase{"1e", 1, 1, "malformed number '1e'"},
                      // Commands are UTF-8: a Latin-1 letter is refused where it stands, even
                      // in a comment or a literal.
                      ErrorCase{"QUILT\n/TABLE caf\xE9.", 2, 11,
                                "byte 0xE9 is not UTF-8 (save the command file as UTF-8)"},
                      ErrorCase{"# caf\xE9\nQUILT", 1, 6,
                                "byte 0xE9 is not UTF-8 (save the command file as UTF-8)"},
                      ErrorCase{"x 'ab\xC3'", 1, 6,
                                "byte 0xC3 is not UTF-8 (save the command file as UTF-8)"}));

}  // namespace
