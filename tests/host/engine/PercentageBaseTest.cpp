// PercentageBaseTest.cpp - counts and the seven percentage bases with nesting, stacking and layers
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "EngineTestSupport.h"

namespace {

using namespace enginetest;

std::vector<AggregationStatistic> Codes(std::initializer_list<int> codes) {
  std::vector<AggregationStatistic> list;
  for (int code : codes) list.emplace_back(code);
  return list;
}

// Example F: a > b BY c with cell counts a1: (b1,c1)=1, (b1,c2)=2, (b2,c1)=3, (b2,c2)=4
// and a2: 5, 6, 7, 8 in the same order; N = 36. For cell (a1,b1,c1) = 1 the bases are
// ROW 1+2 = 3, COL 1+3 = 4, SUBTABLE 1+2+3+4 = 10, TABLE and LAYER 36, LAYERROW 3 and
// LAYERCOL 1+3+5+7 = 16.
TEST(PercentageBase, NestedRowsUseTheirPanel) {
  std::string csv = "a,b,c\n";
  int n = 1;
  for (int a = 1; a <= 2; ++a) {
    for (int b = 1; b <= 2; ++b) {
      for (int c = 1; c <= 2; ++c, ++n) {
        for (int copy = 0; copy < n; ++copy) {
          csv += std::to_string(a) + "," + std::to_string(b) + "," + std::to_string(c) + "\n";
        }
      }
    }
  }
  Harness h(csv, "");
  AggregationCube* cube = h._table->CreateCube();
  AggregationVariable* a = h.Variable("a");
  AggregationVariable* b = h.Variable("b");
  AggregationVariable* c = h.Variable("c");
  cube->AddCategoricalVariable(a, Codes::kDimensionRow);
  cube->AddCategoricalVariable(b, Codes::kDimensionRow);
  cube->AddCategoricalVariable(c, Codes::kDimensionColumn);
  CubeAggregator* agg = cube->CreateCubeAggregator();
  cube->AddCategoryStatistics(Codes({1, 10, 18, 26, 34, 42, 50, 58, 14}), c);
  h.RunGroup();
  const CellKey key = Key({Encoding(a->GetTableDimension(), 1), Encoding(b->GetTableDimension(), 1),
                           Encoding(c->GetTableDimension(), 1)});
  struct Row {
    int code;
    double expected;
  };
  const Row rows[] = {{1, 1},           {10, 100.0 / 3}, {18, 25},   {26, 100.0 / 36}, {34, 10},
                      {42, 100.0 / 36}, {50, 100.0 / 3}, {58, 6.25}, {14, 100.0 / 3}};
  for (const Row& row : rows) {
    EXPECT_NEAR(Value(*agg, key, AggregationStatistic(row.code)), row.expected, 1e-9) << "code " << row.code;
  }
  EXPECT_DOUBLE_EQ(agg->GetCount(Key({kCellKeyTotal, kCellKeyTotal, kCellKeyTotal}), true, false), 36);
  // COLPCT of the total row of the inner variable is 100: the total stays in the base key.
  const CellKey totalRow =
      Key({Encoding(a->GetTableDimension(), 2), kCellKeyTotal, Encoding(c->GetTableDimension(), 2)});
  EXPECT_NEAR(Value(*agg, totalRow, AggregationStatistic(18)), 100, 1e-12);
}

// Table a BY c + e over four cases (a,c,e): (1,1,1), (1,2,1), (1,1,2), (2,2,2). Two
// stacked sub-tables. For (a1, c1) with 2 cases: TABLE base 4 + 4 = 8 (a case stands in
// both); LAYERROW base row a1 in both sub-tables 3 + 3 = 6; LAYERCOL base only the own
// sub-table's column c1 = 2; ROW base 3.
TEST(PercentageBase, StackedColumnsShareTableAndLayerRowBases) {
  Harness h("a,c,e\n1,1,1\n1,2,1\n1,1,2\n2,2,2\n", "");
  AggregationVariable* a = h.Variable("a");
  AggregationVariable* c = h.Variable("c");
  AggregationVariable* e = h.Variable("e");
  CubeAggregator* agg =
      h.Cube({{a, Codes::kDimensionRow}, {c, Codes::kDimensionColumn}}, Codes({1, 10, 26, 50, 58}), c);
  h.Cube({{a, Codes::kDimensionRow}, {e, Codes::kDimensionColumn}}, Codes({1}), e);
  h.RunGroup();
  const CellKey key = Key({Encoding(a->GetTableDimension(), 1), Encoding(c->GetTableDimension(), 1)});
  EXPECT_DOUBLE_EQ(Value(*agg, key, AggregationStatistic(1)), 2);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(10)), 200.0 / 3, 1e-9);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(26)), 25, 1e-9);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(50)), 100.0 / 3, 1e-9);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(58)), 100, 1e-9);
  EXPECT_EQ(h._table->GetCubeAggregators().size(), 2u);
  EXPECT_FALSE(h._table->IsTableEmpty());
}

