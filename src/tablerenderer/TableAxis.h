// TableAxis.h - one pivot dimension bound to the header tree that fills it
#pragma once

#include <vector>

#include "host/output/BpDimension.h"

class BPTreeNode;
class HeaderTreeNode;
class ProcedureDataSource;

/// Binds a dimension of the pivot table to a final header tree. BuildBPTree makes every
/// group and category of the dimension in display order and collects the leaves, which the
/// cell rendering walks afterwards.
class TableAxis {
 public:
  /// Stores the four and builds nothing. `dataSource` may be null for an axis that is never
  /// built (the statistics axis when labels are hidden). `headerTree` is not owned.
  TableAxis(BpDimension& dimension, BpDimension::Place place, HeaderTreeNode* headerTree,
            ProcedureDataSource* dataSource);
  virtual ~TableAxis();
  TableAxis(const TableAxis&) = delete;
  TableAxis& operator=(const TableAxis&) = delete;

  /// Builds the shadow tree and the dimension's groups and categories. `showStats` false:
  /// the statistics stand in a dimension of their own, so they are not made here.
  void BuildBPTree(bool showStats);

  const std::vector<BPTreeNode*>& GetLeaves() const;
  HeaderTreeNode* GetHeaderTree() const;
  BpDimension& GetBpDimension();
  BpDimension::Place GetPosition() const;

 private:
  BpDimension _bpDimension;
  std::vector<BPTreeNode*> _leaves;  // not owned; they live in the tree under _root
  ProcedureDataSource* _dataSource;
  BPTreeNode* _root = nullptr;  // owned
  HeaderTreeNode* _headerTree;
  BpDimension::Place _place;
};
