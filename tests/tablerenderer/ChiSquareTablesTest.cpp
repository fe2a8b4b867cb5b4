// ChiSquareTablesTest.cpp - "Pearson Chi Square Tests" tables on the fourteen-case survey, against goldens
// and scipy's numbers
//
// The numbers in the comments come from reference/chisquare_tables_reference.py
// (scipy.stats.chi2_contingency on the survey's counts); the goldens were checked against them
// before they were committed. The rows of the survey are in DeliveredTablesSupport.h.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "DeliveredTablesSupport.h"

namespace {

using delivered::CellCase;
using delivered::GoldenCase;
using delivered::RunOnSurvey;
using delivered::RunSettings;
using delivered::TablesOf;

// Counts region x gender: North 3 3, South 2 3, East 3 0; West has no case but is a category.
const GoldenCase kChiSquareCases[] = {
    {"plain", {"QUILT /TABLE region BY gender /SIGTEST TYPE=CHISQUARE."}},
    {"nested-rows", {"QUILT /TABLE region > gender BY q /SIGTEST TYPE=CHISQUARE."}},
    {"layers", {"QUILT /TABLE region BY gender BY wave /SIGTEST TYPE=CHISQUARE."}},
    {"weighted", {"QUILT /TABLE region BY gender /SIGTEST TYPE=CHISQUARE ALPHA=0.1.", "wt"}},
    {"base-weighted", {"QUILT /WEIGHT VARIABLE=wt /TABLE region BY gender /SIGTEST TYPE=CHISQUARE."}},
    {"subtotals",
     {"QUILT /TABLE region BY gender /CATEGORIES VARIABLES=region [1, 2, SUBTOTAL='N+S', 3, 4] TOTAL=YES "
      "/SIGTEST TYPE=CHISQUARE CATEGORIES=SUBTOTALS."}},
};

class ChiSquareTables : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(ChiSquareTables, TextAndJsonMatchTheirGoldens) {
  delivered::ExpectGoldens(GetParam(), "tablerenderer/chisquare");
}

INSTANTIATE_TEST_SUITE_P(SmallSurvey, ChiSquareTables, ::testing::ValuesIn(kChiSquareCases),
                         delivered::GoldenTestName);

// The second table of each run is the test table; one number of each golden is pinned here.
const CellCase kChiSquareCells[] = {
    // X 2.975, df 2, p 0.225937.
    {"plain", 1, {{"Region", "Chi-square"}, {"Gender"}, {}}, {"2.98"}},
    // One test per region: North X 2.222, South p 0.248; East's only gender leaves one row.
    {"nested-rows", 1, {{"Region", "North", "Gender", "Chi-square"}, {"Rating"}, {}}, {"2.22"}},
    {"nested-rows", 1, {{"Region", "South", "Gender", "Sig."}, {"Rating"}, {}}, {"0.248"}},
    {"nested-rows", 1, {{"Region", "East", "Gender", "Sig."}, {"Rating"}, {}}, {"."}},
    // Per wave: X 1.283 p 0.526, X 1.556 p 0.459.
    {"layers", 1, {{"Region", "Chi-square"}, {"Gender"}, {"Wave", "First"}}, {"1.28"}},
    // Weights rounded to 4 4 / 1 3 / 4 0: X 4.825.
    {"weighted", 1, {{"Region", "Chi-square"}, {"Gender"}, {}}, {"4.83"}},
    // Effective bases: X 3.450 on plain weights scaled by W / Q.
    {"base-weighted", 1, {{"Region", "Chi-square"}, {"Gender"}, {}}, {"3.45"}},
    // N+S 5 6 against East 3 0 (West empty): X 2.864, df 1.
    {"subtotals", 1, {{"Region", "df"}, {"Gender"}, {}}, {"1"}},
};

TEST(ChiSquareTables, CellsShowTheReferenceNumbers) {
  delivered::ExpectCellTexts(kChiSquareCases, kChiSquareCells);
}

struct SignificanceCase {
  const char* command;
  const char* weight;
  std::vector<std::string> texts;  // every "Sig." cell in table order, then the mark and first
                                   // words of each of its notes
};

TEST(ChiSquareTables, SignificanceCellsCarryTheNotesOfWhatTheTestFound) {
  const SignificanceCase cases[] = {
      // p 0.226 at 0.05: no star; of 8 cells none expects more than 5.
      {"QUILT /TABLE region BY gender /SIGTEST TYPE=CHISQUARE.", "", {"0.226", "a 20% or more"}},
      // p 0.0896 below 0.1 (one decimal, as written); weights of 3.5 and 0.5 were rounded.
      {"QUILT /TABLE region BY gender /SIGTEST TYPE=CHISQUARE ALPHA=0.1.",
       "wt",
       {"0.090", "* The Chi-square statistic is significant at the 0.1 level.", "a 20% or more",
        "b Some cell counts are not integers."}},
      // Below 0.250, written with three decimals and shown with them; not below 0.225.
      {"QUILT /TABLE region BY gender /SIGTEST TYPE=CHISQUARE ALPHA=0.250.",
       "",
       {"0.226", "* The Chi-square statistic is significant at the 0.250 level.", "a 20% or more"}},
      {"QUILT /TABLE region BY gender /SIGTEST TYPE=CHISQUARE ALPHA=0.225.", "", {"0.226", "a 20% or more"}},
      // Each wave has cells expecting 1 or fewer: the note on the minimum, once per layer.
      {"QUILT /TABLE region BY gender BY wave /SIGTEST TYPE=CHISQUARE.",
       "",
       {"0.526", "a 20% or more", "b The minimum expected", "0.459", "a 20% or more",
        "b The minimum expected"}},
      // Gender against itself: no test, and the note says why; region is tested beside it.
      {"QUILT /TABLE region + gender BY gender /SIGTEST TYPE=CHISQUARE.",
       "",
       {"0.226", "a 20% or more", ".", "b The statistic cannot be computed"}},
      // Without CATEGORIES=SUBTOTALS the total and the subtotal stay out: the plain test.
      {"QUILT /TABLE region BY gender /CATEGORIES VARIABLES=region [1, 2, SUBTOTAL='N+S', 3, 4] TOTAL=YES "
       "/SIGTEST TYPE=CHISQUARE.",
       "",
       {"0.226", "a 20% or more"}},
  };
  for (const SignificanceCase& testCase : cases) {
    SCOPED_TRACE(testCase.command);
    const std::vector<nlohmann::json> tables =
        TablesOf(nlohmann::json::parse(RunOnSurvey(RunSettings(testCase.command, testCase.weight), "json")));
    ASSERT_EQ(tables.size(), 2u);
    const nlohmann::json& table = tables[1];
    EXPECT_EQ(table["subtype"], "Pearson Chi Square Tests");
    std::vector<std::string> texts;
    for (const nlohmann::json& cell : table["cells"]) {
      if (cell["row"].back() != "Sig.") continue;
      texts.push_back(cell["text"]);
      for (const nlohmann::json& mark : cell["notes"]) {
        for (const nlohmann::json& note : table["notes"]) {
          if (note["mark"] == mark)
            texts.push_back(mark.get<std::string>() + " " + note["text"].get<std::string>());
        }
      }
    }
    ASSERT_EQ(texts.size(), testCase.texts.size()) << ::testing::PrintToString(texts);
    for (std::size_t k = 0; k < texts.size(); ++k)
      EXPECT_EQ(texts[k].rfind(testCase.texts[k], 0), 0u) << texts[k];
  }
}

TEST(ChiSquareTables, TableWhoseColumnsHoldNoCategoryWarnsThatTheTestIsSkipped) {
  // Gender has no category 3: after the data the column variable is gone, and the test has
  // nothing left to work on. The warning follows the main table and names it by its number.
  const std::string text =
      RunOnSurvey(RunSettings("QUILT /TABLE region BY gender /CATEGORIES VARIABLES=gender [3] EMPTY=EXCLUDE "
                              "/SIGTEST TYPE=CHISQUARE."),
                  "text");
  const std::size_t warning =
      text.find("The chi-square test is not performed for table 1 because no subtable");
  ASSERT_NE(warning, std::string::npos) << text;
  EXPECT_GT(warning, text.find("Quilt Table 1")) << text;
  EXPECT_EQ(text.find("Pearson Chi Square Tests"), std::string::npos) << text;
}

}  // namespace
