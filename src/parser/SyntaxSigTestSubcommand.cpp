// SyntaxSigTestSubcommand.cpp - keywords and checks of SIGTEST
#include "parser/SyntaxSigTestSubcommand.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TableSettings.h"

namespace {

enum SigTestState {
  kStateNone = 0,
  kStateType = 1,
  kStateAlpha = 2,
  kStateCategories = 3,
  kStateIncludeMRSets = 4,
};

struct KeywordState {
  const char* keyword;
  SigTestState state;
};

constexpr KeywordState kKeywords[] = {
    {"TYPE", kStateType},
    {"ALPHA", kStateAlpha},
    {"CATEGORIES", kStateCategories},
    {"INCLUDEMRSETS", kStateIncludeMRSets},
};

bool Is(const std::string& text, const char* word) {
  return SyntaxParserUtility::ExactWordMatch(text, word);
}

}  // namespace

struct SyntaxSigTestSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;  // the table's, where the test is registered
  SigTestState _state = kStateNone;
  double _alpha = 0.05;
  int _type = 0;  // 0 until TYPE=CHISQUARE
  std::string _alphaText = "0.05";
  bool _alphaSet = false;
  bool _includeSubtotals = false;
  bool _categoriesSet = false;
  bool _includeMRSets = true;
  bool _includeMRSetsSet = false;
};

SyntaxSigTestSubcommand::SyntaxSigTestSubcommand(TableSettings& settings)
    : _data(std::make_unique<Data>(settings)) {}

SyntaxSigTestSubcommand::~SyntaxSigTestSubcommand() = default;

std::string SyntaxSigTestSubcommand::GetSubcommandName() const {
  return "SIGTEST";
}

// SIGTEST keyword '='
SyntaxConverter* SyntaxSigTestSubcommand::AttributeString(const std::string& text,
                                                          TARN_TokenSequence* /*tokens*/) {
  if (_data->_state != kStateNone) {
    _data->_state = kStateNone;
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  for (const KeywordState& entry : kKeywords) {
    if (!KeywordMatch(text.c_str(), entry.keyword)) {
      continue;
    }
    const bool repeated = (entry.state == kStateType && _data->_type != 0) ||
                          (entry.state == kStateAlpha && _data->_alphaSet) ||
                          (entry.state == kStateCategories && _data->_categoriesSet) ||
                          (entry.state == kStateIncludeMRSets && _data->_includeMRSetsSet);
    if (repeated) {
      SyntaxParserUtility::DuplicateWarning(this, entry.keyword);
    }
    _data->_state = entry.state;
    return this;
  }
  SyntaxParserUtility::UnknownKeyword(this, text);
}

// ALPHA '=' number
SyntaxConverter* SyntaxSigTestSubcommand::Number(double value, const std::string& text) {
  if (_data->_state != kStateAlpha) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (!(value > 0.0 && value < 1.0)) {
    SyntaxParserUtility::InvalidAlpha(this, text);
  }
  _data->_alpha = value;
  _data->_alphaText = text;
  _data->_alphaSet = true;
  _data->_state = kStateNone;
  return this;
}

SyntaxConverter* SyntaxSigTestSubcommand::String(const std::string& text) {
  Data& data = *_data;
  switch (data._state) {
    case kStateType:
      if (!Is(text, "CHISQUARE")) {
        SyntaxParserUtility::UnknownKeyword(this, text);
      }
      data._type = TableEncryptionCodes::kSigTestChiSquare;
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
    default:
      SyntaxParserUtility::UnknownKeyword(this, text);
  }
  data._state = kStateNone;
  return this;
}

void SyntaxSigTestSubcommand::ValidateAndCommit(const std::string& text) {
  Data& data = *_data;
  if (data._state != kStateNone) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (data._type != 0) {
    SigTestSettings settings(TableEncryptionCodes::kSigTestChiSquare, data._alpha, data._alphaText);
    settings._includeMRSets = data._includeMRSets;
    settings._includeSubtotals = data._includeSubtotals;
    data._settings.AddSignificanceTest(settings);
    return;
  }
  if (data._alphaSet || data._categoriesSet || data._includeMRSetsSet) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
}

void SyntaxSigTestSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_state << " type=" << _data->_type << " alpha=" << _data->_alphaText
      << " includeSubtotals=" << _data->_includeSubtotals << " includeMRSets=" << _data->_includeMRSets;
}
