// SyntaxTotals.h - the TOTALS clause of a statistics bracket: "[ TOTALS [ COUNT ] ]"
#pragma once

#include <string>
#include <vector>

#include "parser/SyntaxComposite.h"

class Statistics;

/// The word TOTALS inside a bracket. It takes nothing itself but a nested bracket, whose
/// statistics become the statistics of the total category of the outer bracket's variables.
class SyntaxTotals : public SyntaxComposite {
 public:
  /// `squareBracketParent` is the bracket in which TOTALS was written; not owned.
  explicit SyntaxTotals(SyntaxConverter* squareBracketParent);

  std::string GetSubcommandName() const override;
  int GetType() const override;
  /// "TOTALS ]": the clause has no statistics of its own.
  SyntaxConverter* RightSquareBracket(const std::string& text) override;

  /// Replaces the total statistics by a copy of `statistics` (not owned: they stay children
  /// of the nested bracket).
  virtual void AddStatistics(const std::vector<Statistics*>* statistics);
  virtual const std::vector<Statistics*>& GetTotalStatistics() const;
  virtual SyntaxConverter* GetSquareBracketParent() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  SyntaxConverter* _squareBracketParent;      // the outer bracket; not owned
  std::vector<Statistics*> _totalStatistics;  // from the nested bracket; not owned
};
