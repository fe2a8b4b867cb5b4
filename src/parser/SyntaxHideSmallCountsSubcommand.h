// SyntaxHideSmallCountsSubcommand.h - HIDESMALLCOUNTS: counts below a threshold are shown as "<n"
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxKeywordSubcommand.h"

/// HIDESMALLCOUNTS [COUNT=n]. A global subcommand: its presence turns the hiding on, with
/// 5 as the threshold unless COUNT says otherwise.
class SyntaxHideSmallCountsSubcommand : public SyntaxKeywordSubcommand {
 public:
  SyntaxHideSmallCountsSubcommand();
  ~SyntaxHideSmallCountsSubcommand() override;

  /// Always true: the subcommand's presence is the request.
  bool GetHideSmallCountsSet() const;
  int GetHideSmallCountsValue() const;

 protected:
  /// COUNT's value, read as an integer ("5.9" is 5); below 2 is an error.
  void OnNumber(int rule, double value, const std::string& text) override;
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
