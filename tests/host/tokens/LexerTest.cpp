// LexerTest.cpp - token kinds, operator codes, numbers, literals, comments, positions and errors
#include <gtest/gtest.h>

#include <cctype>
#include <iterator>
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

struct Expected {
  Type type;
  Code code;
  const char* text;
};

struct LexCase {
  const char* input;
  std::vector<Expected> tokens;
};

void PrintTo(const LexCase& lexCase, std::ostream* out) {
  *out << lexCase.input;
}

class LexerTokens : public ::testing::TestWithParam<LexCase> {};

TEST_P(LexerTokens, ProducesTypesCodesAndTexts) {
  const LexCase& lexCase = GetParam();
  const LexedCommand command = Lexer::Lex(lexCase.input);
  std::ostringstream dump;
  command.Dump(dump);
  ASSERT_EQ(command.tokens.size(), lexCase.tokens.size()) << lexCase.input << "\n" << dump.str();
  for (std::size_t index = 0; index < command.tokens.size(); ++index) {
    const Token& token = command.tokens[index];
    EXPECT_EQ(token.type, lexCase.tokens[index].type) << lexCase.input << " token " << index;
    EXPECT_EQ(token.operatorCode, lexCase.tokens[index].code) << lexCase.input << " token " << index;
    EXPECT_EQ(token.text, lexCase.tokens[index].text) << lexCase.input << " token " << index;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Lexer, LexerTokens,
    ::testing::Values(LexCase{"a GT b>c gt d GTE BYE",
                              {{kWord, kNone, "a"},
                               {kWord, Code::kOpGreaterThan, "GT"},
                               {kWord, kNone, "b"},
                               {kOperator, Code::kOpGreaterThan, ">"},
                               {kWord, kNone, "c"},
                               {kWord, Code::kOpGreaterThan, "gt"},
                               {kWord, kNone, "d"},
                               {kWord, kNone, "GTE"},
                               {kWord, kNone, "BYE"}}},
                      LexCase{"[LO THRU 5]",
                              {{kOperator, Code::kOpLeftBracket, "["},
                               {kWord, kNone, "LO"},
                               {kWord, kNone, "THRU"},
                               {kNumber, kNone, "5"},
                               {kOperator, Code::kOpRightBracket, "]"}}},
                      // Dotted keywords and formats are single words.
                      LexCase{"[COLPCT.COUNT F5.2 COMMA10.1 MEAN.LCL DOLLAR12.2]",
                              {{kOperator, Code::kOpLeftBracket, "["},
                               {kWord, kNone, "COLPCT.COUNT"},
                               {kWord, kNone, "F5.2"},
                               {kWord, kNone, "COMMA10.1"},
                               {kWord, kNone, "MEAN.LCL"},
                               {kWord, kNone, "DOLLAR12.2"},
                               {kOperator, Code::kOpRightBracket, "]"}}},
                      // Names may hold $ @ # _ and UTF-8 letters.
                      LexCase{"$media @x #temp q_1 Q#2 gr\xC3\xB6\xC3\x9F"
                              "e",
                              {{kWord, kNone, "$media"},
                               {kWord, kNone, "@x"},
                               {kWord, kNone, "#temp"},
                               {kWord, kNone, "q_1"},
                               {kWord, kNone, "Q#2"},
                               {kWord, kNone,
                                "gr\xC3\xB6\xC3\x9F"
                                "e"}}},
                      // Commas separate like blanks.
                      LexCase{"[1, 2,3 ,a]",
                              {{kOperator, Code::kOpLeftBracket, "["},
                               {kNumber, kNone, "1"},
                               {kNumber, kNone, "2"},
                               {kNumber, kNone, "3"},
                               {kWord, kNone, "a"},
                               {kOperator, Code::kOpRightBracket, "]"}}},
                      // A sign directly before a digit belongs to the number, unless it follows an operand
                      // with nothing between.
                      LexCase{"[1 -1,-2 +3]",
                              {{kOperator, Code::kOpLeftBracket, "["},
                               {kNumber, kNone, "1"},
                               {kNumber, kNone, "-1"},
                               {kNumber, kNone, "-2"},
                               {kNumber, kNone, "+3"},
                               {kOperator, Code::kOpRightBracket, "]"}}},
                      LexCase{"2-1 2+1 2 - 1",
                              {{kNumber, kNone, "2"},
                               {kOperator, Code::kOpMinus, "-"},
                               {kNumber, kNone, "1"},
                               {kNumber, kNone, "2"},
                               {kOperator, Code::kOpPlus, "+"},
                               {kNumber, kNone, "1"},
                               {kNumber, kNone, "2"},
                               {kOperator, Code::kOpMinus, "-"},
                               {kNumber, kNone, "1"}}},
                      LexCase{"TOTAL-1 (3)-1 [4]-1 'a'-1",
                              {{kWord, kNone, "TOTAL"},
                               {kOperator, Code::kOpMinus, "-"},
                               {kNumber, kNone, "1"},
                               {kOperator, Code::kOpLeftParen, "("},
                               {kNumber, kNone, "3"},
                               {kOperator, Code::kOpRightParen, ")"},
                               {kOperator, Code::kOpMinus, "-"},
                               {kNumber, kNone, "1"},
                               {kOperator, Code::kOpLeftBracket, "["},
                               {kNumber, kNone, "4"},
                               {kOperator, Code::kOpRightBracket, "]"},
                               {kOperator, Code::kOpMinus, "-"},
                               {kNumber, kNone, "1"},
                               {kLiteral, kNone, "a"},
                               {kOperator, Code::kOpMinus, "-"},
                               {kNumber, kNone, "1"}}},
                      // After an operator, "=" or THRU the sign is the number's.
                      LexCase{"(-2*-3) =-5 THRU-1 a=+.5",
                              {{kOperator, Code::kOpLeftParen, "("},
                               {kNumber, kNone, "-2"},
                               {kOperator, Code::kOpTimes, "*"},
                               {kNumber, kNone, "-3"},
                               {kOperator, Code::kOpRightParen, ")"},
                               {kOperator, Code::kOpEquals, "="},
                               {kNumber, kNone, "-5"},
                               {kWord, kNone, "THRU"},
                               {kNumber, kNone, "-1"},
                               {kWord, kNone, "a"},
                               {kOperator, Code::kOpEquals, "="},
                               {kNumber, kNone, "+.5"}}},
                      // A sign not before a digit is an operator.
                      LexCase{"a+b -c - x",
                              {{kWord, kNone, "a"},
                               {kOperator, Code::kOpPlus, "+"},
                               {kWord, kNone, "b"},
                               {kOperator, Code::kOpMinus, "-"},
                               {kWord, kNone, "c"},
                               {kOperator, Code::kOpMinus, "-"},
                               {kWord, kNone, "x"}}},
                      LexCase{"0.05 1e3 2.5E-2 .5 5. 7e+1",
                              {{kNumber, kNone, "0.05"},
                               {kNumber, kNone, "1e3"},
                               {kNumber, kNone, "2.5E-2"},
                               {kNumber, kNone, ".5"},
                               {kNumber, kNone, "5."},
                               {kNumber, kNone, "7e+1"}}},
                      // Both quote kinds; a doubled quote of the same kind is one, the other kind is itself.
                      LexCase{"'it''s' \"say \"\"hi\"\"\" 'say \"hi\"' \"it's\" '' ' a, b '",
                              {{kLiteral, kNone, "it's"},
                               {kLiteral, kNone, "say \"hi\""},
                               {kLiteral, kNone, "say \"hi\""},
                               {kLiteral, kNone, "it's"},
                               {kLiteral, kNone, ""},
                               {kLiteral, kNone, " a, b "}}},
                      // Comment markers inside quotes are text.
                      LexCase{"'# not // a comment'", {{kLiteral, kNone, "# not // a comment"}}},
                      LexCase{"/PCOMPUTE &top2 = EXPR([4]+[5])",
                              {{kOperator, Code::kOpSlash, "/"},
                               {kWord, kNone, "PCOMPUTE"},
                               {kOperator, Code::kOpAmpersand, "&"},
                               {kWord, kNone, "top2"},
                               {kOperator, Code::kOpEquals, "="},
                               {kWord, kNone, "EXPR"},
                               {kOperator, Code::kOpLeftParen, "("},
                               {kOperator, Code::kOpLeftBracket, "["},
                               {kNumber, kNone, "4"},
                               {kOperator, Code::kOpRightBracket, "]"},
                               {kOperator, Code::kOpPlus, "+"},
                               {kOperator, Code::kOpLeftBracket, "["},
                               {kNumber, kNone, "5"},
                               {kOperator, Code::kOpRightBracket, "]"},
                               {kOperator, Code::kOpRightParen, ")"}}},
                      // The longest operator wins: "**" is power, "***" is power then times.
                      LexCase{"a**2*b***c",
                              {{kWord, kNone, "a"},
                               {kOperator, Code::kOpPower, "**"},
                               {kNumber, kNone, "2"},
                               {kOperator, Code::kOpTimes, "*"},
                               {kWord, kNone, "b"},
                               {kOperator, Code::kOpPower, "**"},
                               {kOperator, Code::kOpTimes, "*"},
                               {kWord, kNone, "c"}}},
                      // "//" is always two slashes, for the parser to refuse.
                      LexCase{"a //TABLE b//",
                              {{kWord, kNone, "a"},
                               {kOperator, Code::kOpSlash, "/"},
                               {kOperator, Code::kOpSlash, "/"},
                               {kWord, kNone, "TABLE"},
                               {kWord, kNone, "b"},
                               {kOperator, Code::kOpSlash, "/"},
                               {kOperator, Code::kOpSlash, "/"}}},
                      // Comments run to the end of the line; blanks, tabs and CR LF line ends separate.
                      LexCase{"a # note, with 'quote\r\n\tb # more. text\n#\nc,# last",
                              {{kWord, kNone, "a"}, {kWord, kNone, "b"}, {kWord, kNone, "c"}}},
                      LexCase{"QUILT //",
                              {{kWord, kNone, "QUILT"},
                               {kOperator, Code::kOpSlash, "/"},
                               {kOperator, Code::kOpSlash, "/"}}}));

// The expectations of every punctuator and reserved word come from the one table.
TEST(Lexer, EveryPunctuatorOfTheTableLexesToItsCode) {
  struct Entry {
    const char* spelling;
    Code code;
  };
  const Entry entries[] = {
#define PUNCTUATOR(code, spelling) {spelling, TokenSequenceBase::kOp##code},
#include "host/tokens/TokenKinds.def"
  };
  for (const Entry& entry : entries) {
    const LexedCommand command = Lexer::Lex(std::string("x ") + entry.spelling + " y");
    ASSERT_EQ(command.tokens.size(), 3u) << entry.spelling;
    EXPECT_EQ(command.tokens[1].type, kOperator) << entry.spelling;
    EXPECT_EQ(command.tokens[1].operatorCode, entry.code) << entry.spelling;
    EXPECT_EQ(command.tokens[1].text, entry.spelling);
  }
}

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

TEST(Lexer, NumbersCarryTheirValues) {
  const LexedCommand command = Lexer::Lex("25 -1 +2 .5 1e3 0.05 5. -2.5E-2 [0 -0]");
  // Values written out by hand from the texts.
  const double expected[] = {25.0, -1.0, 2.0, 0.5, 1000.0, 0.05, 5.0, -0.025, 0.0, 0.0};
  std::vector<double> numbers;
  for (const Token& token : command.tokens) {
    if (token.type == kNumber) numbers.push_back(token.number);
  }
  ASSERT_EQ(numbers.size(), std::size(expected));
  for (std::size_t index = 0; index < numbers.size(); ++index)
    EXPECT_DOUBLE_EQ(numbers[index], expected[index]);
}

TEST(Lexer, PositionsAreLinesAndColumnsOfTheOrigin) {
  const LexedCommand command = Lexer::Lex("QUILT # c\n  /TABLE x\n\n'q' 5", /*firstLine=*/10);
  ASSERT_EQ(command.tokens.size(), 6u);
  const int expected[][2] = {{10, 1}, {11, 3}, {11, 4}, {11, 10}, {13, 1}, {13, 5}};
  for (std::size_t index = 0; index < command.tokens.size(); ++index) {
    EXPECT_EQ(command.tokens[index].line, expected[index][0]) << "token " << index;
    EXPECT_EQ(command.tokens[index].column, expected[index][1]) << "token " << index;
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
                      ErrorCase{"1e", 1, 1, "malformed number '1e'"}));

TEST(LexicalError, MessageNamesLineAndColumn) {
  EXPECT_STREQ(LexicalError(3, 14, "unterminated quoted text").what(),
               "line 3, column 14: unterminated quoted text");
}

}  // namespace
