// quilt.cpp - the entry: builds the run's objects on its frame, runs them, restores the host words
#include "quilt.h"

#include <memory>
#include <string>

#include "QuiltDriver.h"
#include "host/QuiltAssert.h"
#include "host/data/AdjustMeasurementLevels.h"
#include "host/data/DataError.h"
#include "host/data/HostRecords.h"
#include "host/data/HostStrings.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/engine/CategoryLimitError.h"
#include "host/output/BpComposite.h"
#include "host/output/BpError.h"
#include "host/output/BpNumber.h"
#include "host/output/BpProcedure.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "host/tokens/TARN_TokenSequence.h"

namespace {

// Length of the front-end id at the caller id offset of CmaSys; it is not terminated.
constexpr std::size_t kCallerIdLength = 2;

}  // namespace

extern "C" void quilt_(void* tokens) {
  const std::int64_t savedWeightWord = ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset);
  const std::int64_t savedSecondWord = ReadHostWord(CmnGlb, kCmnGlbSecondWordOffset);

  bool controlPackageMode = false;
  const std::string callerId(reinterpret_cast<const char*>(CmaSys) + kCmaSysCallerIdOffset, kCallerIdLength);
  std::string procedureName = "Quilt";
  if (TARNMBstricmp_A(callerId.c_str(), kControlPackageFrontEndId) == 0) {
    procedureName = "Control Package Test";
    controlPackageMode = true;
  }

  BpProcedure procedure(procedureName, 4);
  TARN_TokenSequence tokenSequence(tokens, true);
  ProcedureDataSource dataSource;
  // Levels are settled before parsing so the parser only ever sees adjusted ones.
  AdjustMeasurementLevels(dataSource);
  QuiltDriver driver(&dataSource);

  if (driver.ParseSyntax(&tokenSequence) == 0 && !dataSource.FatalError()) {
    std::unique_ptr<TARN_InputCaseIterator> pActiveIterator(dataSource.MakeIterator(nullptr));
    QUILT_ASSERT(pActiveIterator.get(), "the active data set yields an iterator");
    auto* iterator = dynamic_cast<ProcDSIterator*>(pActiveIterator.get());
    QUILT_ASSERT(iterator != nullptr, "the active data set's iterator is a ProcDSIterator");
    driver.CreateCubeDispatchers(iterator);
    try {
      driver.AggregateAndBuildTables(&procedure, controlPackageMode);
    } catch (const DataError&) {
      // Bad data found by the pass ends the run; the caller reports it, and nothing made
      // from the cases read so far may stand as if it were the whole.
      WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, savedWeightWord);
      WriteHostWord(CmnGlb, kCmnGlbSecondWordOffset, savedSecondWord);
      throw;
    } catch (const CategoryLimitError& error) {
      // Typically an identifier used as a category: name it and end the command.
      BpComposite text(msg::kTooManyDistinctValues, /*translate=*/true);
      text.Add(BpString(error.GetVariableName(), /*translate=*/false));
      text.Add(BpNumber(static_cast<double>(error.GetLimit()), procedure.Count()));
      text.Finish();
      BpError(text, kBpShowAlways, kBpLevelFatal);
    }
  }

  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, savedWeightWord);
  WriteHostWord(CmnGlb, kCmnGlbSecondWordOffset, savedSecondWord);
}
