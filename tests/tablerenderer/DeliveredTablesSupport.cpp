// DeliveredTablesSupport.cpp - runs one command over the small survey and finds cells in the JSON output
#include "DeliveredTablesSupport.h"

#include <algorithm>
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

CaseFile ReadCaseFile(const std::string& fileName) {
  const fs::path path = fs::path(QUILT_SOURCE_DIR) / "tests" / "tablerenderer" / "cases" / fileName;
  std::ifstream file(path);
  EXPECT_TRUE(file.good()) << "cannot read " << path;
  CaseFile read;
  bool wantCommand = false;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    if (line.rfind("== ", 0) == 0) {
      std::istringstream words(line.substr(3));
      std::string name;
      words >> name;
      read.cases.push_back({name, RunSettings("")});
      RunSettings& settings = read.cases.back().settings;
      for (std::string setting; words >> setting;) {
        const std::string key = setting.substr(0, setting.find('='));
        const std::string value = setting.substr(setting.find('=') + 1);
        if (key == "weight") {
          settings.weightVariable = value;
        } else if (key == "split") {
          for (std::size_t start = 0; start <= value.size();) {
            const std::size_t comma = std::min(value.find(',', start), value.size());
            settings.splitVariables.push_back(value.substr(start, comma - start));
            start = comma + 1;
          }
        } else if (key == "layout") {
          settings.splitLayout = value;
        } else if (setting == "data=bundled") {
          settings.dataPath = std::string(QUILT_SOURCE_DIR) + "/examples/survey.csv";
        } else if (setting == "control=yes") {
          settings.controlPackage = true;
        } else {
          ADD_FAILURE() << fileName << ": unknown setting '" << setting << "' of " << name;
        }
      }
      wantCommand = true;
    } else if (read.cases.empty()) {
      ADD_FAILURE() << fileName << ": a line before the first case: " << line;
    } else if (wantCommand) {
      read.cases.back().settings.command = line;
      wantCommand = false;
    } else if (line.rfind("dictionary ", 0) == 0) {
      read.cases.back().settings.extraDictionaryMembers = line.substr(11);
    } else if (line.rfind("cell ", 0) == 0) {
      const nlohmann::json cell = nlohmann::json::parse("[" + line.substr(5) + "]");
      const nlohmann::json& path = cell.at(1);
      read.cells.push_back({read.cases.back().name, cell.at(0).get<int>(),
                            {path.at(0).get<std::vector<std::string>>(), path.at(1).get<std::vector<std::string>>(),
                             path.at(2).get<std::vector<std::string>>()},
                            cell.at(2).get<std::vector<std::string>>()});
    } else {
      ADD_FAILURE() << fileName << ": not a case, command, dictionary or cell line: " << line;
    }
  }
  return read;
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
