// DataProgress.h - tells the program how far a pass over the data file has come
#pragma once

#include <cstddef>
#include <functional>

/// The data layer reports each block of cases read from a file, and the end of each pass,
/// so that the program can show progress on a long load. One listener at a time; the
/// program installs it (only when standard error is a terminal), and nothing is reported
/// without one.
class DataProgress {
 public:
  /// `cases` and `bytes` read so far in the current pass; `done` at its end.
  using Callback = std::function<void(std::size_t cases, std::size_t bytes, bool done)>;

  /// Replaces the listener; an empty callback removes it.
  static void Install(Callback callback);
  static void Report(std::size_t cases, std::size_t bytes);
  static void Finish();
};
