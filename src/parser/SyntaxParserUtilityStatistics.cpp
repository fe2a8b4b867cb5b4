// SyntaxParserUtilityStatistics.cpp - the statistic vocabulary: codes, keywords, default labels, groups
#include <sstream>
#include <vector>

#include "host/engine/AggregationStatistic.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxParserUtility.h"

std::unique_ptr<std::array<QuiltAStatInfo, SyntaxParserUtility::kStatCodeCount>>
    SyntaxParserUtility::pStatInfoTable;
std::unique_ptr<std::map<std::string, int>> SyntaxParserUtility::pKeyword2StatCode;

namespace {

using StatisticsGroup = TableEncryptionCodes::StatisticsGroup;

constexpr int kStatPtile = 468;
constexpr int kStatUPtile = 472;
constexpr int kStatMedian = 187;
constexpr int kStatUMedian = 191;

constexpr int kConfNone = 0;
constexpr int kConfLcl = 1;
constexpr int kConfUcl = 2;
constexpr int kConfSe = 3;
constexpr int kConfUnset = 4;

struct StandAlonePrimary {
  int code;
  const char* keyword;
  const char* label;
  int group;
};

// Primary statistics that are not made by the percentage rule.
constexpr StandAlonePrimary kStandAlonePrimaries[] = {
    {1, "COUNT", "Count", 0},
    {5, "UCOUNT", "Unweighted Count", 0},
    {9, "ECOUNT", "Adjusted Count", 0},
    {178, "MAXIMUM", "Maximum", 1},
    {179, "MEAN", "Mean", 1},
    {183, "UMEAN", "Unweighted Mean", 1},
    {187, "MEDIAN", "Median", 1},
    {191, "UMEDIAN", "Unweighted Median", 1},
    {197, "MINIMUM", "Minimum", 1},
    {198, "MISSING", "Missing", 1},
    {199, "UMISSING", "Unweighted Missing", 1},
    {200, "MODE", "Mode", 1},
    {201, "UMODE", "Unweighted Mode", 1},
    {202, "RANGE", "Range", 1},
    {203, "STDDEV", "Standard Deviation", 1},
    {204, "USTDDEV", "Unweighted Standard Deviation", 1},
    {205, "SUM", "Sum", 1},
    {209, "USUM", "Unweighted Sum", 1},
    {213, "TOTALN", "Total N", 1},
    {217, "UTOTALN", "Unweighted Total N", 1},
    {221, "ETOTALN", "Adjusted Total N", 1},
    {222, "VALIDN", "Valid N", 1},
    {226, "UVALIDN", "Unweighted Valid N", 1},
    {230, "EVALIDN", "Adjusted Valid N", 1},
    {231, "VARIANCE", "Variance", 1},
    {232, "UVARIANCE", "Unweighted Variance", 1},
    {289, "RESPONSES", "Responses", 2},
    {293, "URESPONSES", "Unweighted Responses", 2},
    {kStatPtile, "PTILE", "Percentile", 1},
    {kStatUPtile, "UPTILE", "Unweighted Percentile", 1},
};

struct PercentageBase {
  const char* stem;
  const char* word;
};

// The seven bases of percentages, in base-index order b = 0..6.
constexpr PercentageBase kPercentageBases[] = {
    {"ROW", "Row"},     {"COL", "Column"},         {"TABLE", "Table"},           {"SUBTABLE", "Subtable"},
    {"LAYER", "Layer"}, {"LAYERROW", "Layer Row"}, {"LAYERCOL", "Layer Column"},
};
constexpr int kPercentageBaseCount = 7;

struct PercentageFamily {
  int firstCode;
  int group;
  const char* keywordSuffix;
  const char* labelSuffix;
};

// Each family holds 7 bases x (weighted, unweighted), 8 codes per base: the weighted
// statistic at first + 8b, the unweighted at first + 8b + 4, each with room for variants.
constexpr PercentageFamily kPercentageFamilies[] = {
    {10, 0, "PCT.COUNT", " %"},
    {66, 0, "PCT.VALIDN", " Valid N %"},
    {122, 0, "PCT.TOTALN", " Total N %"},
    {233, 1, "PCT.SUM", " Sum %"},
    {297, 2, "PCT.RESPONSES", " Responses %"},
    {353, 2, "PCT.RESPONSES.COUNT", " Response % (Base: Count)"},
    {409, 2, "PCT.COUNT.RESPONSES", " Count % (Base: Responses)"},
};
constexpr int kCodesPerBase = 8;
constexpr int kUnweightedOffset = 4;

struct OddLabel {
  int code;
  const char* label;
};

// Labels that do not follow the family rule; they are what users have always seen,
// misspellings included, so they stand as they are.
constexpr OddLabel kOddLabels[] = {
    {62, msg::kUnweightedLayerColumnPercent},
    {337, "Layer Row Response %"},
    {341, "Unweighted Layer Row Response %"},
    {345, "Layer Column Response %"},
    {349, "Unweighted Layer Column Response %"},
    {413, msg::kUnweightedRowCountPercentResponses},
};

struct Alias {
  const char* keyword;
  int code;
};

// Short forms that name an existing row; they get no row of their own.
constexpr Alias kAliases[] = {
    {"ROWPCT", 10},      {"UROWPCT", 14},      {"COLPCT", 18},      {"UCOLPCT", 22},
    {"TABLEPCT", 26},    {"UTABLEPCT", 30},    {"SUBTABLEPCT", 34}, {"USUBTABLEPCT", 38},
    {"LAYERPCT", 42},    {"ULAYERPCT", 46},    {"LAYERROWPCT", 50}, {"ULAYERROWPCT", 54},
    {"LAYERCOLPCT", 58}, {"ULAYERCOLPCT", 62}, {"SEMEAN", 182},     {"USEMEAN", 186},
};

// Label, keyword and group of a primary statistic; false for a code that is no primary.
bool LookUpPrimary(int prime, int& group, std::string& label, std::string& keyword) {
  for (const StandAlonePrimary& primary : kStandAlonePrimaries) {
    if (primary.code == prime) {
      group = primary.group;
      label = primary.label;
      keyword = primary.keyword;
      return true;
    }
  }
  for (const PercentageFamily& family : kPercentageFamilies) {
    const int offset = prime - family.firstCode;
    if (offset < 0 || offset >= kPercentageBaseCount * kCodesPerBase) {
      continue;
    }
    const int within = offset % kCodesPerBase;
    if (within != 0 && within != kUnweightedOffset) {
      return false;
    }
    const PercentageBase& base = kPercentageBases[offset / kCodesPerBase];
    const bool unweighted = within == kUnweightedOffset;
    group = family.group;
    keyword = std::string(unweighted ? "U" : "") + base.stem + family.keywordSuffix;
    label = std::string(unweighted ? "Unweighted " : "") + base.word + family.labelSuffix;
    for (const OddLabel& odd : kOddLabels) {
      if (odd.code == prime) {
        label = odd.label;
      }
    }
    return true;
  }
  return false;
}

}  // namespace

