// SyntaxPComputeSubcommand.h - PCOMPUTE: one computed category, its name and its expression
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "parser/NamedConverter.h"
#include "parser/SyntaxComposite.h"

class ExpressionToken;
class SyntaxPPropertiesSubcommand;
struct TokenInfo;

/// `PCOMPUTE &name = EXPR( expression )`. After the name it reads the token sequence
/// itself up to the closing parenthesis, so that "/" inside the expression is division
/// and not the end of the subcommand. Nothing is evaluated here, and whether the
/// categories named exist is settled when an explicit category list refers to `&name`.
class SyntaxPComputeSubcommand : public NamedConverter<SyntaxComposite> {
 public:
  SyntaxPComputeSubcommand();
  ~SyntaxPComputeSubcommand() override;

  /// `name =` (the "=" is current in `tokens`): reads "EXPR", "(" and the expression,
  /// leaving `tokens` on its last token.
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  SyntaxConverter* Ampersand(const std::string& text) override;
  /// An open range, or numbers mixed with literals or names, is refused here.
  void ValidateAndCommit(const std::string& text) override;

  const std::string& GetCatName() const;
  /// The expression's text without the closing parenthesis of EXPR( ); the default label.
  std::string GetExpression() const;
  /// The operands in source order.
  std::vector<TokenInfo>& GetExpTokenVector();
  const std::vector<TokenInfo>& GetExpTokenVector() const;
  /// The operators in source order, without the closing parenthesis of EXPR( ).
  std::vector<TokenInfo> GetExpOpTokenVector() const;
  /// The PPROPERTIES that name this category, in order (not owned).
  void SetPPropertiesSyntax(SyntaxPPropertiesSubcommand* properties);
  const std::vector<SyntaxPPropertiesSubcommand*>& GetPPropertiesSyntax() const;
  /// Whether the expression uses TOTAL.
  bool IsTotalSet() const;
  /// Gives every operand `text` as its varName (the renderer's dictionary index).
  void UpdateTokenIndex(const std::string& text);

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct PCData;
  /// Reads the expression after "EXPR(" up to its closing parenthesis.
  void ReadExpression(TARN_TokenSequence* tokens, const std::string& attributeText);
  /// The term after SUBTOTAL: nothing, or "[n]", then whatever operator ends it.
  void ReadSubtotal(TARN_TokenSequence* tokens);
  /// A number term of the expression, `text` as written; `nextOpIndex` numbers a sign read as operator.
  void ReadNumberTerm(std::string text, double number, unsigned long nextOpIndex);
  /// A keyword term of the expression (MISSING, OTHERNM, TOTAL, SUBTOTAL).
  void ReadKeywordTerm(TARN_TokenSequence* tokens, const std::string& text);
  /// A token inside "[ ]" of the expression.
  void ReadBracketToken(int type, int op, std::string& text, double number, const std::string& attributeText);
  /// A token outside brackets: checks the order of terms and operators and records it.
  void ReadTermToken(TARN_TokenSequence* tokens, int type, int op, const std::string& text, double number,
                     const std::string& attributeText);
  /// "]": raises unless the bracket named exactly one category ("[1 THRU]" is left to ValidateAndCommit).
  void CheckClosingBracket();
  /// Whether `name` is a member of some multiple-response set of the dictionary.
  bool MRSetExists(const std::string& name) const;

  std::unique_ptr<PCData> _pcData;
  bool _rangeIsOpen = false;  // the last element of a bracket was THRU
  bool _totalUsed = false;    // the expression uses TOTAL
};
