// TableAxis.cpp - one pivot dimension bound to the header tree that fills it
#include "tablerenderer/TableAxis.h"

#include "host/QuiltAssert.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablerenderer/BPTreeNode.h"

TableAxis::TableAxis(BpDimension& dimension, BpDimension::Place place, HeaderTreeNode* headerTree,
                     ProcedureDataSource* dataSource)
    : _bpDimension(dimension), _dataSource(dataSource), _headerTree(headerTree), _place(place) {}

TableAxis::~TableAxis() { delete _root; }

void TableAxis::BuildBPTree(bool showStats) {
  QUILT_ASSERT(_headerTree != nullptr && !_headerTree->IsLeaf(), "an axis is built from a filled header tree");
  QUILT_ASSERT(_root == nullptr, "an axis is built once");
  _root = BPTreeNode::CreateBPTree(_headerTree, 0, _dataSource, _bpDimension, _leaves, showStats, nullptr);
}

const std::vector<BPTreeNode*>& TableAxis::GetLeaves() const { return _leaves; }
HeaderTreeNode* TableAxis::GetHeaderTree() const { return _headerTree; }
BpDimension& TableAxis::GetBpDimension() { return _bpDimension; }
BpDimension::Place TableAxis::GetPosition() const { return _place; }
