// BpVariable.cpp - a variable by name or label
#include "host/output/BpVariable.h"

#include "host/data/TARN_Variable.h"

BpVariable::BpVariable(const TARN_Variable& variable, Show show)
    : _name(variable.GetName() == nullptr ? "" : variable.GetName()),
      _label(variable.GetLabel() == nullptr ? "" : variable.GetLabel()),
      _show(show) {}

std::unique_ptr<BpCellText> BpVariable::Clone() const {
  return std::make_unique<BpVariable>(*this);
}

std::string BpVariable::GetText() const {
  if (_show == kShowName || _label.empty()) return _name;
  return _label;
}

std::string BpVariable::GetIdentity() const {
  return "V:" + _name + ':' + std::to_string(int(_show));
}

void BpVariable::Dump(std::ostream& out) const {
  out << "variable " << _name << " show " << int(_show) << " \"" << GetText() << '"';
}
