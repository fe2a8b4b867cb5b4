// SyntaxPComputeSubcommand.cpp - reads a computed category's expression straight from the token sequence
#include "parser/SyntaxPComputeSubcommand.h"

#include <cmath>
#include <cstdlib>
#include <ostream>
#include <set>

#include "host/data/HostStrings.h"
#include "host/data/TARN_DataSource.h"
#include "host/data/VariableSet.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/CommandScope.h"
#include "parser/ExpressionToken.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TokenInfo.h"

namespace {

using Expr = ExpressionToken;

// Where the reader stands inside the expression.
struct ReadState {
  int depth = 1;                             // open parentheses, EXPR's own included
  bool signAllowed = true;                   // a sign in front of a number belongs to the number
  bool operandExpected = true;               // an operand must come next
  bool operatorExpected = false;             // an operator must come next
  bool afterBracket = false;                 // the last term was "[ ... ]"
  bool inBracket = false;                    // between "[" and "]"
  bool finished = false;                     // EXPR's closing parenthesis was read
  bool termComplete = false;                 // the last thing read ends a term: the next is an operator
  bool hasPrevious = false;                  // a token of the expression was read before this one
  int previousType = 0;                      // that token's type
  int previousOp = 0;                        // and operator code
  std::vector<std::string> bracketElements;  // the number-like texts of the open bracket
  int bracketOperands = 0;                   // operands the open bracket has added
  double bracketFirstNumber = 0.0;           // the value of the bracket's first element
  bool bracketThruSeen = false;              // the open bracket has had its THRU
  RangeOperand bracketRange;                 // the ends read so far, once THRU makes a range
  std::vector<std::string> bracketTexts;     // every element of the open bracket, as the user reads it
  bool bracketHasName = false;               // the open bracket holds a literal or a variable name
  bool rangeLeftOpen = false;                // a bracket closed on THRU, as in "[1 THRU] + [2]"

  /// "[" or "]": the next bracket starts afresh.
  void ClearBracket() {
    bracketElements.clear();
    bracketOperands = 0;
    bracketThruSeen = false;
    bracketRange = RangeOperand();
    bracketTexts.clear();
    bracketHasName = false;
  }
  /// A number, LO, HI or THRU inside the bracket: the end before the first THRU is the low
  /// one, the last end the high one.
  void ReadRangeElement(const std::string& text, double number) {
    if (text == " THRU ") {
      bracketThruSeen = true;
      return;
    }
    RangeEnd end;
    end.text = text;
    end.isLo = SyntaxParserUtility::ExactWordMatch(text, "LO");
    end.isHi = SyntaxParserUtility::ExactWordMatch(text, "HI");
    end.number = end.isLo || end.isHi ? 0.0 : number;
    (bracketThruSeen ? bracketRange.high : bracketRange.low) = end;
  }
};

bool IsArithmetic(int op) {
  return op >= TokenSequenceBase::kOpPlus && op <= TokenSequenceBase::kOpPower;
}

Expr::OP_CODE ArithmeticCode(int op) {
  switch (op) {
    case TokenSequenceBase::kOpPlus:
      return Expr::kExprOpAdd;
    case TokenSequenceBase::kOpMinus:
      return Expr::kExprOpSubtract;
    case TokenSequenceBase::kOpTimes:
      return Expr::kExprOpMultiply;
    case TokenSequenceBase::kOpSlash:
      return Expr::kExprOpDivide;
    default:
      return Expr::kExprOpPower;
  }
}

std::string CurrentText(TARN_TokenSequence* tokens) {
  char* text = nullptr;
  int length = 0;
  tokens->GetText(&text, &length);
  if (text == nullptr || length <= 0) {
    return std::string();
  }
  return std::string(text, static_cast<std::size_t>(length));
}

}  // namespace

struct SyntaxPComputeSubcommand::PCData {
  std::string _catName;                                   // the computed category's name
  bool _ampersandSeen = false;                            // "&" was read
  std::string _expression;                                // text of the expression as read
  ExpressionToken _expressionToken;                       // operands and operators
  std::vector<SyntaxPPropertiesSubcommand*> _properties;  // PPROPERTIES naming this; not owned
  ReadState _state;                                       // the reader's place while the expression is read
};

