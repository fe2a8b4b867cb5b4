// CommandSplitter.cpp - finds where each command of a file begins and ends
#include "host/tokens/CommandSplitter.h"

#include <cctype>

#include "host/tokens/LexicalError.h"

namespace {

constexpr std::string_view kCommandWord = "QUILT";

std::string_view TrimBlanks(std::string_view line) {
  while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
  while (!line.empty() && (line.back() == ' ' || line.back() == '\t' || line.back() == '\r')) line.remove_suffix(1);
  return line;
}

bool StartsWithCommandWord(std::string_view line) {
  if (line.size() < kCommandWord.size()) return false;
  for (std::size_t index = 0; index < kCommandWord.size(); ++index) {
    if (std::toupper(static_cast<unsigned char>(line[index])) != kCommandWord[index]) return false;
  }
  if (line.size() == kCommandWord.size()) return true;
  const unsigned char next = static_cast<unsigned char>(line[kCommandWord.size()]);
  return !(std::isalnum(next) || next == '_' || next == '$' || next == '@' || next == '#');
}

// Whether the line, read from its start, ends outside any quoted text. Literals end on
// their line, so each line is judged alone.
bool EndsOutsideQuotes(std::string_view line) {
  char open = '\0';
  for (const char character : line) {
    if (open == '\0') {
      if (character == '\'' || character == '"') open = character;
    } else if (character == open) {
      open = '\0';  // a doubled quote closes and reopens, which comes to the same
    }
  }
  return open == '\0';
}

}  // namespace

std::vector<CommandText> CommandSplitter::Split(std::string_view text, bool requireFinalPeriod) {
  std::vector<CommandText> commands;
  bool inCommand = false;
  CommandText current;
  int lineNumber = 0;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    const std::string_view rawLine = text.substr(start, end - start);
    ++lineNumber;
    const std::string_view line = TrimBlanks(rawLine);

    if (!inCommand) {
      if (!line.empty() && line.front() != '*' && line.front() != '#') {
        if (!StartsWithCommandWord(line)) {
          const int column = static_cast<int>(rawLine.find(line.front())) + 1;
          throw LexicalError(lineNumber, column, "expected a command starting with QUILT");
        }
        inCommand = true;
        current = CommandText{lineNumber, ""};
      }
    }
    if (inCommand) {
      const bool ends = !line.empty() && line.back() == '.' && EndsOutsideQuotes(line);
      if (!current.text.empty()) current.text += '\n';
      if (ends) {
        current.text += std::string(rawLine.substr(0, rawLine.rfind('.')));
        commands.push_back(std::move(current));
        current = CommandText{};
        inCommand = false;
      } else {
        current.text += std::string(rawLine);
      }
    }
    if (end == text.size()) break;
    start = end + 1;
  }
  if (inCommand) {
    if (requireFinalPeriod) {
      throw LexicalError(lineNumber, 1, "the command that starts on line " + std::to_string(current.firstLine) +
                                             " has no terminating period");
    }
    commands.push_back(std::move(current));
  }
  return commands;
}
