// CategoriesTest.cpp - categories from data and explicit lists, totals, missing values, reset
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

  // "value:label" of each displayed category, "T:label" for a total, "S:label" for a subtotal.
  std::string Describe() {
    std::string text;
    for (const AggregationCategory* c : _dim->GetCategories()) {
      if (!text.empty()) text += " ";
      switch (c->GetCatType()) {
        case AggregationCategory::kValue:
          text += std::to_string(static_cast<int>(c->GetCatValue()->number)) + ":" + c->GetCatLabel();
          break;
        case AggregationCategory::kTotal:
          text += "T:" + c->GetCatLabel();
          break;
        default:
          text += "S:" + c->GetCatLabel();
      }
    }
    return text;
  }

  double At(int encoding, int code) { return Value(*_agg, Key({encoding}), AggregationStatistic(code)); }
};

// Implicit list: values with cases and labelled values without (EMPTY=INCLUDE), in
// ascending order; 9 (user-missing) and the empty value stay out. COUNT total = 4 cases
// (1, 1, 2, 3); TOTALN total = 6 (the hidden bucket adds 9 and the empty case).
TEST(Categories, ImplicitListWithLabelsAndHiddenMissing) {
  OneWay t;
  t._q->SetIsTotalNo(false);
  t.Run();
  EXPECT_EQ(t.Describe(), "1:Yes 2:No 3: 4:Maybe T:Total");
  EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 1), 4);
  EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 213), 6);
  EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 222), 4);
  EXPECT_DOUBLE_EQ(t.At(Encoding(t._dim, 1), 1), 2);
  EXPECT_DOUBLE_EQ(t.At(Encoding(t._dim, 1), 18), 50);  // 2 of 4
  EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 18), 100);
  // A labelled value without cases is displayed but its cell is empty.
  EXPECT_EQ(t._agg->GetStatValuesByKey(Key({Encoding(t._dim, 4)})), nullptr);
  EXPECT_EQ(t._agg->GetCellStatus({t._dim->GetCategories()[3]}, -1), 0);
  EXPECT_EQ(t._agg->GetCellStatus({t._dim->GetCategories()[0]}, -1), 1);
}

// Descending order, no empty categories, total first with its own label.
TEST(Categories, DescendingWithoutEmptyAndTotalBefore) {
  OneWay t;
  t._q->SetIsOrderA(false);
  t._q->SetIsEmptyInclude(false);
  t._q->SetIsTotalNo(false);
  t._q->SetIsTotalPositionAfter(false);
  t._q->SetTotalLabel("All");
  t._q->SetIsTotalLabelDefault(false);
  t.Run();
  EXPECT_EQ(t.Describe(), "T:All 3: 2:No 1:Yes");
}

// Sorting by label ascending: "", "No", "Yes" (value 4 shows too, "Maybe").
TEST(Categories, OrderByLabel) {
  OneWay t;
  t._q->SetSortKey(AggregationVariable::kSortKeyLabel);
  t.Run();
  EXPECT_EQ(t.Describe(), "3: 4:Maybe 2:No 1:Yes");
}

// MISSING=INCLUDE: 9 becomes a category flagged missing. COUNT total 5; VALIDN total 4;
// COLPCT.VALIDN (74) of 9 is 0 and of 1 is 2/4 = 50.
TEST(Categories, IncludedMissingIsACategoryButNotValid) {
  OneWay t;
  t._q->SetIsMissingExclude(false);
  t._q->SetIsEmptyInclude(false);
  t.Run();
  EXPECT_EQ(t.Describe(), "1:Yes 2:No 3: 9:NA");
  EXPECT_TRUE(t._dim->GetCategories()[3]->IsMissingCategory());
  EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 1), 5);
  EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 222), 4);
  EXPECT_DOUBLE_EQ(t.At(Encoding(t._dim, 9), 74), 0);
  EXPECT_DOUBLE_EQ(t.At(Encoding(t._dim, 1), 74), 50);
  EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 213), 6);
}

OBS Number(double value) {
  OBS cell;
  cell.number = value;
  return cell;
}

// Explicit list [2, 1, SUBTOTAL="One or two", OTHERNM]: 2 and 1 carry the subtotal's
// encoding -101. Subtotal = 3 cases (1, 1, 2); OTHERNM collects 3 (and the labelled 4);
// the total is 4. A hidden subtotal differs only in its type.
TEST(Categories, ExplicitListWithSubtotalAndOtherNonMissing) {
  for (bool shown : {true, false}) {
    OneWay t;
    const OBS one = Number(1);
    const OBS two = Number(2);
    std::vector<ParsedCategory*> items = {new ParsedCategory(&two, 0), new ParsedCategory(&one, 0),
                                          new ParsedCategory("One or two", false, -101, shown),
                                          new ParsedCategory(ParsedCategory::kParsedOtherNM)};
    items[0]->SetSubtotalEncoding(-101);
    items[1]->SetSubtotalEncoding(-101);
    t._q->AddParsedCategories(&items);
    t._q->SetIsTotalNo(false);
    t.Run();
    EXPECT_EQ(t.Describe(), "2:No 1:Yes S:One or two 3: 4:Maybe T:Total");
    EXPECT_EQ(t._dim->GetCategories()[2]->GetCatType(),
              shown ? AggregationCategory::kSubtotal : AggregationCategory::kHSubtotal);
    EXPECT_DOUBLE_EQ(t.At(-101, 1), 3);
    EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 1), 4);
    EXPECT_DOUBLE_EQ(t.At(-101, 18), 75);
    for (ParsedCategory* item : items) delete item;
  }
}

