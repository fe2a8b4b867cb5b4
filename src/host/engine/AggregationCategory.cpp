// AggregationCategory.cpp - one displayed category of a table dimension
#include "host/engine/AggregationCategory.h"

AggregationCategory::AggregationCategory(int catType, int encoding, int varIndex)
    : _catType(catType), _encoding(encoding), _varIndex(varIndex) {}
