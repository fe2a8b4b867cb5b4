// BpDimension.cpp - the placing of a dimension
#include "host/output/BpDimension.h"

#include "host/output/BpImplData.h"

BpDimension::BpDimension(std::shared_ptr<BpGroup::ImplData> group, std::shared_ptr<ImplData> dimension)
    : BpGroup(std::move(group)), _dimension(std::move(dimension)) {}

BpDimension::~BpDimension() = default;

void BpDimension::Position(Place place, int order, bool hideName, bool hideLabels) {
  _dimension->place = place;
  _dimension->order = order;
  _dimension->hideName = hideName;
  _dimension->hideLabels = hideLabels;
}
