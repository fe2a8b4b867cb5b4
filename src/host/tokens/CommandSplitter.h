// CommandSplitter.h - cuts a command file into its commands
#pragma once

#include <string_view>
#include <vector>

#include "host/tokens/CommandText.h"

/// Finds the commands of a command file (or of text given on the command line):
/// - A command starts with the command word QUILT (any letter case) at the start of a line
///   and ends with a period that is the last character of a line, outside quoted text and
///   before any `#` or `//` comment (LineComment), or at the end of the text. The period is
///   not part of the command; so `0.` at the end of a line is the number 0 and the end.
/// - A line that starts with QUILT also ends a command still open, as if its period had
///   been written, unless the period is required.
/// - Between commands, blank lines and comment lines are skipped. A comment command starts
///   with `*` or the word COMMENT and runs to a line ending with a period, to a blank line,
///   to a line starting with QUILT, or to the end of the text, whichever comes first.
/// - A UTF-8 byte order mark at the start is ignored. CR LF line ends are read as LF.
class CommandSplitter {
 public:
  /// `requireFinalPeriod` true makes a command without its terminating period an error;
  /// false lets it end at the end of the text or before the next QUILT line. Throws
  /// LexicalError naming the line for text between commands that starts neither a command
  /// nor a comment.
  static std::vector<CommandText> Split(std::string_view text, bool requireFinalPeriod);
};
