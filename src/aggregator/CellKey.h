// CellKey.h - the integer address of one cell of a cube: one category encoding per key position
#pragma once

/// The encoding of "all categories of this position together".
constexpr int kCellKeyTotal = -100;

/// A fixed-length array of category encodings, one per key position of a cube, in the
/// order the variables were added to it. Positions start at kCellKeyTotal.
class CellKey {
 public:
  explicit CellKey(int length);
  CellKey(const CellKey& other);
  CellKey& operator=(const CellKey& other);
  ~CellKey();

  /// Requires 0 <= i < GetLength().
  int& operator[](int i);
  int operator[](int i) const;
  int GetLength() const { return arLength; }

 private:
  int* _positions;
  int arLength;
};
