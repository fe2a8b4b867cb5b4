// OutputDocument.cpp - the installed document and the order of its items
#include "host/output/OutputDocument.h"

#include <algorithm>

namespace {

OutputDocument* gInstalled = nullptr;

void CollectKind(const OutputItem& item, OutputItem::Kind kind, std::vector<const OutputItem*>& found) {
  if (item.kind == kind) found.push_back(&item);
  for (const OutputItem* child : item.GetChildren()) CollectKind(*child, kind, found);
}

}  // namespace

struct OutputDocument::Data {
  OutputItem root;                      // a heading that holds the top-level items
  std::vector<OutputItem*> procedures;  // open procedures, innermost last
  std::vector<std::function<OutputItem*()>> containers;  // parallel: where each puts its items
  SplitPairs splitPairs;
  std::vector<std::string> debugLines;
};

OutputDocument::OutputDocument() : _data(std::make_unique<Data>()) {}

OutputDocument::~OutputDocument() {
  if (gInstalled == this) gInstalled = nullptr;
}

OutputDocument& OutputDocument::Current() {
  if (gInstalled != nullptr) return *gInstalled;
  static OutputDocument fallback;
  return fallback;
}

void OutputDocument::Install(OutputDocument* document) {
  gInstalled = document;
}

std::vector<const OutputItem*> OutputDocument::Items() const {
  return _data->root.GetChildren();
}

std::vector<const OutputItem*> OutputDocument::Messages() const {
  std::vector<const OutputItem*> found;
  for (const OutputItem* item : Items()) CollectKind(*item, OutputItem::kMessage, found);
  return found;
}

std::vector<const DeliveredTable*> OutputDocument::Tables() const {
  std::vector<const OutputItem*> found;
  for (const OutputItem* item : Items()) CollectKind(*item, OutputItem::kTable, found);
  std::vector<const DeliveredTable*> tables;
  for (const OutputItem* item : found) tables.push_back(item->GetTable());
  return tables;
}

bool OutputDocument::HasMessageAtLeast(int level) const {
  const std::vector<const OutputItem*> messages = Messages();
  return std::any_of(messages.begin(), messages.end(),
                     [level](const OutputItem* message) { return message->level >= level; });
}

void OutputDocument::Clear() {
  _data->root.children.clear();
  _data->procedures.clear();
  _data->containers.clear();
  _data->debugLines.clear();
  _data->splitPairs.clear();
}

void OutputDocument::Dump(std::ostream& out) const {
  for (const OutputItem* item : Items()) item->Dump(out, 0);
}

void OutputDocument::SetSplitPairs(SplitPairs pairs) {
  _data->splitPairs = std::move(pairs);
}

const OutputDocument::SplitPairs& OutputDocument::GetSplitPairs() const {
  return _data->splitPairs;
}

void OutputDocument::AddDebugLine(long channel, const std::string& text) {
  _data->debugLines.push_back(std::to_string(channel) + ": " + text);
}

const std::vector<std::string>& OutputDocument::GetDebugLines() const {
  return _data->debugLines;
}

std::shared_ptr<OutputItem> OutputDocument::AddHeading(OutputItem* parent, const std::string& text) {
  auto item = std::make_shared<OutputItem>();
  item->kind = OutputItem::kHeading;
  item->text = text;
  (parent == nullptr ? _data->root : *parent).children.push_back(item);
  return item;
}

std::shared_ptr<OutputItem> OutputDocument::ReserveTable(OutputItem* parent) {
  auto item = std::make_shared<OutputItem>();
  item->kind = OutputItem::kTable;
  item->delivered = false;
  (parent == nullptr ? _data->root : *parent).children.push_back(item);
  return item;
}

void OutputDocument::AddMessage(int level, const std::string& key, std::vector<std::string> arguments,
                                const std::string& text) {
  auto item = std::make_shared<OutputItem>();
  item->kind = OutputItem::kMessage;
  item->level = level;
  item->key = key;
  item->arguments = std::move(arguments);
  item->text = text;
  OutputItem* parent = &_data->root;
  if (!_data->procedures.empty()) {
    const std::function<OutputItem*()>& container = _data->containers.back();
    parent = container ? container() : _data->procedures.back();
  }
  parent->children.push_back(item);
}

void OutputDocument::OpenProcedure(OutputItem* heading, std::function<OutputItem*()> container) {
  _data->procedures.push_back(heading);
  _data->containers.push_back(std::move(container));
}

void OutputDocument::CloseProcedure(OutputItem* heading) {
  auto found = std::find(_data->procedures.begin(), _data->procedures.end(), heading);
  if (found == _data->procedures.end()) return;
  _data->containers.erase(_data->containers.begin() + (found - _data->procedures.begin()));
  _data->procedures.erase(found);
}
