// MultipleResponseTest.cpp - a set of string dichotomies, a set's explicit list and subtotal
//
// Category and dichotomy sets, their responses and the extra dimension are cases of
// EngineCases.txt.
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

// The dichotomy set of EngineCases.txt's DichotomySetAndExtraDimension with an explicit list: d3 first, a
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
