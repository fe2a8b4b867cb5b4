// SyntaxSquareBracket.h - a statistics bracket "[ ... ]" opened on a variable, paren or totals clause
#pragma once

#include <string>
#include <vector>

#include "parser/SyntaxComposite.h"

class SyntaxVariableName;

/// [ statistics | S | C | TOTALS [...] ]: what is computed for the operand before it. The
/// bracket has no parent: it belongs to the converter it was opened on (its referred
/// converter), which owns it, and the closing "]" makes that converter current again.
// TODO(#5): the statistics-clause work adds statistics, measurement marks and totals
// (String, AssertIntegrity, CheckStatsUniqueness, SetTotals); until then a word in a bracket
// is an unknown keyword.
class SyntaxSquareBracket : public SyntaxComposite {
 public:
  /// Finds the variables the bracket applies to: the operand itself for a variable or set,
  /// none for totals, else every variable under the paren last closed on `referred`
  /// (IncorrectSequence with "[" when there is none). `referred` is not owned.
  explicit SyntaxSquareBracket(SyntaxConverter* referred);

  std::string GetSubcommandName() const override;
  SyntaxConverter* RightSquareBracket(const std::string& text) override;
  /// The bracket hangs off its referred converter rather than a parent, so the root is
  /// found through that converter.
  SyntaxConverter* TopParent() override;

  const std::vector<SyntaxVariableName*>& GetReferredVariables() const;
  SyntaxConverter* GetReferredConverter() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  std::vector<SyntaxVariableName*> _referredVariables;  // what the bracket applies to; not owned
  bool _bracketClosed = false;                          // its "]" has been seen
  SyntaxConverter* _referredConverter;                  // where the bracket was opened; not owned
};
