// TARN_TokenSequenceTest.cpp - walking, stepping back and the end of a token sequence
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/QuiltAssert.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/TARN_TokenSequence.h"

namespace {

struct Snapshot {
  TokenSequenceBase::TokenType type;
  TokenSequenceBase::OperatorCode code;
  std::string text;
  double number;

  bool operator==(const Snapshot& other) const {
    return type == other.type && code == other.code && text == other.text && number == other.number;
  }
};

Snapshot Current(TARN_TokenSequence& tokens) {
  char* text = nullptr;
  int length = -1;
  tokens.GetText(&text, &length);
  return {tokens.GetTokenType(), tokens.GetOperatorCode(),
          std::string(text, static_cast<std::size_t>(length)), tokens.GetNumber()};
}

// Every token, stepped back onto and read again, is delivered with the same text, type,
// code and number; and the walk then goes on where it was.
TEST(TARN_TokenSequence, SteppingBackRedeliversEachTokenUnchanged) {
  LexedCommand command = Lexer::Lex("QUILT /TABLE a GT b > c [COUNT F5.2] 'lit' -2.5 = BY");
  TARN_TokenSequence plain(&command, true);
  std::vector<Snapshot> expected;
  plain.Prepare();
  while (plain.Next()) expected.push_back(Current(plain));
  ASSERT_EQ(expected.size(), command.tokens.size());

  TARN_TokenSequence tokens(&command, true);
  EXPECT_EQ(tokens.Prepare(), static_cast<int>(command.tokens.size()));
  for (const Snapshot& token : expected) {
    ASSERT_TRUE(tokens.Next());
    EXPECT_EQ(Current(tokens), token);
    tokens.SetPosition(tokens.PositionBefore());
    ASSERT_TRUE(tokens.Next());
    EXPECT_EQ(Current(tokens), token) << "after stepping back onto '" << token.text << "'";
  }
  EXPECT_FALSE(tokens.Next());
}

TEST(TARN_TokenSequence, StaysAtTheEndOnceExhausted) {
  LexedCommand command = Lexer::Lex("QUILT 5");
  TARN_TokenSequence tokens(&command, true);
  ASSERT_TRUE(tokens.Next());
  ASSERT_TRUE(tokens.Next());
  EXPECT_EQ(tokens.GetTokenType(), TokenSequenceBase::kTokenNumber);
  EXPECT_DOUBLE_EQ(tokens.GetNumber(), 5.0);
  EXPECT_FALSE(tokens.Next());
  EXPECT_FALSE(tokens.Next());
  const Snapshot end{TokenSequenceBase::kTokenEnd, TokenSequenceBase::kOpNone, "", 0.0};
  EXPECT_EQ(Current(tokens), end);
  // Stepping back at the end stays at the end: the current "token" there is the end mark.
  tokens.SetPosition(tokens.PositionBefore());
  EXPECT_FALSE(tokens.Next());
  EXPECT_EQ(Current(tokens), end);
}

TEST(TARN_TokenSequence, BeforeTheFirstNextThereIsNoCurrentToken) {
  LexedCommand command = Lexer::Lex("QUILT");
  TARN_TokenSequence tokens(&command, true);
  EXPECT_EQ(tokens.GetTokenType(), TokenSequenceBase::kTokenEnd);
  // Stepping back from the start stays at the start.
  tokens.SetPosition(tokens.PositionBefore());
  ASSERT_TRUE(tokens.Next());
  EXPECT_EQ(Current(tokens).text, "QUILT");
  EXPECT_FALSE(tokens.Next());
}

TEST(TARN_TokenSequence, MisuseIsAnAssertion) {
  EXPECT_THROW(TARN_TokenSequence(nullptr, true), QuiltAssertionFailure);
  LexedCommand command = Lexer::Lex("QUILT a");
  TARN_TokenSequence tokens(&command, true);
  EXPECT_THROW(tokens.SetPosition(3), QuiltAssertionFailure);
  EXPECT_THROW(tokens.SetPosition(-2), QuiltAssertionFailure);
  tokens.SetPosition(2);  // the end mark itself is a valid position
  EXPECT_FALSE(tokens.Next());
}

}  // namespace
