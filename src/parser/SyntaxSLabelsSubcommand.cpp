// SyntaxSLabelsSubcommand.cpp - the POSITION and VISIBLE keywords of SLABELS
#include "parser/SyntaxSLabelsSubcommand.h"

#include <ostream>

#include "parser/PresentationCodes.h"
#include "parser/SyntaxConverterType.h"
#include "parser/TableSettings.h"

namespace {

enum SLabelsKeyword { kPosition, kVisible };

// SLABELS POSITION '=' COLUMN|ROW|LAYER | VISIBLE '=' YES|NO
const std::vector<KeywordRule>& Rules() {
  static const std::vector<KeywordRule> rules = {
      {"POSITION", KeywordValueKind::kWord,
       {{"COLUMN", PresentationCodes::kSLabelColumn},
        {"ROW", PresentationCodes::kSLabelRow},
        {"LAYER", PresentationCodes::kSLabelLayer}}},
      {"VISIBLE", KeywordValueKind::kWord, {{"YES", 1}, {"NO", 0}}},
  };
  return rules;
}

}  // namespace

SyntaxSLabelsSubcommand::SyntaxSLabelsSubcommand(TableSettings& settings)
    : SyntaxKeywordSubcommand("SLABELS", kConverterSLabels, Rules()), _settings(settings) {}

void SyntaxSLabelsSubcommand::Commit(const std::string& /*text*/) {
  if (Keywords().WasGiven(kPosition)) {
    _settings.SetSLabelPosition(static_cast<PresentationCodes::SLabelPosition>(Keywords().Code(kPosition, 0)));
  }
  if (Keywords().WasGiven(kVisible)) {
    _settings.SetSLabelVisibility(Keywords().Code(kVisible, 1) == 1);
  }
}

void SyntaxSLabelsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState()
      << " position=" << Keywords().Code(kPosition, PresentationCodes::kSLabelColumn)
      << " visible=" << (Keywords().Code(kVisible, 1) == 1);
}
