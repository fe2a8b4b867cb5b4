// BpProcedure.h - the root heading of one run of the procedure, and the format families
#pragma once

#include <string>

#include "host/output/BpFormatSpec.h"
#include "host/output/BpHeading.h"

/// The outline root of one command. Created on the entry's frame; messages reported while
/// it lives stand under it, in order among its tables.
class BpProcedure : public BpHeading {
 public:
  /// `name` is the outline title; `kind` (always 4) has no effect.
  BpProcedure(std::string name, int kind);
  ~BpProcedure() override;
  BpProcedure(const BpProcedure&) = delete;
  BpProcedure& operator=(const BpProcedure&) = delete;

  /// The tables made after this call belong to a new split group: they stand under a
  /// heading of their own, named after the group's split pairs (OutputDocument::SetSplitPairs)
  /// as they are when the group's first table or heading is made ("Split group N" without
  /// pairs). The first group gets its heading without a call when its pairs are set.
  void SplitChange();

  /// Counts: F40.0.
  static BpFormatSpec Count();
  /// Percentages: PCT40.1.
  static BpFormatSpec Percent();
  /// Other numbers: F40.2.
  static BpFormatSpec GeneralStat();
  /// Significance levels: F40.3.
  static BpFormatSpec Significance();

  /// The variable's own format type, width 40 (a maximum: writers trim), its decimals.
  /// A variable that cannot be found (or a string variable) gives F40.2.
  BpFormatSpec Mean(int varIndex) const;
  BpFormatSpec Variable(int varIndex) const;
  BpFormatSpec StdDev(int varIndex) const;
  BpFormatSpec Difference(int varIndex) const;
  /// As Variable; the width 40 already holds any value that F notation can show.
  BpFormatSpec Sum(int varIndex, double value) const;
};
