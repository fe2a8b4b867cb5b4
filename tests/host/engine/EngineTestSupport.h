// EngineTestSupport.h - builds small data sets and runs a data pass through the engine
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "aggregator/CellKey.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationCube.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/AggregationTable.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/CubeAggregator.h"
#include "host/engine/StatValues.h"
#include "host/engine/TableDimension.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/engine/TableMetadata.h"

namespace enginetest {

using Codes = TableEncryptionCodes;

/// A loaded data set, its data source and iterator, and one engine table over them.
struct Harness {
  std::shared_ptr<ProcedureDataSource> _source;
  std::unique_ptr<TARN_InputCaseIterator> _iterator;
  std::unique_ptr<AggregationTable> _table;
  std::vector<std::unique_ptr<AggregationVariable>> _variables;

  Harness(const std::string& csv, const std::string& dictionary, bool weighted = false, bool pairwise = true,
          const std::string& baseWeight = "") {
    _source = std::make_shared<ProcedureDataSource>(DatasetLoader::LoadText(csv, dictionary, {}));
    _iterator.reset(_source->MakeIterator(nullptr));
    const int base = baseWeight.empty() ? -1 : _source->FindVarIndex(baseWeight.c_str());
    _table = std::make_unique<AggregationTable>(_iterator.get(), _source.get(), weighted, pairwise, base);
  }

  int Index(const std::string& name) const { return _source->FindVarIndex(name.c_str()); }

  AggregationVariable* Variable(const std::string& name) {
    _variables.push_back(std::make_unique<AggregationVariable>(Index(name), name));
    return _variables.back().get();
  }

  AggregationVariable* Own(std::unique_ptr<AggregationVariable> variable) {
    _variables.push_back(std::move(variable));
    return _variables.back().get();
  }

  /// A cube over the variables, each at its position, with the category statistics that
  /// `carrier` carries.
  CubeAggregator* Cube(std::initializer_list<std::pair<AggregationVariable*, int>> variables,
                       const std::vector<AggregationStatistic>& statistics, AggregationVariable* carrier) {
    AggregationCube* cube = _table->CreateCube();
    for (const auto& [variable, position] : variables) cube->AddCategoricalVariable(variable, position);
    CubeAggregator* aggregator = cube->CreateCubeAggregator();
    cube->AddCategoryStatistics(statistics, carrier);
    return aggregator;
  }

  /// Reads one split group (the whole file without splits) and completes it. False at
  /// the end of the data with nothing read.
  bool RunGroup() {
    auto* iterator = static_cast<ProcDSIterator*>(_iterator.get());
    bool any = false;
    while (iterator->NextCase() != 0) {
      if (iterator->SplitGroupEnd()) {
        if (any) break;
        continue;
      }
      _table->AddNewCase();
      any = true;
    }
    _table->CompleteCases();
    return any;
  }
};

/// Statistics of categories, by their codes.
inline std::vector<AggregationStatistic> Statistics(std::initializer_list<int> codes) {
  return std::vector<AggregationStatistic>(codes.begin(), codes.end());
}

inline CellKey Key(std::initializer_list<int> codes) {
  CellKey key(static_cast<int>(codes.size()));
  int i = 0;
  for (int code : codes) key[i++] = code;
  return key;
}

/// Value 1 of a statistic at a cell, or the system-missing value for an empty cell.
inline double Value(const CubeAggregator& cube, const CellKey& key, const AggregationStatistic& stat,
                    bool total = false, double* value2 = nullptr) {
  StatValues* values = cube.GetStatValuesByKey(key);
  if (values == nullptr) return TARN_SystemMissing();
  const CellStatistics* list = total ? cube.GetTotalStats() : cube.GetCellStats();
  const int index = list->GetIndex(stat, stat.GetVarIndex() < 0);
  if (index < 0) return -12345.0;
  if (value2 != nullptr) *value2 = values->GetStatValue(index).GetValue2();
  return values->GetStatValue(index).GetValue1();
}

/// The encoding of the value category holding `number` in a dimension.
inline int Encoding(TableDimension* dimension, double number) {
  for (const AggregationCategory* category : dimension->GetCategories()) {
    if (category->GetCatType() == AggregationCategory::kValue && category->GetCatValue()->number == number) {
      return category->GetCatEncoding();
    }
  }
  return -999;
}

}  // namespace enginetest
