// SyntaxCategoriesSubcommandTest.cpp - CATEGORIES through whole commands: explicit lists, implicit options,
// messages
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "GoldenFile.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/engine/ParsedCategory.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxVariableName.h"

namespace {

using Codes = TableEncryptionCodes;

TEST(SyntaxCategoriesSubcommandTest, ExplicitListWithComputedCategoryAndSubtotal) {
  KeptParse parse(
      "QUILT /PCOMPUTE &top2=EXPR([4]+[5]) /TABLE q1 BY gender "
      "/CATEGORIES VARIABLES=q1 [1,2,3,4,5,&top2,SUBTOTAL='Agree'] TOTAL=YES.", SurveyDataset());
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  const SyntaxVariableName* q1 = parse.Variable("q1");
  ASSERT_NE(q1, nullptr);
  EXPECT_TRUE(q1->GetIsExplicit());
  EXPECT_FALSE(q1->GetIsTotalNo());
  // Position AFTER: the one subtotal closes everything ahead of it, so all carry -101.
  const std::vector<std::string> expected = {"value 1 @-101",         "value 2 @-101", "value 3 @-101",
                                             "value 4 @-101",         "value 5 @-101", "computed &top2 @-101",
                                             "subtotal 'Agree' @-101"};
  EXPECT_EQ(DescribeList(*q1), expected);
  const ParsedCategory& computed = *q1->GetParsedCategories()[5];
  EXPECT_EQ(computed.GetCategories(), std::vector<std::string>{"[4]+[5]"});
  EXPECT_EQ(computed.GetIndex(), q1->GetIndex());
  EXPECT_FALSE(computed.GetHideSource());
  EXPECT_TRUE(parse.Reported().empty());
  // gender is not named, so it keeps the data's categories.
  EXPECT_FALSE(parse.Variable("gender")->GetIsExplicit());
}

// Subtotal codes tie each subtotal to the categories it sums (worked out by hand from the
// position rule: AFTER closes the categories since the previous subtotal, BEFORE opens the
// ones up to the next).
TEST(SyntaxCategoriesSubcommandTest, SubtotalEncodingsFollowThePosition) {
  struct Case {
    const char* list;
    const char* position;
    std::vector<std::string> expected;
  };
  const Case cases[] = {
      {"[1 2 3 SUBTOTAL 4 5]",
       "AFTER",
       {"value 1 @-101", "value 2 @-101", "value 3 @-101", "subtotal 'Subtotal' @-101", "value 4",
        "value 5"}},
      {"[1 SUBTOTAL 2 3]",
       "BEFORE",
       {"value 1", "subtotal 'Subtotal' @-102", "value 2 @-102", "value 3 @-102"}},
      {"[1 2 HSUBTOTAL='Low' 3 4 SUBTOTAL='High' 5]",
       "AFTER",
       {"value 1 @-101", "value 2 @-101", "hsubtotal 'Low' @-101", "value 3 @-102", "value 4 @-102",
        "subtotal 'High' @-102", "value 5"}},
      {"[SUBTOTAL='Low' 1 2 SUBTOTAL='High' 3]",
       "BEFORE",
       {"subtotal 'Low' @-102", "value 1 @-102", "value 2 @-102", "subtotal 'High' @-103", "value 3 @-103"}},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.list);
    KeptParse parse(std::string("QUILT /TABLE q1 /CATEGORIES VARIABLES=q1 ") + test.list +
                    " POSITION=" + test.position + ".", SurveyDataset());
    ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
    EXPECT_EQ(DescribeList(*parse.Variable("q1")), test.expected);
    EXPECT_TRUE(parse.Variable("q1")->HasSubTotal());
  }
}

