// TARN_InputCaseIterator.h - the case-by-case reading interface over a data set
#pragma once

#include "host/data/Obs.h"

/// Reads cases one at a time. NextCase moves on; the accessors give the case the iterator
/// stands on. Data read through the accessors stays valid until the next NextCase.
class TARN_InputCaseIterator {
 public:
  virtual ~TARN_InputCaseIterator();

  /// Moves to the next case: non-zero while there is data, 0 at the end.
  int NextCase() { return DoNextCase(); }
  /// The numeric value of variable `index` in the current case.
  virtual const double* GetNumericValue(int index) const = 0;
  /// The cells of variable `index` in the current case.
  virtual const OBS* GetObsPointer(unsigned index) const = 0;

 protected:
  TARN_InputCaseIterator() = default;
  virtual int DoNextCase() = 0;
};
