// BpFormatSpec.h - a print format carried as one 64-bit word
#pragma once

#include "host/data/TARN_Format.h"

/// A format as the format families hand it out. Plain value type, copied bitwise;
/// TARN_Format(long) restores the format from the word.
class BpFormatSpec {
 public:
  BpFormatSpec() : _word(kDefaultFormat.Pack()) {}
  explicit BpFormatSpec(const TARN_Format& format) : _word(format.Pack()) {}
  explicit BpFormatSpec(long word) : _word(word) {}

  operator long() const { return _word; }
  TARN_Format GetFormat() const { return TARN_Format(_word); }

 private:
  long _word;
};
