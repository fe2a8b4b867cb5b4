// HeaderTreeNode.cpp - header tree nodes: creation, copying, nesting, statistics and bookkeeping
#include "tablebuilder/HeaderTreeNode.h"

#include <ostream>

#include "host/QuiltAssert.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/TableEncryptionCodes.h"
#include "parser/Statistics.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/StatTreeNode.h"

struct HeaderTreeNode::Data {
  std::vector<HeaderTreeNode*> _children;           // owned, in display order
  HeaderTreeNode* _parent = nullptr;                // not owned; null on a tree's top node
  HNodeType _type = kHNodeTypeRoot;                 // the node kind
  const AggregationCategory* _category = nullptr;   // not owned; set on category nodes
  SyntaxVariableName* _variable = nullptr;          // not owned; variable and placeholder kinds
  int32_t _nChildren = 0;                           // always the size of _children
  int32_t _nLeaves = 1;                             // leaves under this node; a leaf counts itself
  int32_t _maxHeight = 0;                           // longest downward path in edges
  int32_t _cubeIndexInDim = 0;                      // sub-table slot of the dimension
  HeaderTreeNode* _nextSibling = nullptr;           // not owned; next child of the same parent
  bool _sameCubeAsPrev = false;                     // a scale summand sharing the left one's slot
  std::string _label;                               // text of label and letter nodes
  EmptyState _emptyState = kEmptyUnknown;           // whether the rendered row or column held data
  bool _includeEmpty = false;                       // shown even when nothing was observed
  uint64_t _childLoc = 0;                           // position under the preliminary parent
  int32_t _cloneKids = 0;                           // on a copy: the source's number of children
  std::set<std::string> _priorVars;                 // variables dropped on earlier sibling branches
  std::string _properties;                          // comma-separated property words
};

namespace {

// Whether a child stands for a total or subtotal, and so receives the total statistics.
bool IsTotalLike(const HeaderTreeNode* node) {
  if (node->GetType() == HeaderTreeNode::kHNodeTypeTempTotal) return true;
  const AggregationCategory* category = node->GetCategory();
  if (category == nullptr) return false;
  return category->IsTotalKind();
}

std::vector<HeaderTreeNode*> CloneAll(const std::vector<HeaderTreeNode*>& nodes) {
  std::vector<HeaderTreeNode*> clones;
  clones.reserve(nodes.size());
  for (const HeaderTreeNode* node : nodes) clones.push_back(node->Clone());
  return clones;
}

void DestroyAll(std::vector<HeaderTreeNode*>& nodes) {
  for (HeaderTreeNode* node : nodes) delete node;
  nodes.clear();
}

bool FirstChildIsStatistic(const HeaderTreeNode* node) {
  return !node->IsLeaf() && node->GetChildren()[0]->GetType() == HeaderTreeNode::kHNodeTypeStatistic;
}

}  // namespace

HeaderTreeNode::HeaderTreeNode(HNodeType type) : _data(std::make_unique<Data>()) { _data->_type = type; }

HeaderTreeNode::HeaderTreeNode(const HeaderTreeNode& other) : _data(std::make_unique<Data>()) { *this = other; }

HeaderTreeNode& HeaderTreeNode::operator=(const HeaderTreeNode& other) {
  if (this == &other) return *this;
  // A copy is one node: it neither owns the source's children nor sits in its tree.
  QUILT_ASSERT(_data->_children.empty(), "shallow assignment onto a node with children");
  *_data = *other._data;
  _data->_children.clear();
  _data->_parent = nullptr;
  _data->_nextSibling = nullptr;
  _data->_nChildren = 0;
  _data->_nLeaves = 1;
  _data->_maxHeight = 0;
  _data->_cloneKids = other._data->_nChildren;
  return *this;
}

HeaderTreeNode::~HeaderTreeNode() {
  for (HeaderTreeNode* child : _data->_children) delete child;
  _data->_children.clear();
}

HeaderTreeNode* HeaderTreeNode::Clone() const {
  auto* clone = new HeaderTreeNode(*this);
  clone->_data->_emptyState = kEmptyUnknown;
  for (const HeaderTreeNode* child : _data->_children) {
    QUILT_ASSERT(child != nullptr, "null child in a cloned tree");
    clone->AddChild(child->Clone(), false);
  }
  return clone;
}

