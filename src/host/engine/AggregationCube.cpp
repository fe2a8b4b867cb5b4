// AggregationCube.cpp - the declaration of one cube
#include "host/engine/AggregationCube.h"

#include "host/QuiltAssert.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/CubeAggregator.h"
#include "host/engine/TableDimension.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/engine/TableMetadata.h"

struct AggregationCube::Data {
  TableMetadata* _metadata = nullptr;
  const TARN_DataSource* _source = nullptr;
  WeightMode _mode = kWeightNone;
  std::vector<TableDimension*> _dimensions;
  std::vector<int> _positions;
  std::unique_ptr<CubeAggregator> _aggregator;
  double _ciLevel = 95.0;
  bool _statisticsDeclared = false;

  int PositionOf(AggregationVariable* variable) const {
    QUILT_ASSERT(variable != nullptr, "category statistics need the variable carrying them");
    for (std::size_t i = 0; i < _dimensions.size(); ++i) {
      if (_dimensions[i]->GetVariable() == variable &&
          _positions[i] != TableEncryptionCodes::kDimensionExtra) {
        return static_cast<int>(i);
      }
    }
    QUILT_ASSERT(false, "the variable carrying the statistics is not in the cube");
    return -1;
  }

  void Declare(const std::vector<AggregationStatistic>& list,
               const std::vector<AggregationStatistic>& totalList, int statPosition) {
    QUILT_ASSERT(_aggregator != nullptr, "statistics come after CreateCubeAggregator");
    QUILT_ASSERT(!_statisticsDeclared, "a cube takes one list of statistics");
    _aggregator->DeclareStatistics(list, totalList, statPosition);
    _statisticsDeclared = true;
  }
};

AggregationCube::AggregationCube(TableMetadata* metadata, const TARN_DataSource* source, WeightMode mode)
    : _data(std::make_unique<Data>()) {
  _data->_metadata = metadata;
  _data->_source = source;
  _data->_mode = mode;
}

AggregationCube::~AggregationCube() = default;

void AggregationCube::AddCategoricalVariable(AggregationVariable* variable, int position) {
  QUILT_ASSERT(_data->_aggregator == nullptr, "variables come before CreateCubeAggregator");
  QUILT_ASSERT(
      position >= TableEncryptionCodes::kDimensionRow && position <= TableEncryptionCodes::kDimensionExtra,
      "unknown dimension position");
  _data->_dimensions.push_back(_data->_metadata->DimensionFor(variable, _data->_source));
  _data->_positions.push_back(position);
}

CubeAggregator* AggregationCube::CreateCubeAggregator() {
  QUILT_ASSERT(_data->_aggregator == nullptr, "a cube has one aggregator");
  _data->_aggregator =
      std::make_unique<CubeAggregator>(_data->_dimensions, _data->_positions, _data->_metadata, _data->_mode);
  _data->_aggregator->SetCILevel(_data->_ciLevel);
  return _data->_aggregator.get();
}

void AggregationCube::SetCILevel(double level) {
  _data->_ciLevel = level;
  if (_data->_aggregator != nullptr) _data->_aggregator->SetCILevel(level);
}

void AggregationCube::AddScaleStatistics(const std::vector<AggregationStatistic>& list) {
  for (const AggregationStatistic& statistic : list) {
    QUILT_ASSERT(statistic.GetVarIndex() >= 0, "a scale statistic needs its scale variable");
  }
  _data->Declare(list, {}, -1);
}

void AggregationCube::AddCategoryStatistics(const std::vector<AggregationStatistic>& list,
                                            AggregationVariable* computationalVariable) {
  _data->Declare(list, {}, _data->PositionOf(computationalVariable));
}

void AggregationCube::AddCategoryAndTotalStatistics(const std::vector<AggregationStatistic>& list,
                                                    AggregationVariable* variable,
                                                    const std::vector<AggregationStatistic>& totalList) {
  _data->Declare(list, totalList, _data->PositionOf(variable));
}

CubeAggregator* AggregationCube::GetCubeAggregator() const {
  return _data->_aggregator.get();
}
