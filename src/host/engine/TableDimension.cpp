// TableDimension.cpp - case mapping and category lists of one categorical variable or set
#include "host/engine/TableDimension.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <unordered_map>

#include "aggregator/CellKey.h"
#include "host/QuiltAssert.h"
#include "host/data/ObsValue.h"
#include "host/data/TARN_DataSource.h"
#include "host/data/TARN_ValueLabelMap.h"
#include "host/data/TARN_Variable.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationMDSet.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/CaseBlock.h"
#include "host/engine/CategoryLimitError.h"
#include "host/engine/ParsedCategory.h"

namespace {

// Classification of a value against the category list, made once per distinct value.
constexpr int kItemImplicit = -1;  // implicit list: the value is a category
constexpr int kItemExcluded = -2;  // left out by the explicit list
constexpr int kItemMissing = -3;   // excluded user-missing: the hidden bucket

// Integer values in this range skip the hash map: most survey codes are small integers.
constexpr int kSmallValues = 4096;
// Distinct values one categorical variable may take; cell keys address no more.
constexpr int kMaxDistinctValues = 60000;

// A small integer value whose mapping in the current group is not known yet.
constexpr int kFastUnknown = -3;

// Encoding of a computed category: it receives no cases and never enters a key.
constexpr int kPcomputeEncodingBase = -1000;

struct ValueInfo {
  ObsValue _value;
  int _item = kItemImplicit;  // index in the explicit list, or one of the kItem codes
  int _subtotal = 0;          // encoding of the subtotal that sums it, 0 for none
  bool _userMissing = false;
  bool _labelled = false;
  bool _seen = false;  // held by some case of the current group
};

std::uint64_t NumberBits(double value) {
  if (value == 0.0) value = 0.0;  // -0 and 0 are one category
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// Reads an MD set's counted value for a numeric member: a number written as text when
// the bytes are such text, else the cell itself.
double CountedNumber(const std::string& bytes) {
  std::string text = bytes;
  while (!text.empty() && (text.back() == ' ' || text.back() == '\0')) text.pop_back();
  while (!text.empty() && text.front() == ' ') text.erase(text.begin());
  if (!text.empty()) {
    char* end = nullptr;
    const double parsed = std::strtod(text.c_str(), &end);
    if (end == text.c_str() + text.size()) return parsed;
  }
  double number = TARN_SystemMissing();
  if (bytes.size() >= sizeof number) std::memcpy(&number, bytes.data(), sizeof number);
  return number;
}

}  // namespace

struct TableDimension::Data {
  AggregationVariable* _variable = nullptr;
  const TARN_DataSource* _source = nullptr;
  AggregationVariable::VariableKind _kind = AggregationVariable::kSingle;
  std::vector<const TARN_Variable*> _members;  // the variable, or the set's members
  const TARN_Variable* _missingDefinition = nullptr;
  int _valueType = 0;
  bool _countDuplicates = false;

  // Value registry: ids are the encodings of value categories and never change.
  std::vector<ValueInfo> _values;
  std::unordered_map<std::uint64_t, int> _numberIds;
  std::unordered_map<std::string, int> _stringIds;
  std::vector<int> _smallIds;  // by value below kSmallValues, grown to the largest value met

  // IndexParsedValues: the list indexed, and its plain values and other items.
  mutable const std::vector<ParsedCategory*>* _indexedList = nullptr;
  mutable std::size_t _indexedSize = 0;
  mutable std::unordered_map<std::string, std::size_t> _parsedValueIndex;
  mutable std::vector<std::size_t> _parsedOthers;

  // Dichotomy set: counted value per member, and which members an explicit list keeps.
  std::vector<double> _countedNumbers;
  std::string _countedText;
  std::vector<std::string> _countedPadded;  // per string member: the counted text at its width
  std::vector<std::uint64_t> _hitMasks;     // per case of a block: the members counted
  std::size_t _blockSize = 0;
  bool _entriesPending = false;  // a dichotomy block's entries are not built yet

  // 1 for a value flagged user-missing, parallel to _values: a single variable's cells
  // read it for the VALID population.
  std::vector<char> _missingFlags;
  // The mapping of small integer values in the current group, by value: an encoding,
  // kBlockMissing, kBlockExcluded or kFastUnknown. Cleared per group, since the first case
  // of a value in a group is what marks its category as seen.
  // Grown like _smallIds: a table of many stacked terms pays for the values it meets.
  std::vector<int> _fastCodes;

  // Results of the last block: a single variable's code per case, or a set's state per
  // case with its entries from _blockOffsets[k] to _blockOffsets[k + 1].
  std::vector<int> _blockCodes;
  std::vector<char> _blockStates;
  std::vector<std::size_t> _blockOffsets;
  std::vector<DimensionEntry> _blockEntries;
  std::vector<DimensionEntry> _entries;  // one case of a set while it is mapped
  std::vector<DimensionEntry> _totalOnly{{kCellKeyTotal, 0.0, false}};

