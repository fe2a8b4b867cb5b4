// SyntaxParserUtilityMessages.cpp - the parse-error catalogue: one function per thing that can go wrong
#include <initializer_list>
#include <string>

#include "host/output/BpComposite.h"
#include "host/output/BpError.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
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
  Raise(msg::kParsingError,
        {file == nullptr ? std::string() : std::string(file), std::to_string(line)});
}

void SyntaxParserUtility::NoTableSubcommand(const SyntaxConverter* converter) {
  Raise(msg::kMissingSubcommand, {NameOf(converter), "TABLE"});
}

void SyntaxParserUtility::IncompleteSubcommand(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kIncompleteSubcommand, {text, NameOf(converter)});
}

void SyntaxParserUtility::EmptyQuotedText(const SyntaxConverter* converter, const std::string& after) {
  Raise(msg::kEmptyQuotedTextAfter, {NameOf(converter), after});
}

void SyntaxParserUtility::TextCut(const SyntaxConverter* converter, const std::string& after, int limit) {
  Warn(msg::kTextCutToBytes, {NameOf(converter), after, std::to_string(limit)});
}

void SyntaxParserUtility::UnknownKeyword(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kUnknownKeyword, {NameOf(converter), text});
}

void SyntaxParserUtility::OutOfOrderSubcommand(const std::string& parent, const std::string& text) {
  Raise(msg::kOutOfOrderSubcommand, {parent, text});
}

void SyntaxParserUtility::OutOfOrderGlobalSubcommand(const std::string& parent, const std::string& text) {
  Raise(msg::kOutOfOrderGlobalSubcommand, {parent, text});
}

void SyntaxParserUtility::IncorrectSequence(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kIncorrectSequence, {NameOf(converter), text});
}

void SyntaxParserUtility::UnbalancedParen(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kUnbalancedParenthesis, {NameOf(converter), text});
}

void SyntaxParserUtility::NestingTooDeep(const SyntaxConverter* converter, const std::string& text,
                                         int limit) {
  Raise(msg::kNestingTooDeep, {NameOf(converter), text, std::to_string(limit)});
}

void SyntaxParserUtility::TooManyCubeVariables(int tableNumber, int count, int limit) {
  Raise(msg::kTooManySubTableVariables,
        {std::to_string(tableNumber), std::to_string(count), std::to_string(limit)});
}

void SyntaxParserUtility::TooManyStackedTerms(int tableNumber, int limit) {
  Raise(msg::kTooManyStackedTerms, {std::to_string(tableNumber), std::to_string(limit)});
}

void SyntaxParserUtility::UnknownVariable(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kUnrecognizedVariableInSubcommand, {text, SubcommandOrCategories(converter)});
}

void SyntaxParserUtility::MissingVariableArgument(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kNoArgumentFor, {NameOf(converter), text});
}

void SyntaxParserUtility::LabelLengthInvalid(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kLabelTextTooLong,
        {text, SubcommandOrCategories(converter)});
}

void SyntaxParserUtility::MissingEquals(const SyntaxConverter* converter, const std::string& text) {
  const BpComposite composite =
      Compose(msg::kEqualSignRequiredAfter, {NameOf(converter), text});
  BpError(composite, kBpShowAlways, kBpLevelWarning);
  throw composite;
}

void SyntaxParserUtility::MissingKeyword(const SyntaxConverter* converter, const std::string& text) {
  const BpComposite composite = Compose(msg::kMissingRequiredKeyword, {NameOf(converter), text});
  BpError(composite, kBpShowAlways, kBpLevelWarning);
  throw composite;
}

// --- Errors on table expressions, statistics and formats --------------------------------

void SyntaxParserUtility::IncorrectCrossing() {
  Raise(msg::kIncorrectTableExpression, {"TABLE"});
}

void SyntaxParserUtility::InvalidPTILE(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kInvalidPtile, {NameOf(converter), text});
}

void SyntaxParserUtility::FormatDecimalViolation(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kDecimalsNotAllowed, {NameOf(converter), text});
}

void SyntaxParserUtility::FormatDecimalBoundError(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kDecimalsGreaterThanWidth, {NameOf(converter), text});
}