SyntaxPComputeSubcommand::SyntaxPComputeSubcommand()
    : NamedConverter("PCOMPUTE", kConverterPCompute), _pcData(std::make_unique<PCData>()) {}

SyntaxPComputeSubcommand::~SyntaxPComputeSubcommand() = default;

// PCOMPUTE & name
SyntaxConverter* SyntaxPComputeSubcommand::Ampersand(const std::string& /*text*/) {
  _pcData->_ampersandSeen = true;
  return this;
}

// PCOMPUTE & name '=' EXPR '(' expression ')'
SyntaxConverter* SyntaxPComputeSubcommand::AttributeString(const std::string& text,
                                                           TARN_TokenSequence* tokens) {
  PCData& data = *_pcData;
  if (!data._ampersandSeen) {
    SyntaxParserUtility::InvalidExpression(this, data._catName);
  }
  data._catName = text;
  if (ValidateTARNName(text.c_str()) != 0) {
    SyntaxParserUtility::UnknownVariable(this, text);
  }
  if (tokens->GetTokenType() != TokenSequenceBase::kTokenOperator ||
      tokens->GetOperatorCode() != TokenSequenceBase::kOpEquals) {
    SyntaxParserUtility::MissingEquals(this, data._catName);
  }
  if (!tokens->Next()) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (tokens->GetTokenType() != TokenSequenceBase::kTokenWord ||
      TARNMBstricmp_A(CurrentText(tokens).c_str(), "expr") != 0) {
    SyntaxParserUtility::MissingKeyword(this, "expr");
  }
  if (!tokens->Next()) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (tokens->GetTokenType() != TokenSequenceBase::kTokenOperator ||
      tokens->GetOperatorCode() != TokenSequenceBase::kOpLeftParen) {
    SyntaxParserUtility::MissingKeyword(this, "(");
  }
  data._state = ReadState();
  ReadExpression(tokens, text);
  if (data._state.inBracket) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  data._expressionToken.setExpression(GetExpression());
  return this;
}

void SyntaxPComputeSubcommand::ReadExpression(TARN_TokenSequence* tokens, const std::string& attributeText) {
  PCData& data = *_pcData;
  ReadState& state = data._state;
  while (!state.finished && tokens->Next()) {
    const int type = tokens->GetTokenType();
    const int op = tokens->GetOperatorCode();
    // The slash of the next subcommand can only stand after the expression has closed.
    if (type == TokenSequenceBase::kTokenEnd || (op == TokenSequenceBase::kOpSlash && state.depth == 0)) {
      tokens->SetPosition(tokens->PositionBefore());
      break;
    }
    std::string text = CurrentText(tokens);
    if (text.empty()) {
      SyntaxParserUtility::NoTableSubcommand(this);
    }
    // Range words are written one way in the expression, and so in the category's label,
    // however they were typed.
    if (SyntaxParserUtility::ExactWordMatch(text, "THRU")) {
      text = " THRU ";
    } else if (state.inBracket && type == TokenSequenceBase::kTokenWord &&
               (SyntaxParserUtility::ExactWordMatch(text, "LO") || SyntaxParserUtility::ExactWordMatch(text, "HI"))) {
      text = SyntaxParserUtility::ExactWordMatch(text, "LO") ? "LO" : "HI";
    }
    data._expression += text;
    const double number = tokens->GetNumber();
    if (state.inBracket) {
      ReadBracketToken(type, op, text, number, attributeText);
    } else {
      ReadTermToken(tokens, type, op, text, number, attributeText);
    }
    state.hasPrevious = true;
    state.previousType = type;
    state.previousOp = op;
  }
}

