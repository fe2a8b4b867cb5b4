// TableDeliveryCells.cpp - the walk over every combination of leaves, in two passes
//
// Pass one writes every cell that holds data and every computed category and notes which
// cells are empty. Pass two decides which rows, columns and layers survive and fills the
// empty cells of those alone, so that a row in which nothing at all was counted disappears
// unless the user asked to keep empty categories.
#include <array>
#include <cstdint>
#include <initializer_list>

#include "host/QuiltAssert.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/CellStatistics.h"
#include "host/engine/CubeAggregator.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/output/BpCategory.h"
#include "host/output/BpCellText.h"
#include "host/output/BpGroup.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/StatTreeNode.h"
#include "tablerenderer/AxisLeafWalk.h"
#include "tablerenderer/BPTreeNode.h"
#include "tablerenderer/TableAxis.h"
#include "tablerenderer/TableDeliveryData.h"

namespace {

using CategoryKey = QuiltTable::CategoryKey;

enum CellState : uint8_t {
  kCellUnknown = 0,  // no cube, or a computed category
  kCellWritten = 1,
  kCellEmptyTotal = 2,    // empty total or subtotal, filled in pass two
  kCellEmptyRegular = 3,  // empty regular category, filled in pass two
  kCellNoStatistic = 4,   // empty, and the cube lacks the statistic: never a cell
};

enum LeafState : uint8_t {
  kLeafUnknown = 0,
  kLeafIncludeEmpty = 1,  // a node on the leaf's path keeps empty categories
  kLeafHasCell = 2,       // found in pass two: the leaf has a written cell
};

/// One axis walked in step with its shadow leaves, with the survival state of each leaf.
struct AxisWalk : AxisLeafWalk {
  explicit AxisWalk(TableAxis* axis) : AxisLeafWalk(axis), states(leaves.size(), kLeafUnknown) {}

  std::vector<uint8_t> states;

  /// Pass two: a leaf with a written cell survives, unless it already survives anyway.
  void MarkHasCell(int index) {
    uint8_t& state = states[static_cast<size_t>(index)];
    if (state == kLeafUnknown) state = kLeafHasCell;
  }

  /// Pass two: whether leaf `index` survives; one that does not is marked empty on its
  /// header node.
  bool Survives(int index) const {
    const uint8_t state = states[static_cast<size_t>(index)];
    if (state == kLeafIncludeEmpty || state == kLeafHasCell) return true;
    leaves[static_cast<size_t>(index)]->GetHeaderTreeNode()->SetEmpty(true);
    return false;
  }

  /// After a hidden source: with statistics in a dimension of their own, the statistics
  /// that belong to the skipped leaf are skipped with it.
  void SkipStatisticsOfHiddenSource(bool statsVisible) {
    if (statsVisible) return;
    int count = 1;
    if (node->GetType() == HeaderTreeNode::kHNodeTypeStatistic && node->GetParent() != nullptr) {
      count = node->GetParent()->GetNChildren();
    } else if (node->GetType() == HeaderTreeNode::kHNodeTypeCategory) {
      count = node->GetNChildren();
    }
    for (int k = 1; k < count; ++k) {
      HeaderTreeNode* next = QuiltTable::NextLeaf(node, key, keyChanged, emptyCount);
      if (next == nullptr) break;
      node = next;
    }
  }
};

bool AllValueOrVariable(const CategoryKey& key) {
  for (const AggregationCategory* category : key) {
    const int type = category->GetCatType();
    if (type != AggregationCategory::kValue && type != AggregationCategory::kVariable) return false;
  }
  return true;
}

/// Steps an outer loop's walk to its next leaf, number `index`. False for a hidden source,
/// which is skipped. `letterLevel`: the merged test letters stand at this axis's leaves
/// and have no slot of their own, so the cells are found from the category above them.
bool StepOuterLeaf(TableDelivery::Data& data, AxisWalk& walk, int index, bool letterLevel, int comperimeter) {
  walk.Step();
  if (data.IsHiddenSource(walk.key, data._parsedCatLists, comperimeter)) {
    walk.SkipStatisticsOfHiddenSource(data._statsVisible);
    return false;
  }
  if (walk.emptyCount != 0) walk.states[static_cast<size_t>(index)] = kLeafIncludeEmpty;
  if (letterLevel && AllValueOrVariable(walk.key) && walk.node->GetType() == HeaderTreeNode::kHNodeTypeLetter) {
    walk.node = walk.node->GetParent();
  }
  return true;
}

/// The statistic a cell shows, read from the walk's node when statistics are categories.
struct CellStatistic {
  int type = TableEncryptionCodes::kStatCount;
  int format = StatTreeNode::kStatFormatCount;
  double ptile = -1.0;

