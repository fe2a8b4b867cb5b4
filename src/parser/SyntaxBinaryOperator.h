// SyntaxBinaryOperator.h - common base of the table-expression operators +, > and BY
#pragma once

#include <string>

#include "parser/SyntaxComposite.h"

/// An operator of the table expression with its two operands as children. It takes a
/// variable or a paren as its right operand; once it has two children, whatever arrives
/// next goes to its parent.
class SyntaxBinaryOperator : public SyntaxComposite {
 public:
  SyntaxBinaryOperator();

  std::string GetSubcommandName() const override;
  SyntaxConverter* LeftParen(const std::string& text) override;
  /// With fewer than two operands the child is taken; otherwise it goes to the parent.
  SyntaxConverter* Add(SyntaxConverter* child) override;
  /// An operator left without its right operand raises IncorrectSequence.
  void ValidateAndCommit(const std::string& text) override;
};
