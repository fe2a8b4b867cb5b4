// ValueStore.cpp - per-cell values of a scale variable, merged by value: hashed while few, else sorted runs
#include "host/engine/ValueStore.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "host/QuiltAssert.h"

namespace {

// Distinct values found through the hash table: its slots, values and counts (about 40 KB)
// stay in the processor's cache, where a lookup per case is cheap. Scores, ages, codes and
// amounts rounded to the ten mostly fit.
constexpr std::size_t kHashLimit = 1024;
constexpr std::size_t kFirstCapacity = 16;
// The least tail merged at once: sorting it is cache-resident work, and merging it into the
// sorted entries costs little per case.
constexpr std::size_t kTailMinimum = 16384;

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

// Sorts numbers ascending, a byte of their bits at a time (least significant first), which
// costs no mispredicted branch per comparison as a comparison sort of scattered values does;
// a byte that is the same in every number is skipped. The bits are mapped so that their
// order as unsigned integers is the numbers' order (-0 is read as 0).
void RadixSort(double* values, std::size_t count) {
  std::vector<std::uint64_t> keys(count);
  std::vector<std::uint64_t> other(count);
  constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
  std::size_t histogram[8][256] = {};
  for (std::size_t i = 0; i < count; ++i) {
    std::uint64_t bits = BitsOf(values[i]);
    bits = (bits & kSign) != 0 ? ~bits : bits | kSign;
    keys[i] = bits;
    for (int pass = 0; pass < 8; ++pass) ++histogram[pass][(bits >> (8 * pass)) & 0xFF];
  }
  for (int pass = 0; pass < 8; ++pass) {
    const int shift = 8 * pass;
    if (histogram[pass][(keys[0] >> shift) & 0xFF] == count) continue;
    std::size_t offsets[256];
    std::size_t sum = 0;
    for (int digit = 0; digit < 256; ++digit) {
      offsets[digit] = sum;
      sum += histogram[pass][digit];
    }
    for (std::size_t i = 0; i < count; ++i) other[offsets[(keys[i] >> shift) & 0xFF]++] = keys[i];
    keys.swap(other);
  }
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t key = keys[i];
    const std::uint64_t bits = (key & kSign) != 0 ? key & ~kSign : ~key;
    std::memcpy(&values[i], &bits, sizeof bits);
  }
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
    AddEntry(from._values[i], from._weighted ? from._weights[i] : from._counts[i], from._counts[i]);
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
    if (distinct <= kHashLimit) {
      d._slots[slot] = static_cast<std::uint32_t>(distinct);
      d._values.push_back(value);
      d._counts.push_back(count);
      if (d._weighted) d._weights.push_back(weight);
      // Half full at most, so that probes stay short.
      if (2 * distinct > d._slots.size()) Rehash(2 * d._slots.size());
      return;
    }
    // Too many distinct values for the table: from here on, sorted runs.
    d._hashed = false;
    d._slots.clear();
    d._slots.shrink_to_fit();
    d._base = 0;
    d._sorted = false;
    d._tailOfOnes = false;  // the entries of the table carry their counts
  }
  d._values.push_back(value);
  d._counts.push_back(count);
  if (d._weighted) d._weights.push_back(weight);
  if (count != 1.0) d._tailOfOnes = false;
  if (d._values.size() - d._base >= std::max(kTailMinimum, d._base)) Compact();
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

// Sorts the tail (all entries, when hashed) and merges it into the sorted entries, equal
// values into one.
void ValueStore::Compact() const {
  Data& d = _data;
  if (d._sorted) return;
  struct Loose {
    double _value;
    double _count;
    double _weight;
  };
  const std::size_t base = d._hashed ? 0 : d._base;
  const std::size_t size = d._values.size();
  if (!d._weighted && d._tailOfOnes && !d._hashed) {
    // Cases of one each: sorting their values is all it takes (the common case, and the
    // fastest sort).
    if (size > base) RadixSort(d._values.data() + base, size - base);
  } else {
    std::vector<Loose> loose;
    loose.reserve(size - base);
    for (std::size_t i = base; i < size; ++i) {
      loose.push_back({d._values[i], d._counts[i], d._weighted ? d._weights[i] : 0.0});
    }
    std::sort(loose.begin(), loose.end(), [](const Loose& a, const Loose& b) { return a._value < b._value; });
    for (std::size_t i = base; i < size; ++i) {
      d._values[i] = loose[i - base]._value;
      d._counts[i] = loose[i - base]._count;
      if (d._weighted) d._weights[i] = loose[i - base]._weight;
    }
  }
  std::vector<double> values;
  std::vector<double> counts;
  std::vector<double> weights;
  values.reserve(size);
  counts.reserve(size);
  if (d._weighted) weights.reserve(size);
  const auto take = [&](double value, double count, double weight) {
    if (!values.empty() && values.back() == value) {
      counts.back() += count;
      if (d._weighted) weights.back() += weight;
      return;
    }
    values.push_back(value);
    counts.push_back(count);
    if (d._weighted) weights.push_back(weight);
  };
  std::size_t left = 0;
  std::size_t right = base;
  while (left < base || right < size) {
    const std::size_t next = right == size || (left < base && !(d._values[right] < d._values[left])) ? left++ : right++;
    take(d._values[next], d._counts[next], d._weighted ? d._weights[next] : 0.0);
  }
  d._values = std::move(values);
  d._counts = std::move(counts);
  d._weights = std::move(weights);
  d._base = d._values.size();
  d._sorted = true;
  d._tailOfOnes = true;
  if (d._hashed) Rehash(std::max(kFirstCapacity, std::bit_ceil(2 * d._values.size() + 1)));
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
  return _data._hashed || _data._base == _data._values.size();
}
