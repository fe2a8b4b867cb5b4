// FormatTextTest.cpp - the packed format rules and formats written as text
#include <gtest/gtest.h>

#include <string>

#include "host/data/FormatText.h"
#include "host/data/TARN_Format.h"

TEST(TARN_Format, NumericWidthAboveFortyIsCut) {
  EXPECT_EQ(TARN_Format(kFormatF, 60, 2).Width(), 40);
  TARN_Format format(kFormatCOMMA, 8, 0);
  format.Width(60);
  EXPECT_EQ(format.Width(), 40);
  EXPECT_EQ(TARN_Format(kFormatA, 60, 0).Width(), 60);  // strings keep their width
}

TEST(TARN_Format, PackedStringTypeSpendsTheDecimalsByteOnItsWidth) {
  // Type 1, width byte 2, decimals byte 3: width 2 + 3 * 256 = 770, decimals 0.
  const TARN_Format format((1L << 16) | (2L << 8) | 3L);
  EXPECT_EQ(format.Type(), kFormatA);
  EXPECT_EQ(format.Width(), 770);
  EXPECT_EQ(format.Decimals(), 0);
  EXPECT_EQ(TARN_Format(format.Pack()), format);
  // A numeric type keeps its decimals: type 5, width 8, decimals 2.
  const TARN_Format numeric((5L << 16) | (8L << 8) | 2L);
  EXPECT_EQ(numeric, kDefaultFormat);
}

TEST(FormatText, ReadsFormatTexts) {
  struct Row {
    const char* text;
    FormatType type;
    int width;
    int decimals;
  };
  const Row rows[] = {
      {"F8.2", kFormatF, 8, 2},
      {"COMMA10.2", kFormatCOMMA, 10, 2},
      {"DOLLAR12.2", kFormatDOLLAR, 12, 2},
      {"PCT6.1", kFormatPCT, 6, 1},
      {"E10.3", kFormatE, 10, 3},
      {"N5", kFormatN, 5, 0},
      {"A20", kFormatA, 20, 0},
      {"DATE11", kFormatDATE, 11, 0},
      {"f3", kFormatF, 3, 0},
      {"F60.2", kFormatF, 40, 2},
      {"ADATE10", kFormatADATE, 10, 0},
      {"DATETIME20", kFormatDATETIME, 20, 0},
  };
  for (const Row& row : rows) {
    TARN_Format format;
    std::string reason;
    ASSERT_TRUE(ParseFormatText(row.text, format, reason)) << row.text << ": " << reason;
    EXPECT_EQ(format, TARN_Format(row.type, row.width, row.decimals)) << row.text;
  }
}

TEST(FormatText, RejectsWhatIsNotAFormat) {
  const char* texts[] = {"",     "8.2",   "F",    "F0",   "F8.",      "F8.x", "Q8",
                         "A8.2", "F8.17", "F4.4", "N5.1", "DATE11.2", "F8.2x"};
  for (const char* text : texts) {
    TARN_Format format;
    std::string reason;
    EXPECT_FALSE(ParseFormatText(text, format, reason)) << text;
    EXPECT_FALSE(reason.empty()) << text;
  }
}

TEST(FormatText, WritesFormatsBack) {
  EXPECT_EQ(FormatToText(kDefaultFormat), "F8.2");
  EXPECT_EQ(FormatToText(TARN_Format(kFormatA, 300, 0)), "A300");
  EXPECT_EQ(FormatToText(TARN_Format(kFormatDATE, 11, 0)), "DATE11");
}
