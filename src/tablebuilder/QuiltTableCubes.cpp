// QuiltTableCubes.cpp - axis cubes of the table's dimensions, the leaf walk and the cell keys
#include <vector>

#include "host/QuiltAssert.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationCube.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/AggregationTable.h"
#include "host/engine/AggregationVariable.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltTable.h"
#include "tablebuilder/QuiltTableData.h"

namespace {

using Node = HeaderTreeNode;

// The statistic every axis cube counts: whether a combination occurred at all.
const std::vector<AggregationStatistic>& AxisCubeStatistics() {
  static const std::vector<AggregationStatistic> statistics{AggregationStatistic(TableEncryptionCodes::kStatCount)};
  return statistics;
}

// The state of the walk over one preliminary tree: the categorical variables of the current
// nesting path, and for each the number of include-empty placeholders down to it.
struct AxisWalk {
  std::vector<AggregationVariable*> catVars;
  std::vector<int> includeEmptyCounts;
  int emptyRunning = 0;
  int cubeIndexInDim = -1;

  bool OwnsVariable(const Node* node) const {
    return node->GetParent() != nullptr && node->GetParent()->GetType() == Node::kHNodeTypeCatVariable;
  }

  void Enter(const Node* node) {
    if (node->GetType() != Node::kHNodeTypeTempCategories) return;
    if (node->IsIncludeEmpty()) ++emptyRunning;
    if (!OwnsVariable(node)) return;
    SyntaxVariableName* variable = node->GetVariable();
    QUILT_ASSERT(variable != nullptr && variable->GetAggregationVariable() != nullptr,
                 "a nested variable has no engine variable");
    QUILT_ASSERT(node->GetCubeIndexInDim() >= 0, "a placeholder without a sub-table slot");
    catVars.push_back(variable->GetAggregationVariable());
    cubeIndexInDim = node->GetCubeIndexInDim();
    includeEmptyCounts.push_back(emptyRunning);
  }

  void Leave(const Node* node) {
    if (node->GetType() != Node::kHNodeTypeTempCategories) return;
    if (OwnsVariable(node)) {
      catVars.pop_back();
      includeEmptyCounts.pop_back();
    }
    if (node->IsIncludeEmpty()) --emptyRunning;
  }

  Node* GoDown(Node* node) {
    Enter(node);
    while (!node->IsLeaf()) {
      node = node->GetChildren()[0];
      Enter(node);
    }
    return node;
  }
};

}  // namespace

int QuiltTable::CreateAxisCubes(AggregationTable* table) {
  QUILT_ASSERT(table != nullptr, "table");
  Data& d = *_tableData;
  d._aggregationTable = table;
  const int rows = CreateAxisCubesForDimension(d._prelimRowRoot, TableEncryptionCodes::kDimensionRow);
  const int columns = CreateAxisCubesForDimension(d._prelimColRoot, TableEncryptionCodes::kDimensionColumn);
  const int layers = CreateAxisCubesForDimension(d._prelimLayerRoot, TableEncryptionCodes::kDimensionLayer);
  d._hasRowAxisCubes = rows >= 1;
  d._hasColAxisCubes = columns >= 1;
  d._hasLayerAxisCubes = layers >= 1;
  return rows + columns + layers;
}