  // Categories of the last completed group.
  std::vector<std::unique_ptr<AggregationCategory>> _owned;
  std::vector<AggregationCategory*> _categories;
  std::vector<AggregationCategory*> _pcomputeRequired;
  bool _complete = false;
  std::optional<AggregationStatistic> _sortStatistic;
  // The categorical variable carrying the sort statistic, as a dimension or, from the
  // variable's own sort settings, as a dictionary index; null and -1 for none.
  const TableDimension* _sortDimension = nullptr;
  int _sortCarrierIndex = -1;

  const std::vector<ParsedCategory*>* Parsed() const { return _variable->GetParsedCategories(); }

  // The bytes by which a value is looked up: a number's bits (0 and -0 alike), a string's
  // cells at the variable's width.
  static std::string ValueKey(const OBS* cells, int valueType) {
    if (valueType == 0) {
      const std::uint64_t bits = NumberBits(cells->number);
      return std::string(reinterpret_cast<const char*>(&bits), sizeof bits);
    }
    return std::string(reinterpret_cast<const char*>(cells), static_cast<std::size_t>(valueType));
  }

  // Splits the listed items once per list into plain values of this variable's type, by
  // key with the first position of each, and the rest in order.
  void IndexParsedValues(const std::vector<ParsedCategory*>& parsed) const {
    if (_indexedList == &parsed && _indexedSize == parsed.size()) return;
    _indexedList = &parsed;
    _indexedSize = parsed.size();
    _parsedValueIndex.clear();
    _parsedOthers.clear();
    for (std::size_t i = 0; i < parsed.size(); ++i) {
      const ParsedCategory* item = parsed[i];
      if (item->GetPCType() == ParsedCategory::kParsedValue && item->GetValueType() == _valueType &&
          (_valueType != 0 || !std::isnan(item->GetCatValue()->number))) {
        _parsedValueIndex.emplace(ValueKey(item->GetCatValue(), _valueType), i);
      } else {
        _parsedOthers.push_back(i);
      }
    }
  }

  int Classify(ValueInfo& info) const {
    const TARN_Variable* definition = _missingDefinition;
    info._userMissing = definition != nullptr && definition->IsUserMissing(info._value.Obs());
    const auto* parsed = Parsed();
    if (parsed == nullptr) {
      if (info._userMissing && _variable->GetIsMissingExclude()) return kItemMissing;
      return kItemImplicit;
    }
    // The first listed item that takes the value wins. Plain values are found by hash, so
    // a list of 100,000 values costs no more per value than a list of ten; the other items
    // are walked in order up to the first value found.
    IndexParsedValues(*parsed);
    const auto found = _parsedValueIndex.find(ValueKey(info._value.Obs(), _valueType));
    const std::size_t firstValue = found == _parsedValueIndex.end() ? parsed->size() : found->second;
    int otherIndex = -1;
    int missingIndex = -1;
    for (const std::size_t i : _parsedOthers) {
      if (i > firstValue) break;
      const ParsedCategory* item = (*parsed)[i];
      switch (item->GetPCType()) {
        case ParsedCategory::kParsedOtherNM:
          if (otherIndex < 0) otherIndex = static_cast<int>(i);
          break;
        case ParsedCategory::kParsedMissing:
          if (missingIndex < 0) missingIndex = static_cast<int>(i);
          break;
        case ParsedCategory::kParsedAll:
          if (!info._userMissing) return static_cast<int>(i);
          break;
        case ParsedCategory::kParsedValue:
        case ParsedCategory::kParsedRange:
          // Naming a value or closing a range around it brings a user-missing value in.
          if (item->Matches(info._value.Obs())) return static_cast<int>(i);
          break;
        case ParsedCategory::kParsedLo:
        case ParsedCategory::kParsedHi:
          // An open end means "all valid values from here": missing codes such as 99 at
          // the top of the scale stay out unless named.
          if (!info._userMissing && item->Matches(info._value.Obs())) return static_cast<int>(i);
          break;
        default:
          break;
      }
    }
    if (firstValue < parsed->size()) return static_cast<int>(firstValue);
    if (info._userMissing) return missingIndex >= 0 ? missingIndex : kItemMissing;
    return otherIndex >= 0 ? otherIndex : kItemExcluded;
  }

  /// The encoding of a new value; refuses one beyond what a cell key can address, before
  /// anything of the value is recorded.
  int NextValueId() const {
    if (_values.size() >= static_cast<std::size_t>(kMaxDistinctValues)) {
      throw CategoryLimitError(_variable->GetName(), kMaxDistinctValues);
    }
    return static_cast<int>(_values.size());
  }

  // The element for small value `value`, growing `table` to a power of two that holds it.
  static int& CoverSmallValue(std::vector<int>& table, std::size_t value, int fill) {
    if (value >= table.size()) {
      std::size_t size = std::max<std::size_t>(table.size(), 64);
      while (size <= value) size *= 2;
      table.resize(std::min<std::size_t>(size, kSmallValues), fill);
    }
    return table[value];
  }

