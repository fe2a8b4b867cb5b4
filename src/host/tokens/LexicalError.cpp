// LexicalError.cpp - the message of an unreadable command text
#include "host/tokens/LexicalError.h"

LexicalError::LexicalError(int line, int column, const std::string& problem)
    : std::runtime_error("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " +
                         problem),
      _line(line),
      _column(column),
      _problem(problem) {}
