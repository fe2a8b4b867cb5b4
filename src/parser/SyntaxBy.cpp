// SyntaxBy.cpp - precedence of the crossing operator and the count of axes
#include "parser/SyntaxBy.h"

#include "host/QuiltAssert.h"
#include "parser/SyntaxConverterType.h"
#include "parser/TableScope.h"

SyntaxBy::SyntaxBy() {
  // "a BY BY c" leaves an axis empty; a second BY is legal here and gets a placeholder.
  SetContexts(kContextBeforeOperand | kContextBy);
}

int SyntaxBy::GetType() const {
  return kConverterBy;
}

bool SyntaxBy::IsLessInert(const SyntaxConverter* op) const {
  return op->GetType() == kConverterBy;
}

void SyntaxBy::DissectTableInCubes() {
  SyntaxComposite::DissectTableInCubes();
  std::vector<SyntaxConverter*>& children = Children();
  QUILT_ASSERT(children.size() == 2, "a BY has both operands once its table is committed");
  SyntaxConverter* first = children[0];
  SyntaxConverter* second = children[1];
  if (first->GetType() == kConverterDummy) {
    // An empty axis on the left adds nothing: the cubes are those of the right operand.
    if (second->GetType() != kConverterDummy) {
      ImitateChildComposite(second);
    }
    return;
  }
  if (first->GetType() == kConverterBy) {
    // "BY BY c" leaves the inner BY without cubes; crossing with nothing would lose c.
    if (static_cast<SyntaxBy*>(first)->CubeCount() > 0) {
      NestChildren(&children, /*cross=*/true);
    } else {
      ImitateChildComposite(second);
    }
    return;
  }
  if (second->GetType() == kConverterDummy) {
    ImitateChildComposite(first);
    return;
  }
  NestChildren(&children, /*cross=*/true);
}

void SyntaxBy::Initialize() {
  RequireTableScope().IncrementBys();
}