// a BY c BY l over (a,c,l): (1,1,1), (2,1,1), (1,2,1), (1,1,2). Cell (a1,c1,l1) has one
// case: ROW base 2, COL base 2, LAYER base 3 (layer 1), TABLE base 4, LAYERROW 2, LAYERCOL 2.
TEST(PercentageBase, LayersBoundTheLayerBases) {
  Harness h("a,c,l\n1,1,1\n2,1,1\n1,2,1\n1,1,2\n", "");
  AggregationVariable* a = h.Variable("a");
  AggregationVariable* c = h.Variable("c");
  AggregationVariable* l = h.Variable("l");
  CubeAggregator* agg =
      h.Cube({{a, Codes::kDimensionRow}, {c, Codes::kDimensionColumn}, {l, Codes::kDimensionLayer}},
             Codes({10, 18, 26, 34, 42, 50, 58}), c);
  h.RunGroup();
  const CellKey key = Key({Encoding(a->GetTableDimension(), 1), Encoding(c->GetTableDimension(), 1),
                           Encoding(l->GetTableDimension(), 1)});
  const double expected[] = {50, 50, 25, 100.0 / 3, 100.0 / 3, 50, 50};
  const int codes[] = {10, 18, 26, 34, 42, 50, 58};
  for (int i = 0; i < 7; ++i) {
    EXPECT_NEAR(Value(*agg, key, AggregationStatistic(codes[i])), expected[i], 1e-9) << "code " << codes[i];
  }
}

