// SyntaxConverter.cpp - the default event protocol shared by all parse nodes
#include "parser/SyntaxConverter.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <vector>

#include "host/QuiltAssert.h"
#include "host/data/HostStrings.h"
#include "host/data/Obs.h"
#include "host/data/TARN_DataSource.h"
#include "host/data/VariableSet.h"
#include "host/engine/AggregationCube.h"
#include "parser/CommandScope.h"
#include "parser/SyntaxBy.h"
#include "parser/SyntaxComposite.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxDummy.h"
#include "parser/SyntaxGreaterThan.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxParen.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxPlus.h"
#include "parser/SyntaxSquareBracket.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableScope.h"

namespace {

// Terms one table expression may stack with "+".
constexpr int kMaxStackedTerms = 1000;

// How many variables the deepest nesting within `node` puts into one sub-table: a variable
// or set counts one, a nesting adds up its sides, and a stack, a paren or a crossing takes
// its deepest operand.
int NestingDepth(SyntaxConverter* node) {
  switch (node->GetType()) {
    case kConverterVariable:
    case kConverterMRSet:
      return 1;
    case kConverterGreaterThan:
    case kConverterParen:
    case kConverterPlus:
    case kConverterBy:
    case kConverterComposite:
      break;
    default:
      return 0;
  }
  const bool nests = node->GetType() == kConverterGreaterThan;
  int depth = 0;
  for (SyntaxConverter* child : node->Children()) {
    const int childDepth = NestingDepth(child);
    depth = nests ? depth + childDepth : std::max(depth, childDepth);
  }
  return depth;
}

}  // namespace

struct SyntaxConverter::ConverterData {
  SyntaxConverter* _parent = nullptr;             // null at the root and on a square bracket
  SyntaxConverter* _lastParenChild = nullptr;     // paren most recently closed directly under this one
  std::vector<SyntaxConverter*> _squareBrackets;  // brackets opened on this converter; owned
  bool _byContext = false;                        // BY may follow now
  bool _greaterThanContext = false;               // > (GT) may follow now
  bool _parenContext = false;                     // ( may follow now
  bool _plusContext = false;                      // + may follow now
  bool _squareBracketContext = false;             // [ may follow now
  bool _variableContext = false;                  // a variable or set name may follow now
  // The scopes, given on first use by the parent (or the scope source) and kept; not owned.
  mutable CommandScope* _commandScope = nullptr;
  mutable TableScope* _tableScope = nullptr;
  const SyntaxConverter* _scopeSource = nullptr;  // a bracket's opener; null: the parent

  // Shared by all converters of the run; SetDataSource sets them again for each run.
  static TARN_DataSource* _pds;    // the active data source; not owned
  static int _weightVarIndex;      // dictionary index of the case weight; -1 for none
  // The base weight of the command parsed last, published for the table builder and the
  // renderer; the command scope owns the value, and a new command resets this copy.
  static int _baseWeightVarIndex;  // dictionary index of the WEIGHT base weight; -1 for none
};

TARN_DataSource* SyntaxConverter::ConverterData::_pds = nullptr;
int SyntaxConverter::ConverterData::_weightVarIndex = -1;
int SyntaxConverter::ConverterData::_baseWeightVarIndex = -1;

namespace {

const char* TypeName(int type) {
  static const char* const kNames[] = {
      "Statistics",  "By",       "Categories", "CLabels",     "Composite",       "Plain",   "Dummy",
      "GreaterThan", "MRSet",    "Paren",      "Plus",        "SLabels",         "Command", "Table",
      "Totals",      "Variable", "PCompute",   "PProperties", "HideSmallCounts",
  };
  if (type < 0 || type >= static_cast<int>(sizeof(kNames) / sizeof(kNames[0]))) {
    return "Unknown";
  }
  return kNames[type];
}

}  // namespace

SyntaxConverter::SyntaxConverter() : _converterData(new ConverterData) {}

