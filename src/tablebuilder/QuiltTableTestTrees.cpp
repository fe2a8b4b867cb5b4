// QuiltTableTestTrees.cpp - the reduced header trees of the significance tests, and column letters
#include <algorithm>
#include <string>
#include <vector>

#include "host/QuiltAssert.h"
#include "host/engine/AggregationCategory.h"
#include "parser/SigTestSettings.h"
#include "parser/Statistics.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltSigTests.h"
#include "tablebuilder/QuiltTable.h"
#include "tablebuilder/QuiltTableData.h"
#include "tablebuilder/SelectTestedCategories.h"
#include "tablebuilder/StatTreeNode.h"

namespace {

using Node = HeaderTreeNode;
using Codes = TableEncryptionCodes;

int CategoryType(const Node* node) {
  const AggregationCategory* category = node->GetCategory();
  return category == nullptr ? AggregationCategory::kNone : category->GetCatType();
}

// Counts and column percentages are what the category tests read; row percentages only where
// the test allows them, and the unweighted forms only on unweighted data.
bool IsTestableCount(int primary, bool unweighted, bool allowRowPct) {
  switch (primary) {
    case Codes::kStatCount:
    case Codes::kStatColPctCount:
      return true;
    case Codes::kStatRowPctCount:
      return allowRowPct;
    case Codes::kStatUCount:
    case Codes::kStatUColPctCount:
      return unweighted;
    case Codes::kStatURowPctCount:
      return unweighted && allowRowPct;
    default:
      return false;
  }
}

bool HasTestableCount(const SyntaxVariableName* variable, bool unweighted, bool allowRowPct) {
  for (const Statistics* statistics : variable->GetStatistics()) {
    if (IsTestableCount(statistics->GetPrimaryStatistic(), unweighted, allowRowPct)) return true;
  }
  return false;
}

/// Adds to `parent` what `reduce` keeps of each of `children`; `reduce` returns null for a
/// child it drops.
template <typename Reduce>
void AddReduced(Node* parent, const std::vector<Node*>& children, const Reduce& reduce) {
  for (Node* child : children) {
    if (Node* kept = reduce(child)) parent->AddChild(kept, false);
  }
}

/// A new root over what `reduce` keeps of the children of the root `tree`.
template <typename Reduce>
Node* ReduceRoot(const Node* tree, const Reduce& reduce) {
  Node* root = Node::CreateRoot();
  root->SetCloneKids(tree->GetNChildren());
  AddReduced(root, tree->GetChildren(), reduce);
  return root;
}

/// `node`, or null when it is a leaf: a reduced copy that kept nothing is deleted.
Node* DropIfLeaf(Node* node) {
  if (!node->IsLeaf()) return node;
  delete node;
  return nullptr;
}

bool IsMeanFamily(int code) { return code == Codes::kStatMean || code == Codes::kStatUMean; }

bool IsCountFamily(int code) {
  return code == Codes::kStatCount || code == Codes::kStatUCount || code == Codes::kStatColPctCount ||
         code == Codes::kStatUColPctCount;
}

bool IsMRSet(const SyntaxVariableName* variable) { return variable->GetType() == kConverterMRSet; }

bool StatKidsAtHeightOne(const Node* node) {
  return node->GetMaxHeight() == 1 && node->GetChildren()[0]->GetType() == Node::kHNodeTypeStatistic;
}

// Adds the reduced children of `source` to `result`. Below statistics, at most one mean and
// one count-like statistic stay, each only when asked for.
void AddReducedStatistics(Node* result, const std::vector<Node*>& reduced, bool keepMeans, bool keepCounts) {
  bool haveMean = false;
  bool haveCount = false;
  for (Node* child : reduced) {
    const int code = static_cast<const StatTreeNode*>(child)->GetStatType();
    if (keepMeans && !haveMean && IsMeanFamily(code)) {
      haveMean = true;
      result->AddChild(child, false);
    } else if (keepCounts && !haveCount && IsCountFamily(code)) {
      haveCount = true;
      result->AddChild(child, false);
    } else {
      delete child;
    }
  }
}

}  // namespace

