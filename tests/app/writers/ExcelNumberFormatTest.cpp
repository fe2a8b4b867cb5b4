// ExcelNumberFormatTest.cpp - the number format read off each kind of formatted text
#include <gtest/gtest.h>

#include "writers/ExcelNumberFormat.h"

TEST(ExcelNumberFormat, ReadsEachFormatFamilyOffItsText) {
  // Texts as docs/formats.md shows each format family print the number; the codes worked out
  // by hand from the spreadsheet's number format rules.
  struct Case {
    const char* text;
    double number;
    const char* code;  // "" : the cell is written as text
  } cases[] = {
      {"1018", 1018, "0"},
      {"13.7%", 13.7474, "0.0\"%\""},
      {"1,234.50", 1234.5, "#,##0.00"},
      {"1.234,50", 1234.5, "#,##0.00"},  // decimal comma: the reader's convention shows it
      {"1.234", 1.234, "0.000"},         // the number tells the point from a grouping dot
      {"-$1,234.50", -1234.5, "\"$\"#,##0.00"},
      {"(1,234.50)", -1234.5, "#,##0.00;(#,##0.00)"},
      {"-1.234,50 EUR", -1234.5, "#,##0.00\" EUR\""},
      {"1.23E+03", 1234.5, "0.00E+00"},
      {"1E+02", 123.456, "0E+00"},
      {"01234", 1234, "00000"},
      {".50", 0.5, "#.00"},
      {"0.00", -0.001, "0.00;0.00"},  // rounds to zero: shown without a sign
      {".", -1.7976931348623157e+308, ""},
      {"*****", 123456, ""},
      {"15-MAR-2024", 13937184000, ""},
      {"12", 15, ""},  // the text does not show this number
      {"-5", 5, ""},
  };
  for (const Case& c : cases) EXPECT_EQ(ExcelNumberFormat::FromCellText(c.text, c.number), c.code) << c.text;
}
