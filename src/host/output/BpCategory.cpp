// BpCategory.cpp - writes to the cell at the current categories
#include "host/output/BpCategory.h"

#include <algorithm>

#include "host/QuiltAssert.h"
#include "host/output/BpAnnotation.h"
#include "host/output/BpCellText.h"
#include "host/output/BpImplData.h"

namespace {

BpPivotTable::TableData& TableOf(const BpGroup::ImplData& node) {
  QUILT_ASSERT(node.dimension != nullptr && node.dimension->table != nullptr,
               "cell written after its table went");
  return *node.dimension->table;
}

int NoteOf(BpPivotTable::TableData& table, const BpAnnotation& annotation) {
  const std::string text = annotation.GetText() == nullptr ? "" : annotation.GetText()->GetText();
  const std::string mark = annotation.GetMarker() == nullptr ? "" : annotation.GetMarker()->GetText();
  return table.AddNote(text, mark);
}

}  // namespace

BpCategory::BpCategory(std::shared_ptr<BpGroup::ImplData> node) : _node(std::move(node)) {}

void BpCategory::Cell(const BpCellText& text) {
  TableOf(*_node).CurrentCell().text = text.Clone();
}

void BpCategory::Marker(const BpCellText& text) {
  TableOf(*_node).CurrentCell().markers.push_back(text.Clone());
}

void BpCategory::CellNote(const BpAnnotation& annotation) {
  BpPivotTable::TableData& table = TableOf(*_node);
  const int note = NoteOf(table, annotation);
  std::vector<int>& notes = table.CurrentCell().notes;
  if (std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
}
