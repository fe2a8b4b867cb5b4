// QuiltDriverTest.cpp - the run's stages: parse failures, host words, caller id, the data pass
#include "QuiltDriver.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/data/ActiveDataSet.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/HostRecords.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/output/BpError.h"
#include "host/output/BpProcedure.h"
#include "host/output/MessageKeys.h"
#include "host/output/OutputDocument.h"
#include "host/tokens/Lexer.h"
#include "quilt.h"

namespace {

constexpr const char* kSmallSurvey =
    "region,gender,wave,wt\n"
    "1,1,1,1\n"
    "2,2,1,0\n"
    "1,2,2,2\n"
    "3,1,3,\n";

/// Installs a data set and a fresh output document for one test, and puts both back.
class RunFixture : public ::testing::Test {
protected:
  void TearDown() override {
    OutputDocument::Install(nullptr);
    ActiveDataSet::Clear();
    ResetHostRecords();
  }

  void Install(const std::string& csv, DatasetLoadOptions options = {}) {
    ActiveDataSet::Install(DatasetLoader::LoadText(csv, "", options));
    SetUpHostRecords(*ActiveDataSet::Get(), /*controlPackage=*/false);
    OutputDocument::Install(&_document);
  }

  void RunCommand(const std::string& text) {
    LexedCommand command = Lexer::Lex(text);
    quilt_(&command);
  }

  /// Runs the data pass of a driver whose command declared no table.
  void RunDataPass() {
    ProcedureDataSource dataSource;
    QuiltDriver driver(&dataSource);
    std::unique_ptr<TARN_InputCaseIterator> iterator(dataSource.MakeIterator(nullptr));
    driver.CreateCubeDispatchers(dynamic_cast<ProcDSIterator*>(iterator.get()));
    BpProcedure procedure("Quilt", 4);
    driver.AggregateAndBuildTables(&procedure, /*controlPackageMode=*/false);
  }

  std::vector<const OutputItem*> Messages() const { return _document.Messages(); }

  OutputDocument _document;
};

TEST_F(RunFixture, CommandWithoutTableEndsFatallyNamingTheMissingSubcommand) {
  Install(kSmallSurvey);
  RunCommand("QUILT");
  const auto messages = Messages();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0]->GetLevel(), kBpLevelFatal);
  EXPECT_EQ(messages[0]->GetKey(), msg::kMissingSubcommand);
  EXPECT_EQ(messages[0]->GetArguments(), (std::vector<std::string>{"QUILT", "TABLE"}));
}

struct SequenceCase {
  const char* command;
  const char* offendingText;
};

class IncorrectSequences : public RunFixture, public ::testing::WithParamInterface<SequenceCase> {};

TEST_P(IncorrectSequences, EndTheCommandBeforeAnyCaseIsRead) {
  Install(kSmallSurvey);
  RunCommand(GetParam().command);
  const auto messages = Messages();
  ASSERT_EQ(messages.size(), 1u) << GetParam().command;
  EXPECT_EQ(messages[0]->GetLevel(), kBpLevelFatal);
  EXPECT_EQ(messages[0]->GetKey(), msg::kIncorrectSequence);
  ASSERT_EQ(messages[0]->GetArguments().size(), 2u);
  EXPECT_EQ(messages[0]->GetArguments()[1], GetParam().offendingText);
}

INSTANTIATE_TEST_SUITE_P(QuiltDriver, IncorrectSequences,
                         ::testing::Values(SequenceCase{"QUILT //", "/"}, SequenceCase{"QUILT /TABLE region /", "/"}));

class HostWords : public RunFixture, public ::testing::WithParamInterface<const char*> {};

// A failed parse, and a base weight that clears the host's weight word while parsing, both
// leave the words as they were before the command.
TEST_P(HostWords, AreRestoredAfterTheCommand) {
  Install(kSmallSurvey);
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, 7);
  WriteHostWord(CmnGlb, kCmnGlbSecondWordOffset, -12345);
  RunCommand(GetParam());
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
  RunCommand("QUILT");
  const auto items = _document.Items();
  ASSERT_FALSE(items.empty());
  EXPECT_EQ(items[0]->GetKind(), OutputItem::kHeading);
  EXPECT_EQ(items[0]->GetText(), GetParam().procedureTitle);
}

INSTANTIATE_TEST_SUITE_P(QuiltDriver, CallerIds,
                         ::testing::Values(CallerCase{"QT", "Quilt"}, CallerCase{"KZ", "Control Package Test"},
                                           CallerCase{"kz", "Control Package Test"},
                                           CallerCase{"KY", "Quilt"}));

TEST_F(RunFixture, ActiveFileWithoutCasesIsFatal) {
  Install("region,gender\n");
  RunDataPass();
  const auto messages = Messages();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0]->GetLevel(), kBpLevelFatal);
  EXPECT_EQ(messages[0]->GetKey(), msg::kNoCases);
}

TEST_F(RunFixture, LayeredSplitsAreReportedOnceAfterThePass) {
  DatasetLoadOptions options;
  options.splitVariables = {"wave"};
  options.splitLayout = "layered";
  Install(kSmallSurvey, options);
  RunDataPass();
  const auto messages = Messages();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0]->GetLevel(), kBpLevelWarning);
  EXPECT_EQ(messages[0]->GetKey(), msg::kSplitsAsRowsNotProcessed);
}

TEST_F(RunFixture, SeparateSplitsAndUnsplitDataPassWithoutMessages) {
  DatasetLoadOptions options;
  options.splitVariables = {"wave"};
  Install(kSmallSurvey, options);
  RunDataPass();
  EXPECT_TRUE(Messages().empty());

  OutputDocument::Install(nullptr);
  _document.Clear();
  Install(kSmallSurvey);
  RunDataPass();
  EXPECT_TRUE(Messages().empty());
}

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
  ActiveDataSet::Install(DatasetLoader::LoadText(kSmallSurvey, dictionary, {}));
  OutputDocument::Install(&_document);
  ProcedureDataSource dataSource;
  QuiltDriver driver(&dataSource);
  std::unique_ptr<TARN_InputCaseIterator> iterator(dataSource.MakeIterator(nullptr));
  auto* caseIterator = dynamic_cast<ProcDSIterator*>(iterator.get());
  driver.CreateCubeDispatchers(caseIterator);
  ASSERT_NE(caseIterator->NextCase(), 0);
  // A labelled value shows its label; an unlabelled one its formatted value, trimmed.
  EXPECT_EQ(driver.getSplitText(), "Survey wave: First, region: 1.00");
}

TEST_F(RunFixture, SplitTextIsEmptyWhenGroupsAreLaidOutTogether) {
  DatasetLoadOptions options;
  options.splitVariables = {"wave"};
  options.splitLayout = "layered";
  Install(kSmallSurvey, options);
  ProcedureDataSource dataSource;
  QuiltDriver driver(&dataSource);
  std::unique_ptr<TARN_InputCaseIterator> iterator(dataSource.MakeIterator(nullptr));
  auto* caseIterator = dynamic_cast<ProcDSIterator*>(iterator.get());
  driver.CreateCubeDispatchers(caseIterator);
  ASSERT_NE(caseIterator->NextCase(), 0);
  EXPECT_EQ(driver.getSplitText(), "");
}

}  // namespace
