// SyntaxSLabelsSubcommand.cpp - the POSITION and VISIBLE keywords of SLABELS
#include "parser/SyntaxSLabelsSubcommand.h"

#include <ostream>

#include "parser/KeywordReader.h"
#include "parser/PresentationCodes.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
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
  Data(const SyntaxConverter* owner, TableSettings& settings) : _keywords(owner, Rules()), _settings(settings) {}

  KeywordReader _keywords;
  TableSettings& _settings;  // the table's
  PresentationCodes::SLabelPosition _position = PresentationCodes::kSLabelColumn;
  bool _visible = true;
};

SyntaxSLabelsSubcommand::SyntaxSLabelsSubcommand(TableSettings& settings)
    : _data(std::make_unique<Data>(this, settings)) {}

SyntaxSLabelsSubcommand::~SyntaxSLabelsSubcommand() = default;

std::string SyntaxSLabelsSubcommand::GetSubcommandName() const {
  return "SLABELS";
}

int SyntaxSLabelsSubcommand::GetType() const {
  return kConverterSLabels;
}

SyntaxConverter* SyntaxSLabelsSubcommand::AttributeString(const std::string& text,
                                                          TARN_TokenSequence* /*tokens*/) {
  _data->_keywords.Start(text);
  return this;
}

SyntaxConverter* SyntaxSLabelsSubcommand::String(const std::string& text) {
  int rule = -1;
  const int code = _data->_keywords.ReadWord(text, rule);
  if (rule == kPosition) {
    _data->_position = static_cast<PresentationCodes::SLabelPosition>(code);
  } else {
    _data->_visible = code == 1;
  }
  return this;
}

void SyntaxSLabelsSubcommand::ValidateAndCommit(const std::string& text) {
  _data->_keywords.CheckComplete(text);
  if (_data->_keywords.WasGiven(kPosition)) {
    _data->_settings.SetSLabelPosition(_data->_position);
  }
  if (_data->_keywords.WasGiven(kVisible)) {
    _data->_settings.SetSLabelVisibility(_data->_visible);
  }
}

void SyntaxSLabelsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_keywords.GetState() << " position=" << _data->_position << " visible=" << _data->_visible;
}
