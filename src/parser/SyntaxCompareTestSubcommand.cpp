// SyntaxCompareTestSubcommand.cpp - keywords and checks of COMPARETEST
#include "parser/SyntaxCompareTestSubcommand.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "host/output/MessageKeys.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TableSettings.h"

namespace {

// The keyword being read; its value comes next.
enum CompareTestState {
  kStateNone = 0,
  kStateType = 1,
  kStateAlpha = 2,
  kStateAdjust = 3,
  kStateOrigin = 4,
  kStateCategories = 5,
  kStateIncludeMRSets = 6,
  kStateMeansVariance = 7,
  kStateMerge = 8,
  kStateShowSig = 9,
  kStateStyle = 10,
  kStateSigDigits = 11,
};

struct KeywordState {
  const char* keyword;
  CompareTestState state;
};

constexpr KeywordState kKeywords[] = {
    {"TYPE", kStateType},
    {"ALPHA", kStateAlpha},
    {"ADJUST", kStateAdjust},
    {"ORIGIN", kStateOrigin},
    {"CATEGORIES", kStateCategories},
    {"INCLUDEMRSETS", kStateIncludeMRSets},
    {"MEANSVARIANCE", kStateMeansVariance},
    {"MERGE", kStateMerge},
    {"SHOWSIG", kStateShowSig},
    {"STYLE", kStateStyle},
    {"SIGDIGS", kStateSigDigits},
};

constexpr int kMinimumSigDigits = 1;
constexpr int kMaximumSigDigits = 16;

bool Is(const std::string& text, const char* word) {
  return SyntaxParserUtility::ExactWordMatch(text, word);
}

}  // namespace

struct SyntaxCompareTestSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;  // the table's, where the test is registered
  CompareTestState _state = kStateNone;
  int _type = 0;  // 0 until TYPE; then kSigTestProportions or kSigTestMeans
  double _alpha = 0.05;
  double _alpha2 = 0.0;
  std::string _alphaText = "0.05";
  std::string _alpha2Text;
  PresentationCodes::SignificanceAdjustType _adjustType = PresentationCodes::kAdjustBonferroni;
  bool _originColumn = true;
  bool _includeMRSets = true;
  bool _includeSubtotals = false;
  bool _meansVarianceAllCats = true;
  bool _merge = false;
  bool _showSig = false;
  int _sigDigits = 3;
  bool _styleApa = true;
  bool _alphaSet = false;
  bool _adjustSet = false;
  bool _originSet = false;
  bool _categoriesSet = false;
  bool _includeMRSetsSet = false;
  bool _meansVarianceSet = false;
};

SyntaxCompareTestSubcommand::SyntaxCompareTestSubcommand(TableSettings& settings)
    : _data(std::make_unique<Data>(settings)) {}

SyntaxCompareTestSubcommand::~SyntaxCompareTestSubcommand() = default;

std::string SyntaxCompareTestSubcommand::GetSubcommandName() const {
  return "COMPARETEST";
}

