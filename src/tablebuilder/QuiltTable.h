// QuiltTable.h - the table record: preliminary and final header trees, sub-table slots, axis cubes, test
// trees
#pragma once

#include <iosfwd>
#include <memory>
#include <vector>

#include "host/engine/TableEncryptionCodes.h"
#include "parser/PresentationCodes.h"

class AggregationCategory;
class AggregationTable;
class AggregationVariable;
class CubeAggregator;
class HeaderTreeNode;
class StatTreeNode;
class SyntaxConverter;
class SyntaxTableSubcommand;
class SyntaxVariableName;
class TableDimension;
struct SigTestSettings;

/// One TABLE subcommand as the builder sees it. Before any case is read it turns the parsed
/// expression into three preliminary header trees (rows, columns, layers) with placeholders
/// for the categories, numbers the sub-table slots and declares the axis cubes. After each
/// split group it builds the three final trees from the categories the engine found, and on
/// request the reduced trees of each significance test.
///
/// Everything the table returns by pointer stays owned by the table.
class QuiltTable {
 public:
  using CategoryKey = std::vector<const AggregationCategory*>;
  using CLabelOption = TableEncryptionCodes::CLabelOption;
  using SLabelPosition = PresentationCodes::SLabelPosition;

  QuiltTable();
  ~QuiltTable();
  QuiltTable(const QuiltTable&) = delete;
  QuiltTable& operator=(const QuiltTable&) = delete;

  // Table construction.
  /// Builds the preliminary trees, the slot counts and the cube index table from the parsed
  /// table. Called once, after the dispatcher has declared the table's cubes (the variables
  /// already carry their engine objects).
  void BuildTableTreesFromSyntax(SyntaxTableSubcommand* table);
  /// Declares the axis cubes of all three dimensions on `table` (not owned); returns the
  /// sum of what each dimension reported. Call right after BuildTableTreesFromSyntax.
  int CreateAxisCubes(AggregationTable* table);
  /// Builds the three final trees for the split group just aggregated; replaces the trees
  /// of the previous group.
  void BuildCompleteTable();
  /// Builds one vector of test trees per significance setting, from the final trees whose
  /// leaves the main table's rendering has marked empty or not. Replaces earlier test trees.
  void BuildStatTestTables(bool unweightedData, bool merged, bool apa);
  /// Destroys every test tree.
  void CleanTestTrees();
  /// Destroys every tree and owned record; the destructor runs it.
  void Cleanup();

  // Sub-table slots.
  /// Index of the sub-table in the table's list by running number of the slot combination.
  int GetCubeIndex(int i) const;
  /// Index for a pair of slots: rows and columns, or, when one of them has a single slot,
  /// the two dimensions that remain (slot numbers of rows or columns, then layers).
  int GetCubeIndex(int a, int b) const;
  int GetCubeIndex(int rowSlot, int columnSlot, int layerSlot) const;
  int GetNRows() const;
  int GetNColumns() const;
  int GetNLayers() const;

  // What the renderer reads.
  HeaderTreeNode* GetRowHeaderRoot() const;
  HeaderTreeNode* GetColHeaderRoot() const;
  HeaderTreeNode* GetLayerHeaderRoot() const;
  HeaderTreeNode* GetPrelimRowRoot() const;
  HeaderTreeNode* GetPrelimColRoot() const;
  HeaderTreeNode* GetPrelimLayerRoot() const;
  AggregationTable* GetAggregationTable() const;
  SLabelPosition GetStatPosition() const;
  bool AreStatsVisible() const;
  CLabelOption GetClabelOption() const;
  /// When statistic labels are hidden: a root over the statistics, which then stand in no
  /// dimension. Otherwise null.
  HeaderTreeNode* GetStatTree() const;
  /// One vector per significance setting, in the settings' order: row tree, column tree,
  /// and the layer tree when the table has real layers. An empty vector: no test possible.
  const std::vector<std::vector<HeaderTreeNode*>>& GetSigTestTrees() const;
  const std::vector<SigTestSettings>& GetSigTestSettings() const;
  bool HasSigTests() const;
  /// Some test is delivered in a table of its own rather than merged into the main one.
  bool HasSeparateSigTests() const;
  bool HasRowAxisCubes() const;
  bool HasColAxisCubes() const;
  bool HasLayerAxisCubes() const;
  /// Categories that computed categories need; null until the first Set call.
  std::vector<AggregationCategory*>* GetPostComputeRequiredCat() const;
  /// Appends the categories one dimension's computed categories may name.
  void SetPostComputeRequiredCat(const std::vector<AggregationCategory*>& categories);
  /// Forgets them: each split group's dimensions make categories of their own.
  void ClearPostComputeRequiredCat();

