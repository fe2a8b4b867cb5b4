// SyntaxSigTestSubcommand.cpp - keywords and checks of SIGTEST
#include "parser/SyntaxSigTestSubcommand.h"

#include <ostream>

#include "parser/SigTestSettings.h"
#include "parser/SyntaxConverterType.h"
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
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;  // the table's, where the test is registered
  double _alpha = 0.05;
  int _type = 0;  // 0 until TYPE=CHISQUARE
  std::string _alphaText = "0.05";
  bool _includeSubtotals = false;
  bool _includeMRSets = true;
};

SyntaxSigTestSubcommand::SyntaxSigTestSubcommand(TableSettings& settings)
    : SyntaxKeywordSubcommand("SIGTEST", kConverterPlain, Rules()), _data(std::make_unique<Data>(settings)) {}

SyntaxSigTestSubcommand::~SyntaxSigTestSubcommand() = default;

// ALPHA '=' number, strictly between 0 and 1
void SyntaxSigTestSubcommand::OnNumber(int /*rule*/, double value, const std::string& text) {
  if (!(value > 0.0 && value < 1.0)) {
    SyntaxParserUtility::InvalidAlpha(this, text);
  }
  _data->_alpha = value;
  _data->_alphaText = text;
}

void SyntaxSigTestSubcommand::OnWord(int rule, int code) {
  Data& data = *_data;
  if (rule == kType) {
    data._type = code;
  } else if (rule == kCategories) {
    data._includeSubtotals = code == 1;
  } else if (rule == kIncludeMRSets) {
    data._includeMRSets = code == 1;
  }
}

void SyntaxSigTestSubcommand::Commit(const std::string& text) {
  Data& data = *_data;
  if (data._type != 0) {
    SigTestSettings settings(TableEncryptionCodes::kSigTestChiSquare, data._alpha, data._alphaText);
    settings._includeMRSets = data._includeMRSets;
    settings._includeSubtotals = data._includeSubtotals;
    data._settings.AddSignificanceTest(settings);
    return;
  }
  if (Keywords().WasGiven(kAlpha) || Keywords().WasGiven(kCategories) ||
      Keywords().WasGiven(kIncludeMRSets)) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
}

void SyntaxSigTestSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState() << " type=" << _data->_type << " alpha=" << _data->_alphaText
      << " includeSubtotals=" << _data->_includeSubtotals << " includeMRSets=" << _data->_includeMRSets;
}
