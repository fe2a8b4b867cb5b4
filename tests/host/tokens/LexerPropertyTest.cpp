// LexerPropertyTest.cpp - random commands against the tokens they were built from, and random bytes
#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "host/tokens/CommandSplitter.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/LexicalError.h"

namespace {

using Type = TokenSequenceBase::TokenType;
using Code = TokenSequenceBase::OperatorCode;

struct Vocabulary {
  Type type;
  Code code;
  std::string text;  // the token's text; for a literal, without quotes
};

std::vector<Vocabulary> MakeVocabulary() {
  std::vector<Vocabulary> words = {
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpNone, "a"},
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpNone, "$media"},
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpNone, "COLPCT.COUNT"},
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpNone, "F5.2"},
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpNone, "#temp"},
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpNone, "THRU"},
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpNone, "gr\xC3\xB6\xC3\x9F"},
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpGreaterThan, "gt"},
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpBy, "BY"},
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpTo, "To"},
      {TokenSequenceBase::kTokenWord, TokenSequenceBase::kOpAll, "ALL"},
      {TokenSequenceBase::kTokenNumber, TokenSequenceBase::kOpNone, "25"},
      {TokenSequenceBase::kTokenNumber, TokenSequenceBase::kOpNone, "0.05"},
      {TokenSequenceBase::kTokenNumber, TokenSequenceBase::kOpNone, ".5"},
      {TokenSequenceBase::kTokenNumber, TokenSequenceBase::kOpNone, "7."},
      {TokenSequenceBase::kTokenNumber, TokenSequenceBase::kOpNone, "2.5E-2"},
      {TokenSequenceBase::kTokenNumber, TokenSequenceBase::kOpNone, "-1"},
      {TokenSequenceBase::kTokenNumber, TokenSequenceBase::kOpNone, "+2"},
      {TokenSequenceBase::kTokenLiteral, TokenSequenceBase::kOpNone, "it's"},
      {TokenSequenceBase::kTokenLiteral, TokenSequenceBase::kOpNone, "say \"hi\""},
      {TokenSequenceBase::kTokenLiteral, TokenSequenceBase::kOpNone, ""},
      {TokenSequenceBase::kTokenLiteral, TokenSequenceBase::kOpNone, " # no comment. "},
  };
#define PUNCTUATOR(code, spelling) \
  words.push_back({TokenSequenceBase::kTokenOperator, TokenSequenceBase::kOp##code, spelling});
#include "host/tokens/TokenKinds.def"
  return words;
}

// Quotes a literal with the chosen quote kind, doubling that kind inside.
std::string Quote(const std::string& text, char quote) {
  std::string quoted(1, quote);
  for (const char character : text) {
    quoted += character;
    if (character == quote) quoted += quote;
  }
  return quoted + quote;
}

// Separators never let two tokens touch, so every token keeps its own reading.
const char* const kSeparators[] = {" ",          ",", "\t", " ,\t", "\n", "\r\n  ", "  # a comment. 'x\n",
                                   "\n# note\n"};

struct Placed {
  Vocabulary token;
  int line;
  int column;
};

TEST(LexerProperty, RandomCommandsLexIntoTheTokensTheyWereBuiltFrom) {
  const std::vector<Vocabulary> vocabulary = MakeVocabulary();
  std::mt19937 random(20261123);  // fixed seed: a failure repeats
  for (int round = 0; round < 500; ++round) {
    std::string text;
    std::vector<Placed> expected;
    int line = 1;
    std::size_t lineStart = 0;
    const int count = 1 + static_cast<int>(random() % 12);
    for (int index = 0; index < count; ++index) {
      if (index > 0) {
        const std::string separator = kSeparators[random() % std::size(kSeparators)];
        for (const char character : separator) {
          text += character;
          if (character == '\n') {
            ++line;
            lineStart = text.size();
          }
        }
      }
      const Vocabulary& token = vocabulary[random() % vocabulary.size()];
      expected.push_back({token, line, static_cast<int>(text.size() - lineStart) + 1});
      text += token.type == TokenSequenceBase::kTokenLiteral ? Quote(token.text, random() % 2 ? '\'' : '"')
                                                             : token.text;
    }

    const LexedCommand command = Lexer::Lex(text, /*firstLine=*/1);
    ASSERT_EQ(command.tokens.size(), expected.size()) << text;
    for (std::size_t index = 0; index < expected.size(); ++index) {
      const Token& token = command.tokens[index];
      const Placed& want = expected[index];
      ASSERT_EQ(token.type, want.token.type) << text << "\ntoken " << index;
      ASSERT_EQ(token.operatorCode, want.token.code) << text << "\ntoken " << index;
      ASSERT_EQ(token.text, want.token.text) << text << "\ntoken " << index;
      ASSERT_EQ(token.line, want.line) << text << "\ntoken " << index;
      ASSERT_EQ(token.column, want.column) << text << "\ntoken " << index;
      if (token.type == TokenSequenceBase::kTokenNumber) {
        // The value is the C library's reading of the same text.
        ASSERT_EQ(token.number, std::strtod(want.token.text.c_str(), nullptr)) << text;
      }
    }
  }
}

// Whatever the bytes, the lexer and the splitter either succeed or report a LexicalError;
// they never read out of bounds (the sanitizer build checks that) or fail otherwise.
TEST(LexerProperty, ArbitraryBytesGiveTokensOrALexicalError) {
  const std::string alphabet =
      "aZ09.$#@_ ,\t\n\r'\"-+*/()[]&=><;!\x01\xC3\xA9"
      "eE";
  std::mt19937 random(7);  // fixed seed: a failure repeats
  int lexed = 0;
  int refused = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string text = random() % 2 ? "QUILT " : "";
    const int length = static_cast<int>(random() % 40);
    for (int index = 0; index < length; ++index) text += alphabet[random() % alphabet.size()];
    try {
      const LexedCommand command = Lexer::Lex(text);
      ++lexed;
      for (std::size_t index = 1; index < command.tokens.size(); ++index) {
        const Token& before = command.tokens[index - 1];
        const Token& token = command.tokens[index];
        ASSERT_TRUE(token.line > before.line || (token.line == before.line && token.column > before.column))
            << text;
        if (token.type != TokenSequenceBase::kTokenLiteral) {
          ASSERT_FALSE(token.text.empty()) << text;
        }
      }
    } catch (const LexicalError&) {
      ++refused;
    }
    try {
      for (const CommandText& piece : CommandSplitter::Split(text, /*requireFinalPeriod=*/false)) {
        const std::size_t start = piece.text.find_first_not_of(" \t\r");
        ASSERT_NE(start, std::string::npos) << text;
        std::string word = piece.text.substr(start, 5);
        for (char& character : word)
          character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
        ASSERT_EQ(word, "QUILT") << text;
      }
    } catch (const LexicalError&) {
    }
  }
  // Both outcomes occur, so the test exercised both paths.
  EXPECT_GT(lexed, 100);
  EXPECT_GT(refused, 100);
}

}  // namespace
