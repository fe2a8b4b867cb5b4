// QuiltAStatInfo.h - one row of the statistic vocabulary: code, group, default label, keyword, variant
#pragma once

#include <string>

#include "host/engine/TableEncryptionCodes.h"

/// One statistic a command can name. Plain value type; the vocabulary holds one per code,
/// and a row whose `_code` is 0 is empty (no statistic has that code).
struct QuiltAStatInfo {
  TableEncryptionCodes::StatisticCodes _code =
      TableEncryptionCodes::StatisticCodes(0);  // its own code; 0 marks an empty row
  TableEncryptionCodes::StatisticsGroup _group =
      TableEncryptionCodes::kStatGroupCounts;  // which variables may carry it
  std::string _label;                          // default label; may hold "^1" for the confidence level
  std::string _keyword;                        // the command keyword, upper case
  TableEncryptionCodes::StatisticCodes _primaryStatistic =
      TableEncryptionCodes::StatisticCodes(0);  // the primary it varies
  TableEncryptionCodes::StatisticConf _confSubType =
      TableEncryptionCodes::kConfUnset;  // which confidence variant
};
