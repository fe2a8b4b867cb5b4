// AggregationStatisticTest.cpp - splitting statistic codes into primary and confidence variant
#include <gtest/gtest.h>

#include "host/engine/AggregationStatistic.h"
#include "host/engine/TableEncryptionCodes.h"

namespace {

using Codes = TableEncryptionCodes;

TEST(AggregationStatistic, SplitsCodesByTheLayoutOfPrimaries) {
  struct Case {
    int code;
    bool exists;
    int prime;
    int conf;
  };
  // Expected rows read off the code layout: COUNT 1 has room up to UCOUNT 5; ECOUNT 9 is
  // followed at once by ROWPCT.COUNT 10; MEAN 179 + 3 is SEMEAN 182; UMEDIAN 191 is followed
  // by MINIMUM 197, so 192..194 are variants and 195, 196 are gaps; 465 (internal) is
  // followed by PTILE 468 and has no variants; UPTILE 472 keeps 473..475; 476+ are gaps.
  const Case cases[] = {
      {0, false, 0, 0},
      {1, true, 1, Codes::kConfNone},
      {2, true, 1, Codes::kConfLcl},
      {4, true, 1, Codes::kConfSe},
      {9, true, 9, 0},
      {18, true, 18, 0},
      {22, true, 22, 0},
      {461, true, 461, 0},
      {180, true, 179, Codes::kConfLcl},
      {182, true, 179, Codes::kConfSe},
      {194, true, 191, 3},
      {195, false, 0, 0},
      {196, false, 0, 0},
      {178, true, 178, 0},
      {203, true, 203, 0},
      {465, true, 465, 0},
      {466, false, 0, 0},
      {473, true, 472, 1},
      {476, false, 0, 0},
      {513, false, 0, 0},
      {514, false, 0, 0},
      {-1, false, 0, 0},
      {232, true, 232, 0},
      {233, true, 233, 0},
      {288, true, 285, 3},
      {289, true, 289, 0},
  };
  for (const Case& c : cases) {
    int prime = -7;
    int conf = -7;
    const bool exists = AggregationStatistic::GetStatPrimeAndConf(c.code, prime, conf);
    EXPECT_EQ(exists, c.exists) << "code " << c.code;
    if (c.exists && exists) {
      EXPECT_EQ(prime, c.prime) << "code " << c.code;
      EXPECT_EQ(conf, c.conf) << "code " << c.code;
    }
  }
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
