// SyntaxCompareTestSubcommand.h - COMPARETEST: the column proportions or column means test of one table
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxConverter.h"

class TableSettings;

/// COMPARETEST TYPE= ALPHA= ADJUST= ORIGIN= CATEGORIES= INCLUDEMRSETS= MEANSVARIANCE= MERGE=
/// SHOWSIG= STYLE= SIGDIGS=. Created by a table subcommand, added as its child; at its end
/// it registers one SigTestSettings with the table's settings.
class SyntaxCompareTestSubcommand : public SyntaxConverter {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxCompareTestSubcommand(TableSettings& settings);
  ~SyntaxCompareTestSubcommand() override;

  std::string GetSubcommandName() const override;
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  /// An ALPHA level (one, or a second one right after it) or the SIGDIGS count.
  SyntaxConverter* Number(double value, const std::string& text) override;
  SyntaxConverter* String(const std::string& text) override;
  /// Registers the test; nothing at all when no test option was given.
  void ValidateAndCommit(const std::string& text) override;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
