// SyntaxCategoriesSubcommand.h - CATEGORIES: which categories of the table's variables appear, in which
// order, with which totals
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/engine/TableEncryptionCodes.h"
#include "parser/NamedConverter.h"
#include "parser/SyntaxComposite.h"

class SyntaxVariableName;

/// `CATEGORIES VARIABLES=... [explicit list] | ORDER= KEY= MISSING=, and TOTAL= LABEL=
/// POSITION= EMPTY=`. Nothing is applied while the subcommand is read: at its end
/// ValidateAndCommit hands each option to every categorical occurrence of the named
/// variables in the table ahead of it.
class SyntaxCategoriesSubcommand : public NamedConverter<SyntaxComposite> {
 public:
  SyntaxCategoriesSubcommand();
  ~SyntaxCategoriesSubcommand() override;

  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  /// Opens the explicit list.
  SyntaxConverter* LeftSquareBracket(const std::string& text) override;
  /// The total's LABEL text.
  SyntaxConverter* Literal(const std::string& text) override;
  /// The value of the keyword just read.
  SyntaxConverter* String(const std::string& text) override;
  /// Checks the whole subcommand and applies it to the variables.
  void ValidateAndCommit(const std::string& text) override;

  /// The names the subcommand applies to (from its VARIABLES list).
  void SetVariableList(const std::vector<std::string>& names);
  const std::vector<std::string>& GetVariableList() const;
  bool IsEmptyIncluded() const;
  /// The variable of a sort statistic, checked against the table; `percentile` for PTILE
  /// and UPTILE.
  void SetSortKeyVariable(const std::string& name, double percentile);

  // Look-ups in the table this subcommand belongs to.
  /// Names of the table's categorical variables and sets, each once, in order.
  std::vector<std::string> GetCatVarNameList();
  bool CatVarNameExist(const std::string& name);
  bool ScaleVarNameExist(const std::string& name);
  /// Every categorical (scale) occurrence of `name` in the table, in order.
  std::vector<SyntaxVariableName*> GetCategoricalVariables(const std::string& name);
  std::vector<SyntaxVariableName*> GetScaleVariables(const std::string& name);

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  /// ExplicitListViolation when an explicit list was given.
  void RefuseBesideList() const;
  /// The value of KEY; a statistic opens the parenthesis of its variable, which is returned.
  SyntaxConverter* ReadSortKey(const std::string& text);
  /// A sort statistic must be available where the categories are sorted.
  void ValidateSummarySortKey();
  /// Removes `child` from the children and deletes it.
  void DropChild(SyntaxConverter* child);
  /// Every occurrence of `name` of measurement `type` in the table, in order.
  std::vector<SyntaxVariableName*> GetTableVariables(const std::string& name,
                                                     TableEncryptionCodes::VariableCodes type);

  struct Data;
  std::unique_ptr<Data> _data;
};
