// SyntaxCategoriesSubcommand.cpp - the CATEGORIES keywords, and their commit into the table's variables
#include "parser/SyntaxCategoriesSubcommand.h"

#include <algorithm>
#include <ostream>

#include "host/data/HostStrings.h"
#include "host/data/VariableSet.h"
#include "host/engine/TableEncryptionCodes.h"
#include "parser/CategoryToken.h"
#include "parser/SubTableCube.h"
#include "parser/SyntaxCatVarList.h"
#include "parser/SyntaxCategoriesParen.h"
#include "parser/SyntaxCategorySquareBracket.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableScope.h"

namespace {

using Codes = TableEncryptionCodes;

// The keyword whose value is awaited.
enum State {
  kStateNone = 0,
  kStateVariables = 1,
  kStateTotal = 2,
  kStateLabel = 3,
  kStatePosition = 4,
  kStateEmpty = 5,
  kStateOrder = 6,
  kStateKey = 7,
  kStateMissing = 8,
};

// Words that are keywords inside an explicit list, and may also be names of set members.
constexpr const char* kReservedWords[] = {"SUBTOTAL", "HSUBTOTAL", "LO", "HI", "THRU", "MISSING", "OTHERNM"};
constexpr int kReservedWordCount = 7;

bool IsSubtotal(Codes::ExplicitListType type) {
  return type == Codes::kExplicitSubtotal || type == Codes::kExplicitHSubtotal;
}

}  // namespace

struct SyntaxCategoriesSubcommand::Data {
  int _state = kStateNone;
  bool _orderSet = false;
  bool _missingSet = false;
  bool _keySet = false;
  bool _totalSet = false;
  bool _positionSet = false;
  bool _emptySet = false;
  SyntaxCatVarList* _catVarList = nullptr;                // a child; null until VARIABLES
  SyntaxCategorySquareBracket* _squareBracket = nullptr;  // a child; null until "["
  std::vector<std::string> _variableList;                 // the names the subcommand applies to
  bool _isOrderA = true;
  bool _isMissingExclude = true;
  Codes::SortKey _sortKey = Codes::kSortKeyValue;
  Codes::StatisticCodes _sortStatistic = Codes::kStatNone;     // with kSortKeyStatistic only
  Codes::StatisticCodes _primaryStatistic = Codes::kStatNone;  // its primary code
  Codes::StatisticConf _statisticConf = Codes::kConfNone;      // its confidence variant
  std::string _sortVariableName;                               // the variable in KEY=stat(var)
  double _cutPoint = -1.0;                                     // PTILE and UPTILE
  Codes::StatisticsGroup _statisticGroup = Codes::kStatGroupCounts;
  std::string _statisticLabel;
  bool _isTotalNo = true;
  bool _totalUsedInExpression = false;  // a referred computed category uses TOTAL
  std::string _totalLabel;              // empty: not given
  bool _isTotalPositionAfter = true;
  bool _isEmptyInclude = true;
  std::string _pcCatName;  // the computed category that needs the total
};

SyntaxCategoriesSubcommand::SyntaxCategoriesSubcommand()
    : NamedConverter("CATEGORIES", kConverterCategories), _data(std::make_unique<Data>()) {}

SyntaxCategoriesSubcommand::~SyntaxCategoriesSubcommand() = default;

void SyntaxCategoriesSubcommand::DropChild(SyntaxConverter* child) {
  std::vector<SyntaxConverter*>& children = Children();
  children.erase(std::remove(children.begin(), children.end(), child), children.end());
  delete child;
}

