// SyntaxCompareTestSubcommand.cpp - keywords and checks of COMPARETEST
#include "parser/SyntaxCompareTestSubcommand.h"

#include <ostream>

#include "host/output/MessageKeys.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TableSettings.h"

namespace {

// The keywords, in the order of their rules below.
enum CompareTestKeyword {
  kType,
  kAlpha,
  kAdjust,
  kOrigin,
  kCategories,
  kIncludeMRSets,
  kMeansVariance,
  kMerge,
  kShowSig,
  kStyle,
  kSigDigits,
};

// COMPARETEST TYPE '=' PROP|MEAN | ALPHA '=' number [number] | ADJUST '=' NONE|BONFERRONI|BH |
//             ORIGIN '=' COLUMN | CATEGORIES '=' ALLVISIBLE|SUBTOTALS | INCLUDEMRSETS '=' YES|NO |
//             MEANSVARIANCE '=' ALLCATS|TESTEDCATS | MERGE '=' YES|NO | SHOWSIG '=' YES|NO |
//             STYLE '=' APA|SIMPLE | SIGDIGS '=' number
// MERGE, SHOWSIG, STYLE and SIGDIGS simply take the later value.
const std::vector<KeywordRule>& Rules() {
  using Kind = KeywordValueKind;
  static const std::vector<KeywordRule> rules = {
      {"TYPE", Kind::kWord,
       {{"PROP", TableEncryptionCodes::kSigTestProportions}, {"MEAN", TableEncryptionCodes::kSigTestMeans}}},
      NumberBetween("ALPHA", 0.0, 1.0, &SyntaxParserUtility::InvalidAlpha),
      {"ADJUST", Kind::kWord,
       {{"NONE", PresentationCodes::kAdjustNone},
        {"BONFERRONI", PresentationCodes::kAdjustBonferroni},
        {"BH", PresentationCodes::kAdjustBH}}},
      {"ORIGIN", Kind::kWord, {{"COLUMN", 1}}},
      {"CATEGORIES", Kind::kWord, {{"ALLVISIBLE", 0}, {"SUBTOTALS", 1}}},
      {"INCLUDEMRSETS", Kind::kWord, {{"YES", 1}, {"NO", 0}}},
      {"MEANSVARIANCE", Kind::kWord, {{"ALLCATS", 1}, {"TESTEDCATS", 0}}},
      {"MERGE", Kind::kWord, {{"TRUE", 1}, {"YES", 1}, {"FALSE", 0}, {"NO", 0}}, /*warnsWhenRepeated=*/false},
      {"SHOWSIG", Kind::kWord, {{"YES", 1}, {"NO", 0}}, /*warnsWhenRepeated=*/false},
      {"STYLE", Kind::kWord, {{"APA", 1}, {"SIMPLE", 0}}, /*warnsWhenRepeated=*/false},
      {"SIGDIGS", Kind::kNumber, {}, /*warnsWhenRepeated=*/false},
  };
  return rules;
}

constexpr int kMinimumSigDigits = 1;
constexpr int kMaximumSigDigits = 16;

}  // namespace

struct SyntaxCompareTestSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;  // the table's, where the test is registered
  double _alpha = 0.05;
  double _alpha2 = 0.0;
  std::string _alphaText = "0.05";
  std::string _alpha2Text;
  int _sigDigits = 3;
};

SyntaxCompareTestSubcommand::SyntaxCompareTestSubcommand(TableSettings& settings)
    : SyntaxKeywordSubcommand("COMPARETEST", kConverterPlain, Rules()), _data(std::make_unique<Data>(settings)) {}

SyntaxCompareTestSubcommand::~SyntaxCompareTestSubcommand() = default;

SyntaxConverter* SyntaxCompareTestSubcommand::OnKeyword(int rule) {
  if (rule == kAlpha) {
    // A new ALPHA replaces both levels of an earlier one.
    _data->_alpha2 = 0.0;
    _data->_alpha2Text.clear();
  }
  return this;
}

