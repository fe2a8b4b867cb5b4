// PercentageBaseTest.cpp - counts and percentages against a direct computation over random cases
//
// The hand-worked bases with nesting, stacking, layers and confidence limits are cases of
// EngineCases.txt.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "EngineTestSupport.h"

namespace {

using namespace enginetest;

// Randomised check against a direct computation over the same cases: frequency-weighted
// counts and row, column and table percentages of a 4 x 3 table, and the mean of x.
TEST(PercentageBase, AgreesWithANaiveReference) {
  std::mt19937 random(20261123);
  std::uniform_int_distribution<int> rowValue(1, 4);
  std::uniform_int_distribution<int> colValue(1, 3);
  std::uniform_int_distribution<int> weightValue(1, 5);
  std::uniform_real_distribution<double> xValue(0.0, 100.0);
  double w[5][4] = {};
  double wx[5][4] = {};
  std::string csv = "a,b,w,x\n";
  for (int i = 0; i < 600; ++i) {
    const int a = rowValue(random);
    const int b = colValue(random);
    const int weight = weightValue(random);
    const double x = std::round(xValue(random) * 100) / 100;
    csv += std::to_string(a) + "," + std::to_string(b) + "," + std::to_string(weight) + "," +
           std::to_string(x) + "\n";
    w[a][b] += weight;
    wx[a][b] += weight * x;
  }
  const std::string dict =
      R"({"variables":[{"name":"a"},{"name":"b"},{"name":"w"},{"name":"x"}],"weight":"w"})";
  Harness h(csv, dict, true);
  AggregationVariable* a = h.Variable("a");
  AggregationVariable* b = h.Variable("b");
  CubeAggregator* agg =
      h.Cube({{a, Codes::kDimensionRow}, {b, Codes::kDimensionColumn}}, Statistics({1, 10, 18, 26}), b);
  h.RunGroup();
  EXPECT_EQ(h._table->GetCubeAggregators().size(), 1u);
  EXPECT_FALSE(h._table->IsTableEmpty());
  // The means go in a table of their own: a second cube here would be a stacked
  // sub-table and double the TABLE base.
  Harness hm(csv, dict, true);
  AggregationCube* means = hm._table->CreateCube();
  AggregationVariable* ma = hm.Variable("a");
  AggregationVariable* mb = hm.Variable("b");
  means->AddCategoricalVariable(ma, Codes::kDimensionRow);
  means->AddCategoricalVariable(mb, Codes::kDimensionColumn);
  CubeAggregator* meanAgg = means->CreateCubeAggregator();
  means->AddScaleStatistics({AggregationStatistic(hm.Index("x"), 179)});
  hm.RunGroup();
  double total = 0;
  for (int aValue = 1; aValue <= 4; ++aValue) {
    for (int bValue = 1; bValue <= 3; ++bValue) total += w[aValue][bValue];
  }
  for (int aValue = 1; aValue <= 4; ++aValue) {
    double row = 0;
    for (int bValue = 1; bValue <= 3; ++bValue) row += w[aValue][bValue];
    for (int bValue = 1; bValue <= 3; ++bValue) {
      double col = 0;
      for (int otherA = 1; otherA <= 4; ++otherA) col += w[otherA][bValue];
      const CellKey key = Key({Encoding(a->GetTableDimension(), aValue), Encoding(b->GetTableDimension(), bValue)});
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(1)), w[aValue][bValue], 1e-9);
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(10)), 100 * w[aValue][bValue] / row, 1e-9);
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(18)), 100 * w[aValue][bValue] / col, 1e-9);
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(26)), 100 * w[aValue][bValue] / total, 1e-9);
      const CellKey meanKey =
          Key({Encoding(ma->GetTableDimension(), aValue), Encoding(mb->GetTableDimension(), bValue)});
      EXPECT_NEAR(Value(*meanAgg, meanKey, AggregationStatistic(hm.Index("x"), 179)), wx[aValue][bValue] / w[aValue][bValue],
                  1e-9);
    }
  }
}

}  // namespace
