// SyntaxCatVarList.h - the VARIABLES list of CATEGORIES: names of the table's variables, or ALL
#pragma once

#include <memory>
#include <string>

#include "parser/NamedConverter.h"
#include "parser/SyntaxConverter.h"

class SyntaxCategoriesSubcommand;

/// `VARIABLES = name name ...` or `VARIABLES = ALL`. Current while the names arrive; the
/// first keyword or "[" ends it, and it hands the names that the table knows to its owner.
class SyntaxCatVarList : public NamedConverter<SyntaxConverter> {
 public:
  /// `owner` is the subcommand the list belongs to; not owned.
  explicit SyntaxCatVarList(SyntaxCategoriesSubcommand* owner);
  ~SyntaxCatVarList() override;

  SyntaxConverter* All(const std::string& text) override;
  SyntaxConverter* String(const std::string& text) override;
  /// The list ends: it commits, and the owner takes the keyword.
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  /// The list ends: it commits, and the owner opens the explicit list.
  SyntaxConverter* LeftSquareBracket(const std::string& text) override;
  /// Keeps the names the table's expression holds (others are dropped with a warning), or
  /// all its categorical variables for ALL, and hands them to the owner.
  void ValidateAndCommit(const std::string& text) override;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
