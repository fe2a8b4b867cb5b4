// SyntaxMRVariableSetTest.cpp - multiple-response set nodes: members, counted value, merged labels, lists,
// MRSETS
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "CategoriesTestSupport.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/VariableSet.h"
#include "host/engine/ParsedCategory.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxMRsetElementaryVariable.h"
#include "parser/VLPair.h"

namespace {

constexpr int kThrown = 0;
constexpr int kWarning = 2;
constexpr int kError = 3;

// Members chosen to provoke every check of a set: string members of widths 4 and 8, labels
// that agree or contradict, user-missing definitions that agree or not, and a member that
// is called MISSING.
const char* const kCsv =
    "g,s4,s8,c1,c2,c3,c4,d1,d2,d3,d4,missing\n"
    "1,ab,abcdefgh,1,2,1,1,1,0,1,1,1\n"
    "2,cd,efgh,2,3,2,2,0,1,1,0,0\n";

const char* const kDictionary = R"({
  "variables": [
    {"name": "g", "values": {"1": "One", "2": "Two"}, "measure": "nominal"},
    {"name": "s4", "type": "string", "width": 4},
    {"name": "s8", "type": "string", "width": 8},
    {"name": "c1", "measure": "nominal", "values": {"1": "One", "2": "Two"}, "missing": {"values": [9]}},
    {"name": "c2", "measure": "nominal", "values": {"1": "Uno", "3": "Three"}},
    {"name": "c3", "measure": "nominal", "values": {"1": "One"}, "missing": {"values": [9]}},
    {"name": "c4", "measure": "nominal", "values": {"2": "Two"}, "missing": {"values": [8]}},
    {"name": "d1", "label": "Same", "measure": "nominal", "values": {"1": "Yes"}},
    {"name": "d2", "label": "Same", "measure": "nominal", "values": {"1": "Ja"}},
    {"name": "d3", "label": "Third", "measure": "nominal", "values": {"1": "Yes"}},
    {"name": "d4", "label": "Fourth", "measure": "nominal", "values": {"1": "Yes"}},
    {"name": "missing", "label": "Called missing", "measure": "nominal"}
  ],
  "mrsets": [
    {"name": "$wide", "type": "dichotomies", "counted": "ab", "variables": ["s4", "s8"]},
    {"name": "$over", "type": "dichotomies", "counted": "abcde", "variables": ["s4", "s8"]},
    {"name": "$labels", "type": "categories", "variables": ["c1", "c2"]},
    {"name": "$agree", "type": "categories", "variables": ["c1", "c3"]},
    {"name": "$disagree", "type": "categories", "variables": ["c3", "c4"]},
    {"name": "$samevar", "type": "dichotomies", "counted": 1, "variables": ["d1", "d2"]},
    {"name": "$yesja", "type": "dichotomies", "counted": 1, "variables": ["d3", "d2"]},
    {"name": "$named", "type": "dichotomies", "counted": 1, "variables": ["d3", "d4"],
     "labels": "countedvaluelabels"},
    {"name": "$withmissing", "type": "dichotomies", "counted": 1, "variables": ["d3", "missing"]}
  ]
})";

std::shared_ptr<const Dataset> SetsDataset() {
  static std::shared_ptr<const Dataset> dataset;
  if (!dataset) {
    std::shared_ptr<Dataset> loaded = DatasetLoader::LoadText(kCsv, kDictionary, DatasetLoadOptions());
    // The loader refuses a counted value that is no number for numeric members; the host may
    // still hand one over, so these are added by hand.
    for (const char* counted : {"1x", "1.5"}) {
      VariableSet set;
      set.SetName(std::string("$counted") + (counted[1] == 'x' ? "bad" : "half"));
      set.SetType(VariableSet::kMR_Dichotomy);
      set.SetValue(counted);
      set.SetVariableNames({"d3", "d4"});
      loaded->AddVariableSet(set);
    }
    VariableSet broken;
    broken.SetName("$broken");
    broken.SetType(VariableSet::kMR_Category);
    broken.SetVariableNames({"c1", "nosuch"});
    loaded->AddVariableSet(broken);
    dataset = loaded;
  }
  return dataset;
}

