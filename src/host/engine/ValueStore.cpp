// ValueStore.cpp - per-cell values of a scale variable, merged by value while merging pays
#include "host/engine/ValueStore.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>

#include "host/QuiltAssert.h"

namespace {

// Up to this many distinct values a cell merges whatever the cases: its hash table stays
// within the processor's cache and costs little.
constexpr std::size_t kMergeLimit = 4096;
constexpr std::size_t kFirstCapacity = 16;

// Beyond kMergeLimit a merged entry (value, count, weight, two hash slots: about 32 bytes)
// must stand for this many cases on average to cost no more than they would alone (8 to 16
// bytes each).
constexpr double kCasesPerMergedEntry = 3.0;

std::uint64_t BitsOf(double value) {
  if (value == 0.0) value = 0.0;  // -0 and 0 are one value
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// Fibonacci hashing: the top bits of the product depend on every bit of the value. The low
// bits would not do: a double of a small integer or a short decimal has its low mantissa
// bits all zero.
std::size_t SlotOf(std::uint64_t bits, std::size_t capacity) {
  const int shift = 64 - std::countr_zero(capacity);
  return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15ULL) >> shift);
}

bool MergingPays(std::size_t distinct, double cases) {
  return distinct <= kMergeLimit || kCasesPerMergedEntry * static_cast<double>(distinct) <= cases;
}

}  // namespace

ValueStore::ValueStore(bool weighted) {
  _data._weighted = weighted;
}

void ValueStore::Add(double value, double weight) {
  AddEntry(value, weight, 1.0);
}

void ValueStore::Merge(const ValueStore& other) {
  QUILT_ASSERT(other._data._weighted == _data._weighted, "value stores of one cube are weighted alike");
  const Data& from = other._data;
  for (std::size_t i = 0; i < from._values.size(); ++i) {
    const double count = i < from._merged ? from._counts[i] : 1.0;
    AddEntry(from._values[i], from._weighted ? from._weights[i] : count, count);
  }
}

void ValueStore::AddEntry(double value, double weight, double count) {
  Data& d = _data;
  d._cases += count;
  d._sorted = false;
  if (d._hashed) {
    if (d._slots.empty()) Rehash(kFirstCapacity);
    const std::uint64_t bits = BitsOf(value);
    const std::size_t mask = d._slots.size() - 1;
    std::size_t slot = SlotOf(bits, d._slots.size());
    while (d._slots[slot] != 0) {
      const std::size_t entry = d._slots[slot] - 1;
      if (BitsOf(d._values[entry]) == bits) {
        d._counts[entry] += count;
        if (d._weighted) d._weights[entry] += weight;
        return;
      }
      slot = (slot + 1) & mask;
    }
    const std::size_t distinct = d._values.size() + 1;
    if (MergingPays(distinct, d._cases)) {
      d._slots[slot] = static_cast<std::uint32_t>(distinct);
      d._values.push_back(value);
      d._counts.push_back(count);
      if (d._weighted) d._weights.push_back(weight);
      d._merged = distinct;
      // Half full at most, so that probes stay short.
      if (2 * distinct > d._slots.size()) Rehash(2 * d._slots.size());
      return;
    }
    // Too many distinct values for the cases yet: append, and merge again later.
    d._hashed = false;
    d._slots.clear();
    d._slots.shrink_to_fit();
  }
  Append(value, weight, count);
  if (d._values.size() >= 2 * std::max(d._merged, kMergeLimit)) Compact();
}

// One entry per case: a merged entry of several cases becomes that many entries, each with
// an equal share of the weight, which leaves every total of the distribution unchanged.
void ValueStore::Append(double value, double weight, double count) {
  Data& d = _data;
  const double share = count > 0.0 ? weight / count : 0.0;
  for (double i = 0.0; i < count; i += 1.0) {
    d._values.push_back(value);
    if (d._weighted) d._weights.push_back(share);
  }
}

void ValueStore::Rehash(std::size_t capacity) const {
  Data& d = _data;
  d._slots.assign(capacity, 0);
  const std::size_t mask = capacity - 1;
  for (std::size_t entry = 0; entry < d._values.size(); ++entry) {
    std::size_t slot = SlotOf(BitsOf(d._values[entry]), capacity);
    while (d._slots[slot] != 0) slot = (slot + 1) & mask;
    d._slots[slot] = static_cast<std::uint32_t>(entry + 1);
  }
}

// Sorts the entries by value and merges equal ones (the first spelling of 0 or -0 stays),
// then hashes them again when merging pays.
void ValueStore::Compact() const {
  Data& d = _data;
  if (d._sorted) return;
  const std::size_t size = d._values.size();
  std::vector<std::uint32_t> order(size);
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(),
                   [&d](std::uint32_t a, std::uint32_t b) { return d._values[a] < d._values[b]; });
  std::vector<double> values;
  std::vector<double> counts;
  std::vector<double> weights;
  for (const std::uint32_t i : order) {
    const double count = i < d._merged ? d._counts[i] : 1.0;
    const double weight = d._weighted ? d._weights[i] : 0.0;
    if (!values.empty() && values.back() == d._values[i]) {
      counts.back() += count;
      if (d._weighted) weights.back() += weight;
      continue;
    }
    values.push_back(d._values[i]);
    counts.push_back(count);
    if (d._weighted) weights.push_back(weight);
  }
  d._values = std::move(values);
  d._counts = std::move(counts);
  d._weights = std::move(weights);
  d._merged = d._values.size();
  d._sorted = true;
  d._hashed = MergingPays(d._values.size(), d._cases);
  if (d._hashed) {
    Rehash(std::max(kFirstCapacity, std::bit_ceil(2 * d._values.size() + 1)));
  } else {
    d._slots.clear();
    d._slots.shrink_to_fit();
  }
}

std::vector<ValueStore::Entry> ValueStore::Distribution(bool unweighted) const {
  Compact();
  const Data& d = _data;
  std::vector<Entry> entries;
  entries.reserve(d._values.size());
  for (std::size_t i = 0; i < d._values.size(); ++i) {
    entries.push_back({d._values[i], unweighted || !d._weighted ? d._counts[i] : d._weights[i]});
  }
  return entries;
}

std::size_t ValueStore::GetEntryCount() const {
  return _data._values.size();
}

bool ValueStore::IsMerging() const {
  return _data._merged == _data._values.size();
}