  int Register(const OBS* cells) {
    int id = -1;
    if (_valueType == 0) {
      const double number = cells->number;
      const bool small =
          number >= 0 && number < kSmallValues && number == static_cast<double>(static_cast<int>(number));
      if (small && static_cast<std::size_t>(number) < _smallIds.size()) {
        id = _smallIds[static_cast<unsigned>(number)];
        if (id >= 0) return id;
      }
      const std::uint64_t bits = NumberBits(number);
      auto found = _numberIds.find(bits);
      if (found != _numberIds.end()) return found->second;
      id = NextValueId();
      _numberIds.emplace(bits, id);
      if (small) CoverSmallValue(_smallIds, static_cast<std::size_t>(number), -1) = id;
    } else {
      std::string key(reinterpret_cast<const char*>(cells), static_cast<std::size_t>(_valueType));
      auto found = _stringIds.find(key);
      if (found != _stringIds.end()) return found->second;
      id = NextValueId();
      _stringIds.emplace(std::move(key), id);
    }
    ValueInfo info;
    info._value = ObsValue(_valueType, cells, -1);
    info._item = Classify(info);
    if (info._item >= 0)
      info._subtotal = (*Parsed())[static_cast<unsigned>(info._item)]->GetSubtotalEncoding();
    _missingFlags.push_back(info._userMissing ? 1 : 0);
    _values.push_back(std::move(info));
    return id;
  }

  void AddEntry(int code, double responses, bool missingCategory) {
    for (DimensionEntry& entry : _entries) {
      if (entry._code == code) {
        entry._responses += responses;
        entry._missingCategory = entry._missingCategory && missingCategory;
        return;
      }
    }
    _entries.push_back({code, responses, missingCategory});
  }

  // The code of one single-variable value; marks its category as seen in the group.
  int MapSingle(const OBS* cells) {
    if (_valueType == 0 && cells->number == TARN_SystemMissing()) return kBlockMissing;
    const int id = Register(cells);
    ValueInfo& info = _values[static_cast<unsigned>(id)];
    int code = id;
    if (info._item == kItemMissing) {
      code = kBlockMissing;
    } else if (info._item == kItemExcluded) {
      code = kBlockExcluded;
    } else {
      info._seen = true;
    }
    if (_valueType == 0) {
      const double number = cells->number;
      if (number >= 0.0 && number < kSmallValues && number == static_cast<double>(static_cast<int>(number))) {
        CoverSmallValue(_fastCodes, static_cast<std::size_t>(number), kFastUnknown) = code;
      }
    }
    return code;
  }

  void MapSingleBlock(const CaseBlock& block) {
    const int index = _variable->GetVarIndex();
    const OBS* column = block._columns[static_cast<unsigned>(index)];
    const std::size_t stride = block._strides[static_cast<unsigned>(index)];
    const std::size_t* rows = block._rows;
    _blockCodes.resize(block._size);
    int* out = _blockCodes.data();
    if (_valueType != 0) {
      for (std::size_t k = 0; k < block._size; ++k) out[k] = MapSingle(column + rows[k] * stride);
      return;
    }
    // Survey codes are mostly small integers, and each is mapped once per group through
    // the registry; every later case of it is one array read.
    for (std::size_t k = 0; k < block._size; ++k) {
      const OBS* cells = column + rows[k] * stride;
      const double number = cells->number;
      // MapSingle may grow the table, so its size and data are read for each case.
      const int* fast = _fastCodes.data();
      if (number >= 0.0 && number < static_cast<double>(_fastCodes.size())) {
        const int small = static_cast<int>(number);
        if (static_cast<double>(small) == number && fast[small] != kFastUnknown) {
          out[k] = fast[small];
          continue;
        }
      }
      out[k] = MapSingle(cells);
    }
  }

  CaseState MapCategorySet(const CaseBlock& block, std::size_t k) {
    double responses = 0.0;
    bool anyValid = false;
    const auto& indices = _variable->GetVarIndices();
    for (int index : indices) {
      const OBS* cells = block.Cells(index, k);
      if (_valueType == 0 && cells->number == TARN_SystemMissing()) continue;
      const int id = Register(cells);
      ValueInfo& info = _values[static_cast<unsigned>(id)];
      if (info._item < 0 && info._item != kItemImplicit) continue;
      info._seen = true;
      // Without duplicates a category gets one response per case however many members hold it.
      bool already = false;
      for (const DimensionEntry& entry : _entries) already = already || entry._code == id;
      const double add = already && !_countDuplicates ? 0.0 : 1.0;
      AddEntry(id, add, info._userMissing);
      if (info._subtotal < kCellKeyTotal) AddEntry(info._subtotal, add, info._userMissing);
      responses += add;
      anyValid = anyValid || !info._userMissing;
    }
    if (_entries.empty()) return kCaseMissing;
    _entries.push_back({kCellKeyTotal, responses, !anyValid});
    return kCaseInCategories;
  }

  // Whether member i holds the counted value: numbers by ==, strings blank-padded to the
  // member's width.
  bool MemberCounts(std::size_t i, const OBS* cells) const {
    const TARN_Variable* member = _members[i];
    if (member == nullptr || member->GetType() == 0) {
      return cells->number == _countedNumbers[i] && cells->number != TARN_SystemMissing();
    }
    const std::string& counted = _countedPadded[i];
    return std::memcmp(cells, counted.data(), counted.size()) == 0;
  }

