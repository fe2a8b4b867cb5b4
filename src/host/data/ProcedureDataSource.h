// ProcedureDataSource.h - the active data set as the data source of one procedure run
#pragma once

#include <memory>

#include "host/data/Obs.h"
#include "host/data/TARN_DataSource.h"

class TARN_InputCaseIterator;

/// The data source a procedure run reads: the active data set at construction time.
class ProcedureDataSource : public TARN_DataSource {
 public:
  /// Attaches to the active data set (ActiveDataSet::Get()). Without one the source has
  /// no variables and FatalError() is true.
  ProcedureDataSource();
  /// Attaches to a given data set (tests and tools).
  explicit ProcedureDataSource(std::shared_ptr<const Dataset> dataset);
  ~ProcedureDataSource() override;

  /// True when there is no data to read (no active data set).
  bool FatalError() const;
  /// A new iterator over the cases, owned by the caller; its dynamic type is ProcDSIterator.
  /// `buffer` is accepted for the host's signature and is not used (pass null). Null when
  /// FatalError() is true.
  TARN_InputCaseIterator* MakeIterator(OBS* buffer);
};
