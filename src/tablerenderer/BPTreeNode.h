// BPTreeNode.h - a shadow of a header tree node that knows the pivot group its label stands in
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "host/output/BpGroup.h"

class AggregationCategory;
class BpComposite;
class BpCellText;
class HeaderTreeNode;
class ProcedureDataSource;
class SyntaxVariableName;

/// One node of the tree that mirrors a final header tree while its dimension is built.
/// Several nodes may shadow one header node: a hidden grouping level adds a node of its own.
/// A node owns its children.
class BPTreeNode {
 public:
  /// Reads the cube index of `header` and copies `group`, the group this node's label
  /// stands in.
  BPTreeNode(HeaderTreeNode* header, int depth, BpGroup& group);
  virtual ~BPTreeNode();
  BPTreeNode(const BPTreeNode&) = delete;
  BPTreeNode& operator=(const BPTreeNode&) = delete;

  /// Takes `child` (not null), hands it the statistics source; returns the child count.
  int AddChild(BPTreeNode* child);

  /// The variable whose statistics this node's cells show: the one handed down, else this
  /// node's own variable, else, for a statistic, its parent's variable. Null if none.
  SyntaxVariableName* GetSourceVariable() const;
  SyntaxVariableName* GetStatSourceVar() const;
  BpGroup& GetParentGroup();
  BPTreeNode* GetParent() const;
  HeaderTreeNode* GetHeaderTreeNode() const;
  int GetIndex() const;
  const std::vector<BPTreeNode*>& GetChildren() const;

  /// A new text for this node's header node; selecting it in the parent group selects the
  /// leaf's category again.
  std::unique_ptr<BpCellText> CreateCellText(ProcedureDataSource* dataSource) const;

  /// Builds the shadow of `header` and the groups and categories below `parentGroup`;
  /// pushes the dimension's leaves in display order. Returns the new node (owned by the
  /// caller).
  static BPTreeNode* CreateBPTree(HeaderTreeNode* header, int depth, ProcedureDataSource* dataSource,
                                  BpGroup& parentGroup, std::vector<BPTreeNode*>& leaves, bool showStats,
                                  SyntaxVariableName* sourceVar);
  /// Builds the children, with a hidden grouping level where equal labels must stay apart.
  static int ProcessKids(const std::vector<HeaderTreeNode*>& children, BPTreeNode* parent, int depth,
                         ProcedureDataSource* dataSource, BpGroup& group, std::vector<BPTreeNode*>& leaves,
                         bool showStats, SyntaxVariableName* sourceVar);
  /// The label of a header node by its kind; `hide` is set for a variable whose label
  /// VLABELS=NONE hides.
  static std::unique_ptr<BpCellText> CreateCellText(const HeaderTreeNode* header, ProcedureDataSource* dataSource,
                                                    bool& hide);
  /// The label of a category; null (after a warning) for a type no table holds.
  static std::unique_ptr<BpCellText> MakeCategoryText(const AggregationCategory* category,
                                                      ProcedureDataSource* dataSource);
  /// A category's own label, with the label references of a computed category expanded.
  static std::string GetCategoryText(const AggregationCategory* category, ProcedureDataSource* dataSource,
                                     bool& isDefault);
  /// MakeCategoryText as an argument added to `composite`.
  static void AddCategoryText(const HeaderTreeNode* headerNode, ProcedureDataSource* dataSource,
                              BpComposite& composite);

 private:
  /// The key of the hidden level that keeps a statistic apart from equal labels.
  static std::unique_ptr<BpCellText> StatisticGroupKey(const HeaderTreeNode* statistic);
  /// The label of a variable node under its VLABELS option.
  static std::unique_ptr<BpCellText> VariableText(const HeaderTreeNode* header, ProcedureDataSource* dataSource,
                                                  bool& hide);
  static std::unique_ptr<BpCellText> StatisticText(const HeaderTreeNode* header);
  /// Makes a hidden group between `group` and the child's own tree.
  static void AddHiddenLevel(const BpCellText& key, HeaderTreeNode* child, BPTreeNode* parent, int depth,
                             ProcedureDataSource* dataSource, BpGroup& group, std::vector<BPTreeNode*>& leaves,
                             bool showStats, SyntaxVariableName* sourceVar);

  BPTreeNode* _parent = nullptr;
  std::vector<BPTreeNode*> _children;  // owned
  HeaderTreeNode* _headerNode;         // not owned
  int _cubeIndex;
  int _depth;
  bool _isLeaf = true;
  BpGroup _group;
  SyntaxVariableName* _statSourceVar = nullptr;
};
