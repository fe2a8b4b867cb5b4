// AdjustMeasurementLevelsTest.cpp - levels settled from the data for variables of unknown level
#include <gtest/gtest.h>

#include <string>

#include "host/data/AdjustMeasurementLevels.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/TARN_Variable.h"

namespace {

// A CSV with one column `x` holding the given values, one per case.
std::string Column(const std::vector<std::string>& values) {
  std::string csv = "x\n";
  for (const std::string& value : values) csv += value + "\n";
  return csv;
}

int AdjustedLevel(const std::string& csv, const std::string& dictionary = "") {
  ProcedureDataSource source(DatasetLoader::LoadText(csv, dictionary, {}));
  AdjustMeasurementLevels(source);
  return source.GetVariable(0)->GetMeasurementLevel();
}

}  // namespace

TEST(AdjustMeasurementLevels, FromTheData) {
  std::vector<std::string> twentyFour;
  for (int i = 1; i <= 24; ++i) twentyFour.push_back(std::to_string(i));
  std::vector<std::string> twentyFive = twentyFour;
  twentyFive.push_back("25");
  std::vector<std::string> repeated;  // 24 distinct values, each seen many times
  for (int round = 0; round < 10; ++round)
    repeated.insert(repeated.end(), twentyFour.begin(), twentyFour.end());

  EXPECT_EQ(AdjustedLevel(Column({"1", "2", "1", ""})), kMeasureNominal);
  EXPECT_EQ(AdjustedLevel(Column(twentyFour)), kMeasureNominal);  // at the threshold
  EXPECT_EQ(AdjustedLevel(Column(repeated)), kMeasureNominal);
  EXPECT_EQ(AdjustedLevel(Column(twentyFive)), kMeasureScale);    // one past it
  EXPECT_EQ(AdjustedLevel(Column({"1", "2.5"})), kMeasureScale);  // not integers
  EXPECT_EQ(AdjustedLevel(Column({"a", "b"})), kMeasureNominal);  // strings
  EXPECT_EQ(AdjustedLevel(Column({"", ""})), kMeasureNominal);    // no valid value: nothing says scale
}

TEST(AdjustMeasurementLevels, LabelsMissingValuesAndStatedLevels) {
  const std::vector<std::string> manyValues = {"1", "2.5", "3.25", "4", "5", "6", "7"};
  // Value labels make a variable nominal whatever its values.
  EXPECT_EQ(AdjustedLevel(Column(manyValues), R"({"variables":[{"name":"x","values":{"1":"One"}}]})"),
            kMeasureNominal);
  // User-missing values do not count: 2.5 is the only non-integer, and it is missing.
  EXPECT_EQ(
      AdjustedLevel(Column({"1", "2", "2.5"}), R"({"variables":[{"name":"x","missing":{"values":[2.5]}}]})"),
      kMeasureNominal);
  // A stated level stands.
  EXPECT_EQ(AdjustedLevel(Column({"1", "2"}), R"({"variables":[{"name":"x","measure":"scale"}]})"),
            kMeasureScale);
  EXPECT_EQ(AdjustedLevel(Column(manyValues), R"({"variables":[{"name":"x","measure":"ordinal"}]})"),
            kMeasureOrdinal);
}

TEST(AdjustMeasurementLevels, LeavesTheLoadedDataSetAlone) {
  const auto dataset = DatasetLoader::LoadText(Column({"1.5", "2"}), "", {});
  ProcedureDataSource source(dataset);
  AdjustMeasurementLevels(source);
  EXPECT_EQ(source.GetVariable(0)->GetMeasurementLevel(), kMeasureScale);
  EXPECT_EQ(dataset->GetVariable(0).GetMeasurementLevel(), kMeasureUnknown);
}
