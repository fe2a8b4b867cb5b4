// TableDeliveryChiSquare.cpp - the "Pearson Chi Square Tests" table: one test per row and column variable,
// outer categories and layer
//
// The test trees stand as the table's dimensions. Under each row variable they hold three
// label leaves, "Chi-square", "df" and "Sig."; the columns end in the column variables; the
// layers, when there are any, in their categories. The categories above a leaf fix the outer
// categories of the test, and the variables at the leaves are the two that are tested.
#include <memory>
#include <string>

#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationResult.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/CubeAggregator.h"
#include "host/engine/TableDimension.h"
#include "host/output/BpAnnotation.h"
#include "host/output/BpCategory.h"
#include "host/output/BpComposite.h"
#include "host/output/BpNumber.h"
#include "host/output/BpPivotTable.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltSigTests.h"
#include "tablebuilder/SelectTestedCategories.h"
#include "tablebuilder/StatTreeNode.h"
#include "tablerenderer/AlphaFormat.h"
#include "tablerenderer/AxisLeafWalk.h"
#include "tablerenderer/BPTreeNode.h"
#include "tablerenderer/TableAxis.h"
#include "tablerenderer/TableDeliveryData.h"

namespace {

using CategoryKey = QuiltTable::CategoryKey;

/// Makes the leaf's category the current one of its dimension and returns it.
BpCategory SelectLeaf(BPTreeNode* leaf, ProcedureDataSource* dataSource) {
  std::unique_ptr<BpCellText> text = leaf->CreateCellText(dataSource);
  return leaf->GetParentGroup().Category(*text);
}

/// The tested variable at a node of a test tree; null where the node is not a categorical
/// variable, which a well-formed test tree never has there.
SyntaxVariableName* TestedVariable(const HeaderTreeNode* node) {
  if (node == nullptr || node->GetType() != HeaderTreeNode::kHNodeTypeCatVariable) return nullptr;
  return node->GetVariable();
}

bool IsMRSet(const SyntaxVariableName* variable) {
  return variable->GetType() == kConverterMRSet;
}

bool IsMissing(double value) {
  return value == TARN_SystemMissing();
}

/// Writes the three cells of one test into the row leaves `first` to `first + 2` of the
/// columns and layer selected, and the notes on what the test found into the "Sig." cell.
void WriteTestCells(TableDelivery::Data& data, const std::vector<BPTreeNode*>& leaves, int first,
                    const ChiSquareResult& result, bool sameVariable, const SigTestSettings& settings) {
  const double values[3] = {result.chiSquare, result.degreesOfFreedom, result.significance};
  // The degrees of freedom are a count, so that hidden small counts hide them as well.
  static const int kFormats[3] = {StatTreeNode::kStatFormatGeneral, StatTreeNode::kStatFormatCount,
                                  StatTreeNode::kStatFormatSignificance};
  for (int k = 0; k < 3; ++k) {
    BPTreeNode* leaf = leaves[static_cast<std::size_t>(first + k)];
    std::unique_ptr<BpCellText> label = leaf->CreateCellText(data._dataSource);
    data.RenderCell(leaf->GetParentGroup(), *label, AggregationResult(values[k]), kFormats[k],
                    /*format=*/nullptr, PresentationCodes::kDisplayPlain, /*vIndex=*/0, /*decimals=*/0);
  }

  BpCategory significance = SelectLeaf(leaves[static_cast<std::size_t>(first + 2)], data._dataSource);
  if (sameVariable) {
    significance.CellNote(BpAnnotation(BpString(msg::kNoteSameRowAndColumnVariables, true)));
    return;
  }
  // The notes on expected counts only matter where a test was made.
  const bool tested = !IsMissing(result.significance);
  if (tested && result.significance < settings._alpha) {
    BpComposite text(msg::kNoteChiSquareSignificant, true);
    text.Add(BpNumber(settings._alpha, AlphaFormat(settings._alpha, settings._alphaText)));
    text.Finish();
    significance.CellNote(BpAnnotation(text, BpString("*", false)));
  }
  if (tested && result.lowExpected) significance.CellNote(BpAnnotation(BpString(msg::kNoteSmallExpectedCounts, true)));
  if (tested && result.minExpectedBelowOne) {
    significance.CellNote(BpAnnotation(BpString(msg::kNoteMinimumExpectedCount, true)));
  }
  if (result.nonIntegerCounts) significance.CellNote(BpAnnotation(BpString(msg::kNoteChiSquareRounded, true)));
}

}  // namespace

