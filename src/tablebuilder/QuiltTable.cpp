// QuiltTable.cpp - the table record: preliminary trees from the parsed table, slots, final trees
#include "tablebuilder/QuiltTable.h"

#include <array>
#include <ostream>

#include "host/QuiltAssert.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationTable.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/TableDimension.h"
#include "parser/SigTestSettings.h"
#include "parser/SubTableCube.h"
#include "parser/Statistics.h"
#include "parser/SyntaxComposite.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"
#include "parser/VariableComposite.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltTableData.h"
#include "tablebuilder/StatTreeNode.h"

namespace {

using Node = HeaderTreeNode;
using Codes = TableEncryptionCodes;

const std::vector<SyntaxConverter*>& ChildrenOf(SyntaxConverter* node) {
  return static_cast<SyntaxComposite*>(node)->GetChildren();
}

// A parenthesised group stands for its content.
SyntaxConverter* Unwrap(SyntaxConverter* node) {
  while (node != nullptr && node->GetType() == kConverterParen) {
    QUILT_ASSERT(!ChildrenOf(node).empty(), "an empty paren reached the table builder");
    node = ChildrenOf(node)[0];
  }
  return node;
}

bool IsVariableNode(const SyntaxConverter* node) {
  return node->GetType() == kConverterVariable || node->GetType() == kConverterMRSet;
}

bool IsScale(const SyntaxVariableName* variable) {
  return variable->GetVariableType() == TableEncryptionCodes::kVariableScale;
}

// Two statistics are of one kind when their codes are, and percentiles share the cut point.
bool SameKind(const StatTreeNode* node, const Statistics& statistics) {
  if (node->GetStatType() != statistics.GetStatType()) return false;
  const int primary = statistics.GetPrimaryStatistic();
  if (primary == TableEncryptionCodes::kStatPtile || primary == TableEncryptionCodes::kStatUPtile) {
    return statistics.GetCutPoint() == node->GetPtileValue();
  }
  return true;
}

bool ContainsKind(const std::vector<StatTreeNode*>& nodes, const Statistics& statistics) {
  for (const StatTreeNode* node : nodes) {
    if (SameKind(node, statistics)) return true;
  }
  return false;
}

// Whether the right side of a + continues the run of scale variables of its left side.
bool PrevInSameCube(SyntaxConverter* node) {
  node = Unwrap(node);
  if (node->GetType() == kConverterPlus) return PrevInSameCube(ChildrenOf(node)[1]);
  if (node->GetType() == kConverterVariable) return IsScale(static_cast<SyntaxVariableName*>(node));
  return false;
}

// The leftmost scale variable of a stack, or null when the stack starts otherwise.
SyntaxVariableName* GetLeftSummant(SyntaxConverter* node) {
  node = Unwrap(node);
  if (node->GetType() == kConverterPlus) return GetLeftSummant(ChildrenOf(node)[0]);
  if (node->GetType() == kConverterVariable) {
    auto* variable = static_cast<SyntaxVariableName*>(node);
    return IsScale(variable) ? variable : nullptr;
  }
  return nullptr;
}

bool IsTempKind(Node::HNodeType type) {
  return type == Node::kHNodeTypeTempCategories || type == Node::kHNodeTypeTempTotal;
}

// Numbers the sub-table slots of a dimension depth first; all categories of a variable
// share their slots, and adjacent scale summands that share a cube take one slot.
void AssignIndices(Node* node, int& index) {
  const Node::HNodeType type = node->GetType();
  node->SetCubeIndexInDim(index);
  if (type == Node::kHNodeTypeStatistic) return;
  const std::vector<Node*>& children = node->GetChildren();
  if (type == Node::kHNodeTypeCatVariable) {
    if (node->IsLeaf()) {
      ++index;
      return;
    }
    const int base = index;
    const Node::HNodeType firstType = children[0]->GetType();
    const bool shareSlots = firstType == Node::kHNodeTypeCategory || IsTempKind(firstType);
    for (Node* child : children) {
      if (shareSlots) index = base;
      AssignIndices(child, index);
    }
    if (index == base) ++index;
    return;
  }
  if (type == Node::kHNodeTypeScaleVariable) {
    for (Node* child : children) AssignIndices(child, index);
    return;
  }
  // Root, category and the placeholders: a run of scale children is closed by the next
  // non-scale sibling.
  int mark = index;
  bool previousWasScale = false;
  for (Node* child : children) {
    const bool childIsScale = child->GetType() == Node::kHNodeTypeScaleVariable;
    if (childIsScale) {
      if (!previousWasScale) {
        mark = index;
      } else if (child->GetSameCubeAsPrev()) {
        index = mark;
      } else if (index == mark) {
        ++index;
        ++mark;
      } else {
        mark = index;
      }
      AssignIndices(child, index);
    } else {
      const bool closesRun = type == Node::kHNodeTypeRoot || child->GetType() == Node::kHNodeTypeCatVariable;
      if (previousWasScale && closesRun && index == mark) ++index;
      AssignIndices(child, index);
      mark = index;
    }
    previousWasScale = childIsScale;
  }
  if (type != Node::kHNodeTypeRoot && previousWasScale && mark == index) ++index;
}

// A scale variable at the top of a dimension shows even without data.
void SetIncludeEmptyInScale(Node* root) {
  QUILT_ASSERT(root != nullptr, "root");
  for (Node* child : root->GetChildren()) {
    if (child->GetType() != Node::kHNodeTypeScaleVariable) continue;
    if (child->IsLeaf() || child->GetChildren()[0]->GetType() == Node::kHNodeTypeStatistic) {
      child->SetIncludeEmpty(true);
    }
  }
}

/// The row, column and layer parts of a table expression, null where a dimension has none:
/// `rows`, `BY columns`, `rows BY columns` or `rows BY columns BY layers`.
std::array<SyntaxConverter*, 3> SplitByDimension(SyntaxConverter* expression) {
  if (expression->GetType() != kConverterBy) {
    const int type = expression->GetType();
    QUILT_ASSERT(type == kConverterGreaterThan || type == kConverterMRSet || type == kConverterParen ||
                     type == kConverterPlus || type == kConverterVariable,
                 "a table expression starts with an operator, a paren or a variable");
    return {expression, nullptr, nullptr};
  }
  const std::vector<SyntaxConverter*>& kidsOfBy = ChildrenOf(expression);
  QUILT_ASSERT(kidsOfBy.size() == 2, "BY joins two dimensions");
  SyntaxConverter* left = kidsOfBy[0];
  SyntaxConverter* right = kidsOfBy[1];
  if (left->GetType() == kConverterDummy) return {nullptr, right, nullptr};
  if (left->GetType() != kConverterBy) return {left, right, nullptr};
  const std::vector<SyntaxConverter*>& inner = ChildrenOf(left);
  QUILT_ASSERT(inner.size() == 2, "the inner BY of a layered table joins rows and columns");
  return {inner[0], inner[1], right};
}

}  // namespace

