// VLPair.cpp - one value label of a variable or set: the value and its label text
#include "parser/VLPair.h"

VLPair::VLPair() = default;

VLPair::VLPair(const OBS* value, const std::string& label, int dataType)
    : _label(label), _value(dataType, value, -1) {}

int VLPair::VLPairCompare(const VLPair& other) const {
  if (!(_value == other._value)) {
    return 1;
  }
  return _label == other._label ? 0 : -1;
}
