// AggregationMDSet.h - a multiple-dichotomy set: each member is one category
#pragma once

#include <string>

#include "host/data/Obs.h"
#include "host/engine/AggregationVariable.h"

/// A multiple-dichotomy set. A member counts for a case when it holds the counted value.
/// Categories are labelled by the members' variable labels, or by each member's label of
/// the counted value when `useCountedValueLabels` is set.
class AggregationMDSet : public AggregationVariable {
 public:
  /// `countedValue` holds `countedValueSize` cells of 8 bytes (ObsLength of the members'
  /// type): 1 for a number, as many as a string of that width needs; 0 is taken as 1.
  AggregationMDSet(const std::vector<int>& varIndices, const std::string& name, const OBS* countedValue,
                   int countedValueSize, bool useCountedValueLabels);
  ~AggregationMDSet() override;

  /// The counted value's bytes as given: one numeric cell, a number written as text, or
  /// the text of a string value.
  const std::string& GetCountedBytes() const { return _counted; }
  bool GetUseCountedValueLabels() const { return _useCountedValueLabels; }

 private:
  std::string _counted;
  bool _useCountedValueLabels;
};
