// QuiltSigTestsAdjustTest.cpp - multiple-comparison adjustment, column letters and p-value texts
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "host/data/Obs.h"
#include "tablebuilder/QuiltSigTests.h"

namespace {

constexpr double kMiss = TARN_SystemMissing();
using Elem = QuiltSigTests::PValueInfoElem;

double Number(const std::string& word) { return word == "missing" ? kMiss : std::stod(word); }

// The families of cases/adjust.txt, where the expected values are worked by hand.
TEST(QuiltSigTestsAdjust, AdjustsOneFamily) {
  std::ifstream file(std::string(QUILT_SOURCE_DIR) + "/tests/tablebuilder/cases/adjust.txt");
  ASSERT_TRUE(file.good());
  struct Family {
    std::string name;
    PresentationCodes::SignificanceAdjustType type = PresentationCodes::kAdjustNone;
    double alpha = 0.0;
    double alpha2 = 0.0;
    std::vector<Elem> pairs;
    std::vector<std::tuple<double, bool, bool>> expected;  // adjusted, significant, at alpha2
  };
  std::vector<Family> families;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line.rfind("== ", 0) == 0 ? line.substr(3) : line);
    std::string a, b, c, d;
    if (line.empty() || line[0] == '#' || !(words >> a >> b >> c >> d)) continue;
    if (line.rfind("== ", 0) == 0) {
      Family& family = families.emplace_back();
      family.type = a == "bh" ? PresentationCodes::kAdjustBH
                              : (a == "bonferroni" ? PresentationCodes::kAdjustBonferroni : PresentationCodes::kAdjustNone);
      family.alpha = Number(b);
      family.alpha2 = Number(c);
      std::getline(words, family.name);
      family.name = d + family.name;
      continue;
    }
    Elem& elem = families.back().pairs.emplace_back();
    elem._firstIndex = std::stoi(a);
    elem._secondIndex = std::stoi(b);
    elem._pValue = Number(c);
    elem._identical = d == "1";
    std::string adjusted, sig, sig2;
    words >> adjusted >> sig >> sig2;
    families.back().expected.emplace_back(Number(adjusted), sig == "1", sig2 == "1");
  }
  ASSERT_EQ(families.size(), 9u);
  for (Family& family : families) {
    SCOPED_TRACE(family.name);
    std::vector<Elem> list = family.pairs;
    QuiltSigTests::AdjustSigTests(family.alpha, family.alpha2, family.type, /*count=*/0, list);
    ASSERT_EQ(list.size(), family.pairs.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
      SCOPED_TRACE(i);
      const auto& [adjusted, sig, sig2] = family.expected[i];
      EXPECT_NEAR(list[i]._adjustValue, adjusted, 1e-12);
      EXPECT_EQ(list[i]._significant, sig);
      EXPECT_EQ(list[i]._significantAlpha2, sig2);
      EXPECT_EQ(list[i]._pValue, family.pairs[i]._pValue);
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