TableDimension* QuiltTable::DimensionOf(const SyntaxVariableName* variable) {
  AggregationVariable* engineVariable = variable->GetAggregationVariable();
  QUILT_ASSERT(engineVariable != nullptr, "a variable of the table has no engine variable");
  TableDimension* dimension = engineVariable->GetTableDimension();
  QUILT_ASSERT(dimension != nullptr, "a categorical variable has no dimension");
  return dimension;
}

QuiltTable::QuiltTable() : _tableData(std::make_unique<Data>()) {}

QuiltTable::~QuiltTable() { Cleanup(); }

void QuiltTable::Cleanup() {
  Data& d = *_tableData;
  for (Node** root : {&d._rowHeaderRoot, &d._colHeaderRoot, &d._layerHeaderRoot, &d._prelimRowRoot,
                      &d._prelimColRoot, &d._prelimLayerRoot, &d._statTree}) {
    delete *root;
    *root = nullptr;
  }
  d._postComputeRequiredCat.reset();
  DestroyCollectedNodes();
  d._noValidCategory.reset();
  CleanTestTrees();
  d._cubeIndices.clear();
  // The statistics not placed in a tree are ours; placed ones belong to their trees.
  for (StatTreeNode* node : d._unplacedStatNodes) delete node;
  d._unplacedStatNodes.clear();
  d._statNodes.clear();
  d._totalStatNodes.clear();
}

void QuiltTable::DestroyCollectedNodes() {
  Data& d = *_tableData;
  if (d._comperimeterNodesUsed) {
    for (Node* node : d._comperimeterCategCollector) delete node;
  }
  d._comperimeterCategCollector.clear();
}

void QuiltTable::CleanTestTrees() {
  for (std::vector<Node*>& trees : _tableData->_sigTestTrees) {
    for (Node* tree : trees) delete tree;
  }
  _tableData->_sigTestTrees.clear();
}

