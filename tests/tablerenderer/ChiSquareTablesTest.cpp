// ChiSquareTablesTest.cpp - "Pearson Chi Square Tests" tables on the fourteen-case survey, against goldens
// and scipy's numbers
//
// The commands and their key cells are in cases/chisquare.txt; the numbers in the comments
// come from reference/chisquare_tables_reference.py. The rows of the survey are in
// DeliveredTablesSupport.h.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "DeliveredTablesSupport.h"

namespace {

using delivered::RunOnSurvey;
using delivered::RunSettings;
using delivered::TablesOf;

QUILT_CASE_FILE_TESTS(ChiSquareTables, SmallSurvey, "chisquare.txt", "tablerenderer/chisquare")

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