SyntaxConverter::~SyntaxConverter() {
  for (SyntaxConverter* bracket : _converterData->_squareBrackets) {
    delete bracket;
  }
  delete _converterData;
}

std::string SyntaxConverter::GetSubcommandName() const {
  if (_converterData->_parent == nullptr) {
    return "QUILT";
  }
  return _converterData->_parent->GetSubcommandName();
}

int SyntaxConverter::GetType() const {
  return kConverterPlain;
}

SyntaxConverter* SyntaxConverter::All(const std::string& text) {
  SyntaxParserUtility::UnknownKeyword(this, text);
}

SyntaxConverter* SyntaxConverter::AttributeString(const std::string& text, TARN_TokenSequence* tokens) {
  if (_converterData->_parent == nullptr) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  return _converterData->_parent->AttributeString(text, tokens);
}

// varlist BY varlist: crosses to the next axis
SyntaxConverter* SyntaxConverter::By(const std::string& text) {
  if (!_converterData->_byContext) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  TableScope& table = RequireTableScope();
  const std::vector<SyntaxVariableName*>& variables = table.GetTableVarList();
  // An axis with nothing on it still needs an operand: a leading BY leaves the rows empty,
  // and "a BY BY c" leaves the columns empty.
  const bool needsPlaceholder =
      variables.empty() || (variables.back()->GetAxis() == 0 && table.GetNumOfBys() == 1);
  if (needsPlaceholder) {
    Add(new SyntaxDummy);
  }
  auto* by = new SyntaxBy;
  InfixBinaryOperator(by);
  by->Initialize();
  return by;
}

// operand > operand: nests the right operand under each category of the left
SyntaxConverter* SyntaxConverter::GreaterThan(const std::string& text) {
  if (!_converterData->_greaterThanContext) {
    SyntaxParserUtility::IncorrectSequence(this, text);
  }
  return InfixBinaryOperator(new SyntaxGreaterThan);
}

SyntaxConverter* SyntaxConverter::LeftParen(const std::string& text) {
  if (!_converterData->_parenContext) {
    SyntaxParserUtility::IncorrectSequence(this, text);
  }
  auto* paren = new SyntaxParen;
  Add(paren);
  return paren;
}

SyntaxConverter* SyntaxConverter::LeftSquareBracket(const std::string& text) {
  if (!_converterData->_squareBracketContext) {
    SyntaxParserUtility::IncorrectSequence(this, text);
  }
  // The bracket's constructor may refuse (no operand to refer to), so it is owned here
  // until it has its place.
  auto bracket = std::make_unique<SyntaxSquareBracket>(this);
  _converterData->_squareBrackets.push_back(bracket.get());
  return bracket.release();
}

SyntaxConverter* SyntaxConverter::Literal(const std::string& text) {
  SyntaxParserUtility::UnknownKeyword(this, text);
}

SyntaxConverter* SyntaxConverter::Number(double /*value*/, const std::string& text) {
  SyntaxParserUtility::UnknownKeyword(this, text);
}

SyntaxConverter* SyntaxConverter::Period(const std::string& text) {
  if (_converterData->_parent == nullptr) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  ValidateAndCommit(".");
  return _converterData->_parent->Period(text);
}

// operand + operand: stacks the operands
SyntaxConverter* SyntaxConverter::Plus(const std::string& text) {
  if (!_converterData->_plusContext) {
    SyntaxParserUtility::IncorrectSequence(this, text);
  }
  auto* plus = new SyntaxPlus;
  InfixBinaryOperator(plus);
  return plus;
}

SyntaxConverter* SyntaxConverter::RightParen(const std::string& text) {
  SyntaxConverter* parent = _converterData->_parent;
  if (parent == nullptr) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  // A parenthesis closes within one subcommand; reaching a parent of another subcommand
  // means it had no partner there.
  if (!SyntaxParserUtility::ExactWordMatch(GetSubcommandName(), parent->GetSubcommandName())) {
    SyntaxParserUtility::UnbalancedParen(this, text);
  }
  return parent->RightParen(text);
}

