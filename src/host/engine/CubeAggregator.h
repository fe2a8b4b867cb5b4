// CubeAggregator.h - the accumulated cells of one cube and the statistics read from them
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/engine/WeightMode.h"

struct CaseBlock;

class AggregationCategory;
class AggregationStatistic;
class CellKey;
struct CellMoments;
class CellStatistics;
class StatValues;
class TableDimension;
class TableMetadata;

/// The store of one cube. Cases go in a block at a time through AddBlock; after Complete
/// every query answers. Every cell keeps the weighted and unweighted counts of the COUNT,
/// VALID and TOTAL populations, the responses, and per scale variable its moments,
/// extremes and (when a percentile or mode is asked) its values. While cases arrive a
/// single variable's position holds the case's own category only; a set's position is
/// expanded per case into its categories and its total, so the total counts each case
/// once. Complete merges the single variables' totals and subtotals from those cells.
class CubeAggregator {
 public:
  /// `positions` holds the DimensionPosition of each key position, `scaleVarIndices`
  /// the scale variables the cube reads (empty for a cube of category statistics).
  CubeAggregator(std::vector<TableDimension*> dimensions, std::vector<int> positions,
                 const TableMetadata* metadata, WeightMode weightMode);
  ~CubeAggregator();
  CubeAggregator(const CubeAggregator&) = delete;
  CubeAggregator& operator=(const CubeAggregator&) = delete;

  int GetKeyLength() const;
  bool IsCubeEmpty() const;
  /// Total weight of the cell's cases (`weighted`), their number, or with `squared` the
  /// total of squared weights. 0 for an empty cell.
  double GetCount(const CellKey& key, bool weighted, bool squared) const;
  /// The moment record of a scale variable: weighted or unweighted; -1 when the cube does
  /// not read that variable.
  int GetMeanVarIndex(int statVarIndex, bool weighted) const;
  /// The moments of the valid cases of the record's variable in the cell; null for a cell
  /// without valid cases. Owned by the aggregator.
  const CellMoments* GetCountMeanVariance(int record, const CellKey& key) const;
  /// The record's count in the cell, or null.
  const double* GetValuePtr(int record, const CellKey& key) const;
  /// Cells by a vector of categories, one per position. `carriedIndex` is -1, or the
  /// position of a category carried from another dimension: it may be a category of a
  /// sibling variable sharing the header place, and is read as this position's own
  /// category of the same value and label; a cell of a value this variable lacks is empty.
  /// 0 when the cell holds no case, else 1.
  int GetCellStatus(const std::vector<const AggregationCategory*>& categories, int carriedIndex) const;
  /// The values of a cell, or null when it holds nothing. Owned by the aggregator and
  /// valid until ResetAggregator.
  StatValues* GetStatValues(const std::vector<const AggregationCategory*>& categories,
                            int carriedIndex) const;
  const CellStatistics* GetCellStats() const;
  const CellStatistics* GetTotalStats() const;
  int GetTotalStatsDimIndex() const;

  // Engine side.
  /// `statPosition` is the key position of the variable carrying the statistics, -1 for
  /// scale statistics; `totalList` may be empty.
  void DeclareStatistics(const std::vector<AggregationStatistic>& cellList,
                         const std::vector<AggregationStatistic>& totalList, int statPosition);
  void SetCILevel(double level);
  /// The table's sub-table aggregators, for bases that reach across sub-tables.
  void SetSiblings(const std::vector<CubeAggregator*>* siblings);
  /// Adds every case of the block; its dimensions have mapped it already.
  void AddBlock(const CaseBlock& block);
  /// Closes the group: builds the total and subtotal cells of single-variable positions.
  void Complete();
  void Reset();
  /// Dictionary indices of the scale variables whose sum or moments went beyond the range
  /// of doubles in some cell (such statistics show as missing); known after Complete.
  const std::vector<int>& GetOverflowVarIndices() const;
  int GetPosition(int i) const;
  TableDimension* GetDimension(int i) const;
  /// The cell values by integer key, for tests and the debug dump; null for an empty cell.
  StatValues* GetStatValuesByKey(const CellKey& key) const;
  std::string DebugText() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
