// Utf8Text.h - checks that input is UTF-8 text, repairs output that is not, quotes text for messages
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Quilt reads and writes UTF-8 only. Input that is not (a command, a data field, a label)
/// is refused with the position of the first bad byte; output texts are repaired, so that a
/// writer produces valid output whatever a label holds. Static functions only.
class Utf8Text {
 public:
  static constexpr std::size_t kAllValid = static_cast<std::size_t>(-1);

  /// Offset of the first byte that does not belong to well-formed UTF-8 text: a byte that
  /// starts no character, a sequence cut short, an overlong form, a surrogate or a code point
  /// above U+10FFFF, and also a NUL byte, which no text holds. kAllValid when there is none.
  static std::size_t FindInvalidByte(std::string_view text);

  /// `text` with each byte that FindInvalidByte would report replaced by U+FFFD; with
  /// `replaceControls`, also every control byte other than line feed and tab, which have no
  /// place in a table or a page.
  static std::string Repaired(std::string_view text, bool replaceControls = false);

  /// Bytes of the character at `offset`, counting a byte that starts no well-formed
  /// character as one (it is one U+FFFD once repaired). 0 at the end of the text.
  static std::size_t CharacterLengthAt(std::string_view text, std::size_t offset);

  /// Number of characters, each bad byte counting as one: the width of the repaired text
  /// on a terminal, for scripts of one column per character.
  static std::size_t CharacterCount(std::string_view text);

  /// `text` in single quotes for a message: at most `maxCharacters` characters (then "..."),
  /// never cut inside a character; line ends, tabs and other control bytes as \n, \r, \t,
  /// \xNN, and bytes that are not UTF-8 as \xNN, so a message is one line of valid text.
  static std::string Quoted(std::string_view text, std::size_t maxCharacters = 40);

  /// `text` escaped as Quoted escapes it, whole and without quotes: for a message that
  /// carries text from elsewhere (a parser's own message quoting the input).
  static std::string Escaped(std::string_view text);

  /// "byte 0xE9", how messages name a single byte.
  static std::string NameByte(unsigned char byte);
};
