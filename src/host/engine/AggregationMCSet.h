// AggregationMCSet.h - a multiple-category set: members hold category codes
#pragma once

#include "host/engine/AggregationVariable.h"

/// A multiple-category set. A case is in category k when a member holds k; user-missing
/// values follow the member chosen by SetUserMissingVarIndex (the first member by default).
class AggregationMCSet : public AggregationVariable {
 public:
  AggregationMCSet(const std::vector<int>& varIndices, const std::string& name);
  ~AggregationMCSet() override;
};
