// StatisticsTest.cpp - labels, percentiles and display formats of one bracketed statistic
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

TEST(StatisticsTest, PercentileTakesItsNumberAndDefaultLabel) {
  Fixture fixture("PTILE");
  const std::string defaultLabel = fixture.statistic->GetDefaultLabel();
  const EventOutcome outcome = RunEvents([&] { fixture.statistic->Number(25, "25"); });
  EXPECT_FALSE(outcome.threw);
  EXPECT_TRUE(fixture.statistic->HasCutPoint());
  EXPECT_EQ(fixture.statistic->GetCutPoint(), 25.0);
  EXPECT_EQ(fixture.statistic->GetLabel(), defaultLabel + " 25");
  EXPECT_TRUE(fixture.statistic->HasDefaultLabel());
  EXPECT_EQ(fixture.statistic->GetNameToken(), "PTILE 25");
}

TEST(StatisticsTest, UserLabelAfterThePercentileStaysAsWritten) {
  Fixture fixture("PTILE");
  const EventOutcome outcome = RunEvents([&] {
    fixture.statistic->Number(25, "25");
    fixture.statistic->Literal("Quartile");
  });
  EXPECT_FALSE(outcome.threw);
  EXPECT_EQ(fixture.statistic->GetLabel(), "Quartile");
  EXPECT_FALSE(fixture.statistic->HasDefaultLabel());
}

TEST(StatisticsTest, ConfidenceLabelKeepsAPlaceholderForTheLevel) {
  Fixture fixture("MEAN.LCL");
  EXPECT_TRUE(fixture.statistic->HasLabelParameter());  // the vocabulary's label holds ^1
  const EventOutcome outcome = RunEvents([&] { fixture.statistic->Literal("Lower )CILEVEL% )CILEVEL"); });
  EXPECT_FALSE(outcome.threw);
  // Only the first occurrence becomes the placeholder; it shows its own percent sign, so the
  // user's "%" after it goes.
  EXPECT_EQ(fixture.statistic->GetLabel(), "Lower ^1 )CILEVEL");
  EXPECT_TRUE(fixture.statistic->HasLabelParameter());

  Fixture plain("MEAN");
  RunEvents([&] { plain.statistic->Literal("Average )CILEVEL"); });
  EXPECT_EQ(plain.statistic->GetLabel(), "Average )CILEVEL");
  EXPECT_FALSE(plain.statistic->HasLabelParameter());

  Fixture noLevel("MEAN.UCL");
  RunEvents([&] { noLevel.statistic->Literal("Upper"); });
  EXPECT_FALSE(noLevel.statistic->HasLabelParameter());
}

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

TEST(StatisticsTest, FormatKeywordsGiveTypeDecimalsAndDecoration) {
  struct Case {
    const char* word;
    int type;
    int decimals;
    PresentationCodes::DisplayFormat display;
  };
  // Types are the host's format numbers from the keyword table; the width is always 40.
  const std::vector<Case> cases = {
      {"COMMA12.3", 3, 3, PresentationCodes::kDisplayPlain},
      {"comma8.2", 3, 2, PresentationCodes::kDisplayPlain},
      {"F5.2", 5, 2, PresentationCodes::kDisplayPlain},
      {"DATETIME20", 22, 0, PresentationCodes::kDisplayPlain},  // ahead of DATE
      {"DATE11", 20, 0, PresentationCodes::kDisplayPlain},
      {"EDATE10", 38, 0, PresentationCodes::kDisplayPlain},
      {"DOLLAR8.2", 4, 2, PresentationCodes::kDisplayPlain},
      {"NEGPAREN8.1", 5, 1, PresentationCodes::kDisplayNegParen},
      {"NEQUAL5", 5, 0, PresentationCodes::kDisplayNEqual},
      {"PAREN5.0", 5, 0, PresentationCodes::kDisplayParen},
      {"PCTPAREN6.1", 31, 1, PresentationCodes::kDisplayPctParen},
      {"F2..1", 5, 1, PresentationCodes::kDisplayPlain},  // a run of points counts as one
  };
  for (const Case& row : cases) {
    Fixture fixture("MEAN");
    const EventOutcome outcome = RunEvents([&] { fixture.statistic->String(row.word); });
    ASSERT_FALSE(outcome.threw) << row.word;
    ASSERT_TRUE(fixture.statistic->HasFormat()) << row.word;
    const TARN_Format* format = fixture.statistic->GetFormat();
    EXPECT_EQ(static_cast<int>(format->Type()), row.type) << row.word;
    EXPECT_EQ(format->Width(), 40) << row.word;
    EXPECT_EQ(format->Decimals(), row.decimals) << row.word;
    EXPECT_EQ(fixture.statistic->GetStatDisplayFormat(), row.display) << row.word;
    EXPECT_TRUE(fixture.parent.GetWords().empty()) << row.word;
  }
}

TEST(StatisticsTest, AWordThatOnlyStartsLikeAFormatGoesToTheParent) {
  Fixture fixture("COUNT");
  const EventOutcome outcome = RunEvents([&] { fixture.statistic->String("EVALIDN"); });
  EXPECT_FALSE(outcome.threw);
  EXPECT_FALSE(fixture.statistic->HasFormat());
  EXPECT_EQ(fixture.parent.GetWords(), (std::vector<std::string>{"EVALIDN"}));
}

TEST(StatisticsTest, RepeatedOptionsWarnAndTheLaterValueStands) {
  Fixture fixture("COUNT");
  const EventOutcome outcome = RunEvents([&] {
    fixture.statistic->String("PAREN5.2");
    fixture.statistic->String("F6.1");
    fixture.statistic->Literal("a");
    fixture.statistic->Literal("b");
  });
  EXPECT_FALSE(outcome.threw);
  ASSERT_EQ(outcome.reported.size(), 2u);
  EXPECT_EQ(outcome.reported[0].key, msg::kDuplicateWarning);
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"TABLE", "COUNT PAREN5.2 F6.1"}));
  EXPECT_EQ(outcome.reported[1].arguments,
            (std::vector<std::string>{"TABLE", "COUNT PAREN5.2 F6.1 \"a\" \"b\""}));
  EXPECT_EQ(fixture.statistic->GetFormat()->Decimals(), 1);
  // The later plain format replaces the decoration as well.
  EXPECT_EQ(fixture.statistic->GetStatDisplayFormat(), PresentationCodes::kDisplayPlain);
  EXPECT_EQ(fixture.statistic->GetLabel(), "b");
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
