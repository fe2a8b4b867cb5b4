// Statistics.cpp - label, cut point and format words of one bracketed statistic
#include "parser/Statistics.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ostream>

#include "host/data/TARN_Format.h"
#include "host/engine/AggregationStatistic.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"

namespace {

// One format keyword: the host's format type, whether decimals may follow the width, their
// maximum, and the decoration it implies.
struct FormatKeyword {
  const char* keyword;
  int type;
  bool decimalsAllowed;
  int maximumDecimals;
  PresentationCodes::DisplayFormat display;
};

// Tried in this order, the first fit wins: DATETIME must come before DATE, and the
// decorated forms after the one-letter keywords they begin with.
constexpr FormatKeyword kFormatKeywords[] = {
    {"F", 5, true, 16, PresentationCodes::kDisplayPlain},
    {"N", 16, true, 16, PresentationCodes::kDisplayPlain},
    {"E", 17, true, 16, PresentationCodes::kDisplayPlain},
    {"PCT", 31, true, 16, PresentationCodes::kDisplayPlain},
    {"CCA", 33, true, 16, PresentationCodes::kDisplayPlain},
    {"CCB", 34, true, 16, PresentationCodes::kDisplayPlain},
    {"CCC", 35, true, 16, PresentationCodes::kDisplayPlain},
    {"CCD", 36, true, 16, PresentationCodes::kDisplayPlain},
    {"CCE", 37, true, 16, PresentationCodes::kDisplayPlain},
    {"COMMA", 3, true, 16, PresentationCodes::kDisplayPlain},
    {"DOT", 32, true, 16, PresentationCodes::kDisplayPlain},
    {"DOLLAR", 4, true, 16, PresentationCodes::kDisplayPlain},
    {"ADATE", 23, false, 0, PresentationCodes::kDisplayPlain},
    {"EDATE", 38, false, 0, PresentationCodes::kDisplayPlain},
    {"JDATE", 24, false, 0, PresentationCodes::kDisplayPlain},
    {"SDATE", 39, false, 0, PresentationCodes::kDisplayPlain},
    {"QYR", 29, false, 0, PresentationCodes::kDisplayPlain},
    {"MOYR", 28, false, 0, PresentationCodes::kDisplayPlain},
    {"WKYR", 30, false, 0, PresentationCodes::kDisplayPlain},
    {"WKDAY", 26, false, 0, PresentationCodes::kDisplayPlain},
    {"MONTH", 27, false, 0, PresentationCodes::kDisplayPlain},
    {"TIME", 21, true, 16, PresentationCodes::kDisplayPlain},
    {"DTIME", 25, true, 16, PresentationCodes::kDisplayPlain},
    {"DATETIME", 22, true, 16, PresentationCodes::kDisplayPlain},
    {"DATE", 20, false, 0, PresentationCodes::kDisplayPlain},
    {"MTIME", 85, true, 16, PresentationCodes::kDisplayPlain},
    {"YMDHMS", 86, true, 16, PresentationCodes::kDisplayPlain},
    {"NEGPAREN", 5, true, 16, PresentationCodes::kDisplayNegParen},
    {"NEQUAL", 5, true, 16, PresentationCodes::kDisplayNEqual},
    {"PAREN", 5, true, 16, PresentationCodes::kDisplayParen},
    {"PCTPAREN", 31, true, 16, PresentationCodes::kDisplayPctParen},
};

// The width written in a format only has to parse: it is replaced by the widest numeric width.
constexpr int kStatisticFormatWidth = 40;

// Whether all of `text` is one integer (base 10); the empty text counts, as nothing is left over.
bool ParseWholeInteger(const std::string& text, long& value) {
  const char* start = text.c_str();
  char* end = nullptr;
  errno = 0;
  value = std::strtol(start, &end, 10);
  return *end == '\0';
}

}  // namespace

struct Statistics::Data {
  StatisticCodes _statType;                                            // the code
  StatisticCodes _primaryStatistic = TableEncryptionCodes::kStatNone;  // the primary code
  StatisticConf _confSubType = TableEncryptionCodes::kConfUnset;       // the confidence variant
  DisplayFormat _displayFormat = PresentationCodes::kDisplayPlain;     // decoration of the value
  std::string _nameToken;                                              // the keyword as typed
  std::string _label;                                                  // label to show
  std::string _defaultLabel;                                           // the vocabulary's label
  std::string _statText;            // everything written for this statistic so far
  bool _labelIsDefault = true;      // _label was not given by the user
  bool _hasLabelParameter = false;  // _label holds "^1" for the confidence level
  StatisticsGroup _statGroup = TableEncryptionCodes::kStatGroupCounts;
  double _cutPoint = -1.0;               // the percentile; negative: none
  std::string _cutPointText;             // the percentile as typed
  std::unique_ptr<TARN_Format> _format;  // the user's format, or null
  bool _hasFormat = false;
  double _ciLevelValue = 95.0;
  std::string _ciLevelString = "95";
};

