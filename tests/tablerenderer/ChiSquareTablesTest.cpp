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

const std::vector<std::string> kSig = {"Sig."};

// The second table of each run is the test table (the main table is the first).
const CellCase kChiSquareCells[] = {
    // X 2.975, df 2, p 0.225937.
    {"plain", 1, {{"Region", "Chi-square"}, {"Gender"}, {}}, {"2.98"}},
    {"plain", 1, {{"Region", "df"}, {"Gender"}, {}}, {"2"}},
    {"plain", 1, {{"Region", "Sig."}, {"Gender"}, {}}, {"0.226"}},
    // One test per region: North X 2.222 p 0.136, South X 1.333 p 0.248; East's only gender
    // leaves one row, so no test.
    {"nested-rows", 1, {{"Region", "North", "Gender", "Chi-square"}, {"Rating"}, {}}, {"2.22"}},
    {"nested-rows", 1, {{"Region", "South", "Gender", "Sig."}, {"Rating"}, {}}, {"0.248"}},
    {"nested-rows", 1, {{"Region", "East", "Gender", "Sig."}, {"Rating"}, {}}, {"."}},
    // Per wave: X 1.283 p 0.526, X 1.556 p 0.459.
    {"layers", 1, {{"Region", "Chi-square"}, {"Gender"}, {"Wave", "First"}}, {"1.28"}},
    {"layers", 1, {{"Region", "Sig."}, {"Gender"}, {"Wave", "Second"}}, {"0.459"}},
    // Weights rounded to 4 4 / 1 3 / 4 0: X 4.825, p 0.0896, below ALPHA 0.1.
    {"weighted", 1, {{"Region", "Chi-square"}, {"Gender"}, {}}, {"4.83"}},
    {"weighted", 1, {{"Region", "Sig."}, {"Gender"}, {}}, {"0.090"}},
    // Effective bases: X 3.450 on plain weights scaled by W / Q, p 0.178.
    {"base-weighted", 1, {{"Region", "Chi-square"}, {"Gender"}, {}}, {"3.45"}},
    {"base-weighted", 1, {{"Region", "Sig."}, {"Gender"}, {}}, {"0.178"}},
    // N+S 5 6 against East 3 0 (West empty): X 2.864, df 1, p 0.0906.
    {"subtotals", 1, {{"Region", "Chi-square"}, {"Gender"}, {}}, {"2.86"}},
    {"subtotals", 1, {{"Region", "df"}, {"Gender"}, {}}, {"1"}},
};

TEST(ChiSquareTables, CellsShowTheReferenceNumbers) {
  delivered::ExpectCellTexts(kChiSquareCases, kChiSquareCells);
}

/// The texts of the notes of the table's "Sig." cell, in order.
std::vector<std::string> SignificanceNotes(const nlohmann::json& table) {
  std::vector<std::string> texts;
  for (const nlohmann::json& cell : table["cells"]) {
    if (cell["row"].back() != "Sig.") continue;
    for (const nlohmann::json& mark : cell["notes"]) {
      for (const nlohmann::json& note : table["notes"]) {
        if (note["mark"] == mark)
          texts.push_back(note["mark"].get<std::string>() + " " + note["text"].get<std::string>());
      }
    }
  }
  return texts;
}

struct NotesCase {
  const char* command;
  const char* weight;
  std::vector<std::string> startOfNotes;  // mark and first words of each note of the "Sig." cell
};

TEST(ChiSquareTables, SignificanceCellCarriesTheNotesOfWhatTheTestFound) {
  const NotesCase cases[] = {
      // p 0.226 at 0.05: no star; of 8 cells none expects more than 5.
      {"QUILT /TABLE region BY gender /SIGTEST TYPE=CHISQUARE.", "", {"a 20% or more"}},
      // p 0.0896 below 0.1 (one decimal, as written); weights of 3.5 and 0.5 were rounded.
      {"QUILT /TABLE region BY gender /SIGTEST TYPE=CHISQUARE ALPHA=0.1.",
       "wt",
       {"* The Chi-square statistic is significant at the 0.1 level.", "a 20% or more",
        "b Some cell counts are not integers."}},
      // p 0.225937: below 0.250, written with three decimals and shown with them; not below 0.225.
      {"QUILT /TABLE region BY gender /SIGTEST TYPE=CHISQUARE ALPHA=0.250.",
       "",
       {"* The Chi-square statistic is significant at the 0.250 level.", "a 20% or more"}},
      {"QUILT /TABLE region BY gender /SIGTEST TYPE=CHISQUARE ALPHA=0.225.", "", {"a 20% or more"}},
      // Each wave has cells expecting 1 or fewer: the note on the minimum, once per layer.
      {"QUILT /TABLE region BY gender BY wave /SIGTEST TYPE=CHISQUARE.",
       "",
       {"a 20% or more", "b The minimum expected", "a 20% or more", "b The minimum expected"}},
      // Gender against itself: no test, and the note says why; region is tested beside it.
      {"QUILT /TABLE region + gender BY gender /SIGTEST TYPE=CHISQUARE.",
       "",
       {"a 20% or more", "b The statistic cannot be computed"}},
  };
  for (const NotesCase& notesCase : cases) {
    SCOPED_TRACE(notesCase.command);
    const std::vector<nlohmann::json> tables = TablesOf(
        nlohmann::json::parse(RunOnSurvey(RunSettings(notesCase.command, notesCase.weight), "json")));
    ASSERT_EQ(tables.size(), 2u);
    EXPECT_EQ(tables[1]["subtype"], "Pearson Chi Square Tests");
    const std::vector<std::string> notes = SignificanceNotes(tables[1]);
    ASSERT_EQ(notes.size(), notesCase.startOfNotes.size()) << ::testing::PrintToString(notes);
    for (std::size_t k = 0; k < notes.size(); ++k) {
      EXPECT_EQ(notes[k].rfind(notesCase.startOfNotes[k], 0), 0u) << notes[k];
    }
  }
}

TEST(ChiSquareTables, TotalsAndSubtotalsAreLeftOutUnlessAsked) {
  // Without CATEGORIES=SUBTOTALS the total and the subtotal stay out: the same test as the
  // plain table, X 2.975 with 2 degrees of freedom, and no note on subtotals.
  const RunSettings settings(
      "QUILT /TABLE region BY gender /CATEGORIES VARIABLES=region [1, 2, SUBTOTAL='N+S', 3, 4] TOTAL=YES "
      "/SIGTEST TYPE=CHISQUARE.");
  const nlohmann::json table = TablesOf(nlohmann::json::parse(RunOnSurvey(settings, "json")))[1];
  EXPECT_EQ(delivered::CellTexts(table, {{"Region", "Chi-square"}, {"Gender"}, {}}),
            std::vector<std::string>{"2.98"});
  EXPECT_EQ(delivered::CellTexts(table, {{"Region", "df"}, {"Gender"}, {}}), std::vector<std::string>{"2"});
  EXPECT_TRUE(table["tableNotes"].empty());
}

TEST(ChiSquareTables, TableWithoutColumnsWarnsThatTheTestIsSkipped) {
  const std::string text = RunOnSurvey(RunSettings("QUILT /TABLE region /SIGTEST TYPE=CHISQUARE."), "text");
  EXPECT_NE(text.find("The chi-square test is not performed for table 1"), std::string::npos) << text;
  EXPECT_EQ(text.find("Pearson Chi Square Tests"), std::string::npos) << text;
}

}  // namespace
