// ComputedExpression.cpp - the value of a computed category's expression from its numbers and operators
#include "tablerenderer/ComputedExpression.h"

#include <cmath>
#include <limits>

namespace {

using Op = ExpressionToken::OP_CODE;

}  // namespace

ComputedExpression::ComputedExpression(const std::vector<double>& numbers, const std::vector<Op>& operators,
                                       double sysmis)
    : _numbers(numbers), _operators(operators), _sysmis(sysmis) {}

double ComputedExpression::Evaluate() {
  const double infinity = std::numeric_limits<double>::infinity();
  bool anyInfinite = false;
  for (double number : _numbers) {
    if (number == _sysmis) return _sysmis;
    anyInfinite = anyInfinite || number == infinity;
  }
  if (anyInfinite) return infinity;
  if (_operators.empty()) return _numbers.empty() ? 0.0 : _numbers.front();
  _nextNumber = 0;
  _nextOperator = 0;
  return Sum();
}

double ComputedExpression::Apply(double left, double right, Op op, double sysmis) {
  // A missing part, such as a division by zero inside the expression, leaves the whole
  // missing rather than feeding the system-missing number into the arithmetic.
  if (left == sysmis || right == sysmis) return sysmis;
  switch (op) {
    case ExpressionToken::kExprOpAdd:
      return left + right;
    case ExpressionToken::kExprOpSubtract:
      return left - right;
    case ExpressionToken::kExprOpMultiply:
      return left * right;
    case ExpressionToken::kExprOpPower:
      return std::pow(left, right);
    case ExpressionToken::kExprOpDivide: {
      const double quotient = left / right;
      return std::isinf(quotient) ? sysmis : quotient;
    }
    default:
      return left;
  }
}

bool ComputedExpression::AtOperator(Op op) const {
  return _nextOperator < _operators.size() && _operators[_nextOperator] == op;
}

bool ComputedExpression::AtAdditive() const {
  return AtOperator(ExpressionToken::kExprOpAdd) || AtOperator(ExpressionToken::kExprOpSubtract);
}

bool ComputedExpression::AtMultiplicative() const {
  return AtOperator(ExpressionToken::kExprOpMultiply) || AtOperator(ExpressionToken::kExprOpDivide) ||
         AtOperator(ExpressionToken::kExprOpPower);
}

double ComputedExpression::Sum() {
  double value = Product();
  while (AtAdditive()) {
    const Op op = _operators[_nextOperator++];
    value = Apply(value, Product(), op, _sysmis);
  }
  return value;
}

double ComputedExpression::Product() {
  double value = Term();
  while (AtMultiplicative()) {
    const Op op = _operators[_nextOperator++];
    value = Apply(value, Term(), op, _sysmis);
  }
  return value;
}

double ComputedExpression::Term() {
  // A number followed by "(" is no expression, so where a term is due an "(" next in the
  // list comes before the next number. Signs never reach here: the parser gives a sign to
  // its number and refuses one in front of anything else.
  if (AtOperator(ExpressionToken::kExprOpLeftParen)) {
    ++_nextOperator;
    const double value = Sum();
    if (AtOperator(ExpressionToken::kExprOpRightParen)) ++_nextOperator;
    return value;
  }
  // The parser only lets a complete expression through; a term without its number can
  // only come from a list cut short, and counts as nothing.
  return _nextNumber < _numbers.size() ? _numbers[_nextNumber++] : 0.0;
}
