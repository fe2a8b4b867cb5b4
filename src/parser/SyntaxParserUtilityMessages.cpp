// SyntaxParserUtilityMessages.cpp - the parse-error catalogue: one function per thing that can go wrong
#include <initializer_list>
#include <string>

#include "host/output/BpComposite.h"
#include "host/output/BpError.h"
#include "host/output/BpString.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"

// The keys below are keys of the host's message catalogue, not wordings: they are passed
// character for character, odd spacing and spelling included, or the look-up fails.

namespace {

using Values = std::initializer_list<std::string>;

BpComposite Compose(const char* key, Values values) {
  BpComposite composite(key, /*translate=*/true);
  for (const std::string& value : values) {
    composite.Add(BpString(value, /*translate=*/false));
  }
  composite.Finish();
  return composite;
}

[[noreturn]] void Raise(const char* key, Values values) {
  throw Compose(key, values);
}

void Report(const char* key, Values values, BpErrorLevel level) {
  BpError(Compose(key, values), kBpShowAlways, level);
}

void Warn(const char* key, Values values) {
  Report(key, values, kBpLevelWarning);
}

std::string NameOf(const SyntaxConverter* converter) {
  return converter->GetSubcommandName();
}

// A set's category list is read by the CATEGORIES subcommand, so a message raised on a set
// names that subcommand rather than the set's own "TABLE".
std::string SubcommandOrCategories(const SyntaxConverter* converter) {
  return converter->GetType() == kConverterMRSet ? std::string("CATEGORIES") : NameOf(converter);
}

// Picks the key of a significance-test family by test type; null for an unknown type.
const char* SigTestKey(SyntaxParserUtility::SignificanceTestType testType, const char* chiSquare,
                       const char* proportions, const char* pairwise) {
  switch (static_cast<int>(testType)) {
    case 1:
      return chiSquare;
    case 2:
      return proportions;
    case 3:
      return pairwise;
    default:
      return nullptr;
  }
}

void WarnSigTest(const char* key, const std::string& title, bool withTitle) {
  if (key == nullptr) {
    return;
  }
  if (withTitle) {
    Warn(key, {title});
  } else {
    Warn(key, {});
  }
}

}  // namespace

// --- Errors on the command's structure ---------------------------------------------------

void SyntaxParserUtility::UnexpectedError(const char* file, int line) {
  Raise("File ^1. Line ^2. Parsing error.",
        {file == nullptr ? std::string() : std::string(file), std::to_string(line)});
}

void SyntaxParserUtility::NoTableSubcommand(const SyntaxConverter* converter) {
  Raise("Subcommand ^1. Missing ^2 subcommand.", {NameOf(converter), "TABLE"});
}

void SyntaxParserUtility::IncompleteSubcommand(const SyntaxConverter* converter, const std::string& text) {
  Raise("Text ^1. Incomplete subcommand ^2.", {text, NameOf(converter)});
}

void SyntaxParserUtility::EmptyQuotedText(const SyntaxConverter* converter, const std::string& after) {
  Raise("Subcommand ^1. Empty quoted text after ^2.", {NameOf(converter), after});
}

void SyntaxParserUtility::TextCut(const SyntaxConverter* converter, const std::string& after, int limit) {
  Warn("Subcommand ^1. Text after ^2 cut to ^3 bytes.", {NameOf(converter), after, std::to_string(limit)});
}

void SyntaxParserUtility::UnknownKeyword(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Unknown keyword ^2.", {NameOf(converter), text});
}

void SyntaxParserUtility::OutOfOrderSubcommand(const std::string& parent, const std::string& text) {
  Raise("Parent subcommand ^1. Out of order subcommand ^2.", {parent, text});
}

void SyntaxParserUtility::OutOfOrderGlobalSubcommand(const std::string& parent, const std::string& text) {
  Raise("Parent subcommand ^1. Out of order global subcommand ^2.", {parent, text});
}

void SyntaxParserUtility::IncorrectSequence(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Incorrect Sequence ^2.", {NameOf(converter), text});
}

void SyntaxParserUtility::UnbalancedParen(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Unbalanced paren ^2.", {NameOf(converter), text});
}

