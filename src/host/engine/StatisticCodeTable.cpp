// StatisticCodeTable.cpp - the constexpr code table built from StatisticCodes.def, and the keywords and
// labels
#include "host/engine/StatisticCodeTable.h"

#include <array>
#include <iterator>

namespace {

using Codes = TableEncryptionCodes;

struct PrimaryRow {
  int code;
  const char* keyword;  // null for a statistic no command can name
  const char* label;
  Codes::StatisticsGroup group;
  Codes::StatisticWeighting weighting;
  Codes::StatisticVariants variants;
};

constexpr PrimaryRow kPrimaries[] = {
#define STATISTIC(name, code, keyword, label, group, weighting, variants) \
  {code, keyword, label, Codes::kStatGroup##group, Codes::kStat##weighting, Codes::kVariants##variants},
#include "host/engine/StatisticCodes.def"
};

struct FamilyRow {
  int firstCode;
  const char* keywordSuffix;
  const char* labelSuffix;
  Codes::StatisticsGroup group;
  Codes::PercentageQuantity numerator;
  Codes::PercentageQuantity denominator;
  Codes::StatisticVariants variants;
};

constexpr FamilyRow kFamilies[] = {
#define PERCENTAGE_FAMILY(name, firstCode, keywordSuffix, labelSuffix, group, numerator, denominator, \
                          variants)                                                                   \
  {firstCode,                                                                                         \
   keywordSuffix,                                                                                     \
   labelSuffix,                                                                                       \
   Codes::kStatGroup##group,                                                                          \
   Codes::kPctOf##numerator,                                                                          \
   Codes::kPctOf##denominator,                                                                        \
   Codes::kVariants##variants},
#include "host/engine/StatisticCodes.def"
};

struct BaseRow {
  const char* stem;
  const char* word;
};

constexpr BaseRow kBases[] = {
#define QUILT_BASE_ROW(name, index, stem, word, ...) {stem, word},
    QUILT_PERCENTAGE_BASES(QUILT_BASE_ROW)
#undef QUILT_BASE_ROW
};

struct LabelRow {
  int code;
  const char* label;
};

constexpr LabelRow kOddLabels[] = {
#define STATISTIC_LABEL(name, message, label) {Codes::kStat##name, label},
#include "host/engine/StatisticCodes.def"
};

struct AliasRow {
  const char* keyword;
  int primary;
  Codes::StatisticConf conf;
};

constexpr AliasRow kAliases[] = {
#define STATISTIC_ALIAS(keyword, name, conf) {keyword, Codes::kStat##name, Codes::kConf##conf},
#include "host/engine/StatisticCodes.def"
};

static_assert(std::size(kBases) == Codes::kPercentageBaseCount, "every percentage base has its row");
static_assert(std::size(kFamilies) == Codes::kPercentageFamilyCount, "every percentage family has its row");

// One code: its meaning, and the row of kPrimaries its words come from (-1 for a percentage,
// whose words come from its family and base).
struct Entry {
  StatisticCodeInfo info;
  int row = -1;
};

using Table = std::array<Entry, StatisticCodeTable::kCodeCount>;

constexpr bool IsOffered(Codes::StatisticVariants variants, int conf) {
  if (conf == Codes::kConfNone) return true;
  if (variants == Codes::kVariantsAll) return true;
  return variants == Codes::kVariantsLimits && conf != Codes::kConfSe;
}

// Writes a primary and its variants. Two statistics on one code, or a code past the end,
// stop the compilation, since the table is built as a constant.
constexpr void Place(Table& table, int code, const StatisticCodeInfo& info, int row,
                     Codes::StatisticVariants variants, bool hasKeyword) {
  const int lastConf = variants == Codes::kVariantsNone ? Codes::kConfNone : Codes::kConfSe;
  for (int conf = Codes::kConfNone; conf <= lastConf; ++conf) {
    if (code + conf >= StatisticCodeTable::kCodeCount) throw "a statistic code lies past kStatLast";
    Entry& entry = table[code + conf];
    if (entry.info._primary != 0) throw "two statistics share a code";
    entry.info = info;
    entry.info._primary = code;
    entry.info._conf = static_cast<Codes::StatisticConf>(conf);
    entry.info._named = hasKeyword && IsOffered(variants, conf);
    entry.row = row;
  }
}

constexpr Table BuildTable() {
  Table table{};
  for (int row = 0; row < static_cast<int>(std::size(kPrimaries)); ++row) {
    const PrimaryRow& primary = kPrimaries[row];
    StatisticCodeInfo info;
    info._group = primary.group;
    info._weighting = primary.weighting;
    Place(table, primary.code, info, row, primary.variants, primary.keyword != nullptr);
  }
  for (int family = 0; family < Codes::kPercentageFamilyCount; ++family) {
    for (int base = 0; base < Codes::kPercentageBaseCount; ++base) {
      for (const bool unweighted : {false, true}) {
        StatisticCodeInfo info;
        info._group = kFamilies[family].group;
        info._weighting = unweighted ? Codes::kStatUnweighted : Codes::kStatWeighted;
        info._family = family;
        info._base = base;
        const int code = kFamilies[family].firstCode + 8 * base + (unweighted ? 4 : 0);
        Place(table, code, info, /*row=*/-1, kFamilies[family].variants, /*hasKeyword=*/true);
      }
    }
  }
  return table;
}

constexpr Table kTable = BuildTable();

static_assert(kTable[Codes::kStatULayerColPctCount].info._base == Codes::kPctBaseLayerCol,
              "the enum and the table place percentages alike");

const Entry* Find(int code) {
  if (code < 0 || code >= StatisticCodeTable::kCodeCount) return nullptr;
  const Entry& entry = kTable[code];
  return entry.info._primary == 0 ? nullptr : &entry;
}

// The keyword or the default label of the primary behind an entry; empty for a statistic no
// command can name.
std::string Words(const Entry& entry, bool label) {
  const StatisticCodeInfo& info = entry.info;
  if (entry.row >= 0) {
    const char* words = label ? kPrimaries[entry.row].label : kPrimaries[entry.row].keyword;
    return words == nullptr ? "" : words;
  }
  const bool unweighted = info._weighting == Codes::kStatUnweighted;
  if (!label) {
    return std::string(unweighted ? "U" : "") + kBases[info._base].stem +
           kFamilies[info._family].keywordSuffix;
  }
  for (const LabelRow& odd : kOddLabels) {
    if (odd.code == info._primary) return odd.label;
  }
  return std::string(unweighted ? "Unweighted " : "") + kBases[info._base].word +
         kFamilies[info._family].labelSuffix;
}

}  // namespace

const StatisticCodeInfo* StatisticCodeTable::Decode(int code) {
  const Entry* entry = Find(code);
  return entry == nullptr ? nullptr : &entry->info;
}

int StatisticCodeTable::Encode(int primary, Codes::StatisticConf conf) {
  const Entry* entry = Find(primary);
  if (entry == nullptr || entry->info._primary != primary) return -1;
  if (conf == Codes::kConfNone || conf == Codes::kConfUnset) return primary;
  const Entry* variant = Find(primary + conf);
  return variant != nullptr && variant->info._primary == primary ? primary + conf : -1;
}

int StatisticCodeTable::EncodePercentage(Codes::PercentageFamily family, Codes::PercentageBase base,
                                         bool unweighted) {
  return kFamilies[family].firstCode + 8 * base + (unweighted ? 4 : 0);
}

Codes::PercentageQuantity StatisticCodeTable::GetNumerator(int family) {
  return kFamilies[family].numerator;
}

Codes::PercentageQuantity StatisticCodeTable::GetDenominator(int family) {
  return kFamilies[family].denominator;
}

std::string StatisticCodeTable::GetKeyword(int code) {
  static const char* const kVariantSuffixes[] = {"", ".LCL", ".UCL", ".SE"};
  const Entry* entry = Find(code);
  const std::string keyword = entry == nullptr ? "" : Words(*entry, /*label=*/false);
  return keyword.empty() ? keyword : keyword + kVariantSuffixes[entry->info._conf];
}

std::string StatisticCodeTable::GetLabel(int code) {
  static const char* const kVariantSuffixes[] = {"", " ^1 LCL", " ^1 UCL", " SE"};
  const Entry* entry = Find(code);
  const std::string label = entry == nullptr ? "" : Words(*entry, /*label=*/true);
  return label.empty() ? label : label + kVariantSuffixes[entry->info._conf];
}

std::vector<std::pair<std::string, int>> StatisticCodeTable::GetAliases() {
  std::vector<std::pair<std::string, int>> aliases;
  for (const AliasRow& alias : kAliases)
    aliases.emplace_back(alias.keyword, Encode(alias.primary, alias.conf));
  return aliases;
}
