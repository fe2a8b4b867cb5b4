// ValueStore.h - the valid values of one scale variable in one cell, kept for medians, percentiles and modes
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The values of one scale variable in one cell, for the statistics that need more than
/// moments. Survey variables mostly take few distinct values (codes, scores, rounded
/// amounts), so the store starts by merging equal values into one entry with its total
/// weight and number of cases, found through a small hash table: memory then follows the
/// distinct values, not the cases. When most values turn out to be distinct it stops
/// merging and keeps one entry per case (8 bytes, 16 with weights), which is the least
/// an exact median can keep; equal values are merged once more when it is read.
class ValueStore {
 public:
  /// A distinct value with its total weight (or number of cases).
  struct Entry {
    double _value;
    double _weight;
  };

  /// A weighted store keeps each case's weight; an unweighted one counts cases only.
  explicit ValueStore(bool weighted = false);

  void Add(double value, double weight);
  /// Adds every value of `other`, which must be weighted as this store is.
  void Merge(const ValueStore& other);
  /// The distinct values in ascending order with their total weight, or with their number
  /// of cases when `unweighted` is true (always so for an unweighted store).
  std::vector<Entry> Distribution(bool unweighted) const;
  /// Entries held: distinct values while merging, else one per case.
  std::size_t GetEntryCount() const;
  /// True while equal values are merged as they arrive.
  bool IsMerging() const;

 private:
  struct Data {
    bool _weighted = false;
    bool _merging = true;
    double _cases = 0.0;                // cases added, merged ones included
    std::vector<double> _values;        // one per entry
    std::vector<double> _weights;       // total weight per entry, weighted stores only
    std::vector<double> _counts;        // cases per entry while merging; empty afterwards (one each)
    std::vector<std::uint32_t> _slots;  // hash table while merging: entry index + 1, 0 for free
  };
  Data _data;

  void AddEntry(double value, double weight, double count);
  void Append(double value, double weight, double count);
  void Rehash(std::size_t capacity);
  void StopMerging();
};
