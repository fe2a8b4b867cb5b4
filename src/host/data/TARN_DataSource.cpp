// TARN_DataSource.cpp - the run's own copy of the dictionary, with lookup, splits and weight
#include "host/data/TARN_DataSource.h"

#include <utility>

#include "host/data/Dataset.h"
#include "host/data/HostStrings.h"
#include "host/data/TARN_Variable.h"

struct TARN_DataSource::Data {
  std::shared_ptr<const Dataset> _dataset;  // null when no data set was active
  std::vector<TARN_Variable> _variables;    // this run's dictionary; levels may be adjusted
};

TARN_DataSource::TARN_DataSource(std::shared_ptr<const Dataset> dataset) : _data(std::make_unique<Data>()) {
  _data->_dataset = std::move(dataset);
  if (!_data->_dataset) return;
  const int count = _data->_dataset->GetVariableCount();
  _data->_variables.reserve(static_cast<std::size_t>(count));
  for (int index = 0; index < count; ++index)
    _data->_variables.push_back(_data->_dataset->GetVariable(index));
}

TARN_DataSource::~TARN_DataSource() = default;

unsigned TARN_DataSource::SplitVariableCount() const {
  return _data->_dataset ? static_cast<unsigned>(_data->_dataset->GetSplitVariables().size()) : 0U;
}

int TARN_DataSource::SplitVariableIndex(unsigned i) const {
  if (i >= SplitVariableCount()) return -1;
  return _data->_dataset->GetSplitVariables()[i];
}

bool TARN_DataSource::SplitsSeparate() const {
  // Without split variables there is one group, and nothing is laid out separately: the
  // warnings and titles that name a split group must take their plain forms.
  return _data->_dataset && SplitVariableCount() > 0 && _data->_dataset->GetSplitLayout() == kSplitSeparate;
}

TARN_Variable* TARN_DataSource::GetVariable(int index) {
  if (index < 0 || index >= ColumnCount()) return nullptr;
  return &_data->_variables[static_cast<std::size_t>(index)];
}

const TARN_Variable* TARN_DataSource::GetVariable(int index) const {
  if (index < 0 || index >= ColumnCount()) return nullptr;
  return &_data->_variables[static_cast<std::size_t>(index)];
}

int TARN_DataSource::FindVarIndex(const char* name, int /*flags*/) const {
  if (name == nullptr || !_data->_dataset) return -1;
  return _data->_dataset->FindVariable(name);
}

int TARN_DataSource::ColumnCount() const {
  return static_cast<int>(_data->_variables.size());
}

int TARN_DataSource::GetWeightVarIndex() const {
  return _data->_dataset ? _data->_dataset->GetWeightVariable() : -1;
}

const std::shared_ptr<const Dataset>& TARN_DataSource::GetDataset() const {
  return _data->_dataset;
}
