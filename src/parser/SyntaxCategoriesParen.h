// SyntaxCategoriesParen.h - the variable (and percentile) of a CATEGORIES sort statistic: KEY=MEAN(score)
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxCategoriesPart.h"

/// The parenthesis after a sort statistic, `KEY=MEAN(score)` or `KEY=PTILE(score 25)`.
/// Current from the statistic word until ")" (or, when the parenthesis may be left out,
/// until the next keyword or "[").
class SyntaxCategoriesParen : public SyntaxCategoriesPart {
 public:
  /// `keyword` is the statistic as written; `isPercentile` for PTILE and UPTILE, which need a
  /// percentile strictly between 0 and 100. `owner` is not owned.
  SyntaxCategoriesParen(SyntaxCategoriesSubcommand* owner, const std::string& keyword, bool isPercentile);
  ~SyntaxCategoriesParen() override;

  SyntaxConverter* LeftParen(const std::string& text) override;
  SyntaxConverter* String(const std::string& text) override;
  /// The percentile, inside the parenthesis or ahead of it.
  SyntaxConverter* Number(double value, const std::string& text) override;
  /// Hands the variable and percentile to the owner, which becomes current again.
  SyntaxConverter* RightParen(const std::string& text) override;
  /// Without the parenthesis a statistic that needs a variable raises MissingVariableArgument.
  void ValidateAndCommit(const std::string& text) override;

  /// Counts and percentages of categories need no variable: the parenthesis may be left out.
  void ParenthesisAreOptional(bool isOptional);

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
