// ParseDumpCommand.h - parses one command without running it and writes what it asks for (quilt --dump-parse)
#pragma once

#include <iosfwd>
#include <string>

/// The `--dump-parse` mode of the program: a command is parsed exactly as a run would
/// parse it (same data source, same adjusted measurement levels, same host words), but no
/// case is read. What the parse made of each table is written as ParseDump text; messages
/// go to the output document as in a run, so a command that fails to parse shows its error
/// there.
class ParseDumpCommand {
 public:
  /// Parses `text` (starting on `firstLine` of `origin`) against the active data set and
  /// writes a header line and the dump of its tables to `out`.
  static void Run(const std::string& text, int firstLine, const std::string& origin, std::ostream& out);
};