void SyntaxParserUtility::NestingTooDeep(const SyntaxConverter* converter, const std::string& text,
                                         int limit) {
  Raise("Subcommand ^1. Nesting too deep at ^2. Limit ^3.", {NameOf(converter), text, std::to_string(limit)});
}

void SyntaxParserUtility::TooManyCubeVariables(int tableNumber, int count, int limit) {
  Raise("Table ^1. Sub-table of ^2 variables. Limit ^3.",
        {std::to_string(tableNumber), std::to_string(count), std::to_string(limit)});
}

void SyntaxParserUtility::TooManyStackedTerms(int tableNumber, int limit) {
  Raise("Table ^1. More than ^2 stacked terms.", {std::to_string(tableNumber), std::to_string(limit)});
}

void SyntaxParserUtility::UnknownVariable(const SyntaxConverter* converter, const std::string& text) {
  Raise("Unrecognized variable ^1 in ^2 subcommand.", {text, SubcommandOrCategories(converter)});
}

void SyntaxParserUtility::MissingVariableArgument(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. No argument for ^2.", {NameOf(converter), text});
}

void SyntaxParserUtility::LabelLengthInvalid(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^2 :  An invalid label text:\n ^1 .\nThe text is more than 120 characters.",
        {text, SubcommandOrCategories(converter)});
}

void SyntaxParserUtility::MissingEquals(const SyntaxConverter* converter, const std::string& text) {
  const BpComposite composite =
      Compose("SubCmd ^1. Equal sign required after ^2.", {NameOf(converter), text});
  BpError(composite, kBpShowAlways, kBpLevelWarning);
  throw composite;
}

void SyntaxParserUtility::MissingKeyword(const SyntaxConverter* converter, const std::string& text) {
  const BpComposite composite = Compose("SubCmd ^1. Missing required keyword ^2.", {NameOf(converter), text});
  BpError(composite, kBpShowAlways, kBpLevelWarning);
  throw composite;
}

// --- Errors on table expressions, statistics and formats --------------------------------

void SyntaxParserUtility::IncorrectCrossing() {
  Raise("Subcommand ^1. Incorrect table expression.", {"TABLE"});
}

void SyntaxParserUtility::InvalidPTILE(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Invalid PTILE ^2.", {NameOf(converter), text});
}

void SyntaxParserUtility::FormatDecimalViolation(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Text ^2. d is not allowed.", {NameOf(converter), text});
}

void SyntaxParserUtility::FormatDecimalBoundError(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Text ^2. d is greater than D.", {NameOf(converter), text});
}

void SyntaxParserUtility::FormatPrematureEnd(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Text ^2. Format end prematurely.", {NameOf(converter), text});
}

void SyntaxParserUtility::FormatMissingWidthError(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Text ^2. w is Missing.", {NameOf(converter), text});
}

void SyntaxParserUtility::CombinedStatsAndMeasurement(const SyntaxConverter* converter,
                                                      const std::string& text) {
  Raise("Subcommand ^1. Text ^2. Statistics and Measurement level combined.", {NameOf(converter), text});
}

void SyntaxParserUtility::TotalNoStatsExpression(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Text ^2. No TOTALS stats.", {NameOf(converter), text});
}

void SyntaxParserUtility::StatGroup2Violation(const SyntaxConverter* converter, const std::string& variable,
                                              const std::string& text) {
  Raise("Subcommand ^1. Variable ^2. ^3 is second group stat.", {NameOf(converter), variable, text});
}

void SyntaxParserUtility::StatGroup3Violation(const SyntaxConverter* converter, const std::string& variable,
                                              const std::string& text) {
  Raise("Subcommand ^1. Variable ^2. ^3 is third group stat.", {NameOf(converter), variable, text});
}

void SyntaxParserUtility::StringVarAsScale(const SyntaxConverter* converter, const std::string& variable) {
  Raise("Subcommand ^1. Variable ^2 as scale variable.", {NameOf(converter), variable});
}

void SyntaxParserUtility::VariableNotNumeric(const SyntaxConverter* converter, const std::string& variable) {
  Raise("Subcommand ^1. Variable ^2 is not numeric.", {NameOf(converter), variable});
}

