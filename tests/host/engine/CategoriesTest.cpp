// CategoriesTest.cpp - one-sided ranges and computed categories, reset, strings, sorting by statistics
//
// The orders, totals, missing values and explicit lists of one variable's categories are
// cases of EngineCases.txt.
#include <gtest/gtest.h>

#include <string>

#include "EngineTestSupport.h"
#include "host/engine/CategoryManager.h"
#include "host/engine/ParsedCategory.h"

namespace {

using namespace enginetest;

// q: 1 "Yes", 2 "No", 4 "Maybe" (no cases), 9 "NA" user-missing; data 1, 1, 2, 9, empty, 3.
const char* kCsv = "q,z\n1,0\n1,0\n2,0\n9,0\n,0\n3,0\n";
const char* kDict = R"({"variables":[{"name":"q","values":{"1":"Yes","2":"No","4":"Maybe","9":"NA"},)"
                    R"("missing":{"values":[9]}},{"name":"z"}]})";

struct OneWay {
  Harness _h{kCsv, kDict};
  AggregationVariable* _q = _h.Variable("q");
  CubeAggregator* _agg = nullptr;
  TableDimension* _dim = nullptr;

  void Run(std::initializer_list<int> codes = {1, 213, 222, 18, 74}) {
    AggregationCube* cube = _h._table->CreateCube();
    cube->AddCategoricalVariable(_q, Codes::kDimensionRow);
    _agg = cube->CreateCubeAggregator();
    cube->AddCategoryStatistics(Statistics(codes), _q);
    _h.RunGroup();
    _dim = _q->GetTableDimension();
  }

  double At(int encoding, int code) { return Value(*_agg, Key({encoding}), AggregationStatistic(code)); }
};

OBS Number(double value) {
  OBS cell;
  cell.number = value;
  return cell;
}

// LO THRU 1 and 3 THRU HI, and a computed category that receives no cases.
TEST(Categories, OneSidedRangesAndComputedPlaceholder) {
  OneWay t;
  const OBS one = Number(1);
  const OBS three = Number(3);
  std::vector<ParsedCategory*> items = {
      new ParsedCategory(&one, 0, ParsedCategory::kParsedLo),
      new ParsedCategory(&three, 0, ParsedCategory::kParsedHi),
      // Formats for COUNT (F8.2, plain) and for statistic 3 (no format, decoration 2).
      new ParsedCategory("diff", {"Difference"}, false, {1, 3}, {0, 2},
                         {static_cast<int>(TARN_Format(kFormatF, 8, 2).Pack()), 0},
                         ParsedCategory::kParsedComputed, 0)};
  t._q->AddParsedCategories(&items);
  t.Run();
  ASSERT_EQ(t._dim->GetNumberOfCategories(), 4);  // 1, 3, 4 and the computed category
  EXPECT_EQ(t._dim->GetCategories()[1]->GetCatValue()->number, 3);
  const AggregationCategory* computed = t._dim->GetCategories()[3];
  EXPECT_EQ(computed->GetCatType(), AggregationCategory::kPcompute);
  EXPECT_EQ(computed->GetPCatName(), "diff");
  // Every statistic the properties name keeps its format, in parallel lists.
  EXPECT_EQ(computed->GetPCFormat(), (std::vector<int>{1, 3}));
  EXPECT_EQ(computed->GetPCDisplayFormat(), (std::vector<int>{0, 2}));
  const std::vector<const TARN_Format*> formats = computed->GetPCDecimal();
  ASSERT_EQ(formats.size(), 2u);
  ASSERT_NE(formats[0], nullptr);
  EXPECT_EQ(*formats[0], TARN_Format(kFormatF, 8, 2));
  EXPECT_EQ(formats[1], nullptr);
  EXPECT_EQ(t._agg->GetStatValues({computed}, -1), nullptr);
  EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 1), 3);  // 1, 1, 3: value 2 is outside the list
  for (ParsedCategory* item : items) delete item;
}

