// SyntaxGreaterThan.h - the nesting operator of a table expression (> or GT)
#pragma once

#include "parser/SyntaxBinaryOperator.h"
#include "parser/VariableComposite.h"

/// a > b: b is nested under each category of a. Binds tightest of the three operators.
/// Its cubes are those of a with b nested inside each.
class SyntaxGreaterThan : public SyntaxBinaryOperator, public VariableComposite {
 public:
  int GetType() const override;
  /// Nesting binds at least as tightly as every operator, so any operator climbs past it.
  bool IsLessInert(const SyntaxConverter* op) const override;
  /// Dissects both operands, then nests the second into every cube of the first.
  void DissectTableInCubes() override;
};