Statistics::Statistics(StatisticCodes code, const std::string& keywordAsTyped,
                       const std::string& defaultLabel)
    : _data(std::make_unique<Data>()) {
  _data->_statType = code;
  _data->_nameToken = keywordAsTyped;
  _data->_label = defaultLabel;
  _data->_defaultLabel = defaultLabel;
  _data->_statText = keywordAsTyped;
  int prime = 0;
  int conf = TableEncryptionCodes::kConfUnset;
  if (AggregationStatistic::GetStatPrimeAndConf(code, prime, conf)) {
    _data->_primaryStatistic = static_cast<StatisticCodes>(prime);
    _data->_confSubType = static_cast<StatisticConf>(conf);
  }
  _data->_hasLabelParameter = _data->_confSubType == TableEncryptionCodes::kConfLcl ||
                              _data->_confSubType == TableEncryptionCodes::kConfUcl;
}

Statistics::~Statistics() = default;

int Statistics::GetType() const {
  return kConverterStatistics;
}

bool Statistics::IsPercentile() const {
  return _data->_primaryStatistic == TableEncryptionCodes::kStatPtile ||
         _data->_primaryStatistic == TableEncryptionCodes::kStatUPtile;
}

// statistic format-keyword
SyntaxConverter* Statistics::String(const std::string& text) {
  _data->_statText += " " + text;
  ValidateAndCommit(text);
  int type = 0;
  int width = 0;
  int decimals = 0;
  if (!SetFormat(text, type, width, decimals)) {
    return GetParent()->String(text);
  }
  if (_data->_hasFormat) {
    SyntaxParserUtility::DuplicateWarning(this, _data->_statText);
  }
  _data->_format = std::make_unique<TARN_Format>(type, width, decimals);
  _data->_hasFormat = true;
  return this;
}

// statistic 'label'
SyntaxConverter* Statistics::Literal(const std::string& text) {
  _data->_statText += " \"" + text + "\"";
  if (!_data->_labelIsDefault) {
    SyntaxParserUtility::DuplicateWarning(this, _data->_statText);
  }
  ValidateAndCommit(text);
  _data->_label = text;
  _data->_labelIsDefault = false;
  _data->_hasLabelParameter = false;
  if (_data->_confSubType == TableEncryptionCodes::kConfLcl ||
      _data->_confSubType == TableEncryptionCodes::kConfUcl) {
    static const std::string kLevelWord = ")CILEVEL";
    const std::size_t at = _data->_label.find(kLevelWord);
    if (at != std::string::npos) {
      // The level is shown as a percentage, sign included: a "%" the user wrote after the
      // word goes with it, so that 'Lower )CILEVEL%' reads "Lower 95.0%".
      std::size_t length = kLevelWord.size();
      if (_data->_label.compare(at + length, 1, "%") == 0) ++length;
      _data->_label.replace(at, length, "^1");
      _data->_hasLabelParameter = true;
    }
  }
  return this;
}

// PTILE number
SyntaxConverter* Statistics::Number(double value, const std::string& text) {
  _data->_statText += " " + text;
  _data->_cutPointText = text;
  if (!IsPercentile() || !(value > 0.0 && value < 100.0)) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (HasCutPoint()) {
    SyntaxParserUtility::DuplicateWarning(this, _data->_statText);
  }
  _data->_cutPoint = value;
  if (_data->_labelIsDefault) {
    _data->_label = _data->_defaultLabel + " " + text;
  }
  return this;
}

void Statistics::ValidateAndCommit(const std::string& /*text*/) {
  if (IsPercentile() && !HasCutPoint()) {
    SyntaxParserUtility::InvalidPTILE(this, _data->_statText);
  }
}

Statistics::StatisticCodes Statistics::GetStatType() const {
  return _data->_statType;
}

Statistics::StatisticCodes Statistics::GetPrimaryStatistic() const {
  return _data->_primaryStatistic;
}

Statistics::StatisticConf Statistics::GetConfSubType() const {
  return _data->_confSubType;
}

bool Statistics::operator==(const Statistics& other) const {
  if (GetStatType() != other.GetStatType()) {
    return false;
  }
  return !IsPercentile() || GetCutPoint() == other.GetCutPoint();
}

bool Statistics::HasCutPoint() const {
  return _data->_cutPoint >= 0.0;
}

double Statistics::GetCutPoint() const {
  return _data->_cutPoint;
}

std::string Statistics::GetNameToken() const {
  if (IsPercentile()) {
    return _data->_nameToken + " " + _data->_cutPointText;
  }
  return _data->_nameToken;
}

