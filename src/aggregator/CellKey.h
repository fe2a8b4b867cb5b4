// CellKey.h - the integer address of one cell of a cube: one category encoding per key position
#pragma once

#include <vector>

/// The encoding of "all categories of this position together".
constexpr int kCellKeyTotal = -100;

/// A fixed-length array of category encodings, one per key position of a cube, in the
/// order the variables were added to it. Positions start at kCellKeyTotal. A plain value:
/// copies are independent.
class CellKey {
 public:
  explicit CellKey(int length);

  /// Requires 0 <= i < GetLength().
  int& operator[](int i);
  int operator[](int i) const;
  int GetLength() const { return static_cast<int>(_positions.size()); }

 private:
  std::vector<int> _positions;
};