  // Member by member over the block: each member's column is read in one loop and its hits
  // are marked in a bit per case; the entries of each case then follow from its bits in
  // member order, its total last with the number of members counted.
  void MapDichotomyBlock(const CaseBlock& block) {
    const auto& indices = _variable->GetVarIndices();
    const std::size_t size = block._size;
    _hitMasks.assign(size, 0);
    for (std::size_t i = 0; i < indices.size(); ++i) {
      if (!IsMemberListed(static_cast<int>(i))) continue;
      const std::uint64_t bit = std::uint64_t{1} << i;
      std::uint64_t any = 0;
      const TARN_Variable* member = _members[i];
      if (member == nullptr || member->GetType() == 0) {
        // The system-missing value is never counted, so it needs no test of its own.
        const double counted = _countedNumbers[i];
        if (counted == TARN_SystemMissing()) continue;
        const OBS* column = block._columns[static_cast<unsigned>(indices[i])];
        const std::size_t stride = block._strides[static_cast<unsigned>(indices[i])];
        std::uint64_t* masks = _hitMasks.data();
        // Shifting the comparison's 0 or 1 keeps the loop free of a branch that data of
        // random zeros and ones would mispredict half the time.
        for (std::size_t k = 0; k < size; ++k) {
          const std::uint64_t hit =
              static_cast<std::uint64_t>(column[block._rows[k] * stride].number == counted) << i;
          masks[k] |= hit;
          any |= hit;
        }
      } else {
        for (std::size_t k = 0; k < size; ++k) {
          if (!MemberCounts(i, block.Cells(indices[i], k))) continue;
          _hitMasks[k] |= bit;
          any = bit;
        }
      }
      if (any != 0) _memberHit[i] = true;
    }
    _blockSize = size;
    _entriesPending = true;
  }

  // The entries of a dichotomy block, built from its bits when first asked for: a cube that
  // keeps the set by combination of members never needs them.
  void BuildDichotomyEntries() {
    if (!_entriesPending) return;
    _entriesPending = false;
    const std::size_t size = _blockSize;
    for (std::size_t k = 0; k < size; ++k) {
      _blockOffsets[k] = _blockEntries.size();
      std::uint64_t mask = _hitMasks[k];
      if (mask == 0) {
        _blockStates[k] = static_cast<char>(kCaseMissing);
        continue;
      }
      _blockStates[k] = static_cast<char>(kCaseInCategories);
      // Counted while walking the bits: the baseline instruction set has no popcount.
      double responses = 0.0;
      const std::size_t first = _blockEntries.size();
      while (mask != 0) {
        const int member = std::countr_zero(mask);
        _blockEntries.push_back({member, 1.0, false});
        mask &= mask - 1;
        responses += 1.0;
        const int subtotal = _memberSubtotal[static_cast<unsigned>(member)];
        if (subtotal == 0) continue;
        bool merged = false;
        for (std::size_t e = first; e < _blockEntries.size() && !merged; ++e) {
          if (_blockEntries[e]._code != subtotal) continue;
          _blockEntries[e]._responses += 1.0;
          merged = true;
        }
        if (!merged) _blockEntries.push_back({subtotal, 1.0, false});
      }
      _blockEntries.push_back({kCellKeyTotal, responses, false});
    }
    _blockOffsets[size] = _blockEntries.size();
  }

  // The same one case at a time, for sets of more members than a mask has bits.
  CaseState MapDichotomySet(const CaseBlock& block, std::size_t k) {
    const auto& indices = _variable->GetVarIndices();
    double responses = 0.0;
    for (std::size_t i = 0; i < indices.size(); ++i) {
      if (!IsMemberListed(static_cast<int>(i)) || !MemberCounts(i, block.Cells(indices[i], k))) continue;
      _entries.push_back({static_cast<int>(i), 1.0, false});
      AddMemberSubtotal(i);
      responses += 1.0;
      _memberHit[i] = true;
    }
    if (_entries.empty()) return kCaseMissing;
    _entries.push_back({kCellKeyTotal, responses, false});
    return kCaseInCategories;
  }

  std::vector<bool> _memberListed;
  std::vector<bool> _memberHit;
  std::vector<int> _memberSubtotal;  // encoding of the subtotal a member is summed in, 0 for none

  // A case counts once in a subtotal of a dichotomy set however many of its members it
  // holds; the subtotal's responses are the members counted.
  void AddMemberSubtotal(std::size_t i) {
    const int subtotal = _memberSubtotal[i];
    if (subtotal != 0) AddEntry(subtotal, 1.0, false);
  }
  bool IsMemberListed(int i) const { return _memberListed[static_cast<unsigned>(i)]; }

  std::string LabelOf(const ObsValue& value) const {
    if (_missingDefinition == nullptr) return std::string();
    TARN_ValueLabelMap labels(_missingDefinition->GetValueLabels());
    const char* text = labels.GetLabel(value.Obs());
    return text != nullptr ? std::string(text) : std::string();
  }

