// SyntaxSigTestSubcommand.cpp - keywords and checks of SIGTEST
#include "parser/SyntaxSigTestSubcommand.h"

#include <ostream>

#include "parser/KeywordReader.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TableSettings.h"

namespace {

// The keywords, in the order of their rules below.
enum SigTestKeyword { kType, kAlpha, kCategories, kIncludeMRSets };

// SIGTEST TYPE '=' CHISQUARE | ALPHA '=' number | CATEGORIES '=' ALLVISIBLE|SUBTOTALS |
//         INCLUDEMRSETS '=' YES|NO
const std::vector<KeywordRule>& Rules() {
  static const std::vector<KeywordRule> rules = {
      {"TYPE", KeywordValueKind::kWord, {{"CHISQUARE", TableEncryptionCodes::kSigTestChiSquare}}},
      {"ALPHA", KeywordValueKind::kNumber, {}},
      {"CATEGORIES", KeywordValueKind::kWord, {{"ALLVISIBLE", 0}, {"SUBTOTALS", 1}}},
      {"INCLUDEMRSETS", KeywordValueKind::kWord, {{"YES", 1}, {"NO", 0}}},
  };
  return rules;
}

}  // namespace

struct SyntaxSigTestSubcommand::Data {
  Data(const SyntaxConverter* owner, TableSettings& settings) : _keywords(owner, Rules()), _settings(settings) {}

  KeywordReader _keywords;
  TableSettings& _settings;  // the table's, where the test is registered
  double _alpha = 0.05;
  int _type = 0;  // 0 until TYPE=CHISQUARE
  std::string _alphaText = "0.05";
  bool _includeSubtotals = false;
  bool _includeMRSets = true;
};

SyntaxSigTestSubcommand::SyntaxSigTestSubcommand(TableSettings& settings)
    : _data(std::make_unique<Data>(this, settings)) {}

SyntaxSigTestSubcommand::~SyntaxSigTestSubcommand() = default;

std::string SyntaxSigTestSubcommand::GetSubcommandName() const {
  return "SIGTEST";
}

SyntaxConverter* SyntaxSigTestSubcommand::AttributeString(const std::string& text,
                                                          TARN_TokenSequence* /*tokens*/) {
  _data->_keywords.Start(text);
  return this;
}

// ALPHA '=' number, strictly between 0 and 1
SyntaxConverter* SyntaxSigTestSubcommand::Number(double value, const std::string& text) {
  if (_data->_keywords.Pending() != kAlpha) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (!(value > 0.0 && value < 1.0)) {
    SyntaxParserUtility::InvalidAlpha(this, text);
  }
  _data->_alpha = value;
  _data->_alphaText = text;
  _data->_keywords.Finish();
  return this;
}

SyntaxConverter* SyntaxSigTestSubcommand::String(const std::string& text) {
  Data& data = *_data;
  int rule = -1;
  const int code = data._keywords.ReadWord(text, rule);
  if (rule == kType) {
    data._type = code;
  } else if (rule == kCategories) {
    data._includeSubtotals = code == 1;
  } else if (rule == kIncludeMRSets) {
    data._includeMRSets = code == 1;
  }
  return this;
}

void SyntaxSigTestSubcommand::ValidateAndCommit(const std::string& text) {
  Data& data = *_data;
  data._keywords.CheckComplete(text);
  if (data._type != 0) {
    SigTestSettings settings(TableEncryptionCodes::kSigTestChiSquare, data._alpha, data._alphaText);
    settings._includeMRSets = data._includeMRSets;
    settings._includeSubtotals = data._includeSubtotals;
    data._settings.AddSignificanceTest(settings);
    return;
  }
  if (data._keywords.WasGiven(kAlpha) || data._keywords.WasGiven(kCategories) ||
      data._keywords.WasGiven(kIncludeMRSets)) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
}

void SyntaxSigTestSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_keywords.GetState() << " type=" << _data->_type << " alpha=" << _data->_alphaText
      << " includeSubtotals=" << _data->_includeSubtotals << " includeMRSets=" << _data->_includeMRSets;
}
