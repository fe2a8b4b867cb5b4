// StatisticCodeTable.h - decodes and encodes statistic codes by the one layout in StatisticCodes.def
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/engine/TableEncryptionCodes.h"

/// What one statistic code means. Plain value type.
struct StatisticCodeInfo {
  int _primary = 0;  // the primary statistic the code is or varies; 0 marks a code that names none
  TableEncryptionCodes::StatisticConf _conf = TableEncryptionCodes::kConfNone;  // which variant of it
  TableEncryptionCodes::StatisticsGroup _group = TableEncryptionCodes::kStatGroupCounts;  // who may carry it
  TableEncryptionCodes::StatisticWeighting _weighting = TableEncryptionCodes::kStatWeighted;
  int _family = -1;     // the PercentageFamily of a percentage; -1 for any other statistic
  int _base = -1;       // the PercentageBase of a percentage; -1 for any other statistic
  bool _named = false;  // a command can name it: it has a keyword and the engine computes it
};

/// The statistic codes as one constexpr table built from StatisticCodes.def. The engine reads
/// a code's family, base and weighting here; the parser builds its keyword vocabulary here.
class StatisticCodeTable {
 public:
  /// Codes run from 0 to kCodeCount - 1.
  static constexpr int kCodeCount = TableEncryptionCodes::kStatLast + 1;

  /// The meaning of a code, or null for a code that names no statistic (outside the code
  /// range, in a gap behind a primary, or 0). Points into a static table.
  static const StatisticCodeInfo* Decode(int code);
  /// The code of a primary's variant; -1 when the primary has no code for that variant.
  /// kConfUnset counts as kConfNone.
  static int Encode(int primary, TableEncryptionCodes::StatisticConf conf);
  /// The code of a percentage.
  static int EncodePercentage(TableEncryptionCodes::PercentageFamily family,
                              TableEncryptionCodes::PercentageBase base, bool unweighted);
  /// What a family's percentages sum over the cell and over the base.
  static TableEncryptionCodes::PercentageQuantity GetNumerator(int family);
  static TableEncryptionCodes::PercentageQuantity GetDenominator(int family);
  /// The keyword of a code ("UCOLPCT.COUNT.LCL"); empty for a code without one (the
  /// internal statistics and codes that name nothing). Variants the engine does not compute
  /// get their keyword too; StatisticCodeInfo::_named tells whether a command may use it.
  static std::string GetKeyword(int code);
  /// The default label of a code; a confidence limit's label holds "^1" for the level.
  /// Empty exactly when GetKeyword is.
  static std::string GetLabel(int code);
  /// The short keywords and the codes they stand for, in the order of StatisticCodes.def.
  static std::vector<std::pair<std::string, int>> GetAliases();
};
