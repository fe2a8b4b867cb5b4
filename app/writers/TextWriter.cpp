// TextWriter.cpp - boxed grids with spanning headers, wrapping labels and column panels
#include "writers/TextWriter.h"

#include <algorithm>
#include <set>

#include "host/Utf8Text.h"
#include "writers/TableLayout.h"

namespace {

constexpr int kDefaultWidth = 100;
constexpr int kMaxLabelWidth = 20;     // data column labels wrap beyond this
constexpr int kMaxRowLabelWidth = 30;  // row labels wrap beyond this
constexpr int kMinRowLabelWidth = 6;   // a row label column is never narrowed below this
constexpr int kUsefulDataColumns = 3;  // a panel should hold this many data columns

// Width on the terminal: one column per character, a byte that is not UTF-8 counting as the
// one replacement character it is written as.
int DisplayWidth(const std::string& text) {
  return static_cast<int>(Utf8Text::CharacterCount(text));
}

// Width of the widest line of a text that may hold line breaks (a p-value under each letter).
int WidestLine(const std::string& text) {
  int widest = 0;
  for (std::size_t start = 0; start <= text.size();) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    widest = std::max(widest, DisplayWidth(text.substr(start, end - start)));
    start = end + 1;
  }
  return widest;
}

// Cuts a word of more than `width` characters into pieces, never inside a character.
std::vector<std::string> CutWord(const std::string& word, int width) {
  std::vector<std::string> pieces;
  std::string piece;
  int pieceWidth = 0;
  for (std::size_t offset = 0; offset < word.size();) {
    const std::size_t length = Utf8Text::CharacterLengthAt(word, offset);
    if (pieceWidth == width) {
      pieces.push_back(piece);
      piece.clear();
      pieceWidth = 0;
    }
    ++pieceWidth;
    piece.append(word, offset, length);
    offset += length;
  }
  if (!piece.empty()) pieces.push_back(piece);
  return pieces;
}

// Greedy word wrap into lines of at most `width` code points.
std::vector<std::string> Wrap(const std::string& text, int width) {
  std::vector<std::string> lines;
  width = std::max(width, 1);
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    const std::string paragraph = text.substr(start, end - start);
    std::string line;
    std::size_t position = 0;
    while (position < paragraph.size()) {
      const std::size_t wordEnd = std::min(paragraph.find(' ', position), paragraph.size());
      const std::string word = paragraph.substr(position, wordEnd - position);
      position = wordEnd + 1;
      if (word.empty()) continue;
      for (const std::string& piece : CutWord(word, width)) {
        if (line.empty()) {
          line = piece;
        } else if (DisplayWidth(line) + 1 + DisplayWidth(piece) <= width) {
          line += " " + piece;
        } else {
          lines.push_back(line);
          line = piece;
        }
      }
    }
    lines.push_back(line);
    start = end + 1;
  }
  if (lines.empty()) lines.emplace_back();
  return lines;
}

int LongestWord(const std::string& text) {
  int longest = 0;
  std::size_t position = 0;
  while (position <= text.size()) {
    std::size_t end = text.find_first_of(" \n", position);
    if (end == std::string::npos) end = text.size();
    longest = std::max(longest, DisplayWidth(text.substr(position, end - position)));
    position = end + 1;
  }
  return longest;
}

// The width a label asks for: all of it up to `limit`, but never less than its longest word
// (cut at `limit`).
int LabelWidth(const std::string& text, int limit) {
  return std::min(std::max(std::min(DisplayWidth(text), limit), LongestWord(text)), limit);
}

std::string Pad(const std::string& text, int width, bool alignRight) {
  const int padding = std::max(0, width - DisplayWidth(text));
  return alignRight ? std::string(static_cast<std::size_t>(padding), ' ') + text
                    : text + std::string(static_cast<std::size_t>(padding), ' ');
}

std::string MarkList(const std::vector<std::string>& marks) {
  if (marks.empty()) return "";
  std::string text = " [";
  for (std::size_t i = 0; i < marks.size(); ++i) text += (i == 0 ? "" : ",") + marks[i];
  return text + "]";
}

}  // namespace

TextWriter::TextWriter(const WriterOptions& options)
    : _width(options.width > 0 ? options.width : kDefaultWidth), _ascii(options.ascii) {}

void TextWriter::BeginDocument(std::ostream& /*out*/) {}

