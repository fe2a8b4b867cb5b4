// SyntaxParserUtilityMessagesTest.cpp - every catalogue function: its key, its placeholders, thrown or
// reported
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/data/VariableSet.h"
#include "host/output/BpComposite.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTablesCommand.h"

namespace {

using U = SyntaxParserUtility;
using Strings = std::vector<std::string>;

constexpr int kThrown = 0;   // thrown, not reported
constexpr int kWarning = 2;  // kBpLevelWarning, returns
constexpr int kError = 3;    // kBpLevelError, returns

struct MessageCase {
  const char* function;
  std::function<void()> call;
  const char* key;
  Strings arguments;
  int outcome;  // kThrown, or the level it is reported at
};

// Converters whose subcommand names fill the "name" placeholders: the table answers "TABLE",
// the root "QUILT", and a set node is named after the CATEGORIES list it appears in.
struct Converters {
  SyntaxTableSubcommand table{1};
  SyntaxTablesCommand root;
  VariableSet set;
  SyntaxMRVariableSet mrSet{set};
};

Converters& Nodes() {
  static Converters converters;
  return converters;
}

const SyntaxConverter* Table() {
  return &Nodes().table;
}
const SyntaxConverter* Root() {
  return &Nodes().root;
}
const SyntaxConverter* Set() {
  return &Nodes().mrSet;
}

std::vector<MessageCase> Cases() {
  const auto chi = TableEncryptionCodes::kSigTestChiSquare;
  const auto prop = TableEncryptionCodes::kSigTestProportions;
  const auto means = TableEncryptionCodes::kSigTestMeans;
  return {
      // Structure.
      {"UnexpectedError",
       [] { U::UnexpectedError("file.cpp", 42); },
       "File ^1. Line ^2. Parsing error.",
       {"file.cpp", "42"},
       kThrown},
      {"NoTableSubcommand",
       [] { U::NoTableSubcommand(Root()); },
       "Subcommand ^1. Missing ^2 subcommand.",
       {"QUILT", "TABLE"},
       kThrown},
      {"IncompleteSubcommand",
       [] { U::IncompleteSubcommand(Table(), "t"); },
       "Text ^1. Incomplete subcommand ^2.",
       {"t", "TABLE"},
       kThrown},
      {"UnknownKeyword",
       [] { U::UnknownKeyword(Root(), "t"); },
       "Subcommand ^1. Unknown keyword ^2.",
       {"QUILT", "t"},
       kThrown},
      {"OutOfOrderSubcommand",
       [] { U::OutOfOrderSubcommand("TABLE", "t"); },
       "Parent subcommand ^1. Out of order subcommand ^2.",
       {"TABLE", "t"},
       kThrown},
      {"OutOfOrderGlobalSubcommand",
       [] { U::OutOfOrderGlobalSubcommand("TABLE", "t"); },
       "Parent subcommand ^1. Out of order global subcommand ^2.",
       {"TABLE", "t"},
       kThrown},
      {"IncorrectSequence",
       [] { U::IncorrectSequence(Table(), "t"); },
       "Subcommand ^1. Incorrect Sequence ^2.",
       {"TABLE", "t"},
       kThrown},
      {"UnbalancedParen",
       [] { U::UnbalancedParen(Table(), "t"); },
       "Subcommand ^1. Unbalanced paren ^2.",
       {"TABLE", "t"},
       kThrown},
      {"UnknownVariable",
       [] { U::UnknownVariable(Table(), "v"); },
       "Unrecognized variable ^1 in ^2 subcommand.",
       {"v", "TABLE"},
       kThrown},
      {"UnknownVariable on a set",
       [] { U::UnknownVariable(Set(), "v"); },
       "Unrecognized variable ^1 in ^2 subcommand.",
       {"v", "CATEGORIES"},
       kThrown},
      {"MissingVariableArgument",
       [] { U::MissingVariableArgument(Table(), "t"); },
       "Subcommand ^1. No argument for ^2.",
       {"TABLE", "t"},
       kThrown},
      {"LabelLengthInvalid",
       [] { U::LabelLengthInvalid(Table(), "t"); },
       "Subcommand ^2 :  An invalid label text:\n ^1 .\nThe text is more than 120 characters.",
       {"t", "TABLE"},
       kThrown},
      {"LabelLengthInvalid on a set",
       [] { U::LabelLengthInvalid(Set(), "t"); },
       "Subcommand ^2 :  An invalid label text:\n ^1 .\nThe text is more than 120 characters.",
       {"t", "CATEGORIES"},
       kThrown},
      // Expressions, statistics, formats.
      {"IncorrectCrossing",
       [] { U::IncorrectCrossing(); },
       "Subcommand ^1. Incorrect table expression.",
       {"TABLE"},
       kThrown},
      {"InvalidPTILE",
       [] { U::InvalidPTILE(Table(), "t"); },
       "Subcommand ^1. Invalid PTILE ^2.",
       {"TABLE", "t"},
       kThrown},
      {"FormatDecimalViolation",
       [] { U::FormatDecimalViolation(Table(), "t"); },
       "Subcommand ^1. Text ^2. d is not allowed.",
       {"TABLE", "t"},
       kThrown},
      {"FormatDecimalBoundError",
       [] { U::FormatDecimalBoundError(Table(), "t"); },
       "Subcommand ^1. Text ^2. d is greater than D.",
       {"TABLE", "t"},
       kThrown},
      {"FormatPrematureEnd",
       [] { U::FormatPrematureEnd(Table(), "t"); },
       "Subcommand ^1. Text ^2. Format end prematurely.",
       {"TABLE", "t"},
       kThrown},
      {"FormatMissingWidthError",
       [] { U::FormatMissingWidthError(Table(), "t"); },
       "Subcommand ^1. Text ^2. w is Missing.",
       {"TABLE", "t"},
       kThrown},
      {"CombinedStatsAndMeasurement",
       [] { U::CombinedStatsAndMeasurement(Table(), "t"); },
       "Subcommand ^1. Text ^2. Statistics and Measurement level combined.",
       {"TABLE", "t"},
       kThrown},
      {"TotalNoStatsExpression",
       [] { U::TotalNoStatsExpression(Table(), "t"); },
       "Subcommand ^1. Text ^2. No TOTALS stats.",
       {"TABLE", "t"},
       kThrown},
      {"StatGroup2Violation",
       [] { U::StatGroup2Violation(Table(), "v", "t"); },
       "Subcommand ^1. Variable ^2. ^3 is second group stat.",
       {"TABLE", "v", "t"},
       kThrown},
      {"StatGroup3Violation",
       [] { U::StatGroup3Violation(Table(), "v", "t"); },
       "Subcommand ^1. Variable ^2. ^3 is third group stat.",
       {"TABLE", "v", "t"},
       kThrown},
      {"StringVarAsScale",
       [] { U::StringVarAsScale(Table(), "v"); },
       "Subcommand ^1. Variable ^2 as scale variable.",
       {"TABLE", "v"},
       kThrown},
      {"VariableNotNumeric",
       [] { U::VariableNotNumeric(Table(), "v"); },
       "Subcommand ^1. Variable ^2 is not numeric.",
       {"TABLE", "v"},
       kThrown},
      {"MeasurementLevelOrderViolation",
       [] { U::MeasurementLevelOrderViolation(Table(), "v"); },
       "Subcommand ^1. Variable ^2. The measurement level after stat list.",
       {"TABLE", "v"},
       kThrown},
      {"ScaleInComperimeterDim",
       [] { U::ScaleInComperimeterDim(Table(), "v"); },
       "Subcommand ^1. Variable ^2. Scale var in comperimeter source dimension.",
       {"TABLE", "v"},
       kThrown},
      {"DataSortingInComperimeter",
       [] { U::DataSortingInComperimeter(Table(), "v"); },
       "Subcommand ^1. Variable ^2. Data dependent sorting in comperimeter table.",
       {"TABLE", "v"},
       kThrown},
      {"MissingSourceDimInComperimeter",
       [] { U::MissingSourceDimInComperimeter(Table()); },
       "Subcommand ^1. Missing source dimension in comperimeter table.",
       {"TABLE"},
       kThrown},
      {"DissimilarCatAttribsInComperimeter",
       [] { U::DissimilarCatAttribsInComperimeter(Table()); },
       "Subcommand ^1. Categories spec differ in comperimeter scource dimension.",
       {"TABLE"},
       kThrown},
      {"DissimilarValueLabelPairInComperimeter",
       [] { U::DissimilarValueLabelPairInComperimeter(Table()); },
       "Subcommand ^1. Conflicting value labels in comperimeter scource dimension.",
       {"TABLE"},
       kThrown},
      // Categories and sorting.
      {"ExplicitListViolation",
       [] { U::ExplicitListViolation(); },
       "Subcommand ^1. Explicit list violation.",
       {"CATEGORIES"},
       kThrown},
      {"ExplicitListViolationFromVariable",
       [] { U::ExplicitListViolationFromVariable("v"); },
       "Subcommand ^1. Explicit list violation for variable ^1.",
       {"CATEGORIES", "v"},
       kThrown},
      {"DictionaryOrderViolation",
       [] { U::DictionaryOrderViolation(Table()); },
       "Subcommand ^1. Dictionary order violation.",
       {"TABLE"},
       kThrown},
      {"VariableListError",
       [] { U::VariableListError(Table()); },
       "Subcommand ^1. ALL and VAR appears in same list.",
       {"TABLE"},
       kThrown},
      {"EmptyVarListExplicitCatList",
       [] { U::EmptyVarListExplicitCatList(Table(), "t"); },
       "Subcommand ^1. Text ^2. Empty var list.",
       {"TABLE", "t"},
       kThrown},
      {"DataReadError",
       [] { U::DataReadError(Table(), "v", "t"); },
       "Subcommand ^1. Text ^2. Variable ^3. Data read error.",
       {"CATEGORIES", "t", "v"},
       kThrown},
      {"InconsistentStatVarPair",
       [] { U::InconsistentStatVarPair(Table(), "v", "t"); },
       "Subcommand ^1. Variable ^2 can not have sort function ^3.",
       {"TABLE", "v", "t"},
       kThrown},
      {"UnusedSortStatOnVar",
       [] { U::UnusedSortStatOnVar(Table(), "v", "s"); },
       "Subcommand ^1. Variable ^2 has no ^3 statistics.",
       {"TABLE", "v", "s"},
       kThrown},
      {"NonCrossingListAndSortVar",
       [] { U::NonCrossingListAndSortVar(Table(), "v", "w", "s"); },
       "Subcommand ^1. Variable ^2 and Variable ^3 with stat ^4 do not appear together in any cube.",
       {"TABLE", "v", "w", "s"},
       kThrown},
      {"NonCrossingListAndSortVar on one variable",
       [] { U::NonCrossingListAndSortVar(Table(), "v", "V", "s"); },
       "Subcommand ^1. Variable ^2 has no ^3 statistics.",
       {"TABLE", "v", "s"},
       kThrown},
      {"SortStatOnNonCompVar",
       [] { U::SortStatOnNonCompVar(Table(), "v", "s"); },
       "Subcommand ^1. Statistic ^2. Variable ^3 can not have any statistics.",
       {"TABLE", "s", "v"},
       kThrown},
      // Multiple-response sets.
      {"MRNonExistentElemVar",
       [] { U::MRNonExistentElemVar(Table(), "$s", "v"); },
       "Subcommand ^1. Unknown variable ^2 in set ^3.",
       {"TABLE", "v", "$s"},
       kThrown},
      {"MDCountedValueOverflow",
       [] { U::MDCountedValueOverflow(Table(), "$s", "9"); },
       "Subcommand ^1. MRSet ^2 has too big counted value ^3.",
       {"TABLE", "$s", "9"},
       kThrown},
      {"MDCountedValueInconsistent",
       [] { U::MDCountedValueInconsistent(Table(), "$s", "9"); },
       "Subcommand ^1. The counted value ^2 not of type for MRSet.",
       {"TABLE", "9"},
       kThrown},
      {"MRInconsistentVarType",
       [] { U::MRInconsistentVarType(Table(), "$s", "v"); },
       "Subcommand ^1. MRSet ^2. Variable ^3. Different var types.",
       {"TABLE", "$s", "v"},
       kThrown},
      {"MDRangeInCategory",
       [] { U::MDRangeInCategory(Table(), "$s"); },
       "Subcommand ^1. Range in MDSet ^2 cat list.",
       {"TABLE", "$s"},
       kThrown},
      // Significance requests and widths.
      {"InvalidAlpha",
       [] { U::InvalidAlpha(Table(), "t"); },
       "Subcommand ^1. Text ^2. Invalid ALPHA.",
       {"TABLE", "t"},
       kThrown},
      {"InvalidCILevel",
       [] { U::InvalidCILevel(Table(), "t"); },
       "Subcommand ^1. Text ^2. Invalid CILEVEL.",
       {"TABLE", "t"},
       kThrown},
      {"InvalidHideSmallCountValue",
       [] { U::InvalidHideSmallCountValue(Table(), "t"); },
       "InvalidHideSmallCountValue",
       {},
       kThrown},
      {"MinColWithBoundError",
       [] { U::MinColWithBoundError(Table(), "t"); },
       "Subcommand ^1. Text ^2. Incorrect minimum col width.",
       {"TABLE", "t"},
       kThrown},
      {"MaxColWithBoundError",
       [] { U::MaxColWithBoundError(Table(), "t"); },
       "Subcommand ^1. Text ^2. Incorrect maximum col width.",
       {"TABLE", "t"},
       kThrown},
      {"MinMaxColWithError",
       [] { U::MinMaxColWithError(Table(), "t"); },
       "Subcommand ^1. Text ^2. min_width is greater than max_width.",
       {"TABLE", "t"},
       kThrown},
      // Computed categories.
      {"InvalidExpression",
       [] { U::InvalidExpression(Table(), "c"); },
       "Subcommand ^1. Invalid expression for computed category &^2 .",
       {"TABLE", "c"},
       kThrown},
      {"HideSourceCatsInSigTest",
       [] { U::HideSourceCatsInSigTest(Table(), "c"); },
       "Subcommand PPROPERTIES: The source categories of computed category  &^1  can not be hidden when "
       "requesting significance testing.",
       {"c"},
       kThrown},
      {"UnMatchTypeVariable",
       [] { U::UnMatchTypeVariable(Table(), "c", "v"); },
       "Subcommand CATEGORIES: Computed category  &^1 is not consistent with the type and format of ^2.",
       {"c", "v"},
       kThrown},
      {"UnknownPComputeName",
       [] { U::UnknownPComputeName(Table(), "c"); },
       "Subcommand CATEGORIES: Computed category &^1 is not recognized. ",
       {"c"},
       kThrown},
      {"UnexistInExplicitList",
       [] { U::UnexistInExplicitList(Table(), "c", "1", "v"); },
       "Subcommand CATEGORIES: Computed category &^1  includes ^2 ,which is not specified in the category "
       "list "
       "for ^3.",
       {"c", "1", "v"},
       kThrown},
      {"MissingTOTALKeywordOrTOTALSetIsNo",
       [] { U::MissingTOTALKeywordOrTOTALSetIsNo(Table(), "c", "v"); },
       "Subcommand CATEGORIES: Computed category &^1 uses a total which is not included in the table for ^2.",
       {"c", "v"},
       kThrown},
      {"UnexistInExplicitListForSubtotal",
       [] { U::UnexistInExplicitListForSubtotal(Table(), "c", "2", "v"); },
       "Subcommand CATEGORIES: Computed category &^1  uses the subtotal ^2 ,which is not specified or is "
       "redundant in the category list for ^3.",
       {"c", "2", "v"},
       kThrown},
      {"DiffStatTypeTotalAndSubtotalPcomput",
       [] { U::DiffStatTypeTotalAndSubtotalPcomput(Table(), "c", "v"); },
       "Subcommand TABLE: The total or subtotal(s) used as input to &^1 do not use the same statistics as "
       "ordinary categories of ^2",
       {"c", "v"},
       kThrown},
      // Warnings.
      {"ScaleVarTotal",
       [] { U::ScaleVarTotal(Table(), "v"); },
       "Subcommand ^1. Totals for variable ^2.",
       {"TABLE", "v"},
       kWarning},
      {"DuplicateWarning by word",
       [] { U::DuplicateWarning("SLABELS", "POSITION"); },
       "Subcommand ^1. Text ^2. Duplicate warning.",
       {"SLABELS", "POSITION"},
       kWarning},
      {"DuplicateWarning by converter",
       [] { U::DuplicateWarning(Root(), "FORMAT"); },
       "Subcommand ^1. Text ^2. Duplicate warning.",
       {"QUILT", "FORMAT"},
       kWarning},
      {"DuplicateWarningFromVariable",
       [] { U::DuplicateWarningFromVariable("t", "v", true); },
       "Subcommand ^1. Text ^2. Duplicate warning from variable ^3.",
       {"CATEGORIES", "t", "v"},
       kWarning},
      {"DuplicateWarningFromVariable in TABLE",
       [] { U::DuplicateWarningFromVariable("t", "v", false); },
       "Subcommand ^1. Text ^2. Duplicate warning from variable ^3.",
       {"TABLE", "t", "v"},
       kWarning},
      {"DuplicateCategoryInExplicitList",
       [] { U::DuplicateCategoryInExplicitList(Table(), "t"); },
       "Subcommand ^1. Duplicate ^2 category.",
       {"TABLE", "t"},
       kWarning},
      {"DuplicateExplicitList",
       [] { U::DuplicateExplicitList(Table()); },
       "Subcommand ^1. Duplicate explicit category specifications.",
       {"TABLE"},
       kWarning},
      {"DuplicateExplicitListFromVariable",
       [] { U::DuplicateExplicitListFromVariable(Table(), "v"); },
       "Subcommand ^1. Duplicate explicit category specifications in variable ^2.",
       {"CATEGORIES", "v"},
       kWarning},
      {"NoVariableUpdateWarning unknown first",
       [] { U::NoVariableUpdateWarning(Table(), "v", true); },
       "Unknown variable ^1 in ^2 subcommand.",
       {"v", "TABLE"},
       kWarning},
      {"NoVariableUpdateWarning subcommand first",
       [] { U::NoVariableUpdateWarning(Table(), "v", false); },
       "Subcommand ^1. Variable ^2. Unknown variable.",
       {"TABLE", "v"},
       kWarning},
      {"DropEmptySubtotal",
       [] { U::DropEmptySubtotal(Table()); },
       "Subcommand ^1. Empty subtotal.",
       {"TABLE"},
       kWarning},
      {"MDVarLabelContradiction",
       [] { U::MDVarLabelContradiction(Table(), "$s"); },
       "Subcommand ^1. Same variable label for two vars in MDSet ^2.",
       {"TABLE", "$s"},
       kWarning},
      {"MDCountedValueContradiction",
       [] { U::MDCountedValueContradiction(Table(), "$s"); },
       "Subcommand ^1. Different labels for the counted value in MDSet ^2.",
       {"TABLE", "$s"},
       kWarning},
      {"MDNewCountedValueContradiction",
       [] { U::MDNewCountedValueContradiction(Table(), "$s"); },
       "Subcommand ^1. Different labels for the counted value in MDSet ^2.",
       {"TABLE", "$s"},
       kWarning},
      {"MCVarLabelContradiction",
       [] { U::MCVarLabelContradiction(Table(), "$s"); },
       "Subcommand ^1. Different label for the same data value in MCSet ^2.",
       {"TABLE", "$s"},
       kWarning},
      {"MCMissingValueContradiction",
       [] { U::MCMissingValueContradiction(Table(), "$s", "v"); },
       "Subcommand ^1. User-missing contradiction in ^2. Definition from ^3 will be used.",
       {"TABLE", "$s", "v"},
       kWarning},
      {"OrphanUnitAttribute",
       [] { U::OrphanUnitAttribute(Table(), "t"); },
       "Subcommand ^1. Units ^2 with no col width.",
       {"TABLE", "t"},
       kWarning},
      // Significance-test reports: the key follows the test type; the title is the one placeholder.
      {"SigTestInComperimeterTable 1",
       [chi] { U::SigTestInComperimeterTable("T", chi); },
       "Chi-square in comperimeter table.",
       {},
       kWarning},
      {"SigTestInComperimeterTable 2",
       [prop] { U::SigTestInComperimeterTable("T", prop); },
       "Column proportions in comperimeter table.",
       {},
       kWarning},
      {"SigTestInComperimeterTable 3",
       [means] { U::SigTestInComperimeterTable("T", means); },
       "Pairwise comparisons in comperimeter table.",
       {},
       kWarning},
      {"SigTestWeightWarning 1",
       [chi] { U::SigTestWeightWarning("T", chi); },
       "Chi-square skipped in ^1 table. No proper weight stats.",
       {"T"},
       kWarning},
      {"SigTestWeightWarning 2",
       [prop] { U::SigTestWeightWarning("T", prop); },
       "Column proportions skipped in ^1 table. No proper weight stats.",
       {"T"},
       kWarning},
      {"SigTestWeightWarning 3",
       [means] { U::SigTestWeightWarning("T", means); },
       "Pairwise comparisons skipped in ^1 table. No proper weight stats.",
       {"T"},
       kWarning},
      {"SigTestUnWeightWarning 1",
       [chi] { U::SigTestUnWeightWarning("T", chi); },
       "Chi-square skipped in ^1 table. No proper simple stats.",
       {"T"},
       kWarning},
      {"SigTestUnWeightWarning 2",
       [prop] { U::SigTestUnWeightWarning("T", prop); },
       "Column proportions skipped in ^1 table. No proper simple stats.",
       {"T"},
       kWarning},
      {"SigTestUnWeightWarning 3",
       [means] { U::SigTestUnWeightWarning("T", means); },
       "Pairwise comparisons skipped in ^1 table. No proper simple stats.",
       {"T"},
       kWarning},
      {"SigTestMixedStatWarning 1",
       [chi] { U::SigTestMixedStatWarning("T", chi); },
       "Chi-square skipped in ^1 table. Combined stats.",
       {"T"},
       kWarning},
      {"SigTestMixedStatWarning 2",
       [prop] { U::SigTestMixedStatWarning("T", prop); },
       "Column proportions skipped in ^1 table. Combined stats.",
       {"T"},
       kWarning},
      {"SigTestMixedStatWarning 3",
       [means] { U::SigTestMixedStatWarning("T", means); },
       "Pairwise comparisons skipped in ^1 table. Combined stats.",
       {"T"},
       kWarning},
      {"SigTestNoCubeWarning 1",
       [chi] { U::SigTestNoCubeWarning("T", chi); },
       "Chi-square skipped in ^1 table. No eligible cube.",
       {"T"},
       kWarning},
      {"SigTestNoCubeWarning 2",
       [prop] { U::SigTestNoCubeWarning("T", prop); },
       "Column proportions skipped in ^1 table. No eligible cube.",
       {"T"},
       kWarning},
      {"SigTestNoCubeWarning 3",
       [means] { U::SigTestNoCubeWarning("T", means); },
       "Pairwise comparisons skipped in ^1 table. No eligible cube.",
       {"T"},
       kWarning},
      {"SigTestRowColVarSame",
       [chi] { U::SigTestRowColVarSame("T", chi); },
       "Chi-square skipped in ^1 table. Row and column vars are same.",
       {"T"},
       kWarning},
      {"SigTestScaleVarInCol",
       [means] { U::SigTestScaleVarInCol("T", means); },
       "Pairwise comparisons skipped in table. Scale var in column.",
       {},
       kWarning},
      {"SigTestMergedNoPValue",
       [] { U::SigTestMergedNoPValue(); },
       "SigTests cant merge and show pvalue.",
       {},
       kWarning},
      // Other levels.
      {"MRSetInvalid",
       [] { U::MRSetInvalid(Table(), "$s"); },
       "Subcommand ^1. Set ^2 is invalid.",
       {"TABLE", "$s"},
       kError},
      {"GenericMessage warning",
       [] { U::GenericMessage("key ^1 ^2", true, "x", "y"); },
       "key ^1 ^2",
       {"x", "y"},
       kWarning},
      {"GenericMessage error",
       [] { U::GenericMessage("key ^1", false, nullptr, "y"); },
       "key ^1",
       {"y"},
       kError},
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
      {[] { U::MissingEquals(Table(), "t"); }, "SubCmd ^1. Equal sign required after ^2."},
      {[] { U::MissingKeyword(Table(), "t"); }, "SubCmd ^1. Missing required keyword ^2."},
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
