// SyntaxMRVariableSet.cpp - a multiple-response set node: its members, counted value, labels and category
// list
#include "parser/SyntaxMRVariableSet.h"

#include <cstdlib>
#include <cstring>
#include <ostream>

#include "host/QuiltAssert.h"
#include "host/data/ObsValue.h"
#include "host/data/VariableSet.h"
#include "host/engine/ParsedCategory.h"
#include "parser/CategoryToken.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxMRsetElementaryVariable.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/VLPair.h"

struct SyntaxMRVariableSet::MrData {
  std::vector<SyntaxMRsetElementaryVariable*> _elementaryVariables;  // the members in order; owned
  int _mrSetType = VariableSet::kMR_Category;
  int _minimumWidth = 0;                    // narrowest member
  std::unique_ptr<ObsValue> _countedValue;  // dichotomy sets only
  int _countedObsSize = 0;                  // cells of the counted value
  bool _useCountedValueLabels = false;      // counted value's labels name the categories
  bool _countDuplicates = false;            // a case counts each repeated response
  bool _innermost = false;                  // innermost set of its axis in a cube
  const SyntaxMRsetElementaryVariable* _userMissingVariable = nullptr;  // category sets

  ~MrData() {
    for (SyntaxMRsetElementaryVariable* member : _elementaryVariables) {
      delete member;
    }
  }
};

namespace {

using Codes = TableEncryptionCodes;

// Two user-missing slots of members of one set; strings compare on their first eight bytes.
bool OBSEqual(const OBS* left, const OBS* right, bool isString) {
  if (left == nullptr || right == nullptr) {
    return left == right;
  }
  if (!isString) {
    return left->number == right->number;
  }
  return std::strncmp(left->bytes, right->bytes, sizeof(OBS)) == 0;
}

}  // namespace

SyntaxMRVariableSet::SyntaxMRVariableSet(VariableSet& set)
    : SyntaxVariableName(set), _mrData(std::make_unique<MrData>()) {
  _mrData->_mrSetType = set.GetType();
  _mrData->_useCountedValueLabels = set.qUseVariableCategoryLabels();
}

SyntaxMRVariableSet::~SyntaxMRVariableSet() = default;

int SyntaxMRVariableSet::GetType() const {
  return kConverterMRSet;
}

void SyntaxMRVariableSet::ValidateSetConditions(VariableSet& set, OBS* /*countedValue*/) {
  // The counted value is read from the set's own text: the cells handed in are as wide as
  // that text, while a member may be wider.
  std::string countedText = set.GetValue();
  SyntaxParserUtility::TrimTrailingWhiteSpace(countedText);
  ValidateSet(set, countedText);
  if (_mrData->_mrSetType == VariableSet::kMR_Dichotomy) {
    ValidateCountedValue(set);
  }
  ValidateLabelsInSet(set);
}

void SyntaxMRVariableSet::ValidateSet(VariableSet& set, const std::string& countedText) {
  MrData& data = *_mrData;
  for (const std::string& name : set.GetVariableNames(VariableSet::kUpperCase)) {
    auto member = std::make_unique<SyntaxMRsetElementaryVariable>(this, name, data._mrSetType, countedText);
    const int width = member->GetWidth();
    SyntaxMRsetElementaryVariable* added = member.get();
    data._elementaryVariables.push_back(member.release());
    if (data._elementaryVariables.size() == 1) {
      data._minimumWidth = width;
      SetVarDataType(width);
      SetFormat(added->GetFormatType());
      continue;
    }
    if ((width == 0) != (GetVarDataType() == 0)) {
      SyntaxParserUtility::MRInconsistentVarType(this, GetNameToken(), added->GetName());
    }
    if (width > GetVarDataType()) {
      SetVarDataType(width);
    }
    if (width < data._minimumWidth) {
      data._minimumWidth = width;
    }
  }
}

