// LexerTest.cpp - token kinds, operator codes, numbers, literals, positions and errors
#include "host/tokens/Lexer.h"

#include <gtest/gtest.h>

#include <sstream>

#include "host/tokens/LexicalError.h"

namespace {

using Type = TokenSequenceBase::TokenType;
using Code = TokenSequenceBase::OperatorCode;

struct Expected {
  Type type;
  Code code;
  const char* text;
};

struct LexCase {
  const char* input;
  std::vector<Expected> tokens;
};

class LexerTokens : public ::testing::TestWithParam<LexCase> {};

TEST_P(LexerTokens, ProducesTypesCodesAndTexts) {
  const LexCase& lexCase = GetParam();
  const LexedCommand command = Lexer::Lex(lexCase.input);
  ASSERT_EQ(command.tokens.size(), lexCase.tokens.size()) << lexCase.input;
  for (std::size_t index = 0; index < command.tokens.size(); ++index) {
    const Token& token = command.tokens[index];
    EXPECT_EQ(token.type, lexCase.tokens[index].type) << lexCase.input << " token " << index;
    EXPECT_EQ(token.operatorCode, lexCase.tokens[index].code) << lexCase.input << " token " << index;
    EXPECT_EQ(token.text, lexCase.tokens[index].text) << lexCase.input << " token " << index;
  }
}

constexpr Type kWord = TokenSequenceBase::kTokenWord;
constexpr Type kNumber = TokenSequenceBase::kTokenNumber;
constexpr Type kLiteral = TokenSequenceBase::kTokenLiteral;
constexpr Type kOperator = TokenSequenceBase::kTokenOperator;
constexpr Code kNone = TokenSequenceBase::kOpNone;

INSTANTIATE_TEST_SUITE_P(
    Lexer, LexerTokens,
    ::testing::Values(
        LexCase{"QUILT /TABLE region",
                {{kWord, kNone, "QUILT"}, {kOperator, Code::kOpSlash, "/"}, {kWord, kNone, "TABLE"},
                 {kWord, kNone, "region"}}},
        // GT as a word and > as a character carry the same code.
        LexCase{"a GT b > c gt d",
                {{kWord, kNone, "a"}, {kWord, Code::kOpGreaterThan, "GT"}, {kWord, kNone, "b"},
                 {kOperator, Code::kOpGreaterThan, ">"}, {kWord, kNone, "c"}, {kWord, Code::kOpGreaterThan, "gt"},
                 {kWord, kNone, "d"}}},
        LexCase{"x BY y to z ALL",
                {{kWord, kNone, "x"}, {kWord, Code::kOpBy, "BY"}, {kWord, kNone, "y"}, {kWord, Code::kOpTo, "to"},
                 {kWord, kNone, "z"}, {kWord, Code::kOpAll, "ALL"}}},
        // Dotted keywords and formats are single words; "BYE" is not BY.
        LexCase{"[COLPCT.COUNT F5.2 COMMA10.1] BYE",
                {{kOperator, Code::kOpLeftBracket, "["}, {kWord, kNone, "COLPCT.COUNT"}, {kWord, kNone, "F5.2"},
                 {kWord, kNone, "COMMA10.1"}, {kOperator, Code::kOpRightBracket, "]"}, {kWord, kNone, "BYE"}}},
        // Commas separate like blanks.
        LexCase{"[1, 2,3]",
                {{kOperator, Code::kOpLeftBracket, "["}, {kNumber, kNone, "1"}, {kNumber, kNone, "2"},
                 {kNumber, kNone, "3"}, {kOperator, Code::kOpRightBracket, "]"}}},
        // A sign directly before a digit belongs to the number, also after an operand.
        LexCase{"2-1 - 3 +4 -.5",
                {{kNumber, kNone, "2"}, {kNumber, kNone, "-1"}, {kOperator, Code::kOpMinus, "-"},
                 {kNumber, kNone, "3"}, {kNumber, kNone, "+4"}, {kNumber, kNone, "-.5"}}},
        LexCase{"0.05 1e3 2.5E-2",
                {{kNumber, kNone, "0.05"}, {kNumber, kNone, "1e3"}, {kNumber, kNone, "2.5E-2"}}},
        LexCase{"'it''s' \"say \"\"hi\"\"\" ''",
                {{kLiteral, kNone, "it's"}, {kLiteral, kNone, "say \"hi\""}, {kLiteral, kNone, ""}}},
        LexCase{"$media &top2 = EXPR([4]+[5])",
                {{kWord, kNone, "$media"}, {kOperator, Code::kOpAmpersand, "&"}, {kWord, kNone, "top2"},
                 {kOperator, Code::kOpEquals, "="}, {kWord, kNone, "EXPR"}, {kOperator, Code::kOpLeftParen, "("},
                 {kOperator, Code::kOpLeftBracket, "["}, {kNumber, kNone, "4"}, {kOperator, Code::kOpRightBracket, "]"},
                 {kOperator, Code::kOpPlus, "+"}, {kOperator, Code::kOpLeftBracket, "["}, {kNumber, kNone, "5"},
                 {kOperator, Code::kOpRightBracket, "]"}, {kOperator, Code::kOpRightParen, ")"}}},
        LexCase{"a**2*b", {{kWord, kNone, "a"}, {kOperator, Code::kOpPower, "**"}, {kNumber, kNone, "2"},
                           {kOperator, Code::kOpTimes, "*"}, {kWord, kNone, "b"}}}));

TEST(Lexer, NumbersCarryTheirValues) {
  const LexedCommand command = Lexer::Lex("25 -1 +2 .5 1e3 0.05");
  const double expected[] = {25.0, -1.0, 2.0, 0.5, 1000.0, 0.05};
  ASSERT_EQ(command.tokens.size(), std::size(expected));
  for (std::size_t index = 0; index < command.tokens.size(); ++index) {
    EXPECT_DOUBLE_EQ(command.tokens[index].number, expected[index]);
  }
}

TEST(Lexer, PositionsAreLinesAndColumnsOfTheOrigin) {
  const LexedCommand command = Lexer::Lex("QUILT\n  /TABLE x", /*firstLine=*/10);
  ASSERT_EQ(command.tokens.size(), 4u);
  EXPECT_EQ(command.tokens[0].line, 10);
  EXPECT_EQ(command.tokens[1].line, 11);
  EXPECT_EQ(command.tokens[1].column, 3);
  EXPECT_EQ(command.tokens[3].column, 10);
}

struct ErrorCase {
  const char* input;
  int line;
  int column;
  const char* problem;
};

class LexerErrors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(LexerErrors, NameLineAndColumn) {
  const ErrorCase& errorCase = GetParam();
  try {
    Lexer::Lex(errorCase.input);
    FAIL() << "no error for " << errorCase.input;
  } catch (const LexicalError& error) {
    EXPECT_EQ(error.GetLine(), errorCase.line);
    EXPECT_EQ(error.GetColumn(), errorCase.column);
    EXPECT_EQ(error.GetProblem(), errorCase.problem);
  }
}

INSTANTIATE_TEST_SUITE_P(Lexer, LexerErrors,
                         ::testing::Values(ErrorCase{"QUILT /TITLES TITLE='open", 1, 21, "unterminated quoted text"},
                                           ErrorCase{"QUILT\n 'a\n'", 2, 2, "unterminated quoted text"},
                                           ErrorCase{"QUILT /TABLE a < b", 1, 16, "unexpected '<'"},
                                           ErrorCase{"a ;", 1, 3, "unexpected ';'"}));

TEST(LexicalError, MessageNamesLineAndColumn) {
  EXPECT_STREQ(LexicalError(3, 14, "unterminated quoted text").what(), "line 3, column 14: unterminated quoted text");
}

}  // namespace
