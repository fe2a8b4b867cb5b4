// SyntaxCriteriaSubcommand.cpp - the CILEVEL keyword of CRITERIA
#include "parser/SyntaxCriteriaSubcommand.h"

#include <ostream>

#include "parser/KeywordReader.h"
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
  Data(const SyntaxConverter* owner, TableSettings& settings) : _keywords(owner, Rules()), _settings(settings) {}

  KeywordReader _keywords;
  TableSettings& _settings;         // the table's
  double _ciLevel = 95.0;           // percent
  std::string _ciLevelText = "95";  // as written, for labels
};

SyntaxCriteriaSubcommand::SyntaxCriteriaSubcommand(TableSettings& settings)
    : _data(std::make_unique<Data>(this, settings)) {}

SyntaxCriteriaSubcommand::~SyntaxCriteriaSubcommand() = default;

std::string SyntaxCriteriaSubcommand::GetSubcommandName() const {
  return "CRITERIA";
}

SyntaxConverter* SyntaxCriteriaSubcommand::AttributeString(const std::string& text,
                                                           TARN_TokenSequence* /*tokens*/) {
  _data->_keywords.Start(text);
  return this;
}

SyntaxConverter* SyntaxCriteriaSubcommand::Number(double value, const std::string& text) {
  if (_data->_keywords.Pending() != kCILevel) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (!(value > 0.0 && value < 100.0)) {
    SyntaxParserUtility::InvalidCILevel(this, text);
  }
  _data->_ciLevel = value;
  _data->_ciLevelText = text;
  _data->_keywords.Finish();
  return this;
}

void SyntaxCriteriaSubcommand::ValidateAndCommit(const std::string& text) {
  _data->_keywords.CheckComplete(text);
  if (_data->_keywords.WasGiven(kCILevel)) {
    _data->_settings.SetCILevel(_data->_ciLevel, _data->_ciLevelText);
  }
}

void SyntaxCriteriaSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_keywords.GetState() << " ciLevel=" << _data->_ciLevelText;
}
