// QuiltSigTestsColumns.cpp - pairwise comparison of column means (Student's t) and of column proportions (z)
#include <cmath>
#include <limits>
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
#include "tablebuilder/QuiltSigTests.h"
#include "tablebuilder/QuiltSigTestsEffBase.h"

namespace {

constexpr double kSysmis = TARN_SystemMissing();

// The state of one column of a means test.
enum ColumnStatus {
  kNothingToTest = 1,  // no valid mean
  kTooFewCases = 2,    // fewer than 2 cases (rounded), with a valid mean
  kTestable = 3,       // at least 2 cases, a valid mean and sum of squares
  kNoVariance = 4,     // at least 2 cases, a valid mean, no valid sum of squares
};

int CodeOf(const AggregationCategory* category) {
  return category == nullptr ? kCellKeyTotal : category->GetCatEncoding();
}

double RoundCount(double count) {
  return std::floor(count + 0.5);
}

// One pair's letter in the text of the column that receives it. Without p-values the
// letters are separated by a blank; a p-value ends in a line break, which separates them.
void AddLetter(std::string& text, int other, int nColumns, bool upper, const std::string& pText) {
  if (!text.empty() && pText.empty()) text += " ";
  text += QuiltSigTests::CategoryKey(other, nColumns, /*forceParens=*/false, upper);
  text += pText;
}

}  // namespace

int QuiltSigTests::KeyCode(const AggregationCategory* category) {
  return CodeOf(category);
}

namespace {

// Writes the encodings of `path` into `key` from `position` on; the next free position.
int PutPath(CellKey& key, int position, const CategoryPath& path) {
  for (const AggregationCategory* category : path) key[position++] = CodeOf(category);
  return position;
}

}  // namespace

CellKey QuiltSigTests::MeansKey(const CategoryPath& rowCats, const CategoryPath& colPath,
                                const CategoryPath& layerCats, bool columnsAreMR, int& columnSlot) {
  CellKey key(static_cast<int>(rowCats.size() + colPath.size() + 1 + layerCats.size()) +
              (columnsAreMR ? 1 : 0));
  columnSlot = PutPath(key, PutPath(key, 0, rowCats), colPath);
  PutPath(key, columnSlot + 1, layerCats);
  return key;
}

QuiltSigTests::MeansCells::MeansCells(const CubeAggregator& aggregator, int statVarIndex,
                                      const CategoryPath& rowCats, const CategoryPath& colPath,
                                      const CategoryPath& layerCats, bool columnsAreMR, bool weighted)
    : _aggregator(aggregator),
      _weighted(weighted),
      _meanRecord(aggregator.GetMeanVarIndex(statVarIndex, weighted)),
      _unweightedRecord(weighted ? aggregator.GetMeanVarIndex(statVarIndex, false) : _meanRecord),
      _key(MeansKey(rowCats, colPath, layerCats, columnsAreMR, _columnSlot)) {
  QUILT_ASSERT(_meanRecord >= 0 && _unweightedRecord >= 0, "the means test reads a scale variable of its cube");
  _extraSlot = _key.GetLength() - 1;
}

const CellMoments* QuiltSigTests::MeansCells::Read(double& cases) const {
  const CellMoments* moments = _aggregator.GetCountMeanVariance(_meanRecord, _key);
  if (!_weighted) {
    cases = moments == nullptr ? 0.0 : moments->_weight;
  } else {
    const double* count = _aggregator.GetValuePtr(_unweightedRecord, _key);
    cases = count == nullptr ? 0.0 : *count;
  }
  return moments;
}

const CellMoments* QuiltSigTests::MeansCells::Column(const AggregationCategory* column, double& cases) {
  _key[_columnSlot] = KeyCode(column);
  return Read(cases);
}

const CellMoments* QuiltSigTests::MeansCells::Shared(const AggregationCategory* first,
                                                     const AggregationCategory* second, double& cases) {
  _key[_columnSlot] = KeyCode(first);
  _key[_extraSlot] = KeyCode(second);
  const CellMoments* moments = Read(cases);
  _key[_extraSlot] = kCellKeyTotal;
  return moments;
}

