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
  for (int i = 0; i < 20000; ++i) distinct.Add(1000.0 + i, 1.0);
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