SyntaxConverter* SyntaxConverter::RightSquareBracket(const std::string& text) {
  SyntaxConverter* parent = _converterData->_parent;
  if (parent == nullptr) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (!SyntaxParserUtility::ExactWordMatch(GetSubcommandName(), parent->GetSubcommandName())) {
    SyntaxParserUtility::UnbalancedParen(this, text);
  }
  return parent->RightSquareBracket(text);
}

SyntaxConverter* SyntaxConverter::Slash(const std::string& text) {
  // Only the root and the table stop a slash; anything else without a parent cannot take one.
  if (_converterData->_parent == nullptr) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  ValidateAndCommit(text);
  return _converterData->_parent->Slash(text);
}

SyntaxConverter* SyntaxConverter::Ampersand(const std::string& text) {
  SyntaxParserUtility::UnknownKeyword(this, text);
}

// variable | $set
SyntaxConverter* SyntaxConverter::String(const std::string& text) {
  if (!_converterData->_variableContext) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (text.empty() || text[0] != '$') {
    const int index = VariableExists(text);
    if (index < 0) {
      SyntaxParserUtility::UnknownVariable(this, text);
    }
    return AddAsVariable(index, text);
  }

  std::string name = text;
  VariableSet set;
  if (!MRSetExists(name, set)) {
    SyntaxParserUtility::UnknownVariable(this, text);
  }
  if (set.Validate() != VariableSet::kNoError) {
    // A broken set is dropped with a message; the rest of the command still parses.
    SyntaxParserUtility::MRSetInvalid(this, text);
    return this;
  }
  auto* mrSet = new SyntaxMRVariableSet(set);
  const std::string label = set.GetLabel(*ConverterData::_pds);
  mrSet->SetLabel(label);
  Add(mrSet);

  // The counted value of a dichotomy set travels as blank-filled case cells, the form in
  // which the members' data will be compared with it.
  std::vector<OBS> countedValue;
  if (set.GetType() == VariableSet::kMR_Dichotomy) {
    const std::string value = set.GetValue();
    const int size = static_cast<int>(value.size());
    countedValue.resize(ObsLength(size));
    TARNMBCopyToFixed_A(reinterpret_cast<char*>(countedValue.data()),
                        static_cast<int>(countedValue.size() * sizeof(OBS)), value.c_str(), size);
  }
  mrSet->ValidateSetConditions(set, countedValue.empty() ? nullptr : countedValue.data());

  TableScope& table = RequireTableScope();
  table.AddToVarList(mrSet);
  if (!label.empty()) {
    table.AddMRSetLabel(label);
  }
  mrSet->SetCountOfBy(table.GetNumOfBys());
  return mrSet;
}

SyntaxConverter* SyntaxConverter::SubCommandString(const std::string& text) {
  if (_converterData->_parent == nullptr) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  return _converterData->_parent->SubCommandString(text);
}

SyntaxConverter* SyntaxConverter::To(const std::string& text) {
  SyntaxParserUtility::UnknownKeyword(this, text);
}

SyntaxConverter* SyntaxConverter::Add(SyntaxConverter* child) {
  if (_converterData->_parent == nullptr) {
    delete child;
    SyntaxParserUtility::UnexpectedError(__FILE__, __LINE__);
  }
  return _converterData->_parent->Add(child);
}

void SyntaxConverter::DissectTableInCubes() {}

void SyntaxConverter::SetDataSource(TARN_DataSource* dataSource) {
  ConverterData::_pds = dataSource;
  ConverterData::_weightVarIndex = dataSource == nullptr ? -1 : dataSource->GetWeightVarIndex();
  ConverterData::_baseWeightVarIndex = -1;
}

void SyntaxConverter::SetIsLeafNode(bool /*isLeaf*/) {}