CellKey QuiltSigTests::ProportionsKey(const CategoryPath& rowPath, const CategoryPath& colPath,
                                      const CategoryPath& layerPath, bool colIsMR, int& rowSlot,
                                      int& columnSlot) {
  CellKey key(static_cast<int>(rowPath.size() + 1 + colPath.size() + 1 + layerPath.size()) +
              (colIsMR ? 1 : 0));
  rowSlot = PutPath(key, 0, rowPath);
  columnSlot = PutPath(key, rowSlot + 1, colPath);
  PutPath(key, columnSlot + 1, layerPath);
  return key;
}

ColumnProportionsResult QuiltSigTests::EmptyProportions(std::size_t rows, std::size_t columns) {
  ColumnProportionsResult result;
  result.cellTexts.assign(rows, std::vector<std::string>(columns));
  result.rowMarkers.assign(rows, RowSignificanceMarkers());
  for (RowSignificanceMarkers& markers : result.rowMarkers) markers.setNumColumns(columns);
  return result;
}

bool QuiltSigTests::IsValidValue(double value) {
  return value > -std::numeric_limits<double>::max() && value < std::numeric_limits<double>::max();
}

double QuiltSigTests::OverlapFactor(double a, double b, double shared) {
  // Over one denominator, so that two columns holding the same cases give exactly 0 and not
  // a rounding remainder that would pass for a huge t.
  return (a + b - 2.0 * shared) / (a * b);
}

double QuiltSigTests::MeansPairPValue(double difference, double pooled, double a, double b, double shared,
                                      double df, bool columnsAreMR, ColumnMeansResult& result, bool& failed) {
  if (!(pooled > 0.0)) {
    result.zeroPooled = true;
    return kSysmis;
  }
  const double f = columnsAreMR ? OverlapFactor(a, b, shared) : 1.0 / a + 1.0 / b;
  if (!(f > 0.0)) {
    result.overlapProblem = true;
    return kSysmis;
  }
  const double t = difference / std::sqrt(pooled) / std::sqrt(f);
  const double c = QuiltDistFun::CdfT(t, columnsAreMR ? df - shared : df);
  if (c == kSysmis) {
    failed = true;
    return kSysmis;
  }
  return 2.0 * (1.0 - c);
}

// Under APA style a merged table shows subscripts, not letters, and there the lower case
// stands for the one level there is; otherwise the first level is upper case and the
// second, larger level lower case. A column that was tested keeps at least a blank, so
// that it is told apart from one that took no part.
void QuiltSigTests::LetterRow(const std::vector<bool>& tested, std::vector<PValueInfoElem>& pairs,
                              const std::vector<double>& values, int count, const SigTestSettings& settings,
                              const std::string& noTestMarker, std::vector<std::string>& texts,
                              RowSignificanceMarkers& markers) {
  AdjustSigTests(settings._alpha, settings._alpha2, settings._adjustType, count, pairs);
  const int nColumns = static_cast<int>(tested.size());
  const bool apaMerged = settings._merge && settings._styleApa;
  const bool secondLevel = !settings._alpha2Text.empty();
  std::size_t next = 0;
  for (int i = 0; i < nColumns; ++i) {
    const std::size_t column = static_cast<std::size_t>(i);
    if (!tested[column]) {
      texts[column] = noTestMarker;
      markers.removeColumn(column);
      continue;
    }
    for (; next < pairs.size() && pairs[next]._firstIndex == i; ++next) {
      const PValueInfoElem& pair = pairs[next];
      const int j = pair._secondIndex;
      const double p = pair._adjustValue;
      const std::string pText = settings._showSig ? GetPValueStr(p, settings._sigDigits) : std::string();
      const bool sig1 = p != kSysmis && pair._significant;
      const bool sig2 = p != kSysmis && secondLevel && pair._significantAlpha2;
      // The column with the greater (or equal) value receives the letter of the other.
      const bool firstReceives = values[column] >= values[static_cast<std::size_t>(j)];
      std::string& receiver = texts[static_cast<std::size_t>(firstReceives ? i : j)];
      const int other = firstReceives ? j : i;
      if (sig1) {
        AddLetter(receiver, other, nColumns, /*upper=*/!apaMerged, pText);
      } else {
        markers.markColumnsSimilar(column, static_cast<std::size_t>(j));
      }
      if (secondLevel && !apaMerged && !sig1 && sig2)
        AddLetter(receiver, other, nColumns, /*upper=*/false, pText);
    }
    if (texts[column].empty()) texts[column].assign(1, ' ');
  }
  markers.calculateSubscripts();
}

