// BpCellText.cpp - the default dump of a cell text
#include "host/output/BpCellText.h"

void BpCellText::Dump(std::ostream& out) const {
  out << '"' << GetText() << '"';
}
