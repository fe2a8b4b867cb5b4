// QuiltSigTestsEffBaseColumns.cpp - the column means and column proportions tests on effective base sizes
#include <cmath>
#include <string>
#include <vector>

#include "aggregator/CellKey.h"
#include "host/QuiltAssert.h"
#include "host/data/Obs.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/CellMoments.h"
#include "host/engine/CubeAggregator.h"
#include "parser/SigTestSettings.h"
#include "tablebuilder/QuiltDistFun.h"
#include "tablebuilder/QuiltSigTestsEffBase.h"

namespace {

constexpr double kSysmis = TARN_SystemMissing();

// Kish's effective sample size of cases with total weight w and total squared weight w2:
// the number of unweighted cases that would give a mean the same variance. Written as
// w * (w / w2), the form the effective overlap of two set columns takes, so that columns
// holding the same cases have an overlap term of exactly 0.
double EffectiveBase(double w, double w2) {
  return w2 > 0.0 ? w * (w / w2) : kSysmis;
}

}  // namespace

// The t test of QuiltSigTests::GetColumnPairwise with effective bases in place of rounded
// counts: a column's variance is its sum of squares over W - W / neff (the unbiased
// estimate under sampling weights), and the degrees of freedom come from the effective
// bases. No count is rounded, and a pair is tested when either column has more than one
// case.
ColumnMeansResult QuiltSigTestsEffBase::ColumnMeans(QuiltSigTests::MeansCells& cells, const CategoryPath& testCols,
                                                   bool columnsAreMR, const SigTestSettings& settings,
                                                   const std::string& noTestMarker) {
  using Base = QuiltSigTests;
  ColumnMeansResult result;
  const std::size_t nColumns = testCols.size();
  result.columnTexts.assign(nColumns, std::string());
  result.rowMarkers.setNumColumns(nColumns);

  enum { kNothingToTest = 1, kTestable = 3, kNoVariance = 4 };
  std::vector<int> status(nColumns, kNothingToTest);
  std::vector<double> w(nColumns, 0.0);
  std::vector<double> w2(nColumns, 0.0);
  std::vector<double> mean(nColumns, kSysmis);
  std::vector<double> ss(nColumns, kSysmis);
  std::vector<double> unweighted(nColumns, 0.0);
  std::vector<double> neff(nColumns, kSysmis);
  std::vector<double> denominator(nColumns, 0.0);  // W - W / neff: the column's degrees of freedom in weight
  const int k = static_cast<int>(nColumns);
  double pooledSS = 0.0;
  double pooledDenominator = 0.0;
  double effectiveTotal = 0.0;
  bool allSSZero = true;
  for (std::size_t i = 0; i < nColumns; ++i) {
    const CellMoments* moments = cells.Column(testCols[i], unweighted[i]);
    if (moments != nullptr) {
      w[i] = moments->_weight;
      w2[i] = moments->_squaredWeights;
      if (w[i] != 0.0) {
        mean[i] = moments->_mean;
        ss[i] = moments->_sumSquares;
      }
    }
    neff[i] = EffectiveBase(w[i], w2[i]);
    if (!Base::IsValidValue(mean[i])) {
      status[i] = kNothingToTest;
    } else if (Base::IsValidValue(ss[i]) && neff[i] != kSysmis) {
      status[i] = kTestable;
    } else {
      // Cases of positive weight always have squared weights; a column without them
      // cannot be weighed and counts as one without a variance.
      status[i] = kNoVariance;
      result.numericalProblem = true;
    }
    if (status[i] != kTestable) continue;
    pooledSS += ss[i];
    allSSZero = allSSZero && ss[i] <= 0.0;
    denominator[i] = w[i] - w[i] / neff[i];
    pooledDenominator += denominator[i];
    effectiveTotal += neff[i];
  }
  if (allSSZero) result.numericalProblem = true;
  const double df0 = effectiveTotal - k;
  const bool testsRun = k >= 2 && !result.numericalProblem;
  const double pooledAll = settings._meansVarianceAllCats && testsRun && pooledDenominator > 0.0
                               ? pooledSS / pooledDenominator
                               : kSysmis;

  bool failed = false;
  std::vector<bool> tested(nColumns, false);
  for (std::size_t i = 0; i < nColumns; ++i) tested[i] = testsRun && status[i] == kTestable;
  std::vector<Base::PValueInfoElem> pairs =
      Base::TestPairs(tested, [&](std::size_t i, std::size_t j, Base::PValueInfoElem& pair) {
        if (!(unweighted[i] > 1.0 || unweighted[j] > 1.0)) return false;
        double pooled = pooledAll;
        double df = df0;
        if (!settings._meansVarianceAllCats) {
          const double pairDenominator = denominator[i] + denominator[j];
          pooled = pairDenominator > 0.0 ? (ss[i] + ss[j]) / pairDenominator : kSysmis;
          df = neff[i] + neff[j] - 2.0;
        }
        double shared = 0.0;
        if (columnsAreMR && pooled > 0.0) {
          double unweightedShared = 0.0;
          const CellMoments* both = cells.Shared(testCols[i], testCols[j], unweightedShared);
          // The effective number of shared cases: their weight scaled as each column scales
          // weight to effective cases, averaged over the two.
          shared = both == nullptr ? 0.0 : 0.5 * both->_weight * (w[i] / w2[i] + w[j] / w2[j]);
          pair._identical = unweighted[i] == unweightedShared && unweighted[j] == unweightedShared;
        }
        pair._pValue = Base::MeansPairPValue(std::fabs(mean[i] - mean[j]), pooled, neff[i], neff[j], shared, df,
                                             columnsAreMR, result, failed);
        return true;
      });
  Base::LetterRow(tested, pairs, mean, k, settings, noTestMarker, result.columnTexts, result.rowMarkers);
  if (failed) result.numericalProblem = true;
  return result;
}

