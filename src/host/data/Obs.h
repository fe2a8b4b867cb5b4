// Obs.h - the 8-byte cell of case data, the system-missing value and string cell counts
#pragma once

#include <cstdint>
#include <cstring>

/// One 8-byte cell of case data. A numeric value is one double; a string of width w
/// occupies ObsLength(w) consecutive cells, blank-filled past its text. Two cells are
/// equal exactly when their 64 bits are equal, so compare with ObsBitsEqual, not ==.
union OBS {
  double number;
  char bytes[8];
};
static_assert(sizeof(OBS) == 8, "a case cell is exactly 8 bytes");

/// The system-missing value: the negative of the largest finite double
/// (bits 0xFFEFFFFFFFFFFFFF). Code compares values against it with ==.
constexpr double TARN_SystemMissing() { return -1.7976931348623157e+308; }

/// Number of 8-byte cells that a string of `width` bytes occupies: 1 up to 8 bytes.
constexpr int ObsLength(int width) { return width <= 8 ? 1 : (width + 7) >> 3; }

/// Bitwise equality of two cells.
inline bool ObsBitsEqual(const OBS& left, const OBS& right) {
  std::uint64_t leftBits;
  std::uint64_t rightBits;
  std::memcpy(&leftBits, &left, sizeof leftBits);
  std::memcpy(&rightBits, &right, sizeof rightBits);
  return leftBits == rightBits;
}
