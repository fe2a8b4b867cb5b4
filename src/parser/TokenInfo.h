// TokenInfo.h - one operand or operator of a computed category's expression
#pragma once

#include <string>

#include "host/engine/TableEncryptionCodes.h"
#include "parser/ExpressionToken.h"

/// One end of a range operand as the expression wrote it: a number, or the word LO or HI.
struct RangeEnd {
  std::string text;     // as written: "3", "LO", "hi"; empty when nothing stood before THRU
  double number = 0.0;  // a number's value; 0 for LO, HI or nothing
  bool isLo = false;
  bool isHi = false;
};

/// A range operand "low THRU high", read once by the expression's reader so that the list
/// check and the renderer work from the same ends instead of reading the text again.
struct RangeOperand {
  RangeEnd low;   // the end just before THRU
  RangeEnd high;  // the last end of the bracket
};

/// One entry of ExpressionToken's lists. An operand fills `varName`, `token`, `listType`,
/// `tokenType`, `number` and `index` (a range also `range`); an operator fills `opToken`, `opCode` and
/// `index`.
struct TokenInfo {
  /// For an operand, the computed category's name at parse time; the renderer overwrites
  /// it with the text of a dictionary index (UpdateTokenIndex) before evaluating.
  std::string varName;
  std::string token;    // the operand's text: "4", "1 THRU 5", "SUBTOTAL", a literal
  std::string opToken;  // the operator's text
  TableEncryptionCodes::ExplicitListType listType = TableEncryptionCodes::kExplicitString;
  ExpressionToken::TOKEN_TYPE tokenType = ExpressionToken::kExprValue;
  ExpressionToken::OP_CODE opCode = ExpressionToken::kExprOpNone;
  double number = 0.0;      // an operand's numeric value
  unsigned long index = 0;  // a subtotal's number; an operator's running count from 1
  RangeOperand range;       // a range operand's ends; empty for any other operand
};
