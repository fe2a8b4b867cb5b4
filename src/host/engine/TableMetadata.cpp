// TableMetadata.cpp - the dimensions and scale variables of one table
#include "host/engine/TableMetadata.h"

#include "host/QuiltAssert.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/TableDimension.h"

struct TableMetadata::Data {
  std::vector<std::unique_ptr<TableDimension>> _dimensions;
  std::vector<int> _scaleVarIndices;
  std::vector<double> _validCounts;
  bool _listwise = false;
};

TableMetadata::TableMetadata() : _data(std::make_unique<Data>()) {}
TableMetadata::~TableMetadata() = default;

int TableMetadata::NumberOfDimensions() const {
  return static_cast<int>(_data->_dimensions.size());
}

TableDimension* TableMetadata::GetDimension(int i) const {
  QUILT_ASSERT(i >= 0 && i < NumberOfDimensions(), "dimension index out of range");
  return _data->_dimensions[static_cast<unsigned>(i)].get();
}

bool TableMetadata::GetListwise() const {
  return _data->_listwise;
}
const std::vector<double>& TableMetadata::GetValidCount() const {
  return _data->_validCounts;
}

int TableMetadata::GetCaseReaderVarIndex(int i) const {
  QUILT_ASSERT(i >= 0 && i < NumberOfScaleVariables(), "scale slot out of range");
  return _data->_scaleVarIndices[static_cast<unsigned>(i)];
}

int TableMetadata::NumberOfScaleVariables() const {
  return static_cast<int>(_data->_scaleVarIndices.size());
}

void TableMetadata::ClearDeep() {
  for (auto& dimension : _data->_dimensions) dimension->GetVariable()->AttachDimension(nullptr);
  _data->_dimensions.clear();
}

TableDimension* TableMetadata::DimensionFor(AggregationVariable* variable, const TARN_DataSource* source) {
  QUILT_ASSERT(variable != nullptr, "a cube position needs a variable");
  if (variable->GetTableDimension() != nullptr) return variable->GetTableDimension();
  _data->_dimensions.push_back(std::make_unique<TableDimension>(variable, source));
  variable->AttachDimension(_data->_dimensions.back().get());
  return _data->_dimensions.back().get();
}

void TableMetadata::SetListwise(bool flag) {
  _data->_listwise = flag;
}

int TableMetadata::ScaleSlotFor(int varIndex) {
  for (std::size_t i = 0; i < _data->_scaleVarIndices.size(); ++i) {
    if (_data->_scaleVarIndices[i] == varIndex) return static_cast<int>(i);
  }
  _data->_scaleVarIndices.push_back(varIndex);
  _data->_validCounts.push_back(0.0);
  return static_cast<int>(_data->_scaleVarIndices.size() - 1);
}

std::vector<double>& TableMetadata::ValidCounts() {
  return _data->_validCounts;
}
