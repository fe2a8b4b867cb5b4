// SyntaxSquareBracket.cpp - statistics, totals and measurement marks in a bracket, handed to its operand
#include "parser/SyntaxSquareBracket.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "parser/Statistics.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTotals.h"
#include "parser/SyntaxVariableName.h"

namespace {

// Every variable below `node`, depth first, in the order they were written.
void BuildReferredVariableVector(SyntaxConverter* node, std::vector<SyntaxVariableName*>& variables) {
  if (auto* variable = dynamic_cast<SyntaxVariableName*>(node)) {
    variables.push_back(variable);
    return;
  }
  if (auto* composite = dynamic_cast<SyntaxComposite*>(node)) {
    for (SyntaxConverter* child : composite->GetChildren()) {
      BuildReferredVariableVector(child, variables);
    }
  }
}

}  // namespace

SyntaxSquareBracket::SyntaxSquareBracket(SyntaxConverter* referred)
    : _referredConverter(referred), _statistics(this) {
  SetScopeSource(referred);  // a bracket has no parent: it belongs where its opener does
  const int kind = referred->GetType();
  if (kind == kConverterVariable || kind == kConverterMRSet) {
    _referredVariables.push_back(static_cast<SyntaxVariableName*>(referred));
  } else if (kind != kConverterTotals) {
    SyntaxConverter* paren = referred->GetLastParenChild();
    if (paren == nullptr) {
      SyntaxParserUtility::IncorrectSequence(this, "[");
    }
    BuildReferredVariableVector(paren, _referredVariables);
  }
}

std::string SyntaxSquareBracket::GetSubcommandName() const {
  return "TABLE";
}

// [ statistic ... ] | [ TOTALS [...] ] | [ S ] | [ C ]
SyntaxConverter* SyntaxSquareBracket::String(const std::string& text) {
  if (Statistics* statistic = _statistics.ReadStatistic(text)) {
    return statistic;
  }
  if (KeywordMatch(text.c_str(), "TOTALS")) {
    _statistics.ClosePercentile(text);
    // Totals have no totals of their own, and a measurement mark speaks of the variable's
    // categories, which a totals clause does not describe.
    if (_referredConverter->GetType() == kConverterTotals || _statistics.HasMeasurement()) {
      SyntaxParserUtility::UnknownKeyword(this, text);
    }
    auto* totals = new SyntaxTotals(this);
    Add(totals);
    return totals;
  }
  if (_statistics.ReadMeasurement(text)) {
    return this;
  }
  SyntaxParserUtility::UnknownKeyword(this, text);
}

SyntaxConverter* SyntaxSquareBracket::RightSquareBracket(const std::string& text) {
  if (_bracketClosed) {
    return SyntaxConverter::RightSquareBracket(text);
  }
  _bracketClosed = true;
  _statistics.ClosePercentile(text);
  _statistics.DropEarlierRepeats();
  const std::size_t count = _statistics.GetStatistics().size();

  if (_referredConverter->GetType() == kConverterTotals) {
    if (count < 1) {
      SyntaxParserUtility::TotalNoStatsExpression(this, text);
    }
    auto* totals = static_cast<SyntaxTotals*>(_referredConverter);
    totals->AddStatistics(&_statistics.GetStatistics());
    auto* outer = static_cast<SyntaxSquareBracket*>(totals->GetSquareBracketParent());
    outer->SetTotals(totals);
    return outer;
  }

  if (count > 0) {
    // A bracket after a parenthesis speaks of the innermost operands: the left side of a
    // nesting only frames the categories of the right.
    const int kind = _referredConverter->GetType();
    const bool leavesOnly = kind == kConverterParen || kind == kConverterTable;
    for (SyntaxVariableName* variable : _referredVariables) {
      if (leavesOnly && !variable->GetIsLeafNode()) {
        continue;
      }
      variable->AddStatistics(&_statistics.GetStatistics());
    }
  }
  if (_statistics.HasMeasurement()) {
    for (SyntaxVariableName* variable : _referredVariables) {
      variable->SetVariableType(_statistics.GetMeasurement());
    }
  }
  return _referredConverter;
}

SyntaxConverter* SyntaxSquareBracket::TopParent() {
  return _referredConverter->TopParent();
}

void SyntaxSquareBracket::SetTotals(SyntaxTotals* totals) {
  for (SyntaxVariableName* variable : _referredVariables) {
    if (variable->GetIsLeafNode()) {
      variable->SetTotals(totals);
    }
  }
}

const std::vector<SyntaxVariableName*>& SyntaxSquareBracket::GetReferredVariables() const {
  return _referredVariables;
}

SyntaxConverter* SyntaxSquareBracket::GetReferredConverter() const {
  return _referredConverter;
}

const std::vector<Statistics*>& SyntaxSquareBracket::GetBracketStatistics() const {
  return _statistics.GetStatistics();
}

void SyntaxSquareBracket::DumpDetails(std::ostream& out) const {
  out << " closed=" << _bracketClosed << " referred=";
  const char* separator = "";
  for (const SyntaxVariableName* variable : _referredVariables) {
    out << separator << variable->GetNameToken();
    separator = ",";
  }
  out << " statistics=";
  _statistics.DumpNames(out);
  out << " measurement=" << (_statistics.HasMeasurement() ? _statistics.MeasurementName() : "none");
}
