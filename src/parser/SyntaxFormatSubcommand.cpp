// SyntaxFormatSubcommand.cpp - keywords, unit conversion and width checks of FORMAT
#include "parser/SyntaxFormatSubcommand.h"

#include <ostream>

#include "parser/PresentationCodes.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"

namespace {

enum FormatKeyword { kMinColWidth, kMaxColWidth, kUnits, kEmpty, kMissing };

// FORMAT MINCOLWIDTH '=' number|DEFAULT | MAXCOLWIDTH '=' number|DEFAULT |
//        UNITS '=' POINTS|INCHES|CM | EMPTY '=' ZERO|BLANK|'text' | MISSING '=' 'text'
const std::vector<KeywordRule>& Rules() {
  using Kind = KeywordValueKind;
  static const std::vector<KeywordRule> rules = {
      {"MINCOLWIDTH", Kind::kWord | Kind::kNumber, {{"DEFAULT", 0}}},
      {"MAXCOLWIDTH", Kind::kWord | Kind::kNumber, {{"DEFAULT", 0}}},
      {"UNITS", Kind::kWord,
       {{"POINTS", PresentationCodes::kUnitsPoints},
        {"INCHES", PresentationCodes::kUnitsInches},
        {"CM", PresentationCodes::kUnitsCm}}},
      {"EMPTY", Kind::kWord | Kind::kText,
       {{"ZERO", PresentationCodes::kEmptyFormatZero}, {"BLANK", PresentationCodes::kEmptyFormatBlank}}},
      {"MISSING", Kind::kText, {}},
  };
  return rules;
}

constexpr double kPointsPerInch = 72.0;
constexpr double kCentimetresPerInch = 2.54;
constexpr double kMinimumWidthPoints = 15.0;
constexpr double kMaximumWidthPoints = 2000.0;

}  // namespace

struct SyntaxFormatSubcommand::Data {
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

SyntaxFormatSubcommand::SyntaxFormatSubcommand()
    : SyntaxKeywordSubcommand("FORMAT", kConverterPlain, Rules()), _data(std::make_unique<Data>()) {}

SyntaxFormatSubcommand::~SyntaxFormatSubcommand() = default;

// MINCOLWIDTH '=' number | MAXCOLWIDTH '=' number
void SyntaxFormatSubcommand::OnNumber(int rule, double value, const std::string& text) {
  if (rule == kMinColWidth) {
    _data->_minWidth = value;
    _data->_minText = text;
    _data->_minIsDefault = false;
  } else {
    _data->_maxWidth = value;
    _data->_maxText = text;
    _data->_maxIsDefault = false;
  }
}

// MINCOLWIDTH '=' DEFAULT | MAXCOLWIDTH '=' DEFAULT | UNITS '=' unit | EMPTY '=' ZERO|BLANK
void SyntaxFormatSubcommand::OnWord(int rule, int code) {
  switch (rule) {
    case kMinColWidth:
      _data->_minIsDefault = true;
      break;
    case kMaxColWidth:
      _data->_maxIsDefault = true;
      break;
    case kUnits:
      _data->_units = code;
      break;
    default:
      _data->_emptyStringType = code;
      break;
  }
}

// EMPTY '=' 'text' | MISSING '=' 'text'
void SyntaxFormatSubcommand::OnText(int rule, const std::string& text) {
  if (rule == kEmpty) {
    _data->_emptyStringType = PresentationCodes::kString;
    _data->_emptyString = text;
  } else {
    _data->_missingString = text;
  }
}

void SyntaxFormatSubcommand::Commit(const std::string& /*text*/) {
  Data& data = *_data;
  if (Keywords().WasGiven(kUnits) && !Keywords().WasGiven(kMinColWidth) && !Keywords().WasGiven(kMaxColWidth)) {
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
  out << "state=" << Keywords().GetState() << " min=" << (_data->_minIsDefault ? "default" : _data->_minText)
      << " minPoints=" << _data->_minWidth << " max=" << (_data->_maxIsDefault ? "default" : _data->_maxText)
      << " maxPoints=" << _data->_maxWidth << " units=" << _data->_units
      << " emptyType=" << _data->_emptyStringType << " empty=\"" << _data->_emptyString << "\" missing=\""
      << _data->_missingString << "\"";
}