// A token outside brackets: an operator, a parenthesis, the opening bracket or a term.
// Literals and other operators only go into the text.
void SyntaxPComputeSubcommand::ReadTermToken(TARN_TokenSequence* tokens, int type, int op, const std::string& text,
                                             double number, const std::string& attributeText) {
  PCData& data = *_pcData;
  ReadState& state = data._state;
  ExpressionToken& expression = data._expressionToken;
  if (SyntaxParserUtility::ExactWordMatch(text, "PPROPERTIES")) {
    SyntaxParserUtility::InvalidExpression(this, data._catName);
  }
  const bool isOperator = type == TokenSequenceBase::kTokenOperator || op != 0;
  if (state.operandExpected) {
    const bool plainTerm =
        (type == TokenSequenceBase::kTokenWord || type == TokenSequenceBase::kTokenNumber) && op == 0;
    if (plainTerm || op == TokenSequenceBase::kOpLeftParen || op == TokenSequenceBase::kOpLeftBracket) {
      state.operandExpected = false;
    } else if (isOperator) {
      SyntaxParserUtility::InvalidExpression(this, data._catName);
    }
  }
  if (state.operatorExpected) {
    if (type == TokenSequenceBase::kTokenNumber || IsArithmetic(op) ||
        op == TokenSequenceBase::kOpRightParen) {
      state.operatorExpected = false;
    } else if (isOperator) {
      SyntaxParserUtility::InvalidExpression(this, data._catName);
    }
  }
  const unsigned long nextOpIndex = expression.getOperatorTokens().size() + 1;
  if (IsArithmetic(op)) {
    state.afterBracket = false;
    state.operandExpected = true;
    state.signAllowed = true;
    state.termComplete = false;
    expression.addOpToken(text, ArithmeticCode(op), nextOpIndex);
  } else if (op == TokenSequenceBase::kOpLeftParen) {
    expression.addOpToken(text, Expr::kExprOpLeftParen, nextOpIndex);
    ++state.depth;
    // "()": a parenthesis opens a term, which must come before it closes; "(1)(2)" has no
    // operator between its terms.
    state.operandExpected = true;
    if (state.termComplete) {
      SyntaxParserUtility::InvalidExpression(this, data._catName);
    }
    state.termComplete = false;
    // "[1](2)": a bracket is a whole term and cannot be followed by another.
    if (state.afterBracket) {
      SyntaxParserUtility::InvalidExpression(this, data._catName);
    }
  } else if (op == TokenSequenceBase::kOpRightParen) {
    state.operandExpected = false;
    state.signAllowed = false;
    expression.addOpToken(text, Expr::kExprOpRightParen, nextOpIndex);
    if (state.depth == 0) {
      SyntaxParserUtility::UnbalancedParen(this, data._expression);
    }
    --state.depth;
    state.finished = state.depth == 0;
    state.termComplete = true;
  } else if (op == TokenSequenceBase::kOpLeftBracket) {
    state.inBracket = true;
    state.ClearBracket();
    if (state.afterBracket || state.termComplete) {
      SyntaxParserUtility::InvalidExpression(this, data._catName);
    }
  } else if (op == TokenSequenceBase::kOpRightBracket) {
    SyntaxParserUtility::UnknownKeyword(this, attributeText);
  } else if (type == TokenSequenceBase::kTokenNumber) {
    ReadNumberTerm(text, number, nextOpIndex);
  } else if (type == TokenSequenceBase::kTokenWord) {
    ReadKeywordTerm(tokens, text);
  }
}

