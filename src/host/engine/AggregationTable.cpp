// AggregationTable.cpp - the engine's table: cubes, axis cubes, metadata and the data pass
#include "host/engine/AggregationTable.h"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "aggregator/CellKey.h"
#include "host/QuiltAssert.h"
#include "host/data/Dataset.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/TARN_InputCaseIterator.h"
#include "host/data/TARN_Variable.h"
#include "host/engine/AggregationCube.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/CaseBlock.h"
#include "host/engine/CellStatistics.h"
#include "host/engine/CubeAggregator.h"
#include "host/engine/StatValues.h"
#include "host/engine/TableDimension.h"
#include "host/engine/TableMetadata.h"
#include "host/engine/WeightMode.h"

namespace {

// Cases gathered before the dimensions and cubes read them: large enough that the loops
// over a block dominate, small enough that the block's scratch stays in the cache.
constexpr std::size_t kBlockCapacity = 1024;

}  // namespace

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

  // How cases are read, settled at the first case. Directly: the iterator is a data set
  // reader whose block holds every variable the table reads, so the table keeps the rows
  // of the block's cases and reads its columns in blocks (flushed before the iterator
  // replaces the block). Case by case: any other iterator, whose pointers hold only until
  // its next case.
  enum ReadMode { kReadUndecided, kReadDirect, kReadCaseByCase };
  ReadMode _readMode = kReadUndecided;
  ProcDSIterator* _reader = nullptr;
  std::shared_ptr<ProcDSIterator::BlockReader> _blockReader;  // what the iterator knows of the table
  std::size_t _boundGeneration = 0;   // the iterator's block that _columns point into
  std::vector<int> _readIndices;      // the dictionary indices the table reads
  std::vector<const OBS*> _columns;   // by dictionary index
  std::vector<std::size_t> _strides;  // cells per case by dictionary index; 0 case by case
  std::vector<std::size_t> _rows;     // the cases waiting for the next block
  std::vector<double> _weights;
  std::vector<double> _scaleValues;  // scale slot s of case k at [s * block size + k]
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
    // A data set reader reads, from a file, only the variables its tables name.
    _reader = dynamic_cast<ProcDSIterator*>(iterator);
    if (_reader != nullptr) {
      _blockReader = std::make_shared<ProcDSIterator::BlockReader>();
      _blockReader->variables = [this] { return ReadIndices(); };
      _blockReader->flush = [this] { Flush(); };
      _reader->AddBlockReader(_blockReader);
    }
  }

  // The dictionary indices the table reads: the weight, the scale variables and the
  // variables of the dimensions, ascending.
  std::vector<int> ReadIndices() {
    std::vector<int> indices;
    if (_mode != kWeightNone) indices.push_back(_weightIndex);
    for (int s = 0; s < _metadata.NumberOfScaleVariables(); ++s) {
      indices.push_back(_metadata.GetCaseReaderVarIndex(s));
    }
    for (int i = 0; i < _metadata.NumberOfDimensions(); ++i) {
      for (int index : _metadata.GetDimension(i)->GetSourceVarIndices()) indices.push_back(index);
    }
    std::sort(indices.begin(), indices.end());
    indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
    return indices;
  }

  // Orders a dimension's categories by a statistic of the first sub-table cube that holds
  // the dimension, the variable carrying the statistic where one was named, and the
  // statistic itself. Each category is read with every other position at its total: its
  // margin. Without such a cube the categories keep their order.
  void SortDimension(TableDimension& dimension, const AggregationStatistic& statistic) {
    const bool categorical = statistic.GetVarIndex() < 0;
    for (CubeAggregator* aggregator : _subTableAggregators) {
      const int length = aggregator->GetKeyLength();
      int position = -1;
      bool carrier = !dimension.HasSortCarrier();
      for (int p = 0; p < length; ++p) {
        TableDimension* held = aggregator->GetDimension(p);
        if (held == &dimension && position < 0) position = p;
        if (held != &dimension && dimension.IsSortCarriedBy(held)) carrier = true;
      }
      if (position < 0 || !carrier) continue;
      if (aggregator->GetCellStats()->GetIndex(statistic, categorical) < 0 &&
          aggregator->GetTotalStats()->GetIndex(statistic, categorical) < 0) {
        continue;
      }
      dimension.SortByStatistic([&](int encoding) {
        CellKey key(length);
        key[position] = encoding;
        const StatValues* values = aggregator->GetStatValuesByKey(key);
        if (values == nullptr) return TARN_SystemMissing();
        // A cell at the total of the carrying variable follows the total list.
        const CellStatistics* list =
            values->IsTotalStats() ? aggregator->GetTotalStats() : aggregator->GetCellStats();
        const int index = list->GetIndex(statistic, categorical);
        return index < 0 ? TARN_SystemMissing() : values->GetStatValue(index).GetValue1();
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
    _wired = true;
  }

  // Chooses the read mode on the first case: directly from the iterator's blocks when it
  // is a data set reader whose block holds every variable the table reads.
  void DecideReadMode() {
    _readIndices = ReadIndices();
    const std::size_t columns = _readIndices.empty() ? 0 : static_cast<std::size_t>(_readIndices.back()) + 1;
    _columns.assign(columns, nullptr);
    _strides.assign(columns, 0);
    const Dataset* dataset = _source != nullptr ? _source->GetDataset().get() : nullptr;
    bool direct = _reader != nullptr && dataset != nullptr;
    for (int index : _readIndices) {
      direct = direct && index >= 0 && index < dataset->GetVariableCount() && _reader->GetBlockColumn(index) != nullptr;
    }
    if (direct) {
      for (int index : _readIndices) {
        _strides[static_cast<unsigned>(index)] = static_cast<std::size_t>(dataset->GetCellsPerCase(index));
      }
      BindBlock();
      _rows.reserve(kBlockCapacity);
    }
    _readMode = direct ? kReadDirect : kReadCaseByCase;
  }

  // Points the columns into the iterator's current block; the rows of the previous one
  // were flushed before it was replaced.
  void BindBlock() {
    for (int index : _readIndices) _columns[static_cast<unsigned>(index)] = _reader->GetBlockColumn(index);
    _boundGeneration = _reader->GetBlockGeneration();
  }

  // Reads the waiting cases into every dimension and cube. Cases of a missing, zero or
  // negative weight leave the block first: they count nowhere.
  void Flush() {
    if (_rows.empty()) return;
    CaseBlock block;
    block._rows = _rows.data();
    block._columns = _columns.data();
    block._strides = _strides.data();
    std::size_t size = _rows.size();
    _weights.resize(size);
    if (_mode != kWeightNone) {
      std::size_t kept = 0;
      for (std::size_t k = 0; k < size; ++k) {
        const double weight = block.Cells(_weightIndex, k)->number;
        if (weight == TARN_SystemMissing() || !(weight > 0.0) || !std::isfinite(weight)) continue;
        _rows[kept] = _rows[k];
        _weights[kept] = weight;
        ++kept;
      }
      size = kept;
    } else {
      std::fill(_weights.begin(), _weights.end(), 1.0);
    }
    block._size = size;
    block._weights = _weights.data();

    const int scales = _metadata.NumberOfScaleVariables();
    _scaleValues.resize(static_cast<std::size_t>(scales) * size);
    _scaleValid.resize(static_cast<std::size_t>(scales) * size);
    std::vector<double>& validCounts = _metadata.ValidCounts();
    for (int s = 0; s < scales; ++s) {
      const int index = _metadata.GetCaseReaderVarIndex(s);
      const TARN_Variable* variable = _source->GetVariable(index);
      double* values = _scaleValues.data() + static_cast<std::size_t>(s) * size;
      char* valid = _scaleValid.data() + static_cast<std::size_t>(s) * size;
      for (std::size_t k = 0; k < size; ++k) {
        const OBS* cell = block.Cells(index, k);
        values[k] = cell->number;
        valid[k] =
            cell->number != TARN_SystemMissing() && (variable == nullptr || !variable->IsMissing(cell));
      }
    }
    if (!_pairwise && scales > 1) {
      // Listwise: a case is valid for a scale variable only when it is valid for all.
      for (std::size_t k = 0; k < size; ++k) {
        bool all = true;
        for (int s = 0; s < scales && all; ++s)
          all = _scaleValid[static_cast<std::size_t>(s) * size + k] != 0;
        if (all) continue;
        for (int s = 0; s < scales; ++s) _scaleValid[static_cast<std::size_t>(s) * size + k] = 0;
      }
    }
    for (int s = 0; s < scales; ++s) {
      const char* valid = _scaleValid.data() + static_cast<std::size_t>(s) * size;
      double sum = 0.0;
      for (std::size_t k = 0; k < size; ++k) sum += valid[k] ? _weights[k] : 0.0;
      validCounts[static_cast<unsigned>(s)] += sum;
    }
    block._scaleValues = _scaleValues.data();
    block._scaleValid = _scaleValid.data();
    block._scaleStride = size;

    if (size > 0) {
      for (int i = 0; i < _metadata.NumberOfDimensions(); ++i) _metadata.GetDimension(i)->MapBlock(block);
      for (CubeAggregator* aggregator : _allAggregators) aggregator->AddBlock(block);
    }
    _rows.clear();
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
  // The common case first: the declarations were wired and the mode chosen on case one.
  if (d._readMode == Data::kReadDirect) {
    if (d._reader->GetBlockGeneration() != d._boundGeneration) d.BindBlock();
    d._rows.push_back(d._reader->GetBlockRow());
    if (d._rows.size() == kBlockCapacity) d.Flush();
    return;
  }
  d.Wire();
  if (d._readMode == Data::kReadUndecided) {
    d.DecideReadMode();
    if (d._readMode == Data::kReadDirect) {
      d._rows.push_back(d._reader->GetBlockRow());
      return;
    }
  }
  for (int index : d._readIndices) {
    d._columns[static_cast<unsigned>(index)] = d._iterator->GetObsPointer(static_cast<unsigned>(index));
  }
  d._rows.assign(1, 0);
  d.Flush();
}

void AggregationTable::CompleteCases() {
  _data->Wire();
  _data->Flush();
  for (CubeAggregator* aggregator : _data->_allAggregators) aggregator->Complete();
  for (int i = 0; i < _data->_metadata.NumberOfDimensions(); ++i) {
    TableDimension* dimension = _data->_metadata.GetDimension(i);
    dimension->CompleteCategories();
    const AggregationStatistic* statistic = dimension->GetSortStatistic();
    if (statistic != nullptr) _data->SortDimension(*dimension, *statistic);
  }
}

void AggregationTable::ResetAggregator() {
  // Cases of a group that was never completed are dropped with it.
  _data->_rows.clear();
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
  _data->Flush();
  for (const auto& cube : _data->_cubes) {
    const CubeAggregator* aggregator = cube->GetCubeAggregator();
    if (aggregator != nullptr && !aggregator->IsCubeEmpty()) return false;
  }
  return true;
}

std::vector<int> AggregationTable::GetOverflowVarIndices() const {
  std::vector<int> indices;
  for (const auto& cube : _data->_cubes) {
    const CubeAggregator* aggregator = cube->GetCubeAggregator();
    if (aggregator == nullptr) continue;
    for (int index : aggregator->GetOverflowVarIndices()) {
      if (std::find(indices.begin(), indices.end(), index) == indices.end()) indices.push_back(index);
    }
  }
  return indices;
}

bool AggregationTable::HasEmptyCubes() const {
  _data->Flush();
  for (const auto& cube : _data->_cubes) {
    const CubeAggregator* aggregator = cube->GetCubeAggregator();
    if (aggregator == nullptr || aggregator->IsCubeEmpty()) return true;
  }
  return false;
}

void AggregationTable::PrintDataDbg() const {
  _data->Flush();
  const std::size_t cubes = _data->_cubes.size();
  std::cerr << "aggregation table: " << cubes << " sub-table cubes, " << _data->_axisOwned.size()
            << " axis cubes\n";
  for (std::size_t i = 0; i < cubes; ++i) {
    const CubeAggregator* aggregator = _data->_cubes[i]->GetCubeAggregator();
    std::cerr << "sub-table " << i + 1 << ' ';
    if (aggregator == nullptr) {
      std::cerr << "cube: no aggregator yet\n";
    } else {
      std::cerr << aggregator->DebugText();
    }
  }
}
