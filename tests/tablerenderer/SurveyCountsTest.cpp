// SurveyCountsTest.cpp - a delivered table's counts and column percentages against a count of the CSV itself
//
// The table goes the whole way (parser, engine, table builder, renderer, JSON writer); the
// expected numbers come from reading examples/survey.csv line by line here, with nothing of
// the program's data layer, so that a fault anywhere on the way shows as a difference.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "DeliveredTablesSupport.h"

namespace {

std::vector<std::string> SplitFields(const std::string& line) {
  std::vector<std::string> fields;
  std::stringstream stream(line);
  std::string field;
  while (std::getline(stream, field, ',')) fields.push_back(field);
  if (!line.empty() && line.back() == ',') fields.emplace_back();
  return fields;
}

using Cells = std::map<std::pair<std::string, std::string>, double>;  // (region label, gender label)

/// Cases with a labelled region and a labelled gender, labels read straight from the
/// dictionary file; the sample marks no other value as missing for these two variables.
Cells CountSurvey() {
  std::ifstream dictionaryFile(std::string(QUILT_SOURCE_DIR) + "/examples/survey.dict.json");
  const nlohmann::json dictionary = nlohmann::json::parse(dictionaryFile);
  std::map<std::string, nlohmann::json> labels;  // value labels by variable
  for (const auto& variable : dictionary["variables"]) {
    labels[variable["name"]] = variable.value("values", nlohmann::json::object());
  }
  std::ifstream csv(std::string(QUILT_SOURCE_DIR) + "/examples/survey.csv");
  std::string line;
  std::getline(csv, line);
  const std::vector<std::string> header = SplitFields(line);
  const auto region = std::find(header.begin(), header.end(), "region") - header.begin();
  const auto gender = std::find(header.begin(), header.end(), "gender") - header.begin();
  Cells cells;
  while (std::getline(csv, line)) {
    const std::vector<std::string> fields = SplitFields(line);
    if (fields.size() <= static_cast<std::size_t>(std::max(region, gender))) continue;
    const nlohmann::json& regionLabels = labels["region"];
    const nlohmann::json& genderLabels = labels["gender"];
    if (!regionLabels.contains(fields[region]) || !genderLabels.contains(fields[gender])) continue;
    cells[{regionLabels[fields[region]], genderLabels[fields[gender]]}] += 1;
  }
  return cells;
}

TEST(SurveyCounts, RegionByGenderCountsAndColumnPercentagesEqualAnIndependentCount) {
  const Cells expected = CountSurvey();
  ASSERT_EQ(expected.size(), 16u) << "eight regions by two genders, every cell occupied";
  std::map<std::string, double> columnTotals;  // by gender label
  for (const auto& [key, count] : expected) columnTotals[key.second] += count;

  const std::vector<nlohmann::json> tables = delivered::TablesOf(nlohmann::json::parse(delivered::RunOnSurvey(
      delivered::OnBundledSurvey("QUILT /TABLE region BY gender [COUNT COLPCT.COUNT]."), "json")));
  ASSERT_EQ(tables.size(), 1u);

  Cells counts;
  Cells percentages;
  for (const auto& cell : tables.front()["cells"]) {
    ASSERT_EQ(cell["row"].size(), 2u);
    ASSERT_EQ(cell["column"].size(), 3u);
    const std::pair<std::string, std::string> key{cell["row"][1].get<std::string>(),
                                                  cell["column"][1].get<std::string>()};
    const std::string statistic = cell["column"][2].get<std::string>();
    if (statistic == "Count") {
      counts[key] = cell["number"].get<double>();
    } else {
      ASSERT_EQ(statistic, "Column %");
      percentages[key] = cell["number"].get<double>();
    }
  }
  ASSERT_EQ(counts.size(), expected.size());
  ASSERT_EQ(percentages.size(), expected.size());
  for (const auto& [key, count] : expected) {
    EXPECT_EQ(counts[key], count) << key.first << " / " << key.second;
    EXPECT_NEAR(percentages[key], 100.0 * count / columnTotals.at(key.second), 1e-9)
        << key.first << " / " << key.second;
  }
}

}  // namespace
