// SyntaxCategorySquareBracket.cpp - the explicit list of CATEGORIES and its sequence rules
#include "parser/SyntaxCategorySquareBracket.h"

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <string>
#include <unordered_set>

#include "parser/CategoryRange.h"
#include "parser/CategoryToken.h"
#include "parser/CommandScope.h"
#include "parser/SyntaxPComputeSubcommand.h"
#include "parser/SyntaxParserUtility.h"

namespace {

using Codes = TableEncryptionCodes;

bool IsSubtotal(Codes::ExplicitListType type) {
  return type == Codes::kExplicitSubtotal || type == Codes::kExplicitHSubtotal;
}

bool IsValue(Codes::ExplicitListType type) {
  return type == Codes::kExplicitString || type == Codes::kExplicitNumber;
}

}  // namespace

struct SyntaxCategorySquareBracket::Data {
  bool _isClosed = false;  // "]" was read
  bool _exclusiveMDList = false;
  std::vector<std::string> _reservedMembers;  // reserved words that name a member of the sets
  bool _awaitingComputedName = false;   // "&" was read
  bool _totalUsedInPc = false;          // a referred computed category uses TOTAL
  std::string _pcCatName;               // name of that category
  std::vector<CategoryToken*> _tokens;  // the elements; owned
  // Keys (EqualityKey) of every element and range ever added. A key not among them cannot
  // match an earlier element, so the search for duplicates, linear in the list, only runs
  // when one may exist: a list of 100,000 distinct values costs no more than its length.
  std::unordered_set<std::string> _seenKeys;
  std::unordered_set<std::string> _seenRangeKeys;

  ~Data() {
    for (CategoryToken* token : _tokens) {
      delete token;
    }
  }
};

namespace {

// A text that two elements share whenever operator== holds between them (and sometimes
// when it does not): the kind, and the word or number that the comparison looks at.
std::string EqualityKey(const CategoryToken& token) {
  const int type = static_cast<int>(token.GetTokenType());
  switch (token.GetTokenType()) {
    case TableEncryptionCodes::kExplicitString:
    case TableEncryptionCodes::kExplicitName:
    case TableEncryptionCodes::kExplicitComputed:
      return std::to_string(type) + ":" + SyntaxParserUtility::UpperCaseString(token.GetToken().c_str());
    case TableEncryptionCodes::kExplicitNumber: {
      // 0 and -0 compare equal; any other equal doubles print alike at full precision.
      const double number = token.GetNumber() == 0.0 ? 0.0 : token.GetNumber();
      char text[32];
      std::snprintf(text, sizeof text, "%.17g", number);
      return std::to_string(type) + ":" + text;
    }
    default:
      return std::to_string(type);
  }
}

}  // namespace

SyntaxCategorySquareBracket::SyntaxCategorySquareBracket() : _data(std::make_unique<Data>()) {}

SyntaxCategorySquareBracket::~SyntaxCategorySquareBracket() = default;

std::string SyntaxCategorySquareBracket::GetSubcommandName() const {
  return "CATEGORIES";
}

// '[' ... number ...
SyntaxConverter* SyntaxCategorySquareBracket::Number(double value, const std::string& text) {
  AddCategoryToken(new CategoryToken(value, text), text);
  return this;
}

// '[' ... 'literal' ...
SyntaxConverter* SyntaxCategorySquareBracket::Literal(const std::string& text) {
  std::string value = text;
  SyntaxParserUtility::TrimTrailingWhiteSpace(value);
  // A value of blanks only is the one-blank value; an empty text stays empty.
  if (value.empty() && !text.empty()) {
    value.push_back(' ');
  }
  AddCategoryToken(new CategoryToken(value), value);
  return this;
}

// '[' ... & name ...
SyntaxConverter* SyntaxCategorySquareBracket::Ampersand(const std::string& /*text*/) {
  _data->_awaitingComputedName = true;
  return this;
}