void TextWriter::EndDocument(std::ostream& /*out*/) {}

void TextWriter::BeginHeading(const std::string& text, int depth, std::ostream& out) {
  out << text << '\n'
      << std::string(static_cast<std::size_t>(DisplayWidth(text)), depth == 0 ? '=' : '-') << "\n\n";
}

void TextWriter::EndHeading(int /*depth*/, std::ostream& /*out*/) {}

void TextWriter::WriteMessage(int level, const std::string& text, std::ostream& out) {
  WriteWrapped(LevelName(level) + ": " + text, out);
  out << '\n';
}

void TextWriter::WriteWrapped(const std::string& text, std::ostream& out) const {
  for (const std::string& line : Wrap(text, _width)) out << line << '\n';
}

std::string TextWriter::Rule(const std::vector<int>& widths, const GridRow* above,
                             const GridRow* below) const {
  // Column boundaries where a vertical line meets the rule from above or below.
  auto boundaries = [](const GridRow* row) {
    std::set<int> found;
    if (row == nullptr) return found;
    for (const Segment& segment : *row) found.insert(segment.first);
    return found;
  };
  const std::set<int> up = boundaries(above);
  const std::set<int> down = boundaries(below);
  const char* horizontal = _ascii ? "-" : "─";
  auto junction = [&](int column, bool first, bool last) -> std::string {
    const bool fromAbove = up.count(column) != 0 || (first && above) || (last && above);
    const bool fromBelow = down.count(column) != 0 || (first && below) || (last && below);
    if (_ascii) return (fromAbove || fromBelow) ? "+" : "-";
    if (first) return fromAbove && fromBelow ? "├" : fromBelow ? "┌" : "└";
    if (last) return fromAbove && fromBelow ? "┤" : fromBelow ? "┐" : "┘";
    if (fromAbove && fromBelow) return "┼";
    if (fromBelow) return "┬";
    if (fromAbove) return "┴";
    return horizontal;
  };
  std::string line = junction(0, true, false);
  for (std::size_t column = 0; column < widths.size(); ++column) {
    for (int i = 0; i < widths[column] + 2; ++i) line += horizontal;
    const bool last = column + 1 == widths.size();
    line += junction(static_cast<int>(column) + 1, false, last);
  }
  return line;
}

void TextWriter::WriteGrid(const std::vector<GridRow>& header, const std::vector<GridRow>& body,
                           const std::vector<int>& widths, std::ostream& out) const {
  const char* vertical = _ascii ? "|" : "│";
  auto segmentWidth = [&](const Segment& segment) {
    int width = 0;
    for (int column = segment.first; column < segment.first + segment.span; ++column) {
      width += widths[static_cast<std::size_t>(column)];
    }
    return width + 3 * (segment.span - 1);
  };
  auto writeRow = [&](const GridRow& row) {
    std::vector<std::vector<std::string>> wrapped;
    std::size_t height = 1;
    for (const Segment& segment : row) {
      wrapped.push_back(Wrap(segment.text, segmentWidth(segment)));
      height = std::max(height, wrapped.back().size());
    }
    for (std::size_t lineIndex = 0; lineIndex < height; ++lineIndex) {
      std::string line = vertical;
      for (std::size_t segmentIndex = 0; segmentIndex < row.size(); ++segmentIndex) {
        const std::string& text =
            lineIndex < wrapped[segmentIndex].size() ? wrapped[segmentIndex][lineIndex] : std::string();
        line +=
            " " + Pad(text, segmentWidth(row[segmentIndex]), row[segmentIndex].alignRight) + " " + vertical;
      }
      out << line << '\n';
    }
  };
  const GridRow* first = header.empty() ? (body.empty() ? nullptr : &body.front()) : &header.front();
  out << Rule(widths, nullptr, first) << '\n';
  for (const GridRow& row : header) writeRow(row);
  if (!header.empty() && !body.empty()) out << Rule(widths, &header.back(), &body.front()) << '\n';
  for (const GridRow& row : body) writeRow(row);
  const GridRow* last = body.empty() ? (header.empty() ? nullptr : &header.back()) : &body.back();
  out << Rule(widths, last, nullptr) << '\n';
}

