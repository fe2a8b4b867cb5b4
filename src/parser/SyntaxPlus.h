// SyntaxPlus.h - the stacking operator of a table expression (+)
#pragma once

#include "parser/SyntaxBinaryOperator.h"

/// a + b: the operands stand one after the other. Binds tighter than BY, looser than >.
// TODO(#5): the table-expression work adds stacking of cubes.
class SyntaxPlus : public SyntaxBinaryOperator {
 public:
  int GetType() const override;
  /// True for an incoming + (left grouping) or BY; a > takes this node's right operand.
  bool IsLessInert(const SyntaxConverter* op) const override;
};
