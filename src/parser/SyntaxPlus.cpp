// SyntaxPlus.cpp - precedence of the stacking operator
#include "parser/SyntaxPlus.h"

#include "parser/SyntaxConverterType.h"

int SyntaxPlus::GetType() const {
  return kConverterPlus;
}

void SyntaxPlus::DissectTableInCubes() {
  SyntaxComposite::DissectTableInCubes();
  StackChildren(&Children());
}

bool SyntaxPlus::IsLessInert(const SyntaxConverter* op) const {
  const int kind = op->GetType();
  return kind == kConverterPlus || kind == kConverterBy;
}
