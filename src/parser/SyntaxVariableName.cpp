// SyntaxVariableName.cpp - the variable leaf: its name, axis and leaf state
#include "parser/SyntaxVariableName.h"

#include <ostream>

#include "host/data/VariableSet.h"
#include "parser/SyntaxConverterType.h"

struct SyntaxVariableName::VarData {
  int _index = 0;           // dictionary index; -100 for a set
  std::string _name;        // the variable's or the set's name
  std::string _label;       // empty when it has none
  int _axis = 0;            // count of BY ahead of this occurrence: 0, 1 or 2
  bool _isLeafNode = true;  // false once it is the left operand of ">"
};

namespace {

constexpr int kSetIndex = -100;

}  // namespace

SyntaxVariableName::SyntaxVariableName(int index, const std::string& name) : _varData(new VarData) {
  _varData->_index = index;
  _varData->_name = name;
  SetGreaterThanContext(true);
  SetPlusContext(true);
  SetParenContext(false);
  SetByContext(true);
  SetSquareBracketContext(true);
}

SyntaxVariableName::SyntaxVariableName(VariableSet& set)
    : SyntaxVariableName(kSetIndex, set.GetName(VariableSet::kAsDefined)) {}

SyntaxVariableName::~SyntaxVariableName() {
  delete _varData;
}

std::string SyntaxVariableName::GetSubcommandName() const {
  return "TABLE";
}

int SyntaxVariableName::GetType() const {
  return kConverterVariable;
}

void SyntaxVariableName::SetIsLeafNode(bool isLeaf) {
  _varData->_isLeafNode = isLeaf;
}

int SyntaxVariableName::GetIndex() const {
  return _varData->_index;
}

std::string SyntaxVariableName::GetNameToken() const {
  return _varData->_name;
}

std::string SyntaxVariableName::GetLabel() const {
  return _varData->_label;
}

void SyntaxVariableName::SetLabel(const std::string& label) {
  _varData->_label = label;
}

void SyntaxVariableName::SetCountOfBy(int count) {
  _varData->_axis = count;
}

int SyntaxVariableName::GetAxis() const {
  return _varData->_axis;
}

bool SyntaxVariableName::GetIsLeafNode() const {
  return _varData->_isLeafNode;
}

void SyntaxVariableName::DumpDetails(std::ostream& out) const {
  out << " name=" << _varData->_name << " index=" << _varData->_index << " axis=" << _varData->_axis
      << " leaf=" << _varData->_isLeafNode;
}
