// AggregationCube.h - the declaration of one cube: variables by position, and statistics
#pragma once

#include <memory>
#include <vector>

#include "host/engine/WeightMode.h"

class AggregationStatistic;
class AggregationVariable;
class CubeAggregator;
class TARN_DataSource;
class TableMetadata;

/// One sub-table (or axis) cube. Variables come first, in key order; then the aggregator;
/// then the statistics.
class AggregationCube {
 public:
  /// A cell key holds at most this many variables (16 bits each in 128): the parser refuses
  /// a table whose sub-tables would need more, before any case is read.
  static constexpr int kMaxVariables = 8;

  AggregationCube(TableMetadata* metadata, const TARN_DataSource* source, WeightMode mode);
  ~AggregationCube();
  AggregationCube(const AggregationCube&) = delete;
  AggregationCube& operator=(const AggregationCube&) = delete;

  /// Appends a variable or set at a DimensionPosition; the calls fix the key positions.
  void AddCategoricalVariable(AggregationVariable* variable, int position);
  CubeAggregator* CreateCubeAggregator();
  void SetCILevel(double level);
  void AddScaleStatistics(const std::vector<AggregationStatistic>& list);
  void AddCategoryStatistics(const std::vector<AggregationStatistic>& list,
                             AggregationVariable* computationalVariable);
  void AddCategoryAndTotalStatistics(const std::vector<AggregationStatistic>& list,
                                     AggregationVariable* variable,
                                     const std::vector<AggregationStatistic>& totalList);
  /// Null before CreateCubeAggregator.
  CubeAggregator* GetCubeAggregator() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
