// DeliveredTablesSupport.cpp - runs one command over the small survey and finds cells in the JSON output
#include "DeliveredTablesSupport.h"

#include <fstream>
#include <sstream>

#include "../GoldenFile.h"
#include "QuiltProgram.h"

namespace delivered {

namespace fs = std::filesystem;

std::string RunOnSurvey(const RunSettings& settings, const std::string& format) {
  const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string name = std::string(info->test_suite_name()) + "-" + info->name();
  for (char& c : name) {
    if (c == '/') c = '_';
  }
  const fs::path folder = fs::temp_directory_path() / ("quilt-delivered-" + name + "-" + format);
  fs::create_directories(folder);
  std::ofstream(folder / "small.csv", std::ios::binary) << kSurveyCsv;
  std::string dictionary = kSurveyDictionary;
  if (!settings.extraDictionaryMembers.empty()) {
    dictionary.insert(dictionary.rfind('}'), ",\n  " + settings.extraDictionaryMembers + "\n");
  }
  std::ofstream(folder / "small.dict.json", std::ios::binary) << dictionary;

  ProgramOptions options;
  options.dataPath = (folder / "small.csv").string();
  options.dictionaryPath = (folder / "small.dict.json").string();
  if (!settings.dataPath.empty()) {
    options.dataPath = settings.dataPath;
    options.dictionaryPath.clear();
  }
  options.controlPackage = settings.controlPackage;
  options.commandTexts = {settings.command};
  options.format = format;
  options.width = 100;
  options.weightVariable = settings.weightVariable;
  options.splitVariables = settings.splitVariables;
  options.splitLayout = settings.splitLayout;
  std::ostringstream output;
  std::ostringstream errors;
  const int status = QuiltProgram(options, errors).Run(output);
  fs::remove_all(folder);
  EXPECT_EQ(status, kExitSuccess) << settings.command << "\n" << errors.str() << output.str();
  return output.str();
}

RunSettings OnBundledSurvey(std::string command, bool controlPackage) {
  RunSettings settings(std::move(command));
  settings.dataPath = std::string(QUILT_SOURCE_DIR) + "/examples/survey.csv";
  settings.controlPackage = controlPackage;
  return settings;
}

namespace {

void CollectTables(const nlohmann::json& items, std::vector<nlohmann::json>& tables) {
  for (const nlohmann::json& item : items) {
    if (item.value("type", "") == "table") tables.push_back(item);
    if (item.contains("children")) CollectTables(item["children"], tables);
  }
}

std::vector<std::string> PathOf(const nlohmann::json& cell, const char* place) {
  std::vector<std::string> labels;
  if (cell.contains(place)) {
    for (const nlohmann::json& label : cell[place]) labels.push_back(label.get<std::string>());
  }
  return labels;
}

void CollectLabels(const nlohmann::json& nodes, std::vector<std::string>& labels) {
  for (const nlohmann::json& node : nodes) {
    const std::string label = node.value("label", "");
    if (node.value("type", "") == "group") {
      labels.push_back((node.value("shown", true) ? "+" : "-") + label);
      CollectLabels(node["children"], labels);
    } else {
      labels.push_back(label);
    }
  }
}

}  // namespace

std::vector<nlohmann::json> TablesOf(const nlohmann::json& document) {
  std::vector<nlohmann::json> tables;
  CollectTables(document["items"], tables);
  return tables;
}

std::vector<std::string> CellTexts(const nlohmann::json& table, const CellPath& path) {
  std::vector<std::string> texts;
  for (const nlohmann::json& cell : table["cells"]) {
    if (PathOf(cell, "row") == path.row && PathOf(cell, "column") == path.column &&
        PathOf(cell, "layer") == path.layer) {
      texts.push_back(cell.value("text", ""));
    }
  }
  return texts;
}

std::vector<std::string> DimensionLabels(const nlohmann::json& table, const std::string& name) {
  std::vector<std::string> labels;
  for (const nlohmann::json& dimension : table["dimensions"]) {
    if (dimension.value("name", "") == name) CollectLabels(dimension["tree"], labels);
  }
  return labels;
}

std::string GoldenTestName(const ::testing::TestParamInfo<GoldenCase>& info) {
  std::string name = info.param.name;
  for (char& c : name) {
    if (c == '-') c = '_';
  }
  return name;
}

void ExpectGoldens(const GoldenCase& golden, const std::string& folder) {
  const std::string base = folder + "/" + golden.name;
  EXPECT_TRUE(MatchesGoldenFile(base + ".txt", RunOnSurvey(golden.settings, "text")));
  EXPECT_TRUE(MatchesGoldenFile(base + ".json", RunOnSurvey(golden.settings, "json")));
}

const GoldenCase& FindGoldenCase(std::span<const GoldenCase> cases, const std::string& name) {
  for (const GoldenCase& golden : cases) {
    if (name == golden.name) return golden;
  }
  ADD_FAILURE() << "no golden case " << name;
  return cases.front();
}

void ExpectCellTexts(std::span<const GoldenCase> cases, std::span<const CellCase> cells) {
  for (const CellCase& cell : cells) {
    SCOPED_TRACE(std::string(cell.goldenCase) + " " + ::testing::PrintToString(cell.path.row) +
                 ::testing::PrintToString(cell.path.column));
    const nlohmann::json document =
        nlohmann::json::parse(RunOnSurvey(FindGoldenCase(cases, cell.goldenCase).settings, "json"));
    const std::vector<nlohmann::json> tables = TablesOf(document);
    ASSERT_LT(cell.table, static_cast<int>(tables.size()));
    EXPECT_EQ(CellTexts(tables[static_cast<size_t>(cell.table)], cell.path), cell.expected);
  }
}

}  // namespace delivered
