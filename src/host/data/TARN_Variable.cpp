// TARN_Variable.cpp - dictionary variable: properties, value labels and the missing-value test
#include "host/data/TARN_Variable.h"

#include <cmath>
#include <cstring>
#include <utility>

#include "host/QuiltAssert.h"

struct TARN_Variable::Data {
  std::string _name;
  std::string _upperCaseName;
  std::string _label;
  int _type = 0;                         // 0 numeric, else string width
  TARN_Format _format = kDefaultFormat;  // print format
  int _measurementLevel = kMeasureUnknown;
  TARN_VLImplPointer _valueLabels;  // null without labels; shared, never changed in place
  int _missingKind = kMissingNone;  // MissingValueKind
  ObsValue _missing[3];             // the slots GetMissingValues points at
};

namespace {

TARN_Format DefaultFormatFor(int type) {
  return type == 0 ? kDefaultFormat : TARN_Format(kFormatA, type, 0);
}

}  // namespace

TARN_Variable::TARN_Variable() : TARN_Variable(0) {}

TARN_Variable::TARN_Variable(int type) : _data(std::make_unique<Data>()) {
  QUILT_ASSERT(type >= 0, "a variable type is 0 or a string width");
  _data->_type = type;
  _data->_format = DefaultFormatFor(type);
}

TARN_Variable::TARN_Variable(const TARN_Variable& other) : _data(std::make_unique<Data>(*other._data)) {}

TARN_Variable& TARN_Variable::operator=(const TARN_Variable& other) {
  if (this != &other) *_data = *other._data;
  return *this;
}

TARN_Variable::TARN_Variable(TARN_Variable&& other) noexcept : _data(std::move(other._data)) {}

TARN_Variable& TARN_Variable::operator=(TARN_Variable&& other) noexcept {
  _data = std::move(other._data);
  return *this;
}

TARN_Variable::~TARN_Variable() = default;

const char* TARN_Variable::GetName() const {
  return _data->_name.c_str();
}
const char* TARN_Variable::GetUpperCaseName() const {
  return _data->_upperCaseName.c_str();
}
const char* TARN_Variable::GetLabel() const {
  return _data->_label.c_str();
}
int TARN_Variable::GetType() const {
  return _data->_type;
}
TARN_Format TARN_Variable::GetFormat() const {
  return _data->_format;
}

void TARN_Variable::GetFormatEx(FormatType& type, int& width, int& decimals) const {
  type = _data->_format.Type();
  width = _data->_format.Width();
  decimals = _data->_format.Decimals();
}

int TARN_Variable::GetMeasurementLevel() const {
  return _data->_measurementLevel;
}
TARN_VLImplPointer TARN_Variable::GetValueLabels() const {
  return _data->_valueLabels;
}

int TARN_Variable::GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const {
  const int kind = _data->_missingKind;
  const int slots = kind == kMissingRange ? 2 : kind == kMissingRangeAndValue ? 3 : kind;
  first = slots >= 1 ? _data->_missing[0].Obs() : nullptr;
  second = slots >= 2 ? _data->_missing[1].Obs() : nullptr;
  third = slots >= 3 ? _data->_missing[2].Obs() : nullptr;
  return kind;
}

bool TARN_Variable::IsMissing(const OBS* value) const {
  if (_data->_type == 0 && value->number == TARN_SystemMissing()) return true;
  return IsUserMissing(value);
}

bool TARN_Variable::IsUserMissing(const OBS* value) const {
  const int kind = _data->_missingKind;
  if (kind == kMissingNone) return false;
  if (_data->_type == 0) {
    const double number = value->number;
    if (number == TARN_SystemMissing()) return false;
    if (kind == kMissingRange || kind == kMissingRangeAndValue) {
      if (number >= _data->_missing[0].Number() && number <= _data->_missing[1].Number()) return true;
      return kind == kMissingRangeAndValue && number == _data->_missing[2].Number();
    }
    for (int slot = 0; slot < kind; ++slot) {
      if (number == _data->_missing[slot].Number()) return true;
    }
    return false;
  }
  // Called for every case: compare the cells in place rather than copy the value.
  for (int slot = 0; slot < kind; ++slot) {
    if (std::memcmp(_data->_missing[slot].Obs(), value, static_cast<std::size_t>(_data->_type)) == 0)
      return true;
  }
  return false;
}

void TARN_Variable::SetName(const char* name) {
  _data->_name = name != nullptr ? name : "";
  _data->_upperCaseName = _data->_name;
  for (char& character : _data->_upperCaseName) {
    if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
  }
}

void TARN_Variable::SetLabel(const char* label) {
  _data->_label = label != nullptr ? label : "";
}

void TARN_Variable::SetType(int type) {
  QUILT_ASSERT(type >= 0, "a variable type is 0 or a string width");
  if (type == _data->_type) return;
  _data->_type = type;
  _data->_format = DefaultFormatFor(type);
  _data->_valueLabels.reset();
  ClearMissingValues();
}

void TARN_Variable::SetFormat(const TARN_Format& format) {
  _data->_format = format;
}

void TARN_Variable::SetMeasurementLevel(int level) {
  QUILT_ASSERT(level >= kMeasureUnknown && level <= kMeasureScale, "a measurement level is 0 to 3");
  _data->_measurementLevel = level;
}

void TARN_Variable::SetValueLabels(const ValueLabelList& labels) {
  QUILT_ASSERT(labels.values.size() == labels.labels.size(), "every labelled value has one label");
  for (const ObsValue& value : labels.values) {
    QUILT_ASSERT(value.Type() == _data->_type, "a labelled value has its variable's type");
  }
  if (labels.values.empty()) {
    _data->_valueLabels.reset();
    return;
  }
  auto list = std::make_shared<ValueLabelList>(labels);
  list->type = _data->_type;
  _data->_valueLabels = std::move(list);
}

void TARN_Variable::AddValueLabel(const ObsValue& value, const std::string& label) {
  ValueLabelList list;
  if (_data->_valueLabels) list = *_data->_valueLabels;
  list.type = _data->_type;
  for (std::size_t i = 0; i < list.values.size(); ++i) {
    if (list.values[i] == value) {
      list.labels[i] = label;
      SetValueLabels(list);
      return;
    }
  }
  list.values.push_back(value);
  list.labels.push_back(label);
  SetValueLabels(list);
}

void TARN_Variable::SetMissingValues(const ObsValue* values, int count) {
  QUILT_ASSERT(count >= 0 && count <= 3, "at most three discrete missing values");
  ClearMissingValues();
  for (int slot = 0; slot < count; ++slot) {
    QUILT_ASSERT(values[slot].Type() == _data->_type, "a missing value has its variable's type");
    _data->_missing[slot] = values[slot];
  }
  _data->_missingKind = count;
}

void TARN_Variable::SetMissingRange(double low, double high, const double* extraValue) {
  QUILT_ASSERT(_data->_type == 0, "only numeric variables have missing ranges");
  QUILT_ASSERT(!(low > high), "a missing range runs from low to high");
  ClearMissingValues();
  _data->_missing[0] = low;
  _data->_missing[1] = high;
  if (extraValue != nullptr) {
    _data->_missing[2] = *extraValue;
    _data->_missingKind = kMissingRangeAndValue;
  } else {
    _data->_missingKind = kMissingRange;
  }
}

void TARN_Variable::ClearMissingValues() {
  _data->_missingKind = kMissingNone;
  for (ObsValue& slot : _data->_missing) slot = 0.0;
}
