// TableDeliveryComputed.cpp - computed categories evaluated at render time
//
// No case ever falls in a computed category: the engine has nothing for it. Its cell is
// worked out here, statistic by statistic, from the cells of the categories its expression
// names: the same cell of the table with the computed category replaced by each named
// category in turn. Ranges, MISSING and OTHERNM stand for several categories, whose cells
// are summed. Categories feeding a computed category whose properties hide its sources are
// left out of the table here as well.
#include <cstdlib>
#include <functional>
#include <string>

#include "host/QuiltAssert.h"
#include "host/data/FormatConversion.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/TARN_Variable.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationResult.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/CellStatistics.h"
#include "host/engine/CubeAggregator.h"
#include "host/engine/ParsedCategory.h"
#include "host/output/BpCategory.h"
#include "host/output/BpCellText.h"
#include "host/output/BpGroup.h"
#include "parser/Statistics.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxPComputeSubcommand.h"
#include "parser/SyntaxPPropertiesSubcommand.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/StatTreeNode.h"
#include "tablerenderer/BPTreeNode.h"
#include "tablerenderer/ComputedExpression.h"
#include "tablerenderer/TableAxis.h"
#include "tablerenderer/TableDeliveryData.h"

namespace {

using CategoryKey = QuiltTable::CategoryKey;
using Codes = TableEncryptionCodes;
using Expr = ExpressionToken;

const SyntaxTablesCommand* CommandOf(SyntaxTableSubcommand* subcommand) {
  if (subcommand == nullptr) return nullptr;
  SyntaxConverter* top = subcommand->TopParent();
  if (top == nullptr || top->GetType() != kConverterCommand) return nullptr;
  return static_cast<const SyntaxTablesCommand*>(top);
}

bool IsComputed(const AggregationCategory* category) {
  return category != nullptr && category->GetCatType() == AggregationCategory::kPcompute;
}

/// The computed category a header node stands for, or null.
const AggregationCategory* ComputedCategoryOf(const HeaderTreeNode* node) {
  if (node->GetType() != HeaderTreeNode::kHNodeTypeCategory) return nullptr;
  const AggregationCategory* category = node->GetCategory();
  return IsComputed(category) ? category : nullptr;
}

/// The first computed category on the path from `node` up to the root, with its node.
const HeaderTreeNode* ComputedNodeAbove(const HeaderTreeNode* node) {
  for (; node != nullptr; node = node->GetParent()) {
    if (ComputedCategoryOf(node) != nullptr) return node;
  }
  return nullptr;
}

bool IsNumericValue(const AggregationCategory* category) {
  return category->GetCatType() == AggregationCategory::kValue && category->GetValueType() == 0 &&
         category->GetCatValue() != nullptr;
}

double NumericValue(const AggregationCategory* category) { return category->GetCatValue()->number; }

/// The dictionary index an operand's `varName` holds once the expression was bound to a
/// cell; negative for a set.
int TokenVariable(const TokenInfo& token) { return std::atoi(token.varName.c_str()); }

/// The bounds of a range operand "low THRU high", from the ends the parser read. LO reads
/// as 0 and HI as an open top, so a negative category does not fall in "LO THRU n".
struct RangeBounds {
  double low = 0.0;
  double high = 0.0;
  bool hasHigh = false;

  explicit RangeBounds(const RangeOperand& range)
      : low(range.low.isLo ? 0.0 : range.low.number),
        high(range.high.isHi ? 0.0 : range.high.number),
        hasHigh(!range.high.isHi) {}

  bool Holds(double x) const { return low <= x && (hasHigh ? x <= high : high <= x); }
};

/// A number operand for one category that a range, MISSING or OTHERNM stands for.
TokenInfo NumberTokenFor(const TokenInfo& group, const AggregationCategory* category, bool bindSetMember) {
  TokenInfo token;
  token.listType = Codes::kExplicitNumber;
  token.tokenType = Expr::kExprValue;
  token.number = NumericValue(category);
  token.varName = group.varName;
  if (bindSetMember && TokenVariable(group) < 0) token.varName = std::to_string(category->GetVarIndex());
  return token;
}

bool IsSingleCellOperand(const TokenInfo& token) {
  switch (token.listType) {
    case Codes::kExplicitString:
    case Codes::kExplicitSubtotal:
    case Codes::kExplicitHSubtotal:
    case Codes::kExplicitName:
      return true;
    case Codes::kExplicitNumber:
      return token.tokenType == Expr::kExprValue;
    default:
      return false;
  }
}

bool IsGroupOperand(const TokenInfo& token) {
  return token.listType == Codes::kExplicitRange || token.listType == Codes::kExplicitMissing ||
         token.listType == Codes::kExplicitOtherNM;
}

/// Gathers the operands of one computed cell. `lookup` reads the cell of a key in which the
/// computed category was replaced; it knows how the cell's other keys are joined. A range,
/// MISSING or OTHERNM is expanded into number operands, one per category it stands for,
/// which are gathered in turn into one group entry.
class OperandGatherer {
 public:
  using Lookup = std::function<const StatValues*(const CategoryKey&)>;

