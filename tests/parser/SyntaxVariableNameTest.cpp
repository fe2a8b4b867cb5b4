// SyntaxVariableNameTest.cpp - a variable's value labels, CATEGORIES options and computed-category references
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/engine/ParsedCategory.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxVariableName.h"
#include "parser/VLPair.h"

namespace {

TEST(SyntaxVariableNameTest, ReadsLabelAndValueLabels) {
  KeptParse parse("QUILT /TABLE q1 BY gender.", SurveyDataset());
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  const SyntaxVariableName* q1 = parse.Variable("q1");
  EXPECT_EQ(q1->GetLabel(), "Satisfaction: Overall service");
  // 1..5 and 9 "No answer", in the dictionary's order.
  ASSERT_EQ(q1->GetVLPairCount(), 6);
  EXPECT_EQ(q1->GetValueLabelList()[0].GetLabelData(), "Very dissatisfied");
  EXPECT_EQ(q1->GetValueLabelList()[5].GetLabelData(), "No answer");
  EXPECT_EQ(q1->GetValueLabelList()[5].Value().Number(), 9.0);
  // Defaults before any CATEGORIES.
  EXPECT_TRUE(q1->GetIsTotalNo());
  EXPECT_EQ(q1->GetTotalLabel(), "Total");
  EXPECT_TRUE(q1->GetIsTotalLabelDefault());
  EXPECT_TRUE(q1->GetIsTotalPositionAfter());
  EXPECT_TRUE(q1->GetIsEmptyInclude());
  EXPECT_TRUE(q1->GetIsOrderA());
  EXPECT_TRUE(q1->GetIsMissingExclude());
  EXPECT_EQ(q1->GetSortKey(), TableEncryptionCodes::kSortKeyValue);
  EXPECT_EQ(q1->GetCutPoint(), -1.0);
  EXPECT_FALSE(q1->GetIsExplicit());
  // A scale variable without labels has none.
  KeptParse scale("QUILT /TABLE score.", SurveyDataset());
  EXPECT_EQ(scale.Variable("score")->GetVLPairCount(), 0);
  EXPECT_EQ(scale.Variable("score")->GetValueLabelList(), nullptr);
}

// How a reference of an expression is looked for in the list it is used in.
TEST(SyntaxVariableNameTest, ComputedReferencesAreFoundInTheList) {
  struct Case {
    const char* name;
    const char* expression;
    const char* variable;
    const char* list;
    const char* missing;  // the reference reported as not in the list; null when all are found
  };
  const Case cases[] = {
      {"NumberInList", "[2]", "q1", "[1 2 3]", nullptr},
      {"NumberInRange", "[2]", "q1", "[1 THRU 3]", nullptr},
      // gender has two value labels, so HI stands for 2 here.
      {"NumberUpToHi", "[2]", "gender", "[1 THRU HI]", nullptr},
      {"NumberBeyondHi", "[3]", "gender", "[1 THRU HI]", "3"},
      // Texts are compared: 1.0 in the list is not the reference "1".
      {"NumberWrittenOtherwise", "[1]", "q1", "[1.0 2]", "1"},
      {"RangeByItsEnds", "[1 THRU 2]", "q1", "[1 2 3]", nullptr},
      {"RangeInsideRange", "[2 THRU 3]", "q1", "[1 THRU 4]", nullptr},
      {"RangeNotCovered", "[1 THRU 2]", "q1", "[3 4]", "1 THRU 2"},
      {"MissingKeyword", "MISSING", "q1", "[1 MISSING]", nullptr},
      {"MissingNotListed", "MISSING + [1]", "q1", "[1 2]", "MISSING"},
      {"OtherNotListed", "OTHERNM", "q1", "[1 2]", "OTHERNM"},
      {"SubtotalListed", "SUBTOTAL", "q1", "[1 2 SUBTOTAL 3]", nullptr},
      {"SubtotalNotListed", "SUBTOTAL", "q1", "[1 2]", "SUBTOTAL"},
      // Constants need nothing in the list.
      {"Constant", "[1] * 100", "q1", "[1 2]", nullptr},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    const std::string command = std::string("QUILT /PCOMPUTE &c=EXPR(") + test.expression + ") /TABLE " +
                                test.variable + " /CATEGORIES VARIABLES=" + test.variable + " " +
                                std::string(test.list).insert(std::string(test.list).size() - 1, " &c") + ".";
    KeptParse parse(command, SurveyDataset());
    if (test.missing == nullptr) {
      ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
      EXPECT_EQ(
          Describe(*parse.Variable(test.variable)->GetParsedCategories().back()).rfind("computed &c", 0), 0u);
    } else {
      ASSERT_FALSE(parse.Succeeded());
      EXPECT_EQ(parse.Error().key, msg::kComputedCategoryUsesUnlistedCategory);
      EXPECT_EQ(parse.Error().arguments, (std::vector<std::string>{"c", test.missing, test.variable}));
    }
  }
}

}  // namespace
