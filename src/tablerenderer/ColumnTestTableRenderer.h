// ColumnTestTableRenderer.h - what the column means and column proportions tables share: the frame, the walk,
// notes and markers
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/output/BpDimension.h"
#include "host/output/BpHeading.h"
#include "host/output/BpPivotTable.h"
#include "tablebuilder/QuiltTable.h"

class BpCategory;
class BpCellText;
class BPTreeNode;
class BpProcedure;
class CubeAggregator;
class HeaderTreeNode;
class ProcedureDataSource;
class RowSignificanceMarkers;
class TableAxis;
struct SigTestSettings;

/// The common part of the two column comparison tables. A renderer lives for one test
/// setting of one table. Unmerged, it opens a table of its own, with the test trees as its
/// dimensions and a letter under each column category, and delivers it at the end of
/// RenderTable. Merged (mergeTable), it builds the test trees once more on the main table's
/// dimensions, whose categories have the same texts, and adds the results to the main
/// table's cells as markers, with its notes on the main table.
///
/// The subclasses say what is tested: RenderTestTable runs the test over the axes that
/// RenderTable made.
class ColumnTestTableRenderer {
 public:
  /// One tested variable of a test axis: the categories that are compared and, for each, the
  /// axis leaf whose cell shows the result.
  struct Family {
    HeaderTreeNode* variable = nullptr;          // the categorical variable or set
    QuiltTable::CategoryKey outerKey;            // the categories above it, outermost first
    QuiltTable::CategoryKey categories;          // its categories in display order
    std::vector<HeaderTreeNode*> categoryNodes;  // their nodes, in parallel
    std::vector<int> cellLeaves;                 // per category, the axis leaf written; -1: none
    bool isMRSet = false;
  };

  /// None is owned; all must outlive the renderer.
  ColumnTestTableRenderer(BpProcedure* procedure, BpHeading heading, ProcedureDataSource* dataSource,
                          QuiltTable* table);
  virtual ~ColumnTestTableRenderer();
  ColumnTestTableRenderer(const ColumnTestTableRenderer&) = delete;
  ColumnTestTableRenderer& operator=(const ColumnTestTableRenderer&) = delete;

  /// Writes into the main table `pivot` on its dimensions instead of a table of its own.
  /// `layerDimension` is null for a table without layers; `statAxis` is the main table's
  /// statistics axis when its statistic labels are hidden (else null), lying at `statPlace`.
  void mergeTable(BpPivotTable* pivot, const BpDimension& rowDimension, const BpDimension& columnDimension,
                  const BpDimension* layerDimension, TableAxis* statAxis, BpDimension::Place statPlace);
  /// The data column widths of a table of its own, in points; 0 leaves one unset.
  void SetColumnWidths(int minPoints, int maxPoints);
  /// Runs the test on `trees` (row, column and, if any, layer test tree) over `cubes`.
  /// `captionFree`: the main note may become the caption of the table written to.
  void RenderTable(const std::vector<HeaderTreeNode*>& trees, const std::vector<CubeAggregator*>& cubes,
                   const SigTestSettings& settings, bool captionFree);

  /// A text for a cell: as it stands below 256 bytes, else in pieces of 255 bytes that the
  /// output layer joins again.
  static std::unique_ptr<BpCellText> DispatchLongString(const std::string& text);

 protected:
  struct Data {
    Data(BpProcedure* procedure, BpHeading heading, ProcedureDataSource* dataSource, QuiltTable* table);

    BpHeading _heading;  // where a table of its own goes
    BpProcedure* _procedure;
    QuiltTable* _table;  // the walk's cube indices
    ProcedureDataSource* _dataSource;
    std::string _noTestMarker = ".";        // the text of a column that takes no part
    BpPivotTable* _pivot = nullptr;         // the table written to; the main table when merged
    std::optional<BpPivotTable> _ownPivot;  // a table of its own, delivered at the end
    std::optional<BpDimension> _rowDimension;
    std::optional<BpDimension> _columnDimension;
    std::optional<BpDimension> _layerDimension;
    bool _merged = false;
    std::unique_ptr<TableAxis> _rowAxis;  // made by RenderTable, which deletes them
    std::unique_ptr<TableAxis> _columnAxis;
    std::unique_ptr<TableAxis> _layerAxis;  // null without layers
    TableAxis* _statAxis = nullptr;         // the main table's hidden statistics, when merged
    BpDimension::Place _statPlace = BpDimension::kPlaceColumn;
    int _minColumnWidth = 0;
    int _maxColumnWidth = 0;
  };

  /// The title and subtype of a table of its own.
  virtual const char* TitleKey() const = 0;
  /// Whether statistic `code` is the one the test is about, the one whose cell shows it.
  virtual bool IsTestedStatistic(int code) const = 0;
  /// Runs the test over the axes and writes its cells and notes.
  virtual void RenderTestTable(const std::vector<CubeAggregator*>& cubes, const SigTestSettings& settings,
                               bool captionFree) = 0;
  /// Called after RenderTestTable while the axes still stand; a table of its own has not
  /// been delivered yet.
  virtual void FinishTable() {}

  /// Calls `render` once without layers, else once per layer leaf with the layer selected,
  /// with the layer's categories and its sub-table slot.
  void ForEachLayer(
      const std::function<void(const QuiltTable::CategoryKey& layerKey, int layerIndex)>& render);
  /// The categories on the path from the root to `node`, outermost first.
  static QuiltTable::CategoryKey PathKey(const HeaderTreeNode* node);
  /// The tested variables of `axis` in display order.
  std::vector<Family> CollectFamilies(TableAxis* axis) const;
  /// Whether the cells of an axis node show the test's result: any node but a statistic,
  /// and of several statistics side by side the first the test is about.
  bool ShowsResult(const HeaderTreeNode* node) const;
  /// Makes the leaf's category current in its dimension and returns it.
  BpCategory SelectLeaf(BPTreeNode* leaf) const;
  /// With the main table's statistics hidden at `place`: makes the tested statistic current
  /// in their dimension, so that the marker stands at the statistic the test is about.
  void SelectStatCategory(BPTreeNode* leaf, BpDimension::Place place) const;
  /// The label of the tested statistic among the main table's hidden statistics, or among
  /// the statistics below `leaf`'s header node; null when none is the tested one.
  std::unique_ptr<BpCellText> getStatCategory(BPTreeNode* leaf) const;

  /// Writes the result `text` of column `column` into `cell`, the cell now selected: the
  /// text itself in a table of its own; merged, the APA subscripts of `markers`, or each
  /// letter of `text` under the main table's letter of that column, as markers. Returns the
  /// number of markers written (0 in a table of its own).
  int WriteResult(BpCategory& cell, const std::string& text, RowSignificanceMarkers& markers,
                  const Family& columns, std::size_t column, const SigTestSettings& settings) const;
  /// The cube of the sub-table at the three slots; null where there is none.
  CubeAggregator* CubeAt(int rowIndex, int columnIndex, int layerIndex,
                         const std::vector<CubeAggregator*>& cubes) const;

  /// The main note and the further notes. `subject` names the test in the APA note,
  /// `oneLevelKey` and `twoLevelsKey` are the main notes in the other styles, and `keys` the
  /// notes on what the test met, after those on the adjustment.
  void WriteNotes(const SigTestSettings& settings, bool captionFree, const char* subject,
                  const char* oneLevelKey, const char* twoLevelsKey,
                  const std::vector<const char*>& keys) const;

  std::unique_ptr<Data> _data;
};
