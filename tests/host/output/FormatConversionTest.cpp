// FormatConversionTest.cpp - printing and reading values across format types, widths and decimals
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "host/data/FormatConversion.h"
#include "host/data/FormatText.h"

namespace {

std::string Print(double value, const TARN_Format& format) {
  OBS cell;
  cell.number = value;
  std::vector<char> buffer(format.Width() + 1, '#');
  ToString(&cell, format, buffer.data());
  return std::string(buffer.data());
}

// "NAMEwidth[.decimals]" as TARN_Format, decimals allowed on every type (TIME10.1).
TARN_Format Format(const std::string& text) {
  TARN_Format format;
  std::string reason;
  EXPECT_TRUE(ParseFormatText(text.substr(0, text.find('.')), format, reason)) << text << ": " << reason;
  const bool decimals = text.find('.') != std::string::npos;
  return TARN_Format(format.Type(), format.Width(),
                     decimals ? std::stoi(text.substr(text.find('.') + 1)) : 0);
}

// Every case of FormatCases.txt: values printed and texts read through a format.
TEST(FormatConversion, CasesOfTheFilePrintAndReadAsWorkedOut) {
  std::ifstream file(std::filesystem::path(QUILT_SOURCE_DIR) / "tests/host/output/FormatCases.txt");
  int cases = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    SCOPED_TRACE(line);
    std::istringstream words(line);
    std::string kind, format, value, text;
    words >> kind >> format;
    if (kind == "print") words >> value;
    words >> std::quoted(text);
    if (kind == "read") words >> value;
    ASSERT_TRUE(words && (kind == "print" || kind == "read")) << "not a case";
    ++cases;
    if (kind == "print") {
      EXPECT_EQ(Print(std::stod(value), Format(format)), text);
      continue;
    }
    OBS cell;
    cell.number = 0;
    const int status = FromString(text.c_str(), Format(format), &cell);
    EXPECT_EQ(status == 0, value != "invalid");
    if (status == 0 && value != "invalid") {
      EXPECT_DOUBLE_EQ(cell.number, std::stod(value));
    }
  }
  EXPECT_GT(cases, 0) << "FormatCases.txt was not read";
}

TEST(FormatConversion, FormatNumberTrimsAndTreatsWidthAsMaximum) {
  EXPECT_EQ(FormatNumber(3.14159, TARN_Format(kFormatF, 40, 2)), "3.14");
  EXPECT_EQ(FormatNumber(12.0, TARN_Format(kFormatPCT, 40, 1)), "12.0%");
  EXPECT_EQ(FormatNumber(-1.7976931348623157e+308, TARN_Format(kFormatF, 40, 2)), ".");
  // 1e39 has 40 digits and still fits width 40 in F notation.
  EXPECT_EQ(FormatNumber(1e39, TARN_Format(kFormatF, 40, 0)).size(), 40u);
}

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
