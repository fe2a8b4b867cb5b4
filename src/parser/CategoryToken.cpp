// CategoryToken.cpp - one element of an explicit CATEGORIES list
#include "parser/CategoryToken.h"

#include "host/QuiltAssert.h"
#include "parser/SyntaxParserUtility.h"

struct CategoryToken::Data {
  ExplicitListType _type = TableEncryptionCodes::kExplicitString;
  std::string _token;           // the text as written
  double _number = 0.0;         // the value of a number
  std::string _label;           // a subtotal's label; empty for the default
  bool _mustHaveLabel = false;  // "SUBTOTAL=": the label text must follow
};

CategoryToken::CategoryToken(const std::string& text) : _my(std::make_unique<Data>()) {
  _my->_token = text;
}

CategoryToken::CategoryToken(const std::string& text, ExplicitListType type) : CategoryToken(text) {
  _my->_type = type;
}

CategoryToken::CategoryToken(double number, const std::string& text) : CategoryToken(text) {
  _my->_type = TableEncryptionCodes::kExplicitNumber;
  _my->_number = number;
}

CategoryToken::CategoryToken(const std::string& text, bool mustHaveLabel, bool isSubtotal)
    : CategoryToken(text) {
  _my->_type =
      isSubtotal ? TableEncryptionCodes::kExplicitSubtotal : TableEncryptionCodes::kExplicitHSubtotal;
  _my->_mustHaveLabel = mustHaveLabel;
}

CategoryToken::~CategoryToken() = default;

std::string CategoryToken::GetToken() const {
  return _my->_token;
}

CategoryToken::ExplicitListType CategoryToken::GetTokenType() const {
  return _my->_type;
}

double CategoryToken::GetNumber() const {
  return _my->_number;
}

const std::string& CategoryToken::GetLabel() const {
  return _my->_label;
}

bool CategoryToken::GetHasLabel() const {
  return !_my->_label.empty();
}

bool CategoryToken::GetMustHaveLabel() const {
  return _my->_mustHaveLabel;
}

void CategoryToken::SetLabel(const std::string& label) {
  QUILT_ASSERT(_my->_mustHaveLabel, "only a SUBTOTAL= element takes a label");
  _my->_label = label;
}

bool CategoryToken::operator==(const CategoryToken& other) const {
  if (_my->_type != other._my->_type) {
    return false;
  }
  switch (_my->_type) {
    case TableEncryptionCodes::kExplicitString:
    case TableEncryptionCodes::kExplicitName:
    case TableEncryptionCodes::kExplicitComputed:
      return SyntaxParserUtility::ExactWordMatch(GetToken(), other.GetToken());
    case TableEncryptionCodes::kExplicitNumber:
      return _my->_number == other._my->_number;
    default:
      return true;
  }
}