void QuiltTable::BuildTableTreesFromSyntax(SyntaxTableSubcommand* table) {
  QUILT_ASSERT(table != nullptr, "a table is built from its TABLE subcommand");
  Data& d = *_tableData;
  d._syntaxTable = table;
  const TableSettings& settings = table->GetTableSettings();
  d._cLabelOption = settings.GetCLabelOption();
  d._sLabelPosition = settings.GetSLabelPosition();
  d._statsVisible = settings.GetSLabelVisibility();

  const std::vector<SyntaxConverter*>& subcommands = table->GetChildren();
  QUILT_ASSERT(!subcommands.empty() && subcommands[0] != nullptr, "a TABLE subcommand holds its expression");
  bool statsInOpposite = false;
  Node* rows = nullptr;
  Node* columns = nullptr;
  Node* layers = nullptr;
  BuildDimensionTrees(subcommands[0], statsInOpposite, rows, columns, layers);

  // Each tree gets a root of its own, so that every dimension has the same shape on top.
  for (Node** tree : {&rows, &columns, &layers}) {
    if ((*tree)->GetType() != Node::kHNodeTypeRoot) {
      Node* root = Node::CreateRoot();
      root->AddChild(*tree, false);
      *tree = root;
    }
  }
  d._prelimRowRoot = rows;
  d._prelimColRoot = columns;
  d._prelimLayerRoot = layers;

  if (!d._comperimeterCategCollector.empty()) {
    // Collected labels go to the dimension that carries them.
    const int from = GetLabelCarry(d._cLabelOption).from;
    Node* receiver = from == Codes::kDimensionRow ? rows : (from == Codes::kDimensionColumn ? columns : layers);
    receiver->NestStack(d._comperimeterCategCollector);
    d._comperimeterCategCollector.clear();
  }

  PlaceTableStatistics(statsInOpposite);
  AssignSlots();
  SetIncludeEmptyInScale(rows);
  SetIncludeEmptyInScale(columns);
  SetIncludeEmptyInScale(layers);

  d._sigTestSettings = settings.GetSigTestSettings();
  if (!d._sigTestSettings.empty()) RequestTestedSetTotals(table);
}

void QuiltTable::BuildDimensionTrees(SyntaxConverter* expression, bool& statsInOpposite, Node*& rows, Node*& columns,
                                     Node*& layers) {
  Data& d = *_tableData;
  const std::array<SyntaxConverter*, 3> parts = SplitByDimension(expression);
  // CLABELS ROWLABELS=OPPOSITE moves the row labels into the columns, COLLABELS=OPPOSITE the
  // column labels into the rows, ...=LAYER either into the layers; the dimension that gives
  // its labels away keeps no categories of its own, and the one that receives them is built
  // after it.
  const LabelCarry carry = GetLabelCarry(d._cLabelOption);
  const int statsDimension = d._sLabelPosition == PresentationCodes::kSLabelRow      ? Codes::kDimensionRow
                             : d._sLabelPosition == PresentationCodes::kSLabelColumn ? Codes::kDimensionColumn
                                                                                      : Codes::kDimensionLayer;
  const std::array<Node**, 3> trees = {&rows, &columns, &layers};
  const std::array<int, 3> order = carry.from == Codes::kDimensionRow ? std::array<int, 3>{1, 0, 2}
                                                                      : std::array<int, 3>{0, 1, 2};
  for (const int dimension : order) {
    SyntaxConverter* part = parts[static_cast<size_t>(dimension)];
    Node*& tree = *trees[static_cast<size_t>(dimension)];
    if (part == nullptr) {
      tree = Node::CreateRoot();
      continue;
    }
    const bool receive = carry.from == dimension && parts[static_cast<size_t>(carry.to)] != nullptr;
    tree = BuildTempSubtree(part, /*keepCats=*/carry.to != dimension, receive, statsDimension == dimension,
                            statsInOpposite);
  }
  // Labels bound for a dimension without an expression wait for its root.
  if (carry.from < 0 || parts[static_cast<size_t>(carry.from)] != nullptr) DestroyCollectedNodes();
  d._nRows = parts[0] != nullptr ? ExtractNCubes(parts[0]) : 1;
  d._nColumns = parts[1] != nullptr ? ExtractNCubes(parts[1]) : 1;
  d._nLayers = parts[2] != nullptr ? ExtractNCubes(parts[2]) : 1;
}

void QuiltTable::AssignSlots() {
  Data& d = *_tableData;
  // A tree numbers one slot per cube of its dimension; the last may be its total alone.
  int rowIndex = 0;
  AssignIndices(d._prelimRowRoot, rowIndex);
  QUILT_ASSERT(rowIndex == d._nRows || rowIndex == d._nRows - 1, "the row tree has one slot per row cube");
  int columnIndex = 0;
  AssignIndices(d._prelimColRoot, columnIndex);
  QUILT_ASSERT(columnIndex == d._nColumns || columnIndex == d._nColumns - 1,
               "the column tree has one slot per column cube");
  int layerIndex = 0;
  AssignIndices(d._prelimLayerRoot, layerIndex);
  QUILT_ASSERT(layerIndex == d._nLayers || layerIndex == d._nLayers - 1, "the layer tree has one slot per layer cube");

  d._cubeIndices.clear();
  int running = 0;
  for (int rowSlot = 0; rowSlot < d._nRows; ++rowSlot) {
    for (int columnSlot = 0; columnSlot < d._nColumns; ++columnSlot) {
      for (int layerSlot = 0; layerSlot < d._nLayers; ++layerSlot) d._cubeIndices.push_back(running++);
    }
  }
}