TEST(SyntaxCategoriesSubcommandTest, ListElementsBecomeEngineRecords) {
  struct Case {
    const char* list;
    std::vector<std::string> expected;
  };
  const Case cases[] = {
      {"[1 THRU 3 4 THRU HI]", {"range 1..3", "hi 4.."}},
      {"[LO THRU 2 MISSING OTHERNM]", {"lo ..2", "missing", "othernm"}},
      {"[LO THRU HI]", {"all"}},
      // A quoted number is read with the variable's format.
      {"['3' '1' THRU '2']", {"value 3", "range 1..2"}},
      // A repeated element moves to its later place.
      {"[1 2 1]", {"value 2", "value 1"}},
      // Overlapping ranges are allowed.
      {"[1 THRU 3 2 THRU 4]", {"range 1..3", "range 2..4"}},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.list);
    KeptParse parse(std::string("QUILT /TABLE q1 /CATEGORIES VARIABLES=q1 ") + test.list + ".", SurveyDataset());
    ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
    EXPECT_EQ(DescribeList(*parse.Variable("q1")), test.expected);
  }
}

TEST(SyntaxCategoriesSubcommandTest, ImplicitOptionsReachEveryOccurrence) {
  KeptParse parse(
      "QUILT /TABLE q1 + q2 BY gender > score [MEAN] /CATEGORIES VARIABLES=q1 q2 ORDER=D KEY=MEAN(score) "
      "MISSING=INCLUDE TOTAL=YES LABEL='All answers' POSITION=BEFORE EMPTY=EXCLUDE.", SurveyDataset());
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key << " " << parse.Error().arguments.size();
  for (const char* name : {"q1", "q2"}) {
    SCOPED_TRACE(name);
    const SyntaxVariableName* variable = parse.Variable(name);
    ASSERT_NE(variable, nullptr);
    EXPECT_FALSE(variable->GetIsOrderA());
    EXPECT_TRUE(variable->GetOrderSet());
    EXPECT_FALSE(variable->GetIsMissingExclude());
    EXPECT_FALSE(variable->GetIsTotalNo());
    EXPECT_EQ(variable->GetTotalLabel(), "All answers");
    EXPECT_FALSE(variable->GetIsTotalLabelDefault());
    EXPECT_FALSE(variable->GetIsTotalPositionAfter());
    EXPECT_FALSE(variable->GetIsEmptyInclude());
    EXPECT_EQ(variable->GetSortKey(), Codes::kSortKeyStatistic);
    EXPECT_EQ(variable->GetSortStatistic(), Codes::kStatMean);
    EXPECT_EQ(variable->GetSortVariable(), parse.Variable("score"));
    EXPECT_FALSE(variable->GetIsExplicit());
  }
  // Neither gender nor the scale variable is touched.
  EXPECT_TRUE(parse.Variable("gender")->GetIsOrderA());
  EXPECT_TRUE(parse.Variable("gender")->GetIsTotalLabelDefault());
  EXPECT_TRUE(parse.Reported().empty());
}

TEST(SyntaxCategoriesSubcommandTest, SortKeysWithoutVariable) {
  KeptParse byLabel("QUILT /TABLE region /CATEGORIES VARIABLES=ALL KEY=LABEL.", SurveyDataset());
  ASSERT_TRUE(byLabel.Succeeded()) << byLabel.Error().key;
  EXPECT_EQ(byLabel.Variable("region")->GetSortKey(), Codes::kSortKeyLabel);
  // COUNT needs no parenthesis: it is a statistic of the categories themselves.
  KeptParse byCount("QUILT /TABLE region /CATEGORIES VARIABLES=region KEY=COUNT ORDER=D.", SurveyDataset());
  ASSERT_TRUE(byCount.Succeeded()) << byCount.Error().key;
  EXPECT_EQ(byCount.Variable("region")->GetSortKey(), Codes::kSortKeyStatistic);
  EXPECT_EQ(byCount.Variable("region")->GetSortStatistic(), Codes::kStatCount);
  EXPECT_EQ(byCount.Variable("region")->GetSortVariable(), nullptr);
  // A percentile key keeps its cut point.
  KeptParse byPercentile(
      "QUILT /TABLE region > score [PTILE 25] /CATEGORIES VARIABLES=region KEY=PTILE(score 25).", SurveyDataset());
  ASSERT_TRUE(byPercentile.Succeeded()) << byPercentile.Error().key;
  EXPECT_EQ(byPercentile.Variable("region")->GetCutPoint(), 25.0);
}

