// SyntaxFormatSubcommand.cpp - keywords, unit conversion and width checks of FORMAT
#include "parser/SyntaxFormatSubcommand.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "parser/PresentationCodes.h"
#include "parser/SyntaxParserUtility.h"

namespace {

enum FormatState {
  kStateNone = 0,
  kStateMinColWidth = 1,
  kStateMaxColWidth = 2,
  kStateUnits = 3,
  kStateEmpty = 4,
  kStateMissing = 5,
};

struct KeywordState {
  const char* keyword;
  FormatState state;
};

constexpr KeywordState kKeywords[] = {
    {"MINCOLWIDTH", kStateMinColWidth},
    {"MAXCOLWIDTH", kStateMaxColWidth},
    {"UNITS", kStateUnits},
    {"EMPTY", kStateEmpty},
    {"MISSING", kStateMissing},
};

constexpr double kPointsPerInch = 72.0;
constexpr double kCentimetresPerInch = 2.54;
constexpr double kMinimumWidthPoints = 15.0;
constexpr double kMaximumWidthPoints = 2000.0;

bool Is(const std::string& text, const char* word) {
  return SyntaxParserUtility::ExactWordMatch(text, word);
}

}  // namespace

struct SyntaxFormatSubcommand::Data {
  FormatState _state = kStateNone;
  bool _minSet = false;
  bool _maxSet = false;
  bool _unitsSet = false;
  bool _emptySet = false;
  bool _missingSet = false;
  bool _minIsDefault = true;  // no numeric minimum: the host's default stands
  bool _maxIsDefault = true;
  double _minWidth = 0.0;  // as written, then in points after ValidateAndCommit
  double _maxWidth = 0.0;
  std::string _minText;  // the minimum as written, for messages
  std::string _maxText;
  int _emptyStringType = PresentationCodes::kEmptyFormatZero;
  int _units = PresentationCodes::kUnitsPoints;
  std::string _missingString = ".";
  std::string _emptyString;

  double ToPoints(double width) const {
    switch (_units) {
      case PresentationCodes::kUnitsInches:
        return width * kPointsPerInch;
      case PresentationCodes::kUnitsCm:
        return width * kPointsPerInch / kCentimetresPerInch;
      default:
        return width;
    }
  }
};

SyntaxFormatSubcommand::SyntaxFormatSubcommand() : _data(std::make_unique<Data>()) {}

SyntaxFormatSubcommand::~SyntaxFormatSubcommand() = default;

std::string SyntaxFormatSubcommand::GetSubcommandName() const {
  return "FORMAT";
}

// FORMAT keyword '='
SyntaxConverter* SyntaxFormatSubcommand::AttributeString(const std::string& text,
                                                         TARN_TokenSequence* /*tokens*/) {
  if (_data->_state != kStateNone) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  for (const KeywordState& entry : kKeywords) {
    if (!KeywordMatch(text.c_str(), entry.keyword)) {
      continue;
    }
    const bool repeated = (entry.state == kStateMinColWidth && _data->_minSet) ||
                          (entry.state == kStateMaxColWidth && _data->_maxSet) ||
                          (entry.state == kStateUnits && _data->_unitsSet) ||
                          (entry.state == kStateEmpty && _data->_emptySet) ||
                          (entry.state == kStateMissing && _data->_missingSet);
    if (repeated) {
      SyntaxParserUtility::DuplicateWarning(this, entry.keyword);
    }
    _data->_state = entry.state;
    return this;
  }
  SyntaxParserUtility::UnknownKeyword(this, text);
}