// A number term: a sign the lexer gave the number may be the operator before it.
void SyntaxPComputeSubcommand::ReadNumberTerm(std::string text, double number, unsigned long nextOpIndex) {
  PCData& data = *_pcData;
  ReadState& state = data._state;
  ExpressionToken& expression = data._expressionToken;
  const bool previousArithmetic = state.hasPrevious && IsArithmetic(state.previousOp);
  // "2 3" or "[1] 2": two terms without an operator between them add up to nothing anyone
  // wrote; with a sign ("[1] -2") the sign is the operator.
  if (state.termComplete && text[0] != '+' && text[0] != '-') {
    SyntaxParserUtility::InvalidExpression(this, data._catName);
  }
  if (text[0] == '+') {
    // "2 * +3": a sign after an operator cannot be an operator itself.
    if (previousArithmetic) {
      SyntaxParserUtility::InvalidExpression(this, data._catName);
    }
    state.operandExpected = false;
    expression.addOpToken("+", Expr::kExprOpAdd, nextOpIndex);
    text.erase(0, 1);
    number = std::fabs(number);
  } else if (text[0] == '-' && (!state.signAllowed || state.termComplete)) {
    // "1 -2": the lexer gave the sign to the number, but it is the operator.
    state.operandExpected = false;
    expression.addOpToken("-", Expr::kExprOpSubtract, nextOpIndex);
    text.erase(0, 1);
    number = std::fabs(number);
  }
  state.signAllowed = false;
  state.operatorExpected = true;
  state.termComplete = true;
  expression.addToken(data._catName, text, TableEncryptionCodes::kExplicitNumber, Expr::kExprConstant,
                      Expr::kExprOpNone, number, 0);
}

// A keyword term: MISSING, OTHERNM, TOTAL or SUBTOTAL; any other word is no term.
void SyntaxPComputeSubcommand::ReadKeywordTerm(TARN_TokenSequence* tokens, const std::string& text) {
  PCData& data = *_pcData;
  ReadState& state = data._state;
  ExpressionToken& expression = data._expressionToken;
  // "[1] TOTAL": a keyword term right after another term.
  if (state.termComplete) {
    SyntaxParserUtility::InvalidExpression(this, data._catName);
  }
  state.termComplete = true;
  if (SyntaxParserUtility::ExactWordMatch(text, "MISSING")) {
    state.operatorExpected = true;
    expression.addToken(data._catName, text, TableEncryptionCodes::kExplicitMissing, Expr::kExprKeyword,
                        Expr::kExprOpNone, 0.0, 0);
  } else if (SyntaxParserUtility::ExactWordMatch(text, "OTHERNM")) {
    state.operatorExpected = true;
    state.signAllowed = false;
    expression.addToken(data._catName, text, TableEncryptionCodes::kExplicitOtherNM, Expr::kExprKeyword,
                        Expr::kExprOpNone, 0.0, 0);
  } else if (SyntaxParserUtility::ExactWordMatch(text, "TOTAL")) {
    state.operatorExpected = true;
    state.operandExpected = false;
    _totalUsed = true;
    expression.addToken(data._catName, "TOTAL", TableEncryptionCodes::kExplicitName, Expr::kExprKeyword,
                        Expr::kExprOpNone, 0.0, 0);
  } else if (SyntaxParserUtility::ExactWordMatch(text, "SUBTOTAL")) {
    ReadSubtotal(tokens);
  } else {
    SyntaxParserUtility::InvalidExpression(this, data._catName);
  }
}

