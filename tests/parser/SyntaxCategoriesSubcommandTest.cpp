// SyntaxCategoriesSubcommandTest.cpp - CATEGORIES through whole commands: explicit lists, implicit options, messages
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CategoriesTestSupport.h"
#include "host/engine/ParsedCategory.h"
#include "parser/SyntaxVariableName.h"

namespace {

using Codes = TableEncryptionCodes;

TEST(SyntaxCategoriesSubcommandTest, ExplicitListWithComputedCategoryAndSubtotal) {
  KeptParse parse(
      "QUILT /PCOMPUTE &top2=EXPR([4]+[5]) /TABLE q1 BY gender "
      "/CATEGORIES VARIABLES=q1 [1,2,3,4,5,&top2,SUBTOTAL='Agree'] TOTAL=YES.");
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  const SyntaxVariableName* q1 = parse.Variable("q1");
  ASSERT_NE(q1, nullptr);
  EXPECT_TRUE(q1->GetIsExplicit());
  EXPECT_FALSE(q1->GetIsTotalNo());
  // Position AFTER: the one subtotal closes everything ahead of it, so all carry -101.
  const std::vector<std::string> expected = {"value 1 @-101", "value 2 @-101", "value 3 @-101",
                                             "value 4 @-101", "value 5 @-101", "computed &top2 @-101",
                                             "subtotal 'Agree' @-101"};
  EXPECT_EQ(DescribeList(*q1), expected);
  const ParsedCategory& computed = *q1->GetParsedCategories()[5];
  EXPECT_EQ(computed.GetCategories(), std::vector<std::string>{"[4]+[5]"});
  EXPECT_EQ(computed.GetIndex(), q1->GetIndex());
  EXPECT_TRUE(parse.Reported().empty());
}

}  // namespace
