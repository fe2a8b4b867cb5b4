// SyntaxGreaterThan.h - the nesting operator of a table expression (> or GT)
#pragma once

#include "parser/SyntaxBinaryOperator.h"

/// a > b: b is nested under each category of a. Binds tightest of the three operators.
// TODO(#5): the table-expression work adds nesting of cubes.
class SyntaxGreaterThan : public SyntaxBinaryOperator {
 public:
  int GetType() const override;
  /// Nesting binds at least as tightly as every operator, so any operator climbs past it.
  bool IsLessInert(const SyntaxConverter* op) const override;
};
