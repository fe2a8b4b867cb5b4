// BpDataValue.h - a data value of a variable, shown by its value label when it has one
#pragma once

#include <string>
#include <vector>

#include "host/data/Obs.h"
#include "host/output/BpCellText.h"

class TARN_Variable;

/// A value of a variable. Copies what it needs at construction, so the variable and the
/// cells may go afterwards. Two data values are equal when variable and value are equal.
class BpDataValue : public BpCellText {
 public:
  enum Preference { kPreferDefault = 2 };

  BpDataValue(const TARN_Variable& variable, const OBS* value, Preference preference);

  std::unique_ptr<BpCellText> Clone() const override;
  /// The value label when the value has one, else the value printed in the variable's format.
  std::string GetText() const override;
  std::string GetIdentity() const override;
  bool HasNumber() const override { return !_isString; }
  double GetNumber() const override;
  void Dump(std::ostream& out) const override;

 private:
  std::string _variableName;
  bool _isString = false;
  std::vector<OBS> _value;
  std::string _shown;  // label or formatted value, decided at construction
};