namespace {

// How wide every header level and data column is drawn, decided once for every layer so
// that the sections of a layered table line up.
struct GridWidths {
  std::vector<int> rowLevels;  // one per row header level
  std::vector<int> data;       // one per data column
  int rowBlock = 1;            // the row headers' share of a line, rules included
  std::vector<bool> prose;     // per data column: its text cells wrap, so they read from the left
};

// Row headers take no column when every row label is hidden and the corner is empty (a list
// of sentences, a table of columns only); otherwise at least one.
int RowHeaderLevels(const TableLayout& layout) {
  const int levels = layout.GetRows().levels;
  return levels == 0 && layout.GetTable().corner.empty() ? 0 : std::max(levels, 1);
}

std::vector<int> RowLevelWidths(const TableLayout& layout, int rowLevels) {
  std::vector<int> widths(static_cast<std::size_t>(rowLevels), 1);
  for (const HeaderLabel& label : layout.GetRows().labels) {
    int& width = widths[static_cast<std::size_t>(label.level + label.depth - 1)];
    width = std::max(width, LabelWidth(label.text, kMaxRowLabelWidth) - 3 * (label.depth - 1));
  }
  const std::string& corner = layout.GetTable().corner;
  if (!corner.empty()) {
    int available = 3 * (rowLevels - 1);
    for (int width : widths) available += width;
    const int wanted = LabelWidth(corner, kMaxRowLabelWidth);
    if (wanted > available) widths.back() += wanted - available;
  }
  return widths;
}

// What each data column's cells ask for. Only a cell text that holds no number and is wider
// than the page (a long sentence) wraps, at the page's width; no other cell text is cut.
std::vector<int> CellColumnWidths(const TableLayout& layout, int pageWidth) {
  const int columnCount = static_cast<int>(layout.GetColumns().entries.size());
  const int rowCount = static_cast<int>(layout.GetRows().entries.size());
  const int layerCount = static_cast<int>(layout.GetLayers().size());
  std::vector<int> widths(static_cast<std::size_t>(columnCount), 1);
  for (int layerIndex = 0; layerIndex < layerCount; ++layerIndex) {
    for (int rowIndex = 0; rowIndex < rowCount; ++rowIndex) {
      for (int columnIndex = 0; columnIndex < columnCount; ++columnIndex) {
        const std::string display = OutputWriter::CellDisplay(layout.GetCell(layerIndex, rowIndex, columnIndex));
        int wanted = WidestLine(display);
        if (!layout.GetCell(layerIndex, rowIndex, columnIndex).hasNumber)
          wanted = std::min(wanted, std::max(pageWidth - 4, LongestWord(display)));
        int& width = widths[static_cast<std::size_t>(columnIndex)];
        width = std::max(width, wanted);
      }
    }
  }
  return widths;
}

// The data column widths: the cells' own, widened for the column labels (a spanning label
// into its last column, narrow labels first; labels wrap at the table's maximum), then held
// within the table's minimum and maximum, which never cut a cell's text. A minimum wider than
// the page is held to the page, so that a column of sentences still fits on it.
std::vector<int> DataColumnWidths(const TableLayout& layout, int pageWidth) {
  const int minCharacters = std::min(layout.GetMinDataColumnCharacters(), pageWidth - 4);
  const int maxCharacters = layout.GetMaxDataColumnCharacters();
  const int labelLimit = maxCharacters > 0 ? maxCharacters : kMaxLabelWidth;
  const std::vector<int> cellWidths = CellColumnWidths(layout, pageWidth);
  std::vector<int> widths = cellWidths;
  std::vector<HeaderLabel> bySpan = layout.GetColumns().labels;
  std::stable_sort(bySpan.begin(), bySpan.end(), [](const auto& a, const auto& b) { return a.span < b.span; });
  for (const HeaderLabel& label : bySpan) {
    int available = 3 * (label.span - 1);
    for (int column = label.start; column < label.start + label.span; ++column)
      available += widths[static_cast<std::size_t>(column)];
    const int wanted = LabelWidth(label.text, labelLimit * label.span);
    if (wanted > available) widths[static_cast<std::size_t>(label.start + label.span - 1)] += wanted - available;
  }
  for (std::size_t column = 0; column < widths.size(); ++column) {
    int& width = widths[column];
    if (maxCharacters > 0) width = std::min(width, std::max(maxCharacters, cellWidths[column]));
    width = std::max(width, minCharacters);
  }
  return widths;
}

// How many data columns fit on a line beside row headers `rowBlock` wide.
int ColumnsBeside(const GridWidths& widths, int pageWidth) {
  int fitting = 0;
  const int columnCount = static_cast<int>(widths.data.size());
  for (int used = widths.rowBlock; fitting < columnCount; ++fitting) {
    used += widths.data[static_cast<std::size_t>(fitting)] + 3;
    if (used > pageWidth) break;
  }
  return fitting;
}

// Row labels wrap like column labels when the row headers leave too little room for data:
// while the first panel would hold fewer than a few data columns, the widest row level gives
// up width, down to half the line for all row headers.
void NarrowRowHeaders(GridWidths& widths, int pageWidth) {
  const int usefulColumns = std::min(static_cast<int>(widths.data.size()), kUsefulDataColumns);
  while (!widths.rowLevels.empty() && ColumnsBeside(widths, pageWidth) < usefulColumns &&
         widths.rowBlock > pageWidth / 2) {
    auto widestLevel = std::max_element(widths.rowLevels.begin(), widths.rowLevels.end());
    if (*widestLevel <= kMinRowLabelWidth) break;
    --*widestLevel;
    --widths.rowBlock;
  }
}

// A column in which some text without a number is wider than the column wraps it as prose;
// all its text cells then align left, as sentences read, and its numbers stay right.
std::vector<bool> ProseColumns(const TableLayout& layout, const std::vector<int>& dataWidths) {
  const int rowCount = static_cast<int>(layout.GetRows().entries.size());
  const int layerCount = static_cast<int>(layout.GetLayers().size());
  std::vector<bool> prose(dataWidths.size(), false);
  for (int layerIndex = 0; layerIndex < layerCount; ++layerIndex) {
    for (int rowIndex = 0; rowIndex < rowCount; ++rowIndex) {
      for (std::size_t column = 0; column < dataWidths.size(); ++column) {
        const LayoutCell& cell = layout.GetCell(layerIndex, rowIndex, static_cast<int>(column));
        if (!cell.hasNumber && WidestLine(OutputWriter::CellDisplay(cell)) > dataWidths[column])
          prose[column] = true;
      }
    }
  }
  return prose;
}

GridWidths DecideWidths(const TableLayout& layout, int pageWidth) {
  GridWidths widths;
  widths.rowLevels = RowLevelWidths(layout, RowHeaderLevels(layout));
  widths.data = DataColumnWidths(layout, pageWidth);
  widths.prose = ProseColumns(layout, widths.data);
  for (int width : widths.rowLevels) widths.rowBlock += width + 3;
  NarrowRowHeaders(widths, pageWidth);
  return widths;
}

// Column panels [first, end): as many data columns as fit beside the repeated row headers. A
// panel that cuts through a group squeezes the group's label into the columns it keeps, so a
// panel ends at the start of the outermost group it would cut, unless that group starts the
// panel (it is wider than a panel, or spans everything).
std::vector<std::pair<int, int>> ColumnPanels(const AxisLayout& columns, const GridWidths& widths, int pageWidth) {
  const int columnCount = static_cast<int>(widths.data.size());
  std::vector<std::pair<int, int>> panels;
  for (int start = 0; start < columnCount || (start == 0 && columnCount == 0);) {
    int end = start;
    int used = widths.rowBlock;
    while (end < columnCount &&
           (end == start || used + widths.data[static_cast<std::size_t>(end)] + 3 <= pageWidth)) {
      used += widths.data[static_cast<std::size_t>(end)] + 3;
      ++end;
    }
    for (int level = 0; end < columnCount && level < columns.levels; ++level) {
      const HeaderLabel* label = columns.LabelAt(level, end);
      if (label != nullptr && label->start > start && label->start < end) {
        end = label->start;
        break;
      }
    }
    panels.emplace_back(start, end);
    if (end == start) break;
    start = end;
  }
  return panels;
}

std::string LayerPath(const AxisEntry& layer) {
  std::string path;
  for (const std::string& label : layer.labelPath) path += (path.empty() ? "" : " / ") + label;
  return path;
}

}  // namespace

