// AggregationTable.cpp - the engine's table: cubes, axis cubes, metadata and the data pass
#include "host/engine/AggregationTable.h"

#include <cmath>
#include <iostream>

#include "aggregator/CellKey.h"
#include "host/QuiltAssert.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/TARN_InputCaseIterator.h"
#include "host/data/TARN_Variable.h"
#include "host/engine/AggregationCube.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/CaseContext.h"
#include "host/engine/CellStatistics.h"
#include "host/engine/CubeAggregator.h"
#include "host/engine/StatValues.h"
#include "host/engine/TableDimension.h"
#include "host/engine/TableMetadata.h"

struct AggregationTable::Data {
  TARN_InputCaseIterator* _iterator = nullptr;
  std::unique_ptr<ProcedureDataSource> _ownSource;
  const TARN_DataSource* _source = nullptr;
  WeightMode _mode = kWeightNone;
  int _weightIndex = -1;
  bool _pairwise = true;
  int _cLabelOption = 0;
  bool _pairWiseTest = false;
  TableMetadata _metadata;
  std::vector<std::unique_ptr<AggregationCube>> _cubes;
  // By dimension position, by sub-table slot, by nesting level.
  std::vector<std::vector<std::vector<AggregationCube*>>> _axisCubes{4};
  std::vector<std::unique_ptr<AggregationCube>> _axisOwned;
  std::vector<CubeAggregator*> _subTableAggregators;  // siblings for cross sub-table bases
  std::vector<CubeAggregator*> _allAggregators;
  bool _wired = false;
  std::vector<double> _scaleValues;
  std::vector<char> _scaleValid;

  void Init(TARN_InputCaseIterator* iterator, const TARN_DataSource* source, bool weighted,
            bool pairwiseMissing, int baseWeightIndex) {
    QUILT_ASSERT(iterator != nullptr, "the table needs the iterator of the data pass");
    _iterator = iterator;
    _source = source;
    _pairwise = pairwiseMissing;
    _metadata.SetListwise(!pairwiseMissing);
    if (baseWeightIndex >= 0) {
      _mode = kWeightBase;
      _weightIndex = baseWeightIndex;
    } else if (weighted && source != nullptr && source->GetWeightVarIndex() >= 0) {
      _mode = kWeightFrequency;
      _weightIndex = source->GetWeightVarIndex();
    }
  }

  // Orders a dimension's categories by a statistic read in the first sub-table cube that
  // holds both, with every other position at its total.
  void SortDimension(TableDimension& dimension, const AggregationStatistic& statistic) {
    for (CubeAggregator* aggregator : _subTableAggregators) {
      const int length = aggregator->GetKeyLength();
      int position = -1;
      for (int p = 0; p < length && position < 0; ++p) {
        if (aggregator->GetDimension(p) == &dimension) position = p;
      }
      if (position < 0) continue;
      const int index = aggregator->GetCellStats()->GetIndex(statistic, statistic.GetVarIndex() < 0);
      if (index < 0) continue;
      dimension.SortByStatistic([&](int encoding) {
        CellKey key(length);
        key[position] = encoding;
        const StatValues* values = aggregator->GetStatValuesByKey(key);
        return values == nullptr ? TARN_SystemMissing() : values->GetStatValue(index).GetValue1();
      });
      return;
    }
  }

  // Ties every aggregator to its siblings once the declarations are complete.
  void Wire() {
    if (_wired) return;
    _subTableAggregators.clear();
    _allAggregators.clear();
    for (const auto& cube : _cubes) {
      CubeAggregator* aggregator = cube->GetCubeAggregator();
      QUILT_ASSERT(aggregator != nullptr, "a cube was declared without CreateCubeAggregator");
      _subTableAggregators.push_back(aggregator);
    }
    for (CubeAggregator* aggregator : _subTableAggregators) {
      aggregator->SetSiblings(&_subTableAggregators);
      _allAggregators.push_back(aggregator);
    }
    for (const auto& cube : _axisOwned) {
      CubeAggregator* aggregator = cube->GetCubeAggregator();
      QUILT_ASSERT(aggregator != nullptr, "an axis cube was declared without its aggregator");
      _allAggregators.push_back(aggregator);
    }
    const int scales = _metadata.NumberOfScaleVariables();
    _scaleValues.assign(static_cast<std::size_t>(scales), 0.0);
    _scaleValid.assign(static_cast<std::size_t>(scales), 0);
    _wired = true;
  }
};

AggregationTable::AggregationTable(TARN_InputCaseIterator* iterator, bool weighted, bool pairwiseMissing,
                                   int baseWeightIndex)
    : _data(std::make_unique<Data>()) {
  _data->_ownSource = std::make_unique<ProcedureDataSource>();
  _data->Init(iterator, _data->_ownSource.get(), weighted, pairwiseMissing, baseWeightIndex);
}

AggregationTable::AggregationTable(TARN_InputCaseIterator* iterator, const TARN_DataSource* source,
                                   bool weighted, bool pairwiseMissing, int baseWeightIndex)
    : _data(std::make_unique<Data>()) {
  _data->Init(iterator, source, weighted, pairwiseMissing, baseWeightIndex);
}

AggregationTable::~AggregationTable() = default;

void AggregationTable::SetCLabelOption(int option) {
  _data->_cLabelOption = option;
}
int AggregationTable::GetCLabelOption() const {
  return _data->_cLabelOption;
}
void AggregationTable::SetPairWiseTest(bool flag) {
  _data->_pairWiseTest = flag;
}

AggregationCube* AggregationTable::CreateCube() {
  QUILT_ASSERT(!_data->_wired, "cubes are declared before the first case");
  _data->_cubes.push_back(std::make_unique<AggregationCube>(&_data->_metadata, _data->_source, _data->_mode));
  return _data->_cubes.back().get();
}