// Two split groups: s = 1 holds g = 1, 2, 2; s = 2 holds g = 3. After the reset the
// second group's categories and counts stand alone.
TEST(Categories, ResetStartsTheNextSplitGroupClean) {
  Harness h("s,g\n1,1\n1,2\n1,2\n2,3\n",
            R"({"variables":[{"name":"s"},{"name":"g"}],"split":{"variables":["s"]}})");
  AggregationVariable* g = h.Variable("g");
  CubeAggregator* agg = h.Cube({{g, Codes::kDimensionRow}}, {AggregationStatistic(1)}, g);
  ASSERT_TRUE(h.RunGroup());
  EXPECT_EQ(g->GetTableDimension()->GetNumberOfCategories(), 2);
  EXPECT_DOUBLE_EQ(agg->GetCount(Key({kCellKeyTotal}), true, false), 3);
  EXPECT_DOUBLE_EQ(agg->GetCount(Key({Encoding(g->GetTableDimension(), 2)}), false, false), 2);
  h._table->ResetAggregator();
  ASSERT_TRUE(h.RunGroup());
  ASSERT_EQ(g->GetTableDimension()->GetNumberOfCategories(), 1);
  EXPECT_EQ(g->GetTableDimension()->GetCategories()[0]->GetCatValue()->number, 3);
  EXPECT_DOUBLE_EQ(agg->GetCount(Key({kCellKeyTotal}), true, false), 1);
}

// String categories with labels and the category manager merging two lists.
TEST(Categories, StringValuesAndMergedLists) {
  Harness h("c,d\nb,x\na,y\nb,x\n",
            R"({"variables":[{"name":"c","type":"string","width":3,"values":{"a":"Apple"}},)"
            R"({"name":"d","type":"string","width":3}]})");
  AggregationVariable* c = h.Variable("c");
  AggregationVariable* d = h.Variable("d");
  CubeAggregator* agg =
      h.Cube({{c, Codes::kDimensionRow}, {d, Codes::kDimensionColumn}}, {AggregationStatistic(1)}, d);
  h.RunGroup();
  const auto& cats = c->GetTableDimension()->GetCategories();
  ASSERT_EQ(cats.size(), 2u);
  EXPECT_EQ(std::string(cats[0]->GetCatValue()->bytes, 1), "a");
  EXPECT_EQ(cats[0]->GetCatLabel(), "Apple");
  std::vector<const AggregationCategory*> cell = {cats[1], d->GetTableDimension()->GetCategories()[0]};
  EXPECT_EQ(agg->GetCellStatus(cell, -1), 1);
  EXPECT_EQ(agg->GetCellStatus({cats[0], cell[1]}, -1), 0);            // (a, x) has no case
  EXPECT_DOUBLE_EQ(agg->GetStatValues(cell, -1)->GetStatValue(0), 2);  // (b, x) twice
  CategoryManager manager(cats, c, c->GetTableDimension());
  manager.AddCategories({cats[1], cats[0]});
  EXPECT_EQ(manager.GetCategories().size(), 2u);
  EXPECT_TRUE(manager.GetIncludeEmpty());
}

// g = 1 once, 2 three times, 3 twice; x per case 9 | 1 1 1 | 5 5. By MEAN of x ascending
// the order is 2 (1), 3 (5), 1 (9). (Sorting by COUNT is a case of EngineCases.txt.)
TEST(Categories, SortedByTheMeanOfAScaleVariable) {
  Harness h("g,x\n1,9\n2,1\n2,1\n2,1\n3,5\n3,5\n", "");
  AggregationVariable* g = h.Variable("g");
  AggregationCube* cube = h._table->CreateCube();
  cube->AddCategoricalVariable(g, Codes::kDimensionRow);
  cube->CreateCubeAggregator();
  const AggregationStatistic mean(h.Index("x"), Codes::kStatMean);
  cube->AddScaleStatistics({mean});
  g->GetTableDimension()->SetSortByScaleStats(&h._table->GetTableMetaData(), mean);
  h.RunGroup();
  const auto& cats = g->GetTableDimension()->GetCategories();
  ASSERT_EQ(cats.size(), 3u);
  EXPECT_EQ(cats[0]->GetCatValue()->number, 2);
  EXPECT_EQ(cats[1]->GetCatValue()->number, 3);
  EXPECT_EQ(cats[2]->GetCatValue()->number, 1);
}