// SUBTOTAL | SUBTOTAL '[' n ']'
void SyntaxPComputeSubcommand::ReadSubtotal(TARN_TokenSequence* tokens) {
  PCData& data = *_pcData;
  ReadState& state = data._state;
  ExpressionToken& expression = data._expressionToken;
  auto addSubtotal = [&](unsigned long index) {
    expression.addToken(data._catName, "SUBTOTAL", TableEncryptionCodes::kExplicitSubtotal,
                        Expr::kExprKeyword, Expr::kExprOpNone, 0.0, index);
  };
  bool inItsBracket = false;
  while (true) {
    if (!tokens->Next()) {
      // The tokens ended right after the word: the term stands for the first subtotal.
      if (inItsBracket) {
        SyntaxParserUtility::IncompleteSubcommand(this, data._catName);
      }
      addSubtotal(1);
      return;
    }
    const int type = tokens->GetTokenType();
    const int op = tokens->GetOperatorCode();
    std::string text = CurrentText(tokens);
    if (text.empty()) {
      SyntaxParserUtility::NoTableSubcommand(this);
    }
    data._expression += text;
    const unsigned long nextOpIndex = expression.getOperatorTokens().size() + 1;
    state.hasPrevious = true;
    state.previousType = type;
    state.previousOp = op;
    if (!inItsBracket) {
      const bool isOperator = type == TokenSequenceBase::kTokenOperator || op != 0;
      if (!isOperator) {
        // "SUBTOTAL -1": the number's sign is the operator between the two terms.
        addSubtotal(1);
        // "SUBTOTAL 2": without a sign there is no operator between the two terms.
        if (type != TokenSequenceBase::kTokenNumber || (text[0] != '+' && text[0] != '-')) {
          SyntaxParserUtility::InvalidExpression(this, data._catName);
        }
        if (text[0] == '+' || text[0] == '-') {
          expression.addOpToken(text.substr(0, 1), text[0] == '+' ? Expr::kExprOpAdd : Expr::kExprOpSubtract,
                                nextOpIndex);
          text.erase(0, 1);
        }
        expression.addToken(data._catName, text, TableEncryptionCodes::kExplicitNumber, Expr::kExprConstant,
                            Expr::kExprOpNone, std::fabs(tokens->GetNumber()), 0);
        state.signAllowed = false;
        state.operatorExpected = true;
        return;
      }
      if (IsArithmetic(op)) {
        addSubtotal(1);
        state.afterBracket = false;
        state.operandExpected = true;
        state.signAllowed = true;
        state.termComplete = false;
        expression.addOpToken(text, ArithmeticCode(op), nextOpIndex);
        return;
      }
      if (op == TokenSequenceBase::kOpRightParen) {
        state.operandExpected = false;
        addSubtotal(1);
        expression.addOpToken(text, Expr::kExprOpRightParen, nextOpIndex);
        if (state.depth == 0) {
          SyntaxParserUtility::UnbalancedParen(this, data._expression);
        }
        --state.depth;
        state.finished = state.depth == 0;
        return;
      }
      if (op == TokenSequenceBase::kOpLeftBracket) {
        inItsBracket = true;
      }
      continue;
    }
    if (type == TokenSequenceBase::kTokenNumber) {
      // The subtotal's number counts from 1; a text this long is no number anyone meant.
      const int index = text.size() < 10000 ? std::atoi(text.c_str()) : 0;
      if (index < 1) {
        SyntaxParserUtility::InvalidExpression(this, data._catName);
      }
      addSubtotal(static_cast<unsigned long>(index));
    } else if (op == TokenSequenceBase::kOpRightBracket) {
      state.operandExpected = false;
      state.signAllowed = false;
      return;
    } else if (type != TokenSequenceBase::kTokenOperator) {
      SyntaxParserUtility::InvalidExpression(this, data._catName);
    }
  }
}

// '[' number | LO | HI | THRU | 'literal' | member variable ... ']'
void SyntaxPComputeSubcommand::ReadBracketToken(int type, int op, std::string& text, double number,
                                                const std::string& /*attributeText*/) {
  PCData& data = *_pcData;
  ReadState& state = data._state;
  ExpressionToken& expression = data._expressionToken;
  state.signAllowed = false;
  if (op != TokenSequenceBase::kOpRightBracket) {
    const bool literal = type == TokenSequenceBase::kTokenLiteral;
    state.bracketTexts.push_back(text == " THRU " ? std::string("THRU") : literal ? "'" + text + "'" : text);
  }
  const bool rangeWord = type == TokenSequenceBase::kTokenWord && op == 0 &&
                         (SyntaxParserUtility::ExactWordMatch(text, "LO") ||
                          SyntaxParserUtility::ExactWordMatch(text, "HI") || text == " THRU ");
  if (type == TokenSequenceBase::kTokenNumber || rangeWord) {
    if (state.bracketElements.empty()) {
      state.bracketFirstNumber = number;
    }
    state.bracketElements.push_back(text);
    state.ReadRangeElement(text, number);
    std::string joined;
    for (const std::string& element : state.bracketElements) {
      joined += element;
    }
    if (joined.find(" THRU ") != std::string::npos) {
      // The range grows with each end: the operand that held it so far is replaced.
      if (state.bracketOperands > 0) {
        expression.removeLastToken();
        --state.bracketOperands;
      }
      expression.addRangeToken(data._catName, joined, state.bracketRange, state.bracketFirstNumber);
    } else {
      expression.addToken(data._catName, text, TableEncryptionCodes::kExplicitNumber, Expr::kExprValue,
                          Expr::kExprOpNone, number, 0);
    }
    ++state.bracketOperands;
    _rangeIsOpen = text == " THRU ";
    return;
  }
  if (type == TokenSequenceBase::kTokenWord) {
    if (!MRSetExists(text)) {
      SyntaxParserUtility::InvalidExpression(this, data._catName);
    }
    state.bracketHasName = true;
    expression.addToken(data._catName, text, TableEncryptionCodes::kExplicitName, Expr::kExprName,
                        Expr::kExprOpNone, 0.0, 0);
    ++state.bracketOperands;
    return;
  }
  if (type == TokenSequenceBase::kTokenLiteral) {
    state.bracketHasName = true;
    expression.addToken(data._catName, text, TableEncryptionCodes::kExplicitString, Expr::kExprName,
                        Expr::kExprOpNone, 0.0, 0);
    ++state.bracketOperands;
    return;
  }
  if (op != TokenSequenceBase::kOpRightBracket) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  CheckClosingBracket();
  state.termComplete = true;
  state.inBracket = false;
  state.afterBracket = true;
  state.ClearBracket();
}

