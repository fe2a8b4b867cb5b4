// SyntaxVLabelsSubcommand.cpp - the variable list and DISPLAY keyword of VLABELS
#include "parser/SyntaxVLabelsSubcommand.h"

#include <algorithm>
#include <iterator>
#include <ostream>

#include "host/data/HostStrings.h"
#include "host/data/TARN_DataSource.h"
#include "host/data/TARN_Variable.h"
#include "host/data/VariableSet.h"
#include "parser/PresentationCodes.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/VLabelsSettings.h"

namespace {

enum VLabelsState {
  kStateNone = 0,
  kStateVariables = 1,
  kStateDisplay = 2,
};

// Markers in the index list for entries that are not dictionary variables.
constexpr int kSetMarker = -100;
constexpr int kUnknownMarker = -500;

struct OptionWord {
  const char* word;
  PresentationCodes::VLabelOption option;
};

constexpr OptionWord kOptionWords[] = {
    {"DEFAULT", PresentationCodes::kVLabelDefault}, {"NAME", PresentationCodes::kVLabelName},
    {"LABEL", PresentationCodes::kVLabelLabel},     {"BOTH", PresentationCodes::kVLabelBoth},
    {"NONE", PresentationCodes::kVLabelNone},
};

}  // namespace

struct SyntaxVLabelsSubcommand::VLData {
  explicit VLData(VLabelsSettings& settings) : _settings(settings) {}

  VLabelsSettings& _settings;          // the root's, where the choice is merged
  std::vector<int> _indices;           // the list in order; markers for sets and unknown names
  std::vector<std::string> _setNames;  // the sets of the list, in the dictionary's spelling
  bool _isAll = false;
  PresentationCodes::VLabelOption _option = PresentationCodes::kVLabelDefault;
  SyntaxVLabelsSubcommand* _self = nullptr;
  VLabelsState _state = kStateNone;
  bool _toPending = false;  // "TO" was read; the range's end comes next
  bool _displaySet = false;
};

SyntaxVLabelsSubcommand::SyntaxVLabelsSubcommand(VLabelsSettings& settings)
    : _data(std::make_unique<VLData>(settings)) {
  _data->_self = this;
}

SyntaxVLabelsSubcommand::~SyntaxVLabelsSubcommand() = default;

std::string SyntaxVLabelsSubcommand::GetSubcommandName() const {
  return "VLABELS";
}

void SyntaxVLabelsSubcommand::CheckVarListCompletion() {
  if (_data->_state == kStateVariables && (!_data->_indices.empty() || _data->_isAll)) {
    _data->_state = kStateNone;
  }
}

