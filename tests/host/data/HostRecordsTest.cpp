// HostRecordsTest.cpp - the byte records: front-end id, weight word, second word
#include <gtest/gtest.h>

#include <cstring>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/HostRecords.h"

TEST(HostRecords, WordsLiveAtTheirByteOffsets) {
  ResetHostRecords();
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, 0x0102030405060708LL);
  WriteHostWord(CmnGlb, kCmnGlbSecondWordOffset, -7);
  EXPECT_EQ(ReadHostWord(CmnGlb, 224), 0x0102030405060708LL);
  EXPECT_EQ(ReadHostWord(CmnGlb, 928), -7);
  std::int64_t raw = 0;
  std::memcpy(&raw, CmnGlb + 224, sizeof raw);  // a plain 64-bit word, nothing else
  EXPECT_EQ(raw, 0x0102030405060708LL);
  EXPECT_EQ(CmnGlb[223], 0);
  EXPECT_EQ(CmnGlb[232], 0);
  ResetHostRecords();
  EXPECT_EQ(ReadHostWord(CmnGlb, 224), 0);
}

TEST(HostRecords, FrontEndIdIsTwoCharactersAtOffset1024) {
  ResetHostRecords();
  SetFrontEndId("kz");
  EXPECT_EQ(CmaSys[1024], 'k');
  EXPECT_EQ(CmaSys[1025], 'z');
  EXPECT_EQ(CmaSys[1026], 0);  // not terminated by the record, and nothing written past it
  SetFrontEndId("Q");
  EXPECT_EQ(GetFrontEndId(), "Q ");
}

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
