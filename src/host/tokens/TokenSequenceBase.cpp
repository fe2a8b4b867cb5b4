// TokenSequenceBase.cpp - the spellings of token types and operator codes for messages
#include "host/tokens/TokenSequenceBase.h"

const char* TokenSequenceBase::GetOperatorSpelling(OperatorCode code) {
  switch (code) {
#define OPERATOR_CODE(name, value, spelling) \
  case kOp##name:                            \
    return spelling;
#include "host/tokens/TokenKinds.def"
  }
  return "?";
}

const char* TokenSequenceBase::GetTokenTypeName(TokenType type) {
  switch (type) {
#define TOKEN_TYPE(name, value, description) \
  case kToken##name:                         \
    return description;
#include "host/tokens/TokenKinds.def"
  }
  return "?";
}
