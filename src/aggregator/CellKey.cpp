// CellKey.cpp - the integer address of one cell of a cube
#include "aggregator/CellKey.h"

#include <algorithm>

#include "host/QuiltAssert.h"

CellKey::CellKey(int length) : _positions(nullptr), arLength(length) {
  QUILT_ASSERT(length >= 0, "a cell key cannot have a negative length");
  _positions = new int[static_cast<unsigned>(length > 0 ? length : 1)];
  std::fill(_positions, _positions + length, kCellKeyTotal);
}

CellKey::CellKey(const CellKey& other) : CellKey(other.arLength) {
  std::copy(other._positions, other._positions + arLength, _positions);
}

CellKey& CellKey::operator=(const CellKey& other) {
  if (this != &other) {
    CellKey copy(other);
    std::swap(_positions, copy._positions);
    std::swap(arLength, copy.arLength);
  }
  return *this;
}

CellKey::~CellKey() {
  delete[] _positions;
}

int& CellKey::operator[](int i) {
  QUILT_ASSERT(i >= 0 && i < arLength, "cell key position out of range");
  return _positions[i];
}

int CellKey::operator[](int i) const {
  QUILT_ASSERT(i >= 0 && i < arLength, "cell key position out of range");
  return _positions[i];
}