  void ReadFrom(const HeaderTreeNode* node) {
    if (node->GetType() != HeaderTreeNode::kHNodeTypeStatistic) return;
    const auto* statistic = static_cast<const StatTreeNode*>(node);
    type = statistic->GetStatType();
    format = statistic->GetStatFormatCode();
    ptile = statistic->GetPtileValue();
  }
};

/// The cube of a slot combination and what the cells of that cube read.
struct CubeLookup {
  CubeAggregator* cube = nullptr;
  const CellStatistics* cellStats = nullptr;
  const CellStatistics* totalStats = nullptr;
  int totalDimIndex = -1;

  void Find(const std::vector<CubeAggregator*>& cubes, int index) {
    cube = index >= 0 && index < static_cast<int>(cubes.size()) ? cubes[static_cast<size_t>(index)] : nullptr;
    if (cube == nullptr) {
      cellStats = totalStats = nullptr;
      totalDimIndex = -1;
      return;
    }
    cellStats = cube->GetCellStats();
    totalStats = cube->GetTotalStats();
    totalDimIndex = cube->GetTotalStatsDimIndex();
  }

  bool IsTotalCell(const CategoryKey& combined) const {
    return totalDimIndex >= 0 && totalDimIndex < static_cast<int>(combined.size()) &&
           combined[static_cast<size_t>(totalDimIndex)]->IsTotalKind();
  }
};

void SelectCategory(BPTreeNode* leaf, ProcedureDataSource* dataSource) {
  std::unique_ptr<BpCellText> text = leaf->CreateCellText(dataSource);
  leaf->GetParentGroup().Category(*text);
}

/// One cell of pass one whose cube and full key are known.
struct CellVisit {
  const CubeLookup& lookup;
  const CategoryKey& combined;
  const StatValues* values;  // null: the cell holds nothing
  SyntaxVariableName* statVar;
  const CellStatistic& statistic;
  BPTreeNode* leaf;  // the innermost leaf, in whose group the cell is written
};

/// Writes a cell that holds data at once; defers an empty one to pass two unless every
/// axis keeps its empty categories here. Returns the cell's state.
uint8_t WriteOrDefer(TableDelivery::Data& data, const CellVisit& cell, bool allKeepEmpty, bool& anyPending) {
  const CubeLookup& lookup = cell.lookup;
  const CellStatistic& statistic = cell.statistic;
  if (cell.values != nullptr) {
    data.ProcessStatValues(*cell.values, lookup.cellStats, lookup.totalStats, cell.statVar, statistic.type,
                           statistic.ptile, statistic.format, cell.leaf);
    return kCellWritten;
  }
  const bool isTotal = lookup.IsTotalCell(cell.combined);
  if (allKeepEmpty) {
    data.ProcessEmptyCell(isTotal, lookup.cellStats, lookup.totalStats, cell.statVar, statistic.type, statistic.ptile,
                          statistic.format, cell.leaf);
    return kCellWritten;
  }
  if (data._statsVisible && data.GetStatisticIndex(isTotal, lookup.cellStats, lookup.totalStats, cell.statVar,
                                                   statistic.type, statistic.ptile) == -1) {
    return kCellNoStatistic;
  }
  anyPending = true;
  return isTotal ? kCellEmptyTotal : kCellEmptyRegular;
}

/// Clears the operands of the last computed cell before the next is evaluated.
void StartComputedCell(TableDelivery::Data& data, bool twoComputedMeet) {
  data._operandValues.clear();
  data._groupOperandValues.clear();
  data._operandTokens.clear();
  data._operatorTokens.clear();
  data._blankNextCell = twoComputedMeet;
}

/// Before a walk: the categories computed cells may name, and the explicit lists whose
/// computed categories may hide their sources, gathered from every axis.
void PrepareComputedCategories(TableDelivery::Data& data, QuiltTable* table, std::initializer_list<AxisWalk*> walks) {
  data._requiredCats.clear();
  data.GetPcomputeRequiredCat(table);
  for (AxisWalk* walk : walks) {
    if (data.HasPostCategories(walk->leaves)) data.GetComputingCats(walk->leaves);
  }
  data._parsedCatLists.clear();
  data._parsedCatListOwners.clear();
  for (AxisWalk* walk : walks) data.GetParsedCategory(walk->leaves);
}

/// After pass one: the working storage of computed cells points into this group's
/// categories and expressions, and is dropped with the walk.
void FinishComputedCategories(TableDelivery::Data& data) {
  data._requiredCats.clear();
  data._operandTokens.clear();
  data._operatorTokens.clear();
}

/// Fills a deferred empty cell of a surviving row, column or layer in pass two.
void FillDeferredCell(TableDelivery::Data& data, const std::vector<CubeAggregator*>& cubes, int cubeIndex,
                      uint8_t state, SyntaxVariableName* statVar, BPTreeNode* leaf) {
  CubeLookup lookup;
  lookup.Find(cubes, cubeIndex);
  CellStatistic statistic;
  if (data._statsVisible) statistic.ReadFrom(leaf->GetHeaderTreeNode());
  data.ProcessEmptyCell(state == kCellEmptyTotal, lookup.cellStats, lookup.totalStats, statVar, statistic.type,
                        statistic.ptile, statistic.format, leaf);
}

/// With statistics in a dimension of their own, the cells of a statistic are written from
/// the node above it; with merged test letters, from the category above the letter.
void MoveToCellNode(AxisWalk& walk, bool letterLevel) {
  const bool isStatistic = walk.node->GetType() == HeaderTreeNode::kHNodeTypeStatistic;
  if (letterLevel ? (!isStatistic && AllValueOrVariable(walk.key)) : isStatistic) walk.node = walk.node->GetParent();
}

/// The first of the three that is set.
SyntaxVariableName* FirstSet(SyntaxVariableName* a, SyntaxVariableName* b, SyntaxVariableName* c = nullptr) {
  return a != nullptr ? a : (b != nullptr ? b : c);
}

/// Which of the two slots of a combined key holds category labels moved by CLABELS from
/// the other dimension; -1 when none are moved. `pos1` and `pos2` are the places of the
/// first and second axis.
int MovedLabelsSlot(int option, BpDimension::Place pos1, BpDimension::Place pos2) {
  if (pos2 == BpDimension::kPlaceLayer) {
    const bool toFirst = (option == TableEncryptionCodes::kCLabelRowLayer && pos1 == BpDimension::kPlaceRow) ||
                         (option == TableEncryptionCodes::kCLabelColLayer && pos1 == BpDimension::kPlaceColumn);
    return toFirst ? 1 : -1;
  }
  if (option == TableEncryptionCodes::kCLabelRowOpposite) return 1;
  if (option == TableEncryptionCodes::kCLabelColOpposite) return 0;
  return -1;
}

/// Pass two of a table of rows and columns: a leaf survives with a written cell in its row
/// or column, or when empty categories are kept; the deferred empty cells of surviving
/// leaves are written. `cubeIndex` maps outer and inner slots to the cube.
template <typename CubeIndex>
void FillDeferredCells2D(TableDelivery::Data& data, const std::vector<CubeAggregator*>& cubes,
                         const CubeIndex& cubeIndex, AxisWalk& outer, AxisWalk& inner,
                         const std::vector<uint8_t>& cells) {
  const int n1 = outer.Size();
  const int n2 = inner.Size();
  auto cellAt = [n2](int i, int j) {
    return static_cast<size_t>(i) * static_cast<size_t>(n2) + static_cast<size_t>(j);
  };
  for (int i = 0; i < n1; ++i) {
    for (int j = 0; j < n2; ++j) {
      if (cells[cellAt(i, j)] != kCellWritten) continue;
      outer.MarkHasCell(i);
      inner.MarkHasCell(j);
    }
  }
  auto kept = [&data](const AxisWalk& walk, int index) {
    const uint8_t state = walk.states[static_cast<size_t>(index)];
    return state == kLeafIncludeEmpty || state == kLeafHasCell ||
           data.IsEmptyIncluded(walk.leaves[static_cast<size_t>(index)]->GetSourceVariable());
  };
  for (int i = 0; i < n1; ++i) {
    BPTreeNode* leaf1 = outer.leaves[static_cast<size_t>(i)];
    if (!kept(outer, i)) {
      leaf1->GetHeaderTreeNode()->SetEmpty(true);
      continue;
    }
    SelectCategory(leaf1, data._dataSource);
    for (int j = 0; j < n2; ++j) {
      if (!kept(inner, j)) continue;
      const uint8_t state = cells[cellAt(i, j)];
      if (state != kCellEmptyTotal && state != kCellEmptyRegular) continue;
      BPTreeNode* leaf2 = inner.leaves[static_cast<size_t>(j)];
      FillDeferredCell(data, cubes, cubeIndex(leaf1->GetIndex(), leaf2->GetIndex()), state,
                       FirstSet(leaf1->GetStatSourceVar(), leaf2->GetStatSourceVar()), leaf2);
    }
  }
  for (int j = 0; j < n2; ++j) {
    if (inner.states[static_cast<size_t>(j)] == kLeafUnknown) {
      inner.leaves[static_cast<size_t>(j)]->GetHeaderTreeNode()->SetEmpty(true);
    }
  }
}

/// The loops of a table with layers: the axis carrying the statistics is innermost. Maps
/// the loop positions back to rows, columns and layers, and carries category labels moved
/// by CLABELS from one dimension (`from`) to another (`to`) when keys are combined.
struct LayeredLoop {
  QuiltTable* table;
  std::array<TableAxis*, 3> axes;  // in loop order
  int order = 2;                   // the dimension looped innermost: 0 rows, 1 columns, 2 layers
  int from = -1;
  int to = -1;

