// SyntaxSLabelsSubcommand.cpp - the POSITION and VISIBLE keywords of SLABELS
#include "parser/SyntaxSLabelsSubcommand.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "parser/PresentationCodes.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TableSettings.h"

namespace {

enum SLabelsState {
  kStateNone = 0,
  kStatePosition = 1,
  kStateVisible = 2,
};

bool Is(const std::string& text, const char* word) {
  return SyntaxParserUtility::ExactWordMatch(text, word);
}

}  // namespace

struct SyntaxSLabelsSubcommand::Data {
  explicit Data(TableSettings& settings) : _settings(settings) {}

  TableSettings& _settings;  // the table's
  SLabelsState _state = kStateNone;
  PresentationCodes::SLabelPosition _position = PresentationCodes::kSLabelColumn;
  bool _visible = true;
  bool _positionSet = false;
  bool _visibleSet = false;
};

SyntaxSLabelsSubcommand::SyntaxSLabelsSubcommand(TableSettings& settings)
    : _data(std::make_unique<Data>(settings)) {}

SyntaxSLabelsSubcommand::~SyntaxSLabelsSubcommand() = default;

std::string SyntaxSLabelsSubcommand::GetSubcommandName() const {
  return "SLABELS";
}

int SyntaxSLabelsSubcommand::GetType() const {
  return kConverterSLabels;
}

// SLABELS POSITION '=' | VISIBLE '='
SyntaxConverter* SyntaxSLabelsSubcommand::AttributeString(const std::string& text,
                                                          TARN_TokenSequence* /*tokens*/) {
  if (_data->_state != kStateNone) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (KeywordMatch(text.c_str(), "POSITION")) {
    if (_data->_positionSet) {
      SyntaxParserUtility::DuplicateWarning(this, "POSITION");
    }
    _data->_state = kStatePosition;
  } else if (KeywordMatch(text.c_str(), "VISIBLE")) {
    if (_data->_visibleSet) {
      SyntaxParserUtility::DuplicateWarning(this, "VISIBLE");
    }
    _data->_state = kStateVisible;
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  return this;
}

// POSITION '=' COLUMN|ROW|LAYER | VISIBLE '=' YES|NO
SyntaxConverter* SyntaxSLabelsSubcommand::String(const std::string& text) {
  Data& data = *_data;
  if (data._state == kStatePosition) {
    if (Is(text, "COLUMN")) {
      data._position = PresentationCodes::kSLabelColumn;
    } else if (Is(text, "ROW")) {
      data._position = PresentationCodes::kSLabelRow;
    } else if (Is(text, "LAYER")) {
      data._position = PresentationCodes::kSLabelLayer;
    } else {
      SyntaxParserUtility::UnknownKeyword(this, text);
    }
    data._positionSet = true;
  } else if (data._state == kStateVisible) {
    if (Is(text, "YES")) {
      data._visible = true;
    } else if (Is(text, "NO")) {
      data._visible = false;
    } else {
      SyntaxParserUtility::UnknownKeyword(this, text);
    }
    data._visibleSet = true;
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  data._state = kStateNone;
  return this;
}

void SyntaxSLabelsSubcommand::ValidateAndCommit(const std::string& text) {
  if (_data->_state != kStateNone) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (_data->_positionSet) {
    _data->_settings.SetSLabelPosition(_data->_position);
  }
  if (_data->_visibleSet) {
    _data->_settings.SetSLabelVisibility(_data->_visible);
  }
}

void SyntaxSLabelsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_state << " position=" << _data->_position << " visible=" << _data->_visible;
}
