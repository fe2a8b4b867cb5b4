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
  static const std::vector<KeywordRule> rules = {{"CILEVEL", KeywordValueKind::kNumber, {}}};
  return rules;
}

}  // namespace

struct SyntaxCriteriaSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;         // the table's
  double _ciLevel = 95.0;           // percent
  std::string _ciLevelText = "95";  // as written, for labels
};

SyntaxCriteriaSubcommand::SyntaxCriteriaSubcommand(TableSettings& settings)
    : SyntaxKeywordSubcommand("CRITERIA", kConverterPlain, Rules()), _data(std::make_unique<Data>(settings)) {}

SyntaxCriteriaSubcommand::~SyntaxCriteriaSubcommand() = default;

void SyntaxCriteriaSubcommand::OnNumber(int /*rule*/, double value, const std::string& text) {
  if (!(value > 0.0 && value < 100.0)) {
    SyntaxParserUtility::InvalidCILevel(this, text);
  }
  _data->_ciLevel = value;
  _data->_ciLevelText = text;
}

void SyntaxCriteriaSubcommand::Commit(const std::string& /*text*/) {
  if (Keywords().WasGiven(kCILevel)) {
    _data->_settings.SetCILevel(_data->_ciLevel, _data->_ciLevelText);
  }
}

void SyntaxCriteriaSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState() << " ciLevel=" << _data->_ciLevelText;
}