// "]": the bracket must have named exactly one category. Elements are only joined as they
// come, so "[1 2]", "[1 5 THRU 7]" or "[]" would otherwise stand for a category nobody wrote.
void SyntaxPComputeSubcommand::CheckClosingBracket() {
  PCData& data = *_pcData;
  ReadState& state = data._state;
  const std::vector<std::string>& elements = state.bracketTexts;
  auto isEnd = [&](std::size_t position) { return !state.bracketHasName && elements[position] != "THRU"; };
  const std::size_t count = elements.size();
  if (count == 2 && isEnd(0) && !isEnd(1) && !state.bracketHasName) {
    // "[1 THRU]": a range without its high end, reported as such when the subcommand ends,
    // even if a later bracket closes properly.
    state.rangeLeftOpen = true;
    return;
  }
  const bool oneCategory = (count == 1 && (state.bracketHasName || isEnd(0))) ||
                           (count == 3 && isEnd(0) && !isEnd(1) && isEnd(2));
  if (oneCategory) {
    return;
  }
  std::string bracket = "[";
  for (std::size_t position = 0; position < count; ++position) {
    bracket += (position == 0 ? "" : " ") + elements[position];
  }
  SyntaxParserUtility::InvalidExpressionBracket(this, data._catName, bracket + "]");
}

bool SyntaxPComputeSubcommand::MRSetExists(const std::string& name) const {
  const TARN_DataSource* source = GetDataSource();
  if (source == nullptr) {
    return false;
  }
  for (const VariableSet& set : VariableSets(*source, kVarSetsMultipleResponse)) {
    for (const std::string& member : set.GetVariableNames(VariableSet::kAsDefined)) {
      if (SyntaxParserUtility::ExactWordMatch(member, name)) {
        return true;
      }
    }
  }
  return false;
}

