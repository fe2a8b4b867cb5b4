// TableDeliveryComparisons.cpp - hands a column proportions or column means test to its renderer, merged or
// on its own
#include <memory>

#include "host/output/BpPivotTable.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/TableSettings.h"
#include "tablerenderer/ColumnMeansTableRenderer.h"
#include "tablerenderer/ColumnProportionsTableRenderer.h"
#include "tablerenderer/TableAxis.h"
#include "tablerenderer/TableDeliveryData.h"

void TableDelivery::Data::RenderComparisonTest(QuiltTable* table, BpPivotTable& pivot,
                                               const std::vector<CubeAggregator*>& cubes,
                                               const std::vector<HeaderTreeNode*>& trees,
                                               const SigTestSettings& setting, bool& captionFree) {
  std::unique_ptr<ColumnTestTableRenderer> renderer;
  if (setting._type == TableEncryptionCodes::kSigTestProportions) {
    auto proportions =
        std::make_unique<ColumnProportionsTableRenderer>(_procedure, _heading, _dataSource, table);
    if (_controlPackage) proportions->showControlPackageTest();
    renderer = std::move(proportions);
  } else {
    renderer = std::make_unique<ColumnMeansTableRenderer>(_procedure, _heading, _dataSource, table);
  }

  // The column trees of all comparison tests are built for the main table once one of them
  // merges, so they all merge, and in one style: APA subscripts when a merged test asked for
  // them, else the letters of the main table's columns. Merged results show no p-values.
  SigTestSettings effective = setting;
  if (_mergedTests) {
    effective._merge = true;
    effective._styleApa = _apaMerged;
    effective._showSig = false;
    const BpDimension* dimensions[3] = {nullptr, nullptr, nullptr};
    for (TableAxis* axis : _axes) dimensions[axis->GetPosition()] = &axis->GetBpDimension();
    if (dimensions[BpDimension::kPlaceRow] == nullptr || dimensions[BpDimension::kPlaceColumn] == nullptr)
      return;
    renderer->mergeTable(&pivot, *dimensions[BpDimension::kPlaceRow], *dimensions[BpDimension::kPlaceColumn],
                         dimensions[BpDimension::kPlaceLayer], _statAxis,
                         _statAxis != nullptr ? _statAxis->GetPosition() : BpDimension::kPlaceColumn);
  } else if (_subcommand != nullptr) {
    const TableSettings& settings = _subcommand->GetTableSettings();
    renderer->SetColumnWidths(
        settings.HasMinColumnWidth() ? static_cast<int>(settings.GetMinColumnWidthPoints()) : 0,
        settings.HasMaxColumnWidth() ? static_cast<int>(settings.GetMaxColumnWidthPoints()) : 0);
  }
  renderer->RenderTable(trees, cubes, effective, captionFree);
  if (_mergedTests) captionFree = false;
}
