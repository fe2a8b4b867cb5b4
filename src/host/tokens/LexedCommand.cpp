// LexedCommand.cpp - the stable text form of a command's tokens
#include "host/tokens/LexedCommand.h"

void LexedCommand::Dump(std::ostream& out) const {
  for (const Token& token : tokens) {
    out << TokenSequenceBase::GetTokenTypeName(token.type) << " op=" << token.operatorCode;
    if (token.operatorCode != TokenSequenceBase::kOpNone) {
      out << "(" << TokenSequenceBase::GetOperatorSpelling(token.operatorCode) << ")";
    }
    out << " '" << token.text << "'";
    if (token.type == TokenSequenceBase::kTokenNumber) out << " = " << token.number;
    out << " @" << token.line << ":" << token.column << "\n";
  }
}
