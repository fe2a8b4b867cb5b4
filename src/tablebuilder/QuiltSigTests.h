// QuiltSigTests.h - the significance tests on finished cells: chi-square, column means, column proportions
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "aggregator/CellKey.h"
#include "parser/PresentationCodes.h"
#include "tablerenderer/markers/RowSignificanceMarkers.h"

class AggregationCategory;
struct CellMoments;
class CubeAggregator;
struct SigTestSettings;

using CategoryPath = std::vector<const AggregationCategory*>;

/// The Pearson chi-square test of one row variable against one column variable for one
/// combination of outer categories. The three numbers are system-missing when no test can
/// be made; the flags are the facts behind the table's footnotes.
struct ChiSquareResult {
  double chiSquare;             // the statistic (system-missing: no test)
  double degreesOfFreedom;      // its degrees of freedom
  double significance;          // 1 - CdfChi(chiSquare, df); missing when that fails
  bool lowExpected = false;     // 20% or more of the cells expect 5 or fewer cases
  bool minExpectedBelowOne = false;  // some tested cell expects 1 case or fewer
  bool nonIntegerCounts = false;     // some weighted cell count was rounded
};

/// The pairwise comparison of column means in one row.
struct ColumnMeansResult {
  std::vector<std::string> columnTexts;  // per tested column: the letters of the columns it exceeds
  std::vector<int> tooFewColumns;        // columns with fewer than 2 cases, in column order
  bool numericalProblem = false;         // a variance was invalid, all were zero, or a p-value failed
  bool zeroPooled = false;               // a pair's pooled variance was not positive
  bool nonIntegerCounts = false;         // a weighted column count was rounded
  bool overlapProblem = false;           // a multiple-response pair's overlap term was not positive
  RowSignificanceMarkers rowMarkers;     // the APA subscripts of the row, calculated
};

/// The column proportions test of all rows of one row variable.
struct ColumnProportionsResult {
  std::vector<std::vector<std::string>> cellTexts;  // rows x tested columns: letters per cell
  std::vector<int> badRows;       // with badColumns: cells whose proportion is 0 or 1,
  std::vector<int> badColumns;    //   in row order, then column order
  std::vector<int> smallColumns;  // columns whose weighted base is below 2
  bool nonIntegerCounts = false;  // a weighted cell count was not whole
  bool overlapProblem = false;    // a multiple-response pair's overlap term was not positive
  std::vector<RowSignificanceMarkers> rowMarkers;  // the APA subscripts of each row
};

/// The tests on the counts and moments of a cube. Each counts the cases of a sample one of
/// two ways (SampleSizes); QuiltSigTestsEffBase holds the parts of the column tests that
/// differ on effective bases. Static operations only; no state.
class QuiltSigTests {
 public:
  /// How a test counts the cases of a sample: its weighted count rounded to whole cases, or,
  /// for a table under a base weight, its effective base W^2 / W2 (total weight squared over
  /// the total of squared weights), so that weights do not pass for cases.
  enum class SampleSizes { kRoundedCounts, kEffectiveBases };
  /// The sample sizes of a table with a base weight or without.
  static SampleSizes SizesFor(bool baseWeighted) {
    return baseWeighted ? SampleSizes::kEffectiveBases : SampleSizes::kRoundedCounts;
  }

  /// One tested pair of columns of a family (one row of a column test).
  struct PValueInfoElem {
    int _position = -1;     // index in the list being sorted (Benjamini-Hochberg only)
    int _firstIndex = -1;   // the first column, by its place among the tested columns
    int _secondIndex = -1;  // the second column; always above the first
    double _pValue;         // the unadjusted two-sided p-value; system-missing: not tested
    double _adjustValue;    // the adjusted p-value
    bool _identical = false;          // two multiple-response columns holding the same cases
    bool _significant = false;        // significant at alpha
    bool _significantAlpha2 = false;  // significant at the second alpha
    PValueInfoElem();
  };

  /// The chi-square test between the categories `testRows` and `testCols` of the innermost
  /// row and column variables, the outer categories fixed by the three paths (outermost
  /// first). `rowIsMR`/`colIsMR`: that side is a multiple-response set, whose categories
  /// overlap. On rounded counts the counts are rounded to whole numbers first; on
  /// effective bases the statistic on plain weights is scaled by W / W2.
  static ChiSquareResult GetChiSquare(const CubeAggregator& aggregator, const CategoryPath& rowPath,
                                      const CategoryPath& colPath, const CategoryPath& layerPath,
                                      const CategoryPath& testRows, const CategoryPath& testCols, bool weighted,
                                      bool rowIsMR, bool colIsMR, SampleSizes sizes = SampleSizes::kRoundedCounts);

