// AlphaFormat.h - the format a significance level is printed in by the notes of the test tables
#pragma once

#include <string>

#include "host/output/BpFormatSpec.h"

/// A plain number format with as many decimals as the level was written with ("0.010" gives
/// 3), 2 for a text without a decimal point. A level that would then round to zero (written
/// as "1E-3") gets as many as it takes to show its first digit, at most 16.
BpFormatSpec AlphaFormat(double alpha, const std::string& alphaText);
