// DeliveredTablesTest.cpp - whole tables on a fourteen-case survey, as text and JSON, against goldens and hand-computed checks
//
// Each case file gets its golden and check tests here: cases/delivered.txt (the tables, with
// the hand counts), cases/computed.txt (computed categories) and cases/chisquare.txt ("Pearson
// Chi Square Tests", its numbers from reference/chisquare_tables_reference.py). The rows of the
// survey are in DeliveredTablesSupport.h.
#include <gtest/gtest.h>

#include "DeliveredTablesSupport.h"

namespace delivered_tables {
QUILT_CASE_FILE_TESTS(DeliveredTables, SmallSurvey, "delivered.txt", "tablerenderer/delivered")
}  // namespace delivered_tables

namespace computed_categories {
QUILT_CASE_FILE_TESTS(ComputedCategories, SmallSurvey, "computed.txt", "tablerenderer/computed")
}  // namespace computed_categories

namespace chisquare_tables {
QUILT_CASE_FILE_TESTS(ChiSquareTables, SmallSurvey, "chisquare.txt", "tablerenderer/chisquare")
}  // namespace chisquare_tables
