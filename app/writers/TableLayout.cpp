// TableLayout.cpp - axis combinations, header spans and the cell grid
#include "writers/TableLayout.h"

#include <algorithm>
#include <map>

#include "host/QuiltAssert.h"

namespace {

// Per leaf of a dimension: its visible path as (label, node id) pairs, outermost first, so
// that equal labels of different groups never merge into one span.
using NodePath = std::vector<std::pair<std::string, int>>;

void CollectNodePaths(const DeliveredNode& node, bool isRoot, bool hideLabels, NodePath& path, int& nextId,
                      std::vector<NodePath>& paths) {
  const int id = nextId++;
  const bool visible = !isRoot && node.showLabel && !hideLabels;
  if (visible) path.emplace_back(node.label, id);
  if (node.isCategory) {
    paths[static_cast<std::size_t>(node.leafIndex)] = path;
  } else {
    for (const DeliveredNode& child : node.children)
      CollectNodePaths(child, false, hideLabels, path, nextId, paths);
  }
  if (visible) path.pop_back();
}

struct AxisBuild {
  std::vector<std::vector<NodePath>> paths;  // per axis dimension, per leaf
  std::vector<int> depths;                   // per axis dimension
};

// Per entry and level of the header grid: the label and an identity of the whole path down
// to it.
struct Slot {
  std::string text;
  std::string identity;
  bool continuation = false;  // a short path's leaf reaching down
};
using SlotGrid = std::vector<std::vector<Slot>>;

AxisBuild CollectAxisPaths(const DeliveredTable& table, const std::vector<int>& dimensions) {
  AxisBuild build;
  int nextId = 0;
  for (int dimensionIndex : dimensions) {
    const DeliveredDimension& dimension = table.dimensions[static_cast<std::size_t>(dimensionIndex)];
    std::vector<NodePath> paths(dimension.leafPaths.size());
    NodePath path;
    CollectNodePaths(dimension.root, true, dimension.hideLabels, path, nextId, paths);
    int depth = 0;
    for (const NodePath& leafPath : paths) depth = std::max(depth, static_cast<int>(leafPath.size()));
    build.paths.push_back(std::move(paths));
    build.depths.push_back(depth);
  }
  return build;
}

// Every combination of leaves, outermost dimension varying slowest.
std::vector<std::vector<int>> LeafCombinations(const AxisBuild& build) {
  std::vector<std::vector<int>> combinations(1);
  for (const std::vector<NodePath>& leaves : build.paths) {
    std::vector<std::vector<int>> extended;
    for (const std::vector<int>& prefix : combinations) {
      for (std::size_t leaf = 0; leaf < leaves.size(); ++leaf) {
        std::vector<int> next = prefix;
        next.push_back(static_cast<int>(leaf));
        extended.push_back(std::move(next));
      }
    }
    combinations = std::move(extended);
  }
  return combinations;
}

// The header slots of one entry, and its visible label path. A path shorter than its
// dimension's depth reaches down: its leaf continues into the levels below it.
std::vector<Slot> EntrySlots(const AxisBuild& build, const std::vector<int>& leaves, AxisEntry& entry) {
  std::vector<Slot> slots;
  std::string identity;
  for (std::size_t position = 0; position < leaves.size(); ++position) {
    const NodePath& path = build.paths[position][static_cast<std::size_t>(leaves[position])];
    for (const auto& [text, id] : path) {
      identity += std::to_string(position) + ":" + std::to_string(id) + "/";
      slots.push_back({text, identity, false});
      entry.labelPath.push_back(text);
    }
    for (int pad = static_cast<int>(path.size()); pad < build.depths[position]; ++pad) {
      if (slots.empty() || path.empty()) {
        identity += std::to_string(position) + ":empty" + std::to_string(pad) + "/";
        slots.push_back({"", identity, false});
      } else {
        slots.push_back({slots.back().text, slots.back().identity, true});
      }
    }
  }
  return slots;
}

// Spans: adjacent entries whose identity down to a level agrees share one label, which
// reaches down over the continuations of its own leaf.
void AddSpanningLabels(const SlotGrid& grid, AxisLayout& axis) {
  for (int level = 0; level < axis.levels; ++level) {
    for (std::size_t start = 0; start < grid.size();) {
      const Slot& slot = grid[start][static_cast<std::size_t>(level)];
      std::size_t end = start + 1;
      while (end < grid.size() && grid[end][static_cast<std::size_t>(level)].identity == slot.identity) ++end;
      if (!slot.continuation) {
        HeaderLabel label;
        label.text = slot.text;
        label.level = level;
        label.start = static_cast<int>(start);
        label.span = static_cast<int>(end - start);
        int below = level + 1;
        while (below < axis.levels && grid[start][static_cast<std::size_t>(below)].continuation &&
               grid[start][static_cast<std::size_t>(below)].identity == slot.identity) {
          ++below;
        }
        label.depth = below - level;
        axis.labels.push_back(label);
      }
      start = end;
    }
  }
}

// Each place of the header grid is covered by at most one label: an index of them makes
// finding the label at a place one look-up, whatever the number of rows.
void IndexLabels(AxisLayout& axis) {
  const std::size_t width = axis.entries.size();
  axis.labelIndex.assign(static_cast<std::size_t>(axis.levels) * width, -1);
  for (std::size_t index = 0; index < axis.labels.size(); ++index) {
    const HeaderLabel& label = axis.labels[index];
    for (int level = label.level; level < label.level + label.depth; ++level) {
      for (int entry = label.start; entry < label.start + label.span; ++entry) {
        axis.labelIndex[static_cast<std::size_t>(level) * width + static_cast<std::size_t>(entry)] =
            static_cast<int>(index);
      }
    }
  }
}

AxisLayout BuildAxis(const DeliveredTable& table, const std::vector<int>& dimensions) {
  AxisLayout axis;
  axis.dimensions = dimensions;
  const AxisBuild build = CollectAxisPaths(table, dimensions);
  for (int depth : build.depths) axis.levels += depth;
  SlotGrid grid;
  for (const std::vector<int>& leaves : LeafCombinations(build)) {
    AxisEntry entry;
    entry.leaves = leaves;
    grid.push_back(EntrySlots(build, leaves, entry));
    axis.entries.push_back(std::move(entry));
  }
  AddSpanningLabels(grid, axis);
  IndexLabels(axis);
  return axis;
}

}  // namespace

