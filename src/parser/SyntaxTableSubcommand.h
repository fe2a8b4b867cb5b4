// SyntaxTableSubcommand.h - one TABLE subcommand: its expression and the table-level subcommands after it
#pragma once

#include <string>
#include <vector>

#include "parser/SyntaxComposite.h"

class SyntaxVariableName;
class TableSettings;

/// The parsed form of one table. Its first child is the expression; table-level
/// subcommands follow as further children. It stops the slash: after "/" the table stays
/// current, with all contexts cleared, to receive the next subcommand word.
// TODO(#5): the table-expression work adds dissection into cubes, the commit of the global
// settings, titles from the TITLES texts, and the CATEGORIES converter.
class SyntaxTableSubcommand : public SyntaxComposite {
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
  /// A table without an expression raises NoTableSubcommand.
  void ValidateAndCommit(const std::string& text) override;

  int GetTableNumber() const;
  /// What SLABELS, CLABELS, CRITERIA, TITLES, COMPARETEST and SIGTEST committed for this table.
  TableSettings& GetTableSettings();
  const TableSettings& GetTableSettings() const;
  /// Records one token of the expression text for titles: upper-cased, and a word that
  /// names a labelled variable is replaced by its label.
  void AddExpressionToken(const std::string& token, bool isWord);
  /// Replaces the last expression token by a set's label.
  void AddMRSetLabel(const std::string& label);
  /// The expression text: tokens joined by a blank, with none after "(" or before ")".
  std::string GetExpression();
  /// Appends a variable or set of the expression, in order of appearance (not owned).
  void AddToVarList(SyntaxVariableName* variable);
  const std::vector<SyntaxVariableName*>& GetTableVarList() const;
  const std::vector<SyntaxVariableName*>& GetTableSetList() const;
  int GetNumOfBys() const;
  /// Counts a BY; a third raises IncorrectSequence with "BY" (a table has three axes).
  void IncrementBys();

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct TableData;
  TableData* _tableData;
};
