// SyntaxBy.h - the crossing operator of a table expression (BY)
#pragma once

#include "parser/SyntaxGreaterThan.h"

/// a BY b: b goes to the next axis (rows, then columns, then layers). Binds loosest.
/// Its cubes cross those of a with those of b; an empty axis (a dummy operand) adds nothing.
class SyntaxBy : public SyntaxGreaterThan {
 public:
  SyntaxBy();

  int GetType() const override;
  /// True only for another BY, which groups to the left.
  bool IsLessInert(const SyntaxConverter* op) const override;
  /// Counts this BY on its table; a third one raises IncorrectSequence.
  virtual void Initialize();
  void DissectTableInCubes() override;
};
