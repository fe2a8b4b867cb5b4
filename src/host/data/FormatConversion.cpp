// FormatConversion.cpp - numbers, dates and strings printed in a format and read back
#include "host/data/FormatConversion.h"

#include "host/data/FormatText.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Dates and times are seconds since 1582-10-14 00:00:00, the first day of the Gregorian
// calendar counted the classic way for survey data.
constexpr long long kEpochDaysFromCivil = -141428;  // days from 1970-01-01 back to 1582-10-14
constexpr double kSecondsPerDay = 86400.0;

const char* const kMonths[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                               "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
const char* const kMonthNames[] = {"JANUARY", "FEBRUARY", "MARCH",     "APRIL",   "MAY",      "JUNE",
                                   "JULY",    "AUGUST",   "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};
const char* const kWeekdays[] = {"SUNDAY",   "MONDAY", "TUESDAY", "WEDNESDAY",
                                 "THURSDAY", "FRIDAY", "SATURDAY"};

// Days since 1970-01-01 of a proleptic Gregorian date (Howard Hinnant's days_from_civil).
long long DaysFromCivil(long long year, unsigned month, unsigned day) {
  year -= month <= 2;
  const long long era = (year >= 0 ? year : year - 399) / 400;
  const unsigned yearOfEra = static_cast<unsigned>(year - era * 400);
  const unsigned dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + static_cast<long long>(dayOfEra) - 719468;
}

// The inverse (Howard Hinnant's civil_from_days).
void CivilFromDays(long long days, long long& year, unsigned& month, unsigned& day) {
  days += 719468;
  const long long era = (days >= 0 ? days : days - 146096) / 146097;
  const unsigned dayOfEra = static_cast<unsigned>(days - era * 146097);
  const unsigned yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const unsigned shiftedMonth = (5 * dayOfYear + 2) / 153;
  day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
  month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
  year = static_cast<long long>(yearOfEra) + era * 400 + (month <= 2);
}

// The magnitude of `value` rounded half away from zero at `decimals` places, as decimal
// text "int.frac" (no sign). The value is first taken to 15 significant digits, which is
// all a double holds reliably, so 2.675 (stored as 2.67499999...) rounds to 2.68 as a
// reader of the number expects.
std::string RoundedDigits(double value, int decimals) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.14e", std::fabs(value));
  std::string digits;
  const char* cursor = buffer;
  for (; *cursor != 'e'; ++cursor) {
    if (std::isdigit(static_cast<unsigned char>(*cursor))) digits += *cursor;
  }
  int exponent = std::atoi(cursor + 1);  // value = d.ddd * 10^exponent
  // Digits kept: those before the point (exponent + 1) and `decimals` after it.
  const int keep = exponent + 1 + decimals;
  if (keep < 0) {
    digits = "0";
    exponent = 0;
  } else if (keep < static_cast<int>(digits.size())) {
    const bool roundUp = digits[static_cast<std::size_t>(keep)] >= '5';
    digits.resize(static_cast<std::size_t>(keep));
    if (roundUp) {
      int position = keep - 1;
      while (position >= 0 && digits[static_cast<std::size_t>(position)] == '9') {
        digits[static_cast<std::size_t>(position)] = '0';
        --position;
      }
      if (position >= 0) {
        ++digits[static_cast<std::size_t>(position)];
      } else {
        digits.insert(digits.begin(), '1');
        ++exponent;
      }
    }
    if (digits.empty()) {
      digits = "0";
      exponent = decimals > 0 ? -decimals : 0;
    }
  }
  // Place the point: digits[0] has weight 10^exponent.
  std::string integer;
  std::string fraction;
  for (int weight = std::max(exponent, 0); weight >= -decimals; --weight) {
    const int index = exponent - weight;
    const char digit = (index >= 0 && index < static_cast<int>(digits.size()))
                           ? digits[static_cast<std::size_t>(index)]
                           : '0';
    (weight >= 0 ? integer : fraction) += digit;
  }
  if (integer.empty()) integer = "0";
  return decimals > 0 ? integer + "." + fraction : integer;
}

bool IsZeroText(const std::string& digits) {
  return std::all_of(digits.begin(), digits.end(), [](char c) { return c == '0' || c == '.'; });
}

std::string Group(const std::string& integer, char separator) {
  std::string out;
  const int length = static_cast<int>(integer.size());
  for (int i = 0; i < length; ++i) {
    if (i > 0 && (length - i) % 3 == 0) out += separator;
    out += integer[static_cast<std::size_t>(i)];
  }
  return out;
}

// A currency pattern: negative prefix, prefix, suffix, negative suffix; grouping and
// decimal characters.
struct NumberStyle {
  const char* negativePrefix = "-";
  const char* prefix = "";
  const char* suffix = "";
  const char* negativeSuffix = "";
  char grouping = 0;
  char decimal = '.';
};

NumberStyle StyleOf(FormatType type) {
  NumberStyle style;
  switch (type) {
    case kFormatCOMMA:
    case kFormatCCA:
      style.grouping = ',';
      break;
    case kFormatDOT:
      style.grouping = '.';
      style.decimal = ',';
      break;
    case kFormatDOLLAR:
      style.prefix = "$";
      style.grouping = ',';
      break;
    case kFormatPCT:
      style.suffix = "%";
      break;
    case kFormatCCB:  // accounting: negatives in parentheses
      style.negativePrefix = "(";
      style.negativeSuffix = ")";
      style.grouping = ',';
      break;
    case kFormatCCC:  // dollar amounts with grouping
      style.prefix = "$";
      style.grouping = ',';
      break;
    case kFormatCCD:  // European grouping with a trailing euro abbreviation
      style.suffix = " EUR";
      style.grouping = '.';
      style.decimal = ',';
      break;
    case kFormatCCE:  // plain, no grouping
      break;
    default:
      break;
  }
  return style;
}

std::string FixedText(double value, const TARN_Format& format, bool group) {
  const NumberStyle style = StyleOf(format.Type());
  std::string digits = RoundedDigits(value, format.Decimals());
  const bool negative = value < 0 && !IsZeroText(digits);
  std::string integer = digits.substr(0, digits.find('.'));
  std::string fraction = digits.find('.') == std::string::npos ? "" : digits.substr(digits.find('.') + 1);
  if (group && style.grouping != 0) integer = Group(integer, style.grouping);
  std::string body = integer;
  if (!fraction.empty()) body += style.decimal + fraction;
  std::string text = negative ? style.negativePrefix : "";
  text += style.prefix + body + style.suffix;
  if (negative) text += style.negativeSuffix;
  return text;
}

// E notation: d.ddE+dd, with as many decimals as fit into `width` (at most `decimals` when
// the format is E itself).
std::string ScientificText(double value, int width, int maxDecimals) {
  for (int decimals = maxDecimals; decimals >= 0; --decimals) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*E", decimals, value);
    if (static_cast<int>(std::strlen(buffer)) <= width) return buffer;
  }
  return std::string();
}

