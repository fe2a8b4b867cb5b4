// QuiltSigTestsChiSquareTest.cpp - the chi-square test on cubes filled by the engine, against scipy's values
//
// Every case, its data and the numbers it must give come from reference/chisquare_reference.py
// (scipy.stats.chi2_contingency, or the corrected variance written out there for sets, and
// scipy.stats.chi2.sf). The 2x2 case is also worked by hand: counts 10 20 / 30 40 expect
// 12 18 / 28 42, so X = 4/12 + 4/18 + 4/28 + 4/42 = 0.79365 with 1 degree of freedom.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "host/engine/AggregationMDSet.h"
#include "host/engine/EngineTestSupport.h"
#include "tablebuilder/QuiltSigTests.h"

namespace {

using namespace enginetest;

enum Layout {
  kPlain,      // r BY c
  kLayered,    // r BY c BY l, tested in the layer whose l is the case's path value
  kNested,     // o > r BY c, tested under the o of the path value
  kRowSet,     // $d BY c, $d the dichotomy set of d1..d3 counted 1
  kColumnSet,  // r BY $d, with $d once more in the extra dimension of column-set overlaps
};

enum Weighting {
  kFrequency,  // w counts cases; the test rounds the weights
  kBase,       // w is a base weight; the test works on effective bases
};

constexpr double kMissing = TARN_SystemMissing();

struct ReferenceCase {
  const char* name;
  Layout layout;
  Weighting weighting;
  int pathValue;
  const char* csv;
  double chiSquare;
  double degreesOfFreedom;
  double significance;
  bool lowExpected;
  bool minExpectedBelowOne;
  bool nonIntegerCounts;
};

const ReferenceCase kCases[] = {
#include "tablebuilder/reference/chisquare_reference.inc"
};

/// The categories of a dimension a test compares: values and set members.
CategoryPath Tested(AggregationVariable* variable) {
  CategoryPath categories;
  for (const AggregationCategory* category : variable->GetTableDimension()->GetCategories()) {
    const int type = category->GetCatType();
    if (type == AggregationCategory::kValue || type == AggregationCategory::kVariable)
      categories.push_back(category);
  }
  return categories;
}

const AggregationCategory* CategoryOf(AggregationVariable* variable, int value) {
  const int encoding = Encoding(variable->GetTableDimension(), value);
  for (const AggregationCategory* category : variable->GetTableDimension()->GetCategories()) {
    if (category->GetCatType() == AggregationCategory::kValue && category->GetCatEncoding() == encoding) {
      return category;
    }
  }
  return nullptr;
}

/// Declares the case's cube, reads its data and runs the test the weighting calls for.
ChiSquareResult RunCase(const ReferenceCase& testCase) {
  const bool base = testCase.weighting == kBase;
  Harness h(testCase.csv, base ? "" : R"({"weight": "w"})", /*weighted=*/!base, /*pairwise=*/true,
            base ? "w" : "");
  OBS counted;
  counted.number = 1;
  auto makeSet = [&] {
    return h.Own(std::make_unique<AggregationMDSet>(
        std::vector<int>{h.Index("d1"), h.Index("d2"), h.Index("d3")}, "$d", &counted, 1, false));
  };
  AggregationVariable* rows = nullptr;
  AggregationVariable* columns = nullptr;
  AggregationVariable* outer = nullptr;
  AggregationCube* cube = h._table->CreateCube();
  switch (testCase.layout) {
    case kNested:
      outer = h.Variable("o");
      cube->AddCategoricalVariable(outer, Codes::kDimensionRow);
      [[fallthrough]];
    case kPlain:
    case kLayered:
      rows = h.Variable("r");
      columns = h.Variable("c");
      break;
    case kRowSet:
      rows = makeSet();
      columns = h.Variable("c");
      break;
    case kColumnSet:
      rows = h.Variable("r");
      columns = makeSet();
      break;
  }
  cube->AddCategoricalVariable(rows, Codes::kDimensionRow);
  cube->AddCategoricalVariable(columns, Codes::kDimensionColumn);
  if (testCase.layout == kLayered) {
    outer = h.Variable("l");
    cube->AddCategoricalVariable(outer, Codes::kDimensionLayer);
  }
  if (testCase.layout == kColumnSet) cube->AddCategoricalVariable(columns, Codes::kDimensionExtra);
  CubeAggregator* aggregator = cube->CreateCubeAggregator();
  cube->AddCategoryStatistics({AggregationStatistic(Codes::kStatCount)}, columns);
  h.RunGroup();

  CategoryPath rowPath;
  CategoryPath layerPath;
  if (testCase.layout == kNested) rowPath.push_back(CategoryOf(outer, testCase.pathValue));
  if (testCase.layout == kLayered) layerPath.push_back(CategoryOf(outer, testCase.pathValue));
  // Under a base weight the test works on effective bases.
  return QuiltSigTests::GetChiSquare(*aggregator, rowPath, {}, layerPath, Tested(rows), Tested(columns),
                                     /*weighted=*/true, testCase.layout == kRowSet, testCase.layout == kColumnSet,
                                     QuiltSigTests::SizesFor(base));
}

void ExpectClose(double actual, double expected, const char* what) {
  if (expected == kMissing) {
    EXPECT_EQ(actual, kMissing) << what;
  } else {
    EXPECT_NEAR(actual, expected, 1e-12 * std::max(1.0, std::fabs(expected))) << what;
  }
}

TEST(QuiltSigTestsChiSquare, MatchesTheReferenceValues) {
  for (const ReferenceCase& testCase : kCases) {
    SCOPED_TRACE(testCase.name);
    const ChiSquareResult result = RunCase(testCase);
    ExpectClose(result.chiSquare, testCase.chiSquare, "chi-square");
    ExpectClose(result.degreesOfFreedom, testCase.degreesOfFreedom, "degrees of freedom");
    ExpectClose(result.significance, testCase.significance, "significance");
    EXPECT_EQ(result.lowExpected, testCase.lowExpected);
    EXPECT_EQ(result.minExpectedBelowOne, testCase.minExpectedBelowOne);
    EXPECT_EQ(result.nonIntegerCounts, testCase.nonIntegerCounts);
  }
}

}  // namespace
