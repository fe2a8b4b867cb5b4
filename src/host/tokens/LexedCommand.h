// LexedCommand.h - the tokens of one command, the host's opaque handle for the procedure
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/tokens/Token.h"

/// The tokens of one command in source order; the first token is the command word. The
/// program passes a pointer to one of these to the procedure as its opaque token handle,
/// and a TARN_TokenSequence walks it. A plain value type.
struct LexedCommand {
  std::vector<Token> tokens;
  std::string origin;  // the file name, or "-e", for messages; may be empty

  /// One token per line, for tests and debugging: type, operator code with its spelling,
  /// text in quotes, the value of a number, and line:column.
  void Dump(std::ostream& out) const;
};