  OperandGatherer(TableDelivery::Data& data, Lookup lookup, bool bindSetMembers)
      : _data(data), _lookup(std::move(lookup)), _bindSetMembers(bindSetMembers) {}

  void Gather(const CategoryKey& postKey) {
    for (const TokenInfo& token : _data._operandTokens) {
      CategoryKey key = postKey;
      if (_data.GetPostCellKey(token, key)) {
        const StatValues* values = _lookup(key);
        _data._operandValues.push_back(values != nullptr ? *values : Empty());
      } else if (IsGroupOperand(token)) {
        GatherGroup(token, postKey);
      } else {
        _data._operandValues.push_back(Empty());
      }
    }
  }

 private:
  static StatValues Empty() { return StatValues(nullptr, false, {}); }

  void GatherGroup(const TokenInfo& token, const CategoryKey& postKey) {
    std::vector<TokenInfo> members;
    switch (token.listType) {
      case Codes::kExplicitRange:
        members = RangeMembers(token);
        break;
      case Codes::kExplicitMissing:
        members = MissingMembers(token);
        break;
      default:
        members = OtherMembers(token);
        break;
    }
    std::vector<TokenInfo> savedTokens = std::move(_data._operandTokens);
    std::vector<StatValues> savedValues = std::move(_data._operandValues);
    _data._operandTokens = std::move(members);
    _data._operandValues.clear();
    Gather(postKey);
    _data._groupOperandValues.push_back(std::move(_data._operandValues));
    _data._operandTokens = std::move(savedTokens);
    _data._operandValues = std::move(savedValues);
  }

  std::vector<TokenInfo> RangeMembers(const TokenInfo& token) const {
    RangeBounds bounds(token.range);
    std::vector<TokenInfo> members;
    for (const AggregationCategory* category : _data._requiredCats) {
      if (!IsNumericValue(category)) continue;
      const double x = NumericValue(category);
      if (!bounds.Holds(x)) continue;
      members.push_back(NumberTokenFor(token, category, _bindSetMembers));
      if (!bounds.hasHigh) {
        bounds.high = x;
      } else if (x == bounds.high) {
        break;
      }
    }
    return members;
  }

  std::vector<TokenInfo> MissingMembers(const TokenInfo& token) const {
    const int variable = TokenVariable(token);
    std::vector<TokenInfo> members;
    for (const AggregationCategory* category : _data._requiredCats) {
      if (category->GetCatType() == AggregationCategory::kTotal || category->GetVarIndex() != variable) continue;
      if (IsNumericValue(category) && IsMissingValue(category, variable)) {
        members.push_back(NumberTokenFor(token, category, _bindSetMembers));
      }
    }
    return members;
  }

  /// The categories of OTHERNM: those that no earlier entry of the variable's list claims
  /// and that the list's OTHERNM entry holds.
  std::vector<TokenInfo> OtherMembers(const TokenInfo& token) const {
    const int variable = TokenVariable(token);
    const std::vector<ParsedCategory*>* list = ListOf(variable);
    std::vector<TokenInfo> members;
    if (list == nullptr) return members;
    for (const AggregationCategory* category : _data._requiredCats) {
      if (!IsNumericValue(category)) continue;
      const OBS* value = category->GetCatValue();
      for (const ParsedCategory* entry : *list) {
        const int type = entry->GetPCType();
        if (type == ParsedCategory::kParsedValue && entry->Matches(value)) break;
        if ((type == ParsedCategory::kParsedSubtotal || type == ParsedCategory::kParsedHSubtotal) &&
            SubtotalHolds(*list, *entry, value)) {
          break;
        }
        if (category->GetVarIndex() == variable && IsMissingValue(category, variable)) break;
        if (type == ParsedCategory::kParsedRange && entry->Matches(value)) break;
        if (type == ParsedCategory::kParsedOtherNM) {
          members.push_back(NumberTokenFor(token, category, _bindSetMembers));
          break;
        }
      }
    }
    return members;
  }

