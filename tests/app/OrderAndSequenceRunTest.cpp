// OrderAndSequenceRunTest.cpp - the program on the sample survey ends a misordered or overlong command with one fatal message naming the culprit
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <string>
#include <vector>

#include "QuiltProgram.h"

namespace {

struct RefusedCommand {
  const char* name;
  const char* command;
  const char* fatalText;  // the English wording of the catalogue message with its placeholders filled
};

// Every message of a JSON document, as level and text, in document order.
std::vector<std::pair<std::string, std::string>> MessagesOf(const nlohmann::json& node) {
  std::vector<std::pair<std::string, std::string>> messages;
  if (node.is_object() && node.value("type", "") == "message") {
    messages.emplace_back(node.value("level", ""), node.value("text", ""));
  }
  if (node.is_object() || node.is_array()) {
    for (const auto& child : node) {
      const auto inner = MessagesOf(child);
      messages.insert(messages.end(), inner.begin(), inner.end());
    }
  }
  return messages;
}

class RefusedCommands : public ::testing::TestWithParam<RefusedCommand> {};

TEST_P(RefusedCommands, ExitOneWithOneFatalMessageAndNoTable) {
  ProgramOptions options;
  options.dataPath = QuiltProgram::DefaultDataPath();
  options.commandTexts = {GetParam().command};
  options.format = "json";
  std::ostringstream output;
  std::ostringstream errors;
  QuiltProgram program(std::move(options), errors);
  EXPECT_EQ(program.Run(output), kExitCommandError);
  EXPECT_TRUE(errors.str().empty()) << errors.str();
  const nlohmann::json document = nlohmann::json::parse(output.str());
  const auto messages = MessagesOf(document);
  ASSERT_EQ(messages.size(), 1u) << output.str();
  EXPECT_EQ(messages[0].first, "fatal");
  EXPECT_EQ(messages[0].second, GetParam().fatalText);
  // The parse ended the command before any case was read, so nothing was tabulated.
  EXPECT_EQ(document.dump().find("\"type\":\"table\""), std::string::npos) << output.str();
}

INSTANTIATE_TEST_SUITE_P(
    SampleSurvey, RefusedCommands,
    ::testing::Values(
        // Three dimensions at most: the third BY is the culprit (IncorrectSequence naming "BY").
        // Each message starts with where the parser stopped: the token at fault.
        RefusedCommand{"FourthAxis", "QUILT /TABLE region BY gender BY agegrp BY wave.",
                       "-e:1:41: Subcommand TABLE: \"BY\" is not allowed at this point."},
        // A table-level subcommand before any TABLE names the parent it needs and itself.
        RefusedCommand{
            "CategoriesBeforeTable", "QUILT /CATEGORIES VARIABLES=region.",
            "-e:1:8: Subcommand CATEGORIES is out of order: it belongs to a TABLE subcommand and must "
            "come after one."},
        RefusedCommand{"UnknownSubcommand", "QUILT /TABLE region\n /TABEL gender.",
                       "-e:2:3: Subcommand TABLE: unknown keyword \"TABEL\"."},
        RefusedCommand{"UnknownStatistic", "QUILT /TABLE region [COUNT PERCENT].",
                       "-e:1:28: Subcommand TABLE: unknown keyword \"PERCENT\"."},
        RefusedCommand{"UnknownVariable", "QUILT /TABLE region BY nosuch.",
                       "-e:1:24: Unrecognized variable nosuch in the TABLE subcommand."},
        RefusedCommand{"UnclosedParenthesis", "QUILT /TABLE (region.",
                       "-e:1:14: Subcommand TABLE: unbalanced parenthesis at \"(\"."},
        // Nine variables in one sub-table are one more than a cell key holds; the check runs
        // after the parse, before any case is read.
        RefusedCommand{
            "NineNestedVariables", "QUILT /TABLE region > gender > agegrp > wave > q1 > q2 > q3 > q4 > q5.",
            "-e:1:68: Table 1: a sub-table nests or crosses 9 categorical variables, but a table can "
            "hold at most 8. Split the table, or nest fewer variables."}),
    [](const ::testing::TestParamInfo<RefusedCommand>& info) { return std::string(info.param.name); });

}  // namespace
