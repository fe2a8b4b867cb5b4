// AggregationTable.h - the engine's table: cubes, axis cubes, metadata and the data pass
#pragma once

#include <memory>
#include <vector>

class AggregationCube;
class CubeAggregator;
class TARN_DataSource;
class TARN_InputCaseIterator;
class TableMetadata;

/// Serves one table expression. Cubes are declared first; then AddNewCase reads each case
/// of a split group into all cubes; CompleteCases fixes the categories; queries follow;
/// ResetAggregator starts the next group with the same declarations.
class AggregationTable {
 public:
  /// `iterator` is read on every AddNewCase and must outlive the table. The dictionary is
  /// that of the active data set.
  AggregationTable(TARN_InputCaseIterator* iterator, bool weighted, bool pairwiseMissing,
                   int baseWeightIndex);
  /// The same over a given data source (tests and tools); `source` must outlive the table.
  AggregationTable(TARN_InputCaseIterator* iterator, const TARN_DataSource* source, bool weighted,
                   bool pairwiseMissing, int baseWeightIndex);
  ~AggregationTable();
  AggregationTable(const AggregationTable&) = delete;
  AggregationTable& operator=(const AggregationTable&) = delete;

  void SetCLabelOption(int option);
  int GetCLabelOption() const;
  void SetPairWiseTest(bool flag);
  AggregationCube* CreateCube();
  std::vector<AggregationCube*> CreateAxisCubes(int n, int cubeIndexInDim, int position);
  void AddNewCase();
  void CompleteCases();
  void ResetAggregator();
  TableMetadata& GetTableMetaData();
  std::vector<CubeAggregator*> GetCubeAggregators() const;
  std::vector<std::vector<CubeAggregator*>> GetAxisCubeAggregators(int position) const;
  /// True when no cube received any case.
  bool IsTableEmpty() const;
  /// True when some cube received no case.
  bool HasEmptyCubes() const;
  /// Scale variables, by dictionary index, whose statistics overflowed in some cube.
  std::vector<int> GetOverflowVarIndices() const;
  void PrintDataDbg() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