std::string Fit(const std::string& text, double value, const TARN_Format& format) {
  const int width = format.Width();
  if (static_cast<int>(text.size()) <= width) return text;
  // A value below one loses its leading zero before anything else.
  if (text.rfind("0.", 0) == 0 && static_cast<int>(text.size()) - 1 <= width) return text.substr(1);
  if (text.rfind("-0.", 0) == 0 && static_cast<int>(text.size()) - 1 <= width) return "-" + text.substr(2);
  const std::string scientific = ScientificText(value, width, std::max<int>(format.Decimals(), 2));
  if (!scientific.empty()) return scientific;
  return std::string(static_cast<std::size_t>(width), '*');
}

std::string TwoDigits(long long value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%02lld", value);
  return buffer;
}

// hh:mm:ss with optional fractions, from a count of seconds (hours unbounded).
std::string ClockText(double seconds, int decimals, bool withSeconds, bool withHours) {
  const double rounded = std::round(seconds * std::pow(10.0, decimals)) / std::pow(10.0, decimals);
  long long whole = static_cast<long long>(std::floor(rounded));
  const double fraction = rounded - static_cast<double>(whole);
  const long long hours = whole / 3600;
  const long long minutes = withHours ? (whole / 60) % 60 : whole / 60;
  const long long secs = whole % 60;
  std::string text = withHours ? TwoDigits(hours) + ":" + TwoDigits(minutes) : TwoDigits(minutes);
  if (withSeconds) {
    text += ":" + TwoDigits(secs);
    if (decimals > 0) {
      const std::string digits = RoundedDigits(fraction, decimals);
      text += digits.substr(digits.find('.'));
    }
  }
  return text;
}

