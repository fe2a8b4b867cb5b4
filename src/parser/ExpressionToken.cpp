// ExpressionToken.cpp - a computed category's expression as operands and operators in source order
#include "parser/ExpressionToken.h"

#include "parser/TokenInfo.h"

struct ExpressionToken::TOKEN_DATA {
  std::vector<TokenInfo> _tokens;    // the operands, as written
  std::vector<TokenInfo> _opTokens;  // the operators, as written
  std::string _expression;           // the expression's text
};

ExpressionToken::ExpressionToken() : _data(std::make_unique<TOKEN_DATA>()) {}

ExpressionToken::~ExpressionToken() = default;

ExpressionToken::ExpressionToken(const ExpressionToken& other)
    : _data(std::make_unique<TOKEN_DATA>(*other._data)) {}

ExpressionToken& ExpressionToken::operator=(const ExpressionToken& other) {
  if (this != &other) {
    *_data = *other._data;
  }
  return *this;
}

void ExpressionToken::addToken(const std::string& varName, const std::string& token,
                               TableEncryptionCodes::ExplicitListType listType, TOKEN_TYPE tokenType,
                               OP_CODE opCode, double number, unsigned long index) {
  TokenInfo info;
  info.varName = varName;
  info.token = token;
  info.listType = listType;
  info.tokenType = tokenType;
  info.opCode = opCode;
  info.number = number;
  info.index = index;
  _data->_tokens.push_back(info);
}

void ExpressionToken::addRangeToken(const std::string& varName, const std::string& token,
                                    const RangeOperand& range, double number) {
  addToken(varName, token, TableEncryptionCodes::kExplicitRange, kExprValue, kExprOpNone, number, 0);
  _data->_tokens.back().range = range;
}

void ExpressionToken::addOpToken(const std::string& text, OP_CODE opCode, unsigned long index) {
  TokenInfo info;
  info.opToken = text;
  info.opCode = opCode;
  info.index = index;
  _data->_opTokens.push_back(info);
}

void ExpressionToken::removeLastToken() {
  if (!_data->_tokens.empty()) {
    _data->_tokens.pop_back();
  }
}

std::vector<TokenInfo>& ExpressionToken::getTokens() {
  return _data->_tokens;
}

const std::vector<TokenInfo>& ExpressionToken::getTokens() const {
  return _data->_tokens;
}

const std::vector<TokenInfo>& ExpressionToken::getOperatorTokens() const {
  return _data->_opTokens;
}

void ExpressionToken::setExpression(const std::string& expression) {
  _data->_expression = expression;
}

const std::string& ExpressionToken::getExpression() const {
  return _data->_expression;
}