  /// Student's t between each pair of columns `testCols` for the mean of scale variable
  /// `statVarIndex` in the row fixed by `rowCats`.
  static ColumnMeansResult GetColumnPairwise(const CubeAggregator& aggregator, int statVarIndex,
                                             const CategoryPath& rowCats, const CategoryPath& colPath,
                                             const CategoryPath& layerCats, const CategoryPath& testCols,
                                             bool weighted, bool columnsAreMR, const SigTestSettings& settings,
                                             const std::string& noTestMarker,
                                             SampleSizes sizes = SampleSizes::kRoundedCounts);

  /// The test between the column proportions of each pair of `testCols`, in each row of
  /// `testRows`, each row a family of its own: a z test on rounded counts, Student's t with
  /// df = neff(i) + neff(j) - 2 on effective bases.
  static ColumnProportionsResult GetColumnProportions(const CubeAggregator& aggregator, const CategoryPath& rowPath,
                                                      const CategoryPath& colPath, const CategoryPath& layerPath,
                                                      const CategoryPath& testRows, const CategoryPath& testCols,
                                                      bool weighted, bool rowIsMR, bool colIsMR,
                                                      const SigTestSettings& settings, const std::string& noTestMarker,
                                                      SampleSizes sizes = SampleSizes::kRoundedCounts);

  /// Fills each element's adjusted p-value and its significance at `alpha` and, when it is
  /// neither missing nor 0, at `alpha2`. Columns that hold the same cases count as one.
  /// `count` is not used: the family's size is that of the list.
  static void AdjustSigTests(double alpha, double alpha2, PresentationCodes::SignificanceAdjustType adjustType,
                             int count, std::vector<PValueInfoElem>& list);
  /// The Benjamini-Hochberg step-up adjustment of one list.
  static void AdjustSigBHTests(double alpha, double alpha2, std::vector<PValueInfoElem>& list);
  /// Ascending p-value, ties by position.
  static bool PValueInfoLess(const PValueInfoElem& first, const PValueInfoElem& second);
  /// Whether the adjusted p-value is the one shown: always.
  static bool ShowAdjustPValue(PresentationCodes::SignificanceAdjustType adjustType);
  /// "(0.012)\n": the p-value with `digits` decimals, as SHOWSIG prints it after a letter.
  static std::string GetPValueStr(double p, int digits);
  /// The label of column `index` of `nColumns`: "A".."Z", or "(AA)".. past 26 columns or
  /// with `forceParens`; lower case unless `upper`.
  static std::string CategoryKey(int index, int nColumns, bool forceParens, bool upper);

 private:
  friend class QuiltSigTestsEffBase;

  /// A category's value in a cell key; a missing category stands for all of its position.
  static int KeyCode(const AggregationCategory* category);
  /// The key of a means test: `rowCats`, `colPath`, the column slot, `layerCats`, and for a
  /// set in the columns its second position last, all categories at first.
  static CellKey MeansKey(const CategoryPath& rowCats, const CategoryPath& colPath, const CategoryPath& layerCats,
                          bool columnsAreMR, int& columnSlot);
  /// The cells of a means test in one row: a column's moments and, for a set in the
  /// columns, those of the cases two columns share, each with its number of cases.
  class MeansCells {
   public:
    MeansCells(const CubeAggregator& aggregator, int statVarIndex, const CategoryPath& rowCats,
               const CategoryPath& colPath, const CategoryPath& layerCats, bool columnsAreMR, bool weighted);
    /// The moments of column `column` (null: no case there); `cases` its unweighted count.
    const CellMoments* Column(const AggregationCategory* column, double& cases);
    /// The moments of the cases columns `first` and `second` share; `cases` their count.
    const CellMoments* Shared(const AggregationCategory* first, const AggregationCategory* second, double& cases);

   private:
    const CellMoments* Read(double& cases) const;