bool SyntaxParserUtility::GetStatExtDetail(int code, StatisticsGroup& group, std::string& label,
                                           std::string& keyword, int& prime, int& conf) {
  int primaryGroup = 0;
  if (!AggregationStatistic::GetStatPrimeAndConf(code, prime, conf) ||
      !LookUpPrimary(prime, primaryGroup, label, keyword)) {
    label.clear();
    keyword.clear();
    group = TableEncryptionCodes::kStatGroupCounts;
    return false;
  }
  group = static_cast<StatisticsGroup>(primaryGroup);
  if (!label.empty() && !keyword.empty()) {
    switch (conf) {
      case kConfLcl:
        label += " ^1 LCL";
        keyword += ".LCL";
        break;
      case kConfUcl:
        label += " ^1 UCL";
        keyword += ".UCL";
        break;
      case kConfSe:
        label += " SE";
        keyword += ".SE";
        break;
      default:
        break;
    }
  }
  return true;
}

bool SyntaxParserUtility::IsStatComputed(int prime, int conf, StatisticsGroup group) {
  if (prime < 0 || prime >= kStatCodeCount) {
    return false;
  }
  if (conf == kConfNone || conf == kConfUnset) {
    return true;
  }
  // Medians and percentiles have confidence limits but no standard error.
  if (prime == kStatMedian || prime == kStatUMedian || prime == kStatPtile || prime == kStatUPtile) {
    return conf != kConfSe;
  }
  return group != TableEncryptionCodes::kStatGroupResponses;
}

