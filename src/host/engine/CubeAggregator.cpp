// CubeAggregator.cpp - cell store of one cube: case updates and statistics per cell
#include "host/engine/CubeAggregator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <sstream>
#include <unordered_map>
#include <utility>

#include "aggregator/CellKey.h"
#include "host/QuiltAssert.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationCube.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/CaseBlock.h"
#include "host/engine/CellMoments.h"
#include "host/engine/CellStatistics.h"
#include "host/engine/StatDistributions.h"
#include "host/engine/StatValues.h"
#include "host/engine/StatisticCodeTable.h"
#include "host/engine/TableDimension.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/engine/TableMetadata.h"
#include "host/engine/ValueStore.h"

namespace {

using Codes = TableEncryptionCodes;
constexpr double kSysmis = TARN_SystemMissing();
constexpr int kMaxPositions = AggregationCube::kMaxVariables;
constexpr int kBitsPerPosition = 16;
constexpr int kSubtotalSlots = 200;
constexpr int kValueSlotBase = 256;
// Dichotomy sets of up to this many members are kept by combination of members while cases
// arrive: the largest combination code, members + 2^members - 1, must fit a key slot.
constexpr int kMaxMaskMembers = 15;

// Weights are kept with a cell's values only for a weighted order statistic or mode; the
// unweighted forms read the numbers of cases, which every store keeps.
bool ReadsWeightedValues(int prime) {
  return prime == Codes::kStatMedian || prime == Codes::kStatPtile || prime == Codes::kStatMode;
}

// The 128-bit packed key: 16 bits per position.
struct PackedKey {
  std::uint64_t _low = 0;
  std::uint64_t _high = 0;
  bool operator==(const PackedKey& other) const { return _low == other._low && _high == other._high; }
};

struct PackedKeyHash {
  std::size_t operator()(const PackedKey& key) const {
    std::uint64_t h = key._low * 0x9E3779B97F4A7C15ULL;
    h ^= (key._high + 0x632BE59BD9B4E019ULL) * 0xC2B2AE3D27D4EB4FULL;
    return static_cast<std::size_t>(h ^ (h >> 29));
  }
};

// Slot of an encoding within its 16 bits; -1 for an encoding that never holds cases.
int SlotOf(int code) {
  if (code == kCellKeyTotal) return 0;
  if (code >= 0) return code + kValueSlotBase < 65536 ? code + kValueSlotBase : -1;
  const int subtotal = -101 - code;
  return subtotal >= 0 && subtotal < kSubtotalSlots ? 1 + subtotal : -1;
}

void PutSlot(PackedKey& key, int position, int slot) {
  const int bit = position * kBitsPerPosition;
  const std::uint64_t value = static_cast<std::uint64_t>(slot);
  if (bit < 64) {
    key._low |= value << bit;
  } else {
    key._high |= value << (bit - 64);
  }
}

// The encoding at one position of a packed key.
int DecodeSlot(const PackedKey& key, int position) {
  const int bit = position * kBitsPerPosition;
  const std::uint64_t word = bit < 64 ? key._low >> bit : key._high >> (bit - 64);
  const int slot = static_cast<int>(word & 0xFFFF);
  return slot == 0 ? kCellKeyTotal : (slot >= kValueSlotBase ? slot - kValueSlotBase : -100 - slot);
}

// Weighted count, squared weights and number of cases of one population.
struct Population {
  double _w = 0.0;
  double _w2 = 0.0;
  double _u = 0.0;
  void Consume(double weight) {
    _w += weight;
    _w2 += weight * weight;
    _u += 1.0;
  }
  void Merge(const Population& other) {
    _w += other._w;
    _w2 += other._w2;
    _u += other._u;
  }
};

// One scale variable in one cell.
struct ScaleCell {
  Population _valid;
  CellMoments _weighted;
  CellMoments _unweighted;
  double _min = std::numeric_limits<double>::infinity();
  double _max = -std::numeric_limits<double>::infinity();
  ValueStore _store;  // filled only when an order statistic or mode is asked
  explicit ScaleCell(bool weighted = false) : _store(weighted) {}
  void Merge(const ScaleCell& other) {
    _valid.Merge(other._valid);
    _weighted.Merge(other._weighted);
    _unweighted.Merge(other._unweighted);
    _min = std::min(_min, other._min);
    _max = std::max(_max, other._max);
    _store.Merge(other._store);
  }
};

struct Cell {
  Population _count;
  Population _valid;
  Population _total;
  double _responses = 0.0;
  double _uResponses = 0.0;
  void Merge(const Cell& other) {
    _count.Merge(other._count);
    _valid.Merge(other._valid);
    _total.Merge(other._total);
    _responses += other._responses;
    _uResponses += other._uResponses;
  }
};

// A distinct value and its total weight, in ascending order.
using WeightedValue = ValueStore::Entry;

// What a cell or a base sums; the first five are the quantities a percentage is made of.
enum Quantity {
  kQCount = Codes::kPctOfCount,
  kQValid = Codes::kPctOfValid,
  kQTotal = Codes::kPctOfTotal,
  kQSum = Codes::kPctOfSum,
  kQResponses = Codes::kPctOfResponses,
  kQSquares,
};

}  // namespace

struct CubeAggregator::Data {
  std::vector<TableDimension*> _dimensions;
  std::vector<int> _positions;
  const TableMetadata* _metadata = nullptr;
  WeightMode _mode = kWeightNone;
  CellStatistics _cellStats;
  CellStatistics _totalStats;
  int _statPosition = -1;
  int _totalStatsDim = -1;
  double _ciLevel = 95.0;
  const std::vector<CubeAggregator*>* _siblings = nullptr;

  std::vector<int> _scaleVarIndices;  // dictionary index per local scale slot
  std::vector<int> _scaleTableSlots;  // the table's scale slot per local scale slot
  bool _keepValues = false;
  bool _keepWeights = false;  // a weighted order statistic or mode reads the values' weights

  std::unordered_map<PackedKey, std::uint32_t, PackedKeyHash> _index;
  std::vector<Cell> _cells;
  std::vector<ScaleCell> _scaleCells;  // _scaleVarIndices.size() per cell
  mutable std::unordered_map<PackedKey, std::unique_ptr<StatValues>, PackedKeyHash> _cache;

  // Positions of single variables hold only the case's own category while cases are read;
  // their totals and subtotals are merged in at CompleteCases. Sets are expanded per case,
  // since a case can stand in several of their categories but counts once in their total.
  std::vector<char> _single;
  bool _complete = false;
  std::vector<PackedKey> _cellKeys;  // the key of each cell, parallel to _cells
  std::vector<int> _overflowVarIndices;  // scale variables whose statistics overflowed (Complete)

  // Values near the largest double (1e308) add up past it, in a cell or in a total: the
  // statistics then show as missing, and the table says why.
  void NoteOverflows() {
    const std::size_t scales = ScaleCount();
    _overflowVarIndices.clear();
    for (std::size_t cellIndex = 0; cellIndex < _cells.size(); ++cellIndex) {
      for (std::size_t s = 0; s < scales; ++s) {
        const ScaleCell& scale = _scaleCells[cellIndex * scales + s];
        bool finite = true;
        for (const CellMoments* moments : {&scale._weighted, &scale._unweighted}) {
          finite = finite && std::isfinite(moments->_mean) && std::isfinite(moments->_sumSquares) &&
                   std::isfinite(moments->GetSum());
        }
        const int varIndex = _scaleVarIndices[s];
        if (!finite && std::find(_overflowVarIndices.begin(), _overflowVarIndices.end(), varIndex) ==
                           _overflowVarIndices.end()) {
          _overflowVarIndices.push_back(varIndex);
        }
      }
    }
  }

