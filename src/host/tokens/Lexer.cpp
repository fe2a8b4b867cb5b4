// Lexer.cpp - the command language's tokens: words, numbers, literals and operators
#include "host/tokens/Lexer.h"

#include <cctype>
#include <cstdlib>
#include <string>

#include "host/Utf8Text.h"
#include "host/tokens/LexicalError.h"
#include "host/tokens/LineComment.h"
#include "host/tokens/TokenCharacters.h"

namespace {

using OperatorCode = TokenSequenceBase::OperatorCode;

using token_characters::IsDigit;
using token_characters::IsWordCharacter;
using token_characters::IsWordStart;

bool IsSeparator(char character) {
  return character == ' ' || character == '\t' || character == '\r' || character == '\n' ||
         character == ',' || character == '\f' || character == '\v';
}

std::string ToUpper(std::string_view word) {
  std::string upper(word);
  for (char& character : upper)
    character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  return upper;
}

OperatorCode ReservedWordCode(std::string_view word) {
  const std::string upper = ToUpper(word);
#define RESERVED_WORD(code, spelling) \
  if (upper == spelling) return TokenSequenceBase::kOp##code;
#include "host/tokens/TokenKinds.def"
  return TokenSequenceBase::kOpNone;
}

/// The longest punctuator spelled at the front of `rest`; empty when none.
std::string_view MatchPunctuator(std::string_view rest, OperatorCode& code) {
  std::string_view best;
#define PUNCTUATOR(opCode, spelling)                                                            \
  if (rest.substr(0, sizeof(spelling) - 1) == spelling && sizeof(spelling) - 1 > best.size()) { \
    best = rest.substr(0, sizeof(spelling) - 1);                                                \
    code = TokenSequenceBase::kOp##opCode;                                                      \
  }
#include "host/tokens/TokenKinds.def"
  return best;
}

std::string ShowByte(char character) {
  const auto byte = static_cast<unsigned char>(character);
  if (std::isprint(byte)) return std::string("'") + character + "'";
  const char* digits = "0123456789ABCDEF";
  return std::string("byte 0x") + digits[byte >> 4] + digits[byte & 0xF];
}

/// One pass over a command's text. File-local: Lexer::Lex is the interface.
class Scanner {
 public:
  Scanner(std::string_view text, int firstLine) : _text(text), _line(firstLine) {}

  LexedCommand Run() {
    CheckUtf8();
    LexedCommand command;
    while (_position < _text.size()) {
      const char character = _text[_position];
      if (character == '\n') {
        ++_line;
        _lineStart = ++_position;
      } else if (IsSeparator(character)) {
        ++_position;
      } else if (LineComment::StartsAt(_text, _position)) {
        while (_position < _text.size() && _text[_position] != '\n') ++_position;
      } else {
        Token token = ScanToken();
        _previousIsOperand = IsOperand(token);
        _previousEnd = _position;
        command.tokens.push_back(std::move(token));
      }
    }
    return command;
  }

 private:
  Token ScanToken() {
    const char character = _text[_position];
    if (StartsNumber()) return ScanNumber();
    if (IsWordStart(character)) return ScanWord();
    if (character == '\'' || character == '"') return ScanLiteral();
    if (character == '.') {
      throw LexicalError(_line, Column(),
                         "unexpected '.' (a period ends a command only at the end of a line)");
    }
    return ScanOperator();
  }

  int Column() const { return static_cast<int>(_position - _lineStart) + 1; }

  // Commands are UTF-8 text. A byte that is not (a Latin-1 letter, say) is refused where it
  // stands, before any token is made of it.
  void CheckUtf8() {
    const std::size_t invalid = Utf8Text::FindInvalidByte(_text);
    if (invalid == Utf8Text::kAllValid) return;
    for (; _position < invalid; ++_position) {
      if (_text[_position] == '\n') {
        ++_line;
        _lineStart = _position + 1;
      }
    }
    const auto byte = static_cast<unsigned char>(_text[invalid]);
    throw LexicalError(_line, Column(),
                       byte == 0
                           ? "unexpected byte 0x00 (a command is text)"
                           : Utf8Text::NameByte(byte) + " is not UTF-8 (save the command file as UTF-8)");
  }

  Token StartToken(TokenSequenceBase::TokenType type) const {
    Token token;
    token.type = type;
    token.line = _line;
    token.column = Column();
    return token;
  }

  char At(std::size_t offset) const {
    return _position + offset < _text.size() ? _text[_position + offset] : '\0';
  }