// ALPHA '=' number [number]: a number that no keyword awaits is ALPHA's second level.
SyntaxConverter* SyntaxCompareTestSubcommand::Number(double value, const std::string& text) {
  Data& data = *_data;
  if (Keywords().Pending() >= 0 || !Keywords().WasGiven(kAlpha)) {
    return SyntaxKeywordSubcommand::Number(value, text);
  }
  if (!(value > 0.0 && value < 1.0)) {
    SyntaxParserUtility::InvalidAlpha(this, text);
  }
  if (value == data._alpha) {
    SyntaxParserUtility::GenericMessage(msg::kAlphaValuesEqual, /*warning=*/true, nullptr, nullptr);
    return this;
  }
  if (value < data._alpha) {
    data._alpha2 = data._alpha;
    data._alpha2Text = data._alphaText;
    data._alpha = value;
    data._alphaText = text;
  } else {
    data._alpha2 = value;
    data._alpha2Text = text;
  }
  return this;
}

// ALPHA '=' number (its range is the rule's) | SIGDIGS '=' number
void SyntaxCompareTestSubcommand::OnNumber(int rule, double value, const std::string& text) {
  Data& data = *_data;
  if (rule == kAlpha) {
    data._alpha = value;
    data._alphaText = text;
    return;
  }
  const double clamped = value < kMinimumSigDigits   ? kMinimumSigDigits
                         : value > kMaximumSigDigits ? kMaximumSigDigits
                                                     : value;
  data._sigDigits = static_cast<int>(clamped);
}

// The words' codes are the keyword reader's; these read them with their defaults.
int SyntaxCompareTestSubcommand::Type() const {
  return Keywords().Code(kType, 0);
}

PresentationCodes::SignificanceAdjustType SyntaxCompareTestSubcommand::Adjust() const {
  return static_cast<PresentationCodes::SignificanceAdjustType>(
      Keywords().Code(kAdjust, PresentationCodes::kAdjustBonferroni));
}

bool SyntaxCompareTestSubcommand::Says(int rule, bool fallback) const {
  return Keywords().Code(rule, fallback ? 1 : 0) == 1;
}

bool SyntaxCompareTestSubcommand::Merged() const {
  // Merged columns show no p-values, so SHOWSIG=YES cancels MERGE.
  return Says(kMerge, false) && !Says(kShowSig, false);
}

void SyntaxCompareTestSubcommand::Commit(const std::string& text) {
  Data& data = *_data;
  bool anyTestOption = false;
  for (const int rule : {kAlpha, kAdjust, kOrigin, kCategories, kIncludeMRSets, kMeansVariance}) {
    anyTestOption = anyTestOption || Keywords().WasGiven(rule);
  }
  if (Type() == 0 && !anyTestOption) {
    return;
  }
  if (Type() == 0) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (Says(kMerge, false) && Says(kShowSig, false)) {
    SyntaxParserUtility::SigTestMergedNoPValue();
  }
  const bool styleApa = Says(kStyle, true);
  if (Merged() && styleApa && !data._alpha2Text.empty()) {
    SyntaxParserUtility::GenericMessage(msg::kOneAlphaWithApaStyle, /*warning=*/true, nullptr, nullptr);
    data._alpha2Text.clear();
    data._alpha2 = 0.0;
  }
  SigTestSettings settings(static_cast<TableEncryptionCodes::SignificanceTestType>(Type()), data._alpha,
                           data._alpha2, data._alphaText, data._alpha2Text, Adjust(), Says(kOrigin, true),
                           Merged(), Says(kShowSig, false), data._sigDigits);
  settings._includeMRSets = Says(kIncludeMRSets, true);
  settings._includeSubtotals = Says(kCategories, false);
  settings._meansVarianceAllCats = Says(kMeansVariance, true);
  settings._styleApa = styleApa;
  data._settings.AddCompareTest(settings);
}

void SyntaxCompareTestSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState() << " type=" << Type() << " alpha=" << _data->_alphaText
      << " alpha2=" << _data->_alpha2Text << " adjust=" << Adjust() << " merge=" << Merged()
      << " showSig=" << Says(kShowSig, false) << " sigDigits=" << _data->_sigDigits
      << " styleApa=" << Says(kStyle, true);
}