  /// The explicit list of the table variable with dictionary index `variable`; a set counts
  /// when one of its list's computed categories belongs to that variable.
  const std::vector<ParsedCategory*>* ListOf(int variable) const {
    for (SyntaxVariableName* tableVariable : _data._subcommand->GetTableVarList()) {
      const std::vector<ParsedCategory*>& list = tableVariable->GetParsedCategories();
      if (tableVariable->GetIndex() == variable) return &list;
      if (tableVariable->GetIndex() >= 0) continue;
      for (const ParsedCategory* entry : list) {
        if (entry->GetPCType() == ParsedCategory::kParsedComputed && entry->GetVarIndex() == variable) return &list;
      }
    }
    return nullptr;
  }

  /// A subtotal entry holds the values of the list's entries tagged with its encoding.
  static bool SubtotalHolds(const std::vector<ParsedCategory*>& list, const ParsedCategory& subtotal,
                            const OBS* value) {
    for (const ParsedCategory* entry : list) {
      const int type = entry->GetPCType();
      if (type == ParsedCategory::kParsedSubtotal || type == ParsedCategory::kParsedHSubtotal) continue;
      if (entry->GetSubtotalEncoding() == subtotal.GetSubtotalEncoding() && entry->Matches(value)) return true;
    }
    return false;
  }

  bool IsMissingValue(const AggregationCategory* category, int variable) const {
    if (variable < 0 || _data._dataSource == nullptr) return false;
    const TARN_Variable* dictionary = _data._dataSource->GetVariable(variable);
    return dictionary != nullptr && category->GetCatValue() != nullptr && dictionary->IsMissing(category->GetCatValue());
  }

  TableDelivery::Data& _data;
  Lookup _lookup;
  bool _bindSetMembers;
};

/// Whether `category` is one of the categories of `owner`, the variable or set of an
/// explicit list: a set's categories carry the index of one of its members.
bool BelongsTo(const SyntaxVariableName* owner, const AggregationCategory* category) {
  if (owner == nullptr) return true;
  if (owner->GetIndex() >= 0) return category->GetVarIndex() == owner->GetIndex();
  const AggregationVariable* set = owner->GetAggregationVariable();
  if (set == nullptr) return true;
  for (int member : set->GetVarIndices()) {
    if (member == category->GetVarIndex()) return true;
  }
  return false;
}

/// Binds the expression of computed category `post` to the cell: its operand and operator
/// lists, with each operand's `varName` set to the dictionary index of the variable. A name
/// defined again stands for its last definition, as its label does (the parser warned).
bool BindExpression(TableDelivery::Data& data, const AggregationCategory* post) {
  const SyntaxTablesCommand* command = CommandOf(data._subcommand);
  if (command == nullptr) return false;
  const std::vector<SyntaxPComputeSubcommand*> pComputes = command->GetPComputeSubcommands();
  for (auto it = pComputes.rbegin(); it != pComputes.rend(); ++it) {
    SyntaxPComputeSubcommand* pCompute = *it;
    if (!SyntaxParserUtility::ExactWordMatch(pCompute->GetCatName(), post->GetPCatName())) continue;
    pCompute->UpdateTokenIndex(std::to_string(post->GetVarIndex()));
    data._operandTokens = pCompute->GetExpTokenVector();
    data._operatorTokens = pCompute->GetExpOpTokenVector();
    return true;
  }
  return false;
}

/// The format and decoration a computed category's properties give statistic `statType`.
void PropertiesFormat(const AggregationCategory* post, int statType, const TARN_Format*& format,
                      PresentationCodes::DisplayFormat& display) {
  format = nullptr;
  display = PresentationCodes::kDisplayUnset;
  const std::vector<int>& codes = post->GetPCFormat();
  for (size_t i = 0; i < codes.size(); ++i) {
    if (codes[i] != statType) continue;
    const std::vector<const TARN_Format*> formats = post->GetPCDecimal();
    const std::vector<int>& displays = post->GetPCDisplayFormat();
    if (i < formats.size()) format = formats[i];
    if (i < displays.size()) display = static_cast<PresentationCodes::DisplayFormat>(displays[i]);
    return;
  }
}

}  // namespace

// ---- Categories the expressions may name ------------------------------------------------

