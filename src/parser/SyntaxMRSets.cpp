// SyntaxMRSets.cpp - the one option of MRSETS
#include "parser/SyntaxMRSets.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "parser/SyntaxParserUtility.h"

struct SyntaxMRSets::Data {
  int _state = 0;                    // 1 while the value of COUNTDUPLICATES is awaited
  bool _countDuplicatesSet = false;  // COUNTDUPLICATES was given a value
  bool _keywordSeen = false;         // COUNTDUPLICATES was written
  bool _isCountDuplicatesNo = true;  // a repeated response counts once
};

SyntaxMRSets::SyntaxMRSets() : _data(std::make_unique<Data>()) {}

SyntaxMRSets::~SyntaxMRSets() = default;

std::string SyntaxMRSets::GetSubcommandName() const {
  return "MRSETS";
}

// MRSETS COUNTDUPLICATES '='
SyntaxConverter* SyntaxMRSets::AttributeString(const std::string& text, TARN_TokenSequence* /*tokens*/) {
  Data& data = *_data;
  if (data._state != 0 || !KeywordMatch(text.c_str(), "COUNTDUPLICATES")) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (data._keywordSeen) {
    SyntaxParserUtility::DuplicateWarning(this, text);
  }
  data._keywordSeen = true;
  data._state = 1;
  return this;
}

// MRSETS COUNTDUPLICATES = YES | NO
SyntaxConverter* SyntaxMRSets::String(const std::string& text) {
  Data& data = *_data;
  if (data._state != 1) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (SyntaxParserUtility::ExactWordMatch(text, "NO")) {
    data._isCountDuplicatesNo = true;
  } else if (SyntaxParserUtility::ExactWordMatch(text, "YES")) {
    data._isCountDuplicatesNo = false;
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  data._countDuplicatesSet = true;
  data._state = 0;
  return this;
}

void SyntaxMRSets::ValidateAndCommit(const std::string& text) {
  if (_data->_state == 1 || !_data->_countDuplicatesSet) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
}

bool SyntaxMRSets::GetIsCountDuplicatesNo() const {
  return _data->_isCountDuplicatesNo;
}

void SyntaxMRSets::DumpDetails(std::ostream& out) const {
  out << " countDuplicates=" << (_data->_isCountDuplicatesNo ? "NO" : "YES");
}
