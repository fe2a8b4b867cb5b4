// ProcDSIterator.cpp - case iteration over held or streamed blocks, with split-group boundary reads
#include "host/data/ProcDSIterator.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "host/QuiltAssert.h"
#include "host/data/CsvCaseSource.h"
#include "host/data/DataProgress.h"
#include "host/data/Dataset.h"
#include "host/data/FormatConversion.h"
#include "host/data/SplitGroupListener.h"
#include "host/data/TARN_ValueLabelMap.h"

namespace {

// Cases per block read from a file: large enough that the per-block work (the readers'
// flushes, the calls into the reader) vanishes, small enough to stay in the caches.
constexpr std::size_t kStreamBlockCases = 8192;

}  // namespace

struct ProcDSIterator::Data {
  std::shared_ptr<const Dataset> _dataset;
  std::shared_ptr<CsvCaseSource> _source;  // null when the data set holds its cases
  std::vector<std::weak_ptr<BlockReader>> _readers;
  std::vector<int> _requested;             // variables asked for besides the readers'
  bool _started = false;                   // the first NextCase has run
  bool _hasSplits = false;
  std::vector<int> _splits;
  // The current block.
  std::vector<std::vector<OBS>> _blockCells;  // streamed: the block's cells, by variable
  std::vector<const OBS*> _blockColumns;      // first cell of each variable's column; null when not read
  std::size_t _blockSize = 0;                 // cases in the block
  std::size_t _nextRow = 0;                   // row of the case the next delivering read gives
  std::size_t _currentRow = 0;                // row of the case the accessors give
  std::size_t _generation = 0;
  std::size_t _casesRead = 0;              // cases read from the file so far
  bool _sourceEnded = false;
  // The case the accessors give when it is no longer in the block (after a refill).
  bool _currentSaved = false;
  std::vector<OBS> _savedCells;            // laid out as _emptyCells
  std::vector<OBS> _lastSplitCells;        // split values of the last case delivered, in order
  std::size_t _delivered = 0;              // cases delivered so far
  std::size_t _caseIndex = 0;              // index of the current case
  bool _hasCurrent = false;                // false until a case has been delivered
  bool _splitGroupEnd = false;             // the latest read was a boundary or the end
  bool _boundaryGiven = false;             // the boundary before _nextRow has been reported
  bool _ended = false;                     // NextCase has returned 0
  std::vector<OBS> _emptyCells;            // what the accessors give before any case: per variable
  std::vector<std::size_t> _emptyOffsets;  // offset of each variable in _emptyCells
  std::vector<std::size_t> _cellsPerCase;  // cells of each variable in one case

  const OBS* Cells(int index, std::size_t row) const {
    const std::size_t i = static_cast<std::size_t>(index);
    return _blockColumns[i] + row * _cellsPerCase[i];
  }

  bool SameSplitValues(std::size_t row) const {
    std::size_t offset = 0;
    for (int index : _splits) {
      const std::size_t cells = _cellsPerCase[static_cast<std::size_t>(index)];
      if (std::memcmp(Cells(index, row), _lastSplitCells.data() + offset, cells * sizeof(OBS)) != 0) return false;
      offset += cells;
    }
    return true;
  }

  void KeepSplitValues(std::size_t row) {
    _lastSplitCells.clear();
    for (int index : _splits) {
      const OBS* cells = Cells(index, row);
      _lastSplitCells.insert(_lastSplitCells.end(), cells, cells + _cellsPerCase[static_cast<std::size_t>(index)]);
    }
  }

