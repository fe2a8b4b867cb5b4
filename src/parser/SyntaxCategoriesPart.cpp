// SyntaxCategoriesPart.cpp - the end of a CATEGORIES part, which hands the token back to its owner
#include "parser/SyntaxCategoriesPart.h"

#include "parser/SyntaxCategoriesSubcommand.h"
#include "parser/SyntaxConverterType.h"

SyntaxCategoriesPart::SyntaxCategoriesPart(SyntaxCategoriesSubcommand* owner)
    : NamedConverter("CATEGORIES", kConverterCategories), _owner(owner) {}

SyntaxConverter* SyntaxCategoriesPart::AttributeString(const std::string& text, TARN_TokenSequence* tokens) {
  ValidateAndCommit(text);
  return _owner->AttributeString(text, tokens);
}

SyntaxConverter* SyntaxCategoriesPart::LeftSquareBracket(const std::string& text) {
  ValidateAndCommit(text);
  return _owner->LeftSquareBracket(text);
}
