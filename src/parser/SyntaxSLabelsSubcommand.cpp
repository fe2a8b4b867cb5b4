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

struct SyntaxSLabelsSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;  // the table's
  PresentationCodes::SLabelPosition _position = PresentationCodes::kSLabelColumn;
  bool _visible = true;
};

SyntaxSLabelsSubcommand::SyntaxSLabelsSubcommand(TableSettings& settings)
    : SyntaxKeywordSubcommand("SLABELS", kConverterSLabels, Rules()), _data(std::make_unique<Data>(settings)) {}

SyntaxSLabelsSubcommand::~SyntaxSLabelsSubcommand() = default;

void SyntaxSLabelsSubcommand::OnWord(int rule, int code) {
  if (rule == kPosition) {
    _data->_position = static_cast<PresentationCodes::SLabelPosition>(code);
  } else {
    _data->_visible = code == 1;
  }
}

void SyntaxSLabelsSubcommand::Commit(const std::string& /*text*/) {
  if (Keywords().WasGiven(kPosition)) {
    _data->_settings.SetSLabelPosition(_data->_position);
  }
  if (Keywords().WasGiven(kVisible)) {
    _data->_settings.SetSLabelVisibility(_data->_visible);
  }
}

void SyntaxSLabelsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState() << " position=" << _data->_position << " visible=" << _data->_visible;
}
