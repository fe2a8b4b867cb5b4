// Dataset.cpp - dictionary and column storage of an in-memory data set
#include "host/data/Dataset.h"

#include <cmath>
#include <cstring>
#include <utility>

#include "host/QuiltAssert.h"
#include "host/data/AdjustMeasurementLevels.h"
#include "host/data/CsvCaseSource.h"
#include "host/data/HostStrings.h"

struct Dataset::Data {
  std::vector<TARN_Variable> _variables;   // dictionary order
  std::vector<std::vector<OBS>> _columns;  // one per variable, case after case
  std::size_t _caseCount = 0;
  std::vector<VariableSet> _sets;  // definition order
  int _weightIndex = -1;           // -1: unweighted
  std::vector<int> _splitIndices;  // split variables in their order
  SplitLayout _splitLayout = kSplitSeparate;
  bool _leadingBoundary = false;
  mutable std::vector<int> _suggestedLevels;  // -1 until computed, per variable
  std::shared_ptr<CsvCaseSource> _caseSource;  // null when the cases are held here
};

namespace {

OBS EmptyCell(int type) {
  OBS cell{};
  if (type == 0) {
    cell.number = TARN_SystemMissing();
  } else {
    std::memset(cell.bytes, ' ', sizeof cell.bytes);
  }
  return cell;
}

int CellsFor(const TARN_Variable& variable) {
  return variable.GetType() == 0 ? 1 : ObsLength(variable.GetType());
}

// Nominal when every valid value is an integer and there are few distinct ones; the scan
// stops at the first value that decides against it.
int SuggestNumericLevel(const TARN_Variable& variable, const std::vector<OBS>& column) {
  double distinct[kMaximumNominalDistinctValues];
  int distinctCount = 0;
  for (const OBS& cell : column) {
    const double value = cell.number;
    if (value == TARN_SystemMissing() || variable.IsUserMissing(&cell)) continue;
    if (value != std::floor(value) || !std::isfinite(value)) return kMeasureScale;
    bool seen = false;
    for (int i = 0; i < distinctCount && !seen; ++i) seen = distinct[i] == value;
    if (seen) continue;
    if (distinctCount == kMaximumNominalDistinctValues) return kMeasureScale;
    distinct[distinctCount++] = value;
  }
  return kMeasureNominal;
}

}  // namespace

Dataset::Dataset() : _data(std::make_unique<Data>()) {}
Dataset::~Dataset() = default;
Dataset::Dataset(Dataset&& other) noexcept = default;
Dataset& Dataset::operator=(Dataset&& other) noexcept = default;

int Dataset::AddVariable(const TARN_Variable& variable) {
  QUILT_ASSERT(FindVariable(variable.GetName()) < 0, "variable names are unique in a data set");
  _data->_variables.push_back(variable);
  _data->_columns.emplace_back(_data->_caseCount * static_cast<std::size_t>(CellsFor(variable)),
                               EmptyCell(variable.GetType()));
  _data->_suggestedLevels.push_back(-1);
  return static_cast<int>(_data->_variables.size()) - 1;
}

int Dataset::GetVariableCount() const {
  return static_cast<int>(_data->_variables.size());
}

const TARN_Variable& Dataset::GetVariable(int index) const {
  QUILT_ASSERT(index >= 0 && index < GetVariableCount(), "a dictionary index inside the dictionary");
  return _data->_variables[static_cast<std::size_t>(index)];
}

TARN_Variable& Dataset::GetVariable(int index) {
  QUILT_ASSERT(index >= 0 && index < GetVariableCount(), "a dictionary index inside the dictionary");
  return _data->_variables[static_cast<std::size_t>(index)];
}

int Dataset::FindVariable(const std::string& name) const {
  for (std::size_t i = 0; i < _data->_variables.size(); ++i) {
    if (TARNMBstricmp_A(_data->_variables[i].GetName(), name.c_str()) == 0) return static_cast<int>(i);
  }
  return -1;
}

std::size_t Dataset::GetCaseCount() const {
  return _data->_caseCount;
}

int Dataset::GetCellsPerCase(int index) const {
  return CellsFor(GetVariable(index));
}

const OBS* Dataset::GetCells(int index, std::size_t caseIndex) const {
  return _data->_columns[static_cast<std::size_t>(index)].data() +
         caseIndex * static_cast<std::size_t>(GetCellsPerCase(index));
}

const std::vector<OBS>& Dataset::GetColumn(int index) const {
  QUILT_ASSERT(index >= 0 && index < GetVariableCount(), "a dictionary index inside the dictionary");
  return _data->_columns[static_cast<std::size_t>(index)];
}

