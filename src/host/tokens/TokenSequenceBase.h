// TokenSequenceBase.h - the token contract the parser walks: types, operator codes, operations
#pragma once

/// A forward sequence of the tokens of one command that can step back one token. After
/// each Next the parser reads the current token's type, operator code, text and number.
class TokenSequenceBase {
 public:
  /// kTokenEnd 1, kTokenWord 2, kTokenNumber 3, kTokenLiteral 4 (quoted text, delivered
  /// without its quotes), kTokenOperator 5.
  enum TokenType : int {
#define TOKEN_TYPE(name, value, description) kToken##name = value,
#include "host/tokens/TokenKinds.def"
  };

  /// Operator codes. Punctuation arrives as kTokenOperator with its code; the words GT, TO,
  /// BY and ALL (any letter case) arrive as kTokenWord with theirs; every other token has
  /// kOpNone.
  enum OperatorCode : int {
#define OPERATOR_CODE(name, value, spelling) kOp##name = value,
#include "host/tokens/TokenKinds.def"
  };

  virtual ~TokenSequenceBase() = default;

  /// Moves to the next token; false when there are no more, and on every later call.
  virtual bool Next() = 0;
  /// A position such that SetPosition(position) makes the following Next deliver the
  /// current token again.
  virtual int PositionBefore() = 0;
  virtual void SetPosition(int position) = 0;
  /// Called once before the first Next; the result means nothing.
  virtual int Prepare() = 0;
  virtual TokenType GetTokenType() = 0;
  virtual OperatorCode GetOperatorCode() = 0;
  /// The current token's text and its length in bytes; a literal's text has no quotes. The
  /// text stays valid, and unchanged, as long as the sequence; callers must not write to it.
  virtual void GetText(char** text, int* length) = 0;
  virtual double GetNumber() = 0;

  /// How messages and dumps show a code: ">", "TO", "**"; "" for kOpNone, "?" for a value
  /// that is no code.
  static const char* GetOperatorSpelling(OperatorCode code);
  /// How messages and dumps name a type: "word", "quoted text"; "?" for a value that is no
  /// type.
  static const char* GetTokenTypeName(TokenType type);
};
