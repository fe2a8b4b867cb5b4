// StatValues.h - the values of one cell, in the order of its cube's statistic list
#pragma once

#include <vector>

#include "host/engine/AggregationResult.h"
#include "host/engine/CellStatistics.h"

/// The values of one cell. A cell of a total or subtotal category follows the cube's total
/// statistic list when it has one.
class StatValues {
 public:
  StatValues(const CellStatistics* statistics, bool isTotal, std::vector<AggregationResult> values)
      : _statistics(statistics), _isTotal(isTotal), _values(std::move(values)) {}

  /// Requires 0 <= index < the number of statistics.
  AggregationResult GetStatValue(int index) const;
  bool IsTotalStats() const { return _isTotal; }
  const CellStatistics* GetCellStatistic() const { return _statistics; }
  int Size() const { return static_cast<int>(_values.size()); }

 private:
  const CellStatistics* _statistics;
  bool _isTotal;
  std::vector<AggregationResult> _values;
};
