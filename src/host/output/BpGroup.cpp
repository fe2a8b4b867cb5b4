// BpGroup.cpp - child groups and categories found again by their text
#include "host/output/BpGroup.h"

#include "host/QuiltAssert.h"
#include "host/output/BpCategory.h"
#include "host/output/BpCellText.h"
#include "host/output/BpImplData.h"

namespace {

std::shared_ptr<BpGroup::ImplData> FindOrAdd(BpGroup::ImplData& parent, const BpCellText& text,
                                             bool isCategory, bool showLabel) {
  const std::string identity = text.GetIdentity();
  auto& index = parent.childIndex[isCategory ? 1 : 0];
  const auto found = index.find(identity);
  if (found != index.end()) return parent.children[found->second];
  index.emplace(identity, parent.children.size());
  auto child = std::make_shared<BpGroup::ImplData>();
  child->label = text.Clone();
  child->identity = identity;
  child->isCategory = isCategory;
  child->showLabel = showLabel;
  child->dimension = parent.dimension;
  if (isCategory) child->categoryId = parent.dimension->nextCategoryId++;
  parent.children.push_back(child);
  return child;
}

}  // namespace

BpGroup::BpGroup(std::shared_ptr<ImplData> data) : _group(std::move(data)) {}

BpGroup::~BpGroup() = default;

BpGroup BpGroup::Group(const BpCellText& text, bool showLabel, BpPivotTable::Sort /*sort*/) {
  QUILT_ASSERT(!_group->isCategory, "a category has no children");
  return BpGroup(FindOrAdd(*_group, text, /*isCategory=*/false, showLabel));
}

BpCategory BpGroup::Category(const BpCellText& text) {
  QUILT_ASSERT(!_group->isCategory, "a category has no children");
  std::shared_ptr<ImplData> category = FindOrAdd(*_group, text, /*isCategory=*/true, /*showLabel=*/true);
  category->dimension->current = category->categoryId;
  return BpCategory(category);
}
