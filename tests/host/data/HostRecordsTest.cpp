// HostRecordsTest.cpp - the byte records: front-end id, weight word, second word
#include <gtest/gtest.h>

#include <cstring>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/HostRecords.h"

TEST(HostRecords, SetUpFromADataSet) {
  DatasetLoadOptions weightedOptions;
  weightedOptions.weightVariable = "w";
  const auto weighted = DatasetLoader::LoadText("x,w\n1,2\n", "", weightedOptions);
  const auto plain = DatasetLoader::LoadText("x,w\n1,2\n", "", {});
  WriteHostWord(CmnGlb, kCmnGlbSecondWordOffset, 5);
  SetUpHostRecords(*weighted, /*controlPackage=*/false);
  EXPECT_EQ(GetFrontEndId(), "QT");
  EXPECT_EQ(ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset), 1);
  EXPECT_EQ(ReadHostWord(CmnGlb, kCmnGlbSecondWordOffset), 0);
  SetUpHostRecords(*plain, /*controlPackage=*/true);
  EXPECT_EQ(GetFrontEndId(), "KZ");
  EXPECT_EQ(ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset), 0);
}