// Student's t between each pair of testable columns. The variance is pooled over all
// columns with at least two cases (ALLCATS) or over the two columns alone (TESTEDCATS).
// Weighted counts are rounded to whole cases, and a column's sum of squares is rescaled
// to its rounded count, so that weights that do not sum to whole numbers still give the
// degrees of freedom of whole cases. Two columns of a multiple-response set share the
// cases in both, whose covariance the overlap term takes off the variance of the
// difference.
ColumnMeansResult QuiltSigTests::GetColumnPairwise(const CubeAggregator& aggregator, int statVarIndex,
                                                   const CategoryPath& rowCats, const CategoryPath& colPath,
                                                   const CategoryPath& layerCats,
                                                   const CategoryPath& testCols, bool weighted,
                                                   bool columnsAreMR, const SigTestSettings& settings,
                                                   const std::string& noTestMarker, SampleSizes sizes) {
  MeansCells cells(aggregator, statVarIndex, rowCats, colPath, layerCats, columnsAreMR, weighted);
  if (sizes == SampleSizes::kEffectiveBases) {
    return QuiltSigTestsEffBase::ColumnMeans(cells, testCols, columnsAreMR, settings, noTestMarker);
  }
  ColumnMeansResult result;
  const std::size_t nColumns = testCols.size();
  result.columnTexts.assign(nColumns, std::string());
  result.rowMarkers.setNumColumns(nColumns);
  // Unweighted counts are rounded as the weighted ones are; without weights they are whole.
  const auto cases = [weighted](double count) { return weighted ? RoundCount(count) : count; };

  // Pass 1: each column's status, and the pooled sums.
  std::vector<int> status(nColumns, kNothingToTest);
  std::vector<double> mean(nColumns, kSysmis);
  std::vector<double> n(nColumns, 0.0);
  std::vector<double> unweighted(nColumns, 0.0);
  std::vector<double> roundedSS(nColumns, 0.0);  // sum of squares rescaled to n - 1 degrees of freedom
  int k = 0;                                     // columns with at least 2 cases
  double casesInK = 0.0;                         // their cases
  double pooledSS = 0.0;                         // the rescaled sums of squares of testable columns
  bool allSSZero = true;
  for (std::size_t i = 0; i < nColumns; ++i) {
    double unweightedCases = 0.0;
    const CellMoments* moments = cells.Column(testCols[i], unweightedCases);
    const double w = moments == nullptr ? 0.0 : moments->_weight;
    // A cell without weight has neither mean nor spread.
    const double m = moments == nullptr || w == 0.0 ? kSysmis : moments->_mean;
    const double ss = moments == nullptr || w == 0.0 ? kSysmis : moments->_sumSquares;
    unweighted[i] = cases(unweightedCases);
    n[i] = RoundCount(w);
    if (n[i] != w) result.nonIntegerCounts = true;
    mean[i] = m;
    if (!IsValidValue(m)) {
      status[i] = kNothingToTest;
    } else if (n[i] < 2.0) {
      status[i] = kTooFewCases;
      result.tooFewColumns.push_back(static_cast<int>(i));
    } else if (IsValidValue(ss)) {
      status[i] = kTestable;
    } else {
      status[i] = kNoVariance;
      result.numericalProblem = true;
    }
    if (n[i] >= 2.0) {
      ++k;
      casesInK += n[i];
    }
    if (status[i] == kTestable) {
      roundedSS[i] = ss / (w - 1.0) * (n[i] - 1.0);
      pooledSS += roundedSS[i];
      allSSZero = allSSZero && ss <= 0.0;
    }
  }
  if (allSSZero) result.numericalProblem = true;
  const double df0 = casesInK - k;
  const bool testsRun = k >= 2 && !result.numericalProblem;
  const double pooledAll = settings._meansVarianceAllCats && testsRun ? pooledSS / df0 : kSysmis;

  // Pass 2: a t test for each pair of testable columns.
  bool failed = false;
  std::vector<bool> tested(nColumns, false);
  for (std::size_t i = 0; i < nColumns; ++i) tested[i] = testsRun && status[i] == kTestable;
  std::vector<PValueInfoElem> pairs = TestPairs(tested, [&](std::size_t i, std::size_t j, PValueInfoElem& pair) {
    double pooled = pooledAll;
    double df = df0;
    if (!settings._meansVarianceAllCats) {
      df = n[i] + n[j] - 2.0;
      pooled = (roundedSS[i] + roundedSS[j]) / df;
    }
    double overlap = 0.0;
    if (columnsAreMR && pooled > 0.0) {
      double unweightedOverlap = 0.0;
      const CellMoments* both = cells.Shared(testCols[i], testCols[j], unweightedOverlap);
      overlap = both == nullptr ? 0.0 : RoundCount(both->_weight);
      unweightedOverlap = cases(unweightedOverlap);
      pair._identical = unweighted[i] == unweightedOverlap && unweighted[j] == unweightedOverlap;
    }
    pair._pValue = MeansPairPValue(std::fabs(mean[i] - mean[j]), pooled, n[i], n[j], overlap, df, columnsAreMR,
                                   result, failed);
    return true;
  });
  // Pass 3: the letters.
  LetterRow(tested, pairs, mean, k, settings, noTestMarker, result.columnTexts, result.rowMarkers);
  if (failed) result.numericalProblem = true;
  return result;
}

