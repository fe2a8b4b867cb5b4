// CaseBlock.h - a block of cases that the table reads column by column for its dimensions and cubes
#pragma once

#include <cstddef>

#include "host/data/Obs.h"

/// A block of cases as the dimensions and cubes read it. Reading a loaded data set the
/// table collects up to a few thousand case numbers and hands them over at once, so that
/// each dimension maps a whole column slice in one loop and each cube updates its cells in
/// another, without a virtual call per value. Reading any other iterator the block holds
/// the one current case: its row is 0 and each column is the iterator's pointer for it.
struct CaseBlock {
  std::size_t _size = 0;                  // cases in the block
  const std::size_t* _rows = nullptr;     // the row of each case in the columns
  const OBS* const* _columns = nullptr;   // by dictionary index; null for a variable not read
  const std::size_t* _strides = nullptr;  // cells per case, by dictionary index
  const double* _weights = nullptr;       // per case: 1 unweighted, else the positive weight
  const double* _scaleValues = nullptr;   // scale slot s of case k at [s * _scaleStride + k]
  const char* _scaleValid = nullptr;      // parallel to _scaleValues: 1 when valid
  std::size_t _scaleStride = 0;

  /// The cells of variable `index` in case `k` of the block.
  const OBS* Cells(int index, std::size_t k) const {
    const std::size_t i = static_cast<std::size_t>(index);
    return _columns[i] + _rows[k] * _strides[i];
  }
};
