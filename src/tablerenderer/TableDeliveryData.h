// TableDeliveryData.h - the working record of one table delivery: fields and every cell operation
#pragma once

#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "host/data/Obs.h"
#include "host/engine/StatValues.h"
#include "host/output/BpHeading.h"
#include "parser/PresentationCodes.h"
#include "parser/TokenInfo.h"
#include "tablebuilder/QuiltTable.h"
#include "tablerenderer/TableDelivery.h"

class AggregationCategory;
class AggregationResult;
class BpCategory;
class BpCellText;
class BpGroup;
class BpPivotTable;
class BpProcedure;
class BPTreeNode;
class CellStatistics;
class CubeAggregator;
class HeaderTreeNode;
class ParsedCategory;
class ProcedureDataSource;
class Statistics;
class StatTreeNode;
struct SigTestSettings;
class SyntaxPComputeSubcommand;
class SyntaxPPropertiesSubcommand;
class SyntaxTableSubcommand;
class SyntaxVariableName;
class TableAxis;
class TARN_Format;

/// Everything one delivery works with. TableDelivery is the handle; the operations here do
/// the work. They fall in groups, each defined in its own file:
///  - TableDelivery.cpp: construction, the layout of the pivot table, user texts;
///  - TableDeliveryCells.cpp: the walk over all leaf combinations in two passes;
///  - TableDeliveryCellText.cpp: what one cell says (formats, decorations, empty and
///    missing texts, hidden small counts, the modes note);
///  - TableDeliveryComputed.cpp: computed categories evaluated at render time;
///  - TableDeliveryChiSquare.cpp: the "Pearson Chi Square Tests" table;
///  - TableDeliveryComparisons.cpp: the column proportions and column means tests.
struct TableDelivery::Data {
  using CategoryKey = QuiltTable::CategoryKey;
  using DisplayFormat = PresentationCodes::DisplayFormat;

  Data(SyntaxTableSubcommand* subcommand, BpProcedure* procedure, ProcedureDataSource* dataSource);
  ~Data();
  Data(const Data&) = delete;
  Data& operator=(const Data&) = delete;

  // ---- Fields ---------------------------------------------------------------------------
  std::vector<TableAxis*> _axes;  // owned; rows, columns, layers, empties left out
  int _numAxes = 0;
  bool _useMissingString = false;  // a missing text other than "." is set
  int _emptyStringType = PresentationCodes::kEmptyFormatZero;
  std::string _emptyString;
  BpHeading _heading;  // where the tables go; a heading of their own with test tables
  std::string _missingString = ".";
  ProcedureDataSource* _dataSource = nullptr;
  std::string _splitText;
  BpProcedure* _procedure = nullptr;
  TableAxis* _statAxis = nullptr;  // owned; the "Statistics" dimension when labels are hidden
  std::vector<const AggregationCategory*> _requiredCats;
  std::vector<TokenInfo> _operandTokens;
  std::vector<TokenInfo> _operatorTokens;
  std::vector<StatValues> _operandValues;
  std::vector<const std::vector<ParsedCategory*>*> _parsedCatLists;
  std::vector<const SyntaxVariableName*> _parsedCatListOwners;  // parallel: whose list each is
  std::vector<const SyntaxPPropertiesSubcommand*> _hidingProperties;  // PPROPERTIES with HIDESOURCECATS=YES
  std::vector<std::vector<StatValues>> _groupOperandValues;
  bool _statsVisible = true;
  bool _subtotalsTested = false;
  bool _mergedTests = false;
  bool _apaMerged = false;
  bool _controlPackage = false;
  bool _operandStatMissing = false;
  bool _blankNextCell = false;
  SyntaxTableSubcommand* _subcommand = nullptr;
  double _sysmis = TARN_SystemMissing();
  double _infinity = std::numeric_limits<double>::infinity();
  bool _hideSmallCounts = false;
  int _hideSmallCountsValue = 0;
  std::string _hideSmallCountsText;  // "<%d" filled with the threshold

  // ---- Delivery (TableDelivery.cpp) -----------------------------------------------------
  void RenderTableInternal(QuiltTable* table, const std::vector<CubeAggregator*>& cubes, int tableIndex,
                           bool controlPackage);
  /// Replaces every ")SPLIT" by the split group's text when there is one.
  std::string getUserText(const std::string& text) const;
  /// After the main table `pivot`: builds the test trees and delivers one test table per
  /// significance setting, in their order, or a warning where a test has nothing to test.
  void RenderSigTestTables(QuiltTable* table, BpPivotTable& pivot, const std::vector<CubeAggregator*>& cubes,
                           int tableIndex);

  // ---- Cell rendering (TableDeliveryCells.cpp) ------------------------------------------
  /// Writes every cell of the table over its one to three axes.
  int RenderCells(QuiltTable* table, const std::vector<CubeAggregator*>& cubes);

