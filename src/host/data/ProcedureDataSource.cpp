// ProcedureDataSource.cpp - attaches a run to the active data set and makes its iterator
#include "host/data/ProcedureDataSource.h"

#include <utility>

#include "host/data/ActiveDataSet.h"
#include "host/data/ProcDSIterator.h"

ProcedureDataSource::ProcedureDataSource() : TARN_DataSource(ActiveDataSet::Get()) {}

ProcedureDataSource::ProcedureDataSource(std::shared_ptr<const Dataset> dataset)
    : TARN_DataSource(std::move(dataset)) {}

ProcedureDataSource::~ProcedureDataSource() = default;

bool ProcedureDataSource::FatalError() const {
  return !GetDataset();
}

TARN_InputCaseIterator* ProcedureDataSource::MakeIterator(OBS* /*buffer*/) {
  if (FatalError()) return nullptr;
  return new ProcDSIterator(GetDataset());
}
