// ComputedCategoriesTest.cpp - computed categories in delivered tables on the fourteen-case survey, against goldens and hand-computed cells
//
// The commands, the hand counts and the key cells are in cases/computed.txt.
#include <gtest/gtest.h>

#include "DeliveredTablesSupport.h"

namespace {

QUILT_CASE_FILE_TESTS(ComputedCategories, SmallSurvey, "computed.txt", "tablerenderer/computed")

}  // namespace