  // Starts the pass over a file, reading what the readers, the weight and the splits need.
  void Start() {
    _started = true;
    if (!_source) return;
    std::vector<int> selected = _requested;
    bool anyReader = false;
    for (const auto& weak : _readers) {
      const std::shared_ptr<BlockReader> reader = weak.lock();
      if (!reader || !reader->variables) continue;
      anyReader = true;
      const std::vector<int> variables = reader->variables();
      selected.insert(selected.end(), variables.begin(), variables.end());
    }
    if (anyReader) {
      if (_dataset->GetWeightVariable() >= 0) selected.push_back(_dataset->GetWeightVariable());
      selected.insert(selected.end(), _splits.begin(), _splits.end());
    } else {
      selected.clear();  // no table says what it reads: read every variable
    }
    std::sort(selected.begin(), selected.end());
    selected.erase(std::unique(selected.begin(), selected.end()), selected.end());
    _source->Start(selected, kStreamBlockCases);
  }

  // Replaces the block by the next one of the file. False at the end of the data.
  bool Refill() {
    if (!_source || _sourceEnded) return false;
    for (const auto& weak : _readers) {
      if (const std::shared_ptr<BlockReader> reader = weak.lock(); reader && reader->flush) reader->flush();
    }
    if (_hasCurrent && !_currentSaved) {
      for (std::size_t i = 0; i < _blockColumns.size(); ++i) {
        if (_blockColumns[i] == nullptr) continue;
        std::memcpy(_savedCells.data() + _emptyOffsets[i], Cells(static_cast<int>(i), _currentRow),
                    _cellsPerCase[i] * sizeof(OBS));
      }
      _currentSaved = true;
    }
    _blockSize = _source->ReadBlock(_blockCells);
    for (std::size_t i = 0; i < _blockColumns.size(); ++i) {
      _blockColumns[i] = _source->IsSelected(static_cast<int>(i)) ? _blockCells[i].data() : nullptr;
    }
    _nextRow = 0;
    ++_generation;
    _casesRead += _blockSize;
    if (_blockSize == 0) {
      _sourceEnded = true;
      DataProgress::Finish();
    } else {
      DataProgress::Report(_casesRead, _source->GetBytesRead());
    }
    return _blockSize > 0;
  }
};

