// ValueStore.cpp - per-cell values of a scale variable, merged by value: hashed while few, else sorted runs
#include "host/engine/ValueStore.h"

#include <algorithm>
#include <bit>
#include <cmath>
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

// A grid of decimal values: at most this many decimals, this many slots, and this many slots
// per distinct value in use (16 slots of 2-byte counts per distinct value cost a little more
// than its entry would; 65,536 slots are 128 KB of counts, 512 KB more of weights).
constexpr int kMaxDecimals = 6;
constexpr double kPowersOfTen[kMaxDecimals + 1] = {1.0, 10.0, 100.0, 1e3, 1e4, 1e5, 1e6};
constexpr std::size_t kGridLimit = 65536;
constexpr std::size_t kGridSlotsPerValue = 16;
// Cases a grid slot counts (16 bits, and 32 more once needed); a slot that would count more
// turns the grid into entries.
constexpr double kGridCountLimit = 281474976710655.0;  // 2^48 - 1
// Scaled values are whole numbers below 2^53, where a double holds every integer exactly.
constexpr double kExactLimit = 9007199254740992.0;

// The scaled value of `value` on a grid of 1/scale steps, if `value` is exactly the double
// nearest to that decimal (so dividing the scaled value by the scale gives it back, bit for
// bit: a value read from text with that many decimals is), else false.
// Rounding half away from zero by hand: the library's rounding is a function call on the
// processors this is built for, and this runs once per case. A value on the grid is within a
// rounding error of a whole number, so how halves go does not matter.
bool ScaledOnGrid(double value, double scale, std::int64_t& key) {
  const double scaled = value * scale;
  if (!(std::fabs(scaled) < kExactLimit)) return false;
  const auto whole = static_cast<std::int64_t>(scaled < 0.0 ? scaled - 0.5 : scaled + 0.5);
  if (static_cast<double>(whole) / scale != value) return false;
  key = whole;
  return true;
}

// The fewest decimals that write `value` exactly, or -1 beyond kMaxDecimals (or not finite).
int DecimalsOf(double value) {
  std::int64_t key = 0;
  for (int decimals = 0; decimals <= kMaxDecimals; ++decimals) {
    if (ScaledOnGrid(value, kPowersOfTen[decimals], key)) return decimals;
  }
  return -1;
}

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
  Data& d = _data;
  if (from._grid) {
    const std::size_t slots = from._gridCounts.size();
    const std::int64_t offset = from._low - d._low;
    const bool alike = d._grid && from._decimals == d._decimals && offset >= 0 &&
                       offset + static_cast<std::int64_t>(slots) <= static_cast<std::int64_t>(d._gridCounts.size());
    for (std::size_t i = 0; i < slots; ++i) {
      const double count = other.GridCount(i);
      if (count == 0.0) continue;
      const double weight = from._weighted ? from._gridWeights[i] : count;
      // Two grids alike: the counts are added slot to slot.
      if (alike && d._grid && AddToGrid(offset + i, count, weight)) {
        d._cases += count;
        continue;
      }
      AddEntry(static_cast<double>(from._low + static_cast<std::int64_t>(i)) / from._scale, weight, count);
    }
    return;
  }
  for (std::size_t i = 0; i < from._values.size(); ++i) {
    AddEntry(from._values[i], from._weighted ? from._weights[i] : from._counts[i], from._counts[i]);
  }
}

