// BpPivotTable.cpp - building a pivot table and delivering it from the destructor
#include "host/output/BpPivotTable.h"

#include <algorithm>
#include <set>

#include "host/QuiltAssert.h"
#include "host/output/BpAnnotation.h"
#include "host/output/BpDimension.h"
#include "host/output/BpImplData.h"
#include "host/output/DeliveredTable.h"
#include "host/output/OutputDocument.h"

namespace {

// Marks a, b, ... z, then aa, ab, ... as a reader counts columns of a sheet.
std::string MarkFor(int index) {
  std::string mark;
  int value = index;
  do {
    mark.insert(mark.begin(), static_cast<char>('a' + value % 26));
    value = value / 26 - 1;
  } while (value >= 0);
  return mark;
}

std::string TextOf(const std::unique_ptr<BpCellText>& text) {
  return text ? text->GetText() : std::string();
}

// Copies the subtree of `node`, keeping only categories in `used` and groups that keep one.
// Returns false when nothing of the subtree is left.
bool CopyTree(const BpGroup::ImplData& node, const std::set<int>& used, DeliveredNode& out,
              std::vector<int>& leafOfCategory, int& nextLeaf) {
  out.label = TextOf(node.label);
  out.isCategory = node.isCategory;
  out.showLabel = node.showLabel;
  if (node.isCategory) {
    if (used.count(node.categoryId) == 0) return false;
    out.leafIndex = nextLeaf++;
    if (static_cast<int>(leafOfCategory.size()) <= node.categoryId)
      leafOfCategory.resize(node.categoryId + 1, -1);
    leafOfCategory[node.categoryId] = out.leafIndex;
    return true;
  }
  for (const auto& child : node.children) {
    DeliveredNode copy;
    if (CopyTree(*child, used, copy, leafOfCategory, nextLeaf)) out.children.push_back(std::move(copy));
  }
  return !out.children.empty();
}

void CollectPaths(const DeliveredNode& node, bool isRoot, std::vector<std::string>& path,
                  std::vector<std::vector<std::string>>& paths) {
  const bool visible = !isRoot && node.showLabel;
  if (visible) path.push_back(node.label);
  if (node.isCategory) {
    paths[node.leafIndex] = path;
  } else {
    for (const DeliveredNode& child : node.children) CollectPaths(child, /*isRoot=*/false, path, paths);
  }
  if (visible) path.pop_back();
}

}  // namespace

int BpPivotTable::TableData::AddNote(const std::string& text, const std::string& mark) {
  for (std::size_t i = 0; i < notes.size(); ++i) {
    const bool sameMark = mark.empty() ? true : notes[i].mark == mark;
    if (notes[i].text == text && sameMark) return static_cast<int>(i);
  }
  notes.push_back({text, mark.empty() ? MarkFor(nextMark++) : mark});
  return static_cast<int>(notes.size()) - 1;
}

BpPivotTable::TableData::Cell& BpPivotTable::TableData::CurrentCell() {
  std::vector<int> key;
  for (const auto& dimension : dimensions) {
    QUILT_ASSERT(dimension->current >= 0, "cell written before every dimension has a current category");
    key.push_back(dimension->current);
  }
  Cell& cell = cells[key];
  if (cell.order == 0) cell.order = ++cellCount;
  return cell;
}

std::shared_ptr<DeliveredTable> BpPivotTable::TableData::Deliver() const {
  auto table = std::make_shared<DeliveredTable>();
  table->title = TextOf(title);
  table->subtype = TextOf(subtype);
  table->titleHidden = titleHidden;
  table->mergedTitle = TextOf(mergedTitle);
  table->caption = TextOf(caption);
  table->corner = TextOf(corner);
  table->minDataColumnWidth = minWidth;
  table->maxDataColumnWidth = maxWidth;
  for (int note : captionNotes) table->captionNoteMarks.push_back(notes[note].mark);
  for (int note : tableNotes) table->tableNoteMarks.push_back(notes[note].mark);

  // A category that never received a cell is left out: rendering makes whole axes first.
  const std::size_t dimensionCount = dimensions.size();
  std::vector<std::set<int>> used(dimensionCount);
  for (const auto& [key, cell] : cells) {
    if (key.size() != dimensionCount) continue;
    for (std::size_t index = 0; index < dimensionCount; ++index) used[index].insert(key[index]);
  }
  std::vector<std::vector<int>> leafOf(dimensionCount);
  for (std::size_t index = 0; index < dimensionCount; ++index) {
    const BpDimension::ImplData& source = *dimensions[index];
    DeliveredDimension dimension;
    dimension.name = TextOf(source.name);
    dimension.place = source.place;
    dimension.order = source.order;
    dimension.hideName = source.hideName;
    dimension.hideLabels = source.hideLabels;
    int leafCount = 0;
    CopyTree(*source.root, used[index], dimension.root, leafOf[index], leafCount);
    dimension.root.label = dimension.name;
    dimension.leafPaths.resize(leafCount);
    if (!dimension.hideLabels) {
      std::vector<std::string> path;
      CollectPaths(dimension.root, /*isRoot=*/true, path, dimension.leafPaths);
    }
    table->dimensions.push_back(std::move(dimension));
  }

  std::vector<std::pair<int, DeliveredCell>> ordered;
  for (const auto& [key, cell] : cells) {
    if (key.size() != dimensionCount) continue;
    DeliveredCell out;
    for (std::size_t index = 0; index < dimensionCount; ++index)
      out.leaves.push_back(leafOf[index][key[index]]);
    if (cell.text) {
      out.text = cell.text->GetText();
      out.hasNumber = cell.text->HasNumber();
      if (out.hasNumber) out.number = cell.text->GetNumber();
    }
    for (const auto& marker : cell.markers) out.markers.push_back(marker->GetText());
    for (int note : cell.notes) out.noteMarks.push_back(notes[note].mark);
    ordered.emplace_back(cell.order, std::move(out));
  }
  std::sort(ordered.begin(), ordered.end(),
            [](const auto& left, const auto& right) { return left.first < right.first; });
  for (auto& entry : ordered) table->cells.push_back(std::move(entry.second));

  // Notes of categories that were left out still count: their marks are assigned, and a
  // reader may see a gap. Only notes that something shown refers to are listed.
  std::set<std::string> referenced(table->captionNoteMarks.begin(), table->captionNoteMarks.end());
  referenced.insert(table->tableNoteMarks.begin(), table->tableNoteMarks.end());
  for (const DeliveredCell& cell : table->cells)
    referenced.insert(cell.noteMarks.begin(), cell.noteMarks.end());
  for (const Note& note : notes) {
    if (referenced.count(note.mark) != 0) table->notes.push_back({note.mark, note.text});
  }
  return table;
}

