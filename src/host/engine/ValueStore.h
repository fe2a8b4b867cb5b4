// ValueStore.h - the valid values of one scale variable in one cell, kept for medians, percentiles and modes
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The values of one scale variable in one cell, for the statistics that need more than
/// moments. Equal values are merged into one entry with its number of cases (and its total
/// weight, for a weighted store), found through a hash table: memory follows the distinct
/// values, not the cases. Merging goes on however many distinct values there are, as long
/// as a merged entry stands for enough cases to pay for itself; while it does not (mostly
/// distinct values, or a cell that has seen few cases yet), cases are appended one entry
/// each (8 bytes, 16 with weights), and every time those have doubled they are sorted and
/// merged, and the hash table comes back once merging pays again. A distribution is sorted
/// once: reading it sorts the entries in place, and later reads find them sorted.
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
  /// Adds every value of `other`, which must be weighted as this store is: entry by entry,
  /// so a merged store stays merged.
  void Merge(const ValueStore& other);
  /// The distinct values in ascending order with their total weight, or with their number
  /// of cases when `unweighted` is true (always so for an unweighted store).
  std::vector<Entry> Distribution(bool unweighted) const;
  /// Entries held: distinct values while merged, else up to one per case.
  std::size_t GetEntryCount() const;
  /// True while every entry holds a value of its own.
  bool IsMerging() const;

 private:
  struct Data {
    bool _weighted = false;
    bool _hashed = true;                // _slots index the entries, and entries are distinct
    bool _sorted = true;                // entries are distinct and ascending
    double _cases = 0.0;                // cases added, merged ones included
    std::size_t _merged = 0;            // leading entries that carry a count (all of them when hashed)
    std::vector<double> _values;        // one per entry
    std::vector<double> _weights;       // total weight per entry, weighted stores only
    std::vector<double> _counts;        // cases of each of the first _merged entries; later ones hold one each
    std::vector<std::uint32_t> _slots;  // hash table while hashed: entry index + 1, 0 for free
  };
  mutable Data _data;  // reading a distribution sorts it in place

  void AddEntry(double value, double weight, double count);
  void Append(double value, double weight, double count);
  void Rehash(std::size_t capacity) const;
  void Compact() const;
};
