// LineCommentTest.cpp - when `#` starts a comment, judged one line at a time
#include <gtest/gtest.h>

#include <string_view>

#include "host/tokens/LineComment.h"

namespace {

TEST(LineComment, FindsTheMarkerOnlyWhereItStandsAlone) {
  constexpr std::size_t kNone = std::string_view::npos;
  struct Case {
    const char* line;
    std::size_t expected;  // offset of the marker, counted by hand
  };
  const Case cases[] = {
      {"# note", 0},           {"a # note", 2}, {"a,# note", 2},
      {"a\t// note", kNone},   {"//", kNone},   {"a #", 2},  // slashes never comment
      {"#temp", kNone},                          // a name that begins with '#'
      {"Q#1 x", kNone},                          // '#' inside a name
      {"a //TABLE b", kNone},                    // two slashes before a word
      {"a//b", kNone},         {"x>#y", kNone},  // followed by a word character
      {"x># note", 2},                           // after an operator
      {"[COUNT]# note", 7},    {"Q# x", kNone},  // the name "Q#"
      {"5# x", kNone},                           // continues the number, which the lexer refuses
      {"a.# x", kNone},        {"'a'# x", 3},   {"'# in quotes' # out", 14},
      {"\"it's\" # out", 7},    // the other quote kind inside does not close
      {"'a''b # c'", kNone},    // a doubled quote does not end the text
      {"'open # here", kNone},  // an open quote hides the rest of the line
  };
  for (const Case& testCase : cases) {
    EXPECT_EQ(LineComment::Find(testCase.line), testCase.expected) << testCase.line;
  }
}

TEST(LineComment, LineEndsCountAsSeparators) {
  // The lexer asks about positions in text that holds several lines.
  constexpr std::string_view text = "a\n# one\n#\r\nb";
  EXPECT_TRUE(LineComment::StartsAt(text, 2));
  EXPECT_TRUE(LineComment::StartsAt(text, 8));
  EXPECT_FALSE(LineComment::StartsAt(text, 0));
}

}  // namespace
