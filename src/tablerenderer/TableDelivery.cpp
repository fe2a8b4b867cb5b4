// TableDelivery.cpp - the layout of a delivered table: outline entry, title, caption, corner and dimensions
#include "tablerenderer/TableDelivery.h"

#include <cstdio>

#include "host/QuiltAssert.h"
#include "host/data/ProcedureDataSource.h"
#include "host/engine/AggregationTable.h"
#include "host/engine/CubeAggregator.h"
#include "host/output/BpComposite.h"
#include "host/output/BpDimension.h"
#include "host/output/BpError.h"
#include "host/output/BpNumber.h"
#include "host/output/BpPivotTable.h"
#include "host/output/BpProcedure.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxPPropertiesSubcommand.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablerenderer/BPTreeNode.h"
#include "tablerenderer/TableAxis.h"
#include "tablerenderer/TableDeliveryData.h"

namespace {

BpDimension::Place PlaceOfStatistics(PresentationCodes::SLabelPosition position) {
  switch (position) {
    case PresentationCodes::kSLabelRow:
      return BpDimension::kPlaceRow;
    case PresentationCodes::kSLabelLayer:
      return BpDimension::kPlaceLayer;
    case PresentationCodes::kSLabelColumn:
    default:
      return BpDimension::kPlaceColumn;
  }
}

const SyntaxTablesCommand* CommandOf(SyntaxTableSubcommand* subcommand) {
  if (subcommand == nullptr) return nullptr;
  SyntaxConverter* top = subcommand->TopParent();
  if (top == nullptr || top->GetType() != kConverterCommand) return nullptr;
  return static_cast<const SyntaxTablesCommand*>(top);
}

/// True when the table has a multiple response set: a test without trees that leaves sets
/// out (INCLUDEMRSETS=NO) lost them for that reason.
bool HasSet(SyntaxTableSubcommand* subcommand) {
  if (subcommand == nullptr) return false;
  for (const SyntaxVariableName* variable : subcommand->GetTableVarList()) {
    if (variable->GetType() == kConverterMRSet) return true;
  }
  return false;
}

/// The dimensions of a table and of its test tables, by the header tree that fills them.
const char* const kDimensionNames[3] = {"Row", "Column", "Layer"};
const BpDimension::Place kPlaces[3] = {BpDimension::kPlaceRow, BpDimension::kPlaceColumn, BpDimension::kPlaceLayer};

/// The data column widths the user set, cut to whole points; test tables take them too.
void SetColumnWidths(BpPivotTable& pivot, const TableSettings* settings) {
  if (settings == nullptr) return;
  if (settings->HasMinColumnWidth()) {
    pivot.MinDataColumnWidth(static_cast<int>(settings->GetMinColumnWidthPoints()));
  }
  if (settings->HasMaxColumnWidth()) {
    pivot.MaxDataColumnWidth(static_cast<int>(settings->GetMaxColumnWidthPoints()));
  }
}

}  // namespace

TableDelivery::Data::Data(SyntaxTableSubcommand* subcommand, BpProcedure* procedure, ProcedureDataSource* dataSource)
    : _heading(*procedure), _dataSource(dataSource), _procedure(procedure), _subcommand(subcommand) {
  if (const SyntaxTablesCommand* command = CommandOf(subcommand)) {
    _hideSmallCounts = command->GetHideSmallCountsSet();
    _hideSmallCountsValue = command->GetHideSmallCountsValue();
    // Asked for every cell, so looked up once.
    for (const SyntaxPPropertiesSubcommand* properties : command->GetPPropertiesSubcommands()) {
      if (properties->IsHideSourceSet()) _hidingProperties.push_back(properties);
    }
  }
  _hideSmallCountsText = "<" + std::to_string(_hideSmallCountsValue);
}

TableDelivery::Data::~Data() {
  for (TableAxis* axis : _axes) delete axis;
  delete _statAxis;
}

std::string TableDelivery::Data::getUserText(const std::string& text) const {
  if (_splitText.empty()) return text;
  static const std::string kSplit = ")SPLIT";
  std::string result = text;
  size_t start = 0;
  while ((start = result.find(kSplit, start)) != std::string::npos) {
    result.replace(start, kSplit.size(), _splitText);
    start += _splitText.size();
  }
  return result;
}

