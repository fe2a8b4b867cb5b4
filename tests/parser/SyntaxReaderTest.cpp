// SyntaxReaderTest.cpp - which event each token becomes, and the errors the reader raises on its own
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"

namespace {

// The errors of the reader and the root are cases of diagnostics.txt (DiagnosticCorpusTest).

TEST(SyntaxReader, KeywordsAndSubcommandsMatchInAnyCaseAndAbbreviated) {
  EXPECT_TRUE(ParseCommand("QUILT /table a by b.").succeeded);
  EXPECT_TRUE(ParseCommand("QUILT /TAB a gt b.").succeeded);
}

TEST(SyntaxReader, ExpressionTextReadsInUpperCaseWithLabelsAndWithoutBrackets) {
  struct Row {
    const char* command;
    const char* expression;
  };
  const Row rows[] = {
      // a carries the label "Age group"; GT writes as ">".
      {"QUILT /TABLE b GT c.", "B > C"},
      {"QUILT /TABLE (b + c) BY a.", "(B + C) BY Age group"},
      {"QUILT /TABLE b [ ] + c.", "B + C"},
      // A set is shown by its label when it has one.
      {"QUILT /TABLE $dich BY $cats.", "Media used BY $CATS"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.command);
    const ParseOutcome outcome = ParseCommand(row.command);
    ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
    ASSERT_EQ(outcome.expressions.size(), 1u);
    EXPECT_EQ(outcome.expressions[0], row.expression);
  }
}

TEST(SyntaxReader, LookingAheadForEqualsStepsBackSoNoTokenIsLost) {
  // After each word the reader peeks for "="; the peeked token must come again as an event.
  const ParseOutcome stacked = ParseCommand("QUILT /TABLE a + b.");
  ASSERT_TRUE(stacked.succeeded) << stacked.error.key;
  EXPECT_EQ(stacked.expressions, (std::vector<std::string>{"Age group + B"}));
}

TEST(SyntaxReader, ATokenLongerThanTheBufferIsCutAtACharacterBoundary) {
  // The working buffer keeps 1023 bytes of a token. A literal of 1500 bytes arrives cut to
  // 1023; one whose 1023rd byte starts a two-byte character ("é") loses that character whole.
  const std::string plain(1500, 'x');
  const ParseOutcome cut = ParseCommand("QUILT /TABLE '" + plain + "'.");
  ASSERT_FALSE(cut.succeeded);
  ASSERT_EQ(cut.error.arguments.size(), 2u);
  EXPECT_EQ(cut.error.arguments[1], std::string(1023, 'x'));

  const std::string accented = std::string(1022, 'x') + "\xC3\xA9" + std::string(10, 'x');
  const ParseOutcome boundary = ParseCommand("QUILT /TABLE '" + accented + "'.");
  ASSERT_FALSE(boundary.succeeded);
  ASSERT_EQ(boundary.error.arguments.size(), 2u);
  EXPECT_EQ(boundary.error.arguments[1], std::string(1022, 'x'));
}

}  // namespace
