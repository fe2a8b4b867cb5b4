// QuiltSigTestsColumnsTest.cpp - column means and column proportions tests on real cubes, plain and on
// effective bases
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "host/engine/AggregationMDSet.h"
#include "host/engine/EngineTestSupport.h"
#include "parser/SigTestSettings.h"
#include "tablebuilder/QuiltSigTests.h"

namespace {

using namespace enginetest;

enum Weighting { kUnweighted, kFrequency, kBase };

struct ExpectedPair {
  int row;
  int first;
  int second;
  int receiver;
  double p;
};

// One test on the survey: which variables stand in the rows and columns, how the cases are
// weighted, and what the test should find.
struct ReferenceScenario {
  const char* name;
  bool means;  // else proportions
  Weighting weighting;
  const char* rows;
  const char* columns;
  int fixedRow;  // means: the row category tested
  bool allCats;
  PresentationCodes::SignificanceAdjustType adjust;
  std::vector<ExpectedPair> pairs;
  std::vector<int> small;  // too few cases (means) or small bases (proportions)
  std::vector<std::pair<int, int>> bad;
  bool nonInteger;
  bool overlap;
};

// reference: tests/tablebuilder/reference/column_tests_reference.py (numpy, scipy.stats,
// checked against scipy.stats.ttest_ind, statsmodels OLS and proportions_ztest)
#include "reference/ColumnTestsReference.inc"

const char* const kDictionary =
    R"({"variables":[{"name":"l"},{"name":"r"},{"name":"g"},{"name":"c"},{"name":"x"},{"name":"fw"},)"
    R"({"name":"bw"},{"name":"d1"},{"name":"d2"},{"name":"d3"},{"name":"d4"}])";

bool IsSet(const std::string& name) {
  return name[0] == '$';
}

// The survey read into one cube: rows, columns, the layer l and, for a set in the columns,
// the set once more for the overlaps; x as scale variable of the means test.
struct SurveyCube {
  Harness _harness;
  AggregationVariable* _rowVariable;
  AggregationVariable* _columnVariable;
  AggregationVariable* _layerVariable;
  CubeAggregator* _cube = nullptr;
  bool _effective;
  CategoryPath _rows;
  CategoryPath _columns;
  CategoryPath _layer;

  SurveyCube(Weighting weighting, const std::string& rows, const std::string& columns, bool means)
      : _harness(kColumnTestsCsv,
                 std::string(kDictionary) + (weighting == kFrequency ? R"(,"weight":"fw"})" : "}"),
                 /*weighted=*/weighting == kFrequency, /*pairwise=*/true, weighting == kBase ? "bw" : ""),
        _rowVariable(Make(rows)),
        _columnVariable(Make(columns)),
        _layerVariable(_harness.Variable("l")),
        _effective(weighting == kBase) {
    AggregationCube* cube = _harness._table->CreateCube();
    cube->AddCategoricalVariable(_rowVariable, Codes::kDimensionRow);
    cube->AddCategoricalVariable(_columnVariable, Codes::kDimensionColumn);
    cube->AddCategoricalVariable(_layerVariable, Codes::kDimensionLayer);
    if (IsSet(columns)) cube->AddCategoricalVariable(_columnVariable, Codes::kDimensionExtra);
    _cube = cube->CreateCubeAggregator();
    const int x = _harness.Index("x");
    if (means) {
      cube->AddScaleStatistics(
          {AggregationStatistic(x, Codes::kStatMean), AggregationStatistic(x, Codes::kStatMeanSumSquares)});
    } else {
      cube->AddCategoryStatistics({AggregationStatistic(Codes::kStatCount)}, _rowVariable);
    }
    _harness.RunGroup();
    _rows = Categories(_rowVariable);
    _columns = Categories(_columnVariable);
    _layer = Categories(_layerVariable);
  }

  AggregationVariable* Make(const std::string& name) {
    if (!IsSet(name)) return _harness.Variable(name);
    OBS counted;
    counted.number = 1;
    const std::vector<int> members = {_harness.Index("d1"), _harness.Index("d2"),
                                      _harness.Index(name == "$e" ? "d4" : "d3")};
    return _harness.Own(std::make_unique<AggregationMDSet>(members, name, &counted, 1, false));
  }

  static CategoryPath Categories(AggregationVariable* variable) {
    CategoryPath path;
    for (const AggregationCategory* category : variable->GetTableDimension()->GetCategories()) {
      if (category->GetCatType() != AggregationCategory::kTotal) path.push_back(category);
    }
    return path;
  }

