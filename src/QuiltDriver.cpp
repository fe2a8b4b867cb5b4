// QuiltDriver.cpp - the run's stages: parse, declare, one pass over the cases, deliver per group
#include "QuiltDriver.h"

#include <algorithm>
#include <exception>
#include <memory>

#include "CubeDispatcher.h"
#include "host/QuiltAssert.h"
#include "host/data/FormatConversion.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/TARN_ValueLabelMap.h"
#include "host/data/TARN_Variable.h"
#include "host/engine/CategoryLimitError.h"
#include "host/output/BpComposite.h"
#include "host/output/BpError.h"
#include "host/output/BpProcedure.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxTableSubcommand.h"

namespace {

// Large enough for the widest format the host allows (strings up to 32767 bytes).
constexpr std::size_t kSplitValueBufferSize = 32768;

void ReportCatalogueText(const char* key, BpErrorLevel level) {
  BpString text(key, /*translate=*/true);
  BpError(text, kBpShowAlways, level);
}

std::string TrimBlanks(std::string text) {
  const auto notBlank = [](char character) { return character != ' '; };
  text.erase(std::find_if(text.rbegin(), text.rend(), notBlank).base(), text.end());
  text.erase(text.begin(), std::find_if(text.begin(), text.end(), notBlank));
  return text;
}

}  // namespace

QuiltDriver::QuiltDriver(ProcedureDataSource* dataSource) : _dataSource(dataSource) {
  _reader.SetDataSource(dataSource);
}

QuiltDriver::~QuiltDriver() {
  for (CubeDispatcher* dispatcher : _cubeDispatchers) {
    dispatcher->ClearDeep();
    delete dispatcher;
  }
}

int QuiltDriver::ParseSyntax(TARN_TokenSequence* tokens) {
  try {
    _reader.ReadTokens(tokens);
  } catch (const BpComposite& composite) {
    // The token the parser stopped at is where the reader looks first.
    BpErrorAt(composite, kBpShowAlways, kBpLevelFatal, tokens->GetLocation());
    return 1;
  } catch (...) {
    ReportCatalogueText(msg::kUnspecifiedError, kBpLevelFatal);
    return 1;
  }
  return 0;
}

int QuiltDriver::CreateCubeDispatchers(ProcDSIterator* iterator) {
  _activeIterator = iterator;
  const std::vector<SyntaxTableSubcommand*> tables = _reader.GetTable();
  if (!tables.empty()) {
    _baseWeightVarIndex = SyntaxConverter::GetBaseWeightVarIndex();
    // The weight test reads it on every case, so a pass reading a file must read it too.
    if (_baseWeightVarIndex >= 0) _activeIterator->RequestVariable(_baseWeightVarIndex);
  }
  for (SyntaxTableSubcommand* table : tables) {
    auto dispatcher = std::make_unique<CubeDispatcher>(table);
    dispatcher->CreateCubes(*_activeIterator);
    _cubeDispatchers.push_back(dispatcher.release());
  }
  const std::size_t nTablesInSyntax = tables.size();
  QUILT_ASSERT(nTablesInSyntax == _cubeDispatchers.size(), "one dispatcher per parsed table");
  return 0;
}