void QuiltTable::BuildStatTestTables(bool unweightedData, bool merged, bool apa) {
  Data& d = *_tableData;
  d._unweightedData = unweightedData;
  CleanTestTrees();
  if (d._sigTestSettings.empty()) return;
  QUILT_ASSERT(d._rowHeaderRoot != nullptr && d._colHeaderRoot != nullptr && d._layerHeaderRoot != nullptr,
               "test trees are built from the final trees");
  d._rowHeaderRoot->PropagateEmptyInfo();
  d._colHeaderRoot->PropagateEmptyInfo();
  d._layerHeaderRoot->PropagateEmptyInfo();
  for (const SigTestSettings& settings : d._sigTestSettings) {
    const bool useSubtotals = settings._includeSubtotals;
    const bool includeMR = settings._includeMRSets;
    switch (settings._type) {
      case Codes::kSigTestChiSquare:
        BuildChiSquareTrees(useSubtotals, includeMR, merged && !apa);
        break;
      case Codes::kSigTestProportions:
        BuildColumnPropTrees(useSubtotals, includeMR, merged, apa);
        break;
      case Codes::kSigTestMeans:
        BuildColumnMeanTrees(useSubtotals, includeMR, merged, apa);
        break;
    }
  }
}

void QuiltTable::BuildChiSquareTrees(bool useSubtotals, bool includeMR, bool lettered) {
  Data& d = *_tableData;
  Node* rows = BuildCategOnlyTree(d._rowHeaderRoot, false, true, useSubtotals, includeMR, false, false, false);
  Node* columns = BuildCategOnlyTree(d._colHeaderRoot, false, true, useSubtotals, includeMR, false, false, lettered);
  Node* layers = BuildCategOnlyTree(d._layerHeaderRoot, true, true, useSubtotals, includeMR, false, false, false);
  FinishTestTrees(rows, columns, layers, /*chiSquare=*/true, /*letters=*/false);
}

void QuiltTable::BuildColumnPropTrees(bool useSubtotals, bool includeMR, bool merged, bool apa) {
  Data& d = *_tableData;
  const bool lettered = merged && !apa;
  Node* rows = BuildCategOnlyTree(d._rowHeaderRoot, true, false, useSubtotals, includeMR, false, merged, lettered);
  Node* columns = BuildCategOnlyTree(d._colHeaderRoot, true, false, useSubtotals, includeMR, false, merged, lettered);
  Node* layers = BuildCategOnlyTree(d._layerHeaderRoot, true, false, useSubtotals, includeMR, false, merged, lettered);
  FinishTestTrees(rows, columns, layers, /*chiSquare=*/false, /*letters=*/!merged);
}

void QuiltTable::BuildColumnMeanTrees(bool useSubtotals, bool includeMR, bool merged, bool apa) {
  Data& d = *_tableData;
  const bool lettered = merged && !apa;
  Node* rows = BuildScaleBasedTree(d._rowHeaderRoot, false, useSubtotals, includeMR, merged, lettered);
  Node* columns = BuildCategOnlyTree(d._colHeaderRoot, true, false, useSubtotals, includeMR, merged, merged, lettered);
  Node* layers = BuildCategOnlyTree(d._layerHeaderRoot, true, false, useSubtotals, includeMR, merged, merged, lettered);
  FinishTestTrees(rows, columns, layers, /*chiSquare=*/false, /*letters=*/!merged);
}

