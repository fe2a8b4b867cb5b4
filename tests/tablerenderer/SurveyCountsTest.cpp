// SurveyCountsTest.cpp - a delivered table's counts and column percentages against a count of the CSV itself
//
// The table goes the whole way (parser, engine, table builder, renderer, JSON writer); the
// expected numbers come from reading examples/survey.csv line by line here, with nothing of
// the program's data layer, so that a fault anywhere on the way shows as a difference.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

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

/// Value labels of a variable, read straight from the dictionary file.
std::map<std::string, std::string> ValueLabels(const nlohmann::json& dictionary, const std::string& name) {
  std::map<std::string, std::string> labels;
  for (const auto& variable : dictionary["variables"]) {
    if (variable["name"] != name) continue;
    for (const auto& [value, label] : variable["values"].items()) labels[value] = label.get<std::string>();
  }
  return labels;
}

struct CrossCount {
  std::map<std::pair<std::string, std::string>, double> cells;  // (region label, gender label)
  std::map<std::string, double> columnTotals;                   // by gender label
};

/// Cases with a labelled region and a labelled gender; the sample marks no other value as
/// missing for these two variables.
CrossCount CountSurvey() {
  std::ifstream dictionaryFile(std::string(QUILT_SOURCE_DIR) + "/examples/survey.dict.json");
  const nlohmann::json dictionary = nlohmann::json::parse(dictionaryFile);
  const auto regions = ValueLabels(dictionary, "region");
  const auto genders = ValueLabels(dictionary, "gender");

  std::ifstream csv(std::string(QUILT_SOURCE_DIR) + "/examples/survey.csv");
  std::string line;
  std::getline(csv, line);
  const std::vector<std::string> header = SplitFields(line);
  size_t regionColumn = header.size();
  size_t genderColumn = header.size();
  for (size_t i = 0; i < header.size(); ++i) {
    if (header[i] == "region") regionColumn = i;
    if (header[i] == "gender") genderColumn = i;
  }
  CrossCount count;
  while (std::getline(csv, line)) {
    const std::vector<std::string> fields = SplitFields(line);
    if (fields.size() <= std::max(regionColumn, genderColumn)) continue;
    auto region = regions.find(fields[regionColumn]);
    auto gender = genders.find(fields[genderColumn]);
    if (region == regions.end() || gender == genders.end()) continue;
    count.cells[{region->second, gender->second}] += 1;
    count.columnTotals[gender->second] += 1;
  }
  return count;
}

TEST(SurveyCounts, RegionByGenderCountsAndColumnPercentagesEqualAnIndependentCount) {
  const CrossCount expected = CountSurvey();
  ASSERT_EQ(expected.cells.size(), 16u) << "eight regions by two genders, every cell occupied";

  const std::vector<nlohmann::json> tables = delivered::TablesOf(nlohmann::json::parse(delivered::RunOnSurvey(
      delivered::OnBundledSurvey("QUILT /TABLE region BY gender [COUNT COLPCT.COUNT]."), "json")));
  ASSERT_EQ(tables.size(), 1u);

  std::map<std::pair<std::string, std::string>, double> counts;
  std::map<std::pair<std::string, std::string>, double> percentages;
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
  ASSERT_EQ(counts.size(), expected.cells.size());
  ASSERT_EQ(percentages.size(), expected.cells.size());
  for (const auto& [key, count] : expected.cells) {
    EXPECT_EQ(counts[key], count) << key.first << " / " << key.second;
    EXPECT_NEAR(percentages[key], 100.0 * count / expected.columnTotals.at(key.second), 1e-9)
        << key.first << " / " << key.second;
  }
}

}  // namespace
