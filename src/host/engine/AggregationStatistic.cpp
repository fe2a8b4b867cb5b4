// AggregationStatistic.cpp - statistic identity; codes are split by StatisticCodeTable
#include "host/engine/AggregationStatistic.h"

#include "host/engine/StatisticCodeTable.h"

namespace {

using Codes = TableEncryptionCodes;

}  // namespace

AggregationStatistic::AggregationStatistic(int code) : _code(code) {}
AggregationStatistic::AggregationStatistic(int varIndex, int code) : _code(code), _varIndex(varIndex) {}
AggregationStatistic::AggregationStatistic(const AggregationStatistic& other) = default;
AggregationStatistic& AggregationStatistic::operator=(const AggregationStatistic& other) = default;
AggregationStatistic::~AggregationStatistic() = default;

int AggregationStatistic::GetPrimaryStatistic() const {
  int prime = 0;
  int conf = 0;
  return GetStatPrimeAndConf(_code, prime, conf) ? prime : _code;
}

int AggregationStatistic::GetConfSubType() const {
  int prime = 0;
  int conf = 0;
  return GetStatPrimeAndConf(_code, prime, conf) ? conf : Codes::kConfNone;
}

bool AggregationStatistic::operator==(const AggregationStatistic& other) const {
  return _code == other._code && _varIndex == other._varIndex && _cutPoint == other._cutPoint;
}

bool AggregationStatistic::GetStatPrimeAndConf(int code, int& prime, int& conf) {
  const StatisticCodeInfo* info = StatisticCodeTable::Decode(code);
  if (info == nullptr) return false;
  prime = info->_primary;
  conf = info->_conf;
  return true;
}
