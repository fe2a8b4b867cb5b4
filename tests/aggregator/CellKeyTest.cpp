// CellKeyTest.cpp - the integer cell address: defaults and bounds
#include <gtest/gtest.h>

#include "aggregator/CellKey.h"
#include "host/QuiltAssert.h"

namespace {

// Copies are the standard container's; only the starting value and the bounds are ours.
TEST(CellKey, StartsAtTotalAndRefusesPositionsOutOfRange) {
  CellKey key(3);
  EXPECT_EQ(key.GetLength(), 3);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(key[i], kCellKeyTotal);
  EXPECT_THROW(key[3], QuiltAssertionFailure);
  EXPECT_THROW(key[-1], QuiltAssertionFailure);
  EXPECT_THROW(CellKey(-1), QuiltAssertionFailure);
}

}  // namespace
