// SyntaxGreaterThan.cpp - precedence of the nesting operator
#include "parser/SyntaxGreaterThan.h"

#include "parser/SyntaxConverterType.h"

int SyntaxGreaterThan::GetType() const {
  return kConverterGreaterThan;
}

void SyntaxGreaterThan::DissectTableInCubes() {
  SyntaxComposite::DissectTableInCubes();
  NestChildren(&Children(), /*cross=*/false);
}

bool SyntaxGreaterThan::IsLessInert(const SyntaxConverter* /*op*/) const {
  return true;
}