  // ---- Cell text (TableDeliveryCellText.cpp) --------------------------------------------
  bool ProcessStatValues(const StatValues& values, const CellStatistics* cellStats,
                         const CellStatistics* totalStats, SyntaxVariableName* statVar, int statType, double ptile,
                         int statFormat, BPTreeNode* leaf);
  bool ProcessEmptyCell(bool isTotal, const CellStatistics* cellStats, const CellStatistics* totalStats,
                        SyntaxVariableName* statVar, int statType, double ptile, int statFormat, BPTreeNode* leaf);
  void WriteStatDataInCell(SyntaxVariableName* statVar, bool useTotal, int statType, double ptile, int statFormat,
                           BpGroup& group, const BpCellText& label, const AggregationResult& result);
  /// Writes `result` with `format` (null: the statistic's default) and `display`.
  void WriteFormattedCell(SyntaxVariableName* statVar, int statFormat, BpGroup& group, const BpCellText& label,
                          const AggregationResult& result, const TARN_Format* format, DisplayFormat display);
  void WriteDataInCell(SyntaxVariableName* statVar, bool useTotal, int statType, double ptile, int statFormat,
                       BpGroup& group, const BpCellText& label);
  void RenderCell(BpGroup& group, const BpCellText& label, const AggregationResult& result, int statFormat,
                  const TARN_Format* format, DisplayFormat display, int vIndex, int decimals);
  void RenderNumericCell(BpCategory& category, int statFormat, const TARN_Format* format, double value1,
                         double value2);
  /// What HIDESMALLCOUNTS makes of a cell's number.
  enum class SmallCount {
    kShown,    // not hidden
    kMissing,  // a count whose companion (its unweighted count) is below the threshold
    kBelow,    // a count without companion below the threshold: "<n"
  };
  /// The one rule of hidden small counts; only statistics shown as counts are hidden.
  SmallCount ClassifySmallCount(int statFormat, double value1, double value2) const;
  /// The statistic of the table that a cell of `statType` shows, as the user wrote it; null
  /// when the variable's list does not name it.
  const Statistics* FindTableStatistic(SyntaxVariableName* statVar, bool useTotal, int statType, double ptile) const;
  /// The format the user gave the statistic, or null; `display` gets its decoration.
  const TARN_Format* GetCustomFormat(SyntaxVariableName* statVar, bool useTotal, DisplayFormat& display, int statType,
                                     double ptile) const;
  /// Position of the statistic among a cell's values; negative when the cube lacks it.
  int GetStatisticIndex(bool useTotal, const CellStatistics* cellStats, const CellStatistics* totalStats,
                        SyntaxVariableName* statVar, int statType, double ptile) const;
  /// True for counts and percentages: an empty cell shows the empty text, not the missing one.
  bool IfUseEmptyString(int statType) const;
  bool IsEmptyIncluded(SyntaxVariableName* statVar) const;
  /// The label of statistic `statistic` in the "Statistics" dimension.
  static std::unique_ptr<BpCellText> MakeStatisticLabel(const HeaderTreeNode* statistic);
  /// With statistic labels hidden: selects the leaf's category and calls `write` once per
  /// statistic of the "Statistics" dimension, with that dimension and the statistic's label;
  /// `write` returns whether it wrote a cell. True if any did.
  bool ForEachHiddenStatistic(
      BPTreeNode* leaf,
      const std::function<bool(const StatTreeNode& statistic, BpGroup& dimension, const BpCellText& label)>& write);
  /// The statistics a leaf's cells are written for when labels are hidden.
  const std::vector<HeaderTreeNode*>& HiddenStatistics(BPTreeNode* leaf) const;

  // ---- Chi-square table (TableDeliveryChiSquare.cpp) ------------------------------------
  /// Fills the test table `pivot` laid out on the three test trees: once without layers, else
  /// once per layer leaf; then the caption and, if subtotals stood in for categories, the
  /// note saying so. `layerAxis` may be null.
  void RenderChiSquareTable(QuiltTable* table, BpPivotTable& pivot, const std::vector<CubeAggregator*>& cubes,
                            TableAxis* rowAxis, TableAxis* columnAxis, TableAxis* layerAxis,
                            const SigTestSettings& settings);
  /// One layer: for each column variable and each row variable under their outer categories,
  /// the test's three cells with their notes. `layerKey` holds the layer's categories, and
  /// `layerIndex` is its sub-table slot (0 without layers).
  void RenderChiSquare2DTable(QuiltTable* table, const std::vector<CubeAggregator*>& cubes, TableAxis* rowAxis,
                              TableAxis* columnAxis, const CategoryKey& layerKey, int layerIndex,
                              const SigTestSettings& settings);
  /// The categories of `variable` a test compares, in display order: all but totals,
  /// subtotals and computed categories; with `useSubtotals`, a subtotal in place of the
  /// categories it sums (and _subtotalsTested set). Returns their number.
  int SelectInnerCategs(SyntaxVariableName* variable, CategoryKey& categories, bool useSubtotals);

