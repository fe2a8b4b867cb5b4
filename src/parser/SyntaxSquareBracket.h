// SyntaxSquareBracket.h - a statistics bracket "[ ... ]" opened on a variable, paren or totals clause
#pragma once

#include <string>
#include <vector>

#include "parser/StatisticList.h"
#include "parser/SyntaxComposite.h"

class Statistics;
class SyntaxTotals;
class SyntaxVariableName;

/// [ statistics | S | C | TOTALS [...] ]: what is computed for the operand before it. The
/// bracket has no parent: it belongs to the converter it was opened on (its referred
/// converter), which owns it, and the closing "]" makes that converter current again. The
/// statistics written in it are its children; the variables only point at them.
class SyntaxSquareBracket : public SyntaxComposite {
 public:
  /// Finds the variables the bracket applies to: the operand itself for a variable or set,
  /// none for totals, else every variable under the paren last closed on `referred`
  /// (IncorrectSequence with "[" when there is none). `referred` is not owned.
  explicit SyntaxSquareBracket(SyntaxConverter* referred);

  std::string GetSubcommandName() const override;
  /// A statistic keyword, TOTALS, or the measurement marks S and C.
  SyntaxConverter* String(const std::string& text) override;
  /// Hands the statistics to the referred variables (or to the totals clause) and returns
  /// to the converter the bracket was opened on.
  SyntaxConverter* RightSquareBracket(const std::string& text) override;
  /// The bracket hangs off its referred converter rather than a parent, so the root is
  /// found through that converter.
  SyntaxConverter* TopParent() override;

  /// Gives `totals` to every leaf variable the bracket applies to.
  virtual void SetTotals(SyntaxTotals* totals);

  const std::vector<SyntaxVariableName*>& GetReferredVariables() const;
  SyntaxConverter* GetReferredConverter() const;
  /// The statistics that survived the duplicate check, in order.
  const std::vector<Statistics*>& GetBracketStatistics() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  std::vector<SyntaxVariableName*> _referredVariables;  // what the bracket applies to; not owned
  bool _bracketClosed = false;                          // its "]" has been seen
  SyntaxConverter* _referredConverter;                  // where the bracket was opened; not owned
  StatisticList _statistics;                            // the statistics or the S/C mark written
};