  // Whether the token just read can be the left side of a binary minus or plus, so that a
  // sign written straight after it is that operator: `2-1` is two minus one. THRU is an
  // infix keyword of category ranges, after which `-1` is a bound.
  static bool IsOperand(const Token& token) {
    switch (token.type) {
      case TokenSequenceBase::kTokenNumber:
      case TokenSequenceBase::kTokenLiteral:
        return true;
      case TokenSequenceBase::kTokenWord:
        return token.operatorCode == TokenSequenceBase::kOpNone && ToUpper(token.text) != "THRU";
      case TokenSequenceBase::kTokenOperator:
        return token.operatorCode == TokenSequenceBase::kOpRightParen ||
               token.operatorCode == TokenSequenceBase::kOpRightBracket;
      case TokenSequenceBase::kTokenEnd:
        break;
    }
    return false;
  }

  // A number starts with a digit, a point before a digit, or a sign directly before either
  // that does not directly follow an operand.
  bool StartsNumber() const {
    std::size_t offset = 0;
    if (At(0) == '+' || At(0) == '-') {
      if (_previousIsOperand && _previousEnd == _position) return false;
      offset = 1;
    }
    if (IsDigit(At(offset))) return true;
    return At(offset) == '.' && IsDigit(At(offset + 1));
  }

  Token ScanNumber() {
    Token token = StartToken(TokenSequenceBase::kTokenNumber);
    const std::size_t start = _position;
    if (At(0) == '+' || At(0) == '-') ++_position;
    while (IsDigit(At(0))) ++_position;
    if (At(0) == '.' && IsDigit(At(1))) {
      ++_position;
      while (IsDigit(At(0))) ++_position;
    } else if (At(0) == '.' && !IsWordCharacter(At(1)) && At(1) != '.') {
      ++_position;  // "5." is five
    }
    if ((At(0) == 'e' || At(0) == 'E') &&
        (IsDigit(At(1)) || ((At(1) == '+' || At(1) == '-') && IsDigit(At(2))))) {
      _position += IsDigit(At(1)) ? 1 : 2;
      while (IsDigit(At(0))) ++_position;
    }
    if (IsWordCharacter(At(0)) || At(0) == '.') {
      // `2x` or `1.5.2`: neither a number nor a word; show the whole run.
      while (IsWordCharacter(At(0)) || At(0) == '.') ++_position;
      throw LexicalError(token.line, token.column,
                         "malformed number '" + std::string(_text.substr(start, _position - start)) + "'");
    }
    token.text = std::string(_text.substr(start, _position - start));
    // strtod accepts the leading '+' that from_chars refuses; the text is well formed here.
    token.number = std::strtod(token.text.c_str(), nullptr);
    return token;
  }

  Token ScanWord() {
    Token token = StartToken(TokenSequenceBase::kTokenWord);
    const std::size_t start = _position;
    while (IsWordCharacter(At(0)) || (At(0) == '.' && IsWordCharacter(At(1)))) ++_position;
    token.text = std::string(_text.substr(start, _position - start));
    token.operatorCode = ReservedWordCode(token.text);
    return token;
  }

  Token ScanLiteral() {
    Token token = StartToken(TokenSequenceBase::kTokenLiteral);
    const char quote = _text[_position++];
    while (true) {
      if (_position >= _text.size() || _text[_position] == '\n') {
        throw LexicalError(token.line, token.column, "unterminated quoted text");
      }
      const char character = _text[_position++];
      if (character != quote) {
        token.text += character;
      } else if (At(0) == quote) {
        token.text += quote;  // a doubled quote stands for one
        ++_position;
      } else {
        return token;
      }
    }
  }

  Token ScanOperator() {
    Token token = StartToken(TokenSequenceBase::kTokenOperator);
    OperatorCode code = TokenSequenceBase::kOpNone;
    const std::string_view spelling = MatchPunctuator(_text.substr(_position), code);
    if (spelling.empty())
      throw LexicalError(token.line, token.column, "unexpected " + ShowByte(_text[_position]));
    token.text = std::string(spelling);
    token.operatorCode = code;
    _position += spelling.size();
    return token;
  }

  std::string_view _text;
  std::size_t _position = 0;        // next byte to read
  std::size_t _lineStart = 0;       // offset of the current line's first byte
  int _line;                        // line of the origin at _position
  bool _previousIsOperand = false;  // the last token read can stand left of a binary sign
  std::size_t _previousEnd = 0;     // offset just past the last token read
};

}  // namespace

LexedCommand Lexer::Lex(std::string_view text, int firstLine) {
  return Scanner(text, firstLine).Run();
}
