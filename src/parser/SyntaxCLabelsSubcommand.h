// SyntaxCLabelsSubcommand.h - CLABELS: moves one table's category labels to the opposite axis or the layers
#pragma once

#include "parser/SyntaxKeywordSubcommand.h"

class TableSettings;

/// CLABELS AUTO | ROWLABELS=OPPOSITE|LAYER | COLLABELS=OPPOSITE|LAYER. Created by a table
/// subcommand; at its end the option goes to the table's settings.
class SyntaxCLabelsSubcommand : public SyntaxKeywordSubcommand {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxCLabelsSubcommand(TableSettings& settings);

 protected:
  void Commit(const std::string& text) override;
  void DumpDetails(std::ostream& out) const override;

 private:
  TableSettings& _settings;  // the table's
};
