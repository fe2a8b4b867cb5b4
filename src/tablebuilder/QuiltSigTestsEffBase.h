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

 private:
  /// What the proportions test needs besides the cells: each column's effective base, and
  /// for a set in the columns the cases and the effective cases each pair i < j shares.
  struct EffectiveBases {
    std::vector<double> neff;
    std::vector<std::vector<double>> sharedU;
    std::vector<std::vector<double>> sharedEffective;
  };
  static EffectiveBases GetEffectiveBases(const QuiltSigTests::ProportionCells& cells, bool rowIsMR, bool colIsMR);
  /// The t tests of row `r` between the columns that take part.
  static std::vector<QuiltSigTests::PValueInfoElem> ProportionPairs(const QuiltSigTests::ProportionCells& cells,
                                                                    std::size_t r, const std::vector<bool>& takesPart,
                                                                    const std::vector<double>& proportion,
                                                                    const EffectiveBases& bases, bool colIsMR,
                                                                    bool& overlapProblem);
};
