// AggregationCategory.h - one displayed category of a table dimension
#pragma once

#include <string>
#include <vector>

#include "host/data/Obs.h"
#include "host/data/ObsValue.h"
#include "host/data/TARN_Format.h"

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
  /// A computed category's own formats, one entry per statistic named by its properties,
  /// three lists in parallel: the statistic codes, the display decorations, and the formats
  /// (null where the statistic was named without a format).
  const std::vector<int>& GetPCFormat() const { return _pcStatCodes; }
  const std::vector<int>& GetPCDisplayFormat() const { return _pcDisplayFormats; }
  /// The pointers point into this category and live as long as it does.
  std::vector<const TARN_Format*> GetPCDecimal() const;
  /// A user-missing value shown as a category (MISSING=INCLUDE or named in a list).
  bool IsMissingCategory() const { return _isMissing; }
  /// A total, subtotal or hidden subtotal: a category that sums others.
  bool IsTotalKind() const { return _catType == kTotal || _catType == kSubtotal || _catType == kHSubtotal; }
  /// True when `other`, a category of this or of another variable, shows the same category:
  /// same kind and label, and the same value (a value category), computation (a computed
  /// category) or encoding (any other).
  /// Stacked variables whose labels share one header place are merged, and their cells
  /// found, by this rule.
  bool IsSameAs(const AggregationCategory& other) const;

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
  /// `packedFormats` holds TARN_Format::Pack values, 0 for none.
  void SetPCFormats(const std::vector<int>& statCodes, const std::vector<int>& displayFormats,
                    const std::vector<int>& packedFormats);
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
  std::vector<int> _pcStatCodes;
  std::vector<int> _pcDisplayFormats;
  std::vector<TARN_Format> _pcFormats;
  std::vector<bool> _pcFormatGiven;
  bool _isMissing = false;
};