void QuiltTable::FinishTestTrees(HeaderTreeNode* rowTree, HeaderTreeNode* colTree, HeaderTreeNode* layerTree,
                                 bool chiSquare, bool letters) {
  Data& d = *_tableData;
  std::vector<Node*> trees;
  // A table with real layers whose layer tree vanished has nothing left to test.
  const bool hasTrees =
      rowTree != nullptr && colTree != nullptr && (layerTree != nullptr || d._layerHeaderRoot->IsLeaf());
  if (!hasTrees) {
    delete rowTree;
    delete colTree;
    delete layerTree;
    d._sigTestTrees.push_back(trees);
    return;
  }
  if (chiSquare) {
    rowTree->NestStack(std::vector<Node*>{Node::Create(std::string("Chi-square")), Node::Create(std::string("df")),
                                          Node::Create(std::string("Sig."))});
  } else if (letters) {
    AddLettersToColumns(colTree);
  }
  trees.push_back(rowTree);
  trees.push_back(colTree);
  if (layerTree != nullptr && !layerTree->IsLeaf()) {
    trees.push_back(layerTree);
  } else {
    delete layerTree;
  }
  d._sigTestTrees.push_back(trees);
}

HeaderTreeNode* QuiltTable::BuildCategOnlyTree(HeaderTreeNode* tree, bool includeLeaves, bool allowRowPct,
                                               bool useSubtotals, bool includeMR, bool keepMeans, bool keepCounts,
                                               bool lettered) {
  QUILT_ASSERT(tree != nullptr, "baseTree");
  const std::vector<Node*>& kids = tree->GetChildren();
  auto reduce = [&](Node* child) {
    return BuildCategOnlyTree(child, includeLeaves, allowRowPct, useSubtotals, includeMR, keepMeans, keepCounts,
                              lettered);
  };
  // Steps shared by categories and letters: reduce the children, keep what survives.
  auto reduceChildren = [&](Node* result) -> Node* {
    const bool statKids = StatKidsAtHeightOne(tree);
    std::vector<Node*> reduced;
    for (Node* child : kids) {
      Node* kept = reduce(child);
      if (kept != nullptr) reduced.push_back(kept);
    }
    if (statKids) {
      AddReducedStatistics(result, reduced, keepMeans, keepCounts);
    } else {
      for (Node* kept : reduced) result->AddChild(kept, false);
    }
    return DropIfLeaf(result);
  };

  switch (tree->GetType()) {
    case Node::kHNodeTypeRoot:
      return tree->IsEmpty() ? nullptr : DropIfLeaf(ReduceRoot(tree, reduce));
    case Node::kHNodeTypeScaleVariable:
      return nullptr;
    case Node::kHNodeTypeStatistic:
      return Node::CreateCopy(tree);
    case Node::kHNodeTypeLetter: {
      if (!lettered) return nullptr;
      Node* copy = Node::CreateCopy(tree);
      if (kids.empty()) return copy;
      return reduceChildren(copy);
    }
    case Node::kHNodeTypeCategory: {
      if (tree->IsEmpty()) return nullptr;
      if (kids.empty() || (StatKidsAtHeightOne(tree) && !keepMeans && !keepCounts)) {
        return includeLeaves || lettered ? Node::CreateCopy(tree) : nullptr;
      }
      return reduceChildren(Node::CreateCopy(tree));
    }
    case Node::kHNodeTypeCatVariable: {
      if (tree->IsEmpty()) return nullptr;
      SyntaxVariableName* variable = tree->GetVariable();
      QUILT_ASSERT(variable != nullptr, "var");
      const bool unweighted = _tableData->_unweightedData;
      bool usable = !variable->HasStatistics() || HasTestableCount(variable, unweighted, allowRowPct);
      const int base = lettered ? 3 : 2;
      // A set innermost in its dimension is left out when the test excludes sets.
      if (usable && !includeMR && IsMRSet(variable) && tree->GetMaxHeight() <= base) usable = false;
      if (!usable) return nullptr;
      if (keepMeans || keepCounts) tree->AddPriorVar(variable->GetNameToken(), true);
      Node* copy = Node::CreateCopy(tree);
      if (tree->GetMaxHeight() <= base && !includeLeaves) {
        if (tree->GetMaxHeight() == base && !kids.empty() && !kids[0]->IsLeaf()) {
          const Node* below = kids[0]->GetChildren()[0];
          if (lettered && below->GetType() == Node::kHNodeTypeLetter && !below->IsLeaf()) {
            below = below->GetChildren()[0];
          }
          if (below->GetType() == Node::kHNodeTypeScaleVariable) {
            delete copy;
            return nullptr;
          }
        }
        return copy;
      }
      std::vector<Node*> selected;
      ProcessSubtotalCategs(kids, selected, useSubtotals, variable->GetIsTotalPositionAfter());
      AddReduced(copy, selected, reduce);
      return !kids.empty() || includeLeaves ? DropIfLeaf(copy) : copy;
    }
    default:
      return nullptr;
  }
}

