// FormatText.h - reading and writing print formats as text such as F8.2, A20 or DATE11
#pragma once

#include <string>

#include "host/data/TARN_Format.h"

/// Reads a format written as a type name, a width and optional decimals ("F8.2",
/// "COMMA10.2", "DOLLAR12.2", "PCT6.1", "E10.3", "N5", "A20", "DATE11"); letter case does
/// not matter. False (with `reason` saying why) when the text is not a format: unknown
/// type name, missing or zero width, decimals on a string or date type, decimals above 16
/// or not below the width. A numeric width above 40 is cut to 40, as for every format.
bool ParseFormatText(const std::string& text, TARN_Format& format, std::string& reason);

/// The format as text: type name, width and, for numeric types, ".decimals" ("F8.2", "A20").
std::string FormatToText(const TARN_Format& format);

/// True for types whose values are dates or times read from text (DATE, ADATE, TIME, ...).
bool IsDateTimeFormat(FormatType type);