std::vector<TextWriter::GridRow> TextWriter::HeaderRows(const TableLayout& layout, int panelStart,
                                                         int panelEnd) {
  const AxisLayout& columns = layout.GetColumns();
  const int rowLevels = RowHeaderLevels(layout);
  std::vector<GridRow> header;
  for (int level = 0; level < columns.levels; ++level) {
    GridRow row;
    if (rowLevels > 0)
      row.push_back({0, rowLevels, level == 0 ? layout.GetTable().corner : std::string(), false});
    for (int column = panelStart; column < panelEnd;) {
      const HeaderLabel* label = columns.LabelAt(level, column);
      const int end = label == nullptr ? column + 1 : std::min(label->start + label->span, panelEnd);
      const bool shows = label != nullptr && label->level == level;
      row.push_back({rowLevels + column - panelStart, end - column, shows ? label->text : std::string(), false});
      column = end;
    }
    header.push_back(std::move(row));
  }
  return header;
}

std::vector<TextWriter::GridRow> TextWriter::BodyRows(const TableLayout& layout, int layerIndex, int panelStart,
                                                       int panelEnd, const std::vector<bool>& prose) {
  const AxisLayout& rows = layout.GetRows();
  const int rowLevels = RowHeaderLevels(layout);
  std::vector<GridRow> body;
  for (int rowIndex = 0; rowIndex < static_cast<int>(rows.entries.size()); ++rowIndex) {
    GridRow row;
    for (int level = 0; level < rowLevels;) {
      const HeaderLabel* label = rows.levels == 0 ? nullptr : rows.LabelAt(level, rowIndex);
      const int depth = label == nullptr ? 1 : label->level + label->depth - level;
      const bool shows = label != nullptr && label->start == rowIndex && label->level == level;
      row.push_back({level, depth, shows ? label->text : std::string(), false});
      level += depth;
    }
    for (int column = panelStart; column < panelEnd; ++column) {
      const LayoutCell& cell = layout.GetCell(layerIndex, rowIndex, column);
      const bool alignRight = cell.hasNumber || !prose[static_cast<std::size_t>(column)];
      row.push_back({rowLevels + column - panelStart, 1, CellDisplay(cell), alignRight});
    }
    body.push_back(std::move(row));
  }
  return body;
}

