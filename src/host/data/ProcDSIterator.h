// ProcDSIterator.h - reads the cases of a data set in order, block by block, with split-group boundary reads
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

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
///
/// Cases come in blocks: a data set that holds its cases is one block; one whose cases stay
/// in their file is read a block at a time, and only the variables that the block readers
/// (the tables), the weight, the splits and RequestVariable name are read. Any other
/// variable reads as system-missing or blank.
class ProcDSIterator : public TARN_InputCaseIterator {
 public:
  /// Something that reads the iterator's blocks directly and may keep rows of the current
  /// block pending. Plain value type.
  struct BlockReader {
    std::function<std::vector<int>()> variables;  // dictionary indices it reads
    std::function<void()> flush;                  // lets go of pending rows; called before a block is replaced
  };

  explicit ProcDSIterator(std::shared_ptr<const Dataset> dataset);
  ~ProcDSIterator() override;

  const double* GetNumericValue(int index) const override;
  const OBS* GetObsPointer(unsigned index) const override;
  /// True after a boundary read and at the end of the data.
  bool SplitGroupEnd() const;
  /// 0-based index of the case the iterator stands on (the last one read).
  std::size_t GetCaseIndex() const;

  /// Registers a block reader before the first NextCase. The iterator keeps only a weak
  /// reference: a reader that is gone is skipped.
  void AddBlockReader(std::weak_ptr<BlockReader> reader);
  /// Asks for variable `index` to be read, before the first NextCase.
  void RequestVariable(int index);
  /// The column of variable `index` in the current block: cells of the block's rows, one
  /// after the other. Null when the pass does not read the variable.
  const OBS* GetBlockColumn(int index) const;
  /// Row of the current case in the current block.
  std::size_t GetBlockRow() const;
  /// Changes each time a block replaces the previous one.
  std::size_t GetBlockGeneration() const;

 protected:
  int DoNextCase() override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
