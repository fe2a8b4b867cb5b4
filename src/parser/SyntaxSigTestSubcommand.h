// SyntaxSigTestSubcommand.h - SIGTEST: the Pearson chi-square test of one table
#pragma once

#include <string>

#include "parser/SyntaxKeywordSubcommand.h"

class TableSettings;

/// SIGTEST TYPE=CHISQUARE ALPHA= CATEGORIES= INCLUDEMRSETS=. Created by a table subcommand,
/// added as its child; at its end it registers one SigTestSettings with the table's settings.
class SyntaxSigTestSubcommand : public SyntaxKeywordSubcommand {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxSigTestSubcommand(TableSettings& settings);

 protected:
  /// Registers the test when TYPE was given; options without TYPE are incomplete.
  void Commit(const std::string& text) override;
  void DumpDetails(std::ostream& out) const override;

 private:
  TableSettings& _settings;  // the table's
};
