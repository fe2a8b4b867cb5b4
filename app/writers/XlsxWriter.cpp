// XlsxWriter.cpp - worksheets with merged headers, numbers under their formats, a messages sheet
#include "writers/XlsxWriter.h"

#include <unistd.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "host/Utf8Text.h"
#include "host/output/BpError.h"
#include "writers/ExcelNumberFormat.h"
#include "writers/TableLayout.h"

namespace {

constexpr const char* kMessagesSheet = "Messages";
constexpr std::size_t kMaxSheetNameUnits = 31;  // Excel's limit, in UTF-16 code units
constexpr std::size_t kMaxCellUnits = 32767;    // Excel's limit for the text of one cell
constexpr double kMaxColumnWidth = 50;          // characters; longer labels wrap
constexpr const char* kClippedText =
    "(This table is larger than a worksheet: cells beyond row 1,048,576 or column 16,384 are left out.)";

// UTF-16 code units of the character at `offset` of repaired text: two for a character
// beyond the Basic Multilingual Plane, which UTF-8 writes in four bytes.
std::size_t Utf16Units(const std::string& text, std::size_t offset, std::size_t& length) {
  length = std::max<std::size_t>(Utf8Text::CharacterLengthAt(text, offset), 1);
  return length == 4 ? 2 : 1;
}

// At most `maxUnits` UTF-16 code units of valid `text`, never cut inside a character.
std::string CutToUnits(const std::string& text, std::size_t maxUnits) {
  std::size_t units = 0;
  std::size_t offset = 0;
  while (offset < text.size()) {
    std::size_t length = 0;
    const std::size_t characterUnits = Utf16Units(text, offset, length);
    if (units + characterUnits > maxUnits) break;
    units += characterUnits;
    offset += length;
  }
  return text.substr(0, offset);
}

// Spaces and apostrophes trimmed from both ends: Excel refuses a name that starts or ends
// with an apostrophe, and blanks at the ends are invisible on a tab.
std::string TrimName(const std::string& name) {
  const std::size_t first = name.find_first_not_of(" '");
  if (first == std::string::npos) return "";
  return name.substr(first, name.find_last_not_of(" '") - first + 1);
}

// `text` cut to `maxUnits` UTF-16 code units by leaving out its middle: the start of a title
// says what the table shows, its end often which group ("..., Survey wave Spring").
std::string Abbreviated(const std::string& text, std::size_t maxUnits) {
  std::size_t units = 0;
  std::vector<std::size_t> starts;  // byte offset of each character
  for (std::size_t offset = 0, length = 0; offset < text.size(); offset += length) {
    starts.push_back(offset);
    units += Utf16Units(text, offset, length);
  }
  if (units <= maxUnits) return text;
  const std::size_t tailUnits = maxUnits * 2 / 5;
  std::string head = CutToUnits(text, maxUnits - tailUnits - 1);
  std::size_t tailStart = text.size();
  for (std::size_t kept = 0, index = starts.size(); index > 0; --index) {
    std::size_t length = 0;
    kept += Utf16Units(text, starts[index - 1], length);
    if (kept > tailUnits) break;
    tailStart = starts[index - 1];
  }
  // Whole words where that costs only a few characters.
  constexpr std::size_t kWordSlack = 6;
  const std::size_t lastSpace = head.rfind(' ');
  if (text[head.size()] != ' ' && lastSpace != std::string::npos && head.size() - lastSpace <= kWordSlack)
    head.erase(lastSpace);
  const std::size_t firstSpace = text.find(' ', tailStart);
  if (tailStart > 0 && text[tailStart - 1] != ' ' && firstSpace != std::string::npos &&
      firstSpace + 1 < text.size() && firstSpace - tailStart < kWordSlack)
    tailStart = firstSpace + 1;
  return TrimName(head) + "\xE2\x80\xA6" + TrimName(text.substr(tailStart));  // U+2026, an ellipsis
}

std::size_t CharacterCount(const std::string& text) {
  std::size_t count = 0;
  for (std::size_t offset = 0; offset < text.size(); ++count)
    offset += std::max<std::size_t>(Utf8Text::CharacterLengthAt(text, offset), 1);
  return count;
}

std::string FoldCase(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

// A table's label path as one line: "Wave / 2024".
std::string JoinPath(const std::vector<std::string>& labels, std::size_t from = 0) {
  std::string joined;
  for (std::size_t i = from; i < labels.size(); ++i) joined += (joined.empty() ? "" : " / ") + labels[i];
  return joined;
}

// " [a,b]", as the text output marks a title or a caption.
std::string MarkList(const std::vector<std::string>& marks) {
  if (marks.empty()) return "";
  std::string text = " [";
  for (std::size_t i = 0; i < marks.size(); ++i) text += (i == 0 ? "" : ",") + marks[i];
  return text + "]";
}

// The letters and note marks of a cell without its number: "A B [a]".
std::string CellMarks(const LayoutCell& cell) {
  std::string text;
  for (const std::string& marker : cell.markers) text += (text.empty() ? "" : " ") + marker;
  if (!cell.noteMarks.empty()) text += (text.empty() ? "" : " ") + MarkList(cell.noteMarks).substr(1);
  return text;
}

// What a cell is, which decides its look.
enum class Role {
  kPlain,  // title lines, caption and notes spill over the cells to their right
  kTitle,
  kHeadings,  // the split group the table belongs to
  kLayer,
  kCorner,
  kColumnLabel,
  kRowLabel,
  kTextCell,        // a data cell that is not a plain number
  kNumberCell,      // with its number format
  kMarks,           // letters and note marks beside a number
  kMessageHeading,  // the header row of the messages sheet
  kMessage,
};

// Where the data columns of a table land on its worksheet and how wide each sheet column is
// drawn. A data column that carries letters or note marks in any layer gets a text column of
// its own to its right.
struct SheetColumns {
  int rowHeaderColumns = 1;
  std::vector<int> first;      // per data column, and one past the last: its first sheet column
  std::vector<double> widths;  // per sheet column, in characters
  double labelLimit = kMaxColumnWidth;

  // The last sheet column of the data columns before `endColumn`, its marks column included.
  int LastBefore(int endColumn) const { return first[static_cast<std::size_t>(endColumn)] - 1; }
  int FirstOf(int column) const { return first[static_cast<std::size_t>(column)]; }

  // A column is as wide as its widest text, up to `limit`; longer labels wrap.
  void Widen(int column, const std::string& text, double limit = kMaxColumnWidth) {
    if (column >= static_cast<int>(widths.size())) return;
    double& width = widths[static_cast<std::size_t>(column)];
    width = std::min(limit, std::max(width, static_cast<double>(CharacterCount(text)) + 1));
  }
};

// The table's own data column widths act as in the text output: a column label wraps at the
// maximum (a cell's own text is never cut, a number would show as ####), and the minimum
// widens narrower columns.
SheetColumns PlaceColumns(const TableLayout& layout) {
  const int columnCount = static_cast<int>(layout.GetColumns().entries.size());
  const int rowCount = static_cast<int>(layout.GetRows().entries.size());
  const int layerCount = layout.IsEmpty() ? 0 : static_cast<int>(layout.GetLayers().size());
  std::vector<bool> hasMarks(static_cast<std::size_t>(columnCount), false);
  for (int layerIndex = 0; layerIndex < layerCount; ++layerIndex) {
    for (int rowIndex = 0; rowIndex < rowCount; ++rowIndex) {
      for (int columnIndex = 0; columnIndex < columnCount; ++columnIndex) {
        if (!CellMarks(layout.GetCell(layerIndex, rowIndex, columnIndex)).empty())
          hasMarks[static_cast<std::size_t>(columnIndex)] = true;
      }
    }
  }
  SheetColumns columns;
  columns.rowHeaderColumns = std::max(layout.GetRows().levels, 1);
  columns.first.assign(static_cast<std::size_t>(columnCount) + 1, columns.rowHeaderColumns);
  for (std::size_t column = 0; column < hasMarks.size(); ++column)
    columns.first[column + 1] = columns.first[column] + (hasMarks[column] ? 2 : 1);
  columns.widths.assign(static_cast<std::size_t>(columns.first.back()), 6);
  const int maxCharacters = layout.GetMaxDataColumnCharacters();
  if (maxCharacters > 0) columns.labelLimit = maxCharacters;
  return columns;
}

}  // namespace

struct XlsxWriter::Data {
  struct Message {
    int level = 0;
    std::string text;
    std::string where;  // the headings it stands under, below the procedure's own
  };

