// SyntaxTablesCommandTest.cpp - the command root: repeatable global subcommands, the base weight
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "SubcommandTestSupport.h"
#include "host/data/HostRecords.h"

namespace {

TEST(SyntaxTablesCommand, RepeatedVLabelsAndWeightAreNoDuplicates) {
  const ParseOutcome outcome =
      ParseCommand("QUILT /VLABELS VARIABLES=a DISPLAY=NAME /VLABELS VARIABLES=b DISPLAY=LABEL /TABLE a.");
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  EXPECT_TRUE(outcome.reported.empty());
}

// Through whole commands: only a WEIGHT that names a numeric variable clears the word, and
// only a positive word (case weighting on) is cleared; the entry puts it back after the run.
TEST(SyntaxTablesCommand, TheHostWeightWordIsClearedOnlyByAValidBaseWeight) {
  struct Row {
    const char* command;
    std::int64_t before;
    std::int64_t after;
    bool thrown;
  };
  const Row rows[] = {
      {"QUILT /WEIGHT VARIABLE=w /TABLE a.", 1, 0, false},
      {"QUILT /WEIGHT VARIABLE=w /TABLE a.", 3, 0, false},
      {"QUILT /WEIGHT VARIABLE=w /TABLE a.", 0, 0, false},
      {"QUILT /WEIGHT VARIABLE=w /TABLE a.", -2, -2, false},
      {"QUILT /TABLE a.", 1, 1, false},
      {"QUILT /WEIGHT VARIABLE=nosuch /TABLE a.", 1, 1, true},
      {"QUILT /WEIGHT VARIABLE=s /TABLE a.", 1, 1, true},
  };
  const std::int64_t saved = ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset);
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.command) + " with the word at " + std::to_string(row.before));
    WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, row.before);
    const EventOutcome outcome = ParseAndInspect(row.command, [](SyntaxTablesCommand&) {});
    EXPECT_EQ(outcome.threw, row.thrown) << outcome.error.key;
    EXPECT_EQ(ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset), row.after);
  }
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, saved);
}

}  // namespace
