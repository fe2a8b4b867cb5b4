// QuiltSigTests.cpp - the chi-square test of independence on rounded cell counts
#include "tablebuilder/QuiltSigTests.h"

#include "tablebuilder/ChiSquareCounts.h"

ChiSquareResult QuiltSigTests::GetChiSquare(const CubeAggregator& aggregator, const CategoryPath& rowPath,
                                            const CategoryPath& colPath, const CategoryPath& layerPath,
                                            const CategoryPath& testRows, const CategoryPath& testCols,
                                            bool weighted, bool rowIsMR, bool colIsMR) {
  // Weighted counts are rounded to whole cases, so that the test sees the sample sizes the
  // weights stand for.
  const ChiSquareCounts counts =
      ChiSquareCounts::Read(aggregator, rowPath, colPath, layerPath, testRows, testCols, weighted, rowIsMR,
                            colIsMR, /*rounded=*/true);
  ChiSquareResult result = counts.Pearson();
  result.significance = ChiSquareCounts::Significance(result.chiSquare, result.degreesOfFreedom);
  return result;
}
