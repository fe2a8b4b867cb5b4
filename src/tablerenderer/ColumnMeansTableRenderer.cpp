// ColumnMeansTableRenderer.cpp - the column means test run row by row over the test trees, and its notes
#include "tablerenderer/ColumnMeansTableRenderer.h"

#include <algorithm>

#include "host/engine/CubeAggregator.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/output/BpAnnotation.h"
#include "host/output/BpCategory.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltSigTests.h"
#include "tablerenderer/BPTreeNode.h"
#include "tablerenderer/TableAxis.h"

namespace {

/// The scale variable whose mean a row leaf shows: the nearest one on its path.
const HeaderTreeNode* ScaleVariableOf(const HeaderTreeNode* node) {
  while (node != nullptr && node->GetType() != HeaderTreeNode::kHNodeTypeScaleVariable)
    node = node->GetParent();
  return node;
}

}  // namespace

const char* ColumnMeansTableRenderer::TitleKey() const {
  return "Comparisons of Means";
}

bool ColumnMeansTableRenderer::IsTestedStatistic(int code) const {
  return code == TableEncryptionCodes::kStatMean || code == TableEncryptionCodes::kStatUMean;
}

void ColumnMeansTableRenderer::RenderTestTable(const std::vector<CubeAggregator*>& cubes,
                                               const SigTestSettings& settings, bool captionFree) {
  const std::vector<Family> columns = CollectFamilies(_data->_columnAxis.get());
  Flags flags;
  ForEachLayer([&](const QuiltTable::CategoryKey& layerKey, int layerIndex) {
    RenderColumnMean2DTable(cubes, columns, layerKey, layerIndex, settings, flags);
  });

  std::vector<const char*> keys;
  if (flags.numericalProblem) keys.push_back(msg::kNoteNumericalProblems);
  if (flags.zeroPooled) keys.push_back(msg::kNoteZeroPooledVariance);
  if (flags.nonIntegerCounts) keys.push_back(msg::kNoteColumnMeansRounded);
  if (flags.overlapProblem) keys.push_back(msg::kNoteIdenticalSetCategories);
  WriteNotes(settings, captionFree, "column means", msg::kNoteColumnMeansResults,
             msg::kNoteColumnMeansResultsTwoAlphas, keys);
}

void ColumnMeansTableRenderer::RenderColumnMean2DTable(const std::vector<CubeAggregator*>& cubes,
                                                       const std::vector<Family>& columns,
                                                       const QuiltTable::CategoryKey& layerKey,
                                                       int layerIndex, const SigTestSettings& settings,
                                                       Flags& flags) {
  const Data& d = *_data;
  const QuiltSigTests::SampleSizes sizes = QuiltSigTests::SizesFor(SyntaxConverter::GetBaseWeightVarIndex() >= 0);
  for (BPTreeNode* rowLeaf : d._rowAxis->GetLeaves()) {
    const HeaderTreeNode* node = rowLeaf->GetHeaderTreeNode();
    // With the statistics in the rows of a merged table, the mean's row shows the result.
    if (!ShowsResult(node)) continue;
    const HeaderTreeNode* scale = ScaleVariableOf(node);
    if (scale == nullptr || scale->GetVariable() == nullptr) continue;
    const int statVarIndex = scale->GetVariable()->GetIndex();
    const QuiltTable::CategoryKey rowKey = PathKey(node);
    SelectLeaf(rowLeaf);
    SelectStatCategory(rowLeaf, BpDimension::kPlaceRow);

    for (const Family& family : columns) {
      CubeAggregator* cube =
          CubeAt(node->GetCubeIndexInDim(), family.variable->GetCubeIndexInDim(), layerIndex, cubes);
      // The key: the row's categories, the outer column categories, the tested column, the
      // layer's categories, and for a set in the columns the second column of a pair.
      const std::size_t keyLength =
          rowKey.size() + family.outerKey.size() + 1 + layerKey.size() + (family.isMRSet ? 1 : 0);
      if (cube == nullptr || cube->GetKeyLength() != static_cast<int>(keyLength) ||
          cube->GetMeanVarIndex(statVarIndex, true) < 0 || cube->GetMeanVarIndex(statVarIndex, false) < 0) {
        continue;
      }
      ColumnMeansResult result = QuiltSigTests::GetColumnPairwise(
          *cube, statVarIndex, rowKey, family.outerKey, layerKey, family.categories, /*weighted=*/true,
          family.isMRSet, settings, d._noTestMarker, sizes);
      flags.numericalProblem = flags.numericalProblem || result.numericalProblem;
      flags.zeroPooled = flags.zeroPooled || result.zeroPooled;
      flags.nonIntegerCounts = flags.nonIntegerCounts || result.nonIntegerCounts;
      flags.overlapProblem = flags.overlapProblem || result.overlapProblem;
      WriteRow(result, family, settings);
    }
  }
}

void ColumnMeansTableRenderer::WriteRow(ColumnMeansResult& result, const Family& columns,
                                        const SigTestSettings& settings) {
  const Data& d = *_data;
  const std::vector<BPTreeNode*>& leaves = d._columnAxis->GetLeaves();
  for (std::size_t c = 0; c < columns.categories.size(); ++c) {
    const int leafIndex = columns.cellLeaves[c];
    if (leafIndex < 0) continue;
    BPTreeNode* leaf = leaves[static_cast<std::size_t>(leafIndex)];
    BpCategory cell = SelectLeaf(leaf);
    SelectStatCategory(leaf, BpDimension::kPlaceColumn);
    const int written = WriteResult(cell, result.columnTexts[c], result.rowMarkers, columns, c, settings);
    const bool tooFew = std::find(result.tooFewColumns.begin(), result.tooFewColumns.end(),
                                  static_cast<int>(c)) != result.tooFewColumns.end();
    if (tooFew) {
      cell.CellNote(BpAnnotation(BpString(msg::kNoteWeightBelowTwo, true)));
    } else if (d._merged && settings._styleApa && written == 0) {
      cell.CellNote(BpAnnotation(BpString(msg::kNoteNothingToCompare, true)));
    }
  }
}
