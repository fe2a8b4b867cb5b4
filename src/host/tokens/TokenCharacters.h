// TokenCharacters.h - which bytes make up words and numbers, shared by lexer, splitter and comments
#pragma once

namespace token_characters {

inline bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

/// A byte that can begin a word: an ASCII letter, `$`, `@`, `#`, `_`, or any byte of 0x80
/// and above, which belongs to a UTF-8 letter of a name or label.
inline bool IsWordStart(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || character == '$' ||
         character == '@' || character == '#' || character == '_' || byte >= 0x80;
}

/// A byte that can continue a word. A period continues one only when another of these
/// follows it, which the lexer decides.
inline bool IsWordCharacter(char character) {
  return IsWordStart(character) || IsDigit(character);
}

}  // namespace token_characters
