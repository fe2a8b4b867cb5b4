// SyntaxTitlesSubcommand.cpp - the TITLE, CAPTION and CORNER keywords of TITLES
#include "parser/SyntaxTitlesSubcommand.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "parser/SyntaxMiscSubcommands.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TableSettings.h"

namespace {

enum TitlesState {
  kStateNone = 0,
  kStateTitle = 1,
  kStateCaption = 2,
  kStateCorner = 3,
};

}  // namespace

struct SyntaxTitlesSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;                 // the table's
  SyntaxMiscSubcommands* _title = nullptr;  // children of this converter, owned through them
  SyntaxMiscSubcommands* _caption = nullptr;
  SyntaxMiscSubcommands* _corner = nullptr;
  TitlesState _state = kStateNone;  // the keyword whose text is being read
};

SyntaxTitlesSubcommand::SyntaxTitlesSubcommand(TableSettings& settings)
    : _data(std::make_unique<Data>(settings)) {}

SyntaxTitlesSubcommand::~SyntaxTitlesSubcommand() = default;

std::string SyntaxTitlesSubcommand::GetSubcommandName() const {
  return "TITLES";
}

// TITLES TITLE '=' | CAPTION '=' | CORNER '='
SyntaxConverter* SyntaxTitlesSubcommand::AttributeString(const std::string& text,
                                                         TARN_TokenSequence* /*tokens*/) {
  if (_data->_state != kStateNone) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  SyntaxMiscSubcommands** slot = nullptr;
  const char* keyword = nullptr;
  if (KeywordMatch(text.c_str(), "CORNER")) {
    slot = &_data->_corner;
    keyword = "CORNER";
    _data->_state = kStateCorner;
  } else if (KeywordMatch(text.c_str(), "CAPTION")) {
    slot = &_data->_caption;
    keyword = "CAPTION";
    _data->_state = kStateCaption;
  } else if (KeywordMatch(text.c_str(), "TITLE")) {
    slot = &_data->_title;
    keyword = "TITLE";
    _data->_state = kStateTitle;
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (*slot != nullptr) {
    SyntaxParserUtility::DuplicateWarning(this, keyword);
  }
  auto* holder = new SyntaxMiscSubcommands(this);
  *slot = holder;
  Add(holder);
  return holder;
}

void SyntaxTitlesSubcommand::ValidateAndCommit(const std::string& text) {
  if (_data->_state != kStateNone) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (_data->_title != nullptr) {
    _data->_settings.SetTitle(_data->_title);
  }
  if (_data->_caption != nullptr) {
    _data->_settings.SetCaption(_data->_caption);
  }
  if (_data->_corner != nullptr) {
    _data->_settings.SetCornerText(_data->_corner);
  }
}

void SyntaxTitlesSubcommand::ResetAttribute() {
  _data->_state = kStateNone;
}

const SyntaxMiscSubcommands* SyntaxTitlesSubcommand::GetTitle() const {
  return _data->_title;
}

const SyntaxMiscSubcommands* SyntaxTitlesSubcommand::GetCaption() const {
  return _data->_caption;
}

const SyntaxMiscSubcommands* SyntaxTitlesSubcommand::GetCorner() const {
  return _data->_corner;
}

void SyntaxTitlesSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_state << " title=" << (_data->_title != nullptr)
      << " caption=" << (_data->_caption != nullptr) << " corner=" << (_data->_corner != nullptr);
}