const HeaderLabel* AxisLayout::LabelAt(int level, int index) const {
  if (level < 0 || level >= levels || index < 0 || static_cast<std::size_t>(index) >= entries.size()) {
    return nullptr;
  }
  const int found =
      labelIndex[static_cast<std::size_t>(level) * entries.size() + static_cast<std::size_t>(index)];
  return found < 0 ? nullptr : &labels[static_cast<std::size_t>(found)];
}

TableLayout::TableLayout(const DeliveredTable& table) : _table(&table) {
  _rows = BuildAxis(table, table.DimensionsAt(0));
  _columns = BuildAxis(table, table.DimensionsAt(1));
  const AxisLayout layers = BuildAxis(table, table.DimensionsAt(2));
  _layers = layers.entries;
  const std::vector<int> layerDimensions = layers.dimensions;

  std::map<std::vector<int>, const DeliveredCell*> byLeaves;
  for (const DeliveredCell& cell : table.cells) byLeaves[cell.leaves] = &cell;

  const std::size_t dimensionCount = table.dimensions.size();
  for (const AxisEntry& layer : _layers) {
    for (const AxisEntry& row : _rows.entries) {
      for (const AxisEntry& column : _columns.entries) {
        std::vector<int> leaves(dimensionCount, -1);
        for (std::size_t i = 0; i < _rows.dimensions.size(); ++i) leaves[_rows.dimensions[i]] = row.leaves[i];
        for (std::size_t i = 0; i < _columns.dimensions.size(); ++i)
          leaves[_columns.dimensions[i]] = column.leaves[i];
        for (std::size_t i = 0; i < layerDimensions.size(); ++i) leaves[layerDimensions[i]] = layer.leaves[i];
        LayoutCell cell;
        const auto found = byLeaves.find(leaves);
        if (found != byLeaves.end()) {
          cell.present = true;
          cell.text = found->second->text;
          cell.hasNumber = found->second->hasNumber;
          cell.number = found->second->number;
          cell.markers = found->second->markers;
          cell.noteMarks = found->second->noteMarks;
        }
        _cells.push_back(std::move(cell));
      }
    }
  }
}

const LayoutCell& TableLayout::GetCell(int layerIndex, int rowIndex, int columnIndex) const {
  const std::size_t rows = _rows.entries.size();
  const std::size_t columns = _columns.entries.size();
  const std::size_t index =
      (static_cast<std::size_t>(layerIndex) * rows + static_cast<std::size_t>(rowIndex)) * columns +
      static_cast<std::size_t>(columnIndex);
  QUILT_ASSERT(index < _cells.size(), "cell outside the layout");
  return _cells[index];
}

namespace {

int PointsToCharacters(int points) {
  if (points <= 0) return 0;
  return std::max(1, (points + TableLayout::kPointsPerCharacter / 2) / TableLayout::kPointsPerCharacter);
}

}  // namespace

int TableLayout::GetMinDataColumnCharacters() const {
  return PointsToCharacters(_table->minDataColumnWidth);
}

int TableLayout::GetMaxDataColumnCharacters() const {
  return PointsToCharacters(_table->maxDataColumnWidth);
}
