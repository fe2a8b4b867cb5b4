// ColumnProportionsTableRenderer.cpp - the column proportions test run block by block over the test trees,
// its notes, and the control package's sentences
#include "tablerenderer/ColumnProportionsTableRenderer.h"

#include <algorithm>
#include <set>
#include <utility>

#include "host/engine/AggregationCategory.h"
#include "host/engine/CubeAggregator.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/output/BpAnnotation.h"
#include "host/output/BpCategory.h"
#include "host/output/BpComposite.h"
#include "host/output/BpNumber.h"
#include "host/output/BpProcedure.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxConverter.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltSigTests.h"
#include "tablerenderer/BPTreeNode.h"
#include "tablerenderer/TableAxis.h"
#include "tablerenderer/markers/RowSignificanceMarkers.h"

/// What the table of sentences is made from, gathered while the test runs.
struct ColumnProportionsTableRenderer::ControlData {
  bool _showControlPackage = false;         // set by showControlPackageTest
  bool _tested = false;                     // a block of two rows was tested
  RowSignificanceMarkers _rowSignificance;  // the markers of the second row of that block
  std::set<int> _smallColumns;              // columns with too small a base
  std::set<int> _zeroProportionColumns;     // columns whose proportion is 0 or 1 in the second row
};

namespace {

/// A category of a numeric value equal to `value`.
bool HasNumericValue(const HeaderTreeNode* node, double value) {
  if (node->GetType() != HeaderTreeNode::kHNodeTypeCategory || !node->IsLeaf()) return false;
  const AggregationCategory* category = node->GetCategory();
  const OBS* data = category != nullptr ? category->GetCatValue() : nullptr;
  return data != nullptr && category->GetValueType() == 0 && data->number == value;
}

}  // namespace

ColumnProportionsTableRenderer::ColumnProportionsTableRenderer(BpProcedure* procedure, BpHeading heading,
                                                               ProcedureDataSource* dataSource,
                                                               QuiltTable* table)
    : ColumnTestTableRenderer(procedure, std::move(heading), dataSource, table),
      _control(std::make_unique<ControlData>()) {}

ColumnProportionsTableRenderer::~ColumnProportionsTableRenderer() = default;

void ColumnProportionsTableRenderer::showControlPackageTest() {
  _control->_showControlPackage = true;
}

const char* ColumnProportionsTableRenderer::TitleKey() const {
  return "Comparisons of Proportions";
}

bool ColumnProportionsTableRenderer::IsTestedStatistic(int code) const {
  return code == TableEncryptionCodes::kStatCount || code == TableEncryptionCodes::kStatUCount ||
         code == TableEncryptionCodes::kStatColPctCount || code == TableEncryptionCodes::kStatUColPctCount;
}

void ColumnProportionsTableRenderer::RenderTestTable(const std::vector<CubeAggregator*>& cubes,
                                                     const SigTestSettings& settings, bool captionFree) {
  const std::vector<Family> rows = CollectFamilies(_data->_rowAxis.get());
  const std::vector<Family> columns = CollectFamilies(_data->_columnAxis.get());
  bool nonIntegerCounts = false;
  bool overlapProblem = false;
  ForEachLayer([&](const QuiltTable::CategoryKey& layerKey, int layerIndex) {
    RenderColumnProp2DTable(cubes, rows, columns, layerKey, layerIndex, settings, nonIntegerCounts,
                            overlapProblem);
  });

  std::vector<const char*> keys;
  if (nonIntegerCounts) keys.push_back(msg::kNoteColumnProportionsRounded);
  if (overlapProblem) keys.push_back(msg::kNoteIdenticalSetCategories);
  WriteNotes(settings, captionFree, "column proportions", msg::kNoteColumnProportionsResults,
             msg::kNoteColumnProportionsResultsTwoAlphas, keys);
}

