// ExpressionToken.h - a computed category's expression as operands and operators in source order
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/engine/TableEncryptionCodes.h"

struct RangeOperand;
struct TokenInfo;

/// The parsed form of `EXPR( ... )`: not a tree, but two lists in the order written, the
/// operands and the operators, plus the expression's text. The renderer evaluates them
/// with operator precedence once the cells are known.
class ExpressionToken {
 public:
  /// What an operand is.
  enum TOKEN_TYPE {
    kExprValue = 0,     // a number or a range in brackets
    kExprKeyword = 1,   // MISSING, OTHERNM, SUBTOTAL, TOTAL
    kExprConstant = 2,  // a number outside brackets
    kExprName = 3,      // a literal or a variable name in brackets
  };
  /// Which operator.
  enum OP_CODE {
    kExprOpNone = 0,
    kExprOpAdd = 1,
    kExprOpSubtract = 2,
    kExprOpMultiply = 3,
    kExprOpDivide = 4,
    kExprOpPower = 5,
    kExprOpLeftParen = 6,
    kExprOpRightParen = 7,
  };

  ExpressionToken();
  ~ExpressionToken();
  ExpressionToken(const ExpressionToken& other);
  ExpressionToken& operator=(const ExpressionToken& other);

  /// Appends an operand. `index` is a subtotal's number, else 0.
  void addToken(const std::string& varName, const std::string& token,
                TableEncryptionCodes::ExplicitListType listType, TOKEN_TYPE tokenType, OP_CODE opCode,
                double number, unsigned long index);
  /// Appends a range operand: `token` is its text, `number` the value of its first end.
  void addRangeToken(const std::string& varName, const std::string& token, const RangeOperand& range,
                     double number);
  /// Appends an operator; `index` is its running number, from 1.
  void addOpToken(const std::string& text, OP_CODE opCode, unsigned long index);
  /// Removes the last operand (a range that grows as its ends are read).
  void removeLastToken();
  std::vector<TokenInfo>& getTokens();
  const std::vector<TokenInfo>& getTokens() const;
  const std::vector<TokenInfo>& getOperatorTokens() const;
  void setExpression(const std::string& expression);
  const std::string& getExpression() const;

 private:
  struct TOKEN_DATA;
  std::unique_ptr<TOKEN_DATA> _data;
};
