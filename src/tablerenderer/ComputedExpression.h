// ComputedExpression.h - the value of a computed category's expression from its numbers and operators
#pragma once

#include <vector>

#include "parser/ExpressionToken.h"

/// A computed category's expression is kept as two lists in source order: the operands,
/// turned into numbers for one statistic of one cell, and the operators, parentheses
/// included. This class rebuilds the expression from the two lists and evaluates it.
///
/// A number stands wherever a term is due: at the start, after "(" and after a binary
/// operator. `*`, `/` and `**` share one level and group from the left, so 2 * 3 ** 2 is
/// 36; `+` and `-` bind less tightly and also group from the left. A ")" with nothing open
/// (the one closing EXPR itself) ends the expression.
class ComputedExpression {
 public:
  /// `sysmis` is the system-missing value, which a division to plus or minus infinity
  /// becomes.
  ComputedExpression(const std::vector<double>& numbers, const std::vector<ExpressionToken::OP_CODE>& operators,
                     double sysmis);

  /// The value. System-missing if any number is; else infinity if any number is; with no
  /// operators the first number, or 0 without numbers.
  double Evaluate();

  /// One binary operation; a division whose result is infinite gives system-missing, so a
  /// division by zero shows as missing, and a system-missing operand stays missing.
  static double Apply(double left, double right, ExpressionToken::OP_CODE op, double sysmis);

 private:
  double Sum();
  double Product();
  double Term();
  bool AtOperator(ExpressionToken::OP_CODE op) const;
  bool AtAdditive() const;
  bool AtMultiplicative() const;

  const std::vector<double>& _numbers;
  const std::vector<ExpressionToken::OP_CODE>& _operators;
  double _sysmis;
  size_t _nextNumber = 0;
  size_t _nextOperator = 0;
};
