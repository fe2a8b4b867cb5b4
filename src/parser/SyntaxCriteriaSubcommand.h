// SyntaxCriteriaSubcommand.h - CRITERIA: the confidence level of one table's confidence limits
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxConverter.h"

class TableSettings;

/// CRITERIA CILEVEL=n, with n strictly between 0 and 100. Created by a table subcommand;
/// at its end the level goes to the table's settings.
class SyntaxCriteriaSubcommand : public SyntaxConverter {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxCriteriaSubcommand(TableSettings& settings);
  ~SyntaxCriteriaSubcommand() override;

  std::string GetSubcommandName() const override;
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  SyntaxConverter* Number(double value, const std::string& text) override;
  void ValidateAndCommit(const std::string& text) override;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