HeaderTreeNode* QuiltTable::BuildScaleBasedTree(HeaderTreeNode* tree, bool scaleAbove, bool useSubtotals,
                                                bool includeMR, bool merged, bool lettered) {
  QUILT_ASSERT(tree != nullptr, "baseTree");
  const std::vector<Node*>& kids = tree->GetChildren();
  const bool statKids = !kids.empty() && kids[0]->GetType() == Node::kHNodeTypeStatistic;
  auto reduce = [&](Node* child, bool above) {
    return BuildScaleBasedTree(child, above, useSubtotals, includeMR, merged, lettered);
  };
  // A copy whose source had children but which kept none stands for nothing.
  auto dropIfEmptied = [&](Node* copy) { return kids.empty() ? copy : DropIfLeaf(copy); };

  switch (tree->GetType()) {
    case Node::kHNodeTypeRoot:
      if (tree->IsEmpty()) return nullptr;
      return dropIfEmptied(ReduceRoot(tree, [&](Node* child) { return reduce(child, scaleAbove); }));
    case Node::kHNodeTypeCatVariable: {
      SyntaxVariableName* variable = tree->GetVariable();
      QUILT_ASSERT(variable != nullptr, "var");
      bool usable = !tree->IsEmpty() && (tree->GetMaxHeight() >= 2 || scaleAbove);
      if (!includeMR && IsMRSet(variable)) {
        if (tree->GetMaxHeight() <= 2 || (tree->GetMaxHeight() == 3 && !scaleAbove)) usable = false;
      }
      if (!usable) return nullptr;
      if (merged) tree->AddPriorVar(variable->GetNameToken(), true);
      Node* copy = Node::CreateCopy(tree);
      std::vector<Node*> selected;
      ProcessSubtotalCategs(kids, selected, useSubtotals, variable->GetIsTotalPositionAfter());
      AddReduced(copy, selected, [&](Node* category) {
        QUILT_ASSERT(category->GetType() == Node::kHNodeTypeCategory, "a variable of a means test holds categories");
        return reduce(category, scaleAbove);
      });
      return dropIfEmptied(copy);
    }
    case Node::kHNodeTypeScaleVariable: {
      if (tree->IsEmpty()) return nullptr;
      SyntaxVariableName* variable = tree->GetVariable();
      QUILT_ASSERT(variable != nullptr, "stats");
      bool hasMean = false;
      for (const Statistics* statistics : variable->GetStatistics()) {
        const int code = statistics->GetStatType();
        hasMean = hasMean || code == Codes::kStatMean || (code == Codes::kStatUMean && _tableData->_unweightedData);
      }
      // The name reaches the later siblings even when this branch has no mean to test.
      if (merged) tree->AddPriorVar(variable->GetNameToken(), true);
      if (!hasMean) return nullptr;
      Node* copy = Node::CreateCopy(tree);
      if (statKids && !merged) return copy;
      AddReduced(copy, kids, [&](Node* child) { return reduce(child, /*above=*/true); });
      return dropIfEmptied(copy);
    }
    case Node::kHNodeTypeCategory: {
      QUILT_ASSERT(!kids.empty() || scaleAbove,
                   "a category of a test tree holds statistics unless a scale variable stands above it");
      const int type = CategoryType(tree);
      QUILT_ASSERT(type != AggregationCategory::kTotal && type != AggregationCategory::kNone &&
                       type != AggregationCategory::kPcompute && (type != AggregationCategory::kSubtotal || useSubtotals),
                   "a means test never reaches totals or computed categories");
      if (tree->IsEmpty()) return nullptr;
      if (statKids && !scaleAbove && !merged) return nullptr;
      Node* copy = Node::CreateCopy(tree);
      if (statKids && !merged) return copy;
      for (Node* child : kids) {
        Node* kept = reduce(child, scaleAbove);
        if (kept == nullptr) continue;
        const bool isMean = kept->GetType() == Node::kHNodeTypeStatistic &&
                            IsMeanFamily(static_cast<const StatTreeNode*>(kept)->GetStatType());
        if (!statKids || isMean) {
          copy->AddChild(kept, false);
        } else {
          delete kept;
        }
      }
      return dropIfEmptied(copy);
    }
    case Node::kHNodeTypeStatistic:
      return Node::CreateCopy(tree);
    case Node::kHNodeTypeLetter:
      return lettered ? Node::CreateCopy(tree) : nullptr;
    default:
      return nullptr;
  }
}

