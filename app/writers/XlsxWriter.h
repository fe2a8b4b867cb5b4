// XlsxWriter.h - the output document as a spreadsheet workbook, one worksheet per table
#pragma once

#include <memory>

#include "writers/OutputWriter.h"

/// Writes an .xlsx workbook (through libxlsxwriter). Each delivered table gets a worksheet
/// named after its title; the sheet shows the title, the split group it belongs to, then
/// each layer as a block (its labels, the corner and column headers merged over the columns
/// they span, row headers merged over the rows they span, the cells), then the caption and
/// the notes. Numbers stay numbers, shown through the number format their text implies
/// (ExcelNumberFormat); significance letters and note marks stand as text in a narrow
/// column right of the numbers they belong to, under the same header. Messages go to a
/// worksheet "Messages" at the end. The workbook is assembled in a temporary file and its
/// bytes copied to the stream at the end of the document; a failure sets the stream's
/// failbit.
class XlsxWriter : public OutputWriter {
 public:
  XlsxWriter();
  ~XlsxWriter() override;
  bool IsBinary() const override { return true; }

 protected:
  void BeginDocument(std::ostream& out) override;
  void EndDocument(std::ostream& out) override;
  void BeginHeading(const std::string& text, int depth, std::ostream& out) override;
  void EndHeading(int depth, std::ostream& out) override;
  void WriteMessage(int level, const std::string& text, std::ostream& out) override;
  void WriteTable(const TableLayout& layout, std::ostream& out) override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
