// QuiltProgramTest.cpp - the program's exit statuses, error reports and output destinations
#include "QuiltProgram.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

/// A scratch folder with a small data set, removed after each test.
class ProgramFixture : public ::testing::Test {
protected:
  void SetUp() override {
    _folder = fs::temp_directory_path() / ("quilt-program-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                                           "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(_folder);
    Write("small.csv", "region,gender\n1,1\n2,2\n1,2\n");
  }
  void TearDown() override { fs::remove_all(_folder); }

  std::string Write(const std::string& name, const std::string& text) {
    const fs::path path = _folder / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }

  int Run(ProgramOptions options) {
    if (options.dataPath.empty()) options.dataPath = (_folder / "small.csv").string();
    _output.str("");
    _errors.str("");
    QuiltProgram program(std::move(options), _errors);
    return program.Run(_output);
  }

  fs::path _folder;
  std::ostringstream _output;
  std::ostringstream _errors;
};

TEST_F(ProgramFixture, CommandWithoutTableExitsOneWithTheFatalMessageInJson) {
  ProgramOptions options;
  options.commandTexts = {"QUILT."};
  options.format = "json";
  EXPECT_EQ(Run(options), kExitCommandError);
  const nlohmann::json document = nlohmann::json::parse(_output.str());
  const std::string text = document.dump();
  EXPECT_NE(text.find("TABLE subcommand"), std::string::npos) << text;
  EXPECT_NE(text.find("fatal"), std::string::npos) << text;
}

TEST_F(ProgramFixture, UnterminatedQuoteIsReportedWithLineAndColumn) {
  ProgramOptions options;
  options.commandFiles = {Write("bad.qlt", "* first line\nQUILT /TITLES TITLE='open\n  /TABLE region.\n")};
  options.format = "json";
  EXPECT_EQ(Run(options), kExitCommandError);
  EXPECT_NE(_output.str().find("bad.qlt:2:21: unterminated quoted text"), std::string::npos) << _output.str();
}

struct BadInputCase {
  const char* name;
  const char* csv;         // null: the data path does not exist
  const char* dictionary;  // null: no dictionary
  const char* expectedInError;
};

class BadInputs : public ProgramFixture, public ::testing::WithParamInterface<BadInputCase> {};

TEST_P(BadInputs, ExitTwoNamingWhatAndWhere) {
  const BadInputCase& badInput = GetParam();
  ProgramOptions options;
  options.commandTexts = {"QUILT /TABLE region."};
  options.dataPath = badInput.csv == nullptr ? (_folder / "missing.csv").string() : Write("bad.csv", badInput.csv);
  if (badInput.dictionary != nullptr) options.dictionaryPath = Write("bad.dict.json", badInput.dictionary);
  EXPECT_EQ(Run(options), kExitBadInvocation);
  EXPECT_NE(_errors.str().find(badInput.expectedInError), std::string::npos) << _errors.str();
  EXPECT_EQ(_output.str(), "") << "nothing runs on bad input";
}

INSTANTIATE_TEST_SUITE_P(
    QuiltProgram, BadInputs,
    ::testing::Values(BadInputCase{"MissingData", nullptr, nullptr, "missing.csv"},
                      BadInputCase{"NotANumber", "age\n12\nabc\n", "{\"variables\":[{\"name\":\"age\",\"type\":\"numeric\"}]}",
                                   "bad.csv:3"},
                      BadInputCase{"UnknownColumn", "age\n12\n", "{\"variables\":[{\"name\":\"size\"}]}", "variables[0]"},
                      BadInputCase{"BrokenJson", "age\n12\n", "{\"variables\": [", "bad.dict.json"}),
    [](const ::testing::TestParamInfo<BadInputCase>& info) { return std::string(info.param.name); });

TEST_F(ProgramFixture, UnreadableCommandFileIsABadInvocation) {
  ProgramOptions options;
  options.commandFiles = {(_folder / "nowhere.qlt").string()};
  EXPECT_EQ(Run(options), kExitBadInvocation);
  EXPECT_NE(_errors.str().find("nowhere.qlt"), std::string::npos);
}

TEST_F(ProgramFixture, OutputFileIsLeftAloneWhenNothingCanRun) {
  const std::string outputPath = Write("out.txt", "earlier results\n");
  ProgramOptions options;
  options.commandTexts = {"QUILT."};
  options.outputPath = outputPath;
  options.dataPath = (_folder / "missing.csv").string();
  EXPECT_EQ(Run(options), kExitBadInvocation);
  std::ifstream stream(outputPath);
  std::stringstream kept;
  kept << stream.rdbuf();
  EXPECT_EQ(kept.str(), "earlier results\n");
}

TEST_F(ProgramFixture, OutputGoesToTheOutputFile) {
  const std::string outputPath = (_folder / "out.html").string();
  ProgramOptions options;
  options.commandTexts = {"QUILT."};
  options.format = "html";
  options.outputPath = outputPath;
  EXPECT_EQ(Run(options), kExitCommandError);
  EXPECT_EQ(_output.str(), "");
  std::ifstream stream(outputPath);
  std::stringstream written;
  written << stream.rdbuf();
  EXPECT_NE(written.str().find("<html"), std::string::npos);
  EXPECT_NE(written.str().find("TABLE"), std::string::npos);
}

}  // namespace
