// SyntaxMRSets.h - MRSETS: how multiple-response sets count a case that repeats a response
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxComposite.h"

/// `MRSETS COUNTDUPLICATES = YES | NO`. A global subcommand; the root keeps the latest one
/// and hands GetIsCountDuplicatesNo to every set of every table.
class SyntaxMRSets : public SyntaxComposite {
 public:
  SyntaxMRSets();
  ~SyntaxMRSets() override;

  std::string GetSubcommandName() const override;
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  SyntaxConverter* String(const std::string& text) override;
  /// The keyword without its value, or no keyword at all, is incomplete.
  void ValidateAndCommit(const std::string& text) override;

  /// True (the default) when a repeated response counts once.
  bool GetIsCountDuplicatesNo() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
