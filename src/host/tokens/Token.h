// Token.h - one token of a command, with where it stood in the source for messages
#pragma once

#include <string>

#include "host/tokens/TokenSequenceBase.h"

/// One token as the lexer read it. A plain value type.
struct Token {
  TokenSequenceBase::TokenType type = TokenSequenceBase::kTokenEnd;
  TokenSequenceBase::OperatorCode operatorCode = TokenSequenceBase::kOpNone;
  std::string text;     // as written; a literal without its quotes and with doubled quotes undone
  double number = 0.0;  // the value of a number token, 0 for other tokens
  int line = 1;         // 1-based line in the command's origin (file or command-line text)
  int column = 1;       // 1-based byte column of the token's first character
};