  // While reading, cells of small encodings are found by direct index instead of by hash:
  // position i holds encodings -1 (total) .. _denseCapacity - 2 at stride _denseStride[i].
  // The slot holds the cell index + 1, 0 for none. It is only a cache of the hash index, so
  // it starts small and grows, up to _denseLimit, when larger encodings arrive: a table of
  // many stacked terms costs memory for the categories it meets, not 256 KB per cube.
  std::vector<std::uint32_t> _dense;
  std::vector<std::size_t> _denseStride;
  int _denseCapacity = 0;
  int _denseLimit = 0;      // largest capacity per position; 0: no direct index
  int _largestShifted = 0;  // largest encoding + 1 that the hash path met at a position

  // Sizes the direct index for `capacity` encodings per position, empty: the cells stay in
  // the hash index, and the direct index fills again as cases find them there.
  void ResizeDense(int capacity) {
    _denseCapacity = capacity;
    _denseStride.clear();
    std::size_t stride = 1;
    for (std::size_t i = 0; i < _positions.size(); ++i) {
      _denseStride.push_back(stride);
      stride *= static_cast<std::size_t>(capacity);
    }
    _dense.assign(stride, 0);
  }

  // Before a block: sizes the direct index on first use, and grows it when the hash path
  // has met encodings beyond it.
  void PrepareDense() {
    if (_denseLimit == 0) return;
    if (_denseCapacity > 0 && (_largestShifted < _denseCapacity || _denseCapacity == _denseLimit)) return;
    // A first size of about 64 slots whatever the key length, at least 2 per position (a
    // cube without categorical variables has one slot, whatever its capacity).
    int capacity = _denseCapacity;
    if (capacity == 0) {
      const double positions = static_cast<double>(std::max<std::size_t>(_positions.size(), 1));
      capacity = std::max(2, static_cast<int>(std::floor(std::pow(64.0, 1.0 / positions))));
    }
    while (capacity <= _largestShifted && capacity < _denseLimit) capacity *= 2;
    ResizeDense(std::min(capacity, _denseLimit));
  }

  // Per-block and per-case scratch, kept to avoid allocations on the hot path: each
  // position's codes (single variables) and each position's entries for one case.
  std::vector<const int*> _codes;
  std::vector<const char*> _missingFlags;
  std::vector<DimensionEntry> _singleEntries;
  std::vector<const DimensionEntry*> _lists;
  std::vector<std::size_t> _listSizes;
  std::vector<std::size_t> _odometer;
  bool _allSingle = true;
  int _setPosition = -1;  // the one set position of a cube whose other positions are single variables
  std::vector<std::uint32_t> _setCells;  // the cells of one case's set entries
  TableDimension::SetBlock _setBlock{};  // the set's results for the current block
  // A dichotomy set of at most kMaxMaskMembers members at the set position: while cases
  // arrive its cells are kept by the combination of members counted, encoded as
  // _maskMembers + mask, and Complete hands each such cell to every member it holds and to
  // the set's total. 0 for any other cube.
  int _maskMembers = 0;

  // Adds case k of the block to one cell. `valid` and `responses` come from the case's
  // entry at the position carrying the statistics (true and 0 without one); a case in the
  // hidden bucket only enters TOTAL. While cases arrive TOTAL holds the bucket's cases
  // alone: every other case is in COUNT too, and Complete adds COUNT in once rather than
  // every case twice.
  void Update(std::uint32_t where, const CaseBlock& block, std::size_t k, bool bucket, bool valid,
              double responses) {
    const double w = block._weights[k];
    Cell& cell = _cells[where];
    if (bucket) {
      cell._total.Consume(w);
      return;
    }
    cell._count.Consume(w);
    if (valid) cell._valid.Consume(w);
    cell._responses += w * responses;
    cell._uResponses += responses;
    const std::size_t scales = ScaleCount();
    for (std::size_t s = 0; s < scales; ++s) {
      const std::size_t at = static_cast<std::size_t>(_scaleTableSlots[s]) * block._scaleStride + k;
      if (!block._scaleValid[at]) continue;
      const double x = block._scaleValues[at];
      ScaleCell& scale = _scaleCells[where * scales + s];
      scale._valid.Consume(w);
      scale._weighted.Consume(x, w);
      scale._unweighted.Consume(x, 1.0);
      scale._min = std::min(scale._min, x);
      scale._max = std::max(scale._max, x);
      if (_keepValues) scale._store.Add(x, w);
    }
  }

  std::uint32_t Insert(const PackedKey& key) {
    auto inserted = _index.try_emplace(key, static_cast<std::uint32_t>(_cells.size()));
    if (inserted.second) {
      _cells.emplace_back();
      _cellKeys.push_back(key);
      _scaleCells.resize(_scaleCells.size() + ScaleCount(), ScaleCell(_mode != kWeightNone && _keepWeights));
    }
    return inserted.first->second;
  }

  /// The cell of a key whose code at position i is `codeAt(i)`: read from the dense table
  /// when the key fits it (`dense`, at `denseIndex`), else found in the index or inserted,
  /// and then noted in the dense table.
  template <typename CodeAt>
  std::uint32_t CellOf(bool dense, std::size_t denseIndex, const CodeAt& codeAt) {
    if (dense && _dense[denseIndex] != 0) return _dense[denseIndex] - 1;
    PackedKey key;
    for (std::size_t i = 0; i < _positions.size(); ++i) {
      const int slot = SlotOf(codeAt(i));
      QUILT_ASSERT(slot >= 0, "a category encoding does not fit the cell key");
      PutSlot(key, static_cast<int>(i), slot);
    }
    const std::uint32_t where = Insert(key);
    if (dense) _dense[denseIndex] = where + 1;
    return where;
  }

  /// The codes at each position of the keys a leaf cell `leafKey` contributes to: its own,
  /// its subtotal and the total of a single variable; for a combination cell of a dichotomy
  /// set each member counted, its subtotals and the total, with the members counted
  /// (`maskResponses`) and those of each subtotal (`subtotalResponses`).
  void ContributionOptions(const PackedKey& leafKey, std::vector<std::vector<int>>& options, double& maskResponses,
                           std::map<int, double>& subtotalResponses) const;
  bool AddCaseAsMask(const CaseBlock& block, std::size_t k, std::uint64_t mask);
  bool AddCaseWithOneSet(const CaseBlock& block, std::size_t k);
  void AddCaseGeneral(const CaseBlock& block, std::size_t k);

  std::size_t ScaleCount() const { return _scaleVarIndices.size(); }

  int LocalScaleSlot(int varIndex) const {
    for (std::size_t i = 0; i < _scaleVarIndices.size(); ++i) {
      if (_scaleVarIndices[i] == varIndex) return static_cast<int>(i);
    }
    return -1;
  }

  bool Pack(const int* codes, PackedKey& key) const {
    for (std::size_t i = 0; i < _positions.size(); ++i) {
      const int slot = SlotOf(codes[i]);
      if (slot < 0) return false;
      PutSlot(key, static_cast<int>(i), slot);
    }
    return true;
  }

  const Cell* Find(const int* codes, std::uint32_t* where = nullptr) const {
    PackedKey key;
    if (!Pack(codes, key)) return nullptr;
    auto found = _index.find(key);
    if (found == _index.end()) return nullptr;
    if (where != nullptr) *where = found->second;
    return &_cells[found->second];
  }

  const ScaleCell* FindScale(const int* codes, int localSlot) const {
    std::uint32_t where = 0;
    if (localSlot < 0 || Find(codes, &where) == nullptr) return nullptr;
    return &_scaleCells[where * ScaleCount() + static_cast<std::size_t>(localSlot)];
  }

  std::vector<int> CodesOf(const CellKey& key) const {
    QUILT_ASSERT(key.GetLength() == static_cast<int>(_positions.size()),
                 "cell key length differs from the cube's key length");
    std::vector<int> codes(_positions.size());
    for (std::size_t i = 0; i < codes.size(); ++i) codes[i] = key[static_cast<int>(i)];
    return codes;
  }