    const CubeAggregator& _aggregator;
    bool _weighted;
    int _meanRecord;
    int _unweightedRecord;
    int _columnSlot = 0;  // before _key: MeansKey sets it while _key is made
    CellKey _key;
    int _extraSlot = 0;
  };
  /// The key of a proportions test: `rowPath`, the row slot, `colPath`, the column slot,
  /// `layerPath`, and for a set in the columns its second position last.
  static CellKey ProportionsKey(const CategoryPath& rowPath, const CategoryPath& colPath,
                                const CategoryPath& layerPath, bool colIsMR, int& rowSlot, int& columnSlot);
  /// Total weight, total of squared weights and number of cases of one cell of a cube.
  struct CellWeights {
    double w = 0.0;
    double w2 = 0.0;
    double u = 0.0;
  };
  /// What both proportions tests read of a cube: each tested cell, each column's base (the
  /// sum over the tested rows, or the set's total when the rows are a set), and for a set in
  /// the columns the cases each pair of columns i < j shares, per tested row ([row][i][j]),
  /// or once, as [0][i][j], at the set's total when the rows are a set too.
  struct ProportionCells {
    std::vector<std::vector<CellWeights>> cell;
    std::vector<CellWeights> base;
    std::vector<std::vector<std::vector<CellWeights>>> shared;
  };
  /// Reads the cells of a proportions test through `key`, a key of ProportionsKey.
  static ProportionCells ReadProportionCells(const CubeAggregator& aggregator, CellKey key, int rowSlot,
                                             int columnSlot, const CategoryPath& testRows,
                                             const CategoryPath& testCols, bool weighted, bool rowIsMR,
                                             bool colIsMR);
  /// The z tests of one row of a proportions test between the columns that take part, with
  /// sample sizes `n` (the rounded bases) and, for a set in the columns, the cases each pair
  /// shares and whether the two hold the same cases.
  static std::vector<PValueInfoElem> ProportionPairs(const std::vector<bool>& takesPart,
                                                     const std::vector<double>& proportion,
                                                     const std::vector<double>& n,
                                                     const std::vector<std::vector<double>>& overlap,
                                                     const std::vector<std::vector<bool>>& identical, bool colIsMR,
                                                     bool& overlapProblem);
  /// The pairs i < j of the columns marked in `tested`, in order, each handed to
  /// `test(i, j, pair)` with its two indices set; a pair for which `test` returns false is
  /// left out. Every column test of both sample models pairs its columns here.
  template <typename PairTest>
  static std::vector<PValueInfoElem> TestPairs(const std::vector<bool>& tested, const PairTest& test) {
    std::vector<PValueInfoElem> pairs;
    for (std::size_t i = 0; i < tested.size(); ++i) {
      if (!tested[i]) continue;
      for (std::size_t j = i + 1; j < tested.size(); ++j) {
        if (!tested[j]) continue;
        PValueInfoElem pair;
        pair._firstIndex = static_cast<int>(i);
        pair._secondIndex = static_cast<int>(j);
        if (test(i, j, pair)) pairs.push_back(pair);
      }
    }
    return pairs;
  }
  /// `rows` rows of `columns` empty texts, with the subscripts of each row set up.
  static ColumnProportionsResult EmptyProportions(std::size_t rows, std::size_t columns);
  /// Neither system-missing nor infinite nor NaN.
  static bool IsValidValue(double value);
  /// 1/a + 1/b - 2 shared / (a b): the factor of the variance of a difference between two
  /// samples of sizes a and b that have `shared` cases in common. Exactly 0 for a = b = shared.
  static double OverlapFactor(double a, double b, double shared);
  /// The two-sided p-value of Student's t for two means `difference` apart, with variance
  /// `pooled`, samples of sizes a and b with `shared` cases in common (a set in the columns)
  /// and `df` degrees of freedom before the shared cases are taken off. System-missing when
  /// no test can be made; the reason goes into `result`, and `failed` is set when the
  /// distribution function gave nothing.
  static double MeansPairPValue(double difference, double pooled, double a, double b, double shared, double df,
                                bool columnsAreMR, ColumnMeansResult& result, bool& failed);
  /// Adjusts the pairs of one row (a family), then writes its texts and subscripts: a column
  /// of `tested` receives, for each significant pair, the letter of the column with the
  /// smaller `values`; pairs that are not significant mark their columns similar. `pairs`
  /// holds exactly the pairs that were tested, ordered by first and then second column. A
  /// column not tested gets `noTestMarker` and is removed from `markers`.
  static void LetterRow(const std::vector<bool>& tested, std::vector<PValueInfoElem>& pairs,
                        const std::vector<double>& values, int count, const SigTestSettings& settings,
                        const std::string& noTestMarker, std::vector<std::string>& texts,
                        RowSignificanceMarkers& markers);
};
