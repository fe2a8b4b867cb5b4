// LexedCommand.cpp - the stable text form of a command's tokens
#include "host/tokens/LexedCommand.h"

namespace {
const char* TypeName(TokenSequenceBase::TokenType type) {
  switch (type) {
    case TokenSequenceBase::kTokenWord:
      return "word";
    case TokenSequenceBase::kTokenNumber:
      return "number";
    case TokenSequenceBase::kTokenLiteral:
      return "literal";
    case TokenSequenceBase::kTokenOperator:
      return "operator";
    case TokenSequenceBase::kTokenEnd:
      break;
  }
  return "end";
}
}  // namespace

void LexedCommand::Dump(std::ostream& out) const {
  for (const Token& token : tokens) {
    out << TypeName(token.type) << " op=" << token.operatorCode << " '" << token.text << "'";
    if (token.type == TokenSequenceBase::kTokenNumber) out << " = " << token.number;
    out << " @" << token.line << ":" << token.column << "\n";
  }
}