HeaderTreeNode* HeaderTreeNode::CreateRoot() {
  auto* root = new HeaderTreeNode(kHNodeTypeRoot);
  root->_data->_cubeIndexInDim = -1;
  return root;
}

HeaderTreeNode* HeaderTreeNode::Create(SyntaxVariableName* variable) {
  QUILT_ASSERT(variable != nullptr, "placeholder without a variable");
  auto* node = new HeaderTreeNode(kHNodeTypeTempCategories);
  node->_data->_variable = variable;
  return node;
}

HeaderTreeNode* HeaderTreeNode::CreateTempTot(SyntaxVariableName* variable) {
  QUILT_ASSERT(variable != nullptr, "totals placeholder without a variable");
  auto* node = new HeaderTreeNode(kHNodeTypeTempTotal);
  node->_data->_variable = variable;
  return node;
}

HeaderTreeNode* HeaderTreeNode::Create(SyntaxVariableName* variable, bool keepHere,
                                       std::vector<HeaderTreeNode*>& collector) {
  QUILT_ASSERT(variable != nullptr, "variable node without a variable");
  const bool isScale = variable->GetVariableType() == TableEncryptionCodes::kVariableScale;
  auto* node = new HeaderTreeNode(isScale ? kHNodeTypeScaleVariable : kHNodeTypeCatVariable);
  node->_data->_variable = variable;
  if (isScale) return node;

  std::vector<HeaderTreeNode*> placeholders{Create(variable)};
  if (variable->GetHasTotalStats()) placeholders.push_back(CreateTempTot(variable));
  const bool includeEmpty = variable->GetIsEmptyInclude();
  for (HeaderTreeNode* placeholder : placeholders) {
    placeholder->SetIncludeEmpty(includeEmpty);
    if (keepHere) {
      node->AddChild(placeholder, false);
    } else {
      collector.push_back(placeholder);
    }
  }
  return node;
}

HeaderTreeNode* HeaderTreeNode::Create(const AggregationCategory* category) {
  auto* node = new HeaderTreeNode(kHNodeTypeCategory);
  node->_data->_category = category;
  return node;
}

HeaderTreeNode* HeaderTreeNode::Create(const std::string& text) {
  auto* node = new HeaderTreeNode(kHNodeTypeLabel);
  node->_data->_label = text;
  return node;
}

HeaderTreeNode* HeaderTreeNode::Create(const std::string& text, bool /*flag*/) {
  auto* node = new HeaderTreeNode(kHNodeTypeLetter);
  node->_data->_label = text;
  return node;
}

StatTreeNode* HeaderTreeNode::Create(const Statistics& statistics, bool /*forRegularCategories*/) {
  return new StatTreeNode(statistics);
}

HeaderTreeNode* HeaderTreeNode::CreateCopy(const HeaderTreeNode* source) {
  QUILT_ASSERT(source != nullptr, "copy of a null node");
  if (source->GetType() == kHNodeTypeStatistic) {
    HeaderTreeNode* clone = source->Clone();
    clone->_data->_emptyState = source->_data->_emptyState;
    return clone;
  }
  return new HeaderTreeNode(*source);
}

HeaderTreeNode::HNodeType HeaderTreeNode::GetType() const { return _data->_type; }
SyntaxVariableName* HeaderTreeNode::GetVariable() const { return _data->_variable; }
const AggregationCategory* HeaderTreeNode::GetCategory() const { return _data->_category; }
bool HeaderTreeNode::IsSameStatistic(const HeaderTreeNode& /*other*/) const { return false; }

