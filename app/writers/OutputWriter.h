// OutputWriter.h - the writer interface: one semantic call per part of the document
#pragma once

#include <memory>
#include <ostream>
#include <string>

class OutputDocument;
class TableLayout;
struct OutputItem;

/// Settings that every writer receives; each documents its default.
struct WriterOptions {
  int width = 0;       // text: line width; 0 means 100
  bool ascii = false;  // text: draw with + - | instead of box-drawing characters
};

/// Writes a whole output document in one format. The document is walked here, in order;
/// subclasses turn each part into their format. Every table is laid out (TableLayout)
/// before its writer call, so all formats show the same labels in the same places.
class OutputWriter {
 public:
  virtual ~OutputWriter() = default;

  /// "text", "json", "html" or "xlsx"; any other name gives null.
  static std::unique_ptr<OutputWriter> Create(const std::string& format, const WriterOptions& options);

  /// True for a format whose bytes are not text (a workbook): they must reach the file
  /// untouched, and are no use on a terminal.
  virtual bool IsBinary() const { return false; }

  void Write(const OutputDocument& document, std::ostream& out);

  /// A cell's text followed by its markers and its note marks as the text and HTML
  /// writers show them: "12 A B [a]".
  static std::string CellDisplay(const struct LayoutCell& cell);

 protected:
  virtual void BeginDocument(std::ostream& out) = 0;
  virtual void EndDocument(std::ostream& out) = 0;
  /// `depth` is 0 for a top-level heading.
  virtual void BeginHeading(const std::string& text, int depth, std::ostream& out) = 0;
  virtual void EndHeading(int depth, std::ostream& out) = 0;
  virtual void WriteMessage(int level, const std::string& text, std::ostream& out) = 0;
  virtual void WriteTable(const TableLayout& layout, std::ostream& out) = 0;

  /// What a table without any cell shows under its title, in every drawn format.
  static constexpr const char* kNoCasesText = "(no cases)";
  /// "Warning", "Error" or "Fatal error" for a message level.
  static std::string LevelName(int level);

 private:
  void WriteItem(const OutputItem& item, int depth, std::ostream& out);
};
