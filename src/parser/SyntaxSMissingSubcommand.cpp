// SyntaxSMissingSubcommand.cpp - the one word of SMISSING
#include "parser/SyntaxSMissingSubcommand.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "parser/SyntaxParserUtility.h"

struct SyntaxSMissingSubcommand::Data {
  bool _isPairwise = true;  // each statistic uses the cases valid for it
  bool _set = false;        // a word has been read
};

SyntaxSMissingSubcommand::SyntaxSMissingSubcommand() : _data(std::make_unique<Data>()) {}

SyntaxSMissingSubcommand::~SyntaxSMissingSubcommand() = default;

std::string SyntaxSMissingSubcommand::GetSubcommandName() const {
  return "SMISSING";
}

// SMISSING VARIABLE | LISTWISE
SyntaxConverter* SyntaxSMissingSubcommand::String(const std::string& text) {
  bool pairwise = true;
  if (KeywordMatch(text.c_str(), "VARIABLE")) {
    pairwise = true;
  } else if (KeywordMatch(text.c_str(), "LISTWISE")) {
    pairwise = false;
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (_data->_set) {
    SyntaxParserUtility::DuplicateWarning(this, text);
  }
  _data->_isPairwise = pairwise;
  _data->_set = true;
  return this;
}

bool SyntaxSMissingSubcommand::GetIsPairwise() const {
  return _data->_isPairwise;
}

void SyntaxSMissingSubcommand::DumpDetails(std::ostream& out) const {
  out << "pairwise=" << _data->_isPairwise << " set=" << _data->_set;
}