std::string Statistics::GetLabel() const {
  return _data->_label;
}

std::string Statistics::GetDefaultLabel() const {
  return _data->_defaultLabel;
}

bool Statistics::HasDefaultLabel() const {
  return _data->_labelIsDefault;
}

bool Statistics::HasLabelParameter() const {
  return _data->_hasLabelParameter;
}

const TARN_Format* Statistics::GetFormat() const {
  return _data->_format.get();
}

bool Statistics::HasFormat() const {
  return _data->_hasFormat;
}

Statistics::DisplayFormat Statistics::GetStatDisplayFormat() const {
  return _data->_displayFormat;
}

Statistics::StatisticsGroup Statistics::GetStatGroup() const {
  return _data->_statGroup;
}

void Statistics::SetStatGroup(StatisticsGroup group) {
  _data->_statGroup = group;
}

void Statistics::SetCILevel(double value, const std::string& text) {
  _data->_ciLevelValue = value;
  _data->_ciLevelString = text;
}

double Statistics::GetCILevelValue() const {
  return _data->_ciLevelValue;
}

std::string Statistics::GetCILevelString() const {
  return _data->_ciLevelString;
}

std::string Statistics::GetStatText() const {
  return _data->_statText;
}

bool Statistics::SetFormat(const std::string& text, int& type, int& width, int& decimals) {
  for (const FormatKeyword& entry : kFormatKeywords) {
    if (!IsItThisFormat(text, entry.keyword, width, decimals, entry.decimalsAllowed)) {
      continue;
    }
    if (entry.maximumDecimals == 0 && decimals >= 1) {
      SyntaxParserUtility::FormatDecimalViolation(this, text);
    }
    // A negative count of decimals cannot be shown either; it is out of bounds like 17.
    if (decimals > entry.maximumDecimals || decimals < 0) {
      SyntaxParserUtility::FormatDecimalBoundError(this, text);
    }
    type = entry.type;
    width = kStatisticFormatWidth;
    // A later format replaces an earlier one entirely, decoration included.
    _data->_displayFormat = entry.display;
    return true;
  }
  return false;
}

bool Statistics::IsItThisFormat(const std::string& text, const std::string& keyword, int& width,
                                int& decimals, bool decimalsAllowed) {
  if (text.size() < keyword.size() ||
      !SyntaxParserUtility::ExactNWordMatch(text, keyword, static_cast<int>(keyword.size()))) {
    return false;
  }
  if (text.size() == keyword.size()) {
    SyntaxParserUtility::FormatMissingWidthError(this, text);
  }
  const std::string rest = text.substr(keyword.size());
  if (rest.back() == '.') {
    SyntaxParserUtility::FormatPrematureEnd(this, text);
  }
  const std::size_t point = rest.find('.');
  if (point == std::string::npos) {
    char* end = nullptr;
    const double parsed = std::strtod(rest.c_str(), &end);
    if (*end != '\0') {
      return false;
    }
    // The width is not kept, so a huge one only has to stay a valid int.
    width = parsed >= INT_MAX ? INT_MAX : parsed <= INT_MIN ? INT_MIN : static_cast<int>(parsed);
    return true;
  }
  if (!decimalsAllowed) {
    SyntaxParserUtility::FormatDecimalViolation(this, text);
  }
  const std::size_t decimalsStart = rest.find_first_not_of('.', point);
  long widthValue = 0;
  long decimalsValue = 0;
  if (!ParseWholeInteger(rest.substr(0, point), widthValue) ||
      !ParseWholeInteger(rest.substr(decimalsStart), decimalsValue)) {
    return false;
  }
  width = widthValue >= INT_MAX ? INT_MAX : widthValue <= INT_MIN ? INT_MIN : static_cast<int>(widthValue);
  decimals = decimalsValue >= INT_MAX   ? INT_MAX
             : decimalsValue <= INT_MIN ? INT_MIN
                                        : static_cast<int>(decimalsValue);
  return true;
}

void Statistics::DumpDetails(std::ostream& out) const {
  out << "code=" << _data->_statType << " prime=" << _data->_primaryStatistic
      << " conf=" << _data->_confSubType << " name=" << GetNameToken() << " label=\"" << _data->_label
      << "\" labelDefault=" << _data->_labelIsDefault << " labelParameter=" << _data->_hasLabelParameter
      << " group=" << _data->_statGroup << " cutPoint=" << _data->_cutPoint
      << " display=" << _data->_displayFormat;
  if (_data->_format != nullptr) {
    out << " format=" << static_cast<int>(_data->_format->Type()) << "/" << _data->_format->Width() << "."
        << static_cast<int>(_data->_format->Decimals());
  } else {
    out << " format=none";
  }
  out << " ciLevel=" << _data->_ciLevelString;
}
