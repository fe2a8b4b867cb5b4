// BpPivotTable.h - one pivot table under construction, delivered by its destructor
#pragma once

#include <memory>

class BpAnnotation;
class BpCellText;
class BpDimension;
struct OutputItem;
class OutputDocument;

/// A pivot table being built. Returned by value from BpHeading::PivotTable and movable, not
/// copyable. The destructor delivers it into the slot reserved at creation, unless Destroy
/// was called.
class BpPivotTable {
 public:
  enum Sort { kSortAsCreated = 2 };
  enum Property { kPropertyMergedTitle = 5 };

  struct TableData;

  BpPivotTable(BpPivotTable&& other) noexcept;
  BpPivotTable& operator=(BpPivotTable&& other) noexcept;
  BpPivotTable(const BpPivotTable&) = delete;
  BpPivotTable& operator=(const BpPivotTable&) = delete;
  ~BpPivotTable();

  /// A new dimension named `text`; names do not show.
  BpDimension Dimension(const BpCellText& text, Sort sort);
  void HideTitle();
  void Caption(const BpCellText& text);
  void CaptionNote(const BpAnnotation& annotation);
  void Note(const BpAnnotation& annotation);
  void CornerText(const BpCellText& text);
  /// Keeps the text; writers show a merged title under the table title.
  void SetProperty(Property property, const BpCellText& text);
  void MinDataColumnWidth(int points);
  void MaxDataColumnWidth(int points);
  /// Cancels the table: nothing is delivered.
  void Destroy();

  /// Made by BpHeading only: `slot` is the document item reserved for the table.
  BpPivotTable(OutputDocument* document, std::shared_ptr<OutputItem> slot, const BpCellText& title,
               const BpCellText& subtype);

 private:
  std::shared_ptr<TableData> _table;
};
