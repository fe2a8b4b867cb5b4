// Dataset.h - an in-memory data set: dictionary, column-wise case data, sets, weight and splits
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "host/data/Obs.h"
#include "host/data/ObsValue.h"
#include "host/data/TARN_Variable.h"
#include "host/data/VariableSet.h"

class CsvCaseSource;

/// How split groups are delivered.
enum SplitLayout : int {
  kSplitSeparate = 0,  // each group gets its own tables (the default)
  kSplitLayered = 1,   // groups are laid out together
};

/// A data set. The dictionary is an ordered list of variables; case data is held column by
/// column in 8-byte cells: a numeric variable has one cell per case, a string variable of
/// width w has ObsLength(w) cells per case, case after case. Or the cases stay in their
/// file (SetCaseSource): then the data set holds none, and each pass reads them in blocks.
/// Built by DatasetLoader (or by hand in tests), then installed read-only as the active
/// data set.
class Dataset {
 public:
  Dataset();
  ~Dataset();
  Dataset(Dataset&& other) noexcept;
  Dataset& operator=(Dataset&& other) noexcept;
  Dataset(const Dataset&) = delete;
  Dataset& operator=(const Dataset&) = delete;

  /// Appends a variable with an empty column sized for the current case count (system-
  /// missing numbers, blank strings). Returns its dictionary index. The name must be
  /// unique ignoring case (asserted: loaders check it first and report the user error).
  int AddVariable(const TARN_Variable& variable);
  int GetVariableCount() const;
  const TARN_Variable& GetVariable(int index) const;
  TARN_Variable& GetVariable(int index);
  /// Dictionary index of `name` ignoring letter case, or -1.
  int FindVariable(const std::string& name) const;

  std::size_t GetCaseCount() const;
  /// Number of cells per case of variable `index`: 1 for numbers, ObsLength(width) for strings.
  int GetCellsPerCase(int index) const;
  /// The cells of variable `index` in case `caseIndex`.
  const OBS* GetCells(int index, std::size_t caseIndex) const;
  /// The whole column of variable `index`: GetCaseCount() * GetCellsPerCase(index) cells.
  const std::vector<OBS>& GetColumn(int index) const;
  /// Replaces the column of variable `index`; its size must be caseCount * cells per case,
  /// where caseCount is the same for every column (SetCaseCount first).
  void SetColumn(int index, std::vector<OBS> cells);
  /// Replaces every column at once and sets the case count: `columns` holds one column per
  /// variable, each caseCount * cells per case long. The loader's way in, so that no
  /// column is ever held twice.
  void SetCaseData(std::vector<std::vector<OBS>> columns, std::size_t caseCount);
  /// Sets the case count, growing columns with system-missing numbers and blank strings,
  /// or cutting them.
  void SetCaseCount(std::size_t caseCount);
  /// Appends one case; `values` holds one value per variable, in dictionary order. A value
  /// of another type than its variable is asserted against. Meant for tests and tools.
  void AppendCase(const std::vector<ObsValue>& values);

  void AddVariableSet(const VariableSet& set);
  const std::vector<VariableSet>& GetVariableSets() const;

  /// The case weight variable's index, or -1 to have none.
  void SetWeightVariable(int index);
  int GetWeightVariable() const;
  void SetSplitVariables(const std::vector<int>& indices, SplitLayout layout);
  const std::vector<int>& GetSplitVariables() const;
  SplitLayout GetSplitLayout() const;
  /// When true, the iterator announces the first split group with a boundary read before
  /// the first case (a read the protocol allows). Off by default; tests of the run driver
  /// use it to exercise that path.
  void SetLeadingBoundary(bool leadingBoundary);
  bool HasLeadingBoundary() const;

  /// Makes the data set one whose cases are read from `source` at each pass; it then holds
  /// no case itself (GetCaseCount is 0).
  void SetCaseSource(std::shared_ptr<CsvCaseSource> source);
  /// The source of the cases; null when the data set holds them.
  const std::shared_ptr<CsvCaseSource>& GetCaseSource() const;
  /// Sets the level the data suggest for variable `index`, as a loader that read them
  /// found it (a data set without case data cannot work it out itself).
  void SetSuggestedMeasurementLevel(int index, int level);

  /// The level the data suggest for variable `index` (see AdjustMeasurementLevels),
  /// computed on first request and remembered.
  int GetSuggestedMeasurementLevel(int index) const;

  /// Bytes held by case data (for the load benchmark's memory check).
  std::size_t GetDataBytes() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
