// SyntaxSigTestSubcommand.h - SIGTEST: the Pearson chi-square test of one table
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxConverter.h"

class TableSettings;

/// SIGTEST TYPE=CHISQUARE ALPHA= CATEGORIES= INCLUDEMRSETS=. Created by a table subcommand,
/// added as its child; at its end it registers one SigTestSettings with the table's settings.
class SyntaxSigTestSubcommand : public SyntaxConverter {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxSigTestSubcommand(TableSettings& settings);
  ~SyntaxSigTestSubcommand() override;

  std::string GetSubcommandName() const override;
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  SyntaxConverter* Number(double value, const std::string& text) override;
  SyntaxConverter* String(const std::string& text) override;
  /// Registers the test when TYPE was given; options without TYPE are incomplete.
  void ValidateAndCommit(const std::string& text) override;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
