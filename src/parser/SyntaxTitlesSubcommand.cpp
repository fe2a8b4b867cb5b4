// SyntaxTitlesSubcommand.cpp - the TITLE, CAPTION and CORNER keywords of TITLES
#include "parser/SyntaxTitlesSubcommand.h"

#include <ostream>

#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxMiscSubcommands.h"
#include "parser/TableSettings.h"

namespace {

enum TitlesKeyword { kTitle, kCaption, kCorner };

// TITLES TITLE '=' | CAPTION '=' | CORNER '=', each followed by quoted lines that a holder
// reads: the keyword counts as given when its holder is complete.
const std::vector<KeywordRule>& Rules() {
  static const std::vector<KeywordRule> rules = {
      {"TITLE", KeywordValueKind::kText, {}},
      {"CAPTION", KeywordValueKind::kText, {}},
      {"CORNER", KeywordValueKind::kText, {}},
  };
  return rules;
}

}  // namespace

struct SyntaxTitlesSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;  // the table's
  // Children of this converter, owned through them, in the order of the rules.
  SyntaxMiscSubcommands* _holders[3] = {nullptr, nullptr, nullptr};
};

SyntaxTitlesSubcommand::SyntaxTitlesSubcommand(TableSettings& settings)
    : SyntaxKeywordSubcommand("TITLES", kConverterComposite, Rules()), _data(std::make_unique<Data>(settings)) {}

SyntaxTitlesSubcommand::~SyntaxTitlesSubcommand() = default;

SyntaxConverter* SyntaxTitlesSubcommand::OnKeyword(int rule) {
  auto* holder = new SyntaxMiscSubcommands(this);
  _data->_holders[rule] = holder;
  Add(holder);
  return holder;
}

void SyntaxTitlesSubcommand::Commit(const std::string& /*text*/) {
  if (_data->_holders[kTitle] != nullptr) {
    _data->_settings.SetTitle(_data->_holders[kTitle]);
  }
  if (_data->_holders[kCaption] != nullptr) {
    _data->_settings.SetCaption(_data->_holders[kCaption]);
  }
  if (_data->_holders[kCorner] != nullptr) {
    _data->_settings.SetCornerText(_data->_holders[kCorner]);
  }
}

void SyntaxTitlesSubcommand::ResetAttribute() {
  Keywords().Finish();
}

const SyntaxMiscSubcommands* SyntaxTitlesSubcommand::GetTitle() const {
  return _data->_holders[kTitle];
}

const SyntaxMiscSubcommands* SyntaxTitlesSubcommand::GetCaption() const {
  return _data->_holders[kCaption];
}

const SyntaxMiscSubcommands* SyntaxTitlesSubcommand::GetCorner() const {
  return _data->_holders[kCorner];
}

void SyntaxTitlesSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState() << " title=" << (GetTitle() != nullptr)
      << " caption=" << (GetCaption() != nullptr) << " corner=" << (GetCorner() != nullptr);
}
