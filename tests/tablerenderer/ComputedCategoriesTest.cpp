// ComputedCategoriesTest.cpp - computed categories in delivered tables on the fourteen-case survey, against goldens and hand-computed cells
//
// Each case runs one command through the whole program in both writers. The cell checks pin
// the values that a golden rewritten by mistake could hide; each says how it was worked out
// from the rows listed in DeliveredTablesSupport.h.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <vector>

#include "DeliveredTablesSupport.h"

namespace {

using delivered::DimensionLabels;
using delivered::RunOnSurvey;
using delivered::CellCase;
using delivered::TablesOf;
using ComputedCase = delivered::GoldenCase;

// Hand counts used below:
//   region x gender:  North M 3 F 3, South M 2 F 3, East M 3 F 0; West never occurs
//   mean score:       North M (2+4+0)/3 = 2.0 F (-3+5+7)/3 = 3.0, South M (6+2)/2 = 4.0
//                     F (1+3-1)/3 = 1.0, East M (-8-2-4)/3 = -4.67, East F none
//   q by gender:      Low (1) M 4 F 3, High (2) M 3 F 2, No answer (9, missing) M 1 F 1
//   score values:     -8 -4 -3 -2 -1 0 1 3 4 5 6 7 once each, 2 twice
//   by wave, weighted by wt: first wave North M 1+2 = 3 F 1, South M 0.5 F 1, East M 2.5;
//                     second wave North M 1 F 2+1 = 3, South M 0.5 F 2, East M 1
const ComputedCase kCases[] = {
    {"difference-with-empty-source",
     {"QUILT /PCOMPUTE &d=EXPR([2]-[1]) /TABLE region > score [COUNT MEAN] BY gender "
      "/CATEGORIES VARIABLES=gender [1,2,&d]."}},
    {"ratio-constant-and-precedence",
     {"QUILT /PCOMPUTE &ratio=EXPR([1]/[2]) /PCOMPUTE &scaled=EXPR([1]*100) /PCOMPUTE &prec=EXPR([1] + [2] * 2 ** 2) "
      "/PPROPERTIES &ratio LABEL='Men per woman' FORMAT=COUNT F8.2 /TABLE region BY gender [COUNT] "
      "/CATEGORIES VARIABLES=gender [1,2,&ratio,&scaled,&prec] /CATEGORIES VARIABLES=region [1,2,3]."}},
    {"ranges",
     {"QUILT /PCOMPUTE &low=EXPR([LO THRU 3]) /PCOMPUTE &high=EXPR([4 THRU HI]) /PCOMPUTE &mid=EXPR([-3 THRU 2]) "
      "/TABLE score [C] [COUNT] /CATEGORIES VARIABLES=score [-8,-4,-3,-2,-1,0,1,2,3,4,5,6,7,&low,&high,&mid]."}},
    {"range-with-hidden-sources",
     {"QUILT /PCOMPUTE &any=EXPR([1 THRU 2]) /PPROPERTIES &any LABEL='Any rating' HIDESOURCECATS=YES "
      "/TABLE q BY gender [COUNT] /CATEGORIES VARIABLES=q [1,2,&any]."}},
    {"missing-and-othernm",
     {"QUILT /PCOMPUTE &na=EXPR(MISSING) /PCOMPUTE &other=EXPR(OTHERNM) /PPROPERTIES &other HIDESOURCECATS=YES "
      "/TABLE q BY gender [COUNT] /CATEGORIES VARIABLES=q [1, OTHERNM, MISSING, &na, &other]."}},
    {"share-of-total",
     {"QUILT /PCOMPUTE &share=EXPR([1]/TOTAL*100) /PPROPERTIES &share LABEL='Male %' FORMAT=COUNT F8.1 "
      "/TABLE region BY gender [COUNT] /CATEGORIES VARIABLES=gender [1,2,&share] TOTAL=YES "
      "/CATEGORIES VARIABLES=region TOTAL=YES."}},
    {"subtotals",
     {"QUILT /PCOMPUTE &s=EXPR(SUBTOTAL[1] - SUBTOTAL[2]) /TABLE region [COUNT] BY gender "
      "/CATEGORIES VARIABLES=region [1, 2, SUBTOTAL='North and South', 3, SUBTOTAL='East only', &s]."}},
    {"own-format-for-count-only",
     {"QUILT /PCOMPUTE &d=EXPR([2]-[1]) /PPROPERTIES &d FORMAT=COUNT F8.2 /TABLE region > score [COUNT MEAN] "
      "BY gender /SLABELS VISIBLE=NO /CATEGORIES VARIABLES=gender [1,2,&d] /CATEGORIES VARIABLES=region [1,2]."}},
    {"computed-on-both-axes",
     {"QUILT /PCOMPUTE &ns=EXPR([1]+[2]) /PCOMPUTE &fm=EXPR([2]-[1]) /PPROPERTIES &ns &fm HIDESOURCECATS=YES "
      "/TABLE region BY gender [COUNT COLPCT.COUNT] /CATEGORIES VARIABLES=region [1,2,3,&ns] "
      "/CATEGORIES VARIABLES=gender [1,2,&fm] TOTAL=YES."}},
    {"statistic-the-source-lacks",
     {"QUILT /PCOMPUTE &rest=EXPR(TOTAL-[1]) /TABLE region BY gender [COUNT COLPCT.COUNT TOTALS[COUNT]] "
      "/CATEGORIES VARIABLES=gender [1,2,&rest] TOTAL=YES."}},
    {"dichotomy-set-in-list-order",
     {"QUILT /PCOMPUTE &rg=EXPR([Region]+[gender]) /PPROPERTIES &rg LABEL='Region or gender' HIDESOURCECATS=YES "
      "/TABLE $ones [COUNT] /CATEGORIES VARIABLES=$ones [q, gender, region, &rg].",
      "", {}, "",
      R"("mrsets": [{"name": "$ones", "label": "Answered 1", "type": "dichotomies", "counted": 1, )"
      R"("variables": ["region", "gender", "q"], "labels": "varlabels"}])"}},
    {"category-set-nested-under-region",
     {"QUILT /PCOMPUTE &c=EXPR([1]+[2]) /PPROPERTIES &c HIDESOURCECATS=YES /TABLE region > $qg [COUNT] "
      "/CATEGORIES VARIABLES=$qg [1,2,&c] /CATEGORIES VARIABLES=region [1,2].",
      "", {}, "",
      R"("mrsets": [{"name": "$qg", "label": "Rating or gender", "type": "categories", )"
      R"("variables": ["q", "gender"]}])"}},
    {"split-groups",
     {"QUILT /PCOMPUTE &d=EXPR([2]-[1]) /TABLE region BY gender [COUNT COLPCT.COUNT] "
      "/CATEGORIES VARIABLES=gender [1,2,&d] /CATEGORIES VARIABLES=region [1,2,3].",
      "", {"wave"}}},
    {"weighted-in-layers",
     {"QUILT /PCOMPUTE &d=EXPR([2]-[1]) /PPROPERTIES &d LABEL='Female minus male' FORMAT=COLPCT.COUNT PCTPAREN5.1 "
      "/TABLE gender BY region BY wave [COUNT COLPCT.COUNT] /CATEGORIES VARIABLES=gender [1,2,&d] "
      "/CATEGORIES VARIABLES=region [1,2,3].",
      "wt"}},
};

class ComputedCategories : public ::testing::TestWithParam<ComputedCase> {};

TEST_P(ComputedCategories, TextAndJsonMatchTheirGoldens) {
  delivered::ExpectGoldens(GetParam(), "tablerenderer/computed");
}

INSTANTIATE_TEST_SUITE_P(SmallSurvey, ComputedCategories, ::testing::ValuesIn(kCases), delivered::GoldenTestName);

const CellCase kCells[] = {
    // Female minus male: a count of an empty source counts 0; a mean of one has no value.
    {"difference-with-empty-source", 0, {{"Region", "North", "Score"}, {"Gender", "[2]-[1]", "Count"}, {}}, {"0"}},
    {"difference-with-empty-source", 0, {{"Region", "South", "Score"}, {"Gender", "[2]-[1]", "Mean"}, {}}, {"-3.0"}},
    {"difference-with-empty-source", 0, {{"Region", "East", "Score"}, {"Gender", "[2]-[1]", "Count"}, {}}, {"-3"}},
    {"difference-with-empty-source", 0, {{"Region", "East", "Score"}, {"Gender", "[2]-[1]", "Mean"}, {}}, {"."}},
    // 2 / 3 with the category's own two decimals; East divides by no women: missing.
    {"ratio-constant-and-precedence", 0, {{"Region", "South"}, {"Gender", "Men per woman", "Count"}, {}}, {"0.67"}},
    {"ratio-constant-and-precedence", 0, {{"Region", "East"}, {"Gender", "Men per woman", "Count"}, {}}, {"."}},
    {"ratio-constant-and-precedence", 0, {{"Region", "South"}, {"Gender", "[1]*100", "Count"}, {}}, {"200"}},
    // 2 + (3 * 2) ** 2 = 38 for South; East 3 + (0 * 2) ** 2 = 3.
    {"ratio-constant-and-precedence", 0, {{"Region", "South"}, {"Gender", "[1]+[2]*2**2", "Count"}, {}}, {"38"}},
    {"ratio-constant-and-precedence", 0, {{"Region", "East"}, {"Gender", "[1]+[2]*2**2", "Count"}, {}}, {"3"}},
    // LO reads as 0: 0, 1, 2, 2, 3 are five cases, the negative scores are left out.
    {"ranges", 0, {{"Score", "[LO THRU 3]"}, {"Count"}, {}}, {"5"}},
    {"ranges", 0, {{"Score", "[4 THRU HI]"}, {"Count"}, {}}, {"4"}},
    // -3, -2, -1, 0, 1, 2, 2.
    {"ranges", 0, {{"Score", "[-3 THRU 2]"}, {"Count"}, {}}, {"7"}},
    // Low and High are hidden, their sum stays: males 4 + 3, females 3 + 2.
    {"range-with-hidden-sources", 0, {{"Rating", "Any rating"}, {"Gender", "Male", "Count"}, {}}, {"7"}},
    {"range-with-hidden-sources", 0, {{"Rating", "Low"}, {"Gender", "Male", "Count"}, {}}, {}},
    {"range-with-hidden-sources", 0, {{"Rating", "High"}, {"Gender", "Female", "Count"}, {}}, {}},
    // OTHERNM is High only (Low is listed, No answer is missing) and hides it; MISSING is No
    // answer, which stays since its computed category does not hide sources.
    {"missing-and-othernm", 0, {{"Rating", "OTHERNM"}, {"Gender", "Male", "Count"}, {}}, {"3"}},
    {"missing-and-othernm", 0, {{"Rating", "High"}, {"Gender", "Male", "Count"}, {}}, {}},
    {"missing-and-othernm", 0, {{"Rating", "MISSING"}, {"Gender", "Female", "Count"}, {}}, {"1"}},
    {"missing-and-othernm", 0, {{"Rating", "No answer"}, {"Gender", "Female", "Count"}, {}}, {"1"}},
    // Men of all: North 3 / 6, all regions 8 / 14 = 57.14.
    {"share-of-total", 0, {{"Region", "North"}, {"Gender", "Male %", "Count"}, {}}, {"50.0"}},
    {"share-of-total", 0, {{"Region", "Total"}, {"Gender", "Male %", "Count"}, {}}, {"57.1"}},
    // (North + South) - East: males 5 - 3, females 6 - 0.
    {"subtotals", 0, {{"Region", "SUBTOTAL[1]-SUBTOTAL[2]"}, {"Gender", "Male", "Count"}, {}}, {"2"}},
    {"subtotals", 0, {{"Region", "SUBTOTAL[1]-SUBTOTAL[2]"}, {"Gender", "Female", "Count"}, {}}, {"6"}},
    // Statistics hidden: the count takes the category's F8.2, the mean keeps score's decimal.
    {"own-format-for-count-only", 0, {{"Region", "South", "Score"}, {"Gender", "[2]-[1]"}, {}}, {"1.00", "-3.0"}},
    // East alone survives in the rows and the female-minus-male column in the columns:
    // 0 - 3 = -3, and 0 of 6 minus 3 of 8 = -37.5%. Where two computed categories meet the
    // cell shows two blanks.
    {"computed-on-both-axes", 0, {{"Region", "East"}, {"Gender", "[2]-[1]", "Column %"}, {}}, {"-37.5%"}},
    {"computed-on-both-axes", 0, {{"Region", "[1]+[2]"}, {"Gender", "Total", "Count"}, {}}, {"11"}},
    {"computed-on-both-axes", 0, {{"Region", "[1]+[2]"}, {"Gender", "[2]-[1]", "Count"}, {}}, {"  "}},
    {"computed-on-both-axes", 0, {{"Region", "North"}, {"Gender", "Total", "Count"}, {}}, {}},
    // The total column counts only: TOTAL - men is 6 - 3 as a count, and no column
    // percentage at all, since the total cell has none to subtract from.
    {"statistic-the-source-lacks", 0, {{"Region", "North"}, {"Gender", "TOTAL-[1]", "Count"}, {}}, {"3"}},
    {"statistic-the-source-lacks", 0, {{"Region", "North"}, {"Gender", "TOTAL-[1]", "Column %"}, {}}, {}},
    // Responses of 1: region 1 (North) 6 cases, gender 1 (male) 8 cases, q 1 (low) 7 cases;
    // the computed category sums the first two, whose rows leave the table.
    {"dichotomy-set-in-list-order", 0, {{"Answered 1", "Region or gender"}, {"Count"}, {}}, {"14"}},
    {"dichotomy-set-in-list-order", 0, {{"Answered 1", "Rating"}, {"Count"}, {}}, {"7"}},
    {"dichotomy-set-in-list-order", 0, {{"Answered 1", "Gender"}, {"Count"}, {}}, {}},
    // North (rows 1-3, 8-10) as (gender, q): a 1 in rows 1, 2, 3, 8, 9 and a 2 in rows 2, 3,
    // 8, 9, 10: 5 + 5. Region North is 1 as well, but only the set's own categories hide.
    {"category-set-nested-under-region", 0, {{"Region", "North", "Rating or gender", "[1]+[2]"}, {"Count"}, {}}, {"10"}},
    {"category-set-nested-under-region", 0, {{"Region", "North", "Rating or gender", "Low"}, {"Count"}, {}}, {}},
    // First wave North: 1 female of 2 (50%) minus 2 males of 5 (40%); second wave 2 of 4
    // minus 1 of 3.
    {"split-groups", 0, {{"Region", "North"}, {"Gender", "[2]-[1]", "Column %"}, {}}, {"10.0%"}},
    {"split-groups", 1, {{"Region", "North"}, {"Gender", "[2]-[1]", "Column %"}, {}}, {"16.7%"}},
    {"split-groups", 1, {{"Region", "East"}, {"Gender", "[2]-[1]", "Count"}, {}}, {"-1"}},
    // Weighted first wave North: 1 of 4 women minus 3 of 4 men, in parentheses.
    {"weighted-in-layers", 0, {{"Gender", "Female minus male"}, {"Region", "North", "Column %"}, {"Wave", "First"}}, {"(-50.0%)"}},
    {"weighted-in-layers", 0, {{"Gender", "Female minus male"}, {"Region", "South", "Column %"}, {"Wave", "Second"}}, {"(60.0%)"}},
};

TEST(ComputedCategories, KeyCellsShowTheHandComputedTexts) { delivered::ExpectCellTexts(kCases, kCells); }

TEST(ComputedCategories, HiddenSourcesLeaveTheHeadersToo) {
  const nlohmann::json table =
      TablesOf(nlohmann::json::parse(RunOnSurvey(delivered::FindGoldenCase(kCases, "range-with-hidden-sources").settings, "json")))[0];
  const std::vector<std::string> rows = DimensionLabels(table, "Row");
  EXPECT_EQ(std::count(rows.begin(), rows.end(), "Low"), 0) << ::testing::PrintToString(rows);
  EXPECT_EQ(std::count(rows.begin(), rows.end(), "High"), 0) << ::testing::PrintToString(rows);
  EXPECT_EQ(std::count(rows.begin(), rows.end(), "Any rating"), 1) << ::testing::PrintToString(rows);
}

}  // namespace
