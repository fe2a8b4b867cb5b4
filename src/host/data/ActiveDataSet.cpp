// ActiveDataSet.cpp - the one installed data set
#include "host/data/ActiveDataSet.h"

#include <utility>

namespace {

std::shared_ptr<const Dataset>& Slot() {
  static std::shared_ptr<const Dataset> active;
  return active;
}

}  // namespace

void ActiveDataSet::Install(std::shared_ptr<const Dataset> dataset) {
  Slot() = std::move(dataset);
}
std::shared_ptr<const Dataset> ActiveDataSet::Get() {
  return Slot();
}
void ActiveDataSet::Clear() {
  Slot().reset();
}