  LayeredLoop(QuiltTable* quiltTable, const std::vector<TableAxis*>& dimensionAxes)
      : table(quiltTable), axes{dimensionAxes[0], dimensionAxes[1], dimensionAxes[2]} {
    const int statPos = table->GetStatPosition();
    if (statPos == PresentationCodes::kSLabelColumn) {
      order = 1;
      axes = {dimensionAxes[0], dimensionAxes[2], dimensionAxes[1]};
    } else if (statPos == PresentationCodes::kSLabelRow) {
      order = 0;
      axes = {dimensionAxes[1], dimensionAxes[2], dimensionAxes[0]};
    }
    switch (table->GetClabelOption()) {
      case TableEncryptionCodes::kCLabelRowOpposite:
        from = 1;
        to = 0;
        break;
      case TableEncryptionCodes::kCLabelColOpposite:
        from = 0;
        to = 1;
        break;
      case TableEncryptionCodes::kCLabelRowLayer:
        from = 2;
        to = 0;
        break;
      case TableEncryptionCodes::kCLabelColLayer:
        from = 2;
        to = 1;
        break;
      default:
        break;
    }
  }

  /// Three values in loop order, put back in dimension order (rows, columns, layers).
  template <typename T>
  std::array<T, 3> InDimensionOrder(T a, T b, T c) const {
    if (order == 0) return {c, a, b};
    if (order == 1) return {a, c, b};
    return {a, b, c};
  }