// The proportions test of QuiltSigTests::GetColumnProportions on effective bases: the
// proportions and the pooled proportion on the plain weights, the standard error on the
// effective bases, and the p-value from Student's t with the effective bases' degrees of
// freedom, since under a sampling weight the normal law would overstate the evidence of
// small bases. A cell at 0 or 1 stays in the test: two cells at the same bound do not
// differ (p-value 1), and one at a bound against one inside is tested as any other.
void QuiltSigTestsEffBase::ColumnProportions(const QuiltSigTests::ProportionCells& cells, bool rowIsMR,
                                             bool colIsMR, const SigTestSettings& settings,
                                             const std::string& noTestMarker, ColumnProportionsResult& result) {
  using Base = QuiltSigTests;
  const std::size_t nRows = cells.cell.size();
  const std::size_t nColumns = cells.base.size();
  const EffectiveBases bases = GetEffectiveBases(cells, rowIsMR, colIsMR);

  // A column without any weight in the tested rows has no proportion to compare.
  const bool enoughCategories = nRows >= 2 && nColumns >= 2;
  std::vector<bool> takesPart(nColumns, false);
  int taking = 0;
  for (std::size_t c = 0; c < nColumns; ++c) {
    takesPart[c] = enoughCategories && cells.base[c].w > 0.0;
    if (takesPart[c]) ++taking;
  }
  for (std::size_t r = 0; r < nRows; ++r) {
    std::vector<double> proportion(nColumns, 0.0);
    for (std::size_t c = 0; c < nColumns; ++c) {
      if (takesPart[c]) proportion[c] = cells.cell[r][c].w / cells.base[c].w;
    }
    std::vector<Base::PValueInfoElem> pairs =
        ProportionPairs(cells, r, takesPart, proportion, bases, colIsMR, result.overlapProblem);
    Base::LetterRow(takesPart, pairs, proportion, taking, settings, noTestMarker, result.cellTexts[r],
                    result.rowMarkers[r]);
  }
}

