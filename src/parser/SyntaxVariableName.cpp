// SyntaxVariableName.cpp - the variable leaf: its name, axis and leaf state
#include "parser/SyntaxVariableName.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ostream>

#include "host/QuiltAssert.h"
#include "host/data/FormatConversion.h"
#include "host/data/HostStrings.h"
#include "host/data/TARN_DataSource.h"
#include "host/data/TARN_ValueLabelMap.h"
#include "host/data/TARN_Variable.h"
#include "host/data/VariableSet.h"
#include "host/engine/ParsedCategory.h"
#include "parser/CategoryRange.h"
#include "parser/CategoryToken.h"
#include "parser/CommandScope.h"
#include "parser/Statistics.h"
#include "parser/SyntaxComposite.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxPComputeSubcommand.h"
#include "parser/SyntaxPPropertiesSubcommand.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTotals.h"
#include "parser/TokenInfo.h"
#include "parser/VLPair.h"

struct SyntaxVariableName::VarData {
  AggregationVariable* _aggregationVariable = nullptr;  // set once by the dispatcher; not owned
  int _index = 0;                                       // dictionary index; -100 for a set
  std::string _name;                                    // the variable's or the set's name
  std::string _label;                                   // empty when it has none
  int _axis = 0;                                        // count of BY ahead of this occurrence: 0, 1 or 2
  bool _isLeafNode = true;                              // false once it is the left operand of ">"
  int _dataType = 0;                                    // 0 numeric, else the width of a string variable
  FormatType _formatType = kFormatF;
  TableEncryptionCodes::VariableCodes _variableType = TableEncryptionCodes::kVariableCategorical;
  bool _measurementSet = false;               // [S] or [C] was given
  SyntaxTotals* _totals = nullptr;            // the TOTALS clause attached here; not owned
  std::vector<Statistics*> _totalStats;       // statistics of the total category; not owned
  std::vector<Statistics*> _statistics;       // statistics of the categories
  std::vector<Statistics*> _ownedStatistics;  // defaults this node created; owned
  bool _isStatRemovable = false;              // _statistics holds only a default
  bool _statsFromTotals = false;              // a TOTALS clause came before any real list
  bool _isTotalNo = true;                     // no total category
  bool _totalSet = false;                     // CATEGORIES gave TOTAL
  bool _hasSubTotal = false;                  // the explicit category list holds a subtotal

  // Value labels, read from the dictionary or merged by a set.
  int _vlPairCount = 0;        // number of pairs
  VLPair* _vlPairs = nullptr;  // new[]; owned; null when the count is 0

  // CATEGORIES options and what was given.
  bool _isExplicit = false;                        // an explicit category list was given
  std::vector<ParsedCategory*> _parsedCategories;  // that list in engine form; owned
  bool _isOrderA = true;                           // ascending order of categories
  bool _isMissingExclude = true;                   // user-missing categories left out
  std::string _totalLabel = "Total";               // label of the total category
  bool _isTotalPositionAfter = true;               // totals and subtotals after what they sum
  bool _isEmptyInclude = true;                     // empty categories kept
  TableEncryptionCodes::SortKey _sortKey = TableEncryptionCodes::kSortKeyValue;
  SyntaxVariableName* _sortVariable = nullptr;  // variable of a sort statistic; not owned
  TableEncryptionCodes::StatisticCodes _sortStatistic = TableEncryptionCodes::kStatCount;
  double _cutPoint = -1.0;  // percentile of a PTILE or UPTILE sort key
  PresentationCodes::VLabelOption _vLabelsOption = PresentationCodes::kVLabelDefault;
  bool _orderSet = false;
  bool _missingSet = false;
  bool _totalLabelSet = false;
  bool _positionSet = false;
  bool _emptySet = false;
  bool _keySet = false;

  ~VarData() {
    for (ParsedCategory* category : _parsedCategories) {
      delete category;
    }
    delete[] _vlPairs;
  }
};

namespace {

constexpr int kSetIndex = -100;

// One CATEGORIES option of a variable (TOTAL, ORDER, MISSING, LABEL, POSITION, EMPTY): a
// second answer that differs from the first warns with the keyword and the variable (the same
// answer twice is quiet), and the later answer stands.
template <typename T>
void SetCategoriesOption(const char* keyword, const std::string& variable, T& value, bool& set,
                         const T& wanted) {
  if (set && value != wanted) {
    SyntaxParserUtility::DuplicateWarningFromVariable(keyword, variable, /*categories=*/true);
  }
  value = wanted;
  set = true;
}

}  // namespace

SyntaxVariableName::SyntaxVariableName(int index, const std::string& name) : _varData(new VarData) {
  _varData->_index = index;
  _varData->_name = name;
  SetContexts(kContextAfterOperand);
  ReadMeasurement();
  ReadLabels();
}

