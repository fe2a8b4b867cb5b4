// QuiltSigTestsEffBase.h - the column tests on effective base sizes, for tables under a base weight
#pragma once

#include "tablebuilder/QuiltSigTests.h"

/// The parts of the column means and column proportions tests that differ when a sample's
/// size is its effective base W^2 / W2 rather than its rounded count: no count is rounded,
/// and weights do not pass for cases. QuiltSigTests reads the cells and runs these for
/// SampleSizes::kEffectiveBases; adjustment, letters and p-value texts are shared.
class QuiltSigTestsEffBase {
 private:
  friend class QuiltSigTests;

  /// The means test of one row on the cells `cells` read for it.
  static ColumnMeansResult ColumnMeans(QuiltSigTests::MeansCells& cells, const CategoryPath& testCols,
                                       bool columnsAreMR, const SigTestSettings& settings,
                                       const std::string& noTestMarker);
  /// The proportions test of every row of `cells` into `result`, made empty for them.
  static void ColumnProportions(const QuiltSigTests::ProportionCells& cells, bool rowIsMR, bool colIsMR,
                                const SigTestSettings& settings, const std::string& noTestMarker,
                                ColumnProportionsResult& result);
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
