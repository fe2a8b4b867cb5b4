// MultipleResponseTest.cpp - category and dichotomy sets, responses, the extra dimension
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "EngineTestSupport.h"
#include "host/engine/AggregationMCSet.h"
#include "host/engine/AggregationMDSet.h"
#include "host/engine/ParsedCategory.h"

namespace {

using namespace enginetest;

// Dichotomy set d1..d3 counted 1 over (1,0,1), (0,0,0), (1,1,0), crossed with g = 1, 2, 1.
// COUNT d1 2, d2 1, d3 1; the total counts cases with any counted member: 2. With the
// set a second time in the extra position, (d1, d2) reads the cases holding both: 1.
TEST(MultipleResponse, DichotomySetAndExtraDimension) {
  const std::string csv = "d1,d2,d3,g\n1,0,1,1\n0,0,0,2\n1,1,0,1\n";
  const std::string dict = R"({"variables":[{"name":"d1","label":"First"},{"name":"d2","label":"Second"},)"
                           R"({"name":"d3","label":"Third","values":{"1":"Third yes"}},{"name":"g"}]})";
  Harness h(csv, dict);
  OBS counted;
  counted.number = 1;
  auto* set = h.Own(std::make_unique<AggregationMDSet>(
      std::vector<int>{h.Index("d1"), h.Index("d2"), h.Index("d3")}, "$d", &counted, 1, false));
  AggregationVariable* g = h.Variable("g");
  CubeAggregator* agg =
      h.Cube({{g, Codes::kDimensionRow}, {set, Codes::kDimensionColumn}, {set, Codes::kDimensionExtra}},
             {AggregationStatistic(1), AggregationStatistic(289)}, set);
  h.RunGroup();
  const auto& cats = set->GetTableDimension()->GetCategories();
  ASSERT_EQ(cats.size(), 3u);
  EXPECT_EQ(cats[0]->GetCatType(), AggregationCategory::kVariable);
  EXPECT_EQ(cats[1]->GetCatLabel(), "Second");
  ASSERT_EQ(agg->GetKeyLength(), 3);
  EXPECT_DOUBLE_EQ(agg->GetCount(Key({kCellKeyTotal, 0, kCellKeyTotal}), true, false), 2);
  EXPECT_DOUBLE_EQ(agg->GetCount(Key({kCellKeyTotal, 1, kCellKeyTotal}), true, false), 1);
  EXPECT_DOUBLE_EQ(agg->GetCount(Key({kCellKeyTotal, kCellKeyTotal, kCellKeyTotal}), true, false), 2);
  EXPECT_DOUBLE_EQ(agg->GetCount(Key({kCellKeyTotal, 0, 1}), true, false), 1);
  EXPECT_DOUBLE_EQ(agg->GetCount(Key({kCellKeyTotal, 1, 2}), true, false), 0);
  EXPECT_DOUBLE_EQ(Value(*agg, Key({kCellKeyTotal, kCellKeyTotal, kCellKeyTotal}), AggregationStatistic(289)),
                   4);  // 2 + 1 + 1 responses
  // Labels from the counted value's label where asked: only d3 has one.
  Harness h2(csv, dict);
  auto* labelled = h2.Own(std::make_unique<AggregationMDSet>(std::vector<int>{h2.Index("d1"), h2.Index("d3")},
                                                             "$e", &counted, 1, true));
  h2.Cube({{labelled, Codes::kDimensionRow}}, {AggregationStatistic(1)}, labelled);
  h2.RunGroup();
  EXPECT_EQ(labelled->GetTableDimension()->GetCategories()[1]->GetCatLabel(), "Third yes");
  EXPECT_EQ(labelled->GetTableDimension()->GetCategories()[0]->GetCatLabel(), "First");
}

// Example E with frequency weights 2, 0.5, 1, 3 on the cases (1,1,2), (2,.,3), (.,.,.),
// (1,3,3). By hand:
//   COUNT (weight of the cases holding k): 1 -> 2 + 3 = 5, 2 -> 2 + 0.5 = 2.5,
//   3 -> 0.5 + 3 = 3.5; total: cases with a response 2 + 0.5 + 3 = 5.5; TOTALN total 6.5.
//   RESPONSES without duplicates equal COUNT (total 11); with them case 1 gives 1 twice
//   and case 4 gives 3 twice: 1 -> 2*2 + 3 = 7, 2 -> 2.5, 3 -> 0.5 + 3*2 = 6.5 (total 16).
//   URESPONSES counts cases alone: 2/2/2 (6) and 3/2/3 (8).
//   COLPCT.RESPONSES = RESPONSES / total RESPONSES; COLPCT.COUNT = COUNT / 5.5;
//   COLPCT.RESPONSES.COUNT = RESPONSES / 5.5 (total 11 / 5.5 = 200%, 16 / 5.5);
//   COLPCT.COUNT.RESPONSES = COUNT / total RESPONSES (total 5.5 / 11 = 50%, 5.5 / 16);
//   COLPCT.TOTALN = COUNT / 6.5.
TEST(MultipleResponse, WeightedCategorySet) {
  const std::string csv = "m1,m2,m3,w\n1,1,2,2\n2,,3,0.5\n,,,1\n1,3,3,3\n";
  const std::string dict = R"({"variables":[{"name":"m1"},{"name":"m2"},{"name":"m3"},{"name":"w"}],)"
                           R"("weight":"w"})";
  struct Expect {
    bool _duplicates;
    double _responses[3];
    double _responsesTotal;
    double _uResponses[3];
  };
  const Expect rows[] = {{false, {5, 2.5, 3.5}, 11, {2, 2, 2}}, {true, {7, 2.5, 6.5}, 16, {3, 2, 3}}};
  const double counts[3] = {5, 2.5, 3.5};
  for (const Expect& e : rows) {
    SCOPED_TRACE(e._duplicates ? "duplicates counted" : "duplicates not counted");
    Harness h(csv, dict, /*weighted=*/true);
    auto* set = h.Own(std::make_unique<AggregationMCSet>(
        std::vector<int>{h.Index("m1"), h.Index("m2"), h.Index("m3")}, "$m"));
    AggregationCube* cube = h._table->CreateCube();
    cube->AddCategoricalVariable(set, Codes::kDimensionRow);
    set->GetTableDimension()->SetComputingCounts(e._duplicates);
    CubeAggregator* agg = cube->CreateCubeAggregator();
    const AggregationStatistic count(Codes::kStatCount), responses(Codes::kStatResponses),
        uResponses(Codes::kStatUResponses), colResponses(Codes::kStatColPctResponses),
        colCount(Codes::kStatColPctCount), totalN(Codes::kStatTotalN), uCount(Codes::kStatUCount),
        colResponsesCount(Codes::kStatColPctResponsesCount), colCountResponses(Codes::kStatColPctCountResponses),
        colTotalN(Codes::kStatColPctTotalN);
    cube->AddCategoryStatistics({count, responses, uResponses, colResponses, colCount, totalN, uCount,
                                 colResponsesCount, colCountResponses, colTotalN},
                                set);
    h.RunGroup();
    TableDimension* dim = set->GetTableDimension();
    for (int k = 1; k <= 3; ++k) {
      SCOPED_TRACE(k);
      const CellKey key = Key({Encoding(dim, k)});
      double unweighted = 0.0;
      EXPECT_DOUBLE_EQ(Value(*agg, key, count, false, &unweighted), counts[k - 1]);
      EXPECT_DOUBLE_EQ(unweighted, 2);  // two cases hold each category
      EXPECT_DOUBLE_EQ(Value(*agg, key, uCount), 2);
      EXPECT_DOUBLE_EQ(Value(*agg, key, responses), e._responses[k - 1]);
      EXPECT_DOUBLE_EQ(Value(*agg, key, uResponses), e._uResponses[k - 1]);
      EXPECT_NEAR(Value(*agg, key, colResponses), 100 * e._responses[k - 1] / e._responsesTotal, 1e-9);
      EXPECT_NEAR(Value(*agg, key, colCount), 100 * counts[k - 1] / 5.5, 1e-9);
      EXPECT_NEAR(Value(*agg, key, colResponsesCount), 100 * e._responses[k - 1] / 5.5, 1e-9);
      EXPECT_NEAR(Value(*agg, key, colCountResponses), 100 * counts[k - 1] / e._responsesTotal, 1e-9);
      EXPECT_NEAR(Value(*agg, key, colTotalN), 100 * counts[k - 1] / 6.5, 1e-9);
    }
    const CellKey total = Key({kCellKeyTotal});
    EXPECT_DOUBLE_EQ(Value(*agg, total, count), 5.5);
    EXPECT_DOUBLE_EQ(Value(*agg, total, totalN), 6.5);
    EXPECT_DOUBLE_EQ(Value(*agg, total, responses), e._responsesTotal);
    EXPECT_NEAR(Value(*agg, total, colResponsesCount), 100 * e._responsesTotal / 5.5, 1e-9);
    EXPECT_NEAR(Value(*agg, total, colCountResponses), 100 * 5.5 / e._responsesTotal, 1e-9);
    EXPECT_DOUBLE_EQ(agg->GetCount(total, /*weighted=*/true, /*squared=*/true),
                     4 + 0.25 + 9);  // each case once
  }
}

// A dichotomy set d1..d3 counted 1 under a base weight w, crossed with g:
//   (1,0,1) w 2 g 1;  (0,0,0) w 1 g 1;  (1,1,0) w 0.5 g 2;  (0,1,1) w 4 g 2.
// By hand, over all of g: COUNT d1 2 + 0.5 = 2.5, d2 0.5 + 4 = 4.5, d3 2 + 4 = 6; the
// total counts each case with a counted member once: 6.5, with W2 4 + 0.25 + 16 = 20.25,
// so ECOUNT = 6.5^2 / 20.25 = 2.0864198; d1's ECOUNT 2.5^2 / 4.25 = 1.4705882.
// RESPONSES of the total 2.5 + 4.5 + 6 = 13; TOTALN of the total adds the case without a
// counted member: 7.5. Within g = 2: d2 4.5 of the column's 4.5 -> COLPCT 100, d1 0.5 ->
// 11.111111, and ROWPCT.COUNT of (d3, g 2) is 4 of d3's 6 = 66.666667.
TEST(MultipleResponse, DichotomySetUnderABaseWeight) {
  const std::string csv = "d1,d2,d3,g,w\n1,0,1,1,2\n0,0,0,1,1\n1,1,0,2,0.5\n0,1,1,2,4\n";
  Harness h(csv, "", /*weighted=*/false, /*pairwise=*/true, /*baseWeight=*/"w");
  OBS counted;
  counted.number = 1;
  auto* set = h.Own(std::make_unique<AggregationMDSet>(
      std::vector<int>{h.Index("d1"), h.Index("d2"), h.Index("d3")}, "$d", &counted, 1, false));
  AggregationVariable* g = h.Variable("g");
  AggregationCube* cube = h._table->CreateCube();
  cube->AddCategoricalVariable(set, Codes::kDimensionRow);
  cube->AddCategoricalVariable(g, Codes::kDimensionColumn);
  CubeAggregator* agg = cube->CreateCubeAggregator();
  const AggregationStatistic count(Codes::kStatCount), eCount(Codes::kStatECount),
      responses(Codes::kStatResponses), totalN(Codes::kStatTotalN), colCount(Codes::kStatColPctCount),
      rowCount(Codes::kStatRowPctCount);
  cube->AddCategoryStatistics({count, eCount, responses, totalN, colCount, rowCount}, set);
  h.RunGroup();
  const int g2 = Encoding(g->GetTableDimension(), 2);
  const CellKey all = Key({kCellKeyTotal, kCellKeyTotal});
  EXPECT_DOUBLE_EQ(Value(*agg, Key({0, kCellKeyTotal}), count), 2.5);
  EXPECT_DOUBLE_EQ(Value(*agg, Key({1, kCellKeyTotal}), count), 4.5);
  EXPECT_DOUBLE_EQ(Value(*agg, Key({2, kCellKeyTotal}), count), 6);
  EXPECT_DOUBLE_EQ(Value(*agg, all, count), 6.5);
  EXPECT_DOUBLE_EQ(agg->GetCount(all, /*weighted=*/true, /*squared=*/true), 20.25);
  EXPECT_NEAR(Value(*agg, all, eCount), 6.5 * 6.5 / 20.25, 1e-9);
  EXPECT_NEAR(Value(*agg, Key({0, kCellKeyTotal}), eCount), 2.5 * 2.5 / 4.25, 1e-9);
  EXPECT_DOUBLE_EQ(Value(*agg, all, responses), 13);
  EXPECT_DOUBLE_EQ(Value(*agg, all, totalN), 7.5);
  EXPECT_NEAR(Value(*agg, Key({1, g2}), colCount), 100, 1e-9);
  EXPECT_NEAR(Value(*agg, Key({0, g2}), colCount), 100 * 0.5 / 4.5, 1e-9);
  EXPECT_NEAR(Value(*agg, Key({2, g2}), rowCount), 100 * 4.0 / 6.0, 1e-9);
}

// The counted value arrives as the parser hands it: its cells and their number. A string
// set of width 3 counted "yes" compares blank-padded text: s1 counts in cases 1 and 3, s2
// in case 2 ("yes" with a trailing blank in the data is the same value, "Yes" is not).
TEST(MultipleResponse, StringDichotomySetCountsItsTextValue) {
  const std::string csv = "s1,s2\nyes,no\nno,yes \nyes,Yes\n";
  const std::string dict = R"({"variables":[{"name":"s1","type":"string","width":3},)"
                           R"({"name":"s2","type":"string","width":3}]})";
  Harness h(csv, dict);
  OBS counted;
  std::memset(counted.bytes, ' ', sizeof counted.bytes);
  std::memcpy(counted.bytes, "yes", 3);
  auto* set =
      h.Own(std::make_unique<AggregationMDSet>(std::vector<int>{h.Index("s1"), h.Index("s2")}, "$s", &counted,
                                               /*countedValueSize=*/1, false));
  CubeAggregator* agg = h.Cube({{set, Codes::kDimensionRow}}, {AggregationStatistic(Codes::kStatCount)}, set);
  h.RunGroup();
  EXPECT_DOUBLE_EQ(Value(*agg, Key({0}), AggregationStatistic(Codes::kStatCount)), 2);
  EXPECT_DOUBLE_EQ(Value(*agg, Key({1}), AggregationStatistic(Codes::kStatCount)), 1);
  EXPECT_DOUBLE_EQ(Value(*agg, Key({kCellKeyTotal}), AggregationStatistic(Codes::kStatCount)), 3);
}

}  // namespace

