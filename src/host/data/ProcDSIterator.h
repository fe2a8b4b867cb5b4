// ProcDSIterator.h - iterator over a loaded data set that reports split-group boundaries
#pragma once

#include <cstddef>
#include <memory>

#include "host/data/TARN_InputCaseIterator.h"

class Dataset;

/// Iterates the cases of a data set in order and reports split groups by boundary reads:
/// - between two groups (runs of equal split values) one NextCase returns non-zero with
///   SplitGroupEnd() true and delivers no case; the next NextCase delivers the group's
///   first case;
/// - when the data set asks for it (Dataset::SetLeadingBoundary), the first read is such
///   a boundary too;
/// - at the end NextCase returns 0 with SplitGroupEnd() true, with or without splits, and
///   keeps returning 0.
/// During a boundary read and after the end the accessors still give the last case read
/// (with no case at all, system-missing numbers and blank strings), so a caller that reads
/// the weight after every NextCase never reads outside the data. The data set must not
/// change while an iterator reads it.
class ProcDSIterator : public TARN_InputCaseIterator {
 public:
  explicit ProcDSIterator(std::shared_ptr<const Dataset> dataset);
  ~ProcDSIterator() override;

  const double* GetNumericValue(int index) const override;
  const OBS* GetObsPointer(unsigned index) const override;
  /// True after a boundary read and at the end of the data.
  bool SplitGroupEnd() const;
  /// 0-based index of the case the iterator stands on (the last one read).
  std::size_t GetCaseIndex() const;

 protected:
  int DoNextCase() override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