void QuiltTable::RequestTestedSetTotals(SyntaxTableSubcommand* table) {
  Data& d = *_tableData;
  // A multiple-response set that a test treats specially needs its total accumulated even
  // where the table does not show it.
  bool rowSetTested = false;
  for (const SigTestSettings& test : d._sigTestSettings) {
    rowSetTested = rowSetTested || test._type == TableEncryptionCodes::kSigTestChiSquare ||
                   test._type == TableEncryptionCodes::kSigTestProportions;
  }
  VariableComposite& composite = *table;
  for (int i = 0; i < composite.CubeCount(); ++i) {
    const SubTableCube* cube = composite[i];
    if (cube->GetInnerRowMRforTest() != nullptr && rowSetTested) {
      DimensionOf(cube->GetInnerRowMRforTest())->SetComputingTotal();
    }
    if (cube->GetInnerColMRforTest() != nullptr) DimensionOf(cube->GetInnerColMRforTest())->SetComputingTotal();
  }
}

void QuiltTable::PlaceTableStatistics(bool statsInOpposite) {
  Data& d = *_tableData;
  if (d._statNodes.empty()) return;
  Node* target = d._sLabelPosition == PresentationCodes::kSLabelRow
                     ? d._prelimRowRoot
                     : (d._sLabelPosition == PresentationCodes::kSLabelLayer ? d._prelimLayerRoot : d._prelimColRoot);
  std::vector<Node*> statNodes(d._statNodes.begin(), d._statNodes.end());
  std::vector<Node*> totalStatNodes(d._totalStatNodes.begin(), d._totalStatNodes.end());
  // From here on the nodes belong to the trees.
  d._unplacedStatNodes.clear();
  if (d._statsVisible && statsInOpposite && !totalStatNodes.empty()) {
    if (target->GetMaxHeight() == 0) {
      // Nothing to stand under: the statistics of the categories go straight on the root.
      for (Node* node : totalStatNodes) delete node;
      for (Node* node : statNodes) node->SetIncludeEmpty(true);
      target->NestStack(statNodes);
    } else {
      target->NestStats(statNodes, totalStatNodes);
    }
  } else if (d._statsVisible) {
    for (Node* node : totalStatNodes) delete node;
    if (target->IsLeaf()) {
      for (Node* node : statNodes) node->SetIncludeEmpty(true);
    }
    target->NestStack(statNodes);
  } else {
    for (Node* node : totalStatNodes) delete node;
    d._statTree = Node::CreateRoot();
    d._statTree->NestStack(statNodes);
  }
}

int QuiltTable::ExtractNCubes(SyntaxConverter* node) {
  if (node == nullptr) return 1;
  const int type = node->GetType();
  if (type == kConverterDummy || type == kConverterVariable || type == kConverterMRSet) return 1;
  const auto* composite = dynamic_cast<const VariableComposite*>(node);
  return composite != nullptr ? composite->CubeCount() : 1;
}

