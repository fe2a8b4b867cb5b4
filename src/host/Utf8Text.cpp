// Utf8Text.cpp - UTF-8 validation (RFC 3629), repair with U+FFFD, and quoting for messages
#include "host/Utf8Text.h"

#include <algorithm>

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

// Length of the well-formed character at `offset`, or 0 when its first byte is not the
// start of one. Follows the table of well-formed byte sequences of Unicode (3.9, D92):
// the second byte's range excludes overlong forms, surrogates and code points past U+10FFFF.
std::size_t CharacterLength(std::string_view text, std::size_t offset) {
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

}  // namespace

std::size_t Utf8Text::FindInvalidByte(std::string_view text) {
  std::size_t offset = 0;
  while (offset < text.size()) {
    // Plain ASCII is the common case: skip it a byte at a time without the table.
    const auto byte = static_cast<unsigned char>(text[offset]);
    if (byte >= 0x01 && byte <= 0x7F) {
      ++offset;
      continue;
    }
    const std::size_t length = CharacterLength(text, offset);
    if (length == 0) return offset;
    offset += length;
  }
  return kAllValid;
}

std::string Utf8Text::Repaired(std::string_view text, bool replaceControls) {
  const auto isUnwantedControl = [&](unsigned char byte) {
    return replaceControls && (byte < 0x20 || byte == 0x7F) && byte != '\n' && byte != '\t';
  };
  bool clean = FindInvalidByte(text) == kAllValid;
  for (std::size_t offset = 0; clean && offset < text.size(); ++offset) {
    clean = !isUnwantedControl(static_cast<unsigned char>(text[offset]));
  }
  if (clean) return std::string(text);
  std::string repaired;
  repaired.reserve(text.size() + 8);
  for (std::size_t offset = 0; offset < text.size();) {
    const std::size_t length = CharacterLength(text, offset);
    if (length == 0 || (length == 1 && isUnwantedControl(static_cast<unsigned char>(text[offset])))) {
      repaired += kReplacement;
      ++offset;
    } else {
      repaired.append(text.substr(offset, length));
      offset += length;
    }
  }
  return repaired;
}

std::size_t Utf8Text::CharacterLengthAt(std::string_view text, std::size_t offset) {
  if (offset >= text.size()) return 0;
  return std::max<std::size_t>(CharacterLength(text, offset), 1);
}

std::size_t Utf8Text::CharacterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t offset = 0; offset < text.size(); offset += CharacterLengthAt(text, offset)) ++count;
  return count;
}

std::string Utf8Text::NameByte(unsigned char byte) {
  const char* digits = "0123456789ABCDEF";
  return std::string("byte 0x") + digits[byte >> 4] + digits[byte & 0xF];
}

std::string Utf8Text::Quoted(std::string_view text, std::size_t maxCharacters) {
  std::size_t end = 0;
  for (std::size_t characters = 0; end < text.size() && characters < maxCharacters; ++characters) {
    end += CharacterLengthAt(text, end);
  }
  return "'" + Escaped(text.substr(0, end)) + (end < text.size() ? "...'" : "'");
}

std::string Utf8Text::Escaped(std::string_view text) {
  const char* digits = "0123456789ABCDEF";
  std::string escaped;
  for (std::size_t offset = 0; offset < text.size();) {
    const auto byte = static_cast<unsigned char>(text[offset]);
    const std::size_t length = CharacterLength(text, offset);
    if (length > 1 || (length == 1 && byte >= 0x20 && byte != 0x7F)) {
      escaped.append(text.substr(offset, length));
      offset += length;
      continue;
    }
    switch (byte) {
      case '\n':
        escaped += "\\n";
        break;
      case '\r':
        escaped += "\\r";
        break;
      case '\t':
        escaped += "\\t";
        break;
      default:
        escaped += std::string("\\x") + digits[byte >> 4] + digits[byte & 0xF];
    }
    ++offset;
  }
  return escaped;
}
