// ChiSquareCounts.h - the cells of one chi-square test read from a sub-table's cube, and the Pearson
// statistic on them
#pragma once

#include <vector>

#include "tablebuilder/QuiltSigTests.h"

class CubeAggregator;

/// The observed counts of one R x C test of independence with their row, column and grand
/// totals, for one combination of outer row, column and layer categories. Both chi-square
/// tests read their cells through it: the one on rounded counts and the one on effective
/// bases, which differ only in how a count is read and how the statistic is scaled.
///
/// A multiple-response set's categories overlap, so on the opposite side the totals are not
/// the sums of the cells: they are read from the cube with the set's slot at its total.
struct ChiSquareCounts {
  int rows = 0;                   // R, the tested row categories
  int columns = 0;                // C, the tested column categories
  std::vector<double> observed;   // O(r, c), row-major
  std::vector<double> rowTotals;  // R(r)
  std::vector<double> colTotals;  // C(c)
  double total = 0.0;             // N; W on plain weights
  double squaredTotal = 0.0;      // Q: the grand total built from squared weights; 0 when rounded
  bool rowIsMR = false;
  bool colIsMR = false;
  bool nonIntegerCounts = false;  // a rounded cell count differed from its weight

  /// Reads the cells from `aggregator`. The key holds the `rowPath` encodings, the tested
  /// row category, the `colPath` encodings, the tested column category and the `layerPath`
  /// encodings, in that order; a cube with the extra dimension for column-set overlaps has
  /// one position more, held at the total. `rounded`: every count is floor(x + 0.5) of the
  /// weight read, so that weights pass for whole cases; otherwise counts are plain weights,
  /// and the totals of squared weights are read beside them.
  static ChiSquareCounts Read(const CubeAggregator& aggregator, const CategoryPath& rowPath,
                              const CategoryPath& colPath, const CategoryPath& layerPath,
                              const CategoryPath& testRows, const CategoryPath& testCols, bool weighted,
                              bool rowIsMR, bool colIsMR, bool rounded);

  /// Pearson's X = sum (O - E)^2 / V over the cells whose row and column totals are
  /// positive, with E = R(r) C(c) / N and V = E, times (1 - R(r)/N) for a row set and
  /// (1 - C(c)/N) for a column set. The degrees of freedom count the rows and columns
  /// left: (rows - 1)(cols - 1), a set's side not reduced by one. Fewer than two rows or
  /// columns left: no test, all three numbers system-missing; the flags are set all the
  /// same. The significance is left system-missing for the caller.
  ChiSquareResult Pearson() const;

  /// 1 - CdfChi(chiSquare, df); system-missing when the distribution cannot be computed.
  static double Significance(double chiSquare, double degreesOfFreedom);
};
