// ComputedCategoriesTest.cpp - computed categories in delivered tables on the fourteen-case survey, against goldens and hand-computed cells
//
// The commands, the hand counts and the key cells are in cases/computed.txt.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <vector>

#include "DeliveredTablesSupport.h"

namespace {

using delivered::DimensionLabels;
using delivered::RunOnSurvey;
using delivered::TablesOf;
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

TEST(ComputedCategories, HiddenSourcesLeaveTheHeadersToo) {
  const nlohmann::json table =
      TablesOf(nlohmann::json::parse(RunOnSurvey(delivered::FindGoldenCase(Cases().cases, "range-with-hidden-sources").settings, "json")))[0];
  const std::vector<std::string> rows = DimensionLabels(table, "Row");
  EXPECT_EQ(std::count(rows.begin(), rows.end(), "Low"), 0) << ::testing::PrintToString(rows);
  EXPECT_EQ(std::count(rows.begin(), rows.end(), "High"), 0) << ::testing::PrintToString(rows);
  EXPECT_EQ(std::count(rows.begin(), rows.end(), "Any rating"), 1) << ::testing::PrintToString(rows);
}

}  // namespace