  // The leaf walk. `key` holds the categories on the path to the current leaf, outer first;
  // `keyChanged` is set whenever it changes; `emptyCount` counts the include-empty nodes on
  // the path. The caller starts with an empty key and a zero count.
  static HeaderTreeNode* FirstLeaf(HeaderTreeNode* tree, CategoryKey& key, bool& keyChanged, int& emptyCount);
  /// The next leaf after `node`, or null after the last one.
  static HeaderTreeNode* NextLeaf(HeaderTreeNode* node, CategoryKey& key, bool& keyChanged, int& emptyCount);
  static HeaderTreeNode* GoDownToLeaf(HeaderTreeNode* node, CategoryKey& key, bool& keyChanged, int& emptyCount);
  static HeaderTreeNode* FindNextBranch(HeaderTreeNode* node, CategoryKey& key, bool& keyChanged, int& emptyCount);

  // Cell keys. A carried category is the last entry of the list `from`; it goes back to the
  // place of its own dimension. The result is its index in `combined`, -1 when nothing is
  // carried.
  static int Combine2CellKeys(const CategoryKey& first, const CategoryKey& second, CategoryKey& combined, int from);
  /// `to` is the list after whose entries the carried category goes; both -1 or both in 0..2
  /// and different.
  static int Combine3CellKeys(const CategoryKey& first, const CategoryKey& second, const CategoryKey& third,
                              CategoryKey& combined, int from, int to);
  /// Where CLABELS moves category labels, as dimensions (0 rows, 1 columns, 2 layers): the
  /// labels of `to` stand at the end of the keys of `from`. Both -1 when labels stay.
  struct LabelCarry {
    int from = -1;
    int to = -1;
  };
  /// The one reading of `option` that the trees, the keys and the renderer share; keys given
  /// as rows, columns, layers take `from` and `to` as Combine3CellKeys does.
  static LabelCarry GetLabelCarry(CLabelOption option);

  // Column letters of the test tables.
  /// Letters under each lowest group of columns of a separate test table.
  void AddLettersToColumns(HeaderTreeNode* colTree);
  /// Letters in the main table's final column tree; false for a null node.
  bool addLettersToMergedColumns(HeaderTreeNode* node, int index);
  /// Whether some node below `node` is a category.
  static bool hasCategoryOffspring(const HeaderTreeNode* node);
  /// The category nodes of one variable that a test treats, in display order. Without
  /// `useSubtotals`: all but totals, subtotals, the empty-stack label and computed
  /// categories. With it: a subtotal replaces the categories it sums (`positionAfter`: totals
  /// stand after what they sum). A hidden subtotal is kept either way: the table shows it in
  /// place of its categories, which are not among the nodes. Returns the number selected;
  /// `out` is not owning.
  static int ProcessSubtotalCategs(const std::vector<HeaderTreeNode*>& allCats, std::vector<HeaderTreeNode*>& out,
                                   bool useSubtotals, bool positionAfter);
  /// The engine dimension of a categorical variable of the table; it has one once the
  /// dispatcher declared the table.
  static TableDimension* DimensionOf(const SyntaxVariableName* variable);
  /// The categories of `dimension` that a table shows, in display order: all of them but
  /// those a hidden subtotal (HSUBTOTAL) sums, which the subtotal replaces. The engine keeps
  /// counting them, so they stay in every total and percentage base.
  static std::vector<AggregationCategory*> ShownCategories(TableDimension& dimension);

  /// The preliminary trees, the slot counts and cube indices, the statistics, and the final
  /// trees when built; one node per line. For tests and --dump-tables.
  void Dump(std::ostream& out) const;

 private:
  struct Data;
  std::unique_ptr<Data> _tableData;