  // The means of x by the columns `testCols` in row category `row`.
  ColumnMeansResult Means(int row, const CategoryPath& testCols, const SigTestSettings& settings) const {
    const CategoryPath rowCats = {_rows[static_cast<std::size_t>(row)]};
    const bool setColumns = IsSet(_columnVariable->GetName());
    return QuiltSigTests::GetColumnPairwise(*_cube, _harness.Index("x"), rowCats, {}, _layer, testCols, true,
                                            setColumns, settings, ".", QuiltSigTests::SizesFor(_effective));
  }

  ColumnProportionsResult Proportions(const CategoryPath& testRows, const SigTestSettings& settings) const {
    return QuiltSigTests::GetColumnProportions(*_cube, {}, {}, _layer, testRows, _columns, true,
                                               IsSet(_rowVariable->GetName()), IsSet(_columnVariable->GetName()),
                                               settings, ".", QuiltSigTests::SizesFor(_effective));
  }
};

SigTestSettings Settings(bool means, double alpha, double alpha2, const std::string& alpha2Text,
                         PresentationCodes::SignificanceAdjustType adjust, bool showSig, int digits) {
  return SigTestSettings(means ? Codes::kSigTestMeans : Codes::kSigTestProportions, alpha, alpha2, "",
                         alpha2Text, adjust, /*originColumn=*/true, /*merge=*/false, showSig, digits);
}

// Each scenario runs with every pair shown (alpha just below 1, p-values with 12 decimals),
// so that each letter "B(0.012345678901)\n" carries the adjusted p-value of its pair.
TEST(QuiltSigTestsColumns, PValuesMatchTheReference) {
  for (const ReferenceScenario& s : kReferenceScenarios) {
    SCOPED_TRACE(s.name);
    const SurveyCube survey(s.weighting, s.rows, s.columns, s.means);
    SigTestSettings settings = Settings(s.means, kReferenceAlpha, 0.0, "", s.adjust, /*showSig=*/true, 12);
    settings._meansVarianceAllCats = s.allCats;
    std::vector<std::vector<std::string>> texts;
    std::vector<int> small;
    std::vector<std::pair<int, int>> bad;
    bool nonInteger = false;
    bool overlap = false;
    if (s.means) {
      const ColumnMeansResult result = survey.Means(s.fixedRow, survey._columns, settings);
      texts = {result.columnTexts};
      small = result.tooFewColumns;
      nonInteger = result.nonIntegerCounts;
      overlap = result.overlapProblem;
      for (int column : small) EXPECT_EQ(texts[0][static_cast<std::size_t>(column)], ".");
    } else {
      const ColumnProportionsResult result = survey.Proportions(survey._rows, settings);
      texts = result.cellTexts;
      small = result.smallColumns;
      ASSERT_EQ(result.badRows.size(), result.badColumns.size());
      for (std::size_t i = 0; i < result.badRows.size(); ++i)
        bad.emplace_back(result.badRows[i], result.badColumns[i]);
      nonInteger = result.nonIntegerCounts;
      overlap = result.overlapProblem;
    }
    EXPECT_EQ(small, s.small);
    EXPECT_EQ(bad, s.bad);
    EXPECT_EQ(nonInteger, s.nonInteger);
    EXPECT_EQ(overlap, s.overlap);

    std::map<std::tuple<int, int, int>, double> shown;  // (row, receiver, other) -> p
    for (std::size_t row = 0; row < texts.size(); ++row) {
      for (std::size_t column = 0; column < texts[row].size(); ++column) {
        const std::string& text = texts[row][column];
        for (std::size_t open = text.find('('); open != std::string::npos; open = text.find('(', open + 1)) {
          shown[{static_cast<int>(row), static_cast<int>(column), text[open - 1] - 'A'}] =
              std::stod(text.substr(open + 1));
        }
      }
    }
    std::size_t expected = 0;
    for (const ExpectedPair& pair : s.pairs) {
      if (!(pair.p < kReferenceAlpha)) continue;
      ++expected;
      const auto found =
          shown.find({pair.row, pair.receiver, pair.receiver == pair.first ? pair.second : pair.first});
      ASSERT_NE(found, shown.end()) << "no letter for row " << pair.row << " pair " << pair.first << "-"
                                    << pair.second;
      EXPECT_NEAR(found->second, pair.p, 1e-9)
          << "row " << pair.row << " pair " << pair.first << "-" << pair.second;
    }
    EXPECT_EQ(shown.size(), expected);
  }
}

// The reference p-values of the unweighted means of x by c in row r 1, each column's own
// variance pooled with the other's: A-B 0.04307 (B higher), A-D 0.28509, B-D 0.003614 (B
// higher); C has one case. Texts and subscripts worked by hand from them.
TEST(QuiltSigTestsColumns, LettersFollowTheSettings) {
  using P = PresentationCodes;
  struct Case {
    const char* name;
    double alpha;
    double alpha2;
    const char* alpha2Text;
    P::SignificanceAdjustType adjust;
    bool mergeApa;
    bool showSig;
    std::vector<std::string> texts;
    const char* subscripts;
  };
  // clang-format off
  const Case cases[] = {
      {"none", 0.05, 0, "", P::kAdjustNone, false, false, {" ", "A D", ".", " "}, "a; b; none; a"},
      // 3 x p: 0.129, 0.855, 0.0108.
      {"bonferroni", 0.07, 0, "", P::kAdjustBonferroni, false, false, {" ", "D", ".", " "}, "a b; a; none; b"},
      // Ranks 0.003614, 0.04307, 0.28509: 0.0108, 0.0646, 0.28509.
      {"bh", 0.07, 0, "", P::kAdjustBH, false, false, {" ", "A D", ".", " "}, "a; b; none; a"},
      {"two levels", 0.01, 0.05, "0.05", P::kAdjustNone, false, false, {" ", "a D", ".", " "}, "a b; a; none; b"},
      {"merged apa", 0.05, 0, "", P::kAdjustNone, true, false, {" ", "a d", ".", " "}, "a; b; none; a"},
      {"p-values", 0.05, 0, "", P::kAdjustNone, false, true, {" ", "A(0.043)\nD(0.004)\n", ".", " "}, "a; b; none; a"},
  };
  // clang-format on
  const SurveyCube survey(kUnweighted, "r", "c", /*means=*/true);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    SigTestSettings settings = Settings(true, c.alpha, c.alpha2, c.alpha2Text, c.adjust, c.showSig, 3);
    settings._meansVarianceAllCats = false;
    settings._merge = c.mergeApa;
    ColumnMeansResult result = survey.Means(0, survey._columns, settings);
    EXPECT_EQ(result.columnTexts, c.texts);
    std::string subscripts;
    for (std::size_t column = 0; column < c.texts.size(); ++column) {
      const std::vector<std::string> letters = result.rowMarkers.getMarkersForColumn(column);
      subscripts += std::string(column > 0 ? "; " : "") + (letters.empty() ? "none" : "");
      for (std::size_t i = 0; i < letters.size(); ++i) subscripts += (i > 0 ? " " : "") + letters[i];
    }
    EXPECT_EQ(subscripts, c.subscripts);
  }
}