TableDelivery::TableDelivery(SyntaxTableSubcommand* subcommand, BpProcedure* procedure,
                             ProcedureDataSource* dataSource)
    : _data(std::make_unique<Data>(subcommand, procedure, dataSource)) {
  QUILT_ASSERT(procedure != nullptr, "a table is delivered into a procedure's output");
}

TableDelivery::~TableDelivery() = default;

void TableDelivery::RenderTable(QuiltTable* table, int tableIndex, const std::string& splitText, bool controlPackage) {
  _data->_splitText = splitText;
  QUILT_ASSERT(table != nullptr && table->GetAggregationTable() != nullptr, "a delivered table has its engine table");
  std::vector<CubeAggregator*> cubes = table->GetAggregationTable()->GetCubeAggregators();
  QUILT_ASSERT(!cubes.empty(), "a delivered table has at least one cube");
  table->BuildCompleteTable();
  _data->RenderTableInternal(table, cubes, tableIndex, controlPackage);
}

void TableDelivery::Data::RenderTableInternal(QuiltTable* table, const std::vector<CubeAggregator*>& cubes,
                                              int tableIndex, bool controlPackage) {
  HeaderTreeNode* roots[3] = {table->GetRowHeaderRoot(), table->GetColHeaderRoot(), table->GetLayerHeaderRoot()};
  const bool hasTitle = _subcommand != nullptr && _subcommand->HasTitle();
  const std::string title = hasTitle ? _subcommand->GetTitle() : std::string();

  if (table->HasSigTests()) {
    _controlPackage = controlPackage;
    for (const SigTestSettings& setting : table->GetSigTestSettings()) {
      if (setting._type != TableEncryptionCodes::kSigTestProportions &&
          setting._type != TableEncryptionCodes::kSigTestMeans) {
        continue;
      }
      if (setting._merge) _mergedTests = true;
      if (setting._merge && setting._styleApa) _apaMerged = true;
    }
  }
  if (_mergedTests && !_apaMerged) table->addLettersToMergedColumns(roots[1], 0);

  // The outline entry: the user's title, or the numbered default.
  const bool separateTests = table->HasSeparateSigTests();
  std::unique_ptr<BpCellText> text;
  if (hasTitle && !separateTests) {
    text = std::make_unique<BpString>(getUserText(title), false);
  } else if (_controlPackage) {
    text = std::make_unique<BpString>(msg::kResults, true);
  } else {
    auto numbered = std::make_unique<BpComposite>(msg::kQuiltTableNumbered, true);
    numbered->Add(BpNumber(tableIndex, BpProcedure::Count()));
    numbered->Finish();
    text = std::move(numbered);
  }
  if (separateTests) {
    // The main table and its test tables stand under one heading.
    _heading = _procedure->Heading(*text);
    if (hasTitle) {
      text = std::make_unique<BpString>(getUserText(title), false);
    } else {
      text = std::make_unique<BpString>(msg::kQuiltTable, true);
    }
  }
  BpPivotTable pivot = _heading.PivotTable(*text, BpString(msg::kQuiltTable, true), true);
  if (!hasTitle) pivot.HideTitle();
  if (_mergedTests && !_apaMerged) pivot.SetProperty(BpPivotTable::kPropertyMergedTitle, *text);
  text.reset();

  const TableSettings* settings = _subcommand != nullptr ? &_subcommand->GetTableSettings() : nullptr;
  if (settings != nullptr && settings->HasCaption()) {
    pivot.Caption(BpString(getUserText(settings->GetCaption()), false));
  }
  if (settings != nullptr && settings->HasCornerText()) {
    pivot.CornerText(BpString(getUserText(settings->GetCornerText()), false));
  }

  _statsVisible = table->AreStatsVisible();
  if (settings != nullptr) {
    _emptyStringType = settings->GetEmptyStringType();
    if (_emptyStringType == PresentationCodes::kString) _emptyString = settings->GetEmptyString();
    _missingString = settings->GetMissingString();
    _useMissingString = _missingString != ".";
  }

  BpDimension::Place statPlace = BpDimension::kPlaceColumn;
  if (!_statsVisible) {
    BpDimension statistics = pivot.Dimension(BpString(msg::kStatistics, true), BpPivotTable::kSortAsCreated);
    statPlace = PlaceOfStatistics(table->GetStatPosition());
    statistics.Position(statPlace, 1, true, true);
    _statAxis = new TableAxis(statistics, statPlace, table->GetStatTree(), nullptr);
  }

  for (int d = 0; d < 3; ++d) {
    if (roots[d] == nullptr || roots[d]->IsLeaf()) continue;
    BpDimension dimension = pivot.Dimension(BpString(kDimensionNames[d], true), BpPivotTable::kSortAsCreated);
    const int order = !_statsVisible && statPlace == kPlaces[d] ? 2 : 1;
    dimension.Position(kPlaces[d], order, true, false);
    auto* axis = new TableAxis(dimension, kPlaces[d], roots[d], _dataSource);
    _axes.push_back(axis);
    axis->BuildBPTree(_statsVisible);
  }

  _numAxes = static_cast<int>(_axes.size());
  if (_numAxes >= 1 && _numAxes <= 3) {
    RenderCells(table, cubes);
  } else {
    BpError(BpString(msg::kWrongNumberOfAxes, true), kBpShowAlways, kBpLevelWarning);
  }

  SetColumnWidths(pivot, settings);

  if (table->HasSigTests()) RenderSigTestTables(table, pivot, cubes, tableIndex);
}