// Example C: counts [[10, 30], [20, 40]]. COLPCT of (a1,b1) = 10/30 with Wilson limits on
// n = 30 [19.230498, 51.219948], SE 8.606630; COUNT limits from p = 0.1 on N = 100:
// SE 3, [5.522914, 17.436566]. At 90%: COLPCT limits [21.083693, 48.340451].
TEST(PercentageBase, WilsonLimitsOfCountsAndPercentages) {
  std::string csv = "a,b\n";
  const int counts[2][2] = {{10, 30}, {20, 40}};
  for (int a = 0; a < 2; ++a) {
    for (int b = 0; b < 2; ++b) {
      for (int copy = 0; copy < counts[a][b]; ++copy)
        csv += std::to_string(a + 1) + "," + std::to_string(b + 1) + "\n";
    }
  }
  for (double level : {95.0, 90.0}) {
    Harness h(csv, "");
    AggregationVariable* a = h.Variable("a");
    AggregationVariable* b = h.Variable("b");
    AggregationCube* cube = h._table->CreateCube();
    cube->AddCategoricalVariable(a, Codes::kDimensionRow);
    cube->AddCategoricalVariable(b, Codes::kDimensionColumn);
    CubeAggregator* agg = cube->CreateCubeAggregator();
    cube->SetCILevel(level);
    cube->AddCategoryStatistics(Codes({1, 2, 3, 4, 18, 19, 20, 21, 10, 26}), b);
    h.RunGroup();
    const CellKey key = Key({Encoding(a->GetTableDimension(), 1), Encoding(b->GetTableDimension(), 1)});
    EXPECT_NEAR(Value(*agg, key, AggregationStatistic(18)), 100.0 / 3, 1e-9);
    EXPECT_NEAR(Value(*agg, key, AggregationStatistic(10)), 25, 1e-9);
    EXPECT_NEAR(Value(*agg, key, AggregationStatistic(26)), 10, 1e-9);
    if (level == 95.0) {
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(21)), 8.606630, 1e-6);
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(19)), 19.230498, 1e-5);
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(20)), 51.219948, 1e-5);
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(4)), 3, 1e-9);
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(2)), 5.522914, 1e-5);
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(3)), 17.436566, 1e-5);
      double v2 = 0;
      Value(*agg, key, AggregationStatistic(2), false, &v2);
      EXPECT_DOUBLE_EQ(v2, 10);  // limits carry the count's unweighted companion
      // The grand total is the conditioning total: SE 0 and both limits N.
      const CellKey all = Key({kCellKeyTotal, kCellKeyTotal});
      EXPECT_DOUBLE_EQ(Value(*agg, all, AggregationStatistic(4)), 0);
      EXPECT_DOUBLE_EQ(Value(*agg, all, AggregationStatistic(2)), 100);
    } else {
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(19)), 21.083693, 1e-5);
      EXPECT_NEAR(Value(*agg, key, AggregationStatistic(20)), 48.340451, 1e-5);
    }
  }
}

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
      h.Cube({{a, Codes::kDimensionRow}, {b, Codes::kDimensionColumn}}, Codes({1, 10, 18, 26}), b);
  h.RunGroup();
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

namespace {

using namespace enginetest;

// Base-weight variant of Example C: weights 0.5, 1, 1 in cell (a1,b1) and 1.5, 2, 1 in the
// other three cells. W_c 2.5, W 7, W2 9.5, neff = 49/9.5 = 5.157895, p = 2.5/7:
// TABLEPCT limits [9.918393, 73.706162]; COUNT SE 1.476862, limits [0.694287, 5.159431];
// ECOUNT of the cell 2.5²/2.25 = 2.777778.
TEST(PercentageBase, BaseWeightLimitsUseTheEffectiveBase) {
  Harness h("a,b,bw\n1,1,0.5\n1,1,1\n1,1,1\n1,2,1.5\n2,1,2\n2,2,1\n", "", false, true, "bw");
  AggregationVariable* a = h.Variable("a");
  AggregationVariable* b = h.Variable("b");
  AggregationCube* cube = h._table->CreateCube();
  cube->AddCategoricalVariable(a, Codes::kDimensionRow);
  cube->AddCategoricalVariable(b, Codes::kDimensionColumn);
  CubeAggregator* agg = cube->CreateCubeAggregator();
  std::vector<AggregationStatistic> list;
  for (int code : {1, 2, 3, 4, 9, 27, 28}) list.emplace_back(code);
  cube->AddCategoryStatistics(list, b);
  h.RunGroup();
  const CellKey key = Key({Encoding(a->GetTableDimension(), 1), Encoding(b->GetTableDimension(), 1)});
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(1)), 2.5, 1e-12);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(9)), 2.5 * 2.5 / 2.25, 1e-9);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(27)), 9.918393, 1e-5);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(28)), 73.706162, 1e-5);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(4)), 1.476862, 1e-6);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(2)), 0.694287, 1e-5);
  EXPECT_NEAR(Value(*agg, key, AggregationStatistic(3)), 5.159431, 1e-5);
  EXPECT_NEAR(agg->GetCount(key, true, true), 2.25, 1e-12);  // 0.25 + 1 + 1
  EXPECT_DOUBLE_EQ(agg->GetCount(key, false, false), 3);
}

}  // namespace
