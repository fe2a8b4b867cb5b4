// CommandScope.h - what a parse node may ask of the command it belongs to
#pragma once

#include <string>
#include <vector>

class SyntaxPComputeSubcommand;
class SyntaxPPropertiesSubcommand;

/// One PCOMPUTE or PPROPERTIES subcommand of the command; exactly one pointer is set. The
/// order of these entries is the order the subcommands stand in, which decides which
/// definition and which properties a computed category reference takes.
struct ComputedDefinition {
  const SyntaxPComputeSubcommand* compute = nullptr;       // not owned
  const SyntaxPPropertiesSubcommand* properties = nullptr;  // not owned
};

/// The command a converter belongs to, as the converter sees it: the computed categories
/// defined so far and the run-wide base weight. The root (SyntaxTablesCommand) is the only
/// implementation; every converter placed under it is given it (SyntaxConverter::
/// GetCommandScope), so no converter has to find the root and cast it.
class CommandScope {
 public:
  /// The PCOMPUTE subcommands read so far, in syntax order (not owned by the caller).
  virtual std::vector<SyntaxPComputeSubcommand*> GetPComputeSubcommands() const = 0;
  /// The PPROPERTIES subcommands read so far, in syntax order (not owned by the caller).
  virtual std::vector<SyntaxPPropertiesSubcommand*> GetPPropertiesSubcommands() const = 0;
  /// Every PCOMPUTE and PPROPERTIES read so far, interleaved in syntax order.
  virtual const std::vector<ComputedDefinition>& GetComputedDefinitions() const = 0;
  /// Makes `index` the base weight of this command; a negative index keeps the name for
  /// messages and changes nothing.
  virtual void SetBaseWeightVariable(int index, const std::string& name) = 0;
  /// The dictionary index of this command's base weight; -1 for none.
  virtual int GetBaseWeightIndex() const = 0;

 protected:
  ~CommandScope() = default;
};
