// AxisLeafWalk.h - a walk over the leaves of a header tree in step with the leaves of its axis
#pragma once

#include <vector>

#include "host/QuiltAssert.h"
#include "tablebuilder/QuiltTable.h"
#include "tablerenderer/TableAxis.h"

class BPTreeNode;
class HeaderTreeNode;

/// Walks the header tree of an axis leaf by leaf, in the order of the axis's shadow leaves,
/// keeping the categories on the path to the current node. The cell passes and the test
/// tables walk their axes with it. The tree and the leaves belong to the axis.
struct AxisLeafWalk {
  explicit AxisLeafWalk(TableAxis* axis) : tree(axis->GetHeaderTree()), leaves(axis->GetLeaves()) {}

  HeaderTreeNode* tree;
  const std::vector<BPTreeNode*>& leaves;
  HeaderTreeNode* node = nullptr;  // the node reached; a caller may move it up the tree
  QuiltTable::CategoryKey key;     // the categories above and at `node`, outer first
  bool keyChanged = false;
  int emptyCount = 0;  // include-empty nodes on the path

  int Size() const { return static_cast<int>(leaves.size()); }

  void Restart() {
    node = nullptr;
    key.clear();
    emptyCount = 0;
  }

  /// The next leaf: the axis was built from this tree, so there is one for every shadow leaf.
  HeaderTreeNode* Step() {
    node = node == nullptr ? QuiltTable::FirstLeaf(tree, key, keyChanged, emptyCount)
                           : QuiltTable::NextLeaf(node, key, keyChanged, emptyCount);
    QUILT_ASSERT(node != nullptr, "the header tree has as many leaves as its axis");
    return node;
  }
};
