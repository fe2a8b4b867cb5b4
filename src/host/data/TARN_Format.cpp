// TARN_Format.cpp - packing and width rules of print formats
#include "host/data/TARN_Format.h"

TARN_Format::TARN_Format(int type, int width, int decimals)
    : _type(static_cast<std::uint8_t>(type)), _decimals(static_cast<std::uint8_t>(decimals)) {
  Width(static_cast<unsigned short>(width));
}

TARN_Format::TARN_Format(long packed)
    : _width(static_cast<unsigned short>((packed >> 8) & 0xFF)),
      _type(static_cast<std::uint8_t>((packed >> 16) & 0xFF)),
      _decimals(static_cast<std::uint8_t>(packed & 0xFF)) {
  // A string format may be wider than 255 bytes, so it spends the decimals byte on its width.
  if (_type == kFormatA) {
    _width = static_cast<unsigned short>(_width + _decimals * 256);
    _decimals = 0;
  }
}

long TARN_Format::Pack() const {
  if (_type == kFormatA) {
    return (static_cast<long>(_type) << 16) | (static_cast<long>(_width & 0xFF) << 8) | (_width >> 8);
  }
  return (static_cast<long>(_type) << 16) | (static_cast<long>(_width & 0xFF) << 8) | _decimals;
}

void TARN_Format::Width(unsigned short width) {
  _width = (!IsString() && width > kMaximumNumericWidth) ? kMaximumNumericWidth : width;
}