bool HeaderTreeNode::IsLeaf() const { return _data->_children.empty(); }
const std::vector<HeaderTreeNode*>& HeaderTreeNode::GetChildren() const { return _data->_children; }
int HeaderTreeNode::GetNChildren() const { return _data->_nChildren; }
int HeaderTreeNode::GetNLeaves() const { return _data->_nLeaves; }
int HeaderTreeNode::GetMaxHeight() const { return _data->_maxHeight; }
HeaderTreeNode* HeaderTreeNode::GetParent() const { return _data->_parent; }
void HeaderTreeNode::SetParent(HeaderTreeNode* parent) { _data->_parent = parent; }
HeaderTreeNode* HeaderTreeNode::GetNextSibling() const { return _data->_nextSibling; }
uint64_t HeaderTreeNode::GetChildLoc() const { return _data->_childLoc; }
void HeaderTreeNode::SetChildLoc(uint64_t location) { _data->_childLoc = location; }
int HeaderTreeNode::GetCloneKids() const { return _data->_cloneKids; }
void HeaderTreeNode::SetCloneKids(int count) { _data->_cloneKids = count; }
int HeaderTreeNode::GetCubeIndexInDim() const { return _data->_cubeIndexInDim; }
void HeaderTreeNode::SetCubeIndexInDim(int index) { _data->_cubeIndexInDim = index; }
bool HeaderTreeNode::GetSameCubeAsPrev() const { return _data->_sameCubeAsPrev; }
void HeaderTreeNode::SetSameCubeAsPrev(bool flag) { _data->_sameCubeAsPrev = flag; }
bool HeaderTreeNode::IsIncludeEmpty() const { return _data->_includeEmpty; }
void HeaderTreeNode::SetIncludeEmpty(bool flag) { _data->_includeEmpty = flag; }
const std::string& HeaderTreeNode::GetLabel() const { return _data->_label; }
const std::string& HeaderTreeNode::getProperties() const { return _data->_properties; }
HeaderTreeNode::EmptyState HeaderTreeNode::GetEmptyState() const { return _data->_emptyState; }
bool HeaderTreeNode::IsEmpty() const { return _data->_emptyState == kEmptyYes; }
void HeaderTreeNode::SetEmpty(bool isEmpty) { _data->_emptyState = isEmpty ? kEmptyYes : kEmptyNo; }
bool HeaderTreeNode::varPresent(const std::string& name) const { return _data->_priorVars.count(name) > 0; }

void HeaderTreeNode::ClearChildren() {
  _data->_children.clear();
  _data->_nChildren = 0;
}

int HeaderTreeNode::AddChild(HeaderTreeNode* child, bool updateAncestors) {
  QUILT_ASSERT(child != nullptr, "null child added to a header tree");
  if (child->GetType() == kHNodeTypeRoot) {
    // A root never stays inside a tree: its children take its place.
    const std::vector<HeaderTreeNode*> grandchildren = child->_data->_children;
    child->ClearChildren();
    delete child;
    for (HeaderTreeNode* grandchild : grandchildren) AddChild(grandchild, false);
  } else {
    child->_data->_parent = this;
    child->_data->_nextSibling = nullptr;
    if (!_data->_children.empty()) _data->_children.back()->_data->_nextSibling = child;
    _data->_children.push_back(child);
    ++_data->_nChildren;
    if (_data->_nChildren == 1) {
      _data->_nLeaves = child->_data->_nLeaves;
    } else {
      _data->_nLeaves += child->_data->_nLeaves;
    }
    if (child->_data->_maxHeight + 1 > _data->_maxHeight) _data->_maxHeight = child->_data->_maxHeight + 1;
  }
  if (updateAncestors && _data->_parent != nullptr) _data->_parent->UpdateChildInfo();
  return _data->_nChildren;
}

void HeaderTreeNode::UpdateChildInfo() {
  for (HeaderTreeNode* node = this; node != nullptr; node = node->_data->_parent) {
    QUILT_ASSERT(node->_data->_nChildren > 0, "child information updated on a leaf");
    int leaves = 0;
    for (const HeaderTreeNode* child : node->_data->_children) {
      leaves += child->_data->_nLeaves;
      if (child->_data->_maxHeight + 1 > node->_data->_maxHeight) {
        node->_data->_maxHeight = child->_data->_maxHeight + 1;
      }
    }
    node->_data->_nLeaves = leaves;
  }
}

int HeaderTreeNode::Nest(HeaderTreeNode* subtree) {
  QUILT_ASSERT(subtree != nullptr, "nesting a null subtree");
  if (subtree->GetType() == kHNodeTypeRoot) {
    const std::vector<HeaderTreeNode*> stack = subtree->_data->_children;
    subtree->ClearChildren();
    delete subtree;
    return NestStack(stack);
  }
  if (IsLeaf()) {
    AddChild(subtree, false);
    if (_data->_parent != nullptr) _data->_parent->UpdateChildInfo();
    return 1;
  }
  if (FirstChildIsStatistic(this)) {
    // The subtree goes between this node and its statistics, and every leaf of the subtree
    // receives its own copy of them.
    const std::vector<HeaderTreeNode*> saved = _data->_children;
    ClearChildren();
    _data->_maxHeight = 0;
    _data->_nLeaves = 1;
    AddChild(subtree, false);
    subtree->NestStack(saved);
    UpdateChildInfo();
    return 1;
  }
  int placed = 0;
  for (size_t i = 1; i < _data->_children.size(); ++i) placed += _data->_children[i]->Nest(subtree->Clone());
  placed += _data->_children[0]->Nest(subtree);
  UpdateChildInfo();
  return placed;
}

