// SyntaxCLabelsSubcommand.cpp - the keywords of CLABELS
#include "parser/SyntaxCLabelsSubcommand.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "host/engine/TableEncryptionCodes.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TableSettings.h"

namespace {

enum CLabelsState {
  kStateNone = 0,
  kStateRowLabels = 1,
  kStateColLabels = 2,
};

}  // namespace

struct SyntaxCLabelsSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;  // the table's
  CLabelsState _state = kStateNone;
  TableEncryptionCodes::CLabelOption _option = TableEncryptionCodes::kCLabelAuto;
  bool _set = false;  // an option has been given
};

SyntaxCLabelsSubcommand::SyntaxCLabelsSubcommand(TableSettings& settings)
    : _data(std::make_unique<Data>(settings)) {}

SyntaxCLabelsSubcommand::~SyntaxCLabelsSubcommand() = default;

std::string SyntaxCLabelsSubcommand::GetSubcommandName() const {
  return "CLABELS";
}

int SyntaxCLabelsSubcommand::GetType() const {
  return kConverterCLabels;
}

// CLABELS ROWLABELS '=' | COLLABELS '='
SyntaxConverter* SyntaxCLabelsSubcommand::AttributeString(const std::string& text,
                                                          TARN_TokenSequence* /*tokens*/) {
  if (_data->_state != kStateNone) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (KeywordMatch(text.c_str(), "ROWLABELS")) {
    _data->_state = kStateRowLabels;
  } else if (KeywordMatch(text.c_str(), "COLLABELS")) {
    _data->_state = kStateColLabels;
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  // One table has one label option: any second request replaces the first.
  if (_data->_set) {
    SyntaxParserUtility::DuplicateWarning(this, text);
  }
  return this;
}

// CLABELS AUTO | ROWLABELS '=' OPPOSITE|LAYER | COLLABELS '=' OPPOSITE|LAYER
SyntaxConverter* SyntaxCLabelsSubcommand::String(const std::string& text) {
  Data& data = *_data;
  const bool rows = data._state == kStateRowLabels;
  if (data._state == kStateNone) {
    if (!KeywordMatch(text.c_str(), "AUTO")) {
      SyntaxParserUtility::UnknownKeyword(this, text);
    }
    if (data._set) {
      SyntaxParserUtility::DuplicateWarning(this, text);
    }
    data._option = TableEncryptionCodes::kCLabelAuto;
  } else if (SyntaxParserUtility::ExactWordMatch(text, "OPPOSITE")) {
    data._option = rows ? TableEncryptionCodes::kCLabelRowOpposite : TableEncryptionCodes::kCLabelColOpposite;
  } else if (SyntaxParserUtility::ExactWordMatch(text, "LAYER")) {
    data._option = rows ? TableEncryptionCodes::kCLabelRowLayer : TableEncryptionCodes::kCLabelColLayer;
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  data._set = true;
  data._state = kStateNone;
  return this;
}

void SyntaxCLabelsSubcommand::ValidateAndCommit(const std::string& text) {
  if (_data->_state != kStateNone) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (_data->_set) {
    _data->_settings.SetCLabelOption(_data->_option);
  }
}

void SyntaxCLabelsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_state << " option=" << _data->_option << " set=" << _data->_set;
}