// VARIABLES '=' | TOTAL '=' | LABEL '=' | POSITION '=' | EMPTY '=' | ORDER '=' | KEY '=' | MISSING '='
SyntaxConverter* SyntaxCategoriesSubcommand::AttributeString(const std::string& text,
                                                             TARN_TokenSequence* /*tokens*/) {
  Data& data = *_data;
  if (data._state != kStateNone) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (KeywordMatch(text.c_str(), "VARIABLES")) {
    if (data._catVarList != nullptr) {
      SyntaxParserUtility::DuplicateWarning(this, "VARIABLES");
      data._variableList.clear();
      DropChild(data._catVarList);
      data._catVarList = nullptr;
    }
    // The list names the variables the explicit list is read for, so it must come first.
    if (data._squareBracket != nullptr) {
      SyntaxParserUtility::EmptyVarListExplicitCatList(this, text);
    }
    data._catVarList = new SyntaxCatVarList(this);
    Add(data._catVarList);
    return data._catVarList;
  }
  struct Keyword {
    const char* word;
    int state;
    bool given;
  };
  const Keyword keywords[] = {
      {"TOTAL", kStateTotal, data._totalSet},          {"LABEL", kStateLabel, !data._totalLabel.empty()},
      {"POSITION", kStatePosition, data._positionSet}, {"EMPTY", kStateEmpty, data._emptySet},
      {"ORDER", kStateOrder, data._orderSet},          {"KEY", kStateKey, data._keySet},
      {"MISSING", kStateMissing, data._missingSet},
  };
  for (const Keyword& keyword : keywords) {
    if (KeywordMatch(text.c_str(), keyword.word)) {
      if (keyword.given) {
        SyntaxParserUtility::DuplicateWarning(this, keyword.word);
      }
      data._state = keyword.state;
      return this;
    }
  }
  SyntaxParserUtility::UnknownKeyword(this, text);
}

// LABEL = 'text'
SyntaxConverter* SyntaxCategoriesSubcommand::Literal(const std::string& text) {
  if (_data->_state != kStateLabel) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  _data->_totalLabel = text;
  _data->_state = kStateNone;
  return this;
}

// TOTAL = YES|NO, POSITION = AFTER|BEFORE, EMPTY = INCLUDE|EXCLUDE, ORDER = A|D,
// KEY = VALUE|LABEL|statistic, MISSING = EXCLUDE|INCLUDE
SyntaxConverter* SyntaxCategoriesSubcommand::String(const std::string& text) {
  Data& data = *_data;
  auto is = [&](const char* word) { return SyntaxParserUtility::ExactWordMatch(text, word); };
  // The options that take one of two words: the first sets the flag, the second clears it.
  struct Choice {
    int state;
    const char* setWord;
    const char* clearWord;
    bool fixedByList;  // refused with an explicit list
    bool Data::*value;
    bool Data::*given;
  };
  static constexpr Choice kChoices[] = {
      {kStateTotal, "NO", "YES", false, &Data::_isTotalNo, &Data::_totalSet},
      {kStatePosition, "AFTER", "BEFORE", false, &Data::_isTotalPositionAfter, &Data::_positionSet},
      {kStateEmpty, "INCLUDE", "EXCLUDE", false, &Data::_isEmptyInclude, &Data::_emptySet},
      {kStateOrder, "A", "D", true, &Data::_isOrderA, &Data::_orderSet},
      {kStateMissing, "EXCLUDE", "INCLUDE", true, &Data::_isMissingExclude, &Data::_missingSet},
  };
  for (const Choice& choice : kChoices) {
    if (choice.state != data._state) {
      continue;
    }
    if (!is(choice.setWord) && !is(choice.clearWord)) {
      SyntaxParserUtility::UnknownKeyword(this, text);
    }
    if (choice.fixedByList) {
      RefuseBesideList();
    }
    data.*choice.value = is(choice.setWord);
    data.*choice.given = true;
    data._state = kStateNone;
    return this;
  }
  SyntaxConverter* next = this;
  switch (data._state) {
    case kStateKey:
      next = ReadSortKey(text);
      break;
    case kStateLabel:
      // The reader gives a quoted label as a literal; a word here means the token stream
      // and this converter disagree.
      SyntaxParserUtility::UnexpectedError(__FILE__, __LINE__);
    default:
      SyntaxParserUtility::UnknownKeyword(this, text);
  }
  data._state = kStateNone;
  return next;
}

// ORDER, KEY and MISSING choose among the data's categories, which an explicit list fixes.
void SyntaxCategoriesSubcommand::RefuseBesideList() const {
  if (_data->_squareBracket != nullptr) {
    SyntaxParserUtility::ExplicitListViolation();
  }
}

