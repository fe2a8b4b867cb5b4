// TARN_DataSource.h - the dictionary side of a data source: variables, lookup, splits and weight
#pragma once

#include <memory>
#include <vector>

class Dataset;
class TARN_Variable;

/// A data set as the procedure sees it: its dictionary, split variables and weight. It
/// keeps its own copy of the dictionary, so settling measurement levels for one run never
/// changes the loaded data set. Variable pointers stay valid while the source lives.
class TARN_DataSource {
 public:
  virtual ~TARN_DataSource();
  TARN_DataSource(const TARN_DataSource&) = delete;
  TARN_DataSource& operator=(const TARN_DataSource&) = delete;

  /// Number of split-file variables.
  virtual unsigned SplitVariableCount() const;
  /// Dictionary index of split variable `i` (0-based); -1 when `i` is out of range.
  virtual int SplitVariableIndex(unsigned i) const;
  /// True when split groups are delivered as separate output (layout "separate"), false
  /// when they are laid out together ("layered") or when there are no split variables.
  virtual bool SplitsSeparate() const;

  /// The variable at a dictionary index; null when the index is out of range.
  TARN_Variable* GetVariable(int index);
  const TARN_Variable* GetVariable(int index) const;
  /// Dictionary index of the variable named `name` (letter case does not matter), or -1.
  /// `flags` is accepted for the host's signature and must be 0.
  int FindVarIndex(const char* name, int flags = 0) const;
  /// Number of variables.
  int ColumnCount() const;
  /// Dictionary index of the case weight variable, -1 without one.
  int GetWeightVarIndex() const;
  /// The data set behind the source; null when none was active.
  const std::shared_ptr<const Dataset>& GetDataset() const;

 protected:
  /// Takes the dictionary, splits and weight of `dataset`; a null data set gives an empty
  /// dictionary.
  explicit TARN_DataSource(std::shared_ptr<const Dataset> dataset);

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
