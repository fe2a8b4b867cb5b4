// DataProgress.cpp - the one process-wide listener for progress of the data passes
#include "host/data/DataProgress.h"

#include <utility>

namespace {
DataProgress::Callback& Listener() {
  static DataProgress::Callback listener;
  return listener;
}
}  // namespace

void DataProgress::Install(Callback callback) {
  Listener() = std::move(callback);
}

void DataProgress::Report(std::size_t cases, std::size_t bytes) {
  if (Listener()) Listener()(cases, bytes, false);
}

void DataProgress::Finish() {
  if (Listener()) Listener()(0, 0, true);
}
