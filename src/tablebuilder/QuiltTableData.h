// QuiltTableData.h - the private record of QuiltTable, shared by the files the class is split into
#pragma once

#include <memory>
#include <vector>

#include "host/engine/AggregationCategory.h"
#include "parser/SigTestSettings.h"
#include "tablebuilder/QuiltTable.h"

class HeaderTreeNode;
class StatTreeNode;

struct QuiltTable::Data {
  int _nRows = 1;     // sub-table slots in the rows; 1 for an empty dimension
  int _nColumns = 1;  // the same for the columns
  int _nLayers = 1;   // the same for the layers
  HeaderTreeNode* _rowHeaderRoot = nullptr;     // final rows; owned; null before the first group
  HeaderTreeNode* _colHeaderRoot = nullptr;     // final columns; owned
  HeaderTreeNode* _layerHeaderRoot = nullptr;   // final layers; owned
  HeaderTreeNode* _prelimRowRoot = nullptr;     // preliminary rows; owned
  HeaderTreeNode* _prelimColRoot = nullptr;     // preliminary columns; owned
  HeaderTreeNode* _prelimLayerRoot = nullptr;   // preliminary layers; owned
  std::vector<int> _cubeIndices;                // sub-table of each slot combination, layers fastest
  bool _hasRowAxisCubes = false;                // the rows have axis cubes to consult
  bool _hasColAxisCubes = false;                // the same for the columns
  bool _hasLayerAxisCubes = false;              // the same for the layers
  AggregationTable* _aggregationTable = nullptr;  // not owned; set by CreateAxisCubes
  std::vector<StatTreeNode*> _statNodes;        // statistics placed in a dimension of their own
  std::vector<StatTreeNode*> _totalStatNodes;   // their total counterparts when labels move there
  std::vector<StatTreeNode*> _unplacedStatNodes;  // collected statistics not yet in a tree; owned
  std::unique_ptr<std::vector<AggregationCategory*>> _postComputeRequiredCat;  // made at first need
  std::vector<HeaderTreeNode*> _comperimeterCategCollector;  // placeholders taken from moved variables
  bool _comperimeterNodesUsed = false;          // they were nested as clones; the originals are ours
  std::unique_ptr<AggregationCategory> _noValidCategory;  // "No valid categories", made at first need
  SLabelPosition _sLabelPosition = PresentationCodes::kSLabelColumn;  // where statistics stand
  CLabelOption _cLabelOption = TableEncryptionCodes::kCLabelAuto;     // where category labels go
  bool _statsVisible = true;                    // statistic labels are shown
  HeaderTreeNode* _statTree = nullptr;          // the statistics when their labels are hidden; owned
  std::vector<SigTestSettings> _sigTestSettings;  // the table's tests
  std::vector<std::vector<HeaderTreeNode*>> _sigTestTrees;  // the trees of each test; owned
  bool _unweightedData = true;                  // unweighted statistics count for the tests
  SyntaxTableSubcommand* _syntaxTable = nullptr;  // the parsed table, for the dump; not owned
};
