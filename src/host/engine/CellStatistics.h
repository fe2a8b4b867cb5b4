// CellStatistics.h - the ordered list of statistics that every cell of a cube carries
#pragma once

#include <vector>

#include "host/engine/AggregationStatistic.h"

/// The statistics of a cell in the order of its values.
class CellStatistics {
 public:
  CellStatistics() = default;
  explicit CellStatistics(std::vector<AggregationStatistic> statistics)
      : _statistics(std::move(statistics)) {}

  /// Index of the statistic among the cell's values, negative when absent. `categorical`
  /// is true for a statistic built from a code alone: only the code is compared then.
  int GetIndex(const AggregationStatistic& statistic, bool categorical) const;
  int Size() const { return static_cast<int>(_statistics.size()); }
  const AggregationStatistic& Get(int index) const;
  const std::vector<AggregationStatistic>& GetList() const { return _statistics; }

 private:
  std::vector<AggregationStatistic> _statistics;
};