int HeaderTreeNode::NestStack(const std::vector<HeaderTreeNode*>& stack) {
  if (stack.empty()) return 0;
  if (IsLeaf()) {
    for (HeaderTreeNode* node : stack) AddChild(node, false);
    return static_cast<int>(stack.size());
  }
  if (!FirstChildIsStatistic(this)) {
    int placed = 0;
    for (size_t i = 1; i < _data->_children.size(); ++i) placed += _data->_children[i]->NestStack(CloneAll(stack));
    placed += _data->_children[0]->NestStack(stack);
    UpdateChildInfo();
    return placed;
  }
  if (stack[0]->GetType() == kHNodeTypeStatistic) {
    // Statistics are already in place; the caller has given these up.
    for (HeaderTreeNode* node : stack) delete node;
    return 0;
  }
  const std::vector<HeaderTreeNode*> saved = _data->_children;
  ClearChildren();
  _data->_maxHeight = 0;
  _data->_nLeaves = 1;
  for (HeaderTreeNode* node : stack) AddChild(node, false);
  const int placed = static_cast<int>(stack.size()) + NestStack(saved);
  UpdateChildInfo();
  return placed;
}

int HeaderTreeNode::AddStats(std::vector<HeaderTreeNode*>& regular, std::vector<HeaderTreeNode*>& total) {
  if (_data->_type == kHNodeTypeScaleVariable && IsLeaf()) {
    for (HeaderTreeNode* stat : regular) AddChild(stat, false);
    // The scale variable keeps no total; the caller still owns `total`, and `regular`
    // points at the nodes now in the tree.
    return static_cast<int>(regular.size());
  }
  int placed = 0;
  if (_data->_type == kHNodeTypeCatVariable && IsLeaf()) {
    for (HeaderTreeNode* stat : regular) AddChild(stat, false);
    placed = static_cast<int>(regular.size());
    for (HeaderTreeNode* stat : total) {
      bool merged = false;
      for (const HeaderTreeNode* other : regular) merged = merged || stat->IsSameStatistic(*other);
      if (merged) {
        delete stat;
      } else {
        AddChild(stat, false);
        ++placed;
      }
    }
    regular.clear();
    total.clear();
    if (_data->_parent != nullptr) _data->_parent->UpdateChildInfo();
    return placed;
  }
  for (HeaderTreeNode* child : _data->_children) {
    const bool useTotal = IsTotalLike(child) && !total.empty();
    placed += child->NestStack(CloneAll(useTotal ? total : regular));
  }
  if (!IsLeaf()) UpdateChildInfo();
  DestroyAll(regular);
  DestroyAll(total);
  return placed;
}

int HeaderTreeNode::NestStats(std::vector<HeaderTreeNode*>& regular, std::vector<HeaderTreeNode*>& total) {
  if (_data->_maxHeight == 1) return AddStats(regular, total);
  int placed = 0;
  for (HeaderTreeNode* child : _data->_children) {
    std::vector<HeaderTreeNode*> regularCopies = CloneAll(regular);
    std::vector<HeaderTreeNode*> totalCopies = CloneAll(total);
    placed += child->NestStats(regularCopies, totalCopies);
    // A bare scale variable takes the regular statistics only; the rest are ours to free.
    DestroyAll(totalCopies);
  }
  if (!IsLeaf()) UpdateChildInfo();
  DestroyAll(regular);
  DestroyAll(total);
  return placed;
}

void HeaderTreeNode::insertChild(HeaderTreeNode* child) {
  if (child != nullptr && child->GetType() != kHNodeTypeRoot) {
    const std::vector<HeaderTreeNode*> present = _data->_children;
    ClearChildren();
    for (HeaderTreeNode* node : present) child->AddChild(node, false);
    _data->_maxHeight = 0;
    AddChild(child, false);
  }
  if (!IsLeaf()) UpdateChildInfo();
}

