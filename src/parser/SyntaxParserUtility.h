// SyntaxParserUtility.h - the parser's message catalogue functions, word matching and statistic vocabulary
#pragma once

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/engine/TableEncryptionCodes.h"
#include "parser/QuiltAStatInfo.h"

class SyntaxConverter;

/// Static functions only. Three areas:
///
/// - Messages: one function for each thing that can go wrong with a command. Each builds a
///   BpComposite from a catalogue key with its placeholders (BpString, translate false) and
///   either throws it by value (an error: the command ends) or reports it through BpError at
///   once and returns (a warning or a non-fatal error). Functions that throw are
///   [[noreturn]]. Where a placeholder is "the name", it is the converter's
///   GetSubcommandName().
/// - Words: ExactWordMatch and friends, whole-word and case-insensitive.
/// - The statistic vocabulary: every statistic a command can name, its code, keyword,
///   default label and group, in two tables built once per process by InitStatistics.
class SyntaxParserUtility {
 public:
  SyntaxParserUtility() = delete;

  using StatisticCodes = TableEncryptionCodes::StatisticCodes;
  using StatisticConf = TableEncryptionCodes::StatisticConf;
  using StatisticsGroup = TableEncryptionCodes::StatisticsGroup;
  using SignificanceTestType = TableEncryptionCodes::SignificanceTestType;

  /// Codes run from 0 to kStatCodeCount - 1; each has one row in the vocabulary table.
  static constexpr int kStatCodeCount = 514;

  // --- Words -------------------------------------------------------------------------
  /// Whole-word, case-insensitive equality (TARNMBstricmp_A).
  static bool ExactWordMatch(const std::string& left, const std::string& right);
  /// Appends `name` unless `names` already holds it, in any case; variables are named
  /// without regard to case.
  static void AppendDistinctName(std::vector<std::string>& names, const std::string& name);
  /// Case-insensitive equality of the first `count` bytes (TARNMBstrnicmp_A).
  static bool ExactNWordMatch(const std::string& left, const std::string& right, int count);
  /// An upper-case copy (TARNMBstrupr_A); empty for a null or empty argument.
  static std::string UpperCaseString(const char* text);
  /// Removes trailing blanks (0x20 only) in place and returns `text`.
  static std::string& TrimTrailingWhiteSpace(std::string& text);

