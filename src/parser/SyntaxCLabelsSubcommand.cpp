// SyntaxCLabelsSubcommand.cpp - the keywords of CLABELS
#include "parser/SyntaxCLabelsSubcommand.h"

#include <ostream>

#include "host/engine/TableEncryptionCodes.h"
#include "parser/SyntaxConverterType.h"
#include "parser/TableSettings.h"

namespace {

enum CLabelsKeyword { kRowLabels, kColLabels, kAuto };

// CLABELS AUTO | ROWLABELS '=' OPPOSITE|LAYER | COLLABELS '=' OPPOSITE|LAYER
// One table has one label option: any second request replaces the first and warns, naming
// the word as typed.
const std::vector<KeywordRule>& Rules() {
  using Codes = TableEncryptionCodes;
  static const std::vector<KeywordRule> rules = {
      {"ROWLABELS", KeywordValueKind::kWord,
       {{"OPPOSITE", Codes::kCLabelRowOpposite}, {"LAYER", Codes::kCLabelRowLayer}}, true, kRowLabels, true},
      {"COLLABELS", KeywordValueKind::kWord,
       {{"OPPOSITE", Codes::kCLabelColOpposite}, {"LAYER", Codes::kCLabelColLayer}}, true, kRowLabels, true},
      {nullptr, KeywordValueKind::kWord, {{"AUTO", Codes::kCLabelAuto}}, true, kRowLabels, true},
  };
  return rules;
}

}  // namespace

struct SyntaxCLabelsSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;  // the table's
  TableEncryptionCodes::CLabelOption _option = TableEncryptionCodes::kCLabelAuto;
};

SyntaxCLabelsSubcommand::SyntaxCLabelsSubcommand(TableSettings& settings)
    : SyntaxKeywordSubcommand("CLABELS", kConverterCLabels, Rules()), _data(std::make_unique<Data>(settings)) {}

SyntaxCLabelsSubcommand::~SyntaxCLabelsSubcommand() = default;

void SyntaxCLabelsSubcommand::OnWord(int /*rule*/, int code) {
  _data->_option = static_cast<TableEncryptionCodes::CLabelOption>(code);
}

void SyntaxCLabelsSubcommand::Commit(const std::string& /*text*/) {
  if (Keywords().WasGiven(kRowLabels)) {
    _data->_settings.SetCLabelOption(_data->_option);
  }
}

void SyntaxCLabelsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState() << " option=" << _data->_option
      << " set=" << Keywords().WasGiven(kRowLabels);
}
