// SyntaxDummy.h - placeholder operand for an empty axis of a table expression
#pragma once

#include "parser/SyntaxConverter.h"

/// Stands in for the missing operand of a BY when an axis is left empty ("BY b" or
/// "a BY BY c"), so that every operator has two operands. It has no state.
class SyntaxDummy : public SyntaxConverter {
 public:
  int GetType() const override;
};
