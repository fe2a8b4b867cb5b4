// QuiltSigTests.cpp - the chi-square test of independence, on rounded counts or effective bases
#include "tablebuilder/QuiltSigTests.h"

#include "host/data/Obs.h"
#include "tablebuilder/ChiSquareCounts.h"

ChiSquareResult QuiltSigTests::GetChiSquare(const CubeAggregator& aggregator, const CategoryPath& rowPath,
                                            const CategoryPath& colPath, const CategoryPath& layerPath,
                                            const CategoryPath& testRows, const CategoryPath& testCols,
                                            bool weighted, bool rowIsMR, bool colIsMR, SampleSizes sizes) {
  // Rounded, weighted counts stand for whole cases: the test sees the sample sizes the
  // weights stand for.
  const bool rounded = sizes == SampleSizes::kRoundedCounts;
  const ChiSquareCounts counts = ChiSquareCounts::Read(aggregator, rowPath, colPath, layerPath, testRows, testCols,
                                                       weighted, rowIsMR, colIsMR, rounded);
  ChiSquareResult result = counts.Pearson();
  if (!rounded) {
    if (result.chiSquare == TARN_SystemMissing()) return result;
    // The statistic on plain weights counts each unit of weight as a case. Scaled by
    // W / Q, the total weight over the total of squared weights, it counts the effective
    // base W^2 / Q instead: equal weights of 2 halve it, weights of 1 leave it alone.
    if (counts.squaredTotal <= 0.0) {
      result.chiSquare = result.degreesOfFreedom = TARN_SystemMissing();
      return result;
    }
    result.chiSquare *= counts.total / counts.squaredTotal;
  }
  result.significance = ChiSquareCounts::Significance(result.chiSquare, result.degreesOfFreedom);
  return result;
}
