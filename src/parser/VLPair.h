// VLPair.h - one value label of a variable or set: the value and its label text
#pragma once

#include <string>

#include "host/data/ObsValue.h"

union OBS;

/// A value and its label, as the variable nodes and the multiple-response sets keep them.
/// Plain copyable value.
class VLPair {
 public:
  /// An empty label for the number 0.
  VLPair();
  /// `value` holds cells of `dataType` (0 numeric, else the string width); not owned.
  VLPair(const OBS* value, const std::string& label, int dataType);

  const std::string& GetLabelData() const { return _label; }
  /// The value as the host keeps it.
  const ObsValue& Value() const { return _value; }
  /// The value's cells: one for a number, ObsLength(width) for a string.
  const OBS* GetValueData() const { return _value.Obs(); }
  int GetOBSType() const { return _value.Type(); }
  /// Changes the value's type (a set that merges members of different widths widens all).
  void SetOBSType(int dataType) { _value.SetType(dataType); }

  /// 1 when the values differ, 0 when value and label are both equal, -1 when the values
  /// are equal and the labels are not (the label test is exact, case included).
  int VLPairCompare(const VLPair& other) const;

 private:
  std::string _label;  // the label as the dictionary writes it
  ObsValue _value;     // the labelled value
};