  // --- Errors on the command's structure (thrown) ------------------------------------
  [[noreturn]] static void UnexpectedError(const char* file, int line);
  [[noreturn]] static void NoTableSubcommand(const SyntaxConverter* converter);
  [[noreturn]] static void IncompleteSubcommand(const SyntaxConverter* converter, const std::string& text);
  /// An empty quoted text ('') in `converter`'s subcommand; `after` is the word before it.
  [[noreturn]] static void EmptyQuotedText(const SyntaxConverter* converter, const std::string& after);
  /// Warns that a token's text after the word `after` was cut to `limit` bytes.
  static void TextCut(const SyntaxConverter* converter, const std::string& after, int limit);
  [[noreturn]] static void UnknownKeyword(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void OutOfOrderSubcommand(const std::string& parent, const std::string& text);
  [[noreturn]] static void OutOfOrderGlobalSubcommand(const std::string& parent, const std::string& text);
  [[noreturn]] static void IncorrectSequence(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void UnbalancedParen(const SyntaxConverter* converter, const std::string& text);
  /// A sub-table of table `tableNumber` needs `count` key positions, more than `limit`.
  [[noreturn]] static void TooManyCubeVariables(int tableNumber, int count, int limit);
  /// The expression of table `tableNumber` stacks more than `limit` terms.
  [[noreturn]] static void TooManyStackedTerms(int tableNumber, int limit);
  /// Parentheses and brackets nested deeper than `limit` levels, found at `text`.
  [[noreturn]] static void NestingTooDeep(const SyntaxConverter* converter, const std::string& text,
                                          int limit);
  /// Names "CATEGORIES" as the subcommand when `converter` is a multiple-response set.
  [[noreturn]] static void UnknownVariable(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void MissingVariableArgument(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void LabelLengthInvalid(const SyntaxConverter* converter, const std::string& text);
  /// Reported at warning level and then thrown: the user sees it twice.
  [[noreturn]] static void MissingEquals(const SyntaxConverter* converter, const std::string& text);
  /// Reported at warning level and then thrown: the user sees it twice.
  [[noreturn]] static void MissingKeyword(const SyntaxConverter* converter, const std::string& text);

  // --- Errors on table expressions, statistics and formats (thrown) -----------------
  [[noreturn]] static void IncorrectCrossing();
  [[noreturn]] static void InvalidPTILE(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void FormatDecimalViolation(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void FormatDecimalBoundError(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void FormatPrematureEnd(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void FormatMissingWidthError(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void CombinedStatsAndMeasurement(const SyntaxConverter* converter,
                                                       const std::string& text);
  [[noreturn]] static void TotalNoStatsExpression(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void StatGroup2Violation(const SyntaxConverter* converter, const std::string& variable,
                                               const std::string& text);
  [[noreturn]] static void StatGroup3Violation(const SyntaxConverter* converter, const std::string& variable,
                                               const std::string& text);
  [[noreturn]] static void StringVarAsScale(const SyntaxConverter* converter, const std::string& variable);
  [[noreturn]] static void VariableNotNumeric(const SyntaxConverter* converter, const std::string& variable);
  [[noreturn]] static void MeasurementLevelOrderViolation(const SyntaxConverter* converter,
                                                          const std::string& variable);
  [[noreturn]] static void ScaleInComperimeterDim(const SyntaxConverter* converter,
                                                  const std::string& variable);
  [[noreturn]] static void DataSortingInComperimeter(const SyntaxConverter* converter,
                                                     const std::string& variable);
  [[noreturn]] static void MissingSourceDimInComperimeter(const SyntaxConverter* converter);
  [[noreturn]] static void DissimilarCatAttribsInComperimeter(const SyntaxConverter* converter);
  [[noreturn]] static void DissimilarValueLabelPairInComperimeter(const SyntaxConverter* converter);

  // --- Errors on categories and sorting (thrown) ------------------------------------
  [[noreturn]] static void ExplicitListViolation();
  [[noreturn]] static void ExplicitListViolationFromVariable(const std::string& variable);
  [[noreturn]] static void DictionaryOrderViolation(const SyntaxConverter* converter);
  [[noreturn]] static void VariableListError(const SyntaxConverter* converter);
  [[noreturn]] static void EmptyVarListExplicitCatList(const SyntaxConverter* converter,
                                                       const std::string& text);
  [[noreturn]] static void DataReadError(const SyntaxConverter* converter, const std::string& variable,
                                         const std::string& text);
  [[noreturn]] static void InconsistentStatVarPair(const SyntaxConverter* converter,
                                                   const std::string& variable, const std::string& text);
  [[noreturn]] static void UnusedSortStatOnVar(const SyntaxConverter* converter, const std::string& variable,
                                               const std::string& statistic);
  /// With `variable` and `sortVariable` the same word, raises UnusedSortStatOnVar instead.
  [[noreturn]] static void NonCrossingListAndSortVar(const SyntaxConverter* converter,
                                                     const std::string& variable,
                                                     const std::string& sortVariable,
                                                     const std::string& statistic);
  [[noreturn]] static void SortStatOnNonCompVar(const SyntaxConverter* converter, const std::string& variable,
                                                const std::string& statistic);

  // --- Errors on multiple-response sets (thrown) ------------------------------------
  [[noreturn]] static void MRNonExistentElemVar(const SyntaxConverter* converter, const std::string& set,
                                                const std::string& variable);
  [[noreturn]] static void MDCountedValueOverflow(const SyntaxConverter* converter, const std::string& set,
                                                  const std::string& value);
  [[noreturn]] static void MDCountedValueInconsistent(const SyntaxConverter* converter,
                                                      const std::string& set, const std::string& value);
  [[noreturn]] static void MRInconsistentVarType(const SyntaxConverter* converter, const std::string& set,
                                                 const std::string& variable);
  [[noreturn]] static void MDRangeInCategory(const SyntaxConverter* converter, const std::string& set);

  // --- Errors on significance requests and widths (thrown) --------------------------
  [[noreturn]] static void InvalidAlpha(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void InvalidCILevel(const SyntaxConverter* converter, const std::string& text);
  /// The key stands by itself: no placeholder.
  [[noreturn]] static void InvalidHideSmallCountValue(const SyntaxConverter* converter,
                                                      const std::string& text);
  [[noreturn]] static void MinColWithBoundError(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void MaxColWithBoundError(const SyntaxConverter* converter, const std::string& text);
  [[noreturn]] static void MinMaxColWithError(const SyntaxConverter* converter, const std::string& text);

  // --- Errors on computed categories (thrown) ---------------------------------------
  [[noreturn]] static void InvalidExpression(const SyntaxConverter* converter, const std::string& text);
  /// A bracket of a computed category's expression that holds no category, or more than one.
  [[noreturn]] static void InvalidExpressionBracket(const SyntaxConverter* converter, const std::string& category,
                                                    const std::string& bracket);
  [[noreturn]] static void HideSourceCatsInSigTest(const SyntaxConverter* converter,
                                                   const std::string& category);
  [[noreturn]] static void UnMatchTypeVariable(const SyntaxConverter* converter, const std::string& category,
                                               const std::string& variable);
  [[noreturn]] static void UnknownPComputeName(const SyntaxConverter* converter, const std::string& category);
  [[noreturn]] static void UnexistInExplicitList(const SyntaxConverter* converter,
                                                 const std::string& category, const std::string& value,
                                                 const std::string& variable);
  [[noreturn]] static void MissingTOTALKeywordOrTOTALSetIsNo(const SyntaxConverter* converter,
                                                             const std::string& category,
                                                             const std::string& variable);
  [[noreturn]] static void UnexistInExplicitListForSubtotal(const SyntaxConverter* converter,
                                                            const std::string& category,
                                                            const std::string& subtotal,
                                                            const std::string& variable);
  [[noreturn]] static void DiffStatTypeTotalAndSubtotalPcomput(const SyntaxConverter* converter,
                                                               const std::string& category,
                                                               const std::string& variable);

  // --- Reports at warning level (return) --------------------------------------------
  static void ScaleVarTotal(const SyntaxConverter* converter, const std::string& variable);
  /// `subcommand` is the word shown as the subcommand.
  static void DuplicateWarning(const std::string& subcommand, const std::string& text);
  /// The converter's subcommand name is shown as the subcommand.
  static void DuplicateWarning(const SyntaxConverter* converter, const std::string& text);
  /// `text` sets what `earlier`, another keyword or word of the subcommand, already set.
  static void SameOptionWarning(const SyntaxConverter* converter, const std::string& text,
                                const std::string& earlier);
  /// Names "CATEGORIES" as the subcommand when `categories` is true, else "TABLE".
  static void DuplicateWarningFromVariable(const std::string& text, const std::string& variable,
                                           bool categories);
  static void DuplicateCategoryInExplicitList(const SyntaxConverter* converter, const std::string& text);
  static void DuplicateExplicitList(const SyntaxConverter* converter);
  static void DuplicateExplicitListFromVariable(const SyntaxConverter* converter,
                                                const std::string& variable);
  /// Two wordings: `unknownFirst` true names the variable first.
  static void NoVariableUpdateWarning(const SyntaxConverter* converter, const std::string& variable,
                                      bool unknownFirst);
  static void DropEmptySubtotal(const SyntaxConverter* converter);
  static void MDVarLabelContradiction(const SyntaxConverter* converter, const std::string& set);
  static void MDCountedValueContradiction(const SyntaxConverter* converter, const std::string& set);
  static void MDNewCountedValueContradiction(const SyntaxConverter* converter, const std::string& set);
  static void MCVarLabelContradiction(const SyntaxConverter* converter, const std::string& set);
  static void MCMissingValueContradiction(const SyntaxConverter* converter, const std::string& set,
                                          const std::string& source);
  static void OrphanUnitAttribute(const SyntaxConverter* converter, const std::string& text);

  // --- Reports on significance tests (warning level, return) ------------------------
  // Each family picks its key by `testType`: 1 chi-square, 2 column proportions,
  // 3 pairwise comparisons. Any other type reports nothing.
  static void SigTestInComperimeterTable(const std::string& title, SignificanceTestType testType);
  static void SigTestWeightWarning(const std::string& title, SignificanceTestType testType);
  static void SigTestUnWeightWarning(const std::string& title, SignificanceTestType testType);
  static void SigTestMixedStatWarning(const std::string& title, SignificanceTestType testType);
  static void SigTestNoCubeWarning(const std::string& title, SignificanceTestType testType);
  /// No subtable is left to test because the variables to test are sets and INCLUDEMRSETS=NO.
  static void SigTestOnlyExcludedSets(const std::string& title, SignificanceTestType testType);
  static void SigTestRowColVarSame(const std::string& title, SignificanceTestType testType);
  static void SigTestScaleVarInCol(const std::string& title, SignificanceTestType testType);
  static void SigTestMergedNoPValue();

  // --- Reports at another level (return) --------------------------------------------
  /// Reported at error level: the set is dropped and parsing goes on.
  static void MRSetInvalid(const SyntaxConverter* converter, const std::string& text);
  /// Reports `key` with up to two placeholders (each only if not null), at warning level
  /// when `warning` is true, else at error level. Does nothing when `key` is null.
  static void GenericMessage(const char* key, bool warning, const char* first, const char* second);

  // --- Statistic vocabulary ---------------------------------------------------------
  /// Builds the keyword map and the row table once per process; later calls return at once.
  static void InitStatistics();
  /// The source of the vocabulary rows: label, keyword and group of one code, worked out
  /// from its primary statistic and confidence variant. False, with the strings and the
  /// group cleared, for a code that names no statistic.
  static bool GetStatExtDetail(int code, StatisticsGroup& group, std::string& label, std::string& keyword,
                               int& prime, int& conf);
  /// Whether the confidence variant `conf` of `prime` exists.
  static bool IsStatComputed(int prime, int conf, StatisticsGroup group);
  /// Looks up a statistic keyword, in any case. False when the word names no statistic.
  static bool SupportedStatistics(const std::string& text, int& code, std::string& label,
                                  StatisticsGroup& group);
  static bool SupportedStatistics(const std::string& text, int& code, std::string& label,
                                  StatisticsGroup& group, int& prime, int& conf);
  /// Reads the row of `code`. All outputs are cleared first; false for a code outside
  /// 0..513 or an empty row.
  static bool GetStatisticsDetail(int code, StatisticsGroup& group, std::string& label, std::string& keyword);
  static bool GetStatisticsDetail(int code, StatisticsGroup& group, std::string& label, std::string& keyword,
                                  int& prime, int& conf);
  /// The keyword of `code`; for PTILE and UPTILE with `cutPoint` >= 0 the keyword, a blank
  /// and the cut point ("PTILE 25"). Empty for a code with no row.
  static std::string GetStatToken(int code, double cutPoint);
  /// The default label of `code`; empty for a code with no row.
  static std::string GetStatDefaultLabel(int code);
  /// The group of `code`; kStatGroupCounts for a code with no row.
  static StatisticsGroup GetStatGroup(int code);
  /// Every keyword the vocabulary knows, aliases included, in alphabetical order: what a
  /// command may write in square brackets.
  static std::vector<std::string> GetStatKeywords();

 private:
  /// The row of `code`; null when no statistic has it.
  static const QuiltAStatInfo* FindStatInfo(int code);
  /// Rows indexed by code; built by InitStatistics, kept for the process.
  static std::unique_ptr<std::array<QuiltAStatInfo, kStatCodeCount>> pStatInfoTable;
  /// Upper-case keyword to code, aliases included; its existence marks the vocabulary built.
  static std::unique_ptr<std::map<std::string, int>> pKeyword2StatCode;
};
