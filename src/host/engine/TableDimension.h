// TableDimension.h - one categorical variable or set of a table: case mapping and categories
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class AggregationCategory;
class AggregationStatistic;
class AggregationVariable;
struct CaseBlock;
class TARN_DataSource;
class TableMetadata;

/// One entry of a case at a dimension: the encoding of a category (or subtotal, or the
/// total), the responses it carries, and whether it is a category flagged missing.
struct DimensionEntry {
  int _code;
  double _responses;
  bool _missingCategory;
};

/// The categories of one variable or set of a table. During the data pass it maps each
/// case's value to its categories once, for every cube that shares the dimension. At
/// CompleteCases it fixes the displayed categories with totals and subtotals in place.
class TableDimension {
 public:
  /// How a case stands at this dimension.
  enum CaseState {
    kCaseInCategories = 0,  // entries hold its categories
    kCaseMissing = 1,       // system-missing or excluded user-missing: the hidden bucket
    kCaseExcluded = 2,      // a valid value that the explicit list leaves out
  };

  TableDimension(AggregationVariable* variable, const TARN_DataSource* source);
  virtual ~TableDimension();
  TableDimension(const TableDimension&) = delete;
  TableDimension& operator=(const TableDimension&) = delete;

  /// The displayed categories in order, totals and subtotals in place; valid after
  /// CompleteCases.
  virtual const std::vector<AggregationCategory*>& GetCategories();
  /// The dictionary indices behind the dimension (the members for a set).
  virtual std::vector<int> GetSourceVarIndices() const;
  int GetNumberOfCategories();
  const std::vector<AggregationCategory*>& GetPcomputeRequiredCats() const;
  /// The total is accumulated whether or not it is displayed (it always is here).
  void SetComputingTotal();
  /// For a category set: whether a member repeating a category adds a response.
  void SetComputingCounts(bool flag);
  void SetSortByScaleStats(TableMetadata* metadata, const AggregationStatistic& statistic);
  void SetSortByDimensionStats(TableMetadata* metadata, TableDimension* dimension,
                               const AggregationStatistic& statistic);

  AggregationVariable* GetVariable() const;
  bool GetIncludeEmpty() const;
  bool GetCountDuplicates() const;

  /// Result codes of a single variable for a case that is in no category.
  static constexpr int kBlockMissing = -1;   // system-missing or excluded user-missing: the hidden bucket
  static constexpr int kBlockExcluded = -2;  // a valid value that the explicit list leaves out

  /// Maps every case of the block; the results stay until the next call.
  void MapBlock(const CaseBlock& block);
  /// A single variable's result for each case of the block: the encoding of its value
  /// category, or kBlockMissing or kBlockExcluded. Null for a set.
  const int* GetBlockCodes() const;
  /// One flag per value encoding of a single variable, 1 for a category flagged missing.
  /// Valid until the next MapBlock.
  const char* GetMissingFlags() const;
  /// How case `k` of the block stands at a set.
  CaseState GetBlockState(std::size_t k) const;
  /// A set's entries for case `k` of the block: its categories, subtotals and, last, its
  /// total; `count` receives their number.
  const DimensionEntry* GetBlockEntries(std::size_t k, std::size_t& count) const;
  /// A set's results for the whole block, for loops that would otherwise call the two
  /// functions above for every case: the state of case k is `_states[k]`, its entries run
  /// from `_entries + _offsets[k]` to `_entries + _offsets[k + 1]`.
  struct SetBlock {
    const char* _states;
    const std::size_t* _offsets;
    const DimensionEntry* _entries;
  };
  SetBlock GetSetBlock() const;
  /// A dichotomy set's members counted in each case of the block, a bit each; null for any
  /// other variable. Cheaper than GetSetBlock, which builds the entries.
  const std::uint64_t* GetBlockMasks() const;
  /// The entry of the total alone, for a case in the hidden bucket.
  const std::vector<DimensionEntry>& GetTotalOnlyEntries() const;

  /// The number of members of a dichotomy set, 0 for any other variable.
  int GetDichotomyMemberCount() const;
  /// True for a single variable: a case then stands in exactly one category.
  bool IsSingleVariable() const;
  /// The encoding of the subtotal that sums the value category `code`, 0 for none.
  int SubtotalOf(int code) const;

  /// The statistic that orders the categories, or null when they keep value or label order.
  const AggregationStatistic* GetSortStatistic() const;
  /// True when a cube holding `dimension` may give the sort statistic: the categorical
  /// variable that carries it, where one was named, is that dimension's variable.
  bool IsSortCarriedBy(const TableDimension* dimension) const;
  /// True when the sort names a categorical variable that carries the statistic.
  bool HasSortCarrier() const;
  /// Reorders each run of value categories by `valueOf(encoding)`, ascending or descending
  /// as ORDER says; totals and subtotals keep their places.
  void SortByStatistic(const std::function<double(int)>& valueOf);

  /// Fixes the categories of the group just read.
  void CompleteCategories();
  /// Forgets which values the last group held.
  void Reset();
  /// The category with this encoding, null when there is none.
  const AggregationCategory* FindCategory(int encoding) const;
  /// This dimension's own category for `category`, which may belong to a sibling variable
  /// whose labels share the header place (AggregationCategory::IsSameAs); null when this
  /// variable has no such category in the current group.
  const AggregationCategory* FindCounterpart(const AggregationCategory& category) const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
