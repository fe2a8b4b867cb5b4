// BpDataValue.cpp - data values shown by value label or in the variable's format
#include "host/output/BpDataValue.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <sstream>

#include "host/data/FormatConversion.h"
#include "host/data/TARN_ValueLabelMap.h"
#include "host/data/TARN_Variable.h"

BpDataValue::BpDataValue(const TARN_Variable& variable, const OBS* value, Preference /*preference*/)
    : _variableName(variable.GetName()), _isString(variable.GetType() != 0) {
  const TARN_Format format = variable.GetFormat();
  const int cells = _isString ? ObsLength(variable.GetType()) : 1;
  _value.assign(value, value + cells);
  TARN_ValueLabelMap labels(variable.GetValueLabels());
  const char* label = labels.GetLabel(value);
  if (label != nullptr) {
    _shown = label;
    return;
  }
  if (_isString) {
    const std::size_t width = static_cast<std::size_t>(variable.GetType());
    std::string text(reinterpret_cast<const char*>(_value.data()), width);
    const std::size_t end = text.find_last_not_of(' ');
    _shown = end == std::string::npos ? std::string(" ") : text.substr(0, end + 1);
    return;
  }
  _shown = FormatNumber(value->number, format);
}

std::unique_ptr<BpCellText> BpDataValue::Clone() const {
  return std::make_unique<BpDataValue>(*this);
}

std::string BpDataValue::GetText() const {
  return _shown;
}

double BpDataValue::GetNumber() const {
  return _isString ? 0.0 : _value.front().number;
}

std::string BpDataValue::GetIdentity() const {
  std::ostringstream identity;
  identity << "D:" << _variableName << ':';
  for (const OBS& cell : _value) {
    std::uint64_t bits;
    std::memcpy(&bits, &cell, sizeof bits);
    identity << std::hex << bits << ',';
  }
  return identity.str();
}

void BpDataValue::Dump(std::ostream& out) const {
  out << "value " << _variableName << " \"" << _shown << '"';
}
