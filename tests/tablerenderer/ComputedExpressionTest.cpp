// ComputedExpressionTest.cpp - precedence, grouping and missing values of computed-category expressions
#include "tablerenderer/ComputedExpression.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "host/data/Obs.h"

namespace {

using Op = ExpressionToken::OP_CODE;
constexpr Op kAdd = ExpressionToken::kExprOpAdd;
constexpr Op kSub = ExpressionToken::kExprOpSubtract;
constexpr Op kMul = ExpressionToken::kExprOpMultiply;
constexpr Op kDiv = ExpressionToken::kExprOpDivide;
constexpr Op kPow = ExpressionToken::kExprOpPower;
constexpr Op kOpen = ExpressionToken::kExprOpLeftParen;
constexpr Op kClose = ExpressionToken::kExprOpRightParen;

const double kSysmis = TARN_SystemMissing();
const double kInfinity = std::numeric_limits<double>::infinity();

struct ExpressionCase {
  const char* text;  // the expression as a user writes it
  std::vector<double> numbers;
  std::vector<Op> operators;  // as the parser lists them, the ")" closing EXPR included
  double expected;
};

// Every expected value is the arithmetic of `text` done by hand.
const ExpressionCase kCases[] = {
    // One level for *, / and ** from the left: (2 * 3) ** 2.
    {"2 * 3 ** 2", {2, 3, 2}, {kMul, kPow, kClose}, 36},
    {"2 ** 3 * 2", {2, 3, 2}, {kPow, kMul, kClose}, 16},
    {"2 + 3 * 4", {2, 3, 4}, {kAdd, kMul, kClose}, 14},
    {"(2 + 3) * 4", {2, 3, 4}, {kOpen, kAdd, kClose, kMul, kClose}, 20},
    {"2 * (3 + 4)", {2, 3, 4}, {kMul, kOpen, kAdd, kClose, kClose}, 14},
    {"10 - 2 * 3 - 1", {10, 2, 3, 1}, {kSub, kMul, kSub, kClose}, 3},
    {"10 - 4 - 3", {10, 4, 3}, {kSub, kSub, kClose}, 3},
    {"12 / 3 / 2", {12, 3, 2}, {kDiv, kDiv, kClose}, 2},
    {"12 / 3 * 2", {12, 3, 2}, {kDiv, kMul, kClose}, 8},
    {"((1 + 2) * (3 + 4))", {1, 2, 3, 4}, {kOpen, kOpen, kAdd, kClose, kMul, kOpen, kAdd, kClose, kClose, kClose}, 21},
    // 1 - (2 - (-1)) = 1 - 3.
    {"1 - (2 - (3 - 4))", {1, 2, 3, 4}, {kSub, kOpen, kSub, kOpen, kSub, kClose, kClose, kClose}, -2},
    {"5 ** 0.5 ** 2", {5, 0.5, 2}, {kPow, kPow, kClose}, 5},
    // Without operators the first number is the value; without numbers, 0.
    {"[4]", {7}, {}, 7},
    {"nothing", {}, {}, 0},
    // Only the closing parenthesis of EXPR: still the single number.
    {"[4])", {7}, {kClose}, 7},
    // Division by zero is missing, and stays missing through the rest of the expression.
    {"1 / 0", {1, 0}, {kDiv, kClose}, kSysmis},
    {"-1 / 0", {-1, 0}, {kDiv, kClose}, kSysmis},
    {"1 / 0 + 5", {1, 0, 5}, {kDiv, kAdd, kClose}, kSysmis},
    {"3 + 1 / 0 * 2", {3, 1, 0, 2}, {kAdd, kDiv, kMul, kClose}, kSysmis},
    // Zero by zero is neither infinite nor missing: it reaches the output layer as it stands.
    {"0 / 0", {0, 0}, {kDiv, kClose}, std::numeric_limits<double>::quiet_NaN()},
    // A missing operand makes the value missing before any arithmetic; an operand without
    // data (infinity) makes it infinite unless another is missing.
    {"sysmis + 1", {kSysmis, 1}, {kAdd, kClose}, kSysmis},
    {"inf - 1", {kInfinity, 1}, {kSub, kClose}, kInfinity},
    {"inf * sysmis", {kInfinity, kSysmis}, {kMul, kClose}, kSysmis},
    {"0 * inf", {0, kInfinity}, {kMul, kClose}, kInfinity},
};

class ComputedExpressionValue : public ::testing::TestWithParam<ExpressionCase> {};

TEST_P(ComputedExpressionValue, FollowsPrecedenceAndMissingRules) {
  const ExpressionCase& c = GetParam();
  const double value = ComputedExpression(c.numbers, c.operators, kSysmis).Evaluate();
  if (std::isnan(c.expected)) {
    EXPECT_TRUE(std::isnan(value)) << c.text;
  } else if (c.expected == kSysmis || std::isinf(c.expected)) {
    EXPECT_EQ(value, c.expected) << c.text;
  } else {
    EXPECT_DOUBLE_EQ(value, c.expected) << c.text;
  }
}

INSTANTIATE_TEST_SUITE_P(Expressions, ComputedExpressionValue, ::testing::ValuesIn(kCases));

}  // namespace
