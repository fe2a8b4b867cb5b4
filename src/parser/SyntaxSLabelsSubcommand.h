// SyntaxSLabelsSubcommand.h - SLABELS: where one table's statistic labels go and whether they show
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxComposite.h"

class TableSettings;

/// SLABELS POSITION=COLUMN|ROW|LAYER VISIBLE=YES|NO. Created by a table subcommand; at its
/// end what was given goes to the table's settings.
class SyntaxSLabelsSubcommand : public SyntaxComposite {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxSLabelsSubcommand(TableSettings& settings);
  ~SyntaxSLabelsSubcommand() override;

  std::string GetSubcommandName() const override;
  /// kConverterSLabels.
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
