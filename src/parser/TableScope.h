// TableScope.h - what a parse node may ask of the table it belongs to
#pragma once

#include <string>
#include <vector>

class SubTableCube;
class SyntaxVariableName;

/// The table a converter belongs to, as the converter sees it: the expression being built
/// and, once dissected, its cubes. The TABLE subcommand (SyntaxTableSubcommand) is the only
/// implementation; every converter placed under it is given it (SyntaxConverter::
/// GetTableScope), so no converter has to climb to the table and cast it.
class TableScope {
 public:
  /// The 1-based position of the table in the command.
  virtual int GetTableNumber() const = 0;
  /// Counts one more stacked term and returns the count so far.
  virtual int AddStackedTerm() = 0;
  /// Replaces the last expression token by a set's label.
  virtual void AddMRSetLabel(const std::string& label) = 0;
  /// The expression text, for the )TABLE parameter of titles.
  virtual std::string GetExpression() = 0;
  /// Appends a variable or set of the expression, in order of appearance (not owned).
  virtual void AddToVarList(SyntaxVariableName* variable) = 0;
  virtual const std::vector<SyntaxVariableName*>& GetTableVarList() const = 0;
  virtual int GetNumOfBys() const = 0;
  /// Counts a BY; a third raises IncorrectSequence with "BY" (a table has three axes).
  virtual void IncrementBys() = 0;
  /// The table's sub-table cubes, once the expression is dissected.
  virtual int GetCubeCount() const = 0;
  /// The cube at `position`, below GetCubeCount(); owned by the table.
  virtual const SubTableCube& GetCube(int position) const = 0;

 protected:
  ~TableScope() = default;
};
