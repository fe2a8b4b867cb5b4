// SyntaxBy.h - the crossing operator of a table expression (BY)
#pragma once

#include "parser/SyntaxGreaterThan.h"

/// a BY b: b goes to the next axis (rows, then columns, then layers). Binds loosest.
// TODO(#5): the table-expression work adds crossing of cubes.
class SyntaxBy : public SyntaxGreaterThan {
 public:
  SyntaxBy();

  int GetType() const override;
  /// True only for another BY, which groups to the left.
  bool IsLessInert(const SyntaxConverter* op) const override;
  /// Counts this BY on its table; a third one raises IncorrectSequence.
  virtual void Initialize();
};
