// DeliveredTablesTest.cpp - whole tables on a fourteen-case survey, as text and JSON, against goldens and hand-computed cells
//
// The commands, the hand counts, the key cells and the checks of cases without a golden are in
// cases/delivered.txt.
#include <gtest/gtest.h>

#include "DeliveredTablesSupport.h"

namespace {

QUILT_CASE_FILE_TESTS(DeliveredTables, SmallSurvey, "delivered.txt", "tablerenderer/delivered")

}  // namespace