void Dataset::SetColumn(int index, std::vector<OBS> cells) {
  QUILT_ASSERT(index >= 0 && index < GetVariableCount(), "a dictionary index inside the dictionary");
  QUILT_ASSERT(cells.size() == _data->_caseCount * static_cast<std::size_t>(GetCellsPerCase(index)),
               "a column holds every case of the data set");
  _data->_columns[static_cast<std::size_t>(index)] = std::move(cells);
  _data->_suggestedLevels[static_cast<std::size_t>(index)] = -1;
}

void Dataset::SetCaseData(std::vector<std::vector<OBS>> columns, std::size_t caseCount) {
  QUILT_ASSERT(columns.size() == _data->_variables.size(), "one column per variable");
  for (std::size_t i = 0; i < columns.size(); ++i) {
    QUILT_ASSERT(columns[i].size() == caseCount * static_cast<std::size_t>(CellsFor(_data->_variables[i])),
                 "a column holds every case of the data set");
    _data->_suggestedLevels[i] = -1;
  }
  _data->_columns = std::move(columns);
  _data->_caseCount = caseCount;
}

void Dataset::SetCaseCount(std::size_t caseCount) {
  for (std::size_t i = 0; i < _data->_columns.size(); ++i) {
    const TARN_Variable& variable = _data->_variables[i];
    _data->_columns[i].resize(caseCount * static_cast<std::size_t>(CellsFor(variable)),
                              EmptyCell(variable.GetType()));
    _data->_suggestedLevels[i] = -1;
  }
  _data->_caseCount = caseCount;
}

void Dataset::AppendCase(const std::vector<ObsValue>& values) {
  QUILT_ASSERT(values.size() == _data->_variables.size(), "a case has one value per variable");
  for (std::size_t i = 0; i < values.size(); ++i) {
    QUILT_ASSERT(values[i].Type() == _data->_variables[i].GetType(), "a case value has its variable's type");
    const int cells = CellsFor(_data->_variables[i]);
    _data->_columns[i].insert(_data->_columns[i].end(), values[i].Obs(), values[i].Obs() + cells);
    _data->_suggestedLevels[i] = -1;
  }
  ++_data->_caseCount;
}

void Dataset::AddVariableSet(const VariableSet& set) {
  _data->_sets.push_back(set);
}
const std::vector<VariableSet>& Dataset::GetVariableSets() const {
  return _data->_sets;
}

void Dataset::SetWeightVariable(int index) {
  QUILT_ASSERT(index >= -1 && index < GetVariableCount(), "a weight is a dictionary variable or none");
  QUILT_ASSERT(index < 0 || GetVariable(index).GetType() == 0, "a weight variable is numeric");
  _data->_weightIndex = index;
}

int Dataset::GetWeightVariable() const {
  return _data->_weightIndex;
}

void Dataset::SetSplitVariables(const std::vector<int>& indices, SplitLayout layout) {
  for (int index : indices) {
    QUILT_ASSERT(index >= 0 && index < GetVariableCount(), "a split variable is a dictionary variable");
  }
  _data->_splitIndices = indices;
  _data->_splitLayout = layout;
}

const std::vector<int>& Dataset::GetSplitVariables() const {
  return _data->_splitIndices;
}
SplitLayout Dataset::GetSplitLayout() const {
  return _data->_splitLayout;
}
void Dataset::SetLeadingBoundary(bool leadingBoundary) {
  _data->_leadingBoundary = leadingBoundary;
}
bool Dataset::HasLeadingBoundary() const {
  return _data->_leadingBoundary;
}

void Dataset::SetCaseSource(std::shared_ptr<CsvCaseSource> source) {
  _data->_caseSource = std::move(source);
}

const std::shared_ptr<CsvCaseSource>& Dataset::GetCaseSource() const {
  return _data->_caseSource;
}

void Dataset::SetSuggestedMeasurementLevel(int index, int level) {
  QUILT_ASSERT(index >= 0 && index < GetVariableCount(), "a dictionary index inside the dictionary");
  _data->_suggestedLevels[static_cast<std::size_t>(index)] = level;
}

int Dataset::GetSuggestedMeasurementLevel(int index) const {
  const TARN_Variable& variable = GetVariable(index);
  int& cached = _data->_suggestedLevels[static_cast<std::size_t>(index)];
  if (cached >= 0) return cached;
  if (variable.GetType() != 0 || variable.GetValueLabels() != nullptr) {
    cached = kMeasureNominal;
  } else if (_data->_caseSource) {
    // The loader settles every level it can; one it left open has no data to go by.
    cached = kMeasureScale;
  } else {
    cached = SuggestNumericLevel(variable, _data->_columns[static_cast<std::size_t>(index)]);
  }
  return cached;
}

std::size_t Dataset::GetDataBytes() const {
  std::size_t bytes = 0;
  for (const auto& column : _data->_columns) bytes += column.capacity() * sizeof(OBS);
  return bytes;
}
