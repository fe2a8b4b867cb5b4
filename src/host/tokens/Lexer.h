// Lexer.h - turns the text of one command into its tokens
#pragma once

#include <string_view>

#include "host/tokens/LexedCommand.h"

/// The command language's lexical rules:
/// - words: a letter, `$`, `@`, `#` or `_` first, then letters, digits and `.`, `_`, `$`,
///   `@`, `#`; so `COLPCT.COUNT`, `F5.2` and `$media` are single words. GT, TO, BY and ALL
///   (any case) carry their operator codes.
/// - numbers: digits with an optional fraction and exponent (`25`, `0.05`, `.5`, `1e3`); a
///   sign directly before a digit or a point belongs to the number (`-1`, `+2`), so `2-1` is
///   the numbers 2 and -1; expression readers split the sign off themselves.
/// - literals in single or double quotes; a doubled quote inside stands for one quote; a
///   literal ends on its line.
/// - operators: > = + - * ** / ( ) [ ] &. Commas separate like blanks.
class Lexer {
public:
  /// Cuts `text` into tokens. `firstLine` is the line of the text's origin on which it
  /// starts, so positions in tokens and errors are those of the file. Throws LexicalError
  /// for an unterminated literal or a byte that starts no token.
  static LexedCommand Lex(std::string_view text, int firstLine = 1);
};