int QuiltTable::ProcessSubtotalCategs(const std::vector<HeaderTreeNode*>& allCats, std::vector<HeaderTreeNode*>& out,
                                      bool useSubtotals, bool positionAfter) {
  out = SelectTestedCategories(allCats, useSubtotals, positionAfter, CategoryType);
  return static_cast<int>(out.size());
}

void QuiltTable::AddLettersToColumns(HeaderTreeNode* colTree) {
  QUILT_ASSERT(colTree != nullptr, "letters are added to a column tree");
  QUILT_ASSERT(colTree->GetMaxHeight() >= 1, "a column tree with letters has columns");
  const std::vector<Node*> children = colTree->GetChildren();
  if (colTree->GetMaxHeight() == 1) {
    const int n = static_cast<int>(children.size());
    for (int i = 0; i < n; ++i) {
      const std::string key = QuiltSigTests::CategoryKey(i, n, /*forceParens=*/true, /*upper=*/true);
      children[static_cast<size_t>(i)]->AddChild(Node::Create(key, true), true);
    }
    return;
  }
  // Numbering restarts within each lowest group of columns. A branch that ends higher up
  // than its siblings has no group below it to letter.
  for (Node* child : children) {
    if (child->GetMaxHeight() >= 1) AddLettersToColumns(child);
  }
}

bool QuiltTable::hasCategoryOffspring(const HeaderTreeNode* node) {
  if (node == nullptr) return false;
  for (const Node* child : node->GetChildren()) {
    if (child->GetType() == Node::kHNodeTypeCategory || hasCategoryOffspring(child)) return true;
  }
  return false;
}

bool QuiltTable::addLettersToMergedColumns(HeaderTreeNode* node, int index) {
  if (node == nullptr) return false;
  if (node->GetType() == Node::kHNodeTypeCategory && !hasCategoryOffspring(node) && node->GetParent() != nullptr) {
    const std::string key = QuiltSigTests::CategoryKey(index, node->GetParent()->GetNChildren(),
                                                       /*forceParens=*/true, /*upper=*/true);
    Node* letter = Node::Create(key, true);
    letter->addProperty(key);
    node->insertChild(letter);
    return true;
  }
  // Totals, subtotals and computed categories are not compared: no letter, and none used up.
  int running = 0;
  for (Node* child : node->GetChildren()) {
    if (child->GetCategory() != nullptr) {
      const int type = child->GetCategory()->GetCatType();
      if (type != AggregationCategory::kValue && type != AggregationCategory::kVariable) continue;
    }
    addLettersToMergedColumns(child, running++);
  }
  return true;
}
