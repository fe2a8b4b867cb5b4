// SyntaxParserUtilityStatistics.cpp - the statistic vocabulary: codes, keywords, default labels, groups
#include <sstream>
#include <string_view>
#include <vector>

#include "host/engine/StatisticCodeTable.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxParserUtility.h"

std::unique_ptr<std::array<QuiltAStatInfo, SyntaxParserUtility::kStatCodeCount>>
    SyntaxParserUtility::pStatInfoTable;
std::unique_ptr<std::map<std::string, int>> SyntaxParserUtility::pKeyword2StatCode;

using StatisticsGroup = TableEncryptionCodes::StatisticsGroup;

static_assert(SyntaxParserUtility::kStatCodeCount == StatisticCodeTable::kCodeCount,
              "the vocabulary has one row per statistic code");

namespace {

// The catalogue's key names, and None for a label that is no key.
namespace label_keys {
using namespace msg;
inline constexpr const char* kNone = nullptr;
}  // namespace label_keys

constexpr bool IsCatalogueLabel(const char* key, std::string_view label) {
  return key == nullptr || std::string_view(key) == label;
}

}  // namespace

// The default labels that are catalogue keys are the catalogue's: a label changed on one
// side only stops the build.
#define STATISTIC_LABEL(name, message, label) \
  static_assert(IsCatalogueLabel(label_keys::k##message, label), "a default label is its catalogue key");
#include "host/engine/StatisticCodes.def"

bool SyntaxParserUtility::GetStatExtDetail(int code, StatisticsGroup& group, std::string& label,
                                           std::string& keyword, int& prime, int& conf) {
  const StatisticCodeInfo* info = StatisticCodeTable::Decode(code);
  if (info != nullptr) {
    prime = info->_primary;
    conf = info->_conf;
  }
  keyword = StatisticCodeTable::GetKeyword(code);
  if (keyword.empty()) {
    label.clear();
    group = TableEncryptionCodes::kStatGroupCounts;
    return false;
  }
  label = StatisticCodeTable::GetLabel(code);
  group = info->_group;
  return true;
}

bool SyntaxParserUtility::IsStatComputed(int prime, int conf, StatisticsGroup /*group*/) {
  // The group is implied by the primary; the code table knows which variants are computed.
  if (prime < 0 || prime >= kStatCodeCount) {
    return false;
  }
  if (conf == TableEncryptionCodes::kConfNone || conf == TableEncryptionCodes::kConfUnset) {
    return true;
  }
  const StatisticCodeInfo* info = StatisticCodeTable::Decode(
      StatisticCodeTable::Encode(prime, static_cast<TableEncryptionCodes::StatisticConf>(conf)));
  return info != nullptr && info->_named;
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
    const StatisticCodeInfo* info = StatisticCodeTable::Decode(code);
    QuiltAStatInfo& row = (*pStatInfoTable)[code];
    if (info != nullptr && info->_named) {
      row._code = static_cast<StatisticCodes>(code);
      row._group = info->_group;
      row._label = StatisticCodeTable::GetLabel(code);
      row._keyword = StatisticCodeTable::GetKeyword(code);
      row._primaryStatistic = static_cast<StatisticCodes>(info->_primary);
      row._confSubType = info->_conf;
      (*keywords)[row._keyword] = code;
    } else {
      row = QuiltAStatInfo();
    }
  }
  for (const auto& [keyword, code] : StatisticCodeTable::GetAliases()) {
    (*keywords)[keyword] = code;
  }
  // Published last: its existence is what tells later calls that the vocabulary is built.
  pKeyword2StatCode = std::move(keywords);
}

bool SyntaxParserUtility::SupportedStatistics(const std::string& text, int& code, std::string& label,
                                              StatisticsGroup& group) {
  int prime = 0;
  int conf = TableEncryptionCodes::kConfUnset;
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
  int conf = TableEncryptionCodes::kConfUnset;
  return GetStatisticsDetail(code, group, label, keyword, prime, conf);
}

bool SyntaxParserUtility::GetStatisticsDetail(int code, StatisticsGroup& group, std::string& label,
                                              std::string& keyword, int& prime, int& conf) {
  group = TableEncryptionCodes::kStatGroupCounts;
  label.clear();
  keyword.clear();
  prime = 0;
  conf = TableEncryptionCodes::kConfUnset;
  const QuiltAStatInfo* found = FindStatInfo(code);
  if (found == nullptr) {
    return false;
  }
  const QuiltAStatInfo& row = *found;
  group = row._group;
  label = row._label;
  keyword = row._keyword;
  prime = row._primaryStatistic;
  conf = row._confSubType;
  return true;
}

const QuiltAStatInfo* SyntaxParserUtility::FindStatInfo(int code) {
  if (code < 0 || code >= kStatCodeCount) {
    return nullptr;
  }
  InitStatistics();
  const QuiltAStatInfo& row = (*pStatInfoTable)[code];
  return row._code == 0 ? nullptr : &row;
}

std::string SyntaxParserUtility::GetStatToken(int code, double cutPoint) {
  const QuiltAStatInfo* row = FindStatInfo(code);
  const std::string keyword = row != nullptr ? row->_keyword : std::string();
  if ((code == TableEncryptionCodes::kStatPtile || code == TableEncryptionCodes::kStatUPtile) &&
      cutPoint >= 0.0) {
    std::ostringstream token;
    token << keyword << ' ' << cutPoint;
    return token.str();
  }
  return keyword;
}

std::string SyntaxParserUtility::GetStatDefaultLabel(int code) {
  const QuiltAStatInfo* row = FindStatInfo(code);
  return row != nullptr ? row->_label : std::string();
}

SyntaxParserUtility::StatisticsGroup SyntaxParserUtility::GetStatGroup(int code) {
  const QuiltAStatInfo* row = FindStatInfo(code);
  return row != nullptr ? row->_group : TableEncryptionCodes::kStatGroupCounts;
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
