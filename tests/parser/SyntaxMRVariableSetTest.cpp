// SyntaxMRVariableSetTest.cpp - multiple-response set nodes: members, counted value, merged labels, lists,
// MRSETS
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/data/Dataset.h"
#include "host/engine/ParsedCategory.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxMRsetElementaryVariable.h"
#include "parser/VLPair.h"

namespace {


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
  KeptParse parse("QUILT /TABLE $media BY gender.", SurveyDataset());
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
  KeptParse brands("QUILT /TABLE $brands.", SurveyDataset());
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

// The messages of sets are cases of diagnostics.txt (DiagnosticCorpusTest).

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
      "/CATEGORIES VARIABLES=$media ORDER=D.", SurveyDataset());
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
  KeptParse parse("QUILT /TABLE $media.", SurveyDataset());
  ASSERT_TRUE(parse.Succeeded());
  auto* media = dynamic_cast<SyntaxMRVariableSet*>(parse.Variable("$media"));
  media->SetCategoriesList();
  EXPECT_TRUE(media->GetIsExplicit());
  EXPECT_EQ(DescribeList(*media), (std::vector<std::string>{"variable #10", "variable #11", "variable #12",
                                                            "variable #13", "variable #14"}));
}

TEST(SyntaxMRVariableSetTest, CountDuplicatesReachesEverySet) {
  KeptParse yes("QUILT /MRSETS COUNTDUPLICATES=YES /TABLE $brands /TABLE $media + $brands.", SurveyDataset());
  ASSERT_TRUE(yes.Succeeded()) << yes.Error().key;
  EXPECT_TRUE(SetOf(yes, "$brands")->GetCountDuplicates());
  for (const char* name : {"$media", "$brands"}) {
    EXPECT_TRUE(dynamic_cast<const SyntaxMRVariableSet*>(yes.Variable(name, 1))->GetCountDuplicates())
        << name;
  }
  KeptParse byDefault("QUILT /TABLE $brands.", SurveyDataset());
  EXPECT_FALSE(SetOf(byDefault, "$brands")->GetCountDuplicates());
}

}  // namespace
