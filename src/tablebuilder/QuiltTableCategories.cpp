// QuiltTableCategories.cpp - which categories stand in a final tree: axis cubes, moved labels, empty stacks
#include <algorithm>
#include <vector>

#include "host/QuiltAssert.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/CategoryManager.h"
#include "host/engine/CubeAggregator.h"
#include "host/engine/TableDimension.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltTable.h"
#include "tablebuilder/QuiltTableData.h"

namespace {

using Node = HeaderTreeNode;

// The categories of the first placeholder's variable, merged with those of every further
// variable of the list when there are several: stacked variables whose labels moved share one
// list. With `onlyCategories` every node after the first counts as a further variable;
// otherwise placeholders for totals are skipped.
std::vector<AggregationCategory*> MergedCategories(const std::vector<Node*>& tempCats, bool onlyCategories) {
  SyntaxVariableName* variable = tempCats[0]->GetVariable();
  QUILT_ASSERT(variable != nullptr, "var");
  TableDimension* dimension = QuiltTable::DimensionOf(variable);
  std::vector<AggregationCategory*> categories = QuiltTable::ShownCategories(*dimension);
  std::vector<SyntaxVariableName*> others;
  for (size_t j = 1; j < tempCats.size(); ++j) {
    if (!onlyCategories && tempCats[j]->GetType() != Node::kHNodeTypeTempCategories) continue;
    QUILT_ASSERT(tempCats[j]->GetVariable() != nullptr, "varJ");
    others.push_back(tempCats[j]->GetVariable());
  }
  if (others.empty()) return categories;
  CategoryManager manager(categories, variable->GetAggregationVariable(), dimension);
  for (SyntaxVariableName* other : others)
    manager.AddCategories(QuiltTable::ShownCategories(*QuiltTable::DimensionOf(other)));
  return manager.GetCategories();
}

Node* NewCategoryNode(const AggregationCategory* category, bool includeEmpty, size_t location, int cubeIndexInDim) {
  Node* node = Node::Create(category);
  node->SetIncludeEmpty(includeEmpty);
  node->SetChildLoc(location);
  node->SetCubeIndexInDim(cubeIndexInDim);
  return node;
}

}  // namespace

std::vector<AggregationCategory*> QuiltTable::ShownCategories(TableDimension& dimension) {
  const std::vector<AggregationCategory*>& all = dimension.GetCategories();
  std::vector<int> hidingSubtotals;
  for (const AggregationCategory* category : all) {
    if (category->GetCatType() == AggregationCategory::kHSubtotal)
      hidingSubtotals.push_back(category->GetCatEncoding());
  }
  if (hidingSubtotals.empty()) return all;
  std::vector<AggregationCategory*> shown;
  for (AggregationCategory* category : all) {
    const int type = category->GetCatType();
    if (type == AggregationCategory::kValue || type == AggregationCategory::kVariable) {
      const int subtotal = dimension.SubtotalOf(category->GetCatEncoding());
      if (subtotal != 0 &&
          std::find(hidingSubtotals.begin(), hidingSubtotals.end(), subtotal) != hidingSubtotals.end()) {
        continue;
      }
    }
    shown.push_back(category);
  }
  return shown;
}

HeaderTreeNode* QuiltTable::BuildFinalSubtreeUseCubes(const HeaderTreeNode* node, const CategoryKey& path,
                                                      const std::vector<std::vector<CubeAggregator*>>& cubes) {
  const Node::HNodeType type = node->GetType();
  if (type == Node::kHNodeTypeStatistic) return node->Clone();
  const std::vector<Node*>& children = node->GetChildren();
  if (type == Node::kHNodeTypeScaleVariable) {
    Node* copy = Node::CreateCopy(node);
    if (children.empty()) return copy;
    const Node::HNodeType firstType = children[0]->GetType();
    if (firstType == Node::kHNodeTypeTempCategories) {
      ProcessComperimeterCategsNoTotals(copy, children);
      return copy;
    }
    QUILT_ASSERT(firstType == Node::kHNodeTypeCatVariable || firstType == Node::kHNodeTypeStatistic,
                 "a scale variable holds variables or statistics");
    for (size_t i = 0; i < children.size(); ++i) {
      Node* final = BuildFinalSubtreeUseCubes(children[i], path, cubes);
      if (final == nullptr) continue;
      final->SetChildLoc(i);
      copy->AddChild(final, false);
    }
    if (copy->IsLeaf()) {
      delete copy;
      return nullptr;
    }
    return copy;
  }
  QUILT_ASSERT(type == Node::kHNodeTypeCatVariable, "a preliminary subtree starts with a variable or a statistic");
  if (children.empty()) return Node::CreateCopy(node);
  if (children[0]->GetType() == Node::kHNodeTypeStatistic) {
    Node* copy = Node::CreateCopy(node);
    for (size_t i = 0; i < children.size(); ++i) {
      Node* clone = children[i]->Clone();
      clone->SetChildLoc(i);
      copy->AddChild(clone, false);
    }
    return copy;
  }
  SyntaxVariableName* variable = node->GetVariable();
  QUILT_ASSERT(variable != nullptr, "var");
  // A variable whose empty categories show needs no cube: it shows all of them.
  if (variable->GetIsEmptyInclude()) return BuildFinalSubtreeNoCubes(node);
  std::vector<Node*> categories;
  const int count = BuildCategorySubtreesUseCubes(node, variable, path, cubes, categories);
  if (count > 0) {
    Node* copy = Node::CreateCopy(node);
    for (size_t i = 0; i < categories.size(); ++i) {
      categories[i]->SetChildLoc(i);
      copy->AddChild(categories[i], false);
    }
    return copy;
  }
  // A stack with no data at all still gets a header.
  if (node->GetParent() != nullptr && node->GetParent()->GetType() == Node::kHNodeTypeRoot) {
    return BuildEmptyBranch(node);
  }
  return nullptr;
}

