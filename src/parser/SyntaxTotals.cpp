// SyntaxTotals.cpp - the TOTALS clause: hands the nested bracket's statistics to the outer bracket
#include "parser/SyntaxTotals.h"

#include <ostream>

#include "parser/Statistics.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"

SyntaxTotals::SyntaxTotals(SyntaxConverter* squareBracketParent) : _squareBracketParent(squareBracketParent) {
  // Only the nested bracket may follow the word TOTALS.
  SetContexts(kContextSquareBracket);
}

std::string SyntaxTotals::GetSubcommandName() const {
  return "TABLE";
}

int SyntaxTotals::GetType() const {
  return kConverterTotals;
}

SyntaxConverter* SyntaxTotals::RightSquareBracket(const std::string& text) {
  SyntaxParserUtility::TotalNoStatsExpression(this, text);
}

void SyntaxTotals::AddStatistics(const std::vector<Statistics*>* statistics) {
  _totalStatistics = *statistics;
}

const std::vector<Statistics*>& SyntaxTotals::GetTotalStatistics() const {
  return _totalStatistics;
}

SyntaxConverter* SyntaxTotals::GetSquareBracketParent() const {
  return _squareBracketParent;
}

void SyntaxTotals::DumpDetails(std::ostream& out) const {
  out << " totals=";
  const char* separator = "";
  for (const Statistics* statistic : _totalStatistics) {
    out << separator << statistic->GetNameToken();
    separator = ",";
  }
}
