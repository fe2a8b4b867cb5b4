// QuiltSigTestsAdjustTest.cpp - multiple-comparison adjustment, column letters and p-value texts
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/data/Obs.h"
#include "tablebuilder/QuiltSigTests.h"

namespace {

constexpr double kMiss = TARN_SystemMissing();
using Elem = QuiltSigTests::PValueInfoElem;

struct Pair {
  int first;
  int second;
  double p;
  bool identical;
  double adjusted;  // expected
  bool sig;         // expected at alpha
  bool sig2;        // expected at alpha2
};

struct AdjustCase {
  const char* name;
  PresentationCodes::SignificanceAdjustType type;
  double alpha;
  double alpha2;
  std::vector<Pair> pairs;
};

// Every expected value worked by hand from p, the number of tests m and the rank k:
// Bonferroni m * p; Benjamini-Hochberg min(1, p * m / k), then each value lowered to the
// smallest value of a higher rank.
TEST(QuiltSigTestsAdjust, AdjustsOneFamily) {
  using P = PresentationCodes;
  // clang-format off
  const AdjustCase cases[] = {
      {"none: strict at alpha, second level", P::kAdjustNone, 0.01, 0.05,
       {{0, 1, 0.005, false, 0.005, true, true}, {0, 2, 0.03, false, 0.03, false, true},
        {1, 2, 0.05, false, 0.05, false, false}, {1, 3, 0.01, false, 0.01, false, true}}},
      // m = 3 with the pair without p-value left out; 3 * 0.5 = 1.5 is not cut to 1.
      {"bonferroni: m times p, no cap", P::kAdjustBonferroni, 0.05, 0.0,
       {{0, 1, 0.01, false, 0.03, true, false}, {0, 2, kMiss, false, kMiss, false, false},
        {0, 3, 0.02, false, 0.06, false, false}, {1, 2, 0.5, false, 1.5, false, false}}},
      // 2 * 0.025 is exactly 0.05, which is not below alpha.
      {"bonferroni: equal to alpha is not significant", P::kAdjustBonferroni, 0.05, kMiss,
       {{0, 1, 0.025, false, 0.05, false, false}, {0, 2, 0.025, false, 0.05, false, false}}},
      // Sorted 0.01 0.03 0.04: 0.03, 0.045, 0.04, smoothed 0.03, 0.04, 0.04.
      {"bh: step-up smoothing", P::kAdjustBH, 0.05, 0.0,
       {{0, 1, 0.01, false, 0.03, true, false}, {0, 2, 0.04, false, 0.04, true, false},
        {1, 2, 0.03, false, 0.04, true, false}}},
      // Ties keep their order: 0.08, 0.04, 0.0533, 0.5 smoothed to 0.04, 0.04, 0.0533, 0.5.
      // At alpha2 0.06 the highest rank below it is 3 (0.0533).
      {"bh: ties and a second level", P::kAdjustBH, 0.05, 0.06,
       {{0, 1, 0.02, false, 0.04, true, true}, {0, 2, 0.02, false, 0.04, true, true},
        {0, 3, 0.04, false, 0.04 * 4 / 3, false, true}, {1, 2, 0.5, false, 0.5, false, false}}},
      // 0.8 * 2 / 1 = 1.6 is cut to 1, then lowered to 0.9 * 2 / 2.
      {"bh: capped at 1", P::kAdjustBH, 0.05, 0.0,
       {{0, 1, 0.9, false, 0.9, false, false}, {0, 2, 0.8, false, 0.9, false, false}}},
      // A and B hold the same cases: (A,C)~(B,C) and (A,D)~(B,D), leaving m = 3.
      {"bonferroni: identical columns count once", P::kAdjustBonferroni, 0.05, 0.0,
       {{0, 1, kMiss, true, kMiss, false, false}, {0, 2, 0.01, false, 0.03, true, false},
        {0, 3, 0.04, false, 0.12, false, false}, {1, 2, 0.02, false, 0.06, false, false},
        {1, 3, 0.03, false, 0.09, false, false}, {2, 3, 0.005, false, 0.015, true, false}}},
      // Local family (A,C) 0.01, (A,D) 0.04, (C,D) 0.005: 0.015, 0.015, 0.04; (B,C) and
      // (B,D) take the values of (A,C) and (A,D).
      {"bh: identical columns share the first pair's value", P::kAdjustBH, 0.05, 0.0,
       {{0, 1, kMiss, true, kMiss, false, false}, {0, 2, 0.01, false, 0.015, true, false},
        {0, 3, 0.04, false, 0.04, true, false}, {1, 2, 0.02, false, 0.015, true, false},
        {1, 3, 0.03, false, 0.04, true, false}, {2, 3, 0.005, false, 0.015, true, false}}},
      // B and D hold the same cases: (C,D) is the pair (B,C), and (A,D) the pair (A,B).
      {"bonferroni: a representative pair is unordered", P::kAdjustBonferroni, 0.05, 0.0,
       {{0, 1, 0.01, false, 0.03, true, false}, {0, 2, 0.1, false, 0.3, false, false},
        {0, 3, 0.02, false, 0.06, false, false}, {1, 2, 0.001, false, 0.003, true, false},
        {1, 3, kMiss, true, kMiss, false, false}, {2, 3, 0.002, false, 0.006, true, false}}},
  };
  // clang-format on
  for (const AdjustCase& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<Elem> list;
    for (const Pair& pair : c.pairs) {
      Elem elem;
      elem._firstIndex = pair.first;
      elem._secondIndex = pair.second;
      elem._pValue = pair.p;
      elem._identical = pair.identical;
      list.push_back(elem);
    }
    QuiltSigTests::AdjustSigTests(c.alpha, c.alpha2, c.type, /*count=*/0, list);
    ASSERT_EQ(list.size(), c.pairs.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
      SCOPED_TRACE(i);
      EXPECT_NEAR(list[i]._adjustValue, c.pairs[i].adjusted, 1e-12);
      EXPECT_EQ(list[i]._significant, c.pairs[i].sig);
      EXPECT_EQ(list[i]._significantAlpha2, c.pairs[i].sig2);
      EXPECT_EQ(list[i]._pValue, c.pairs[i].p);
    }
  }
}

TEST(QuiltSigTestsAdjust, ColumnLetters) {
  struct Case {
    int index;
    int columns;
    bool parens;
    bool upper;
    const char* key;
  };
  // Width: the digits of columns - 1 in base 26 (26 -> 2, 676 -> 3).
  // clang-format off
  const Case cases[] = {{0, 26, false, true, "A"}, {25, 26, false, false, "z"}, {0, 27, false, true, "(AA)"},
                        {26, 27, false, true, "(BA)"}, {2, 3, true, true, "(C)"}, {0, 1, false, true, "A"},
                        {0, 0, false, false, "a"}, {675, 676, false, true, "(ZZ)"}, {0, 677, false, false, "(aaa)"},
                        {676, 677, false, true, "(BAA)"}};
  // clang-format on
  for (const Case& c : cases) {
    EXPECT_EQ(QuiltSigTests::CategoryKey(c.index, c.columns, c.parens, c.upper), c.key)
        << c.index << "/" << c.columns;
  }
}

TEST(QuiltSigTestsAdjust, PValueTextHasTheAskedDecimals) {
  EXPECT_EQ(QuiltSigTests::GetPValueStr(0.012345, 3), "(0.012)\n");
  EXPECT_EQ(QuiltSigTests::GetPValueStr(1.5, 3), "(1.500)\n");  // Bonferroni is not capped
  EXPECT_EQ(QuiltSigTests::GetPValueStr(0.0004, 3), "(0.000)\n");
  EXPECT_EQ(QuiltSigTests::GetPValueStr(0.123456789, 5), "(0.12346)\n");
  EXPECT_EQ(QuiltSigTests::GetPValueStr(0.25, 1), "(0.3)\n");
}

}  // namespace