int QuiltTable::CreateAxisCubesForDimension(HeaderTreeNode* root, int position) {
  QUILT_ASSERT(root != nullptr, "root");
  AxisWalk walk;
  int lastCube = -1;
  int count = 0;
  Node* node = walk.GoDown(root);
  for (;;) {
    if (walk.catVars.size() > 1 && walk.cubeIndexInDim != lastCube) {
      count += AddAxisCubes(walk.catVars, walk.cubeIndexInDim, position, walk.includeEmptyCounts);
      lastCube = walk.cubeIndexInDim;
    }
    // Climb to the variable whose nesting is done. The placeholder for totals, sibling of
    // the one for categories, is never entered from here: it repeats the same nesting.
    bool climbing = true;
    while (climbing) {
      switch (node->GetType()) {
        case Node::kHNodeTypeStatistic:
        case Node::kHNodeTypeTempTotal:
          node = node->GetParent();
          break;
        case Node::kHNodeTypeTempCategories:
          walk.Leave(node);
          node = node->GetParent();
          break;
        case Node::kHNodeTypeScaleVariable: {
          Node* next = node->GetNextSibling();
          if (next == nullptr) {
            node = node->GetParent();
          } else if (next->GetType() == Node::kHNodeTypeScaleVariable && next->GetSameCubeAsPrev()) {
            node = next;
          } else {
            climbing = false;
          }
          break;
        }
        case Node::kHNodeTypeRoot:
          return count;
        default:
          climbing = false;
          break;
      }
      QUILT_ASSERT(node != nullptr, "a preliminary tree without a root on top");
    }
    while (node->GetNextSibling() == nullptr) {
      if (node->GetParent() == nullptr) return count;
      walk.Leave(node);
      node = node->GetParent();
    }
    walk.Leave(node);
    node = walk.GoDown(node->GetNextSibling());
  }
}

int QuiltTable::AddAxisCubes(const std::vector<AggregationVariable*>& catVars, int cubeIndexInDim, int position,
                             const std::vector<int>& includeEmptyCounts) {
  QUILT_ASSERT(catVars.size() == includeEmptyCounts.size(),
               "each categorical variable of an axis cube says how far it keeps empty categories");
  // From a variable whose empty categories are shown inward, the final tree takes every
  // category anyway, so no cube is needed there.
  int limit = static_cast<int>(includeEmptyCounts.size());
  for (int i = 0; i < static_cast<int>(includeEmptyCounts.size()); ++i) {
    if (includeEmptyCounts[static_cast<size_t>(i)] > 0) {
      limit = i;
      break;
    }
  }
  const int n = limit - 1;
  if (n < 1) return n;
  std::vector<AggregationCube*> cubes = _tableData->_aggregationTable->CreateAxisCubes(n, cubeIndexInDim, position);
  QUILT_ASSERT(static_cast<int>(cubes.size()) == n, "the engine made one axis cube per level");
  for (int level = 0; level < n; ++level) {
    AggregationCube* cube = cubes[static_cast<size_t>(level)];
    for (int j = 0; j <= level + 1; ++j) cube->AddCategoricalVariable(catVars[static_cast<size_t>(j)], position);
    cube->CreateCubeAggregator();
    cube->AddCategoryStatistics(AxisCubeStatistics(), catVars[static_cast<size_t>(level + 1)]);
  }
  return n;
}

HeaderTreeNode* QuiltTable::FirstLeaf(HeaderTreeNode* tree, CategoryKey& key, bool& keyChanged, int& emptyCount) {
  return GoDownToLeaf(tree, key, keyChanged, emptyCount);
}

HeaderTreeNode* QuiltTable::NextLeaf(HeaderTreeNode* node, CategoryKey& key, bool& keyChanged, int& emptyCount) {
  Node* branch = FindNextBranch(node, key, keyChanged, emptyCount);
  return branch == nullptr ? nullptr : GoDownToLeaf(branch, key, keyChanged, emptyCount);
}

HeaderTreeNode* QuiltTable::GoDownToLeaf(HeaderTreeNode* node, CategoryKey& key, bool& keyChanged, int& emptyCount) {
  QUILT_ASSERT(node != nullptr, "htreePtr");
  for (;;) {
    if (node->GetType() == Node::kHNodeTypeCategory) {
      QUILT_ASSERT(node->GetCategory() != nullptr, "a category node without its category");
      key.push_back(node->GetCategory());
      keyChanged = true;
    }
    if (node->IsIncludeEmpty()) ++emptyCount;
    if (node->IsLeaf()) return node;
    node = node->GetChildren()[0];
  }
}