  int CubeIndex(int a, int b, int c) const {
    const std::array<int, 3> slots = InDimensionOrder(a, b, c);
    return table->GetCubeIndex(slots[0], slots[1], slots[2]);
  }

  int Combine(const CategoryKey& k1, const CategoryKey& k2, const CategoryKey& k3, CategoryKey& combined) const {
    const std::array<const CategoryKey*, 3> keys = InDimensionOrder(&k1, &k2, &k3);
    return QuiltTable::Combine3CellKeys(*keys[0], *keys[1], *keys[2], combined, from, to);
  }

  void ComputePostValues(TableDelivery::Data& data, const CategoryKey& k1, const CategoryKey& k2, const CategoryKey& k3,
                         CubeAggregator* cube) const {
    const std::array<const CategoryKey*, 3> keys = InDimensionOrder(&k1, &k2, &k3);
    data.ComputePostCategoryValues3D(*keys[0], *keys[1], *keys[2], from, to, table, cube);
  }
};

size_t CellOf3D(int i, int j, int k, int n2, int n3) {
  return (static_cast<size_t>(i) * static_cast<size_t>(n2) + static_cast<size_t>(j)) * static_cast<size_t>(n3) +
         static_cast<size_t>(k);
}

/// Pass two of a table with layers: a leaf survives with a written cell anywhere in its
/// slice, and the deferred empty cells of surviving leaves are written.
void FillDeferredCells3D(TableDelivery::Data& data, const std::vector<CubeAggregator*>& cubes, const LayeredLoop& loop,
                         std::array<AxisWalk*, 3> walks, const std::vector<uint8_t>& cells) {
  AxisWalk& walk1 = *walks[0];
  AxisWalk& walk2 = *walks[1];
  AxisWalk& walk3 = *walks[2];
  const int n1 = walk1.Size();
  const int n2 = walk2.Size();
  const int n3 = walk3.Size();
  for (int i = 0; i < n1; ++i) {
    for (int j = 0; j < n2; ++j) {
      for (int k = 0; k < n3; ++k) {
        if (cells[CellOf3D(i, j, k, n2, n3)] != kCellWritten) continue;
        walk1.MarkHasCell(i);
        walk2.MarkHasCell(j);
        walk3.MarkHasCell(k);
      }
    }
  }
  for (int i = 0; i < n1; ++i) {
    if (!walk1.Survives(i)) continue;
    BPTreeNode* leaf1 = walk1.leaves[static_cast<size_t>(i)];
    SelectCategory(leaf1, data._dataSource);
    for (int j = 0; j < n2; ++j) {
      if (!walk2.Survives(j)) continue;
      BPTreeNode* leaf2 = walk2.leaves[static_cast<size_t>(j)];
      SelectCategory(leaf2, data._dataSource);
      for (int k = 0; k < n3; ++k) {
        if (!walk3.Survives(k)) continue;
        BPTreeNode* leaf3 = walk3.leaves[static_cast<size_t>(k)];
        const uint8_t state = cells[CellOf3D(i, j, k, n2, n3)];
        if (state != kCellEmptyTotal && state != kCellEmptyRegular) continue;
        FillDeferredCell(data, cubes, loop.CubeIndex(leaf1->GetIndex(), leaf2->GetIndex(), leaf3->GetIndex()), state,
                         FirstSet(leaf1->GetStatSourceVar(), leaf2->GetStatSourceVar(), leaf3->GetStatSourceVar()),
                         leaf3);
      }
    }
  }
}

}  // namespace