  // ---- Column comparison tables (TableDeliveryComparisons.cpp) --------------------------
  /// The column proportions or column means test of `setting` on its test trees: merged
  /// into the main table `pivot` when a comparison test of the table merges, else a table
  /// of its own. `captionFree` tells whether the main table's caption is still free; a
  /// merged test whose note takes it clears it.
  void RenderComparisonTest(QuiltTable* table, BpPivotTable& pivot, const std::vector<CubeAggregator*>& cubes,
                            const std::vector<HeaderTreeNode*>& trees, const SigTestSettings& setting,
                            bool& captionFree);

  // ---- Computed categories (TableDeliveryComputed.cpp) ----------------------------------
  void GetPcomputeRequiredCat(QuiltTable* table);
  bool HasPostCategories(const std::vector<BPTreeNode*>& leaves) const;
  void GetComputingCats(const std::vector<BPTreeNode*>& leaves);
  void GetParsedCategory(const std::vector<BPTreeNode*>& leaves);
  const AggregationCategory* GetPostCategory1D(const CategoryKey& key) const;
  const AggregationCategory* GetPostCategory2D(const CategoryKey& key1, const CategoryKey& key2) const;
  const AggregationCategory* GetPostCategory3D(const CategoryKey& key1, const CategoryKey& key2,
                                               const CategoryKey& key3) const;
  bool NeedPostCategory1D(const CategoryKey& key) const;
  bool NeedPostCategory2D(const CategoryKey& key1, const CategoryKey& key2) const;
  bool NeedPostCategory3D(const CategoryKey& key1, const CategoryKey& key2, const CategoryKey& key3) const;
  void ComputePostCategoryValues1D(const CategoryKey& key, CubeAggregator* cube);
  void ComputePostCategoryValues2D(const CategoryKey& key1, const CategoryKey& key2, bool swapped, int comperimeter,
                                   QuiltTable* table, CubeAggregator* cube);
  /// Keys in dimension order (rows, columns, layers) with the label-carrying arguments of
  /// Combine3CellKeys.
  void ComputePostCategoryValues3D(const CategoryKey& key1, const CategoryKey& key2, const CategoryKey& key3,
                                   int from, int to, QuiltTable* table, CubeAggregator* cube);
  void GetStatValuesForComputing1D(const CategoryKey& key, CubeAggregator* cube);
  void GetStatValuesForComputing2D(bool swapped, bool postIsSecond, int comperimeter, const CategoryKey& postKey,
                                   const CategoryKey& otherKey, QuiltTable* table, CubeAggregator* cube);
  /// `postPosition` is the place (0..2) of the key holding the computed category among the
  /// three in dimension order; `otherKey1` and `otherKey2` are the other two, in order.
  void GetStatValuesForComputing3D(int postPosition, int from, int to, const CategoryKey& postKey,
                                   const CategoryKey& otherKey1, const CategoryKey& otherKey2, QuiltTable* table,
                                   CubeAggregator* cube);
  /// Replaces the first computed category of `key` by the category operand `token` names;
  /// true when the token stands for a cell.
  bool GetPostCellKey(const TokenInfo& token, CategoryKey& key) const;
  bool IsRightCategory(const TokenInfo& token, const AggregationCategory* category) const;
  void GetAllValuesInComputing(std::vector<double>& values, const CellStatistics* cellStats,
                               const CellStatistics* totalStats, SyntaxVariableName* statVar, int statType,
                               double ptile);
  double CaculatePostCategory(const std::vector<double>& values) const;
  double CalculateWithOp(double a, double b, int op) const;
  bool ProcessPostValues(const CellStatistics* cellStats, const CellStatistics* totalStats,
                         SyntaxVariableName* statVar, int statType, double ptile, int statFormat, BPTreeNode* leaf,
                         const AggregationCategory* post);
  void WriteStatDataInCellForPCompute(SyntaxVariableName* statVar, bool useTotal, int statType, double ptile,
                                      int statFormat, BpGroup& group, const BpCellText& label, double value,
                                      const TARN_Format* format, DisplayFormat display);
  const TARN_Format* GetPComputeCustomFormat(SyntaxVariableName* statVar, bool useTotal, DisplayFormat& display,
                                             int statType, const TARN_Format* format, double ptile) const;
  bool HasTheStat(SyntaxVariableName* statVar, int statType) const;
  bool IsHiddenSource(const CategoryKey& key, const std::vector<const std::vector<ParsedCategory*>*>& lists,
                      int comperimeter) const;
  /// Whether an operand of `pCompute` names `category`, a category of the variable or set
  /// whose explicit list `list` holds the computed category.
  bool RefersToSource(const SyntaxPComputeSubcommand& pCompute, const std::vector<ParsedCategory*>& list,
                      const AggregationCategory* category) const;
  /// A category's value as the expressions name it: a string value without its trailing
  /// blanks, a set member's variable name; empty for numbers and other kinds.
  std::string CategoryText(const AggregationCategory* category) const;
  /// Whether a name operand (a set member's name, or a value in quotes) names `category`.
  bool NamesCategory(const TokenInfo& token, const AggregationCategory* category) const;
};
