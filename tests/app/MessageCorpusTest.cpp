// MessageCorpusTest.cpp - the messages a user reads for whole commands, word for word, and where they stand
//
// The commands and their messages are kept in MessageCorpus.txt, one case per command; the
// two cases below need more than a line of the corpus can say.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "QuiltProgram.h"

namespace {

namespace fs = std::filesystem;

// Wave 1 has no valid score; wave 2 has two. `zero` weighs every case 0.
constexpr const char* kHeader = "region,gender,score,wave,zero\n";
constexpr const char* kRows =
    "1,1,,1,0\n"
    "2,2,,1,0\n"
    "1,2,5,2,0\n"
    "2,1,7,2,0\n";

constexpr const char* kDictionary = R"({"variables": [
  {"name": "region", "label": "Region", "values": {"1": "North", "2": "South"}},
  {"name": "gender", "label": "Gender", "values": {"1": "Male", "2": "Female"}},
  {"name": "score", "label": "Score", "format": "F4.1", "measure": "scale"},
  {"name": "wave", "label": "Wave", "values": {"1": "First", "2": "Second"}}],
 "mrsets": [{"name": "$ones", "label": "Answered 1", "type": "dichotomies", "counted": 1,
             "variables": ["region", "gender"]}]})";

/// One case of the corpus: the command, how it runs, and every message of the run in order.
struct CorpusCase {
  std::string name;
  std::string command;
  bool sampleSurvey = false;  // data=sample: the bundled survey instead of the small data
  bool zeroWeight = false;    // weight=zero
  bool noRows = false;        // rows=none: the small data's header alone
  std::string splitLayout;    // split=separate or split=layered, by wave
  std::vector<std::string> messages;
};

void PrintTo(const CorpusCase& corpusCase, std::ostream* out) {
  *out << corpusCase.name;
}

std::vector<CorpusCase> ReadCorpus() {
  std::ifstream file(fs::path(QUILT_SOURCE_DIR) / "tests" / "app" / "MessageCorpus.txt");
  std::vector<CorpusCase> cases;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    if (line.rfind("== ", 0) == 0) {
      std::istringstream words(line.substr(3));
      CorpusCase& added = cases.emplace_back();
      words >> added.name;
      for (std::string setting; words >> setting;) {
        if (setting == "data=sample")
          added.sampleSurvey = true;
        else if (setting == "weight=zero")
          added.zeroWeight = true;
        else if (setting == "rows=none")
          added.noRows = true;
        else if (setting.rfind("split=", 0) == 0)
          added.splitLayout = setting.substr(6);
        else
          ADD_FAILURE() << "MessageCorpus.txt: unknown setting '" << setting << "' in " << added.name;
      }
    } else if (cases.empty()) {
      ADD_FAILURE() << "MessageCorpus.txt: a line before the first case: " << line;
    } else if (line.rfind("warning: ", 0) == 0 || line.rfind("fatal: ", 0) == 0) {
      cases.back().messages.push_back(line);
    } else {
      cases.back().command += (cases.back().command.empty() ? "" : "\n") + line;
    }
  }
  return cases;
}

struct RunResult {
  int status = -1;
  nlohmann::json document;
};

/// Runs one command (with the settings of `run`) and returns its status and JSON document.
RunResult RunCommand(const CorpusCase& run) {
  ProgramOptions options;
  const fs::path folder = fs::temp_directory_path() / ("quilt-corpus-" + run.name);
  if (run.sampleSurvey) {
    options.dataPath = QuiltProgram::DefaultDataPath();
  } else {
    fs::create_directories(folder);
    std::ofstream(folder / "small.csv", std::ios::binary) << kHeader << (run.noRows ? "" : kRows);
    std::ofstream(folder / "small.dict.json", std::ios::binary) << kDictionary;
    options.dataPath = (folder / "small.csv").string();
    options.dictionaryPath = (folder / "small.dict.json").string();
  }
  options.commandTexts = {run.command};
  options.format = "json";
  if (run.zeroWeight) options.weightVariable = "zero";
  if (!run.splitLayout.empty()) {
    options.splitVariables = {"wave"};
    options.splitLayout = run.splitLayout;
  }
  std::ostringstream output;
  std::ostringstream errors;
  RunResult result;
  result.status = QuiltProgram(options, errors).Run(output);
  fs::remove_all(folder);
  EXPECT_TRUE(errors.str().empty()) << errors.str();
  result.document = nlohmann::json::parse(output.str());
  return result;
}

