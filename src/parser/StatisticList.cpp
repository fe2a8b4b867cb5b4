// StatisticList.cpp - statistic keywords, percentiles and the S/C mark, read alike wherever they are written
#include "parser/StatisticList.h"

#include <ostream>

#include "parser/Statistics.h"
#include "parser/SyntaxComposite.h"
#include "parser/SyntaxParserUtility.h"

StatisticList::StatisticList(SyntaxComposite* owner) : _owner(owner) {}

Statistics* StatisticList::ReadStatistic(const std::string& text) {
  int code = 0;
  std::string label;
  TableEncryptionCodes::StatisticsGroup group = TableEncryptionCodes::kStatGroupCounts;
  if (!SyntaxParserUtility::SupportedStatistics(text, code, label, group)) {
    return nullptr;
  }
  if (_measurementSeen) {
    SyntaxParserUtility::CombinedStatsAndMeasurement(_owner, text);
  }
  ClosePercentile(text);
  auto* statistic = new Statistics(static_cast<TableEncryptionCodes::StatisticCodes>(code), text, label);
  statistic->SetStatGroup(group);
  _owner->Add(statistic);
  _statistics.push_back(statistic);
  const int primary = statistic->GetPrimaryStatistic();
  if (primary == TableEncryptionCodes::kStatPtile || primary == TableEncryptionCodes::kStatUPtile) {
    _pendingPercentile = statistic;
  }
  _statisticsSeen = true;
  return statistic;
}

bool StatisticList::ReadMeasurement(const std::string& text) {
  const bool scale = SyntaxParserUtility::ExactWordMatch(text, "S");
  if (!scale && !SyntaxParserUtility::ExactWordMatch(text, "C")) {
    return false;
  }
  if (_statisticsSeen) {
    SyntaxParserUtility::CombinedStatsAndMeasurement(_owner, text);
  }
  if (_measurementSeen) {
    SyntaxParserUtility::DuplicateWarning(_owner, text);
  }
  _measurement = scale ? TableEncryptionCodes::kVariableScale : TableEncryptionCodes::kVariableCategorical;
  _measurementSeen = true;
  return true;
}

void StatisticList::ClosePercentile(const std::string& text) {
  if (_pendingPercentile != nullptr && !_pendingPercentile->HasCutPoint()) {
    SyntaxParserUtility::InvalidPTILE(_owner, text);
  }
  _pendingPercentile = nullptr;
}

void StatisticList::DropEarlierRepeats() {
  for (std::size_t i = 0; i < _statistics.size();) {
    bool repeatedLater = false;
    for (std::size_t later = i + 1; later < _statistics.size() && !repeatedLater; ++later) {
      repeatedLater = *_statistics[i] == *_statistics[later];
    }
    if (repeatedLater) {
      SyntaxParserUtility::DuplicateWarning(_owner, _statistics[i]->GetNameToken());
      _statistics.erase(_statistics.begin() + static_cast<std::ptrdiff_t>(i));
    } else {
      ++i;
    }
  }
}

void StatisticList::Clear() {
  _statistics.clear();
  _statisticsSeen = false;
  _measurementSeen = false;
}

void StatisticList::DumpNames(std::ostream& out) const {
  const char* separator = "";
  for (const Statistics* statistic : _statistics) {
    out << separator << statistic->GetNameToken();
    separator = ",";
  }
}

const char* StatisticList::MeasurementName() const {
  return _measurement == TableEncryptionCodes::kVariableScale ? "S" : "C";
}