HeaderTreeNode* QuiltTable::FindNextBranch(HeaderTreeNode* node, CategoryKey& key, bool& keyChanged,
                                           int& emptyCount) {
  QUILT_ASSERT(node != nullptr, "htreePtr");
  auto leave = [&](const Node* left) {
    if (left->GetType() == Node::kHNodeTypeCategory) {
      QUILT_ASSERT(!key.empty(), "the leaf key lost track of the path");
      key.pop_back();
      keyChanged = true;
    }
    if (left->IsIncludeEmpty()) --emptyCount;
  };
  while (node->GetNextSibling() == nullptr) {
    if (node->GetParent() == nullptr) return nullptr;
    leave(node);
    node = node->GetParent();
  }
  leave(node);
  return node->GetNextSibling();
}

int QuiltTable::Combine2CellKeys(const CategoryKey& first, const CategoryKey& second, CategoryKey& combined,
                                 int from) {
  combined.clear();
  int catsInFirst = static_cast<int>(first.size());
  int catsInSecond = static_cast<int>(second.size());
  const AggregationCategory* carried = nullptr;
  if (from == 0) {
    --catsInFirst;
    QUILT_ASSERT(catsInFirst >= 0, "a key carrying a moved label has that label");
    carried = first.back();
  } else if (from == 1) {
    --catsInSecond;
    QUILT_ASSERT(catsInSecond >= 0, "a key carrying a moved label has that label");
    carried = second.back();
  }
  int result = -1;
  combined.insert(combined.end(), first.begin(), first.begin() + catsInFirst);
  if (from == 1) {
    result = static_cast<int>(combined.size());
    combined.push_back(carried);
  }
  combined.insert(combined.end(), second.begin(), second.begin() + catsInSecond);
  if (from == 0) {
    result = static_cast<int>(combined.size());
    combined.push_back(carried);
  }
  return result;
}

int QuiltTable::Combine3CellKeys(const CategoryKey& first, const CategoryKey& second, const CategoryKey& third,
                                 CategoryKey& combined, int from, int to) {
  QUILT_ASSERT((from + 0.5) * (to + 0.5) > 0, "a label moves from one dimension to another, or not at all");
  QUILT_ASSERT(from != to || from == -1, "a label does not move into its own dimension");
  combined.clear();
  int result = -1;
  const CategoryKey* lists[3] = {&first, &second, &third};
  int counts[3] = {static_cast<int>(first.size()), static_cast<int>(second.size()), static_cast<int>(third.size())};
  static const char* const kCountChecks[3] = {"catsInFirst >= 0", "catsInSecond >= 0", "catsInThird >= 0"};
  const AggregationCategory* carried = nullptr;
  if (from >= 0) {
    QUILT_ASSERT(from <= 2 && to <= 2, "the carried category comes from a dimension and goes to another");
    --counts[from];
    QUILT_ASSERT(counts[from] >= 0, kCountChecks[from]);
    carried = lists[from]->back();
  }
  for (int list = 0; list < 3; ++list) {
    combined.insert(combined.end(), lists[list]->begin(), lists[list]->begin() + counts[list]);
    if (to == list) {
      result = static_cast<int>(combined.size());
      combined.push_back(carried);
    }
  }
  return result;
}

QuiltTable::LabelCarry QuiltTable::GetLabelCarry(CLabelOption option) {
  switch (option) {
    case TableEncryptionCodes::kCLabelRowOpposite:
      return {TableEncryptionCodes::kDimensionColumn, TableEncryptionCodes::kDimensionRow};
    case TableEncryptionCodes::kCLabelColOpposite:
      return {TableEncryptionCodes::kDimensionRow, TableEncryptionCodes::kDimensionColumn};
    case TableEncryptionCodes::kCLabelRowLayer:
      return {TableEncryptionCodes::kDimensionLayer, TableEncryptionCodes::kDimensionRow};
    case TableEncryptionCodes::kCLabelColLayer:
      return {TableEncryptionCodes::kDimensionLayer, TableEncryptionCodes::kDimensionColumn};
    case TableEncryptionCodes::kCLabelAuto:
      break;
  }
  return {};
}
