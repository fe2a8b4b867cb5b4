// CategoryToken.h - one element of an explicit CATEGORIES list: a value, a keyword, a subtotal or a reference
#pragma once

#include <memory>
#include <string>

#include "host/engine/TableEncryptionCodes.h"

/// One element of `CATEGORIES [ ... ]` as written: its kind, its text, the number of a
/// numeric element, and the label of a subtotal. The variable nodes turn the tokens into
/// the engine's ParsedCategory records, once per variable.
class CategoryToken {
 public:
  using ExplicitListType = TableEncryptionCodes::ExplicitListType;

  /// A quoted value (kExplicitString).
  explicit CategoryToken(const std::string& text);
  /// An element of the given kind, such as a keyword or a computed-category reference.
  CategoryToken(const std::string& text, ExplicitListType type);
  /// A number as typed (kExplicitNumber).
  CategoryToken(double number, const std::string& text);
  /// A subtotal (`isSubtotal`) or hidden subtotal; with `mustHaveLabel` ("SUBTOTAL=") the
  /// next element must be the label text.
  CategoryToken(const std::string& text, bool mustHaveLabel, bool isSubtotal);
  virtual ~CategoryToken();
  CategoryToken(const CategoryToken&) = delete;
  CategoryToken& operator=(const CategoryToken&) = delete;

  /// The element's text as written (a range: both ends around " THRU ").
  virtual std::string GetToken() const;
  ExplicitListType GetTokenType() const;
  double GetNumber() const;
  const std::string& GetLabel() const;
  bool GetHasLabel() const;
  bool GetMustHaveLabel() const;
  /// Only for a subtotal written "SUBTOTAL=": the literal that follows.
  void SetLabel(const std::string& label);

  /// Same kind and, for quoted values, names and references the same text (any case), for
  /// numbers the same number; other kinds are equal by kind alone.
  bool operator==(const CategoryToken& other) const;

 private:
  struct Data;
  std::unique_ptr<Data> _my;
};