// '[' ... SUBTOTAL '=' 'label' | HSUBTOTAL '=' 'label' ...
SyntaxConverter* SyntaxCategorySquareBracket::AttributeString(const std::string& text,
                                                              TARN_TokenSequence* /*tokens*/) {
  if (SyntaxParserUtility::ExactWordMatch(text, "SUBTOTAL")) {
    AddCategoryToken(new CategoryToken(text, /*mustHaveLabel=*/true, /*isSubtotal=*/true), text);
  } else if (SyntaxParserUtility::ExactWordMatch(text, "HSUBTOTAL")) {
    AddCategoryToken(new CategoryToken(text, /*mustHaveLabel=*/true, /*isSubtotal=*/false), text);
  } else {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  return this;
}

// '[' ... word ...
SyntaxConverter* SyntaxCategorySquareBracket::String(const std::string& text) {
  Data& data = *_data;
  if (data._awaitingComputedName) {
    data._awaitingComputedName = false;
    AddCategoryToken(new CategoryToken(text, Codes::kExplicitComputed), text);
    if (const CommandScope* command = GetCommandScope()) {
      for (SyntaxPComputeSubcommand* pCompute : command->GetPComputeSubcommands()) {
        if (!SyntaxParserUtility::ExactWordMatch(pCompute->GetCatName(), text)) {
          continue;
        }
        // Any reference that uses the total needs the total: remember that one by name.
        if (pCompute->IsTotalSet()) {
          data._totalUsedInPc = true;
          data._pcCatName = pCompute->GetCatName();
        } else if (!data._totalUsedInPc) {
          data._pcCatName = pCompute->GetCatName();
        }
      }
    }
    return this;
  }
  struct ReservedWord {
    const char* word;
    Codes::ExplicitListType type;
  };
  static constexpr ReservedWord kReserved[] = {
      {"SUBTOTAL", Codes::kExplicitSubtotal}, {"HSUBTOTAL", Codes::kExplicitHSubtotal},
      {"LO", Codes::kExplicitLo},             {"THRU", Codes::kExplicitRange},
      {"HI", Codes::kExplicitHi},             {"MISSING", Codes::kExplicitMissing},
      {"OTHERNM", Codes::kExplicitOtherNM},
  };
  for (const ReservedWord& entry : kReserved) {
    if (!SyntaxParserUtility::ExactWordMatch(text, entry.word)) {
      continue;
    }
    // In a list of members, a member called MISSING is that member.
    const bool namesMember = std::find(data._reservedMembers.begin(), data._reservedMembers.end(), entry.word) !=
                             data._reservedMembers.end();
    if (data._exclusiveMDList && namesMember) {
      AddCategoryToken(new CategoryToken(text, Codes::kExplicitName), text);
    } else if (entry.type == Codes::kExplicitRange) {
      AddCategoryToken(new CategoryRange(text), text);
    } else {
      AddCategoryToken(new CategoryToken(text, entry.type), text);
    }
    return this;
  }
  if (!data._exclusiveMDList) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  AddCategoryToken(new CategoryToken(text, Codes::kExplicitName), text);
  return this;
}

// ... ']'
SyntaxConverter* SyntaxCategorySquareBracket::RightSquareBracket(const std::string& text) {
  _data->_isClosed = true;
  CleanUpSubtotals();
  ValidateAndCommit(text);
  return GetParent();
}

void SyntaxCategorySquareBracket::AddCategoryToken(CategoryToken* token, const std::string& text) {
  std::unique_ptr<CategoryToken> added(token);
  std::vector<CategoryToken*>& tokens = _data->_tokens;
  const Codes::ExplicitListType next = added->GetTokenType();
  auto refuse = [&]() {
    added.reset();
    SyntaxParserUtility::IncorrectSequence(this, text);
  };
  auto append = [&]() {
    tokens.push_back(added.release());
    RemoveDuplicatesOfLast(text);
  };
  if (tokens.empty()) {
    if (next == Codes::kExplicitRange || next == Codes::kExplicitHi) {
      refuse();
    }
    append();
    return;
  }
  CategoryToken* last = tokens.back();
  const Codes::ExplicitListType previous = last->GetTokenType();
  if (next == Codes::kExplicitHi && previous != Codes::kExplicitRange) {
    refuse();
  }
  switch (previous) {
    case Codes::kExplicitString:
    case Codes::kExplicitNumber:
    case Codes::kExplicitComputed:
    case Codes::kExplicitLo:
      if (next == Codes::kExplicitRange) {
        // THRU takes the element before it as its first end.
        auto* range = static_cast<CategoryRange*>(added.release());
        tokens.back() = range;
        range->AddCategoryToken(last);
        return;
      }
      if (previous == Codes::kExplicitLo) {
        refuse();
      }
      append();
      return;
    case Codes::kExplicitRange: {
      auto* range = static_cast<CategoryRange*>(last);
      if (range->GetChildCount() < 2) {
        if (!IsValue(next) && next != Codes::kExplicitHi) {
          refuse();
        }
        range->AddCategoryToken(added.release());
        RemoveEarlierCopiesOfRange(*range, text);
        return;
      }
      if (next == Codes::kExplicitLo || next == Codes::kExplicitHi || next == Codes::kExplicitRange ||
          next == Codes::kExplicitName) {
        refuse();
      }
      append();
      return;
    }
    case Codes::kExplicitMissing:
    case Codes::kExplicitOtherNM:
    case Codes::kExplicitSubtotal:
    case Codes::kExplicitHSubtotal:
      if (next == Codes::kExplicitRange) {
        refuse();
      }
      if (next == previous) {
        // A second subtotal straight after the first replaces it.
        delete last;
        tokens.pop_back();
        append();
        return;
      }
      if (IsSubtotal(previous) && last->GetMustHaveLabel() && !last->GetHasLabel()) {
        if (next != Codes::kExplicitString) {
          added.reset();
          SyntaxParserUtility::UnknownKeyword(this, text);
        }
        last->SetLabel(added->GetToken());
        return;
      }
      append();
      return;
    default:  // a member name
      if (next == Codes::kExplicitRange) {
        refuse();
      }
      append();
      return;
  }
}

// The same range written twice: the later place wins, with a warning.
void SyntaxCategorySquareBracket::RemoveEarlierCopiesOfRange(const CategoryRange& range, const std::string& text) {
  std::vector<CategoryToken*>& tokens = _data->_tokens;
  const std::string rangeKey = EqualityKey(*range.GetFirstChild()) + " THRU " + EqualityKey(*range.GetLastChild());
  if (_data->_seenRangeKeys.insert(rangeKey).second) return;
  for (std::size_t position = 0; position + 1 < tokens.size();) {
    auto* other = dynamic_cast<CategoryRange*>(tokens[position]);
    if (other != nullptr && other->GetChildCount() == 2 && *other->GetFirstChild() == *range.GetFirstChild() &&
        *other->GetLastChild() == *range.GetLastChild()) {
      SyntaxParserUtility::DuplicateCategoryInExplicitList(this, text);
      delete other;
      tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(position));
    } else {
      ++position;
    }
  }
}