void SyntaxParserUtility::MeasurementLevelOrderViolation(const SyntaxConverter* converter,
                                                         const std::string& variable) {
  Raise("Subcommand ^1. Variable ^2. The measurement level after stat list.", {NameOf(converter), variable});
}

void SyntaxParserUtility::ScaleInComperimeterDim(const SyntaxConverter* converter,
                                                 const std::string& variable) {
  Raise("Subcommand ^1. Variable ^2. Scale var in comperimeter source dimension.",
        {NameOf(converter), variable});
}

void SyntaxParserUtility::DataSortingInComperimeter(const SyntaxConverter* converter,
                                                    const std::string& variable) {
  Raise("Subcommand ^1. Variable ^2. Data dependent sorting in comperimeter table.",
        {NameOf(converter), variable});
}

void SyntaxParserUtility::MissingSourceDimInComperimeter(const SyntaxConverter* converter) {
  Raise("Subcommand ^1. Missing source dimension in comperimeter table.", {NameOf(converter)});
}

void SyntaxParserUtility::DissimilarCatAttribsInComperimeter(const SyntaxConverter* converter) {
  Raise("Subcommand ^1. Categories spec differ in comperimeter scource dimension.", {NameOf(converter)});
}

void SyntaxParserUtility::DissimilarValueLabelPairInComperimeter(const SyntaxConverter* converter) {
  Raise("Subcommand ^1. Conflicting value labels in comperimeter scource dimension.", {NameOf(converter)});
}

// --- Errors on categories and sorting -----------------------------------------------------

void SyntaxParserUtility::ExplicitListViolation() {
  Raise("Subcommand ^1. Explicit list violation.", {"CATEGORIES"});
}

void SyntaxParserUtility::ExplicitListViolationFromVariable(const std::string& variable) {
  Raise("Subcommand ^1. Explicit list violation for variable ^1.", {"CATEGORIES", variable});
}

void SyntaxParserUtility::DictionaryOrderViolation(const SyntaxConverter* converter) {
  Raise("Subcommand ^1. Dictionary order violation.", {NameOf(converter)});
}

void SyntaxParserUtility::VariableListError(const SyntaxConverter* converter) {
  Raise("Subcommand ^1. ALL and VAR appears in same list.", {NameOf(converter)});
}

void SyntaxParserUtility::EmptyVarListExplicitCatList(const SyntaxConverter* converter,
                                                      const std::string& text) {
  Raise("Subcommand ^1. Text ^2. Empty var list.", {NameOf(converter), text});
}

void SyntaxParserUtility::DataReadError(const SyntaxConverter* /*converter*/, const std::string& variable,
                                        const std::string& text) {
  Raise("Subcommand ^1. Text ^2. Variable ^3. Data read error.", {"CATEGORIES", text, variable});
}

void SyntaxParserUtility::InconsistentStatVarPair(const SyntaxConverter* converter,
                                                  const std::string& variable, const std::string& text) {
  Raise("Subcommand ^1. Variable ^2 can not have sort function ^3.", {NameOf(converter), variable, text});
}

void SyntaxParserUtility::UnusedSortStatOnVar(const SyntaxConverter* converter, const std::string& variable,
                                              const std::string& statistic) {
  Raise("Subcommand ^1. Variable ^2 has no ^3 statistics.", {NameOf(converter), variable, statistic});
}

void SyntaxParserUtility::NonCrossingListAndSortVar(const SyntaxConverter* converter,
                                                    const std::string& variable,
                                                    const std::string& sortVariable,
                                                    const std::string& statistic) {
  // Sorting a variable by its own statistic cannot fail to cross: what is missing is the
  // statistic itself, and that message says so.
  if (ExactWordMatch(variable, sortVariable)) {
    UnusedSortStatOnVar(converter, variable, statistic);
  }
  Raise("Subcommand ^1. Variable ^2 and Variable ^3 with stat ^4 do not appear together in any cube.",
        {NameOf(converter), variable, sortVariable, statistic});
}

void SyntaxParserUtility::SortStatOnNonCompVar(const SyntaxConverter* converter, const std::string& variable,
                                               const std::string& statistic) {
  Raise("Subcommand ^1. Statistic ^2. Variable ^3 can not have any statistics.",
        {NameOf(converter), statistic, variable});
}

