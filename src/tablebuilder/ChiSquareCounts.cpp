// ChiSquareCounts.cpp - the cells of one chi-square test read from a sub-table's cube, and the Pearson
// statistic on them
#include "tablebuilder/ChiSquareCounts.h"

#include <cmath>
#include <cstddef>

#include "aggregator/CellKey.h"
#include "host/QuiltAssert.h"
#include "host/data/Obs.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/CubeAggregator.h"
#include "tablebuilder/QuiltDistFun.h"

namespace {

/// A cell key for one test: the fixed outer categories in place and two slots, one for the
/// tested row category and one for the tested column category.
class TestKey {
 public:
  TestKey(const CubeAggregator& aggregator, const CategoryPath& rowPath, const CategoryPath& colPath,
          const CategoryPath& layerPath)
      : _key(KeyLength(aggregator, rowPath, colPath, layerPath)) {
    int position = 0;
    for (const AggregationCategory* category : rowPath) _key[position++] = category->GetCatEncoding();
    _rowSlot = position++;
    for (const AggregationCategory* category : colPath) _key[position++] = category->GetCatEncoding();
    _colSlot = position++;
    for (const AggregationCategory* category : layerPath) _key[position++] = category->GetCatEncoding();
    // The extra position, when there is one, stays at the total: a chi-square never reads
    // the overlap of two column categories.
  }

  /// Puts a category, or the total with null, into the two slots.
  const CellKey& At(const AggregationCategory* row, const AggregationCategory* column) {
    _key[_rowSlot] = row != nullptr ? row->GetCatEncoding() : kCellKeyTotal;
    _key[_colSlot] = column != nullptr ? column->GetCatEncoding() : kCellKeyTotal;
    return _key;
  }

 private:
  static int KeyLength(const CubeAggregator& aggregator, const CategoryPath& rowPath,
                       const CategoryPath& colPath, const CategoryPath& layerPath) {
    const int length = static_cast<int>(rowPath.size() + colPath.size() + layerPath.size()) + 2;
    const int cubeLength = aggregator.GetKeyLength();
    QUILT_ASSERT(cubeLength == length || cubeLength == length + 1,
                 "the paths of a chi-square test match the key of its sub-table's cube");
    return cubeLength;
  }

  CellKey _key;
  int _rowSlot = 0;
  int _colSlot = 0;
};

}  // namespace

ChiSquareCounts ChiSquareCounts::Read(const CubeAggregator& aggregator, const CategoryPath& rowPath,
                                      const CategoryPath& colPath, const CategoryPath& layerPath,
                                      const CategoryPath& testRows, const CategoryPath& testCols,
                                      bool weighted, bool rowIsMR, bool colIsMR, bool rounded) {
  ChiSquareCounts counts;
  counts.rows = static_cast<int>(testRows.size());
  counts.columns = static_cast<int>(testCols.size());
  counts.rowIsMR = rowIsMR;
  counts.colIsMR = colIsMR;
  counts.observed.assign(testRows.size() * testCols.size(), 0.0);
  counts.rowTotals.assign(testRows.size(), 0.0);
  counts.colTotals.assign(testCols.size(), 0.0);

  TestKey key(aggregator, rowPath, colPath, layerPath);
  // A count is the weight of the cell's cases, rounded to whole cases unless the test works
  // on plain weights; the squared weights are only wanted then.
  auto count = [&](const CellKey& cell) {
    const double weight = aggregator.GetCount(cell, weighted, /*squared=*/false);
    return rounded ? std::floor(weight + 0.5) : weight;
  };
  auto squared = [&](const CellKey& cell) {
    return rounded ? 0.0 : aggregator.GetCount(cell, weighted, /*squared=*/true);
  };

  std::vector<double> cellSquares(counts.observed.size(), 0.0);
  for (std::size_t r = 0; r < testRows.size(); ++r) {
    for (std::size_t c = 0; c < testCols.size(); ++c) {
      const CellKey& cell = key.At(testRows[r], testCols[c]);
      const double weight = aggregator.GetCount(cell, weighted, /*squared=*/false);
      const double value = rounded ? std::floor(weight + 0.5) : weight;
      if (value != weight) counts.nonIntegerCounts = true;
      counts.observed[r * testCols.size() + c] = value;
      cellSquares[r * testCols.size() + c] = squared(cell);
    }
  }

  // The side opposite a set sums over overlapping categories, so its totals are read.
  std::vector<double> rowSquares(testRows.size(), 0.0);
  for (std::size_t r = 0; r < testRows.size(); ++r) {
    if (colIsMR) {
      const CellKey& cell = key.At(testRows[r], nullptr);
      counts.rowTotals[r] = count(cell);
      rowSquares[r] = squared(cell);
      continue;
    }
    for (std::size_t c = 0; c < testCols.size(); ++c) {
      counts.rowTotals[r] += counts.observed[r * testCols.size() + c];
      rowSquares[r] += cellSquares[r * testCols.size() + c];
    }
  }
  std::vector<double> colSquares(testCols.size(), 0.0);
  for (std::size_t c = 0; c < testCols.size(); ++c) {
    if (rowIsMR) {
      const CellKey& cell = key.At(nullptr, testCols[c]);
      counts.colTotals[c] = count(cell);
      colSquares[c] = squared(cell);
      continue;
    }
    for (std::size_t r = 0; r < testRows.size(); ++r) {
      counts.colTotals[c] += counts.observed[r * testCols.size() + c];
      colSquares[c] += cellSquares[r * testCols.size() + c];
    }
  }

  auto sum = [](const std::vector<double>& values) {
    double result = 0.0;
    for (double value : values) result += value;
    return result;
  };
  if (rowIsMR && colIsMR) {
    const CellKey& cell = key.At(nullptr, nullptr);
    counts.total = count(cell);
    counts.squaredTotal = squared(cell);
  } else if (rowIsMR) {
    counts.total = sum(counts.colTotals);
    counts.squaredTotal = sum(colSquares);
  } else if (colIsMR) {
    counts.total = sum(counts.rowTotals);
    counts.squaredTotal = sum(rowSquares);
  } else {
    counts.total = sum(counts.observed);
    counts.squaredTotal = sum(cellSquares);
  }
  return counts;
}