int TableDelivery::Data::Render1DTable(QuiltTable* table, const std::vector<CubeAggregator*>& cubes) {
  AxisWalk walk(_axes[0]);
  PrepareComputedCategories(*this, table, {&walk});

  CellStatistic statistic;
  CubeLookup lookup;
  for (int i = 0; i < walk.Size(); ++i) {
    BPTreeNode* leaf = walk.leaves[static_cast<size_t>(i)];
    walk.Step();
    if (IsHiddenSource(walk.key, _parsedCatLists, -1)) {
      walk.SkipStatisticsOfHiddenSource(_statsVisible);
      continue;
    }
    if (!_statsVisible && walk.node->GetType() == HeaderTreeNode::kHNodeTypeStatistic) {
      walk.node = walk.node->GetParent();
    }
    SyntaxVariableName* statVar = leaf->GetStatSourceVar();
    if (_statsVisible) statistic.ReadFrom(walk.node);
    lookup.Find(cubes, table->GetCubeIndex(walk.node->GetCubeIndexInDim()));
    if (lookup.cube == nullptr) continue;
    const StatValues* values = lookup.cube->IsCubeEmpty() ? nullptr : lookup.cube->GetStatValues(walk.key, -1);

    if (const AggregationCategory* post = GetPostCategory1D(walk.key)) {
      StartComputedCell(*this, NeedPostCategory1D(walk.key));
      ComputePostCategoryValues1D(walk.key, lookup.cube);
      ProcessPostValues(lookup.cellStats, lookup.totalStats, statVar, statistic.type, statistic.ptile, statistic.format,
                        leaf, post);
      walk.node->SetEmpty(false);
    } else if (values != nullptr) {
      ProcessStatValues(*values, lookup.cellStats, lookup.totalStats, statVar, statistic.type, statistic.ptile,
                        statistic.format, leaf);
      walk.node->SetEmpty(false);
    } else if (walk.emptyCount < 1) {
      walk.node->SetEmpty(true);
    } else {
      ProcessEmptyCell(lookup.IsTotalCell(walk.key), lookup.cellStats, lookup.totalStats, statVar, statistic.type,
                       statistic.ptile, statistic.format, leaf);
      walk.node->SetEmpty(false);
    }
  }
  FinishComputedCategories(*this);
  return 0;
}

