// FormatText.cpp - format names and the text form of formats
#include "host/data/FormatText.h"

#include <cctype>
#include <initializer_list>
#include <sstream>
#include <string_view>

#include "host/data/HostStrings.h"

namespace {

struct FormatName {
  const char* name;
  FormatType type;
};

constexpr FormatName kFormatNames[] = {
    {"A", kFormatA},           {"AHEX", kFormatAHEX},
    {"COMMA", kFormatCOMMA},   {"DOLLAR", kFormatDOLLAR},
    {"F", kFormatF},           {"DATE", kFormatDATE},
    {"TIME", kFormatTIME},     {"DATETIME", kFormatDATETIME},
    {"ADATE", kFormatADATE},   {"JDATE", kFormatJDATE},
    {"DTIME", kFormatDTIME},   {"WKDAY", kFormatWKDAY},
    {"MONTH", kFormatMONTH},   {"MOYR", kFormatMOYR},
    {"QYR", kFormatQYR},       {"WKYR", kFormatWKYR},
    {"PCT", kFormatPCT},       {"DOT", kFormatDOT},
    {"CCA", kFormatCCA},       {"CCB", kFormatCCB},
    {"CCC", kFormatCCC},       {"CCD", kFormatCCD},
    {"CCE", kFormatCCE},       {"N", kFormatN},
    {"E", kFormatE},           {"EDATE", kFormatEDATE},
    {"SDATE", kFormatSDATE},   {"MTIME", kFormatMTIME},
    {"YMDHMS", kFormatYMDHMS},
};

constexpr int kMaximumDecimals = 16;

// Joins texts through a stream: GCC 12 at -O3 warns falsely (-Wrestrict) on short chains of
// string operator+ and append.
std::string Join(std::initializer_list<std::string_view> parts) {
  std::ostringstream stream;
  for (std::string_view part : parts) stream << part;
  return stream.str();
}
constexpr int kMaximumStringWidth = 32767;

bool TakesDecimals(FormatType type) {
  switch (type) {
    case kFormatCOMMA:
    case kFormatDOLLAR:
    case kFormatF:
    case kFormatPCT:
    case kFormatDOT:
    case kFormatCCA:
    case kFormatCCB:
    case kFormatCCC:
    case kFormatCCD:
    case kFormatCCE:
    case kFormatE:
    case kFormatTIME:
    case kFormatDATETIME:
    case kFormatDTIME:
    case kFormatMTIME:
    case kFormatYMDHMS:
      return true;
    default:
      return false;
  }
}

}  // namespace

bool IsDateTimeFormat(FormatType type) {
  switch (type) {
    case kFormatDATE:
    case kFormatTIME:
    case kFormatDATETIME:
    case kFormatADATE:
    case kFormatJDATE:
    case kFormatDTIME:
    case kFormatWKDAY:
    case kFormatMONTH:
    case kFormatMOYR:
    case kFormatQYR:
    case kFormatWKYR:
    case kFormatEDATE:
    case kFormatSDATE:
    case kFormatMTIME:
    case kFormatYMDHMS:
      return true;
    default:
      return false;
  }
}

bool ParseFormatText(const std::string& text, TARN_Format& format, std::string& reason) {
  std::size_t position = 0;
  while (position < text.size() && std::isalpha(static_cast<unsigned char>(text[position]))) ++position;
  const std::string name = text.substr(0, position);
  const FormatName* found = nullptr;
  for (const FormatName& candidate : kFormatNames) {
    if (TARNMBstricmp_A(candidate.name, name.c_str()) == 0) found = &candidate;
  }
  if (found == nullptr) {
    reason = name.empty() ? std::string("it does not start with a format name")
                          : Join({"'", name, "' is not a format name"});
    return false;
  }
  const auto readNumber = [&](int& value) {
    const std::size_t start = position;
    value = 0;
    while (position < text.size() && std::isdigit(static_cast<unsigned char>(text[position])) &&
           value <= 100000) {
      value = value * 10 + (text[position] - '0');
      ++position;
    }
    return position > start;
  };
  int width = 0;
  if (!readNumber(width)) {
    reason = "it has no width";
    return false;
  }
  int decimals = 0;
  bool hasDecimals = false;
  if (position < text.size() && text[position] == '.') {
    ++position;
    hasDecimals = readNumber(decimals);
    if (!hasDecimals) {
      reason = "it has no decimals after the point";
      return false;
    }
  }
  if (position != text.size()) {
    reason = Join({"'", text.substr(position), "' follows the width"});
    return false;
  }
  const bool isString = found->type == kFormatA || found->type == kFormatAHEX;
  if (width < 1 || (isString && width > kMaximumStringWidth)) {
    reason = "its width is out of range";
    return false;
  }
  if (hasDecimals && !TakesDecimals(found->type)) {
    reason = Join({"a ", found->name, " format takes no decimals"});
    return false;
  }
  if (decimals > kMaximumDecimals) {
    reason = "it has more than 16 decimals";
    return false;
  }
  if (hasDecimals && decimals >= width) {
    reason = "its decimals do not fit in its width";
    return false;
  }
  format = TARN_Format(found->type, width, decimals);
  return true;
}

std::string FormatToText(const TARN_Format& format) {
  std::string text = "?";
  for (const FormatName& candidate : kFormatNames) {
    if (candidate.type == format.Type()) text = candidate.name;
  }
  text = Join({text, std::to_string(format.Width())});
  if (TakesDecimals(format.Type()) && !format.IsString())
    text = Join({text, ".", std::to_string(format.Decimals())});
  return text;
}
