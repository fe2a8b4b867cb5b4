// ScaleStatisticsTest.cpp - scale summaries, weights, order statistics and confidence limits
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "EngineTestSupport.h"
#include "host/engine/CellMoments.h"

namespace {

using namespace enginetest;
constexpr double kSysmis = TARN_SystemMissing();

// One cube of g (a single category) with the given scale statistics over x.
struct ScaleTable {
  Harness _harness;
  AggregationVariable* _g;
  CubeAggregator* _cube = nullptr;
  int _x;
  ScaleTable(const std::string& csv, const std::string& dict, bool weighted,
             const std::vector<AggregationStatistic>& stats, const std::string& base = "",
             bool pairwise = true)
      : _harness(csv, dict, weighted, pairwise, base), _g(_harness.Variable("g")), _x(_harness.Index("x")) {
    AggregationCube* cube = _harness._table->CreateCube();
    cube->AddCategoricalVariable(_g, Codes::kDimensionRow);
    _cube = cube->CreateCubeAggregator();
    cube->SetCILevel(95);
    cube->AddScaleStatistics(stats);
    _harness.RunGroup();
  }
  double At(int code, double cut = -1.0, double* value2 = nullptr) {
    AggregationStatistic stat(_x, code);
    stat.SetPTileCutPoint(cut);
    return Value(*_cube, Key({kCellKeyTotal}), stat, false, value2);
  }
};

std::vector<AggregationStatistic> Stats(int x, std::initializer_list<int> codes,
                                        std::initializer_list<double> cuts = {}) {
  std::vector<AggregationStatistic> list;
  for (int code : codes) list.emplace_back(x, code);
  for (double cut : cuts) {
    list.emplace_back(x, Codes::kStatPtile);
    list.back().SetPTileCutPoint(cut);
  }
  return list;
}

// Example A of the statistics note: x = 2, 4, 4, 5, 7, 9 with frequency weights
// 1, 2, 1, 3, 1, 2. Hand results: W 10, Σwx 54, mean 5.4, SS 46.4, variance 46.4/9,
// merged weights 2:1 4:3 5:3 7:1 9:2 (cumulative 1 4 7 8 10).
TEST(ScaleStatistics, FrequencyWeightsFollowTheReplicatedData) {
  const std::string csv = "g,x,w\n1,2,1\n1,4,2\n1,4,1\n1,5,3\n1,7,1\n1,9,2\n";
  const std::string dict = R"({"variables":[{"name":"g"},{"name":"x"},{"name":"w"}],"weight":"w"})";
  ScaleTable t(csv, dict, true,
               Stats(1, {1,   5,   9,   205, 179, 231, 203, 182, 180, 181, 206, 207,
                         208, 187, 200, 197, 178, 202, 183, 232, 191, 201, 465},
                     {40, 25}));
  double v2 = 0;
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatCount, -1, &v2), 10);
  EXPECT_DOUBLE_EQ(v2, 6);  // value 2: the unweighted count
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatUCount), 6);
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatECount), 10);  // frequency mode: ECOUNT = COUNT
  EXPECT_NEAR(t.At(Codes::kStatSum), 54, 1e-9);
  EXPECT_NEAR(t.At(Codes::kStatMean), 5.4, 1e-12);
  EXPECT_NEAR(t.At(Codes::kStatVariance), 46.4 / 9, 1e-9);
  EXPECT_NEAR(t.At(Codes::kStatStdDev), 2.270585, 1e-6);
  EXPECT_NEAR(t.At(Codes::kStatMeanSumSquares), 46.4, 1e-9);
  // SE = sqrt(5.155556/10); t(9) = 2.262157.
  EXPECT_NEAR(t.At(182), 0.718022, 1e-6);
  EXPECT_NEAR(t.At(180), 3.775721, 1e-6);
  EXPECT_NEAR(t.At(181), 7.024279, 1e-6);
  EXPECT_NEAR(t.At(208), 7.180220, 1e-6);
  EXPECT_NEAR(t.At(206), 37.757214, 1e-5);
  EXPECT_NEAR(t.At(207), 70.242786, 1e-5);
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatMedian), 5);       // t = 5 inside (4, 7)
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatPtile, 40), 4.5);  // t = 4 hits s_2 exactly
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatPtile, 25), 4);
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatMode, -1, &v2), 4);
  EXPECT_DOUBLE_EQ(v2, 5);  // 4 and 5 both weigh 3: the largest mode
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatMinimum), 2);
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatMaximum), 9);
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatRange), 7);
  EXPECT_NEAR(t.At(Codes::kStatUMean), 31.0 / 6, 1e-12);
  EXPECT_NEAR(t.At(Codes::kStatUVariance), 6.166667, 1e-6);
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatUMedian), 4.5);
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatUMode, -1, &v2), 4);
  EXPECT_DOUBLE_EQ(v2, 4);
}

