// DeliveredTablesSupport.cpp - runs one command over the small survey and finds cells in the JSON output
#include "DeliveredTablesSupport.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "../GoldenFile.h"
#include "QuiltProgram.h"

namespace delivered {

namespace fs = std::filesystem;

std::string RunOnSurvey(const RunSettings& settings, const std::string& format) {
  const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string name = std::string(info->test_suite_name()) + "-" + info->name();
  std::replace(name.begin(), name.end(), '/', '_');
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
  // Data of a case's own go beside the survey, without a dictionary of their own.
  if (!settings.csvText.empty()) std::ofstream(folder / "own.csv", std::ios::binary) << settings.csvText;
  if (!settings.csvText.empty()) options.dataPath = (folder / "own.csv").string();
  if (!settings.dataPath.empty()) options.dataPath = settings.dataPath;
  if (options.dataPath != (folder / "small.csv").string()) options.dictionaryPath.clear();
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

RunSettings OnBundledSurvey(const std::string& command) {
  RunSettings settings;
  settings.command = command;
  settings.dataPath = std::string(QUILT_SOURCE_DIR) + "/examples/survey.csv";
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
  return cell.value(place, nlohmann::json::array()).get<std::vector<std::string>>();
}

// The texts of all cells of `table` whose labels are the rows, columns and layers of `path`.
std::vector<std::string> CellTexts(const nlohmann::json& table, const nlohmann::json& path) {
  std::vector<std::string> texts;
  for (const nlohmann::json& cell : table["cells"]) {
    if (PathOf(cell, "row") == path.at(0) && PathOf(cell, "column") == path.at(1) &&
        PathOf(cell, "layer") == path.at(2)) {
      texts.push_back(cell.value("text", ""));
    }
  }
  return texts;
}

// What a "notes" check reads: see the header.
std::vector<std::string> NotesOf(const nlohmann::json& table, const std::string& rowLabel) {
  std::vector<std::string> texts;
  const auto notesOf = [&](const nlohmann::json& marks, bool withMark) {
    for (const nlohmann::json& mark : marks) {
      for (const nlohmann::json& note : table["notes"]) {
        if (note["mark"] == mark) texts.push_back((withMark ? mark.get<std::string>() + " " : "") + note["text"].get<std::string>());
      }
    }
  };
  if (rowLabel.empty()) {
    texts.push_back(table["caption"].get<std::string>());
    notesOf(table["captionNotes"], false);
    notesOf(table["tableNotes"], false);
  }
  for (const nlohmann::json& cell : table["cells"]) {
    if (rowLabel.empty() || cell["row"].back() != rowLabel) continue;
    texts.push_back(cell["text"].get<std::string>());
    notesOf(cell["notes"], true);
  }
  return texts;
}

}  // namespace

std::vector<nlohmann::json> TablesOf(const nlohmann::json& document) {
  std::vector<nlohmann::json> tables;
  CollectTables(document["items"], tables);
  return tables;
}

std::string GoldenTestName(const ::testing::TestParamInfo<GoldenCase>& info) {
  std::string name = info.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

void ExpectGoldens(const GoldenCase& golden, const std::string& folder) {
  const std::string base = folder + "/" + golden.name;
  EXPECT_TRUE(MatchesGoldenFile(base + ".txt", RunOnSurvey(golden.settings, "text")));
  EXPECT_TRUE(MatchesGoldenFile(base + ".json", RunOnSurvey(golden.settings, "json")));
}

CaseFile ReadCaseFile(const std::string& fileName) {
  const fs::path path = fs::path(QUILT_SOURCE_DIR) / "tests" / "tablerenderer" / "cases" / fileName;
  std::ifstream file(path);
  EXPECT_TRUE(file.good()) << "cannot read " << path;
  CaseFile read;
  GoldenCase* current = nullptr;
  bool wantCommand = false;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    if (line.rfind("== ", 0) == 0) {
      std::istringstream words(line.substr(3));
      std::string name;
      words >> name;
      GoldenCase added{name, RunSettings()};
      RunSettings& settings = added.settings;
      bool golden = true;
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
          settings.dataPath = OnBundledSurvey("").dataPath;
        } else if (setting == "control=yes") {
          settings.controlPackage = true;
        } else if (setting == "golden=no") {
          golden = false;
        } else {
          ADD_FAILURE() << fileName << ": unknown setting '" << setting << "' of " << name;
        }
      }
      current = &(golden ? read.cases : read.probes).emplace_back(added);
      wantCommand = true;
    } else if (current == nullptr) {
      ADD_FAILURE() << fileName << ": a line before the first case: " << line;
    } else if (wantCommand) {
      current->settings.command = line;
      wantCommand = false;
    } else {
      const std::string kind = line.substr(0, line.find(' '));
      const std::string rest = line.substr(std::min(line.size(), kind.size() + 1));
      if (kind == "dictionary") {
        current->settings.extraDictionaryMembers = rest;
      } else if (kind == "csv") {
        current->settings.csvText = nlohmann::json::parse(rest).get<std::string>();
      } else if (std::string(" cell texts subtypes notes output lacks ").find(" " + kind + " ") != std::string::npos) {
        read.checks.push_back({current->name, kind, nlohmann::json::parse("[" + rest + "]")});
      } else {
        ADD_FAILURE() << fileName << ": not a case, command, dictionary, csv or check line: " << line;
      }
    }
  }
  return read;
}

