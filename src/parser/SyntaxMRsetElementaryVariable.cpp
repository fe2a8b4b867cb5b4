// SyntaxMRsetElementaryVariable.cpp - one member variable of a multiple-response set, read from the
// dictionary
#include "parser/SyntaxMRsetElementaryVariable.h"

#include "host/data/ObsValue.h"
#include "host/data/TARN_DataSource.h"
#include "host/data/TARN_ValueLabelMap.h"
#include "host/data/TARN_Variable.h"
#include "host/data/VariableSet.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/VLPair.h"

struct SyntaxMRsetElementaryVariable::Data {
  SyntaxMRVariableSet* _owner = nullptr;   // the set; not owned
  int _missingValueType = 0;               // kind of user-missing definition
  const OBS* _userMissingData1 = nullptr;  // the slots of that definition; owned by the dictionary
  const OBS* _userMissingData2 = nullptr;
  const OBS* _userMissingData3 = nullptr;
  int _index = -1;                           // dictionary index
  std::string _name;                         // as the dictionary writes it
  std::string _label;                        // empty when none
  int _width = 0;                            // 0 numeric, else string width
  const TARN_Variable* _variable = nullptr;  // the dictionary entry; not owned
  FormatType _formatType = kFormatF;
  std::vector<VLPair> _vlData;  // value labels as the set needs them
};

SyntaxMRsetElementaryVariable::SyntaxMRsetElementaryVariable(SyntaxMRVariableSet* owner,
                                                             const std::string& name, int setType,
                                                             const std::string& countedText)
    : _data(std::make_unique<Data>()) {
  Data& data = *_data;
  data._owner = owner;
  data._name = name;
  data._index = VariableExists(name);
  const TARN_DataSource* source = GetDataSource();
  if (data._index < 0 || source == nullptr) {
    SyntaxParserUtility::MRNonExistentElemVar(owner, owner->GetNameToken(), name);
  }
  data._variable = source->GetVariable(data._index);
  data._name = data._variable->GetName();
  const char* label = data._variable->GetLabel();
  data._label = label == nullptr ? "" : label;
  data._width = data._variable->GetType();
  int width = 0;
  int decimals = 0;
  data._variable->GetFormatEx(data._formatType, width, decimals);

  TARN_ValueLabelMap labels(data._variable->GetValueLabels());
  if (setType == VariableSet::kMR_Category) {
    labels.Reset();
    const OBS* value = nullptr;
    const char* text = nullptr;
    while (labels.GetNextPair(value, text)) {
      data._vlData.emplace_back(value, text == nullptr ? "" : text, data._width);
    }
    data._missingValueType = data._variable->GetMissingValues(data._userMissingData1, data._userMissingData2,
                                                              data._userMissingData3);
  } else if (labels.Size() > 0) {
    // A dichotomy member is one category; of its labels only the counted value's can name it.
    const char* countedLabel = labels.GetLabel(countedText);
    if (countedLabel != nullptr) {
      ObsValue counted(data._width, nullptr, -1);
      counted = countedText;
      data._vlData.emplace_back(counted.Obs(), countedLabel, data._width);
    }
  }
}

SyntaxMRsetElementaryVariable::~SyntaxMRsetElementaryVariable() = default;

SyntaxMRVariableSet* SyntaxMRsetElementaryVariable::GetOwner() const {
  return _data->_owner;
}

int SyntaxMRsetElementaryVariable::GetMissingValueType() const {
  return _data->_missingValueType;
}

const OBS* SyntaxMRsetElementaryVariable::GetUserMissingData1() const {
  return _data->_userMissingData1;
}

const OBS* SyntaxMRsetElementaryVariable::GetUserMissingData2() const {
  return _data->_userMissingData2;
}

const OBS* SyntaxMRsetElementaryVariable::GetUserMissingData3() const {
  return _data->_userMissingData3;
}

int SyntaxMRsetElementaryVariable::GetIndex() const {
  return _data->_index;
}

const std::string& SyntaxMRsetElementaryVariable::GetName() const {
  return _data->_name;
}

const std::string& SyntaxMRsetElementaryVariable::GetLabel() const {
  return _data->_label;
}

int SyntaxMRsetElementaryVariable::GetWidth() const {
  return _data->_width;
}

const TARN_Variable* SyntaxMRsetElementaryVariable::GetVariable() const {
  return _data->_variable;
}

FormatType SyntaxMRsetElementaryVariable::GetFormatType() const {
  return _data->_formatType;
}

const std::vector<VLPair>& SyntaxMRsetElementaryVariable::GetVLData() const {
  return _data->_vlData;
}

int SyntaxMRsetElementaryVariable::GetVLPairCount() const {
  return static_cast<int>(_data->_vlData.size());
}