namespace {

// How a reader names one split variable's value: its label, else the value as the
// variable prints it, without surrounding blanks.
std::string DescribeSplitValue(const Dataset& dataset, int index, const OBS* value) {
  const TARN_Variable& variable = dataset.GetVariable(index);
  TARN_ValueLabelMap labels(variable.GetValueLabels());
  if (const char* label = labels.GetLabel(value)) return label;
  if (variable.GetType() == 0) return FormatNumber(value->number, variable.GetFormat());
  std::string text(reinterpret_cast<const char*>(value), static_cast<std::size_t>(variable.GetType()));
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

}  // namespace

ProcDSIterator::ProcDSIterator(std::shared_ptr<const Dataset> dataset) : _data(std::make_unique<Data>()) {
  QUILT_ASSERT(dataset != nullptr, "an iterator reads a data set");
  Data& data = *_data;
  data._dataset = std::move(dataset);
  data._source = data._dataset->GetCaseSource();
  data._splits = data._dataset->GetSplitVariables();
  data._hasSplits = !data._splits.empty();
  // Before the first case (and for an empty data set) the accessors give system-missing
  // numbers and blank strings rather than pointing outside the data.
  const int variableCount = data._dataset->GetVariableCount();
  for (int index = 0; index < variableCount; ++index) {
    data._emptyOffsets.push_back(data._emptyCells.size());
    const int cells = data._dataset->GetCellsPerCase(index);
    data._cellsPerCase.push_back(static_cast<std::size_t>(cells));
    data._blockColumns.push_back(data._source ? nullptr : data._dataset->GetColumn(index).data());
    OBS empty{};
    if (data._dataset->GetVariable(index).GetType() == 0) {
      empty.number = TARN_SystemMissing();
    } else {
      std::memset(empty.bytes, ' ', sizeof empty.bytes);
    }
    data._emptyCells.insert(data._emptyCells.end(), static_cast<std::size_t>(cells), empty);
  }
  data._savedCells = data._emptyCells;
  if (!data._source) data._blockSize = data._dataset->GetCaseCount();
}

ProcDSIterator::~ProcDSIterator() {
  // A pass that ends early (an error, a table that cannot hold the data) stops reading.
  if (_data->_source) _data->_source->Stop();
}

int ProcDSIterator::DoNextCase() {
  Data& data = *_data;
  if (!data._started) data.Start();
  if (!data._ended && data._nextRow >= data._blockSize && !data.Refill()) data._ended = true;
  if (data._ended) {
    data._splitGroupEnd = true;
    return 0;
  }
  const Dataset& dataset = *data._dataset;
  if (data._hasSplits && !data._boundaryGiven) {
    const bool leading = data._delivered == 0 && dataset.HasLeadingBoundary();
    const bool between = data._delivered > 0 && !data.SameSplitValues(data._nextRow);
    if (leading || between) {
      data._boundaryGiven = true;
      data._splitGroupEnd = true;
      return 1;
    }
  }
  const bool firstOfGroup = data._delivered == 0 || data._boundaryGiven;
  data._boundaryGiven = false;
  data._splitGroupEnd = false;
  data._currentRow = data._nextRow++;
  data._currentSaved = false;
  data._caseIndex = data._delivered++;
  data._hasCurrent = true;
  if (!data._hasSplits) return 1;
  if (firstOfGroup) data.KeepSplitValues(data._currentRow);
  // Groups laid out together share their tables, so no single group may name them: only
  // groups delivered separately are announced.
  if (firstOfGroup && dataset.GetSplitLayout() == kSplitSeparate && SplitGroupListener::IsInstalled()) {
    SplitGroupPairs pairs;
    for (const int index : data._splits) {
      const TARN_Variable& variable = dataset.GetVariable(index);
      const char* label = variable.GetLabel();
      pairs.emplace_back(label != nullptr && *label != '\0' ? label : variable.GetName(),
                         DescribeSplitValue(dataset, index, GetObsPointer(static_cast<unsigned>(index))));
    }
    SplitGroupListener::Announce(pairs);
  }
  return 1;
}

const double* ProcDSIterator::GetNumericValue(int index) const {
  return &GetObsPointer(static_cast<unsigned>(index))->number;
}

const OBS* ProcDSIterator::GetObsPointer(unsigned index) const {
  const Data& data = *_data;
  QUILT_ASSERT(index < data._blockColumns.size(), "a case value of a dictionary variable");
  if (!data._hasCurrent) return &data._emptyCells[data._emptyOffsets[index]];
  if (data._currentSaved) return &data._savedCells[data._emptyOffsets[index]];
  if (data._blockColumns[index] == nullptr) return &data._emptyCells[data._emptyOffsets[index]];
  return data.Cells(static_cast<int>(index), data._currentRow);
}

bool ProcDSIterator::SplitGroupEnd() const {
  return _data->_splitGroupEnd;
}

std::size_t ProcDSIterator::GetCaseIndex() const {
  return _data->_caseIndex;
}

void ProcDSIterator::AddBlockReader(std::weak_ptr<BlockReader> reader) {
  // A file's pass reads only what was named before it started.
  QUILT_ASSERT(!_data->_started || !_data->_source, "block readers join before the first read of a file");
  _data->_readers.push_back(std::move(reader));
}

void ProcDSIterator::RequestVariable(int index) {
  QUILT_ASSERT(!_data->_started || !_data->_source, "variables are asked for before the first read of a file");
  _data->_requested.push_back(index);
}

const OBS* ProcDSIterator::GetBlockColumn(int index) const {
  const Data& data = *_data;
  if (index < 0 || static_cast<std::size_t>(index) >= data._blockColumns.size()) return nullptr;
  return data._blockColumns[static_cast<std::size_t>(index)];
}

std::size_t ProcDSIterator::GetBlockRow() const {
  return _data->_currentRow;
}

std::size_t ProcDSIterator::GetBlockGeneration() const {
  return _data->_generation;
}
