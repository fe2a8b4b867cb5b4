// CategoryRange.cpp - a range element of an explicit CATEGORIES list
#include "parser/CategoryRange.h"

#include "host/QuiltAssert.h"

CategoryRange::CategoryRange(const std::string& text)
    : CategoryToken(text, TableEncryptionCodes::kExplicitRange) {}

CategoryRange::~CategoryRange() = default;

std::string CategoryRange::GetToken() const {
  const std::string first = _children.empty() ? "" : _children.front()->GetToken();
  const std::string last = _children.size() < 2 ? "" : _children.back()->GetToken();
  return first + " THRU " + last;
}

int CategoryRange::GetChildCount() const {
  return static_cast<int>(_children.size());
}

const CategoryToken* CategoryRange::GetFirstChild() const {
  return _children.empty() ? nullptr : _children.front().get();
}

const CategoryToken* CategoryRange::GetLastChild() const {
  return _children.size() < 2 ? nullptr : _children.back().get();
}

void CategoryRange::AddCategoryToken(CategoryToken* token) {
  QUILT_ASSERT(token != nullptr, "a range end is a real element");
  std::unique_ptr<CategoryToken> owned(token);
  QUILT_ASSERT(_children.size() < 2, "a range has two ends at most");
  _children.push_back(std::move(owned));
}
