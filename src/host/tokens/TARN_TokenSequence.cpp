// TARN_TokenSequence.cpp - forward walk with one step back over a lexed command
#include "host/tokens/TARN_TokenSequence.h"

#include "host/QuiltAssert.h"
#include "host/tokens/LexedCommand.h"

namespace {
char kEmptyText[] = "";
}  // namespace

TARN_TokenSequence::TARN_TokenSequence(void* handle, bool /*flag*/) : _command(static_cast<LexedCommand*>(handle)) {
  QUILT_ASSERT(_command != nullptr, "the token handle points at a lexed command");
}

bool TARN_TokenSequence::HasCurrent() const {
  return _position >= 0 && _position < static_cast<int>(_command->tokens.size());
}

bool TARN_TokenSequence::Next() {
  const int size = static_cast<int>(_command->tokens.size());
  if (_position < size) ++_position;
  return _position < size;
}

int TARN_TokenSequence::PositionBefore() { return _position - 1; }

void TARN_TokenSequence::SetPosition(int position) {
  QUILT_ASSERT(position >= -1 && position <= static_cast<int>(_command->tokens.size()),
               "a token position lies within the command");
  _position = position;
}

int TARN_TokenSequence::Prepare() { return 0; }

TokenSequenceBase::TokenType TARN_TokenSequence::GetTokenType() {
  return HasCurrent() ? _command->tokens[_position].type : kTokenEnd;
}

TokenSequenceBase::OperatorCode TARN_TokenSequence::GetOperatorCode() {
  return HasCurrent() ? _command->tokens[_position].operatorCode : kOpNone;
}

void TARN_TokenSequence::GetText(char** text, int* length) {
  if (!HasCurrent()) {
    *text = kEmptyText;
    *length = 0;
    return;
  }
  std::string& tokenText = _command->tokens[_position].text;
  *text = tokenText.data();
  *length = static_cast<int>(tokenText.size());
}

double TARN_TokenSequence::GetNumber() { return HasCurrent() ? _command->tokens[_position].number : 0.0; }
