// LexicalError.h - a command text that cannot be cut into tokens, with its line and column
#pragma once

#include <stdexcept>
#include <string>

/// Thrown by the lexer and the command splitter. what() reads
/// "line 3, column 14: unterminated quoted text".
class LexicalError : public std::runtime_error {
 public:
  LexicalError(int line, int column, const std::string& problem);
  int GetLine() const { return _line; }
  int GetColumn() const { return _column; }
  const std::string& GetProblem() const { return _problem; }

 private:
  int _line;
  int _column;
  std::string _problem;
};
