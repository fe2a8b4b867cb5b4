// TokenCasesTest.cpp - the command texts of TokenCases.txt: their tokens, their commands, or the error
//
// The texts and what must come of them are kept in TokenCases.txt, the way a compiler keeps
// its lexer tests; this runner lexes or splits each text and compares, line for line.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/CaseFileText.h"
#include "host/tokens/CommandSplitter.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/LexicalError.h"

namespace {

struct TokenCase {
  int line = 0;
  std::string kind;  // lex, split or split-final
  std::string text;
  std::vector<std::string> expected;  // "tokens: ...", "command: ..." or "error: ..." lines
};

void PrintTo(const TokenCase& tokenCase, std::ostream* out) {
  *out << "TokenCases.txt:" << tokenCase.line;
}

std::vector<TokenCase> ReadCases() {
  std::vector<TokenCase> cases;
  for (const auto& [number, key, text] : ReadCaseLines("host/tokens/TokenCases.txt")) {
    const std::string value = UnescapeCaseText(text);
    if (key == "lex" || key == "split" || key == "split-final") {
      cases.push_back({number, key, value, {}});
    } else if (!cases.empty() && (key == "tokens" || key == "command" || key == "error")) {
      cases.back().expected.push_back(key + ": " + value);
    } else {
      ADD_FAILURE() << "TokenCases.txt:" << number << ": not a case line";
    }
  }
  return cases;
}

std::string Describe(const Token& token) {
  const std::string spelling = TokenSequenceBase::GetOperatorSpelling(token.operatorCode);
  switch (token.type) {
    case TokenSequenceBase::kTokenOperator:
      return "o:" + spelling + (token.text == spelling ? "" : "~" + token.text);
    case TokenSequenceBase::kTokenNumber:
      return "n:" + token.text;
    case TokenSequenceBase::kTokenLiteral:
      return "l:" + token.text;
    default:
      return "w:" + token.text + (token.operatorCode == TokenSequenceBase::kOpNone ? "" : "=" + spelling);
  }
}

class TokenCases : public ::testing::TestWithParam<TokenCase> {};

TEST_P(TokenCases, GiveTheirTokensCommandsOrError) {
  const TokenCase& c = GetParam();
  std::vector<std::string> outcome;
  try {
    if (c.kind == "lex") {
      std::string tokens;
      for (const Token& token : Lexer::Lex(c.text).tokens)
        tokens += (tokens.empty() ? "" : "|") + Describe(token);
      outcome.push_back("tokens: " + tokens);
    } else {
      for (const CommandText& command : CommandSplitter::Split(c.text, c.kind == "split-final"))
        outcome.push_back("command: " + std::to_string(command.firstLine) + " " + command.text);
    }
  } catch (const LexicalError& error) {
    outcome = {"error: " + std::to_string(error.GetLine()) + ":" + std::to_string(error.GetColumn()) + ": " +
               error.GetProblem()};
  }
  EXPECT_EQ(outcome, c.expected);
}

INSTANTIATE_TEST_SUITE_P(Corpus, TokenCases, ::testing::ValuesIn(ReadCases()),
                         [](const ::testing::TestParamInfo<TokenCase>& info) {
                           return "Line" + std::to_string(info.param.line);
                         });

}  // namespace
