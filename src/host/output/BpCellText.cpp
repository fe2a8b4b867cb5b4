// BpCellText.cpp - replication and the default dump of a cell text
#include "host/output/BpCellText.h"

#include "host/output/BpHandle.h"

long BpCellText::Replicate() const {
  return BpHandle::Register(Clone());
}

void BpCellText::Dump(std::ostream& out) const {
  out << '"' << GetText() << '"';
}
