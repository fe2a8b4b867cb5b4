// SyntaxWeightSubcommand.cpp - the VARIABLE keyword of WEIGHT
#include "parser/SyntaxWeightSubcommand.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "host/data/TARN_DataSource.h"
#include "host/data/TARN_Variable.h"
#include "parser/CommandScope.h"
#include "parser/SyntaxParserUtility.h"

namespace {

enum WeightState {
  kStateNone = 0,
  kStateVariable = 1,
};

}  // namespace

struct SyntaxWeightSubcommand::WeightData {
  int _index = -1;    // dictionary index of the weight variable
  std::string _name;  // as typed
  bool _set = false;  // a variable has been given
  int _count = 0;     // how many were given
  SyntaxWeightSubcommand* _self = nullptr;
  CommandScope* _parent = nullptr;  // the command, not owned
  WeightState _state = kStateNone;
};

SyntaxWeightSubcommand::SyntaxWeightSubcommand(CommandScope* command)
    : _data(std::make_unique<WeightData>()) {
  _data->_self = this;
  _data->_parent = command;
}

SyntaxWeightSubcommand::~SyntaxWeightSubcommand() = default;

std::string SyntaxWeightSubcommand::GetSubcommandName() const {
  return "WEIGHT";
}

// WEIGHT VARIABLE '='
SyntaxConverter* SyntaxWeightSubcommand::AttributeString(const std::string& text,
                                                         TARN_TokenSequence* /*tokens*/) {
  if (_data->_state != kStateNone || !KeywordMatch(text.c_str(), "VARIABLE")) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (_data->_set) {
    SyntaxParserUtility::DuplicateWarning(this, "VARIABLE");
  }
  _data->_state = kStateVariable;
  return this;
}

// VARIABLE '=' name
SyntaxConverter* SyntaxWeightSubcommand::String(const std::string& text) {
  if (_data->_state != kStateVariable) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  const int index = VariableExists(text);
  if (index < 0) {
    SyntaxParserUtility::UnknownVariable(this, text);
  }
  const TARN_Variable* variable = GetDataSource()->GetVariable(index);
  if (variable == nullptr || variable->GetType() != 0) {
    SyntaxParserUtility::VariableNotNumeric(this, text);
  }
  _data->_index = index;
  _data->_name = text;
  _data->_set = true;
  ++_data->_count;
  _data->_state = kStateNone;
  return this;
}

void SyntaxWeightSubcommand::ValidateAndCommit(const std::string& text) {
  if (_data->_state != kStateNone) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (_data->_set && _data->_parent != nullptr) {
    _data->_parent->SetBaseWeightVariable(_data->_index, _data->_name);
  }
}

int SyntaxWeightSubcommand::GetWeightIndex() const {
  return _data->_index;
}

std::string SyntaxWeightSubcommand::GetWeightName() const {
  return _data->_name;
}

void SyntaxWeightSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_state << " index=" << _data->_index << " name=" << _data->_name;
}
