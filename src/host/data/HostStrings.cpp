// HostStrings.cpp - keyword test, name validation and ASCII-folding helpers over UTF-8 bytes
#include "host/data/HostStrings.h"

#include <cstring>
#include <string_view>

#include "host/Utf8Text.h"

namespace {

unsigned char FoldUpper(unsigned char character) {
  return (character >= 'a' && character <= 'z') ? static_cast<unsigned char>(character - 'a' + 'A')
                                                : character;
}

bool IsAsciiLetter(unsigned char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

// Any byte of a UTF-8 multi-byte sequence counts as a letter, so names in other scripts work.
bool IsNameLetter(unsigned char character) {
  return IsAsciiLetter(character) || character >= 0x80;
}

bool IsDigit(unsigned char character) {
  return character >= '0' && character <= '9';
}

constexpr const char* kReservedWords[] = {"ALL", "AND", "BY",  "EQ", "GE", "GT",  "LE",
                                          "LT",  "NE",  "NOT", "OR", "TO", "WITH"};

}  // namespace

bool KeywordMatch(const char* token, const char* keyword) {
  if (token == nullptr || keyword == nullptr) return false;
  const std::size_t tokenLength = std::strlen(token);
  const std::size_t keywordLength = std::strlen(keyword);
  if (tokenLength == 0 || tokenLength > keywordLength) return false;
  if (tokenLength < keywordLength && tokenLength < static_cast<std::size_t>(kMinimumKeywordAbbreviation)) {
    return false;
  }
  return TARNMBstrnicmp_A(token, keyword, tokenLength) == 0;
}

int TARNMBstricmp_A(const char* left, const char* right) {
  const auto* leftBytes = reinterpret_cast<const unsigned char*>(left);
  const auto* rightBytes = reinterpret_cast<const unsigned char*>(right);
  while (true) {
    const unsigned char leftFolded = FoldUpper(*leftBytes);
    const unsigned char rightFolded = FoldUpper(*rightBytes);
    if (leftFolded != rightFolded) return leftFolded < rightFolded ? -1 : 1;
    if (leftFolded == '\0') return 0;
    ++leftBytes;
    ++rightBytes;
  }
}

int TARNMBstrnicmp_A(const char* left, const char* right, std::size_t count) {
  const auto* leftBytes = reinterpret_cast<const unsigned char*>(left);
  const auto* rightBytes = reinterpret_cast<const unsigned char*>(right);
  for (std::size_t i = 0; i < count; ++i) {
    const unsigned char leftFolded = FoldUpper(leftBytes[i]);
    const unsigned char rightFolded = FoldUpper(rightBytes[i]);
    if (leftFolded != rightFolded) return leftFolded < rightFolded ? -1 : 1;
    if (leftFolded == '\0') return 0;
  }
  return 0;
}

void TARNMBstrupr_A(char* text) {
  if (text == nullptr) return;
  for (; *text != '\0'; ++text) *text = static_cast<char>(FoldUpper(static_cast<unsigned char>(*text)));
}

void TARNMBCopyToFixed_A(char* destination, int destinationSize, const char* source, int sourceLength) {
  if (destination == nullptr || destinationSize <= 0) return;
  std::size_t length = source == nullptr  ? 0
                       : sourceLength < 0 ? std::strlen(source)
                                          : static_cast<std::size_t>(sourceLength);
  const auto capacity = static_cast<std::size_t>(destinationSize);
  if (length > capacity) {
    length = capacity;
    // Back up over continuation bytes so a character is never cut in half.
    while (length > 0 && (static_cast<unsigned char>(source[length]) & 0xC0) == 0x80) --length;
  }
  if (length > 0) std::memcpy(destination, source, length);
  std::memset(destination + length, ' ', capacity - length);
}

int TARNMBCodePageToGeneric(const void* /*converter*/, std::string& out, const std::string& in) {
  out = in;
  return 0;
}

int ValidateTARNName(const char* name) {
  if (name == nullptr || *name == '\0') return kNameEmpty;
  const std::size_t length = std::strlen(name);
  if (length > static_cast<std::size_t>(kMaximumNameLength)) return kNameTooLong;
  const auto first = static_cast<unsigned char>(name[0]);
  if (!IsNameLetter(first) && first != '@' && first != '#' && first != '$') return kNameBadFirstCharacter;
  for (std::size_t i = 1; i < length; ++i) {
    const auto character = static_cast<unsigned char>(name[i]);
    const bool allowed = IsNameLetter(character) || IsDigit(character) || character == '_' ||
                         character == '.' || character == '@' || character == '#' || character == '$';
    if (!allowed) return kNameBadCharacter;
  }
  // Letters above ASCII must be whole UTF-8 characters.
  if (Utf8Text::FindInvalidByte(std::string_view(name, length)) != Utf8Text::kAllValid)
    return kNameBadCharacter;
  if (name[length - 1] == '.') return kNameTrailingPeriod;
  for (const char* reserved : kReservedWords) {
    if (TARNMBstricmp_A(name, reserved) == 0) return kNameReservedWord;
  }
  return kNameValid;
}
