// AggregationCategory.h - one displayed category of a table dimension
#pragma once

#include <string>

#include "host/data/Obs.h"
#include "host/data/ObsValue.h"

/// One displayed category. The engine makes them for each dimension at CompleteCases and
/// keeps them as long as the table; the system also makes free-standing ones for labels.
class AggregationCategory {
 public:
  enum CategoryType {
    kNone = 0,
    kValue = 1,
    kSubtotal = 2,
    kHSubtotal = 3,
    kTotal = 4,
    kVariable = 5,
    kPcompute = 6,
  };

  AggregationCategory() = default;
  AggregationCategory(int catType, int encoding, int varIndex);

  int GetCatType() const { return _catType; }
  int GetValueType() const { return _valueType; }
  /// The data value of a kValue category; null for other kinds.
  const OBS* GetCatValue() const { return _catType == kValue ? _value.Obs() : nullptr; }
  int GetCatEncoding() const { return _encoding; }
  int GetVarIndex() const { return _varIndex; }
  const std::string& GetCatLabel() const { return _label; }
  const std::string& GetPCatName() const { return _pcatName; }
  bool UseLabelForVar() const { return _useLabelForVar; }
  bool IsLabelDefault() const { return _isLabelDefault; }
  int GetPCFormat() const { return _pcFormat; }
  int GetPCDisplayFormat() const { return _pcDisplayFormat; }
  int GetPCDecimal() const { return _pcDecimal; }
  /// A user-missing value shown as a category (MISSING=INCLUDE or named in a list).
  bool IsMissingCategory() const { return _isMissing; }

  void SetCatLabel(const std::string& text, bool isDefault) {
    _label = text;
    _isLabelDefault = isDefault;
  }
  void SetCatValue(int valueType, const OBS* value) {
    _valueType = valueType;
    _value = ObsValue(valueType, value, -1);
  }
  void SetPCatName(const std::string& name) { _pcatName = name; }
  void SetUseLabelForVar(bool flag) { _useLabelForVar = flag; }
  void SetPCFormats(int format, int displayFormat, int decimals) {
    _pcFormat = format;
    _pcDisplayFormat = displayFormat;
    _pcDecimal = decimals;
  }
  void SetIsMissingCategory(bool flag) { _isMissing = flag; }

 private:
  int _catType = kNone;
  int _valueType = 0;
  ObsValue _value;
  int _encoding = 0;
  int _varIndex = -1;
  std::string _label;
  std::string _pcatName;
  bool _useLabelForVar = false;
  bool _isLabelDefault = true;
  int _pcFormat = 0;
  int _pcDisplayFormat = 0;
  int _pcDecimal = 0;
  bool _isMissing = false;
};
