// AggregationVariable.cpp - a categorical variable of a table with its category options
#include "host/engine/AggregationVariable.h"

AggregationVariable::AggregationVariable(int varIndex, const std::string& name)
    : AggregationVariable(kSingle, std::vector<int>{varIndex}, name) {}

AggregationVariable::AggregationVariable(VariableKind kind, const std::vector<int>& varIndices,
                                         const std::string& name)
    : _kind(kind), _varIndices(varIndices), _name(name) {}

AggregationVariable::~AggregationVariable() = default;

void AggregationVariable::SetVarLabel(const std::string& text) {
  _label = text;
}
TableDimension* AggregationVariable::GetTableDimension() const {
  return _dimension;
}
void AggregationVariable::AddParsedCategories(const std::vector<ParsedCategory*>* list) {
  _parsed = list != nullptr && !list->empty() ? list : nullptr;
}
void AggregationVariable::SetIsOrderA(bool flag) {
  _orderA = flag;
}
void AggregationVariable::SetIsMissingExclude(bool flag) {
  _missingExclude = flag;
}
void AggregationVariable::SetIsTotalPositionAfter(bool flag) {
  _totalAfter = flag;
}
void AggregationVariable::SetIsEmptyInclude(bool flag) {
  _emptyInclude = flag;
}
void AggregationVariable::SetTotalLabel(const std::string& text) {
  _totalLabel = text;
}
void AggregationVariable::SetIsTotalLabelDefault(bool flag) {
  _totalLabelDefault = flag;
}
void AggregationVariable::SetSortInfo(int statisticCode, int varIndex) {
  _sortStatistic = statisticCode;
  _sortVarIndex = varIndex;
}
void AggregationVariable::SetSortKey(int key) {
  if (key != kSortKeyNone) _sortKey = key;
}
void AggregationVariable::SetUserMissingVarIndex(int index) {
  _userMissingVarIndex = index;
}