HeaderTreeNode* QuiltTable::BuildTempSubtree(SyntaxConverter* node, bool keepCats, bool receive, bool statsHere,
                                             bool& statsInOpposite) {
  Data& d = *_tableData;
  if (node == nullptr || node->GetType() == kConverterDummy) {
    Node* root = Node::CreateRoot();
    if (receive) {
      QUILT_ASSERT(!d._comperimeterCategCollector.empty(),
                   "the dimension receiving moved labels is built after the one giving them");
      root->NestStack(d._comperimeterCategCollector);
      d._comperimeterCategCollector.clear();
    }
    return root;
  }
  node = Unwrap(node);
  const int type = node->GetType();
  if (type == kConverterGreaterThan) {
    const std::vector<SyntaxConverter*>& children = ChildrenOf(node);
    QUILT_ASSERT(children.size() == 2, "a nesting has two operands");
    // Only the innermost variable of a nesting gives its labels away or receives others.
    Node* left = BuildTempSubtree(children[0], true, false, statsHere, statsInOpposite);
    Node* right = BuildTempSubtree(children[1], keepCats, receive, statsHere, statsInOpposite);
    left->Nest(right);
    return left;
  }
  if (type == kConverterPlus) {
    const std::vector<SyntaxConverter*>& children = ChildrenOf(node);
    QUILT_ASSERT(children.size() == 2, "a stacking has two operands");
    Node* root = Node::CreateRoot();
    root->AddChild(BuildTempSubtree(children[0], keepCats, receive, statsHere, statsInOpposite), false);
    const int k = root->GetNChildren();
    root->AddChild(BuildTempSubtree(children[1], keepCats, receive, statsHere, statsInOpposite), false);
    if (k < root->GetNChildren()) {
      Node* firstOfRight = root->GetChildren()[static_cast<size_t>(k)];
      const int leftType = Unwrap(children[0])->GetType();
      SyntaxConverter* right = Unwrap(children[1]);
      const bool rightIsVariable = IsVariableNode(right);
      const bool rightIsStack = right->GetType() == kConverterPlus;
      if (firstOfRight->GetType() == Node::kHNodeTypeScaleVariable) {
        if (rightIsVariable && (leftType == kConverterVariable || leftType == kConverterPlus)) {
          firstOfRight->SetSameCubeAsPrev(PrevInSameCube(children[0]));
        } else if (rightIsStack && GetLeftSummant(right) != nullptr) {
          firstOfRight->SetSameCubeAsPrev(PrevInSameCube(children[0]));
        }
      }
    }
    return root;
  }
  QUILT_ASSERT(IsVariableNode(node), "a table expression holds operators, parens and variables only");
  auto* variable = static_cast<SyntaxVariableName*>(node);
  Node* variableNode = Node::Create(variable, keepCats, d._comperimeterCategCollector);
  if (receive && !d._comperimeterCategCollector.empty()) {
    std::vector<Node*> clones;
    for (const Node* collected : d._comperimeterCategCollector) clones.push_back(collected->Clone());
    variableNode->NestStack(clones);
    d._comperimeterNodesUsed = true;
  }
  if (variable->HasStatistics()) {
    if (statsHere) {
      PlaceStatisticsHere(variableNode, variable);
    } else {
      CollectStatistics(variable, keepCats, statsInOpposite);
    }
  }
  return variableNode;
}

void QuiltTable::CollectStatistics(SyntaxVariableName* variable, bool keepCats, bool& statsInOpposite) {
  Data& d = *_tableData;
  if (!statsInOpposite && !keepCats && d._statsVisible) {
    // The labels of this variable stand in the dimension that holds the statistics.
    const int position = d._sLabelPosition;
    const int statsDimension = position == PresentationCodes::kSLabelRow      ? Codes::kDimensionRow
                               : position == PresentationCodes::kSLabelColumn ? Codes::kDimensionColumn
                                                                               : Codes::kDimensionLayer;
    statsInOpposite = GetLabelCarry(d._cLabelOption).from == statsDimension;
  }
  auto add = [&](std::vector<StatTreeNode*>& list, const Statistics* statistics, bool forRegular) {
    if (ContainsKind(list, *statistics)) return;
    StatTreeNode* node = Node::Create(*statistics, forRegular);
    if (!d._statsVisible) node->SetHidden(true);
    list.push_back(node);
    d._unplacedStatNodes.push_back(node);
  };
  for (const Statistics* statistics : variable->GetStatistics()) add(d._statNodes, statistics, true);
  for (const Statistics* statistics : variable->GetTotalStats()) {
    add(statsInOpposite ? d._totalStatNodes : d._statNodes, statistics, false);
  }
}

void QuiltTable::PlaceStatisticsHere(HeaderTreeNode* variableNode, SyntaxVariableName* variable) {
  const bool hidden = !_tableData->_statsVisible;
  std::vector<Node*> regular;
  std::vector<Node*> total;
  for (const Statistics* statistics : variable->GetStatistics()) {
    StatTreeNode* node = Node::Create(*statistics, true);
    node->SetHidden(hidden);
    regular.push_back(node);
  }
  for (const Statistics* statistics : variable->GetTotalStats()) {
    StatTreeNode* node = Node::Create(*statistics, false);
    node->SetHidden(hidden);
    total.push_back(node);
  }
  if (total.empty()) {
    variableNode->NestStack(regular);
    return;
  }
  const bool bareScale = variableNode->GetType() == Node::kHNodeTypeScaleVariable && variableNode->IsLeaf();
  variableNode->AddStats(regular, total);
  // A bare scale variable takes no total statistics; they are ours to free.
  if (bareScale) {
    for (Node* node : total) delete node;
  }
}

