// BpHandle.cpp - the registry of replicated cell texts
#include "host/output/BpHandle.h"

#include <map>

#include "host/output/BpCellText.h"

namespace {

struct Registry {
  std::map<long, std::unique_ptr<BpCellText>> texts;
  long next = 1;
};

Registry& GetRegistry() {
  static Registry registry;
  return registry;
}

}  // namespace

long BpHandle::Register(std::unique_ptr<BpCellText> text) {
  Registry& registry = GetRegistry();
  const long handle = registry.next++;
  registry.texts[handle] = std::move(text);
  return handle;
}

const BpCellText* BpHandle::GetText() const {
  if (_handle < 0) return nullptr;
  const auto found = GetRegistry().texts.find(_handle);
  return found == GetRegistry().texts.end() ? nullptr : found->second.get();
}

BpHandle::BpHandle(const BpHandle& other) {
  const BpCellText* text = other.GetText();
  _handle = text == nullptr ? -1 : text->Replicate();
}

BpHandle& BpHandle::operator=(const BpHandle& other) {
  if (this == &other) return *this;
  const BpCellText* text = other.GetText();
  const long handle = text == nullptr ? -1 : text->Replicate();
  if (_handle >= 0) GetRegistry().texts.erase(_handle);
  _handle = handle;
  return *this;
}

BpHandle::~BpHandle() {
  if (_handle >= 0) GetRegistry().texts.erase(_handle);
}