/// The document as a reader meets it: one line per item, two blanks of indent per heading
/// level; headings as "# text", tables as "table" and their title, messages as level and text.
void Outline(const nlohmann::json& items, int depth, bool withTables, std::vector<std::string>& lines) {
  for (const nlohmann::json& item : items) {
    const std::string pad(static_cast<std::size_t>(depth) * 2, ' ');
    const std::string type = item.value("type", "");
    if (type == "heading") {
      if (withTables) lines.push_back(pad + "# " + item.value("text", ""));
      Outline(item["children"], depth + 1, withTables, lines);
    } else if (type == "message") {
      lines.push_back((withTables ? pad : "") + item.value("level", "") + ": " + item.value("text", ""));
    } else if (type == "table") {
      lines.push_back(withTables ? pad + "table " + item.value("title", "") : "table");
    }
  }
}

std::vector<std::string> MessagesOf(const RunResult& result, bool* anyTable) {
  std::vector<std::string> lines;
  Outline(result.document["items"], 0, /*withTables=*/false, lines);
  std::vector<std::string> messages;
  for (const std::string& line : lines) {
    if (line == "table")
      *anyTable = true;
    else
      messages.push_back(line);
  }
  return messages;
}

class MessageCorpus : public ::testing::TestWithParam<CorpusCase> {};

TEST_P(MessageCorpus, ReadsAsWorded) {
  const CorpusCase& corpusCase = GetParam();
  const RunResult result = RunCommand(corpusCase);
  bool anyTable = false;
  const std::vector<std::string> messages = MessagesOf(result, &anyTable);
  EXPECT_EQ(messages, corpusCase.messages);
  bool fatal = false;
  for (const std::string& message : corpusCase.messages) fatal = fatal || message.rfind("fatal: ", 0) == 0;
  // A fatal message ends the command before any case is tabulated.
  EXPECT_EQ(result.status, fatal ? kExitCommandError : kExitSuccess);
  EXPECT_EQ(anyTable, !fatal);
}

INSTANTIATE_TEST_SUITE_P(Commands, MessageCorpus, ::testing::ValuesIn(ReadCorpus()),
                         [](const ::testing::TestParamInfo<CorpusCase>& info) {
                           std::string name = info.param.name;
                           for (char& c : name) {
                             if (c == '-') c = '_';
                           }
                           return name;
                         });

// Two texts over the limit: one warning, naming the first.
TEST(MessageCorpus, TooLongTextsWarnOnce) {
  const std::string longText(1100, 'x');
  CorpusCase run;
  run.name = "long-texts";
  run.command = "QUILT /TABLE region /TITLES TITLE='" + longText + "' CAPTION='" + longText + "'.";
  bool anyTable = false;
  EXPECT_EQ(
      MessagesOf(RunCommand(run), &anyTable),
      std::vector<std::string>{"warning: Subcommand TITLES: the text after TITLE is longer than 1023 bytes; "
                               "only its first 1023 bytes are used."});
  EXPECT_TRUE(anyTable);
}

// Each group's messages stand under the group's heading, in the order they were made, for
// the first table of a group as for the later ones.
TEST(MessageCorpus, SeparateSplitMessagesFollowTheirGroupHeading) {
  CorpusCase run;
  run.name = "split-order";
  run.command = "QUILT /TABLE region > score [MEAN] /TABLE region [COUNT] /TABLE score [MEAN] BY gender.";
  run.splitLayout = "separate";
  std::vector<std::string> outline;
  Outline(RunCommand(run).document["items"], 0, /*withTables=*/true, outline);
  const std::vector<std::string> expected = {
      "# Quilt",
      "  # Wave: First",
      "    warning: In split Wave=First there are no valid cases for the scale variables Score in table 1. "
      "Their statistics are missing.",
      "    table Quilt Table 1",
      "    table Quilt Table 2",
      "    warning: In split Wave=First there are no valid cases for the scale variables Score in table 3. "
      "Their statistics are missing.",
      "    table Quilt Table 3",
      "  # Wave: Second",
      "    table Quilt Table 1",
      "    table Quilt Table 2",
      "    table Quilt Table 3",
  };
  EXPECT_EQ(outline, expected);
}

}  // namespace