QuiltSigTestsEffBase::EffectiveBases QuiltSigTestsEffBase::GetEffectiveBases(
    const QuiltSigTests::ProportionCells& cells, bool rowIsMR, bool colIsMR) {
  const std::size_t nColumns = cells.base.size();
  EffectiveBases bases;
  bases.neff.assign(nColumns, 0.0);
  for (std::size_t c = 0; c < nColumns; ++c) {
    if (rowIsMR) {
      bases.neff[c] = EffectiveBase(cells.base[c].w, cells.base[c].w2);
      continue;
    }
    for (const auto& row : cells.cell) {
      const double cellBase = EffectiveBase(row[c].w, row[c].w2);
      if (cellBase != kSysmis) bases.neff[c] += cellBase;
    }
  }
  // The effective overlap of two set columns, from the weights of the shared cases, each
  // column's own weights of the same row (or of the set's total in the rows).
  auto effectiveShared = [](const QuiltSigTests::CellWeights& both, const QuiltSigTests::CellWeights& first,
                            const QuiltSigTests::CellWeights& second) {
    if (!(both.w2 > 0.0 && first.w2 > 0.0 && second.w2 > 0.0)) return 0.0;
    return 0.5 * both.w * (first.w / first.w2 + second.w / second.w2);
  };
  bases.sharedU.assign(nColumns, std::vector<double>(nColumns, 0.0));
  bases.sharedEffective.assign(nColumns, std::vector<double>(nColumns, 0.0));
  for (std::size_t r = 0; r < cells.shared.size() && colIsMR; ++r) {
    const std::vector<QuiltSigTests::CellWeights>& own = rowIsMR ? cells.base : cells.cell[r];
    for (std::size_t i = 0; i < nColumns; ++i) {
      for (std::size_t j = i + 1; j < nColumns; ++j) {
        const QuiltSigTests::CellWeights& both = cells.shared[r][i][j];
        bases.sharedU[i][j] += both.u;
        bases.sharedEffective[i][j] += effectiveShared(both, own[i], own[j]);
      }
    }
  }
  return bases;
}

std::vector<QuiltSigTests::PValueInfoElem> QuiltSigTestsEffBase::ProportionPairs(
    const QuiltSigTests::ProportionCells& cells, std::size_t r, const std::vector<bool>& takesPart,
    const std::vector<double>& proportion, const EffectiveBases& bases, bool colIsMR, bool& overlapProblem) {
  using Base = QuiltSigTests;
  const std::vector<Base::CellWeights>& base = cells.base;
  const std::vector<double>& neff = bases.neff;
  return Base::TestPairs(takesPart, [&](std::size_t i, std::size_t j, Base::PValueInfoElem& pair) {
    if (!(base[i].u > 1.0 || base[j].u > 1.0)) return false;
    const double xi = cells.cell[r][i].w;
    const double xj = cells.cell[r][j].w;
    const double sharedU = bases.sharedU[i][j];
    const bool identical = colIsMR && base[i].u == sharedU && base[j].u == sharedU;
    if ((xi <= 0.0 && xj <= 0.0) || (xi >= base[i].w && xj >= base[j].w)) {
      // Both at the same bound: no difference to test. Identical set columns stay
      // without a p-value, so that they count once in the adjustment.
      pair._identical = identical;
      if (!identical) pair._pValue = 1.0;
      return true;
    }
    const double q = (xi + xj) / (base[i].w + base[j].w);
    double df = neff[i] + neff[j] - 2.0;
    double z = kSysmis;
    if (colIsMR) {
      const double shared = bases.sharedEffective[i][j];
      const double f = Base::OverlapFactor(neff[i], neff[j], shared);
      if (f > 0.0) {
        z = (proportion[i] - proportion[j]) / std::sqrt(q * (1.0 - q) * f);
      } else {
        overlapProblem = true;
      }
      df -= shared;
      pair._identical = identical;
    } else {
      z = (proportion[i] - proportion[j]) / std::sqrt(q * (1.0 - q) * (1.0 / neff[i] + 1.0 / neff[j]));
    }
    if (Base::IsValidValue(z)) {
      const double c = QuiltDistFun::CdfT(std::fabs(z), df);
      if (c != kSysmis) pair._pValue = 2.0 * (1.0 - c);
    }
    return true;
  });
}
