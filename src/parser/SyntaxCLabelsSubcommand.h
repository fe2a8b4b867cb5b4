// SyntaxCLabelsSubcommand.h - CLABELS: moves one table's category labels to the opposite axis or the layers
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxComposite.h"

class TableSettings;

/// CLABELS AUTO | ROWLABELS=OPPOSITE|LAYER | COLLABELS=OPPOSITE|LAYER. Created by a table
/// subcommand; at its end the option goes to the table's settings.
class SyntaxCLabelsSubcommand : public SyntaxComposite {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxCLabelsSubcommand(TableSettings& settings);
  ~SyntaxCLabelsSubcommand() override;

  std::string GetSubcommandName() const override;
  /// kConverterCLabels.
  int GetType() const override;
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  SyntaxConverter* String(const std::string& text) override;
  void ValidateAndCommit(const std::string& text) override;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