QuiltSigTests::ProportionCells QuiltSigTests::ReadProportionCells(const CubeAggregator& aggregator, CellKey key,
                                                                   int rowSlot, int columnSlot,
                                                                   const CategoryPath& testRows,
                                                                   const CategoryPath& testCols, bool weighted,
                                                                   bool rowIsMR, bool colIsMR) {
  const std::size_t nRows = testRows.size();
  const std::size_t nColumns = testCols.size();
  const int extraSlot = key.GetLength() - 1;
  auto read = [&]() {
    CellWeights weights;
    weights.w = aggregator.GetCount(key, weighted, false);
    weights.w2 = aggregator.GetCount(key, weighted, true);
    weights.u = weighted ? aggregator.GetCount(key, false, false) : weights.w;
    return weights;
  };
  ProportionCells cells;
  cells.cell.assign(nRows, std::vector<CellWeights>(nColumns));
  cells.base.assign(nColumns, CellWeights());
  for (std::size_t r = 0; r < nRows; ++r) {
    key[rowSlot] = KeyCode(testRows[r]);
    for (std::size_t c = 0; c < nColumns; ++c) {
      key[columnSlot] = KeyCode(testCols[c]);
      const CellWeights weights = read();
      cells.cell[r][c] = weights;
      cells.base[c].w += weights.w;
      cells.base[c].w2 += weights.w2;
      cells.base[c].u += weights.u;
    }
  }
  // A case stands in several categories of a set in the rows: the base is the set's total.
  if (rowIsMR) {
    key[rowSlot] = kCellKeyTotal;
    for (std::size_t c = 0; c < nColumns; ++c) {
      key[columnSlot] = KeyCode(testCols[c]);
      cells.base[c] = read();
    }
  }
  if (!colIsMR) return cells;
  const std::size_t sharedRows = rowIsMR ? 1 : nRows;
  cells.shared.assign(sharedRows, std::vector<std::vector<CellWeights>>(nColumns, std::vector<CellWeights>(nColumns)));
  for (std::size_t r = 0; r < sharedRows; ++r) {
    key[rowSlot] = rowIsMR ? kCellKeyTotal : KeyCode(testRows[r]);
    for (std::size_t i = 0; i < nColumns; ++i) {
      key[columnSlot] = KeyCode(testCols[i]);
      for (std::size_t j = i + 1; j < nColumns; ++j) {
        key[extraSlot] = KeyCode(testCols[j]);
        cells.shared[r][i][j] = read();
      }
    }
    key[extraSlot] = kCellKeyTotal;
  }
  return cells;
}

std::vector<QuiltSigTests::PValueInfoElem> QuiltSigTests::ProportionPairs(const std::vector<bool>& takesPart,
                                                           const std::vector<double>& proportion,
                                                           const std::vector<double>& n,
                                                           const std::vector<std::vector<double>>& overlap,
                                                           const std::vector<std::vector<bool>>& identical,
                                                           bool colIsMR, bool& overlapProblem) {
  return TestPairs(takesPart, [&](std::size_t i, std::size_t j, PValueInfoElem& pair) {
    const double q = (n[i] * proportion[i] + n[j] * proportion[j]) / (n[i] + n[j]);
    double factor = 1.0 / n[i] + 1.0 / n[j];
    if (colIsMR) {
      factor = OverlapFactor(n[i], n[j], RoundCount(overlap[i][j]));
      if (!(factor > 0.0)) overlapProblem = true;
      pair._identical = identical[i][j];
    }
    if (factor > 0.0) {
      const double z = (proportion[i] - proportion[j]) / std::sqrt(q * (1.0 - q) * factor);
      if (IsValidValue(z)) {
        const double c = QuiltDistFun::CdfNorm(std::fabs(z), 0.0, 1.0);
        if (c != kSysmis) pair._pValue = 2.0 * (1.0 - c);
      }
    }
    return true;
  });
}

