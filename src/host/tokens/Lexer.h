// Lexer.h - turns the text of one command into its tokens
#pragma once

#include <string_view>

#include "host/tokens/LexedCommand.h"

/// The lexical rules of the command language (docs/command-language.md tells users):
/// - Blanks, tabs, line ends and commas separate tokens; `[1, 2, 3]` reads as `[1 2 3]`.
/// - Words: a letter, `$`, `@`, `#` or `_` (or any byte of a UTF-8 letter) first, then those
///   and digits. A period followed by another word character belongs to the word, so
///   `COLPCT.COUNT`, `F5.2`, `COMMA10.1` and `$media` are single words. GT, TO, BY and ALL,
///   in any letter case, carry their operator codes; every other word has none.
/// - Numbers: digits with an optional fraction and exponent (`25`, `0.05`, `.5`, `5.`, `1e3`,
///   `2.5E-2`). A sign directly before a digit (or before a point and a digit) belongs to the
///   number unless it directly follows an operand (a number, a word other than THRU, a
///   literal, `)` or `]`) with nothing between: `[1 -1]` holds the numbers 1 and -1, while
///   `2-1`, `TOTAL-1` and `(3)-1` have a minus operator. A number running straight into a
///   letter (`2x`, `1.5.2`) is an error.
/// - Literals: in single or double quotes; the other quote kind stands for itself inside, a
///   doubled quote of the same kind for one. A literal ends on its line.
/// - Operators: > = + - * ** / ( ) [ ] &, the longest spelling first.
/// - Comments: `#` or `//` that does not continue a word or number and is followed by a
///   blank or the line end runs to the end of the line (LineComment).
/// - A period standing alone is an error: it may only end a command, and the command
///   splitter has removed that one.
class Lexer {
 public:
  /// Cuts `text` into tokens. `firstLine` is the line of the origin on which the text starts,
  /// so positions of tokens and errors are those of the file. Throws LexicalError for an
  /// unterminated literal, a malformed number, a stray period or a byte that starts no token.
  static LexedCommand Lex(std::string_view text, int firstLine = 1);
};
