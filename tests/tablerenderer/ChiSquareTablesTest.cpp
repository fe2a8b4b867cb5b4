// ChiSquareTablesTest.cpp - "Pearson Chi Square Tests" tables on the fourteen-case survey, against goldens
// and scipy's numbers
//
// The commands, their key cells and notes are in cases/chisquare.txt; the numbers in its
// comments come from reference/chisquare_tables_reference.py. The rows of the survey are in
// DeliveredTablesSupport.h.
#include <gtest/gtest.h>

#include "DeliveredTablesSupport.h"

namespace {

QUILT_CASE_FILE_TESTS(ChiSquareTables, SmallSurvey, "chisquare.txt", "tablerenderer/chisquare")

}  // namespace
