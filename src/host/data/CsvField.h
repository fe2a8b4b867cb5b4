// CsvField.h - reading numbers and texts out of CSV fields, shared by type inference and case conversion
#pragma once

#include <cstddef>
#include <string_view>

/// How a numeric field reads. kNumberOutOfRange: a number whose magnitude no double holds
/// (1e400, 1e-400); kNumberNotFinite: the texts "nan", "inf" and "infinity".
enum CsvNumberResult { kNumberOk, kNumberEmpty, kNumberInvalid, kNumberOutOfRange, kNumberNotFinite };

/// The field rules of the CSV loader. Static functions only.
class CsvField {
 public:
  /// Reads a numeric field: blanks around it are ignored; empty (or a lone ".") is
  /// kNumberEmpty. Reports the length of the integer part with its sign and the digits after
  /// the point, from which an inferred format takes its width and decimals.
  static CsvNumberResult ParseNumber(std::string_view field, double& value, int& integerLength, int& decimals);
  /// Why a field that looked like a number cannot be one (" is not a number", ...).
  static const char* NumberProblem(CsvNumberResult result);
  /// Length of `field` without trailing blanks (spaces), as a string value keeps it.
  static std::size_t TrimmedLength(std::string_view field);
  /// `field` without blanks and tabs around it.
  static std::string_view TrimBlanks(std::string_view field);
};