const SyntaxMRVariableSet* SetOf(const KeptParse& parse, const std::string& name) {
  return dynamic_cast<const SyntaxMRVariableSet*>(parse.Variable(name));
}

std::vector<std::string> MemberNames(const SyntaxMRVariableSet& set) {
  std::vector<std::string> names;
  for (const SyntaxMRsetElementaryVariable* member : set.GetElementaryVariables()) {
    names.push_back(member->GetName());
  }
  return names;
}

TEST(SyntaxMRVariableSetTest, SurveyDichotomySetHasItsMembersAndCountedValue) {
  KeptParse parse("QUILT /TABLE $media BY gender.");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  const SyntaxMRVariableSet* media = SetOf(parse, "$media");
  ASSERT_NE(media, nullptr);
  EXPECT_EQ(media->GetMRSetType(), VariableSet::kMR_Dichotomy);
  EXPECT_EQ(MemberNames(*media), (std::vector<std::string>{"tv", "radio", "web", "print", "social"}));
  // Dictionary order of the survey: id, region, gender, agegrp, wave, q1..q5, then the media.
  EXPECT_EQ(media->GetIndexList(), (std::vector<int>{10, 11, 12, 13, 14}));
  EXPECT_EQ(media->GetIndexListCount(), 5);
  EXPECT_EQ(media->GetCountedOBSSize(), 1);
  EXPECT_EQ(media->GetCountedOBS()->number, 1.0);
  EXPECT_EQ(media->GetLabel(), "Media used in the last week");
  EXPECT_EQ(media->GetVarDataType(), 0);
  EXPECT_FALSE(media->GetUseCountedValueLabels());
  EXPECT_TRUE(media->ContainsThisVariable(12));
  EXPECT_FALSE(media->ContainsThisVariable(2));
  // Each member keeps only the counted value's label ("Used").
  for (const SyntaxMRsetElementaryVariable* member : media->GetElementaryVariables()) {
    ASSERT_EQ(member->GetVLPairCount(), 1);
    EXPECT_EQ(member->GetVLData()[0].GetLabelData(), "Used");
  }
  EXPECT_TRUE(parse.Reported().empty());
}

TEST(SyntaxMRVariableSetTest, CategorySetMergesItsMembersLabels) {
  KeptParse brands("QUILT /TABLE $brands.");
  ASSERT_TRUE(brands.Succeeded()) << brands.Error().key;
  const SyntaxMRVariableSet* set = SetOf(brands, "$brands");
  ASSERT_NE(set, nullptr);
  // b1..b3 label the same six brands alike: six pairs, no warning.
  EXPECT_EQ(set->GetVLPairCount(), 6);
  EXPECT_EQ(set->GetValueLabelList()[5].GetLabelData(), "Fenwick");
  EXPECT_TRUE(brands.Reported().empty());

  // c1 {1 One, 2 Two} and c2 {1 Uno, 3 Three}: the first label of 1 stands, 3 is added.
  KeptParse labels("QUILT /TABLE $labels.", SetsDataset());
  ASSERT_TRUE(labels.Succeeded()) << labels.Error().key;
  const SyntaxMRVariableSet* merged = SetOf(labels, "$labels");
  ASSERT_EQ(merged->GetVLPairCount(), 3);
  EXPECT_EQ(merged->GetValueLabelList()[0].GetLabelData(), "One");
  EXPECT_EQ(merged->GetValueLabelList()[1].GetLabelData(), "Two");
  EXPECT_EQ(merged->GetValueLabelList()[2].GetLabelData(), "Three");
  ASSERT_EQ(labels.Reported().size(), 1u);
  EXPECT_EQ(labels.Reported()[0].key, msg::kMultipleCategorySetLabelsDiffer);
  // c1 has user-missing 9 and c2 none: a contradiction, but one definition is no conflict.
  EXPECT_EQ(merged->GetUserMissingVarIndex(), 3);
}

