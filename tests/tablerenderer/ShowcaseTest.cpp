// ShowcaseTest.cpp - every table of the bundled showcase, delivered as text, against its golden file
//
// The showcase is what `make run` prints; a change in any of its tables shows here as a
// golden difference to review. The counts of the first table are checked against the CSV
// itself in SurveyCountsTest.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "../GoldenFile.h"
#include "DeliveredTablesSupport.h"
#include "host/tokens/CommandSplitter.h"

namespace {

/// The commands of a command file, as the program cuts them.
std::vector<std::string> CommandsOf(const std::string& path) {
  std::ifstream file(path);
  std::vector<std::string> commands;
  for (const CommandText& command : CommandSplitter::Split(std::string(std::istreambuf_iterator<char>(file), {}), true)) {
    commands.push_back(command.text);
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
  ASSERT_EQ(commands.size(), 9u);  // showcase-1.txt to showcase-9.txt
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