// The two-sided z test of two proportions with the pooled proportion in the standard
// error. Sample sizes are the column bases rounded to whole cases, while the proportions
// themselves are taken on the unrounded weights. A cell whose proportion is 0 or 1 has no
// spread of its own and is left out of its row; a column whose base is below 2 is left out
// of every row. Each row is a family of its own for the adjustment.
ColumnProportionsResult QuiltSigTests::GetColumnProportions(
    const CubeAggregator& aggregator, const CategoryPath& rowPath, const CategoryPath& colPath,
    const CategoryPath& layerPath, const CategoryPath& testRows, const CategoryPath& testCols, bool weighted,
    bool rowIsMR, bool colIsMR, const SigTestSettings& settings, const std::string& noTestMarker,
    SampleSizes sizes) {
  const std::size_t nRows = testRows.size();
  const std::size_t nColumns = testCols.size();
  ColumnProportionsResult result = EmptyProportions(nRows, nColumns);
  int rowSlot = 0;
  int columnSlot = 0;
  const CellKey key = ProportionsKey(rowPath, colPath, layerPath, colIsMR, rowSlot, columnSlot);
  const ProportionCells cells =
      ReadProportionCells(aggregator, key, rowSlot, columnSlot, testRows, testCols, weighted, rowIsMR, colIsMR);
  if (sizes == SampleSizes::kEffectiveBases) {
    QuiltSigTestsEffBase::ColumnProportions(cells, rowIsMR, colIsMR, settings, noTestMarker, result);
    return result;
  }
  for (const std::vector<CellWeights>& row : cells.cell) {
    for (const CellWeights& weights : row) {
      if (RoundCount(weights.w) != weights.w) result.nonIntegerCounts = true;
    }
  }

  // The cases that two columns of a set in the columns have in common, over the rows.
  std::vector<std::vector<double>> overlap(nColumns, std::vector<double>(nColumns, 0.0));
  std::vector<std::vector<bool>> identical(nColumns, std::vector<bool>(nColumns, false));
  for (std::size_t i = 0; i < nColumns && colIsMR; ++i) {
    for (std::size_t j = i + 1; j < nColumns; ++j) {
      double unweightedOverlap = 0.0;
      for (const auto& row : cells.shared) {
        overlap[i][j] += row[i][j].w;
        unweightedOverlap += row[i][j].u;
      }
      identical[i][j] = cells.base[i].u == unweightedOverlap && cells.base[j].u == unweightedOverlap;
    }
  }

  std::vector<double> n(nColumns, 0.0);
  for (std::size_t c = 0; c < nColumns; ++c) {
    n[c] = RoundCount(cells.base[c].w);
    if (cells.base[c].w < 2.0) result.smallColumns.push_back(static_cast<int>(c));
  }
  const bool enoughCategories = nRows >= 2 && nColumns >= 2;
  for (std::size_t r = 0; r < nRows; ++r) {
    std::vector<bool> takesPart(nColumns, false);
    std::vector<double> proportion(nColumns, 0.0);
    int taking = 0;
    for (std::size_t c = 0; c < nColumns; ++c) {
      const double x = cells.cell[r][c].w;
      const double base = cells.base[c].w;
      if (!enoughCategories || base < 2.0) continue;
      if (x <= 0.0 || x >= base) {
        result.badRows.push_back(static_cast<int>(r));
        result.badColumns.push_back(static_cast<int>(c));
        continue;
      }
      takesPart[c] = true;
      proportion[c] = x / base;
      ++taking;
    }
    std::vector<PValueInfoElem> pairs =
        ProportionPairs(takesPart, proportion, n, overlap, identical, colIsMR, result.overlapProblem);
    LetterRow(takesPart, pairs, proportion, taking, settings, noTestMarker, result.cellTexts[r],
              result.rowMarkers[r]);
  }
  return result;
}
