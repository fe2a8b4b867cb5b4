// SyntaxMRVariableSet.h - a multiple-response set ("$name") used as one variable of a table
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "parser/SyntaxVariableName.h"

class SyntaxMRsetElementaryVariable;
class VariableSet;
union OBS;

/// The node of a multiple-response set in a table expression. It reads its members when it
/// is made, checks that they fit together (one storage type, a counted value that fits,
/// labels that do not contradict each other), and merges the members' value labels into
/// its own. For a multiple-category set the categories are the members' values; for a
/// dichotomy set each member is one category, and an explicit list names members.
class SyntaxMRVariableSet : public SyntaxVariableName {
 public:
  explicit SyntaxMRVariableSet(VariableSet& set);
  ~SyntaxMRVariableSet() override;

  int GetType() const override;
  /// Reads and checks the members; `countedValue` is the counted value of a dichotomy set as
  /// blank-filled cells, null for a category set. Not owned.
  void ValidateSetConditions(VariableSet& set, OBS* countedValue);
  /// MRSETS COUNTDUPLICATES: stores the opposite of `isNo`.
  void SetCountDuplicates(bool isNo);
  bool GetCountDuplicates() const;
  /// Set by the cube that finds this the innermost set of its axis.
  void SetInnermost(bool innermost);
  bool GetInnermost() const;

  /// A category set reads its list as a variable does. A dichotomy set's list names member
  /// variables (a number, a literal or a range is refused), with subtotals and computed
  /// categories as for a variable.
  void SetParsedCategories(const std::vector<CategoryToken*>& tokens) override;
  using SyntaxVariableName::SetCategoriesList;
  /// Dichotomy sets only: the members become the categories, in the set's order.
  void SetCategoriesList();
  /// Whether dictionary variable `index` is a member.
  bool ContainsThisVariable(int index) const;

  /// The members' dictionary indices, in the set's order.
  std::vector<int> GetIndexList() const;
  int GetIndexListCount() const;
  /// VariableSet::kMR_Category or VariableSet::kMR_Dichotomy.
  int GetMRSetType() const;
  /// Dichotomy sets only: the counted value as cells of the set's widest member, and its
  /// number of cells. Owned by the node.
  const OBS* GetCountedOBS() const;
  int GetCountedOBSSize() const;
  /// Dichotomy sets: the counted value's labels name the categories, not the variable labels.
  bool GetUseCountedValueLabels() const;
  /// Category sets only: the member whose user-missing definition applies, -1 for none.
  int GetUserMissingVarIndex() const;
  /// The members, in the set's order; owned by the node.
  const std::vector<SyntaxMRsetElementaryVariable*>& GetElementaryVariables() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  /// Creates the members and settles the set's storage type and narrowest width.
  void ValidateSet(VariableSet& set, const std::string& countedText);
  /// Reads the counted value as a value of the set's type.
  void ValidateCountedValue(VariableSet& set);
  /// Merges (category set) or compares (dichotomy set) the members' labels.
  void ValidateLabelsInSet(VariableSet& set);
  void ValidateCategoryLabels();
  void ValidateDichotomyLabels();

  struct MrData;
  std::unique_ptr<MrData> _mrData;
};
