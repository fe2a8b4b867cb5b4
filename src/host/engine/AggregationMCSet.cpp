// AggregationMCSet.cpp - a multiple-category set
#include "host/engine/AggregationMCSet.h"

#include "host/QuiltAssert.h"

AggregationMCSet::AggregationMCSet(const std::vector<int>& varIndices, const std::string& name)
    : AggregationVariable(kCategorySet, varIndices, name) {
  QUILT_ASSERT(!varIndices.empty(), "a category set needs at least one member");
  _userMissingVarIndex = varIndices.front();
}

AggregationMCSet::~AggregationMCSet() = default;
