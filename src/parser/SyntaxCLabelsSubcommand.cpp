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

SyntaxCLabelsSubcommand::SyntaxCLabelsSubcommand(TableSettings& settings)
    : SyntaxKeywordSubcommand("CLABELS", kConverterCLabels, Rules()), _settings(settings) {}

void SyntaxCLabelsSubcommand::Commit(const std::string& /*text*/) {
  if (Keywords().WasGiven(kRowLabels)) {
    _settings.SetCLabelOption(static_cast<TableEncryptionCodes::CLabelOption>(Keywords().Code(kRowLabels, 0)));
  }
}

void SyntaxCLabelsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState() << " option=" << Keywords().Code(kRowLabels, TableEncryptionCodes::kCLabelAuto)
      << " set=" << Keywords().WasGiven(kRowLabels);
}
