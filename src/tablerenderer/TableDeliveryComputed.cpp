// TableDeliveryComputed.cpp - computed categories evaluated at render time
//
// PLACEHOLDER while the computed-category operations are being written: this file only
// lets tables without computed categories link and render. A computed category's cell is
// left without text here. The real definitions replace this whole file.
#include "host/engine/AggregationCategory.h"
#include "tablerenderer/TableDeliveryData.h"

void TableDelivery::Data::GetPcomputeRequiredCat(QuiltTable*) {}
bool TableDelivery::Data::HasPostCategories(const std::vector<BPTreeNode*>&) const { return false; }
void TableDelivery::Data::GetComputingCats(const std::vector<BPTreeNode*>&) {}
void TableDelivery::Data::GetParsedCategory(const std::vector<BPTreeNode*>&) {}

const AggregationCategory* TableDelivery::Data::GetPostCategory1D(const CategoryKey& key) const {
  for (const AggregationCategory* category : key) {
    if (category->GetCatType() == AggregationCategory::kPcompute) return category;
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
bool TableDelivery::Data::NeedPostCategory1D(const CategoryKey&) const { return false; }
bool TableDelivery::Data::NeedPostCategory2D(const CategoryKey&, const CategoryKey&) const { return false; }
bool TableDelivery::Data::NeedPostCategory3D(const CategoryKey&, const CategoryKey&, const CategoryKey&) const {
  return false;
}
void TableDelivery::Data::ComputePostCategoryValues1D(const CategoryKey&, CubeAggregator*) {}
void TableDelivery::Data::ComputePostCategoryValues2D(const CategoryKey&, const CategoryKey&, bool, int, QuiltTable*,
                                                      CubeAggregator*) {}
void TableDelivery::Data::ComputePostCategoryValues3D(const CategoryKey&, const CategoryKey&, const CategoryKey&, int,
                                                      int, QuiltTable*, CubeAggregator*) {}
bool TableDelivery::Data::ProcessPostValues(const CellStatistics*, const CellStatistics*, SyntaxVariableName*, int,
                                            double, int, BPTreeNode*, const AggregationCategory*) {
  return false;
}
bool TableDelivery::Data::IsHiddenSource(const CategoryKey&, const std::vector<const std::vector<ParsedCategory*>*>&,
                                         int) const {
  return false;
}