void SyntaxParserUtility::FormatPrematureEnd(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kFormatEndsPrematurely, {NameOf(converter), text});
}

void SyntaxParserUtility::FormatMissingWidthError(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kWidthMissing, {NameOf(converter), text});
}

void SyntaxParserUtility::CombinedStatsAndMeasurement(const SyntaxConverter* converter,
                                                      const std::string& text) {
  Raise(msg::kStatisticsAndMeasurementLevel, {NameOf(converter), text});
}

void SyntaxParserUtility::TotalNoStatsExpression(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kNoTotalsStatistics, {NameOf(converter), text});
}

void SyntaxParserUtility::StatGroup2Violation(const SyntaxConverter* converter, const std::string& variable,
                                              const std::string& text) {
  Raise(msg::kSecondGroupStatistic, {NameOf(converter), variable, text});
}

void SyntaxParserUtility::StatGroup3Violation(const SyntaxConverter* converter, const std::string& variable,
                                              const std::string& text) {
  Raise(msg::kThirdGroupStatistic, {NameOf(converter), variable, text});
}

void SyntaxParserUtility::StringVarAsScale(const SyntaxConverter* converter, const std::string& variable) {
  Raise(msg::kVariableAsScale, {NameOf(converter), variable});
}

void SyntaxParserUtility::VariableNotNumeric(const SyntaxConverter* converter, const std::string& variable) {
  Raise(msg::kVariableIsNotNumeric, {NameOf(converter), variable});
}

void SyntaxParserUtility::MeasurementLevelOrderViolation(const SyntaxConverter* converter,
                                                         const std::string& variable) {
  Raise(msg::kMeasurementLevelAfterStatistics, {NameOf(converter), variable});
}

void SyntaxParserUtility::ScaleInComperimeterDim(const SyntaxConverter* converter,
                                                 const std::string& variable) {
  Raise(msg::kMovedLabelsScaleVariable,
        {NameOf(converter), variable});
}

void SyntaxParserUtility::DataSortingInComperimeter(const SyntaxConverter* converter,
                                                    const std::string& variable) {
  Raise(msg::kMovedLabelsDataDependentSorting,
        {NameOf(converter), variable});
}

void SyntaxParserUtility::MissingSourceDimInComperimeter(const SyntaxConverter* converter) {
  Raise(msg::kMovedLabelsMissingSourceDimension, {NameOf(converter)});
}

void SyntaxParserUtility::DissimilarCatAttribsInComperimeter(const SyntaxConverter* converter) {
  Raise(msg::kMovedLabelsCategoriesDiffer, {NameOf(converter)});
}

void SyntaxParserUtility::DissimilarValueLabelPairInComperimeter(const SyntaxConverter* converter) {
  Raise(msg::kMovedLabelsValueLabelsConflict, {NameOf(converter)});
}

// --- Errors on categories and sorting -----------------------------------------------------

void SyntaxParserUtility::ExplicitListViolation() {
  Raise(msg::kExplicitListViolation, {"CATEGORIES"});
}

void SyntaxParserUtility::ExplicitListViolationFromVariable(const std::string& variable) {
  Raise(msg::kExplicitListViolationInVariable, {"CATEGORIES", variable});
}

void SyntaxParserUtility::DictionaryOrderViolation(const SyntaxConverter* converter) {
  Raise(msg::kDictionaryOrderViolation, {NameOf(converter)});
}

void SyntaxParserUtility::VariableListError(const SyntaxConverter* converter) {
  Raise(msg::kAllAndVariablesInOneList, {NameOf(converter)});
}

void SyntaxParserUtility::EmptyVarListExplicitCatList(const SyntaxConverter* converter,
                                                      const std::string& text) {
  Raise(msg::kEmptyVariableList, {NameOf(converter), text});
}

void SyntaxParserUtility::DataReadError(const SyntaxConverter* /*converter*/, const std::string& variable,
                                        const std::string& text) {
  Raise(msg::kVariableDataReadError, {"CATEGORIES", text, variable});
}

