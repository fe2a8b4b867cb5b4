// ScaleStatisticsTest.cpp - missing values of scale variables, the means-test record, overflow
//
// The hand-worked summaries, weights, order statistics and limits are cases of EngineCases.txt.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "EngineTestSupport.h"
#include "host/engine/CellMoments.h"

namespace {

using namespace enginetest;

// Missing values: x is user-missing at 99 and empty once; y is valid everywhere.
// Pairwise: mean of x over 1, 3 = 2; mean of y over 10, 20, 30, 40 = 25.
// Listwise: only the cases valid on both count: y over 10, 30 = 20.
TEST(ScaleStatistics, MissingValuesPairwiseAndListwise) {
  const std::string csv = "g,x,y\n1,1,10\n1,99,20\n1,3,30\n1,,40\n";
  const std::string dict =
      R"({"variables":[{"name":"g"},{"name":"x","missing":{"values":[99]}},{"name":"y"}]})";
  for (bool pairwise : {true, false}) {
    Harness h(csv, dict, false, pairwise);
    AggregationCube* cube = h._table->CreateCube();
    cube->AddCategoricalVariable(h.Variable("g"), Codes::kDimensionRow);
    CubeAggregator* agg = cube->CreateCubeAggregator();
    const int x = h.Index("x");
    const int y = h.Index("y");
    cube->AddScaleStatistics({AggregationStatistic(x, 179), AggregationStatistic(y, 179),
                              AggregationStatistic(x, 222), AggregationStatistic(x, 198),
                              AggregationStatistic(x, 1)});
    h.RunGroup();
    const CellKey all = Key({kCellKeyTotal});
    EXPECT_DOUBLE_EQ(Value(*agg, all, AggregationStatistic(x, 179)), 2);
    EXPECT_DOUBLE_EQ(Value(*agg, all, AggregationStatistic(y, 179)), pairwise ? 25 : 20);
    EXPECT_DOUBLE_EQ(Value(*agg, all, AggregationStatistic(x, 222)), 2);
    EXPECT_DOUBLE_EQ(Value(*agg, all, AggregationStatistic(x, 198)), 2);
    EXPECT_DOUBLE_EQ(Value(*agg, all, AggregationStatistic(x, 1)), 4);  // COUNT: all cases
    ASSERT_EQ(h._table->GetTableMetaData().GetValidCount().size(), 2u);
    EXPECT_DOUBLE_EQ(h._table->GetTableMetaData().GetValidCount()[0], 2);
    // The means-test record: count, mean, SS, W2 of x's valid cases (1 and 3).
    const int record = agg->GetMeanVarIndex(x, true);
    ASSERT_GE(record, 0);
    const CellMoments* moments = agg->GetCountMeanVariance(record, all);
    ASSERT_NE(moments, nullptr);
    EXPECT_DOUBLE_EQ(moments->_weight, 2);
    EXPECT_DOUBLE_EQ(moments->_mean, 2);
    EXPECT_DOUBLE_EQ(moments->_sumSquares, 2);  // (1-2)² + (3-2)²
    EXPECT_DOUBLE_EQ(moments->_squaredWeights, 2);
  }
}

}  // namespace

// A cube of summaries alone (no categorical variable, so a key of length 0), whose values
// add up past the largest double: 1e308 + 1e308 + 0.5. The sum and mean are beyond the
// range, the maximum is exact, and the cube names x among its overflowed variables.
TEST(ScaleStatistics, SummariesWithoutCategoriesThatOverflowAreNamed) {
  Harness harness("x\n1e308\n1e308\n0.5\n", R"({"variables":[{"name":"x","measure":"scale"}]})", false, true);
  const int x = harness.Index("x");
  AggregationCube* aggregationCube = harness._table->CreateCube();
  CubeAggregator* cube = aggregationCube->CreateCubeAggregator();
  aggregationCube->SetCILevel(95);
  aggregationCube->AddScaleStatistics({AggregationStatistic(x, Codes::kStatSum), AggregationStatistic(x, Codes::kStatMean),
                                         AggregationStatistic(x, Codes::kStatMaximum)});
  harness.RunGroup();
  EXPECT_FALSE(std::isfinite(Value(*cube, Key({}), AggregationStatistic(x, Codes::kStatSum))));
  EXPECT_DOUBLE_EQ(Value(*cube, Key({}), AggregationStatistic(x, Codes::kStatMaximum)), 1e308);
  EXPECT_EQ(cube->GetOverflowVarIndices(), std::vector<int>{x});
  EXPECT_EQ(harness._table->GetOverflowVarIndices(), std::vector<int>{x});
}
