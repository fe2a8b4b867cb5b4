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
      {"ALPHA", KeywordValueKind::kNumber, {}, true, -1, false, 0.0, 1.0, &SyntaxParserUtility::InvalidAlpha},
      {"CATEGORIES", KeywordValueKind::kWord, {{"ALLVISIBLE", 0}, {"SUBTOTALS", 1}}},
      {"INCLUDEMRSETS", KeywordValueKind::kWord, {{"YES", 1}, {"NO", 0}}},
  };
  return rules;
}

}  // namespace

SyntaxSigTestSubcommand::SyntaxSigTestSubcommand(TableSettings& settings)
    : SyntaxKeywordSubcommand("SIGTEST", kConverterPlain, Rules()), _settings(settings) {}

void SyntaxSigTestSubcommand::Commit(const std::string& text) {
  const KeywordReader& keywords = Keywords();
  if (keywords.WasGiven(kType)) {
    SigTestSettings settings(TableEncryptionCodes::kSigTestChiSquare, keywords.Number(kAlpha, 0.05),
                             keywords.Text(kAlpha, "0.05"));
    settings._includeMRSets = keywords.Code(kIncludeMRSets, 1) == 1;
    settings._includeSubtotals = keywords.Code(kCategories, 0) == 1;
    _settings.AddSignificanceTest(settings);
    return;
  }
  if (keywords.WasGiven(kAlpha) || keywords.WasGiven(kCategories) || keywords.WasGiven(kIncludeMRSets)) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
}

void SyntaxSigTestSubcommand::DumpDetails(std::ostream& out) const {
  const KeywordReader& keywords = Keywords();
  out << "state=" << keywords.GetState() << " type=" << keywords.Code(kType, 0)
      << " alpha=" << keywords.Text(kAlpha, "0.05") << " includeSubtotals=" << (keywords.Code(kCategories, 0) == 1)
      << " includeMRSets=" << (keywords.Code(kIncludeMRSets, 1) == 1);
}
