// BpNumber.cpp - numbers formatted by the output layer
#include "host/output/BpNumber.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <sstream>

#include "host/data/FormatConversion.h"
#include "host/data/Obs.h"

BpNumber::BpNumber(double value, BpFormatSpec format) : _value(value), _format(format) {}

std::unique_ptr<BpCellText> BpNumber::Clone() const {
  return std::make_unique<BpNumber>(*this);
}

bool BpNumber::HasNumber() const {
  return _value != TARN_SystemMissing() && std::isfinite(_value);
}

std::string BpNumber::GetText() const {
  // Positive infinity stands for a value that cannot be shown; it reads as missing.
  if (!HasNumber()) return ".";
  return FormatNumber(_value, _format.GetFormat());
}

std::string BpNumber::GetIdentity() const {
  // Bits, not text: two numbers that print alike are still different values.
  std::uint64_t bits;
  std::memcpy(&bits, &_value, sizeof bits);
  std::ostringstream identity;
  identity << "N:" << bits << ':' << static_cast<long>(_format);
  return identity.str();
}

void BpNumber::Dump(std::ostream& out) const {
  const TARN_Format format = _format.GetFormat();
  out << "number " << GetText() << " (type " << int(format.Type()) << " width " << format.Width()
      << " decimals " << int(format.Decimals()) << ')';
}