void HeaderTreeNode::AddPriorVar(const std::string& name, bool skipThis) {
  if (!skipThis) _data->_priorVars.insert(name);
  for (HeaderTreeNode* node = _data->_nextSibling; node != nullptr; node = node->_data->_nextSibling) {
    node->_data->_priorVars.insert(name);
  }
}

void HeaderTreeNode::addProperty(const std::string& word) {
  if (!_data->_properties.empty()) _data->_properties += ",";
  _data->_properties += word;
}

bool HeaderTreeNode::PropagateEmptyInfo() {
  if (IsLeaf()) return IsEmpty();
  if (_data->_emptyState == kEmptyYes) return true;
  bool allEmpty = true;
  for (HeaderTreeNode* child : _data->_children) {
    // Every child is visited so that each inner node below stores its own answer.
    const bool childEmpty = child->PropagateEmptyInfo();
    allEmpty = allEmpty && childEmpty;
  }
  SetEmpty(allEmpty);
  return allEmpty;
}

const char* HeaderTreeNode::TypeName(HNodeType type) {
  switch (type) {
    case kHNodeTypeRoot:
      return "Root";
    case kHNodeTypeCatVariable:
      return "CatVariable";
    case kHNodeTypeScaleVariable:
      return "ScaleVariable";
    case kHNodeTypeCategory:
      return "Category";
    case kHNodeTypeStatistic:
      return "Statistic";
    case kHNodeTypeTempCategories:
      return "TempCategories";
    case kHNodeTypeTempTotal:
      return "TempTotal";
    case kHNodeTypeLabel:
      return "Label";
    case kHNodeTypeLetter:
      return "Letter";
  }
  return "Unknown";
}

namespace {

const char* CategoryTypeName(int type) {
  switch (type) {
    case AggregationCategory::kNone:
      return "none";
    case AggregationCategory::kValue:
      return "value";
    case AggregationCategory::kSubtotal:
      return "subtotal";
    case AggregationCategory::kHSubtotal:
      return "hsubtotal";
    case AggregationCategory::kTotal:
      return "total";
    case AggregationCategory::kVariable:
      return "variable";
    case AggregationCategory::kPcompute:
      return "pcompute";
  }
  return "unknown";
}

const char* EmptyStateName(HeaderTreeNode::EmptyState state) {
  switch (state) {
    case HeaderTreeNode::kEmptyYes:
      return "yes";
    case HeaderTreeNode::kEmptyNo:
      return "no";
    case HeaderTreeNode::kEmptyUnknown:
      break;
  }
  return "unknown";
}

}  // namespace

void HeaderTreeNode::DumpDetails(std::ostream& out) const {
  switch (_data->_type) {
    case kHNodeTypeCatVariable:
    case kHNodeTypeScaleVariable:
    case kHNodeTypeTempCategories:
    case kHNodeTypeTempTotal:
      out << " " << (_data->_variable != nullptr ? _data->_variable->GetNameToken() : "?");
      break;
    case kHNodeTypeCategory:
      if (_data->_category != nullptr) {
        out << " '" << _data->_category->GetCatLabel() << "' " << CategoryTypeName(_data->_category->GetCatType());
      } else {
        out << " ?";
      }
      break;
    case kHNodeTypeLabel:
    case kHNodeTypeLetter:
      out << " '" << _data->_label << "'";
      break;
    case kHNodeTypeRoot:
    case kHNodeTypeStatistic:
      break;
  }
}

void HeaderTreeNode::Dump(std::ostream& out, int depth) const {
  out << std::string(static_cast<size_t>(depth) * 2, ' ') << TypeName(_data->_type);
  DumpDetails(out);
  out << " leaves=" << _data->_nLeaves << " height=" << _data->_maxHeight << " slot=" << _data->_cubeIndexInDim
      << " loc=" << _data->_childLoc << " includeEmpty=" << (_data->_includeEmpty ? 1 : 0)
      << " sameCube=" << (_data->_sameCubeAsPrev ? 1 : 0) << " empty=" << EmptyStateName(_data->_emptyState);
  if (!_data->_properties.empty()) out << " properties=" << _data->_properties;
  if (!_data->_priorVars.empty()) {
    out << " prior=";
    const char* separator = "";
    for (const std::string& name : _data->_priorVars) {
      out << separator << name;
      separator = ",";
    }
  }
  out << "\n";
  for (const HeaderTreeNode* child : _data->_children) child->Dump(out, depth + 1);
}