void SyntaxVariableName::ReadLabels() {
  TARN_DataSource* source = GetDataSource();
  if (source == nullptr || _varData->_index < 0) {
    return;
  }
  const TARN_Variable* variable = source->GetVariable(_varData->_index);
  if (variable == nullptr) {
    return;
  }
  VarData& data = *_varData;
  const char* label = variable->GetLabel();
  if (label != nullptr && *label != '\0') {
    data._label = label;
  }
  TARN_ValueLabelMap labels(variable->GetValueLabels());
  data._vlPairCount = labels.Size();
  if (data._vlPairCount <= 0) {
    data._vlPairCount = 0;
    return;
  }
  data._vlPairs = new VLPair[static_cast<std::size_t>(data._vlPairCount)];
  labels.Reset();
  const OBS* value = nullptr;
  const char* text = nullptr;
  int count = 0;
  while (count < data._vlPairCount && labels.GetNextPair(value, text)) {
    data._vlPairs[count] = VLPair(value, text == nullptr ? "" : text, data._dataType);
    ++count;
  }
  data._vlPairCount = count;
}

void SyntaxVariableName::ReadMeasurement() {
  TARN_DataSource* source = GetDataSource();
  if (source == nullptr || _varData->_index < 0) {
    return;
  }
  const TARN_Variable* variable = source->GetVariable(_varData->_index);
  if (variable == nullptr) {
    return;
  }
  VarData& data = *_varData;
  data._dataType = variable->GetType();
  int width = 0;
  int decimals = 0;
  variable->GetFormatEx(data._formatType, width, decimals);
  // An unstated level is settled by the kind of value: numbers are summarized, texts counted.
  const int level = variable->GetMeasurementLevel();
  if (level == kMeasureScale || (level == kMeasureUnknown && data._dataType == 0)) {
    data._variableType = TableEncryptionCodes::kVariableScale;
  } else {
    data._variableType = TableEncryptionCodes::kVariableCategorical;
  }
}

SyntaxVariableName::SyntaxVariableName(VariableSet& set)
    : SyntaxVariableName(kSetIndex, set.GetName(VariableSet::kAsDefined)) {}

SyntaxVariableName::~SyntaxVariableName() {
  for (Statistics* statistic : _varData->_ownedStatistics) {
    delete statistic;
  }
  delete _varData;
}

std::string SyntaxVariableName::GetSubcommandName() const {
  return "TABLE";
}

int SyntaxVariableName::GetType() const {
  return kConverterVariable;
}

void SyntaxVariableName::SetAggregationVariable(AggregationVariable* variable) {
  QUILT_ASSERT(variable != nullptr, "a variable node is linked to an engine variable");
  _varData->_aggregationVariable = variable;
}