  // Table construction (QuiltTable.cpp).
  HeaderTreeNode* BuildTempSubtree(SyntaxConverter* node, bool keepCats, bool receive, bool statsHere,
                                   bool& statsInOpposite);
  void CollectStatistics(SyntaxVariableName* variable, bool keepCats, bool& statsInOpposite);
  void PlaceStatisticsHere(HeaderTreeNode* variableNode, SyntaxVariableName* variable);
  void PlaceTableStatistics(bool statsInOpposite);
  /// The preliminary row, column and layer trees of the table expression, and their slot
  /// counts; labels moved by CLABELS are collected on the way.
  void BuildDimensionTrees(SyntaxConverter* expression, bool& statsInOpposite, HeaderTreeNode*& rows,
                           HeaderTreeNode*& columns, HeaderTreeNode*& layers);
  /// Numbers the slots of the preliminary trees and lays out one cube per combination.
  void AssignSlots();
  /// Multiple-response sets that a test treats specially get their totals accumulated.
  void RequestTestedSetTotals(SyntaxTableSubcommand* table);
  static int ExtractNCubes(SyntaxConverter* node);
  void DestroyCollectedNodes();
  void CreateFinalTree(HeaderTreeNode* prelimRoot, HeaderTreeNode*& finalRoot, bool hasAxisCubes, int position);
  HeaderTreeNode* BuildFinalSubtreeNoCubes(const HeaderTreeNode* node);
  /// The final subtrees of what stands under one placeholder of a variable; owned by the caller.
  std::vector<HeaderTreeNode*> FinalSubtreesUnder(const HeaderTreeNode* placeholder);
  /// Gives the categories of `copy` what stands under the variable's placeholders: under the
  /// categories placeholder to the categories, under the totals placeholder to the totals.
  void NestPlaceholderSubtrees(HeaderTreeNode* copy, const std::vector<HeaderTreeNode*>& placeholders);
  HeaderTreeNode* BuildFinalSubtreeUseCubes(const HeaderTreeNode* node, const CategoryKey& path,
                                            const std::vector<std::vector<CubeAggregator*>>& cubes);
  HeaderTreeNode* BuildEmptyBranch(const HeaderTreeNode* node);

  // Category subtrees (QuiltTableCategories.cpp).
  int BuildCategorySubtreesUseCubes(const HeaderTreeNode* varNode, SyntaxVariableName* var, const CategoryKey& path,
                                    const std::vector<std::vector<CubeAggregator*>>& cubes,
                                    std::vector<HeaderTreeNode*>& out);
  int ProcessComperimeterCategs(const std::vector<HeaderTreeNode*>& tempCats, std::vector<HeaderTreeNode*>& out);
  void ProcessComperimeterCategs(HeaderTreeNode* parent, const std::vector<HeaderTreeNode*>& tempCats);
  void ProcessComperimeterCategsNoTotals(HeaderTreeNode* parent, const std::vector<HeaderTreeNode*>& tempCats);
  /// One new category node per category of `categories`, in order, numbered by its place,
  /// keeping empty categories as `variable` does and standing in the cube slot
  /// `cubeIndexInDim`. The caller owns the nodes.
  static std::vector<HeaderTreeNode*> NewCategoryNodes(const std::vector<AggregationCategory*>& categories,
                                                       const SyntaxVariableName& variable, int cubeIndexInDim);

  // Test trees (QuiltTableTestTrees.cpp).
  void BuildChiSquareTrees(bool useSubtotals, bool includeMR, bool lettered);
  void BuildColumnPropTrees(bool useSubtotals, bool includeMR, bool merged, bool apa);
  void BuildColumnMeanTrees(bool useSubtotals, bool includeMR, bool merged, bool apa);
  /// Keeps the test's trees when rows and columns (and real layers) survived, else none.
  void FinishTestTrees(HeaderTreeNode* rowTree, HeaderTreeNode* colTree, HeaderTreeNode* layerTree,
                       bool chiSquare, bool letters);
  HeaderTreeNode* BuildCategOnlyTree(HeaderTreeNode* tree, bool includeLeaves, bool allowRowPct, bool useSubtotals,
                                     bool includeMR, bool keepMeans, bool keepCounts, bool lettered);
  HeaderTreeNode* BuildScaleBasedTree(HeaderTreeNode* tree, bool scaleAbove, bool useSubtotals, bool includeMR,
                                      bool merged, bool lettered);

  // Axis cubes (QuiltTableCubes.cpp).
  int CreateAxisCubesForDimension(HeaderTreeNode* root, int position);
  int AddAxisCubes(const std::vector<AggregationVariable*>& catVars, int cubeIndexInDim, int position,
                   const std::vector<int>& includeEmptyCounts);
};