  std::string path;  // the temporary workbook file
  lxw_workbook* workbook = nullptr;
  bool failed = false;
  std::map<std::pair<Role, std::string>, lxw_format*> formats;  // by role and number format code
  std::set<std::string> sheetNames;                             // case-folded, for uniqueness
  std::vector<std::string> headings;                            // open headings, outermost first
  std::vector<Message> messages;
  int sheetCount = 0;

  // The worksheet being written, and whether something fell outside it.
  lxw_worksheet* sheet = nullptr;
  bool clipped = false;

  lxw_format* Format(Role role, const std::string& code = "");
  std::string UniqueSheetName(const std::string& title);
  lxw_worksheet* AddSheet(const std::string& name);
  void Check(lxw_error error);
  bool Fits(int row, int column);
  void Put(int row, int column, const std::string& text, Role role = Role::kPlain);
  void PutNumber(int row, int column, double number, const std::string& code);
  void Merge(int firstRow, int firstColumn, int lastRow, int lastColumn, const std::string& text, Role role);
  void WriteMessagesSheet();
  // One block of a table: the layer's labels, the headers and the rows. Returns the row after
  // it, leaving a blank row; `firstBodyRow` is set by the first block.
  int WriteLayer(const TableLayout& layout, int layerIndex, SheetColumns& columns, int row, int& firstBodyRow);
  void WriteColumnHeaders(const TableLayout& layout, SheetColumns& columns, int row);
  void WriteBodyRow(const TableLayout& layout, int layerIndex, int rowIndex, SheetColumns& columns, int row);
  void SetColumnWidths(const TableLayout& layout, SheetColumns& columns);
};

lxw_format* XlsxWriter::Data::Format(Role role, const std::string& code) {
  const auto found = formats.find({role, code});
  if (found != formats.end()) return found->second;
  lxw_format* format = workbook_add_format(workbook);
  switch (role) {
    case Role::kTitle:
      format_set_bold(format);
      format_set_font_size(format, 12);
      break;
    case Role::kLayer:
      format_set_bold(format);
      break;
    case Role::kHeadings:
      format_set_italic(format);
      break;
    case Role::kCorner:
    case Role::kColumnLabel:
    case Role::kRowLabel:
      format_set_border(format, LXW_BORDER_THIN);
      format_set_border_color(format, 0x999999);
      format_set_text_wrap(format);
      format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
      if (role == Role::kColumnLabel) {
        format_set_bg_color(format, 0xEEEEFF);
        format_set_align(format, LXW_ALIGN_CENTER);
      }
      if (role == Role::kRowLabel) format_set_bg_color(format, 0xF6F6F6);
      break;
    case Role::kMarks:
      format_set_align(format, LXW_ALIGN_LEFT);
      format_set_font_color(format, 0x555555);
      break;
    case Role::kNumberCell:
      format_set_num_format(format, code.c_str());
      [[fallthrough]];
    case Role::kTextCell:
      format_set_align(format, LXW_ALIGN_RIGHT);
      break;
    case Role::kMessageHeading:
      format_set_bold(format);
      format_set_bottom(format, LXW_BORDER_THIN);
      break;
    case Role::kMessage:
      format_set_text_wrap(format);
      format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
      break;
    case Role::kPlain:
      break;
  }
  formats.emplace(std::make_pair(role, code), format);
  return format;
}

// Excel's rules for a sheet name: 1 to 31 characters, none of []:*?/\ , no apostrophe at
// either end, unique ignoring case, and not "History", which it keeps for itself.
std::string XlsxWriter::Data::UniqueSheetName(const std::string& title) {
  std::string base;
  bool lastWasSpace = false;
  for (char c : Utf8Text::Repaired(title, /*replaceControls=*/true)) {
    const bool space =
        c == ' ' || c == '\n' || c == '\t' || std::string_view("[]:*?/\\").find(c) != std::string_view::npos;
    if (space && lastWasSpace) continue;
    base += space ? ' ' : c;
    lastWasSpace = space;
  }
  base = TrimName(base);
  if (base.empty()) base = "Table";
  std::string name = TrimName(Abbreviated(base, kMaxSheetNameUnits));
  for (int number = 2; name.empty() || sheetNames.count(FoldCase(name)) != 0 || FoldCase(name) == "history";
       ++number) {
    const std::string suffix = " (" + std::to_string(number) + ")";
    name = TrimName(Abbreviated(base, kMaxSheetNameUnits - suffix.size())) + suffix;
  }
  sheetNames.insert(FoldCase(name));
  return name;
}

lxw_worksheet* XlsxWriter::Data::AddSheet(const std::string& name) {
  lxw_worksheet* added = workbook_add_worksheet(workbook, name.c_str());
  if (added == nullptr) failed = true;
  ++sheetCount;
  return added;
}

void XlsxWriter::Data::Check(lxw_error error) {
  if (error != LXW_NO_ERROR) failed = true;
}

bool XlsxWriter::Data::Fits(int row, int column) {
  const bool fits = row >= 0 && column >= 0 && row < static_cast<int>(LXW_ROW_MAX) && column < LXW_COL_MAX;
  if (!fits) clipped = true;
  return fits && sheet != nullptr;
}

void XlsxWriter::Data::Put(int row, int column, const std::string& text, Role role) {
  if (!Fits(row, column)) return;
  const std::string shown = CutToUnits(Utf8Text::Repaired(text, /*replaceControls=*/true), kMaxCellUnits);
  lxw_format* format = role == Role::kPlain ? nullptr : Format(role);
  // An empty label still carries its header's border and shading.
  if (shown.empty()) {
    if (format != nullptr)
      Check(
          worksheet_write_blank(sheet, static_cast<lxw_row_t>(row), static_cast<lxw_col_t>(column), format));
    return;
  }
  Check(worksheet_write_string(sheet, static_cast<lxw_row_t>(row), static_cast<lxw_col_t>(column),
                               shown.c_str(), format));
}

void XlsxWriter::Data::PutNumber(int row, int column, double number, const std::string& code) {
  if (!Fits(row, column)) return;
  Check(worksheet_write_number(sheet, static_cast<lxw_row_t>(row), static_cast<lxw_col_t>(column), number,
                               Format(Role::kNumberCell, code)));
}

void XlsxWriter::Data::Merge(int firstRow, int firstColumn, int lastRow, int lastColumn,
                             const std::string& text, Role role) {
  if (firstRow == lastRow && firstColumn == lastColumn) {
    Put(firstRow, firstColumn, text, role);
    return;
  }
  if (!Fits(lastRow, lastColumn)) {
    Put(firstRow, firstColumn, text, role);
    return;
  }
  const std::string shown = CutToUnits(Utf8Text::Repaired(text, /*replaceControls=*/true), kMaxCellUnits);
  Check(worksheet_merge_range(sheet, static_cast<lxw_row_t>(firstRow), static_cast<lxw_col_t>(firstColumn),
                              static_cast<lxw_row_t>(lastRow), static_cast<lxw_col_t>(lastColumn),
                              shown.c_str(), Format(role)));
}

void XlsxWriter::Data::WriteMessagesSheet() {
  sheet = AddSheet(kMessagesSheet);
  clipped = false;
  Put(0, 0, "Level", Role::kMessageHeading);
  Put(0, 1, "Message", Role::kMessageHeading);
  Put(0, 2, "Where", Role::kMessageHeading);
  std::size_t widest = 20;
  for (std::size_t index = 0; index < messages.size(); ++index) {
    const int row = static_cast<int>(index) + 1;
    Put(row, 0, LevelName(messages[index].level), Role::kMessage);
    Put(row, 1, messages[index].text, Role::kMessage);
    Put(row, 2, messages[index].where, Role::kMessage);
    widest = std::max(widest, CharacterCount(messages[index].text));
  }
  if (messages.empty()) Put(1, 1, "(no messages)");
  if (sheet == nullptr) return;
  Check(worksheet_set_column(sheet, 0, 0, 12, nullptr));
  Check(worksheet_set_column(sheet, 1, 1, std::min<double>(static_cast<double>(widest), 100), nullptr));
  Check(worksheet_set_column(sheet, 2, 2, 30, nullptr));
}

int XlsxWriter::Data::WriteLayer(const TableLayout& layout, int layerIndex, SheetColumns& columns, int row,
                                 int& firstBodyRow) {
  const AxisEntry& layer = layout.GetLayers()[static_cast<std::size_t>(layerIndex)];
  if (!layer.labelPath.empty()) Put(row++, 0, JoinPath(layer.labelPath), Role::kLayer);
  WriteColumnHeaders(layout, columns, row);
  row += std::max(layout.GetColumns().levels, 1);
  if (firstBodyRow < 0) firstBodyRow = row;
  const int rowCount = static_cast<int>(layout.GetRows().entries.size());
  for (int rowIndex = 0; rowIndex < rowCount; ++rowIndex)
    WriteBodyRow(layout, layerIndex, rowIndex, columns, row + rowIndex);
  return row + rowCount + 1;
}

void XlsxWriter::Data::WriteColumnHeaders(const TableLayout& layout, SheetColumns& columns, int row) {
  const AxisLayout& axis = layout.GetColumns();
  const int headerRows = std::max(axis.levels, 1);
  Merge(row, 0, row + headerRows - 1, columns.rowHeaderColumns - 1, layout.GetTable().corner, Role::kCorner);
  for (const HeaderLabel& label : axis.labels) {
    Merge(row + label.level, columns.FirstOf(label.start), row + label.level + label.depth - 1,
          columns.LastBefore(label.start + label.span), label.text, Role::kColumnLabel);
    if (label.span == 1) columns.Widen(columns.FirstOf(label.start), label.text, columns.labelLimit);
  }
  // Without column labels the header row still draws each column's box.
  if (axis.levels == 0) {
    for (int column = 0; column < static_cast<int>(axis.entries.size()); ++column)
      Merge(row, columns.FirstOf(column), row, columns.LastBefore(column + 1), "", Role::kColumnLabel);
  }
}

void XlsxWriter::Data::WriteBodyRow(const TableLayout& layout, int layerIndex, int rowIndex, SheetColumns& columns,
                                    int row) {
  const AxisLayout& rows = layout.GetRows();
  if (rows.levels == 0) Put(row, 0, "", Role::kRowLabel);
  for (const HeaderLabel& label : rows.labels) {
    if (label.start != rowIndex) continue;
    Merge(row, label.level, row + label.span - 1, label.level + label.depth - 1, label.text, Role::kRowLabel);
    if (label.depth == 1) columns.Widen(label.level, label.text);
  }
  for (int columnIndex = 0; columnIndex < static_cast<int>(layout.GetColumns().entries.size()); ++columnIndex) {
    const LayoutCell& cell = layout.GetCell(layerIndex, rowIndex, columnIndex);
    if (!cell.present) continue;
    const int column = columns.FirstOf(columnIndex);
    const std::string code = cell.hasNumber ? ExcelNumberFormat::FromCellText(cell.text, cell.number) : "";
    if (!code.empty()) {
      PutNumber(row, column, cell.number, code);
    } else {
      Put(row, column, cell.text, Role::kTextCell);
    }
    columns.Widen(column, cell.text);
    const std::string marks = CellMarks(cell);
    if (!marks.empty()) {
      Put(row, column + 1, marks, Role::kMarks);
      columns.Widen(column + 1, marks);
    }
  }
}

// Row headers are as wide as their longest single-level label; the title, caption and notes
// are left to spill over the cells to their right.
void XlsxWriter::Data::SetColumnWidths(const TableLayout& layout, SheetColumns& columns) {
  const double minCharacters = layout.GetMinDataColumnCharacters();
  for (std::size_t column = 0; column + 1 < columns.first.size(); ++column) {
    double& width = columns.widths[static_cast<std::size_t>(columns.first[column])];
    width = std::max(width, minCharacters);
  }
  for (std::size_t column = 0; column < columns.widths.size() && static_cast<int>(column) < LXW_COL_MAX; ++column) {
    Check(worksheet_set_column(sheet, static_cast<lxw_col_t>(column), static_cast<lxw_col_t>(column),
                               columns.widths[column] + 1, nullptr));
  }
}

XlsxWriter::XlsxWriter() : _data(std::make_unique<Data>()) {}

XlsxWriter::~XlsxWriter() {
  if (_data->workbook != nullptr) lxw_workbook_free(_data->workbook);
  if (!_data->path.empty()) std::remove(_data->path.c_str());
}

void XlsxWriter::BeginDocument(std::ostream& out) {
  const char* directory = std::getenv("TMPDIR");
  std::string pattern =
      std::string(directory != nullptr && *directory != '\0' ? directory : "/tmp") + "/quilt-workbook-XXXXXX";
  const int descriptor = ::mkstemp(pattern.data());
  if (descriptor < 0) {
    out.setstate(std::ios::failbit);
    return;
  }
  ::close(descriptor);
  _data->path = pattern;
  _data->workbook = workbook_new(_data->path.c_str());
  if (_data->workbook == nullptr) out.setstate(std::ios::failbit);
  // Tables never take the name of the messages sheet, whether or not it is written.
  _data->sheetNames.insert(FoldCase(kMessagesSheet));
}

void XlsxWriter::EndDocument(std::ostream& out) {
  if (_data->workbook == nullptr) return;
  // A workbook needs a sheet; without a table the messages sheet says there was nothing.
  if (!_data->messages.empty() || _data->sheetCount == 0) _data->WriteMessagesSheet();
  const lxw_error closed = workbook_close(_data->workbook);
  _data->workbook = nullptr;
  std::ifstream workbook(_data->path, std::ios::binary);
  if (closed != LXW_NO_ERROR || _data->failed || !workbook) {
    out.setstate(std::ios::failbit);
    return;
  }
  out << workbook.rdbuf();
}

void XlsxWriter::BeginHeading(const std::string& text, int /*depth*/, std::ostream& /*out*/) {
  _data->headings.push_back(text);
}

void XlsxWriter::EndHeading(int /*depth*/, std::ostream& /*out*/) {
  _data->headings.pop_back();
}

void XlsxWriter::WriteMessage(int level, const std::string& text, std::ostream& /*out*/) {
  _data->messages.push_back({level, text, JoinPath(_data->headings, 1)});
}

void XlsxWriter::WriteTable(const TableLayout& layout, std::ostream& /*out*/) {
  if (_data->workbook == nullptr) return;
  Data& data = *_data;
  const DeliveredTable& table = layout.GetTable();
  data.sheet = data.AddSheet(data.UniqueSheetName(table.title));
  data.clipped = false;
  if (data.sheet == nullptr) return;

  // The sheet stands alone, so it always names its table, even where the outline would.
  int row = 0;
  data.Put(row++, 0, table.title + MarkList(layout.GetTitleMarks()), Role::kTitle);
  if (!table.mergedTitle.empty() && table.mergedTitle != table.title) data.Put(row++, 0, table.mergedTitle);
  const std::string where = JoinPath(data.headings, 1);
  if (!where.empty()) data.Put(row++, 0, where, Role::kHeadings);
  const int clippedNoteRow = row++;

  SheetColumns columns = PlaceColumns(layout);
  int firstBodyRow = -1;
  if (layout.IsEmpty()) data.Put(row++, 0, kNoCasesText);
  for (int layerIndex = 0; layerIndex < static_cast<int>(layout.GetLayers().size()) && !layout.IsEmpty();
       ++layerIndex) {
    row = data.WriteLayer(layout, layerIndex, columns, row, firstBodyRow);
  }
  if (!table.caption.empty()) data.Put(row++, 0, table.caption + MarkList(table.captionNoteMarks));
  for (const DeliveredNote& note : table.notes) data.Put(row++, 0, note.mark + ". " + note.text);

  if (data.clipped) {
    data.Put(clippedNoteRow, 0, kClippedText);
    data.messages.push_back({kBpLevelWarning, kClippedText + std::string(" ") + table.title, where});
  }
  data.SetColumnWidths(layout, columns);
  // With one block the headers stay in view while the reader scrolls.
  if (layout.GetLayers().size() == 1 && firstBodyRow > 0 && firstBodyRow < static_cast<int>(LXW_ROW_MAX))
    worksheet_freeze_panes(data.sheet, static_cast<lxw_row_t>(firstBodyRow),
                           static_cast<lxw_col_t>(columns.rowHeaderColumns));
}