void SyntaxConverter::SetLastParenChild(SyntaxConverter* paren) {
  _converterData->_lastParenChild = paren;
}

void SyntaxConverter::SetParent(SyntaxConverter* parent) {
  QUILT_ASSERT(parent != nullptr, "a converter is only ever given a real parent");
  _converterData->_parent = parent;
}

std::vector<SyntaxConverter*>& SyntaxConverter::Children() {
  QUILT_ASSERT(_converterData->_parent != nullptr, "a leaf asked for children has a parent");
  return _converterData->_parent->Children();
}

SyntaxConverter* SyntaxConverter::GetParent() const {
  return _converterData->_parent;
}

SyntaxConverter* SyntaxConverter::TopParent() {
  if (_converterData->_parent == nullptr) {
    return this;
  }
  return _converterData->_parent->TopParent();
}

bool SyntaxConverter::IsDataWeighted() const {
  return IsDataFreqWeighted() || IsDataBaseWeighted();
}

bool SyntaxConverter::IsDataFreqWeighted() const {
  return ConverterData::_weightVarIndex != -1;
}

bool SyntaxConverter::IsDataBaseWeighted() const {
  const CommandScope* command = GetCommandScope();
  return command != nullptr && command->GetBaseWeightIndex() != -1;
}

CommandScope* SyntaxConverter::GetCommandScope() const {
  ConverterData& data = *_converterData;
  if (data._commandScope == nullptr) {
    const SyntaxConverter* source = data._scopeSource != nullptr ? data._scopeSource : data._parent;
    if (source != nullptr) data._commandScope = source->GetCommandScope();
  }
  return data._commandScope;
}

TableScope* SyntaxConverter::GetTableScope() const {
  ConverterData& data = *_converterData;
  if (data._tableScope == nullptr) {
    const SyntaxConverter* source = data._scopeSource != nullptr ? data._scopeSource : data._parent;
    if (source != nullptr) data._tableScope = source->GetTableScope();
  }
  return data._tableScope;
}

TableScope& SyntaxConverter::RequireTableScope() {
  TableScope* table = GetTableScope();
  if (table == nullptr) {
    SyntaxParserUtility::IncorrectSequence(this, "BY");
  }
  return *table;
}

void SyntaxConverter::SetCommandScope(CommandScope* scope) {
  _converterData->_commandScope = scope;
}

void SyntaxConverter::SetTableScope(TableScope* scope) {
  _converterData->_tableScope = scope;
}

void SyntaxConverter::SetScopeSource(const SyntaxConverter* source) {
  _converterData->_scopeSource = source;
}

bool SyntaxConverter::IsLessInert(const SyntaxConverter* op) const {
  QUILT_ASSERT(_converterData->_parent != nullptr, "an operand asked about precedence has a parent");
  return _converterData->_parent->IsLessInert(op);
}

void SyntaxConverter::ValidateAndCommit(const std::string& /*text*/) {}

SyntaxConverter* SyntaxConverter::AddAsVariable(int index, const std::string& name) {
  auto* variable = new SyntaxVariableName(index, name);
  Add(variable);
  TableScope& table = RequireTableScope();
  table.AddToVarList(variable);
  variable->SetCountOfBy(table.GetNumOfBys());
  return variable;
}