void TableDelivery::Data::RenderSigTestTables(QuiltTable* table, BpPivotTable& pivot,
                                              const std::vector<CubeAggregator*>& cubes, int tableIndex) {
  // Unweighted counts are testable only where no weight of either kind applies.
  const bool unweighted = SyntaxConverter::GetBaseWeightVarIndex() == -1 &&
                          (_dataSource == nullptr || _dataSource->GetWeightVarIndex() == -1);
  table->BuildStatTestTables(unweighted, _mergedTests, _apaMerged);
  const std::vector<std::vector<HeaderTreeNode*>>& allTrees = table->GetSigTestTrees();
  const std::vector<SigTestSettings>& allSettings = table->GetSigTestSettings();
  QUILT_ASSERT(allTrees.size() == allSettings.size(), "one set of test trees per significance setting");
  const TableSettings* tableSettings = _subcommand != nullptr ? &_subcommand->GetTableSettings() : nullptr;
  bool captionFree = tableSettings == nullptr || !tableSettings->HasCaption();

  for (std::size_t k = 0; k < allSettings.size(); ++k) {
    const SigTestSettings& setting = allSettings[k];
    const std::vector<HeaderTreeNode*>& trees = allTrees[k];
    if (trees.size() < 2) {
      const bool setsLeftOut = !setting._includeMRSets && HasSet(_subcommand);
      const char* key = setting._type == TableEncryptionCodes::kSigTestChiSquare
                            ? (setsLeftOut ? msg::kChiSquareSkippedOnlyExcludedSets
                                           : msg::kChiSquareSkippedNoEligibleCube)
                        : setting._type == TableEncryptionCodes::kSigTestProportions
                            ? (setsLeftOut ? msg::kColumnProportionsSkippedOnlyExcludedSets
                                           : msg::kColumnProportionsSkippedNoEligibleCube)
                            : (setsLeftOut ? msg::kPairwiseComparisonsSkippedOnlyExcludedSets
                                           : msg::kPairwiseComparisonsSkippedNoEligibleCube);
      BpComposite skipped(key, true);
      if (_subcommand != nullptr && _subcommand->HasTitle()) {
        skipped.Add(BpString(getUserText(_subcommand->GetTitle()), false));
      } else {
        skipped.Add(BpNumber(tableIndex, BpProcedure::Count()));
      }
      skipped.Finish();
      BpError(skipped, kBpShowAlways, kBpLevelWarning);
      continue;
    }
    if (setting._type != TableEncryptionCodes::kSigTestChiSquare) {
      RenderComparisonTest(table, pivot, cubes, trees, setting, captionFree);
      continue;
    }

    BpPivotTable testTable = _heading.PivotTable(BpString(msg::kPearsonChiSquareTests, true),
                                                 BpString(msg::kPearsonChiSquareTests, true), true);
    std::unique_ptr<TableAxis> axes[3];
    for (std::size_t d = 0; d < trees.size() && d < 3; ++d) {
      BpDimension dimension =
          testTable.Dimension(BpString(kDimensionNames[d], true), BpPivotTable::kSortAsCreated);
      dimension.Position(kPlaces[d], 1, true, false);
      axes[d] = std::make_unique<TableAxis>(dimension, kPlaces[d], trees[d], _dataSource);
      axes[d]->BuildBPTree(/*showStats=*/false);
    }
    RenderChiSquareTable(table, testTable, cubes, axes[0].get(), axes[1].get(), axes[2].get(), setting);
    SetColumnWidths(testTable, tableSettings);
  }
}