  void RegisterLabelledValues() {
    if (_missingDefinition == nullptr) return;
    TARN_ValueLabelMap labels(_missingDefinition->GetValueLabels());
    const OBS* value = nullptr;
    const char* label = nullptr;
    while (labels.GetNextPair(value, label)) {
      const int id = Register(value);
      _values[static_cast<unsigned>(id)]._labelled = true;
    }
  }

  AggregationCategory* MakeValueCategory(int id) {
    const ValueInfo& info = _values[static_cast<unsigned>(id)];
    auto category =
        std::make_unique<AggregationCategory>(AggregationCategory::kValue, id, _variable->GetVarIndex());
    category->SetCatValue(_valueType, info._value.Obs());
    const std::string label = LabelOf(info._value);
    category->SetCatLabel(label, label.empty());
    category->SetIsMissingCategory(info._userMissing);
    _owned.push_back(std::move(category));
    return _owned.back().get();
  }

  // One member of a dichotomy set as a category, unless the list leaves it out or it is
  // empty and empty categories are not wanted.
  // The categories of a dichotomy set. An explicit list shows the members in its own order,
  // with its computed categories among them; without one the members follow the set's order.
  void AddSetCategories(const AggregationVariable& variable) {
    const auto* parsed = variable.GetParsedCategories();
    if (parsed == nullptr) {
      for (std::size_t i = 0; i < _members.size(); ++i) AddMemberCategory(variable, i);
    } else {
      for (const ParsedCategory* item : *parsed) {
        if (item->GetPCType() == ParsedCategory::kParsedComputed) {
          AddComputedCategory(*item, variable.GetVarIndex());
          continue;
        }
        if (item->GetPCType() == ParsedCategory::kParsedSubtotal ||
            item->GetPCType() == ParsedCategory::kParsedHSubtotal) {
          AddSubtotalCategory(*item, variable.GetVarIndex());
          continue;
        }
        if (item->GetPCType() != ParsedCategory::kParsedVariable) continue;
        for (std::size_t i = 0; i < _members.size(); ++i) {
          if (variable.GetVarIndices()[i] == item->GetVarIndex()) AddMemberCategory(variable, i);
        }
      }
    }
  }

  void AddMemberCategory(const AggregationVariable& variable, std::size_t i) {
    if (!_memberListed[i]) return;
    if (!_memberHit[i] && !variable.GetIsEmptyInclude()) return;
    const TARN_Variable* member = _members[i];
    auto category = std::make_unique<AggregationCategory>(AggregationCategory::kVariable, static_cast<int>(i),
                                                          variable.GetVarIndices()[i]);
    const auto* set = static_cast<const AggregationMDSet*>(&variable);
    std::string label = member->GetLabel();
    if (set->GetUseCountedValueLabels()) {
      TARN_ValueLabelMap labels(member->GetValueLabels());
      ObsValue counted(member->GetType(), nullptr, -1);
      if (member->GetType() == 0) {
        counted = _countedNumbers[i];
      } else {
        counted = _countedText;
      }
      const char* text = labels.GetLabel(counted.Obs());
      if (text != nullptr) label = text;
    }
    if (label.empty()) label = member->GetName();
    category->SetCatLabel(label, false);
    category->SetUseLabelForVar(true);
    _categories.push_back(category.get());
    _owned.push_back(std::move(category));
  }

  void AddSubtotalCategory(const ParsedCategory& item, int varIndex) {
    const int type = item.GetPCType() == ParsedCategory::kParsedSubtotal ? AggregationCategory::kSubtotal
                                                                         : AggregationCategory::kHSubtotal;
    auto category = std::make_unique<AggregationCategory>(type, item.GetSubtotalEncoding(), varIndex);
    category->SetCatLabel(item.GetLabel(), item.IsLabelDefault());
    _categories.push_back(category.get());
    _owned.push_back(std::move(category));
  }

  // A computed category: no case falls in it; the renderer works its cells out.
  void AddComputedCategory(const ParsedCategory& item, int varIndex) {
    auto category = std::make_unique<AggregationCategory>(AggregationCategory::kPcompute,
                                                          kPcomputeEncodingBase - item.GetIndex(), varIndex);
    category->SetPCatName(item.GetPCatName());
    const auto& labels = item.GetCategories();
    category->SetCatLabel(labels.empty() ? item.GetPCatName() : labels.front(), labels.empty());
    category->SetPCFormats(item.GetStatCodes(), item.GetDisplayFormats(), item.GetFormats());
    _categories.push_back(category.get());
    _owned.push_back(std::move(category));
  }

  bool Shown(const ValueInfo& info) const {
    return info._seen || (info._labelled && _variable->GetIsEmptyInclude());
  }

