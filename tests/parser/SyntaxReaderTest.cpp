// SyntaxReaderTest.cpp - which event each token becomes, and the errors the reader raises on its own
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "parser/SyntaxTableSubcommand.h"

namespace {

// The errors of the reader and the root are cases of diagnostics.txt (DiagnosticCorpusTest).

TEST(SyntaxReader, ExpressionTextReadsInUpperCaseWithLabelsAndWithoutBrackets) {
  struct Row {
    const char* command;
    const char* expression;
  };
  const Row rows[] = {
      // w carries the label "Weight factor"; GT writes as ">".
      {"QUILT /TABLE b GT c.", "B > C"},
      {"QUILT /TABLE (b + c) BY w.", "(B + C) BY Weight factor"},
      {"QUILT /TABLE b [ ] + c.", "B + C"},
      // A set is shown by its label when it has one.
      {"QUILT /TABLE $dich BY $cats.", "Media used BY $CATS"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.command);
    const KeptParse parse(row.command);
    ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
    ASSERT_EQ(parse.Tables().size(), 1u);
    EXPECT_EQ(parse.Tables()[0]->GetExpression(), row.expression);
  }
}

TEST(SyntaxReader, ATokenLongerThanTheBufferIsCutAtACharacterBoundary) {
  // The working buffer keeps 1023 bytes of a token. A literal of 1500 bytes arrives cut to
  // 1023; one whose 1023rd byte starts a two-byte character ("é") loses that character whole.
  const std::string plain(1500, 'x');
  const KeptParse cut("QUILT /TABLE '" + plain + "'.");
  ASSERT_EQ(cut.Error().arguments.size(), 2u);
  EXPECT_EQ(cut.Error().arguments[1], std::string(1023, 'x'));

  const std::string accented = std::string(1022, 'x') + "\xC3\xA9" + std::string(10, 'x');
  const KeptParse boundary("QUILT /TABLE '" + accented + "'.");
  ASSERT_EQ(boundary.Error().arguments.size(), 2u);
  EXPECT_EQ(boundary.Error().arguments[1], std::string(1022, 'x'));
}

}  // namespace
