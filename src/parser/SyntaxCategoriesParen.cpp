// SyntaxCategoriesParen.cpp - the variable (and percentile) of a CATEGORIES sort statistic
#include "parser/SyntaxCategoriesParen.h"

#include <ostream>

#include "parser/SyntaxCategoriesSubcommand.h"
#include "parser/SyntaxParserUtility.h"

struct SyntaxCategoriesParen::Data {
  std::string _keyword;                          // the statistic as written
  std::string _variable;                         // the variable inside the parenthesis
  bool _isOptional = false;                      // the statistic needs no variable
  bool _isPercentile = false;                    // PTILE or UPTILE
  double _percentile = -1.0;                     // below -0.5 until given
  bool _isOpen = false;                          // "(" was read
};

SyntaxCategoriesParen::SyntaxCategoriesParen(SyntaxCategoriesSubcommand* owner, const std::string& keyword,
                                             bool isPercentile)
    : SyntaxCategoriesPart(owner), _data(std::make_unique<Data>()) {
  _data->_keyword = keyword;
  _data->_isPercentile = isPercentile;
}

SyntaxCategoriesParen::~SyntaxCategoriesParen() = default;

void SyntaxCategoriesParen::ParenthesisAreOptional(bool isOptional) {
  _data->_isOptional = isOptional;
}

// KEY = statistic '('
SyntaxConverter* SyntaxCategoriesParen::LeftParen(const std::string& text) {
  if (_data->_isOpen || !_data->_variable.empty()) {
    SyntaxParserUtility::UnbalancedParen(this, text);
  }
  _data->_isOpen = true;
  return this;
}

// KEY = statistic '(' variable
SyntaxConverter* SyntaxCategoriesParen::String(const std::string& text) {
  if (!_data->_variable.empty() || !_data->_isOpen) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  _data->_variable = text;
  return this;
}

// KEY = PTILE [n] '(' variable [n] ')'
SyntaxConverter* SyntaxCategoriesParen::Number(double value, const std::string& text) {
  if (!_data->_isPercentile) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (!(value > 0.0 && value < 100.0)) {
    SyntaxParserUtility::InvalidPTILE(this, text);
  }
  _data->_percentile = value;
  return this;
}

SyntaxConverter* SyntaxCategoriesParen::RightParen(const std::string& text) {
  Data& data = *_data;
  if (!data._isOpen || data._variable.empty()) {
    SyntaxParserUtility::UnbalancedParen(this, text);
  }
  if (data._isPercentile && data._percentile < -0.5) {
    SyntaxParserUtility::InvalidPTILE(this, text);
  }
  data._isOpen = false;
  Owner()->SetSortKeyVariable(data._variable, data._percentile);
  return Owner();
}

void SyntaxCategoriesParen::ValidateAndCommit(const std::string& /*text*/) {
  const Data& data = *_data;
  if (data._isOptional) {
    return;
  }
  if (!data._isOpen || !data._variable.empty()) {
    SyntaxParserUtility::MissingVariableArgument(this, data._keyword);
  }
}

void SyntaxCategoriesParen::DumpDetails(std::ostream& out) const {
  const Data& data = *_data;
  out << " keyword=" << data._keyword << " variable=" << data._variable << " optional=" << data._isOptional
      << " percentile=" << data._percentile;
}
