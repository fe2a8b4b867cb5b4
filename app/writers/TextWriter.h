// TextWriter.h - the output document as text for the terminal, tables drawn as boxed grids
#pragma once

#include <string>
#include <vector>

#include "writers/OutputWriter.h"

struct AxisLayout;
struct DeliveredTable;

/// Plain text. Tables are boxed grids with nested column headers spanning their children
/// and one header column per row nesting level; labels wrap; a table wider than the line
/// width is cut into column panels that repeat the row headers.
class TextWriter : public OutputWriter {
 public:
  explicit TextWriter(const WriterOptions& options);

 protected:
  void BeginDocument(std::ostream& out) override;
  void EndDocument(std::ostream& out) override;
  void BeginHeading(const std::string& text, int depth, std::ostream& out) override;
  void EndHeading(int depth, std::ostream& out) override;
  void WriteMessage(int level, const std::string& text, std::ostream& out) override;
  void WriteTable(const TableLayout& layout, std::ostream& out) override;

 private:
  /// One box of a grid line: columns [first, first + span), its wrapped text.
  struct Segment {
    int first = 0;
    int span = 1;
    std::string text;
    bool alignRight = false;
  };
  using GridRow = std::vector<Segment>;

  void WriteGrid(const std::vector<GridRow>& header, const std::vector<GridRow>& body,
                 const std::vector<int>& widths, std::ostream& out) const;
  std::string Rule(const std::vector<int>& widths, const GridRow* above, const GridRow* below) const;
  void WriteWrapped(const std::string& text, std::ostream& out) const;
  /// The column header lines of the data columns [panelStart, panelEnd), the corner over
  /// the row headers.
  static std::vector<GridRow> HeaderRows(const TableLayout& layout, int panelStart, int panelEnd);
  /// The rows of one layer: row header boxes, then the cells of columns [panelStart, panelEnd);
  /// the text cells of a `prose` column align left.
  static std::vector<GridRow> BodyRows(const TableLayout& layout, int layerIndex, int panelStart, int panelEnd,
                                       const std::vector<bool>& prose);
  /// The caption and the notes under a table, then a blank line.
  void WriteTableNotes(const DeliveredTable& table, std::ostream& out) const;

  int _width;
  bool _ascii;
};