// [1 THRU 2, MISSING]: 3 is left out of every population (no cell, not in the total);
// 9 comes in through MISSING and is flagged missing. COUNT total 1, 1, 2, 9 = 4.
TEST(Categories, RangeAndMissingItems) {
  OneWay t;
  const OBS one = Number(1);
  const OBS two = Number(2);
  std::vector<ParsedCategory*> items = {new ParsedCategory(&one, &two, 0),
                                        new ParsedCategory(ParsedCategory::kParsedMissing)};
  t._q->AddParsedCategories(&items);
  t._q->SetIsEmptyInclude(false);
  t.Run();
  EXPECT_EQ(t.Describe(), "1:Yes 2:No 9:NA");
  EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 1), 4);
  EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, 222), 3);
  for (ParsedCategory* item : items) delete item;
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
                         {static_cast<int>(TARN_Format(kFormatF, 8, 2).Pack()), 0}, ParsedCategory::kParsedComputed,
                         0)};
  t._q->AddParsedCategories(&items);
  t.Run();
  EXPECT_EQ(t.Describe(), "1:Yes 3: 4:Maybe S:Difference");
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
  EXPECT_DOUBLE_EQ(agg->GetStatValues(cell, -1)->GetStatValue(0), 2);  // (b, x) twice
  CategoryManager manager(cats, c, c->GetTableDimension());
  manager.AddCategories({cats[1], cats[0]});
  EXPECT_EQ(manager.GetCategories().size(), 2u);
  EXPECT_TRUE(manager.GetIncludeEmpty());
}

}  // namespace

namespace {

using namespace enginetest;

// g = 1 once, 2 three times, 3 twice; x per case 9 | 1 1 1 | 5 5. By COUNT descending the
// order is 2 (3 cases), 3 (2), 1 (1); by MEAN of x ascending 2 (1), 3 (5), 1 (9).
TEST(Categories, SortedByAStatistic) {
  const std::string csv = "g,x\n1,9\n2,1\n2,1\n2,1\n3,5\n3,5\n";
  {
    Harness h(csv, "");
    AggregationVariable* g = h.Variable("g");
    g->SetSortKey(AggregationVariable::kSortKeyStatistic);
    g->SetSortInfo(Codes::kStatCount, -1);
    g->SetIsOrderA(false);
    g->SetIsTotalNo(false);
    h.Cube({{g, Codes::kDimensionRow}}, {AggregationStatistic(Codes::kStatCount)}, g);
    h.RunGroup();
    const auto& cats = g->GetTableDimension()->GetCategories();
    ASSERT_EQ(cats.size(), 4u);
    EXPECT_EQ(cats[0]->GetCatValue()->number, 2);
    EXPECT_EQ(cats[1]->GetCatValue()->number, 3);
    EXPECT_EQ(cats[2]->GetCatValue()->number, 1);
    EXPECT_EQ(cats[3]->GetCatType(), AggregationCategory::kTotal);  // the total stays last
  }
  {
    Harness h(csv, "");
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
}

}  // namespace

namespace {

using namespace enginetest;

// ALL is LO THRU HI: every valid value of the data (and, with EMPTY=INCLUDE, every
// labelled one) in ascending order at the place of the item. A value named ahead of ALL
// keeps its own place, and the user-missing 9 stays in the hidden bucket unless MISSING
// brings it in. Data q = 1, 1, 2, 9, empty, 3: four valid cases; TOTALN of the total is
// all six cases whatever the list, since 9 and the empty case sit in the bucket or in a
// missing category.
TEST(Categories, AllItemCollectsEveryValidValue) {
  constexpr int kAll = 0;
  constexpr int kMissing = -1;
  struct Row {
    const char* _name;
    std::vector<int> _items;  // kAll, kMissing or a value
    bool _emptyInclude;
    const char* _expected;
    double _count;  // COUNT of the total
    double _valid;  // VALIDN of the total
  };
  const Row rows[] = {
      {"alone", {kAll}, true, "1:Yes 2:No 3: 4:Maybe T:Total", 4, 4},
      {"without empty categories", {kAll}, false, "1:Yes 2:No 3: T:Total", 4, 4},
      {"after a value", {2, kAll}, false, "2:No 1:Yes 3: T:Total", 4, 4},
      {"with MISSING", {kAll, kMissing}, false, "1:Yes 2:No 3: 9:NA T:Total", 5, 4},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row._name);
    OneWay t;
    std::vector<OBS> values(row._items.size());
    std::vector<ParsedCategory*> items;
    for (std::size_t i = 0; i < row._items.size(); ++i) {
      const int item = row._items[i];
      if (item == kAll) {
        items.push_back(new ParsedCategory(ParsedCategory::kParsedAll));
      } else if (item == kMissing) {
        items.push_back(new ParsedCategory(ParsedCategory::kParsedMissing));
      } else {
        values[i] = Number(item);
        items.push_back(new ParsedCategory(&values[i], 0));
      }
    }
    t._q->AddParsedCategories(&items);
    t._q->SetIsTotalNo(false);
    t._q->SetIsEmptyInclude(row._emptyInclude);
    t.Run();
    EXPECT_EQ(t.Describe(), row._expected);
    EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, Codes::kStatCount), row._count);
    EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, Codes::kStatValidN), row._valid);
    EXPECT_DOUBLE_EQ(t.At(kCellKeyTotal, Codes::kStatTotalN), 6);
    EXPECT_DOUBLE_EQ(t.At(Encoding(t._dim, 1), Codes::kStatCount), 2);
    for (ParsedCategory* item : items) delete item;
  }
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