void SyntaxPComputeSubcommand::ValidateAndCommit(const std::string& text) {
  const PCData& data = *_pcData;
  // "PCOMPUTE" alone, or "&name" without "=": there is no expression to keep.
  if (data._catName.empty()) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (_rangeIsOpen || data._state.rangeLeftOpen) {
    SyntaxParserUtility::UnknownVariable(this, data._expression);
  }
  // A name defined again makes its category afresh: the later definition stands.
  if (const CommandScope* command = GetCommandScope()) {
    for (const SyntaxPComputeSubcommand* earlier : command->GetPComputeSubcommands()) {
      if (earlier != this && SyntaxParserUtility::ExactWordMatch(earlier->GetCatName(), data._catName)) {
        SyntaxParserUtility::DuplicateWarning(this, "&" + data._catName);
        break;
      }
    }
  }
  // Numbers and names measure different things: an expression keeps to one kind of operand,
  // judged against the operands ahead of its first constant or keyword.
  const std::vector<TokenInfo>& operands = data._expressionToken.getTokens();
  std::size_t leading = 0;
  while (leading < operands.size() && operands[leading].tokenType != Expr::kExprConstant &&
         operands[leading].tokenType != Expr::kExprKeyword) {
    ++leading;
  }
  // An operand conflicts with the leading ones when any of them is of another kind; the
  // kinds among them are collected once, so that a long expression is checked in one pass.
  std::set<int> leadingKinds;
  for (std::size_t position = 0; position < leading; ++position) {
    leadingKinds.insert(static_cast<int>(operands[position].tokenType));
  }
  for (const TokenInfo& operand : operands) {
    if (operand.tokenType != Expr::kExprValue && operand.tokenType != Expr::kExprName) {
      continue;
    }
    const bool conflicts =
        leadingKinds.size() > 1 ||
        (leadingKinds.size() == 1 && *leadingKinds.begin() != static_cast<int>(operand.tokenType));
    if (conflicts) {
      SyntaxParserUtility::InvalidExpression(this, data._catName);
    }
  }
}

const std::string& SyntaxPComputeSubcommand::GetCatName() const {
  return _pcData->_catName;
}

std::string SyntaxPComputeSubcommand::GetExpression() const {
  const std::string& expression = _pcData->_expression;
  const std::size_t close = expression.rfind(')');
  return close == std::string::npos ? expression : expression.substr(0, close);
}

std::vector<TokenInfo>& SyntaxPComputeSubcommand::GetExpTokenVector() {
  return _pcData->_expressionToken.getTokens();
}

const std::vector<TokenInfo>& SyntaxPComputeSubcommand::GetExpTokenVector() const {
  return _pcData->_expressionToken.getTokens();
}

std::vector<TokenInfo> SyntaxPComputeSubcommand::GetExpOpTokenVector() const {
  std::vector<TokenInfo> operators = _pcData->_expressionToken.getOperatorTokens();
  if (!operators.empty()) {
    operators.pop_back();
  }
  return operators;
}

void SyntaxPComputeSubcommand::SetPPropertiesSyntax(SyntaxPPropertiesSubcommand* properties) {
  _pcData->_properties.push_back(properties);
}

const std::vector<SyntaxPPropertiesSubcommand*>& SyntaxPComputeSubcommand::GetPPropertiesSyntax() const {
  return _pcData->_properties;
}

bool SyntaxPComputeSubcommand::IsTotalSet() const {
  return _totalUsed;
}

void SyntaxPComputeSubcommand::UpdateTokenIndex(const std::string& text) {
  for (TokenInfo& operand : _pcData->_expressionToken.getTokens()) {
    operand.varName = text;
  }
}

namespace {

const char* ListTypeName(int type) {
  static const char* const kNames[] = {"string",  "number",   "lo",        "hi",   "range",   "missing",
                                       "othernm", "subtotal", "hsubtotal", "name", "computed"};
  return type >= 0 && type <= 10 ? kNames[type] : "?";
}

const char* TokenTypeName(int type) {
  static const char* const kNames[] = {"value", "keyword", "constant", "name"};
  return type >= 0 && type <= 3 ? kNames[type] : "?";
}

}  // namespace

void SyntaxPComputeSubcommand::DumpDetails(std::ostream& out) const {
  const PCData& data = *_pcData;
  out << " name=" << data._catName << " expression=\"" << GetExpression() << "\" total=" << _totalUsed
      << " operands=";
  const char* separator = "";
  for (const TokenInfo& operand : data._expressionToken.getTokens()) {
    out << separator << "{" << ListTypeName(operand.listType) << "/" << TokenTypeName(operand.tokenType)
        << " '" << operand.token << "'";
    if (operand.index != 0) {
      out << " #" << operand.index;
    }
    out << "}";
    separator = ",";
  }
  out << " operators=";
  separator = "";
  for (const TokenInfo& op : data._expressionToken.getOperatorTokens()) {
    out << separator << op.opToken;
    separator = " ";
  }
}