// MINCOLWIDTH '=' number | MAXCOLWIDTH '=' number
SyntaxConverter* SyntaxFormatSubcommand::Number(double value, const std::string& text) {
  if (_data->_state == kStateMinColWidth) {
    _data->_minWidth = value;
    _data->_minText = text;
    _data->_minIsDefault = false;
    _data->_minSet = true;
  } else if (_data->_state == kStateMaxColWidth) {
    _data->_maxWidth = value;
    _data->_maxText = text;
    _data->_maxIsDefault = false;
    _data->_maxSet = true;
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  _data->_state = kStateNone;
  return this;
}

// MINCOLWIDTH '=' DEFAULT | MAXCOLWIDTH '=' DEFAULT | UNITS '=' unit | EMPTY '=' ZERO|BLANK
SyntaxConverter* SyntaxFormatSubcommand::String(const std::string& text) {
  Data& data = *_data;
  switch (data._state) {
    case kStateMinColWidth:
    case kStateMaxColWidth:
      if (!Is(text, "DEFAULT")) {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      if (data._state == kStateMinColWidth) {
        data._minIsDefault = true;
        data._minSet = true;
      } else {
        data._maxIsDefault = true;
        data._maxSet = true;
      }
      break;
    case kStateUnits:
      if (Is(text, "POINTS")) {
        data._units = PresentationCodes::kUnitsPoints;
      } else if (Is(text, "INCHES")) {
        data._units = PresentationCodes::kUnitsInches;
      } else if (Is(text, "CM")) {
        data._units = PresentationCodes::kUnitsCm;
      } else {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      data._unitsSet = true;
      break;
    case kStateEmpty:
      if (Is(text, "ZERO")) {
        data._emptyStringType = PresentationCodes::kEmptyFormatZero;
      } else if (Is(text, "BLANK")) {
        data._emptyStringType = PresentationCodes::kEmptyFormatBlank;
      } else {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      data._emptySet = true;
      break;
    default:
      SyntaxParserUtility::UnknownKeyword(this, text);
  }
  data._state = kStateNone;
  return this;
}

// EMPTY '=' 'text' | MISSING '=' 'text'
SyntaxConverter* SyntaxFormatSubcommand::Literal(const std::string& text) {
  if (_data->_state == kStateEmpty) {
    _data->_emptyStringType = PresentationCodes::kString;
    _data->_emptyString = text;
    _data->_emptySet = true;
  } else if (_data->_state == kStateMissing) {
    _data->_missingString = text;
    _data->_missingSet = true;
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  _data->_state = kStateNone;
  return this;
}

void SyntaxFormatSubcommand::ValidateAndCommit(const std::string& text) {
  Data& data = *_data;
  if (data._state != kStateNone) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (data._unitsSet && !data._minSet && !data._maxSet) {
    // The warning names the unit given, as the reader wrote it.
    const char* unit = data._units == PresentationCodes::kUnitsInches ? "INCHES"
                       : data._units == PresentationCodes::kUnitsCm   ? "CM"
                                                                      : "POINTS";
    SyntaxParserUtility::OrphanUnitAttribute(this, std::string("UNITS=") + unit);
  }
  if (!data._minIsDefault) {
    data._minWidth = data.ToPoints(data._minWidth);
    if (data._minWidth < kMinimumWidthPoints || data._minWidth > kMaximumWidthPoints) {
      SyntaxParserUtility::MinColWithBoundError(this, data._minText);
    }
  }
  if (!data._maxIsDefault) {
    data._maxWidth = data.ToPoints(data._maxWidth);
    // The order of the pair is checked ahead of the maximum's own bounds.
    if (!data._minIsDefault && data._minWidth > data._maxWidth) {
      SyntaxParserUtility::MinMaxColWithError(this, data._minText);
    }
    if (data._maxWidth < kMinimumWidthPoints || data._maxWidth > kMaximumWidthPoints) {
      SyntaxParserUtility::MaxColWithBoundError(this, data._maxText);
    }
  }
  // The widths are in points now; a second validation must not convert them again.
  data._units = PresentationCodes::kUnitsPoints;
}

std::string SyntaxFormatSubcommand::GetEmptyString() const {
  return _data->_emptyString;
}

std::string SyntaxFormatSubcommand::GetMissingString() const {
  return _data->_missingString;
}

int SyntaxFormatSubcommand::GetEmptyStringType() const {
  return _data->_emptyStringType;
}

bool SyntaxFormatSubcommand::HasMinColumnWidth() const {
  return !_data->_minIsDefault;
}

double SyntaxFormatSubcommand::GetMinColumnWidthPoints() const {
  return _data->_minWidth;
}

bool SyntaxFormatSubcommand::HasMaxColumnWidth() const {
  return !_data->_maxIsDefault;
}

double SyntaxFormatSubcommand::GetMaxColumnWidthPoints() const {
  return _data->_maxWidth;
}

void SyntaxFormatSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_state << " min=" << (_data->_minIsDefault ? "default" : _data->_minText)
      << " minPoints=" << _data->_minWidth << " max=" << (_data->_maxIsDefault ? "default" : _data->_maxText)
      << " maxPoints=" << _data->_maxWidth << " units=" << _data->_units
      << " emptyType=" << _data->_emptyStringType << " empty=\"" << _data->_emptyString << "\" missing=\""
      << _data->_missingString << "\"";
}
