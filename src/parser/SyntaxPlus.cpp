// SyntaxPlus.cpp - precedence of the stacking operator
#include "parser/SyntaxPlus.h"

#include "parser/SyntaxConverterType.h"

int SyntaxPlus::GetType() const {
  return kConverterPlus;
}

bool SyntaxPlus::IsLessInert(const SyntaxConverter* op) const {
  const int kind = op->GetType();
  return kind == kConverterPlus || kind == kConverterBy;
}
