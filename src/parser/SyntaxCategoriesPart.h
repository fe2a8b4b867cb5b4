// SyntaxCategoriesPart.h - a piece of CATEGORIES that is current for a while, then hands back to it
#pragma once

#include <string>

#include "parser/NamedConverter.h"
#include "parser/SyntaxConverter.h"

class SyntaxCategoriesSubcommand;

/// The VARIABLES list and the parenthesis of a sort statistic: each reads its own tokens
/// while current, and the next keyword or "[" ends it, committing it and going on in the
/// CATEGORIES subcommand that owns it.
class SyntaxCategoriesPart : public NamedConverter<SyntaxConverter> {
 public:
  /// The part ends: it commits, and the owner takes the keyword.
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  /// The part ends: it commits, and the owner opens the explicit list.
  SyntaxConverter* LeftSquareBracket(const std::string& text) override;

 protected:
  /// `owner` is the subcommand the part belongs to; not owned.
  explicit SyntaxCategoriesPart(SyntaxCategoriesSubcommand* owner);

  SyntaxCategoriesSubcommand* Owner() const { return _owner; }

 private:
  SyntaxCategoriesSubcommand* _owner;
};