BpPivotTable::TableData::~TableData() {
  for (const auto& dimension : dimensions) dimension->table = nullptr;
}

BpPivotTable::BpPivotTable(OutputDocument* document, std::shared_ptr<OutputItem> slot,
                           const BpCellText& title, const BpCellText& subtype)
    : _table(std::make_shared<TableData>()) {
  _table->document = document;
  _table->slot = std::move(slot);
  _table->title = title.Clone();
  _table->subtype = subtype.Clone();
}

BpPivotTable::BpPivotTable(BpPivotTable&& other) noexcept = default;

BpPivotTable& BpPivotTable::operator=(BpPivotTable&& other) noexcept {
  if (this != &other) {
    BpPivotTable old(std::move(*this));
    _table = std::move(other._table);
  }
  return *this;
}

BpPivotTable::~BpPivotTable() {
  if (!_table || _table->destroyed) return;
  _table->slot->table = _table->Deliver();
  _table->slot->text = _table->slot->table->title;
  _table->slot->delivered = true;
}

BpDimension BpPivotTable::Dimension(const BpCellText& text, Sort /*sort*/) {
  auto dimension = std::make_shared<BpDimension::ImplData>();
  dimension->table = _table.get();
  dimension->index = static_cast<int>(_table->dimensions.size());
  dimension->name = text.Clone();
  auto root = std::make_shared<BpGroup::ImplData>();
  root->label = text.Clone();
  root->identity = text.GetIdentity();
  root->dimension = dimension.get();
  dimension->root = root;
  _table->dimensions.push_back(dimension);
  return BpDimension(root, dimension);
}

void BpPivotTable::HideTitle() {
  _table->titleHidden = true;
}

void BpPivotTable::Caption(const BpCellText& text) {
  _table->caption = text.Clone();
}

void BpPivotTable::CaptionNote(const BpAnnotation& annotation) {
  const std::string text = annotation.GetText() == nullptr ? "" : annotation.GetText()->GetText();
  const std::string mark = annotation.GetMarker() == nullptr ? "" : annotation.GetMarker()->GetText();
  const int note = _table->AddNote(text, mark);
  // Two tests of a table may bring the same note; the caption names it once.
  if (std::find(_table->captionNotes.begin(), _table->captionNotes.end(), note) == _table->captionNotes.end())
    _table->captionNotes.push_back(note);
}

void BpPivotTable::Note(const BpAnnotation& annotation) {
  const std::string text = annotation.GetText() == nullptr ? "" : annotation.GetText()->GetText();
  const std::string mark = annotation.GetMarker() == nullptr ? "" : annotation.GetMarker()->GetText();
  const int note = _table->AddNote(text, mark);
  if (std::find(_table->tableNotes.begin(), _table->tableNotes.end(), note) == _table->tableNotes.end())
    _table->tableNotes.push_back(note);
}

void BpPivotTable::CornerText(const BpCellText& text) {
  _table->corner = text.Clone();
}

void BpPivotTable::SetProperty(Property property, const BpCellText& text) {
  if (property == kPropertyMergedTitle) _table->mergedTitle = text.Clone();
}

void BpPivotTable::MinDataColumnWidth(int points) {
  _table->minWidth = points;
}

void BpPivotTable::MaxDataColumnWidth(int points) {
  _table->maxWidth = points;
}

void BpPivotTable::Destroy() {
  _table->destroyed = true;
}
