// VariableSet.h - one multiple-response set of the dictionary, and the list of them
#pragma once

#include <string>
#include <vector>

class TARN_DataSource;

/// Kinds of variable sets VariableSets can list.
enum VarSetsType : int {
  kVarSetsMultipleResponse = 1,  // the multiple-response sets
};

/// A multiple-response set: a named group of variables that a table treats as one
/// categorical variable. Plain copyable object; VariableSets hands out copies.
class VariableSet {
 public:
  /// Set kinds (GetType).
  enum SetType : int {
    kMR_Category = 1,   // each member holds a category code
    kMR_Dichotomy = 2,  // each member counts when it holds the counted value
  };
  /// Results of Validate.
  enum ValidationResult : int {
    kNoError = 0,
    kNoMembers = 1,        // the set has fewer than two members
    kUnknownMember = 2,    // a member is not in the dictionary
    kMixedTypes = 3,       // numeric and string members together
    kNoCountedValue = 4,   // a dichotomy set without a counted value
    kInvalidName = 5,      // the name does not start with "$" or is not a valid name
    kDuplicateMember = 6,  // a variable is listed twice
  };
  /// Letter case of the names that GetName and GetVariableNames return.
  enum ChangeCase : int {
    kLowerCase = 0,  // folded to lower case
    kUpperCase = 1,  // folded to upper case
    kAsDefined = 2,  // as written in the dictionary (the form for display)
  };

  VariableSet();
  VariableSet(const VariableSet& other);
  VariableSet& operator=(const VariableSet& other);
  VariableSet(VariableSet&& other) noexcept;
  VariableSet& operator=(VariableSet&& other) noexcept;
  ~VariableSet();

  /// The name with its leading "$", in the case asked for.
  std::string GetName(int changeCase) const;
  /// The members' names in set order, in the case asked for.
  std::vector<std::string> GetVariableNames(int changeCase) const;
  /// The set's label, empty when it has none. The data source is not needed for a set
  /// label of its own, and is accepted for the host's signature.
  std::string GetLabel(TARN_DataSource& dataSource) const;
  std::string GetLabel() const;
  /// kMR_Category or kMR_Dichotomy.
  int GetType() const;
  /// The counted value of a dichotomy set as text ("1", "yes"); empty for a category set.
  std::string GetValue() const;
  /// kNoError when the set is usable: at least two distinct members, a counted value for a
  /// dichotomy set, and, once checked against a dictionary (CheckAgainst), members that
  /// exist and share one type.
  int Validate() const;
  /// True for a dichotomy set whose categories are named by the counted value's labels
  /// ("countedvaluelabels") rather than by the members' variable labels.
  bool qUseVariableCategoryLabels() const;

  void SetName(const std::string& name);
  void SetLabel(const std::string& label);
  void SetType(int type);
  void SetValue(const std::string& countedValue);
  void SetVariableNames(const std::vector<std::string>& names);
  void SetUseVariableCategoryLabels(bool useCountedValueLabels);
  /// Checks the members against a dictionary; Validate reports the result from then on.
  void CheckAgainst(const TARN_DataSource& dataSource);

 private:
  struct Data {
    std::string _name;                // with its leading "$", as defined
    std::string _label;               // empty when none
    int _type = kMR_Category;         // SetType
    std::string _countedValue;        // dichotomy sets only
    std::vector<std::string> _names;  // members in set order, as defined
    bool _useCountedValueLabels = false;
    int _dictionaryCheck = kNoError;  // result of the latest CheckAgainst
  };
  Data _data;
};

/// The variable sets of `type` defined for the data source's data set, in definition
/// order, each already checked against its dictionary. Any type other than
/// kVarSetsMultipleResponse gives an empty list.
std::vector<VariableSet> VariableSets(const TARN_DataSource& dataSource, int type);
