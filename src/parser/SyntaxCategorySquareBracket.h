// SyntaxCategorySquareBracket.h - the explicit list of CATEGORIES: values, ranges, keywords, subtotals,
// references
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "parser/SyntaxComposite.h"

class CategoryRange;
class CategoryToken;

/// `[ 1 2 'a' 3 THRU 5 LO THRU 0 MISSING OTHERNM SUBTOTAL='x' HSUBTOTAL &name ]`. Each
/// element becomes a CategoryToken, added under the sequence rules (a range takes the
/// element before THRU and the one after it; a repeated element moves to the later place).
/// In a list that applies only to dichotomy sets the words are member variables.
class SyntaxCategorySquareBracket : public SyntaxComposite {
 public:
  SyntaxCategorySquareBracket();
  ~SyntaxCategorySquareBracket() override;

  std::string GetSubcommandName() const override;
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  SyntaxConverter* Literal(const std::string& text) override;
  SyntaxConverter* Number(double value, const std::string& text) override;
  SyntaxConverter* RightSquareBracket(const std::string& text) override;
  SyntaxConverter* Ampersand(const std::string& text) override;
  SyntaxConverter* String(const std::string& text) override;
  /// An unclosed, empty or unfinished list is refused.
  void ValidateAndCommit(const std::string& text) override;

  /// The list applies only to dichotomy sets: words are member names. `reservedMembers` are
  /// the reserved words (SUBTOTAL, LO, THRU, MISSING, ...) that name a member of those sets
  /// and so stand for that member rather than for their usual meaning.
  void SetMemberList(const std::vector<std::string>& reservedMembers);

  /// The elements in order; owned by the list.
  const std::vector<CategoryToken*>& GetTokens() const;
  /// Deletes the element at `position` (an empty subtotal at an end of the list).
  void RemoveToken(std::size_t position);
  /// A computed category referred to uses TOTAL.
  bool IsTotalUsedExprInPc() const;
  /// The name of the referred computed category that uses TOTAL (else the last one referred to).
  const std::string& GetPcCatName() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  /// Adds `token` (owned from now) under the sequence rules; `text` names it in messages.
  void AddCategoryToken(CategoryToken* token, const std::string& text);
  /// Removes every earlier element equal to the last one, with a warning.
  void RemoveDuplicatesOfLast(const std::string& text);
  /// Drops an earlier copy of the range just completed (the last token), with a warning.
  void RemoveEarlierCopiesOfRange(const CategoryRange& range, const std::string& text);
  /// Two subtotals in a row: the first sums nothing and is dropped.
  void CleanUpSubtotals();

  struct Data;
  std::unique_ptr<Data> _data;
};
