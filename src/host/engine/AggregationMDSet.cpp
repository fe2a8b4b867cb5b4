// AggregationMDSet.cpp - a multiple-dichotomy set
#include "host/engine/AggregationMDSet.h"

#include "host/QuiltAssert.h"

AggregationMDSet::AggregationMDSet(const std::vector<int>& varIndices, const std::string& name,
                                   const OBS* countedValue, int countedValueSize, bool useCountedValueLabels)
    : AggregationVariable(kDichotomySet, varIndices, name),
      _counted(countedValue != nullptr ? reinterpret_cast<const char*>(countedValue) : "",
               countedValue != nullptr
                   ? sizeof(OBS) * static_cast<std::size_t>(countedValueSize > 0 ? countedValueSize : 1)
                   : 0),
      _useCountedValueLabels(useCountedValueLabels) {
  QUILT_ASSERT(!varIndices.empty(), "a dichotomy set needs at least one member");
  QUILT_ASSERT(countedValue != nullptr, "a dichotomy set needs its counted value");
}

AggregationMDSet::~AggregationMDSet() = default;
