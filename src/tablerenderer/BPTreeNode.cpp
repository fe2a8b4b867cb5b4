// BPTreeNode.cpp - building a dimension's groups and categories from a header tree, and every label
#include "tablerenderer/BPTreeNode.h"

#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>

#include "host/QuiltAssert.h"
#include "host/data/HostStrings.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/TARN_ValueLabelMap.h"
#include "host/data/TARN_Variable.h"
#include "host/data/VariableSet.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/output/BpCategory.h"
#include "host/output/BpComposite.h"
#include "host/output/BpDataValue.h"
#include "host/output/BpError.h"
#include "host/output/BpNumber.h"
#include "host/output/BpProcedure.h"
#include "host/output/BpString.h"
#include "host/output/BpVariable.h"
#include "host/output/MessageKeys.h"
#include "parser/PresentationCodes.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/StatTreeNode.h"

namespace {

bool IsVariableKind(const HeaderTreeNode* node) {
  return node->GetType() == HeaderTreeNode::kHNodeTypeCatVariable ||
         node->GetType() == HeaderTreeNode::kHNodeTypeScaleVariable;
}

const StatTreeNode* AsStatistic(const HeaderTreeNode* node) {
  QUILT_ASSERT(node->GetType() == HeaderTreeNode::kHNodeTypeStatistic, "a statistic node is a StatTreeNode");
  return static_cast<const StatTreeNode*>(node);
}

bool FirstChildIsStatistic(const HeaderTreeNode* node) {
  return !node->IsLeaf() && node->GetChildren().front()->GetType() == HeaderTreeNode::kHNodeTypeStatistic;
}

std::string NumberedKey(const char* prefix, uint64_t location) {
  return std::string(prefix) + " " + std::to_string(location);
}

/// The cut point as the user wrote it: the last word of a percentile's default label.
std::string CutPointAsWritten(const std::string& label) {
  const size_t blank = label.find_last_of(' ');
  return blank == std::string::npos ? label : label.substr(blank + 1);
}

/// A temporary dictionary variable standing for a multiple-response set in labels.
TARN_Variable SetStandIn(const SyntaxVariableName& set) {
  TARN_Variable standIn;
  standIn.SetName(set.GetNameToken().c_str());
  const std::string label = set.GetLabel();
  if (!label.empty()) standIn.SetLabel(label.c_str());
  return standIn;
}

bool AllDigitsOrDecimal(const std::string& text) {
  if (text.empty()) return false;
  if (text.find('.') != std::string::npos) return true;
  for (char c : text) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

/// The text that stands for one ")LABEL[x]" reference of a computed category's label.
std::string ExpandLabelReference(const std::string& reference, int varIndex, ProcedureDataSource* dataSource) {
  if (dataSource == nullptr) return reference;
  if (varIndex < 0) {
    for (int i = 0; i < dataSource->ColumnCount(); ++i) {
      const TARN_Variable* variable = dataSource->GetVariable(i);
      if (SyntaxParserUtility::ExactWordMatch(variable->GetName(), reference)) {
        const char* label = variable->GetLabel();
        return label != nullptr && *label != '\0' ? std::string(label) : reference;
      }
    }
    return reference;
  }
  const TARN_Variable* variable = dataSource->GetVariable(varIndex);
  if (variable == nullptr) return reference;
  TARN_ValueLabelMap labels(variable->GetValueLabels());
  const char* label = nullptr;
  if (variable->GetType() == 0) {
    // Numeric: the reference names an integer value.
    if (AllDigitsOrDecimal(reference)) label = labels.GetLabel(std::to_string(std::atoi(reference.c_str())));
  } else if (reference.size() >= 2) {
    label = labels.GetLabel(reference.substr(1, reference.size() - 2));
  }
  return label != nullptr ? std::string(label) : reference;
}

}  // namespace

BPTreeNode::BPTreeNode(HeaderTreeNode* header, int depth, BpGroup& group)
    : _headerNode(header), _cubeIndex(header->GetCubeIndexInDim()), _depth(depth), _group(group) {}

BPTreeNode::~BPTreeNode() {
  for (BPTreeNode* child : _children) delete child;
}

int BPTreeNode::AddChild(BPTreeNode* child) {
  QUILT_ASSERT(child != nullptr, "a shadow node adds a real child");
  _children.push_back(child);
  child->_parent = this;
  _isLeaf = false;
  if (_statSourceVar != nullptr) child->_statSourceVar = _statSourceVar;
  return static_cast<int>(_children.size());
}

SyntaxVariableName* BPTreeNode::GetSourceVariable() const {
  if (_statSourceVar != nullptr) return _statSourceVar;
  if (IsVariableKind(_headerNode)) return _headerNode->GetVariable();
  if (_headerNode->GetType() == HeaderTreeNode::kHNodeTypeStatistic && _parent != nullptr &&
      IsVariableKind(_parent->_headerNode)) {
    return _parent->_headerNode->GetVariable();
  }
  return nullptr;
}

SyntaxVariableName* BPTreeNode::GetStatSourceVar() const { return _statSourceVar; }
BpGroup& BPTreeNode::GetParentGroup() { return _group; }
BPTreeNode* BPTreeNode::GetParent() const { return _parent; }
HeaderTreeNode* BPTreeNode::GetHeaderTreeNode() const { return _headerNode; }
int BPTreeNode::GetIndex() const { return _cubeIndex; }
const std::vector<BPTreeNode*>& BPTreeNode::GetChildren() const { return _children; }

std::unique_ptr<BpCellText> BPTreeNode::CreateCellText(ProcedureDataSource* dataSource) const {
  bool hide = false;
  return CreateCellText(_headerNode, dataSource, hide);
}

BPTreeNode* BPTreeNode::CreateBPTree(HeaderTreeNode* header, int depth, ProcedureDataSource* dataSource,
                                     BpGroup& parentGroup, std::vector<BPTreeNode*>& leaves, bool showStats,
                                     SyntaxVariableName* sourceVar) {
  QUILT_ASSERT(header != nullptr, "a shadow tree is built from a header node");
  bool hide = false;
  auto* node = new BPTreeNode(header, depth, parentGroup);
  if (sourceVar != nullptr) {
    node->_statSourceVar = sourceVar;
  } else if (IsVariableKind(header) && header->GetVariable()->HasStatistics()) {
    node->_statSourceVar = header->GetVariable();
  }

  if (header->GetType() == HeaderTreeNode::kHNodeTypeRoot) {
    if (header->GetNChildren() > 1 || header->GetCloneKids() > 1) {
      // The two sides of a + stand in one unlabelled group, so that the dimension has a
      // single top however many terms are stacked.
      BpGroup group = parentGroup.Group(BpString("DummyGroup", false), false, BpPivotTable::kSortAsCreated);
      SyntaxVariableName* source = node->_statSourceVar;
      delete node;
      node = new BPTreeNode(header, depth + 1, parentGroup);
      node->_statSourceVar = source;
      ProcessKids(header->GetChildren(), node, depth + 2, dataSource, group, leaves, showStats, source);
      return node;
    }
    if (header->GetNChildren() == 1) {
      node->AddChild(CreateBPTree(header->GetChildren().front(), depth + 1, dataSource, parentGroup, leaves,
                                  showStats, node->_statSourceVar));
    }
    return node;
  }

  std::unique_ptr<BpCellText> text = CreateCellText(header, dataSource, hide);
  if (text == nullptr) return node;  // an unsupported category: warned, not made
  if (!header->IsLeaf() && (showStats || !FirstChildIsStatistic(header))) {
    BpGroup group = parentGroup.Group(*text, !hide, BpPivotTable::kSortAsCreated);
    ProcessKids(header->GetChildren(), node, depth + 1, dataSource, group, leaves, showStats, node->_statSourceVar);
    return node;
  }

  // A leaf of the dimension: a header leaf, or a node with only statistics below it while
  // the statistics stand in a dimension of their own.
  if (!hide) {
    leaves.push_back(node);
    parentGroup.Category(*text);
    return node;
  }
  // A hidden variable label is a blank; the group named after the variable keeps the
  // blank of one hidden variable apart from the blank of another.
  BpComposite composite("DummyHidingVar ^1", false);
  SyntaxVariableName* variable = header->GetVariable();
  if (variable->GetIndex() >= 0) {
    composite.Add(BpVariable(*dataSource->GetVariable(variable->GetIndex()), BpVariable::kShowDefault));
  } else if (!variable->GetNameToken().empty() && variable->GetNameToken()[0] == '$' && dataSource != nullptr) {
    for (const VariableSet& set : VariableSets(*dataSource, 1)) {
      if (TARNMBstricmp_A(set.GetName(2).c_str(), variable->GetNameToken().c_str()) == 0) {
        const std::string label = set.GetLabel();
        composite.Add(BpString(label.empty() ? set.GetName(2) : label, false));
        break;
      }
    }
  }
  composite.Finish();
  BpGroup group = parentGroup.Group(composite, false, BpPivotTable::kSortAsCreated);
  auto* child = new BPTreeNode(header, depth + 1, group);
  node->AddChild(child);
  leaves.push_back(child);
  group.Category(*text);
  return node;
}

void BPTreeNode::AddHiddenLevel(const BpCellText& key, HeaderTreeNode* child, BPTreeNode* parent, int depth,
                                ProcedureDataSource* dataSource, BpGroup& group, std::vector<BPTreeNode*>& leaves,
                                bool showStats, SyntaxVariableName* sourceVar) {
  BpGroup hiddenGroup = group.Group(key, false, BpPivotTable::kSortAsCreated);
  auto* middle = new BPTreeNode(child, depth, group);
  parent->AddChild(middle);
  middle->AddChild(CreateBPTree(child, depth + 1, dataSource, hiddenGroup, leaves, showStats, sourceVar));
}

int BPTreeNode::ProcessKids(const std::vector<HeaderTreeNode*>& children, BPTreeNode* parent, int depth,
                            ProcedureDataSource* dataSource, BpGroup& group, std::vector<BPTreeNode*>& leaves,
                            bool showStats, SyntaxVariableName* sourceVar) {
  std::set<std::string> seenNames;
  for (HeaderTreeNode* child : children) {
    switch (child->GetType()) {
      case HeaderTreeNode::kHNodeTypeCatVariable:
      case HeaderTreeNode::kHNodeTypeScaleVariable: {
        const std::string name = child->GetVariable()->GetNameToken();
        if (seenNames.count(name) == 0 && !child->varPresent(name)) {
          seenNames.insert(name);
          break;  // the plain way
        }
        // The same variable beside itself: its categories must stay apart from the first.
        AddHiddenLevel(BpString(NumberedKey("DummyGroup", child->GetChildLoc()), false), child, parent, depth,
                       dataSource, group, leaves, showStats, sourceVar);
        continue;
      }
      case HeaderTreeNode::kHNodeTypeCategory: {
        const int type = child->GetCategory()->GetCatType();
        if (type == AggregationCategory::kSubtotal || type == AggregationCategory::kHSubtotal) {
          AddHiddenLevel(BpString(NumberedKey("DummySubtotal", child->GetChildLoc()), false), child, parent, depth,
                         dataSource, group, leaves, showStats, sourceVar);
          continue;
        }
        if (type == AggregationCategory::kPcompute) {
          AddHiddenLevel(BpString(NumberedKey("PostCategory", child->GetChildLoc()), false), child, parent, depth,
                         dataSource, group, leaves, showStats, sourceVar);
          continue;
        }
        break;
      }
      case HeaderTreeNode::kHNodeTypeStatistic: {
        std::unique_ptr<BpCellText> key = StatisticGroupKey(child);
        AddHiddenLevel(*key, child, parent, depth, dataSource, group, leaves, showStats, sourceVar);
        continue;
      }
      default:
        break;
    }
    parent->AddChild(CreateBPTree(child, depth, dataSource, group, leaves, showStats, sourceVar));
  }
  return static_cast<int>(parent->_children.size());
}

std::unique_ptr<BpCellText> BPTreeNode::StatisticGroupKey(const HeaderTreeNode* node) {
  const StatTreeNode* statistic = AsStatistic(node);
  const int primary = statistic->GetPrimaryStatistic();
  const int conf = statistic->GetConfSubType();
  if (primary == TableEncryptionCodes::kStatPtile || primary == TableEncryptionCodes::kStatUPtile) {
    std::string key = primary == TableEncryptionCodes::kStatPtile ? "DummyStat PTile ^1"
                                                                  : "DummyStat unweighted PTile ^1";
    const bool limit = conf == TableEncryptionCodes::kConfLcl || conf == TableEncryptionCodes::kConfUcl;
    if (limit) key += conf == TableEncryptionCodes::kConfLcl ? " ^2 LCL" : " ^2 UCL";
    auto composite = std::make_unique<BpComposite>(key, false);
    if (limit) composite->Add(BpNumber(statistic->GetCILevelValue(), BpProcedure::GeneralStat()));
    composite->Add(BpNumber(statistic->GetPtileValue(), BpProcedure::GeneralStat()));
    composite->Finish();
    return composite;
  }
  const std::string key = "DummyStat " + statistic->GetDefaultLabel();
  if (!statistic->HasLabelParameter()) return std::make_unique<BpString>(key, false);
  auto composite = std::make_unique<BpComposite>(key, false);
  composite->Add(BpNumber(statistic->GetCILevelValue(), BpProcedure::GeneralStat()));
  composite->Finish();
  return composite;
}

std::unique_ptr<BpCellText> BPTreeNode::CreateCellText(const HeaderTreeNode* header, ProcedureDataSource* dataSource,
                                                       bool& hide) {
  switch (header->GetType()) {
    case HeaderTreeNode::kHNodeTypeRoot:
      return std::make_unique<BpString>("Root", true);
    case HeaderTreeNode::kHNodeTypeCatVariable:
    case HeaderTreeNode::kHNodeTypeScaleVariable:
      return VariableText(header, dataSource, hide);
    case HeaderTreeNode::kHNodeTypeCategory:
      return MakeCategoryText(header->GetCategory(), dataSource);
    case HeaderTreeNode::kHNodeTypeStatistic:
      return StatisticText(header);
    case HeaderTreeNode::kHNodeTypeLabel:
      return std::make_unique<BpString>(header->GetLabel(), true);
    case HeaderTreeNode::kHNodeTypeLetter:
      return std::make_unique<BpString>(header->GetLabel(), false);
    default:
      break;
  }
  QUILT_ASSERT(false, "a final header tree holds no placeholder nodes");
  return nullptr;
}

std::unique_ptr<BpCellText> BPTreeNode::VariableText(const HeaderTreeNode* header, ProcedureDataSource* dataSource,
                                                     bool& hide) {
  const SyntaxVariableName* variable = header->GetVariable();
  QUILT_ASSERT(variable != nullptr, "a variable node names its variable");
  TARN_Variable standIn;
  const TARN_Variable* dictionaryVariable = nullptr;
  if (variable->GetType() == kConverterMRSet || variable->GetIndex() < 0 || dataSource == nullptr) {
    standIn = SetStandIn(*variable);
    dictionaryVariable = &standIn;
  } else {
    dictionaryVariable = dataSource->GetVariable(variable->GetIndex());
  }
  switch (variable->GetVLabelsOption()) {
    case PresentationCodes::kVLabelName:
      return std::make_unique<BpVariable>(*dictionaryVariable, BpVariable::kShowName);
    case PresentationCodes::kVLabelLabel:
      return std::make_unique<BpVariable>(*dictionaryVariable, BpVariable::kShowLabel);
    case PresentationCodes::kVLabelBoth: {
      std::string text = dictionaryVariable->GetName();
      const char* label = dictionaryVariable->GetLabel();
      if (label != nullptr && *label != '\0') text += std::string(" ") + label;
      return std::make_unique<BpString>(text, false);
    }
    case PresentationCodes::kVLabelNone: {
      hide = true;
      const bool hiddenStatisticsBelow =
          FirstChildIsStatistic(header) && AsStatistic(header->GetChildren().front())->IsHidden();
      if (!header->IsLeaf() && !hiddenStatisticsBelow) {
        return std::make_unique<BpVariable>(*dictionaryVariable, BpVariable::kShowDefault);
      }
      return std::make_unique<BpString>(" ", false);
    }
    case PresentationCodes::kVLabelDefault:
    default:
      return std::make_unique<BpVariable>(*dictionaryVariable, BpVariable::kShowDefault);
  }
}

std::unique_ptr<BpCellText> BPTreeNode::StatisticText(const HeaderTreeNode* node) {
  const StatTreeNode* statistic = AsStatistic(node);
  const int primary = statistic->GetPrimaryStatistic();
  const int conf = statistic->GetConfSubType();
  if ((primary == TableEncryptionCodes::kStatPtile || primary == TableEncryptionCodes::kStatUPtile) &&
      statistic->IsLabelDefault()) {
    std::string key = primary == TableEncryptionCodes::kStatPtile ? "Percentile ^1" : "Unweighted Percentile ^1";
    const bool limit = conf == TableEncryptionCodes::kConfLcl || conf == TableEncryptionCodes::kConfUcl;
    if (limit) key += conf == TableEncryptionCodes::kConfLcl ? " ^2 LCL" : " ^2 UCL";
    auto composite = std::make_unique<BpComposite>(key, true);
    if (limit) composite->Add(BpNumber(statistic->GetCILevelValue(), BpProcedure::Percent()));
    composite->Add(BpString(CutPointAsWritten(statistic->GetLabel()), false));
    composite->Finish();
    return composite;
  }
  if (!statistic->HasLabelParameter()) {
    return std::make_unique<BpString>(statistic->GetLabel(), statistic->IsLabelDefault());
  }
  auto composite = std::make_unique<BpComposite>(statistic->GetLabel(), statistic->IsLabelDefault());
  composite->Add(BpNumber(statistic->GetCILevelValue(), BpProcedure::Percent()));
  composite->Finish();
  return composite;
}

std::unique_ptr<BpCellText> BPTreeNode::MakeCategoryText(const AggregationCategory* category,
                                                         ProcedureDataSource* dataSource) {
  QUILT_ASSERT(category != nullptr, "a category node names its category");
  switch (category->GetCatType()) {
    case AggregationCategory::kValue:
      return std::make_unique<BpDataValue>(*dataSource->GetVariable(category->GetVarIndex()),
                                           category->GetCatValue(), BpDataValue::kPreferDefault);
    case AggregationCategory::kVariable:
      if (category->UseLabelForVar()) return std::make_unique<BpString>(category->GetCatLabel(), false);
      return std::make_unique<BpVariable>(*dataSource->GetVariable(category->GetVarIndex()), BpVariable::kShowDefault);
    case AggregationCategory::kNone:
    case AggregationCategory::kSubtotal:
    case AggregationCategory::kHSubtotal:
    case AggregationCategory::kTotal:
    case AggregationCategory::kPcompute: {
      bool isDefault = false;
      std::string text = GetCategoryText(category, dataSource, isDefault);
      return std::make_unique<BpString>(text, isDefault);
    }
    default:
      break;
  }
  BpError(BpString(msg::kCategoryTypeNotSupported, true), kBpShowAlways, kBpLevelWarning);
  return nullptr;
}

std::string BPTreeNode::GetCategoryText(const AggregationCategory* category, ProcedureDataSource* dataSource,
                                        bool& isDefault) {
  isDefault = category->IsLabelDefault();
  std::string label = category->GetCatLabel();
  if (category->GetCatType() != AggregationCategory::kPcompute) return label;
  static const std::string kReference = ")LABEL[";
  size_t start = 0;
  while ((start = label.find(kReference, start)) != std::string::npos) {
    const size_t open = start + kReference.size();
    const size_t close = label.find(']', open);
    if (close == std::string::npos) break;
    const std::string expanded =
        ExpandLabelReference(label.substr(open, close - open), category->GetVarIndex(), dataSource);
    label.replace(start, close + 1 - start, expanded);
    start += expanded.size();
  }
  return label;
}

void BPTreeNode::AddCategoryText(const HeaderTreeNode* headerNode, ProcedureDataSource* dataSource,
                                 BpComposite& composite) {
  if (headerNode->GetType() == HeaderTreeNode::kHNodeTypeCategory) {
    const int type = headerNode->GetCategory()->GetCatType();
    if (type >= AggregationCategory::kNone && type <= AggregationCategory::kPcompute) {
      composite.Add(*MakeCategoryText(headerNode->GetCategory(), dataSource));
      return;
    }
  }
  BpError(BpString(msg::kCategoryTypeNotSupported, true), kBpShowAlways, kBpLevelError);
}