// --- Errors on multiple-response sets -----------------------------------------------------

void SyntaxParserUtility::MRNonExistentElemVar(const SyntaxConverter* converter, const std::string& set,
                                               const std::string& variable) {
  Raise("Subcommand ^1. Unknown variable ^2 in set ^3.", {NameOf(converter), variable, set});
}

void SyntaxParserUtility::MDCountedValueOverflow(const SyntaxConverter* converter, const std::string& set,
                                                 const std::string& value) {
  Raise("Subcommand ^1. MRSet ^2 has too big counted value ^3.", {NameOf(converter), set, value});
}

void SyntaxParserUtility::MDCountedValueInconsistent(const SyntaxConverter* converter,
                                                     const std::string& /*set*/, const std::string& value) {
  Raise("Subcommand ^1. The counted value ^2 not of type for MRSet.", {NameOf(converter), value});
}

void SyntaxParserUtility::MRInconsistentVarType(const SyntaxConverter* converter, const std::string& set,
                                                const std::string& variable) {
  Raise("Subcommand ^1. MRSet ^2. Variable ^3. Different var types.", {NameOf(converter), set, variable});
}

void SyntaxParserUtility::MDRangeInCategory(const SyntaxConverter* converter, const std::string& set) {
  Raise("Subcommand ^1. Range in MDSet ^2 cat list.", {NameOf(converter), set});
}

// --- Errors on significance requests and widths -------------------------------------------

void SyntaxParserUtility::InvalidAlpha(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Text ^2. Invalid ALPHA.", {NameOf(converter), text});
}

void SyntaxParserUtility::InvalidCILevel(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Text ^2. Invalid CILEVEL.", {NameOf(converter), text});
}

void SyntaxParserUtility::InvalidHideSmallCountValue(const SyntaxConverter* /*converter*/,
                                                     const std::string& /*text*/) {
  Raise("InvalidHideSmallCountValue", {});
}

void SyntaxParserUtility::MinColWithBoundError(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Text ^2. Incorrect minimum col width.", {NameOf(converter), text});
}

void SyntaxParserUtility::MaxColWithBoundError(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Text ^2. Incorrect maximum col width.", {NameOf(converter), text});
}

void SyntaxParserUtility::MinMaxColWithError(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Text ^2. min_width is greater than max_width.", {NameOf(converter), text});
}

// --- Errors on computed categories --------------------------------------------------------

void SyntaxParserUtility::InvalidExpression(const SyntaxConverter* converter, const std::string& text) {
  Raise("Subcommand ^1. Invalid expression for computed category &^2 .", {NameOf(converter), text});
}

void SyntaxParserUtility::HideSourceCatsInSigTest(const SyntaxConverter* /*converter*/,
                                                  const std::string& category) {
  Raise(
      "Subcommand PPROPERTIES: The source categories of computed category  &^1  can not be hidden when "
      "requesting significance testing.",
      {category});
}

void SyntaxParserUtility::UnMatchTypeVariable(const SyntaxConverter* /*converter*/,
                                              const std::string& category, const std::string& variable) {
  Raise("Subcommand CATEGORIES: Computed category  &^1 is not consistent with the type and format of ^2.",
        {category, variable});
}

void SyntaxParserUtility::UnknownPComputeName(const SyntaxConverter* /*converter*/,
                                              const std::string& category) {
  Raise("Subcommand CATEGORIES: Computed category &^1 is not recognized. ", {category});
}

void SyntaxParserUtility::UnexistInExplicitList(const SyntaxConverter* /*converter*/,
                                                const std::string& category, const std::string& value,
                                                const std::string& variable) {
  Raise(
      "Subcommand CATEGORIES: Computed category &^1  includes ^2 ,which is not specified in the category "
      "list for ^3.",
      {category, value, variable});
}

void SyntaxParserUtility::MissingTOTALKeywordOrTOTALSetIsNo(const SyntaxConverter* /*converter*/,
                                                            const std::string& category,
                                                            const std::string& variable) {
  Raise(
      "Subcommand CATEGORIES: Computed category &^1 uses a total which is not included in the table for ^2.",
      {category, variable});
}

