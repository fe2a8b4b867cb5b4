// SyntaxWeightSubcommand.h - WEIGHT: a base weight variable that replaces the case weight for the run
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxComposite.h"

class CommandScope;

/// WEIGHT VARIABLE=name, a numeric variable. A global subcommand; at its end the variable
/// becomes the run's base weight through the command root.
class SyntaxWeightSubcommand : public SyntaxComposite {
 public:
  /// `command` receives the base weight; not owned.
  explicit SyntaxWeightSubcommand(CommandScope* command);
  ~SyntaxWeightSubcommand() override;

  std::string GetSubcommandName() const override;
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  /// The variable's name: it must exist and be numeric.
  SyntaxConverter* String(const std::string& text) override;
  void ValidateAndCommit(const std::string& text) override;

  /// The chosen variable's dictionary index; -1 when none was given.
  int GetWeightIndex() const;
  std::string GetWeightName() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct WeightData;
  std::unique_ptr<WeightData> _data;
};