int QuiltTable::GetCubeIndex(int i) const {
  const std::vector<int>& indices = _tableData->_cubeIndices;
  QUILT_ASSERT(i >= 0 && i < static_cast<int>(indices.size()), "a cube slot lies within the table");
  return indices[static_cast<size_t>(i)];
}

int QuiltTable::GetCubeIndex(int a, int b) const {
  const Data& d = *_tableData;
  if (d._nRows != 1 && d._nColumns != 1) return GetCubeIndex(a * d._nColumns + b);
  return GetCubeIndex(a * d._nLayers + b);
}

int QuiltTable::GetCubeIndex(int rowSlot, int columnSlot, int layerSlot) const {
  const Data& d = *_tableData;
  return GetCubeIndex((rowSlot * d._nColumns + columnSlot) * d._nLayers + layerSlot);
}

int QuiltTable::GetNRows() const { return _tableData->_nRows; }
int QuiltTable::GetNColumns() const { return _tableData->_nColumns; }
int QuiltTable::GetNLayers() const { return _tableData->_nLayers; }
HeaderTreeNode* QuiltTable::GetRowHeaderRoot() const { return _tableData->_rowHeaderRoot; }
HeaderTreeNode* QuiltTable::GetColHeaderRoot() const { return _tableData->_colHeaderRoot; }
HeaderTreeNode* QuiltTable::GetLayerHeaderRoot() const { return _tableData->_layerHeaderRoot; }
HeaderTreeNode* QuiltTable::GetPrelimRowRoot() const { return _tableData->_prelimRowRoot; }
HeaderTreeNode* QuiltTable::GetPrelimColRoot() const { return _tableData->_prelimColRoot; }
HeaderTreeNode* QuiltTable::GetPrelimLayerRoot() const { return _tableData->_prelimLayerRoot; }
AggregationTable* QuiltTable::GetAggregationTable() const { return _tableData->_aggregationTable; }
QuiltTable::SLabelPosition QuiltTable::GetStatPosition() const { return _tableData->_sLabelPosition; }
bool QuiltTable::AreStatsVisible() const { return _tableData->_statsVisible; }
QuiltTable::CLabelOption QuiltTable::GetClabelOption() const { return _tableData->_cLabelOption; }
HeaderTreeNode* QuiltTable::GetStatTree() const { return _tableData->_statTree; }
const std::vector<std::vector<HeaderTreeNode*>>& QuiltTable::GetSigTestTrees() const {
  return _tableData->_sigTestTrees;
}
const std::vector<SigTestSettings>& QuiltTable::GetSigTestSettings() const { return _tableData->_sigTestSettings; }
bool QuiltTable::HasSigTests() const { return !_tableData->_sigTestSettings.empty(); }
bool QuiltTable::HasSeparateSigTests() const {
  for (const SigTestSettings& settings : _tableData->_sigTestSettings) {
    if (!settings._merge) return true;
  }
  return false;
}
bool QuiltTable::HasRowAxisCubes() const { return _tableData->_hasRowAxisCubes; }
bool QuiltTable::HasColAxisCubes() const { return _tableData->_hasColAxisCubes; }
bool QuiltTable::HasLayerAxisCubes() const { return _tableData->_hasLayerAxisCubes; }

std::vector<AggregationCategory*>* QuiltTable::GetPostComputeRequiredCat() const {
  return _tableData->_postComputeRequiredCat.get();
}

void QuiltTable::SetPostComputeRequiredCat(const std::vector<AggregationCategory*>& categories) {
  Data& d = *_tableData;
  if (!d._postComputeRequiredCat) d._postComputeRequiredCat = std::make_unique<std::vector<AggregationCategory*>>();
  d._postComputeRequiredCat->insert(d._postComputeRequiredCat->end(), categories.begin(), categories.end());
}

void QuiltTable::ClearPostComputeRequiredCat() {
  if (_tableData->_postComputeRequiredCat) _tableData->_postComputeRequiredCat->clear();
}

void QuiltTable::BuildCompleteTable() {
  Data& d = *_tableData;
  CreateFinalTree(d._prelimRowRoot, d._rowHeaderRoot, d._hasRowAxisCubes, TableEncryptionCodes::kDimensionRow);
  CreateFinalTree(d._prelimColRoot, d._colHeaderRoot, d._hasColAxisCubes, TableEncryptionCodes::kDimensionColumn);
  CreateFinalTree(d._prelimLayerRoot, d._layerHeaderRoot, d._hasLayerAxisCubes, TableEncryptionCodes::kDimensionLayer);
}

