// TableMetadata.h - the dimensions and scale variables of one table
#pragma once

#include <memory>
#include <vector>

class AggregationVariable;
class TARN_DataSource;
class TableDimension;

/// Holds one TableDimension for each categorical variable or set of the table, and the
/// scale variables the cases are read for.
class TableMetadata {
 public:
  TableMetadata();
  ~TableMetadata();
  TableMetadata(const TableMetadata&) = delete;
  TableMetadata& operator=(const TableMetadata&) = delete;

  int NumberOfDimensions() const;
  TableDimension* GetDimension(int i) const;
  /// SMISSING=LISTWISE is in force.
  bool GetListwise() const;
  /// Valid case count (weighted as the table is) of each scale variable, by scale slot.
  const std::vector<double>& GetValidCount() const;
  /// Dictionary index of the scale variable in slot i.
  int GetCaseReaderVarIndex(int i) const;
  int NumberOfScaleVariables() const;
  /// Releases the dimensions and what hangs under them.
  void ClearDeep();

  /// The variable's dimension, made on first use.
  TableDimension* DimensionFor(AggregationVariable* variable, const TARN_DataSource* source);
  void SetListwise(bool flag);
  /// The scale slot of a dictionary variable, added on first use.
  int ScaleSlotFor(int varIndex);
  std::vector<double>& ValidCounts();

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
