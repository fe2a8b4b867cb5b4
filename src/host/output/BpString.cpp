// BpString.cpp - plain texts and catalogue keys
#include "host/output/BpString.h"

#include "host/output/MessageCatalogue.h"

BpString::BpString(std::string text, bool translate) : _text(std::move(text)), _translate(translate) {}

std::unique_ptr<BpCellText> BpString::Clone() const {
  return std::make_unique<BpString>(*this);
}

std::string BpString::GetText() const {
  return _translate ? MessageCatalogue::Expand(_text, {}) : _text;
}

std::string BpString::GetIdentity() const {
  return (_translate ? "K:" : "S:") + _text;
}

void BpString::Dump(std::ostream& out) const {
  out << (_translate ? "key" : "string") << " \"" << _text << '"';
}