void ExpectChecks(const CaseFile& file) {
  std::map<std::string, std::string> outputs;  // by case and format: each runs once
  // One check at a time, so that a failed assertion ends that check only.
  const auto expect = [&](const CaseCheck& check) {
    SCOPED_TRACE(check.caseName + ": " + check.kind + " " + check.args.dump());
    const GoldenCase* found = nullptr;
    for (const auto* list : {&file.cases, &file.probes}) {
      for (const GoldenCase& golden : *list) found = golden.name == check.caseName ? &golden : found;
    }
    ASSERT_NE(found, nullptr);
    const auto output = [&](const std::string& format) -> const std::string& {
      const std::string key = check.caseName + "/" + format;
      if (!outputs.contains(key)) outputs[key] = RunOnSurvey(found->settings, format);
      return outputs[key];
    };
    const nlohmann::json& args = check.args;
    if (check.kind == "output" || check.kind == "lacks") {
      const std::string& text = output(args.at(0).get<std::string>());
      if (check.kind == "lacks") {
        EXPECT_EQ(text.find(args.at(1).get<std::string>()), std::string::npos) << text;
        return;
      }
      std::size_t at = 0;
      for (const nlohmann::json& fragment : args.at(1)) {
        at = text.find(fragment.get<std::string>(), at);
        ASSERT_NE(at, std::string::npos) << fragment << " in order in\n" << text;
      }
      return;
    }
    const std::vector<nlohmann::json> tables = TablesOf(nlohmann::json::parse(output("json")));
    if (check.kind == "subtypes") {
      std::vector<std::string> subtypes;
      for (const nlohmann::json& table : tables) subtypes.push_back(table["subtype"]);
      EXPECT_EQ(subtypes, args.at(0).get<std::vector<std::string>>());
      return;
    }
    ASSERT_LT(args.at(0).get<std::size_t>(), tables.size());
    const nlohmann::json& table = tables[args.at(0).get<std::size_t>()];
    if (check.kind == "cell") {
      EXPECT_EQ(CellTexts(table, args.at(1)), args.at(2).get<std::vector<std::string>>());
    } else if (check.kind == "texts") {
      std::vector<std::string> texts;
      for (const nlohmann::json& cell : table["cells"]) texts.push_back(cell.value("text", ""));
      EXPECT_EQ(texts, args.at(1).get<std::vector<std::string>>());
    } else {
      const std::vector<std::string> notes = NotesOf(table, args.at(1).get<std::string>());
      const std::vector<std::string> prefixes = args.at(2).get<std::vector<std::string>>();
      ASSERT_EQ(notes.size(), prefixes.size()) << ::testing::PrintToString(notes);
      for (std::size_t k = 0; k < notes.size(); ++k) EXPECT_EQ(notes[k].rfind(prefixes[k], 0), 0u) << notes[k];
    }
  };
  for (const CaseCheck& check : file.checks) expect(check);
}

}  // namespace delivered
