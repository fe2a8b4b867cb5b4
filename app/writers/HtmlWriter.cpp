// HtmlWriter.cpp - headings as sections, tables with spanning headers, notes in the footer
#include "writers/HtmlWriter.h"

#include <algorithm>
#include <string>

#include "writers/TableLayout.h"

namespace {

constexpr const char* kStyle =
    R"(body{font-family:system-ui,-apple-system,"Segoe UI",Arial,sans-serif;margin:1.5em;color:#111}
section{margin-left:0.5em}
table{border-collapse:collapse;margin:0.5em 0 1.5em 0;font-size:0.9em;page-break-inside:avoid}
caption{text-align:left;font-weight:bold;padding:0.3em 0}
caption .merged,caption .layer{display:block;font-weight:normal}
th,td{border:1px solid #999;padding:0.2em 0.5em;vertical-align:top}
thead th{background:#eef;text-align:center}
tbody th{background:#f6f6f6;text-align:left;font-weight:normal}
td{text-align:right;font-variant-numeric:tabular-nums}
tfoot td{text-align:left;border:none;font-size:0.9em}
th[scope=col],th[scope=row]{white-space:nowrap}
.table-scroll{overflow-x:auto;max-width:100%}
.marker{font-size:0.8em;padding-left:0.2em}
.message{padding:0.3em 0.6em;border-left:4px solid #c90}
.message.error,.message.fatal{border-left-color:#c00}
@media print{body{margin:0}thead{display:table-header-group}.table-scroll{overflow:visible}})";

// The ids of the header cells over column `index`, or beside row `index`, outermost first:
// what the `headers` attribute of a data cell lists for screen readers and scrapers.
std::string HeaderIds(const AxisLayout& axis, int index, const std::string& prefix) {
  std::string ids;
  const HeaderLabel* previous = nullptr;
  for (int level = 0; level < axis.levels; ++level) {
    const HeaderLabel* label = axis.LabelAt(level, index);
    if (label == nullptr || label == previous) continue;
    previous = label;
    ids +=
        (ids.empty() ? "" : " ") + prefix + std::to_string(label->level) + "-" + std::to_string(label->start);
  }
  return ids;
}

}  // namespace

std::string HtmlWriter::Escape(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\n':
        out += "<br>";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string HtmlWriter::Marks(const std::vector<std::string>& marks) {
  if (marks.empty()) return "";
  std::string joined;
  for (std::size_t i = 0; i < marks.size(); ++i) joined += (i == 0 ? "" : ",") + Escape(marks[i]);
  return "<sup>" + joined + "</sup>";
}

void HtmlWriter::BeginDocument(std::ostream& out) {
  out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>Quilt "
         "output</title>\n"
      << "<style>\n"
      << kStyle << "\n</style>\n</head>\n<body>\n";
}

void HtmlWriter::EndDocument(std::ostream& out) {
  out << "</body>\n</html>\n";
}

void HtmlWriter::BeginHeading(const std::string& text, int depth, std::ostream& out) {
  const int level = std::min(depth + 1, 6);
  out << "<section>\n<h" << level << '>' << Escape(text) << "</h" << level << ">\n";
}

void HtmlWriter::EndHeading(int /*depth*/, std::ostream& out) {
  out << "</section>\n";
}

void HtmlWriter::WriteMessage(int level, const std::string& text, std::ostream& out) {
  const char* kind = level >= 4 ? "fatal" : level >= 3 ? "error" : "warning";
  out << "<p class=\"message " << kind << "\"><strong>" << Escape(LevelName(level)) << ":</strong> "
      << Escape(text) << "</p>\n";
}

// The table's own data column widths, in points as the user gave them, as a style attribute
// for every data cell and the column labels that stand over one column.
std::string HtmlWriter::WidthStyle(const DeliveredTable& table) {
  std::string style;
  if (table.minDataColumnWidth > 0) style += "min-width:" + std::to_string(table.minDataColumnWidth) + "pt;";
  if (table.maxDataColumnWidth > 0) style += "max-width:" + std::to_string(table.maxDataColumnWidth) + "pt;";
  return style.empty() ? style : " style=\"" + style + "\"";
}

void HtmlWriter::WriteCaption(const TableLayout& layout, std::size_t layerIndex, std::ostream& out) {
  const DeliveredTable& table = layout.GetTable();
  const auto& layers = layout.GetLayers();
  out << "<caption>";
  // An empty table names itself, even where the outline carries its title.
  const bool titleShown = !table.titleHidden || layout.IsEmpty();
  if (titleShown) out << Escape(table.title) << Marks(layout.GetTitleMarks());
  if (!table.mergedTitle.empty() && !(titleShown && table.mergedTitle == table.title))
    out << "<span class=\"merged\">" << Escape(table.mergedTitle) << "</span>";
  if (layerIndex < layers.size() && !layers[layerIndex].labelPath.empty()) {
    std::string path;
    for (const std::string& label : layers[layerIndex].labelPath) path += (path.empty() ? "" : " / ") + label;
    out << "<span class=\"layer\">" << Escape(path) << "</span>";
  }
  out << "</caption>\n";
}

// Header rows: the corner spans the row-header columns and every header level.
void HtmlWriter::WriteHead(const TableLayout& layout, const std::string& idPrefix, std::ostream& out) {
  const AxisLayout& columns = layout.GetColumns();
  const std::string widthStyle = WidthStyle(layout.GetTable());
  out << "<thead>\n";
  const int headerRows = std::max(columns.levels, 1);
  for (int level = 0; level < headerRows; ++level) {
    out << "<tr>";
    if (level == 0) {
      out << "<td colspan=\"" << std::max(layout.GetRows().levels, 1) << "\" rowspan=\"" << headerRows << "\">"
          << Escape(layout.GetTable().corner) << "</td>";
    }
    for (const HeaderLabel& label : columns.labels) {
      if (label.level != level) continue;
      out << "<th id=\"" << idPrefix << "c" << label.level << "-" << label.start << "\" scope=\""
          << (label.span > 1 ? "colgroup" : "col") << "\"";
      if (label.span > 1) out << " colspan=\"" << label.span << "\"";
      if (label.depth > 1) out << " rowspan=\"" << label.depth << "\"";
      if (label.span == 1) out << widthStyle;
      out << '>' << Escape(label.text) << "</th>";
    }
    if (columns.levels == 0) {
      for (std::size_t column = 0; column < columns.entries.size(); ++column) out << "<td></td>";
    }
    out << "</tr>\n";
  }
  out << "</thead>\n";
}

void HtmlWriter::WriteRowHeaders(const AxisLayout& rows, int rowIndex, const std::string& idPrefix,
                                 std::ostream& out) {
  if (rows.levels == 0) out << "<th scope=\"row\"></th>";
  for (int level = 0; level < rows.levels; ++level) {
    const HeaderLabel* label = rows.LabelAt(level, rowIndex);
    if (label == nullptr) {
      out << "<th scope=\"row\"></th>";
      continue;
    }
    if (label->level != level || label->start != rowIndex) continue;
    out << "<th id=\"" << idPrefix << "r" << label->level << "-" << label->start << "\" scope=\""
        << (label->span > 1 ? "rowgroup" : "row") << "\"";
    if (label->span > 1) out << " rowspan=\"" << label->span << "\"";
    if (label->depth > 1) out << " colspan=\"" << label->depth << "\"";
    out << '>' << Escape(label->text) << "</th>";
  }
}

void HtmlWriter::WriteBody(const TableLayout& layout, int layerIndex, const std::string& idPrefix,
                           std::ostream& out) {
  const AxisLayout& rows = layout.GetRows();
  const AxisLayout& columns = layout.GetColumns();
  const int columnCount = static_cast<int>(columns.entries.size());
  const std::string widthStyle = WidthStyle(layout.GetTable());
  out << "<tbody>\n";
  if (layout.IsEmpty())
    out << "<tr><td colspan=\"" << TotalColumns(layout) << "\">" << kNoCasesText << "</td></tr>\n";
  std::vector<std::string> columnIds;
  for (int columnIndex = 0; columnIndex < columnCount; ++columnIndex)
    columnIds.push_back(HeaderIds(columns, columnIndex, idPrefix + "c"));
  for (int rowIndex = 0; rowIndex < static_cast<int>(rows.entries.size()) && !layout.IsEmpty(); ++rowIndex) {
    out << "<tr>";
    WriteRowHeaders(rows, rowIndex, idPrefix, out);
    const std::string rowIds = HeaderIds(rows, rowIndex, idPrefix + "r");
    for (int columnIndex = 0; columnIndex < columnCount; ++columnIndex) {
      const LayoutCell& cell = layout.GetCell(layerIndex, rowIndex, columnIndex);
      const std::string& ids = columnIds[static_cast<std::size_t>(columnIndex)];
      const std::string headers = ids + (ids.empty() || rowIds.empty() ? "" : " ") + rowIds;
      out << "<td";
      if (!headers.empty()) out << " headers=\"" << headers << "\"";
      out << widthStyle << '>' << Escape(cell.text);
      if (!cell.markers.empty()) {
        std::string markers;
        for (const std::string& marker : cell.markers) markers += (markers.empty() ? "" : " ") + marker;
        out << "<span class=\"marker\">" << Escape(markers) << "</span>";
      }
      out << Marks(cell.noteMarks) << "</td>";
    }
    out << "</tr>\n";
  }
  out << "</tbody>\n";
}

void HtmlWriter::WriteFoot(const TableLayout& layout, std::ostream& out) {
  const DeliveredTable& table = layout.GetTable();
  if (table.caption.empty() && table.notes.empty()) return;
  const int totalColumns = TotalColumns(layout);
  out << "<tfoot>\n";
  if (!table.caption.empty()) {
    out << "<tr><td colspan=\"" << totalColumns << "\">" << Escape(table.caption) << Marks(table.captionNoteMarks)
        << "</td></tr>\n";
  }
  for (const DeliveredNote& note : table.notes) {
    out << "<tr><td colspan=\"" << totalColumns << "\"><sup>" << Escape(note.mark) << "</sup> "
        << Escape(note.text) << "</td></tr>\n";
  }
  out << "</tfoot>\n";
}

int HtmlWriter::TotalColumns(const TableLayout& layout) {
  return std::max(layout.GetRows().levels, 1) + static_cast<int>(layout.GetColumns().entries.size());
}

void HtmlWriter::WriteTable(const TableLayout& layout, std::ostream& out) {
  // An empty table still gets one <table>, whose caption names it, even without a layer.
  const std::size_t layerCount = layout.IsEmpty() ? 1 : layout.GetLayers().size();
  ++_tableCount;
  for (std::size_t layerIndex = 0; layerIndex < layerCount; ++layerIndex) {
    // Ids unique in the page: table, layer, axis, header level and first entry.
    const std::string idPrefix = "q" + std::to_string(_tableCount) + "-" + std::to_string(layerIndex + 1) + "-";
    // A wide table scrolls in its own box; the page around it stays put.
    out << "<div class=\"table-scroll\">\n<table>\n";
    WriteCaption(layout, layerIndex, out);
    WriteHead(layout, idPrefix, out);
    WriteBody(layout, static_cast<int>(layerIndex), idPrefix, out);
    WriteFoot(layout, out);
    out << "</table>\n</div>\n";
  }
}