std::string QuiltDriver::getSplitText() {
  if (_dataSource == nullptr || _activeIterator == nullptr) return "";
  const unsigned splitCount = _dataSource->SplitVariableCount();
  if (splitCount == 0 || !_dataSource->SplitsSeparate()) return "";

  std::string text;
  std::vector<char> buffer(kSplitValueBufferSize + 1);
  for (unsigned splitIndex = 0; splitIndex < splitCount; ++splitIndex) {
    const int index = _dataSource->SplitVariableIndex(splitIndex);
    const TARN_Variable* variable = _dataSource->GetVariable(index);
    const char* label = variable->GetLabel();
    text += (label != nullptr && *label != '\0') ? label : variable->GetName();
    text += ": ";

    const OBS* value = _activeIterator->GetObsPointer(static_cast<unsigned>(index));
    TARN_ValueLabelMap valueLabels(variable->GetValueLabels());
    const char* valueLabel = valueLabels.GetLabel(value);
    if (valueLabel != nullptr) {
      text += valueLabel;
    } else {
      // A value without a label reads as the variable prints it, at most 15 decimals.
      TARN_Format format = variable->GetFormat();
      if (format.Decimals() > 15) format.Decimals(15);
      std::fill(buffer.begin(), buffer.end(), '\0');
      ToString(value, format, buffer.data());
      text += TrimBlanks(std::string(buffer.data(), std::min<std::size_t>(format.Width(), kSplitValueBufferSize)));
    }
    if (splitIndex + 1 < splitCount) text += ", ";
  }
  return text;
}

int QuiltDriver::ReadCase(double& weight) {
  const int more = _activeIterator->NextCase();
  if (_baseWeightVarIndex >= 0) weight = *_activeIterator->GetNumericValue(_baseWeightVarIndex);
  return more;
}

void QuiltDriver::FinalizeAndBuildTables(BpProcedure& procedure, bool controlPackageMode,
                                         const std::string& splitText) {
  for (std::size_t tableIndex = 0; tableIndex < _cubeDispatchers.size(); ++tableIndex) {
    CubeDispatcher* dispatcher = _cubeDispatchers[tableIndex];
    try {
      dispatcher->Finalize();
      dispatcher->BuildTable(&procedure, _dataSource, static_cast<int>(tableIndex) + 1, controlPackageMode,
                             splitText);
    } catch (const CategoryLimitError&) {
      // Data that no table can hold ends the command; the entry reports it.
      throw;
    } catch (...) {
      // One broken table must not cost the user the others of the group.
      ReportCatalogueText(msg::kUnrecoverableError, kBpLevelWarning);
    }
  }
}

int QuiltDriver::AggregateAndBuildTables(BpProcedure* procedure, bool controlPackageMode) {
  QUILT_ASSERT(_activeIterator != nullptr, "CreateCubeDispatchers runs before the data pass");
  double weight = 1.0;
  bool noCases = false;
  bool firstOfGroup = true;
  std::string splitText;

  int more = ReadCase(weight);
  if (more != 0) {
    // A first read that reports a group end is only a boundary: step over it.
    if (_activeIterator->SplitGroupEnd()) {
      more = ReadCase(weight);
    } else if (_dataSource->SplitsSeparate()) {
      procedure->SplitChange();
    }
  }
  if (more == 0) noCases = true;

  while (more != 0) {
    if (firstOfGroup) splitText = getSplitText();
    firstOfGroup = false;

    if (weight != TARN_SystemMissing() && weight > 0) {
      for (CubeDispatcher* dispatcher : _cubeDispatchers) dispatcher->Aggregate();
    }
    more = ReadCase(weight);
    if (!_activeIterator->SplitGroupEnd()) continue;

    firstOfGroup = true;
    const bool separate = _dataSource->SplitsSeparate();
    // Groups laid out together keep accumulating: step over the boundary.
    if (!separate) more = ReadCase(weight);
    if (more == 0 || separate) FinalizeAndBuildTables(*procedure, controlPackageMode, splitText);
    if (separate) {
      more = ReadCase(weight);
      procedure->SplitChange();
      for (CubeDispatcher* dispatcher : _cubeDispatchers) dispatcher->Reset();
    }
  }

  if (noCases) {
    ReportCatalogueText(msg::kNoCases, kBpLevelFatal);
    return 0;
  }
  if (_dataSource->SplitVariableCount() != 0 && !_dataSource->SplitsSeparate()) {
    ReportCatalogueText(msg::kSplitsAsRowsNotProcessed, kBpLevelWarning);
  }
  return 0;
}
