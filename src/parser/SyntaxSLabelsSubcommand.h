// SyntaxSLabelsSubcommand.h - SLABELS: where one table's statistic labels go and whether they show
#pragma once

#include "parser/SyntaxKeywordSubcommand.h"

class TableSettings;

/// SLABELS POSITION=COLUMN|ROW|LAYER VISIBLE=YES|NO. Created by a table subcommand; at its
/// end what was given goes to the table's settings.
class SyntaxSLabelsSubcommand : public SyntaxKeywordSubcommand {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxSLabelsSubcommand(TableSettings& settings);

 protected:
  void Commit(const std::string& text) override;
  void DumpDetails(std::ostream& out) const override;

 private:
  TableSettings& _settings;  // the table's
};