  double EffectiveN(const Population& p, bool unweighted) const {
    if (unweighted || _mode == kWeightNone) return p._u;
    if (_mode == kWeightFrequency) return p._w;
    return p._w2 > 0.0 ? p._w * p._w / p._w2 : kSysmis;
  }

  double Denominator(double w, double w2, double u, bool unweighted) const {
    if (unweighted || _mode == kWeightNone) return u - 1.0;
    if (_mode == kWeightFrequency) return w - 1.0;
    return w > 0.0 ? w - w2 / w : -1.0;
  }

  static double Of(const Population& p, bool unweighted) { return unweighted ? p._u : p._w; }

  double ZValue() const { return StatDistributions::NormalQuantile(1.0 - (1.0 - _ciLevel / 100.0) / 2.0); }

  // The amount of a quantity in one cell of this cube; `varIndex` names the scale
  // variable where the quantity is about one.
  double QuantityOf(const int* codes, Quantity quantity, int varIndex, bool unweighted,
                    Population* population = nullptr) const {
    const Cell* cell = Find(codes);
    if (cell == nullptr) return 0.0;
    const int local = varIndex >= 0 ? LocalScaleSlot(varIndex) : -1;
    const ScaleCell* scale = local >= 0 ? FindScale(codes, local) : nullptr;
    const Population* chosen = nullptr;
    switch (quantity) {
      case kQCount:
        chosen = &cell->_count;
        break;
      case kQValid:
        chosen = scale != nullptr ? &scale->_valid : &cell->_valid;
        break;
      case kQTotal:
        chosen = scale != nullptr ? &cell->_count : &cell->_total;
        break;
      case kQSum: {
        if (scale == nullptr) return 0.0;
        return (unweighted ? scale->_unweighted : scale->_weighted).GetSum();
      }
      case kQSquares: {
        // Σ w x² from the moments, never Σwx² accumulated directly.
        if (scale == nullptr) return 0.0;
        return (unweighted ? scale->_unweighted : scale->_weighted).GetSumOfSquaredValues();
      }
      case kQResponses:
        return unweighted ? cell->_uResponses : cell->_responses;
    }
    if (population != nullptr) population->Merge(*chosen);
    return Of(*chosen, unweighted);
  }

  bool SameTerm(const Data& other, int position) const {
    std::vector<TableDimension*> mine;
    std::vector<TableDimension*> theirs;
    for (std::size_t i = 0; i < _positions.size(); ++i) {
      if (_positions[i] == position) mine.push_back(_dimensions[i]);
    }
    for (std::size_t i = 0; i < other._positions.size(); ++i) {
      if (other._positions[i] == position) theirs.push_back(other._dimensions[i]);
    }
    return mine == theirs;
  }

  // The codes of `codes` at the kept positions of another cube with the same terms there.
  std::vector<int> MapKey(const Data& other, const int* codes, bool keepRow, bool keepCol,
                          bool keepLayer) const {
    std::vector<int> mapped(other._positions.size(), kCellKeyTotal);
    int ordinal[4] = {0, 0, 0, 0};
    for (std::size_t j = 0; j < other._positions.size(); ++j) {
      const int kind = other._positions[j];
      const int n = ordinal[kind]++;
      const bool keep = (kind == Codes::kDimensionRow && keepRow) ||
                        (kind == Codes::kDimensionColumn && keepCol) ||
                        (kind == Codes::kDimensionLayer && keepLayer);
      if (!keep) continue;
      int seen = 0;
      for (std::size_t i = 0; i < _positions.size(); ++i) {
        if (_positions[i] != kind) continue;
        if (seen++ == n) mapped[j] = codes[i];
      }
    }
    return mapped;
  }

  // The base of a percentage of base b for the cell `codes`.
  double BaseOf(const int* codes, int base, Quantity quantity, int varIndex, bool unweighted,
                Population* population) const {
    std::vector<int> own(codes, codes + _positions.size());
    int innerRow = -1;
    int innerCol = -1;
    for (std::size_t i = 0; i < _positions.size(); ++i) {
      if (_positions[i] == Codes::kDimensionRow) innerRow = static_cast<int>(i);
      if (_positions[i] == Codes::kDimensionColumn) innerCol = static_cast<int>(i);
      if (_positions[i] == Codes::kDimensionExtra) own[i] = kCellKeyTotal;
    }
    switch (base) {
      case 0:  // ROW
        if (innerCol >= 0) own[static_cast<unsigned>(innerCol)] = kCellKeyTotal;
        return QuantityOf(own.data(), quantity, varIndex, unweighted, population);
      case 1:  // COL
        if (innerRow >= 0) own[static_cast<unsigned>(innerRow)] = kCellKeyTotal;
        return QuantityOf(own.data(), quantity, varIndex, unweighted, population);
      case 3:  // SUBTABLE
        if (innerRow >= 0) own[static_cast<unsigned>(innerRow)] = kCellKeyTotal;
        if (innerCol >= 0) own[static_cast<unsigned>(innerCol)] = kCellKeyTotal;
        return QuantityOf(own.data(), quantity, varIndex, unweighted, population);
      default:
        break;
    }
    const bool keepRow = base == 5;
    const bool keepCol = base == 6;
    const bool keepLayer = base != 2;
    const bool needRow = base == 5;
    const bool needCol = base == 6;
    double sum = 0.0;
    auto addFrom = [&](const Data& other) {
      if (keepLayer && !SameTerm(other, Codes::kDimensionLayer)) return;
      if (needRow && !SameTerm(other, Codes::kDimensionRow)) return;
      if (needCol && !SameTerm(other, Codes::kDimensionColumn)) return;
      const std::vector<int> mapped = MapKey(other, codes, keepRow, keepCol, keepLayer);
      sum += other.QuantityOf(mapped.data(), quantity, varIndex, unweighted, population);
    };
    if (_siblings == nullptr || _siblings->empty()) {
      addFrom(*this);
    } else {
      bool sawSelf = false;
      for (const CubeAggregator* sibling : *_siblings) {
        sawSelf = sawSelf || sibling->_data.get() == this;
        addFrom(*sibling->_data);
      }
      // Axis cubes are no sub-table of the table: their bases are their own.
      if (!sawSelf) {
        sum = 0.0;
        if (population != nullptr) *population = Population();
        addFrom(*this);
      }
    }
    return sum;
  }

  // Merged (value, weight) pairs of a scale cell in ascending order.
  static std::vector<WeightedValue> Distribution(const ScaleCell& scale, bool unweighted) {
    return scale._store.Distribution(unweighted);
  }

  static double Percentile(const std::vector<WeightedValue>& merged, double q) {
    if (merged.empty()) return kSysmis;
    double total = 0.0;
    for (const WeightedValue& pair : merged) total += pair._weight;
    const double target = q * total;
    const double tolerance = 1e-10 * total;
    double cumulative = 0.0;
    for (std::size_t j = 0; j < merged.size(); ++j) {
      cumulative += merged[j]._weight;
      if (j + 1 < merged.size() && std::fabs(cumulative - target) <= tolerance) {
        return (merged[j]._value + merged[j + 1]._value) / 2.0;
      }
      if (cumulative > target + tolerance) return merged[j]._value;
    }
    return merged.back()._value;
  }

  // The k-th weighted order statistic out of n (ranks from 1).
  static double OrderStatistic(const std::vector<WeightedValue>& merged, double k, double n) {
    double total = 0.0;
    for (const WeightedValue& pair : merged) total += pair._weight;
    double cumulative = 0.0;
    for (const WeightedValue& pair : merged) {
      cumulative += pair._weight;
      if (cumulative / total >= k / n - 1e-10) return pair._value;
    }
    return merged.empty() ? kSysmis : merged.back()._value;
  }

