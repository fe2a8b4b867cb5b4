// TableSettings.h - what the table-level subcommands after one TABLE ask of that table
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/engine/TableEncryptionCodes.h"
#include "parser/PresentationCodes.h"
#include "parser/SigTestSettings.h"

class SyntaxMiscSubcommands;

/// The settings that SLABELS, CLABELS, CRITERIA, TITLES, COMPARETEST and SIGTEST commit for
/// one table. The table subcommand owns one and hands it to each of these converters when it
/// creates them; the converters call the setters from their ValidateAndCommit. The setters
/// apply the rules that span subcommands: a second request of the same kind on one table
/// warns and replaces the first.
class TableSettings {
 public:
  using CLabelOption = TableEncryptionCodes::CLabelOption;
  using SLabelPosition = PresentationCodes::SLabelPosition;

  TableSettings();
  ~TableSettings();
  TableSettings(const TableSettings&) = delete;
  TableSettings& operator=(const TableSettings&) = delete;

  /// Registers a column test; an earlier test of the same type is dropped with a warning.
  void AddCompareTest(const SigTestSettings& settings);
  /// Registers the chi-square test; an earlier one is dropped with a warning.
  void AddSignificanceTest(const SigTestSettings& settings);
  /// The requested tests, at most one of each type, in order of request.
  const std::vector<SigTestSettings>& GetSigTestSettings() const;
  /// The same list for the table's final check, which drops tests that cannot run.
  std::vector<SigTestSettings>& GetSigTestSettings();
  bool HasChiSquareTest() const;
  bool HasColPropTest() const;
  bool HasPairWiseTest() const;

  /// Warns ("SLABELS", "POSITION") when a position was already set.
  void SetSLabelPosition(SLabelPosition position);
  SLabelPosition GetSLabelPosition() const;
  bool IsSLabelPositionSet() const;
  /// Warns ("SLABELS", "VISIBLE") when the visibility was already set.
  void SetSLabelVisibility(bool visible);
  bool GetSLabelVisibility() const;
  bool IsSLabelVisibilitySet() const;

  void SetCLabelOption(CLabelOption option);
  CLabelOption GetCLabelOption() const;

  void SetCILevel(double value, const std::string& text);
  double GetCILevelValue() const;
  std::string GetCILevelString() const;

  /// The holders of the TITLES texts (SyntaxMiscSubcommands, owned by their TITLES
  /// converter). A second holder of the same kind warns ("TITLES", "TITLE", ...) and wins.
  void SetTitle(const SyntaxMiscSubcommands* holder);
  void SetCaption(const SyntaxMiscSubcommands* holder);
  void SetCornerText(const SyntaxMiscSubcommands* holder);
  bool HasTitle() const;
  bool HasCaption() const;
  bool HasCornerText() const;
  /// The texts, with their )DATE, )TIME and )TABLE parameters filled; empty without a holder.
  std::string GetTitleText() const;
  std::string GetCaption() const;
  std::string GetCornerText() const;

  // --- What the global FORMAT and SMISSING give every table --------------------------
  // The root copies these in when the command ends; a table without FORMAT keeps the
  // defaults (no width limits, empty cells as zero, missing cells as ".", pairwise).

  /// Column widths in points; 0 means no limit.
  void SetMinColumnWidthPoints(double points);
  double GetMinColumnWidthPoints() const;
  bool HasMinColumnWidth() const;
  void SetMaxColumnWidthPoints(double points);
  double GetMaxColumnWidthPoints() const;
  bool HasMaxColumnWidth() const;
  /// A PresentationCodes::FormatEmpty value with the user's text for kString.
  void SetEmptyString(int type, const std::string& text);
  void SetEmptyStringType(int type);
  int GetEmptyStringType() const;
  /// Only meaningful when the type is kString.
  std::string GetEmptyString() const;
  void SetMissingString(const std::string& text);
  std::string GetMissingString() const;
  /// SMISSING: pairwise (true) or listwise deletion of missing scale values.
  void SetIsPairwise(bool isPairwise);
  bool GetIsPairwise() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
