// Utf8Repair.h - makes label text valid UTF-8 for output formats that refuse anything else
#pragma once

#include <string>
#include <string_view>

/// Labels come from data, dictionaries and commands, and may hold any bytes. A workbook's XML
/// and a Python string accept only valid UTF-8 without NUL or other control characters, so
/// every text bound for them passes through here first.
class Utf8Repair {
 public:
  /// `text` with every byte that does not belong to a well-formed UTF-8 character (a stray
  /// continuation byte, a cut sequence, an overlong form, a surrogate, a code point above
  /// U+10FFFF), and every control byte other than line feed and tab, replaced by U+FFFD.
  static std::string Repaired(std::string_view text);

  /// Bytes of the well-formed character at `offset`, or 0 when the byte there starts none.
  static std::size_t CharacterLength(std::string_view text, std::size_t offset);
};