// With one column of two cases or more left, or a single row, nothing is compared; nor is a
// column without cases under a base weight.
TEST(QuiltSigTestsColumns, NothingToCompare) {
  const SigTestSettings settings = Settings(true, 0.05, 0, "", PresentationCodes::kAdjustNone, false, 3);
  const SurveyCube means(kUnweighted, "r", "c", /*means=*/true);
  const ColumnMeansResult pair = means.Means(0, {means._columns[0], means._columns[2]}, settings);
  EXPECT_EQ(pair.columnTexts, (std::vector<std::string>{".", "."}));
  EXPECT_EQ(pair.tooFewColumns, std::vector<int>{1});
  for (Weighting weighting : {kUnweighted, kBase}) {
    const SurveyCube survey(weighting, "g", "c", /*means=*/false);
    const ColumnProportionsResult result = survey.Proportions({survey._rows[0]}, settings);
    EXPECT_EQ(result.cellTexts, (std::vector<std::vector<std::string>>{{".", ".", ".", "."}}));
    EXPECT_TRUE(result.badRows.empty());
  }
  // Column 3 has its one case in row 2: in rows 1 and 3 it has no base, and no proportion.
  const SurveyCube survey(kBase, "g", "c", /*means=*/false);
  for (const std::vector<std::string>& texts :
       survey.Proportions({survey._rows[0], survey._rows[2]}, settings).cellTexts) {
    EXPECT_EQ(texts[2], ".");
    EXPECT_NE(texts[0], ".");
  }
}

}  // namespace
