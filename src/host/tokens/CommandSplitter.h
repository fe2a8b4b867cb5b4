// CommandSplitter.h - cuts a command file into its commands
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// One command cut out of a file: its text without the terminating period, and the line
/// of the file on which it starts.
struct CommandText {
  int firstLine = 1;
  std::string text;
};

/// A command starts with the command word QUILT and ends with a period that is the last
/// character of a line (blanks may follow it), or at the end of the text. The period is
/// not part of the command. Blank lines, and lines whose first character other than blanks
/// is `*` or `#`, are comments when they stand between commands.
class CommandSplitter {
public:
  /// `requireFinalPeriod` false lets the last command end at the end of the text without
  /// its period (text given on the command line). Throws LexicalError for text between
  /// commands that does not start with QUILT, or, when the period is required, for a
  /// last command without one.
  static std::vector<CommandText> Split(std::string_view text, bool requireFinalPeriod);
};
