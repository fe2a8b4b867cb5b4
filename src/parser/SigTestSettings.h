// SigTestSettings.h - the record of one COMPARETEST or SIGTEST request, read by the tests and the renderer
#pragma once

#include <string>

#include "host/engine/TableEncryptionCodes.h"
#include "parser/PresentationCodes.h"

/// What one significance request asked for. A plain value type, copied freely; the table
/// keeps at most one of each test type.
struct SigTestSettings {
  using SignificanceTestType = TableEncryptionCodes::SignificanceTestType;
  using SignificanceAdjustType = PresentationCodes::SignificanceAdjustType;

  /// All fields from COMPARETEST; the four options not named stay at their defaults.
  SigTestSettings(SignificanceTestType type, double alpha, double alpha2, const std::string& alphaText,
                  const std::string& alpha2Text, SignificanceAdjustType adjustType, bool originColumn,
                  bool merge, bool showSig, int sigDigits);
  /// The SIGTEST form: one level, everything else at its default.
  SigTestSettings(SignificanceTestType type, double alpha, const std::string& alphaText);

  SignificanceTestType _type;       // chi-square, proportions or means
  double _alpha = 0.05;             // the (smaller) significance level
  double _alpha2 = 0.0;             // the second, larger level; 0: none
  std::string _alphaText = "0.05";  // _alpha as written, for footnotes
  std::string _alpha2Text;          // _alpha2 as written
  SignificanceAdjustType _adjustType = PresentationCodes::kAdjustBonferroni;
  bool _originColumn = true;          // the test runs along the columns
  bool _includeMRSets = true;         // tables with multiple-response sets are tested
  bool _includeSubtotals = false;     // subtotals are tested with the visible categories
  bool _meansVarianceAllCats = true;  // pooled variance of a means test over all categories
  bool _merge = false;                // results go into the main table
  bool _showSig = false;              // p-values are shown
  int _sigDigits = 3;                 // digits of the p-values, 1 to 16
  bool _styleApa = true;              // APA-style marks; false: the simple style
};
