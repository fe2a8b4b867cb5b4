// SyntaxTablesCommandTest.cpp - the command root and the host's weight word
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/data/HostRecords.h"

namespace {

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
    const KeptParse parse(row.command);
    EXPECT_EQ(parse.Succeeded(), !row.thrown) << parse.Error().key;
    EXPECT_EQ(ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset), row.after);
  }
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, saved);
}

}  // namespace