void TextWriter::WriteTableNotes(const DeliveredTable& table, std::ostream& out) const {
  if (!table.caption.empty()) WriteWrapped(table.caption + MarkList(table.captionNoteMarks), out);
  for (const DeliveredNote& note : table.notes) WriteWrapped(note.mark + ". " + note.text, out);
  out << '\n';
}

void TextWriter::WriteTable(const TableLayout& layout, std::ostream& out) {
  const DeliveredTable& table = layout.GetTable();
  // A table without a single cell would draw only the two rules of an empty box: its title,
  // shown even where the outline carries it, says which table is empty instead.
  const bool titleShown = !table.titleHidden || layout.IsEmpty();
  if (titleShown) WriteWrapped(table.title + MarkList(layout.GetTitleMarks()), out);
  // The merged title names a table that shows test letters; it is not repeated under an
  // equal title.
  if (!table.mergedTitle.empty() && !(titleShown && table.mergedTitle == table.title))
    WriteWrapped(table.mergedTitle, out);
  if (layout.IsEmpty()) {
    WriteWrapped(kNoCasesText, out);
    WriteTableNotes(table, out);
    return;
  }
  const GridWidths widths = DecideWidths(layout, _width);
  const auto panels = ColumnPanels(layout.GetColumns(), widths, _width);
  const int columnCount = static_cast<int>(widths.data.size());
  const auto& layers = layout.GetLayers();
  for (int layerIndex = 0; layerIndex < static_cast<int>(layers.size()); ++layerIndex) {
    const std::string path = LayerPath(layers[static_cast<std::size_t>(layerIndex)]);
    if (!path.empty()) WriteWrapped(path, out);
    for (const auto& [panelStart, panelEnd] : panels) {
      if (panels.size() > 1)
        out << "(columns " << panelStart + 1 << "-" << panelEnd << " of " << columnCount << ")\n";
      std::vector<int> gridWidths = widths.rowLevels;
      gridWidths.insert(gridWidths.end(), widths.data.begin() + panelStart, widths.data.begin() + panelEnd);
      WriteGrid(HeaderRows(layout, panelStart, panelEnd), BodyRows(layout, layerIndex, panelStart, panelEnd, widths.prose),
                gridWidths, out);
    }
  }
  WriteTableNotes(table, out);
}
