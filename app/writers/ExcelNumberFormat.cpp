// ExcelNumberFormat.cpp - reads decimals, grouping, sign and affixes off a formatted number
#include "writers/ExcelNumberFormat.h"

#include <cmath>
#include <optional>

namespace {

struct ParsedNumber {
  double magnitude = 0.0;
  int decimals = 0;
  bool grouped = false;
  bool dropsLeadingZero = false;  // ".50"
  int zeroPaddedDigits = 0;       // "01234": the width of a zero-padded integer part
  bool hasExponent = false;
  int exponent = 0;
};

bool IsDigits(const std::string& text) {
  if (text.empty()) return false;
  for (char c : text) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

// The integer part: plain digits, or groups of three after a first group of one to three.
std::optional<std::string> IntegerDigits(const std::string& text, char grouping, bool& grouped) {
  grouped = text.find(grouping) != std::string::npos;
  if (!grouped) return IsDigits(text) || text.empty() ? std::optional(text) : std::nullopt;
  std::string digits;
  std::size_t start = 0;
  for (bool first = true;; first = false) {
    const std::size_t end = std::min(text.find(grouping, start), text.size());
    const std::string group = text.substr(start, end - start);
    if (!IsDigits(group) || (first ? group.size() > 3 : group.size() != 3)) return std::nullopt;
    digits += group;
    if (end == text.size()) return digits;
    start = end + 1;
  }
}

// `body` is the digits and separators, `decimalPoint` the separator tried as decimal point.
std::optional<ParsedNumber> ParseBody(const std::string& body, const std::string& exponentText,
                                      char decimalPoint) {
  const char grouping = decimalPoint == '.' ? ',' : '.';
  const std::size_t point = body.find(decimalPoint);
  if (point != std::string::npos && body.find(decimalPoint, point + 1) != std::string::npos)
    return std::nullopt;
  const std::string integerText = body.substr(0, point);
  const std::string fraction = point == std::string::npos ? "" : body.substr(point + 1);
  if (point != std::string::npos && !IsDigits(fraction)) return std::nullopt;
  ParsedNumber parsed;
  const std::optional<std::string> digits = IntegerDigits(integerText, grouping, parsed.grouped);
  if (!digits || (digits->empty() && fraction.empty())) return std::nullopt;
  parsed.decimals = static_cast<int>(fraction.size());
  parsed.dropsLeadingZero = digits->empty();
  if (digits->size() > 1 && (*digits)[0] == '0') parsed.zeroPaddedDigits = static_cast<int>(digits->size());
  parsed.magnitude = std::stod((digits->empty() ? "0" : *digits) + "." + (fraction.empty() ? "0" : fraction));
  if (!exponentText.empty()) {
    parsed.hasExponent = true;
    parsed.exponent = std::stoi(exponentText);
  }
  return parsed;
}

// True when `parsed` is what `magnitude` rounds to at the shown decimals.
bool Shows(const ParsedNumber& parsed, double magnitude) {
  const double unit = std::pow(10.0, (parsed.hasExponent ? parsed.exponent : 0) - parsed.decimals);
  const double shown = parsed.magnitude * std::pow(10.0, parsed.hasExponent ? parsed.exponent : 0);
  return std::fabs(shown - magnitude) <= 0.5 * unit * (1 + 1e-9) + 1e-12 * magnitude;
}

}  // namespace

std::string ExcelNumberFormat::FromCellText(const std::string& text, double number) {
  if (!std::isfinite(number) || text.empty()) return "";
  std::string rest = text;
  const bool parenthesized = rest.size() > 2 && rest.front() == '(' && rest.back() == ')';
  if (parenthesized) rest = rest.substr(1, rest.size() - 2);
  const bool minus = !parenthesized && rest.front() == '-';
  if (minus) rest.erase(0, 1);
  const bool dollar = !rest.empty() && rest.front() == '$';
  if (dollar) rest.erase(0, 1);

  std::size_t end = 0;
  while (end < rest.size() &&
         (std::isdigit(static_cast<unsigned char>(rest[end])) || rest[end] == '.' || rest[end] == ','))
    ++end;
  const std::string body = rest.substr(0, end);
  std::string exponentText;
  if (end < rest.size() && rest[end] == 'E' && end + 2 < rest.size() &&
      (rest[end + 1] == '+' || rest[end + 1] == '-')) {
    std::size_t digitsEnd = end + 2;
    while (digitsEnd < rest.size() && std::isdigit(static_cast<unsigned char>(rest[digitsEnd]))) ++digitsEnd;
    exponentText = rest.substr(end + 1, digitsEnd - end - 1);
    if (exponentText.size() < 2 || exponentText.size() > 4) return "";
    end = digitsEnd;
  }
  const std::string suffix = rest.substr(end);
  if (suffix != "" && suffix != "%" && suffix != " EUR") return "";

  // The sign must be the number's: a negative number without one rounded to zero.
  if ((minus || parenthesized) && !(number < 0)) return "";
  std::optional<ParsedNumber> parsed;
  for (char decimalPoint : {'.', ','}) {
    parsed = ParseBody(body, exponentText, decimalPoint);
    if (parsed && Shows(*parsed, std::fabs(number))) break;
    parsed.reset();
  }
  if (!parsed) return "";

  std::string positive = dollar ? "\"$\"" : "";
  if (parsed->grouped) {
    positive += "#,##0";
  } else if (parsed->dropsLeadingZero) {
    positive += "#";
  } else if (parsed->zeroPaddedDigits > 0) {
    positive += std::string(static_cast<std::size_t>(parsed->zeroPaddedDigits), '0');
  } else {
    positive += "0";
  }
  if (parsed->decimals > 0) positive += "." + std::string(static_cast<std::size_t>(parsed->decimals), '0');
  if (parsed->hasExponent) positive += "E+00";
  if (!suffix.empty()) positive += "\"" + suffix + "\"";
  if (parenthesized) return positive + ";(" + positive + ")";
  // A negative number shown without its sign rounded to zero; the spreadsheet would add one.
  if (number < 0 && !minus) return positive + ";" + positive;
  return positive;
}
