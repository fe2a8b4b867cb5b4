// SyntaxHideSmallCountsSubcommand.cpp - the COUNT keyword of HIDESMALLCOUNTS
#include "parser/SyntaxHideSmallCountsSubcommand.h"

#include <cstdio>
#include <ostream>

#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"

namespace {

// HIDESMALLCOUNTS COUNT '=' integer
const std::vector<KeywordRule>& Rules() {
  static const std::vector<KeywordRule> rules = {{"COUNT", KeywordValueKind::kNumber, {}}};
  return rules;
}

// A threshold of 1 would hide nothing: counts are whole numbers of at least 1 when shown.
constexpr int kMinimumHideValue = 2;

}  // namespace

struct SyntaxHideSmallCountsSubcommand::Data {
  bool _hideSet = true;  // the subcommand's presence turns hiding on
  int _value = 5;        // counts below this are hidden
};

SyntaxHideSmallCountsSubcommand::SyntaxHideSmallCountsSubcommand()
    : SyntaxKeywordSubcommand("HIDESMALLCOUNTS", kConverterHideSmallCounts, Rules()),
      _data(std::make_unique<Data>()) {}

SyntaxHideSmallCountsSubcommand::~SyntaxHideSmallCountsSubcommand() = default;

// COUNT '=' integer
void SyntaxHideSmallCountsSubcommand::OnNumber(int /*rule*/, double /*value*/, const std::string& text) {
  int value = 0;
  if (std::sscanf(text.c_str(), "%d", &value) != 1) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (value < kMinimumHideValue) {
    SyntaxParserUtility::InvalidHideSmallCountValue(this, text);
  }
  _data->_value = value;
}

bool SyntaxHideSmallCountsSubcommand::GetHideSmallCountsSet() const {
  return _data->_hideSet;
}

int SyntaxHideSmallCountsSubcommand::GetHideSmallCountsValue() const {
  return _data->_value;
}

void SyntaxHideSmallCountsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState() << " hide=" << _data->_hideSet << " value=" << _data->_value;
}
