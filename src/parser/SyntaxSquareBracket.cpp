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

SyntaxSquareBracket::SyntaxSquareBracket(SyntaxConverter* referred) : _referredConverter(referred) {
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
  int code = 0;
  std::string label;
  TableEncryptionCodes::StatisticsGroup group = TableEncryptionCodes::kStatGroupCounts;
  if (SyntaxParserUtility::SupportedStatistics(text, code, label, group)) {
    if (_measurementSeen) {
      SyntaxParserUtility::CombinedStatsAndMeasurement(this, text);
    }
    AssertIntegrity(text);
    auto* statistic = new Statistics(static_cast<TableEncryptionCodes::StatisticCodes>(code), text, label);
    statistic->SetStatGroup(group);
    Add(statistic);
    _bracketStatistics.push_back(statistic);
    const int primary = statistic->GetPrimaryStatistic();
    if (primary == TableEncryptionCodes::kStatPtile || primary == TableEncryptionCodes::kStatUPtile) {
      _pendingPercentile = statistic;
    }
    _statisticsSeen = true;
    return statistic;
  }
  if (KeywordMatch(text.c_str(), "TOTALS")) {
    AssertIntegrity(text);
    // Totals have no totals of their own, and a measurement mark speaks of the variable's
    // categories, which a totals clause does not describe.
    if (_referredConverter->GetType() == kConverterTotals || _measurementSeen) {
      SyntaxParserUtility::UnknownKeyword(this, text);
    }
    auto* totals = new SyntaxTotals(this);
    Add(totals);
    return totals;
  }
  const bool scale = SyntaxParserUtility::ExactWordMatch(text, "S");
  if (scale || SyntaxParserUtility::ExactWordMatch(text, "C")) {
    if (_statisticsSeen) {
      SyntaxParserUtility::CombinedStatsAndMeasurement(this, text);
    }
    if (_measurementSeen) {
      SyntaxParserUtility::DuplicateWarning(this, text);
    }
    _measurementCode =
        scale ? TableEncryptionCodes::kVariableScale : TableEncryptionCodes::kVariableCategorical;
    _measurementSeen = true;
    return this;
  }
  SyntaxParserUtility::UnknownKeyword(this, text);
}

SyntaxConverter* SyntaxSquareBracket::RightSquareBracket(const std::string& text) {
  if (_bracketClosed) {
    return SyntaxConverter::RightSquareBracket(text);
  }
  _bracketClosed = true;
  AssertIntegrity(text);
  const int count = CheckStatsUniqueness();

  if (_referredConverter->GetType() == kConverterTotals) {
    if (count < 1) {
      SyntaxParserUtility::TotalNoStatsExpression(this, text);
    }
    auto* totals = static_cast<SyntaxTotals*>(_referredConverter);
    totals->AddStatistics(&_bracketStatistics);
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
      variable->AddStatistics(&_bracketStatistics);
    }
  }
  if (_measurementSeen) {
    for (SyntaxVariableName* variable : _referredVariables) {
      variable->SetVariableType(_measurementCode);
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

void SyntaxSquareBracket::AssertIntegrity(const std::string& text) {
  if (_pendingPercentile != nullptr && !_pendingPercentile->HasCutPoint()) {
    SyntaxParserUtility::InvalidPTILE(this, text);
  }
  _pendingPercentile = nullptr;
}

int SyntaxSquareBracket::CheckStatsUniqueness() {
  for (std::size_t i = 0; i < _bracketStatistics.size();) {
    bool repeatedLater = false;
    for (std::size_t j = i + 1; j < _bracketStatistics.size(); ++j) {
      if (*_bracketStatistics[i] == *_bracketStatistics[j]) {
        repeatedLater = true;
        break;
      }
    }
    if (repeatedLater) {
      // The later one stays, so the last thing written for a statistic is what counts.
      SyntaxParserUtility::DuplicateWarning(this, _bracketStatistics[i]->GetNameToken());
      _bracketStatistics.erase(_bracketStatistics.begin() + static_cast<std::ptrdiff_t>(i));
    } else {
      ++i;
    }
  }
  return static_cast<int>(_bracketStatistics.size());
}

const std::vector<SyntaxVariableName*>& SyntaxSquareBracket::GetReferredVariables() const {
  return _referredVariables;
}

SyntaxConverter* SyntaxSquareBracket::GetReferredConverter() const {
  return _referredConverter;
}

const std::vector<Statistics*>& SyntaxSquareBracket::GetBracketStatistics() const {
  return _bracketStatistics;
}

void SyntaxSquareBracket::DumpDetails(std::ostream& out) const {
  out << " closed=" << _bracketClosed << " referred=";
  const char* separator = "";
  for (const SyntaxVariableName* variable : _referredVariables) {
    out << separator << variable->GetNameToken();
    separator = ",";
  }
  out << " statistics=";
  separator = "";
  for (const Statistics* statistic : _bracketStatistics) {
    out << separator << statistic->GetNameToken();
    separator = ",";
  }
  out << " measurement="
      << (_measurementSeen ? (_measurementCode == TableEncryptionCodes::kVariableScale ? "S" : "C") : "none");
}
