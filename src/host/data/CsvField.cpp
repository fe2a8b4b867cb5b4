// CsvField.cpp - the number reader of CSV fields, with its fast path for plain decimals
#include "host/data/CsvField.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

bool IsBlank(char character) {
  return character == ' ' || character == '\t';
}

}  // namespace

CsvNumberResult CsvField::ParseNumber(std::string_view field, double& value, int& integerLength, int& decimals) {
  const char* begin = field.data();
  const char* end = begin + field.size();
  while (begin < end && IsBlank(*begin)) ++begin;
  while (end > begin && IsBlank(end[-1])) --end;
  if (begin == end || (end - begin == 1 && *begin == '.')) return kNumberEmpty;
  const char* digits = begin;
  bool negative = false;
  if (*digits == '-' || *digits == '+') {
    negative = *digits == '-';
    ++digits;
  }
  // Plain decimals of up to 15 digits are the common case in survey data. Their digits
  // form an integer m exactly representable in a double, and m / 10^d is then the correctly
  // rounded value, the same double the general parser gives.
  if (end - digits > 0 && end - digits <= 16) {
    static constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    long long mantissa = 0;
    int digitCount = 0;
    const char* point = nullptr;
    const char* cursor = digits;
    for (; cursor < end; ++cursor) {
      const char character = *cursor;
      if (character >= '0' && character <= '9') {
        mantissa = mantissa * 10 + (character - '0');
        ++digitCount;
      } else if (character == '.' && point == nullptr) {
        point = cursor;
      } else {
        break;
      }
    }
    if (cursor == end && digitCount > 0 && digitCount <= 15) {
      const int fractionDigits = point != nullptr ? static_cast<int>(end - point - 1) : 0;
      value = static_cast<double>(mantissa);
      if (fractionDigits > 0) value /= kPowersOfTen[fractionDigits];
      if (negative) value = -value;
      integerLength = static_cast<int>((point != nullptr ? point : end) - digits) + (negative ? 1 : 0);
      decimals = fractionDigits;
      return kNumberOk;
    }
  }
  if (digits == end) return kNumberInvalid;
  const auto result = std::from_chars(digits, end, value);
  if (result.ptr != end) return kNumberInvalid;
  if (result.ec == std::errc::result_out_of_range) return kNumberOutOfRange;
  if (result.ec != std::errc()) return kNumberInvalid;
  if (!std::isfinite(value)) return kNumberNotFinite;
  if (negative) value = -value;
  const char* point =
      static_cast<const char*>(std::memchr(digits, '.', static_cast<std::size_t>(end - digits)));
  const char* exponent = digits;
  while (exponent < end && *exponent != 'e' && *exponent != 'E') ++exponent;
  const char* integerEnd = point != nullptr && point < exponent ? point : exponent;
  integerLength = static_cast<int>(integerEnd - digits) + (negative ? 1 : 0);
  decimals = point != nullptr && point < exponent ? static_cast<int>(exponent - point - 1) : 0;
  return kNumberOk;
}

const char* CsvField::NumberProblem(CsvNumberResult result) {
  return result == kNumberOutOfRange ? " is out of the range of numbers" : " is not a number";
}

std::size_t CsvField::TrimmedLength(std::string_view field) {
  std::size_t length = field.size();
  while (length > 0 && field[length - 1] == ' ') --length;
  return length;
}

std::string_view CsvField::TrimBlanks(std::string_view field) {
  while (!field.empty() && IsBlank(field.front())) field.remove_prefix(1);
  while (!field.empty() && IsBlank(field.back())) field.remove_suffix(1);
  return field;
}
