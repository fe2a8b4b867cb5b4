// OutputItem.cpp - shown children and the dump of document items
#include "host/output/OutputItem.h"

#include <string>

std::vector<const OutputItem*> OutputItem::GetChildren() const {
  std::vector<const OutputItem*> shown;
  for (const auto& child : children) {
    if (child->kind == kTable && !child->delivered) continue;
    shown.push_back(child.get());
  }
  return shown;
}

bool OutputItem::IsEmptyHeading() const {
  if (kind != kHeading) return false;
  for (const OutputItem* child : GetChildren()) {
    if (!child->IsEmptyHeading()) return false;
  }
  return true;
}

void OutputItem::Dump(std::ostream& out, int indent) const {
  const std::string pad(static_cast<std::size_t>(indent) * 2, ' ');
  switch (kind) {
    case kHeading:
      out << pad << "heading \"" << text << "\"\n";
      for (const OutputItem* child : GetChildren()) child->Dump(out, indent + 1);
      break;
    case kTable:
      table->Dump(out, indent);
      break;
    case kMessage:
      out << pad << "message level " << level << " key \"" << key << "\" arguments [";
      for (std::size_t i = 0; i < arguments.size(); ++i)
        out << (i == 0 ? "" : ", ") << '"' << arguments[i] << '"';
      out << "] text \"" << text << "\"\n";
      break;
  }
}
