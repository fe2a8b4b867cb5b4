// BpDimension.h - a dimension of a pivot table: its root group and where it lies
#pragma once

#include <memory>

#include "host/output/BpGroup.h"

/// The root group of one dimension. Copies share.
class BpDimension : public BpGroup {
 public:
  enum Place { kPlaceRow = 0, kPlaceColumn = 1, kPlaceLayer = 2 };

  struct ImplData;

  BpDimension(const BpDimension& other) = default;
  BpDimension& operator=(const BpDimension& other) = default;
  ~BpDimension() override;

  /// Places the dimension. `order` counts from 1 within the place; order 1 is the innermost
  /// nesting level, so the statistics of one category stay together. `hideName` has no
  /// effect (names never show); `hideLabels` hides the category labels of this dimension.
  void Position(Place place, int order, bool hideName, bool hideLabels);

  BpDimension(std::shared_ptr<BpGroup::ImplData> group, std::shared_ptr<ImplData> dimension);

 private:
  std::shared_ptr<ImplData> _dimension;
};
