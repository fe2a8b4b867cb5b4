// SyntaxWeightSubcommand.h - WEIGHT: a base weight variable that replaces the case weight for the run
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxKeywordSubcommand.h"

class CommandScope;

/// WEIGHT VARIABLE=name, a numeric variable. A global subcommand; at its end the variable
/// becomes the run's base weight through the command root.
class SyntaxWeightSubcommand : public SyntaxKeywordSubcommand {
 public:
  /// `command` receives the base weight; not owned.
  explicit SyntaxWeightSubcommand(CommandScope* command);
  ~SyntaxWeightSubcommand() override;

  /// The chosen variable's dictionary index; -1 when none was given.
  int GetWeightIndex() const;
  std::string GetWeightName() const;

 protected:
  /// The variable's name: it must exist and be numeric.
  void OnName(int rule, const std::string& text) override;
  void Commit(const std::string& text) override;
  void DumpDetails(std::ostream& out) const override;

 private:
  struct WeightData;
  std::unique_ptr<WeightData> _data;
};
