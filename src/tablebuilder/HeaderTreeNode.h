// HeaderTreeNode.h - one node of a table's row, column or layer header tree, and the tree operations
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <set>
#include <string>
#include <vector>

class AggregationCategory;
class Statistics;
class StatTreeNode;
class SyntaxVariableName;

/// A node of a header tree. A tree describes one dimension of a table: which variables,
/// categories and statistics stand there, in which order and how deeply nested. A leaf is
/// one printable row, column or layer slice, and the path from the root to it names the
/// categories that select its cells.
///
/// Every tree exists twice: the preliminary tree, built from the parsed command with
/// placeholder nodes standing for all categories of a variable, and the final tree of a
/// split group, with one node per category that survived.
///
/// A node owns its children and deletes them with itself. Operations that take a child or
/// a subtree take it by ownership; Clone is deep. Nodes are always made on the heap.
class HeaderTreeNode {
 public:
  enum HNodeType : int32_t {
    kHNodeTypeRoot = 0,            // a tree's top, or the grouping of the two sides of a +
    kHNodeTypeCatVariable = 1,     // a categorical variable or a multiple-response set
    kHNodeTypeScaleVariable = 2,   // a scale variable
    kHNodeTypeCategory = 3,        // one category, shown as one label
    kHNodeTypeStatistic = 4,       // one statistic; the node is a StatTreeNode
    kHNodeTypeTempCategories = 5,  // preliminary placeholder for all regular categories
    kHNodeTypeTempTotal = 6,       // preliminary placeholder for the totals and subtotals
    kHNodeTypeLabel = 7,           // a fixed text column of a test table
    kHNodeTypeLetter = 8,          // a column letter of a test table
  };

  enum EmptyState : int32_t {
    kEmptyUnknown = 0,
    kEmptyYes = 1,
    kEmptyNo = 2,
  };

  virtual HeaderTreeNode* Clone() const;
  /// Whether both are statistics of one kind: the same code and, for percentiles, the same
  /// cut point. False when this node is no statistic.
  virtual bool IsSameStatistic(const HeaderTreeNode& other) const;
  virtual ~HeaderTreeNode();

  /// A shallow copy: the node alone, without parent, sibling or children. Keeps the empty
  /// state; the copy's clone-kids count is the source's number of children.
  HeaderTreeNode(const HeaderTreeNode& other);
  HeaderTreeNode& operator=(const HeaderTreeNode& other);

  // Creation. Each returns a new node owned by the caller.
  static HeaderTreeNode* CreateRoot();
  /// The placeholder for all regular categories of `variable` (not null).
  static HeaderTreeNode* Create(SyntaxVariableName* variable);
  /// The placeholder for the totals and subtotals of `variable` (not null).
  static HeaderTreeNode* CreateTempTot(SyntaxVariableName* variable);
  /// The preliminary variable node. A categorical variable gets its placeholders (and the
  /// totals placeholder when it has total statistics): as its own children when `keepHere`,
  /// else pushed onto `collector` for the dimension that shows its labels.
  static HeaderTreeNode* Create(SyntaxVariableName* variable, bool keepHere,
                                std::vector<HeaderTreeNode*>& collector);
  /// A category node; `category` is not owned.
  static HeaderTreeNode* Create(const AggregationCategory* category);
  /// A fixed text node of a test table.
  static HeaderTreeNode* Create(const std::string& text);
  /// A column letter node of a test table; `flag` has no effect.
  static HeaderTreeNode* Create(const std::string& text, bool flag);
  /// A statistic node copied from a parsed statistic. `forRegularCategories` tells the
  /// statistics of categories from those of the total category; it changes nothing stored.
  static StatTreeNode* Create(const Statistics& statistics, bool forRegularCategories);
  /// A shallow copy, except that a statistic is cloned so that it stays a StatTreeNode.
  static HeaderTreeNode* CreateCopy(const HeaderTreeNode* source);

