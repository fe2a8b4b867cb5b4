// DatasetLoaderDateTest.cpp - date and time columns, read from ISO 8601 text by their format
#include <gtest/gtest.h>

#include <string>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/FormatConversion.h"

TEST(DatasetLoaderDate, DateColumnsReadIsoTextThroughTheirFormat) {
  const auto dataset = DatasetLoader::LoadText("d\n2024-10-11\n2024-10-12\n\n2023-01-31\n",
                                               R"({"variables": [{"name": "d", "format": "DATE11"}]})", {},
                                               "survey.csv", "survey.dict.json");
  ASSERT_EQ(dataset->GetCaseCount(), 3u);  // the empty line carries no record
  const double first = dataset->GetCells(0, 0)->number;
  const double second = dataset->GetCells(0, 1)->number;
  const double earlier = dataset->GetCells(0, 2)->number;
  EXPECT_GT(second, first);
  EXPECT_LT(earlier, first);
  // One day apart: the same difference as between any two consecutive days.
  OBS nextDay{};
  ASSERT_EQ(FromString("2024-10-13", dataset->GetVariable(0).GetFormat(), &nextDay), 0);
  EXPECT_DOUBLE_EQ(nextDay.number - second, second - first);
  // Seconds since 1582-10-14, computed with Python's datetime:
  // (date(2024, 10, 11) - date(1582, 10, 14)).days * 86400.
  EXPECT_EQ(first, 13947984000.0);
  char text[16];
  ToString(dataset->GetCells(0, 0), dataset->GetVariable(0).GetFormat(), text);
  EXPECT_STREQ(text, "11-OCT-2024");
}

TEST(DatasetLoaderDate, DateTimesAndTimes) {
  const auto dataset = DatasetLoader::LoadText("when,clock\n2024-10-11T13:45:30,13:45:30\n",
                                               R"({"variables": [{"name": "when", "format": "DATETIME20"},
      {"name": "clock", "format": "TIME8"}]})",
                                               {});
  // (datetime(2024, 10, 11, 13, 45, 30) - datetime(1582, 10, 14)).total_seconds(), by Python.
  EXPECT_EQ(dataset->GetCells(0, 0)->number, 13948033530.0);
  EXPECT_EQ(dataset->GetCells(1, 0)->number, 49530.0);  // 13 * 3600 + 45 * 60 + 30
}
