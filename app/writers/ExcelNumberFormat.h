// ExcelNumberFormat.h - the spreadsheet number format that shows a cell's number as its text does
#pragma once

#include <string>

/// A workbook stores a cell's number and shows it through a number format. The format is
/// read off the cell's text, which the table's own format produced: its decimals, grouping,
/// currency sign, percent sign, exponent, leading zeros and negative form.
class ExcelNumberFormat {
 public:
  /// The number format code ("#,##0.00", "0.0\"%\"", "\"$\"#,##0.00;(\"$\"#,##0.00)", ...)
  /// under which `number` shows as `text`, or empty when `text` is not a plain rendering of
  /// `number` (dates, times, "." for a missing value, a width filled with "*"); such a cell
  /// is written as text. Percentages keep the value as shown: 13.7 with a literal percent
  /// sign, not 0.137. A decimal comma ("1.234,50") maps to the format's decimal point, which
  /// the spreadsheet then shows in the reader's own convention.
  static std::string FromCellText(const std::string& text, double number);
};