void SyntaxParserUtility::InconsistentStatVarPair(const SyntaxConverter* converter,
                                                  const std::string& variable, const std::string& text) {
  Raise(msg::kVariableCannotSortBy, {NameOf(converter), variable, text});
}

void SyntaxParserUtility::UnusedSortStatOnVar(const SyntaxConverter* converter, const std::string& variable,
                                              const std::string& statistic) {
  Raise(msg::kVariableHasNoStatistics, {NameOf(converter), variable, statistic});
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
  Raise(msg::kVariablesNotInOneCube,
        {NameOf(converter), variable, sortVariable, statistic});
}

void SyntaxParserUtility::SortStatOnNonCompVar(const SyntaxConverter* converter, const std::string& variable,
                                               const std::string& statistic) {
  Raise(msg::kVariableCannotHaveStatistics,
        {NameOf(converter), statistic, variable});
}

// --- Errors on multiple-response sets -----------------------------------------------------

void SyntaxParserUtility::MRNonExistentElemVar(const SyntaxConverter* converter, const std::string& set,
                                               const std::string& variable) {
  Raise(msg::kUnknownVariableInSet, {NameOf(converter), variable, set});
}

void SyntaxParserUtility::MDCountedValueOverflow(const SyntaxConverter* converter, const std::string& set,
                                                 const std::string& value) {
  Raise(msg::kCountedValueTooBig, {NameOf(converter), set, value});
}

void SyntaxParserUtility::MDCountedValueInconsistent(const SyntaxConverter* converter,
                                                     const std::string& /*set*/, const std::string& value) {
  Raise(msg::kCountedValueWrongType, {NameOf(converter), value});
}

void SyntaxParserUtility::MRInconsistentVarType(const SyntaxConverter* converter, const std::string& set,
                                                const std::string& variable) {
  Raise(msg::kSetVariableTypesDiffer, {NameOf(converter), set, variable});
}

void SyntaxParserUtility::MDRangeInCategory(const SyntaxConverter* converter, const std::string& set) {
  Raise(msg::kRangeInDichotomySetCategories, {NameOf(converter), set});
}

// --- Errors on significance requests and widths -------------------------------------------

void SyntaxParserUtility::InvalidAlpha(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kInvalidAlpha, {NameOf(converter), text});
}

void SyntaxParserUtility::InvalidCILevel(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kInvalidCiLevel, {NameOf(converter), text});
}

void SyntaxParserUtility::InvalidHideSmallCountValue(const SyntaxConverter* /*converter*/,
                                                     const std::string& /*text*/) {
  Raise(msg::kInvalidHideSmallCountValue, {});
}

void SyntaxParserUtility::MinColWithBoundError(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kIncorrectMinimumWidth, {NameOf(converter), text});
}

void SyntaxParserUtility::MaxColWithBoundError(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kIncorrectMaximumWidth, {NameOf(converter), text});
}

void SyntaxParserUtility::MinMaxColWithError(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kMinimumWidthAboveMaximum, {NameOf(converter), text});
}

// --- Errors on computed categories --------------------------------------------------------

void SyntaxParserUtility::InvalidExpression(const SyntaxConverter* converter, const std::string& text) {
  Raise(msg::kInvalidComputedCategoryExpression, {NameOf(converter), text});
}

void SyntaxParserUtility::InvalidExpressionBracket(const SyntaxConverter* converter, const std::string& category,
                                                   const std::string& bracket) {
  Raise(msg::kInvalidComputedCategoryBracket, {NameOf(converter), category, bracket});
}

void SyntaxParserUtility::HideSourceCatsInSigTest(const SyntaxConverter* /*converter*/,
                                                  const std::string& category) {
  Raise(
      msg::kSourceCategoriesHiddenWithSigTest,
      {category});
}

void SyntaxParserUtility::UnMatchTypeVariable(const SyntaxConverter* /*converter*/,
                                              const std::string& category, const std::string& variable) {
  Raise(msg::kComputedCategoryTypeMismatch,
        {category, variable});
}

void SyntaxParserUtility::UnknownPComputeName(const SyntaxConverter* /*converter*/,
                                              const std::string& category) {
  Raise(msg::kComputedCategoryNotRecognized, {category});
}

