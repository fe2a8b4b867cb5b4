// SyntaxCompareTestSubcommand.h - COMPARETEST: the column proportions or column means test of one table
#pragma once

#include <memory>
#include <string>

#include "parser/PresentationCodes.h"
#include "parser/SyntaxKeywordSubcommand.h"

class TableSettings;

/// COMPARETEST TYPE= ALPHA= ADJUST= ORIGIN= CATEGORIES= INCLUDEMRSETS= MEANSVARIANCE= MERGE=
/// SHOWSIG= STYLE= SIGDIGS=. Created by a table subcommand, added as its child; at its end
/// it registers one SigTestSettings with the table's settings.
class SyntaxCompareTestSubcommand : public SyntaxKeywordSubcommand {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxCompareTestSubcommand(TableSettings& settings);
  ~SyntaxCompareTestSubcommand() override;

  /// A second ALPHA level right after the first; other numbers go to OnNumber.
  SyntaxConverter* Number(double value, const std::string& text) override;

 protected:
  SyntaxConverter* OnKeyword(int rule) override;
  /// An ALPHA level or the SIGDIGS count.
  void OnNumber(int rule, double value, const std::string& text) override;
  /// Registers the test; nothing at all when no test option was given.
  void Commit(const std::string& text) override;
  void DumpDetails(std::ostream& out) const override;

 private:
  /// TYPE's code; 0 until TYPE is given.
  int Type() const;
  PresentationCodes::SignificanceAdjustType Adjust() const;
  /// The yes-or-no word last given for `rule`; `fallback` when none was.
  bool Says(int rule, bool fallback) const;
  /// MERGE=YES, unless SHOWSIG=YES cancels it.
  bool Merged() const;

  struct Data;
  std::unique_ptr<Data> _data;
};
