// QuiltSigTestsAdjust.cpp - adjusting the p-values of one family of pairwise tests, and the column letters
#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/QuiltAssert.h"
#include "host/data/FormatConversion.h"
#include "host/data/Obs.h"
#include "host/data/TARN_Format.h"
#include "tablebuilder/QuiltSigTests.h"

namespace {

constexpr double kSysmis = TARN_SystemMissing();

using Elem = QuiltSigTests::PValueInfoElem;

bool HasPValue(const Elem& elem) {
  return elem._pValue != kSysmis;
}

// The second level takes part only when one was given.
bool Alpha2Counts(double alpha2) {
  return alpha2 != kSysmis && alpha2 > 0.0;
}

// Significance is strict: a p-value equal to alpha is not significant.
void SetAdjusted(Elem& elem, double adjusted, double alpha, double alpha2) {
  elem._adjustValue = adjusted;
  elem._significant = alpha > adjusted;
  elem._significantAlpha2 = Alpha2Counts(alpha2) && alpha2 > adjusted;
}

}  // namespace

QuiltSigTests::PValueInfoElem::PValueInfoElem() : _pValue(kSysmis), _adjustValue(kSysmis) {}

// Bonferroni multiplies by the number of tests made and does not cut at 1, so a reader can
// see how far from significance a pair is. Columns of a multiple-response set that hold
// the same cases answer the same question, so the tests against them count once: each
// column is replaced by the first column it was found identical with, and the family is
// the set of distinct pairs that remain.
void QuiltSigTests::AdjustSigTests(double alpha, double alpha2,
                                   PresentationCodes::SignificanceAdjustType adjustType, int /*count*/,
                                   std::vector<PValueInfoElem>& list) {
  int tested = 0;
  int identical = 0;
  for (PValueInfoElem& elem : list) {
    elem._adjustValue = kSysmis;
    elem._significant = false;
    elem._significantAlpha2 = false;
    if (elem._identical) ++identical;
    if (!HasPValue(elem)) continue;
    ++tested;
    if (adjustType == PresentationCodes::kAdjustNone) SetAdjusted(elem, elem._pValue, alpha, alpha2);
  }
  if (adjustType == PresentationCodes::kAdjustNone) return;

  if (identical == 0) {
    if (adjustType == PresentationCodes::kAdjustBH) {
      AdjustSigBHTests(alpha, alpha2, list);
      return;
    }
    for (PValueInfoElem& elem : list) {
      if (HasPValue(elem)) SetAdjusted(elem, tested * elem._pValue, alpha, alpha2);
    }
    return;
  }

  std::map<int, int> representative;
  for (const PValueInfoElem& elem : list) {
    if (elem._identical && representative.count(elem._firstIndex) == 0) {
      representative.emplace(elem._secondIndex, elem._firstIndex);
    }
  }
  auto representing = [&representative](int column) {
    auto found = representative.find(column);
    return found == representative.end() ? column : found->second;
  };
  // A pair of representatives is unordered: (B,C) with B standing for D is the pair (C,D).
  std::map<std::pair<int, int>, std::size_t> localIndex;
  std::vector<PValueInfoElem> local;
  std::vector<std::size_t> localOf(list.size(), 0);
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (!HasPValue(list[i])) continue;
    const int first = representing(list[i]._firstIndex);
    const int second = representing(list[i]._secondIndex);
    const std::pair<int, int> pair(std::min(first, second), std::max(first, second));
    auto inserted = localIndex.emplace(pair, local.size());
    if (inserted.second) {
      local.push_back(list[i]);
      local.back()._firstIndex = pair.first;
      local.back()._secondIndex = pair.second;
    }
    localOf[i] = inserted.first->second;
  }
  const int family = static_cast<int>(local.size());
  if (adjustType == PresentationCodes::kAdjustBH) AdjustSigBHTests(alpha, alpha2, local);
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (!HasPValue(list[i])) continue;
    if (adjustType == PresentationCodes::kAdjustBH) {
      const PValueInfoElem& shared = local[localOf[i]];
      list[i]._adjustValue = shared._adjustValue;
      list[i]._significant = shared._significant;
      list[i]._significantAlpha2 = shared._significantAlpha2;
    } else {
      SetAdjusted(list[i], family * list[i]._pValue, alpha, alpha2);
    }
  }
}

