// VariableSet.cpp - multiple-response sets: names in the asked case, validation, the set list
#include "host/data/VariableSet.h"

#include <utility>

#include "host/QuiltAssert.h"
#include "host/data/Dataset.h"
#include "host/data/HostStrings.h"
#include "host/data/TARN_DataSource.h"
#include "host/data/TARN_Variable.h"

namespace {

std::string InCase(std::string text, int changeCase) {
  for (char& character : text) {
    if (changeCase == VariableSet::kUpperCase && character >= 'a' && character <= 'z') {
      character = static_cast<char>(character - 'a' + 'A');
    } else if (changeCase == VariableSet::kLowerCase && character >= 'A' && character <= 'Z') {
      character = static_cast<char>(character - 'A' + 'a');
    }
  }
  return text;
}

}  // namespace

VariableSet::VariableSet() = default;
VariableSet::VariableSet(const VariableSet& other) = default;
VariableSet& VariableSet::operator=(const VariableSet& other) = default;
VariableSet::VariableSet(VariableSet&& other) noexcept = default;
VariableSet& VariableSet::operator=(VariableSet&& other) noexcept = default;
VariableSet::~VariableSet() = default;

std::string VariableSet::GetName(int changeCase) const {
  return InCase(_data._name, changeCase);
}

std::vector<std::string> VariableSet::GetVariableNames(int changeCase) const {
  std::vector<std::string> names;
  names.reserve(_data._names.size());
  for (const std::string& name : _data._names) names.push_back(InCase(name, changeCase));
  return names;
}

std::string VariableSet::GetLabel(TARN_DataSource& /*dataSource*/) const {
  return _data._label;
}
std::string VariableSet::GetLabel() const {
  return _data._label;
}
int VariableSet::GetType() const {
  return _data._type;
}
std::string VariableSet::GetValue() const {
  return _data._type == kMR_Dichotomy ? _data._countedValue : "";
}

int VariableSet::Validate() const {
  if (_data._name.size() < 2 || _data._name[0] != '$' ||
      ValidateTARNName(_data._name.c_str()) != kNameValid) {
    return kInvalidName;
  }
  if (_data._names.size() < 2) return kNoMembers;
  for (std::size_t i = 0; i < _data._names.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (TARNMBstricmp_A(_data._names[i].c_str(), _data._names[j].c_str()) == 0) return kDuplicateMember;
    }
  }
  if (_data._type == kMR_Dichotomy && _data._countedValue.find_first_not_of(' ') == std::string::npos) {
    return kNoCountedValue;
  }
  return _data._dictionaryCheck;
}

bool VariableSet::qUseVariableCategoryLabels() const {
  return _data._type == kMR_Dichotomy && _data._useCountedValueLabels;
}

void VariableSet::SetName(const std::string& name) {
  _data._name = name;
}
void VariableSet::SetLabel(const std::string& label) {
  _data._label = label;
}

void VariableSet::SetType(int type) {
  QUILT_ASSERT(type == kMR_Category || type == kMR_Dichotomy, "a set is a category or a dichotomy set");
  _data._type = type;
}

void VariableSet::SetValue(const std::string& countedValue) {
  _data._countedValue = countedValue;
}
void VariableSet::SetVariableNames(const std::vector<std::string>& names) {
  _data._names = names;
}
void VariableSet::SetUseVariableCategoryLabels(bool useCountedValueLabels) {
  _data._useCountedValueLabels = useCountedValueLabels;
}

void VariableSet::CheckAgainst(const TARN_DataSource& dataSource) {
  _data._dictionaryCheck = kNoError;
  int firstType = -1;
  for (const std::string& name : _data._names) {
    const int index = dataSource.FindVarIndex(name.c_str(), 0);
    if (index < 0) {
      _data._dictionaryCheck = kUnknownMember;
      return;
    }
    const bool isString = dataSource.GetVariable(index)->GetType() != 0;
    if (firstType < 0) {
      firstType = isString ? 1 : 0;
    } else if ((firstType == 1) != isString) {
      _data._dictionaryCheck = kMixedTypes;
      return;
    }
  }
}

std::vector<VariableSet> VariableSets(const TARN_DataSource& dataSource, int type) {
  std::vector<VariableSet> sets;
  if (type != kVarSetsMultipleResponse || !dataSource.GetDataset()) return sets;
  sets = dataSource.GetDataset()->GetVariableSets();
  for (VariableSet& set : sets) set.CheckAgainst(dataSource);
  return sets;
}