void TableDelivery::Data::GetPcomputeRequiredCat(QuiltTable* table) {
  const std::vector<AggregationCategory*>* required = table->GetPostComputeRequiredCat();
  if (required == nullptr) return;
  _requiredCats.insert(_requiredCats.end(), required->begin(), required->end());
}

bool TableDelivery::Data::HasPostCategories(const std::vector<BPTreeNode*>& leaves) const {
  for (const BPTreeNode* leaf : leaves) {
    if (ComputedNodeAbove(leaf->GetHeaderTreeNode()) != nullptr) return true;
  }
  return false;
}

void TableDelivery::Data::GetComputingCats(const std::vector<BPTreeNode*>& leaves) {
  auto holdsTotalOf = [this](int variable) {
    for (const AggregationCategory* category : _requiredCats) {
      if (category->GetCatType() == AggregationCategory::kTotal && category->GetVarIndex() == variable) return true;
    }
    return false;
  };
  auto holdsEqual = [this](const AggregationCategory* sibling) {
    for (const AggregationCategory* category : _requiredCats) {
      if (category == sibling) return true;
      if (category->GetVarIndex() != sibling->GetVarIndex() || category->GetCatType() != sibling->GetCatType()) {
        continue;
      }
      const OBS* left = category->GetCatValue();
      const OBS* right = sibling->GetCatValue();
      if (left != nullptr && right != nullptr ? ObsBitsEqual(*left, *right)
                                              : category->GetCatEncoding() == sibling->GetCatEncoding()) {
        return true;
      }
    }
    return false;
  };
  for (const BPTreeNode* leaf : leaves) {
    const HeaderTreeNode* computed = ComputedNodeAbove(leaf->GetHeaderTreeNode());
    if (computed == nullptr || computed->GetParent() == nullptr) continue;
    for (const HeaderTreeNode* sibling : computed->GetParent()->GetChildren()) {
      if (sibling->GetType() != HeaderTreeNode::kHNodeTypeCategory || sibling->GetCategory() == nullptr) continue;
      const AggregationCategory* category = sibling->GetCategory();
      if (IsComputed(category)) continue;
      if (category->GetCatType() == AggregationCategory::kTotal) {
        if (!holdsTotalOf(category->GetVarIndex())) _requiredCats.push_back(category);
        continue;
      }
      if (!holdsEqual(category)) _requiredCats.push_back(category);
    }
  }
}

void TableDelivery::Data::GetParsedCategory(const std::vector<BPTreeNode*>& leaves) {
  for (const BPTreeNode* leaf : leaves) {
    for (const HeaderTreeNode* node = leaf->GetHeaderTreeNode(); node != nullptr; node = node->GetParent()) {
      if (node->GetType() != HeaderTreeNode::kHNodeTypeCatVariable || node->GetVariable() == nullptr) continue;
      const std::vector<ParsedCategory*>& list = node->GetVariable()->GetParsedCategories();
      if (list.empty()) continue;
      bool known = false;
      for (const std::vector<ParsedCategory*>* present : _parsedCatLists) known = known || present == &list;
      if (known) continue;
      _parsedCatLists.push_back(&list);
      _parsedCatListOwners.push_back(node->GetVariable());
    }
  }
}

// ---- Which cells are computed -----------------------------------------------------------

const AggregationCategory* TableDelivery::Data::GetPostCategory1D(const CategoryKey& key) const {
  for (const AggregationCategory* category : key) {
    if (IsComputed(category)) return category;
  }
  return nullptr;
}

const AggregationCategory* TableDelivery::Data::GetPostCategory2D(const CategoryKey& key1,
                                                                  const CategoryKey& key2) const {
  const AggregationCategory* post = GetPostCategory1D(key1);
  return post != nullptr ? post : GetPostCategory1D(key2);
}

const AggregationCategory* TableDelivery::Data::GetPostCategory3D(const CategoryKey& key1, const CategoryKey& key2,
                                                                  const CategoryKey& key3) const {
  const AggregationCategory* post = GetPostCategory2D(key1, key2);
  return post != nullptr ? post : GetPostCategory1D(key3);
}

bool TableDelivery::Data::NeedPostCategory1D(const CategoryKey& key) const {
  int count = 0;
  for (const AggregationCategory* category : key) count += IsComputed(category) ? 1 : 0;
  return count >= 2;
}

bool TableDelivery::Data::NeedPostCategory2D(const CategoryKey& key1, const CategoryKey& key2) const {
  const int withComputed = (GetPostCategory1D(key1) != nullptr ? 1 : 0) + (GetPostCategory1D(key2) != nullptr ? 1 : 0);
  return withComputed >= 2 || NeedPostCategory1D(key1) || NeedPostCategory1D(key2);
}

