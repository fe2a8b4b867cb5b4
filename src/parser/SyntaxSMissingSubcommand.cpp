// SyntaxSMissingSubcommand.cpp - the one word of SMISSING
#include "parser/SyntaxSMissingSubcommand.h"

#include <ostream>

#include "parser/SyntaxConverterType.h"

namespace {

enum SMissingKeyword { kWord };

// SMISSING VARIABLE | LISTWISE; the repeat warning names the word as typed.
const std::vector<KeywordRule>& Rules() {
  static const std::vector<KeywordRule> rules = {
      {nullptr, KeywordValueKind::kWord, {{"VARIABLE", 1}, {"LISTWISE", 0}}, true, -1, true},
  };
  return rules;
}

}  // namespace

SyntaxSMissingSubcommand::SyntaxSMissingSubcommand() : SyntaxKeywordSubcommand("SMISSING", kConverterPlain, Rules()) {}

SyntaxConverter* SyntaxSMissingSubcommand::AttributeString(const std::string& text, TARN_TokenSequence* tokens) {
  return SyntaxConverter::AttributeString(text, tokens);
}

// Pairwise, the default: each statistic uses the cases valid for it.
bool SyntaxSMissingSubcommand::GetIsPairwise() const {
  return Keywords().Code(kWord, 1) == 1;
}

void SyntaxSMissingSubcommand::DumpDetails(std::ostream& out) const {
  out << "pairwise=" << GetIsPairwise() << " set=" << Keywords().WasGiven(kWord);
}
