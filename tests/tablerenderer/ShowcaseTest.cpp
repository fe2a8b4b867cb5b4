// ShowcaseTest.cpp - every table of the bundled showcase, delivered as text, against its golden file
//
// The showcase is what `make run` prints; a change in any of its tables shows here as a
// golden difference to review. The counts of the first table are checked against the CSV
// itself in SurveyCountsTest.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "../GoldenFile.h"
#include "DeliveredTablesSupport.h"

namespace {

/// The commands of a command file: each runs from a line starting with QUILT to the line
/// that ends with the period. Comment lines (starting with '*') stand between commands.
std::vector<std::string> CommandsOf(const std::string& path) {
  std::ifstream file(path);
  std::vector<std::string> commands;
  std::string line;
  std::string current;
  while (std::getline(file, line)) {
    if (current.empty() && line.rfind("QUILT", 0) != 0) continue;
    current += line + "\n";
    const size_t last = line.find_last_not_of(" \t\r");
    if (last != std::string::npos && line[last] == '.') {
      commands.push_back(current);
      current.clear();
    }
  }
  return commands;
}

std::string RunText(const std::string& command, const std::vector<std::string>& splitVariables) {
  delivered::RunSettings settings = delivered::OnBundledSurvey(command);
  settings.splitVariables = splitVariables;
  return delivered::RunOnSurvey(settings, "text");
}

TEST(Showcase, EveryTableMatchesItsGolden) {
  const std::vector<std::string> commands = CommandsOf(std::string(QUILT_SOURCE_DIR) + "/examples/showcase.qlt");
  ASSERT_GE(commands.size(), 6u);
  for (size_t i = 0; i < commands.size(); ++i) {
    SCOPED_TRACE(commands[i]);
    EXPECT_TRUE(MatchesGoldenFile("tablerenderer/showcase-" + std::to_string(i + 1) + ".txt", RunText(commands[i], {})));
  }
}

TEST(Showcase, WavesAsSeparateSplitGroupsMatchTheGolden) {
  const std::vector<std::string> commands =
      CommandsOf(std::string(QUILT_SOURCE_DIR) + "/examples/showcase-waves.qlt");
  ASSERT_EQ(commands.size(), 1u);
  const std::string output = RunText(commands[0], {"wave"});
  // One table per wave, each titled with its group.
  for (const char* wave : {"Spring", "Summer", "Autumn", "Winter"}) {
    EXPECT_NE(output.find(std::string("Region by gender, Survey wave: ") + wave), std::string::npos) << wave;
  }
  EXPECT_TRUE(MatchesGoldenFile("tablerenderer/showcase-waves.txt", output));
}

}  // namespace
