// SyntaxPComputeSubcommandTest.cpp - computed-category expressions: operand and operator lists, texts,
// messages
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "parser/SyntaxPComputeSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/TokenInfo.h"

namespace {

// An operand as "kind/role text", with "#n" for a subtotal's number.
std::vector<std::string> Operands(const SyntaxPComputeSubcommand& pCompute) {
  static const char* const kKinds[] = {"string",  "number",   "lo",        "hi",   "range",   "missing",
                                       "othernm", "subtotal", "hsubtotal", "name", "computed"};
  static const char* const kRoles[] = {"value", "keyword", "constant", "name"};
  std::vector<std::string> described;
  for (const TokenInfo& operand : pCompute.GetExpTokenVector()) {
    std::string text =
        std::string(kKinds[operand.listType]) + "/" + kRoles[operand.tokenType] + " " + operand.token;
    if (operand.index != 0) {
      text += " #" + std::to_string(operand.index);
    }
    described.push_back(text);
  }
  return described;
}

std::string Operators(const SyntaxPComputeSubcommand& pCompute) {
  std::string joined;
  for (const TokenInfo& op : pCompute.GetExpOpTokenVector()) {
    joined += (joined.empty() ? "" : " ") + op.opToken;
  }
  return joined;
}

TEST(SyntaxPComputeSubcommandTest, ExpressionsBecomeOperandsAndOperators) {
  struct Case {
    const char* expression;
    std::vector<std::string> operands;
    const char* operators;
    const char* text;
  };
  const Case cases[] = {
      {"[4]+[5]", {"number/value 4", "number/value 5"}, "+", "[4]+[5]"},
      // The sign of "-2" after an operand is the subtraction, with or without a blank.
      {"1 - 2", {"number/constant 1", "number/constant 2"}, "-", "1-2"},
      {"1 -2", {"number/constant 1", "number/constant 2"}, "-", "1-2"},
      // A leading sign, or one after an operator, stays with the number.
      {"-2 * 3", {"number/constant -2", "number/constant 3"}, "*", "-2*3"},
      {"2 * -3", {"number/constant 2", "number/constant -3"}, "*", "2*-3"},
      // Inside the parentheses "/" divides.
      {"([1] + [2]) / TOTAL",
       {"number/value 1", "number/value 2", "name/keyword TOTAL"},
       "( + ) /",
       "([1]+[2])/TOTAL"},
      {"[1 THRU 5] ** 2", {"range/value 1 THRU 5", "number/constant 2"}, "**", "[1 THRU 5]**2"},
      {"[LO THRU 3] - [4 THRU HI]",
       {"range/value LO THRU 3", "range/value 4 THRU HI"},
       "-",
       "[LO THRU 3]-[4 THRU HI]"},
      {"SUBTOTAL[2] - SUBTOTAL",
       {"subtotal/keyword SUBTOTAL #2", "subtotal/keyword SUBTOTAL #1"},
       "-",
       "SUBTOTAL[2]-SUBTOTAL"},
      {"SUBTOTAL -1", {"subtotal/keyword SUBTOTAL #1", "number/constant 1"}, "-", "SUBTOTAL-1"},
      {"MISSING + OTHERNM", {"missing/keyword MISSING", "othernm/keyword OTHERNM"}, "+", "MISSING+OTHERNM"},
      {"['a'] + ['b']", {"string/name a", "string/name b"}, "+", "[a]+[b]"},
      // A member variable of a set may stand in brackets.
      {"[tv] + [web]", {"name/name tv", "name/name web"}, "+", "[tv]+[web]"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.expression);
    KeptParse parse(std::string("QUILT /PCOMPUTE &a = EXPR(") + test.expression + ") /TABLE q1.", SurveyDataset());
    ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
    const std::vector<SyntaxPComputeSubcommand*> pComputes = parse.Root()->GetPComputeSubcommands();
    ASSERT_EQ(pComputes.size(), 1u);
    EXPECT_EQ(pComputes[0]->GetCatName(), "a");
    EXPECT_EQ(Operands(*pComputes[0]), test.operands);
    EXPECT_EQ(Operators(*pComputes[0]), test.operators);
    EXPECT_EQ(pComputes[0]->GetExpression(), test.text);
  }
}

TEST(SyntaxPComputeSubcommandTest, TotalAndTokenIndex) {
  KeptParse parse("QUILT /PCOMPUTE &share=EXPR([1]/TOTAL*100) /PCOMPUTE &sum=EXPR([1]+[2]) /TABLE q1.", SurveyDataset());
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  const std::vector<SyntaxPComputeSubcommand*> pComputes = parse.Root()->GetPComputeSubcommands();
  ASSERT_EQ(pComputes.size(), 2u);
  EXPECT_TRUE(pComputes[0]->IsTotalSet());
  EXPECT_FALSE(pComputes[1]->IsTotalSet());
  EXPECT_EQ(pComputes[1]->GetExpTokenVector()[0].varName, "sum");
  pComputes[1]->UpdateTokenIndex("5");
  for (const TokenInfo& operand : pComputes[1]->GetExpTokenVector()) {
    EXPECT_EQ(operand.varName, "5");
  }
  // Operators count from 1 in the order written.
  const std::vector<TokenInfo> operators = pComputes[0]->GetExpOpTokenVector();
  ASSERT_EQ(operators.size(), 2u);
  EXPECT_EQ(operators[0].index, 1u);
  EXPECT_EQ(operators[1].index, 2u);
}

// The errors of PCOMPUTE expressions are cases of diagnostics.txt (DiagnosticCorpusTest).
}  // namespace