std::string DateText(double value, const TARN_Format& format) {
  const int width = format.Width();
  const int decimals = format.Decimals();
  const FormatType type = format.Type();
  if (type == kFormatWKDAY) {
    const int day = static_cast<int>(value);
    if (day < 1 || day > 7) return "";
    return std::string(kWeekdays[day - 1]).substr(0, static_cast<std::size_t>(std::max(width, 2)));
  }
  if (type == kFormatMONTH) {
    const int month = static_cast<int>(value);
    if (month < 1 || month > 12) return "";
    return std::string(kMonthNames[month - 1]).substr(0, static_cast<std::size_t>(std::max(width, 3)));
  }
  if (type == kFormatTIME)
    return (value < 0 ? "-" : "") + ClockText(std::fabs(value), decimals, width >= 8, true);
  if (type == kFormatMTIME)
    return (value < 0 ? "-" : "") + ClockText(std::fabs(value), decimals, true, false);
  if (type == kFormatDTIME) {
    const double magnitude = std::fabs(value);
    const long long days = static_cast<long long>(std::floor(magnitude / kSecondsPerDay));
    return (value < 0 ? "-" : "") + TwoDigits(days) + " " +
           ClockText(magnitude - static_cast<double>(days) * kSecondsPerDay, decimals, width >= 11, true);
  }
  if (value < 0) return "";  // before the calendar's first day
  const long long dayNumber = static_cast<long long>(std::floor(value / kSecondsPerDay));
  const double secondsOfDay = value - static_cast<double>(dayNumber) * kSecondsPerDay;
  long long year;
  unsigned month;
  unsigned day;
  CivilFromDays(dayNumber + kEpochDaysFromCivil, year, month, day);
  const std::string yearText = std::to_string(year);
  const std::string shortYear = TwoDigits(year % 100);
  const bool fullYear = width >= 10 || (type == kFormatDATE && width >= 11);
  switch (type) {
    case kFormatDATE:
      return TwoDigits(day) + "-" + kMonths[month - 1] + "-" + (width >= 11 ? yearText : shortYear);
    case kFormatADATE:
      return TwoDigits(month) + "/" + TwoDigits(day) + "/" + (fullYear ? yearText : shortYear);
    case kFormatEDATE:
      return TwoDigits(day) + "." + TwoDigits(month) + "." + (fullYear ? yearText : shortYear);
    case kFormatSDATE:
      return (fullYear ? yearText : shortYear) + "/" + TwoDigits(month) + "/" + TwoDigits(day);
    case kFormatJDATE: {
      char buffer[32];
      const long long dayOfYear = dayNumber + kEpochDaysFromCivil - DaysFromCivil(year, 1, 1) + 1;
      std::snprintf(buffer, sizeof buffer, "%03lld", dayOfYear);
      return (width >= 7 ? yearText : shortYear) + buffer;
    }
    case kFormatMOYR:
      return std::string(kMonths[month - 1]) + " " + (width >= 8 ? yearText : shortYear);
    case kFormatQYR:
      return std::to_string((month - 1) / 3 + 1) + " Q " + (width >= 8 ? yearText : shortYear);
    case kFormatWKYR: {
      const long long dayOfYear = dayNumber + kEpochDaysFromCivil - DaysFromCivil(year, 1, 1);
      return TwoDigits(dayOfYear / 7 + 1) + " WK " + (width >= 10 ? yearText : shortYear);
    }
    case kFormatDATETIME:
      return TwoDigits(day) + "-" + kMonths[month - 1] + "-" + yearText + " " +
             ClockText(secondsOfDay, decimals, width >= 20, true);
    case kFormatYMDHMS:
      return yearText + "-" + TwoDigits(month) + "-" + TwoDigits(day) + " " +
             ClockText(secondsOfDay, decimals, width >= 19, true);
    default:
      return "";
  }
}

