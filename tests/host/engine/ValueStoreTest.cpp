// ValueStoreTest.cpp - the per-cell value store against a naive distribution, whole and merged from pieces
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <vector>

#include "host/engine/ValueStore.h"

namespace {

struct Case {
  double _value;
  double _weight;
};

// Reference: a sorted map from value to total weight (or number of cases).
std::map<double, double> Naive(const std::vector<Case>& cases, bool unweighted) {
  std::map<double, double> totals;
  for (const Case& c : cases) totals[c._value] += unweighted ? 1.0 : c._weight;
  return totals;
}

void ExpectSame(const std::vector<ValueStore::Entry>& got, const std::map<double, double>& expected) {
  ASSERT_EQ(got.size(), expected.size());
  std::size_t i = 0;
  for (const auto& [value, weight] : expected) {
    EXPECT_EQ(got[i]._value, value) << "entry " << i;
    EXPECT_NEAR(got[i]._weight, weight, 1e-9 * std::fabs(weight)) << "value " << value;
    ++i;
  }
}

struct Shape {
  const char* _name;
  int _cases;
  int _distinct;  // values drawn from this many distinct ones; 0 for all different
  bool _weighted;
};

class ValueStoreShapes : public ::testing::TestWithParam<Shape> {};

// Few distinct values go through the hash table, many (10,000, or all distinct) through
// sorted runs. Either way the distribution is the naive one, and a store merged from three
// pieces equals the store fed with everything.
TEST_P(ValueStoreShapes, DistributionMatchesNaiveWholeAndInPieces) {
  const Shape shape = GetParam();
  std::mt19937 random(11);
  std::vector<Case> cases;
  for (int i = 0; i < shape._cases; ++i) {
    const double value = shape._distinct > 0 ? static_cast<double>(random() % shape._distinct) / 10.0
                                             : static_cast<double>(random()) / 7.0;
    const double weight = shape._weighted ? 0.25 + static_cast<double>(random() % 100) / 40.0 : 1.0;
    cases.push_back({value, weight});
  }
  ValueStore whole(shape._weighted);
  ValueStore pieces[3] = {ValueStore(shape._weighted), ValueStore(shape._weighted),
                          ValueStore(shape._weighted)};
  for (std::size_t i = 0; i < cases.size(); ++i) {
    whole.Add(cases[i]._value, cases[i]._weight);
    pieces[i % 3].Add(cases[i]._value, cases[i]._weight);
  }
  ValueStore merged(shape._weighted);
  for (const ValueStore& piece : pieces) merged.Merge(piece);

  for (bool unweighted : {false, true}) {
    SCOPED_TRACE(unweighted ? "case counts" : "weights");
    const auto expected = Naive(cases, unweighted || !shape._weighted);
    ExpectSame(whole.Distribution(unweighted), expected);
    ExpectSame(merged.Distribution(unweighted), expected);
  }
  // Memory follows the distinct values: one entry each, which for all distinct values is
  // one per case.
  EXPECT_EQ(whole.GetEntryCount(), Naive(cases, true).size());
  EXPECT_EQ(merged.GetEntryCount(), Naive(cases, true).size());
}

INSTANTIATE_TEST_SUITE_P(Shapes, ValueStoreShapes,
                         ::testing::Values(Shape{"FewValuesUnweighted", 20000, 50, false},
                                           Shape{"FewValuesWeighted", 20000, 50, true},
                                           Shape{"ManyRepeatedValues", 50000, 3000, true},
                                           Shape{"TenThousandValuesManyCases", 200000, 10000, false},
                                           Shape{"DistinctUnweighted", 40000, 0, false},
                                           Shape{"DistinctWeighted", 40000, 0, true}),
                         [](const ::testing::TestParamInfo<Shape>& info) {
                           return std::string(info.param._name);
                         });

// A store of mostly distinct values takes in a merged one as it is: its one entry of three
// cases stays one entry, with its weight and its count.
TEST(ValueStore, StoreOfDistinctValuesTakesInAMergedOne) {
  ValueStore distinct(/*weighted=*/true);
  for (int i = 0; i < 20000; ++i) distinct.Add(1000.0 + i / 7.0, 1.0);  // off any decimal grid
  ASSERT_FALSE(distinct.IsMerging());
  ValueStore repeated(/*weighted=*/true);
  repeated.Add(5.0, 0.5);
  repeated.Add(5.0, 2.0);
  repeated.Add(5.0, 1.5);
  ASSERT_TRUE(repeated.IsMerging());
  distinct.Merge(repeated);
  EXPECT_EQ(distinct.GetEntryCount(), 20001u);
  const auto weights = distinct.Distribution(/*unweighted=*/false);
  const auto counts = distinct.Distribution(/*unweighted=*/true);
  // Value 5 comes first: weight 0.5 + 2 + 1.5 = 4, three cases.
  EXPECT_EQ(weights.front()._value, 5.0);
  EXPECT_DOUBLE_EQ(weights.front()._weight, 4.0);
  EXPECT_DOUBLE_EQ(counts.front()._weight, 3.0);
}

// Values written with two decimals (0.00 to 29.99, 3,000 of them, each twice, weights 1 and
// 0.5) overflow the hash table and are counted on a grid of hundredths: each value's entry
// holds 2 cases and weight 1.5, worked by hand. A value with three decimals refines the
// grid; 1/3, which no decimal of six places writes, and a value far beyond the range turn
// the grid into sorted entries, and the distribution stays exact throughout.
TEST(ValueStore, GridOfDecimalsCountsCasesAndFallsBackToSortedEntries) {
  for (bool weighted : {false, true}) {
    SCOPED_TRACE(weighted ? "weighted" : "unweighted");
    ValueStore store(weighted);
    for (int round = 0; round < 2; ++round) {
      for (int i = 0; i < 3000; ++i) store.Add((i * 7919 % 3000) / 100.0, round == 0 ? 1.0 : 0.5);
    }
    ASSERT_TRUE(store.IsOnGrid());
    EXPECT_EQ(store.GetEntryCount(), 3000u);
    auto weights = store.Distribution(/*unweighted=*/false);
    ASSERT_EQ(weights.size(), 3000u);
    EXPECT_EQ(weights[0]._value, 0.0);
    EXPECT_EQ(weights[1234]._value, 12.34);
    EXPECT_EQ(weights[2999]._value, 29.99);
    EXPECT_EQ(weights[1234]._weight, weighted ? 1.5 : 2.0);
    EXPECT_EQ(store.Distribution(/*unweighted=*/true)[1234]._weight, 2.0);

    store.Add(12.345, 2.0);  // between 12.34 and 12.35
    store.Add(-3.5, 1.0);    // below the grid's start, a little
    ASSERT_TRUE(store.IsOnGrid());
    weights = store.Distribution(/*unweighted=*/false);
    ASSERT_EQ(weights.size(), 3002u);
    EXPECT_EQ(weights[0]._value, -3.5);
    EXPECT_EQ(weights[1236]._value, 12.345);
    EXPECT_EQ(weights[1236]._weight, weighted ? 2.0 : 1.0);
    EXPECT_EQ(weights[1237]._value, 12.35);

    // A slot counts past 65,535 cases (its 16 bits carry), and an empty store that takes in
    // the grid twice (entry by entry, then slot to slot) holds it doubled: 12.34 then has
    // 2 * (2 + 70,000) cases and weight 2 * (1.5 + 70,000 * 0.25).
    for (int i = 0; i < 70000; ++i) store.Add(12.34, 0.25);
    ValueStore twice(weighted);
    twice.Merge(store);
    twice.Merge(store);
    ASSERT_TRUE(twice.IsOnGrid());
    EXPECT_EQ(twice.Distribution(/*unweighted=*/true)[1235]._weight, 140004.0);
    EXPECT_EQ(twice.Distribution(/*unweighted=*/false)[1235]._weight, weighted ? 35003.0 : 140004.0);

    store.Add(1.0 / 3.0, 4.0);
    store.Add(1e9, 1.0);
    EXPECT_FALSE(store.IsOnGrid());
    weights = store.Distribution(/*unweighted=*/false);
    ASSERT_EQ(weights.size(), 3004u);
    // 0.33 is entry 34 (-3.5, then 0.00 to 0.33); 1/3 follows it, before 0.34.
    EXPECT_EQ(weights[34]._value, 0.33);
    EXPECT_EQ(weights[35]._value, 1.0 / 3.0);
    EXPECT_EQ(weights[35]._weight, weighted ? 4.0 : 1.0);
    EXPECT_EQ(weights[36]._value, 0.34);
    EXPECT_EQ(weights[36]._weight, weighted ? 1.5 : 2.0);
    EXPECT_EQ(weights[1236]._value, 12.34);  // one further on: 1/3 came in before it
    EXPECT_EQ(weights[1236]._weight, weighted ? 1.5 + 17500.0 : 70002.0);
    EXPECT_EQ(weights.back()._value, 1e9);
  }
}

// -0 and 0 are one value; the entry keeps the first spelling seen.
TEST(ValueStore, NegativeZeroIsZero) {
  ValueStore store;
  store.Add(0.0, 1.0);
  store.Add(-0.0, 1.0);
  const auto distribution = store.Distribution(/*unweighted=*/true);
  ASSERT_EQ(distribution.size(), 1u);
  EXPECT_DOUBLE_EQ(distribution[0]._weight, 2.0);
}

}  // namespace