void SyntaxParserUtility::InitStatistics() {
  if (pKeyword2StatCode) {
    return;
  }
  auto keywords = std::make_unique<std::map<std::string, int>>();
  if (!pStatInfoTable) {
    pStatInfoTable = std::make_unique<std::array<QuiltAStatInfo, kStatCodeCount>>();
  }
  for (int code = 0; code < kStatCodeCount; ++code) {
    StatisticsGroup group = TableEncryptionCodes::kStatGroupCounts;
    std::string label;
    std::string keyword;
    int prime = code;
    int conf = kConfUnset;
    QuiltAStatInfo& row = (*pStatInfoTable)[code];
    if (GetStatExtDetail(code, group, label, keyword, prime, conf) && !label.empty() && !keyword.empty() &&
        IsStatComputed(prime, conf, group)) {
      (*keywords)[keyword] = code;
      row._code = static_cast<StatisticCodes>(code);
      row._group = group;
      row._label = label;
      row._keyword = keyword;
      row._primaryStatistic = static_cast<StatisticCodes>(prime);
      row._confSubType = static_cast<StatisticConf>(conf);
    } else {
      row = QuiltAStatInfo();
    }
  }
  for (const Alias& alias : kAliases) {
    (*keywords)[alias.keyword] = alias.code;
  }
  // Published last: its existence is what tells later calls that the vocabulary is built.
  pKeyword2StatCode = std::move(keywords);
}

bool SyntaxParserUtility::SupportedStatistics(const std::string& text, int& code, std::string& label,
                                              StatisticsGroup& group) {
  int prime = 0;
  int conf = kConfUnset;
  return SupportedStatistics(text, code, label, group, prime, conf);
}

bool SyntaxParserUtility::SupportedStatistics(const std::string& text, int& code, std::string& label,
                                              StatisticsGroup& group, int& prime, int& conf) {
  InitStatistics();
  const auto found = pKeyword2StatCode->find(UpperCaseString(text.c_str()));
  if (found == pKeyword2StatCode->end()) {
    return false;
  }
  code = found->second;
  std::string keyword;
  return GetStatisticsDetail(code, group, label, keyword, prime, conf);
}

bool SyntaxParserUtility::GetStatisticsDetail(int code, StatisticsGroup& group, std::string& label,
                                              std::string& keyword) {
  int prime = 0;
  int conf = kConfUnset;
  return GetStatisticsDetail(code, group, label, keyword, prime, conf);
}

bool SyntaxParserUtility::GetStatisticsDetail(int code, StatisticsGroup& group, std::string& label,
                                              std::string& keyword, int& prime, int& conf) {
  group = TableEncryptionCodes::kStatGroupCounts;
  label.clear();
  keyword.clear();
  prime = 0;
  conf = kConfUnset;
  if (code < 0 || code >= kStatCodeCount) {
    return false;
  }
  InitStatistics();
  const QuiltAStatInfo& row = (*pStatInfoTable)[code];
  if (row._code == 0) {
    return false;
  }
  group = row._group;
  label = row._label;
  keyword = row._keyword;
  prime = row._primaryStatistic;
  conf = row._confSubType;
  return true;
}

std::string SyntaxParserUtility::GetStatToken(int code, double cutPoint) {
  StatisticsGroup group = TableEncryptionCodes::kStatGroupCounts;
  std::string label;
  std::string keyword;
  GetStatisticsDetail(code, group, label, keyword);
  if ((code == kStatPtile || code == kStatUPtile) && cutPoint >= 0.0) {
    std::ostringstream token;
    token << keyword << ' ' << cutPoint;
    return token.str();
  }
  return keyword;
}

std::string SyntaxParserUtility::GetStatDefaultLabel(int code) {
  StatisticsGroup group = TableEncryptionCodes::kStatGroupCounts;
  std::string label;
  std::string keyword;
  GetStatisticsDetail(code, group, label, keyword);
  return label;
}

SyntaxParserUtility::StatisticsGroup SyntaxParserUtility::GetStatGroup(int code) {
  StatisticsGroup group = TableEncryptionCodes::kStatGroupCounts;
  std::string label;
  std::string keyword;
  GetStatisticsDetail(code, group, label, keyword);
  return group;
}

std::vector<std::string> SyntaxParserUtility::GetStatKeywords() {
  InitStatistics();
  std::vector<std::string> keywords;
  keywords.reserve(pKeyword2StatCode->size());
  for (const auto& entry : *pKeyword2StatCode) {
    keywords.push_back(entry.first);
  }
  return keywords;
}