void SyntaxParserUtility::UnexistInExplicitList(const SyntaxConverter* /*converter*/,
                                                const std::string& category, const std::string& value,
                                                const std::string& variable) {
  Raise(
      msg::kComputedCategoryUsesUnlistedCategory,
      {category, value, variable});
}

void SyntaxParserUtility::MissingTOTALKeywordOrTOTALSetIsNo(const SyntaxConverter* /*converter*/,
                                                            const std::string& category,
                                                            const std::string& variable) {
  Raise(
      msg::kComputedCategoryUsesMissingTotal,
      {category, variable});
}

void SyntaxParserUtility::UnexistInExplicitListForSubtotal(const SyntaxConverter* /*converter*/,
                                                           const std::string& category,
                                                           const std::string& subtotal,
                                                           const std::string& variable) {
  Raise(
      msg::kComputedCategoryUsesUnlistedSubtotal,
      {category, subtotal, variable});
}

void SyntaxParserUtility::DiffStatTypeTotalAndSubtotalPcomput(const SyntaxConverter* /*converter*/,
                                                              const std::string& category,
                                                              const std::string& variable) {
  Raise(
      msg::kComputedCategoryTotalStatisticsDiffer,
      {category, variable});
}

// --- Reports at warning level -------------------------------------------------------------

void SyntaxParserUtility::ScaleVarTotal(const SyntaxConverter* converter, const std::string& variable) {
  Warn(msg::kTotalsForVariable, {NameOf(converter), variable});
}

void SyntaxParserUtility::DuplicateWarning(const std::string& subcommand, const std::string& text) {
  Warn(msg::kDuplicateWarning, {subcommand, text});
}

void SyntaxParserUtility::DuplicateWarning(const SyntaxConverter* converter, const std::string& text) {
  DuplicateWarning(NameOf(converter), text);
}

void SyntaxParserUtility::SameOptionWarning(const SyntaxConverter* converter, const std::string& text,
                                            const std::string& earlier) {
  Warn(msg::kSameOptionWarning, {NameOf(converter), text, earlier});
}

void SyntaxParserUtility::DuplicateWarningFromVariable(const std::string& text, const std::string& variable,
                                                       bool categories) {
  Warn(msg::kDuplicateWarningFromVariable,
       {categories ? "CATEGORIES" : "TABLE", text, variable});
}

void SyntaxParserUtility::DuplicateCategoryInExplicitList(const SyntaxConverter* converter,
                                                          const std::string& text) {
  Warn(msg::kDuplicateCategory, {NameOf(converter), text});
}

void SyntaxParserUtility::DuplicateExplicitList(const SyntaxConverter* converter) {
  Warn(msg::kDuplicateExplicitCategory, {NameOf(converter)});
}

void SyntaxParserUtility::DuplicateExplicitListFromVariable(const SyntaxConverter* /*converter*/,
                                                            const std::string& variable) {
  Warn(msg::kDuplicateExplicitCategoryInVariable, {"CATEGORIES", variable});
}

void SyntaxParserUtility::NoVariableUpdateWarning(const SyntaxConverter* converter,
                                                  const std::string& variable, bool unknownFirst) {
  if (unknownFirst) {
    Warn(msg::kUnknownVariableInSubcommand, {variable, NameOf(converter)});
  } else {
    Warn(msg::kVariableUnknown, {NameOf(converter), variable});
  }
}

void SyntaxParserUtility::DropEmptySubtotal(const SyntaxConverter* converter) {
  Warn(msg::kEmptySubtotal, {NameOf(converter)});
}

void SyntaxParserUtility::MDVarLabelContradiction(const SyntaxConverter* converter, const std::string& set) {
  Warn(msg::kSameVariableLabelInDichotomySet, {NameOf(converter), set});
}

void SyntaxParserUtility::MDCountedValueContradiction(const SyntaxConverter* converter,
                                                      const std::string& set) {
  Warn(msg::kMultipleDichotomySetLabelsDiffer, {NameOf(converter), set});
}

void SyntaxParserUtility::MDNewCountedValueContradiction(const SyntaxConverter* converter,
                                                         const std::string& set) {
  Warn(msg::kMultipleDichotomySetLabelsDiffer, {NameOf(converter), set});
}

