// BpVariable.h - a variable shown by its name or its label
#pragma once

#include <string>

#include "host/output/BpCellText.h"

class TARN_Variable;

/// A variable's name or label. Equal when variable name and show are equal.
class BpVariable : public BpCellText {
 public:
  enum Show { kShowName = 0, kShowLabel = 1, kShowDefault = 2 };

  BpVariable(const TARN_Variable& variable, Show show);

  std::unique_ptr<BpCellText> Clone() const override;
  /// kShowLabel and kShowDefault show the label, falling back to the name when it is empty.
  std::string GetText() const override;
  std::string GetIdentity() const override;
  void Dump(std::ostream& out) const override;

 private:
  std::string _name;
  std::string _label;
  Show _show;
};