void SyntaxParserUtility::UnexistInExplicitListForSubtotal(const SyntaxConverter* /*converter*/,
                                                           const std::string& category,
                                                           const std::string& subtotal,
                                                           const std::string& variable) {
  Raise(
      "Subcommand CATEGORIES: Computed category &^1  uses the subtotal ^2 ,which is not specified or is "
      "redundant in the category list for ^3.",
      {category, subtotal, variable});
}

void SyntaxParserUtility::DiffStatTypeTotalAndSubtotalPcomput(const SyntaxConverter* /*converter*/,
                                                              const std::string& category,
                                                              const std::string& variable) {
  Raise(
      "Subcommand TABLE: The total or subtotal(s) used as input to &^1 do not use the same statistics as "
      "ordinary categories of ^2",
      {category, variable});
}

// --- Reports at warning level -------------------------------------------------------------

void SyntaxParserUtility::ScaleVarTotal(const SyntaxConverter* converter, const std::string& variable) {
  Warn("Subcommand ^1. Totals for variable ^2.", {NameOf(converter), variable});
}

void SyntaxParserUtility::DuplicateWarning(const std::string& subcommand, const std::string& text) {
  Warn("Subcommand ^1. Text ^2. Duplicate warning.", {subcommand, text});
}

void SyntaxParserUtility::DuplicateWarning(const SyntaxConverter* converter, const std::string& text) {
  DuplicateWarning(NameOf(converter), text);
}

void SyntaxParserUtility::DuplicateWarningFromVariable(const std::string& text, const std::string& variable,
                                                       bool categories) {
  Warn("Subcommand ^1. Text ^2. Duplicate warning from variable ^3.",
       {categories ? "CATEGORIES" : "TABLE", text, variable});
}

void SyntaxParserUtility::DuplicateCategoryInExplicitList(const SyntaxConverter* converter,
                                                          const std::string& text) {
  Warn("Subcommand ^1. Duplicate ^2 category.", {NameOf(converter), text});
}

void SyntaxParserUtility::DuplicateExplicitList(const SyntaxConverter* converter) {
  Warn("Subcommand ^1. Duplicate explicit category specifications.", {NameOf(converter)});
}

void SyntaxParserUtility::DuplicateExplicitListFromVariable(const SyntaxConverter* /*converter*/,
                                                            const std::string& variable) {
  Warn("Subcommand ^1. Duplicate explicit category specifications in variable ^2.", {"CATEGORIES", variable});
}

void SyntaxParserUtility::NoVariableUpdateWarning(const SyntaxConverter* converter,
                                                  const std::string& variable, bool unknownFirst) {
  if (unknownFirst) {
    Warn("Unknown variable ^1 in ^2 subcommand.", {variable, NameOf(converter)});
  } else {
    Warn("Subcommand ^1. Variable ^2. Unknown variable.", {NameOf(converter), variable});
  }
}

void SyntaxParserUtility::DropEmptySubtotal(const SyntaxConverter* converter) {
  Warn("Subcommand ^1. Empty subtotal.", {NameOf(converter)});
}

void SyntaxParserUtility::MDVarLabelContradiction(const SyntaxConverter* converter, const std::string& set) {
  Warn("Subcommand ^1. Same variable label for two vars in MDSet ^2.", {NameOf(converter), set});
}

void SyntaxParserUtility::MDCountedValueContradiction(const SyntaxConverter* converter,
                                                      const std::string& set) {
  Warn("Subcommand ^1. Different labels for the counted value in MDSet ^2.", {NameOf(converter), set});
}

void SyntaxParserUtility::MDNewCountedValueContradiction(const SyntaxConverter* converter,
                                                         const std::string& set) {
  Warn("Subcommand ^1. Different labels for the counted value in MDSet ^2.", {NameOf(converter), set});
}

void SyntaxParserUtility::MCVarLabelContradiction(const SyntaxConverter* converter, const std::string& set) {
  Warn("Subcommand ^1. Different label for the same data value in MCSet ^2.", {NameOf(converter), set});
}

void SyntaxParserUtility::MCMissingValueContradiction(const SyntaxConverter* converter,
                                                      const std::string& set, const std::string& source) {
  Warn("Subcommand ^1. User-missing contradiction in ^2. Definition from ^3 will be used.",
       {NameOf(converter), set, source});
}