void SyntaxParserUtility::MCVarLabelContradiction(const SyntaxConverter* converter, const std::string& set) {
  Warn(msg::kMultipleCategorySetLabelsDiffer, {NameOf(converter), set});
}

void SyntaxParserUtility::MCMissingValueContradiction(const SyntaxConverter* converter,
                                                      const std::string& set, const std::string& source) {
  Warn(msg::kUserMissingContradiction,
       {NameOf(converter), set, source});
}

void SyntaxParserUtility::OrphanUnitAttribute(const SyntaxConverter* converter, const std::string& text) {
  Warn(msg::kUnitsWithoutWidth, {NameOf(converter), text});
}

// --- Reports on significance tests --------------------------------------------------------

void SyntaxParserUtility::SigTestInComperimeterTable(const std::string& title,
                                                     SignificanceTestType testType) {
  WarnSigTest(
      SigTestKey(testType, msg::kChiSquareMovedLabels, msg::kColumnProportionsMovedLabels,
                 msg::kPairwiseComparisonsMovedLabels),
      title, /*withTitle=*/false);
}

void SyntaxParserUtility::SigTestWeightWarning(const std::string& title, SignificanceTestType testType) {
  WarnSigTest(SigTestKey(testType, msg::kChiSquareSkippedNoWeightStats,
                         msg::kColumnProportionsSkippedNoWeightStats,
                         msg::kPairwiseComparisonsSkippedNoWeightStats),
              title, /*withTitle=*/true);
}

void SyntaxParserUtility::SigTestUnWeightWarning(const std::string& title, SignificanceTestType testType) {
  WarnSigTest(SigTestKey(testType, msg::kChiSquareSkippedNoSimpleStats,
                         msg::kColumnProportionsSkippedNoSimpleStats,
                         msg::kPairwiseComparisonsSkippedNoSimpleStats),
              title, /*withTitle=*/true);
}

void SyntaxParserUtility::SigTestMixedStatWarning(const std::string& title, SignificanceTestType testType) {
  WarnSigTest(SigTestKey(testType, msg::kChiSquareSkippedCombinedStats,
                         msg::kColumnProportionsSkippedCombinedStats,
                         msg::kPairwiseComparisonsSkippedCombinedStats),
              title, /*withTitle=*/true);
}

void SyntaxParserUtility::SigTestNoCubeWarning(const std::string& title, SignificanceTestType testType) {
  WarnSigTest(SigTestKey(testType, msg::kChiSquareSkippedNoEligibleCube,
                         msg::kColumnProportionsSkippedNoEligibleCube,
                         msg::kPairwiseComparisonsSkippedNoEligibleCube),
              title, /*withTitle=*/true);
}

void SyntaxParserUtility::SigTestOnlyExcludedSets(const std::string& title, SignificanceTestType testType) {
  WarnSigTest(SigTestKey(testType, msg::kChiSquareSkippedOnlyExcludedSets,
                         msg::kColumnProportionsSkippedOnlyExcludedSets,
                         msg::kPairwiseComparisonsSkippedOnlyExcludedSets),
              title, /*withTitle=*/true);
}

void SyntaxParserUtility::SigTestRowColVarSame(const std::string& title, SignificanceTestType /*testType*/) {
  Warn(msg::kChiSquareSkippedSameVariables, {title});
}

void SyntaxParserUtility::SigTestScaleVarInCol(const std::string& /*title*/,
                                               SignificanceTestType /*testType*/) {
  Warn(msg::kPairwiseComparisonsSkippedScaleInColumn, {});
}

void SyntaxParserUtility::SigTestMergedNoPValue() {
  BpError(BpString(msg::kMergeCannotShowPValues, /*translate=*/true), kBpShowAlways,
          kBpLevelWarning);
}

// --- Reports at another level -------------------------------------------------------------

void SyntaxParserUtility::MRSetInvalid(const SyntaxConverter* converter, const std::string& text) {
  Report(msg::kSetIsInvalid, {NameOf(converter), text}, kBpLevelError);
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
