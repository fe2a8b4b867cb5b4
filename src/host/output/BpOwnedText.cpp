// BpOwnedText.cpp - deep copies of cell texts
#include "host/output/BpOwnedText.h"

#include "host/output/BpCellText.h"

BpOwnedText::BpOwnedText(const BpCellText& text) : _text(text.Clone()) {}

BpOwnedText::BpOwnedText(const BpOwnedText& other) : _text(other._text ? other._text->Clone() : nullptr) {}

BpOwnedText& BpOwnedText::operator=(const BpOwnedText& other) {
  if (this != &other) _text = other._text ? other._text->Clone() : nullptr;
  return *this;
}

BpOwnedText::BpOwnedText(BpOwnedText&& other) noexcept = default;
BpOwnedText& BpOwnedText::operator=(BpOwnedText&& other) noexcept = default;
BpOwnedText::~BpOwnedText() = default;
