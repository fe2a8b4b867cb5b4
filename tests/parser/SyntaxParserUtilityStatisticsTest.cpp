// SyntaxParserUtilityStatisticsTest.cpp - the statistic vocabulary: keywords, codes, labels, groups, variants
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "host/output/MessageKeys.h"
#include "parser/SyntaxParserUtility.h"

namespace {

using Group = TableEncryptionCodes::StatisticsGroup;

struct LookUp {
  bool found = false;
  int code = -1;
  std::string label;
  Group group = TableEncryptionCodes::kStatGroupCounts;
  int prime = -1;
  int conf = -1;
};

LookUp Find(const std::string& word) {
  LookUp result;
  result.found = SyntaxParserUtility::SupportedStatistics(word, result.code, result.label, result.group,
                                                          result.prime, result.conf);
  return result;
}

// The percentage keywords follow one naming rule: a base word, with "U" in front for the
// unweighted variant, then the family's suffix. Built here from the rule, in code order.
const char* const kBaseKeywords[] = {"ROW", "COL", "TABLE", "SUBTABLE", "LAYER", "LAYERROW", "LAYERCOL"};
const char* const kFamilySuffixes[] = {"PCT.COUNT", "PCT.VALIDN", "PCT.TOTALN", "PCT.SUM",
                                       "PCT.RESPONSES", "PCT.RESPONSES.COUNT", "PCT.COUNT.RESPONSES"};

std::vector<std::string> PercentageKeywords() {
  std::vector<std::string> keywords;
  for (const char* suffix : kFamilySuffixes) {
    for (const char* base : kBaseKeywords) {
      keywords.push_back(std::string(base) + suffix);
      keywords.push_back("U" + std::string(base) + suffix);
    }
  }
  return keywords;
}

// The first code and group of each family of 14 keywords above, in the same order.
struct Family {
  int firstCode;
  Group group;
  const char* labelSuffix;
};
const Family kFamilies[] = {
    {10, TableEncryptionCodes::kStatGroupCounts, " %"},
    {66, TableEncryptionCodes::kStatGroupCounts, " Valid N %"},
    {122, TableEncryptionCodes::kStatGroupCounts, " Total N %"},
    {233, TableEncryptionCodes::kStatGroupSummary, " Sum %"},
    {297, TableEncryptionCodes::kStatGroupResponses, " Responses %"},
    {353, TableEncryptionCodes::kStatGroupResponses, " Response % (Base: Count)"},
    {409, TableEncryptionCodes::kStatGroupResponses, " Count % (Base: Responses)"},
};
const char* const kBaseWords[] = {"Row", "Column", "Table", "Subtable", "Layer", "Layer Row", "Layer Column"};

// Labels that break the family rule; users have always seen them so.
std::string OddLabel(int code) {
  switch (code) {
    case 62:
      return msg::kUnweightedLayerColumnPercent;
    case 337:
      return "Layer Row Response %";
    case 341:
      return "Unweighted Layer Row Response %";
    case 345:
      return "Layer Column Response %";
    case 349:
      return "Unweighted Layer Column Response %";
    case 413:
      return msg::kUnweightedRowCountPercentResponses;
    default:
      return "";
  }
}

}  // namespace

TEST(SyntaxParserUtilityStatistics, EveryPercentageKeywordHasItsRuleCodeLabelAndGroup) {
  const std::vector<std::string> keywords = PercentageKeywords();
  ASSERT_EQ(keywords.size(), 98u);
  for (int i = 0; i < 98; ++i) {
    const int familyIndex = i / 14;
    const int base = (i % 14) / 2;
    const bool unweighted = i % 2 == 1;
    const Family& family = kFamilies[familyIndex];
    // Rule: weighted at first + 8b, unweighted 4 later.
    const int expectedCode = family.firstCode + 8 * base + (unweighted ? 4 : 0);
    std::string expectedLabel =
        std::string(unweighted ? "Unweighted " : "") + kBaseWords[base] + family.labelSuffix;
    if (!OddLabel(expectedCode).empty()) {
      expectedLabel = OddLabel(expectedCode);
    }
    SCOPED_TRACE(keywords[static_cast<size_t>(i)]);
    const LookUp found = Find(keywords[static_cast<size_t>(i)]);
    ASSERT_TRUE(found.found);
    EXPECT_EQ(found.code, expectedCode);
    EXPECT_EQ(found.label, expectedLabel);
    EXPECT_EQ(found.group, family.group);
    EXPECT_EQ(found.prime, expectedCode);
    EXPECT_EQ(found.conf, TableEncryptionCodes::kConfNone);
  }
}

TEST(SyntaxParserUtilityStatistics, KeywordsMatchInAnyCaseAndAliasesShareTheirRow) {
  struct Row {
    const char* word;
    int code;
  };
  const Row rows[] = {
      {"colpct", 18},   {"COLPCT", 18},   {"ColPct.Count", 18}, {"SEMEAN", 182},
      {"MEAN.SE", 182}, {"usemean", 186}, {"UMEAN.SE", 186},    {"ULAYERCOLPCT", 62},
      {"ROWPCT", 10},   {"count", 1},     {"UPTILE", 472},      {"RESPONSES", 289},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.word);
    const LookUp found = Find(row.word);
    ASSERT_TRUE(found.found);
    EXPECT_EQ(found.code, row.code);
  }
}

