// Utf8Repair.cpp - UTF-8 validation by the table of well-formed byte sequences, repair with U+FFFD
#include "writers/Utf8Repair.h"

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

bool IsUnwantedControl(unsigned char byte) {
  return (byte < 0x20 || byte == 0x7F) && byte != '\n' && byte != '\t';
}

}  // namespace

// The ranges of the second byte follow Unicode's table of well-formed sequences (3.9, D92),
// which rules out overlong forms, surrogates and code points past U+10FFFF.
std::size_t Utf8Repair::CharacterLength(std::string_view text, std::size_t offset) {
  const auto byte = [&](std::size_t index) {
    return offset + index < text.size() ? static_cast<unsigned char>(text[offset + index]) : 0u;
  };
  const unsigned first = byte(0);
  if (first >= 0x01 && first <= 0x7F) return 1;
  unsigned low = 0x80;
  unsigned high = 0xBF;
  std::size_t length = 0;
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3;
    if (first == 0xE0) low = 0xA0;
    if (first == 0xED) high = 0x9F;
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4;
    if (first == 0xF0) low = 0x90;
    if (first == 0xF4) high = 0x8F;
  } else {
    return 0;
  }
  const unsigned second = byte(1);
  if (second < low || second > high) return 0;
  for (std::size_t index = 2; index < length; ++index) {
    if ((byte(index) & 0xC0) != 0x80) return 0;
  }
  return length;
}

std::string Utf8Repair::Repaired(std::string_view text) {
  std::string repaired;
  repaired.reserve(text.size());
  for (std::size_t offset = 0; offset < text.size();) {
    const std::size_t length = CharacterLength(text, offset);
    if (length == 0 || (length == 1 && IsUnwantedControl(static_cast<unsigned char>(text[offset])))) {
      repaired += kReplacement;
      ++offset;
    } else {
      repaired.append(text.substr(offset, length));
      offset += length;
    }
  }
  return repaired;
}