  AggregationResult Compute(const int* codes, const Cell& cell, const AggregationStatistic& statistic) const;
  AggregationResult ComputePercentage(const int* codes, const StatisticCodeInfo& info, int varIndex) const;
  AggregationResult ComputeScale(const int* codes, const StatisticCodeInfo& info,
                                 const AggregationStatistic& statistic) const;
};

CubeAggregator::CubeAggregator(std::vector<TableDimension*> dimensions, std::vector<int> positions,
                               const TableMetadata* metadata, WeightMode weightMode)
    : _data(std::make_unique<Data>()) {
  QUILT_ASSERT(dimensions.size() == positions.size(), "one position per cube variable");
  QUILT_ASSERT(static_cast<int>(dimensions.size()) <= kMaxPositions,
               "a cube has at most eight key positions (the parser refuses more)");
  _data->_dimensions = std::move(dimensions);
  _data->_positions = std::move(positions);
  _data->_metadata = metadata;
  _data->_mode = weightMode;
  const std::size_t keyLength = _data->_positions.size();
  _data->_codes.resize(keyLength);
  _data->_missingFlags.resize(keyLength);
  _data->_singleEntries.resize(keyLength);
  _data->_lists.resize(keyLength);
  _data->_listSizes.resize(keyLength);
  int sets = 0;
  for (std::size_t i = 0; i < keyLength; ++i) {
    const bool single = _data->_dimensions[i]->IsSingleVariable();
    _data->_single.push_back(single ? 1 : 0);
    _data->_allSingle = _data->_allSingle && single;
    if (!single) {
      ++sets;
      _data->_setPosition = static_cast<int>(i);
    }
  }
  if (sets != 1) _data->_setPosition = -1;
  if (_data->_setPosition >= 0) {
    const int members =
        _data->_dimensions[static_cast<unsigned>(_data->_setPosition)]->GetDichotomyMemberCount();
    if (members > 0 && members <= kMaxMaskMembers) _data->_maskMembers = members;
  }
  // 65,536 direct slots (256 KB) at most, shared evenly by the positions.
  const std::size_t n = _data->_positions.size();
  int capacity = 1 << 16;
  if (n > 0) capacity = static_cast<int>(std::floor(std::pow(double(1 << 16), 1.0 / double(n))));
  if (capacity >= 4) _data->_denseLimit = capacity;
  _data->_odometer.resize(_data->_positions.size());
}

CubeAggregator::~CubeAggregator() = default;

int CubeAggregator::GetKeyLength() const {
  return static_cast<int>(_data->_positions.size());
}
bool CubeAggregator::IsCubeEmpty() const {
  return _data->_cells.empty();
}

double CubeAggregator::GetCount(const CellKey& key, bool weighted, bool squared) const {
  const std::vector<int> codes = _data->CodesOf(key);
  const Cell* cell = _data->Find(codes.data());
  if (cell == nullptr) return 0.0;
  if (squared) return _data->_mode == kWeightNone ? cell->_count._u : cell->_count._w2;
  return weighted ? cell->_count._w : cell->_count._u;
}

int CubeAggregator::GetMeanVarIndex(int statVarIndex, bool weighted) const {
  const int local = _data->LocalScaleSlot(statVarIndex);
  return local < 0 ? -1 : local * 2 + (weighted ? 0 : 1);
}

const CellMoments* CubeAggregator::GetCountMeanVariance(int record, const CellKey& key) const {
  QUILT_ASSERT(record >= 0 && record < static_cast<int>(_data->ScaleCount()) * 2,
               "no such moment record in this cube");
  const std::vector<int> codes = _data->CodesOf(key);
  const ScaleCell* scale = _data->FindScale(codes.data(), record / 2);
  if (scale == nullptr || scale->_valid._u == 0.0) return nullptr;
  return &(record % 2 == 0 ? scale->_weighted : scale->_unweighted);
}

const double* CubeAggregator::GetValuePtr(int record, const CellKey& key) const {
  const CellMoments* moments = GetCountMeanVariance(record, key);
  return moments == nullptr ? nullptr : &moments->_weight;
}

namespace {

// Encodings of a category vector; false when a computed category is among them, or when
// the carried category has no counterpart in the variable at its position.
bool EncodingsOf(const std::vector<const AggregationCategory*>& categories, int carriedIndex,
                 const std::vector<TableDimension*>& dimensions, std::vector<int>& codes) {
  const int length = static_cast<int>(dimensions.size());
  codes.assign(static_cast<std::size_t>(length), kCellKeyTotal);
  const int n = std::min(length, static_cast<int>(categories.size()));
  for (int i = 0; i < n; ++i) {
    const AggregationCategory* category = categories[static_cast<unsigned>(i)];
    if (category == nullptr || category->GetCatType() == AggregationCategory::kTotal) continue;
    if (category->GetCatType() == AggregationCategory::kPcompute ||
        category->GetCatType() == AggregationCategory::kNone) {
      return false;
    }
    // The header of stacked variables whose labels moved holds the first variable's
    // categories; encodings are each variable's own, so the carried one is translated.
    if (i == carriedIndex) {
      category = dimensions[static_cast<unsigned>(i)]->FindCounterpart(*category);
      if (category == nullptr) return false;
    }
    codes[static_cast<unsigned>(i)] = category->GetCatEncoding();
  }
  return true;
}

}  // namespace

int CubeAggregator::GetCellStatus(const std::vector<const AggregationCategory*>& categories,
                                  int carriedIndex) const {
  std::vector<int> codes;
  if (!EncodingsOf(categories, carriedIndex, _data->_dimensions, codes)) return 0;
  const Cell* cell = _data->Find(codes.data());
  return cell != nullptr && cell->_total._u > 0.0 ? 1 : 0;
}

StatValues* CubeAggregator::GetStatValues(const std::vector<const AggregationCategory*>& categories,
                                          int carriedIndex) const {
  std::vector<int> codes;
  if (!EncodingsOf(categories, carriedIndex, _data->_dimensions, codes)) return nullptr;
  CellKey key(GetKeyLength());
  for (int i = 0; i < GetKeyLength(); ++i) key[i] = codes[static_cast<unsigned>(i)];
  return GetStatValuesByKey(key);
}

StatValues* CubeAggregator::GetStatValuesByKey(const CellKey& key) const {
  const std::vector<int> codes = _data->CodesOf(key);
  PackedKey packed;
  if (!_data->Pack(codes.data(), packed)) return nullptr;
  auto cached = _data->_cache.find(packed);
  if (cached != _data->_cache.end()) return cached->second.get();
  const Cell* cell = _data->Find(codes.data());
  if (cell == nullptr || cell->_total._u == 0.0) return nullptr;
  bool isTotal = false;
  const int dim = _data->_totalStatsDim;
  if (dim >= 0 && _data->_totalStats.Size() > 0) {
    const int code = codes[static_cast<unsigned>(dim)];
    isTotal = code == kCellKeyTotal || (code <= -101 && code > -101 - kSubtotalSlots);
  }
  const CellStatistics& list = isTotal ? _data->_totalStats : _data->_cellStats;
  std::vector<AggregationResult> values;
  values.reserve(static_cast<std::size_t>(list.Size()));
  for (const AggregationStatistic& statistic : list.GetList()) {
    values.push_back(_data->Compute(codes.data(), *cell, statistic));
  }
  auto result = std::make_unique<StatValues>(&list, isTotal, std::move(values));
  StatValues* pointer = result.get();
  _data->_cache.emplace(packed, std::move(result));
  return pointer;
}

const CellStatistics* CubeAggregator::GetCellStats() const {
  return &_data->_cellStats;
}
const CellStatistics* CubeAggregator::GetTotalStats() const {
  return &_data->_totalStats;
}
int CubeAggregator::GetTotalStatsDimIndex() const {
  return _data->_totalStatsDim;
}

