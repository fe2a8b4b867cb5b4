// VLabelsSettings.cpp - merging of VLABELS requests
#include "parser/VLabelsSettings.h"

#include <algorithm>

struct VLabelsSettings::Data {
  std::map<int, VLabelOption> _vLabelsByIndex;    // dictionary index to option
  std::vector<MRSetVLabelsOption> _vLabelsBySet;  // in order of request
  bool _vLabelsForAll = false;
  VLabelOption _allVLabelsOption = PresentationCodes::kVLabelDefault;
};

VLabelsSettings::VLabelsSettings() : _data(std::make_unique<Data>()) {}

VLabelsSettings::~VLabelsSettings() = default;

void VLabelsSettings::SetVLabels(VLabelOption option) {
  _data->_vLabelsByIndex.clear();
  _data->_vLabelsBySet.clear();
  _data->_vLabelsForAll = true;
  _data->_allVLabelsOption = option;
}

void VLabelsSettings::SetVLabels(const std::vector<std::string>& setNames, VLabelOption option) {
  for (const std::string& name : setNames) {
    auto& bySet = _data->_vLabelsBySet;
    bySet.erase(std::remove_if(bySet.begin(), bySet.end(),
                               [&name](const MRSetVLabelsOption& entry) { return entry == name; }),
                bySet.end());
    bySet.push_back(MRSetVLabelsOption{name, option});
  }
}

void VLabelsSettings::SetVLabels(const std::vector<int>& indexes, VLabelOption option) {
  for (const int index : indexes) {
    _data->_vLabelsByIndex[index] = option;
  }
}

bool VLabelsSettings::IsForAll() const {
  return _data->_vLabelsForAll;
}

VLabelsSettings::VLabelOption VLabelsSettings::GetAllOption() const {
  return _data->_allVLabelsOption;
}

const std::map<int, VLabelsSettings::VLabelOption>& VLabelsSettings::GetByIndex() const {
  return _data->_vLabelsByIndex;
}

const std::vector<MRSetVLabelsOption>& VLabelsSettings::GetBySet() const {
  return _data->_vLabelsBySet;
}

bool VLabelsSettings::IsEmpty() const {
  return !_data->_vLabelsForAll && _data->_vLabelsByIndex.empty() && _data->_vLabelsBySet.empty();
}