void SyntaxMRVariableSet::ValidateCountedValue(VariableSet& set) {
  MrData& data = *_mrData;
  std::string text = set.GetValue();
  SyntaxParserUtility::TrimTrailingWhiteSpace(text);
  if (GetVarDataType() >= 1) {
    // Every member must be able to hold the value, so the narrowest one decides.
    if (static_cast<int>(text.size()) > data._minimumWidth) {
      SyntaxParserUtility::MDCountedValueOverflow(this, GetNameToken(), text);
    }
    data._countedObsSize = ObsLength(GetVarDataType());
    data._countedValue = std::make_unique<ObsValue>(GetVarDataType(), nullptr, -1);
    *data._countedValue = text;
    return;
  }
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || end == nullptr || *end != '\0') {
    SyntaxParserUtility::MDCountedValueInconsistent(this, GetNameToken(), text);
  }
  data._countedObsSize = 1;
  data._countedValue = std::make_unique<ObsValue>(number);
}

void SyntaxMRVariableSet::ValidateLabelsInSet(VariableSet& /*set*/) {
  if (_mrData->_mrSetType == VariableSet::kMR_Category) {
    ValidateCategoryLabels();
  } else {
    ValidateDichotomyLabels();
  }
}

void SyntaxMRVariableSet::ValidateCategoryLabels() {
  MrData& data = *_mrData;
  const std::vector<SyntaxMRsetElementaryVariable*>& members = data._elementaryVariables;
  const bool isString = GetVarDataType() >= 1;
  std::vector<VLPair> merged;
  bool labelContradiction = false;
  bool missingContradiction = false;
  int definitions = 0;
  const SyntaxMRsetElementaryVariable* firstDefinition = nullptr;
  for (std::size_t memberIndex = 0; memberIndex < members.size(); ++memberIndex) {
    const SyntaxMRsetElementaryVariable& member = *members[memberIndex];
    // The first label given for a value stands; a later different one is a contradiction.
    const std::size_t before = merged.size();
    for (const VLPair& pair : member.GetVLData()) {
      int result = 1;
      for (std::size_t pairIndex = 0; pairIndex < before && result == 1; ++pairIndex) {
        result = pair.VLPairCompare(merged[pairIndex]);
      }
      if (result == -1) {
        labelContradiction = true;
      } else if (result == 1) {
        merged.push_back(pair);
      }
    }
    const int type = member.GetMissingValueType();
    if (type != 0) {
      ++definitions;
      if (firstDefinition == nullptr) {
        firstDefinition = &member;
      }
    }
    if (!missingContradiction && memberIndex + 1 < members.size()) {
      const SyntaxMRsetElementaryVariable& next = *members[memberIndex + 1];
      if (type != next.GetMissingValueType()) {
        missingContradiction = true;
        data._userMissingVariable = type != 0 ? &member : &next;
      } else if (type != 0) {
        if (data._userMissingVariable == nullptr) {
          data._userMissingVariable = &member;
        }
        bool same = OBSEqual(member.GetUserMissingData1(), next.GetUserMissingData1(), isString);
        if (type != 1) {
          same = same && OBSEqual(member.GetUserMissingData2(), next.GetUserMissingData2(), isString);
        }
        if (type == 3 || type == -3) {
          same = same && OBSEqual(member.GetUserMissingData3(), next.GetUserMissingData3(), isString);
        }
        missingContradiction = !same;
      }
    }
    if (labelContradiction && missingContradiction) {
      break;
    }
  }
  if (labelContradiction) {
    SyntaxParserUtility::MCVarLabelContradiction(this, GetNameToken());
  }
  // With one definition only there is nothing to contradict: it simply applies.
  if (missingContradiction && definitions >= 2 && firstDefinition != nullptr) {
    SyntaxParserUtility::MCMissingValueContradiction(this, GetNameToken(), firstDefinition->GetName());
  }
  VLPair*& pairs = GetValueLabelList();
  delete[] pairs;
  pairs = nullptr;
  if (!merged.empty()) {
    pairs = new VLPair[merged.size()];
    for (std::size_t pairIndex = 0; pairIndex < merged.size(); ++pairIndex) {
      pairs[pairIndex] = merged[pairIndex];
      pairs[pairIndex].SetOBSType(GetVarDataType());
    }
  }
  SetVLPairCount(static_cast<int>(merged.size()));
}

