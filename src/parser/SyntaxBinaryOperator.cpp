// SyntaxBinaryOperator.cpp - operand handling shared by the three table-expression operators
#include "parser/SyntaxBinaryOperator.h"

#include "parser/SyntaxParserUtility.h"

SyntaxBinaryOperator::SyntaxBinaryOperator() {
  // Right after an operator comes its right operand: a variable or a parenthesis.
  SetContexts(kContextBeforeOperand);
}

std::string SyntaxBinaryOperator::GetSubcommandName() const {
  return "TABLE";
}

// operator ( expression )
SyntaxConverter* SyntaxBinaryOperator::LeftParen(const std::string& text) {
  SyntaxConverter* paren = SyntaxConverter::LeftParen(text);
  // When the paren closes, this operator is current again, with its operand complete.
  SetContexts(kContextAfterOperand);
  return paren;
}

SyntaxConverter* SyntaxBinaryOperator::Add(SyntaxConverter* child) {
  if (Children().size() < 2) {
    return SyntaxComposite::Add(child);
  }
  return SyntaxConverter::Add(child);
}

void SyntaxBinaryOperator::ValidateAndCommit(const std::string& text) {
  if (Children().size() < 2) {
    SyntaxParserUtility::IncorrectSequence(this, text);
  }
}