void QuiltTable::CreateFinalTree(HeaderTreeNode* prelimRoot, HeaderTreeNode*& finalRoot, bool hasAxisCubes,
                                 int position) {
  QUILT_ASSERT(prelimRoot != nullptr, "prelimRoot");
  delete finalRoot;
  finalRoot = Node::CreateCopy(prelimRoot);
  if (prelimRoot->IsLeaf()) return;
  const std::vector<Node*>& children = prelimRoot->GetChildren();
  if (!hasAxisCubes) {
    if (children[0]->GetType() != Node::kHNodeTypeTempCategories) {
      for (size_t i = 0; i < children.size(); ++i) {
        children[i]->SetChildLoc(i);
        finalRoot->AddChild(BuildFinalSubtreeNoCubes(children[i]), true);
      }
    } else {
      // The root holds labels received from another dimension.
      ProcessComperimeterCategs(finalRoot, children);
    }
    return;
  }
  const std::vector<std::vector<CubeAggregator*>> cubes = _tableData->_aggregationTable->GetAxisCubeAggregators(position);
  const CategoryKey path;
  for (size_t i = 0; i < children.size(); ++i) {
    children[i]->SetChildLoc(i);
    Node* final = BuildFinalSubtreeUseCubes(children[i], path, cubes);
    if (final != nullptr) finalRoot->AddChild(final, true);
  }
}

HeaderTreeNode* QuiltTable::BuildFinalSubtreeNoCubes(const HeaderTreeNode* node) {
  const Node::HNodeType type = node->GetType();
  if (type == Node::kHNodeTypeStatistic) return Node::CreateCopy(node);
  Node* copy = Node::CreateCopy(node);
  if (node->IsLeaf()) return copy;
  const std::vector<Node*>& children = node->GetChildren();
  const Node::HNodeType firstType = children[0]->GetType();
  if (type == Node::kHNodeTypeScaleVariable) {
    if (firstType == Node::kHNodeTypeCatVariable || firstType == Node::kHNodeTypeStatistic) {
      for (size_t i = 0; i < children.size(); ++i) {
        children[i]->SetChildLoc(i);
        copy->AddChild(BuildFinalSubtreeNoCubes(children[i]), false);
      }
    } else {
      QUILT_ASSERT(firstType == Node::kHNodeTypeTempCategories, "a scale variable holds variables or statistics");
      ProcessComperimeterCategsNoTotals(copy, children);
    }
    return copy;
  }
  QUILT_ASSERT(type == Node::kHNodeTypeCatVariable, "a preliminary subtree starts with a variable or a statistic");
  if (firstType == Node::kHNodeTypeStatistic) {
    for (size_t i = 0; i < children.size(); ++i) {
      Node* clone = children[i]->Clone();
      clone->SetChildLoc(i);
      copy->AddChild(clone, false);
    }
    return copy;
  }
  QUILT_ASSERT(firstType == Node::kHNodeTypeTempCategories, "a categorical variable holds its placeholders");
  SyntaxVariableName* variable = node->GetVariable();
  QUILT_ASSERT(variable != nullptr, "var");
  for (Node* category :
       NewCategoryNodes(ShownCategories(*DimensionOf(variable)), *variable, node->GetCubeIndexInDim())) {
    copy->AddChild(category, false);
  }

  NestPlaceholderSubtrees(copy, children);
  return copy;
}

std::vector<HeaderTreeNode*> QuiltTable::FinalSubtreesUnder(const HeaderTreeNode* placeholder) {
  std::vector<Node*> finals;
  const std::vector<Node*>& grandkids = placeholder->GetChildren();
  if (grandkids.empty()) return finals;
  if (grandkids[0]->GetType() == Node::kHNodeTypeTempCategories) {
    ProcessComperimeterCategs(grandkids, finals);
  } else {
    for (size_t i = 0; i < grandkids.size(); ++i) {
      grandkids[i]->SetChildLoc(i);
      finals.push_back(BuildFinalSubtreeNoCubes(grandkids[i]));
    }
  }
  return finals;
}

