// Utf8TextTest.cpp - which bytes are not UTF-8 text, how they are repaired, and how messages quote them
#include <gtest/gtest.h>

#include <string>

#include "host/Utf8Text.h"

namespace {

constexpr std::size_t kValid = Utf8Text::kAllValid;

// Each row: the text, the offset of its first bad byte, and the text repaired. The ranges of
// well-formed sequences are those of the Unicode standard's table 3-7.
struct Row {
  std::string text;
  std::size_t invalid;
  std::string repaired;
};

const std::string kFffd = "\xEF\xBF\xBD";

const Row kRows[] = {
    {"plain", kValid, "plain"},
    {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", kValid, "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
    {"caf\xE9", 3, "caf" + kFffd},                           // a Latin-1 letter
    {"\x80x", 0, kFffd + "x"},                               // a continuation byte alone
    {"\xC3", 0, kFffd},                                      // a sequence cut short at the end
    {"\xC0\xAF", 0, kFffd + kFffd},                          // an overlong form of '/'
    {"\xE0\x80\x80", 0, kFffd + kFffd + kFffd},              // an overlong three-byte form
    {"\xED\xA0\x80", 0, kFffd + kFffd + kFffd},              // a surrogate
    {"\xF4\x90\x80\x80", 0, kFffd + kFffd + kFffd + kFffd},  // above U+10FFFF
    {std::string("a\0b", 3), 1, "a" + kFffd + "b"},          // NUL is no text
    {"\xE2\x82", 0, kFffd + kFffd},                          // a cut three-byte sequence
};

}  // namespace

TEST(Utf8Text, FindsTheFirstBadByteAndRepairsEachOne) {
  for (const Row& row : kRows) {
    EXPECT_EQ(Utf8Text::FindInvalidByte(row.text), row.invalid) << row.text;
    const std::string repaired = Utf8Text::Repaired(row.text);
    EXPECT_EQ(repaired, row.repaired) << row.text;
    EXPECT_EQ(Utf8Text::FindInvalidByte(repaired), kValid);
    // Each bad byte counts as the one character it is repaired into.
    EXPECT_EQ(Utf8Text::CharacterCount(row.text), Utf8Text::CharacterCount(repaired)) << row.text;
  }
}

TEST(Utf8Text, RepairCanAlsoReplaceControlsButKeepsLineFeedAndTab) {
  EXPECT_EQ(Utf8Text::Repaired("a\rb\x1B[2Jc\nd\te", /*replaceControls=*/true),
            "a" + kFffd + "b" + kFffd + "[2Jc\nd\te");
  EXPECT_EQ(Utf8Text::Repaired("a\rb"), "a\rb");
}

TEST(Utf8Text, QuotesOnOneLineOfValidTextCutAtACharacter) {
  EXPECT_EQ(Utf8Text::Quoted("two\r\nlines\t\x01"), "'two\\r\\nlines\\t\\x01'");
  EXPECT_EQ(Utf8Text::Quoted("caf\xE9"), "'caf\\xE9'");
  // Forty characters at most: the cut falls after the 40th "é", not inside one.
  std::string accents;
  for (int i = 0; i < 41; ++i) accents += "\xC3\xA9";
  EXPECT_EQ(Utf8Text::Quoted(accents), "'" + accents.substr(0, 80) + "...'");
}
