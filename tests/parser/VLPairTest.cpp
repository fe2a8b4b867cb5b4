// VLPairTest.cpp - comparing value labels, as a set merges its members' labels
#include <gtest/gtest.h>

#include "host/data/ObsValue.h"
#include "parser/VLPair.h"

namespace {

VLPair Text(const char* value, int width, const char* label) {
  ObsValue cells(width, nullptr, -1);
  cells = std::string(value);
  return VLPair(cells.Obs(), label, width);
}

TEST(VLPairTest, CompareTellsValueAndLabelApart) {
  struct Case {
    const char* name;
    VLPair left;
    VLPair right;
    int expected;
  };
  OBS one;
  one.number = 1.0;
  OBS two;
  two.number = 2.0;
  const Case cases[] = {
      {"same value and label", VLPair(&one, "Yes", 0), VLPair(&one, "Yes", 0), 0},
      {"same value, other label", VLPair(&one, "Yes", 0), VLPair(&one, "yes", 0), -1},
      {"other value", VLPair(&one, "Yes", 0), VLPair(&two, "Yes", 0), 1},
      // Strings of members of different widths compare blank-padded.
      {"short and wide string", Text("ab", 4, "A"), Text("ab", 12, "A"), 0},
      {"other string", Text("ab", 4, "A"), Text("abc", 12, "A"), 1},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    EXPECT_EQ(test.left.VLPairCompare(test.right), test.expected);
  }
}

TEST(VLPairTest, WideningKeepsTheText) {
  VLPair pair = Text("ab", 4, "A");
  pair.SetOBSType(12);
  EXPECT_EQ(pair.GetOBSType(), 12);
  EXPECT_EQ(pair.Value().Text(), "ab");
  EXPECT_EQ(pair.VLPairCompare(Text("ab", 12, "A")), 0);
}

}  // namespace
