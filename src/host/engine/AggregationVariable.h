// AggregationVariable.h - a categorical variable of a table with its category options
#pragma once

#include <string>
#include <vector>

class ParsedCategory;
class TableDimension;

/// The engine's view of one categorical variable of a table and its CATEGORIES options.
/// The derived classes are the two kinds of multiple-response set. The table makes the
/// variable's TableDimension when the variable first joins a cube.
class AggregationVariable {
 public:
  enum VariableKind { kSingle = 0, kCategorySet = 1, kDichotomySet = 2 };

  AggregationVariable(int varIndex, const std::string& name);
  virtual ~AggregationVariable();
  AggregationVariable(const AggregationVariable&) = delete;
  AggregationVariable& operator=(const AggregationVariable&) = delete;

  virtual void SetVarLabel(const std::string& text);
  virtual TableDimension* GetTableDimension() const;
  /// The explicit list; null when the list is implicit. The items stay owned by the caller
  /// and must outlive the table.
  virtual void AddParsedCategories(const std::vector<ParsedCategory*>* list);
  virtual void SetIsOrderA(bool flag);
  virtual void SetIsMissingExclude(bool flag);
  virtual void SetIsTotalPositionAfter(bool flag);
  virtual void SetIsEmptyInclude(bool flag);
  virtual void SetTotalLabel(const std::string& text);
  virtual void SetIsTotalLabelDefault(bool flag);
  virtual void SetSortInfo(int statisticCode, int varIndex);
  virtual void SetSortKey(int key);
  /// Category sets only: the member whose user-missing definition the set uses.
  virtual void SetUserMissingVarIndex(int index);
  void SetIsTotalNo(bool flag) { _totalNo = flag; }

  /// Sort keys: 0 none, 1 by value, 2 by label, 3 by a statistic.
  enum SortKey { kSortKeyNone = 0, kSortKeyValue = 1, kSortKeyLabel = 2, kSortKeyStatistic = 3 };

  VariableKind GetKind() const { return _kind; }
  int GetVarIndex() const { return _varIndices.empty() ? -1 : _varIndices.front(); }
  const std::vector<int>& GetVarIndices() const { return _varIndices; }
  const std::string& GetName() const { return _name; }
  const std::string& GetVarLabel() const { return _label; }
  const std::vector<ParsedCategory*>* GetParsedCategories() const { return _parsed; }
  bool GetIsOrderA() const { return _orderA; }
  bool GetIsMissingExclude() const { return _missingExclude; }
  bool GetIsTotalPositionAfter() const { return _totalAfter; }
  bool GetIsEmptyInclude() const { return _emptyInclude; }
  bool GetIsTotalNo() const { return _totalNo; }
  const std::string& GetTotalLabel() const { return _totalLabel; }
  bool GetIsTotalLabelDefault() const { return _totalLabelDefault; }
  int GetSortStatistic() const { return _sortStatistic; }
  int GetSortVarIndex() const { return _sortVarIndex; }
  int GetSortKey() const { return _sortKey; }
  int GetUserMissingVarIndex() const { return _userMissingVarIndex; }

  /// Called by the table when it makes the variable's dimension.
  void AttachDimension(TableDimension* dimension) { _dimension = dimension; }

 protected:
  AggregationVariable(VariableKind kind, const std::vector<int>& varIndices, const std::string& name);
  int _userMissingVarIndex = -1;

 private:
  VariableKind _kind;
  std::vector<int> _varIndices;
  std::string _name;
  std::string _label;
  const std::vector<ParsedCategory*>* _parsed = nullptr;
  bool _orderA = true;
  bool _missingExclude = true;
  bool _totalAfter = true;
  bool _emptyInclude = true;
  bool _totalNo = true;
  std::string _totalLabel = "Total";
  bool _totalLabelDefault = true;
  int _sortStatistic = 0;
  int _sortVarIndex = -1;
  int _sortKey = kSortKeyValue;
  TableDimension* _dimension = nullptr;
};
