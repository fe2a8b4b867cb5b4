// QuiltSigTestsEffBase.h - the significance tests on effective base sizes, for tables under a base weight
#pragma once

#include "tablebuilder/QuiltSigTests.h"

/// The three tests of QuiltSigTests, with the same arguments and results, for a table
/// under a base weight: counts are not rounded, and the size of a sample is its effective
/// base W^2 / W2 (total weight squared over the total of squared weights), so that weights
/// do not pass for cases. Adjustment, letters and p-value texts are shared with
/// QuiltSigTests.
class QuiltSigTestsEffBase {
 public:
  /// The chi-square on plain weights, scaled by W / Q (total weight over total of squared
  /// weights).
  static ChiSquareResult GetChiSquare(const CubeAggregator& aggregator, const CategoryPath& rowPath,
                                      const CategoryPath& colPath, const CategoryPath& layerPath,
                                      const CategoryPath& testRows, const CategoryPath& testCols, bool weighted,
                                      bool rowIsMR, bool colIsMR);
  static ColumnMeansResult GetColumnPairwise(const CubeAggregator& aggregator, int statVarIndex,
                                             const CategoryPath& rowCats, const CategoryPath& colPath,
                                             const CategoryPath& layerCats, const CategoryPath& testCols,
                                             bool weighted, bool columnsAreMR, const SigTestSettings& settings,
                                             const std::string& noTestMarker);
  /// The p-values come from Student's t with df = neff(i) + neff(j) - 2.
  static ColumnProportionsResult GetColumnProportions(const CubeAggregator& aggregator, const CategoryPath& rowPath,
                                                      const CategoryPath& colPath, const CategoryPath& layerPath,
                                                      const CategoryPath& testRows, const CategoryPath& testCols,
                                                      bool weighted, bool rowIsMR, bool colIsMR,
                                                      const SigTestSettings& settings,
                                                      const std::string& noTestMarker);
};
