// ActiveDataSet.h - the data set that procedure runs read
#pragma once

#include <memory>

class Dataset;

/// Holds the active data set. The program installs it after loading; each
/// ProcedureDataSource takes a shared reference at construction, so a data set stays alive
/// for a run even if another is installed meanwhile.
class ActiveDataSet {
 public:
  static void Install(std::shared_ptr<const Dataset> dataset);
  /// Null when none is installed.
  static std::shared_ptr<const Dataset> Get();
  static void Clear();
};
