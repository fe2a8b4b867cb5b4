// SyntaxWeightSubcommand.cpp - the VARIABLE keyword of WEIGHT
#include "parser/SyntaxWeightSubcommand.h"

#include <ostream>

#include "host/data/TARN_DataSource.h"
#include "host/data/TARN_Variable.h"
#include "parser/CommandScope.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"

namespace {

enum WeightKeyword { kVariable };

// WEIGHT VARIABLE '=' name
const std::vector<KeywordRule>& Rules() {
  static const std::vector<KeywordRule> rules = {{"VARIABLE", KeywordValueKind::kName, {}}};
  return rules;
}

}  // namespace

struct SyntaxWeightSubcommand::WeightData {
  int _index = -1;                  // dictionary index of the weight variable
  std::string _name;                // as typed
  CommandScope* _parent = nullptr;  // the command, not owned
};

SyntaxWeightSubcommand::SyntaxWeightSubcommand(CommandScope* command)
    : SyntaxKeywordSubcommand("WEIGHT", kConverterComposite, Rules()), _data(std::make_unique<WeightData>()) {
  _data->_parent = command;
}

SyntaxWeightSubcommand::~SyntaxWeightSubcommand() = default;

void SyntaxWeightSubcommand::OnName(int /*rule*/, const std::string& text) {
  const int index = VariableExists(text);
  if (index < 0) {
    SyntaxParserUtility::UnknownVariable(this, text);
  }
  const TARN_Variable* variable = GetDataSource()->GetVariable(index);
  if (variable == nullptr || variable->GetType() != 0) {
    SyntaxParserUtility::VariableNotNumeric(this, text);
  }
  _data->_index = index;
  _data->_name = text;
}

void SyntaxWeightSubcommand::Commit(const std::string& /*text*/) {
  if (Keywords().WasGiven(kVariable) && _data->_parent != nullptr) {
    _data->_parent->SetBaseWeightVariable(_data->_index, _data->_name);
  }
}

int SyntaxWeightSubcommand::GetWeightIndex() const {
  return _data->_index;
}

std::string SyntaxWeightSubcommand::GetWeightName() const {
  return _data->_name;
}

void SyntaxWeightSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState() << " index=" << _data->_index << " name=" << _data->_name;
}