bool TableDelivery::Data::NeedPostCategory3D(const CategoryKey& key1, const CategoryKey& key2,
                                             const CategoryKey& key3) const {
  const int withComputed = (GetPostCategory1D(key1) != nullptr ? 1 : 0) +
                           (GetPostCategory1D(key2) != nullptr ? 1 : 0) + (GetPostCategory1D(key3) != nullptr ? 1 : 0);
  return withComputed >= 2 || NeedPostCategory1D(key1) || NeedPostCategory1D(key2) || NeedPostCategory1D(key3);
}

// ---- The operands of one computed cell --------------------------------------------------

void TableDelivery::Data::ComputePostCategoryValues1D(const CategoryKey& key, CubeAggregator* cube) {
  const AggregationCategory* post = GetPostCategory1D(key);
  if (post == nullptr || !BindExpression(*this, post)) return;
  GetStatValuesForComputing1D(key, cube);
}

void TableDelivery::Data::ComputePostCategoryValues2D(const CategoryKey& key1, const CategoryKey& key2, bool swapped,
                                                      int comperimeter, QuiltTable* table, CubeAggregator* cube) {
  const AggregationCategory* post = GetPostCategory2D(key1, key2);
  if (post == nullptr || !BindExpression(*this, post)) return;
  const bool postIsSecond = GetPostCategory1D(key1) == nullptr;
  GetStatValuesForComputing2D(swapped, postIsSecond, comperimeter, postIsSecond ? key2 : key1,
                              postIsSecond ? key1 : key2, table, cube);
}

void TableDelivery::Data::ComputePostCategoryValues3D(const CategoryKey& key1, const CategoryKey& key2,
                                                      const CategoryKey& key3, int from, int to, QuiltTable* table,
                                                      CubeAggregator* cube) {
  const AggregationCategory* post = GetPostCategory3D(key1, key2, key3);
  if (post == nullptr || !BindExpression(*this, post)) return;
  if (GetPostCategory1D(key1) != nullptr) {
    GetStatValuesForComputing3D(0, from, to, key1, key2, key3, table, cube);
  } else if (GetPostCategory1D(key2) != nullptr) {
    GetStatValuesForComputing3D(1, from, to, key2, key1, key3, table, cube);
  } else {
    GetStatValuesForComputing3D(2, from, to, key3, key1, key2, table, cube);
  }
}

void TableDelivery::Data::GetStatValuesForComputing1D(const CategoryKey& key, CubeAggregator* cube) {
  OperandGatherer gatherer(
      *this, [cube](const CategoryKey& cellKey) { return cube->GetStatValues(cellKey, -1); },
      /*bindSetMembers=*/false);
  gatherer.Gather(key);
}

void TableDelivery::Data::GetStatValuesForComputing2D(bool swapped, bool postIsSecond, int comperimeter,
                                                      const CategoryKey& postKey, const CategoryKey& otherKey,
                                                      QuiltTable* /*table*/, CubeAggregator* cube) {
  // Back in the order the cube's keys are joined in.
  const bool postFirst = swapped == postIsSecond;
  OperandGatherer gatherer(
      *this,
      [&](const CategoryKey& changedPostKey) {
        CategoryKey combined;
        const int carried =
            postFirst ? QuiltTable::Combine2CellKeys(changedPostKey, otherKey, combined, comperimeter)
                      : QuiltTable::Combine2CellKeys(otherKey, changedPostKey, combined, comperimeter);
        return cube->GetStatValues(combined, carried);
      },
      /*bindSetMembers=*/true);
  gatherer.Gather(postKey);
}

void TableDelivery::Data::GetStatValuesForComputing3D(int postPosition, int from, int to, const CategoryKey& postKey,
                                                      const CategoryKey& otherKey1, const CategoryKey& otherKey2,
                                                      QuiltTable* /*table*/, CubeAggregator* cube) {
  QUILT_ASSERT(postPosition >= 0 && postPosition <= 2, "a table has three dimensions at most");
  OperandGatherer gatherer(
      *this,
      [&](const CategoryKey& changedPostKey) {
        const CategoryKey* keys[3];
        keys[postPosition] = &changedPostKey;
        keys[postPosition == 0 ? 1 : 0] = &otherKey1;
        keys[postPosition == 2 ? 1 : 2] = &otherKey2;
        CategoryKey combined;
        const int carried = QuiltTable::Combine3CellKeys(*keys[0], *keys[1], *keys[2], combined, from, to);
        return cube->GetStatValues(combined, carried);
      },
      /*bindSetMembers=*/true);
  gatherer.Gather(postKey);
}

