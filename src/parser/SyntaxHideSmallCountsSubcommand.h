// SyntaxHideSmallCountsSubcommand.h - HIDESMALLCOUNTS: counts below a threshold are shown as "<n"
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxConverter.h"

/// HIDESMALLCOUNTS [COUNT=n]. A global subcommand: its presence turns the hiding on, with
/// 5 as the threshold unless COUNT says otherwise.
class SyntaxHideSmallCountsSubcommand : public SyntaxConverter {
 public:
  SyntaxHideSmallCountsSubcommand();
  ~SyntaxHideSmallCountsSubcommand() override;

  std::string GetSubcommandName() const override;
  /// kConverterHideSmallCounts.
  int GetType() const override;
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  /// COUNT's value, read as an integer ("5.9" is 5); below 2 is an error.
  SyntaxConverter* Number(double value, const std::string& text) override;
  void ValidateAndCommit(const std::string& text) override;

  /// Always true: the subcommand's presence is the request.
  bool GetHideSmallCountsSet() const;
  int GetHideSmallCountsValue() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
