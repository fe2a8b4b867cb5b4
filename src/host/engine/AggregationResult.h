// AggregationResult.h - the value of one statistic in one cell, with its companion value
#pragma once

#include "host/data/Obs.h"

/// Value 1 is the statistic. Value 2 is the unweighted count behind a count-format
/// statistic, the largest mode for MODE, and system-missing otherwise.
class AggregationResult {
 public:
  AggregationResult() = default;
  explicit AggregationResult(double value1) : _value1(value1) {}
  AggregationResult(double value1, double value2) : _value1(value1), _value2(value2) {}

  double GetValue1() const { return _value1; }
  double GetValue2() const { return _value2; }
  operator double() const { return _value1; }  // NOLINT(google-explicit-constructor)

 private:
  double _value1 = TARN_SystemMissing();
  double _value2 = TARN_SystemMissing();
};
