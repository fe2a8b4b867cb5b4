// SyntaxReaderTest.cpp - which event each token becomes, and the errors the reader raises on its own
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/output/MessageKeys.h"

namespace {

// The errors of the reader and the root are cases of diagnostics.txt (DiagnosticCorpusTest).

TEST(SyntaxReader, ValidCommandsEndWithTheRootCurrentAndTheirTablesNumbered) {
  const ParseOutcome outcome = ParseCommand("QUILT /TABLE a /TABLE b BY c /TABLE (d).");
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  EXPECT_EQ(outcome.tableNumbers, (std::vector<int>{1, 2, 3}));
  EXPECT_TRUE(outcome.reported.empty());
}

TEST(SyntaxReader, KeywordsAndSubcommandsMatchInAnyCaseAndAbbreviated) {
  EXPECT_TRUE(ParseCommand("QUILT /table a by b.").succeeded);
  EXPECT_TRUE(ParseCommand("QUILT /TAB a gt b.").succeeded);
}

TEST(SyntaxReader, MissingKeywordIsShownAsAWarningAndThenThrown) {
  const ParseOutcome outcome = ParseCommand("QUILT /PPROPERTIES.");
  ASSERT_FALSE(outcome.succeeded);
  ASSERT_EQ(outcome.reported.size(), 1u);
  EXPECT_EQ(outcome.reported[0].key, msg::kMissingRequiredKeyword);
  EXPECT_EQ(outcome.reported[0].arguments, outcome.error.arguments);
  EXPECT_EQ(outcome.reported[0].level, 2);  // kBpLevelWarning
}

TEST(SyntaxReader, AnInvalidSetIsReportedAndDroppedAndParsingGoesOn) {
  const ParseOutcome outcome = ParseCommand("QUILT /TABLE $broken BY a.");
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  ASSERT_EQ(outcome.reported.size(), 1u);
  EXPECT_EQ(outcome.reported[0].key, msg::kSetIsInvalid);
  EXPECT_EQ(outcome.reported[0].arguments, (std::vector<std::string>{"TABLE", "$broken"}));
  EXPECT_EQ(outcome.reported[0].level, 3);  // kBpLevelError
}

TEST(SyntaxReader, ExpressionTextReadsInUpperCaseWithLabelsAndWithoutBrackets) {
  struct Row {
    const char* command;
    const char* expression;
  };
  const Row rows[] = {
      // a carries the label "Age group"; GT writes as ">".
      {"QUILT /TABLE b GT c.", "B > C"},
      {"QUILT /TABLE b > c.", "B > C"},
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

TEST(SyntaxReader, EachTableWritesOnlyItsOwnExpression) {
  const ParseOutcome outcome = ParseCommand("QUILT /TABLE b /TABLE c > d.");
  ASSERT_TRUE(outcome.succeeded) << outcome.error.key;
  EXPECT_EQ(outcome.expressions, (std::vector<std::string>{"B", "C > D"}));
}

TEST(SyntaxReader, LookingAheadForEqualsStepsBackSoNoTokenIsLost) {
  // After each word the reader peeks for "="; the peeked token must come again as an event.
  const ParseOutcome stacked = ParseCommand("QUILT /TABLE a + b.");
  ASSERT_TRUE(stacked.succeeded) << stacked.error.key;
  EXPECT_EQ(stacked.expressions, (std::vector<std::string>{"Age group + B"}));

  const ParseOutcome literal = ParseCommand("QUILT /TABLE a 'x'.");
  ASSERT_FALSE(literal.succeeded);
  EXPECT_EQ(literal.error.key, msg::kUnknownKeyword);
  EXPECT_EQ(literal.error.arguments, (std::vector<std::string>{"TABLE", "x"}));
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

TEST(SyntaxReader, GreaterThanWordAndOperatorGiveTheSameTree) {
  const ParseOutcome word = ParseCommand("QUILT /TABLE a GT b + c.");
  const ParseOutcome symbol = ParseCommand("QUILT /TABLE a > b + c.");
  ASSERT_TRUE(word.succeeded);
  EXPECT_EQ(word.dump, symbol.dump);
}

}  // namespace
