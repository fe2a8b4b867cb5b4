// TableLayout.h - where every label and cell of a delivered table goes, decided once for all writers
#pragma once

#include <string>
#include <vector>

#include "host/output/DeliveredTable.h"

/// One label of a header: it covers `span` consecutive leaves (columns or rows) starting at
/// `start`, and `depth` header levels from `level` down (a leaf whose dimension path is
/// shorter than its neighbours' reaches down to the innermost level).
struct HeaderLabel {
  std::string text;
  int level = 0;
  int start = 0;
  int span = 1;
  int depth = 1;
};

/// One combination of leaves along an axis, outermost dimension first, and the visible
/// label path a reader sees for it.
struct AxisEntry {
  std::vector<int> leaves;             // leaf per dimension of the axis, outermost first
  std::vector<std::string> labelPath;  // visible labels, outermost first
};

/// The labels of one axis (rows or columns) laid out as a grid of header levels.
struct AxisLayout {
  std::vector<int> dimensions;      // table dimension indices, outermost first
  std::vector<AxisEntry> entries;   // the rows or columns in order
  int levels = 0;                   // header levels (0 when no labels show)
  std::vector<HeaderLabel> labels;  // each with its span; sorted by level, then start
  std::vector<int> labelIndex;      // level-major, then entry: the label covering it, -1 for none

  /// The label covering header level `level` at entry `index`, or null.
  const HeaderLabel* LabelAt(int level, int index) const;
};

/// The shown text of one cell with its markers and note marks kept apart.
struct LayoutCell {
  bool present = false;
  std::string text;
  bool hasNumber = false;
  double number = 0.0;
  std::vector<std::string> markers;
  std::vector<std::string> noteMarks;
};

/// A delivered table laid out: axes, layers, and the cell grid of each layer.
class TableLayout {
 public:
  explicit TableLayout(const DeliveredTable& table);

  const DeliveredTable& GetTable() const { return *_table; }
  const AxisLayout& GetRows() const { return _rows; }
  const AxisLayout& GetColumns() const { return _columns; }
  /// Layer combinations; one empty entry when the table has no layer dimension.
  const std::vector<AxisEntry>& GetLayers() const { return _layers; }
  /// The cell at layer `layerIndex`, row `rowIndex`, column `columnIndex`.
  const LayoutCell& GetCell(int layerIndex, int rowIndex, int columnIndex) const;
  /// True when the table has no cell to show: no row, column or layer survived.
  bool IsEmpty() const { return _rows.entries.empty() || _columns.entries.empty() || _layers.empty(); }
  /// Note marks after the title: those of the table notes.
  const std::vector<std::string>& GetTitleMarks() const { return _table->tableNoteMarks; }
  /// The data column widths the table asks for (FORMAT MINCOLWIDTH, MAXCOLWIDTH), in
  /// characters of fixed-width text at kPointsPerCharacter, rounded, at least 1; 0 where
  /// the table sets none.
  int GetMinDataColumnCharacters() const;
  int GetMaxDataColumnCharacters() const;
  /// A character of fixed-width text is taken as 6 points wide: 12 characters to the inch.
  static constexpr int kPointsPerCharacter = 6;

 private:
  const DeliveredTable* _table;
  AxisLayout _rows;
  AxisLayout _columns;
  std::vector<AxisEntry> _layers;
  std::vector<LayoutCell> _cells;  // layer-major, then row, then column
  LayoutCell _empty;
};
