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

const delivered::CaseFile& Cases() {
  static const delivered::CaseFile file = delivered::ReadCaseFile("delivered.txt");
  return file;
}

class DeliveredTables : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(DeliveredTables, TextAndJsonMatchTheirGoldens) {
  delivered::ExpectGoldens(GetParam(), "tablerenderer/delivered");
}

INSTANTIATE_TEST_SUITE_P(SmallSurvey, DeliveredTables, ::testing::ValuesIn(Cases().cases), delivered::GoldenTestName);

const GoldenCase& FindGoldenCase(const std::string& name) { return delivered::FindGoldenCase(Cases().cases, name); }

TEST(DeliveredTables, KeyCellsShowTheHandComputedTexts) { delivered::ExpectCellTexts(Cases().cases, Cases().cells); }

TEST(DeliveredTables, TitleCaptionCornerAndWidthsReachTheTable) {
  const nlohmann::json titled =
      TablesOf(nlohmann::json::parse(RunOnSurvey(FindGoldenCase("titles").settings, "json")))[0];
  // )TABLE is the expression in upper case with variable labels for names: "Region".
  EXPECT_EQ(titled["title"], "Counts of Region");
  EXPECT_FALSE(titled["titleHidden"].get<bool>());
  EXPECT_EQ(titled["caption"], "Small data");
  EXPECT_EQ(titled["corner"], "Where");

  // Without split groups )SPLIT stays as written; with them it names the group.
  const nlohmann::json plain =
      TablesOf(nlohmann::json::parse(RunOnSurvey(FindGoldenCase("title-split-without-groups").settings, "json")))[0];
  EXPECT_EQ(plain["title"], "Region, )SPLIT");
  const std::vector<nlohmann::json> split =
      TablesOf(nlohmann::json::parse(RunOnSurvey(FindGoldenCase("split-separate").settings, "json")));
  ASSERT_EQ(split.size(), 2u);
  EXPECT_EQ(split[0]["title"], "Region, Wave: First");
  EXPECT_EQ(split[1]["title"], "Region, Wave: Second");

  // 2 cm = 56.69 points and 3 cm = 85.04 points, cut to whole points. The text golden shows
  // them at 6 points a character: the "%" columns widened to 56 / 6 = 9 characters, the
  // "Number of cases" columns wrapped at 85 / 6 = 14.
  const RunSettings& widthSettings = FindGoldenCase("column-widths").settings;
  const nlohmann::json widths = TablesOf(nlohmann::json::parse(RunOnSurvey(widthSettings, "json")))[0];
  EXPECT_EQ(widths["minDataColumnWidth"], 56);
  EXPECT_EQ(widths["maxDataColumnWidth"], 85);
  EXPECT_NE(RunOnSurvey(widthSettings, "html").find(" style=\"min-width:56pt;max-width:85pt;\">3</td>"),
            std::string::npos);
}

TEST(DeliveredTables, SplitGroupsLaidOutTogetherGetNoGroupHeading) {
  const std::string layered = RunOnSurvey(FindGoldenCase("split-layered").settings, "text");
  EXPECT_EQ(layered.find("Wave:"), std::string::npos) << layered;
  const std::string separate = RunOnSurvey(FindGoldenCase("split-separate").settings, "text");
  EXPECT_NE(separate.find("Wave: First\n---"), std::string::npos) << separate;
  EXPECT_NE(separate.find("Wave: Second\n---"), std::string::npos) << separate;
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
      {"BOTH", {"region Region", "North"}},
      {"NONE", {"North"}},
  };
  for (const VariableLabelCase& labelCase : cases) {
    SCOPED_TRACE(labelCase.display);
    const RunSettings settings(std::string("QUILT /VLABELS VARIABLES=region grp DISPLAY=") + labelCase.display +
                               " /TABLE region BY grp [COUNT].");
    const nlohmann::json table = TablesOf(nlohmann::json::parse(RunOnSurvey(settings, "json")))[0];
    // North with grp 10: rows 1, 3, 8 and 10. grp has no label, so every option but NONE
    // shows its name; NONE hides it.
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
