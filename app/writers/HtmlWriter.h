// HtmlWriter.h - the output document as one self-contained HTML5 page
#pragma once

#include <string>
#include <vector>

#include "writers/OutputWriter.h"

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

  int _tableCount = 0;  // tables written so far, numbering the ids of their header cells
};
