// SyntaxSquareBracket.cpp - opening and closing a statistics bracket on its operand
#include "parser/SyntaxSquareBracket.h"

#include <ostream>

#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
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

SyntaxConverter* SyntaxSquareBracket::RightSquareBracket(const std::string& text) {
  if (_bracketClosed) {
    return SyntaxConverter::RightSquareBracket(text);
  }
  _bracketClosed = true;
  return _referredConverter;
}

SyntaxConverter* SyntaxSquareBracket::TopParent() {
  return _referredConverter->TopParent();
}

const std::vector<SyntaxVariableName*>& SyntaxSquareBracket::GetReferredVariables() const {
  return _referredVariables;
}

SyntaxConverter* SyntaxSquareBracket::GetReferredConverter() const {
  return _referredConverter;
}

void SyntaxSquareBracket::DumpDetails(std::ostream& out) const {
  out << " closed=" << _bracketClosed << " referred=";
  const char* separator = "";
  for (const SyntaxVariableName* variable : _referredVariables) {
    out << separator << variable->GetNameToken();
    separator = ",";
  }
}