void ColumnProportionsTableRenderer::RenderColumnProp2DTable(const std::vector<CubeAggregator*>& cubes,
                                                             const std::vector<Family>& rows,
                                                             const std::vector<Family>& columns,
                                                             const QuiltTable::CategoryKey& layerKey,
                                                             int layerIndex, const SigTestSettings& settings,
                                                             bool& nonIntegerCounts, bool& overlapProblem) {
  const Data& d = *_data;
  const QuiltSigTests::SampleSizes sizes = QuiltSigTests::SizesFor(SyntaxConverter::GetBaseWeightVarIndex() >= 0);
  for (const Family& rowFamily : rows) {
    for (const Family& columnFamily : columns) {
      CubeAggregator* cube = CubeAt(rowFamily.variable->GetCubeIndexInDim(),
                                    columnFamily.variable->GetCubeIndexInDim(), layerIndex, cubes);
      // The key: the outer row categories, the tested row, the outer column categories,
      // the tested column, the layer's categories, and for a set in the columns the second
      // column of a pair.
      const std::size_t keyLength = rowFamily.outerKey.size() + 1 + columnFamily.outerKey.size() + 1 +
                                    layerKey.size() + (columnFamily.isMRSet ? 1 : 0);
      if (cube == nullptr || cube->GetKeyLength() != static_cast<int>(keyLength)) continue;
      ColumnProportionsResult result = QuiltSigTests::GetColumnProportions(
          *cube, rowFamily.outerKey, columnFamily.outerKey, layerKey, rowFamily.categories, columnFamily.categories,
          /*weighted=*/true, rowFamily.isMRSet, columnFamily.isMRSet, settings, d._noTestMarker, sizes);
      ControlData& control = *_control;
      if (control._showControlPackage && result.rowMarkers.size() == 2) {
        control._tested = true;
        control._rowSignificance = result.rowMarkers[1];
        control._smallColumns.insert(result.smallColumns.begin(), result.smallColumns.end());
        for (std::size_t n = 0; n < result.badRows.size(); ++n) {
          if (result.badRows[n] == 1) control._zeroProportionColumns.insert(result.badColumns[n]);
        }
      }
      nonIntegerCounts = nonIntegerCounts || result.nonIntegerCounts;
      overlapProblem = overlapProblem || result.overlapProblem;
      WriteBlock(result, rowFamily, columnFamily, settings);
    }
  }
}

void ColumnProportionsTableRenderer::WriteBlock(ColumnProportionsResult& result, const Family& rows,
                                                const Family& columns, const SigTestSettings& settings) {
  const Data& d = *_data;
  const std::vector<BPTreeNode*>& rowLeaves = d._rowAxis->GetLeaves();
  const std::vector<BPTreeNode*>& columnLeaves = d._columnAxis->GetLeaves();
  const std::set<int> small(result.smallColumns.begin(), result.smallColumns.end());
  std::set<std::pair<int, int>> bad;
  for (std::size_t n = 0; n < result.badRows.size(); ++n)
    bad.emplace(result.badRows[n], result.badColumns[n]);

  for (std::size_t r = 0; r < rows.categories.size(); ++r) {
    if (rows.cellLeaves[r] < 0) continue;
    BPTreeNode* rowLeaf = rowLeaves[static_cast<std::size_t>(rows.cellLeaves[r])];
    SelectLeaf(rowLeaf);
    SelectStatCategory(rowLeaf, BpDimension::kPlaceRow);
    for (std::size_t c = 0; c < columns.categories.size(); ++c) {
      if (columns.cellLeaves[c] < 0) continue;
      BPTreeNode* columnLeaf = columnLeaves[static_cast<std::size_t>(columns.cellLeaves[c])];
      BpCategory cell = SelectLeaf(columnLeaf);
      SelectStatCategory(columnLeaf, BpDimension::kPlaceColumn);
      const int written =
          WriteResult(cell, result.cellTexts[r][c], result.rowMarkers[r], columns, c, settings);
      const bool isSmall = small.count(static_cast<int>(c)) != 0;
      const bool isBad = bad.count({static_cast<int>(r), static_cast<int>(c)}) != 0;
      if (d._merged && settings._styleApa && written == 0 && !isSmall && !isBad) {
        cell.CellNote(BpAnnotation(BpString(msg::kNoteNothingToCompare, true)));
      }
      if (isSmall) cell.CellNote(BpAnnotation(BpString(msg::kNoteWeightBelowTwo, true)));
      if (isBad) cell.CellNote(BpAnnotation(BpString(msg::kNoteProportionZeroOrOne, true)));
    }
  }
}

