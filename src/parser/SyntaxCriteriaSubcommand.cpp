// SyntaxCriteriaSubcommand.cpp - the CILEVEL keyword of CRITERIA
#include "parser/SyntaxCriteriaSubcommand.h"

#include <ostream>

#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TableSettings.h"

namespace {

enum CriteriaKeyword { kCILevel };

// CRITERIA CILEVEL '=' number, strictly between 0 and 100
const std::vector<KeywordRule>& Rules() {
  static const std::vector<KeywordRule> rules = {
      {"CILEVEL", KeywordValueKind::kNumber, {}, true, -1, false, 0.0, 100.0, &SyntaxParserUtility::InvalidCILevel}};
  return rules;
}

}  // namespace

SyntaxCriteriaSubcommand::SyntaxCriteriaSubcommand(TableSettings& settings)
    : SyntaxKeywordSubcommand("CRITERIA", kConverterPlain, Rules()), _settings(settings) {}

void SyntaxCriteriaSubcommand::Commit(const std::string& /*text*/) {
  if (Keywords().WasGiven(kCILevel)) {
    // The text as written labels the limits.
    _settings.SetCILevel(Keywords().Number(kCILevel, 95.0), Keywords().Text(kCILevel, "95"));
  }
}

void SyntaxCriteriaSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState() << " ciLevel=" << Keywords().Text(kCILevel, "95");
}
