// ColumnTestTablesTest.cpp - "Comparisons of Means" and "Comparisons of Proportions", on their own and
// merged, against goldens and scipy's numbers
//
// The commands and their key cells are in cases/comparisons.txt; the letters and p-values in
// the comments below come from reference/column_tests_reference.py (scipy.stats.t,
// statsmodels' proportions_ztest and multipletests on the bundled survey).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "DeliveredTablesSupport.h"
#include "host/output/BpCellText.h"
#include "host/output/BpComposite.h"
#include "tablerenderer/ColumnTestTableRenderer.h"

namespace {

using delivered::CellCase;
using delivered::OnBundledSurvey;
using delivered::RunOnSurvey;
using delivered::RunSettings;
using delivered::TablesOf;

QUILT_CASE_FILE_TESTS(ComparisonTables, BundledSurvey, "comparisons.txt", "tablerenderer/comparisons")

std::vector<std::string> ControlPackageSentences(const RunSettings& settings) {
  const std::vector<nlohmann::json> tables = TablesOf(nlohmann::json::parse(RunOnSurvey(settings, "json")));
  std::vector<std::string> sentences;
  if (tables.size() != 2u) return {"expected two tables, found " + std::to_string(tables.size())};
  for (const nlohmann::json& cell : tables[1]["cells"]) sentences.push_back(cell["text"]);
  return sentences;
}

TEST(ComparisonTables, ControlPackageSentencesNameEachPairOfColumns) {
  // The golden control-package pins the sentences of the bundled survey; this one also
  // has the columns whose test cannot be computed.
  // Column 1 is all 1 (100%), column 2 a single case; 3 and 4 hold 2 of 4 and 1 of 4, which
  // differ by z = 0.25 / sqrt(3/8 * 5/8 * (1/4 + 1/4)) = 0.73, p = 0.47 before adjusting. A
  // column of too few cases speaks before a full or empty one.
  const std::string csv = (std::filesystem::temp_directory_path() / "quilt-control-package.csv").string();
  std::ofstream(csv) << "used,col\n1,1\n1,1\n1,1\n0,2\n1,3\n1,3\n0,3\n0,3\n1,4\n0,4\n0,4\n0,4\n";
  RunSettings settings("QUILT /TABLE used BY col /COMPARETEST TYPE=PROP.");
  settings.dataPath = csv;
  settings.controlPackage = true;
  const std::string few = " cannot be computed because the sum of case weights of 2 is less than two.";
  const std::string full = " cannot be computed because the response rate of 1 is 0% or 100%.";
  const std::string pair = "The statistical significance of the difference between ";
  EXPECT_EQ(ControlPackageSentences(settings),
            (std::vector<std::string>{pair + "1 and 2" + few, pair + "1 and 3" + full, pair + "1 and 4" + full,
                                      pair + "2 and 3" + few, pair + "2 and 4" + few,
                                      "There is not a statistically significant difference between 3 and 4."}));
}

TEST(ComparisonTables, ControlPackageKeepsTheTableWhereSentencesWouldNotFit) {
  struct Row {
    const char* command;
    std::vector<std::string> subtypes;
  };
  const Row rows[] = {
      {"QUILT /TABLE radio BY wave /COMPARETEST TYPE=PROP.",
       {"Quilt Table", "Description: Response Rate Comparison"}},
      // Six columns are too many for the sentences.
      {"QUILT /TABLE radio BY agegrp /COMPARETEST TYPE=PROP.", {"Quilt Table", "Comparisons of Proportions"}},
      // The rows must be a 0/1 variable.
      {"QUILT /TABLE gender BY wave /COMPARETEST TYPE=PROP.", {"Quilt Table", "Comparisons of Proportions"}},
      // Merged results stay in the main table.
      {"QUILT /TABLE radio BY wave /COMPARETEST TYPE=PROP MERGE=YES.", {"Quilt Table"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.command);
    std::vector<std::string> subtypes;
    for (const nlohmann::json& table : TablesOf(nlohmann::json::parse(
             RunOnSurvey(OnBundledSurvey(row.command, /*controlPackage=*/true), "json")))) {
      subtypes.push_back(table["subtype"]);
    }
    EXPECT_EQ(subtypes, row.subtypes);
  }
}

TEST(ComparisonTables, NotesSayWhatWasTestedAndWhereTheyGo) {
  struct Row {
    const char* name;
    RunSettings settings;
    int table;                       // which delivered table holds the notes
    std::string caption;             // its caption, as far as given
    std::vector<std::string> notes;  // the start of each note, in order
  };
  const std::string means = "QUILT /TABLE gender > score [MEAN] BY region ";
  const std::string props = "QUILT /TABLE region BY gender [COUNT] ";
  const Row rows[] = {
      {"means on their own: the level as a caption, the adjustment as a note",
       RunSettings(means + "/COMPARETEST TYPE=MEAN."),
       1,
       "Results are based on two-sided tests assuming equal variances with a significance level of 0.05.",
       {"Tests are adjusted for all pairwise comparisons within a row of each innermost subtable using the "
        "Bonferroni correction."}},
      {"two levels, each with the decimals it was written with",
       RunSettings(means + "/COMPARETEST TYPE=MEAN ALPHA=0.010 0.1 ADJUST=BH."),
       1,
       "Results are based on two-sided tests assuming equal variances. For each significant pair, the key of "
       "the "
       "smaller category appears under the category with the larger mean. Significance level for upper case "
       "letters (A, B, C): 0.010; for lower case letters (a, b, c): 0.1.",
       {"Tests are adjusted for all pairwise comparisons within a row of each innermost subtable using the "
        "Benjamini-Hochberg correction."}},
      {"no adjustment, weighted counts rounded",
       RunSettings(props + "/COMPARETEST TYPE=PROP ADJUST=NONE.", "wt"),
       1,
       "Results are based on two-sided tests with a significance level of 0.05.",
       {"Some cell counts are not integers. They were rounded to the nearest integer before the column "
        "proportions test."}},
      {"merged APA: the subscripts' note becomes the main table's caption",
       RunSettings(props + "/COMPARETEST TYPE=PROP MERGE=YES."),
       0,
       "Values in the same row and subtable not sharing the same subscript are significantly different at p "
       "< "
       "0.05 in the two-sided test of equality for column proportions.",
       {"Tests are adjusted"}},
      {"merged under the user's caption: caption notes",
       RunSettings(props + "/COMPARETEST TYPE=PROP MERGE=YES STYLE=SIMPLE /TITLES CAPTION='Mine'."),
       0,
       "Mine",
       {"Results are based on two-sided tests with a significance level of 0.05.", "Tests are adjusted"}},
      {"two merged tests: the second adds its note beside the first's, and the adjustment once",
       RunSettings("QUILT /TABLE region [COUNT] + score [MEAN] BY gender /COMPARETEST TYPE=PROP MERGE=YES "
                   "STYLE=SIMPLE /COMPARETEST TYPE=MEAN MERGE=YES STYLE=SIMPLE."),
       0,
       "Results are based on two-sided tests with a significance level of 0.05.",
       {"Tests are adjusted", "Results are based on two-sided tests assuming equal variances"}},
      {"on its own beside a captioned main table: table notes",
       RunSettings(means + "/COMPARETEST TYPE=MEAN /TITLES CAPTION='Mine'."),
       1,
       "",
       {"Results are based on two-sided tests assuming equal variances", "Tests are adjusted"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const std::vector<nlohmann::json> tables =
        TablesOf(nlohmann::json::parse(RunOnSurvey(row.settings, "json")));
    ASSERT_LT(row.table, static_cast<int>(tables.size()));
    const nlohmann::json& table = tables[static_cast<std::size_t>(row.table)];
    const std::string caption = table["caption"];
    EXPECT_EQ(caption.rfind(row.caption, 0), 0u) << caption;
    // The notes of the caption and of the table, not those of single cells.
    std::vector<std::string> notes;
    for (const char* owner : {"captionNotes", "tableNotes"}) {
      for (const nlohmann::json& mark : table[owner]) {
        for (const nlohmann::json& note : table["notes"]) {
          if (note["mark"] == mark) notes.push_back(note["text"]);
        }
      }
    }
    ASSERT_EQ(notes.size(), row.notes.size()) << ::testing::PrintToString(notes);
    for (std::size_t k = 0; k < row.notes.size(); ++k)
      EXPECT_EQ(notes[k].rfind(row.notes[k], 0), 0u) << notes[k];
  }
}

TEST(ComparisonTables, EveryTestComparesAHiddenSubtotalWhereTheTableShowsIt) {
  // The table shows N+S in place of North and South. Each test treats it as one category.
  const std::string hidden =
      "QUILT /TABLE region BY gender [COUNT] /CATEGORIES VARIABLES=region "
      "[1, 2, HSUBTOTAL='N+S', 3] ";
  struct Row {
    const char* tests;
    CellCase cell;
  };
  const Row rows[] = {
      // Men in N+S 5 of 8, in East 3 of 8; women's are 6 of 6 and 0 of 6, so Male has no
      // column to compare with: tested, no letter.
      {"/COMPARETEST TYPE=PROP.", {"", 1, {{"Region", "N+S"}, {"Gender", "Male", "(A)"}, {}}, {" "}}},
      {"/COMPARETEST TYPE=PROP CATEGORIES=SUBTOTALS.",
       {"", 1, {{"Region", "N+S"}, {"Gender", "Male", "(A)"}, {}}, {" "}}},
      // N+S 5 6 against East 3 0 (West is empty): X 2.864, df 1, as in the chi-square goldens'
      // subtotals case (scipy.stats.chi2_contingency).
      {"/SIGTEST TYPE=CHISQUARE.", {"", 1, {{"Region", "Chi-square"}, {"Gender"}, {}}, {"2.86"}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.tests);
    const std::vector<nlohmann::json> tables =
        TablesOf(nlohmann::json::parse(RunOnSurvey(RunSettings(hidden + row.tests), "json")));
    ASSERT_EQ(tables.size(), 2u);
    EXPECT_EQ(delivered::CellTexts(tables[1], row.cell.path), row.cell.expected);
  }
}

TEST(ComparisonTables, LongCellTextsGoInPiecesOf255Bytes) {
  struct Row {
    std::size_t length;
    std::vector<std::size_t> pieces;  // empty: one plain string
  };
  const Row rows[] = {{255, {}}, {256, {255, 1}}, {511, {255, 255, 1}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.length);
    const std::string text(row.length, 'x');
    std::unique_ptr<BpCellText> cell = ColumnTestTableRenderer::DispatchLongString(text);
    EXPECT_EQ(cell->GetText(), text);
    const auto* composite = dynamic_cast<const BpComposite*>(cell.get());
    ASSERT_EQ(composite != nullptr, !row.pieces.empty());
    if (composite == nullptr) continue;
    std::string joined;
    for (std::size_t piece : row.pieces) joined += (joined.empty() ? "" : ", ") + std::string(piece, 'x');
    EXPECT_EQ(composite->GetArguments(), std::vector<std::string>{joined});
  }
}

}  // namespace