TEST(SyntaxMRVariableSetTest, WidthsAndCountedValues) {
  KeptParse wide("QUILT /TABLE $wide.", SetsDataset());
  ASSERT_TRUE(wide.Succeeded()) << wide.Error().key;
  const SyntaxMRVariableSet* set = SetOf(wide, "$wide");
  // The widest member sets the type; the counted value is stored at that width.
  EXPECT_EQ(set->GetVarDataType(), 8);
  EXPECT_EQ(set->GetCountedOBSSize(), 1);
  EXPECT_EQ(std::string(set->GetCountedOBS()->bytes, 8), "ab      ");

  KeptParse half("QUILT /TABLE $countedhalf.", SetsDataset());
  ASSERT_TRUE(half.Succeeded()) << half.Error().key;
  EXPECT_EQ(SetOf(half, "$countedhalf")->GetCountedOBS()->number, 1.5);
}

struct MessageCase {
  const char* name;
  const char* command;
  const char* key;
  std::vector<std::string> arguments;
  int level;
};

class SetMessages : public ::testing::TestWithParam<MessageCase> {};

TEST_P(SetMessages, RaiseTheirCatalogueMessage) {
  const MessageCase& test = GetParam();
  KeptParse parse(test.command, SetsDataset());
  CatalogueMessage message;
  if (test.level == kThrown) {
    ASSERT_FALSE(parse.Succeeded());
    message = parse.Error();
  } else {
    ASSERT_FALSE(parse.Reported().empty());
    message = parse.Reported().front();
  }
  EXPECT_EQ(message.key, test.key);
  EXPECT_EQ(message.arguments, test.arguments);
  EXPECT_EQ(message.level, test.level);
}

const MessageCase kSetMessages[] = {
    // The narrowest member must hold the counted value: 5 characters do not fit in 4.
    {"CountedValueTooWide",
     "QUILT /TABLE $over.",
     msg::kCountedValueTooBig,
     {"TABLE", "$over", "abcde"},
     kThrown},
    {"CountedValueNotANumber",
     "QUILT /TABLE $countedbad.",
     msg::kCountedValueWrongType,
     {"TABLE", "1x"},
     kThrown},
    {"SetWithUnknownMember",
     "QUILT /TABLE $broken.",
     msg::kSetIsInvalid,
     {"TABLE", "$broken"},
     kError},
    {"UnknownSet",
     "QUILT /TABLE $nosuch.",
     msg::kUnrecognizedVariableInSubcommand,
     {"$nosuch", "TABLE"},
     kThrown},
    {"ValueLabelledTwoWays",
     "QUILT /TABLE $labels.",
     msg::kMultipleCategorySetLabelsDiffer,
     {"TABLE", "$labels"},
     kWarning},
    {"TwoDefinitionsOfMissing",
     "QUILT /TABLE $disagree.",
     msg::kUserMissingContradiction,
     {"TABLE", "$disagree", "c3"},
     kWarning},
    {"SameVariableLabels",
     "QUILT /TABLE $samevar.",
     msg::kSameVariableLabelInDichotomySet,
     {"TABLE", "$samevar"},
     kWarning},
    {"CountedValueLabelledTwoWays",
     "QUILT /TABLE $yesja.",
     msg::kMultipleDichotomySetLabelsDiffer,
     {"TABLE", "$yesja"},
     kWarning},
    {"CountedValueLabelsNameNothingApart",
     "QUILT /TABLE $named.",
     msg::kMultipleDichotomySetLabelsDiffer,
     {"TABLE", "$named"},
     kWarning},
    {"NumbersInDichotomyList",
     "QUILT /TABLE $named /CATEGORIES VARIABLES=$named [1 2].",
     msg::kUnknownKeyword,
     {"TABLE", "1"},
     kThrown},
    {"RangeInDichotomyList",
     "QUILT /TABLE $named /CATEGORIES VARIABLES=$named [1 THRU 2].",
     msg::kRangeInDichotomySetCategories,
     {"TABLE", "$named"},
     kThrown},
    {"NonMemberInDichotomyList",
     "QUILT /TABLE $named /CATEGORIES VARIABLES=$named [d3 g].",
     msg::kUnrecognizedVariableInSubcommand,
     {"g", "CATEGORIES"},
     kThrown},
    {"CountDuplicatesBadValue",
     "QUILT /MRSETS COUNTDUPLICATES=MAYBE /TABLE $labels.",
     msg::kUnknownKeyword,
     {"MRSETS", "MAYBE"},
     kThrown},
    {"MrsetsUnknownKeyword",
     "QUILT /MRSETS DUPLICATES=YES /TABLE $labels.",
     msg::kUnknownKeyword,
     {"MRSETS", "DUPLICATES"},
     kThrown},
    {"MrsetsEmpty",
     "QUILT /MRSETS /TABLE $labels.",
     msg::kIncompleteSubcommand,
     {"/", "MRSETS"},
     kThrown},
    {"MrsetsTwice",
     "QUILT /MRSETS COUNTDUPLICATES=YES /MRSETS COUNTDUPLICATES=NO /TABLE g.",
     msg::kDuplicateWarning,
     {"QUILT", "MRSETS"},
     kWarning},
};

