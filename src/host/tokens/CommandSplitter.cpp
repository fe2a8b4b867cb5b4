// CommandSplitter.cpp - finds where each command of a file begins and ends
#include "host/tokens/CommandSplitter.h"

#include <cctype>
#include <string>

#include "host/tokens/LexicalError.h"
#include "host/tokens/LineComment.h"
#include "host/tokens/TokenCharacters.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char character) {
  return character == ' ' || character == '\t' || character == '\r';
}

std::size_t LeadingBlanks(std::string_view line) {
  std::size_t count = 0;
  while (count < line.size() && IsBlank(line[count])) ++count;
  return count;
}

std::string_view TrimBlanks(std::string_view line) {
  line.remove_prefix(LeadingBlanks(line));
  while (!line.empty() && IsBlank(line.back())) line.remove_suffix(1);
  return line;
}

// Whether the trimmed line starts with `word` as a whole word, in any letter case.
bool StartsWithWord(std::string_view line, std::string_view word) {
  if (line.size() < word.size()) return false;
  for (std::size_t index = 0; index < word.size(); ++index) {
    if (std::toupper(static_cast<unsigned char>(line[index])) != word[index]) return false;
  }
  if (line.size() == word.size()) return true;
  // As in the lexer, a period continues a word only when a word character follows it.
  std::size_t after = word.size();
  if (line[after] == '.' && after + 1 < line.size()) ++after;
  return !token_characters::IsWordCharacter(line[after]);
}

bool StartsCommand(std::string_view trimmedLine) {
  return StartsWithWord(trimmedLine, "QUILT");
}

bool StartsCommentCommand(std::string_view trimmedLine) {
  return (!trimmedLine.empty() && trimmedLine.front() == '*') || StartsWithWord(trimmedLine, "COMMENT");
}

// Whether `code` ends outside quoted text. Literals end on their line, so each line is
// judged alone; a line ending inside quotes is the lexer's to report.
bool EndsOutsideQuotes(std::string_view code) {
  char openQuote = '\0';
  for (const char character : code) {
    if (openQuote == '\0') {
      if (character == '\'' || character == '"') openQuote = character;
    } else if (character == openQuote) {
      openQuote = '\0';  // a doubled quote closes and reopens, which comes to the same
    }
  }
  return openQuote == '\0';
}

// The offset in `line` of the period that ends a command on it, or npos: the last
// character before any comment, outside quotes.
std::size_t FindTerminatingPeriod(std::string_view line) {
  std::string_view code = line.substr(0, LineComment::Find(line));
  while (!code.empty() && IsBlank(code.back())) code.remove_suffix(1);
  if (code.empty() || code.back() != '.' || !EndsOutsideQuotes(code)) return std::string_view::npos;
  return code.size() - 1;
}

enum class State { kBetween, kInCommand, kInComment };

class Splitter {
 public:
  explicit Splitter(bool requireFinalPeriod) : _requireFinalPeriod(requireFinalPeriod) {}

  std::vector<CommandText> Run(std::string_view text) {
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) text.remove_prefix(kByteOrderMark.size());
    int lineNumber = 0;
    std::size_t start = 0;
    while (start <= text.size()) {
      std::size_t end = text.find('\n', start);
      if (end == std::string_view::npos) end = text.size();
      ReadLine(text.substr(start, end - start), ++lineNumber);
      if (end == text.size()) break;
      start = end + 1;
    }
    if (_state == State::kInCommand) EndWithoutPeriod();
    return std::move(_commands);
  }

 private:
  void ReadLine(std::string_view line, int lineNumber) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    const std::string_view trimmed = TrimBlanks(line);
    if (_state == State::kInComment) {
      if (trimmed.empty() || StartsCommand(trimmed)) {
        _state = State::kBetween;
      } else {
        if (trimmed.back() == '.') _state = State::kBetween;
        return;
      }
    }
    if (_state == State::kInCommand && StartsCommand(trimmed)) EndWithoutPeriod();
    if (_state == State::kBetween) {
      if (trimmed.empty() || LineComment::Find(line) == LeadingBlanks(line)) return;
      if (StartsCommentCommand(trimmed)) {
        // A comment command is free text: quotes in it need not pair.
        if (trimmed.back() != '.') _state = State::kInComment;
        return;
      }
      if (!StartsCommand(trimmed)) {
        throw LexicalError(lineNumber, static_cast<int>(LeadingBlanks(line)) + 1,
                           "expected a command starting with QUILT");
      }
      _state = State::kInCommand;
      _current = CommandText{lineNumber, ""};
      _lastLineNumber = lineNumber;
      _lastLineLength = 0;
    }
    if (lineNumber != _current.firstLine) _current.text += '\n';
    const std::size_t period = FindTerminatingPeriod(line);
    if (!trimmed.empty()) {
      _lastLineNumber = lineNumber;
      _lastLineLength = static_cast<int>(LeadingBlanks(line) + trimmed.size());
    }
    if (period != std::string_view::npos) {
      _current.text += std::string(line.substr(0, period));
      _commands.push_back(std::move(_current));
      _current = CommandText{};
      _state = State::kBetween;
    } else {
      _current.text += std::string(line);
    }
  }

  // The open command ends without its period: before a QUILT line or at the end.
  void EndWithoutPeriod() {
    if (_requireFinalPeriod) {
      throw LexicalError(_lastLineNumber, _lastLineLength + 1,
                         "the command that starts on line " + std::to_string(_current.firstLine) +
                             " has no terminating period");
    }
    while (!_current.text.empty() && (_current.text.back() == '\n' || IsBlank(_current.text.back()))) {
      _current.text.pop_back();
    }
    _commands.push_back(std::move(_current));
    _current = CommandText{};
    _state = State::kBetween;
  }

  bool _requireFinalPeriod;
  State _state = State::kBetween;
  CommandText _current;     // the command being read, while kInCommand
  int _lastLineNumber = 0;  // last line of _current holding more than blanks
  int _lastLineLength = 0;  // its length in bytes, without trailing blanks
  std::vector<CommandText> _commands;
};

}  // namespace

std::vector<CommandText> CommandSplitter::Split(std::string_view text, bool requireFinalPeriod) {
  return Splitter(requireFinalPeriod).Run(text);
}
