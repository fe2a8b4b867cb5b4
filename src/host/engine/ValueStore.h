// ValueStore.h - the valid values of one scale variable in one cell, kept for medians, percentiles and modes
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The values of one scale variable in one cell, for the statistics that need more than
/// moments, merged by value: one entry per distinct value with its number of cases (and its
/// total weight, for a weighted store), however many distinct values there are, so memory
/// follows the distinct values, not the cases. Up to a thousand or so distinct values a hash
/// table small enough for the processor's cache finds each value's entry. Beyond that,
/// cases are appended to a tail that is sorted and merged into the sorted entries whenever
/// it has grown as large as they are (at least 16,384): sequential work instead of a cache
/// miss per case. A distribution is sorted once: reading it merges the tail in place, and
/// later reads find the entries sorted.
///
/// Most survey variables hold values written with a few decimals within a bounded range
/// (scores, ages, amounts in cents). When the hash table overflows with values that are all
/// exact decimals of at most six places spanning a range of at most 65,536 steps (and at most
/// 16 steps per distinct value, so that memory stays near that of the entries), the store
/// counts cases on that grid instead: one array slot per step, one increment per case, no
/// sort, the distribution read in order. A value off the grid, or one that would stretch it
/// too far, turns the grid into sorted entries and the store goes on with sorted runs.
/// Weights of one value are added in the order the cases come, as the hash table adds them.
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
  /// Adds every entry of `other`, which must be weighted as this store is, as entries: the
  /// margins of a table are built from their cells' distributions, not from their cases.
  void Merge(const ValueStore& other);
  /// The distinct values in ascending order with their total weight, or with their number
  /// of cases when `unweighted` is true (always so for an unweighted store).
  std::vector<Entry> Distribution(bool unweighted) const;
  /// Entries held: the distinct values, and the tail not yet merged.
  std::size_t GetEntryCount() const;
  /// True while every entry holds a value of its own (no tail waits to be merged).
  bool IsMerging() const;
  /// True while cases are counted on a grid of decimal values.
  bool IsOnGrid() const;

 private:
  struct Data {
    bool _weighted = false;
    bool _hashed = true;                // _slots index the entries, which are distinct
    bool _sorted = true;                // the entries are distinct and ascending
    double _cases = 0.0;                // cases added, merged ones included
    bool _tailOfOnes = true;            // every tail entry stands for one case
    std::size_t _base = 0;              // not hashed: entries [0, _base) are sorted and distinct, the rest the tail
    std::vector<double> _values;        // one per entry
    std::vector<double> _counts;        // cases per entry
    std::vector<double> _weights;       // total weight per entry, weighted stores only
    std::vector<std::uint32_t> _slots;  // hash table while hashed: entry index + 1, 0 for free
    bool _grid = false;                 // cases counted on the grid below (entries empty)
    int _decimals = 0;                  // grid step: 10^-_decimals
    double _scale = 1.0;                // 10^_decimals
    std::int64_t _low = 0;              // scaled value of the grid's first slot
    std::vector<std::uint16_t> _gridCounts;   // cases per grid slot, modulo 65,536: small for the cache
    std::vector<std::uint32_t> _gridCarries;  // cases per grid slot / 65,536, once any slot needs it
    std::vector<double> _gridWeights;   // total weight per grid slot, weighted stores only
  };
  mutable Data _data;  // reading a distribution merges the tail in place

  void AddEntry(double value, double weight, double count);
  void Rehash(std::size_t capacity) const;
  void Compact() const;
  bool TryGrid(double value, double weight, double count);
  bool PlaceOnGrid(double value, double weight, double count);
  void LeaveGrid();
  double GridCount(std::size_t slot) const;
  bool AddToGrid(std::size_t slot, double count, double weight);
  std::size_t GridValues() const;
};