  // Accessors.
  HNodeType GetType() const;
  SyntaxVariableName* GetVariable() const;
  const AggregationCategory* GetCategory() const;
  bool IsLeaf() const;
  const std::vector<HeaderTreeNode*>& GetChildren() const;
  int GetNChildren() const;
  int GetNLeaves() const;
  int GetMaxHeight() const;
  HeaderTreeNode* GetParent() const;
  void SetParent(HeaderTreeNode* parent);
  HeaderTreeNode* GetNextSibling() const;
  uint64_t GetChildLoc() const;
  void SetChildLoc(uint64_t location);
  int GetCloneKids() const;
  void SetCloneKids(int count);
  int GetCubeIndexInDim() const;
  void SetCubeIndexInDim(int index);
  bool GetSameCubeAsPrev() const;
  void SetSameCubeAsPrev(bool flag);
  bool IsIncludeEmpty() const;
  void SetIncludeEmpty(bool flag);
  const std::string& GetLabel() const;
  const std::string& getProperties() const;
  EmptyState GetEmptyState() const;
  bool IsEmpty() const;
  void SetEmpty(bool isEmpty);
  /// Whether `name` was dropped from a test table on an earlier sibling branch.
  bool varPresent(const std::string& name) const;
  /// Empties the child list without destroying anything; the caller owns the children.
  void ClearChildren();

  // Tree operations.
  /// Appends `child` and keeps leaf count and height. A root child is dissolved: its
  /// children are appended in order and the root itself is destroyed, which is how the two
  /// sides of a + merge. With `updateAncestors` the ancestors are brought up to date.
  /// Returns the number of children.
  int AddChild(HeaderTreeNode* child, bool updateAncestors);
  /// Recomputes leaf count and height here and in every ancestor. Height is only ever
  /// raised, so code that takes children away resets it first.
  void UpdateChildInfo();
  /// Places `subtree` under every leaf: the subtree itself under the first leaf, clones
  /// under the others. Below a variable whose children are statistics, the subtree goes in
  /// between and each of its leaves receives the statistics. Returns the nodes placed.
  int Nest(HeaderTreeNode* subtree);
  /// Places the nodes of `stack` as a row of siblings under every leaf. On a node whose
  /// children are statistics, the stack goes in between; a stack of statistics there changes
  /// nothing and is destroyed. Takes the nodes; `stack` keeps the dangling pointers.
  int NestStack(const std::vector<HeaderTreeNode*>& stack);
  /// Attaches statistics on a node just above the leaves, or on a bare variable: `total`
  /// goes to total and subtotal children (when given), `regular` to all others. On a bare
  /// categorical variable a total statistic equal to a regular one merges into it. Both
  /// vectors are consumed, except on a bare scale variable, which takes `regular` only.
  int AddStats(std::vector<HeaderTreeNode*>& regular, std::vector<HeaderTreeNode*>& total);
  /// AddStats at the level just above the leaves. On a leaf the statistics are destroyed
  /// without being placed, so callers test for that case.
  int NestStats(std::vector<HeaderTreeNode*>& regular, std::vector<HeaderTreeNode*>& total);
  /// Pushes `child` in as the only child, taking over the present children.
  void insertChild(HeaderTreeNode* child);
  /// Records `name` on this node (unless `skipThis`) and on every later sibling.
  void AddPriorVar(const std::string& name, bool skipThis);
  /// Appends a property word, comma separated.
  void addProperty(const std::string& word);
  /// Whether the whole subtree is empty; stores the answer in inner nodes.
  bool PropagateEmptyInfo();

  /// One node per line, two blanks per level: kind, what it names, leaves, height, slot,
  /// the flags. Stable for tests; no addresses.
  void Dump(std::ostream& out, int depth = 0) const;
  /// The name of a node kind, as the dump writes it.
  static const char* TypeName(HNodeType type);

 protected:
  explicit HeaderTreeNode(HNodeType type);
  /// The kind-specific part of a dump line, after the kind.
  virtual void DumpDetails(std::ostream& out) const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