HeaderTreeNode* QuiltTable::BuildEmptyBranch(const HeaderTreeNode* node) {
  QUILT_ASSERT(node != nullptr, "prelNode");
  const Node::HNodeType type = node->GetType();
  if (type == Node::kHNodeTypeStatistic) return node->Clone();
  const std::vector<Node*>& children = node->GetChildren();
  if (type == Node::kHNodeTypeScaleVariable) {
    Node* copy = Node::CreateCopy(node);
    for (size_t i = 0; i < children.size(); ++i) {
      Node* branch = BuildEmptyBranch(children[i]);
      branch->SetChildLoc(i);
      copy->AddChild(branch, false);
    }
    return copy;
  }
  QUILT_ASSERT(type == Node::kHNodeTypeCatVariable, "an empty branch starts with a variable or a statistic");
  if (node->GetVariable() != nullptr && node->GetVariable()->GetIsEmptyInclude()) {
    return BuildFinalSubtreeNoCubes(node);
  }
  Node* copy = Node::CreateCopy(node);
  if (children.empty()) return copy;
  if (children[0]->GetType() != Node::kHNodeTypeTempCategories) {
    for (size_t i = 0; i < children.size(); ++i) {
      Node* clone = children[i]->Clone();
      clone->SetChildLoc(i);
      copy->AddChild(clone, false);
    }
    return copy;
  }
  Data& d = *_tableData;
  if (!d._noValidCategory) {
    d._noValidCategory = std::make_unique<AggregationCategory>();
    d._noValidCategory->SetCatLabel("No valid categories", true);
  }
  Node* category = NewCategoryNode(d._noValidCategory.get(), false, 0, node->GetCubeIndexInDim());
  copy->AddChild(category, false);
  const std::vector<Node*>& kids = children[0]->GetChildren();
  if (!kids.empty()) {
    if (kids[0]->GetType() == Node::kHNodeTypeTempCategories) {
      ProcessComperimeterCategs(category, kids);
    } else {
      for (size_t i = 0; i < kids.size(); ++i) {
        Node* branch = BuildEmptyBranch(kids[i]);
        branch->SetChildLoc(i);
        category->AddChild(branch, false);
      }
    }
    copy->UpdateChildInfo();
  }
  return copy;
}

int QuiltTable::BuildCategorySubtreesUseCubes(const HeaderTreeNode* varNode, SyntaxVariableName* var,
                                              const CategoryKey& path,
                                              const std::vector<std::vector<CubeAggregator*>>& cubes,
                                              std::vector<HeaderTreeNode*>& out) {
  out.clear();
  const std::vector<AggregationCategory*> categories = ShownCategories(*DimensionOf(var));
  const std::vector<Node*>& varChildren = varNode->GetChildren();
  const std::vector<Node*>& kids = varChildren[0]->GetChildren();
  const bool hasTotalBranch = varChildren.size() == 2;
  const int indexInDim = varNode->GetCubeIndexInDim();
  QUILT_ASSERT(indexInDim >= 0, "a variable node was given its slot before its categories are built");
  const int cubeIndex = static_cast<int>(path.size()) - 1;

  CategoryKey key = path;
  int count = 0;
  for (size_t k = 0; k < categories.size(); ++k) {
    const AggregationCategory* category = categories[k];
    key.push_back(category);
    // The outermost variable has no cube above it and keeps all its categories.
    bool present = key.size() == 1;
    bool forced = false;
    if (cubeIndex >= 0) {
      QUILT_ASSERT(indexInDim < (int)cubes.size(), "every slot of the dimension has its cubes");
      const std::vector<CubeAggregator*>& levels = cubes[static_cast<size_t>(indexInDim)];
      QUILT_ASSERT(cubeIndex < (int)levels.size(), "every enclosing variable of the slot has its cube");
      const CubeAggregator* cube = levels[static_cast<size_t>(cubeIndex)];
      if (cube != nullptr && cube->GetStatValues(key, -1) != nullptr) present = true;
      // A computed category is kept whatever the cube says, as long as something stands below it.
      if (category->GetCatType() == AggregationCategory::kPcompute) forced = true;
    }
    if (present && kids.empty()) {
      out.push_back(NewCategoryNode(category, false, k, indexInDim));
      ++count;
    } else if ((present && !kids.empty()) || forced) {
      const bool fromTotals = hasTotalBranch && category->IsTotalKind();
      const std::vector<Node*>& source = fromTotals ? varChildren[1]->GetChildren() : kids;
      std::vector<Node*> finals;
      if (!source.empty() && source[0]->GetType() == Node::kHNodeTypeTempCategories) {
        ProcessComperimeterCategs(source, finals);
      } else {
        for (const Node* sourceNode : source) {
          Node* final = BuildFinalSubtreeUseCubes(sourceNode, key, cubes);
          if (final != nullptr) finals.push_back(final);
        }
      }
      // An outer category under which nothing survived disappears.
      if (!finals.empty()) {
        Node* node = NewCategoryNode(category, false, k, indexInDim);
        for (Node* final : finals) node->AddChild(final, false);
        out.push_back(node);
        ++count;
      }
    }
    key.pop_back();
  }
  return count;
}

