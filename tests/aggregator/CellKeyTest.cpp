// CellKeyTest.cpp - the integer cell address: defaults, copies and bounds
#include <gtest/gtest.h>

#include "aggregator/CellKey.h"
#include "host/QuiltAssert.h"

namespace {

TEST(CellKey, StartsAtTotalAndCopiesIndependently) {
  CellKey key(3);
  EXPECT_EQ(key.GetLength(), 3);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(key[i], kCellKeyTotal);
  key[1] = 7;
  CellKey copy(key);
  copy[1] = 8;
  EXPECT_EQ(key[1], 7);
  EXPECT_EQ(copy[1], 8);
  CellKey assigned(1);
  assigned = key;
  EXPECT_EQ(assigned.GetLength(), 3);
  EXPECT_EQ(assigned[1], 7);
}

TEST(CellKey, OutOfRangePositionsAreInternalErrors) {
  CellKey key(2);
  EXPECT_THROW(key[2], QuiltAssertionFailure);
  EXPECT_THROW(key[-1], QuiltAssertionFailure);
  EXPECT_THROW(CellKey(-1), QuiltAssertionFailure);
}

}  // namespace
