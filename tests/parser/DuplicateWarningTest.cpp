// DuplicateWarningTest.cpp - a keyword or subcommand given twice warns once, and the later value is what the table holds
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/output/MessageKeys.h"
#include "parser/PresentationCodes.h"
#include "parser/Statistics.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxPPropertiesSubcommand.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"

namespace {

constexpr int kWarningLevel = 2;  // kBpLevelWarning

SyntaxTableSubcommand& FirstTable(SyntaxTablesCommand& root) {
  return *root.GetTable().at(0);
}

// The first node of the first table that stands for `name` (a variable or a set).
const SyntaxVariableName* VariableOf(SyntaxTablesCommand& root, const std::string& name) {
  for (const SyntaxVariableName* variable : FirstTable(root).GetTableVarList()) {
    if (variable->GetNameToken() == name) {
      return variable;
    }
  }
  return nullptr;
}

struct DuplicateCase {
  const char* name;
  const char* command;
  const char* key;
  std::vector<std::string> arguments;
  // Reads the finished tree and says whether it holds the later value; a failure names what it found.
  std::function<void(SyntaxTablesCommand&)> holdsLaterValue;
};

void PrintTo(const DuplicateCase& row, std::ostream* out) {
  *out << row.command;
}

class DuplicateWarnings : public ::testing::TestWithParam<DuplicateCase> {};

TEST_P(DuplicateWarnings, WarnOnceAndKeepTheLaterValue) {
  const DuplicateCase& row = GetParam();
  bool inspected = false;
  const EventOutcome outcome = ParseAndInspect(row.command, [&](SyntaxTablesCommand& root) {
    inspected = true;
    row.holdsLaterValue(root);
  });
  ASSERT_FALSE(outcome.threw) << outcome.error.key;
  EXPECT_TRUE(inspected);
  ASSERT_EQ(outcome.reported.size(), 1u) << (outcome.reported.size() > 1 ? outcome.reported[1].key : "");
  EXPECT_EQ(outcome.reported[0].key, row.key);
  EXPECT_EQ(outcome.reported[0].arguments, row.arguments);
  EXPECT_EQ(outcome.reported[0].level, kWarningLevel);
}

using TEC = TableEncryptionCodes;
using PC = PresentationCodes;

const DuplicateCase kDuplicateCases[] = {
    // Subcommands that may stand once: the root warns, and only the latest one is read.
    {"FormatSubcommandTwice", "QUILT /FORMAT EMPTY=BLANK MISSING='x' /FORMAT MISSING='-' /TABLE a.", msg::kDuplicateWarning,
     {"QUILT", "FORMAT"},
     [](SyntaxTablesCommand& root) {
       const TableSettings& settings = FirstTable(root).GetTableSettings();
       EXPECT_EQ(settings.GetMissingString(), "-");
       // The earlier EMPTY=BLANK does not leak through: the second FORMAT stands alone.
       EXPECT_EQ(settings.GetEmptyStringType(), PC::kEmptyFormatZero);
     }},
    {"SMissingSubcommandTwice", "QUILT /SMISSING VARIABLE /SMISSING LISTWISE /TABLE a.", msg::kDuplicateWarning,
     {"QUILT", "SMISSING"},
     [](SyntaxTablesCommand& root) { EXPECT_FALSE(FirstTable(root).GetTableSettings().GetIsPairwise()); }},
    {"HideSmallCountsSubcommandTwice", "QUILT /HIDESMALLCOUNTS COUNT=9 /HIDESMALLCOUNTS /TABLE a.", msg::kDuplicateWarning,
     {"QUILT", "HIDESMALLCOUNTS"},
     // The later subcommand has no COUNT, so its own default of 5 stands, not the earlier 9.
     [](SyntaxTablesCommand& root) { EXPECT_EQ(root.GetHideSmallCountsValue(), 5); }},
    {"MRSetsSubcommandTwice", "QUILT /MRSETS COUNTDUPLICATES=NO /MRSETS COUNTDUPLICATES=YES /TABLE $dich.",
     msg::kDuplicateWarning,
     {"QUILT", "MRSETS"},
     [](SyntaxTablesCommand& root) {
       const auto* set = dynamic_cast<const SyntaxMRVariableSet*>(VariableOf(root, "$dich"));
       ASSERT_NE(set, nullptr);
       EXPECT_TRUE(set->GetCountDuplicates());
     }},

    // A keyword repeated inside one global subcommand.
    {"FormatMissingTwice", "QUILT /FORMAT MISSING='a' MISSING='b' /TABLE a.", msg::kDuplicateWarning, {"FORMAT", "MISSING"},
     [](SyntaxTablesCommand& root) { EXPECT_EQ(FirstTable(root).GetTableSettings().GetMissingString(), "b"); }},
    {"FormatMinColWidthTwice", "QUILT /FORMAT MINCOLWIDTH=20 MINCOLWIDTH=30 /TABLE a.", msg::kDuplicateWarning,
     {"FORMAT", "MINCOLWIDTH"},
     [](SyntaxTablesCommand& root) {
       EXPECT_DOUBLE_EQ(FirstTable(root).GetTableSettings().GetMinColumnWidthPoints(), 30.0);
     }},
    {"FormatEmptyTwice", "QUILT /FORMAT EMPTY=BLANK EMPTY='n/a' /TABLE a.", msg::kDuplicateWarning, {"FORMAT", "EMPTY"},
     [](SyntaxTablesCommand& root) {
       const TableSettings& settings = FirstTable(root).GetTableSettings();
       EXPECT_EQ(settings.GetEmptyStringType(), PC::kString);
       EXPECT_EQ(settings.GetEmptyString(), "n/a");
     }},
    {"SMissingWordTwice", "QUILT /SMISSING LISTWISE VARIABLE /TABLE a.", msg::kDuplicateWarning, {"SMISSING", "VARIABLE"},
     [](SyntaxTablesCommand& root) { EXPECT_TRUE(FirstTable(root).GetTableSettings().GetIsPairwise()); }},
    {"HideSmallCountsCountTwice", "QUILT /HIDESMALLCOUNTS COUNT=3 COUNT=4 /TABLE a.", msg::kDuplicateWarning,
     {"HIDESMALLCOUNTS", "COUNT"},
     [](SyntaxTablesCommand& root) { EXPECT_EQ(root.GetHideSmallCountsValue(), 4); }},
    {"MRSetsCountDuplicatesTwice", "QUILT /MRSETS COUNTDUPLICATES=YES COUNTDUPLICATES=NO /TABLE $dich.",
     msg::kDuplicateWarning,
     {"MRSETS", "COUNTDUPLICATES"},
     [](SyntaxTablesCommand& root) {
       const auto* set = dynamic_cast<const SyntaxMRVariableSet*>(VariableOf(root, "$dich"));
       ASSERT_NE(set, nullptr);
       EXPECT_FALSE(set->GetCountDuplicates());
     }},
    {"VLabelsDisplayTwice", "QUILT /VLABELS VARIABLES=a DISPLAY=NAME DISPLAY=BOTH /TABLE a.", msg::kDuplicateWarning,
     {"VLABELS", "DISPLAY"},
     [](SyntaxTablesCommand& root) {
       ASSERT_NE(VariableOf(root, "a"), nullptr);
       EXPECT_EQ(VariableOf(root, "a")->GetVLabelsOption(), PC::kVLabelBoth);
     }},
    {"VLabelsVariablesTwice", "QUILT /VLABELS VARIABLES=a VARIABLES=b DISPLAY=NAME /TABLE a + b.", msg::kDuplicateWarning,
     {"VLABELS", "VARIABLES"},
     [](SyntaxTablesCommand& root) {
       ASSERT_NE(VariableOf(root, "b"), nullptr);
       // The second list replaces the first: a is no longer named.
       EXPECT_EQ(VariableOf(root, "a")->GetVLabelsOption(), PC::kVLabelDefault);
       EXPECT_EQ(VariableOf(root, "b")->GetVLabelsOption(), PC::kVLabelName);
     }},
    {"VLabelsSetTwice", "QUILT /VLABELS VARIABLES=$dich a $dich DISPLAY=NONE /TABLE $dich.", msg::kDuplicateWarning,
     {"VLABELS", "$dich"},
     [](SyntaxTablesCommand& root) {
       ASSERT_NE(VariableOf(root, "$dich"), nullptr);
       EXPECT_EQ(VariableOf(root, "$dich")->GetVLabelsOption(), PC::kVLabelNone);
     }},
    {"PPropertiesLabelTwice",
     "QUILT /PCOMPUTE &c = EXPR([1] + [2]) /PPROPERTIES &c LABEL='first' LABEL='second' 'line' /TABLE a.",
     msg::kDuplicateWarning,
     {"PPROPERTIES", "LABEL"},
     [](SyntaxTablesCommand& root) {
       ASSERT_EQ(root.GetPPropertiesSubcommands().size(), 1u);
       EXPECT_EQ(root.GetPPropertiesSubcommands()[0]->GetPLabel(), (std::vector<std::string>{"second", "line"}));
     }},
    {"PPropertiesFormatTwice", "QUILT /PCOMPUTE &c = EXPR([1] + [2]) /PPROPERTIES &c FORMAT=COUNT FORMAT=MEAN /TABLE a.",
     msg::kDuplicateWarning,
     {"PPROPERTIES", "FORMAT"},
     [](SyntaxTablesCommand& root) {
       const auto& formats = root.GetPPropertiesSubcommands().at(0)->GetPFormat();
       ASSERT_EQ(formats.size(), 1u);
       EXPECT_EQ(formats[0]->GetStatType(), TEC::kStatMean);
     }},
    {"WeightVariableTwice", "QUILT /WEIGHT VARIABLE=a VARIABLE=w /TABLE b.", msg::kDuplicateWarning, {"WEIGHT", "VARIABLE"},
     [](SyntaxTablesCommand& root) {
       EXPECT_EQ(root.GetBaseWeightVarName(), "w");
       EXPECT_EQ(SyntaxConverter::GetBaseWeightVarIndex(), 4);  // w is the fifth column of the test data
     }},

    // Table-level subcommands: a keyword twice in one subcommand.
    {"SLabelsPositionTwice", "QUILT /TABLE a /SLABELS POSITION=ROW POSITION=LAYER.", msg::kDuplicateWarning,
     {"SLABELS", "POSITION"},
     [](SyntaxTablesCommand& root) {
       EXPECT_EQ(FirstTable(root).GetTableSettings().GetSLabelPosition(), PC::kSLabelLayer);
     }},
    {"SLabelsVisibleTwice", "QUILT /TABLE a /SLABELS VISIBLE=YES VISIBLE=NO.", msg::kDuplicateWarning, {"SLABELS", "VISIBLE"},
     [](SyntaxTablesCommand& root) { EXPECT_FALSE(FirstTable(root).GetTableSettings().GetSLabelVisibility()); }},
    {"CLabelsOptionTwice", "QUILT /TABLE a [C] BY b [C] /CLABELS ROWLABELS=OPPOSITE COLLABELS=LAYER.",
     msg::kDuplicateWarning,
     {"CLABELS", "COLLABELS"},
     [](SyntaxTablesCommand& root) {
       EXPECT_EQ(FirstTable(root).GetTableSettings().GetCLabelOption(), TEC::kCLabelColLayer);
     }},
    {"CLabelsAutoAfterAMove", "QUILT /TABLE a [C] BY b [C] /CLABELS ROWLABELS=OPPOSITE AUTO.", msg::kDuplicateWarning,
     {"CLABELS", "AUTO"},
     [](SyntaxTablesCommand& root) {
       EXPECT_EQ(FirstTable(root).GetTableSettings().GetCLabelOption(), TEC::kCLabelAuto);
     }},
    {"CriteriaCILevelTwice", "QUILT /TABLE a /CRITERIA CILEVEL=90 CILEVEL=99.", msg::kDuplicateWarning, {"CRITERIA", "CILEVEL"},
     [](SyntaxTablesCommand& root) {
       const TableSettings& settings = FirstTable(root).GetTableSettings();
       EXPECT_DOUBLE_EQ(settings.GetCILevelValue(), 99.0);
       EXPECT_EQ(settings.GetCILevelString(), "99");
     }},
    {"TitlesTitleTwice", "QUILT /TABLE a /TITLES TITLE='first' TITLE='second'.", msg::kDuplicateWarning, {"TITLES", "TITLE"},
     [](SyntaxTablesCommand& root) { EXPECT_EQ(FirstTable(root).GetTitle(), "second"); }},
    {"TitlesCaptionTwice", "QUILT /TABLE a /TITLES CAPTION='first' CAPTION='second'.", msg::kDuplicateWarning,
     {"TITLES", "CAPTION"},
     [](SyntaxTablesCommand& root) { EXPECT_EQ(FirstTable(root).GetTableSettings().GetCaption(), "second"); }},
    {"TitlesCornerTwice", "QUILT /TABLE a /TITLES CORNER='first' CORNER='second'.", msg::kDuplicateWarning,
     {"TITLES", "CORNER"},
     [](SyntaxTablesCommand& root) { EXPECT_EQ(FirstTable(root).GetTableSettings().GetCornerText(), "second"); }},

    // The same table-level subcommand twice: the table itself warns.
    {"TwoTitlesSubcommands", "QUILT /TABLE a /TITLES TITLE='first' /TITLES TITLE='second'.", msg::kDuplicateWarning,
     {"TITLES", "TITLE"},
     [](SyntaxTablesCommand& root) { EXPECT_EQ(FirstTable(root).GetTitle(), "second"); }},
    {"TwoSLabelsVisibilities", "QUILT /TABLE a /SLABELS VISIBLE=NO /SLABELS VISIBLE=YES.", msg::kDuplicateWarning,
     {"SLABELS", "VISIBLE"},
     [](SyntaxTablesCommand& root) { EXPECT_TRUE(FirstTable(root).GetTableSettings().GetSLabelVisibility()); }},
    {"TwoCaptions", "QUILT /TABLE a /TITLES CAPTION='first' /TITLES CAPTION='second'.", msg::kDuplicateWarning,
     {"TITLES", "CAPTION"},
     [](SyntaxTablesCommand& root) { EXPECT_EQ(FirstTable(root).GetTableSettings().GetCaption(), "second"); }},
    {"SigTestAlphaTwice", "QUILT /TABLE a [C] BY b [C] /SIGTEST TYPE=CHISQUARE ALPHA=0.1 ALPHA=0.01.", msg::kDuplicateWarning,
     {"SIGTEST", "ALPHA"},
     [](SyntaxTablesCommand& root) {
       const auto& tests = FirstTable(root).GetTableSettings().GetSigTestSettings();
       ASSERT_EQ(tests.size(), 1u);
       EXPECT_DOUBLE_EQ(tests[0]._alpha, 0.01);
     }},
    {"TwoChiSquareTests", "QUILT /TABLE a [C] BY b [C] /SIGTEST TYPE=CHISQUARE ALPHA=0.1 /SIGTEST TYPE=CHISQUARE.",
     msg::kDuplicateWarning,
     {"SIGTEST", "Chi-square"},
     [](SyntaxTablesCommand& root) {
       // The later request stands whole: its ALPHA is the default, not the earlier 0.1.
       const auto& tests = FirstTable(root).GetTableSettings().GetSigTestSettings();
       ASSERT_EQ(tests.size(), 1u);
       EXPECT_DOUBLE_EQ(tests[0]._alpha, 0.05);
     }},
    {"CompareTestAlphaTwice", "QUILT /TABLE a [C] BY b [C] /COMPARETEST TYPE=PROP ALPHA=0.05 0.01 ALPHA=0.1.",
     msg::kDuplicateWarning,
     {"COMPARETEST", "ALPHA"},
     [](SyntaxTablesCommand& root) {
       // The later ALPHA replaces both earlier levels; keeping 0.05 as the second level would
       // leave the smaller level behind the larger one.
       const auto& tests = FirstTable(root).GetTableSettings().GetSigTestSettings();
       ASSERT_EQ(tests.size(), 1u);
       EXPECT_DOUBLE_EQ(tests[0]._alpha, 0.1);
       EXPECT_EQ(tests[0]._alphaText, "0.1");
       EXPECT_DOUBLE_EQ(tests[0]._alpha2, 0.0);
       EXPECT_TRUE(tests[0]._alpha2Text.empty());
     }},

    // CATEGORIES: a keyword twice in one subcommand, and the variable told twice.
    {"CategoriesOrderTwice", "QUILT /TABLE a [C] /CATEGORIES VARIABLES=a ORDER=A ORDER=D.", msg::kDuplicateWarning,
     {"CATEGORIES", "ORDER"},
     [](SyntaxTablesCommand& root) { EXPECT_FALSE(VariableOf(root, "a")->GetIsOrderA()); }},
    {"CategoriesTotalLabelTwice", "QUILT /TABLE a [C] /CATEGORIES VARIABLES=a TOTAL=YES LABEL='x' LABEL='All'.",
     msg::kDuplicateWarning,
     {"CATEGORIES", "LABEL"},
     [](SyntaxTablesCommand& root) { EXPECT_EQ(VariableOf(root, "a")->GetTotalLabel(), "All"); }},
    {"CategoriesSortKeyForOneVariableTwice",
     // A changed key counts as a repetition once an ORDER has been given for the variable.
     "QUILT /TABLE a [C] /CATEGORIES VARIABLES=a ORDER=A KEY=LABEL /CATEGORIES VARIABLES=a ORDER=A KEY=VALUE.",
     msg::kDuplicateWarningFromVariable,
     {"CATEGORIES", "KEY", "a"},
     [](SyntaxTablesCommand& root) { EXPECT_EQ(VariableOf(root, "a")->GetSortKey(), TEC::kSortKeyValue); }},
    {"CategoriesTotalForOneVariableTwice",
     "QUILT /TABLE a [C] /CATEGORIES VARIABLES=a TOTAL=YES /CATEGORIES VARIABLES=a TOTAL=NO.",
     msg::kDuplicateWarningFromVariable,
     {"CATEGORIES", "TOTAL", "a"},
     [](SyntaxTablesCommand& root) { EXPECT_TRUE(VariableOf(root, "a")->GetIsTotalNo()); }},

    // Statistics: in one bracket the later of two equal ones stays, with its own label.
    {"StatisticTwiceInOneBracket", "QUILT /TABLE a [C] [COUNT 'first', COUNT 'second'].", msg::kDuplicateWarning,
     {"TABLE", "COUNT"},
     [](SyntaxTablesCommand& root) {
       const auto& statistics = VariableOf(root, "a")->GetStatistics();
       ASSERT_EQ(statistics.size(), 1u);
       EXPECT_EQ(statistics[0]->GetLabel(), "second");
     }},
    {"StatisticTwiceOnOneVariable", "QUILT /TABLE a [C] [COUNT 'first', COLPCT] [COUNT 'second'].",
     msg::kDuplicateWarningFromVariable,
     {"TABLE", "COUNT", "a"},
     [](SyntaxTablesCommand& root) {
       // The repeated statistic moves to the end of the list with the later label.
       const auto& statistics = VariableOf(root, "a")->GetStatistics();
       ASSERT_EQ(statistics.size(), 2u);
       EXPECT_EQ(statistics[0]->GetStatType(), TEC::kStatColPctCount);
       EXPECT_EQ(statistics[1]->GetStatType(), TEC::kStatCount);
       EXPECT_EQ(statistics[1]->GetLabel(), "second");
     }},
    {"MeasurementTwiceInOneBracket", "QUILT /TABLE a [S C] BY b [C].", msg::kDuplicateWarning, {"TABLE", "C"},
     [](SyntaxTablesCommand& root) {
       EXPECT_EQ(VariableOf(root, "a")->GetVariableType(), TEC::kVariableCategorical);
     }},
    {"PercentileCutPointTwice", "QUILT /TABLE a [PTILE 25 50].", msg::kDuplicateWarning, {"TABLE", "PTILE 25 50"},
     [](SyntaxTablesCommand& root) {
       const auto& statistics = VariableOf(root, "a")->GetStatistics();
       ASSERT_EQ(statistics.size(), 1u);
       EXPECT_DOUBLE_EQ(statistics[0]->GetCutPoint(), 50.0);
     }},
};

INSTANTIATE_TEST_SUITE_P(Commands, DuplicateWarnings, ::testing::ValuesIn(kDuplicateCases),
                         [](const ::testing::TestParamInfo<DuplicateCase>& info) { return info.param.name; });

}  // namespace
