// SyntaxParserUtilityMessagesTest.cpp - catalogue functions that no command in the other tests reaches: their key, placeholders and level
//
// The command-driven tests of each subcommand and diagnostics.txt check the messages users meet;
// this table holds the functions only a broken dictionary or an internal path can raise.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/output/BpComposite.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTableSubcommand.h"

namespace {

using U = SyntaxParserUtility;
using Strings = std::vector<std::string>;

constexpr int kThrown = 0;   // thrown, not reported
constexpr int kWarning = 2;  // kBpLevelWarning, returns

struct MessageCase {
  const char* function;
  std::function<void()> call;
  const char* key;
  Strings arguments;
  int outcome;  // kThrown, or the level it is reported at
};

// The converter whose subcommand name fills the "name" placeholders: "TABLE".
const SyntaxConverter* Table() {
  static SyntaxTableSubcommand table{1};
  return &table;
}

std::vector<MessageCase> Cases() {
  return {
      // Expressions, statistics, formats.
      {"StringVarAsScale",
       [] { U::StringVarAsScale(Table(), "v"); },
       msg::kVariableAsScale,
       {"TABLE", "v"},
       kThrown},
      // Multiple-response sets.
      {"MRNonExistentElemVar",
       [] { U::MRNonExistentElemVar(Table(), "$s", "v"); },
       msg::kUnknownVariableInSet,
       {"TABLE", "v", "$s"},
       kThrown},
      {"MRInconsistentVarType",
       [] { U::MRInconsistentVarType(Table(), "$s", "v"); },
       msg::kSetVariableTypesDiffer,
       {"TABLE", "$s", "v"},
       kThrown},
      // Other levels.
      {"GenericMessage warning",
       [] { U::GenericMessage("key ^1 ^2", true, "x", "y"); },
       "key ^1 ^2",
       {"x", "y"},
       kWarning},
  };
}

TEST(SyntaxParserUtilityMessages, EachFunctionPassesItsKeyAndPlaceholdersAtItsLevel) {
  for (const MessageCase& row : Cases()) {
    SCOPED_TRACE(row.function);
    MessageCapture capture;
    bool thrown = false;
    CatalogueMessage message;
    try {
      row.call();
    } catch (const BpComposite& composite) {
      thrown = true;
      message = DescribeComposite(composite);
    }
    const std::vector<CatalogueMessage> reported = capture.GetReported();
    if (row.outcome == kThrown) {
      ASSERT_TRUE(thrown);
      EXPECT_TRUE(reported.empty());
    } else {
      ASSERT_FALSE(thrown);
      ASSERT_EQ(reported.size(), 1u);
      message = reported[0];
      EXPECT_EQ(message.level, row.outcome);
    }
    EXPECT_EQ(message.key, row.key);
    EXPECT_EQ(message.arguments, row.arguments);
  }
}

TEST(SyntaxParserUtilityMessages, MissingEqualsAndMissingKeywordWarnThenThrowTheSameMessage) {
  const std::vector<std::pair<std::function<void()>, const char*>> rows = {
      {[] { U::MissingEquals(Table(), "t"); }, msg::kEqualSignRequiredAfter},
      {[] { U::MissingKeyword(Table(), "t"); }, msg::kMissingRequiredKeyword},
  };
  for (const auto& [call, key] : rows) {
    SCOPED_TRACE(key);
    MessageCapture capture;
    CatalogueMessage thrown;
    try {
      call();
      FAIL() << "not thrown";
    } catch (const BpComposite& composite) {
      thrown = DescribeComposite(composite);
    }
    const std::vector<CatalogueMessage> reported = capture.GetReported();
    ASSERT_EQ(reported.size(), 1u);
    EXPECT_EQ(reported[0].level, kWarning);
    EXPECT_EQ(reported[0].key, key);
    EXPECT_EQ(thrown.key, key);
    EXPECT_EQ(thrown.arguments, (Strings{"TABLE", "t"}));
    EXPECT_EQ(reported[0].arguments, thrown.arguments);
  }
}

TEST(SyntaxParserUtilityMessages, GenericMessageWithoutKeyAndSigTestsOfUnknownTypeReportNothing) {
  MessageCapture capture;
  U::GenericMessage(nullptr, true, "x", "y");
  U::SigTestWeightWarning("T", static_cast<TableEncryptionCodes::SignificanceTestType>(7));
  EXPECT_TRUE(capture.GetReported().empty());
}

TEST(SyntaxParserUtilityWords, WholeWordAndPrefixMatchingIgnoreCase) {
  EXPECT_TRUE(U::ExactWordMatch("Table", "TABLE"));
  EXPECT_FALSE(U::ExactWordMatch("TAB", "TABLE"));  // unlike the keyword test, no abbreviations
  EXPECT_FALSE(U::ExactWordMatch("TABLES", "TABLE"));
  EXPECT_TRUE(U::ExactNWordMatch("f5.2", "F", 1));
  EXPECT_FALSE(U::ExactNWordMatch("N5", "F", 1));
}

TEST(SyntaxParserUtilityWords, UpperCaseAndTrimming) {
  EXPECT_EQ(U::UpperCaseString("colpct.count"), "COLPCT.COUNT");
  EXPECT_EQ(U::UpperCaseString(nullptr), "");
  EXPECT_EQ(U::UpperCaseString(""), "");
  struct Row {
    std::string text;
    std::string trimmed;
  };
  // Only blanks go; a tab is kept, and a text of blanks becomes empty.
  const Row rows[] = {{"abc  ", "abc"}, {"  a b ", "  a b"}, {"   ", ""}, {"a\t", "a\t"}, {"", ""}};
  for (Row row : rows) {
    std::string& result = U::TrimTrailingWhiteSpace(row.text);
    EXPECT_EQ(&result, &row.text);
    EXPECT_EQ(row.text, row.trimmed);
  }
}

}  // namespace
