// SplitGroupListener.cpp - the one process-wide listener for split group changes
#include "host/data/SplitGroupListener.h"

namespace {
SplitGroupListener::Callback& Listener() {
  static SplitGroupListener::Callback listener;
  return listener;
}
}  // namespace

void SplitGroupListener::Install(Callback callback) { Listener() = std::move(callback); }

bool SplitGroupListener::IsInstalled() { return static_cast<bool>(Listener()); }

void SplitGroupListener::Announce(const SplitGroupPairs& pairs) {
  if (Listener()) Listener()(pairs);
}