void SyntaxMRVariableSet::ValidateDichotomyLabels() {
  MrData& data = *_mrData;
  const std::vector<SyntaxMRsetElementaryVariable*>& members = data._elementaryVariables;
  if (data._countedValue == nullptr) {
    return;
  }
  const ObsValue& counted = *data._countedValue;
  if (data._useCountedValueLabels) {
    // The counted value's label names each category, so two members may not share one.
    std::vector<std::string> labels;
    for (const SyntaxMRsetElementaryVariable* member : members) {
      for (const VLPair& pair : member->GetVLData()) {
        if (!(pair.Value() == counted)) {
          continue;
        }
        for (const std::string& seen : labels) {
          if (SyntaxParserUtility::ExactWordMatch(seen, pair.GetLabelData())) {
            SyntaxParserUtility::MDNewCountedValueContradiction(this, GetNameToken());
            return;
          }
        }
        labels.push_back(pair.GetLabelData());
        break;
      }
    }
    return;
  }
  // The variable labels name the categories: they must differ, and the counted value should
  // read alike in every member.
  std::string firstLabel;
  bool haveFirstLabel = false;
  bool labelContradiction = false;
  bool variableLabelContradiction = false;
  bool labelWarned = false;
  bool variableLabelWarned = false;
  for (std::size_t memberIndex = 0; memberIndex < members.size(); ++memberIndex) {
    const SyntaxMRsetElementaryVariable& member = *members[memberIndex];
    for (const VLPair& pair : member.GetVLData()) {
      if (!(pair.Value() == counted)) {
        continue;
      }
      if (!haveFirstLabel) {
        firstLabel = pair.GetLabelData();
        haveFirstLabel = true;
      } else if (!SyntaxParserUtility::ExactWordMatch(firstLabel, pair.GetLabelData())) {
        labelContradiction = true;
      }
    }
    for (std::size_t laterIndex = memberIndex + 1; laterIndex < members.size(); ++laterIndex) {
      const std::string& later = members[laterIndex]->GetLabel();
      if (!member.GetLabel().empty() && !later.empty() &&
          SyntaxParserUtility::ExactWordMatch(member.GetLabel(), later)) {
        variableLabelContradiction = true;
      }
    }
    if (variableLabelContradiction && !variableLabelWarned) {
      SyntaxParserUtility::MDVarLabelContradiction(this, GetNameToken());
      variableLabelWarned = true;
    }
    if (labelContradiction && !labelWarned) {
      SyntaxParserUtility::MDCountedValueContradiction(this, GetNameToken());
      labelWarned = true;
    }
    if (labelContradiction && variableLabelContradiction) {
      break;
    }
  }
}

void SyntaxMRVariableSet::SetCountDuplicates(bool isNo) {
  _mrData->_countDuplicates = !isNo;
}

bool SyntaxMRVariableSet::GetCountDuplicates() const {
  return _mrData->_countDuplicates;
}

void SyntaxMRVariableSet::SetInnermost(bool innermost) {
  _mrData->_innermost = innermost;
}

bool SyntaxMRVariableSet::GetInnermost() const {
  return _mrData->_innermost;
}

void SyntaxMRVariableSet::SetParsedCategories(const std::vector<CategoryToken*>& tokens) {
  if (_mrData->_mrSetType == VariableSet::kMR_Category) {
    SyntaxVariableName::SetParsedCategories(tokens);
    return;
  }
  // A dichotomy set's list names its members; ORDER, KEY and MISSING are not checked here,
  // since a list of members replaces them.
  SetIsExplicit(true);
  ExplicitListPass pass;
  pass.total = CheckSubtotals(tokens);
  CleanDuplicateExplicitList();
  auto memberCategory = [&](const CategoryToken& token) -> ParsedCategory* {
    std::string name = token.GetToken();
    SyntaxParserUtility::TrimTrailingWhiteSpace(name);
    const int index = VariableExists(name);
    if (index < 0 || !ContainsThisVariable(index)) {
      SyntaxParserUtility::UnknownVariable(this, token.GetToken());
    }
    auto* category = new ParsedCategory(ParsedCategory::kParsedVariable);
    category->SetVarIndex(index);
    return category;
  };
  for (const CategoryToken* token : tokens) {
    ParsedCategory* category = nullptr;
    bool isSubtotal = false;
    switch (token->GetTokenType()) {
      case Codes::kExplicitString:
      case Codes::kExplicitNumber:
        SyntaxParserUtility::UnknownKeyword(this, token->GetToken());
      case Codes::kExplicitRange:
        SyntaxParserUtility::MDRangeInCategory(this, GetNameToken());
      case Codes::kExplicitMissing:
      case Codes::kExplicitOtherNM:
      case Codes::kExplicitName:
        category = memberCategory(*token);
        break;
      case Codes::kExplicitSubtotal:
      case Codes::kExplicitHSubtotal: {
        // A member called SUBTOTAL is reachable by its name, as long as no label follows.
        const int index = VariableExists(token->GetToken());
        if (!token->GetHasLabel() && index >= 0 && ContainsThisVariable(index)) {
          category = memberCategory(*token);
        } else {
          isSubtotal = true;
          category = MakeSubtotalCategory(*token, pass);
        }
        break;
      }
      case Codes::kExplicitComputed:
        category = MakeComputedCategory(*token, tokens, pass.total, /*index=*/-101);
        break;
      default:
        SyntaxParserUtility::UnknownKeyword(this, token->GetToken());
    }
    AppendParsedCategory(category, isSubtotal, pass);
  }
}

