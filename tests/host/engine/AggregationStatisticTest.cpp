// AggregationStatisticTest.cpp - statistic identity, and the code table that splits and builds codes
#include <gtest/gtest.h>

#include "host/engine/AggregationStatistic.h"
#include "host/engine/StatisticCodeTable.h"
#include "host/engine/TableEncryptionCodes.h"

namespace {

using Codes = TableEncryptionCodes;

TEST(StatisticCodeTable, DecodesCodesByTheLayoutOfPrimaries) {
  constexpr Codes::StatisticWeighting U = Codes::kStatUnweighted;
  struct Case {
    int code;
    bool exists;
    int prime;
    int conf;
    int family = -1;
    int base = -1;
    Codes::StatisticWeighting weighting = Codes::kStatWeighted;
  };
  // Expected rows read off the code layout: COUNT 1 has room up to UCOUNT 5; ECOUNT 9 is
  // followed at once by ROWPCT.COUNT 10; MEAN 179 + 3 is SEMEAN 182; UMEDIAN 191 is followed
  // by MINIMUM 197, so 192..194 are variants and 195, 196 are gaps; 465 (internal) is
  // followed by PTILE 468 and has no variants; UPTILE 472 keeps 473..475; 476+ are gaps.
  // Percentages: first code of the family + 8 * base, + 4 for the unweighted form.
  const Case cases[] = {
      {0, false, 0, 0},
      {2, true, 1, Codes::kConfLcl},
      {9, true, 9, 0, -1, -1, Codes::kStatEffective},
      {22, true, 22, 0, Codes::kPctFamilyCount, Codes::kPctBaseCol, U},
      {63, true, 62, Codes::kConfLcl, Codes::kPctFamilyCount, Codes::kPctBaseLayerCol, U},
      {461, true, 461, 0, Codes::kPctFamilyCountResponses, Codes::kPctBaseLayerCol, U},
      {182, true, 179, Codes::kConfSe},
      {194, true, 191, 3, -1, -1, U},
      {195, false, 0, 0},
      {465, true, 465, 0},
      {473, true, 472, 1, -1, -1, U},
      {476, false, 0, 0},
      {514, false, 0, 0},
      {-1, false, 0, 0},
      {233, true, 233, 0, Codes::kPctFamilySum, Codes::kPctBaseRow},
      {288, true, 285, 3, Codes::kPctFamilySum, Codes::kPctBaseLayerCol, U},
      {289, true, 289, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "code " << c.code);
    const StatisticCodeInfo* info = StatisticCodeTable::Decode(c.code);
    int prime = -7;
    int conf = -7;
    EXPECT_EQ(AggregationStatistic::GetStatPrimeAndConf(c.code, prime, conf), c.exists);
    ASSERT_EQ(info != nullptr, c.exists);
    if (info == nullptr) continue;
    EXPECT_EQ(info->_primary, c.prime);
    EXPECT_EQ(prime, c.prime);
    EXPECT_EQ(info->_conf, c.conf);
    EXPECT_EQ(info->_family, c.family);
    EXPECT_EQ(info->_base, c.base);
    EXPECT_EQ(info->_weighting, c.weighting);
    EXPECT_EQ(StatisticCodeTable::Encode(c.prime, info->_conf), c.code);
  }
}

TEST(StatisticCodeTable, EncodesOnlyTheVariantsAPrimaryHas) {
  EXPECT_EQ(StatisticCodeTable::Encode(Codes::kStatMaximum, Codes::kConfLcl), -1);  // no room after 178
  EXPECT_EQ(StatisticCodeTable::Encode(180, Codes::kConfNone), -1);                 // a variant is no primary
  EXPECT_EQ(StatisticCodeTable::Encode(Codes::kStatMean, Codes::kConfUnset), Codes::kStatMean);
  EXPECT_EQ(StatisticCodeTable::EncodePercentage(Codes::kPctFamilyResponsesCount, Codes::kPctBaseTable, true),
            373);  // 353 + 8 * 2 (table) + 4 (unweighted)
}

TEST(AggregationStatistic, MatchesOnCodeVariableAndCutPoint) {
  AggregationStatistic a(3, Codes::kStatPtile);
  a.SetPTileCutPoint(25);
  AggregationStatistic b(a);
  EXPECT_TRUE(a == b);
  b.SetPTileCutPoint(50);
  EXPECT_FALSE(a == b);
  EXPECT_FALSE(AggregationStatistic(3, 179) == AggregationStatistic(4, 179));
  EXPECT_EQ(AggregationStatistic(182).GetPrimaryStatistic(), 179);
  EXPECT_EQ(AggregationStatistic(182).GetConfSubType(), Codes::kConfSe);
}

}  // namespace
