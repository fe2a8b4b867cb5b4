// TableDumpChannel.h - where a run writes the stable text form of each built table, if anywhere
#pragma once

#include <iosfwd>

/// The program installs a stream here for `--dump-tables`; each table's dispatcher then
/// writes the table's header trees and cubes after every split group. Nothing is written
/// when no stream is installed, which is the normal run.
class TableDumpChannel {
public:
  /// `stream` is not owned; null switches the dump off.
  static void Install(std::ostream* stream);
  static std::ostream* Get();
};
