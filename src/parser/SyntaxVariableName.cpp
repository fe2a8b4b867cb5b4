// SyntaxVariableName.cpp - the variable leaf: its name, axis and leaf state
#include "parser/SyntaxVariableName.h"

#include <algorithm>
#include <ostream>

#include "host/QuiltAssert.h"
#include "host/data/TARN_DataSource.h"
#include "host/data/TARN_Variable.h"
#include "host/data/VariableSet.h"
#include "parser/Statistics.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTotals.h"

struct SyntaxVariableName::VarData {
  AggregationVariable* _aggregationVariable = nullptr;  // set once by the dispatcher; not owned
  int _index = 0;           // dictionary index; -100 for a set
  std::string _name;        // the variable's or the set's name
  std::string _label;       // empty when it has none
  int _axis = 0;            // count of BY ahead of this occurrence: 0, 1 or 2
  bool _isLeafNode = true;  // false once it is the left operand of ">"
  int _dataType = 0;        // 0 numeric, else the width of a string variable
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
  ReadMeasurement();
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

AggregationVariable* SyntaxVariableName::GetAggregationVariable() const { return _varData->_aggregationVariable; }

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
  VarData& data = *_varData;
  if (data._totalSet && data._isTotalNo != isTotalNo) {
    SyntaxParserUtility::DuplicateWarningFromVariable("TOTAL", data._name, /*categories=*/true);
  }
  data._isTotalNo = isTotalNo;
  data._totalSet = true;
}

bool SyntaxVariableName::GetIsTotalNo() const {
  return _varData->_isTotalNo;
}

bool SyntaxVariableName::HasSubTotal() const {
  return _varData->_hasSubTotal;
}

namespace {

// Name tokens of `statistics` joined by commas, or "none".
std::string StatisticList(const std::vector<Statistics*>& statistics) {
  if (statistics.empty()) {
    return "none";
  }
  std::string list;
  for (const Statistics* statistic : statistics) {
    list += (list.empty() ? "" : ",") + statistic->GetNameToken();
  }
  return list;
}

}  // namespace

void SyntaxVariableName::DumpDetails(std::ostream& out) const {
  const VarData& data = *_varData;
  out << " name=" << data._name << " index=" << data._index << " axis=" << data._axis
      << " leaf=" << data._isLeafNode
      << " type=" << (data._variableType == TableEncryptionCodes::kVariableScale ? "S" : "C")
      << " measurementSet=" << data._measurementSet << " stats=" << StatisticList(data._statistics)
      << " removable=" << data._isStatRemovable << " totals=" << (data._totals != nullptr)
      << " totalstats=" << StatisticList(data._totalStats);
}