void SyntaxParserUtility::OrphanUnitAttribute(const SyntaxConverter* converter, const std::string& text) {
  Warn("Subcommand ^1. Units ^2 with no col width.", {NameOf(converter), text});
}

// --- Reports on significance tests --------------------------------------------------------

void SyntaxParserUtility::SigTestInComperimeterTable(const std::string& title,
                                                     SignificanceTestType testType) {
  WarnSigTest(
      SigTestKey(testType, "Chi-square in comperimeter table.", "Column proportions in comperimeter table.",
                 "Pairwise comparisons in comperimeter table."),
      title, /*withTitle=*/false);
}

void SyntaxParserUtility::SigTestWeightWarning(const std::string& title, SignificanceTestType testType) {
  WarnSigTest(SigTestKey(testType, "Chi-square skipped in ^1 table. No proper weight stats.",
                         "Column proportions skipped in ^1 table. No proper weight stats.",
                         "Pairwise comparisons skipped in ^1 table. No proper weight stats."),
              title, /*withTitle=*/true);
}

void SyntaxParserUtility::SigTestUnWeightWarning(const std::string& title, SignificanceTestType testType) {
  WarnSigTest(SigTestKey(testType, "Chi-square skipped in ^1 table. No proper simple stats.",
                         "Column proportions skipped in ^1 table. No proper simple stats.",
                         "Pairwise comparisons skipped in ^1 table. No proper simple stats."),
              title, /*withTitle=*/true);
}

void SyntaxParserUtility::SigTestMixedStatWarning(const std::string& title, SignificanceTestType testType) {
  WarnSigTest(SigTestKey(testType, "Chi-square skipped in ^1 table. Combined stats.",
                         "Column proportions skipped in ^1 table. Combined stats.",
                         "Pairwise comparisons skipped in ^1 table. Combined stats."),
              title, /*withTitle=*/true);
}

void SyntaxParserUtility::SigTestNoCubeWarning(const std::string& title, SignificanceTestType testType) {
  WarnSigTest(SigTestKey(testType, "Chi-square skipped in ^1 table. No eligible cube.",
                         "Column proportions skipped in ^1 table. No eligible cube.",
                         "Pairwise comparisons skipped in ^1 table. No eligible cube."),
              title, /*withTitle=*/true);
}

void SyntaxParserUtility::SigTestOnlyExcludedSets(const std::string& title, SignificanceTestType testType) {
  WarnSigTest(SigTestKey(testType, "Chi-square skipped in ^1 table. Only excluded sets.",
                         "Column proportions skipped in ^1 table. Only excluded sets.",
                         "Pairwise comparisons skipped in ^1 table. Only excluded sets."),
              title, /*withTitle=*/true);
}

void SyntaxParserUtility::SigTestRowColVarSame(const std::string& title, SignificanceTestType /*testType*/) {
  Warn("Chi-square skipped in ^1 table. Row and column vars are same.", {title});
}

void SyntaxParserUtility::SigTestScaleVarInCol(const std::string& /*title*/,
                                               SignificanceTestType /*testType*/) {
  Warn("Pairwise comparisons skipped in table. Scale var in column.", {});
}

void SyntaxParserUtility::SigTestMergedNoPValue() {
  BpError(BpString("SigTests cant merge and show pvalue.", /*translate=*/true), kBpShowAlways,
          kBpLevelWarning);
}

// --- Reports at another level -------------------------------------------------------------

void SyntaxParserUtility::MRSetInvalid(const SyntaxConverter* converter, const std::string& text) {
  Report("Subcommand ^1. Set ^2 is invalid.", {NameOf(converter), text}, kBpLevelError);
}

void SyntaxParserUtility::GenericMessage(const char* key, bool warning, const char* first,
                                         const char* second) {
  if (key == nullptr) {
    return;
  }
  BpComposite composite(key, /*translate=*/true);
  if (first != nullptr) {
    composite.Add(BpString(first, /*translate=*/false));
  }
  if (second != nullptr) {
    composite.Add(BpString(second, /*translate=*/false));
  }
  composite.Finish();
  BpError(composite, kBpShowAlways, warning ? kBpLevelWarning : kBpLevelError);
}