SyntaxConverter* SyntaxConverter::InfixBinaryOperator(SyntaxConverter* op) {
  if (IsLessInert(op)) {
    // This node binds at least as tightly as `op`: the operator climbs.
    return _converterData->_parent->InfixBinaryOperator(op);
  }
  // `op` takes the last operand as its left operand, and stands in its place.
  std::vector<SyntaxConverter*>& children = Children();
  if (children.empty()) {
    delete op;
    SyntaxParserUtility::UnexpectedError(__FILE__, __LINE__);
  }
  const int kind = op->GetType();
  SyntaxConverter* last = children.back();
  if (kind == kConverterPlus) {
    // Stacking is dissected pairwise, each level listing the cubes below it, so the work
    // grows with the square of the terms: a bound keeps any command cheap, and is far
    // beyond a table anyone can read.
    TableScope& table = RequireTableScope();
    if (table.AddStackedTerm() > kMaxStackedTerms) {
      delete op;
      SyntaxParserUtility::TooManyStackedTerms(table.GetTableNumber(), kMaxStackedTerms);
    }
  }
  if (kind == kConverterGreaterThan) {
    // A nesting deeper than a cube's key can hold (and one scale variable beside) can never
    // be a table. Refusing it here keeps a long chain of ">" from costing its square.
    const int depth = NestingDepth(last) + 1;
    if (depth > AggregationCube::kMaxVariables + 1) {
      delete op;
      SyntaxParserUtility::TooManyCubeVariables(RequireTableScope().GetTableNumber(), depth,
                                                AggregationCube::kMaxVariables);
    }
    last->SetIsLeafNode(false);
  }
  children.pop_back();
  Add(op);
  return op->Add(last);
}

int SyntaxConverter::VariableExists(const std::string& name) const {
  if (ConverterData::_pds == nullptr) {
    return -1;
  }
  return ConverterData::_pds->FindVarIndex(name.c_str(), 0);
}

bool SyntaxConverter::MRSetExists(std::string& name, VariableSet& set) const {
  if (ConverterData::_pds == nullptr) {
    return false;
  }
  for (const VariableSet& candidate : VariableSets(*ConverterData::_pds, 1)) {
    set = candidate;
    const std::string setName = set.GetName(2);
    if (SyntaxParserUtility::ExactWordMatch(setName, name)) {
      name = setName;
      return true;
    }
  }
  return false;
}

TARN_DataSource* SyntaxConverter::GetDataSource() const {
  return ConverterData::_pds;
}

SyntaxConverter* SyntaxConverter::GetLastParenChild() const {
  return _converterData->_lastParenChild;
}

int SyntaxConverter::GetBaseWeightVarIndex() {
  return ConverterData::_baseWeightVarIndex;
}

void SyntaxConverter::SetBaseWeightVarIndex(int index) {
  ConverterData::_baseWeightVarIndex = index;
}

void SyntaxConverter::SetContexts(unsigned contexts) {
  ConverterData& data = *_converterData;
  data._byContext = (contexts & kContextBy) != 0;
  data._greaterThanContext = (contexts & kContextGreaterThan) != 0;
  data._parenContext = (contexts & kContextParen) != 0;
  data._plusContext = (contexts & kContextPlus) != 0;
  data._squareBracketContext = (contexts & kContextSquareBracket) != 0;
  data._variableContext = (contexts & kContextVariable) != 0;
}

void SyntaxConverter::Dump(std::ostream& out, int depth) const {
  const ConverterData& data = *_converterData;
  out << std::string(static_cast<std::size_t>(depth) * 2, ' ') << TypeName(GetType())
      << " subcommand=" << GetSubcommandName() << " by=" << data._byContext
      << " gt=" << data._greaterThanContext << " paren=" << data._parenContext
      << " plus=" << data._plusContext << " bracket=" << data._squareBracketContext
      << " variable=" << data._variableContext;
  DumpDetails(out);
  out << '\n';
  for (const SyntaxConverter* bracket : data._squareBrackets) {
    bracket->Dump(out, depth + 1);
  }
  if (const auto* composite = dynamic_cast<const SyntaxComposite*>(this)) {
    for (const SyntaxConverter* child : composite->GetChildren()) {
      child->Dump(out, depth + 1);
    }
  }
}

void SyntaxConverter::DumpDetails(std::ostream& /*out*/) const {}

const std::vector<SyntaxConverter*>& SyntaxConverter::GetSquareBrackets() const {
  return _converterData->_squareBrackets;
}