int TableDelivery::Data::Render2DTable(QuiltTable* table, const std::vector<CubeAggregator*>& cubes) {
  const int statPos = table->GetStatPosition();
  TableAxis* axis1 = _axes[0];
  TableAxis* axis2 = _axes[1];
  const BpDimension::Place pos1 = axis1->GetPosition();
  const BpDimension::Place pos2 = axis2->GetPosition();
  // The axis that carries the statistics is the inner loop.
  const bool swapped = statPos == PresentationCodes::kSLabelRow ||
                       (statPos == PresentationCodes::kSLabelColumn && pos1 == BpDimension::kPlaceColumn);
  if (swapped) std::swap(axis1, axis2);

  const int comperimeter = MovedLabelsSlot(table->GetClabelOption(), pos1, pos2);

  AxisWalk outer(axis1);
  AxisWalk inner(axis2);
  PrepareComputedCategories(*this, table, {&outer, &inner});

  const int n1 = outer.Size();
  const int n2 = inner.Size();
  std::vector<uint8_t> cells(static_cast<size_t>(n1) * static_cast<size_t>(n2), kCellUnknown);
  const bool lettersMerged = _mergedTests && !_apaMerged;
  bool anyPending = false;
  CellStatistic statistic;
  CubeLookup lookup;
  CategoryKey combined;

  // Pass one.
  for (int i = 0; i < n1; ++i) {
    BPTreeNode* leaf1 = outer.leaves[static_cast<size_t>(i)];
    if (!StepOuterLeaf(*this, outer, i, lettersMerged && statPos == PresentationCodes::kSLabelRow, comperimeter)) {
      continue;
    }
    SyntaxVariableName* statVar = leaf1->GetStatSourceVar();
    const int outerIndex = outer.node->GetCubeIndexInDim();
    SelectCategory(leaf1, _dataSource);

    int lastOuter = -2;
    int lastInner = -2;
    inner.Restart();
    for (int j = 0; j < n2; ++j) {
      BPTreeNode* leaf2 = inner.leaves[static_cast<size_t>(j)];
      inner.Step();
      if (IsHiddenSource(inner.key, _parsedCatLists, comperimeter)) {
        inner.SkipStatisticsOfHiddenSource(_statsVisible);
        continue;
      }
      if (!_statsVisible) MoveToCellNode(inner, lettersMerged && statPos != PresentationCodes::kSLabelRow);
      SyntaxVariableName* cellVar = FirstSet(leaf2->GetStatSourceVar(), statVar);
      if (inner.emptyCount > 0) inner.states[static_cast<size_t>(j)] = kLeafIncludeEmpty;
      const int innerIndex = inner.node->GetCubeIndexInDim();
      if (_statsVisible) statistic.ReadFrom(inner.node);
      if (outerIndex != lastOuter || innerIndex != lastInner) {
        lastOuter = outerIndex;
        lastInner = innerIndex;
        lookup.Find(
            cubes, swapped ? table->GetCubeIndex(innerIndex, outerIndex) : table->GetCubeIndex(outerIndex, innerIndex));
      }
      if (lookup.cube == nullptr) continue;

      const int carried = swapped ? QuiltTable::Combine2CellKeys(inner.key, outer.key, combined, comperimeter)
                                  : QuiltTable::Combine2CellKeys(outer.key, inner.key, combined, comperimeter);
      const StatValues* values = lookup.cube->IsCubeEmpty() ? nullptr : lookup.cube->GetStatValues(combined, carried);
      const size_t cell = static_cast<size_t>(i) * static_cast<size_t>(n2) + static_cast<size_t>(j);

      if (const AggregationCategory* post = GetPostCategory2D(outer.key, inner.key)) {
        StartComputedCell(*this, NeedPostCategory2D(outer.key, inner.key));
        ComputePostCategoryValues2D(outer.key, inner.key, swapped, comperimeter, table, lookup.cube);
        ProcessPostValues(lookup.cellStats, lookup.totalStats, cellVar, statistic.type, statistic.ptile,
                          statistic.format, leaf2, post);
        continue;  // a computed cell keeps nothing alive by itself
      }
      const CellVisit visit{lookup, combined, values, cellVar, statistic, leaf2};
      cells[cell] = WriteOrDefer(*this, visit, outer.emptyCount >= 1 && inner.emptyCount >= 1, anyPending);
    }
  }
  FinishComputedCategories(*this);
  if (!anyPending) return 0;
  auto cubeIndex = [&](int outerIndex, int innerIndex) {
    return swapped ? table->GetCubeIndex(innerIndex, outerIndex) : table->GetCubeIndex(outerIndex, innerIndex);
  };
  FillDeferredCells2D(*this, cubes, cubeIndex, outer, inner, cells);
  return 0;
}

