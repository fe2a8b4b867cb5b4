// CommandText.h - one command cut out of a command file, with the line it starts on
#pragma once

#include <string>

/// The text of one command, from its command word up to (not including) its terminating
/// period, and the line of the origin on which it starts, so that the lexer can report
/// positions of the file. A plain value type.
struct CommandText {
  int firstLine = 1;
  std::string text;
};
