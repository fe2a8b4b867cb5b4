// HostStrings.h - the host's keyword test, name check and byte-string helpers for UTF-8 text
#pragma once

#include <cstddef>
#include <string>

/// The host's keyword test. True when `token` equals `keyword` ignoring letter case, or is
/// an abbreviation of it: at least kMinimumKeywordAbbreviation characters long and a
/// prefix of the keyword. A token longer than the keyword never matches.
bool KeywordMatch(const char* token, const char* keyword);

/// Shortest abbreviation of a keyword that KeywordMatch accepts.
inline constexpr int kMinimumKeywordAbbreviation = 3;

/// Case-insensitive comparison of UTF-8 texts: 0 when equal, negative or positive like
/// strcmp. Letter case is folded for ASCII letters; other bytes compare as they are.
int TARNMBstricmp_A(const char* left, const char* right);
/// As TARNMBstricmp_A over at most `count` bytes.
int TARNMBstrnicmp_A(const char* left, const char* right, std::size_t count);
/// Upper-cases ASCII letters in place; other bytes (UTF-8 sequences) are left alone.
void TARNMBstrupr_A(char* text);
/// Copies `sourceLength` bytes of `source` (strlen when negative) into the fixed field
/// `destination` of `destinationSize` bytes, blank-filled and not terminated. A text too
/// long is cut at a character boundary, never inside a UTF-8 sequence.
void TARNMBCopyToFixed_A(char* destination, int destinationSize, const char* source, int sourceLength);
/// Converts text of the local code page into the host's internal form. Both are UTF-8
/// here, so the text is copied; the first argument (a converter) is unused. Returns 0.
int TARNMBCodePageToGeneric(const void* converter, std::string& out, const std::string& in);

/// Results of ValidateTARNName.
enum NameValidation : int {
  kNameValid = 0,
  kNameEmpty = 1,
  kNameTooLong = 2,            // more than kMaximumNameLength bytes
  kNameBadFirstCharacter = 3,  // not a letter, "@", "#" or "$"
  kNameBadCharacter = 4,       // a character other than letters, digits, "_", ".", "@", "#", "$"
  kNameReservedWord = 5,       // ALL AND BY EQ GE GT LE LT NE NOT OR TO WITH
  kNameTrailingPeriod = 6,     // a name may not end with "."
};

/// Longest valid name in bytes.
inline constexpr int kMaximumNameLength = 64;

/// kNameValid (0) when `name` is valid as a variable name, else the NameValidation reason.
/// Letters are ASCII letters and any byte of a UTF-8 multi-byte sequence.
int ValidateTARNName(const char* name);