void QuiltTable::NestPlaceholderSubtrees(HeaderTreeNode* copy, const std::vector<HeaderTreeNode*>& placeholders) {
  // What stands under a placeholder becomes final once and is then given to every category.
  if (placeholders.size() == 1) {
    std::vector<Node*> finals = FinalSubtreesUnder(placeholders[0]);
    if (!finals.empty() && !copy->IsLeaf()) {
      copy->NestStack(finals);
    } else {
      for (Node* final : finals) delete final;
    }
    return;
  }
  QUILT_ASSERT(placeholders.size() == 2, "a variable has one placeholder for its categories and one for its totals");
  if (placeholders[0]->IsLeaf()) return;
  QUILT_ASSERT(!placeholders[1]->IsLeaf(), "the totals placeholder holds what stands under the totals");
  std::vector<Node*> finals[2] = {FinalSubtreesUnder(placeholders[0]), FinalSubtreesUnder(placeholders[1])};
  bool handedOut[2] = {false, false};
  for (Node* category : copy->GetChildren()) {
    const int group = category->GetCategory()->IsTotalKind() ? 1 : 0;
    if (!handedOut[group]) {
      handedOut[group] = true;
      category->NestStack(finals[group]);
    } else {
      for (size_t j = 0; j < finals[group].size(); ++j) {
        Node* clone = finals[group][j]->Clone();
        clone->SetChildLoc(j);
        category->AddChild(clone, true);
      }
    }
  }
  // A group with no category to receive it was never placed.
  for (int group = 0; group < 2; ++group) {
    if (!handedOut[group]) {
      for (Node* final : finals[group]) delete final;
    }
  }
  copy->UpdateChildInfo();
}

namespace {

void DumpTree(std::ostream& out, const char* title, const HeaderTreeNode* tree) {
  out << title << ":";
  if (tree == nullptr) {
    out << " none\n";
    return;
  }
  out << "\n";
  tree->Dump(out, 1);
}

// The key of every leaf of a final tree, as the renderer's walk sees it.
void DumpLeafKeys(std::ostream& out, const char* title, HeaderTreeNode* tree) {
  if (tree == nullptr) return;
  out << title << ":\n";
  QuiltTable::CategoryKey key;
  bool keyChanged = false;
  int emptyCount = 0;
  for (HeaderTreeNode* leaf = QuiltTable::FirstLeaf(tree, key, keyChanged, emptyCount); leaf != nullptr;
       leaf = QuiltTable::NextLeaf(leaf, key, keyChanged, emptyCount)) {
    out << "  [";
    const char* separator = "";
    for (const AggregationCategory* category : key) {
      out << separator << category->GetCatLabel();
      separator = ", ";
    }
    out << "] " << HeaderTreeNode::TypeName(leaf->GetType()) << " slot=" << leaf->GetCubeIndexInDim()
        << " includeEmpty=" << emptyCount << "\n";
  }
}

}  // namespace

void QuiltTable::Dump(std::ostream& out) const {
  const Data& d = *_tableData;
  out << "QuiltTable rows=" << d._nRows << " columns=" << d._nColumns << " layers=" << d._nLayers
      << " clabels=" << d._cLabelOption << " slabels=" << d._sLabelPosition
      << " statsVisible=" << (d._statsVisible ? 1 : 0) << " axisCubes=" << (d._hasRowAxisCubes ? 1 : 0)
      << (d._hasColAxisCubes ? 1 : 0) << (d._hasLayerAxisCubes ? 1 : 0) << " tests=" << d._sigTestSettings.size()
      << "\n";
  out << "Sub-table of each slot (row, column, layer):";
  size_t running = 0;
  for (int rowSlot = 0; rowSlot < d._nRows; ++rowSlot) {
    for (int columnSlot = 0; columnSlot < d._nColumns; ++columnSlot) {
      for (int layerSlot = 0; layerSlot < d._nLayers && running < d._cubeIndices.size(); ++layerSlot) {
        out << " (" << rowSlot << "," << columnSlot << "," << layerSlot << ")=" << d._cubeIndices[running++];
      }
    }
  }
  out << "\n";
  if (d._syntaxTable != nullptr) {
    out << "Sub-table cubes:\n";
    d._syntaxTable->PrintCubes(out, 2);
  }
  DumpTree(out, "Preliminary rows", d._prelimRowRoot);
  DumpTree(out, "Preliminary columns", d._prelimColRoot);
  DumpTree(out, "Preliminary layers", d._prelimLayerRoot);
  if (d._statTree != nullptr) DumpTree(out, "Hidden statistics", d._statTree);
  if (d._rowHeaderRoot == nullptr) return;
  DumpTree(out, "Final rows", d._rowHeaderRoot);
  DumpTree(out, "Final columns", d._colHeaderRoot);
  DumpTree(out, "Final layers", d._layerHeaderRoot);
  DumpLeafKeys(out, "Row leaf keys", d._rowHeaderRoot);
  DumpLeafKeys(out, "Column leaf keys", d._colHeaderRoot);
  DumpLeafKeys(out, "Layer leaf keys", d._layerHeaderRoot);
  for (size_t test = 0; test < d._sigTestTrees.size(); ++test) {
    out << "Test " << test << " type=" << d._sigTestSettings[test]._type << " trees=" << d._sigTestTrees[test].size()
        << "\n";
    for (const HeaderTreeNode* tree : d._sigTestTrees[test]) tree->Dump(out, 1);
  }
}
