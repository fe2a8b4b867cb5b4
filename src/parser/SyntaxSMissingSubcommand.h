// SyntaxSMissingSubcommand.h - SMISSING: pairwise or listwise deletion of missing scale values
#pragma once

#include <string>

#include "parser/SyntaxKeywordSubcommand.h"

/// SMISSING VARIABLE | LISTWISE. A global subcommand; the root keeps the latest one and
/// copies GetIsPairwise into every table. A second word warns and wins.
class SyntaxSMissingSubcommand : public SyntaxKeywordSubcommand {
 public:
  SyntaxSMissingSubcommand();

  /// SMISSING has no keyword: a `word '='` goes to the command, as for any converter.
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;

  /// True (the default) for pairwise deletion, false for listwise.
  bool GetIsPairwise() const;

 protected:
  void DumpDetails(std::ostream& out) const override;
};