// A string variable of width 4 beside a numeric one, for the reading of list values.
std::shared_ptr<const Dataset> StringDataset() {
  static std::shared_ptr<const Dataset> dataset = DatasetLoader::LoadText(
      "code,n\nab,1\ncd,2\n",
      R"({"variables": [{"name": "code", "type": "string", "width": 4, "measure": "nominal"},
                        {"name": "n", "measure": "nominal"}]})",
      DatasetLoadOptions());
  return dataset;
}

TEST(SyntaxCategoriesSubcommandTest, StringVariablesTakeQuotedValues) {
  struct Case {
    const char* list;
    std::vector<std::string> expected;
  };
  const Case cases[] = {
      // Trailing blanks do not count; a value of blanks only is one blank.
      {"['ab  ' 'cd']", {"value 'ab'", "value 'cd'"}},
      {"['   ']", {"value ''"}},
      {"[LO THRU 'b' 'x' THRU HI 'a' THRU 'c']", {"lo ..'b'", "hi 'x'..", "range 'a'..'c'"}},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.list);
    KeptParse parse(std::string("QUILT /TABLE code /CATEGORIES VARIABLES=code ") + test.list + ".",
                    StringDataset());
    ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
    EXPECT_EQ(DescribeList(*parse.Variable("code")), test.expected);
  }
  // What a string variable cannot hold is a data read error naming the text.
  const std::pair<const char*, const char*> refused[] = {
      {"['abcde']", "abcde"},  // wider than the 4 bytes of the variable
      {"[1]", "1"},            // a number
      {"['a' THRU 5]", "5"},   // a number as the end of a range
      {"[1 THRU HI]", "HI"},   // a range from a number: the last end is named
  };
  for (const auto& [list, text] : refused) {
    SCOPED_TRACE(list);
    KeptParse parse(std::string("QUILT /TABLE code /CATEGORIES VARIABLES=code ") + list + ".",
                    StringDataset());
    ASSERT_FALSE(parse.Succeeded());
    EXPECT_EQ(parse.Error().key, msg::kVariableDataReadError);
    EXPECT_EQ(parse.Error().arguments, (std::vector<std::string>{"CATEGORIES", text, "code"}));
  }
}

// The messages of CATEGORIES are cases of diagnostics.txt (DiagnosticCorpusTest).

// The stable text of the tree: list elements with their kinds, the engine records with
// their subtotal codes, the computed category with its properties, a set's members and
// counted value, and the subcommands' settings.
TEST(SyntaxCategoriesSubcommandTest, DumpShowsListsSetsAndComputedCategories) {
  const std::string command =
      "QUILT /MRSETS COUNTDUPLICATES=YES /PCOMPUTE &top2=EXPR([4]+[5]) "
      "/PPROPERTIES &top2 LABEL='Top two' FORMAT=COUNT F5.0 HIDESOURCECATS=YES "
      "/TABLE q1 BY $media /CATEGORIES VARIABLES=q1 [1 THRU 3 4 5 &top2 SUBTOTAL='Agree' MISSING] TOTAL=YES "
      "/CATEGORIES VARIABLES=$media [social tv] EMPTY=EXCLUDE.";
  KeptParse parse(command, SurveyDataset());
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  EXPECT_TRUE(MatchesGoldenFile("parser/categories_sets_computed.txt",
                                "command: " + command + "\n\n" + parse.Dump()));
}

TEST(SyntaxCategoriesSubcommandTest, UnquotedLabelIsAnInternalError) {
  // The reader hands a quoted label over as a literal; a word there means the token stream
  // and the converter disagree, which is reported with the place in the source.
  KeptParse parse("QUILT /TABLE q1 /CATEGORIES VARIABLES=q1 LABEL=Total.", SurveyDataset());
  ASSERT_FALSE(parse.Succeeded());
  EXPECT_EQ(parse.Error().key, msg::kParsingError);
  ASSERT_EQ(parse.Error().arguments.size(), 2u);
  EXPECT_NE(parse.Error().arguments[0].find("SyntaxCategoriesSubcommand.cpp"), std::string::npos);
}

}  // namespace
