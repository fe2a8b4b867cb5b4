// SyntaxMRVariableSet.cpp - the set node as far as the converter framework needs it
#include "parser/SyntaxMRVariableSet.h"

#include "parser/SyntaxConverterType.h"

SyntaxMRVariableSet::SyntaxMRVariableSet(VariableSet& set) : SyntaxVariableName(set) {}

int SyntaxMRVariableSet::GetType() const {
  return kConverterMRSet;
}

void SyntaxMRVariableSet::ValidateSetConditions(VariableSet& /*set*/, OBS* /*countedValue*/) {}

void SyntaxMRVariableSet::SetCountDuplicates(bool isNo) {
  _countDuplicates = !isNo;
}

bool SyntaxMRVariableSet::GetCountDuplicates() const {
  return _countDuplicates;
}