AggregationVariable* SyntaxVariableName::GetAggregationVariable() const {
  return _varData->_aggregationVariable;
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

int SyntaxVariableName::GetVarDataType() const {
  return _varData->_dataType;
}

void SyntaxVariableName::SetVarDataType(int dataType) {
  _varData->_dataType = dataType;
}

void SyntaxVariableName::SetFormat(FormatType formatType) {
  _varData->_formatType = formatType;
}

TableEncryptionCodes::VariableCodes SyntaxVariableName::GetVariableType() const {
  return _varData->_variableType;
}

void SyntaxVariableName::SetVariableType(TableEncryptionCodes::VariableCodes code) {
  VarData& data = *_varData;
  const bool scale = code == TableEncryptionCodes::kVariableScale;
  if (data._dataType >= 1 && scale) {
    SyntaxParserUtility::StringVarAsScale(this, data._name);
  }
  // Statistics were already checked against the old level; a later mark would leave them wrong.
  if (!data._statistics.empty()) {
    SyntaxParserUtility::MeasurementLevelOrderViolation(this, data._name);
  }
  if (data._measurementSet && data._variableType != code) {
    SyntaxParserUtility::DuplicateWarningFromVariable(scale ? "S" : "C", data._name, false);
  }
  // A set's categories are its members or values; it cannot be summarized as a scale.
  if (data._index >= 0) {
    data._variableType = code;
  }
  data._measurementSet = true;
}

void SyntaxVariableName::AddStatistics(const std::vector<Statistics*>* statistics) {
  VarData& data = *_varData;
  if (data._isStatRemovable || data._statsFromTotals) {
    data._statistics.clear();
  }
  const bool isSet = data._index < 0;
  const bool allowsScale =
      data._variableType == TableEncryptionCodes::kVariableScale && data._formatType != kFormatA;
  const bool hadStatistics = !data._statistics.empty();
  for (Statistics* statistic : *statistics) {
    const std::string token = statistic->GetNameToken();
    if (statistic->GetStatGroup() == TableEncryptionCodes::kStatGroupSummary && !allowsScale) {
      SyntaxParserUtility::StatGroup2Violation(this, data._name, token);
    }
    if (statistic->GetStatGroup() == TableEncryptionCodes::kStatGroupResponses && !isSet) {
      SyntaxParserUtility::StatGroup3Violation(this, data._name, token);
    }
    if (hadStatistics) {
      for (auto at = data._statistics.begin(); at != data._statistics.end();) {
        if (**at == *statistic) {
          at = data._statistics.erase(at);
          SyntaxParserUtility::DuplicateWarningFromVariable(token, data._name, false);
        } else {
          ++at;
        }
      }
    }
    data._statistics.push_back(statistic);
  }
  data._isStatRemovable = false;
}

bool SyntaxVariableName::HasStatistics() const {
  return !_varData->_statistics.empty();
}

bool SyntaxVariableName::HasThisStat(int code, double cutPoint) const {
  return std::any_of(
      _varData->_statistics.begin(), _varData->_statistics.end(), [&](const Statistics* statistic) {
        if (statistic->GetStatType() != code) {
          return false;
        }
        const int primary = statistic->GetPrimaryStatistic();
        if (primary == TableEncryptionCodes::kStatPtile || primary == TableEncryptionCodes::kStatUPtile) {
          return statistic->GetCutPoint() == cutPoint;
        }
        return true;
      });
}

const std::vector<Statistics*>& SyntaxVariableName::GetStatistics() const {
  return _varData->_statistics;
}

void SyntaxVariableName::SetTotals(SyntaxTotals* totals) {
  VarData& data = *_varData;
  // A scale variable is summarized, not split into categories, so it has no total category.
  if (data._variableType == TableEncryptionCodes::kVariableScale) {
    SyntaxParserUtility::ScaleVarTotal(this, data._name);
    return;
  }
  if (data._totals != nullptr) {
    SyntaxParserUtility::DuplicateWarningFromVariable("TOTALS", data._name, false);
  }
  const bool isSet = data._index < 0;
  for (Statistics* statistic : totals->GetTotalStatistics()) {
    const std::string token = statistic->GetNameToken();
    if (statistic->GetStatGroup() == TableEncryptionCodes::kStatGroupSummary &&
        (data._dataType >= 1 || isSet)) {
      SyntaxParserUtility::StatGroup2Violation(this, data._name, token);
    }
    if (statistic->GetStatGroup() == TableEncryptionCodes::kStatGroupResponses && !isSet) {
      SyntaxParserUtility::StatGroup3Violation(this, data._name, token);
    }
    data._totalStats.push_back(statistic);
  }
  SetDefaultStats();
  data._isStatRemovable = false;
  data._statsFromTotals = true;
  data._totals = totals;
}

const std::vector<Statistics*>& SyntaxVariableName::GetTotalStats() const {
  return _varData->_totalStats;
}

bool SyntaxVariableName::GetHasTotalStats() const {
  return _varData->_totals != nullptr && !_varData->_totals->GetTotalStatistics().empty();
}

bool SyntaxVariableName::GetIsStatRemovable() const {
  return _varData->_isStatRemovable;
}

void SyntaxVariableName::SetDefaultStats() {
  VarData& data = *_varData;
  if (!data._statistics.empty() || data._variableType != TableEncryptionCodes::kVariableCategorical) {
    return;
  }
  auto* count = new Statistics(TableEncryptionCodes::kStatCount, "COUNT", "Count");
  data._ownedStatistics.push_back(count);
  data._statistics.push_back(count);
  data._isStatRemovable = true;
}

void SyntaxVariableName::CompleteStatistics() {
  VarData& data = *_varData;
  if (data._statistics.empty() && data._variableType == TableEncryptionCodes::kVariableScale) {
    auto* mean = new Statistics(TableEncryptionCodes::kStatMean, "MEAN", "Mean");
    data._ownedStatistics.push_back(mean);
    data._statistics.push_back(mean);
  }
  if (!data._totalStats.empty() || (data._isTotalNo && !data._hasSubTotal)) {
    return;
  }
  if (!data._statistics.empty()) {
    data._totalStats = data._statistics;
    return;
  }
  auto* count = new Statistics(TableEncryptionCodes::kStatCount, "COUNT", "Count");
  data._ownedStatistics.push_back(count);
  data._totalStats.push_back(count);
}

void SyntaxVariableName::SetCILevel(double level, const std::string& text) {
  VarData& data = *_varData;
  for (const std::vector<Statistics*>* list :
       {&data._ownedStatistics, &data._totalStats, &data._statistics}) {
    for (Statistics* statistic : *list) {
      if (statistic != nullptr) {
        statistic->SetCILevel(level, text);
      }
    }
  }
}

void SyntaxVariableName::SetIsTotalNo(bool isTotalNo) {
  SetCategoriesOption("TOTAL", _varData->_name, _varData->_isTotalNo, _varData->_totalSet, isTotalNo);
}

bool SyntaxVariableName::GetIsTotalNo() const {
  return _varData->_isTotalNo;
}

bool SyntaxVariableName::HasSubTotal() const {
  return _varData->_hasSubTotal;
}

int SyntaxVariableName::GetVLPairCount() const {
  return _varData->_vlPairCount;
}

void SyntaxVariableName::SetVLPairCount(int count) {
  _varData->_vlPairCount = count;
}

VLPair*& SyntaxVariableName::GetValueLabelList() {
  return _varData->_vlPairs;
}

const VLPair* SyntaxVariableName::GetValueLabelList() const {
  return _varData->_vlPairs;
}

void SyntaxVariableName::SetIsOrderA(bool isOrderA) {
  VarData& data = *_varData;
  SetCategoriesOption("ORDER", data._name, data._isOrderA, data._orderSet, isOrderA);
  // An explicit list is its own order.
  if (data._isExplicit) {
    SyntaxParserUtility::ExplicitListViolationFromVariable(data._name);
  }
}

bool SyntaxVariableName::GetIsOrderA() const {
  return _varData->_isOrderA;
}

bool SyntaxVariableName::GetOrderSet() const {
  return _varData->_orderSet;
}

void SyntaxVariableName::SetIsMissingExclude(bool isMissingExclude) {
  VarData& data = *_varData;
  SetCategoriesOption("MISSING", data._name, data._isMissingExclude, data._missingSet, isMissingExclude);
  // An explicit list says itself whether MISSING belongs to it.
  if (data._isExplicit) {
    SyntaxParserUtility::ExplicitListViolationFromVariable(data._name);
  }
}

bool SyntaxVariableName::GetIsMissingExclude() const {
  return _varData->_isMissingExclude;
}

void SyntaxVariableName::SetTotalLabel(const std::string& label) {
  // Labels are texts: a change of case is a different label.
  SetCategoriesOption("LABEL", _varData->_name, _varData->_totalLabel, _varData->_totalLabelSet, label);
}

std::string SyntaxVariableName::GetTotalLabel() const {
  return _varData->_totalLabel;
}

bool SyntaxVariableName::GetIsTotalLabelDefault() const {
  return !_varData->_totalLabelSet;
}

void SyntaxVariableName::SetTotalPositionAfter(bool isAfter) {
  SetCategoriesOption("POSITION", _varData->_name, _varData->_isTotalPositionAfter, _varData->_positionSet,
                      isAfter);
}

bool SyntaxVariableName::GetIsTotalPositionAfter() const {
  return _varData->_isTotalPositionAfter;
}

void SyntaxVariableName::SetIsEmptyInclude(bool isEmptyInclude) {
  SetCategoriesOption("EMPTY", _varData->_name, _varData->_isEmptyInclude, _varData->_emptySet,
                      isEmptyInclude);
}

bool SyntaxVariableName::GetIsEmptyInclude() const {
  return _varData->_isEmptyInclude;
}

void SyntaxVariableName::SetSortKey(TableEncryptionCodes::SortKey key) {
  if (key == TableEncryptionCodes::kSortKeyNone) {
    return;
  }
  VarData& data = *_varData;
  if (data._orderSet && data._sortKey != key) {
    SyntaxParserUtility::DuplicateWarningFromVariable("KEY", data._name, /*categories=*/true);
  }
  if (data._isExplicit) {
    SyntaxParserUtility::ExplicitListViolationFromVariable(data._name);
  }
  data._sortKey = key;
  // A statistic key was marked by SetSortInfo, which also knows its statistic.
  if (key != TableEncryptionCodes::kSortKeyStatistic) {
    data._keySet = true;
  }
}

TableEncryptionCodes::SortKey SyntaxVariableName::GetSortKey() const {
  return _varData->_sortKey;
}

void SyntaxVariableName::SetSortInfo(TableEncryptionCodes::StatisticCodes statistic,
                                     SyntaxVariableName* variable) {
  VarData& data = *_varData;
  if (data._keySet && (data._sortStatistic != statistic || data._sortVariable != variable)) {
    SyntaxParserUtility::DuplicateWarningFromVariable("KEY", data._name, /*categories=*/true);
  }
  data._sortStatistic = statistic;
  data._sortVariable = variable;
  data._keySet = true;
}

TableEncryptionCodes::StatisticCodes SyntaxVariableName::GetSortStatistic() const {
  return _varData->_sortStatistic;
}

SyntaxVariableName* SyntaxVariableName::GetSortVariable() const {
  return _varData->_sortVariable;
}

void SyntaxVariableName::SetCutPoint(double cutPoint) {
  _varData->_cutPoint = cutPoint;
}

double SyntaxVariableName::GetCutPoint() const {
  return _varData->_cutPoint;
}

void SyntaxVariableName::SetVLabelsOption(PresentationCodes::VLabelOption option) {
  _varData->_vLabelsOption = option;
}

PresentationCodes::VLabelOption SyntaxVariableName::GetVLabelsOption() const {
  return _varData->_vLabelsOption;
}

std::vector<ParsedCategory*>& SyntaxVariableName::GetParsedCategories() {
  return _varData->_parsedCategories;
}

const std::vector<ParsedCategory*>& SyntaxVariableName::GetParsedCategories() const {
  return _varData->_parsedCategories;
}

bool SyntaxVariableName::GetIsExplicit() const {
  return _varData->_isExplicit;
}

void SyntaxVariableName::SetIsExplicit(bool isExplicit) {
  _varData->_isExplicit = isExplicit;
}

bool SyntaxVariableName::operator==(const SyntaxVariableName* other) const {
  if (other == nullptr || GetIndex() != other->GetIndex() || GetType() != other->GetType() ||
      GetVariableType() != other->GetVariableType()) {
    return false;
  }
  return GetIndex() >= 0 || SyntaxParserUtility::ExactWordMatch(GetNameToken(), other->GetNameToken());
}

namespace {

using Codes = TableEncryptionCodes;

bool IsSubtotalToken(Codes::ExplicitListType type) {
  return type == Codes::kExplicitSubtotal || type == Codes::kExplicitHSubtotal;
}

// Whether `properties` names the computed category `catName`.
bool Names(const SyntaxPPropertiesSubcommand& properties, const std::string& catName) {
  for (const std::string& name : properties.GetCatNameVector()) {
    if (SyntaxParserUtility::ExactWordMatch(name, catName)) {
      return true;
    }
  }
  return false;
}

// A range end of a list as a number: LO is 0 and HI the count of value
// labels, so that "1 THRU HI" covers the labelled codes 1 to n.
int ListRangeEnd(const std::string& text, int vlPairCount) {
  if (SyntaxParserUtility::ExactWordMatch(text, "LO")) {
    return 0;
  }
  if (SyntaxParserUtility::ExactWordMatch(text, "HI")) {
    return vlPairCount;
  }
  return std::atoi(text.c_str());
}

// The same for an end of an expression's range, which its reader has already taken apart.
int RangeEndValue(const RangeEnd& end, int vlPairCount) {
  if (end.isLo) {
    return 0;
  }
  return end.isHi ? vlPairCount : static_cast<int>(end.number);
}

// Whether the category list `tokens` holds what `reference`, one operand of a computed
// category's expression, names: a value, a range, a literal, a member (sets only), MISSING,
// OTHERNM or a subtotal.
bool ListHolds(const TokenInfo& reference, const std::vector<CategoryToken*>& tokens, bool isSet,
               int vlPairCount) {
  const Codes::ExplicitListType wanted = reference.listType;
  for (const CategoryToken* element : tokens) {
    bool found = false;
    const Codes::ExplicitListType type = element->GetTokenType();
    int low = 0;
    int high = 0;
    if (type == Codes::kExplicitRange) {
      const auto* range = static_cast<const CategoryRange*>(element);
      if (range->GetFirstChild() == nullptr || range->GetLastChild() == nullptr) {
        continue;
      }
      low = ListRangeEnd(range->GetFirstChild()->GetToken(), vlPairCount);
      high = ListRangeEnd(range->GetLastChild()->GetToken(), vlPairCount);
    }
    switch (wanted) {
      case Codes::kExplicitString:
      case Codes::kExplicitName:
        // A member variable "[name]" can only stand in a dichotomy set's list, and is
        // named without regard to case, as variables are everywhere; a literal is exact.
        found = (wanted == Codes::kExplicitString || isSet) && type == wanted &&
                (wanted == Codes::kExplicitName
                     ? SyntaxParserUtility::ExactWordMatch(element->GetToken(), reference.token)
                     : element->GetToken() == reference.token);
        break;
      case Codes::kExplicitNumber: {
        // Texts are compared, so "[1]" does not find an element written "1.0".
        const int value = std::atoi(reference.token.c_str());
        found = (type == Codes::kExplicitNumber && element->GetToken() == reference.token) ||
                (type == Codes::kExplicitRange && low <= value && value <= high);
        break;
      }
      case Codes::kExplicitRange: {
        const RangeOperand& range = reference.range;
        found = (type == Codes::kExplicitNumber &&
                 (element->GetToken() == range.low.text || element->GetToken() == range.high.text)) ||
                (type == Codes::kExplicitRange && low <= RangeEndValue(range.low, vlPairCount) &&
                 RangeEndValue(range.high, vlPairCount) <= high);
        break;
      }
      case Codes::kExplicitMissing:
      case Codes::kExplicitOtherNM:
        found = type == wanted;
        break;
      case Codes::kExplicitSubtotal:
      case Codes::kExplicitHSubtotal:
        found = IsSubtotalToken(type);
        break;
      default:
        break;
    }
    if (found) {
      return true;
    }
  }
  return false;
}

}  // namespace

int SyntaxVariableName::CheckSubtotals(const std::vector<CategoryToken*>& tokens) {
  int count = 0;
  for (const CategoryToken* token : tokens) {
    if (IsSubtotalToken(token->GetTokenType())) {
      ++count;
    }
  }
  _varData->_hasSubTotal = count >= 1;
  return count;
}

void SyntaxVariableName::CleanDuplicateExplicitList() {
  std::vector<ParsedCategory*>& categories = _varData->_parsedCategories;
  if (categories.empty()) {
    return;
  }
  SyntaxParserUtility::DuplicateExplicitListFromVariable(this, _varData->_name);
  for (ParsedCategory* category : categories) {
    delete category;
  }
  categories.clear();
}

std::vector<OBS> SyntaxVariableName::GetCategoryAsOBS(const CategoryToken& token) const {
  const VarData& data = *_varData;
  std::string text = token.GetToken();
  SyntaxParserUtility::TrimTrailingWhiteSpace(text);
  const bool isString = data._dataType >= 1;
  if (!isString && text.empty()) {
    SyntaxParserUtility::DataReadError(this, data._name, token.GetToken());
  }
  const int width = isString ? data._dataType : static_cast<int>(text.size());
  std::vector<OBS> value(static_cast<std::size_t>(ObsLength(width)));
  std::memset(value.data(), ' ', value.size() * sizeof(OBS));
  if (isString) {
    if (static_cast<int>(text.size()) > data._dataType) {
      SyntaxParserUtility::DataReadError(this, data._name, token.GetToken());
    }
    if (text.empty()) {
      text = " ";
    }
    TARNMBCopyToFixed_A(value.front().bytes, data._dataType, text.c_str(), static_cast<int>(text.size()));
    return value;
  }
  // A quoted number is read as the variable's own format reads it, so a date variable
  // takes its dates as written.
  if (FromString(text.c_str(), TARN_Format(data._formatType, width, 0), value.data()) != 0) {
    SyntaxParserUtility::DataReadError(this, data._name, token.GetToken());
  }
  return value;
}

ParsedCategory* SyntaxVariableName::ManageRange(const CategoryRange& range) const {
  const VarData& data = *_varData;
  const CategoryToken* first = range.GetFirstChild();
  const CategoryToken* last = range.GetLastChild();
  QUILT_ASSERT(first != nullptr && last != nullptr, "a range reaches the variables only with both ends");
  const bool isString = data._dataType >= 1;
  const Codes::ExplicitListType firstType = first->GetTokenType();
  const Codes::ExplicitListType lastType = last->GetTokenType();
  // One end as a value of this variable: quoted text through the variable's format, a
  // number as it stands (a number end on a string variable cannot be read).
  auto endValue = [&](const CategoryToken& end) {
    if (end.GetTokenType() == Codes::kExplicitString) {
      return GetCategoryAsOBS(end);
    }
    if (isString || end.GetTokenType() != Codes::kExplicitNumber) {
      SyntaxParserUtility::DataReadError(this, data._name, last->GetToken());
    }
    std::vector<OBS> value(1);
    value[0].number = end.GetNumber();
    return value;
  };
  if (firstType == Codes::kExplicitLo) {
    if (lastType == Codes::kExplicitHi) {
      return new ParsedCategory(ParsedCategory::kParsedAll);
    }
    const std::vector<OBS> high = endValue(*last);
    return new ParsedCategory(high.data(), data._dataType, ParsedCategory::kParsedLo);
  }
  if (firstType != Codes::kExplicitString && firstType != Codes::kExplicitNumber) {
    // A computed-category reference folded into a range names no value.
    SyntaxParserUtility::DataReadError(this, data._name, range.GetToken());
  }
  if (firstType == Codes::kExplicitNumber && isString) {
    SyntaxParserUtility::DataReadError(this, data._name, last->GetToken());
  }
  const std::vector<OBS> low = endValue(*first);
  if (lastType == Codes::kExplicitHi) {
    return new ParsedCategory(low.data(), data._dataType, ParsedCategory::kParsedHi);
  }
  const std::vector<OBS> high = endValue(*last);
  return new ParsedCategory(low.data(), high.data(), data._dataType);
}

ParsedCategory* SyntaxVariableName::MakeSubtotalCategory(const CategoryToken& token, ExplicitListPass& pass) {
  const bool after = _varData->_isTotalPositionAfter;
  pass.sawSubtotal = true;
  ++pass.seen;
  // A subtotal before its categories opens a new code; one after them closes the current one.
  if (!after) {
    --pass.encoding;
  }
  const bool isDefault = !token.GetHasLabel();
  const std::string label = isDefault ? "Subtotal" : token.GetLabel();
  auto* category =
      new ParsedCategory(label, isDefault, pass.encoding, token.GetTokenType() == Codes::kExplicitSubtotal);
  category->SetSubtotalEncoding(pass.encoding);
  if (after) {
    --pass.encoding;
  }
  return category;
}

void SyntaxVariableName::AppendParsedCategory(ParsedCategory* category, bool isSubtotal,
                                              const ExplicitListPass& pass) {
  const VarData& data = *_varData;
  category->SetValueType(data._dataType);
  if (!isSubtotal) {
    const bool before = !data._isTotalPositionAfter;
    if ((pass.sawSubtotal && before) || (data._hasSubTotal && !before && pass.seen < pass.total)) {
      category->SetSubtotalEncoding(pass.encoding);
    }
  }
  _varData->_parsedCategories.push_back(category);
}

// The definitions come in command order: a PCOMPUTE of the name makes the category afresh,
// and the first PPROPERTIES naming it after that completes it.
ParsedCategory* SyntaxVariableName::MakeComputedCategory(const CategoryToken& token,
                                                         const std::vector<CategoryToken*>& tokens, int total,
                                                         int index) {
  const std::string catName = token.GetToken();
  const CommandScope* command = GetCommandScope();
  if (command == nullptr) {
    SyntaxParserUtility::UnknownPComputeName(this, catName);
  }
  std::unique_ptr<ParsedCategory> category;
  bool usesTotals = false;  // the expression refers to the total or a subtotal
  bool completed = false;   // a PPROPERTIES has completed the latest definition
  for (const ComputedDefinition& definition : command->GetComputedDefinitions()) {
    if (definition.compute != nullptr) {
      if (SyntaxParserUtility::ExactWordMatch(definition.compute->GetCatName(), catName)) {
        completed = false;
        usesTotals = CheckComputedOperands(*definition.compute, catName, tokens, total);
        const std::vector<std::string> labels{definition.compute->GetExpression()};
        category = std::make_unique<ParsedCategory>(catName, labels, /*hideSource=*/false, std::vector<int>(),
                                                    std::vector<int>(), std::vector<int>(),
                                                    ParsedCategory::kParsedComputed, index);
      }
    } else if (category != nullptr && !completed && Names(*definition.properties, catName)) {
      category = ApplyComputedProperties(*definition.properties, *category, usesTotals, index);
      completed = true;
    }
  }
  if (category == nullptr) {
    SyntaxParserUtility::UnknownPComputeName(this, catName);
  }
  return category.release();
}

bool SyntaxVariableName::CheckComputedOperands(const SyntaxPComputeSubcommand& pCompute,
                                               const std::string& catName,
                                               const std::vector<CategoryToken*>& tokens, int total) const {
  const VarData& data = *_varData;
  bool usesTotals = false;
  for (const TokenInfo& reference : pCompute.GetExpTokenVector()) {
    if (reference.tokenType == ExpressionToken::kExprConstant) {
      continue;
    }
    if (SyntaxParserUtility::ExactWordMatch(reference.token, "TOTAL")) {
      usesTotals = true;
      continue;
    }
    const bool found = ListHolds(reference, tokens, data._index < 0, data._vlPairCount);
    if (IsSubtotalToken(reference.listType)) {
      usesTotals = true;
      if (found && reference.index > static_cast<unsigned long>(total)) {
        SyntaxParserUtility::UnexistInExplicitListForSubtotal(
            this, catName, reference.token + "[" + std::to_string(reference.index) + "]", data._name);
      }
    }
    if (!found) {
      SyntaxParserUtility::UnexistInExplicitList(this, catName, reference.token, data._name);
    }
  }
  return usesTotals;
}

std::unique_ptr<ParsedCategory> SyntaxVariableName::ApplyComputedProperties(
    const SyntaxPPropertiesSubcommand& properties, const ParsedCategory& computed, bool usesTotals,
    int index) const {
  const VarData& data = *_varData;
  const std::string& catName = computed.GetPCatName();
  std::vector<std::string> labels = computed.GetCategories();
  // LABEL= without a text keeps the expression as the label rather than leave none.
  if (properties.IsLabelSet() && !properties.GetPLabel().empty()) {
    labels = properties.GetPLabel();
  }
  std::vector<int> statCodes;
  std::vector<int> displayFormats;
  std::vector<int> formats;
  if (properties.IsFormatSet()) {
    for (const Statistics* statistic : properties.GetPFormat()) {
      statCodes.push_back(statistic->GetStatType());
      displayFormats.push_back(statistic->GetStatDisplayFormat());
      formats.push_back(statistic->GetFormat() == nullptr ? 0
                                                          : static_cast<int>(statistic->GetFormat()->Pack()));
      // Totals and subtotals feeding the computation must carry the same statistics.
      if (usesTotals && !data._totalStats.empty()) {
        bool shown = false;
        for (const Statistics* totalStatistic : data._totalStats) {
          shown = shown || totalStatistic->GetStatType() == statistic->GetStatType();
        }
        if (!shown) {
          SyntaxParserUtility::DiffStatTypeTotalAndSubtotalPcomput(this, catName, data._name);
        }
      }
    }
  }
  return std::make_unique<ParsedCategory>(catName, labels, properties.IsHideSourceSet(), statCodes,
                                          displayFormats, formats, ParsedCategory::kParsedComputed, index);
}

void SyntaxVariableName::SetParsedCategories(const std::vector<CategoryToken*>& tokens) {
  VarData& data = *_varData;
  if (data._orderSet || data._keySet || data._missingSet) {
    SyntaxParserUtility::ExplicitListViolationFromVariable(data._name);
  }
  CleanDuplicateExplicitList();
  data._isExplicit = true;
  ExplicitListPass pass;
  pass.total = CheckSubtotals(tokens);
  const bool isString = data._dataType >= 1;
  for (const CategoryToken* token : tokens) {
    std::unique_ptr<ParsedCategory> category;
    bool isSubtotal = false;
    switch (token->GetTokenType()) {
      case Codes::kExplicitMissing:
        category = std::make_unique<ParsedCategory>(ParsedCategory::kParsedMissing);
        break;
      case Codes::kExplicitOtherNM:
        category = std::make_unique<ParsedCategory>(ParsedCategory::kParsedOtherNM);
        break;
      case Codes::kExplicitRange:
        category.reset(ManageRange(*static_cast<const CategoryRange*>(token)));
        break;
      case Codes::kExplicitString: {
        const std::vector<OBS> value = GetCategoryAsOBS(*token);
        category = std::make_unique<ParsedCategory>(value.data(), data._dataType);
        break;
      }
      case Codes::kExplicitNumber: {
        if (isString) {
          SyntaxParserUtility::DataReadError(this, data._name, token->GetToken());
        }
        OBS value;
        value.number = token->GetNumber();
        category = std::make_unique<ParsedCategory>(&value, data._dataType);
        break;
      }
      case Codes::kExplicitComputed:
        category.reset(MakeComputedCategory(*token, tokens, pass.total, data._index));
        break;
      case Codes::kExplicitSubtotal:
      case Codes::kExplicitHSubtotal:
        isSubtotal = true;
        category.reset(MakeSubtotalCategory(*token, pass));
        break;
      default:
        // A name (only a dichotomy set's list holds them), or LO and HI outside a range.
        SyntaxParserUtility::DataReadError(this, data._name, token->GetToken());
    }
    AppendParsedCategory(category.release(), isSubtotal, pass);
  }
}

void SyntaxVariableName::SetCategoriesList(const std::vector<int>& indices) {
  VarData& data = *_varData;
  if (data._index != kSetIndex || indices.empty()) {
    return;
  }
  for (const int index : indices) {
    auto* category = new ParsedCategory(ParsedCategory::kParsedVariable);
    category->SetVarIndex(index);
    data._parsedCategories.push_back(category);
  }
  data._isExplicit = true;
}

namespace {

// Name tokens of `statistics` joined by commas, or "none".
std::string StatisticNames(const std::vector<Statistics*>& statistics) {
  if (statistics.empty()) {
    return "none";
  }
  std::string list;
  for (const Statistics* statistic : statistics) {
    list += (list.empty() ? "" : ",") + statistic->GetNameToken();
  }
  return list;
}

// One ParsedCategory as the dump shows it: kind, values, code, and a computed category's
// label, hiding and formats.
void DumpParsedCategory(std::ostream& out, const ParsedCategory& category) {
  const int type = category.GetValueType();
  auto value = [type](const OBS* cells) {
    const ObsValue copy(type, cells, -1);
    if (type != 0) {
      return "'" + copy.Text() + "'";
    }
    char number[32];
    std::snprintf(number, sizeof number, "%.15g", copy.Number());
    return std::string(number);
  };
  switch (category.GetPCType()) {
    case ParsedCategory::kParsedValue:
      out << "value " << value(category.GetCatValue());
      break;
    case ParsedCategory::kParsedRange:
      out << "range " << value(category.GetCatValue()) << " THRU " << value(category.GetHighValue());
      break;
    case ParsedCategory::kParsedLo:
      out << "range LO THRU " << value(category.GetCatValue());
      break;
    case ParsedCategory::kParsedHi:
      out << "range " << value(category.GetCatValue()) << " THRU HI";
      break;
    case ParsedCategory::kParsedAll:
      out << "range LO THRU HI";
      break;
    case ParsedCategory::kParsedMissing:
      out << "MISSING";
      break;
    case ParsedCategory::kParsedOtherNM:
      out << "OTHERNM";
      break;
    case ParsedCategory::kParsedSubtotal:
    case ParsedCategory::kParsedHSubtotal:
      out << (category.GetPCType() == ParsedCategory::kParsedSubtotal ? "SUBTOTAL" : "HSUBTOTAL") << " '"
          << category.GetLabel() << "'" << (category.IsLabelDefault() ? " default" : "");
      break;
    case ParsedCategory::kParsedVariable:
      out << "variable #" << category.GetVarIndex();
      break;
    case ParsedCategory::kParsedComputed: {
      out << "computed &" << category.GetPCatName() << " labels=";
      const char* separator = "";
      for (const std::string& label : category.GetCategories()) {
        out << separator << "'" << label << "'";
        separator = ",";
      }
      out << " hide=" << category.GetHideSource() << " index=" << category.GetIndex();
      for (std::size_t position = 0; position < category.GetStatCodes().size(); ++position) {
        out << " stat=" << category.GetStatCodes()[position];
        if (position < category.GetFormats().size() && category.GetFormats()[position] != 0) {
          out << "/format=" << category.GetFormats()[position];
        }
      }
      break;
    }
  }
  if (category.GetSubtotalEncoding() != 0) {
    out << " @" << category.GetSubtotalEncoding();
  }
}

}  // namespace

void SyntaxVariableName::DumpDetails(std::ostream& out) const {
  const VarData& data = *_varData;
  out << " name=" << data._name << " index=" << data._index << " axis=" << data._axis
      << " leaf=" << data._isLeafNode
      << " type=" << (data._variableType == TableEncryptionCodes::kVariableScale ? "S" : "C")
      << " measurementSet=" << data._measurementSet << " stats=" << StatisticNames(data._statistics)
      << " removable=" << data._isStatRemovable << " totals=" << (data._totals != nullptr)
      << " totalstats=" << StatisticNames(data._totalStats) << " vlpairs=" << data._vlPairCount
      << " total=" << (data._isTotalNo ? "NO" : "YES") << " totalLabel='" << data._totalLabel << "'"
      << " position=" << (data._isTotalPositionAfter ? "AFTER" : "BEFORE")
      << " empty=" << (data._isEmptyInclude ? "INCLUDE" : "EXCLUDE")
      << " order=" << (data._isOrderA ? "A" : "D")
      << " missing=" << (data._isMissingExclude ? "EXCLUDE" : "INCLUDE") << " key=";
  switch (data._sortKey) {
    case TableEncryptionCodes::kSortKeyLabel:
      out << "LABEL";
      break;
    case TableEncryptionCodes::kSortKeyStatistic:
      out << SyntaxParserUtility::GetStatToken(data._sortStatistic, data._cutPoint) << "("
          << (data._sortVariable == nullptr ? "" : data._sortVariable->GetNameToken()) << ")";
      break;
    default:
      out << "VALUE";
  }
  out << " explicit=" << data._isExplicit;
  if (data._isExplicit) {
    out << " list=[";
    const char* separator = "";
    for (const ParsedCategory* category : data._parsedCategories) {
      out << separator;
      DumpParsedCategory(out, *category);
      separator = "; ";
    }
    out << "]";
  }
}