void TableDelivery::Data::RenderChiSquareTable(QuiltTable* table, BpPivotTable& pivot,
                                               const std::vector<CubeAggregator*>& cubes, TableAxis* rowAxis,
                                               TableAxis* columnAxis, TableAxis* layerAxis,
                                               const SigTestSettings& settings) {
  if (layerAxis == nullptr) {
    RenderChiSquare2DTable(table, cubes, rowAxis, columnAxis, CategoryKey(), 0, settings);
  } else {
    AxisLeafWalk layers(layerAxis);
    for (BPTreeNode* leaf : layers.leaves) {
      layers.Step();
      SelectLeaf(leaf, _dataSource);
      RenderChiSquare2DTable(table, cubes, rowAxis, columnAxis, layers.key, layers.node->GetCubeIndexInDim(),
                             settings);
    }
  }
  if (_subtotalsTested) pivot.Note(BpAnnotation(BpString(msg::kNoteTestsOnSubtotals, true)));
  pivot.Caption(BpString(msg::kNoteNonemptyRowsAndColumns, true));
}

void TableDelivery::Data::RenderChiSquare2DTable(QuiltTable* table, const std::vector<CubeAggregator*>& cubes,
                                                 TableAxis* rowAxis, TableAxis* columnAxis,
                                                 const CategoryKey& layerKey, int layerIndex,
                                                 const SigTestSettings& settings) {
  const bool useSubtotals = settings._includeSubtotals;
  const QuiltSigTests::SampleSizes sizes = QuiltSigTests::SizesFor(SyntaxConverter::GetBaseWeightVarIndex() >= 0);
  AxisLeafWalk columns(columnAxis);
  AxisLeafWalk rows(rowAxis);

  for (BPTreeNode* columnLeaf : columns.leaves) {
    columns.Step();
    SyntaxVariableName* columnVariable = TestedVariable(columns.node);
    if (columnVariable == nullptr) continue;
    const int colIndex = columns.node->GetCubeIndexInDim();
    CategoryKey columnCats;
    SelectInnerCategs(columnVariable, columnCats, useSubtotals);
    const bool columnIsMR = IsMRSet(columnVariable);
    SelectLeaf(columnLeaf, _dataSource);

    rows.Restart();
    int lastRowIndex = -2;
    CubeAggregator* cube = nullptr;
    // Three leaves per row variable: the walk stops at the first and goes on from the
    // variable, past the other two.
    for (int i = 0; i + 2 < rows.Size(); i += 3) {
      rows.Step();
      if (rows.node->GetParent() != nullptr) rows.node = rows.node->GetParent();
      SyntaxVariableName* rowVariable = TestedVariable(rows.node);
      if (rowVariable == nullptr) continue;
      const int rowIndex = rows.node->GetCubeIndexInDim();
      if (rowIndex != lastRowIndex) {
        lastRowIndex = rowIndex;
        const int index = table->GetCubeIndex(rowIndex, colIndex, layerIndex);
        cube = index >= 0 && index < static_cast<int>(cubes.size()) ? cubes[static_cast<std::size_t>(index)]
                                                                    : nullptr;
      }
      if (cube == nullptr) continue;

      const bool sameVariable =
          SyntaxParserUtility::ExactWordMatch(rowVariable->GetNameToken(), columnVariable->GetNameToken());
      ChiSquareResult result{TARN_SystemMissing(), TARN_SystemMissing(), TARN_SystemMissing()};
      if (!sameVariable) {
        CategoryKey rowCats;
        SelectInnerCategs(rowVariable, rowCats, useSubtotals);
        const bool rowIsMR = IsMRSet(rowVariable);
        result = QuiltSigTests::GetChiSquare(*cube, rows.key, columns.key, layerKey, rowCats, columnCats,
                                             /*weighted=*/true, rowIsMR, columnIsMR, sizes);
      }

      WriteTestCells(*this, rows.leaves, i, result, sameVariable, settings);
    }
  }
}

int TableDelivery::Data::SelectInnerCategs(SyntaxVariableName* variable, CategoryKey& categories,
                                           bool useSubtotals) {
  categories.clear();
  const AggregationVariable* engineVariable =
      variable != nullptr ? variable->GetAggregationVariable() : nullptr;
  TableDimension* dimension = engineVariable != nullptr ? engineVariable->GetTableDimension() : nullptr;
  if (dimension == nullptr) return 0;
  // The categories the table shows: a hidden subtotal stands there in place of its own.
  const std::vector<AggregationCategory*> selected = SelectTestedCategories(
      QuiltTable::ShownCategories(*dimension), useSubtotals, variable->GetIsTotalPositionAfter(),
      [](const AggregationCategory* category) { return category->GetCatType(); });
  categories.assign(selected.begin(), selected.end());
  for (const AggregationCategory* category : categories) {
    if (category->GetCatType() == AggregationCategory::kSubtotal) _subtotalsTested = true;
  }
  return static_cast<int>(categories.size());
}