// Example B: base weights 0.5, 1, 1.5, 2 on x = 1..4. W 5, W2 7.5, neff 10/3, mean 3,
// SS 5, D = 5 - 7.5/5 = 3.5, df = neff - 1.
TEST(ScaleStatistics, BaseWeightUsesTheEffectiveBase) {
  const std::string csv = "g,x,b\n1,1,0.5\n1,2,1\n1,3,1.5\n1,4,2\n";
  const std::string dict = R"({"variables":[{"name":"g"},{"name":"x"},{"name":"b"}]})";
  ScaleTable t(csv, dict, false, Stats(1, {1, 5, 9, 179, 231, 182, 180, 181, 187}), "b");
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatCount), 5);
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatUCount), 4);
  EXPECT_NEAR(t.At(Codes::kStatECount), 10.0 / 3, 1e-12);
  EXPECT_NEAR(t.At(Codes::kStatMean), 3, 1e-12);
  EXPECT_NEAR(t.At(Codes::kStatVariance), 5 / 3.5, 1e-12);
  EXPECT_NEAR(t.At(182), 0.654654, 1e-6);
  EXPECT_NEAR(t.At(180), 0.535803, 1e-5);
  EXPECT_NEAR(t.At(181), 5.464197, 1e-5);
  EXPECT_DOUBLE_EQ(t.At(Codes::kStatMedian), 3);
}

// Example D: x = 1..20 unweighted. Median 10.5 with order-statistic ranks 6 and 15;
// PTILE 25 is 5.5 (qU = 5) with ranks 2 and 10. Five cases give no 95% median interval.
TEST(ScaleStatistics, OrderStatisticLimits) {
  std::string csv = "g,x\n";
  for (int i = 1; i <= 20; ++i) csv += "1," + std::to_string(i) + "\n";
  const std::string dict = R"({"variables":[{"name":"g"},{"name":"x"}]})";
  std::vector<AggregationStatistic> stats = Stats(1, {187, 188, 189});
  for (int code : {468, 469, 470}) {
    stats.emplace_back(1, code);
    stats.back().SetPTileCutPoint(25);
  }
  ScaleTable t(csv, dict, false, stats);
  EXPECT_DOUBLE_EQ(t.At(187), 10.5);
  EXPECT_DOUBLE_EQ(t.At(188), 6);
  EXPECT_DOUBLE_EQ(t.At(189), 15);
  EXPECT_DOUBLE_EQ(t.At(468, 25), 5.5);
  EXPECT_DOUBLE_EQ(t.At(469, 25), 2);
  EXPECT_DOUBLE_EQ(t.At(470, 25), 10);

  ScaleTable small("g,x\n1,1\n1,2\n1,3\n1,4\n1,5\n", dict, false, Stats(1, {187, 188, 189}));
  EXPECT_DOUBLE_EQ(small.At(187), 3);
  EXPECT_EQ(small.At(188), kSysmis);  // rank l = 0
  EXPECT_EQ(small.At(189), kSysmis);  // rank u = 6 > n
}

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

