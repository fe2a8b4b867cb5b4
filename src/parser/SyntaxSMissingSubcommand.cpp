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

struct SyntaxSMissingSubcommand::Data {
  bool _isPairwise = true;  // each statistic uses the cases valid for it
};

SyntaxSMissingSubcommand::SyntaxSMissingSubcommand()
    : SyntaxKeywordSubcommand("SMISSING", kConverterPlain, Rules()), _data(std::make_unique<Data>()) {}

SyntaxSMissingSubcommand::~SyntaxSMissingSubcommand() = default;

SyntaxConverter* SyntaxSMissingSubcommand::AttributeString(const std::string& text, TARN_TokenSequence* tokens) {
  return SyntaxConverter::AttributeString(text, tokens);
}

void SyntaxSMissingSubcommand::OnWord(int /*rule*/, int code) {
  _data->_isPairwise = code == 1;
}

bool SyntaxSMissingSubcommand::GetIsPairwise() const {
  return _data->_isPairwise;
}

void SyntaxSMissingSubcommand::DumpDetails(std::ostream& out) const {
  out << "pairwise=" << _data->_isPairwise << " set=" << Keywords().WasGiven(kWord);
}