void SyntaxMRVariableSet::SetCategoriesList() {
  QUILT_ASSERT(_mrData->_mrSetType == VariableSet::kMR_Dichotomy, "only a dichotomy set lists its members");
  SyntaxVariableName::SetCategoriesList(GetIndexList());
}

bool SyntaxMRVariableSet::ContainsThisVariable(int index) const {
  for (const SyntaxMRsetElementaryVariable* member : _mrData->_elementaryVariables) {
    if (member->GetIndex() == index) {
      return true;
    }
  }
  return false;
}

std::vector<int> SyntaxMRVariableSet::GetIndexList() const {
  std::vector<int> indices;
  for (const SyntaxMRsetElementaryVariable* member : _mrData->_elementaryVariables) {
    indices.push_back(member->GetIndex());
  }
  return indices;
}

int SyntaxMRVariableSet::GetIndexListCount() const {
  return static_cast<int>(_mrData->_elementaryVariables.size());
}

int SyntaxMRVariableSet::GetMRSetType() const {
  return _mrData->_mrSetType;
}

const OBS* SyntaxMRVariableSet::GetCountedOBS() const {
  QUILT_ASSERT(_mrData->_mrSetType == VariableSet::kMR_Dichotomy, "only a dichotomy set has a counted value");
  return _mrData->_countedValue == nullptr ? nullptr : _mrData->_countedValue->Obs();
}

int SyntaxMRVariableSet::GetCountedOBSSize() const {
  QUILT_ASSERT(_mrData->_mrSetType == VariableSet::kMR_Dichotomy, "only a dichotomy set has a counted value");
  return _mrData->_countedObsSize;
}

bool SyntaxMRVariableSet::GetUseCountedValueLabels() const {
  return _mrData->_useCountedValueLabels;
}

int SyntaxMRVariableSet::GetUserMissingVarIndex() const {
  QUILT_ASSERT(_mrData->_mrSetType == VariableSet::kMR_Category,
               "only a category set has user-missing values");
  return _mrData->_userMissingVariable == nullptr ? -1 : _mrData->_userMissingVariable->GetIndex();
}

const std::vector<SyntaxMRsetElementaryVariable*>& SyntaxMRVariableSet::GetElementaryVariables() const {
  return _mrData->_elementaryVariables;
}

void SyntaxMRVariableSet::DumpDetails(std::ostream& out) const {
  SyntaxVariableName::DumpDetails(out);
  const MrData& data = *_mrData;
  out << " mrType=" << (data._mrSetType == VariableSet::kMR_Dichotomy ? "dichotomy" : "category")
      << " members=";
  const char* separator = "";
  for (const SyntaxMRsetElementaryVariable* member : data._elementaryVariables) {
    out << separator << member->GetName();
    separator = ",";
  }
  out << " minWidth=" << data._minimumWidth;
  if (data._countedValue != nullptr) {
    out << " counted=";
    if (data._countedValue->Type() == 0) {
      out << data._countedValue->Number();
    } else {
      out << "'" << data._countedValue->Text() << "'";
    }
    out << " countedCells=" << data._countedObsSize << " countedLabels=" << data._useCountedValueLabels;
  } else if (data._userMissingVariable != nullptr) {
    out << " missingFrom=" << data._userMissingVariable->GetName();
  }
  out << " countDuplicates=" << data._countDuplicates;
}
