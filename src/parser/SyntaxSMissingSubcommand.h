// SyntaxSMissingSubcommand.h - SMISSING: pairwise or listwise deletion of missing scale values
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxConverter.h"

/// SMISSING VARIABLE | LISTWISE. A global subcommand; the root keeps the latest one and
/// copies GetIsPairwise into every table.
class SyntaxSMissingSubcommand : public SyntaxConverter {
 public:
  SyntaxSMissingSubcommand();
  ~SyntaxSMissingSubcommand() override;

  std::string GetSubcommandName() const override;
  /// VARIABLE (pairwise) or LISTWISE; a second word warns and wins.
  SyntaxConverter* String(const std::string& text) override;

  /// True (the default) for pairwise deletion, false for listwise.
  bool GetIsPairwise() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