void ColumnProportionsTableRenderer::FinishTable() {
  if (!IsControlPackageCandidate()) return;
  _data->_pivot->Destroy();
  renderControlPackageTestTable();
}

bool ColumnProportionsTableRenderer::IsControlPackageCandidate() const {
  const Data& d = *_data;
  const ControlData& control = *_control;
  if (!control._showControlPackage || !control._tested || d._merged || d._layerAxis != nullptr) return false;
  const HeaderTreeNode* rows = d._rowAxis->GetHeaderTree();
  const HeaderTreeNode* columns = d._columnAxis->GetHeaderTree();
  if (rows->GetNLeaves() != 2 || columns->GetNLeaves() >= 6 || rows->GetNChildren() != 1) return false;
  const HeaderTreeNode* variable = rows->GetChildren().front();
  if (variable->GetType() != HeaderTreeNode::kHNodeTypeCatVariable || variable->GetNChildren() != 2)
    return false;
  if (!HasNumericValue(variable->GetChildren()[0], 0.0) ||
      !HasNumericValue(variable->GetChildren()[1], 1.0)) {
    return false;
  }
  // The sentences name the columns by their place in one test: one column variable, every
  // column of the table one of its categories.
  const std::vector<Family> families = CollectFamilies(d._columnAxis.get());
  return families.size() == 1 && families.front().categories.size() == d._columnAxis->GetLeaves().size();
}

void ColumnProportionsTableRenderer::renderControlPackageTestTable() {
  const Data& d = *_data;
  const ControlData& control = *_control;
  BpHeading heading = d._heading;
  BpPivotTable table = heading.PivotTable(BpString(msg::kDescriptionResponseRateComparisonTitle, true),
                                          BpString(msg::kDescriptionResponseRateComparison, true), true);
  table.MinDataColumnWidth(450);
  table.MaxDataColumnWidth(450);
  table.HideTitle();
  BpDimension contents = table.Dimension(BpString(msg::kContents, true), BpPivotTable::kSortAsCreated);
  contents.Position(BpDimension::kPlaceRow, 1, true, true);

  const std::vector<HeaderTreeNode*> categories = CollectFamilies(d._columnAxis.get()).front().categoryNodes;
  const int count = static_cast<int>(categories.size());
  for (int a = 0; a < count; ++a) {
    const std::set<std::uint64_t> similar =
        control._rowSignificance.getSimilarColumnsForColumn(static_cast<std::size_t>(a));
    for (int b = a + 1; b < count; ++b) {
      BpComposite label("help ^1: ^2", false);
      label.Add(BpNumber(a, BpProcedure::Count()));
      label.Add(BpNumber(b, BpProcedure::Count()));
      label.Finish();
      BpCategory cell = contents.Category(label);

      const HeaderTreeNode* catA = categories[static_cast<std::size_t>(a)];
      const HeaderTreeNode* catB = categories[static_cast<std::size_t>(b)];
      const HeaderTreeNode* first = nullptr;  // the column the sentence is about, when one is
      const char* key = nullptr;
      if (control._smallColumns.count(a) != 0 || control._smallColumns.count(b) != 0) {
        key = msg::kNoteResponseWeightBelowTwo;
        first = control._smallColumns.count(a) != 0 ? catA : catB;
      } else if (control._zeroProportionColumns.count(a) != 0 ||
                 control._zeroProportionColumns.count(b) != 0) {
        key = msg::kNoteResponseRateExtreme;
        first = control._zeroProportionColumns.count(a) != 0 ? catA : catB;
      } else if (similar.count(static_cast<std::uint64_t>(b)) == 0) {
        key = "There is a statistically significant difference between ^1 and ^2.";
      } else {
        key = "There is not a statistically significant difference between ^1 and ^2.";
      }
      BpComposite sentence(key, true);
      if (first != nullptr) BPTreeNode::AddCategoryText(first, d._dataSource, sentence);
      BPTreeNode::AddCategoryText(catA, d._dataSource, sentence);
      BPTreeNode::AddCategoryText(catB, d._dataSource, sentence);
      sentence.Finish();
      cell.Cell(sentence);
    }
  }
}
