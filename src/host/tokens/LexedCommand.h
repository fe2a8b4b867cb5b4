// LexedCommand.h - the tokens of one command, the host's opaque handle for the procedure
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/tokens/TokenSequenceBase.h"

/// One token with where it stood in the source, for messages.
struct Token {
  TokenSequenceBase::TokenType type = TokenSequenceBase::kTokenEnd;
  TokenSequenceBase::OperatorCode operatorCode = TokenSequenceBase::kOpNone;
  std::string text;     // as written; a literal without its quotes and with doubled quotes undone
  double number = 0.0;  // the value of a number token
  int line = 1;         // 1-based line in the command's origin
  int column = 1;       // 1-based byte column
};

/// The tokens of one command in source order. The first token is the command word. The
/// procedure's entry receives a pointer to one of these as its opaque token handle.
struct LexedCommand {
  std::vector<Token> tokens;

  /// One token per line: type, operator code, text, number; for golden tests.
  void Dump(std::ostream& out) const;
};
