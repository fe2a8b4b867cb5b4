// DeliveredTablesTest.cpp - whole tables on a fourteen-case survey, as text and JSON, against goldens and hand-computed cells
//
// Each golden case runs one command through the program (parser, engine, table builder,
// renderer, writer) in both writers. The goldens were checked against the hand counts in
// the comments before they were committed; the cell tests below then pin the numbers that
// matter in the JSON, so that a golden rewritten by mistake cannot hide a wrong number.
// The rows of the survey are listed in DeliveredTablesSupport.h.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "DeliveredTablesSupport.h"

namespace {

using delivered::CellCase;
using delivered::CellTexts;
using delivered::GoldenCase;
using delivered::RunOnSurvey;
using delivered::RunSettings;
using delivered::TablesOf;

// Hand counts used below (rows of DeliveredTablesSupport.h):
//   region:            North 6 (rows 1,2,3,8,9,10), South 5 (4,5,11,12,13), East 3 (6,7,14), West 0
//   region x gender:   North M 3 F 3, South M 2 F 3, East M 3 F 0; Male 8, Female 6, all 14
//   region x grp:      North 10:4 20:2, South 10:2 20:3, East 10:2 20:1; 10:8, 20:6
//   mean score:        North 15/6 = 2.5, South 11/5 = 2.2, East -14/3 = -4.67, all 12/14 = 0.86
//   mean by gender:    North M 6/3 = 2.0 F 9/3 = 3.0, South M 8/2 = 4.0 F 3/3 = 1.0, East M -4.67
//   q:                 Low 7, High 5, No answer (user-missing) 2
//   by wave (rows 1-7 first, 8-14 second):
//                      First:  North M 2 F 1, South M 1 F 1, East M 2
//                      Second: North M 1 F 2, South M 1 F 2, East M 1
//   weighted by wt:    North M 1+2+1 = 4 F 1+2+1 = 4, South M 0.5+0.5 = 1 F 3, East M 3.5;
//                      Male 8.5, Female 7
const GoldenCase kGoldenCases[] = {
    {"rows-only", {"QUILT /TABLE region [COUNT COLPCT.COUNT]."}},
    {"rows-by-columns", {"QUILT /TABLE region BY gender [COUNT COLPCT.COUNT]."}},
    {"three-dimensions", {"QUILT /TABLE region BY gender BY wave [COUNT]."}},
    {"unlabelled-values", {"QUILT /TABLE region BY grp [COUNT]."}},
    {"vlabels-both", {"QUILT /VLABELS VARIABLES=region DISPLAY=BOTH /TABLE region BY grp [COUNT]."}},
    {"vlabels-none", {"QUILT /VLABELS VARIABLES=region DISPLAY=NONE /TABLE region BY grp [COUNT]."}},
    {"statistic-labels", {"QUILT /TABLE region > score [MEAN PTILE 25 MEAN.LCL MEAN.UCL 'Upper )CILEVEL%']."}},
    {"stacked-twice", {"QUILT /TABLE region + region BY gender [COUNT]."}},
    {"slabels-row", {"QUILT /TABLE region BY gender [COUNT COLPCT.COUNT] /SLABELS POSITION=ROW."}},
    {"slabels-layer", {"QUILT /TABLE region BY gender [COUNT COLPCT.COUNT] /SLABELS POSITION=LAYER."}},
    {"slabels-hidden", {"QUILT /TABLE region BY gender [COUNT] /SLABELS VISIBLE=NO."}},
    {"clabels-rowlabels-opposite", {"QUILT /TABLE region BY gender [COUNT] /CLABELS ROWLABELS=OPPOSITE."}},
    {"clabels-collabels-opposite", {"QUILT /TABLE region BY gender [COUNT] /CLABELS COLLABELS=OPPOSITE."}},
    {"clabels-rowlabels-layer", {"QUILT /TABLE region BY gender [COUNT] /CLABELS ROWLABELS=LAYER."}},
    {"clabels-collabels-layer", {"QUILT /TABLE region BY gender [COUNT] /CLABELS COLLABELS=LAYER."}},
    {"clabels-auto", {"QUILT /TABLE region BY gender [COUNT] /CLABELS AUTO."}},
    {"empty-excluded",
     {"QUILT /TABLE region BY gender [COUNT] /CATEGORIES VARIABLES=region gender EMPTY=EXCLUDE."}},
    {"empty-and-missing-texts",
     {"QUILT /FORMAT EMPTY='none' MISSING='n/a' /TABLE region > score [COUNT F3.0 MEAN F5.1] BY gender."}},
    {"column-widths",
     {"QUILT /FORMAT MINCOLWIDTH=2 MAXCOLWIDTH=3 UNITS=CM /TABLE region BY gender [COUNT 'Number of cases' "
      "COLPCT.COUNT '%']."}},
    {"hide-small-counts",
     {"QUILT /HIDESMALLCOUNTS COUNT=5 /TABLE region [COUNT COLPCT.COUNT UCOUNT NEQUAL5.0]."}},
    {"decorations",
     {"QUILT /TABLE region > score [MEAN NEGPAREN6.1 VALIDN PAREN5.0 COUNT NEQUAL5.0]."}},
    {"percent-paren", {"QUILT /TABLE region BY gender [COUNT F5.0 COLPCT.COUNT PCTPAREN6.1]."}},
    {"titles",
     {"QUILT /TABLE region [COUNT] /TITLES TITLE='Counts of )TABLE' CAPTION='Small data' CORNER='Where'."}},
    {"title-split-without-groups", {"QUILT /TABLE region [COUNT] /TITLES TITLE='Region, )SPLIT'."}},
    {"totals-and-subtotals",
     {"QUILT /TABLE region BY gender [COUNT] /CATEGORIES VARIABLES=region [1, 2, SUBTOTAL='North and South', 3, 4] "
      "TOTAL=YES."}},
    {"missing-excluded", {"QUILT /TABLE q [COUNT] /CATEGORIES VARIABLES=q TOTAL=YES."}},
    {"missing-included", {"QUILT /TABLE q [COUNT] /CATEGORIES VARIABLES=q MISSING=INCLUDE TOTAL=YES."}},
    {"split-separate",
     {"QUILT /TABLE region BY gender [COUNT] /TITLES TITLE='Region, )SPLIT'.", "", {"wave"}, "separate"}},
    {"split-layered", {"QUILT /TABLE region BY gender [COUNT].", "", {"wave"}, "layered"}},
    {"weighted", {"QUILT /TABLE region BY gender [COUNT COLPCT.COUNT].", "wt"}},
    {"dichotomy-set-subtotal",
     {"QUILT /TABLE $ones [COUNT RESPONSES] /CATEGORIES VARIABLES=$ones [region, gender, SUBTOTAL='North or male', q].",
      "", {}, "",
      R"("mrsets": [{"name": "$ones", "label": "Answered 1", "type": "dichotomies", "counted": 1, )"
      R"("variables": ["region", "gender", "q"], "labels": "varlabels"}])"}},
    {"base-weighted", {"QUILT /WEIGHT VARIABLE=wt /TABLE region BY gender [COUNT COLPCT.COUNT UCOUNT]."}},
    {"weighted-by-dictionary", {"QUILT /TABLE region BY gender [COUNT COLPCT.COUNT].", "", {}, "", R"("weight": "wt")"}},
    {"split-by-dictionary",
     {"QUILT /TABLE region BY gender [COUNT].", "", {}, "", R"("split": {"variables": ["wave"], "layout": "separate"})"}},
    {"weighted-hidden-small-counts",
     {"QUILT /FORMAT MISSING='hidden' /HIDESMALLCOUNTS COUNT=4 /TABLE region BY gender [COUNT F5.1 COLPCT.COUNT].",
      "wt"}},
    {"modes-and-median", {"QUILT /TABLE region > score [MODE MEDIAN]."}},
    {"slabels-row-hidden", {"QUILT /TABLE region BY gender [COUNT COLPCT.COUNT] /SLABELS POSITION=ROW VISIBLE=NO."}},
    {"rows-only-statistics-hidden", {"QUILT /TABLE region [COUNT COLPCT.COUNT] /SLABELS VISIBLE=NO."}},
    {"three-dimensions-statistics-in-layers",
     {"QUILT /TABLE region BY gender BY wave [COUNT COLPCT.COUNT] /SLABELS POSITION=LAYER."}},
    {"three-dimensions-statistics-hidden",
     {"QUILT /TABLE region BY gender BY wave [COUNT COLPCT.COUNT] /SLABELS VISIBLE=NO."}},
    {"three-dimensions-rowlabels-opposite",
     {"QUILT /TABLE region BY gender BY wave [COUNT] /CLABELS ROWLABELS=OPPOSITE."}},
    // Stacked questions whose values first occur in different orders, so that each has its
    // own encodings of the same answers.
    {"clabels-stacked-rowlabels-opposite",
     delivered::OnBundledSurvey("QUILT /PCOMPUTE &low = EXPR([1] + [2]) /TABLE q1 + q2 + q3 BY gender "
                                "/CLABELS ROWLABELS=OPPOSITE /CATEGORIES VARIABLES=q1 q2 q3 [1, 2, &low].")},
    {"clabels-stacked-collabels-opposite",
     delivered::OnBundledSurvey("QUILT /TABLE gender BY q1 + q2 + q3 /CLABELS COLLABELS=OPPOSITE "
                                "/CATEGORIES VARIABLES=q1 q2 q3 [1, 2].")},
    {"totals-on-both-axes",
     {"QUILT /TABLE region BY gender [COUNT COLPCT.COUNT] /CATEGORIES VARIABLES=region [1, 2, SUBTOTAL='N+S', 3] "
      "TOTAL=YES /CATEGORIES VARIABLES=gender TOTAL=YES LABEL='Both' POSITION=BEFORE."}},
    {"missing-included-by-gender",
     {"QUILT /TABLE q BY gender [COUNT COLPCT.COUNT] /CATEGORIES VARIABLES=q MISSING=INCLUDE TOTAL=YES."}},
    {"nested-rows",
     {"QUILT /TABLE region > gender BY q [COUNT ROWPCT.COUNT] /CATEGORIES VARIABLES=gender q EMPTY=EXCLUDE."}},
    {"percentiles-with-total",
     {"QUILT /TABLE region > score [MEAN PTILE 25 PTILE 75] BY gender /CATEGORIES VARIABLES=gender TOTAL=YES."}},
    {"hidden-subtotal-rows",
     {"QUILT /TABLE region BY gender [COUNT COLPCT.COUNT] /CATEGORIES VARIABLES=region [1, 2, "
      "HSUBTOTAL='North and South', 3, 4] TOTAL=YES."}},
    {"hidden-subtotal-columns-before",
     {"QUILT /TABLE gender BY region [COUNT ROWPCT.COUNT] /CATEGORIES VARIABLES=region [1, HSUBTOTAL='South or "
      "East', 2, 3] TOTAL=YES POSITION=BEFORE."}},
    {"hidden-subtotal-dichotomy-set",
     {"QUILT /TABLE $ones [COUNT] /CATEGORIES VARIABLES=$ones [region, gender, HSUBTOTAL='North or male', q] "
      "TOTAL=YES.",
      "", {}, "",
      R"("mrsets": [{"name": "$ones", "label": "Answered 1", "type": "dichotomies", "counted": 1, )"
      R"("variables": ["region", "gender", "q"], "labels": "varlabels"}])"}},
};

class DeliveredTables : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(DeliveredTables, TextAndJsonMatchTheirGoldens) {
  delivered::ExpectGoldens(GetParam(), "tablerenderer/delivered");
}

INSTANTIATE_TEST_SUITE_P(SmallSurvey, DeliveredTables, ::testing::ValuesIn(kGoldenCases), delivered::GoldenTestName);

const GoldenCase& FindGoldenCase(const std::string& name) { return delivered::FindGoldenCase(kGoldenCases, name); }

// Expected texts from the hand counts above the golden cases.
const CellCase kCellCases[] = {
    // 6 of 14 cases are North: 42.857% in one decimal.
    {"rows-only", 0, {{"Region", "North"}, {"Column %"}, {}}, {"42.9%"}},
    // West is labelled but empty; EMPTY=INCLUDE is the default, so it shows a zero.
    {"rows-only", 0, {{"Region", "West"}, {"Count"}, {}}, {"0"}},
    // South female 3 of 6 females; East female empty within a kept row.
    {"rows-by-columns", 0, {{"Region", "South"}, {"Gender", "Female", "Column %"}, {}}, {"50.0%"}},
    {"rows-by-columns", 0, {{"Region", "East"}, {"Gender", "Male", "Column %"}, {}}, {"37.5%"}},
    {"rows-by-columns", 0, {{"Region", "East"}, {"Gender", "Female", "Count"}, {}}, {"0"}},
    // Second wave: North female rows 9 and 10.
    {"three-dimensions", 0, {{"Region", "North"}, {"Gender", "Female", "Count"}, {"Wave", "Second"}}, {"2"}},
    {"three-dimensions", 0, {{"Region", "East"}, {"Gender", "Male", "Count"}, {"Wave", "First"}}, {"2"}},
    // Values without labels show as values: South has grp 20 in rows 5, 11 and 13.
    {"unlabelled-values", 0, {{"Region", "South"}, {"grp", "20", "Count"}, {}}, {"3"}},
    {"vlabels-both", 0, {{"region Region", "North"}, {"grp", "10", "Count"}, {}}, {"4"}},
    {"vlabels-none", 0, {{"North"}, {"grp", "10", "Count"}, {}}, {"4"}},
    // Mean of -8, -2, -4 is -4.67; PTILE 25 of North (-3 0 2 4 5 7, t = 1.5) is the second
    // value; the 95% limits of North are 2.5 -+ 2.5706 * 3.6194 / sqrt(6) = -1.30 and 6.30
    // (scipy.stats.t.ppf(0.975, 5)). The user's "%" after )CILEVEL is the level's own sign.
    {"statistic-labels", 0, {{"Region", "East", "Score"}, {"Mean"}, {}}, {"-4.7"}},
    {"statistic-labels", 0, {{"Region", "North", "Score"}, {"Percentile 25"}, {}}, {"0.0"}},
    {"statistic-labels", 0, {{"Region", "North", "Score"}, {"Mean 95.0% LCL"}, {}}, {"-1.3"}},
    {"statistic-labels", 0, {{"Region", "North", "Score"}, {"Upper 95.0%"}, {}}, {"6.3"}},
    {"statistic-labels", 0, {{"Region", "West", "Score"}, {"Mean"}, {}}, {"."}},
    // The same variable stacked twice: both blocks keep their own cells.
    {"stacked-twice", 0, {{"Region", "North"}, {"Gender", "Male", "Count"}, {}}, {"3", "3"}},
    {"slabels-row", 0, {{"Region", "North", "Column %"}, {"Gender", "Male"}, {}}, {"37.5%"}},
    {"slabels-layer", 0, {{"Region", "South"}, {"Gender", "Female"}, {"Column %"}}, {"50.0%"}},
    {"slabels-hidden", 0, {{"Region", "South"}, {"Gender", "Female"}, {}}, {"3"}},
    // Row labels moved to the columns, under each gender; column labels moved to the rows.
    {"clabels-rowlabels-opposite", 0, {{"Region"}, {"Gender", "Female", "South", "Count"}, {}}, {"3"}},
    {"clabels-collabels-opposite", 0, {{"Region", "South", "Female"}, {"Gender", "Count"}, {}}, {"3"}},
    {"clabels-rowlabels-layer", 0, {{"Region"}, {"Gender", "Male", "Count"}, {"East"}}, {"3"}},
    {"clabels-collabels-layer", 0, {{"Region", "North"}, {"Gender", "Count"}, {"Female"}}, {"3"}},
    {"clabels-auto", 0, {{"Region", "South"}, {"Gender", "Female", "Count"}, {}}, {"3"}},
    // EMPTY=EXCLUDE drops West; East keeps its row and its empty female cell is filled.
    {"empty-excluded", 0, {{"Region", "West"}, {"Gender", "Male", "Count"}, {}}, {}},
    {"empty-excluded", 0, {{"Region", "East"}, {"Gender", "Female", "Count"}, {}}, {"0"}},
    // An empty count shows the empty text, an empty mean the missing text.
    {"empty-and-missing-texts", 0, {{"Region", "East", "Score"}, {"Gender", "Female", "Count"}, {}}, {"none"}},
    {"empty-and-missing-texts", 0, {{"Region", "East", "Score"}, {"Gender", "Female", "Mean"}, {}}, {"n/a"}},
    {"empty-and-missing-texts", 0, {{"Region", "South", "Score"}, {"Gender", "Male", "Mean"}, {}}, {"4.0"}},
    // Counts 6 and 5 pass the threshold 5; percentages are never hidden. East's 3 has its
    // unweighted count 3 as companion and shows as missing, in a NEQUAL decoration too; only
    // West's empty 0 has no companion and shows "<5".
    {"hide-small-counts", 0, {{"Region", "South"}, {"Count"}, {}}, {"5"}},
    {"hide-small-counts", 0, {{"Region", "East"}, {"Count"}, {}}, {"."}},
    {"hide-small-counts", 0, {{"Region", "West"}, {"Count"}, {}}, {"<5"}},
    {"hide-small-counts", 0, {{"Region", "East"}, {"Column %"}, {}}, {"21.4%"}},
    {"hide-small-counts", 0, {{"Region", "South"}, {"Unweighted Count"}, {}}, {"N=5"}},
    {"hide-small-counts", 0, {{"Region", "East"}, {"Unweighted Count"}, {}}, {"N=."}},
    {"hide-small-counts", 0, {{"Region", "West"}, {"Unweighted Count"}, {}}, {"<(5)"}},
    {"decorations", 0, {{"Region", "East", "Score"}, {"Mean"}, {}}, {"(4.7)"}},
    {"decorations", 0, {{"Region", "North", "Score"}, {"Mean"}, {}}, {"2.5"}},
    {"decorations", 0, {{"Region", "South", "Score"}, {"Valid N"}, {}}, {"(5)"}},
    {"decorations", 0, {{"Region", "West", "Score"}, {"Count"}, {}}, {"N=0"}},
    {"percent-paren", 0, {{"Region", "North"}, {"Gender", "Male", "Column %"}, {}}, {"(37.5%)"}},
    {"titles", 0, {{"Region", "East"}, {"Count"}, {}}, {"3"}},
    // The subtotal adds North and South: males 3 + 2, females 3 + 3; the total is every case.
    {"totals-and-subtotals", 0, {{"Region", "North and South"}, {"Gender", "Female", "Count"}, {}}, {"6"}},
    {"totals-and-subtotals", 0, {{"Region", "Total"}, {"Gender", "Male", "Count"}, {}}, {"8"}},
    // Without MISSING=INCLUDE the two "No answer" cases are left out of the total.
    {"missing-excluded", 0, {{"Rating", "Total"}, {"Count"}, {}}, {"12"}},
    {"missing-excluded", 0, {{"Rating", "No answer"}, {"Count"}, {}}, {}},
    {"missing-included", 0, {{"Rating", "No answer"}, {"Count"}, {}}, {"2"}},
    {"missing-included", 0, {{"Rating", "Total"}, {"Count"}, {}}, {"14"}},
    {"split-separate", 0, {{"Region", "North"}, {"Gender", "Male", "Count"}, {}}, {"2"}},
    {"split-separate", 1, {{"Region", "North"}, {"Gender", "Male", "Count"}, {}}, {"1"}},
    // Laid out together, the one table counts all fourteen cases.
    {"split-layered", 0, {{"Region", "North"}, {"Gender", "Male", "Count"}, {}}, {"3"}},
    // Weighted: East males weigh 3.5 and show rounded; 4 of the male weight 8.5 is 47.1%.
    {"weighted", 0, {{"Region", "East"}, {"Gender", "Male", "Count"}, {}}, {"4"}},
    {"weighted", 0, {{"Region", "North"}, {"Gender", "Male", "Column %"}, {}}, {"47.1%"}},
    {"weighted", 0, {{"Region", "South"}, {"Gender", "Female", "Column %"}, {}}, {"42.9%"}},
    {"weighted-by-dictionary", 0, {{"Region", "North"}, {"Gender", "Male", "Column %"}, {}}, {"47.1%"}},
    // Cases with region 1 (rows 1-3, 8-10) or gender 1 (rows 1, 2, 4, 6-8, 12, 14): eleven,
    // with 6 + 8 = 14 responses; the list puts q after the subtotal.
    {"dichotomy-set-subtotal", 0, {{"Answered 1", "North or male"}, {"Count"}, {}}, {"11"}},
    {"dichotomy-set-subtotal", 0, {{"Answered 1", "North or male"}, {"Responses"}, {}}, {"14"}},
    // A base weight weighs as the case weight does, and the unweighted count stays beside it.
    {"base-weighted", 0, {{"Region", "North"}, {"Gender", "Male", "Column %"}, {}}, {"47.1%"}},
    {"base-weighted", 0, {{"Region", "South"}, {"Gender", "Male", "Unweighted Count"}, {}}, {"2"}},
    {"split-by-dictionary", 1, {{"Region", "South"}, {"Gender", "Female", "Count"}, {}}, {"2"}},
    // Threshold 4. North males weigh 4.0 on 3 cases: the companion 3 hides the cell as
    // missing, and so do South females, 3.0 on 3 cases, and South males, 1.0 on 2 cases.
    // Percentages stay.
    {"weighted-hidden-small-counts", 0, {{"Region", "North"}, {"Gender", "Male", "Count"}, {}}, {"hidden"}},
    {"weighted-hidden-small-counts", 0, {{"Region", "South"}, {"Gender", "Female", "Count"}, {}}, {"hidden"}},
    {"weighted-hidden-small-counts", 0, {{"Region", "South"}, {"Gender", "Male", "Count"}, {}}, {"hidden"}},
    {"weighted-hidden-small-counts", 0, {{"Region", "North"}, {"Gender", "Male", "Column %"}, {}}, {"47.1%"}},
    // North's six scores are all different: every one is a mode, the smallest -3.0 shows
    // (the note is checked in the golden). Median: t = 3 falls on the third of six values,
    // so (2 + 4) / 2 = 3.0. South: t = 2.5, the third value 2.0.
    {"modes-and-median", 0, {{"Region", "North", "Score"}, {"Mode"}, {}}, {"-3.0"}},
    {"modes-and-median", 0, {{"Region", "North", "Score"}, {"Median"}, {}}, {"3.0"}},
    {"modes-and-median", 0, {{"Region", "South", "Score"}, {"Median"}, {}}, {"2.0"}},
    // Statistics hidden in the rows: count and percentage share the visible path.
    {"slabels-row-hidden", 0, {{"Region", "East"}, {"Gender", "Male"}, {}}, {"3", "37.5%"}},
    {"rows-only-statistics-hidden", 0, {{"Region", "North"}, {}, {}}, {"6", "42.9%"}},
    // First wave males: North 2, South 1, East 2 of 5; second wave males 1 of 3 each.
    {"three-dimensions-statistics-in-layers", 0, {{"Region", "South"}, {"Gender", "Male"}, {"Wave", "First", "Column %"}}, {"20.0%"}},
    {"three-dimensions-statistics-in-layers", 0, {{"Region", "East"}, {"Gender", "Male"}, {"Wave", "Second", "Column %"}}, {"33.3%"}},
    {"three-dimensions-statistics-hidden", 0, {{"Region", "North"}, {"Gender", "Male"}, {"Wave", "First"}}, {"2", "40.0%"}},
    {"three-dimensions-rowlabels-opposite", 0, {{"Region"}, {"Gender", "Female", "North", "Count"}, {"Wave", "Second"}}, {"2"}},
    // Bundled survey, pandas.crosstab(q, gender): q2 male 1: 78, 2: 183, female 89, 171;
    // q3 male 1: 78, female 1: 81. The computed column stands once for all three questions.
    {"clabels-stacked-rowlabels-opposite", 0, {{"Satisfaction: Value for money"}, {"Gender", "Male", "Very dissatisfied", "Count"}, {}}, {"78"}},
    {"clabels-stacked-rowlabels-opposite", 0, {{"Satisfaction: Value for money"}, {"Gender", "Male", "Dissatisfied", "Count"}, {}}, {"183"}},
    {"clabels-stacked-rowlabels-opposite", 0, {{"Satisfaction: Staff friendliness"}, {"Gender", "Female", "Very dissatisfied", "Count"}, {}}, {"81"}},
    {"clabels-stacked-rowlabels-opposite", 0, {{"Satisfaction: Value for money"}, {"Gender", "Female", "[1]+[2]", "Count"}, {}}, {"260"}},
    {"clabels-stacked-collabels-opposite", 0, {{"Gender", "Male", "Dissatisfied"}, {"Satisfaction: Value for money", "Count"}, {}}, {"183"}},
    {"clabels-stacked-collabels-opposite", 0, {{"Gender", "Female", "Very dissatisfied"}, {"Satisfaction: Staff friendliness", "Count"}, {}}, {"81"}},
    // N+S: males 3 + 2 = 5 of 8 = 62.5%, all six females; the total column comes first.
    {"totals-on-both-axes", 0, {{"Region", "N+S"}, {"Gender", "Male", "Column %"}, {}}, {"62.5%"}},
    {"totals-on-both-axes", 0, {{"Region", "N+S"}, {"Gender", "Both", "Count"}, {}}, {"11"}},
    {"totals-on-both-axes", 0, {{"Region", "Total"}, {"Gender", "Both", "Column %"}, {}}, {"100.0%"}},
    {"totals-on-both-axes", 0, {{"Region", "West"}, {"Gender", "Male", "Count"}, {}}, {}},
    // Males: q 1 in rows 1, 7, 12, 14, q 9 in row 4; females: q 9 in row 10 of six.
    {"missing-included-by-gender", 0, {{"Rating", "Low"}, {"Gender", "Male", "Count"}, {}}, {"4"}},
    {"missing-included-by-gender", 0, {{"Rating", "No answer"}, {"Gender", "Female", "Column %"}, {}}, {"16.7%"}},
    // North females: q 1 in rows 3 and 9, row 10 is "No answer" and left out: 2 of 2.
    {"nested-rows", 0, {{"Region", "North", "Gender", "Female"}, {"Rating", "Low", "Row %"}, {}}, {"100.0%"}},
    {"nested-rows", 0, {{"Region", "South", "Gender", "Female"}, {"Rating", "High", "Count"}, {}}, {"2"}},
    // South males score 6 and 2: PTILE 25 (t = 0.5) is 2.0, PTILE 75 (t = 1.5) is 6.0. All of
    // North at 75 (t = 4.5) is the fifth value, 5.0.
    {"percentiles-with-total", 0, {{"Region", "South", "Score"}, {"Gender", "Male", "Percentile 25"}, {}}, {"2.0"}},
    {"percentiles-with-total", 0, {{"Region", "South", "Score"}, {"Gender", "Male", "Percentile 75"}, {}}, {"6.0"}},
    {"percentiles-with-total", 0, {{"Region", "North", "Score"}, {"Gender", "Total", "Percentile 75"}, {}}, {"5.0"}},
    {"percentiles-with-total", 0, {{"Region", "East", "Score"}, {"Gender", "Female", "Mean"}, {}}, {"."}},
    // A hidden subtotal stands in place of North and South (males 3 + 2 = 5 of 8 = 62.5%,
    // females 3 + 3 = 6 of 6), which leave the table but stay in the total and the base.
    {"hidden-subtotal-rows", 0, {{"Region", "North and South"}, {"Gender", "Male", "Column %"}, {}}, {"62.5%"}},
    {"hidden-subtotal-rows", 0, {{"Region", "North and South"}, {"Gender", "Female", "Count"}, {}}, {"6"}},
    {"hidden-subtotal-rows", 0, {{"Region", "North"}, {"Gender", "Male", "Count"}, {}}, {}},
    {"hidden-subtotal-rows", 0, {{"Region", "East"}, {"Gender", "Male", "Column %"}, {}}, {"37.5%"}},
    {"hidden-subtotal-rows", 0, {{"Region", "Total"}, {"Gender", "Male", "Count"}, {}}, {"8"}},
    // Totals before: the subtotal sums the categories after it, South and East. Males 2 + 3
    // of 8 = 62.5%; females 3 + 0 of 6 = 50%.
    {"hidden-subtotal-columns-before", 0, {{"Gender", "Male"}, {"Region", "South or East", "Row %"}, {}}, {"62.5%"}},
    {"hidden-subtotal-columns-before", 0, {{"Gender", "Female"}, {"Region", "South or East", "Count"}, {}}, {"3"}},
    {"hidden-subtotal-columns-before", 0, {{"Gender", "Female"}, {"Region", "Total", "Count"}, {}}, {"6"}},
    {"hidden-subtotal-columns-before", 0, {{"Gender", "Male"}, {"Region", "South", "Count"}, {}}, {}},
    // Region 1 or gender 1: eleven cases (see dichotomy-set-subtotal); q 1 in rows 1, 3, 7, 9,
    // 11, 12, 14; any of the three: all but rows 5 and 13, twelve.
    {"hidden-subtotal-dichotomy-set", 0, {{"Answered 1", "North or male"}, {"Count"}, {}}, {"11"}},
    {"hidden-subtotal-dichotomy-set", 0, {{"Answered 1", "Rating"}, {"Count"}, {}}, {"7"}},
    {"hidden-subtotal-dichotomy-set", 0, {{"Answered 1", "Region"}, {"Count"}, {}}, {}},
    {"hidden-subtotal-dichotomy-set", 0, {{"Answered 1", "Total"}, {"Count"}, {}}, {"12"}},
};

TEST(DeliveredTables, KeyCellsShowTheHandComputedTexts) { delivered::ExpectCellTexts(kGoldenCases, kCellCases); }

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
