// SyntaxMRVariableSet.h - a multiple-response set ("$name") used as one variable of a table
#pragma once

#include "parser/SyntaxVariableName.h"

class VariableSet;
union OBS;

/// The node of a multiple-response set in a table expression.
// TODO(#5): the multiple-response work adds the members, their value labels, the counted
// value and the consistency checks of ValidateSetConditions.
class SyntaxMRVariableSet : public SyntaxVariableName {
 public:
  explicit SyntaxMRVariableSet(VariableSet& set);

  int GetType() const override;
  /// Checks the set against the dictionary; `countedValue` is the counted value of a
  /// dichotomy set as blank-filled cells, null for a category set. Not owned.
  void ValidateSetConditions(VariableSet& set, OBS* countedValue);
  /// Stores the opposite of `isNo`.
  void SetCountDuplicates(bool isNo);
  bool GetCountDuplicates() const;

 private:
  bool _countDuplicates = false;  // a case counts each duplicate response
};