// Sorting by the statistic of another variable: g is crossed with h in one sub-table and
// with m in another (g BY h + m), each carrying COUNT and VALIDN. m is missing in some
// cases, h never:
//   g = 1: three cases, m valid in one;  g = 2: two cases, m valid in both;  g = 3: one case.
// Each category is read at the other variable's total, its margin. VALIDN there counts
// the cases valid on the carrying variable: by h 3, 2, 1; by m 1, 2, 1. Descending by m
// that is 2, then 3 and 1, tied, in descending value order as ORDER=D lays them out; by h
// 1, 2, 3. The sort must read the cube where the named variable carries the statistic,
// not merely the first one holding g.
TEST(Categories, SortedByAnotherVariablesStatistic) {
  const std::string csv = "g,h,m\n1,1,1\n1,2,\n1,1,\n2,1,1\n2,2,2\n3,1,2\n";
  enum Route { kByDimension, kByVariableSettings, kByCarrierH, kWithTotalList };
  struct Row {
    const char* _name;
    Route _route;
    std::vector<double> _expected;
  };
  const Row rows[] = {
      {"dimension of m", kByDimension, {2, 3, 1}},
      {"variable settings naming m", kByVariableSettings, {2, 3, 1}},
      {"variable settings naming h", kByCarrierH, {1, 2, 3}},
      // The carrier's total follows the total list, which holds VALIDN at another index
      // (its index in the cell list holds COUNT there, which would order 1, 2, 3).
      {"total list of m", kWithTotalList, {2, 3, 1}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row._name);
    Harness h(csv, "");
    AggregationVariable* g = h.Variable("g");
    AggregationVariable* hv = h.Variable("h");
    AggregationVariable* m = h.Variable("m");
    g->SetIsOrderA(false);
    const std::vector<AggregationStatistic> list = {AggregationStatistic(Codes::kStatCount),
                                                    AggregationStatistic(Codes::kStatValidN)};
    h.Cube({{g, Codes::kDimensionRow}, {hv, Codes::kDimensionColumn}}, list, hv);
    AggregationCube* second = h._table->CreateCube();
    second->AddCategoricalVariable(g, Codes::kDimensionRow);
    second->AddCategoricalVariable(m, Codes::kDimensionColumn);
    second->CreateCubeAggregator();
    if (row._route == kWithTotalList) {
      second->AddCategoryAndTotalStatistics(list, m,
                                            {AggregationStatistic(Codes::kStatTotalN), list[0], list[1]});
    } else {
      second->AddCategoryStatistics(list, m);
    }
    const AggregationStatistic validN(Codes::kStatValidN);
    if (row._route == kByDimension || row._route == kWithTotalList) {
      g->GetTableDimension()->SetSortByDimensionStats(&h._table->GetTableMetaData(), m->GetTableDimension(),
                                                      validN);
    } else {
      g->SetSortKey(AggregationVariable::kSortKeyStatistic);
      g->SetSortInfo(Codes::kStatValidN, row._route == kByCarrierH ? h.Index("h") : h.Index("m"));
    }
    h.RunGroup();
    std::vector<double> order;
    for (const AggregationCategory* category : g->GetTableDimension()->GetCategories()) {
      order.push_back(category->GetCatValue()->number);
    }
    EXPECT_EQ(order, row._expected);
  }
}

}  // namespace