// The shown text of a number, not yet padded, possibly wider than the format.
std::string NumberText(double value, const TARN_Format& format) {
  if (value == TARN_SystemMissing() || !std::isfinite(value)) return ".";
  const FormatType type = format.Type();
  if (IsDateTimeFormat(type)) {
    const std::string text = DateText(value, format);
    return text.empty() ? std::string(format.Width(), '*') : text;
  }
  switch (type) {
    case kFormatE:
      return ScientificText(value, 64, format.Decimals());
    case kFormatN: {
      if (value < 0) return std::string(format.Width(), '*');  // N shows non-negative values only
      std::string digits = RoundedDigits(value, format.Decimals());
      const std::size_t length = digits.size();
      if (length < format.Width()) digits.insert(0, format.Width() - length, '0');
      return digits;
    }
    default:
      return FixedText(value, format, /*group=*/true);
  }
}

std::string Trim(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

int ReadInteger(const std::string& text, std::size_t& position, int maxDigits, long long& out) {
  int count = 0;
  out = 0;
  while (position < text.size() && count < maxDigits &&
         std::isdigit(static_cast<unsigned char>(text[position]))) {
    out = out * 10 + (text[position] - '0');
    ++position;
    ++count;
  }
  return count;
}

int MonthFromName(const std::string& text) {
  std::string upper;
  for (char c : text) upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  for (int month = 0; month < 12; ++month) {
    if (upper.size() >= 3 && std::string(kMonthNames[month]).rfind(upper, 0) == 0) return month + 1;
  }
  return 0;
}

bool ValidDate(long long year, long long month, long long day) {
  if (month < 1 || month > 12 || day < 1 || year < 1582) return false;
  const long long next =
      month == 12 ? DaysFromCivil(year + 1, 1, 1) : DaysFromCivil(year, unsigned(month + 1), 1);
  return day <= next - DaysFromCivil(year, unsigned(month), 1);
}

double SecondsOf(long long year, long long month, long long day) {
  return static_cast<double>(DaysFromCivil(year, unsigned(month), unsigned(day)) - kEpochDaysFromCivil) *
         kSecondsPerDay;
}

// hh:mm[:ss[.fff]] from `position` to the end.
bool ReadClock(const std::string& text, std::size_t position, double& seconds) {
  long long hours;
  long long minutes;
  if (ReadInteger(text, position, 9, hours) == 0) return false;
  if (position >= text.size() || text[position] != ':') return false;
  ++position;
  if (ReadInteger(text, position, 2, minutes) == 0 || minutes > 59) return false;
  double secs = 0;
  if (position < text.size() && text[position] == ':') {
    ++position;
    char* end = nullptr;
    const std::string rest = text.substr(position);
    secs = std::strtod(rest.c_str(), &end);
    if (end == rest.c_str() || *end != '\0' || secs < 0 || secs >= 60) return false;
    position = text.size();
  }
  if (position != text.size()) return false;
  seconds = static_cast<double>(hours) * 3600 + static_cast<double>(minutes) * 60 + secs;
  return true;
}

// Reads a date with or without time: ISO YYYY-MM-DD[ hh:mm[:ss]] (or with 'T'), and the
// format's own day-month-year orders.
bool ReadDate(const std::string& text, FormatType type, double& out) {
  std::string datePart = text;
  std::string timePart;
  // The time follows a blank, or the 'T' of ISO 8601 right after YYYY-MM-DD.
  std::size_t split = text.find(' ');
  if (split == std::string::npos && text.size() > 10 && text[4] == '-' && text[10] == 'T') split = 10;
  if (split != std::string::npos) {
    datePart = text.substr(0, split);
    timePart = Trim(text.substr(split + 1));
  }
  long long year = 0;
  long long month = 0;
  long long day = 0;
  std::size_t position = 0;
  long long first;
  const int firstDigits = ReadInteger(datePart, position, 4, first);
  if (firstDigits == 4 && position < datePart.size() &&
      (datePart[position] == '-' || datePart[position] == '/')) {
    // YYYY-MM-DD or YYYY/MM/DD
    const char separator = datePart[position++];
    year = first;
    if (ReadInteger(datePart, position, 2, month) == 0 || position >= datePart.size() ||
        datePart[position] != separator)
      return false;
    ++position;
    if (ReadInteger(datePart, position, 2, day) == 0 || position != datePart.size()) return false;
  } else if (firstDigits >= 1 && firstDigits <= 2 && position < datePart.size()) {
    const char separator = datePart[position++];
    const std::size_t nextSeparator = datePart.find(separator, position);
    if (nextSeparator == std::string::npos) return false;
    const std::string middle = datePart.substr(position, nextSeparator - position);
    std::size_t yearPosition = nextSeparator + 1;
    if (ReadInteger(datePart, yearPosition, 4, year) != 4 || yearPosition != datePart.size()) return false;
    if (std::isalpha(static_cast<unsigned char>(middle.empty() ? '0' : middle[0]))) {
      day = first;
      month = MonthFromName(middle);
    } else {
      std::size_t middlePosition = 0;
      long long second;
      if (ReadInteger(middle, middlePosition, 2, second) == 0 || middlePosition != middle.size())
        return false;
      if (type == kFormatADATE) {
        month = first;
        day = second;
      } else {
        day = first;
        month = second;
      }
    }
  } else {
    return false;
  }
  if (!ValidDate(year, month, day)) return false;
  double seconds = 0;
  if (!timePart.empty() && !ReadClock(timePart, 0, seconds)) return false;
  out = SecondsOf(year, month, day) + seconds;
  return true;
}

// Reads a number as written in a numeric format: grouping characters, a currency prefix
// or a percent sign are allowed where the format shows them.
bool ReadNumber(std::string text, FormatType type, double& out) {
  const NumberStyle style = StyleOf(type);
  bool negative = false;
  if (text.size() >= 2 && text.front() == '(' && text.back() == ')') {
    negative = true;
    text = text.substr(1, text.size() - 2);
  }
  std::string cleaned;
  for (char c : text) {
    if (c == '$' || c == '%') continue;
    if (style.grouping != 0 && c == style.grouping) continue;
    cleaned += (style.decimal == ',' && c == ',') ? '.' : c;
  }
  const std::size_t suffix = cleaned.find(" EUR");
  if (suffix != std::string::npos) cleaned.erase(suffix);
  cleaned = Trim(cleaned);
  if (cleaned.empty()) return false;
  char* end = nullptr;
  const double value = std::strtod(cleaned.c_str(), &end);
  if (*end != '\0' || !std::isfinite(value)) return false;
  out = negative ? -value : value;
  return true;
}

}  // namespace

