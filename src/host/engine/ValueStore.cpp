// ValueStore.cpp - per-cell values of a scale variable, merged by value while few are distinct
#include "host/engine/ValueStore.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "host/QuiltAssert.h"

namespace {

// Merging goes on while the distinct values are at most this many, or while a merged
// entry stands for three cases or more on average: a merged entry costs about 24 bytes
// (value, count, hash slots), a case kept alone 8, so beyond both merging only costs. The
// limit keeps a cell's hash table within the processor's cache; it covers scores, ages,
// codes and amounts rounded to the hundred.
constexpr std::size_t kMergeLimit = 4096;
constexpr std::size_t kFirstCapacity = 16;

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

}  // namespace

ValueStore::ValueStore(bool weighted) {
  _data._weighted = weighted;
}

void ValueStore::Add(double value, double weight) {
  Data& d = _data;
  if (d._merging) {
    AddEntry(value, weight, 1.0);
    return;
  }
  d._cases += 1.0;
  d._values.push_back(value);
  if (d._weighted) d._weights.push_back(weight);
}

void ValueStore::Merge(const ValueStore& other) {
  QUILT_ASSERT(other._data._weighted == _data._weighted, "value stores of one cube are weighted alike");
  const Data& from = other._data;
  Data& d = _data;
  std::size_t i = 0;
  // Entries go one by one while this store merges; once neither does, the rest of the
  // cases are copied in bulk.
  for (; i < from._values.size() && (d._merging || from._merging); ++i) {
    const double count = from._merging ? from._counts[i] : 1.0;
    const double weight = from._weighted ? from._weights[i] : count;
    AddEntry(from._values[i], weight, count);
  }
  if (i == from._values.size()) return;
  d._cases += static_cast<double>(from._values.size() - i);
  d._values.insert(d._values.end(), from._values.begin() + static_cast<std::ptrdiff_t>(i),
                   from._values.end());
  if (d._weighted) {
    d._weights.insert(d._weights.end(), from._weights.begin() + static_cast<std::ptrdiff_t>(i),
                      from._weights.end());
  }
}

void ValueStore::AddEntry(double value, double weight, double count) {
  Data& d = _data;
  d._cases += count;
  if (d._merging) {
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
    if (distinct <= kMergeLimit || 3 * distinct <= static_cast<std::size_t>(d._cases)) {
      d._slots[slot] = static_cast<std::uint32_t>(distinct);
      d._values.push_back(value);
      d._counts.push_back(count);
      if (d._weighted) d._weights.push_back(weight);
      // Half full at most, so that probes stay short.
      if (2 * distinct > d._slots.size()) Rehash(2 * d._slots.size());
      return;
    }
    StopMerging();
  }
  Append(value, weight, count);
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

void ValueStore::Rehash(std::size_t capacity) {
  Data& d = _data;
  d._slots.assign(capacity, 0);
  const std::size_t mask = capacity - 1;
  for (std::size_t entry = 0; entry < d._values.size(); ++entry) {
    std::size_t slot = SlotOf(BitsOf(d._values[entry]), capacity);
    while (d._slots[slot] != 0) slot = (slot + 1) & mask;
    d._slots[slot] = static_cast<std::uint32_t>(entry + 1);
  }
}

void ValueStore::StopMerging() {
  Data& d = _data;
  std::vector<double> values = std::move(d._values);
  std::vector<double> weights = std::move(d._weights);
  const std::vector<double> counts = std::move(d._counts);
  d._values.clear();
  d._weights.clear();
  d._counts.clear();
  d._slots.clear();
  d._slots.shrink_to_fit();
  d._merging = false;
  for (std::size_t i = 0; i < values.size(); ++i) {
    Append(values[i], d._weighted ? weights[i] : counts[i], counts[i]);
  }
}

std::vector<ValueStore::Entry> ValueStore::Distribution(bool unweighted) const {
  const Data& d = _data;
  std::vector<Entry> pairs;
  pairs.reserve(d._values.size());
  for (std::size_t i = 0; i < d._values.size(); ++i) {
    const double count = d._merging ? d._counts[i] : 1.0;
    pairs.push_back({d._values[i], unweighted || !d._weighted ? count : d._weights[i]});
  }
  std::sort(pairs.begin(), pairs.end(), [](const Entry& a, const Entry& b) { return a._value < b._value; });
  std::vector<Entry> merged;
  for (const Entry& pair : pairs) {
    if (!merged.empty() && merged.back()._value == pair._value) {
      merged.back()._weight += pair._weight;
    } else {
      merged.push_back(pair);
    }
  }
  return merged;
}

std::size_t ValueStore::GetEntryCount() const {
  return _data._values.size();
}

bool ValueStore::IsMerging() const {
  return _data._merging;
}
