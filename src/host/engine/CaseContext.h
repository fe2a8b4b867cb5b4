// CaseContext.h - what the table reads once per case and hands to every cube
#pragma once

/// How weights enter the statistics of a table.
enum WeightMode {
  kWeightNone = 0,       // every case weighs 1
  kWeightFrequency = 1,  // the data source's case weight: a case of weight 3 is 3 cases
  kWeightBase = 2,       // a base (sampling) weight: effective base W^2 / W2
};

/// One case as the cubes see it. Scale values are indexed by the table's scale slots.
struct CaseContext {
  double _weight = 1.0;
  const double* _scaleValues = nullptr;
  const bool* _scaleValid = nullptr;
};