void SyntaxCategorySquareBracket::RemoveDuplicatesOfLast(const std::string& text) {
  std::vector<CategoryToken*>& tokens = _data->_tokens;
  const CategoryToken& last = *tokens.back();
  if (_data->_seenKeys.insert(EqualityKey(last)).second) return;
  for (std::size_t position = 0; position + 1 < tokens.size();) {
    CategoryToken* earlier = tokens[position];
    if (!IsSubtotal(earlier->GetTokenType()) && *earlier == last) {
      SyntaxParserUtility::DuplicateCategoryInExplicitList(this, text);
      delete earlier;
      tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(position));
    } else {
      ++position;
    }
  }
}

void SyntaxCategorySquareBracket::CleanUpSubtotals() {
  std::vector<CategoryToken*>& tokens = _data->_tokens;
  for (std::size_t position = 0; position + 1 < tokens.size();) {
    const Codes::ExplicitListType type = tokens[position]->GetTokenType();
    if (IsSubtotal(type) && tokens[position + 1]->GetTokenType() == type) {
      SyntaxParserUtility::DropEmptySubtotal(this);
      delete tokens[position];
      tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(position));
    } else {
      ++position;
    }
  }
}

void SyntaxCategorySquareBracket::ValidateAndCommit(const std::string& text) {
  const Data& data = *_data;
  if (!data._isClosed) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  if (data._tokens.empty()) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  const CategoryToken* last = data._tokens.back();
  const Codes::ExplicitListType type = last->GetTokenType();
  const bool unlabelled = IsSubtotal(type) && last->GetMustHaveLabel() && !last->GetHasLabel();
  const bool openRange =
      type == Codes::kExplicitRange && static_cast<const CategoryRange*>(last)->GetChildCount() < 2;
  if (unlabelled || type == Codes::kExplicitLo || openRange) {
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
}

void SyntaxCategorySquareBracket::SetMemberList(const std::vector<std::string>& reservedMembers) {
  _data->_exclusiveMDList = true;
  _data->_reservedMembers = reservedMembers;
}

const std::vector<CategoryToken*>& SyntaxCategorySquareBracket::GetTokens() const {
  return _data->_tokens;
}

void SyntaxCategorySquareBracket::RemoveToken(std::size_t position) {
  std::vector<CategoryToken*>& tokens = _data->_tokens;
  if (position < tokens.size()) {
    delete tokens[position];
    tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(position));
  }
}

bool SyntaxCategorySquareBracket::IsTotalUsedExprInPc() const {
  return _data->_totalUsedInPc;
}

const std::string& SyntaxCategorySquareBracket::GetPcCatName() const {
  return _data->_pcCatName;
}

namespace {

const char* KindName(Codes::ExplicitListType type) {
  static const char* const kNames[] = {"string",  "number",   "lo",        "hi",   "range",   "missing",
                                       "othernm", "subtotal", "hsubtotal", "name", "computed"};
  return type >= 0 && type <= Codes::kExplicitComputed ? kNames[type] : "?";
}

}  // namespace

void SyntaxCategorySquareBracket::DumpDetails(std::ostream& out) const {
  const Data& data = *_data;
  out << " closed=" << data._isClosed << " exclusiveMD=" << data._exclusiveMDList << " tokens=[";
  const char* separator = "";
  for (const CategoryToken* token : data._tokens) {
    out << separator << KindName(token->GetTokenType()) << " '" << token->GetToken() << "'";
    if (token->GetHasLabel()) {
      out << " label='" << token->GetLabel() << "'";
    }
    separator = ", ";
  }
  out << "]";
  if (!data._pcCatName.empty()) {
    out << " pc=&" << data._pcCatName << " pcTotal=" << data._totalUsedInPc;
  }
}
