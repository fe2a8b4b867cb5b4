// AggregationStatistic.cpp - statistic identity and the split of a code into primary and variant
#include "host/engine/AggregationStatistic.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

using Codes = TableEncryptionCodes;

// The primaries that stand alone, in code order; percentage families are added by rule.
constexpr std::array<int, 31> kSinglePrimaries = {Codes::kStatCount,
                                                  Codes::kStatUCount,
                                                  Codes::kStatECount,
                                                  Codes::kStatMaximum,
                                                  Codes::kStatMean,
                                                  Codes::kStatUMean,
                                                  Codes::kStatMedian,
                                                  Codes::kStatUMedian,
                                                  Codes::kStatMinimum,
                                                  Codes::kStatMissing,
                                                  Codes::kStatUMissing,
                                                  Codes::kStatMode,
                                                  Codes::kStatUMode,
                                                  Codes::kStatRange,
                                                  Codes::kStatStdDev,
                                                  Codes::kStatUStdDev,
                                                  Codes::kStatSum,
                                                  Codes::kStatUSum,
                                                  Codes::kStatTotalN,
                                                  Codes::kStatUTotalN,
                                                  Codes::kStatETotalN,
                                                  Codes::kStatValidN,
                                                  Codes::kStatUValidN,
                                                  Codes::kStatEValidN,
                                                  Codes::kStatVariance,
                                                  Codes::kStatUVariance,
                                                  Codes::kStatResponses,
                                                  Codes::kStatUResponses,
                                                  Codes::kStatMeanSumSquares,
                                                  Codes::kStatPtile,
                                                  Codes::kStatUPtile};

constexpr std::array<int, 7> kFamilyFirst = {10, 66, 122, 233, 297, 353, 409};

// Sorted list of every primary code, built once.
struct PrimaryList {
  std::array<int, kSinglePrimaries.size() + 7 * 14> codes{};
  PrimaryList() {
    std::size_t n = 0;
    for (int code : kSinglePrimaries) codes[n++] = code;
    for (int first : kFamilyFirst) {
      for (int b = 0; b < 7; ++b) {
        codes[n++] = first + 8 * b;
        codes[n++] = first + 8 * b + 4;
      }
    }
    std::sort(codes.begin(), codes.end());
  }
};

const PrimaryList& Primaries() {
  static const PrimaryList list;
  return list;
}

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
  if (code < 0 || code > Codes::kStatLast) return false;
  const auto& list = Primaries().codes;
  // The primary at or below the code.
  auto it = std::upper_bound(list.begin(), list.end(), code);
  if (it == list.begin()) return false;
  const int primary = *std::prev(it);
  const int next = it == list.end() ? primary + 4 : *it;
  const int offset = code - primary;
  if (offset == 0) {
    prime = primary;
    conf = Codes::kConfNone;
    return true;
  }
  // Variants exist only where the next primary leaves room for all three of them; the
  // internal statistic 465 is reached by the dispatcher alone and has none.
  if (next - primary < 4 || primary == Codes::kStatMeanSumSquares || offset > Codes::kConfSe) {
    return false;
  }
  prime = primary;
  conf = offset;
  return true;
}
