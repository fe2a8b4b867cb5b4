// SyntaxTablesCommand.h - the root of the converter tree: subcommand order, global settings, the tables
#pragma once

#include <string>
#include <vector>

#include "parser/CommandScope.h"
#include "parser/SyntaxComposite.h"

class SyntaxTableSubcommand;
class SyntaxPComputeSubcommand;
class SyntaxPPropertiesSubcommand;
class VLabelsSettings;

/// The whole command. It decides which subcommand a word after "/" opens, enforces where
/// each may stand (global subcommands before the first TABLE, table-level ones after a
/// TABLE), and on the period commits the global settings into every table. All
/// subcommands are its children, added with Add and owned through them. It is the command
/// scope of every converter under it, and owns the command's run-wide state (the base
/// weight), so a new command starts clean.
class SyntaxTablesCommand : public SyntaxComposite, public CommandScope {
 public:
  SyntaxTablesCommand();
  ~SyntaxTablesCommand() override;

  int GetType() const override;
  SyntaxConverter* SubCommandString(const std::string& text) override;
  /// The root has nothing to validate on a slash: it stays current.
  SyntaxConverter* Slash(const std::string& text) override;
  /// Commits the global subcommands into the tables and makes equal titles distinct.
  SyntaxConverter* Period(const std::string& text) override;

  /// The tables in syntax order (not owned by the caller).
  std::vector<SyntaxTableSubcommand*>& GetTable();
  std::vector<SyntaxPComputeSubcommand*> GetPComputeSubcommands() const override;
  std::vector<SyntaxPPropertiesSubcommand*> GetPPropertiesSubcommands() const override;
  const std::vector<ComputedDefinition>& GetComputedDefinitions() const override;
  bool GetHideSmallCountsSet() const;
  int GetHideSmallCountsValue() const;
  /// Makes `index` the base weight of the run; with a valid index the host's case
  /// weighting word is cleared (the entry restores it afterwards).
  void SetBaseWeightVariable(int index, const std::string& name) override;
  int GetBaseWeightIndex() const override;
  std::string GetBaseWeightVarName() const;
  /// What the VLABELS subcommands asked for, for the commit into the tables.
  const VLabelsSettings& GetVLabelsSettings() const;

 private:
  /// Makes `subcommand` a child of the root (owned from then on) and returns it.
  template <typename Subcommand>
  Subcommand* AddSubcommand(Subcommand* subcommand);
  /// A global subcommand a command holds once: a second one warns, naming `keyword`, and
  /// replaces the first in `slot` (the first stays a child, no longer read).
  template <typename Subcommand>
  Subcommand* AddOnce(Subcommand*& slot, const char* keyword);

  void CommitGlobalSubcommands();
  void MakeTableTitlesUnique();

  struct CommandData;
  CommandData* _commandData;
};
