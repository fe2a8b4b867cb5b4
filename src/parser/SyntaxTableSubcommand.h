// SyntaxTableSubcommand.h - one TABLE subcommand: its expression and the table-level subcommands after it
#pragma once

#include <string>
#include <vector>

#include "host/engine/TableEncryptionCodes.h"
#include "parser/SyntaxComposite.h"
#include "parser/TableScope.h"
#include "parser/VariableComposite.h"

class SyntaxVariableName;
class TableSettings;

/// The parsed form of one table. Its first child is the expression; table-level
/// subcommands follow as further children. It stops the slash: after "/" the table stays
/// current, with all contexts cleared, to receive the next subcommand word.
///
/// At the first slash or period after the expression the table dissects it into
/// sub-table cubes (its VariableComposite list, read by the dispatcher through CubeCount
/// and operator[]). When the table is complete it checks the label-moving CLABELS request
/// and drops the significance tests that cannot run.
class SyntaxTableSubcommand : public SyntaxComposite, public VariableComposite, public TableScope {
 public:
  /// `tableNumber` is the 1-based position of the table in the command.
  explicit SyntaxTableSubcommand(int tableNumber);
  ~SyntaxTableSubcommand() override;

  std::string GetSubcommandName() const override;
  int GetType() const override;
  SyntaxConverter* LeftParen(const std::string& text) override;
  SyntaxConverter* Slash(const std::string& text) override;
  SyntaxConverter* Period(const std::string& text) override;
  /// Opens a table-level subcommand, or passes TABLE to the root for the next table.
  SyntaxConverter* SubCommandString(const std::string& text) override;
  /// A table without an expression raises NoTableSubcommand. The first call dissects the
  /// expression into cubes and gives default statistics; every call completes the
  /// variables' statistics and passes the CRITERIA confidence level to them, so that a
  /// CRITERIA after the expression still reaches them.
  void ValidateAndCommit(const std::string& text) override;
  /// The expression has been cut into cubes.
  bool IsDissected() const;

  /// A CLABELS option that moves category labels needs a uniform source axis: no scale
  /// variable, no sort by a statistic anywhere in the table, and source variables with the
  /// same category options and compatible value labels. Violations raise their errors;
  /// true otherwise.
  bool ValidateComperimeterRequest();
  /// Drops each requested test that cannot run on any cube of the table, with warnings
  /// that say why. The HasChiSquareTest and similar flags stay as they were.
  void ValidateStatisticalTests();
  /// Raises TooManyCubeVariables for a sub-table whose cell keys would need more variables
  /// than the engine's keys hold.
  void ValidateCubeSizes();
  /// Whether the test of `type` can run on some cube of the table; where it cannot, the
  /// warnings say why. Types it does not check run.
  bool ValidateTest(TableEncryptionCodes::SignificanceTestType type, bool includeMRSets);

  /// The title as tables and messages show it: the TITLE text (a title reading "Warnings"
  /// gets a trailing blank, so that it is not taken for the host's warnings table), or the
  /// table number. Cached; SetTitle replaces it.
  std::string GetTitle();
  void SetTitle(const std::string& title);
  /// A TITLES subcommand gave a TITLE.
  bool HasTitle() const;

  int GetTableNumber() const override;
  /// Counts one more "+" of the expression; returns the number of stacked terms so far.
  int AddStackedTerm() override;
  /// What SLABELS, CLABELS, CRITERIA, TITLES, COMPARETEST and SIGTEST committed for this table.
  TableSettings& GetTableSettings();
  const TableSettings& GetTableSettings() const;
  /// Records one token of the expression text for titles: upper-cased, and a word that
  /// names a labelled variable is replaced by its label.
  void AddExpressionToken(const std::string& token, bool isWord);
  /// Replaces the last expression token by a set's label.
  void AddMRSetLabel(const std::string& label) override;
  /// The expression text: tokens joined by a blank, with none after "(" or before ")".
  std::string GetExpression() override;
  /// Appends a variable or set of the expression, in order of appearance (not owned).
  void AddToVarList(SyntaxVariableName* variable) override;
  const std::vector<SyntaxVariableName*>& GetTableVarList() const override;
  const std::vector<SyntaxVariableName*>& GetTableSetList() const;
  int GetNumOfBys() const override;
  /// Counts a BY; a third raises IncorrectSequence with "BY" (a table has three axes).
  void IncrementBys() override;
  int GetCubeCount() const override;
  const SubTableCube& GetCube(int position) const override;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct TableData;
  TableData* _tableData;
};