// VLABELS VARIABLES '=' | DISPLAY '='
SyntaxConverter* SyntaxVLabelsSubcommand::AttributeString(const std::string& text,
                                                          TARN_TokenSequence* /*tokens*/) {
  CheckVarListCompletion();
  if (_data->_state != kStateNone || _data->_toPending) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (KeywordMatch(text.c_str(), "VARIABLES")) {
    if (!_data->_indices.empty() || _data->_isAll) {
      SyntaxParserUtility::DuplicateWarning(this, "VARIABLES");
      // The later list replaces the earlier one, sets included.
      _data->_isAll = false;
      _data->_indices.clear();
      _data->_setNames.clear();
    }
    _data->_state = kStateVariables;
  } else if (KeywordMatch(text.c_str(), "DISPLAY")) {
    if (_data->_displaySet) {
      SyntaxParserUtility::DuplicateWarning(this, "DISPLAY");
    }
    _data->_state = kStateDisplay;
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  return this;
}

// VARIABLES '=' ALL
SyntaxConverter* SyntaxVLabelsSubcommand::All(const std::string& text) {
  if (_data->_state != kStateVariables || _data->_toPending) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (!_data->_indices.empty() || _data->_isAll) {
    SyntaxParserUtility::VariableListError(this);
  }
  _data->_isAll = true;
  return this;
}

// VARIABLES '=' name TO name
SyntaxConverter* SyntaxVLabelsSubcommand::To(const std::string& text) {
  if (_data->_indices.empty() || _data->_state != kStateVariables || _data->_toPending ||
      _data->_indices.back() < 0) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  _data->_toPending = true;
  return this;
}

// VARIABLES '=' name... | DISPLAY '=' option
SyntaxConverter* SyntaxVLabelsSubcommand::String(const std::string& text) {
  if (_data->_state == kStateVariables) {
    if (_data->_isAll) {
      SyntaxParserUtility::VariableListError(this);
    }
    AddToVariableList(text);
    return this;
  }
  if (_data->_state == kStateDisplay) {
    for (const OptionWord& entry : kOptionWords) {
      if (SyntaxParserUtility::ExactWordMatch(text, entry.word)) {
        _data->_option = entry.option;
        _data->_displaySet = true;
        _data->_state = kStateNone;
        return this;
      }
    }
  }
  SyntaxParserUtility::UnknownKeyword(this, text);
}

void SyntaxVLabelsSubcommand::AddIndex(int index) {
  auto& indices = _data->_indices;
  const auto existing = std::find(indices.begin(), indices.end(), index);
  if (existing != indices.end()) {
    const TARN_Variable* variable = GetDataSource()->GetVariable(index);
    SyntaxParserUtility::DuplicateWarning(this,
                                          variable == nullptr ? std::string() : variable->GetUpperCaseName());
    indices.erase(existing);
  }
  indices.push_back(index);
}

void SyntaxVLabelsSubcommand::AddToVariableList(const std::string& name) {
  VLData& data = *_data;
  if (!name.empty() && name.front() == '$') {
    std::string setName = name;
    VariableSet set;
    if (!MRSetExists(setName, set)) {
      SyntaxParserUtility::NoVariableUpdateWarning(this, name, /*unknownFirst=*/true);
      data._indices.push_back(kUnknownMarker);
      if (data._toPending) {
        SyntaxParserUtility::UnknownKeyword(this, name);
      }
      return;
    }
    if (data._toPending) {
      SyntaxParserUtility::UnknownKeyword(this, name);
    }
    const auto existing = std::find_if(
        data._setNames.begin(), data._setNames.end(),
        [&setName](const std::string& known) { return SyntaxParserUtility::ExactWordMatch(known, setName); });
    if (existing != data._setNames.end()) {
      SyntaxParserUtility::DuplicateWarning(this, name);
      data._setNames.erase(existing);
    }
    data._indices.push_back(kSetMarker);
    data._setNames.push_back(setName);
    return;
  }
  const int index = VariableExists(name);
  if (index < 0) {
    SyntaxParserUtility::NoVariableUpdateWarning(this, name, /*unknownFirst=*/true);
    data._indices.push_back(kUnknownMarker);
    // A range with an unknown end names nothing; the list goes on after it.
    data._toPending = false;
    return;
  }
  if (!data._toPending) {
    AddIndex(index);
    return;
  }
  const int first = data._indices.back() + 1;
  if (data._indices.back() > index) {
    SyntaxParserUtility::DictionaryOrderViolation(this);
  }
  data._toPending = false;
  for (int rangeIndex = first; rangeIndex <= index; ++rangeIndex) {
    AddIndex(rangeIndex);
  }
}

void SyntaxVLabelsSubcommand::ValidateAndCommit(const std::string& text) {
  VLData& data = *_data;
  if (data._toPending) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  CheckVarListCompletion();
  if (data._state != kStateNone || (data._indices.empty() && !data._isAll) || !data._displaySet) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (data._isAll) {
    data._settings.SetVLabels(data._option);
    return;
  }
  data._settings.SetVLabels(data._setNames, data._option);
  std::vector<int> variables;
  std::copy_if(data._indices.begin(), data._indices.end(), std::back_inserter(variables),
               [](int index) { return index >= 0; });
  data._settings.SetVLabels(variables, data._option);
}

const std::vector<int>& SyntaxVLabelsSubcommand::GetIndices() const {
  return _data->_indices;
}

const std::vector<std::string>& SyntaxVLabelsSubcommand::GetSetNames() const {
  return _data->_setNames;
}

void SyntaxVLabelsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_state << " all=" << _data->_isAll << " option=" << _data->_option << " indices=";
  for (std::size_t i = 0; i < _data->_indices.size(); ++i) {
    out << (i == 0 ? "" : ",") << _data->_indices[i];
  }
}
