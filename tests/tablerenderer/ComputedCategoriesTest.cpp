// ComputedCategoriesTest.cpp - computed categories in delivered tables on the fourteen-case survey, against goldens and hand-computed cells
//
// The commands, the hand counts and the key cells are in cases/computed.txt.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DeliveredTablesSupport.h"

namespace {

using delivered::GoldenCase;

const delivered::CaseFile& Cases() {
  static const delivered::CaseFile file = delivered::ReadCaseFile("computed.txt");
  return file;
}

class ComputedCategories : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(ComputedCategories, TextAndJsonMatchTheirGoldens) {
  delivered::ExpectGoldens(GetParam(), "tablerenderer/computed");
}

INSTANTIATE_TEST_SUITE_P(SmallSurvey, ComputedCategories, ::testing::ValuesIn(Cases().cases), delivered::GoldenTestName);

TEST(ComputedCategories, KeyCellsShowTheHandComputedTexts) { delivered::ExpectCellTexts(Cases().cases, Cases().cells); }

}  // namespace
