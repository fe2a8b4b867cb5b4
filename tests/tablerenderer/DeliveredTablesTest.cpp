// DeliveredTablesTest.cpp - whole tables on a fourteen-case survey, as text and JSON, against goldens and hand-computed cells
//
// The commands, the hand counts and the key cells are in cases/delivered.txt; the tests below
// check what a case file cannot say.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "DeliveredTablesSupport.h"

namespace {

using delivered::CellTexts;
using delivered::GoldenCase;
using delivered::RunOnSurvey;
using delivered::RunSettings;
using delivered::TablesOf;

QUILT_CASE_FILE_TESTS(DeliveredTables, SmallSurvey, "delivered.txt", "tablerenderer/delivered")

const GoldenCase& FindGoldenCase(const std::string& name) { return delivered::FindGoldenCase(Cases().cases, name); }

// Titles, captions, corners, split titles and widths of the JSON are pinned by the goldens of
// their cases (titles, title-split-without-groups, split-separate, column-widths); the
// HTML writer has no golden of its own here. 2 cm = 56.69 points and 3 cm = 85.04 points,
// cut to whole points.
TEST(DeliveredTables, ColumnWidthsReachTheHtmlCells) {
  EXPECT_NE(RunOnSurvey(FindGoldenCase("column-widths").settings, "html")
                .find(" style=\"min-width:56pt;max-width:85pt;\">3</td>"),
            std::string::npos);
}

struct VariableLabelCase {
  const char* display;
  std::vector<std::string> rowPath;  // of the North, grp 10 cell
};

TEST(DeliveredTables, VariableLabelOptionsNameTheRowVariable) {
  const VariableLabelCase cases[] = {
      {"DEFAULT", {"Region", "North"}},
      {"NAME", {"region", "North"}},
      {"LABEL", {"Region", "North"}},
      {"NONE", {"North"}},
  };
  for (const VariableLabelCase& labelCase : cases) {
    SCOPED_TRACE(labelCase.display);
    const RunSettings settings(std::string("QUILT /VLABELS VARIABLES=region grp DISPLAY=") + labelCase.display +
                               " /TABLE region BY grp [COUNT].");
    const nlohmann::json table = TablesOf(nlohmann::json::parse(RunOnSurvey(settings, "json")))[0];
    // North with grp 10: rows 1, 3, 8 and 10. grp has no label, so every option but NONE
    // shows its name; NONE hides it. BOTH is the golden vlabels-both.
    const std::vector<std::string> column =
        std::string(labelCase.display) == "NONE" ? std::vector<std::string>{"10", "Count"}
                                                 : std::vector<std::string>{"grp", "10", "Count"};
    EXPECT_EQ(CellTexts(table, {labelCase.rowPath, column, {}}), std::vector<std::string>{"4"});
  }
}

struct EmptyTextCase {
  const char* format;    // the FORMAT subcommand, or empty for none
  const char* expected;  // East x Female count, which holds no case
};

TEST(DeliveredTables, EmptyCountCellFollowsFormatEmpty) {
  const EmptyTextCase cases[] = {
      {"", "0"},
      {"/FORMAT EMPTY=ZERO ", "0"},
      {"/FORMAT EMPTY=BLANK ", " "},
      {"/FORMAT EMPTY='-' ", "-"},
  };
  for (const EmptyTextCase& emptyCase : cases) {
    SCOPED_TRACE(emptyCase.format);
    // The custom format F5.1 applies to the zero as to every count.
    const RunSettings settings(std::string("QUILT ") + emptyCase.format +
                               "/TABLE region BY gender [COUNT F5.1] /CATEGORIES VARIABLES=region gender EMPTY=EXCLUDE.");
    const nlohmann::json table = TablesOf(nlohmann::json::parse(RunOnSurvey(settings, "json")))[0];
    const std::string expected = std::string(emptyCase.expected) == "0" ? "0.0" : emptyCase.expected;
    EXPECT_EQ(CellTexts(table, {{"Region", "East"}, {"Gender", "Female", "Count"}, {}}),
              std::vector<std::string>{expected});
    // North males (rows 1, 2, 8) are unaffected by the empty text.
    EXPECT_EQ(CellTexts(table, {{"Region", "North"}, {"Gender", "Male", "Count"}, {}}),
              std::vector<std::string>{"3.0"});
  }
}

}  // namespace
