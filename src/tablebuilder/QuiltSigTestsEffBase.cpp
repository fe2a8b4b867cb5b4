// QuiltSigTestsEffBase.cpp - the chi-square test of independence on effective base sizes
#include "tablebuilder/QuiltSigTestsEffBase.h"

#include "host/data/Obs.h"
#include "tablebuilder/ChiSquareCounts.h"

ChiSquareResult QuiltSigTestsEffBase::GetChiSquare(const CubeAggregator& aggregator,
                                                   const CategoryPath& rowPath, const CategoryPath& colPath,
                                                   const CategoryPath& layerPath,
                                                   const CategoryPath& testRows, const CategoryPath& testCols,
                                                   bool weighted, bool rowIsMR, bool colIsMR) {
  const ChiSquareCounts counts =
      ChiSquareCounts::Read(aggregator, rowPath, colPath, layerPath, testRows, testCols, weighted, rowIsMR,
                            colIsMR, /*rounded=*/false);
  ChiSquareResult result = counts.Pearson();
  if (result.chiSquare == TARN_SystemMissing()) return result;
  // The statistic on plain weights counts each unit of weight as a case. Scaled by
  // W / Q, the total weight over the total of squared weights, it counts the effective
  // base W^2 / Q instead: equal weights of 2 halve it, weights of 1 leave it alone.
  if (counts.squaredTotal <= 0.0) {
    result.chiSquare = result.degreesOfFreedom = TARN_SystemMissing();
    return result;
  }
  result.chiSquare *= counts.total / counts.squaredTotal;
  result.significance = ChiSquareCounts::Significance(result.chiSquare, result.degreesOfFreedom);
  return result;
}
