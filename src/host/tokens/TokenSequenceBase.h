// TokenSequenceBase.h - the token contract the parser walks: types, operator codes, operations
#pragma once

/// A forward-only sequence of tokens that can step back one token. The parser reads the
/// current token's type, operator code, text and number after each Next.
class TokenSequenceBase {
public:
  enum TokenType : int {
    kTokenEnd = 1,       // the end mark
    kTokenWord = 2,      // a name, keyword or dotted keyword
    kTokenNumber = 3,
    kTokenLiteral = 4,   // a quoted string; its text comes without the quotes
    kTokenOperator = 5,
  };

  /// Operator codes. Words with a reserved meaning (GT, TO, BY, ALL) arrive as kTokenWord
  /// with their code; every other word has kOpNone.
  enum OperatorCode : int {
    kOpNone = 0,
    kOpGreaterThan = 2,
    kOpEquals = 3,
    kOpPlus = 8,
    kOpMinus = 9,
    kOpTimes = 10,
    kOpSlash = 11,
    kOpPower = 12,
    kOpLeftParen = 13,
    kOpRightParen = 14,
    kOpTerminator = 18,  // ends a table expression; the lexer never produces it
    kOpAmpersand = 23,
    kOpTo = 30,
    kOpBy = 34,
    kOpAll = 35,
    kOpLeftBracket = 36,
    kOpRightBracket = 37,
  };

  virtual ~TokenSequenceBase() = default;

  /// Moves to the next token; false when there are no more (and on every later call).
  virtual bool Next() = 0;
  /// A position such that SetPosition(position) makes the following Next deliver the
  /// current token again.
  virtual int PositionBefore() = 0;
  virtual void SetPosition(int position) = 0;
  /// Called once before the first Next; the result means nothing.
  virtual int Prepare() = 0;
  virtual TokenType GetTokenType() = 0;
  virtual OperatorCode GetOperatorCode() = 0;
  /// The current token's text and its length in bytes; a literal's text has no quotes.
  /// The text stays valid as long as the sequence.
  virtual void GetText(char** text, int* length) = 0;
  virtual double GetNumber() = 0;
};
