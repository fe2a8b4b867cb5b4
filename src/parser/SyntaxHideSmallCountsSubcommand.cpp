// SyntaxHideSmallCountsSubcommand.cpp - the COUNT keyword of HIDESMALLCOUNTS
#include "parser/SyntaxHideSmallCountsSubcommand.h"

#include <cstdio>
#include <ostream>

#include "host/data/HostStrings.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"

namespace {

enum HideSmallCountsState {
  kStateNone = 0,
  kStateCount = 1,
};

// A threshold of 1 would hide nothing: counts are whole numbers of at least 1 when shown.
constexpr int kMinimumHideValue = 2;

}  // namespace

struct SyntaxHideSmallCountsSubcommand::Data {
  HideSmallCountsState _state = kStateNone;
  bool _hideSet = true;  // the subcommand's presence turns hiding on
  int _count = 0;        // how many COUNT values were read
  int _value = 5;        // counts below this are hidden
};

SyntaxHideSmallCountsSubcommand::SyntaxHideSmallCountsSubcommand() : _data(std::make_unique<Data>()) {}

SyntaxHideSmallCountsSubcommand::~SyntaxHideSmallCountsSubcommand() = default;

std::string SyntaxHideSmallCountsSubcommand::GetSubcommandName() const {
  return "HIDESMALLCOUNTS";
}

int SyntaxHideSmallCountsSubcommand::GetType() const {
  return kConverterHideSmallCounts;
}

// HIDESMALLCOUNTS COUNT '='
SyntaxConverter* SyntaxHideSmallCountsSubcommand::AttributeString(const std::string& text,
                                                                  TARN_TokenSequence* /*tokens*/) {
  if (_data->_state != kStateNone || !KeywordMatch(text.c_str(), "COUNT")) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (_data->_count > 0) {
    SyntaxParserUtility::DuplicateWarning(this, "COUNT");
  }
  _data->_state = kStateCount;
  return this;
}

// COUNT '=' integer
SyntaxConverter* SyntaxHideSmallCountsSubcommand::Number(double /*value*/, const std::string& text) {
  if (_data->_state != kStateCount) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  int value = 0;
  if (std::sscanf(text.c_str(), "%d", &value) != 1) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (value < kMinimumHideValue) {
    SyntaxParserUtility::InvalidHideSmallCountValue(this, text);
  }
  _data->_value = value;
  ++_data->_count;
  _data->_state = kStateNone;
  return this;
}

void SyntaxHideSmallCountsSubcommand::ValidateAndCommit(const std::string& text) {
  if (_data->_state != kStateNone) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
}

bool SyntaxHideSmallCountsSubcommand::GetHideSmallCountsSet() const {
  return _data->_hideSet;
}

int SyntaxHideSmallCountsSubcommand::GetHideSmallCountsValue() const {
  return _data->_value;
}

void SyntaxHideSmallCountsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_state << " hide=" << _data->_hideSet << " value=" << _data->_value;
}