// KEY = VALUE | LABEL | statistic [ '(' variable ')' ]
SyntaxConverter* SyntaxCategoriesSubcommand::ReadSortKey(const std::string& text) {
  Data& data = *_data;
  auto is = [&](const char* word) { return SyntaxParserUtility::ExactWordMatch(text, word); };
  SyntaxConverter* next = this;
  if (is("VALUE")) {
    data._sortKey = Codes::kSortKeyValue;
  } else if (is("LABEL")) {
    data._sortKey = Codes::kSortKeyLabel;
  } else {
    int code = 0;
    int prime = 0;
    int conf = 0;
    if (!SyntaxParserUtility::SupportedStatistics(text, code, data._statisticLabel, data._statisticGroup,
                                                  prime, conf)) {
      SyntaxParserUtility::UnknownKeyword(this, text);
    }
    data._sortStatistic = static_cast<Codes::StatisticCodes>(code);
    data._primaryStatistic = static_cast<Codes::StatisticCodes>(prime);
    data._statisticConf = static_cast<Codes::StatisticConf>(conf);
    const bool isPercentile =
        data._primaryStatistic == Codes::kStatPtile || data._primaryStatistic == Codes::kStatUPtile;
    auto* paren = new SyntaxCategoriesParen(this, text, isPercentile);
    Add(paren);
    // A statistic of the categories themselves needs no variable to be computed on.
    if (data._statisticGroup != Codes::kStatGroupSummary) {
      paren->ParenthesisAreOptional(true);
    }
    data._sortKey = Codes::kSortKeyStatistic;
    next = paren;
  }
  RefuseBesideList();
  data._keySet = true;
  return next;
}

// '[' explicit list ']'
SyntaxConverter* SyntaxCategoriesSubcommand::LeftSquareBracket(const std::string& text) {
  Data& data = *_data;
  if (data._state != kStateNone) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (data._orderSet || data._keySet || data._missingSet) {
    SyntaxParserUtility::ExplicitListViolation();
  }
  if (data._squareBracket != nullptr) {
    SyntaxParserUtility::DuplicateExplicitList(this);
    DropChild(data._squareBracket);
    data._squareBracket = nullptr;
  }
  if (data._catVarList == nullptr) {
    SyntaxParserUtility::EmptyVarListExplicitCatList(this, text);
  }
  // A list meant only for dichotomy sets names members; a reserved word that is the name of
  // a member must then mean that member.
  int wordIndex[kReservedWordCount];
  for (int word = 0; word < kReservedWordCount; ++word) {
    wordIndex[word] = VariableExists(kReservedWords[word]);
  }
  std::size_t dichotomyCount = 0;
  int wordCount[kReservedWordCount] = {};
  for (const std::string& name : data._variableList) {
    for (SyntaxVariableName* variable : GetCategoricalVariables(name)) {
      if (variable->GetType() != kConverterMRSet) {
        continue;
      }
      auto* set = static_cast<SyntaxMRVariableSet*>(variable);
      if (set->GetMRSetType() != VariableSet::kMR_Dichotomy) {
        continue;
      }
      ++dichotomyCount;
      for (int word = 0; word < kReservedWordCount; ++word) {
        if (wordIndex[word] >= 0 && set->ContainsThisVariable(wordIndex[word])) {
          ++wordCount[word];
        }
      }
    }
  }
  auto* bracket = new SyntaxCategorySquareBracket;
  if (!data._variableList.empty() && dichotomyCount == data._variableList.size()) {
    std::vector<std::string> reservedMembers;
    for (int word = 0; word < kReservedWordCount; ++word) {
      if (wordCount[word] >= 1) {
        reservedMembers.push_back(kReservedWords[word]);
      }
    }
    bracket->SetMemberList(reservedMembers);
  }
  data._squareBracket = bracket;
  Add(bracket);
  return bracket;
}

void SyntaxCategoriesSubcommand::SetSortKeyVariable(const std::string& name, double percentile) {
  Data& data = *_data;
  if (!ScaleVarNameExist(name) && !CatVarNameExist(name)) {
    SyntaxParserUtility::UnknownKeyword(this, name);
  }
  // A summary statistic is computed on a scale variable; a set's response statistic on a set.
  const int index = VariableExists(name);
  const bool inconsistent = (data._statisticGroup == Codes::kStatGroupSummary && !ScaleVarNameExist(name)) ||
                            (data._statisticGroup == Codes::kStatGroupResponses && index >= 0);
  if (inconsistent) {
    SyntaxParserUtility::InconsistentStatVarPair(
        this, name, SyntaxParserUtility::GetStatToken(data._sortStatistic, -1.0));
  }
  data._sortVariableName = name;
  if (data._primaryStatistic == Codes::kStatPtile || data._primaryStatistic == Codes::kStatUPtile) {
    data._cutPoint = percentile;
  }
}

