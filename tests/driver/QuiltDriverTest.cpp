// QuiltDriverTest.cpp - the run's stages: parse failures, host words, caller id, the data pass
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "DriverRunFixture.h"
#include "QuiltDriver.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/output/BpError.h"
#include "host/output/MessageKeys.h"

namespace {

constexpr const char* kSmallSurvey =
    "region,gender,wave,wt\n"
    "1,1,1,1\n"
    "2,2,1,0\n"
    "1,2,2,2\n"
    "3,1,3,\n";

using RunFixture = DriverRunFixture;

struct FatalCase {
  const char* command;
  const char* key;
  std::vector<std::string> arguments;
};

class FatalCommands : public RunFixture, public ::testing::WithParamInterface<FatalCase> {};

// A command without TABLE, and slashes out of place (the parser's diagnostics corpus names
// the same arguments), end the command with one fatal message before any case is read.
TEST_P(FatalCommands, EndBeforeAnyCaseIsReadWithOneMessage) {
  Install(kSmallSurvey);
  Run(GetParam().command);
  const auto messages = _document.Messages();
  ASSERT_EQ(messages.size(), 1u) << GetParam().command;
  EXPECT_EQ(messages[0]->GetLevel(), kBpLevelFatal);
  EXPECT_EQ(messages[0]->GetKey(), GetParam().key);
  EXPECT_EQ(messages[0]->GetArguments(), GetParam().arguments);
}

INSTANTIATE_TEST_SUITE_P(
    QuiltDriver, FatalCommands,
    ::testing::Values(FatalCase{"QUILT", msg::kMissingSubcommand, {"QUILT", "TABLE"}},
                      FatalCase{"QUILT //", msg::kIncorrectSequence, {"QUILT", "/"}},
                      FatalCase{"QUILT /TABLE region /", msg::kIncorrectSequence, {"TABLE", "/"}}));

class HostWords : public RunFixture, public ::testing::WithParamInterface<const char*> {};

// A failed parse, and a base weight that clears the host's weight word while parsing, both
// leave the words as they were before the command.
TEST_P(HostWords, AreRestoredAfterTheCommand) {
  Install(kSmallSurvey);
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, 7);
  WriteHostWord(CmnGlb, kCmnGlbSecondWordOffset, -12345);
  Run(GetParam());
  EXPECT_EQ(ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset), 7);
  EXPECT_EQ(ReadHostWord(CmnGlb, kCmnGlbSecondWordOffset), -12345);
}

INSTANTIATE_TEST_SUITE_P(QuiltDriver, HostWords,
                         ::testing::Values("QUILT //", "QUILT /WEIGHT VARIABLE=wt /TABLE region"));

struct CallerCase {
  const char* frontEndId;
  const char* procedureTitle;
};

class CallerIds : public RunFixture, public ::testing::WithParamInterface<CallerCase> {};

TEST_P(CallerIds, ChooseTheProcedureTitle) {
  Install(kSmallSurvey);
  SetFrontEndId(GetParam().frontEndId);
  Run("QUILT");
  const auto items = _document.Items();
  ASSERT_FALSE(items.empty());
  EXPECT_EQ(items[0]->GetKind(), OutputItem::kHeading);
  EXPECT_EQ(items[0]->GetText(), GetParam().procedureTitle);
}

INSTANTIATE_TEST_SUITE_P(QuiltDriver, CallerIds,
                         ::testing::Values(CallerCase{"QT", "Quilt"},
                                           CallerCase{"KZ", "Control Package Test"},
                                           CallerCase{"kz", "Control Package Test"},
                                           CallerCase{"KY", "Quilt"}));

TEST_F(RunFixture, SplitTextNamesEachSplitVariableAndItsValue) {
  const std::string dictionary = R"({
    "variables": [
      {"name": "region", "format": "F8.2"},
      {"name": "gender"},
      {"name": "wave", "label": "Survey wave", "values": {"1": "First", "2": "Second"}},
      {"name": "wt"}
    ],
    "split": {"variables": ["wave", "region"], "layout": "separate"}
  })";
  Install(kSmallSurvey, dictionary);
  ProcedureDataSource dataSource;
  QuiltDriver driver(&dataSource);
  std::unique_ptr<TARN_InputCaseIterator> iterator(dataSource.MakeIterator(nullptr));
  auto* caseIterator = dynamic_cast<ProcDSIterator*>(iterator.get());
  driver.CreateCubeDispatchers(caseIterator);
  ASSERT_NE(caseIterator->NextCase(), 0);
  // A labelled value shows its label; an unlabelled one its formatted value, trimmed.
  EXPECT_EQ(driver.getSplitText(), "Survey wave: First, region: 1.00");
}

}  // namespace
