// SyntaxReaderTest.cpp - which event each token becomes, and the errors the reader raises on its own
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/output/MessageKeys.h"

namespace {

// Inputs whose size is the point: nesting and stacking past the parser's bounds.
const std::string kDeepParens = "QUILT /TABLE " + std::string(101, '(') + "a" + std::string(101, ')') + ".";
std::string StackedTerms(int count) {
  std::string command = "QUILT /TABLE a";
  for (int term = 1; term < count; ++term) command += " + b";
  return command + ".";
}
const std::string kTooManyStacked = StackedTerms(1001);

struct InvalidCase {
  std::string command;
  const char* key;
  std::vector<std::string> arguments;
};

void PrintTo(const InvalidCase& row, std::ostream* out) {
  *out << row.command.substr(0, 80);
}

class SyntaxReaderInvalid : public testing::TestWithParam<InvalidCase> {};

TEST_P(SyntaxReaderInvalid, RaisesTheCatalogueError) {
  const InvalidCase& row = GetParam();
  const ParseOutcome outcome = ParseCommand(row.command);
  ASSERT_FALSE(outcome.succeeded);
  EXPECT_EQ(outcome.error.key, row.key);
  EXPECT_EQ(outcome.error.arguments, row.arguments);
}

// The first placeholder is the subcommand name of the converter that was current: "QUILT" at
// the root, "TABLE" on the table and everything in its expression.
const InvalidCase kInvalidCases[] = {
    // End of tokens.
    {"QUILT.", msg::kMissingSubcommand, {"QUILT", "TABLE"}},
    {"QUILT /TABLE.", msg::kMissingSubcommand, {"TABLE", "TABLE"}},
    {"QUILT /TABLE /TABLE a.", msg::kMissingSubcommand, {"TABLE", "TABLE"}},
    // Only global subcommands: the last one is current when the tokens run out.
    {"QUILT /FORMAT EMPTY=BLANK /SMISSING LISTWISE.", msg::kMissingSubcommand, {"SMISSING", "TABLE"}},
    {"QUILT /HIDESMALLCOUNTS COUNT=3 /MRSETS COUNTDUPLICATES=YES.", msg::kMissingSubcommand, {"MRSETS", "TABLE"}},
    {"QUILT /TABLE a /.", msg::kIncorrectSequence, {"TABLE", "/"}},
    // An empty literal is a token without text; the error names the word before it.
    {"QUILT /TABLE a ''.", msg::kEmptyQuotedTextAfter, {"TABLE", "a"}},
    // Slashes and subcommand words.
    // ("//" at the end of a line starts a comment, so the doubled slash is followed by a word.)
    {"QUILT //TABLE a.", msg::kIncorrectSequence, {"QUILT", "/"}},
    {"QUILT /TABLE a //TABLE b.", msg::kIncorrectSequence, {"TABLE", "/"}},
    {"QUILT / TABLE = a.", msg::kIncorrectSequence, {"QUILT", "/ TABLE ="}},
    {"QUILT /TABLE a / TITLES = 'x'.", msg::kIncorrectSequence, {"TABLE", "/ TITLES ="}},
    {"QUILT /NOSUCH.", msg::kUnknownKeyword, {"QUILT", "NOSUCH"}},
    // Depth tests: BY, ALL and "/" inside parentheses or brackets.
    {"QUILT /TABLE (a BY b).", msg::kUnbalancedParenthesis, {"TABLE", "BY"}},
    {"QUILT /TABLE (a ALL).", msg::kUnbalancedParenthesis, {"TABLE", "ALL"}},
    {"QUILT /TABLE (a / b).", msg::kUnbalancedParenthesis, {"TABLE", "/"}},
    {"QUILT /TABLE a [BY].", msg::kUnbalancedParenthesis, {"TABLE", "BY"}},
    {"QUILT /TABLE a [ / ].", msg::kUnbalancedParenthesis, {"TABLE", "/"}},
    // A group still open at the end of the command.
    {"QUILT /TABLE (a + b.", msg::kUnbalancedParenthesis, {"TABLE", "("}},
    {"QUILT /TABLE (a.", msg::kUnbalancedParenthesis, {"TABLE", "("}},
    // Bounds that keep every walk of the tree cheap: nesting depth, nested variables of one
    // sub-table (ten are refused as the tenth arrives; nine reach the check after the parse,
    // which the program's tour shows on the sample survey), and stacked terms.
    {kDeepParens, msg::kNestingTooDeep, {"TABLE", "(", "100"}},
    {"QUILT /TABLE a > b > c > d > e > d1 > d2 > m1 > m2 > a.", msg::kTooManySubTableVariables, {"1", "10", "8"}},
    {kTooManyStacked, msg::kTooManyStackedTerms, {"1", "1000"}},
    // A plus sign right before a right parenthesis.
    {"QUILT /TABLE (a + ) b.", msg::kIncorrectSequence, {"TABLE", ")"}},
    // Unpartnered closers: the table's parent is the root, whose name differs; the root has none.
    {"QUILT /TABLE a ).", msg::kUnbalancedParenthesis, {"TABLE", ")"}},
    {"QUILT ).", msg::kUnknownKeyword, {"QUILT", ")"}},
    {"QUILT ].", msg::kUnknownKeyword, {"QUILT", "]"}},
    // Stray operators and words the current converter cannot use.
    {"QUILT /TABLE a + = b.", msg::kUnknownKeyword, {"TABLE", "="}},
    {"QUILT /TABLE a - b.", msg::kUnknownKeyword, {"TABLE", "-"}},
    {"QUILT /TABLE a & b.", msg::kUnknownKeyword, {"TABLE", "&"}},
    {"QUILT /TABLE a TO b.", msg::kUnknownKeyword, {"TABLE", "TO"}},
    {"QUILT /TABLE 5.", msg::kUnknownKeyword, {"TABLE", "5"}},
    {"QUILT /TABLE 'text'.", msg::kUnknownKeyword, {"TABLE", "text"}},
    {"QUILT /TABLE a b.", msg::kUnknownKeyword, {"TABLE", "b"}},
    // A word followed by "=" travels up as an attribute and nobody takes it.
    {"QUILT /TABLE a = b.", msg::kUnknownKeyword, {"QUILT", "a"}},
    // Contexts: after a variable no paren; no operator or bracket before an operand.
    {"QUILT /TABLE a (b).", msg::kIncorrectSequence, {"TABLE", "("}},
    {"QUILT /TABLE > a.", msg::kIncorrectSequence, {"TABLE", ">"}},
    {"QUILT /TABLE + a.", msg::kIncorrectSequence, {"TABLE", "+"}},
    {"QUILT /TABLE [ ].", msg::kIncorrectSequence, {"TABLE", "["}},
    {"QUILT /TABLE a + [ ].", msg::kIncorrectSequence, {"TABLE", "["}},
    {"QUILT /TABLE ().", msg::kIncorrectSequence, {"TABLE", ")"}},
    {"QUILT /TABLE a + /TABLE b.", msg::kIncorrectSequence, {"TABLE", "/"}},
    {"QUILT /TABLE a BY b BY c BY d.", msg::kIncorrectSequence, {"TABLE", "BY"}},
    // Variables and sets.
    {"QUILT /TABLE nosuch.", msg::kUnrecognizedVariableInSubcommand, {"nosuch", "TABLE"}},
    {"QUILT /TABLE $nosuch.", msg::kUnrecognizedVariableInSubcommand, {"$nosuch", "TABLE"}},
    // Subcommand order.
    {"QUILT /CATEGORIES.", msg::kOutOfOrderSubcommand, {"TABLE", "CATEGORIES"}},
    {"QUILT /titles.", msg::kOutOfOrderSubcommand, {"TABLE", "titles"}},
    {"QUILT /TABLE a /FORMAT.", msg::kOutOfOrderGlobalSubcommand, {"TABLE", "FORMAT"}},
    {"QUILT /TABLE a /MRSETS.", msg::kOutOfOrderGlobalSubcommand, {"TABLE", "MRSETS"}},
    {"QUILT /TABLE a /VLABELS VARIABLES=a DISPLAY=NAME.", msg::kOutOfOrderGlobalSubcommand, {"TABLE", "VLABELS"}},
    {"QUILT /TABLE a /TITLES TITLE='x' /weight VARIABLE=a.", msg::kOutOfOrderGlobalSubcommand, {"TABLE", "weight"}},
    {"QUILT /TABLE a /SMISSING LISTWISE.", msg::kOutOfOrderGlobalSubcommand, {"TABLE", "SMISSING"}},
    {"QUILT /TABLE a /HIDESMALLCOUNTS.", msg::kOutOfOrderGlobalSubcommand, {"TABLE", "HIDESMALLCOUNTS"}},
    {"QUILT /TABLE a /PCOMPUTE.", msg::kUnknownKeyword, {"TABLE", "PCOMPUTE"}},
    {"QUILT /PCOMPUTE &x=EXPR([1]) /TABLE a /PPROPERTIES &x LABEL='y'.",
     msg::kUnknownKeyword,
     {"TABLE", "PPROPERTIES"}},
    // Every table-level subcommand needs a TABLE before it.
    {"QUILT /FORMAT EMPTY=BLANK /SLABELS POSITION=ROW.", msg::kOutOfOrderSubcommand, {"TABLE", "SLABELS"}},
    {"QUILT /CLABELS AUTO.", msg::kOutOfOrderSubcommand, {"TABLE", "CLABELS"}},
    {"QUILT /COMPARETEST TYPE=PROP.", msg::kOutOfOrderSubcommand, {"TABLE", "COMPARETEST"}},
    {"QUILT /SIGTEST TYPE=CHISQUARE.", msg::kOutOfOrderSubcommand, {"TABLE", "SIGTEST"}},
    {"QUILT /CRITERIA CILEVEL=90.", msg::kOutOfOrderSubcommand, {"TABLE", "CRITERIA"}},
    {"QUILT /PPROPERTIES.", msg::kMissingRequiredKeyword, {"QUILT", "PCOMPUTE"}},
};

INSTANTIATE_TEST_SUITE_P(EventTable, SyntaxReaderInvalid, testing::ValuesIn(kInvalidCases));

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
