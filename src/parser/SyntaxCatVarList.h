// SyntaxCatVarList.h - the VARIABLES list of CATEGORIES: names of the table's variables, or ALL
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxCategoriesPart.h"

/// `VARIABLES = name name ...` or `VARIABLES = ALL`. Current while the names arrive; the
/// first keyword or "[" ends it, and it hands the names that the table knows to its owner.
class SyntaxCatVarList : public SyntaxCategoriesPart {
 public:
  /// `owner` is the subcommand the list belongs to; not owned.
  explicit SyntaxCatVarList(SyntaxCategoriesSubcommand* owner);
  ~SyntaxCatVarList() override;

  SyntaxConverter* All(const std::string& text) override;
  SyntaxConverter* String(const std::string& text) override;
  /// Keeps the names the table's expression holds (others are dropped with a warning), or
  /// all its categorical variables for ALL, and hands them to the owner.
  void ValidateAndCommit(const std::string& text) override;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
