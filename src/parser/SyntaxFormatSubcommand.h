// SyntaxFormatSubcommand.h - FORMAT: column widths, their units, and the texts of empty and missing cells
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxKeywordSubcommand.h"

/// FORMAT MINCOLWIDTH= MAXCOLWIDTH= UNITS= EMPTY= MISSING=. A global subcommand: the root
/// keeps the latest one and copies its results into every table when the command ends.
/// Widths are checked and converted to points when the subcommand ends, so UNITS may come
/// before or after the widths.
class SyntaxFormatSubcommand : public SyntaxKeywordSubcommand {
 public:
  SyntaxFormatSubcommand();
  ~SyntaxFormatSubcommand() override;

  /// The text of empty cells; meaningful when GetEmptyStringType() is kString.
  std::string GetEmptyString() const;
  std::string GetMissingString() const;
  /// A PresentationCodes::FormatEmpty value.
  int GetEmptyStringType() const;
  bool HasMinColumnWidth() const;
  /// In points, after ValidateAndCommit.
  double GetMinColumnWidthPoints() const;
  bool HasMaxColumnWidth() const;
  double GetMaxColumnWidthPoints() const;

 protected:
  void OnWord(int rule, int code) override;
  void OnNumber(int rule, double value, const std::string& text) override;
  void OnText(int rule, const std::string& text) override;
  /// Converts the widths to points and checks their bounds (15 to 2000) and their order.
  void Commit(const std::string& text) override;
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