void SyntaxCategoriesSubcommand::ValidateAndCommit(const std::string& text) {
  Data& data = *_data;
  if (data._squareBracket != nullptr) {
    data._totalUsedInExpression = data._squareBracket->IsTotalUsedExprInPc();
    data._pcCatName = data._squareBracket->GetPcCatName();
    // With no variable left there is nothing the computed category would be shown for.
    if (data._totalUsedInExpression && (!data._totalSet || data._isTotalNo) && !data._variableList.empty()) {
      SyntaxParserUtility::MissingTOTALKeywordOrTOTALSetIsNo(this, data._pcCatName,
                                                             data._variableList.front());
    }
  }
  if (data._state != kStateNone || data._catVarList == nullptr) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (data._variableList.empty()) {
    return;
  }
  if (data._sortKey == Codes::kSortKeyStatistic) {
    ValidateSummarySortKey();
  }
  const bool anyKeyword = data._totalSet || data._positionSet || data._emptySet || data._orderSet ||
                          data._keySet || data._missingSet || !data._totalLabel.empty() ||
                          data._squareBracket != nullptr;
  if (!anyKeyword) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (data._squareBracket != nullptr) {
    // With totals after, nothing stands ahead of a first subtotal for it to sum; with
    // totals before, nothing behind a last one.
    const std::vector<CategoryToken*>& tokens = data._squareBracket->GetTokens();
    if (!tokens.empty()) {
      const std::size_t end = data._isTotalPositionAfter ? 0 : tokens.size() - 1;
      if (IsSubtotal(tokens[end]->GetTokenType())) {
        SyntaxParserUtility::DropEmptySubtotal(this);
        data._squareBracket->RemoveToken(end);
      }
    }
  }
  for (const std::string& name : data._variableList) {
    for (SyntaxVariableName* variable : GetCategoricalVariables(name)) {
      if (data._totalSet) {
        variable->SetIsTotalNo(data._isTotalNo);
      }
      if (data._positionSet) {
        variable->SetTotalPositionAfter(data._isTotalPositionAfter);
      }
      if (!data._totalLabel.empty()) {
        variable->SetTotalLabel(data._totalLabel);
      }
      if (data._emptySet) {
        variable->SetIsEmptyInclude(data._isEmptyInclude);
      }
      if (data._keySet) {
        SyntaxVariableName* sortVariable = nullptr;
        if (data._sortKey == Codes::kSortKeyStatistic && !data._sortVariableName.empty()) {
          const std::vector<SyntaxVariableName*> candidates =
              data._statisticGroup == Codes::kStatGroupSummary
                  ? GetScaleVariables(data._sortVariableName)
                  : GetCategoricalVariables(data._sortVariableName);
          sortVariable = candidates.empty() ? nullptr : candidates.front();
        }
        variable->SetSortInfo(data._sortStatistic, sortVariable);
        if (data._primaryStatistic == Codes::kStatPtile || data._primaryStatistic == Codes::kStatUPtile) {
          variable->SetCutPoint(data._cutPoint);
        }
        variable->SetSortKey(data._sortKey);
      }
      if (data._missingSet) {
        variable->SetIsMissingExclude(data._isMissingExclude);
      }
      if (data._orderSet) {
        variable->SetIsOrderA(data._isOrderA);
      }
      if (data._squareBracket != nullptr) {
        variable->SetParsedCategories(data._squareBracket->GetTokens());
      }
    }
  }
}

