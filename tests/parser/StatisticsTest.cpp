// StatisticsTest.cpp - what a command cannot hand one bracketed statistic whole, and equality (its labels,
// percentiles and formats through commands are cases of diagnostics.txt)
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SubcommandTestSupport.h"
#include "host/data/TARN_Format.h"
#include "host/output/MessageKeys.h"
#include "parser/Statistics.h"
#include "parser/SyntaxParserUtility.h"

namespace {

// A statistic as a bracket makes it: from the vocabulary, under a parent named "TABLE".
struct Fixture {
  RecordingParent parent{"TABLE"};
  Statistics* statistic = nullptr;

  explicit Fixture(const std::string& keyword) {
    SyntaxParserUtility::InitStatistics();
    int code = 0;
    std::string label;
    TableEncryptionCodes::StatisticsGroup group = TableEncryptionCodes::kStatGroupCounts;
    EXPECT_TRUE(SyntaxParserUtility::SupportedStatistics(keyword, code, label, group)) << keyword;
    statistic = new Statistics(static_cast<TableEncryptionCodes::StatisticCodes>(code), keyword, label);
    parent.Add(statistic);
  }
};

TEST(StatisticsTest, MalformedFormatsRaiseTheirErrors) {
  struct Case {
    const char* word;
    const char* key;
  };
  const std::vector<Case> cases = {
      // Spellings a command line cannot hand over whole (the others are lines of diagnostics.txt).
      {"F5.", msg::kFormatEndsPrematurely},
      {"COMMA8.-1", msg::kDecimalsGreaterThanWidth},
  };
  for (const Case& row : cases) {
    Fixture fixture("COUNT");
    const EventOutcome outcome = RunEvents([&] { fixture.statistic->String(row.word); });
    ASSERT_TRUE(outcome.threw) << row.word;
    EXPECT_EQ(outcome.error.key, row.key) << row.word;
    EXPECT_EQ(outcome.error.arguments, (std::vector<std::string>{"TABLE", row.word}));
  }
}

// A run of points counts as one; a command cannot hand it over (its other format keywords are
// cases of diagnostics.txt).
TEST(StatisticsTest, ARunOfPointsInAFormatCountsAsOne) {
  Fixture fixture("MEAN");
  ASSERT_FALSE(RunEvents([&] { fixture.statistic->String("F2..1"); }).threw);
  ASSERT_TRUE(fixture.statistic->HasFormat());
  EXPECT_EQ(static_cast<int>(fixture.statistic->GetFormat()->Type()), 5);
  EXPECT_EQ(fixture.statistic->GetFormat()->Decimals(), 1);
  EXPECT_TRUE(fixture.parent.GetWords().empty());
}

TEST(StatisticsTest, EqualityComparesPercentilesByCutPoint) {
  Fixture first("PTILE");
  Fixture second("PTILE");
  Fixture mean("MEAN");
  Fixture otherMean("MEAN");
  RunEvents([&] {
    first.statistic->Number(25, "25");
    second.statistic->Number(50, "50");
    otherMean.statistic->Literal("Average");
  });
  EXPECT_FALSE(*first.statistic == *second.statistic);
  EXPECT_TRUE(*mean.statistic == *otherMean.statistic);  // labels do not matter
  EXPECT_FALSE(*mean.statistic == *first.statistic);
  RunEvents([&] { second.statistic->Number(25, "25.0"); });
  EXPECT_TRUE(*first.statistic == *second.statistic);
}

}  // namespace
