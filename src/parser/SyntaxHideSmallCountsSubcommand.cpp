// SyntaxHideSmallCountsSubcommand.cpp - the COUNT keyword of HIDESMALLCOUNTS
#include "parser/SyntaxHideSmallCountsSubcommand.h"

#include <cstdio>
#include <ostream>

#include "parser/KeywordReader.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"

namespace {

enum HideSmallCountsKeyword { kCount };

// HIDESMALLCOUNTS COUNT '=' integer
const std::vector<KeywordRule>& Rules() {
  static const std::vector<KeywordRule> rules = {{"COUNT", KeywordValueKind::kNumber, {}}};
  return rules;
}

// A threshold of 1 would hide nothing: counts are whole numbers of at least 1 when shown.
constexpr int kMinimumHideValue = 2;

}  // namespace

struct SyntaxHideSmallCountsSubcommand::Data {
  explicit Data(const SyntaxConverter* owner) : _keywords(owner, Rules()) {}

  KeywordReader _keywords;
  bool _hideSet = true;  // the subcommand's presence turns hiding on
  int _value = 5;        // counts below this are hidden
};

SyntaxHideSmallCountsSubcommand::SyntaxHideSmallCountsSubcommand() : _data(std::make_unique<Data>(this)) {}

SyntaxHideSmallCountsSubcommand::~SyntaxHideSmallCountsSubcommand() = default;

std::string SyntaxHideSmallCountsSubcommand::GetSubcommandName() const {
  return "HIDESMALLCOUNTS";
}

int SyntaxHideSmallCountsSubcommand::GetType() const {
  return kConverterHideSmallCounts;
}

SyntaxConverter* SyntaxHideSmallCountsSubcommand::AttributeString(const std::string& text,
                                                                  TARN_TokenSequence* /*tokens*/) {
  _data->_keywords.Start(text);
  return this;
}

// COUNT '=' integer
SyntaxConverter* SyntaxHideSmallCountsSubcommand::Number(double /*value*/, const std::string& text) {
  if (_data->_keywords.Pending() != kCount) {
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
  _data->_keywords.Finish();
  return this;
}

void SyntaxHideSmallCountsSubcommand::ValidateAndCommit(const std::string& text) {
  _data->_keywords.CheckComplete(text);
}

bool SyntaxHideSmallCountsSubcommand::GetHideSmallCountsSet() const {
  return _data->_hideSet;
}

int SyntaxHideSmallCountsSubcommand::GetHideSmallCountsValue() const {
  return _data->_value;
}

void SyntaxHideSmallCountsSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << _data->_keywords.GetState() << " hide=" << _data->_hideSet << " value=" << _data->_value;
}