void SyntaxCategoriesSubcommand::ValidateSummarySortKey() {
  const Data& data = *_data;
  const Codes::StatisticCodes statistic = data._sortStatistic;
  // Counts exist in every cube; an unweighted count equals the count when nothing is weighted.
  const bool countLike =
      statistic == Codes::kStatCount || (!IsDataWeighted() && statistic == Codes::kStatUCount);
  const std::string& sortVariable = data._sortVariableName;
  TableScope& table = RequireTableScope();
  // The categories can only be sorted by a statistic that some cube holding them computes.
  for (const std::string& name : data._variableList) {
    bool satisfied = false;
    for (int position = 0; position < table.GetCubeCount() && !satisfied; ++position) {
      const SubTableCube& cube = table.GetCube(position);
      if (!cube.CatVarNameExist(name)) {
        continue;
      }
      if (data._statisticGroup == Codes::kStatGroupSummary) {
        satisfied = countLike || (cube.ScaleVarNameExist(sortVariable) &&
                                  cube.ScaleVarWithStatExists(sortVariable, statistic, data._cutPoint));
      } else if (!sortVariable.empty()) {
        satisfied =
            (cube.CatVarNameExist(sortVariable) || cube.ScaleVarNameExist(sortVariable) || countLike) &&
            (cube.CatVarWithStatExists(sortVariable, statistic) ||
             cube.ScaleVarWithStatExists(sortVariable, statistic, data._cutPoint) || countLike);
      } else {
        satisfied =
            countLike || (cube.CatVarNameIsComputational(name) && cube.CatVarWithStatExists(name, statistic));
      }
    }
    if (satisfied) {
      continue;
    }
    const std::string statisticText = SyntaxParserUtility::GetStatToken(statistic, -1.0);
    if (!sortVariable.empty()) {
      SyntaxParserUtility::NonCrossingListAndSortVar(this, name, sortVariable, statisticText);
    }
    SyntaxParserUtility::UnusedSortStatOnVar(this, name, statisticText);
  }
}

void SyntaxCategoriesSubcommand::SetVariableList(const std::vector<std::string>& names) {
  _data->_variableList = names;
}

const std::vector<std::string>& SyntaxCategoriesSubcommand::GetVariableList() const {
  return _data->_variableList;
}

bool SyntaxCategoriesSubcommand::IsEmptyIncluded() const {
  return _data->_isEmptyInclude;
}

std::vector<std::string> SyntaxCategoriesSubcommand::GetCatVarNameList() {
  std::vector<std::string> names;
  for (const SyntaxVariableName* variable : RequireTableScope().GetTableVarList()) {
    if (variable->GetVariableType() != Codes::kVariableCategorical) {
      continue;
    }
    SyntaxParserUtility::AppendDistinctName(names, variable->GetNameToken());
  }
  return names;
}

std::vector<SyntaxVariableName*> SyntaxCategoriesSubcommand::GetCategoricalVariables(
    const std::string& name) {
  return GetTableVariables(name, Codes::kVariableCategorical);
}

std::vector<SyntaxVariableName*> SyntaxCategoriesSubcommand::GetScaleVariables(const std::string& name) {
  return GetTableVariables(name, Codes::kVariableScale);
}

std::vector<SyntaxVariableName*> SyntaxCategoriesSubcommand::GetTableVariables(
    const std::string& name, TableEncryptionCodes::VariableCodes type) {
  std::vector<SyntaxVariableName*> found;
  for (SyntaxVariableName* variable : RequireTableScope().GetTableVarList()) {
    if (variable->GetVariableType() == type && SyntaxParserUtility::ExactWordMatch(variable->GetNameToken(), name)) {
      found.push_back(variable);
    }
  }
  return found;
}

bool SyntaxCategoriesSubcommand::CatVarNameExist(const std::string& name) {
  return !GetCategoricalVariables(name).empty();
}

bool SyntaxCategoriesSubcommand::ScaleVarNameExist(const std::string& name) {
  return !GetScaleVariables(name).empty();
}

void SyntaxCategoriesSubcommand::DumpDetails(std::ostream& out) const {
  const Data& data = *_data;
  out << " variables=";
  const char* separator = "";
  for (const std::string& name : data._variableList) {
    out << separator << name;
    separator = ",";
  }
  out << " total=" << (data._totalSet ? (data._isTotalNo ? "NO" : "YES") : "-")
      << " label=" << (data._totalLabel.empty() ? "-" : "'" + data._totalLabel + "'")
      << " position=" << (data._positionSet ? (data._isTotalPositionAfter ? "AFTER" : "BEFORE") : "-")
      << " empty=" << (data._emptySet ? (data._isEmptyInclude ? "INCLUDE" : "EXCLUDE") : "-")
      << " order=" << (data._orderSet ? (data._isOrderA ? "A" : "D") : "-")
      << " missing=" << (data._missingSet ? (data._isMissingExclude ? "EXCLUDE" : "INCLUDE") : "-")
      << " key=";
  if (!data._keySet) {
    out << "-";
  } else if (data._sortKey == Codes::kSortKeyStatistic) {
    out << SyntaxParserUtility::GetStatToken(data._sortStatistic, data._cutPoint) << "("
        << data._sortVariableName << ")";
  } else {
    out << (data._sortKey == Codes::kSortKeyLabel ? "LABEL" : "VALUE");
  }
}