void CubeAggregator::DeclareStatistics(const std::vector<AggregationStatistic>& cellList,
                                       const std::vector<AggregationStatistic>& totalList, int statPosition) {
  QUILT_ASSERT(statPosition < GetKeyLength(), "the statistics variable is not in the cube");
  QUILT_ASSERT(_data->_cells.empty(), "statistics are declared before the cases");
  _data->_cellStats = CellStatistics(cellList);
  _data->_totalStats = CellStatistics(totalList);
  _data->_statPosition = statPosition;
  _data->_totalStatsDim = totalList.empty() ? -1 : statPosition;
  for (const auto* list : {&cellList, &totalList}) {
    for (const AggregationStatistic& statistic : *list) {
      int prime = 0;
      int conf = 0;
      QUILT_ASSERT(AggregationStatistic::GetStatPrimeAndConf(statistic.GetCode(), prime, conf),
                   "a cube was given a statistic code that does not exist");
      if (prime == Codes::kStatPtile || prime == Codes::kStatUPtile) {
        QUILT_ASSERT(statistic.GetPTileCutPoint() >= 0.0 && statistic.GetPTileCutPoint() <= 100.0,
                     "a percentile needs its cut point");
      }
      if (prime == Codes::kStatMedian || prime == Codes::kStatUMedian || prime == Codes::kStatPtile ||
          prime == Codes::kStatUPtile || prime == Codes::kStatMode || prime == Codes::kStatUMode) {
        _data->_keepValues = true;
      }
      _data->_keepWeights = _data->_keepWeights || ReadsWeightedValues(prime);
      if (statistic.GetVarIndex() >= 0 && statPosition < 0 &&
          _data->LocalScaleSlot(statistic.GetVarIndex()) < 0) {
        _data->_scaleVarIndices.push_back(statistic.GetVarIndex());
        _data->_scaleTableSlots.push_back(
            const_cast<TableMetadata*>(_data->_metadata)->ScaleSlotFor(statistic.GetVarIndex()));
      }
    }
  }
}

void CubeAggregator::SetCILevel(double level) {
  QUILT_ASSERT(level > 0.0 && level < 100.0, "a confidence level lies between 0 and 100");
  _data->_ciLevel = level;
}

void CubeAggregator::SetSiblings(const std::vector<CubeAggregator*>* siblings) {
  _data->_siblings = siblings;
}

void CubeAggregator::AddBlock(const CaseBlock& block) {
  Data& d = *_data;
  QUILT_ASSERT(!d._complete, "cases arrive before CompleteCases or after ResetAggregator");
  const std::size_t n = d._positions.size();
  for (std::size_t i = 0; i < n; ++i) {
    d._codes[i] = d._dimensions[i]->GetBlockCodes();
    d._missingFlags[i] = d._dimensions[i]->GetMissingFlags();
  }
  d.PrepareDense();
  // A cube keeping its dichotomy set by combination of members reads the bits only; any
  // other cube with one set reads its entries.
  const std::uint64_t* masks = nullptr;
  if (d._maskMembers > 0) {
    masks = d._dimensions[static_cast<unsigned>(d._setPosition)]->GetBlockMasks();
  } else if (d._setPosition >= 0) {
    d._setBlock = d._dimensions[static_cast<unsigned>(d._setPosition)]->GetSetBlock();
  }
  const int* statCodes = d._statPosition >= 0 ? d._codes[static_cast<unsigned>(d._statPosition)] : nullptr;
  const char* statFlags =
      d._statPosition >= 0 ? d._missingFlags[static_cast<unsigned>(d._statPosition)] : nullptr;
  const double responses = d._statPosition >= 0 ? 1.0 : 0.0;
  // The common case: single variables only, each case in one value category whose cell
  // is found by direct index. Anything else (a bucket or excluded case, a new cell, a
  // large encoding) takes the general path for that case.
  const bool fast = d._allSingle && d._denseCapacity > 0;
  const unsigned capacity = static_cast<unsigned>(d._denseCapacity);
  for (std::size_t k = 0; k < block._size; ++k) {
    if (fast) {
      std::size_t denseIndex = 0;
      std::size_t i = 0;
      for (; i < n; ++i) {
        // A negative code wraps to a large unsigned value and fails the test.
        const unsigned shifted = static_cast<unsigned>(d._codes[i][k]) + 1u;
        if (shifted >= capacity || shifted == 0u) break;
        denseIndex += shifted * d._denseStride[i];
      }
      const std::uint32_t slot = i == n ? d._dense[denseIndex] : 0;
      if (slot != 0) {
        const bool valid = statCodes == nullptr || !statFlags[statCodes[k]];
        d.Update(slot - 1, block, k, /*bucket=*/false, valid, responses);
        continue;
      }
    }
    if (masks != nullptr) {
      // A case the combination cells cannot take could not take the one-set path either.
      if (d.AddCaseAsMask(block, k, masks[k])) continue;
    } else if (d._setPosition >= 0 && d._denseCapacity > 0 && d.AddCaseWithOneSet(block, k)) {
      continue;
    }
    d.AddCaseGeneral(block, k);
  }
}

// A case at a small dichotomy set and single variables goes to one cell: the one of its
// combination of members counted. A case without a counted member is missing on the set:
// it goes to the hidden bucket at the set's total when the set carries the statistics, and
// nowhere otherwise. A case missing or left out on a single variable returns false for the
// general path.
bool CubeAggregator::Data::AddCaseAsMask(const CaseBlock& block, std::size_t k, std::uint64_t mask) {
  const bool statAtSet = _statPosition == _setPosition;
  if (mask == 0 && !statAtSet) {
    for (std::size_t i = 0; i < _positions.size(); ++i) {
      if (static_cast<int>(i) != _setPosition && _codes[i][k] < 0) return false;
    }
    return true;
  }
  const std::size_t n = _positions.size();
  const std::size_t setPosition = static_cast<std::size_t>(_setPosition);
  const int setCode = mask == 0 ? kCellKeyTotal : _maskMembers + static_cast<int>(mask);
  std::size_t denseIndex = 0;
  bool dense = _denseCapacity > 0;
  for (std::size_t i = 0; i < n; ++i) {
    const int code = i == setPosition ? setCode : _codes[i][k];
    if (code < 0 && code != kCellKeyTotal) return false;
    if (i != setPosition && code < 0) return false;
    const int shifted = code == kCellKeyTotal ? 0 : code + 1;
    _largestShifted = std::max(_largestShifted, shifted);
    dense = dense && shifted < _denseCapacity;
    if (dense) denseIndex += static_cast<std::size_t>(shifted) * _denseStride[i];
  }
  const std::uint32_t where =
      CellOf(dense, denseIndex, [&](std::size_t i) { return i == setPosition ? setCode : _codes[i][k]; });
  // A set carrying the statistics gets its responses when Complete knows the cells: a
  // dichotomy member is never a category flagged missing.
  if (statAtSet || _statPosition < 0) {
    Update(where, block, k, /*bucket=*/mask == 0, /*valid=*/true, /*responses=*/0.0);
  } else {
    const int statCode = _codes[static_cast<unsigned>(_statPosition)][k];
    Update(where, block, k, /*bucket=*/false, !_missingFlags[static_cast<unsigned>(_statPosition)][statCode],
           /*responses=*/1.0);
  }
  return true;
}

