// FormatConversion.h - values to text and text to values in a print format
#pragma once

#include <string>

#include "host/data/Obs.h"
#include "host/data/TARN_Format.h"

/// Writes `value` in `format` into `out`: exactly format.Width() characters, right-aligned
/// for numbers, then a NUL. Strings (A, AHEX) write their text. Returns the number of
/// characters written. A number too wide falls back to E notation, then to asterisks.
int ToString(const OBS* value, const TARN_Format& format, char* out);

/// Reads `text` in `format` into `out` (a string fills ObsLength(width) cells, blank-filled).
/// Blank text reads as system-missing for numbers. Returns 0 on success, non-zero when the
/// text is not a value of the format.
int FromString(const char* text, const TARN_Format& format, OBS* out);

/// `value` in `format`, without surrounding blanks, for writers: the width is a maximum.
std::string FormatNumber(double value, const TARN_Format& format);