bool TableDelivery::Data::GetPostCellKey(const TokenInfo& token, CategoryKey& key) const {
  size_t position = 0;
  while (position < key.size() && !IsComputed(key[position])) ++position;
  if (position == key.size()) return false;
  const int variable = TokenVariable(token);
  const AggregationCategory* hit = nullptr;
  bool replaces = true;

  if ((token.listType == Codes::kExplicitNumber && token.tokenType == Expr::kExprValue) ||
      token.listType == Codes::kExplicitString) {
    for (const AggregationCategory* category : _requiredCats) {
      if (category->GetCatType() != AggregationCategory::kTotal && IsRightCategory(token, category)) {
        hit = category;
        break;
      }
    }
  } else if (token.listType == Codes::kExplicitSubtotal || token.listType == Codes::kExplicitHSubtotal) {
    unsigned long count = 0;
    for (const AggregationCategory* category : _requiredCats) {
      const int type = category->GetCatType();
      if (type != AggregationCategory::kSubtotal && type != AggregationCategory::kHSubtotal) continue;
      if (++count != token.index) continue;
      hit = category;
      // A subtotal of another variable is no operand of this one: the key keeps its
      // computed category and so finds no cell.
      replaces = variable < 0 || category->GetVarIndex() < 0 || category->GetVarIndex() == variable;
      break;
    }
  } else if (token.listType == Codes::kExplicitName && token.token == "TOTAL") {
    for (const AggregationCategory* category : _requiredCats) {
      if (category->GetCatType() == AggregationCategory::kTotal &&
          (variable < 0 || category->GetVarIndex() < 0 || category->GetVarIndex() == variable)) {
        hit = category;
        break;
      }
    }
  } else if (token.listType == Codes::kExplicitName) {
    for (const AggregationCategory* category : _requiredCats) {
      if (NamesCategory(token, category)) {
        hit = category;
        break;
      }
    }
  }
  if (hit == nullptr) return false;
  if (replaces) key[position] = hit;
  return true;
}

bool TableDelivery::Data::IsRightCategory(const TokenInfo& token, const AggregationCategory* category) const {
  const int variable = TokenVariable(token);
  if (variable >= 0 && variable != category->GetVarIndex()) return false;
  if (token.listType == Codes::kExplicitNumber) {
    return IsNumericValue(category) && NumericValue(category) == token.number;
  }
  if (token.listType != Codes::kExplicitString) return false;
  if (CategoryText(category) == token.token) return true;
  // A quoted value of a numeric variable, such as a date, reads in the variable's format.
  if (variable < 0 || _dataSource == nullptr || !IsNumericValue(category)) return false;
  const TARN_Variable* dictionary = _dataSource->GetVariable(variable);
  if (dictionary == nullptr || dictionary->GetType() != 0) return false;
  OBS converted{};
  if (FromString(token.token.c_str(), dictionary->GetFormat(), &converted) != 0) return false;
  return converted.number == NumericValue(category);
}

bool TableDelivery::Data::NamesCategory(const TokenInfo& token, const AggregationCategory* category) const {
  // Variable names are read without regard to case, values exactly.
  if (category->GetCatType() == AggregationCategory::kVariable) {
    return SyntaxParserUtility::ExactWordMatch(CategoryText(category), token.token);
  }
  return CategoryText(category) == token.token;
}

