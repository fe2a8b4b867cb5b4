// LineComment.h - where a `#` comment starts, shared by the lexer and the splitter
#pragma once

#include <cstddef>
#include <string_view>

/// The rule for comments that run to the end of the line: a `#` outside quoted
/// text that does not continue a word or number (it is at the start of the text, or what
/// precedes it is no letter, digit, period, `_`, `$`, `@` or `#`) and is followed by a
/// blank, a tab or the end of the line. So `# note` and `x # note` hold comments, while
/// `#temp` stays a variable name and `Q# x` holds the name `Q#`. Two slashes are never a
/// comment: `QUILT //` is an empty subcommand, which the parser refuses. The lexer and the command splitter both go
/// by this one rule, so a period inside a comment never ends a command.
class LineComment {
 public:
  /// Whether a comment starts at `position` of `text`, which may hold several lines. The
  /// caller knows that `position` is outside quoted text.
  static bool StartsAt(std::string_view text, std::size_t position);
  /// Where the comment of one line starts, judged with the line's quotes; npos without one.
  /// Quoted text ends on its line, so a line can be judged alone.
  static std::size_t Find(std::string_view line);
};