// A case at one set and single variables, every cell it reaches found by direct index:
// the cells of the single positions are fixed, and the set's entries (its categories and
// its total) pick one cell each. False, with nothing added, when the case needs the
// general path.
bool CubeAggregator::Data::AddCaseWithOneSet(const CaseBlock& block, std::size_t k) {
  const std::size_t n = _positions.size();
  const std::size_t setPosition = static_cast<std::size_t>(_setPosition);
  const unsigned capacity = static_cast<unsigned>(_denseCapacity);
  std::size_t base = 0;
  for (std::size_t i = 0; i < n; ++i) {
    if (i == setPosition) continue;
    const unsigned shifted = static_cast<unsigned>(_codes[i][k]) + 1u;
    if (shifted >= capacity || shifted == 0u) return false;
    base += shifted * _denseStride[i];
  }
  if (_setBlock._states[k] != TableDimension::kCaseInCategories) return false;
  const std::size_t count = _setBlock._offsets[k + 1] - _setBlock._offsets[k];
  const DimensionEntry* entries = _setBlock._entries + _setBlock._offsets[k];
  if (_setCells.size() < count) _setCells.resize(count);
  for (std::size_t j = 0; j < count; ++j) {
    const int code = entries[j]._code;
    const unsigned shifted = code == kCellKeyTotal ? 0u : static_cast<unsigned>(code) + 1u;
    if (code != kCellKeyTotal && (code < 0 || shifted >= capacity)) return false;
    const std::uint32_t slot = _dense[base + shifted * _denseStride[setPosition]];
    if (slot == 0) return false;
    _setCells[j] = slot - 1;
  }
  const bool statAtSet = _statPosition == _setPosition;
  const int* statCodes =
      _statPosition >= 0 && !statAtSet ? _codes[static_cast<unsigned>(_statPosition)] : nullptr;
  const bool singleValid =
      statCodes == nullptr || !_missingFlags[static_cast<unsigned>(_statPosition)][statCodes[k]];
  const double singleResponses = _statPosition >= 0 ? 1.0 : 0.0;
  for (std::size_t j = 0; j < count; ++j) {
    if (statAtSet) {
      Update(_setCells[j], block, k, /*bucket=*/false, !entries[j]._missingCategory, entries[j]._responses);
    } else {
      Update(_setCells[j], block, k, /*bucket=*/false, singleValid, singleResponses);
    }
  }
  return true;
}

void CubeAggregator::Data::AddCaseGeneral(const CaseBlock& block, std::size_t k) {
  const std::size_t n = _positions.size();
  bool bucket = false;
  TableDimension* statDimension =
      _statPosition >= 0 ? _dimensions[static_cast<unsigned>(_statPosition)] : nullptr;
  for (std::size_t i = 0; i < n; ++i) {
    TableDimension* dimension = _dimensions[i];
    TableDimension::CaseState state = TableDimension::kCaseInCategories;
    if (_codes[i] != nullptr) {
      const int code = _codes[i][k];
      if (code == TableDimension::kBlockExcluded) state = TableDimension::kCaseExcluded;
      if (code == TableDimension::kBlockMissing) state = TableDimension::kCaseMissing;
      if (code >= 0) {
        _singleEntries[i] = DimensionEntry{code, 1.0, _missingFlags[i][code] != 0};
        _lists[i] = &_singleEntries[i];
        _listSizes[i] = 1;
      }
    } else {
      state = dimension->GetBlockState(k);
      if (state == TableDimension::kCaseInCategories)
        _lists[i] = dimension->GetBlockEntries(k, _listSizes[i]);
    }
    switch (state) {
      case TableDimension::kCaseExcluded:
        return;
      case TableDimension::kCaseMissing:
        // Only the variable carrying the statistics keeps such a case, in its hidden
        // bucket, for the TOTALN bases.
        if (dimension != statDimension) return;
        bucket = true;
        _lists[i] = dimension->GetTotalOnlyEntries().data();
        _listSizes[i] = 1;
        break;
      case TableDimension::kCaseInCategories:
        break;
    }
    _odometer[i] = 0;
  }
  while (true) {
    const DimensionEntry* statEntry = nullptr;
    std::size_t denseIndex = 0;
    bool dense = _denseCapacity > 0;
    for (std::size_t i = 0; i < n; ++i) {
      const DimensionEntry& entry = _lists[i][_odometer[i]];
      const int shifted = entry._code == kCellKeyTotal ? 0 : entry._code + 1;
      if (entry._code >= 0) _largestShifted = std::max(_largestShifted, shifted);
      dense = dense && shifted < _denseCapacity && (entry._code >= 0 || entry._code == kCellKeyTotal);
      denseIndex += static_cast<std::size_t>(shifted) * (dense ? _denseStride[i] : 0);
      if (static_cast<int>(i) == _statPosition) statEntry = &entry;
    }
    const std::uint32_t where =
        CellOf(dense, denseIndex, [this](std::size_t i) { return _lists[i][_odometer[i]]._code; });
    const bool valid = statEntry == nullptr || !statEntry->_missingCategory;
    Update(where, block, k, bucket, valid, statEntry != nullptr ? statEntry->_responses : 0.0);
    // Next combination of entries.
    std::size_t i = 0;
    for (; i < n; ++i) {
      if (!_single[i] && ++_odometer[i] < _listSizes[i]) break;
      _odometer[i] = 0;
    }
    if (i == n) break;
  }
}

void CubeAggregator::Data::ContributionOptions(const PackedKey& leafKey, std::vector<std::vector<int>>& options,
                                               double& maskResponses,
                                               std::map<int, double>& subtotalResponses) const {
  for (std::size_t i = 0; i < options.size(); ++i) {
    const int code = DecodeSlot(leafKey, static_cast<int>(i));
    options[i].assign(1, code);
    if (_single[i] && code != kCellKeyTotal) {
      const int subtotal = _dimensions[i]->SubtotalOf(code);
      if (subtotal != 0) options[i].push_back(subtotal);
      options[i].push_back(kCellKeyTotal);
    }
    if (static_cast<int>(i) == _setPosition && _maskMembers > 0 && code >= _maskMembers) {
      // A combination cell: each member counted, then the set's total.
      options[i].clear();
      subtotalResponses.clear();
      const std::uint64_t mask = static_cast<std::uint64_t>(code - _maskMembers);
      for (int member = 0; member < _maskMembers; ++member) {
        if (mask & (std::uint64_t{1} << member)) {
          options[i].push_back(member);
          maskResponses += 1.0;
          // A subtotal takes the cell once, with the responses of its members.
          const int subtotal = _dimensions[i]->SubtotalOf(member);
          if (subtotal == 0) continue;
          if (subtotalResponses.find(subtotal) == subtotalResponses.end()) options[i].push_back(subtotal);
          subtotalResponses[subtotal] += 1.0;
        }
      }
      options[i].push_back(kCellKeyTotal);
    }
  }
}

void CubeAggregator::Complete() {
  Data& d = *_data;
  if (d._complete) return;
  d._complete = true;
  const std::size_t n = d._positions.size();
  const std::size_t scales = d.ScaleCount();
  // Take the leaf cells out and merge each into every key it contributes to.
  std::vector<PackedKey> leafKeys = std::move(d._cellKeys);
  std::vector<Cell> cells = std::move(d._cells);
  std::vector<ScaleCell> scaleCells = std::move(d._scaleCells);
  d._index.clear();
  d._cells.clear();
  d._cellKeys.clear();
  d._scaleCells.clear();
  std::fill(d._dense.begin(), d._dense.end(), 0);
  std::vector<std::vector<int>> options(n);
  std::vector<std::size_t> odometer(n);
  std::vector<int> codes(n);
  for (Cell& cell : cells) cell._total.Merge(cell._count);
  for (std::uint32_t source = 0; source < leafKeys.size(); ++source) {
    const PackedKey& leafKey = leafKeys[source];
    double maskResponses = 0.0;  // members in a combination cell of a dichotomy set, else 0
    std::map<int, double> subtotalResponses;  // members of each subtotal in that combination
    d.ContributionOptions(leafKey, options, maskResponses, subtotalResponses);
    std::fill(odometer.begin(), odometer.end(), 0);
    // The set carrying the statistics: one response per member counted, all of them at its total.
    const bool addResponses = maskResponses > 0.0 && d._statPosition == d._setPosition;
    while (true) {
      for (std::size_t i = 0; i < n; ++i) codes[i] = options[i][odometer[i]];
      PackedKey key;
      d.Pack(codes.data(), key);
      const std::uint32_t target = d.Insert(key);
      d._cells[target].Merge(cells[source]);
      if (addResponses) {
        const Cell& leaf = cells[source];
        const int setCode = codes[static_cast<unsigned>(d._setPosition)];
        const auto subtotal = subtotalResponses.find(setCode);
        const double factor = setCode == kCellKeyTotal                ? maskResponses
                              : subtotal != subtotalResponses.end() ? subtotal->second
                                                                    : 1.0;
        d._cells[target]._responses += factor * leaf._count._w;
        d._cells[target]._uResponses += factor * leaf._count._u;
      }
      for (std::size_t s = 0; s < scales; ++s) {
        d._scaleCells[target * scales + s].Merge(scaleCells[source * scales + s]);
      }
      std::size_t i = 0;
      for (; i < n; ++i) {
        if (++odometer[i] < options[i].size()) break;
        odometer[i] = 0;
      }
      if (i == n) break;
    }
  }
  d.NoteOverflows();
}