  // Orders value ids by value, or by label where asked, ascending or descending.
  void SortIds(std::vector<int>& ids) const {
    const bool byLabel = _variable->GetSortKey() == AggregationVariable::kSortKeyLabel;
    const bool ascending = _variable->GetIsOrderA();
    auto compare = [&](int a, int b) {
      const ValueInfo& left = _values[static_cast<unsigned>(a)];
      const ValueInfo& right = _values[static_cast<unsigned>(b)];
      int order = 0;
      if (byLabel) {
        const std::string l = LabelOf(left._value);
        const std::string r = LabelOf(right._value);
        order = l < r ? -1 : (r < l ? 1 : 0);
      }
      if (order == 0) {
        order = _valueType == 0 ? left._value.Compare(right._value)
                                : std::memcmp(left._value.Obs(), right._value.Obs(),
                                              static_cast<std::size_t>(_valueType));
      }
      return ascending ? order < 0 : order > 0;
    };
    std::stable_sort(ids.begin(), ids.end(), compare);
  }
};

TableDimension::TableDimension(AggregationVariable* variable, const TARN_DataSource* source)
    : _data(std::make_unique<Data>()) {
  QUILT_ASSERT(variable != nullptr, "a dimension needs its variable");
  _data->_variable = variable;
  _data->_source = source;
  _data->_kind = variable->GetKind();
  for (int index : variable->GetVarIndices()) {
    const TARN_Variable* member = source != nullptr ? source->GetVariable(index) : nullptr;
    QUILT_ASSERT(member != nullptr, "a categorical variable is not in the dictionary");
    _data->_members.push_back(member);
  }
  _data->_valueType = _data->_members.front()->GetType();
  _data->_missingDefinition = _data->_members.front();
  if (_data->_kind == AggregationVariable::kCategorySet && variable->GetUserMissingVarIndex() >= 0) {
    const TARN_Variable* chosen = source->GetVariable(variable->GetUserMissingVarIndex());
    if (chosen != nullptr) _data->_missingDefinition = chosen;
  }
  if (_data->_kind == AggregationVariable::kDichotomySet) {
    const auto* set = static_cast<const AggregationMDSet*>(variable);
    _data->_countedText = set->GetCountedBytes();
    const double number = CountedNumber(set->GetCountedBytes());
    _data->_countedNumbers.assign(_data->_members.size(), number);
    for (const TARN_Variable* member : _data->_members) {
      const std::size_t width = member->GetType() > 0 ? static_cast<std::size_t>(member->GetType()) : 0;
      std::string counted = _data->_countedText.substr(0, std::min(width, _data->_countedText.size()));
      counted.resize(width, ' ');
      _data->_countedPadded.push_back(std::move(counted));
    }
    const std::size_t n = _data->_members.size();
    _data->_memberListed.assign(n, true);
    _data->_memberHit.assign(n, false);
    _data->_memberSubtotal.assign(n, 0);
    const auto* parsed = variable->GetParsedCategories();
    if (parsed != nullptr) {
      _data->_memberListed.assign(n, false);
      for (const ParsedCategory* item : *parsed) {
        if (item->GetPCType() != ParsedCategory::kParsedVariable) continue;
        const auto& indices = variable->GetVarIndices();
        for (std::size_t i = 0; i < n; ++i) {
          if (indices[i] != item->GetVarIndex()) continue;
          _data->_memberListed[i] = true;
          if (item->GetSubtotalEncoding() < kCellKeyTotal) _data->_memberSubtotal[i] = item->GetSubtotalEncoding();
        }
      }
    }
  }
}

TableDimension::~TableDimension() = default;

const std::vector<AggregationCategory*>& TableDimension::GetCategories() {
  if (!_data->_complete) CompleteCategories();
  return _data->_categories;
}

std::vector<int> TableDimension::GetSourceVarIndices() const {
  return _data->_variable->GetVarIndices();
}

int TableDimension::GetNumberOfCategories() {
  return static_cast<int>(GetCategories().size());
}

const std::vector<AggregationCategory*>& TableDimension::GetPcomputeRequiredCats() const {
  return _data->_pcomputeRequired;
}

void TableDimension::SetComputingTotal() {
  // Every cube accumulates the total of every position, so nothing needs switching on.
}

void TableDimension::SetComputingCounts(bool flag) {
  _data->_countDuplicates = flag;
}

void TableDimension::SetSortByScaleStats(TableMetadata* /*metadata*/, const AggregationStatistic& statistic) {
  _data->_sortStatistic = statistic;
}

void TableDimension::SetSortByDimensionStats(TableMetadata* /*metadata*/, TableDimension* dimension,
                                             const AggregationStatistic& statistic) {
  // The statistic is read in a cube holding this dimension and the one carrying the
  // statistic, with every other position at its total: the margin of each category.
  _data->_sortStatistic = statistic;
  _data->_sortDimension = dimension;
}

bool TableDimension::IsSortCarriedBy(const TableDimension* dimension) const {
  if (_data->_sortDimension != nullptr) return dimension == _data->_sortDimension;
  if (_data->_sortCarrierIndex >= 0) {
    const std::vector<int> indices = dimension->GetSourceVarIndices();
    return dimension->IsSingleVariable() && !indices.empty() && indices.front() == _data->_sortCarrierIndex;
  }
  return true;
}

bool TableDimension::HasSortCarrier() const {
  return _data->_sortDimension != nullptr || _data->_sortCarrierIndex >= 0;
}

const AggregationStatistic* TableDimension::GetSortStatistic() const {
  if (_data->_sortStatistic.has_value()) return &*_data->_sortStatistic;
  const AggregationVariable& variable = *_data->_variable;
  if (variable.GetSortKey() != AggregationVariable::kSortKeyStatistic || variable.GetSortStatistic() <= 0) {
    return nullptr;
  }
  const int varIndex = variable.GetSortVarIndex();
  const bool scale = varIndex >= 0 && !variable.GetVarIndices().empty() &&
                     std::find(variable.GetVarIndices().begin(), variable.GetVarIndices().end(), varIndex) ==
                         variable.GetVarIndices().end() &&
                     _data->_source != nullptr && _data->_source->GetVariable(varIndex) != nullptr &&
                     _data->_source->GetVariable(varIndex)->GetMeasurementLevel() == kMeasureScale;
  _data->_sortStatistic = scale ? AggregationStatistic(varIndex, variable.GetSortStatistic())
                                : AggregationStatistic(variable.GetSortStatistic());
  // A categorical variable other than this one carries the statistic.
  const auto& own = variable.GetVarIndices();
  if (!scale && varIndex >= 0 && std::find(own.begin(), own.end(), varIndex) == own.end()) {
    _data->_sortCarrierIndex = varIndex;
  }
  return &*_data->_sortStatistic;
}

void TableDimension::SortByStatistic(const std::function<double(int)>& valueOf) {
  auto& categories = _data->_categories;
  const bool ascending = _data->_variable->GetIsOrderA();
  auto isValue = [](const AggregationCategory* c) {
    return c->GetCatType() == AggregationCategory::kValue ||
           c->GetCatType() == AggregationCategory::kVariable;
  };
  std::size_t start = 0;
  while (start < categories.size()) {
    if (!isValue(categories[start])) {
      ++start;
      continue;
    }
    std::size_t end = start;
    while (end < categories.size() && isValue(categories[end])) ++end;
    std::vector<std::pair<double, AggregationCategory*>> keyed;
    for (std::size_t i = start; i < end; ++i) {
      double value = valueOf(categories[i]->GetCatEncoding());
      // Categories without a value go last whatever the direction.
      if (value == TARN_SystemMissing()) value = ascending ? 1e308 : -1e308;
      keyed.emplace_back(value, categories[i]);
    }
    std::stable_sort(keyed.begin(), keyed.end(), [ascending](const auto& a, const auto& b) {
      return ascending ? a.first < b.first : a.first > b.first;
    });
    for (std::size_t i = start; i < end; ++i) categories[i] = keyed[i - start].second;
    start = end;
  }
}

AggregationVariable* TableDimension::GetVariable() const {
  return _data->_variable;
}
bool TableDimension::GetIncludeEmpty() const {
  return _data->_variable->GetIsEmptyInclude();
}
bool TableDimension::GetCountDuplicates() const {
  return _data->_countDuplicates;
}

void TableDimension::MapBlock(const CaseBlock& block) {
  Data& d = *_data;
  if (d._kind == AggregationVariable::kSingle) {
    d.MapSingleBlock(block);
    return;
  }
  d._blockStates.resize(block._size);
  d._blockOffsets.resize(block._size + 1);
  d._blockEntries.clear();
  d._entriesPending = false;
  if (d._kind == AggregationVariable::kDichotomySet && d._members.size() <= 64) {
    d.MapDichotomyBlock(block);
    return;
  }
  for (std::size_t k = 0; k < block._size; ++k) {
    d._entries.clear();
    const CaseState state = d._kind == AggregationVariable::kCategorySet ? d.MapCategorySet(block, k)
                                                                         : d.MapDichotomySet(block, k);
    d._blockStates[k] = static_cast<char>(state);
    d._blockOffsets[k] = d._blockEntries.size();
    d._blockEntries.insert(d._blockEntries.end(), d._entries.begin(), d._entries.end());
  }
  d._blockOffsets[block._size] = d._blockEntries.size();
}

const int* TableDimension::GetBlockCodes() const {
  return _data->_kind == AggregationVariable::kSingle ? _data->_blockCodes.data() : nullptr;
}

const char* TableDimension::GetMissingFlags() const {
  return _data->_missingFlags.data();
}

TableDimension::CaseState TableDimension::GetBlockState(std::size_t k) const {
  _data->BuildDichotomyEntries();
  return static_cast<CaseState>(_data->_blockStates[k]);
}

const DimensionEntry* TableDimension::GetBlockEntries(std::size_t k, std::size_t& count) const {
  _data->BuildDichotomyEntries();
  const std::size_t first = _data->_blockOffsets[k];
  count = _data->_blockOffsets[k + 1] - first;
  return _data->_blockEntries.data() + first;
}

const std::uint64_t* TableDimension::GetBlockMasks() const {
  const bool masks = _data->_kind == AggregationVariable::kDichotomySet && _data->_members.size() <= 64;
  return masks ? _data->_hitMasks.data() : nullptr;
}

TableDimension::SetBlock TableDimension::GetSetBlock() const {
  _data->BuildDichotomyEntries();
  return {_data->_blockStates.data(), _data->_blockOffsets.data(), _data->_blockEntries.data()};
}

int TableDimension::GetDichotomyMemberCount() const {
  return _data->_kind == AggregationVariable::kDichotomySet ? static_cast<int>(_data->_members.size()) : 0;
}

const std::vector<DimensionEntry>& TableDimension::GetTotalOnlyEntries() const {
  return _data->_totalOnly;
}

bool TableDimension::IsSingleVariable() const {
  return _data->_kind == AggregationVariable::kSingle;
}

int TableDimension::SubtotalOf(int code) const {
  if (_data->_kind == AggregationVariable::kDichotomySet) {
    const auto& subtotals = _data->_memberSubtotal;
    return code >= 0 && code < static_cast<int>(subtotals.size()) ? subtotals[static_cast<unsigned>(code)] : 0;
  }
  if (code < 0 || code >= static_cast<int>(_data->_values.size())) return 0;
  const int subtotal = _data->_values[static_cast<unsigned>(code)]._subtotal;
  return subtotal < kCellKeyTotal ? subtotal : 0;
}

void TableDimension::CompleteCategories() {
  Data& d = *_data;
  d._owned.clear();
  d._categories.clear();
  d._pcomputeRequired.clear();
  AggregationVariable& variable = *d._variable;
  const auto* parsed = variable.GetParsedCategories();

  if (d._kind == AggregationVariable::kDichotomySet) {
    d.AddSetCategories(variable);
  } else if (parsed == nullptr) {
    if (variable.GetIsEmptyInclude()) d.RegisterLabelledValues();
    std::vector<int> ids;
    for (std::size_t id = 0; id < d._values.size(); ++id) {
      const ValueInfo& info = d._values[id];
      if (info._item == kItemImplicit && d.Shown(info)) ids.push_back(static_cast<int>(id));
    }
    d.SortIds(ids);
    for (int id : ids) d._categories.push_back(d.MakeValueCategory(id));
  } else {
    if (variable.GetIsEmptyInclude()) d.RegisterLabelledValues();
    for (std::size_t i = 0; i < parsed->size(); ++i) {
      const ParsedCategory* item = (*parsed)[i];
      switch (item->GetPCType()) {
        case ParsedCategory::kParsedValue: {
          const int id = d.Register(item->GetCatValue());
          const ValueInfo& info = d._values[static_cast<unsigned>(id)];
          if (info._item == static_cast<int>(i) && (info._seen || variable.GetIsEmptyInclude())) {
            d._categories.push_back(d.MakeValueCategory(id));
          }
          break;
        }
        case ParsedCategory::kParsedRange:
        case ParsedCategory::kParsedLo:
        case ParsedCategory::kParsedHi:
        case ParsedCategory::kParsedAll:
        case ParsedCategory::kParsedMissing:
        case ParsedCategory::kParsedOtherNM: {
          std::vector<int> ids;
          for (std::size_t id = 0; id < d._values.size(); ++id) {
            const ValueInfo& info = d._values[id];
            if (info._item == static_cast<int>(i) && d.Shown(info)) {
              ids.push_back(static_cast<int>(id));
            }
          }
          d.SortIds(ids);
          for (int id : ids) d._categories.push_back(d.MakeValueCategory(id));
          break;
        }
        case ParsedCategory::kParsedSubtotal:
        case ParsedCategory::kParsedHSubtotal:
          d.AddSubtotalCategory(*item, variable.GetVarIndex());
          break;
        case ParsedCategory::kParsedComputed:
          d.AddComputedCategory(*item, variable.GetVarIndex());
          break;
        case ParsedCategory::kParsedVariable:
          break;
      }
    }
    // Categories that computed categories refer to are the value categories of the list.
    for (AggregationCategory* category : d._categories) {
      if (category->GetCatType() == AggregationCategory::kValue) {
        d._pcomputeRequired.push_back(category);
      }
    }
  }

  if (!variable.GetIsTotalNo()) {
    auto total = std::make_unique<AggregationCategory>(AggregationCategory::kTotal, kCellKeyTotal,
                                                       variable.GetVarIndex());
    total->SetCatLabel(variable.GetTotalLabel(), variable.GetIsTotalLabelDefault());
    if (variable.GetIsTotalPositionAfter()) {
      d._categories.push_back(total.get());
    } else {
      d._categories.insert(d._categories.begin(), total.get());
    }
    d._owned.push_back(std::move(total));
  }
  d._complete = true;
}

void TableDimension::Reset() {
  for (ValueInfo& info : _data->_values) info._seen = false;
  std::fill(_data->_fastCodes.begin(), _data->_fastCodes.end(), kFastUnknown);
  std::fill(_data->_memberHit.begin(), _data->_memberHit.end(), false);
  _data->_complete = false;
}

const AggregationCategory* TableDimension::FindCounterpart(const AggregationCategory& category) const {
  for (const AggregationCategory* own : _data->_categories) {
    if (own == &category || own->IsSameAs(category)) return own;
  }
  return nullptr;
}

const AggregationCategory* TableDimension::FindCategory(int encoding) const {
  for (const AggregationCategory* category : _data->_categories) {
    if (category->GetCatEncoding() == encoding) return category;
  }
  return nullptr;
}
