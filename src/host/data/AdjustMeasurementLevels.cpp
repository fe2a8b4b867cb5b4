// AdjustMeasurementLevels.cpp - gives variables of unknown level the level their data suggest
#include "host/data/AdjustMeasurementLevels.h"

#include "host/data/Dataset.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/TARN_Variable.h"

void AdjustMeasurementLevels(ProcedureDataSource& dataSource) {
  const auto& dataset = dataSource.GetDataset();
  if (!dataset) return;
  for (int index = 0; index < dataSource.ColumnCount(); ++index) {
    TARN_Variable* variable = dataSource.GetVariable(index);
    if (variable->GetMeasurementLevel() != kMeasureUnknown) continue;
    variable->SetMeasurementLevel(dataset->GetSuggestedMeasurementLevel(index));
  }
}
