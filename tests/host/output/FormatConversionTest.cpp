// FormatConversionTest.cpp - printing and reading values across format types, widths and decimals
#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <string>
#include <vector>

#include "host/data/FormatConversion.h"

namespace {

struct PrintCase {
  FormatType type;
  int width;
  int decimals;
  double value;
  const char* expected;  // exactly `width` characters
  const char* why;
};

std::string Print(double value, const TARN_Format& format) {
  OBS cell;
  cell.number = value;
  std::vector<char> buffer(format.Width() + 1, '#');
  ToString(&cell, format, buffer.data());
  return std::string(buffer.data());
}

// Expected texts worked out by hand from the rules in docs/formats.md; dates from Python's
// datetime: (datetime(2024,3,15) - datetime(1582,10,14)).total_seconds() = 13929840000.
const PrintCase kPrintCases[] = {
    {kFormatF, 8, 2, 3.14159, "    3.14", "plain rounding down"},
    {kFormatF, 4, 2, 2.675, "2.68", "decimal half away from zero, though the double is 2.67499..."},
    {kFormatF, 4, 2, 1.005, "1.01", "1.005 is 1.00499... in binary; a reader expects 1.01"},
    {kFormatF, 8, 0, 2.5, "       3", "half away from zero upwards"},
    {kFormatF, 8, 0, -2.5, "      -3", "half away from zero downwards"},
    {kFormatF, 8, 2, -0.004, "    0.00", "a negative that rounds to zero loses its sign"},
    {kFormatF, 4, 2, 0.5, "0.50", "leading zero when it fits"},
    {kFormatF, 3, 2, 0.5, ".50", "leading zero dropped before anything else"},
    {kFormatF, 5, 2, 123.456, "1E+02", "too wide: E notation with the decimals that fit"},
    {kFormatF, 10, 0, 1e20, "  1.00E+20", "huge value falls back to E notation"},
    {kFormatF, 3, 0, 123456, "***", "not even E notation fits"},
    {kFormatF, 8, 2, 1e-20, "    0.00", "tiny value rounds to zero"},
    {kFormatF, 8, 2, -1.7976931348623157e+308, "       .", "system-missing"},
    {kFormatF, 10, 0, 999999.5, "   1000000", "carry through every digit"},
    {kFormatCOMMA, 12, 2, 1234567.891, "1,234,567.89", "grouping commas"},
    {kFormatCOMMA, 8, 0, -1234, "  -1,234", "negative with grouping"},
    {kFormatDOT, 12, 2, 1234567.891, "1.234.567,89", "grouping dots, decimal comma"},
    {kFormatDOLLAR, 10, 2, -1234.5, "-$1,234.50", "sign before the dollar"},
    {kFormatPCT, 6, 1, 45.25, " 45.3%", "45.25 is exact in binary and rounds up"},
    {kFormatE, 10, 3, 12345.678, " 1.235E+04", "scientific with three decimals"},
    {kFormatN, 5, 0, 42, "00042", "leading zeros"},
    {kFormatN, 5, 0, -42, "*****", "N shows no negative values"},
    {kFormatCCA, 9, 1, -1234.56, " -1,234.6", "CCA reads like COMMA"},
    {kFormatCCB, 10, 2, -5, "    (5.00)", "CCB puts negatives in parentheses"},
    {kFormatCCC, 9, 0, 1234, "   $1,234", "CCC is a dollar amount"},
    {kFormatCCD, 12, 2, 1234.5, "1.234,50 EUR", "CCD groups by dots with a euro suffix"},
    {kFormatCCE, 8, 1, 1234.56, "  1234.6", "CCE has no grouping"},
    {kFormatDATE, 11, 0, 13929840000.0, "15-MAR-2024", "date"},
    {kFormatDATE, 9, 0, 13929840000.0, "15-MAR-24", "date with a two-digit year"},
    {kFormatADATE, 10, 0, 13929840000.0, "03/15/2024", "American date"},
    {kFormatEDATE, 10, 0, 13929840000.0, "15.03.2024", "European date"},
    {kFormatSDATE, 10, 0, 13929840000.0, "2024/03/15", "sortable date"},
    {kFormatJDATE, 7, 0, 13929840000.0, "2024075", "31 + 29 + 15 = day 75 of a leap year"},
    {kFormatMOYR, 8, 0, 13929840000.0, "MAR 2024", "month and year"},
    {kFormatQYR, 8, 0, 13929840000.0, "1 Q 2024", "quarter and year"},
    {kFormatDATETIME, 20, 0, 13929889530.0, "15-MAR-2024 13:45:30", "13:45:30 is 49530 s past midnight"},
    {kFormatYMDHMS, 19, 0, 13929889530.0, "2024-03-15 13:45:30", "ISO-like date and time"},
    {kFormatTIME, 8, 0, 3723, "01:02:03", "3723 s = 1 h 2 min 3 s"},
    {kFormatTIME, 10, 1, 3723.25, "01:02:03.3", "fractions of a second, half away from zero"},
    {kFormatMTIME, 5, 0, 125, "02:05", "125 s = 2 min 5 s"},
    {kFormatDTIME, 11, 0, 90061, "01 01:01:01", "90061 s = 1 day 1 h 1 min 1 s"},
    {kFormatWKDAY, 9, 0, 3, "  TUESDAY", "weekday 3 counting Sunday as 1"},
    {kFormatMONTH, 9, 0, 2, " FEBRUARY", "month 2"},
};

class ToStringCases : public ::testing::TestWithParam<PrintCase> {};

TEST_P(ToStringCases, PrintsExactlyTheWidth) {
  const PrintCase& row = GetParam();
  const TARN_Format format(row.type, row.width, row.decimals);
  EXPECT_EQ(Print(row.value, format), row.expected) << row.why;
}

INSTANTIATE_TEST_SUITE_P(FormatConversion, ToStringCases, ::testing::ValuesIn(kPrintCases));

TEST(FormatConversion, FormatNumberTrimsAndTreatsWidthAsMaximum) {
  EXPECT_EQ(FormatNumber(3.14159, TARN_Format(kFormatF, 40, 2)), "3.14");
  EXPECT_EQ(FormatNumber(12.0, TARN_Format(kFormatPCT, 40, 1)), "12.0%");
  EXPECT_EQ(FormatNumber(-1.7976931348623157e+308, TARN_Format(kFormatF, 40, 2)), ".");
  // 1e39 has 40 digits and still fits width 40 in F notation.
  EXPECT_EQ(FormatNumber(1e39, TARN_Format(kFormatF, 40, 0)).size(), 40u);
}

struct ReadCase {
  FormatType type;
  int width;
  int decimals;
  const char* text;
  bool valid;
  double expected;
};

// Expected seconds from Python's datetime as above; the rest by hand.
const ReadCase kReadCases[] = {
    {kFormatF, 8, 2, "3.25", true, 3.25},
    {kFormatF, 8, 2, "  -7 ", true, -7},
    {kFormatF, 8, 2, "abc", false, 0},
    {kFormatF, 8, 2, "1.5x", false, 0},
    {kFormatCOMMA, 10, 1, "1,234.5", true, 1234.5},
    {kFormatDOT, 10, 1, "1.234,5", true, 1234.5},
    {kFormatDOLLAR, 10, 2, "$1,000.25", true, 1000.25},
    {kFormatPCT, 6, 1, "12.5%", true, 12.5},
    {kFormatCCB, 10, 2, "(5.00)", true, -5},
    {kFormatDATE, 11, 0, "2024-03-15", true, 13929840000.0},
    {kFormatDATE, 11, 0, "15-MAR-2024", true, 13929840000.0},
    {kFormatADATE, 10, 0, "03/15/2024", true, 13929840000.0},
    {kFormatEDATE, 10, 0, "15.03.2024", true, 13929840000.0},
    {kFormatDATETIME, 20, 0, "2024-03-15 13:45:30", true, 13929889530.0},
    {kFormatDATETIME, 20, 0, "2024-03-15T13:45:30", true, 13929889530.0},
    {kFormatDATE, 11, 0, "2000-01-01", true, 13166064000.0},
    {kFormatDATE, 11, 0, "2023-02-29", false, 0},
    {kFormatDATE, 11, 0, "1500-01-01", false, 0},
    {kFormatDATE, 11, 0, "yesterday", false, 0},
    {kFormatTIME, 8, 0, "01:02:03", true, 3723},
    {kFormatTIME, 8, 0, "10:61", false, 0},
    {kFormatDTIME, 11, 0, "1 01:01:01", true, 90061},
    {kFormatWKDAY, 9, 0, "tuesday", true, 3},
    {kFormatMONTH, 9, 0, "Feb", true, 2},
};

class FromStringCases : public ::testing::TestWithParam<ReadCase> {};

TEST_P(FromStringCases, ReadsWhatTheFormatWrites) {
  const ReadCase& row = GetParam();
  OBS cell;
  cell.number = 0;
  const int status = FromString(row.text, TARN_Format(row.type, row.width, row.decimals), &cell);
  EXPECT_EQ(status == 0, row.valid) << row.text;
  if (row.valid) {
    EXPECT_DOUBLE_EQ(cell.number, row.expected) << row.text;
  }
}

INSTANTIATE_TEST_SUITE_P(FormatConversion, FromStringCases, ::testing::ValuesIn(kReadCases));

TEST(FormatConversion, BlankOrDotReadsAsSystemMissing) {
  for (const char* text : {"", "   ", "."}) {
    OBS cell;
    ASSERT_EQ(FromString(text, TARN_Format(kFormatF, 8, 2), &cell), 0) << '"' << text << '"';
    EXPECT_EQ(cell.number, TARN_SystemMissing());
  }
}

TEST(FormatConversion, DatesRoundTripThroughTheirOwnFormat) {
  const FormatType types[] = {kFormatDATE,  kFormatADATE,    kFormatEDATE,
                              kFormatSDATE, kFormatDATETIME, kFormatYMDHMS};
  const int widths[] = {11, 10, 10, 10, 20, 19};
  for (std::size_t i = 0; i < std::size(types); ++i) {
    const TARN_Format format(types[i], widths[i], 0);
    // 1582-10-14 is day 0; the later dates cover a leap day and the turn of a century.
    for (double seconds : {0.0, 86400.0, 13166064000.0, 13929889530.0}) {
      const bool hasTime = types[i] == kFormatDATETIME || types[i] == kFormatYMDHMS;
      const double expected = hasTime ? seconds : seconds - std::fmod(seconds, 86400.0);
      OBS cell;
      ASSERT_EQ(FromString(Print(seconds, format).c_str(), format, &cell), 0) << Print(seconds, format);
      EXPECT_DOUBLE_EQ(cell.number, expected) << Print(seconds, format);
    }
  }
}

TEST(FormatConversion, StringsFillTheirCells) {
  OBS cells[2];
  ASSERT_EQ(FromString("abc", TARN_Format(kFormatA, 10, 0), cells), 0);
  EXPECT_EQ(std::string(cells[0].bytes, 8) + std::string(cells[1].bytes, 8), "abc             ");
  char out[11];
  ToString(cells, TARN_Format(kFormatA, 10, 0), out);
  EXPECT_STREQ(out, "abc       ");
  char hex[5];
  ToString(cells, TARN_Format(kFormatAHEX, 4, 0), hex);
  EXPECT_STREQ(hex, "6162");  // 'a' = 0x61, 'b' = 0x62
  OBS read;
  ASSERT_EQ(FromString("4142", TARN_Format(kFormatAHEX, 4, 0), &read), 0);
  EXPECT_EQ(std::string(read.bytes, 2), "AB");
  EXPECT_NE(FromString("4G", TARN_Format(kFormatAHEX, 4, 0), &read), 0);
}

}  // namespace
