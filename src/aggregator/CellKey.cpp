// CellKey.cpp - the integer address of one cell of a cube
#include "aggregator/CellKey.h"

#include "host/QuiltAssert.h"

namespace {

std::size_t CheckedLength(int length) {
  QUILT_ASSERT(length >= 0, "a cell key cannot have a negative length");
  return static_cast<std::size_t>(length);
}

}  // namespace

CellKey::CellKey(int length) : _positions(CheckedLength(length), kCellKeyTotal) {}

int& CellKey::operator[](int i) {
  QUILT_ASSERT(i >= 0 && i < GetLength(), "cell key position out of range");
  return _positions[static_cast<std::size_t>(i)];
}

int CellKey::operator[](int i) const {
  QUILT_ASSERT(i >= 0 && i < GetLength(), "cell key position out of range");
  return _positions[static_cast<std::size_t>(i)];
}
