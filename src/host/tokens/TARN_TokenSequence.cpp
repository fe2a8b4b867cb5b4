// TARN_TokenSequence.cpp - forward walk with one step back over a lexed command
#include "host/tokens/TARN_TokenSequence.h"

#include <algorithm>
#include <string>

#include "host/QuiltAssert.h"
#include "host/tokens/LexedCommand.h"

namespace {
// The end mark's text; GetText hands out a char*, so it cannot be a string literal.
char kEmptyText[] = "";
}  // namespace

struct TARN_TokenSequence::Data {
  LexedCommand* _command = nullptr;  // not owned
  int _position = -1;                // index of the current token; -1 before the first Next

  int Size() const { return static_cast<int>(_command->tokens.size()); }
  const Token* Current() const {
    return _position >= 0 && _position < Size() ? &_command->tokens[static_cast<std::size_t>(_position)]
                                                : nullptr;
  }
};

TARN_TokenSequence::TARN_TokenSequence(void* handle, bool /*flag*/) : _data(std::make_unique<Data>()) {
  QUILT_ASSERT(handle != nullptr, "the token handle points at a lexed command");
  _data->_command = static_cast<LexedCommand*>(handle);
}

TARN_TokenSequence::~TARN_TokenSequence() = default;

bool TARN_TokenSequence::Next() {
  if (_data->_position < _data->Size()) ++_data->_position;
  return _data->_position < _data->Size();
}

int TARN_TokenSequence::PositionBefore() {
  return _data->_position > -1 ? _data->_position - 1 : -1;
}

void TARN_TokenSequence::SetPosition(int position) {
  QUILT_ASSERT(position >= -1 && position <= _data->Size(), "a token position lies within the command");
  _data->_position = position;
}

int TARN_TokenSequence::Prepare() {
  return _data->Size();
}

TokenSequenceBase::TokenType TARN_TokenSequence::GetTokenType() {
  const Token* token = _data->Current();
  return token != nullptr ? token->type : kTokenEnd;
}

TokenSequenceBase::OperatorCode TARN_TokenSequence::GetOperatorCode() {
  const Token* token = _data->Current();
  return token != nullptr ? token->operatorCode : kOpNone;
}

void TARN_TokenSequence::GetText(char** text, int* length) {
  QUILT_ASSERT(text != nullptr && length != nullptr, "GetText has somewhere to put the text");
  if (_data->Current() == nullptr) {
    *text = kEmptyText;
    *length = 0;
    return;
  }
  std::string& tokenText = _data->_command->tokens[static_cast<std::size_t>(_data->_position)].text;
  *text = tokenText.data();
  *length = static_cast<int>(tokenText.size());
}

std::string TARN_TokenSequence::GetLocation() const {
  const LexedCommand& command = *_data->_command;
  const std::string origin = command.origin.empty() ? std::string() : command.origin + ":";
  if (command.tokens.empty()) return command.origin;
  const int last = _data->Size() - 1;
  const Token& token = command.tokens[static_cast<std::size_t>(std::clamp(_data->_position, 0, last))];
  return origin + std::to_string(token.line) + ":" + std::to_string(token.column);
}

double TARN_TokenSequence::GetNumber() {
  const Token* token = _data->Current();
  return token != nullptr ? token->number : 0.0;
}
