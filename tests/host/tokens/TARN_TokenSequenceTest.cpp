// TARN_TokenSequenceTest.cpp - walking, stepping back and the end of a token sequence
#include "host/tokens/TARN_TokenSequence.h"

#include <gtest/gtest.h>

#include <string>

#include "host/tokens/Lexer.h"

namespace {

std::string CurrentText(TARN_TokenSequence& tokens) {
  char* text = nullptr;
  int length = 0;
  tokens.GetText(&text, &length);
  return std::string(text, static_cast<std::size_t>(length));
}

TEST(TARN_TokenSequence, StepsBackExactlyOneToken) {
  LexedCommand command = Lexer::Lex("QUILT /TABLE a GT b");
  TARN_TokenSequence tokens(&command, true);
  tokens.Prepare();
  ASSERT_TRUE(tokens.Next());  // QUILT
  ASSERT_TRUE(tokens.Next());  // /
  ASSERT_TRUE(tokens.Next());  // TABLE
  ASSERT_TRUE(tokens.Next());  // a
  ASSERT_TRUE(tokens.Next());  // GT
  const auto type = tokens.GetTokenType();
  const auto code = tokens.GetOperatorCode();
  const std::string text = CurrentText(tokens);
  tokens.SetPosition(tokens.PositionBefore());
  ASSERT_TRUE(tokens.Next());
  EXPECT_EQ(tokens.GetTokenType(), type);
  EXPECT_EQ(tokens.GetOperatorCode(), code);
  EXPECT_EQ(CurrentText(tokens), text);
  ASSERT_TRUE(tokens.Next());
  EXPECT_EQ(CurrentText(tokens), "b");
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
  EXPECT_EQ(tokens.GetTokenType(), TokenSequenceBase::kTokenEnd);
  EXPECT_EQ(CurrentText(tokens), "");
}

}  // namespace
