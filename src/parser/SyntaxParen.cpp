// SyntaxParen.cpp - opening, filling and closing a parenthesised group
#include "parser/SyntaxParen.h"

#include <ostream>

#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"

SyntaxParen::SyntaxParen() {
  SetContexts(kContextBeforeOperand);
}

int SyntaxParen::GetType() const {
  return kConverterParen;
}

// ( ( expression ) ...
SyntaxConverter* SyntaxParen::LeftParen(const std::string& text) {
  SyntaxConverter* inner = SyntaxConverter::LeftParen(text);
  // Once the inner paren closes this one is current, with an operand in hand.
  SetContexts(kContextAfterOperand & ~kContextBy);
  return inner;
}

SyntaxConverter* SyntaxParen::LeftSquareBracket(const std::string& text) {
  ValidateAndCommit(text);
  return SyntaxConverter::LeftSquareBracket(text);
}

SyntaxConverter* SyntaxParen::By(const std::string& text) {
  ValidateAndCommit(text);
  return SyntaxConverter::By(text);
}

SyntaxConverter* SyntaxParen::Plus(const std::string& text) {
  ValidateAndCommit(text);
  return SyntaxConverter::Plus(text);
}

SyntaxConverter* SyntaxParen::GreaterThan(const std::string& text) {
  ValidateAndCommit(text);
  return SyntaxConverter::GreaterThan(text);
}

SyntaxConverter* SyntaxParen::RightParen(const std::string& text) {
  ValidateAndCommit(")");
  if (_parenClosed) {
    // This paren is complete: the ")" belongs to an enclosing one.
    return GetParent()->RightParen(text);
  }
  _parenClosed = true;
  GetParent()->SetLastParenChild(this);
  return GetParent();
}

void SyntaxParen::ValidateAndCommit(const std::string& text) {
  if (Children().empty()) {
    SyntaxParserUtility::IncorrectSequence(this, text);
  }
}

void SyntaxParen::DissectTableInCubes() {
  SyntaxComposite::DissectTableInCubes();
  ImitateChildComposite(Children().front());
}

bool SyntaxParen::IsParenClosed() const {
  return _parenClosed;
}

void SyntaxParen::DumpDetails(std::ostream& out) const {
  out << " closed=" << _parenClosed;
}
