// SyntaxDummy.cpp - the empty-axis placeholder only answers its kind
#include "parser/SyntaxDummy.h"

#include "parser/SyntaxConverterType.h"

int SyntaxDummy::GetType() const {
  return kConverterDummy;
}
