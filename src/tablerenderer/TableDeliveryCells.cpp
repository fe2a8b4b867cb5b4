// TableDeliveryCells.cpp - the walk over every combination of leaves, in two passes
//
// Pass one writes every cell that holds data and every computed category and notes which
// cells are empty. Pass two decides which rows, columns and layers survive and fills the
// empty cells of those alone, so that a row in which nothing at all was counted disappears
// unless the user asked to keep empty categories.
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

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
  explicit AxisWalk(TableAxis* axis)
      : AxisLeafWalk(axis), place(axis->GetPosition()), states(leaves.size(), kLeafUnknown) {}

  BpDimension::Place place;  // the dimension of the axis
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
bool StepOuterLeaf(TableDelivery::Data& data, AxisWalk& walk, int index, bool letterLevel) {
  walk.Step();
  if (data.IsHiddenSource(walk.key, data._parsedCatLists, -1)) {
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
void PrepareComputedCategories(TableDelivery::Data& data, QuiltTable* table, const std::vector<AxisWalk>& walks) {
  data._requiredCats.clear();
  data.GetPcomputeRequiredCat(table);
  for (const AxisWalk& walk : walks) {
    if (data.HasPostCategories(walk.leaves)) data.GetComputingCats(walk.leaves);
  }
  data._parsedCatLists.clear();
  data._parsedCatListOwners.clear();
  for (const AxisWalk& walk : walks) data.GetParsedCategory(walk.leaves);
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

/// The order the loops of the walk nest in, outermost first, as indices into `axes` (which
/// stand in the order rows, columns, layers). The axis of the statistics' dimension runs
/// innermost; a table of columns and layers whose statistics stand in hidden rows keeps
/// its columns inside.
std::vector<size_t> LoopOrder(const std::vector<TableAxis*>& axes, int statPos) {
  auto find = [&axes](BpDimension::Place place) {
    for (size_t i = 0; i < axes.size(); ++i) {
      if (axes[i]->GetPosition() == place) return static_cast<int>(i);
    }
    return -1;
  };
  int inner = find(statPos == PresentationCodes::kSLabelRow      ? BpDimension::kPlaceRow
                   : statPos == PresentationCodes::kSLabelColumn ? BpDimension::kPlaceColumn
                                                                 : BpDimension::kPlaceLayer);
  if (inner < 0 && statPos == PresentationCodes::kSLabelRow) inner = find(BpDimension::kPlaceColumn);
  std::vector<size_t> order;
  for (size_t i = 0; i < axes.size(); ++i) {
    if (static_cast<int>(i) != inner) order.push_back(i);
  }
  if (inner >= 0) order.push_back(static_cast<size_t>(inner));
  return order;
}

/// The loop whose leaves may carry merged test letters, or -1: with three axes the
/// columns; with two, the outer loop when the statistics stand in rows and the inner one
/// otherwise.
int LetterLoop(const std::vector<AxisWalk>& walks, int statPos) {
  if (walks.size() == 2) return statPos == PresentationCodes::kSLabelRow ? 0 : 1;
  if (walks.size() != 3) return -1;
  for (size_t loop = 0; loop < walks.size(); ++loop) {
    if (walks[loop].place == BpDimension::kPlaceColumn) return static_cast<int>(loop);
  }
  return -1;
}

/// The walk over every cell of a table of one, two or three axes: one loop per axis, each
/// nested in the one before it, the innermost writing the cells. A dimension without an
/// axis is a single position: its slot is 0 and its part of a cell's key is empty.
class CellWalk {
 public:
  CellWalk(TableDelivery::Data& deliveryData, QuiltTable* quiltTable,
           const std::vector<CubeAggregator*>& tableCubes);

  /// Pass one, then pass two when a cell was deferred.
  void Run();

 private:
  /// Pass one, loop `loop` of the outer loops; `cell` numbers the cells before this loop.
  void WalkOuter(size_t loop, size_t cell);
  /// Pass one, the innermost loop at its leaf `index`.
  void VisitCell(int index, size_t cell);
  /// Pass two: which leaves survive, and the deferred cells of surviving leaves.
  void FillDeferred();
  void FillLoop(size_t loop, size_t cell);

  /// The slots or keys of the loops, put back in dimension order (rows, columns, layers).
  template <typename T>
  std::array<T, 3> InDimensionOrder(const std::array<T, 3>& byLoop, T absent) const {
    std::array<T, 3> byDimension{absent, absent, absent};
    for (size_t loop = 0; loop < _walks.size(); ++loop) {
      byDimension[static_cast<size_t>(_walks[loop].place)] = byLoop[loop];
    }
    return byDimension;
  }
  int CubeIndex(const std::array<int, 3>& loopSlots) const {
    const std::array<int, 3> bySlot = InDimensionOrder(loopSlots, 0);
    return _table->GetCubeIndex(bySlot[0], bySlot[1], bySlot[2]);
  }
  /// The full key of the current cell; returns the place of a category moved by CLABELS.
  int CombineKeys();
  const AggregationCategory* GetPostCategory() const;
  bool NeedPostCategory() const;
  void ComputePostValues(CubeAggregator* cube);
  SyntaxVariableName* StatisticVariable(const std::array<BPTreeNode*, 3>& leaves) const;
  bool Kept(size_t loop, int index) const;

  TableDelivery::Data& _data;
  QuiltTable* _table;
  const std::vector<CubeAggregator*>& _cubes;
  std::vector<AxisWalk> _walks;  // in loop order
  bool _swapped = false;         // the loops run in another order than the axes stand
  int _letterLoop = -1;
  bool _lettersMerged = false;
  QuiltTable::LabelCarry _carry;  // labels moved by CLABELS between two dimensions with axes

  // The state of pass one.
  std::array<int, 3> _slots{};  // the cube slot of each loop's current leaf
  std::array<BPTreeNode*, 3> _currentLeaves{};
  std::vector<uint8_t> _cells;  // per cell, in loop order: its CellState
  bool _anyPending = false;
  CellStatistic _statistic;
  CubeLookup _lookup;
  int _lookupIndex = -2;
  CategoryKey _combined;
};

CellWalk::CellWalk(TableDelivery::Data& deliveryData, QuiltTable* quiltTable,
                   const std::vector<CubeAggregator*>& tableCubes)
    : _data(deliveryData), _table(quiltTable), _cubes(tableCubes) {
  const std::vector<size_t> order = LoopOrder(_data._axes, _table->GetStatPosition());
  _walks.reserve(order.size());
  size_t cellCount = 1;
  for (size_t loop = 0; loop < order.size(); ++loop) {
    _walks.emplace_back(_data._axes[order[loop]]);
    _swapped = _swapped || order[loop] != loop;
    cellCount *= static_cast<size_t>(_walks.back().Size());
  }
  _letterLoop = LetterLoop(_walks, _table->GetStatPosition());
  _lettersMerged = _data._mergedTests && !_data._apaMerged;
  const QuiltTable::LabelCarry moved = QuiltTable::GetLabelCarry(_table->GetClabelOption());
  bool fromHasAxis = false;
  bool toHasAxis = false;
  for (const AxisWalk& walk : _walks) {
    fromHasAxis = fromHasAxis || walk.place == moved.from;
    toHasAxis = toHasAxis || walk.place == moved.to;
  }
  if (fromHasAxis && toHasAxis) _carry = moved;
  if (_walks.size() > 1) _cells.assign(cellCount, kCellUnknown);
}

void CellWalk::Run() {
  PrepareComputedCategories(_data, _table, _walks);
  WalkOuter(0, 0);
  FinishComputedCategories(_data);
  if (_anyPending && _walks.size() > 1) FillDeferred();
}

void CellWalk::WalkOuter(size_t loop, size_t cell) {
  AxisWalk& walk = _walks[loop];
  const size_t base = cell * static_cast<size_t>(walk.Size());
  if (loop + 1 == _walks.size()) {
    for (int index = 0; index < walk.Size(); ++index) VisitCell(index, base + static_cast<size_t>(index));
    return;
  }
  const bool letterLevel = _lettersMerged && static_cast<int>(loop) == _letterLoop;
  for (int index = 0; index < walk.Size(); ++index) {
    BPTreeNode* leaf = walk.leaves[static_cast<size_t>(index)];
    if (!StepOuterLeaf(_data, walk, index, letterLevel)) continue;
    _slots[loop] = walk.node->GetCubeIndexInDim();
    _currentLeaves[loop] = leaf;
    SelectCategory(leaf, _data._dataSource);
    _walks[loop + 1].Restart();
    WalkOuter(loop + 1, base + static_cast<size_t>(index));
  }
}

void CellWalk::VisitCell(int index, size_t cell) {
  const size_t loop = _walks.size() - 1;
  AxisWalk& walk = _walks[loop];
  BPTreeNode* leaf = walk.leaves[static_cast<size_t>(index)];
  walk.Step();
  if (_data.IsHiddenSource(walk.key, _data._parsedCatLists, -1)) {
    walk.SkipStatisticsOfHiddenSource(_data._statsVisible);
    return;
  }
  if (!_data._statsVisible) MoveToCellNode(walk, _lettersMerged && static_cast<int>(loop) == _letterLoop);
  if (walk.emptyCount > 0) walk.states[static_cast<size_t>(index)] = kLeafIncludeEmpty;
  if (_data._statsVisible) _statistic.ReadFrom(walk.node);
  _slots[loop] = walk.node->GetCubeIndexInDim();
  _currentLeaves[loop] = leaf;
  const int cubeIndex = CubeIndex(_slots);
  if (cubeIndex != _lookupIndex) {
    _lookupIndex = cubeIndex;
    _lookup.Find(_cubes, cubeIndex);
  }
  if (_lookup.cube == nullptr) return;
  const int carried = CombineKeys();
  const StatValues* values =
      _lookup.cube->IsCubeEmpty() ? nullptr : _lookup.cube->GetStatValues(_combined, carried);
  SyntaxVariableName* statVar = StatisticVariable(_currentLeaves);
  // With one axis nothing else can keep a row alive: the cell's own fate is its node's.
  const bool single = _walks.size() == 1;

  if (const AggregationCategory* post = GetPostCategory()) {
    StartComputedCell(_data, NeedPostCategory());
    ComputePostValues(_lookup.cube);
    _data.ProcessPostValues(_lookup.cellStats, _lookup.totalStats, statVar, _statistic.type, _statistic.ptile,
                            _statistic.format, leaf, post);
    if (single) walk.node->SetEmpty(false);
    return;  // a computed cell keeps nothing alive by itself
  }
  bool allKeepEmpty = true;
  for (const AxisWalk& each : _walks) allKeepEmpty = allKeepEmpty && each.emptyCount >= 1;
  const CellVisit visit{_lookup, _combined, values, statVar, _statistic, leaf};
  const uint8_t state = WriteOrDefer(_data, visit, allKeepEmpty, _anyPending);
  if (single) {
    walk.node->SetEmpty(state != kCellWritten);
  } else {
    _cells[cell] = state;
  }
}

int CellWalk::CombineKeys() {
  if (_walks.size() == 1) {
    _combined = _walks[0].key;
    return -1;
  }
  static const CategoryKey kNoKey;
  std::array<const CategoryKey*, 3> byLoop{};
  for (size_t loop = 0; loop < _walks.size(); ++loop) byLoop[loop] = &_walks[loop].key;
  const std::array<const CategoryKey*, 3> keys = InDimensionOrder(byLoop, &kNoKey);
  return QuiltTable::Combine3CellKeys(*keys[0], *keys[1], *keys[2], _combined, _carry.from, _carry.to);
}

const AggregationCategory* CellWalk::GetPostCategory() const {
  for (const AxisWalk& walk : _walks) {
    if (const AggregationCategory* post = _data.GetPostCategory1D(walk.key)) return post;
  }
  return nullptr;
}

bool CellWalk::NeedPostCategory() const {
  // Two computed categories meet, or one key holds two.
  int withComputed = 0;
  for (const AxisWalk& walk : _walks) {
    if (_data.NeedPostCategory1D(walk.key)) return true;
    if (_data.GetPostCategory1D(walk.key) != nullptr) ++withComputed;
  }
  return withComputed >= 2;
}

void CellWalk::ComputePostValues(CubeAggregator* cube) {
  if (_walks.size() == 1) {
    _data.ComputePostCategoryValues1D(_walks[0].key, cube);
  } else if (_walks.size() == 2) {
    // The slot of the key that carries a moved label, the keys taken in dimension order.
    int carriedSlot = -1;
    if (_carry.from >= 0) carriedSlot = (_walks[0].place == _carry.from) == _swapped ? 1 : 0;
    _data.ComputePostCategoryValues2D(_walks[0].key, _walks[1].key, _swapped, carriedSlot, _table, cube);
  } else {
    const std::array<const CategoryKey*, 3> keys =
        InDimensionOrder<const CategoryKey*>({&_walks[0].key, &_walks[1].key, &_walks[2].key}, nullptr);
    _data.ComputePostCategoryValues3D(*keys[0], *keys[1], *keys[2], _carry.from, _carry.to, _table, cube);
  }
}

/// The variable whose statistics a cell shows: the first set on the cell's leaves,
/// outermost first.
SyntaxVariableName* CellWalk::StatisticVariable(const std::array<BPTreeNode*, 3>& leaves) const {
  for (size_t loop = 0; loop < _walks.size(); ++loop) {
    if (SyntaxVariableName* variable = leaves[loop]->GetStatSourceVar()) return variable;
  }
  return nullptr;
}

bool CellWalk::Kept(size_t loop, int index) const {
  const AxisWalk& walk = _walks[loop];
  const uint8_t state = walk.states[static_cast<size_t>(index)];
  return state == kLeafIncludeEmpty || state == kLeafHasCell ||
         _data.IsEmptyIncluded(walk.leaves[static_cast<size_t>(index)]->GetSourceVariable());
}

void CellWalk::FillDeferred() {
  for (size_t cell = 0; cell < _cells.size(); ++cell) {
    if (_cells[cell] != kCellWritten) continue;
    size_t rest = cell;
    for (size_t loop = _walks.size(); loop-- > 0;) {
      const size_t size = static_cast<size_t>(_walks[loop].Size());
      _walks[loop].MarkHasCell(static_cast<int>(rest % size));
      rest /= size;
    }
  }
  FillLoop(0, 0);
  // A leaf that keeps no cell is marked empty, for the test tables built after.
  for (size_t loop = 0; loop < _walks.size(); ++loop) {
    for (int index = 0; index < _walks[loop].Size(); ++index) {
      if (!Kept(loop, index))
        _walks[loop].leaves[static_cast<size_t>(index)]->GetHeaderTreeNode()->SetEmpty(true);
    }
  }
}

void CellWalk::FillLoop(size_t loop, size_t cell) {
  const AxisWalk& walk = _walks[loop];
  const bool innermost = loop + 1 == _walks.size();
  for (int index = 0; index < walk.Size(); ++index) {
    if (!Kept(loop, index)) continue;
    BPTreeNode* leaf = walk.leaves[static_cast<size_t>(index)];
    _currentLeaves[loop] = leaf;
    _slots[loop] = leaf->GetIndex();
    const size_t here = cell * static_cast<size_t>(walk.Size()) + static_cast<size_t>(index);
    if (!innermost) {
      SelectCategory(leaf, _data._dataSource);
      FillLoop(loop + 1, here);
      continue;
    }
    const uint8_t state = _cells[here];
    if (state != kCellEmptyTotal && state != kCellEmptyRegular) continue;
    FillDeferredCell(_data, _cubes, CubeIndex(_slots), state, StatisticVariable(_currentLeaves), leaf);
  }
}

}  // namespace

int TableDelivery::Data::RenderCells(QuiltTable* table, const std::vector<CubeAggregator*>& cubes) {
  CellWalk(*this, table, cubes).Run();
  return 0;
}
