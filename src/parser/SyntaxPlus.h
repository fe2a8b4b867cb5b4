// SyntaxPlus.h - the stacking operator of a table expression (+)
#pragma once

#include "parser/SyntaxBinaryOperator.h"
#include "parser/VariableComposite.h"

/// a + b: the operands stand one after the other. Binds tighter than BY, looser than >.
/// Its cubes are those of both operands; summaries at the seam share a cube.
class SyntaxPlus : public SyntaxBinaryOperator, public VariableComposite {
 public:
  int GetType() const override;
  /// True for an incoming + (left grouping) or BY; a > takes this node's right operand.
  bool IsLessInert(const SyntaxConverter* op) const override;
  /// Dissects both operands, then stacks them.
  void DissectTableInCubes() override;
};
