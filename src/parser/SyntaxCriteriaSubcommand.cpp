// SyntaxCriteriaSubcommand.cpp - the CILEVEL keyword of CRITERIA
#include "parser/SyntaxCriteriaSubcommand.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TableSettings.h"

namespace {

enum CriteriaState {
  kStateNone = 0,
  kStateCILevel = 1,
};

}  // namespace

struct SyntaxCriteriaSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;  // the table's
  CriteriaState _state = kStateNone;
  bool _set = false;                // CILEVEL has its value
  int _count = 0;                   // how many values were read
  double _ciLevel = 95.0;           // percent
  std::string _ciLevelText = "95";  // as written, for labels
};

SyntaxCriteriaSubcommand::SyntaxCriteriaSubcommand(TableSettings& settings)
    : _data(std::make_unique<Data>(settings)) {}

SyntaxCriteriaSubcommand::~SyntaxCriteriaSubcommand() = default;

std::string SyntaxCriteriaSubcommand::GetSubcommandName() const {
  return "CRITERIA";
}

// CRITERIA CILEVEL '='
SyntaxConverter* SyntaxCriteriaSubcommand::AttributeString(const std::string& text,
                                                           TARN_TokenSequence* /*tokens*/) {
  if (_data->_state != kStateNone || !KeywordMatch(text.c_str(), "CILEVEL")) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (_data->_set) {
    SyntaxParserUtility::DuplicateWarning(this, "CILEVEL");
  }
  _data->_state = kStateCILevel;
  return this;
}

// CILEVEL '=' number
SyntaxConverter* SyntaxCriteriaSubcommand::Number(double value, const std::string& text) {
  if (_data->_state != kStateCILevel) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (!(value > 0.0 && value < 100.0)) {
    SyntaxParserUtility::InvalidCILevel(this, text);
  }
  _data->_ciLevel = value;
  _data->_ciLevelText = text;
  _data->_set = true;
  ++_data->_count;
  _data->_state = kStateNone;
  return this;
}

void SyntaxCriteriaSubcommand::ValidateAndCommit(const std::string& text) {
  if (_data->_state != kStateNone) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (_data->_set) {
    _data->_settings.SetCILevel(_data->_ciLevel, _data->_ciLevelText);
  }
}

void SyntaxCriteriaSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_state << " ciLevel=" << _data->_ciLevelText;
}
