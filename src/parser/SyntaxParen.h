// SyntaxParen.h - a parenthesised part of a table expression
#pragma once

#include <string>

#include "parser/SyntaxComposite.h"
#include "parser/VariableComposite.h"

/// ( expression ): groups operands so that a following operator or bracket applies to
/// the whole group. After its ")" the parent becomes current and remembers this paren as
/// its last paren child, for a square bracket that may follow.
/// Its cubes are those of the expression inside.
class SyntaxParen : public SyntaxComposite, public VariableComposite {
 public:
  SyntaxParen();

  int GetType() const override;
  SyntaxConverter* LeftParen(const std::string& text) override;
  SyntaxConverter* LeftSquareBracket(const std::string& text) override;
  SyntaxConverter* By(const std::string& text) override;
  SyntaxConverter* Plus(const std::string& text) override;
  SyntaxConverter* GreaterThan(const std::string& text) override;
  SyntaxConverter* RightParen(const std::string& text) override;
  /// An empty paren raises IncorrectSequence.
  void ValidateAndCommit(const std::string& text) override;
  virtual bool IsParenClosed() const;
  void DissectTableInCubes() override;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  bool _parenClosed = false;  // its ")" has been seen
};