const std::vector<int>& CubeAggregator::GetOverflowVarIndices() const {
  return _data->_overflowVarIndices;
}

void CubeAggregator::Reset() {
  _data->_complete = false;
  _data->_overflowVarIndices.clear();
  _data->_cellKeys.clear();
  std::fill(_data->_dense.begin(), _data->_dense.end(), 0);
  _data->_index.clear();
  _data->_cells.clear();
  _data->_scaleCells.clear();
  _data->_cache.clear();
}

int CubeAggregator::GetPosition(int i) const {
  QUILT_ASSERT(i >= 0 && i < GetKeyLength(), "key position out of range");
  return _data->_positions[static_cast<unsigned>(i)];
}

TableDimension* CubeAggregator::GetDimension(int i) const {
  QUILT_ASSERT(i >= 0 && i < GetKeyLength(), "key position out of range");
  return _data->_dimensions[static_cast<unsigned>(i)];
}

std::string CubeAggregator::DebugText() const {
  const Data& d = *_data;
  static const char* const kPositionNames[] = {"row", "column", "layer", "extra"};
  std::ostringstream out;
  out << "cube: " << GetKeyLength() << " positions (";
  for (std::size_t i = 0; i < d._positions.size(); ++i) {
    const int position = d._positions[i];
    out << (i > 0 ? ", " : "") << (position >= 0 && position < 4 ? kPositionNames[position] : "?");
  }
  out << "), " << d._cells.size() << " cells" << (d._complete ? "" : ", cases still arriving") << '\n';
  // Cells in key order, so that the dump does not depend on the hash table.
  std::vector<std::pair<std::vector<int>, std::uint32_t>> rows;
  for (std::uint32_t where = 0; where < d._cellKeys.size(); ++where) {
    std::vector<int> codes(d._positions.size());
    for (std::size_t i = 0; i < codes.size(); ++i)
      codes[i] = DecodeSlot(d._cellKeys[where], static_cast<int>(i));
    rows.emplace_back(std::move(codes), where);
  }
  std::sort(rows.begin(), rows.end());
  for (const auto& [codes, where] : rows) {
    const Cell& cell = d._cells[where];
    out << "  (";
    for (std::size_t i = 0; i < codes.size(); ++i) {
      out << (i > 0 ? ", " : "");
      if (codes[i] == kCellKeyTotal) {
        out << "total";
      } else {
        out << codes[i];
      }
    }
    out << ") count " << cell._count._w << " (" << cell._count._u << " cases), valid " << cell._valid._w
        << ", total " << cell._total._w + (d._complete ? 0.0 : cell._count._w) << ", responses "
        << cell._responses << '\n';
  }
  return out.str();
}

AggregationResult CubeAggregator::Data::Compute(const int* codes, const Cell& cell,
                                                const AggregationStatistic& statistic) const {
  const StatisticCodeInfo* info = StatisticCodeTable::Decode(statistic.GetCode());
  if (info == nullptr) return AggregationResult(kSysmis);
  const int prime = info->_primary;
  const int conf = info->_conf;
  const int varIndex = statistic.GetVarIndex();
  const int local = varIndex >= 0 ? LocalScaleSlot(varIndex) : -1;
  const ScaleCell* scale = local >= 0 ? FindScale(codes, local) : nullptr;
  if (info->_family >= 0) return ComputePercentage(codes, *info, varIndex);

  // Count-type statistics: the population, its unweighted size as value 2, and binomial
  // limits on the cube's grand total.
  const Population* population = nullptr;
  const bool unweighted = info->_weighting == Codes::kStatUnweighted;
  const bool effective = info->_weighting == Codes::kStatEffective;
  switch (prime) {
    case Codes::kStatCount:
    case Codes::kStatUCount:
    case Codes::kStatECount:
      population = &cell._count;
      break;
    case Codes::kStatTotalN:
    case Codes::kStatUTotalN:
    case Codes::kStatETotalN:
      population = scale != nullptr || local >= 0 ? &cell._count : &cell._total;
      break;
    case Codes::kStatValidN:
    case Codes::kStatUValidN:
    case Codes::kStatEValidN: {
      static const Population kEmpty;
      population = local >= 0 ? (scale != nullptr ? &scale->_valid : &kEmpty) : &cell._valid;
      break;
    }
    default:
      break;
  }
  if (population != nullptr) {
    const double u = population->_u;
    if (effective) return AggregationResult(EffectiveN(*population, false), u);
    const double value = Of(*population, unweighted);
    if (conf == Codes::kConfNone) return AggregationResult(value, u);
    // The grand total of the same population conditions the multinomial model.
    std::vector<int> all(_positions.size(), kCellKeyTotal);
    const Cell* grand = Find(all.data());
    const Population* total = nullptr;
    if (grand != nullptr) {
      if (population == &cell._count) total = &grand->_count;
      if (population == &cell._total) total = &grand->_total;
      if (population == &cell._valid) total = &grand->_valid;
      if (scale != nullptr && population == &scale->_valid) {
        const ScaleCell* grandScale = FindScale(all.data(), local);
        total = grandScale != nullptr ? &grandScale->_valid : nullptr;
      }
    }
    if (total == nullptr) return AggregationResult(kSysmis, u);
    const double big = Of(*total, unweighted);
    const double nStar = EffectiveN(*total, unweighted);
    if (big <= 0.0 || nStar == kSysmis || nStar <= 0.0) return AggregationResult(kSysmis, u);
    bool isGrand = true;
    for (std::size_t i = 0; i < _positions.size(); ++i) isGrand = isGrand && codes[i] == kCellKeyTotal;
    if (isGrand) return AggregationResult(conf == Codes::kConfSe ? 0.0 : big, u);
    const double p = value / big;
    if (conf == Codes::kConfSe) return AggregationResult(big * std::sqrt(p * (1.0 - p) / nStar), u);
    double low = 0.0;
    double high = 0.0;
    StatDistributions::Wilson(p, nStar, ZValue(), low, high);
    return AggregationResult(big * (conf == Codes::kConfLcl ? low : high), u);
  }

  switch (prime) {
    case Codes::kStatMissing:
    case Codes::kStatUMissing: {
      const bool u = unweighted;
      const Population& totalPop = local >= 0 ? cell._count : cell._total;
      const double valid = local >= 0 ? (scale != nullptr ? Of(scale->_valid, u) : 0.0) : Of(cell._valid, u);
      const double uValid = local >= 0 ? (scale != nullptr ? scale->_valid._u : 0.0) : cell._valid._u;
      return AggregationResult(Of(totalPop, u) - valid, totalPop._u - uValid);
    }
    case Codes::kStatResponses:
      return AggregationResult(cell._responses, cell._count._u);
    case Codes::kStatUResponses:
      return AggregationResult(cell._uResponses, cell._count._u);
    default:
      break;
  }
  return ComputeScale(codes, *info, statistic);
}