ChiSquareResult ChiSquareCounts::Pearson() const {
  ChiSquareResult result{TARN_SystemMissing(), TARN_SystemMissing(), TARN_SystemMissing()};
  result.nonIntegerCounts = nonIntegerCounts;
  result.lowExpected = true;

  double chiSquare = 0.0;
  int aboveFive = 0;
  int rowsLeft = 0;
  int colsLeft = 0;
  // Without a positive total there is nothing to expect; every row is then skipped too.
  for (int r = 0; r < rows && total > 0.0; ++r) {
    const double rowTotal = rowTotals[static_cast<std::size_t>(r)];
    if (rowTotal <= 0.0) continue;
    const bool firstRowLeft = rowsLeft == 0;
    ++rowsLeft;
    for (int c = 0; c < columns; ++c) {
      const double colTotal = colTotals[static_cast<std::size_t>(c)];
      if (colTotal <= 0.0) continue;
      if (firstRowLeft) ++colsLeft;
      const double expected = rowTotal * colTotal / total;
      // A set's categories overlap: a case counted in one of them may be counted in
      // another, which lowers the variance of each cell by the share of the set's total.
      double variance = expected;
      if (rowIsMR) variance *= 1.0 - rowTotal / total;
      if (colIsMR) variance *= 1.0 - colTotal / total;
      if (variance > 0.0) {
        const double deviation = observed[static_cast<std::size_t>(r * columns + c)] - expected;
        chiSquare += deviation * deviation / variance;
      }
      if (expected > 5.0) ++aboveFive;
      if (expected <= 1.0) result.minExpectedBelowOne = true;
    }
  }
  // The share counts every cell, skipped rows and columns included, and 80% exactly is not
  // enough to clear the warning.
  if (rows > 0 && columns > 0 && static_cast<double>(aboveFive) / rows / columns > 0.8)
    result.lowExpected = false;

  if (rowsLeft < 2 || colsLeft < 2) return result;
  // A set's side is not reduced by one: its categories are not bound to add up to N.
  const int rowFactor = rowIsMR ? rowsLeft : rowsLeft - 1;
  const int colFactor = colIsMR ? colsLeft : colsLeft - 1;
  result.chiSquare = chiSquare;
  result.degreesOfFreedom = static_cast<double>(rowFactor) * colFactor;
  return result;
}

double ChiSquareCounts::Significance(double chiSquare, double degreesOfFreedom) {
  if (chiSquare == TARN_SystemMissing() || degreesOfFreedom == TARN_SystemMissing())
    return TARN_SystemMissing();
  const double below = QuiltDistFun::CdfChi(chiSquare, degreesOfFreedom);
  return below == TARN_SystemMissing() ? TARN_SystemMissing() : 1.0 - below;
}
