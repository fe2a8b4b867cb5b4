// DeliveredTable.cpp - lookups and the dump of a delivered table
#include "host/output/DeliveredTable.h"

#include <algorithm>

namespace {

void DumpNode(const DeliveredNode& node, std::ostream& out, int indent) {
  out << std::string(static_cast<std::size_t>(indent) * 2, ' ') << (node.isCategory ? "category" : "group")
      << " \"" << node.label << '"';
  if (node.isCategory) out << " leaf " << node.leafIndex;
  if (!node.showLabel) out << " hidden";
  out << '\n';
  for (const DeliveredNode& child : node.children) DumpNode(child, out, indent + 1);
}

void DumpList(std::ostream& out, const std::vector<std::string>& items) {
  out << '[';
  for (std::size_t i = 0; i < items.size(); ++i) out << (i == 0 ? "" : ", ") << '"' << items[i] << '"';
  out << ']';
}

}  // namespace

const DeliveredCell* DeliveredTable::FindCell(const std::vector<int>& leaves) const {
  for (const DeliveredCell& cell : cells) {
    if (cell.leaves == leaves) return &cell;
  }
  return nullptr;
}

std::vector<int> DeliveredTable::DimensionsAt(int place) const {
  std::vector<int> found;
  for (std::size_t index = 0; index < dimensions.size(); ++index) {
    if (dimensions[index].place == place) found.push_back(static_cast<int>(index));
  }
  // Higher order nests outside lower order; creation order breaks ties.
  std::stable_sort(found.begin(), found.end(),
                   [this](int left, int right) { return dimensions[left].order > dimensions[right].order; });
  return found;
}

const DeliveredNote* DeliveredTable::FindNote(const std::string& mark) const {
  for (const DeliveredNote& note : notes) {
    if (note.mark == mark) return &note;
  }
  return nullptr;
}

void DeliveredTable::Dump(std::ostream& out, int indent) const {
  const std::string pad(static_cast<std::size_t>(indent) * 2, ' ');
  out << pad << "table \"" << title << "\" subtype \"" << subtype << "\" titleHidden " << titleHidden
      << " mergedTitle \"" << mergedTitle << "\"\n";
  out << pad << "  caption \"" << caption << "\" captionNotes ";
  DumpList(out, captionNoteMarks);
  out << " corner \"" << corner << "\" tableNotes ";
  DumpList(out, tableNoteMarks);
  out << " minWidth " << minDataColumnWidth << " maxWidth " << maxDataColumnWidth << '\n';
  for (const DeliveredDimension& dimension : dimensions) {
    out << pad << "  dimension \"" << dimension.name << "\" place " << dimension.place << " order "
        << dimension.order << " hideName " << dimension.hideName << " hideLabels " << dimension.hideLabels
        << '\n';
    for (const DeliveredNode& child : dimension.root.children) DumpNode(child, out, indent + 2);
  }
  for (const DeliveredCell& cell : cells) {
    out << pad << "  cell";
    for (int leaf : cell.leaves) out << ' ' << leaf;
    out << " \"" << cell.text << '"';
    if (cell.hasNumber) out << " number " << cell.number;
    out << " markers ";
    DumpList(out, cell.markers);
    out << " notes ";
    DumpList(out, cell.noteMarks);
    out << '\n';
  }
  for (const DeliveredNote& note : notes)
    out << pad << "  note " << note.mark << " \"" << note.text << "\"\n";
}