int ToString(const OBS* value, const TARN_Format& format, char* out) {
  const int width = format.Width();
  if (format.Type() == kFormatA) {
    std::memcpy(out, value->bytes, static_cast<std::size_t>(width));
    out[width] = '\0';
    return width;
  }
  if (format.Type() == kFormatAHEX) {
    static const char kHex[] = "0123456789ABCDEF";
    const int bytes = width / 2;
    for (int i = 0; i < bytes; ++i) {
      const unsigned char byte = static_cast<unsigned char>(value->bytes[i]);
      out[2 * i] = kHex[byte >> 4];
      out[2 * i + 1] = kHex[byte & 15];
    }
    if (width % 2 != 0) out[width - 1] = ' ';
    out[width] = '\0';
    return width;
  }
  const std::string text = Fit(NumberText(value->number, format), value->number, format);
  const std::size_t padding = static_cast<std::size_t>(width) - std::min<std::size_t>(text.size(), width);
  std::memset(out, ' ', padding);
  std::memcpy(out + padding, text.data(), std::min<std::size_t>(text.size(), width));
  out[width] = '\0';
  return width;
}

std::string FormatNumber(double value, const TARN_Format& format) {
  if (format.IsString()) return std::string();
  return Fit(NumberText(value, format), value, format);
}

