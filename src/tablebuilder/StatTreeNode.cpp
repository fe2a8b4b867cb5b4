// StatTreeNode.cpp - statistic nodes: copying from the parsed statistic and the format family
#include "tablebuilder/StatTreeNode.h"

#include <ostream>

#include "parser/Statistics.h"

struct StatTreeNode::StatData {
  StatisticCodes _statType = TableEncryptionCodes::kStatNone;          // full code, sub-type included
  StatisticCodes _primaryStatistic = TableEncryptionCodes::kStatNone;  // the base statistic
  StatisticConf _confSubType = TableEncryptionCodes::kConfNone;        // lower, upper limit or error
  double _ptileValue = -1.0;                                           // cut point of a percentile
  StatFormatCodes _statFormatCode = kStatFormatPercent;                // how a cell value is formatted
  std::string _statLabel;                                              // label after SLABELS and user text
  std::string _defaultLabel;                                           // the statistic's default label
  bool _labelIsDefault = true;                                         // _statLabel is the default
  bool _hasLabelParameter = false;                                     // the label holds ^1
  double _ciLevelValue = 0.0;                                          // level of a confidence statistic
  std::string _ciLevelString;                                          // the same level as text
  bool _hidden = false;                                                // kept, but the label is not shown
};

StatTreeNode::StatTreeNode() : HeaderTreeNode(kHNodeTypeStatistic), _statData(std::make_unique<StatData>()) {}

StatTreeNode::StatTreeNode(const Statistics& statistics) : StatTreeNode() {
  StatData& data = *_statData;
  data._statType = statistics.GetStatType();
  data._primaryStatistic = statistics.GetPrimaryStatistic();
  data._confSubType = statistics.GetConfSubType();
  data._ptileValue = statistics.HasCutPoint() ? statistics.GetCutPoint() : -1.0;
  data._statFormatCode = DetermineStatFormatCode(data._primaryStatistic, data._confSubType);
  data._statLabel = statistics.GetLabel();
  data._defaultLabel = statistics.GetDefaultLabel();
  data._labelIsDefault = statistics.HasDefaultLabel();
  data._hasLabelParameter = statistics.HasLabelParameter();
  data._ciLevelValue = statistics.GetCILevelValue();
  data._ciLevelString = statistics.GetCILevelString();
  data._hidden = false;
  SetCubeIndexInDim(0);
}

StatTreeNode::~StatTreeNode() = default;

bool StatTreeNode::IsSameStatistic(const HeaderTreeNode& other) const {
  if (other.GetType() != kHNodeTypeStatistic) return false;
  const auto& statistic = static_cast<const StatTreeNode&>(other);
  if (GetStatType() != statistic.GetStatType()) return false;
  const int primary = GetPrimaryStatistic();
  if (primary == TableEncryptionCodes::kStatPtile || primary == TableEncryptionCodes::kStatUPtile) {
    return GetPtileValue() == statistic.GetPtileValue();
  }
  return true;
}

HeaderTreeNode* StatTreeNode::Clone() const {
  auto* clone = new StatTreeNode();
  *clone->_statData = *_statData;
  if (GetEmptyState() != kEmptyUnknown) clone->SetEmpty(IsEmpty());
  clone->SetIncludeEmpty(IsIncludeEmpty());
  clone->SetChildLoc(GetChildLoc());
  clone->SetCubeIndexInDim(GetCubeIndexInDim());
  return clone;
}

StatTreeNode::StatFormatCodes StatTreeNode::DetermineStatFormatCode(int primary, int conf) {
  using Codes = TableEncryptionCodes;
  // SEMEAN and USEMEAN: the error variants of the means, when named by their own code.
  constexpr int kSEMean = static_cast<int>(Codes::kStatMean) + static_cast<int>(Codes::kConfSe);
  constexpr int kUSEMean = static_cast<int>(Codes::kStatUMean) + static_cast<int>(Codes::kConfSe);
  switch (primary) {
    case Codes::kStatCount:
    case Codes::kStatUCount:
    case Codes::kStatECount:
    case Codes::kStatMissing:
    case Codes::kStatUMissing:
    case Codes::kStatTotalN:
    case Codes::kStatUTotalN:
    case Codes::kStatETotalN:
    case Codes::kStatValidN:
    case Codes::kStatUValidN:
    case Codes::kStatEValidN:
    case Codes::kStatResponses:
    case Codes::kStatUResponses:
      return kStatFormatCount;
    case Codes::kStatMean:
    case Codes::kStatUMean:
    case Codes::kStatMedian:
    case Codes::kStatUMedian:
    case Codes::kStatPtile:
    case Codes::kStatUPtile:
      // A standard error is a spread, whatever it is the error of.
      return conf == Codes::kConfSe ? kStatFormatStdDev : kStatFormatMean;
    case Codes::kStatMaximum:
    case Codes::kStatMinimum:
    case Codes::kStatMode:
    case Codes::kStatUMode:
      return kStatFormatVariable;
    case Codes::kStatStdDev:
    case Codes::kStatUStdDev:
    case Codes::kStatVariance:
    case Codes::kStatUVariance:
    case kSEMean:
    case kUSEMean:
    case Codes::kStatMeanSumSquares:
      return kStatFormatStdDev;
    case Codes::kStatSum:
    case Codes::kStatUSum:
      return kStatFormatSum;
    case Codes::kStatRange:
      return kStatFormatDifference;
    default:
      return kStatFormatPercent;
  }
}

StatTreeNode::StatisticCodes StatTreeNode::GetStatType() const { return _statData->_statType; }
StatTreeNode::StatisticCodes StatTreeNode::GetPrimaryStatistic() const { return _statData->_primaryStatistic; }
StatTreeNode::StatisticConf StatTreeNode::GetConfSubType() const { return _statData->_confSubType; }
double StatTreeNode::GetPtileValue() const { return _statData->_ptileValue; }
double StatTreeNode::GetCILevelValue() const { return _statData->_ciLevelValue; }
const std::string& StatTreeNode::GetCILevelString() const { return _statData->_ciLevelString; }
StatTreeNode::StatFormatCodes StatTreeNode::GetStatFormatCode() const { return _statData->_statFormatCode; }
const std::string& StatTreeNode::GetLabel() const { return _statData->_statLabel; }
void StatTreeNode::SetLabel(const std::string& label) { _statData->_statLabel = label; }
const std::string& StatTreeNode::GetDefaultLabel() const { return _statData->_defaultLabel; }
bool StatTreeNode::IsLabelDefault() const { return _statData->_labelIsDefault; }
bool StatTreeNode::HasLabelParameter() const { return _statData->_hasLabelParameter; }
bool StatTreeNode::IsHidden() const { return _statData->_hidden; }
void StatTreeNode::SetHidden(bool hidden) { _statData->_hidden = hidden; }

void StatTreeNode::DumpDetails(std::ostream& out) const {
  const StatData& data = *_statData;
  out << " '" << data._statLabel << "' code=" << data._statType << " primary=" << data._primaryStatistic
      << " conf=" << data._confSubType << " format=" << data._statFormatCode;
  if (data._ptileValue >= 0.0) out << " ptile=" << data._ptileValue;
  // Every statistic carries the table's level; only a confidence variant shows it.
  const bool isConfidence = data._confSubType == TableEncryptionCodes::kConfLcl ||
                            data._confSubType == TableEncryptionCodes::kConfUcl ||
                            data._confSubType == TableEncryptionCodes::kConfSe;
  if (isConfidence) out << " ci=" << data._ciLevelString;
  out << " hidden=" << (data._hidden ? 1 : 0);
}