INSTANTIATE_TEST_SUITE_P(Commands, SetMessages, ::testing::ValuesIn(kSetMessages),
                         [](const ::testing::TestParamInfo<MessageCase>& info) { return info.param.name; });

TEST(SyntaxMRVariableSetTest, DichotomyListNamesMembers) {
  // A reference to a member is found by its text as written, so the expression spells
  // MISSING as the list does.
  KeptParse parse(
      "QUILT /PCOMPUTE &both=EXPR([d3]+[MISSING]) /TABLE $withmissing "
      "/CATEGORIES VARIABLES=$withmissing [MISSING d3 SUBTOTAL='Any' &both] TOTAL=YES.",
      SetsDataset());
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key << " "
                                 << (parse.Error().arguments.empty() ? "" : parse.Error().arguments.back());
  // d3 is variable 9 and "missing" 11 in the dictionary above; MISSING names the member,
  // since the list is meant for dichotomy sets only.
  const std::vector<std::string> expected = {"variable #11 @-101", "variable #9 @-101",
                                             "subtotal 'Any' @-101", "computed &both"};
  const SyntaxMRVariableSet* set = SetOf(parse, "$withmissing");
  EXPECT_EQ(DescribeList(*set), expected);
  EXPECT_EQ(set->GetParsedCategories().back()->GetIndex(), -101);
}

TEST(SyntaxMRVariableSetTest, CategorySetListsValuesAndDichotomySetSortsMembers) {
  KeptParse parse(
      "QUILT /TABLE $brands BY $media /CATEGORIES VARIABLES=$brands [3 1 OTHERNM] "
      "/CATEGORIES VARIABLES=$media ORDER=D.");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  // A category set's list holds values of its members, as a variable's does.
  EXPECT_EQ(DescribeList(*parse.Variable("$brands")),
            (std::vector<std::string>{"value 3", "value 1", "othernm"}));
  // A dichotomy set sorted by ORDER keeps no list; its members become categories later.
  const SyntaxMRVariableSet* media = SetOf(parse, "$media");
  EXPECT_TRUE(media->GetOrderSet());
  EXPECT_FALSE(media->GetIsOrderA());
  EXPECT_FALSE(media->GetIsExplicit());
}

TEST(SyntaxMRVariableSetTest, MembersBecomeCategoriesOnRequest) {
  KeptParse parse("QUILT /TABLE $media.");
  ASSERT_TRUE(parse.Succeeded());
  auto* media = dynamic_cast<SyntaxMRVariableSet*>(parse.Variable("$media"));
  media->SetCategoriesList();
  EXPECT_TRUE(media->GetIsExplicit());
  EXPECT_EQ(DescribeList(*media), (std::vector<std::string>{"variable #10", "variable #11", "variable #12",
                                                            "variable #13", "variable #14"}));
}

TEST(SyntaxMRVariableSetTest, CountDuplicatesReachesEverySet) {
  KeptParse yes("QUILT /MRSETS COUNTDUPLICATES=YES /TABLE $brands /TABLE $media + $brands.");
  ASSERT_TRUE(yes.Succeeded()) << yes.Error().key;
  EXPECT_TRUE(SetOf(yes, "$brands")->GetCountDuplicates());
  for (const char* name : {"$media", "$brands"}) {
    EXPECT_TRUE(dynamic_cast<const SyntaxMRVariableSet*>(yes.Variable(name, 1))->GetCountDuplicates())
        << name;
  }
  KeptParse byDefault("QUILT /TABLE $brands.");
  EXPECT_FALSE(SetOf(byDefault, "$brands")->GetCountDuplicates());
}

}  // namespace