void ValueStore::AddEntry(double value, double weight, double count) {
  Data& d = _data;
  d._cases += count;
  d._sorted = false;
  if (d._grid) {
    std::int64_t key = 0;
    if (ScaledOnGrid(value, d._scale, key)) {
      const std::int64_t slot = key - d._low;
      const bool inside = slot >= 0 && slot < static_cast<std::int64_t>(d._gridCounts.size());
      if (inside && count == 1.0) {
        // A case: one increment (the carry when a slot's 16 bits wrap).
        // (2^48 cases in one slot, where the carry would wrap, are out of reach.)
        if (++d._gridCounts[slot] == 0) {
          if (d._gridCarries.empty()) d._gridCarries.assign(d._gridCounts.size(), 0);
          ++d._gridCarries[slot];
        }
        if (d._weighted) d._gridWeights[slot] += weight;
        return;
      }
      if (inside && AddToGrid(slot, count, weight)) return;
      if (!inside && PlaceOnGrid(value, weight, count)) return;
    } else if (PlaceOnGrid(value, weight, count)) {
      return;
    }
    // Off the grid, or too far out: the grid becomes sorted entries, the value the first
    // of a tail.
    LeaveGrid();
  } else if (d._hashed) {
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
    // Too many distinct values for the table: a grid of decimals if they lie on one, else
    // sorted runs.
    if (TryGrid(value, weight, count)) return;
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

// The hash table has overflowed with `value`: counts its entries and the value on a grid when
// all are exact decimals close enough together.
bool ValueStore::TryGrid(double value, double weight, double count) {
  Data& d = _data;
  int decimals = DecimalsOf(value);
  for (std::size_t i = 0; i < d._values.size() && decimals >= 0; ++i) {
    const int needed = DecimalsOf(d._values[i]);
    decimals = needed < 0 ? needed : std::max(decimals, needed);
  }
  if (decimals < 0 || count > kGridCountLimit) return false;
  const double scale = kPowersOfTen[decimals];
  std::int64_t key = 0;
  if (!ScaledOnGrid(value, scale, key)) return false;
  std::int64_t low = key;
  std::int64_t high = key;
  std::vector<std::int64_t> keys(d._values.size());
  for (std::size_t i = 0; i < d._values.size(); ++i) {
    if (!ScaledOnGrid(d._values[i], scale, keys[i]) || d._counts[i] > kGridCountLimit) return false;
    low = std::min(low, keys[i]);
    high = std::max(high, keys[i]);
  }
  const std::size_t needed = static_cast<std::size_t>(high - low) + 1;
  const std::size_t limit = std::min(kGridLimit, kGridSlotsPerValue * (d._values.size() + 1));
  if (needed > limit) return false;
  // Room on both sides for values a little beyond the first thousand's range.
  const std::size_t room = std::min(limit - needed, needed / 4);
  const std::vector<double> counts = std::move(d._counts);
  const std::vector<double> weights = std::move(d._weights);
  d._values = {};
  d._counts = {};
  d._weights = {};
  d._slots = {};
  d._grid = true;
  d._hashed = false;
  d._decimals = decimals;
  d._scale = scale;
  d._low = low - static_cast<std::int64_t>(room / 2);
  d._gridCounts.assign(needed + room, 0);
  d._gridCarries.clear();
  d._gridWeights.assign(d._weighted ? needed + room : 0, 0.0);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    AddToGrid(keys[i] - d._low, counts[i], d._weighted ? weights[i] : counts[i]);
  }
  AddToGrid(key - d._low, count, weight);
  return true;
}

// `value` is off the grid or beyond its ends: refines the grid to the value's decimals and
// widens it to take the value in, when that stays within the limits.
bool ValueStore::PlaceOnGrid(double value, double weight, double count) {
  Data& d = _data;
  const int needed = DecimalsOf(value);
  if (needed < 0 || count > kGridCountLimit) return false;
  const int decimals = std::max(needed, d._decimals);
  const double scale = kPowersOfTen[decimals];
  const auto factor = static_cast<std::int64_t>(kPowersOfTen[decimals - d._decimals]);
  const std::size_t size = d._gridCounts.size();
  // The grid's ends scaled to the finer step must stay exact whole numbers.
  const double reach = std::max(std::fabs(static_cast<double>(d._low)),
                                std::fabs(static_cast<double>(d._low + static_cast<std::int64_t>(size))));
  if (!(reach * static_cast<double>(factor) < kExactLimit)) return false;
  std::int64_t key = 0;
  if (!ScaledOnGrid(value, scale, key)) return false;
  const std::int64_t oldLow = d._low * factor;
  const std::int64_t oldHigh = (d._low + static_cast<std::int64_t>(size) - 1) * factor;
  std::int64_t low = std::min(oldLow, key);
  const std::int64_t high = std::max(oldHigh, key);
  const std::size_t span = static_cast<std::size_t>(high - low) + 1;
  const std::size_t limit = std::min(kGridLimit, kGridSlotsPerValue * (GridValues() + 1));
  if (span > limit) return false;
  // Widening leaves room on the side that grew, as much again as it grew by and an eighth
  // more, so that a range growing a value at a time does not copy the grid every case.
  const bool widens = key < oldLow || key > oldHigh;
  const std::size_t growth = key < oldLow ? static_cast<std::size_t>(oldLow - key)
                                          : key > oldHigh ? static_cast<std::size_t>(key - oldHigh) : 0;
  const std::size_t room = widens ? std::min(limit - span, growth + span / 8) : 0;
  if (key < oldLow) low -= static_cast<std::int64_t>(room);
  Data old;
  old._gridCounts = std::move(d._gridCounts);
  old._gridCarries = std::move(d._gridCarries);
  old._gridWeights = std::move(d._gridWeights);
  const std::int64_t oldFirst = d._low;
  d._gridCounts.assign(span + room, 0);
  d._gridCarries.clear();
  d._gridWeights.assign(d._weighted ? span + room : 0, 0.0);
  d._decimals = decimals;
  d._scale = scale;
  d._low = low;
  for (std::size_t i = 0; i < size; ++i) {
    const double cases = old._gridCounts[i] + (old._gridCarries.empty() ? 0.0 : 65536.0 * old._gridCarries[i]);
    if (cases == 0.0) continue;
    const std::int64_t slot = (oldFirst + static_cast<std::int64_t>(i)) * factor - low;
    AddToGrid(static_cast<std::size_t>(slot), cases, d._weighted ? old._gridWeights[i] : cases);
  }
  AddToGrid(static_cast<std::size_t>(key - low), count, weight);
  return true;
}

// The grid's values in order become the sorted entries; sorted runs take over.
void ValueStore::LeaveGrid() {
  Data& d = _data;
  d._values.clear();
  d._counts.clear();
  d._weights.clear();
  const std::size_t distinct = GridValues();
  d._values.reserve(distinct + kTailMinimum);
  d._counts.reserve(distinct + kTailMinimum);
  for (std::size_t i = 0; i < d._gridCounts.size(); ++i) {
    const double cases = GridCount(i);
    if (cases == 0.0) continue;
    d._values.push_back(static_cast<double>(d._low + static_cast<std::int64_t>(i)) / d._scale);
    d._counts.push_back(cases);
    if (d._weighted) d._weights.push_back(d._gridWeights[i]);
  }
  d._grid = false;
  d._hashed = false;
  d._base = d._values.size();
  d._tailOfOnes = true;
  d._gridCounts = {};
  d._gridCarries = {};
  d._gridWeights = {};
}

double ValueStore::GridCount(std::size_t slot) const {
  const Data& d = _data;
  return d._gridCounts[slot] + (d._gridCarries.empty() ? 0.0 : 65536.0 * d._gridCarries[slot]);
}

// Adds `count` cases of total weight `weight` to a slot, unless the slot would count more
// than the limit.
bool ValueStore::AddToGrid(std::size_t slot, double count, double weight) {
  Data& d = _data;
  const double total = GridCount(slot) + count;
  if (total > kGridCountLimit) return false;
  const auto whole = static_cast<std::uint64_t>(total);
  d._gridCounts[slot] = static_cast<std::uint16_t>(whole & 0xFFFF);
  if ((whole >> 16) != 0 && d._gridCarries.empty()) d._gridCarries.assign(d._gridCounts.size(), 0);
  if (!d._gridCarries.empty()) d._gridCarries[slot] = static_cast<std::uint32_t>(whole >> 16);
  if (d._weighted) d._gridWeights[slot] += weight;
  return true;
}

// The grid's slots in use: the distinct values counted.
std::size_t ValueStore::GridValues() const {
  std::size_t distinct = 0;
  for (std::size_t i = 0; i < _data._gridCounts.size(); ++i) distinct += GridCount(i) != 0.0 ? 1 : 0;
  return distinct;
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
  if (d._sorted || d._grid) return;
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
  if (d._grid) {
    entries.reserve(GridValues());
    for (std::size_t i = 0; i < d._gridCounts.size(); ++i) {
      const double cases = GridCount(i);
      if (cases == 0.0) continue;
      entries.push_back({static_cast<double>(d._low + static_cast<std::int64_t>(i)) / d._scale,
                         unweighted || !d._weighted ? cases : d._gridWeights[i]});
    }
    return entries;
  }
  entries.reserve(d._values.size());
  for (std::size_t i = 0; i < d._values.size(); ++i) {
    entries.push_back({d._values[i], unweighted || !d._weighted ? d._counts[i] : d._weights[i]});
  }
  return entries;
}

std::size_t ValueStore::GetEntryCount() const {
  return _data._grid ? GridValues() : _data._values.size();
}

bool ValueStore::IsMerging() const {
  return _data._grid || _data._hashed || _data._base == _data._values.size();
}

bool ValueStore::IsOnGrid() const {
  return _data._grid;
}
