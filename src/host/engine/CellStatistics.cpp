// CellStatistics.cpp - the ordered list of statistics that every cell of a cube carries
#include "host/engine/CellStatistics.h"

#include "host/QuiltAssert.h"

int CellStatistics::GetIndex(const AggregationStatistic& statistic, bool categorical) const {
  for (int i = 0; i < Size(); ++i) {
    const AggregationStatistic& own = _statistics[static_cast<unsigned>(i)];
    if (own.GetCode() != statistic.GetCode()) continue;
    if (own.GetPTileCutPoint() != statistic.GetPTileCutPoint()) continue;
    if (categorical || own.GetVarIndex() == statistic.GetVarIndex()) return i;
  }
  return -1;
}

const AggregationStatistic& CellStatistics::Get(int index) const {
  QUILT_ASSERT(index >= 0 && index < Size(), "statistic index out of range");
  return _statistics[static_cast<unsigned>(index)];
}
