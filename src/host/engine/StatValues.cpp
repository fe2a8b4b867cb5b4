// StatValues.cpp - the values of one cell
#include "host/engine/StatValues.h"

#include "host/QuiltAssert.h"

AggregationResult StatValues::GetStatValue(int index) const {
  QUILT_ASSERT(index >= 0 && index < Size(), "statistic index out of range for this cell");
  return _values[static_cast<unsigned>(index)];
}