// Benjamini-Hochberg step-up: the k-th smallest of m p-values is adjusted to p * m / k (at
// most 1), then each adjusted value is lowered to the smallest adjusted value above it in
// rank, so that the adjusted values rise with the p-values. A pair is significant when its
// rank is at or below the highest rank whose unsmoothed value is below alpha.
void QuiltSigTests::AdjustSigBHTests(double alpha, double alpha2, std::vector<PValueInfoElem>& list) {
  const bool secondLevel = Alpha2Counts(alpha2);
  std::vector<PValueInfoElem> sorted;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (!HasPValue(list[i])) continue;
    sorted.push_back(list[i]);
    sorted.back()._position = static_cast<int>(i);
  }
  std::sort(sorted.begin(), sorted.end(), PValueInfoLess);
  const std::size_t m = sorted.size();
  int lastSig = -1;
  int lastSig2 = -1;
  for (std::size_t i = 0; i < m; ++i) {
    const double adjusted =
        std::min(sorted[i]._pValue * static_cast<double>(m) / static_cast<double>(i + 1), 1.0);
    sorted[i]._adjustValue = adjusted;
    if (alpha > adjusted) lastSig = static_cast<int>(i);
    if (secondLevel && alpha2 > adjusted) lastSig2 = static_cast<int>(i);
  }
  for (std::size_t i = m > 1 ? m - 1 : 0; i-- > 0;) {
    sorted[i]._adjustValue = std::min(sorted[i]._adjustValue, sorted[i + 1]._adjustValue);
  }
  for (std::size_t i = 0; i < m; ++i) {
    sorted[i]._significant = static_cast<int>(i) <= lastSig;
    sorted[i]._significantAlpha2 = secondLevel && static_cast<int>(i) <= lastSig2;
    list[static_cast<std::size_t>(sorted[i]._position)] = sorted[i];
  }
}

bool QuiltSigTests::PValueInfoLess(const PValueInfoElem& first, const PValueInfoElem& second) {
  if (first._pValue != second._pValue) return first._pValue < second._pValue;
  return first._position < second._position;
}

bool QuiltSigTests::ShowAdjustPValue(PresentationCodes::SignificanceAdjustType /*adjustType*/) {
  return true;
}

std::string QuiltSigTests::GetPValueStr(double p, int digits) {
  const int decimals = std::clamp(digits, 1, 16);
  const TARN_Format format(kFormatF, decimals + 2, decimals);
  std::string text(static_cast<std::size_t>(format.Width()) + 1, '\0');
  OBS value;
  value.number = p;
  ToString(&value, format, text.data());
  text.resize(static_cast<std::size_t>(format.Width()));
  return "(" + text + ")\n";
}

// Every column of a table has the same number of letters, as many as the last index
// needs in base 26 (A standing for 0), so the labels line up and sort as the columns do.
std::string QuiltSigTests::CategoryKey(int index, int nColumns, bool forceParens, bool upper) {
  QUILT_ASSERT(index >= 0, "a column letter for a negative column index");
  int width = 1;
  for (int rest = (nColumns - 1) / 26; rest > 0; rest /= 26) ++width;
  std::string letters(static_cast<std::size_t>(width), 'A');
  int value = index;
  for (int digit = width - 1; digit >= 0; --digit) {
    letters[static_cast<std::size_t>(digit)] = static_cast<char>((upper ? 'A' : 'a') + value % 26);
    value /= 26;
  }
  if (forceParens || nColumns > 26) return "(" + letters + ")";
  return letters;
}