TEST(SyntaxParserUtilityStatistics, ConfidenceVariantsCarryTheirSuffixes) {
  const LookUp lower = Find("MEAN.LCL");
  ASSERT_TRUE(lower.found);
  EXPECT_EQ(lower.code, 180);  // MEAN 179 + kConfLcl 1
  EXPECT_EQ(lower.label, "Mean ^1 LCL");
  EXPECT_EQ(lower.prime, 179);
  EXPECT_EQ(lower.conf, TableEncryptionCodes::kConfLcl);
  EXPECT_EQ(lower.group, TableEncryptionCodes::kStatGroupSummary);

  const LookUp upper = Find("COLPCT.COUNT.UCL");
  ASSERT_TRUE(upper.found);
  EXPECT_EQ(upper.code, 20);  // 18 + kConfUcl 2
  EXPECT_EQ(upper.label, "Column % ^1 UCL");

  const LookUp error = Find("SUM.SE");
  ASSERT_TRUE(error.found);
  EXPECT_EQ(error.code, 208);  // SUM 205 + kConfSe 3
  EXPECT_EQ(error.label, "Sum SE");

  const LookUp median = Find("MEDIAN.UCL");
  ASSERT_TRUE(median.found);
  EXPECT_EQ(median.code, 189);  // MEDIAN 187 + 2
}

TEST(SyntaxParserUtilityStatistics, WordsOutsideTheVocabularyAreRefused) {
  // No standard error for medians and percentiles, no variants for responses, no variants
  // where a primary leaves no room, and code 465 has no keyword at all.
  for (const char* word :
       {"MEDIAN.SE", "UMEDIAN.SE", "PTILE.SE", "UPTILE.SE", "RESPONSES.LCL", "COLPCT.RESPONSES.SE",
        "ECOUNT.LCL", "MODE.SE", "VARIANCE.UCL", "", "COUNTS", "PCT", "COLPCT.COUNT.X"}) {
    SCOPED_TRACE(word);
    EXPECT_FALSE(Find(word).found);
  }
}

TEST(SyntaxParserUtilityStatistics, EveryRowIsReachedByItsOwnKeyword) {
  // Rows by hand: 30 stand-alone primaries; 3 variants for each of the 10 gap-4 primaries of
  // groups 0 and 1 (COUNT UCOUNT MEAN UMEAN SUM USUM TOTALN UTOTALN VALIDN UVALIDN) = 30;
  // 2 each for MEDIAN UMEDIAN PTILE UPTILE = 8; 98 percentages; 3 variants for each of the
  // 56 percentages of groups 0 and 1 = 168. Total 30 + 30 + 8 + 98 + 168 = 334.
  int rows = 0;
  std::set<std::string> keywords;
  for (int code = 0; code < SyntaxParserUtility::kStatCodeCount; ++code) {
    Group group;
    std::string label;
    std::string keyword;
    if (!SyntaxParserUtility::GetStatisticsDetail(code, group, label, keyword)) {
      continue;
    }
    ++rows;
    SCOPED_TRACE(keyword);
    EXPECT_TRUE(keywords.insert(keyword).second);
    EXPECT_EQ(Find(keyword).code, code);
  }
  EXPECT_EQ(rows, 334);
}

TEST(SyntaxParserUtilityStatistics, DetailOutsideTheTableAnswersFalseWithClearedOutputs) {
  for (int code : {514, -1, 0, 465, 195, 476}) {
    SCOPED_TRACE(code);
    Group group = TableEncryptionCodes::kStatGroupResponses;
    std::string label = "stale";
    std::string keyword = "stale";
    int prime = 99;
    int conf = 99;
    EXPECT_FALSE(SyntaxParserUtility::GetStatisticsDetail(code, group, label, keyword, prime, conf));
    EXPECT_EQ(group, TableEncryptionCodes::kStatGroupCounts);
    EXPECT_TRUE(label.empty());
    EXPECT_TRUE(keyword.empty());
    EXPECT_EQ(prime, 0);
    EXPECT_EQ(conf, TableEncryptionCodes::kConfUnset);
  }
}

TEST(SyntaxParserUtilityStatistics, StatTokenAddsThePercentileOnlyToPercentiles) {
  EXPECT_EQ(SyntaxParserUtility::GetStatToken(468, 25.0), "PTILE 25");
  EXPECT_EQ(SyntaxParserUtility::GetStatToken(472, 2.5), "UPTILE 2.5");
  EXPECT_EQ(SyntaxParserUtility::GetStatToken(468, -1.0), "PTILE");
  EXPECT_EQ(SyntaxParserUtility::GetStatToken(468, 0.0), "PTILE 0");
  EXPECT_EQ(SyntaxParserUtility::GetStatToken(469, 25.0), "PTILE.LCL");
  EXPECT_EQ(SyntaxParserUtility::GetStatToken(1, 25.0), "COUNT");
  EXPECT_EQ(SyntaxParserUtility::GetStatToken(600, 25.0), "");
}