AggregationResult CubeAggregator::Data::ComputePercentage(const int* codes, const StatisticCodeInfo& info,
                                                          int varIndex) const {
  const int conf = info._conf;
  const Quantity numerator = static_cast<Quantity>(StatisticCodeTable::GetNumerator(info._family));
  const Quantity denominator = static_cast<Quantity>(StatisticCodeTable::GetDenominator(info._family));
  const int base = info._base;
  const bool unweighted = info._weighting == Codes::kStatUnweighted;
  const double top = QuantityOf(codes, numerator, varIndex, unweighted);
  Population basePopulation;
  const double bottom = BaseOf(codes, base, denominator, varIndex, unweighted, &basePopulation);
  if (bottom == 0.0) return AggregationResult(kSysmis);
  const double ratio = top / bottom;
  if (conf == Codes::kConfNone) return AggregationResult(100.0 * ratio);
  if (numerator == kQResponses || denominator == kQResponses) return AggregationResult(kSysmis);
  if (numerator == kQSum) {
    // Linearised ratio: residual z_i = x_i [i in c] - R x_i over the valid cases of B.
    const int local = LocalScaleSlot(varIndex);
    const ScaleCell* cellScale = FindScale(codes, local);
    double qCell = 0.0;
    if (cellScale != nullptr) {
      qCell = (unweighted ? cellScale->_unweighted : cellScale->_weighted).GetSumOfSquaredValues();
    }
    // The base's Q, W, W2 and U come from the same cells as its sum.
    double qBase = 0.0;
    double wBase = 0.0;
    double w2Base = 0.0;
    double uBase = 0.0;
    Population validBase;
    BaseOf(codes, base, kQValid, varIndex, unweighted, &validBase);
    wBase = validBase._w;
    w2Base = validBase._w2;
    uBase = validBase._u;
    qBase = BaseOf(codes, base, kQSquares, varIndex, unweighted, nullptr);
    const double r = ratio;
    const double residual = (1.0 - r) * (1.0 - r) * qCell + r * r * (qBase - qCell);
    const double dB = Denominator(wBase, w2Base, uBase, unweighted);
    if (dB <= 0.0) return AggregationResult(kSysmis);
    const double sz2 = residual / dB;
    double scale = 0.0;
    if (unweighted || _mode == kWeightNone) {
      scale = uBase;
    } else if (_mode == kWeightFrequency) {
      scale = wBase;
    } else {
      scale = w2Base;
    }
    const double se = 100.0 * std::sqrt(sz2 * scale) / std::fabs(bottom);
    if (conf == Codes::kConfSe) return AggregationResult(se);
    const double z = ZValue();
    return AggregationResult(conf == Codes::kConfLcl ? 100.0 * r - z * se : 100.0 * r + z * se);
  }
  const double nStar = EffectiveN(basePopulation, unweighted);
  if (nStar == kSysmis || nStar <= 0.0) return AggregationResult(kSysmis);
  if (conf == Codes::kConfSe) {
    return AggregationResult(100.0 * std::sqrt(ratio * (1.0 - ratio) / nStar));
  }
  double low = 0.0;
  double high = 0.0;
  StatDistributions::Wilson(ratio, nStar, ZValue(), low, high);
  return AggregationResult(100.0 * (conf == Codes::kConfLcl ? low : high));
}

AggregationResult CubeAggregator::Data::ComputeScale(const int* codes, const StatisticCodeInfo& info,
                                                     const AggregationStatistic& statistic) const {
  const int prime = info._primary;
  const int conf = info._conf;
  const int local = LocalScaleSlot(statistic.GetVarIndex());
  const ScaleCell* scale = local >= 0 ? FindScale(codes, local) : nullptr;
  if (scale == nullptr || scale->_valid._u == 0.0) return AggregationResult(kSysmis);
  const bool unweighted = info._weighting == Codes::kStatUnweighted;
  const CellMoments& m = unweighted ? scale->_unweighted : scale->_weighted;
  const double w = m._weight;
  const double mean = m._mean;
  const double ss = m._sumSquares;
  const double d = Denominator(w, m._squaredWeights, scale->_valid._u, unweighted);
  const double variance = d > 0.0 ? ss / d : kSysmis;
  switch (prime) {
    case Codes::kStatMaximum:
      return AggregationResult(scale->_max);
    case Codes::kStatMinimum:
      return AggregationResult(scale->_min);
    case Codes::kStatRange:
      return AggregationResult(scale->_max - scale->_min);
    case Codes::kStatVariance:
    case Codes::kStatUVariance:
      return AggregationResult(variance);
    case Codes::kStatStdDev:
    case Codes::kStatUStdDev:
      return AggregationResult(variance == kSysmis ? kSysmis : std::sqrt(variance));
    case Codes::kStatMeanSumSquares:
      return AggregationResult(ss);
    case Codes::kStatMean:
    case Codes::kStatUMean:
    case Codes::kStatSum:
    case Codes::kStatUSum: {
      const bool isSum = prime == Codes::kStatSum || prime == Codes::kStatUSum;
      const double value = isSum ? w * mean : mean;
      if (conf == Codes::kConfNone) return AggregationResult(value);
      const double nStar = EffectiveN(scale->_valid, unweighted);
      if (variance == kSysmis || nStar == kSysmis || nStar <= 1.0) return AggregationResult(kSysmis);
      double se = std::sqrt(variance / nStar);
      if (isSum) se *= w;
      if (conf == Codes::kConfSe) return AggregationResult(se);
      const double t = StatDistributions::StudentQuantile(1.0 - (1.0 - _ciLevel / 100.0) / 2.0, nStar - 1.0);
      return AggregationResult(conf == Codes::kConfLcl ? value - t * se : value + t * se);
    }
    case Codes::kStatMode:
    case Codes::kStatUMode: {
      const std::vector<WeightedValue> merged = Distribution(*scale, unweighted);
      double best = 0.0;
      double total = 0.0;
      for (const WeightedValue& pair : merged) {
        best = std::max(best, pair._weight);
        total += pair._weight;
      }
      double smallest = kSysmis;
      double largest = kSysmis;
      for (const WeightedValue& pair : merged) {
        if (best - pair._weight <= 1e-10 * total) {
          if (smallest == kSysmis) smallest = pair._value;
          largest = pair._value;
        }
      }
      return AggregationResult(smallest, largest);
    }
    case Codes::kStatMedian:
    case Codes::kStatUMedian:
    case Codes::kStatPtile:
    case Codes::kStatUPtile: {
      const bool isMedian = prime == Codes::kStatMedian || prime == Codes::kStatUMedian;
      const double q = isMedian ? 0.5 : statistic.GetPTileCutPoint() / 100.0;
      const std::vector<WeightedValue> merged = Distribution(*scale, unweighted);
      if (conf == Codes::kConfNone) return AggregationResult(Percentile(merged, q));
      if (conf == Codes::kConfSe) return AggregationResult(kSysmis);
      const double nStar = EffectiveN(scale->_valid, unweighted);
      if (nStar == kSysmis) return AggregationResult(kSysmis);
      const int n = static_cast<int>(std::floor(nStar + 0.5));
      const double alpha = 1.0 - _ciLevel / 100.0;
      if (conf == Codes::kConfLcl) {
        const int l = StatDistributions::BinomialInverse(alpha / 2.0, n, q);
        return AggregationResult(l < 1 ? kSysmis : OrderStatistic(merged, l, n));
      }
      const int u = StatDistributions::BinomialInverse(1.0 - alpha / 2.0, n, q) + 1;
      return AggregationResult(u > n ? kSysmis : OrderStatistic(merged, u, n));
    }
    default:
      break;
  }
  return AggregationResult(kSysmis);
}