// PCT.SUM example: column b1 holds x = 1, 3 in row a1 and 2, 4, 5 in row a2. R = 4/15;
// Q_c = 10, Q_B = 55, Σz² = 8.577778, D_B = 4, SE 21.829870.
TEST(ScaleStatistics, ColumnSumPercentageWithLinearisedLimits) {
  const std::string csv = "a,b,x\n1,1,1\n1,1,3\n2,1,2\n2,1,4\n2,1,5\n";
  const std::string dict = R"({"variables":[{"name":"a"},{"name":"b"},{"name":"x"}]})";
  Harness h(csv, dict);
  AggregationCube* cube = h._table->CreateCube();
  cube->AddCategoricalVariable(h.Variable("a"), Codes::kDimensionRow);
  cube->AddCategoricalVariable(h.Variable("b"), Codes::kDimensionColumn);
  CubeAggregator* agg = cube->CreateCubeAggregator();
  const int x = h.Index("x");
  cube->AddScaleStatistics({AggregationStatistic(x, 241), AggregationStatistic(x, 242),
                            AggregationStatistic(x, 243), AggregationStatistic(x, 244)});
  h.RunGroup();
  TableDimension* a = h._table->GetTableMetaData().GetDimension(0);
  TableDimension* b = h._table->GetTableMetaData().GetDimension(1);
  const CellKey key = Key({Encoding(a, 1), Encoding(b, 1)});
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(x, 241)), 26.666667, 1e-6);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(x, 244)), 21.829870, 1e-6);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(x, 242)), -16.119092, 1e-5);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(x, 243)), 69.452425, 1e-5);
}

// A cell whose only case has no valid x: VALIDN 0 and the summaries system-missing; a
// cell with one case has variance missing and SS 0.
TEST(ScaleStatistics, EmptyAndSingleCaseCells) {
  const std::string csv = "g,x\n1,\n2,5\n";
  const std::string dict = R"({"variables":[{"name":"g"},{"name":"x"}]})";
  Harness h(csv, dict);
  AggregationCube* cube = h._table->CreateCube();
  cube->AddCategoricalVariable(h.Variable("g"), Codes::kDimensionRow);
  CubeAggregator* agg = cube->CreateCubeAggregator();
  cube->AddScaleStatistics({AggregationStatistic(1, 222), AggregationStatistic(1, 179),
                            AggregationStatistic(1, 231), AggregationStatistic(1, 465)});
  h.RunGroup();
  TableDimension* g = h._table->GetTableMetaData().GetDimension(0);
  const CellKey one = Key({Encoding(g, 1)});
  const CellKey two = Key({Encoding(g, 2)});
  EXPECT_DOUBLE_EQ(Value(*agg, one, AggregationStatistic(1, 222)), 0);
  EXPECT_EQ(Value(*agg, one, AggregationStatistic(1, 179)), kSysmis);
  EXPECT_DOUBLE_EQ(Value(*agg, two, AggregationStatistic(1, 179)), 5);
  EXPECT_EQ(Value(*agg, two, AggregationStatistic(1, 231)), kSysmis);
  EXPECT_DOUBLE_EQ(Value(*agg, two, AggregationStatistic(1, 465)), 0);
  EXPECT_EQ(agg->GetStatValuesByKey(Key({12345})), nullptr);
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
  aggregationCube->AddScaleStatistics(Stats(x, {Codes::kStatSum, Codes::kStatMean, Codes::kStatMaximum}));
  harness.RunGroup();
  EXPECT_FALSE(std::isfinite(Value(*cube, Key({}), AggregationStatistic(x, Codes::kStatSum))));
  EXPECT_DOUBLE_EQ(Value(*cube, Key({}), AggregationStatistic(x, Codes::kStatMaximum)), 1e308);
  EXPECT_EQ(cube->GetOverflowVarIndices(), std::vector<int>{x});
  EXPECT_EQ(harness._table->GetOverflowVarIndices(), std::vector<int>{x});
}