int QuiltTable::ProcessComperimeterCategs(const std::vector<HeaderTreeNode*>& tempCats,
                                          std::vector<HeaderTreeNode*>& out) {
  QUILT_ASSERT(!tempCats.empty(), "labels moved by CLABELS arrive with at least one placeholder");
  QUILT_ASSERT(tempCats[0]->GetVariable() != nullptr, "a moved-label placeholder names its variable");
  bool hasTotal = false;
  size_t totalPos = 0;
  for (size_t j = 1; j < tempCats.size(); ++j) {
    if (tempCats[j]->GetType() == Node::kHNodeTypeTempTotal && !hasTotal) {
      hasTotal = true;
      totalPos = j;
    }
  }
  const size_t first = out.size();
  const std::vector<Node*> made = NewCategoryNodes(MergedCategories(tempCats, /*onlyCategories=*/false),
                                                   *tempCats[0]->GetVariable(), tempCats[0]->GetCubeIndexInDim());
  out.insert(out.end(), made.begin(), made.end());
  const std::vector<Node*>& kids = tempCats[0]->GetChildren();
  if (!kids.empty()) {
    const std::vector<Node*>& totalKids = hasTotal ? tempCats[totalPos]->GetChildren() : kids;
    for (size_t i = first; i < out.size(); ++i) {
      const bool totalLike = out[i]->GetCategory()->IsTotalKind();
      const std::vector<Node*>& source = totalLike ? totalKids : kids;
      for (size_t j = 0; j < source.size(); ++j) {
        Node* clone = source[j]->Clone();
        clone->SetChildLoc(j);
        out[i]->AddChild(clone, false);
      }
    }
  }
  return static_cast<int>(out.size() - first);
}

std::vector<HeaderTreeNode*> QuiltTable::NewCategoryNodes(const std::vector<AggregationCategory*>& categories,
                                                          const SyntaxVariableName& variable, int cubeIndexInDim) {
  std::vector<Node*> nodes;
  nodes.reserve(categories.size());
  for (size_t i = 0; i < categories.size(); ++i) {
    nodes.push_back(NewCategoryNode(categories[i], variable.GetIsEmptyInclude(), i, cubeIndexInDim));
  }
  return nodes;
}

void QuiltTable::ProcessComperimeterCategs(HeaderTreeNode* parent, const std::vector<HeaderTreeNode*>& tempCats) {
  std::vector<Node*> categories;
  ProcessComperimeterCategs(tempCats, categories);
  parent->NestStack(categories);
}

void QuiltTable::ProcessComperimeterCategsNoTotals(HeaderTreeNode* parent,
                                                   const std::vector<HeaderTreeNode*>& tempCats) {
  QUILT_ASSERT(parent != nullptr, "moved labels are placed under a node");
  QUILT_ASSERT(!tempCats.empty(), "labels moved by CLABELS arrive with at least one placeholder");
  std::vector<Node*> nodes = NewCategoryNodes(MergedCategories(tempCats, /*onlyCategories=*/true),
                                              *tempCats[0]->GetVariable(), tempCats[0]->GetCubeIndexInDim());
  parent->NestStack(nodes);
  const std::vector<Node*>& kids = tempCats[0]->GetChildren();
  if (!kids.empty()) {
    std::vector<Node*> clones;
    for (const Node* kid : kids) clones.push_back(kid->Clone());
    parent->NestStack(clones);
  }
}