std::string TableDelivery::Data::CategoryText(const AggregationCategory* category) const {
  if (category->GetCatType() == AggregationCategory::kVariable) {
    // A member of a set is named by its variable name.
    const TARN_Variable* member =
        _dataSource != nullptr && category->GetVarIndex() >= 0 ? _dataSource->GetVariable(category->GetVarIndex())
                                                                : nullptr;
    return member != nullptr ? member->GetName() : std::string();
  }
  if (category->GetCatType() != AggregationCategory::kValue || category->GetValueType() <= 0 ||
      category->GetCatValue() == nullptr) {
    return std::string();
  }
  std::string text(category->GetCatValue()->bytes, static_cast<size_t>(category->GetValueType()));
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

// ---- Numbers and the value --------------------------------------------------------------

void TableDelivery::Data::GetAllValuesInComputing(std::vector<double>& values, const CellStatistics* cellStats,
                                                  const CellStatistics* totalStats, SyntaxVariableName* statVar,
                                                  int statType, double ptile) {
  const double emptyValue = IfUseEmptyString(statType) ? 0.0 : _infinity;
  size_t single = 0;
  size_t group = 0;
  // The value of one operand cell, or false when its cube lacks the statistic.
  auto valueOf = [&](const StatValues& cell, double& value) {
    if (cell.GetCellStatistic() == nullptr) {
      value = emptyValue;
      return true;
    }
    const int index = GetStatisticIndex(cell.IsTotalStats(), cellStats, totalStats, statVar, statType, ptile);
    if (index < 0) return false;
    value = cell.GetStatValue(index).GetValue1();
    return true;
  };
  for (const TokenInfo& token : _operandTokens) {
    if (token.listType == Codes::kExplicitNumber && token.tokenType == Expr::kExprConstant) {
      values.push_back(token.number);
      ++single;
    } else if (IsSingleCellOperand(token)) {
      if (single >= _operandValues.size()) continue;
      double value = 0.0;
      if (!valueOf(_operandValues[single], value)) {
        _operandStatMissing = true;
        return;
      }
      values.push_back(value);
      ++single;
    } else if (IsGroupOperand(token)) {
      double sum = 0.0;
      if (group < _groupOperandValues.size()) {
        for (const StatValues& cell : _groupOperandValues[group]) {
          double value = 0.0;
          if (!valueOf(cell, value)) {
            _operandStatMissing = true;
            return;
          }
          sum += value;
        }
      }
      values.push_back(sum);
      ++group;
    }
  }
}

double TableDelivery::Data::CaculatePostCategory(const std::vector<double>& values) const {
  std::vector<ExpressionToken::OP_CODE> operators;
  operators.reserve(_operatorTokens.size());
  for (const TokenInfo& token : _operatorTokens) operators.push_back(token.opCode);
  return ComputedExpression(values, operators, _sysmis).Evaluate();
}

double TableDelivery::Data::CalculateWithOp(double a, double b, int op) const {
  return ComputedExpression::Apply(a, b, static_cast<ExpressionToken::OP_CODE>(op), _sysmis);
}

bool TableDelivery::Data::HasTheStat(SyntaxVariableName* statVar, int statType) const {
  if (statVar == nullptr) return false;
  for (const Statistics* statistic : statVar->GetStatistics()) {
    if (statistic->GetStatType() == statType) return true;
  }
  return false;
}

// ---- Writing the cell -------------------------------------------------------------------

bool TableDelivery::Data::ProcessPostValues(const CellStatistics* cellStats, const CellStatistics* totalStats,
                                            SyntaxVariableName* statVar, int statType, double ptile, int statFormat,
                                            BPTreeNode* leaf, const AggregationCategory* post) {
  // The value of one statistic, written into `group` under `label`; nothing when a named
  // cell lacks the statistic. A statistic the variable does not list has no operands: the
  // shown cell of the leaf gets the value of an empty expression, a statistic of the hidden
  // dimension no cell.
  auto writeOne = [&](int type, double cutPoint, int format, BpGroup& group, const BpCellText& label,
                      bool onlyListed) {
    const bool listed = type != 0 && HasTheStat(statVar, type);
    if (!listed && onlyListed) return false;
    const TARN_Format* own = nullptr;
    DisplayFormat display = PresentationCodes::kDisplayUnset;
    PropertiesFormat(post, type, own, display);
    std::vector<double> values;
    if (listed) GetAllValuesInComputing(values, cellStats, totalStats, statVar, type, cutPoint);
    if (_operandStatMissing) {
      _operandStatMissing = false;
      return false;
    }
    WriteStatDataInCellForPCompute(statVar, false, type, cutPoint, format, group, label, CaculatePostCategory(values),
                                   own, display);
    return true;
  };
  if (_statsVisible) {
    std::unique_ptr<BpCellText> leafText = leaf->CreateCellText(_dataSource);
    return writeOne(statType, ptile, statFormat, leaf->GetParentGroup(), *leafText, false);
  }
  return ForEachHiddenStatistic(leaf, [&](const StatTreeNode& statistic, BpGroup& dimension, const BpCellText& label) {
    return writeOne(statistic.GetStatType(), statistic.GetPtileValue(), statistic.GetStatFormatCode(), dimension,
                    label, true);
  });
}

void TableDelivery::Data::WriteStatDataInCellForPCompute(SyntaxVariableName* statVar, bool useTotal, int statType,
                                                         double ptile, int statFormat, BpGroup& group,
                                                         const BpCellText& label, double value,
                                                         const TARN_Format* format, DisplayFormat display) {
  const TARN_Format* chosen = GetPComputeCustomFormat(statVar, useTotal, display, statType, format, ptile);
  if (display == PresentationCodes::kDisplayUnset) display = PresentationCodes::kDisplayPlain;
  WriteFormattedCell(statVar, statFormat, group, label, AggregationResult(value), chosen, display);
}

const TARN_Format* TableDelivery::Data::GetPComputeCustomFormat(SyntaxVariableName* statVar, bool useTotal,
                                                                DisplayFormat& display, int statType,
                                                                const TARN_Format* format, double ptile) const {
  const Statistics* statistic = FindTableStatistic(statVar, useTotal, statType, ptile);
  if (statistic == nullptr) return nullptr;
  if (display == PresentationCodes::kDisplayUnset) display = statistic->GetStatDisplayFormat();
  return format != nullptr ? format : statistic->GetFormat();
}

// ---- Hidden sources ---------------------------------------------------------------------

bool TableDelivery::Data::IsHiddenSource(const CategoryKey& key, const std::vector<const std::vector<ParsedCategory*>*>& lists,
                                         int /*comperimeter*/) const {
  if (lists.empty() || _hidingProperties.empty()) return false;

  for (size_t listIndex = 0; listIndex < lists.size(); ++listIndex) {
    const SyntaxVariableName* owner = listIndex < _parsedCatListOwners.size() ? _parsedCatListOwners[listIndex] : nullptr;
    for (const ParsedCategory* entry : *lists[listIndex]) {
      if (entry->GetPCatName().empty()) continue;
      for (const SyntaxPPropertiesSubcommand* property : _hidingProperties) {
        for (const SyntaxPComputeSubcommand* pCompute : property->GetPComputePtrs()) {
          if (!SyntaxParserUtility::ExactWordMatch(pCompute->GetCatName(), entry->GetPCatName())) continue;
          for (const AggregationCategory* category : key) {
            if (category->GetCatType() == AggregationCategory::kTotal || IsComputed(category)) continue;
            // Only the categories of the list's own variable can be its sources: a
            // category of a variable nested beside it may well have an equal value.
            if (!BelongsTo(owner, category)) continue;
            if (RefersToSource(*pCompute, *lists[listIndex], category)) return true;
          }
        }
      }
    }
  }
  return false;
}

bool TableDelivery::Data::RefersToSource(const SyntaxPComputeSubcommand& pCompute,
                                         const std::vector<ParsedCategory*>& list,
                                         const AggregationCategory* category) const {
  // The category belongs to the list's variable, whose dictionary index it carries (for a
  // category set, its first member; for a dichotomy set, the member it stands for).
  const int variable = category->GetVarIndex();
  auto isMissing = [&]() {
    if (variable < 0 || _dataSource == nullptr || category->GetCatValue() == nullptr) return false;
    const TARN_Variable* dictionary = _dataSource->GetVariable(variable);
    return dictionary != nullptr && dictionary->IsMissing(category->GetCatValue());
  };
  for (const TokenInfo& token : pCompute.GetExpTokenVector()) {
    switch (token.listType) {
      case Codes::kExplicitNumber:
        if (token.tokenType == Expr::kExprValue && IsNumericValue(category) &&
            NumericValue(category) == token.number) {
          return true;
        }
        break;
      case Codes::kExplicitString:
        if (CategoryText(category) == token.token) return true;
        break;
      case Codes::kExplicitName:
        if (token.tokenType == Expr::kExprName && NamesCategory(token, category)) return true;
        break;
      case Codes::kExplicitRange:
        if (IsNumericValue(category) && RangeBounds(token.range).Holds(NumericValue(category))) {
          return true;
        }
        break;
      case Codes::kExplicitMissing:
        if (isMissing()) return true;
        break;
      case Codes::kExplicitOtherNM: {
        if (category->GetCatValue() == nullptr || isMissing()) break;
        bool listed = false;
        for (const ParsedCategory* entry : list) {
          listed = listed ||
                   (entry->GetPCType() == ParsedCategory::kParsedValue && entry->Matches(category->GetCatValue()));
        }
        if (!listed) return true;
        break;
      }
      default:
        break;  // subtotals, TOTAL and constants: what feeds the computation stays visible
    }
  }
  return false;
}
