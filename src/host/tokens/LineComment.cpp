// LineComment.cpp - the one rule for `#` comments
#include "host/tokens/LineComment.h"

#include "host/tokens/TokenCharacters.h"

namespace {

// A marker right after a word character, or a period, would continue a word or number.
bool MayPrecedeComment(char character) {
  return !token_characters::IsWordCharacter(character) && character != '.';
}

bool IsSeparatorAfter(char character) {
  return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

}  // namespace

bool LineComment::StartsAt(std::string_view text, std::size_t position) {
  // Only '#' marks a comment: two slashes are a command error the parser must see
  // (an empty subcommand), so they never hide the rest of a line.
  constexpr std::size_t markerLength = 1;
  if (text.substr(position, 1) != "#") return false;
  if (position > 0 && !MayPrecedeComment(text[position - 1])) return false;
  const std::size_t after = position + markerLength;
  return after >= text.size() || IsSeparatorAfter(text[after]);
}

std::size_t LineComment::Find(std::string_view line) {
  char openQuote = '\0';
  for (std::size_t position = 0; position < line.size(); ++position) {
    const char character = line[position];
    if (openQuote != '\0') {
      // A doubled quote closes and reopens the text, which comes to the same.
      if (character == openQuote) openQuote = '\0';
    } else if (character == '\'' || character == '"') {
      openQuote = character;
    } else if (StartsAt(line, position)) {
      return position;
    }
  }
  return std::string_view::npos;
}
