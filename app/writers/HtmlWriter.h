// HtmlWriter.h - the output document as one self-contained HTML5 page
#pragma once

#include <string>
#include <vector>

#include "writers/OutputWriter.h"

struct AxisLayout;
struct DeliveredTable;

/// One page with inline CSS. Each layer of a table is its own <table> whose <caption>
/// holds the title and the layer's labels; nested headers use rowspan and colspan; notes
/// stand in a <tfoot> and are referred to by <sup> marks. Header cells carry `scope` and an
/// id, and each data cell lists the ids of its headers in `headers`, so that screen readers
/// and scrapers find a cell's labels without working out the spans. Each <table> sits in a
/// box that scrolls sideways when the table is wider than the page.
class HtmlWriter : public OutputWriter {
 protected:
  void BeginDocument(std::ostream& out) override;
  void EndDocument(std::ostream& out) override;
  void BeginHeading(const std::string& text, int depth, std::ostream& out) override;
  void EndHeading(int depth, std::ostream& out) override;
  void WriteMessage(int level, const std::string& text, std::ostream& out) override;
  void WriteTable(const TableLayout& layout, std::ostream& out) override;

 private:
  static std::string Escape(const std::string& text);
  static std::string Marks(const std::vector<std::string>& marks);
  static std::string WidthStyle(const DeliveredTable& table);
  /// Row-header columns and data columns: what a footer or an empty body spans.
  static int TotalColumns(const TableLayout& layout);
  static void WriteCaption(const TableLayout& layout, std::size_t layerIndex, std::ostream& out);
  static void WriteHead(const TableLayout& layout, const std::string& idPrefix, std::ostream& out);
  static void WriteRowHeaders(const AxisLayout& rows, int rowIndex, const std::string& idPrefix, std::ostream& out);
  static void WriteBody(const TableLayout& layout, int layerIndex, const std::string& idPrefix, std::ostream& out);
  static void WriteFoot(const TableLayout& layout, std::ostream& out);

  int _tableCount = 0;  // tables written so far, numbering the ids of their header cells
};
