// SyntaxBy.cpp - precedence of the crossing operator and the count of axes
#include "parser/SyntaxBy.h"

#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxTableSubcommand.h"

SyntaxBy::SyntaxBy() {
  // "a BY BY c" leaves an axis empty; a second BY is legal here and gets a placeholder.
  SetByContext(true);
}

int SyntaxBy::GetType() const {
  return kConverterBy;
}

bool SyntaxBy::IsLessInert(const SyntaxConverter* op) const {
  return op->GetType() == kConverterBy;
}

void SyntaxBy::Initialize() {
  GetTableSubcommandParent()->IncrementBys();
}
