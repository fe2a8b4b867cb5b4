// Lexer.cpp - the command language's tokens: words, numbers, literals and operators
#include "host/tokens/Lexer.h"

#include <cctype>
#include <charconv>
#include <cstdlib>
#include <string>

#include "host/tokens/LexicalError.h"

namespace {

using OperatorCode = TokenSequenceBase::OperatorCode;

bool IsWordStart(unsigned char character) {
  // Bytes of 0x80 and above belong to UTF-8 letters of names and labels.
  return std::isalpha(character) || character == '$' || character == '@' || character == '#' || character == '_' ||
         character >= 0x80;
}

bool IsWordPart(unsigned char character) {
  return IsWordStart(character) || std::isdigit(character) || character == '.';
}

bool IsDigit(char character) { return std::isdigit(static_cast<unsigned char>(character)) != 0; }

OperatorCode ReservedWordCode(std::string_view word) {
  std::string upper(word);
  for (char& character : upper) character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
#define RESERVED(name, spelling, code) \
  if (upper == spelling) return static_cast<OperatorCode>(code);
#include "host/tokens/TokenKinds.def"
  return TokenSequenceBase::kOpNone;
}

/// Longest operator spelling at the front of `rest`; empty when none.
std::string_view MatchOperator(std::string_view rest, OperatorCode& code) {
  std::string_view best;
#define OPERATOR(name, spelling, opCode)                                                   \
  if (rest.substr(0, sizeof(spelling) - 1) == spelling && sizeof(spelling) - 1 > best.size()) { \
    best = rest.substr(0, sizeof(spelling) - 1);                                           \
    code = static_cast<OperatorCode>(opCode);                                              \
  }
#include "host/tokens/TokenKinds.def"
  return best;
}

class Scanner {
public:
  Scanner(std::string_view text, int firstLine) : _text(text), _line(firstLine) {}

  LexedCommand Run() {
    LexedCommand command;
    while (_position < _text.size()) {
      const char character = _text[_position];
      if (character == '\n') {
        ++_line;
        _lineStart = ++_position;
      } else if (character == ' ' || character == '\t' || character == '\r' || character == ',' ||
                 character == '\f' || character == '\v') {
        ++_position;
      } else if (StartsNumber()) {
        command.tokens.push_back(ScanNumber());
      } else if (IsWordStart(static_cast<unsigned char>(character))) {
        command.tokens.push_back(ScanWord());
      } else if (character == '\'' || character == '"') {
        command.tokens.push_back(ScanLiteral());
      } else {
        command.tokens.push_back(ScanOperator());
      }
    }
    return command;
  }

private:
  int Column() const { return static_cast<int>(_position - _lineStart) + 1; }

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

  // A number starts with a digit, a point before a digit, or a sign directly before either.
  bool StartsNumber() const {
    std::size_t offset = 0;
    if (At(0) == '+' || At(0) == '-') offset = 1;
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
    } else if (At(0) == '.' && !IsWordPart(static_cast<unsigned char>(At(1)))) {
      ++_position;  // "5." is five, as in a list of numbers written with points
    }
    if ((At(0) == 'e' || At(0) == 'E') &&
        (IsDigit(At(1)) || ((At(1) == '+' || At(1) == '-') && IsDigit(At(2))))) {
      _position += IsDigit(At(1)) ? 1 : 2;
      while (IsDigit(At(0))) ++_position;
    }
    token.text = std::string(_text.substr(start, _position - start));
    // strtod accepts the leading '+' that from_chars refuses.
    token.number = std::strtod(token.text.c_str(), nullptr);
    return token;
  }

  Token ScanWord() {
    Token token = StartToken(TokenSequenceBase::kTokenWord);
    const std::size_t start = _position;
    while (_position < _text.size() && IsWordPart(static_cast<unsigned char>(_text[_position]))) ++_position;
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
    const std::string_view spelling = MatchOperator(_text.substr(_position), code);
    if (spelling.empty()) {
      const unsigned char byte = static_cast<unsigned char>(_text[_position]);
      std::string shown = std::isprint(byte) ? std::string("'") + static_cast<char>(byte) + "'"
                                             : "byte 0x" + std::string(1, "0123456789ABCDEF"[byte >> 4]) +
                                                   "0123456789ABCDEF"[byte & 0xF];
      throw LexicalError(token.line, token.column, "unexpected " + shown);
    }
    token.text = std::string(spelling);
    token.operatorCode = code;
    _position += spelling.size();
    return token;
  }

  std::string_view _text;
  std::size_t _position = 0;
  std::size_t _lineStart = 0;
  int _line;
};

}  // namespace

LexedCommand Lexer::Lex(std::string_view text, int firstLine) { return Scanner(text, firstLine).Run(); }
