// ProcDSIterator.cpp - case iteration with split-group boundary reads
#include "host/data/ProcDSIterator.h"

#include <cstring>
#include <utility>
#include <vector>

#include "host/QuiltAssert.h"
#include "host/data/Dataset.h"
#include "host/data/FormatConversion.h"
#include "host/data/SplitGroupListener.h"
#include "host/data/TARN_ValueLabelMap.h"

struct ProcDSIterator::Data {
  std::shared_ptr<const Dataset> _dataset;
  std::size_t _caseCount = 0;
  std::size_t _nextCase = 0;               // index of the case the next delivering read gives
  std::size_t _currentCase = 0;            // the case the accessors give
  bool _hasCurrent = false;                // false until a case has been delivered
  bool _splitGroupEnd = false;             // the latest read was a boundary or the end
  bool _boundaryGiven = false;             // the boundary before _nextCase has been reported
  bool _ended = false;                     // NextCase has returned 0
  std::vector<OBS> _emptyCells;            // what the accessors give before any case: per variable
  std::vector<std::size_t> _emptyOffsets;  // offset of each variable in _emptyCells
  std::vector<const OBS*> _columns;        // first cell of each variable's column
  std::vector<std::size_t> _cellsPerCase;  // cells of each variable in one case
};

namespace {

bool SameSplitValues(const Dataset& dataset, std::size_t left, std::size_t right) {
  for (int index : dataset.GetSplitVariables()) {
    const int cells = dataset.GetCellsPerCase(index);
    if (std::memcmp(dataset.GetCells(index, left), dataset.GetCells(index, right), cells * sizeof(OBS)) !=
        0) {
      return false;
    }
  }
  return true;
}

// How a reader names one split variable's value in case `caseIndex`: its label, else the
// value as the variable prints it, without surrounding blanks.
std::string DescribeSplitValue(const Dataset& dataset, int index, std::size_t caseIndex) {
  const TARN_Variable& variable = dataset.GetVariable(index);
  const OBS* value = dataset.GetCells(index, caseIndex);
  TARN_ValueLabelMap labels(variable.GetValueLabels());
  if (const char* label = labels.GetLabel(value)) return label;
  if (variable.GetType() == 0) return FormatNumber(value->number, variable.GetFormat());
  std::string text(reinterpret_cast<const char*>(value), static_cast<std::size_t>(variable.GetType()));
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

void AnnounceSplitGroup(const Dataset& dataset, std::size_t caseIndex) {
  SplitGroupPairs pairs;
  for (const int index : dataset.GetSplitVariables()) {
    const TARN_Variable& variable = dataset.GetVariable(index);
    const char* label = variable.GetLabel();
    pairs.emplace_back(label != nullptr && *label != '\0' ? label : variable.GetName(),
                       DescribeSplitValue(dataset, index, caseIndex));
  }
  SplitGroupListener::Announce(pairs);
}

}  // namespace

ProcDSIterator::ProcDSIterator(std::shared_ptr<const Dataset> dataset) : _data(std::make_unique<Data>()) {
  QUILT_ASSERT(dataset != nullptr, "an iterator reads a data set");
  _data->_dataset = std::move(dataset);
  _data->_caseCount = _data->_dataset->GetCaseCount();
  // Before the first case (and for an empty data set) the accessors give system-missing
  // numbers and blank strings rather than pointing outside the data.
  const int variableCount = _data->_dataset->GetVariableCount();
  for (int index = 0; index < variableCount; ++index) {
    _data->_emptyOffsets.push_back(_data->_emptyCells.size());
    const int cells = _data->_dataset->GetCellsPerCase(index);
    _data->_columns.push_back(_data->_dataset->GetColumn(index).data());
    _data->_cellsPerCase.push_back(static_cast<std::size_t>(cells));
    OBS empty{};
    if (_data->_dataset->GetVariable(index).GetType() == 0) {
      empty.number = TARN_SystemMissing();
    } else {
      std::memset(empty.bytes, ' ', sizeof empty.bytes);
    }
    _data->_emptyCells.insert(_data->_emptyCells.end(), static_cast<std::size_t>(cells), empty);
  }
}

ProcDSIterator::~ProcDSIterator() = default;

int ProcDSIterator::DoNextCase() {
  Data& data = *_data;
  if (data._ended || data._nextCase >= data._caseCount) {
    data._ended = true;
    data._splitGroupEnd = true;
    return 0;
  }
  const Dataset& dataset = *data._dataset;
  const bool hasSplits = !dataset.GetSplitVariables().empty();
  if (hasSplits && !data._boundaryGiven) {
    const bool leading = data._nextCase == 0 && dataset.HasLeadingBoundary();
    const bool between = data._nextCase > 0 && !SameSplitValues(dataset, data._nextCase - 1, data._nextCase);
    if (leading || between) {
      data._boundaryGiven = true;
      data._splitGroupEnd = true;
      return 1;
    }
  }
  const bool firstOfGroup = data._nextCase == 0 || data._boundaryGiven;
  data._boundaryGiven = false;
  data._splitGroupEnd = false;
  data._currentCase = data._nextCase++;
  data._hasCurrent = true;
  // Groups laid out together share their tables, so no single group may name them: only
  // groups delivered separately are announced.
  const bool separate = dataset.GetSplitLayout() == kSplitSeparate;
  if (hasSplits && separate && firstOfGroup && SplitGroupListener::IsInstalled()) {
    AnnounceSplitGroup(dataset, data._currentCase);
  }
  return 1;
}

const double* ProcDSIterator::GetNumericValue(int index) const {
  return &GetObsPointer(static_cast<unsigned>(index))->number;
}

const OBS* ProcDSIterator::GetObsPointer(unsigned index) const {
  const Data& data = *_data;
  QUILT_ASSERT(index < data._columns.size(), "a case value of a dictionary variable");
  if (!data._hasCurrent) return &data._emptyCells[data._emptyOffsets[index]];
  return data._columns[index] + data._currentCase * data._cellsPerCase[index];
}

bool ProcDSIterator::SplitGroupEnd() const {
  return _data->_splitGroupEnd;
}
std::size_t ProcDSIterator::GetCaseIndex() const {
  return _data->_currentCase;
}
