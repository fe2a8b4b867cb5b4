// CategoryRange.h - a range element of an explicit CATEGORIES list: "low THRU high"
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "parser/CategoryToken.h"

/// `a THRU b`, `LO THRU b`, `a THRU HI`: made when THRU is read, it takes the element
/// before it as its first end and the element after it as its last.
class CategoryRange : public CategoryToken {
 public:
  /// `text` is the THRU word as written.
  explicit CategoryRange(const std::string& text);
  ~CategoryRange() override;

  /// "first THRU last", with an end not yet read left empty.
  std::string GetToken() const override;
  int GetChildCount() const;
  /// Null while the end is missing. Owned by the range.
  const CategoryToken* GetFirstChild() const;
  const CategoryToken* GetLastChild() const;
  /// Takes ownership of `token` as the next end; a range has two ends at most.
  void AddCategoryToken(CategoryToken* token);

 private:
  std::vector<std::unique_ptr<CategoryToken>> _children;  // the ends, first then last
};
