// ObsValueTest.cpp - owned values: construction from cells, string assignment, orderings
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "host/data/ObsValue.h"

TEST(ObsValue, StringsAreBlankFilledAtTheirWidth) {
  ObsValue value(10, nullptr, -1);
  value = std::string("abc");
  EXPECT_EQ(value.Type(), 10);
  EXPECT_EQ(std::memcmp(value.Obs(), (std::string("abc") + std::string(13, ' ')).data(), 16),
            0);  // ObsLength(10) = 2 cells, all blank past the text
  value = std::string("abcdefghijklmnop");
  EXPECT_EQ(value.Text(), "abcdefghij");  // cut at the width
  value.SetType(4);
  EXPECT_EQ(value.Text(), "abcd");
  EXPECT_EQ(std::memcmp(value.Obs(), "abcd    ", 8), 0);
}

TEST(ObsValue, CopiesCellsAndCompares) {
  const ObsValue two(2.0);
  const ObsValue copy(0, two.Obs(), -1);
  EXPECT_TRUE(copy == two);
  EXPECT_EQ(ObsValue(1.0).Compare(two), -1);
  EXPECT_EQ(two.Compare(ObsValue(1.0)), 1);
  EXPECT_EQ(two.Compare(copy), 0);
  EXPECT_EQ(ObsValue(0, nullptr, -1).Number(), TARN_SystemMissing());

  ObsValue shortText(3, nullptr, -1);
  shortText = std::string("ab");
  ObsValue longText(12, nullptr, -1);
  longText = std::string("ab");
  EXPECT_TRUE(shortText == longText);  // equal once blank-padded
  EXPECT_EQ(shortText.FastCompare(longText), 0);
  ObsValue later(3, nullptr, -1);
  later = std::string("b");
  EXPECT_EQ(shortText.FastCompare(later), -1);
  EXPECT_EQ(later.FastCompare(shortText), 1);
  EXPECT_FALSE(ObsValue(1.0) == shortText);  // a number never equals a string
}

TEST(ObsValue, TextAssignedToANumberIsReadAsOne) {
  ObsValue value(1.0);
  value = std::string("2.5");
  EXPECT_EQ(value.Number(), 2.5);
  value = std::string("x");
  EXPECT_EQ(value.Number(), TARN_SystemMissing());
}
