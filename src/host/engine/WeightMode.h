// WeightMode.h - how the weights of a table enter its statistics
#pragma once

/// How weights enter the statistics of a table.
enum WeightMode {
  kWeightNone = 0,       // every case weighs 1
  kWeightFrequency = 1,  // the data source's case weight: a case of weight 3 is 3 cases
  kWeightBase = 2,       // a base (sampling) weight: effective base W^2 / W2
};