int FromString(const char* text, const TARN_Format& format, OBS* out) {
  const std::string raw = text == nullptr ? "" : text;
  if (format.Type() == kFormatA) {
    const std::size_t bytes = static_cast<std::size_t>(ObsLength(format.Width())) * sizeof(OBS);
    std::string padded = raw.substr(0, std::min<std::size_t>(raw.size(), format.Width()));
    padded.resize(bytes, ' ');
    std::memcpy(out, padded.data(), bytes);
    return 0;
  }
  if (format.Type() == kFormatAHEX) {
    const std::string hex = Trim(raw);
    const std::size_t byteWidth = format.Width() / 2;
    if (hex.size() % 2 != 0 || hex.size() / 2 > byteWidth) return 1;
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
      const std::string pair = hex.substr(i, 2);
      if (!std::isxdigit(static_cast<unsigned char>(pair[0])) ||
          !std::isxdigit(static_cast<unsigned char>(pair[1])))
        return 1;
      bytes += static_cast<char>(std::strtol(pair.c_str(), nullptr, 16));
    }
    bytes.resize(static_cast<std::size_t>(ObsLength(static_cast<int>(byteWidth))) * sizeof(OBS), ' ');
    std::memcpy(out, bytes.data(), bytes.size());
    return 0;
  }
  const std::string trimmed = Trim(raw);
  if (trimmed.empty() || trimmed == ".") {
    out->number = TARN_SystemMissing();
    return 0;
  }
  const FormatType type = format.Type();
  double value = 0;
  if (type == kFormatTIME || type == kFormatMTIME || type == kFormatDTIME) {
    const bool negative = trimmed[0] == '-';
    std::string body = negative ? trimmed.substr(1) : trimmed;
    double days = 0;
    if (type == kFormatDTIME) {
      const std::size_t blank = body.find(' ');
      if (blank == std::string::npos) return 1;
      std::size_t position = 0;
      long long dayCount;
      if (ReadInteger(body, position, 9, dayCount) == 0 || position != blank) return 1;
      days = static_cast<double>(dayCount);
      body = Trim(body.substr(blank + 1));
    }
    double seconds = 0;
    if (type == kFormatMTIME) {
      // mm:ss reads as hh:mm:ss with the hours in front, so shift by one field.
      if (!ReadClock("0:" + body, 0, seconds) && !ReadClock(body, 0, seconds)) return 1;
    } else if (!ReadClock(body, 0, seconds)) {
      return 1;
    }
    value = days * kSecondsPerDay + seconds;
    out->number = negative ? -value : value;
    return 0;
  }
  if (type == kFormatWKDAY || type == kFormatMONTH) {
    if (ReadNumber(trimmed, kFormatF, value)) {
      out->number = value;
      return 0;
    }
    std::string upper;
    for (char c : trimmed) upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    const char* const* names = type == kFormatWKDAY ? kWeekdays : kMonthNames;
    const int count = type == kFormatWKDAY ? 7 : 12;
    for (int i = 0; i < count; ++i) {
      if (upper.size() >= 2 && std::string(names[i]).rfind(upper, 0) == 0) {
        out->number = i + 1;
        return 0;
      }
    }
    return 1;
  }
  if (IsDateTimeFormat(type)) {
    if (!ReadDate(trimmed, type, value)) return 1;
    out->number = value;
    return 0;
  }
  if (!ReadNumber(trimmed, type, value)) return 1;
  out->number = value;
  return 0;
}