std::vector<AggregationCube*> AggregationTable::CreateAxisCubes(int n, int cubeIndexInDim, int position) {
  QUILT_ASSERT(!_data->_wired, "axis cubes are declared before the first case");
  QUILT_ASSERT(position >= 0 && position < 4, "unknown dimension position");
  QUILT_ASSERT(n >= 0 && cubeIndexInDim >= 0, "axis cubes need a count and a slot");
  auto& slots = _data->_axisCubes[static_cast<unsigned>(position)];
  if (static_cast<int>(slots.size()) <= cubeIndexInDim) {
    slots.resize(static_cast<std::size_t>(cubeIndexInDim) + 1);
  }
  std::vector<AggregationCube*> made;
  for (int i = 0; i < n; ++i) {
    _data->_axisOwned.push_back(
        std::make_unique<AggregationCube>(&_data->_metadata, _data->_source, _data->_mode));
    made.push_back(_data->_axisOwned.back().get());
  }
  auto& slot = slots[static_cast<unsigned>(cubeIndexInDim)];
  slot.insert(slot.end(), made.begin(), made.end());
  return made;
}

void AggregationTable::AddNewCase() {
  Data& d = *_data;
  d.Wire();
  CaseContext context;
  if (d._mode != kWeightNone) {
    const double weight = *d._iterator->GetNumericValue(d._weightIndex);
    // A missing, zero or negative weight drops the case from every table.
    if (weight == TARN_SystemMissing() || !(weight > 0.0) || !std::isfinite(weight)) return;
    context._weight = weight;
  }
  TableMetadata& metadata = d._metadata;
  const int scales = metadata.NumberOfScaleVariables();
  bool allValid = true;
  for (int s = 0; s < scales; ++s) {
    const int index = metadata.GetCaseReaderVarIndex(s);
    const OBS* cell = d._iterator->GetObsPointer(static_cast<unsigned>(index));
    const TARN_Variable* variable = d._source->GetVariable(index);
    const bool valid =
        cell->number != TARN_SystemMissing() && (variable == nullptr || !variable->IsMissing(cell));
    d._scaleValues[static_cast<unsigned>(s)] = cell->number;
    d._scaleValid[static_cast<unsigned>(s)] = valid ? 1 : 0;
    allValid = allValid && valid;
  }
  if (!d._pairwise && !allValid) std::fill(d._scaleValid.begin(), d._scaleValid.end(), 0);
  std::vector<double>& validCounts = metadata.ValidCounts();
  for (int s = 0; s < scales; ++s) {
    if (d._scaleValid[static_cast<unsigned>(s)]) validCounts[static_cast<unsigned>(s)] += context._weight;
  }
  context._scaleValues = d._scaleValues.data();
  static_assert(sizeof(char) == sizeof(bool), "scale validity flags are read as bool");
  context._scaleValid = reinterpret_cast<const bool*>(d._scaleValid.data());
  for (int i = 0; i < metadata.NumberOfDimensions(); ++i) {
    metadata.GetDimension(i)->MapCase(*d._iterator);
  }
  for (CubeAggregator* aggregator : d._allAggregators) aggregator->AddCase(context);
}

void AggregationTable::CompleteCases() {
  _data->Wire();
  for (CubeAggregator* aggregator : _data->_allAggregators) aggregator->Complete();
  for (int i = 0; i < _data->_metadata.NumberOfDimensions(); ++i) {
    TableDimension* dimension = _data->_metadata.GetDimension(i);
    dimension->CompleteCategories();
    const AggregationStatistic* statistic = dimension->GetSortStatistic();
    if (statistic != nullptr) _data->SortDimension(*dimension, *statistic);
  }
}

void AggregationTable::ResetAggregator() {
  for (CubeAggregator* aggregator : _data->_allAggregators) aggregator->Reset();
  for (int i = 0; i < _data->_metadata.NumberOfDimensions(); ++i) {
    _data->_metadata.GetDimension(i)->Reset();
  }
  for (double& count : _data->_metadata.ValidCounts()) count = 0.0;
}

TableMetadata& AggregationTable::GetTableMetaData() {
  return _data->_metadata;
}

std::vector<CubeAggregator*> AggregationTable::GetCubeAggregators() const {
  std::vector<CubeAggregator*> result;
  for (const auto& cube : _data->_cubes) result.push_back(cube->GetCubeAggregator());
  return result;
}

std::vector<std::vector<CubeAggregator*>> AggregationTable::GetAxisCubeAggregators(int position) const {
  QUILT_ASSERT(position >= 0 && position < 4, "unknown dimension position");
  std::vector<std::vector<CubeAggregator*>> result;
  for (const auto& slot : _data->_axisCubes[static_cast<unsigned>(position)]) {
    std::vector<CubeAggregator*> levels;
    for (AggregationCube* cube : slot) levels.push_back(cube->GetCubeAggregator());
    result.push_back(std::move(levels));
  }
  return result;
}

bool AggregationTable::IsTableEmpty() const {
  for (const auto& cube : _data->_cubes) {
    const CubeAggregator* aggregator = cube->GetCubeAggregator();
    if (aggregator != nullptr && !aggregator->IsCubeEmpty()) return false;
  }
  return true;
}

bool AggregationTable::HasEmptyCubes() const {
  for (const auto& cube : _data->_cubes) {
    const CubeAggregator* aggregator = cube->GetCubeAggregator();
    if (aggregator == nullptr || aggregator->IsCubeEmpty()) return true;
  }
  return false;
}

void AggregationTable::PrintDataDbg() const {
  for (const auto& cube : _data->_cubes) {
    if (cube->GetCubeAggregator() != nullptr) std::cerr << cube->GetCubeAggregator()->DebugText();
  }
}