int TableDelivery::Data::Render3DTable(QuiltTable* table, const std::vector<CubeAggregator*>& cubes) {
  const int statPos = table->GetStatPosition();
  const LayeredLoop loop(table, _axes);
  AxisWalk walk1(loop.axes[0]);
  AxisWalk walk2(loop.axes[1]);
  AxisWalk walk3(loop.axes[2]);
  PrepareComputedCategories(*this, table, {&walk1, &walk2, &walk3});

  const int n1 = walk1.Size();
  const int n2 = walk2.Size();
  const int n3 = walk3.Size();
  std::vector<uint8_t> cells(static_cast<size_t>(n1) * static_cast<size_t>(n2) * static_cast<size_t>(n3), kCellUnknown);
  const bool lettersMerged = _mergedTests && !_apaMerged;
  bool anyPending = false;
  CellStatistic statistic;
  CubeLookup lookup;
  CategoryKey combined;

  // Pass one.
  for (int i = 0; i < n1; ++i) {
    BPTreeNode* leaf1 = walk1.leaves[static_cast<size_t>(i)];
    if (!StepOuterLeaf(*this, walk1, i, lettersMerged && statPos == PresentationCodes::kSLabelRow, -1)) continue;
    const int index1 = walk1.node->GetCubeIndexInDim();
    SelectCategory(leaf1, _dataSource);

    walk2.Restart();
    for (int j = 0; j < n2; ++j) {
      BPTreeNode* leaf2 = walk2.leaves[static_cast<size_t>(j)];
      if (!StepOuterLeaf(*this, walk2, j, lettersMerged && statPos == PresentationCodes::kSLabelLayer, -1)) continue;
      const int index2 = walk2.node->GetCubeIndexInDim();
      SelectCategory(leaf2, _dataSource);

      int lastIndex3 = -2;
      walk3.Restart();
      for (int k = 0; k < n3; ++k) {
        BPTreeNode* leaf3 = walk3.leaves[static_cast<size_t>(k)];
        walk3.Step();
        if (IsHiddenSource(walk3.key, _parsedCatLists, -1)) {
          walk3.SkipStatisticsOfHiddenSource(_statsVisible);
          continue;
        }
        if (!_statsVisible) MoveToCellNode(walk3, lettersMerged && statPos == PresentationCodes::kSLabelColumn);
        if (walk3.emptyCount > 0) walk3.states[static_cast<size_t>(k)] = kLeafIncludeEmpty;
        SyntaxVariableName* statVar =
            FirstSet(leaf1->GetStatSourceVar(), leaf2->GetStatSourceVar(), leaf3->GetStatSourceVar());
        const int index3 = walk3.node->GetCubeIndexInDim();
        if (_statsVisible) statistic.ReadFrom(walk3.node);
        if (index3 != lastIndex3) {
          lastIndex3 = index3;
          lookup.Find(cubes, loop.CubeIndex(index1, index2, index3));
        }
        if (lookup.cube == nullptr) continue;
        const int carried = loop.Combine(walk1.key, walk2.key, walk3.key, combined);
        const StatValues* values = lookup.cube->IsCubeEmpty() ? nullptr : lookup.cube->GetStatValues(combined, carried);

        if (const AggregationCategory* post = GetPostCategory3D(walk1.key, walk2.key, walk3.key)) {
          StartComputedCell(*this, NeedPostCategory3D(walk1.key, walk2.key, walk3.key));
          loop.ComputePostValues(*this, walk1.key, walk2.key, walk3.key, lookup.cube);
          ProcessPostValues(lookup.cellStats, lookup.totalStats, statVar, statistic.type, statistic.ptile,
                            statistic.format, leaf3, post);
          continue;
        }
        const CellVisit visit{lookup, combined, values, statVar, statistic, leaf3};
        cells[CellOf3D(i, j, k, n2, n3)] = WriteOrDefer(
            *this, visit, walk1.emptyCount >= 1 && walk2.emptyCount >= 1 && walk3.emptyCount >= 1, anyPending);
      }
    }
  }
  FinishComputedCategories(*this);
  if (anyPending) FillDeferredCells3D(*this, cubes, loop, {&walk1, &walk2, &walk3}, cells);
  return 0;
}
