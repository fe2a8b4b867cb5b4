// SyntaxCriteriaSubcommand.h - CRITERIA: the confidence level of one table's confidence limits
#pragma once

#include <string>

#include "parser/SyntaxKeywordSubcommand.h"

class TableSettings;

/// CRITERIA CILEVEL=n, with n strictly between 0 and 100. Created by a table subcommand;
/// at its end the level goes to the table's settings.
class SyntaxCriteriaSubcommand : public SyntaxKeywordSubcommand {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxCriteriaSubcommand(TableSettings& settings);

 protected:
  void Commit(const std::string& text) override;
  void DumpDetails(std::ostream& out) const override;

 private:
  TableSettings& _settings;  // the table's
};