// COMPARETEST keyword '='
SyntaxConverter* SyntaxCompareTestSubcommand::AttributeString(const std::string& text,
                                                              TARN_TokenSequence* /*tokens*/) {
  if (_data->_state != kStateNone) {
    _data->_state = kStateNone;
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  for (const KeywordState& entry : kKeywords) {
    if (!KeywordMatch(text.c_str(), entry.keyword)) {
      continue;
    }
    bool repeated = false;
    switch (entry.state) {
      case kStateType:
        repeated = _data->_type != 0;
        break;
      case kStateAlpha:
        repeated = _data->_alphaSet;
        break;
      case kStateAdjust:
        repeated = _data->_adjustSet;
        break;
      case kStateOrigin:
        repeated = _data->_originSet;
        break;
      case kStateCategories:
        repeated = _data->_categoriesSet;
        break;
      case kStateIncludeMRSets:
        repeated = _data->_includeMRSetsSet;
        break;
      case kStateMeansVariance:
        repeated = _data->_meansVarianceSet;
        break;
      default:
        // MERGE, SHOWSIG, STYLE and SIGDIGS simply take the later value.
        break;
    }
    if (repeated) {
      SyntaxParserUtility::DuplicateWarning(this, entry.keyword);
    }
    if (entry.state == kStateAlpha) {
      // A new ALPHA replaces both levels of an earlier one.
      _data->_alpha2 = 0.0;
      _data->_alpha2Text.clear();
    }
    _data->_state = entry.state;
    return this;
  }
  SyntaxParserUtility::UnknownKeyword(this, text);
}

// ALPHA '=' number [number] | SIGDIGS '=' number
SyntaxConverter* SyntaxCompareTestSubcommand::Number(double value, const std::string& text) {
  if (_data->_state == kStateAlpha) {
    if (!(value > 0.0 && value < 1.0)) {
      SyntaxParserUtility::InvalidAlpha(this, text);
    }
    _data->_alpha = value;
    _data->_alphaText = text;
    _data->_alphaSet = true;
    _data->_state = kStateNone;
    return this;
  }
  if (_data->_state == kStateNone && _data->_alphaSet) {
    if (!(value > 0.0 && value < 1.0)) {
      SyntaxParserUtility::InvalidAlpha(this, text);
    }
    if (value == _data->_alpha) {
      SyntaxParserUtility::GenericMessage(msg::kAlphaValuesEqual, /*warning=*/true, nullptr,
                                          nullptr);
      return this;
    }
    if (value < _data->_alpha) {
      _data->_alpha2 = _data->_alpha;
      _data->_alpha2Text = _data->_alphaText;
      _data->_alpha = value;
      _data->_alphaText = text;
    } else {
      _data->_alpha2 = value;
      _data->_alpha2Text = text;
    }
    return this;
  }
  if (_data->_state == kStateSigDigits) {
    const double clamped = value < kMinimumSigDigits   ? kMinimumSigDigits
                           : value > kMaximumSigDigits ? kMaximumSigDigits
                                                       : value;
    _data->_sigDigits = static_cast<int>(clamped);
    _data->_state = kStateNone;
    return this;
  }
  SyntaxParserUtility::UnknownKeyword(this, text);
}

SyntaxConverter* SyntaxCompareTestSubcommand::String(const std::string& text) {
  Data& data = *_data;
  switch (data._state) {
    case kStateType:
      if (Is(text, "PROP")) {
        data._type = TableEncryptionCodes::kSigTestProportions;
      } else if (Is(text, "MEAN")) {
        data._type = TableEncryptionCodes::kSigTestMeans;
      } else {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      break;
    case kStateAdjust:
      if (Is(text, "NONE")) {
        data._adjustType = PresentationCodes::kAdjustNone;
      } else if (Is(text, "BONFERRONI")) {
        data._adjustType = PresentationCodes::kAdjustBonferroni;
      } else if (Is(text, "BH")) {
        data._adjustType = PresentationCodes::kAdjustBH;
      } else {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      data._adjustSet = true;
      break;
    case kStateOrigin:
      if (!Is(text, "COLUMN")) {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      data._originColumn = true;
      data._originSet = true;
      break;
    case kStateCategories:
      if (Is(text, "ALLVISIBLE")) {
        data._includeSubtotals = false;
      } else if (Is(text, "SUBTOTALS")) {
        data._includeSubtotals = true;
      } else {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      data._categoriesSet = true;
      break;
    case kStateIncludeMRSets:
      if (Is(text, "YES")) {
        data._includeMRSets = true;
      } else if (Is(text, "NO")) {
        data._includeMRSets = false;
      } else {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      data._includeMRSetsSet = true;
      break;
    case kStateMeansVariance:
      if (Is(text, "ALLCATS")) {
        data._meansVarianceAllCats = true;
      } else if (Is(text, "TESTEDCATS")) {
        data._meansVarianceAllCats = false;
      } else {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      data._meansVarianceSet = true;
      break;
    case kStateMerge:
      if (Is(text, "TRUE") || Is(text, "YES")) {
        data._merge = true;
      } else if (Is(text, "FALSE") || Is(text, "NO")) {
        data._merge = false;
      } else {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      break;
    case kStateShowSig:
      if (Is(text, "YES")) {
        data._showSig = true;
      } else if (Is(text, "NO")) {
        data._showSig = false;
      } else {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      break;
    case kStateStyle:
      if (Is(text, "APA")) {
        data._styleApa = true;
      } else if (Is(text, "SIMPLE")) {
        data._styleApa = false;
      } else {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      break;
    default:
      // No keyword awaits a word (ALPHA and SIGDIGS take numbers).
      SyntaxParserUtility::UnknownKeyword(this, text);
  }
  data._state = kStateNone;
  return this;
}

void SyntaxCompareTestSubcommand::ValidateAndCommit(const std::string& text) {
  Data& data = *_data;
  if (data._state != kStateNone) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  const bool anyTestOption = data._alphaSet || data._adjustSet || data._originSet || data._categoriesSet ||
                             data._includeMRSetsSet || data._meansVarianceSet;
  if (data._type == 0 && !anyTestOption) {
    return;
  }
  if (data._type == 0) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (data._merge && data._showSig) {
    SyntaxParserUtility::SigTestMergedNoPValue();
    data._merge = false;
  }
  if (data._merge && data._styleApa && !data._alpha2Text.empty()) {
    SyntaxParserUtility::GenericMessage(msg::kOneAlphaWithApaStyle, /*warning=*/true,
                                        nullptr, nullptr);
    data._alpha2Text.clear();
    data._alpha2 = 0.0;
  }
  SigTestSettings settings(static_cast<TableEncryptionCodes::SignificanceTestType>(data._type), data._alpha,
                           data._alpha2, data._alphaText, data._alpha2Text, data._adjustType,
                           data._originColumn, data._merge, data._showSig, data._sigDigits);
  settings._includeMRSets = data._includeMRSets;
  settings._includeSubtotals = data._includeSubtotals;
  settings._meansVarianceAllCats = data._meansVarianceAllCats;
  settings._styleApa = data._styleApa;
  data._settings.AddCompareTest(settings);
}

void SyntaxCompareTestSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_state << " type=" << _data->_type << " alpha=" << _data->_alphaText
      << " alpha2=" << _data->_alpha2Text << " adjust=" << _data->_adjustType << " merge=" << _data->_merge
      << " showSig=" << _data->_showSig << " sigDigits=" << _data->_sigDigits
      << " styleApa=" << _data->_styleApa;
}
