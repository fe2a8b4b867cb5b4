// AggregationStatistic.h - names one statistic of a cube: code, scale variable and percentile cut point
#pragma once

#include "host/engine/TableEncryptionCodes.h"

/// One statistic asked of a cube. Two statistics match when code, variable and cut point
/// are the same; a statistic built from a code alone has no variable (index -1).
class AggregationStatistic {
 public:
  explicit AggregationStatistic(int code);
  AggregationStatistic(int varIndex, int code);
  AggregationStatistic(const AggregationStatistic& other);
  AggregationStatistic& operator=(const AggregationStatistic& other);
  ~AggregationStatistic();

  int GetCode() const { return _code; }
  int GetVarIndex() const { return _varIndex; }
  /// Percentile in 0..100 for PTILE and UPTILE; -1 when none was set.
  double GetPTileCutPoint() const { return _cutPoint; }
  void SetPTileCutPoint(double value) { _cutPoint = value; }
  int GetPrimaryStatistic() const;
  int GetConfSubType() const;
  bool operator==(const AggregationStatistic& other) const;

  /// Splits a code into its primary statistic and confidence variant. False for a code
  /// that names no statistic (outside 0..513, or in a gap behind a primary).
  static bool GetStatPrimeAndConf(int code, int& prime, int& conf);

 private:
  int _code = 0;
  int _varIndex = -1;
  double _cutPoint = -1.0;
};
