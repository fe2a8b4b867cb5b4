// SplitGroupListener.h - tells the rest of the host which split group the data pass entered
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// The variable and value of each split variable of a group, as a reader sees them: the
/// variable's label (else its name) and the value's label (else the value as the variable
/// prints it).
using SplitGroupPairs = std::vector<std::pair<std::string, std::string>>;

/// The iterator announces each split group as it delivers the group's first case, so that
/// the output layer can name the group's tables and messages after it. One listener at a
/// time; the program installs it, and nothing is announced without one.
class SplitGroupListener {
public:
  using Callback = std::function<void(const SplitGroupPairs&)>;

  /// Replaces the listener; an empty callback removes it.
  static void Install(Callback callback);
  static bool IsInstalled();
  /// Calls the listener, if any.
  static void Announce(const SplitGroupPairs& pairs);
};