// The dichotomy set of DichotomySetAndExtraDimension with an explicit list: d3 first, a
// subtotal over d1 and d2, and a computed category. The categories follow the list; the
// subtotal counts each case once (cases 1 and 3) with the responses of its members (2 + 1),
// by itself and crossed with g (g = 1 holds both cases).
TEST(MultipleResponse, DichotomySetListOrderSubtotalAndComputedCategory) {
  const std::string csv = "d1,d2,d3,g\n1,0,1,1\n0,0,0,2\n1,1,0,1\n";
  Harness h(csv, "");
  OBS counted;
  counted.number = 1;
  auto* set = h.Own(std::make_unique<AggregationMDSet>(
      std::vector<int>{h.Index("d1"), h.Index("d2"), h.Index("d3")}, "$d", &counted, 1, false));
  constexpr int kSubtotal = -101;
  auto member = [&](const char* name, bool inSubtotal) {
    auto* item = new ParsedCategory(ParsedCategory::kParsedVariable);
    item->SetVarIndex(h.Index(name));
    if (inSubtotal) item->SetSubtotalEncoding(kSubtotal);
    return item;
  };
  auto* subtotal = new ParsedCategory("Either", false, kSubtotal, true);
  subtotal->SetSubtotalEncoding(kSubtotal);
  std::vector<ParsedCategory*> items = {
      member("d3", false), member("d1", true), member("d2", true), subtotal,
      new ParsedCategory("sum", {"Sum"}, false, {}, {}, {}, ParsedCategory::kParsedComputed, 0)};
  set->AddParsedCategories(&items);
  AggregationVariable* g = h.Variable("g");
  CubeAggregator* aloneAgg =
      h.Cube({{set, Codes::kDimensionRow}}, {AggregationStatistic(1), AggregationStatistic(289)}, set);
  CubeAggregator* crossedAgg =
      h.Cube({{set, Codes::kDimensionRow}, {g, Codes::kDimensionColumn}}, {AggregationStatistic(1)}, g);
  h.RunGroup();

  const auto& cats = set->GetTableDimension()->GetCategories();
  ASSERT_EQ(cats.size(), 5u);
  EXPECT_EQ(cats[0]->GetVarIndex(), h.Index("d3"));
  EXPECT_EQ(cats[1]->GetVarIndex(), h.Index("d1"));
  EXPECT_EQ(cats[3]->GetCatType(), AggregationCategory::kSubtotal);
  EXPECT_EQ(cats[3]->GetCatLabel(), "Either");
  EXPECT_EQ(cats[4]->GetCatType(), AggregationCategory::kPcompute);

  EXPECT_DOUBLE_EQ(Value(*aloneAgg, Key({kSubtotal}), AggregationStatistic(1)), 2);
  EXPECT_DOUBLE_EQ(Value(*aloneAgg, Key({kSubtotal}), AggregationStatistic(289)), 3);
  EXPECT_DOUBLE_EQ(Value(*aloneAgg, Key({kCellKeyTotal}), AggregationStatistic(1)), 2);
  const AggregationCategory* g1 = g->GetTableDimension()->GetCategories()[0];
  EXPECT_DOUBLE_EQ(Value(*crossedAgg, Key({kSubtotal, g1->GetCatEncoding()}), AggregationStatistic(1)), 2);
  for (ParsedCategory* item : items) delete item;
}
