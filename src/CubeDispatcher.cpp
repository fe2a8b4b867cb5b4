// CubeDispatcher.cpp - declares one table to the aggregation engine and delivers it per group
#include "CubeDispatcher.h"

#include <ostream>
#include <vector>

#include "TableDumpChannel.h"
#include "host/QuiltAssert.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/VariableSet.h"
#include "host/engine/AggregationCube.h"
#include "host/engine/AggregationMCSet.h"
#include "host/engine/AggregationMDSet.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/AggregationTable.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/TableDimension.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/engine/TableMetadata.h"
#include "host/output/BpComposite.h"
#include "host/output/BpError.h"
#include "host/output/BpNumber.h"
#include "host/output/BpProcedure.h"
#include "host/output/BpString.h"
#include "host/output/BpVariable.h"
#include "host/output/MessageKeys.h"
#include "parser/Statistics.h"
#include "parser/SubTableCube.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"
#include "tablebuilder/QuiltTable.h"
#include "tablerenderer/TableDelivery.h"

using Codes = TableEncryptionCodes;

struct CubeDispatcher::Data {
  SyntaxTableSubcommand* _table = nullptr;                  // the table served; not owned
  AggregationTable* _aggregationTable = nullptr;            // owned; null until CreateCubes
  QuiltTable* _quiltTable = nullptr;                        // owned; null until CreateCubes
  std::vector<AggregationVariable*> _aggregationVariables;  // owned, in order of creation

  ~Data() {
    for (AggregationVariable* variable : _aggregationVariables) delete variable;
    delete _aggregationTable;
    delete _quiltTable;
  }
};

namespace {

using StatisticList = std::vector<AggregationStatistic>;

bool IsPercentile(const Statistics& statistic) {
  int primary = statistic.GetPrimaryStatistic();
  return primary == Codes::kStatPtile || primary == Codes::kStatUPtile;
}

/// Appends the engine's form of each requested statistic of the variable at `index`.
void AppendStatistics(int index, const std::vector<Statistics*>& statistics, StatisticList& list) {
  for (const Statistics* statistic : statistics) {
    AggregationStatistic entry(index, statistic->GetStatType());
    if (IsPercentile(*statistic)) entry.SetPTileCutPoint(statistic->GetCutPoint());
    list.push_back(entry);
  }
}

/// A confidence limit or standard error of a count-based statistic reads the total of the
/// dimensions it stands in, so the engine must accumulate that total even when hidden.
bool SingStatNeedTotal(const AggregationStatistic& statistic) {
  int conf = statistic.GetConfSubType();
  if (conf == 0 || conf == Codes::kConfUnset) return false;
  int primary = statistic.GetPrimaryStatistic();
  if (primary == 1 || primary == 5 || primary == 213 || primary == 217 || primary == 222 || primary == 226) {
    return true;
  }
  return primary >= 10 && primary <= 174 && (primary - 10) % 4 == 0;
}

bool VectStatNeedTotal(const StatisticList& list) {
  for (const AggregationStatistic& statistic : list) {
    if (SingStatNeedTotal(statistic)) return true;
  }
  return false;
}

/// Codes that, under a comparison of column means, already give the test what it reads:
/// the sum of squares, the mean, the unweighted base.
bool Contains(std::initializer_list<int> codes, int code) {
  for (int candidate : codes) {
    if (candidate == code) return true;
  }
  return false;
}

}  // namespace

CubeDispatcher::CubeDispatcher(SyntaxTableSubcommand* table) : _data(new Data) {
  QUILT_ASSERT(table != nullptr, "a dispatcher serves a parsed table");
  _data->_table = table;
}

CubeDispatcher::~CubeDispatcher() { delete _data; }

int CubeDispatcher::CreateCubes(ProcDSIterator& iterator) {
  SyntaxTableSubcommand& table = *_data->_table;
  const TableSettings& settings = table.GetTableSettings();
  bool isPairwise = settings.GetIsPairwise();
  bool weighted = table.IsDataWeighted();
  int baseWeight = SyntaxConverter::GetBaseWeightVarIndex();
  VariableComposite& composite = table;

  _data->_aggregationTable = new AggregationTable(&iterator, weighted, isPairwise, baseWeight);
  AggregationTable& aggregationTable = *_data->_aggregationTable;
  aggregationTable.SetCLabelOption(settings.GetCLabelOption());
  int cubeCount = composite.CubeCount();
  bool hasPairWise = settings.HasPairWiseTest();
  aggregationTable.SetPairWiseTest(hasPairWise);

  for (int i = 0; i < cubeCount; ++i) {
    SubTableCube& sub = *composite[i];
    AggregationCube* cube = aggregationTable.CreateCube();
    sub.SetAggregationCube(cube);
    AddCatVarsToCube(sub);
    bool needTotal = false;
    SetSortStats(sub, needTotal);
    StatisticList scaleList;
    BuildScaleStatList(sub, scaleList, hasPairWise, weighted);
    needTotal = needTotal || VectStatNeedTotal(scaleList);
    cube->CreateCubeAggregator();
    cube->SetCILevel(settings.GetCILevelValue());
    if (!scaleList.empty()) {
      cube->AddScaleStatistics(scaleList);
    } else {
      StatisticList catList;
      SyntaxVariableName* variable = BuildCatStatList(sub, catList);
      needTotal = needTotal || VectStatNeedTotal(catList);
      AggregationVariable* aggregationVariable = variable->GetAggregationVariable();
      if (sub.GetHasTotals()) {
        StatisticList totalList;
        AppendStatistics(variable->GetIndex(), variable->GetTotalStats(), totalList);
        needTotal = needTotal || VectStatNeedTotal(totalList);
        cube->AddCategoryAndTotalStatistics(catList, aggregationVariable, totalList);
      } else {
        cube->AddCategoryStatistics(catList, aggregationVariable);
      }
    }
    if (needTotal) SetInternalTotal(sub);
  }

  // The builder's preliminary trees and axis cubes come only after every cube is declared.
  _data->_quiltTable = new QuiltTable;
  _data->_quiltTable->BuildTableTreesFromSyntax(&table);
  _data->_quiltTable->CreateAxisCubes(&aggregationTable);
  return cubeCount;
}

AggregationVariable* CubeDispatcher::CreateAggregationVariable(SyntaxVariableName& variable) {
  if (variable.GetType() != kConverterMRSet) {
    return new AggregationVariable(variable.GetIndex(), variable.GetNameToken());
  }
  auto& set = static_cast<SyntaxMRVariableSet&>(variable);
  std::string name = set.GetNameToken();
  switch (set.GetMRSetType()) {
    case VariableSet::kMR_Category: {
      auto* created = new AggregationMCSet(set.GetIndexList(), name);
      created->SetUserMissingVarIndex(set.GetUserMissingVarIndex());
      return created;
    }
    case VariableSet::kMR_Dichotomy:
      // A dichotomy set without its own order lists its members as categories; the list
      // must stand before the engine object reads it.
      if (!set.GetOrderSet() && !set.GetIsExplicit()) set.SetCategoriesList();
      return new AggregationMDSet(set.GetIndexList(), name, set.GetCountedOBS(), set.GetCountedOBSSize(),
                                  set.GetUseCountedValueLabels());
  }
  QUILT_ASSERT(false, "aggrVar: a multiple-response set is a category or a dichotomy set");
  return nullptr;
}

void CubeDispatcher::AddCatVarsToCube(SubTableCube& sub) {
  AggregationCube* cube = sub.GetAggregationCube();
  AggregationVariable* extra = nullptr;
  for (int j = 0; j < sub.GetCatVarCount(); ++j) {
    SyntaxVariableName& variable = *sub.GetCatVar(j);
    int axis = variable.GetAxis();
    AggregationVariable* aggregationVariable = variable.GetAggregationVariable();
    if (aggregationVariable == nullptr) {
      aggregationVariable = CreateAggregationVariable(variable);
      aggregationVariable->SetVarLabel(variable.GetLabel());
      aggregationVariable->SetIsOrderA(variable.GetIsOrderA());
      aggregationVariable->SetIsEmptyInclude(variable.GetIsEmptyInclude());
      aggregationVariable->SetIsMissingExclude(variable.GetIsMissingExclude());
      aggregationVariable->SetIsTotalNo(variable.GetIsTotalNo());
      aggregationVariable->SetIsTotalPositionAfter(variable.GetIsTotalPositionAfter());
      aggregationVariable->SetTotalLabel(variable.GetTotalLabel());
      aggregationVariable->SetIsTotalLabelDefault(variable.GetIsTotalLabelDefault());
      aggregationVariable->SetSortKey(variable.GetSortKey());
      aggregationVariable->AddParsedCategories(&variable.GetParsedCategories());
      if (variable.GetSortVariable() != nullptr) {
        aggregationVariable->SetSortInfo(variable.GetSortStatistic(), variable.GetSortVariable()->GetIndex());
      }
      variable.SetAggregationVariable(aggregationVariable);
      _data->_aggregationVariables.push_back(aggregationVariable);
    }
    if (sub.NeedExtraDim() && sub.GetInnerColMRforTest() == &variable) extra = aggregationVariable;
    cube->AddCategoricalVariable(aggregationVariable, axis);
  }
  // A test over a multiple-response column set reads the set once more, in the last key
  // position, so that pairs of its columns can be told apart.
  if (extra != nullptr) cube->AddCategoricalVariable(extra, Codes::kDimensionExtra);
}

void CubeDispatcher::SetSortStats(SubTableCube& sub, bool& needTotal) {
  TableMetadata& metadata = _data->_aggregationTable->GetTableMetaData();
  for (int j = 0; j < sub.GetVarCount(); ++j) {
    SyntaxVariableName& variable = *sub[j];
    if (variable.GetSortKey() != Codes::kSortKeyStatistic) continue;
    AggregationVariable* aggregationVariable = variable.GetAggregationVariable();
    TableDimension* dimension = aggregationVariable != nullptr ? aggregationVariable->GetTableDimension() : nullptr;
    // Only a categorical variable of the cube has a dimension to sort; a scale variable
    // cannot carry a sort key here.
    QUILT_ASSERT(dimension != nullptr, "a variable sorted by a statistic has a dimension");
    int statistic = variable.GetSortStatistic();
    SyntaxVariableName* sortVariable = variable.GetSortVariable();
    TableDimension* sortDimension = nullptr;
    int sortType = Codes::kVariableCategorical;
    if (sortVariable != nullptr) {
      AggregationVariable* sortAggregation = sortVariable->GetAggregationVariable();
      sortDimension = sortAggregation != nullptr ? sortAggregation->GetTableDimension() : nullptr;
      sortType = sortVariable->GetVariableType();
    }
    if (sortType == Codes::kVariableScale) {
      AggregationStatistic aggregationStatistic(sortVariable->GetIndex(), statistic);
      aggregationStatistic.SetPTileCutPoint(variable.GetCutPoint());
      dimension->SetSortByScaleStats(&metadata, aggregationStatistic);
      needTotal = needTotal || SingStatNeedTotal(aggregationStatistic);
    } else {
      AggregationStatistic aggregationStatistic(statistic);
      dimension->SetSortByDimensionStats(&metadata, sortDimension, aggregationStatistic);
      needTotal = needTotal || SingStatNeedTotal(aggregationStatistic);
    }
  }
}

void CubeDispatcher::BuildScaleStatList(SubTableCube& sub, std::vector<AggregationStatistic>& list, bool hasPairWise,
                                        bool weighted) {
  for (int j = 0; j < sub.GetStatVarCount(); ++j) {
    SyntaxVariableName& scale = *sub.GetStatVar(j);
    int index = scale.GetIndex();
    const std::vector<Statistics*>& statistics = scale.GetStatistics();
    if (statistics.empty()) {
      list.emplace_back(index, Codes::kStatMean);
      if (hasPairWise) list.emplace_back(index, Codes::kStatMeanSumSquares);
      continue;
    }
    bool sumOfSquares = false;
    bool mean = false;
    bool unweightedBase = false;
    for (const Statistics* statistic : statistics) {
      int code = statistic->GetStatType();
      AggregationStatistic entry(index, code);
      if (IsPercentile(*statistic)) entry.SetPTileCutPoint(statistic->GetCutPoint());
      list.push_back(entry);
      if (!hasPairWise) continue;
      if (weighted) {
        sumOfSquares = sumOfSquares || Contains({182, 203, 231}, code);
        mean = mean || code == 179;
        unweightedBase = unweightedBase || Contains({186, 204, 232, 183, 226}, code);
      } else {
        sumOfSquares = sumOfSquares || Contains({182, 186, 203, 204, 231, 232}, code);
        mean = mean || Contains({179, 183}, code);
        unweightedBase = unweightedBase || Contains({182, 186, 203, 204, 231, 232, 179, 183}, code);
      }
    }
    // The comparison of column means reads the sum of squares and the unweighted valid
    // count of each mean; they go to the engine only, and the variable's list stays.
    if (hasPairWise && mean) {
      if (!sumOfSquares) {
        list.emplace_back(index, Codes::kStatMeanSumSquares);
        if (!weighted) unweightedBase = true;
      }
      if (!unweightedBase) list.emplace_back(index, Codes::kStatUValidN);
    }
  }
}

SyntaxVariableName* CubeDispatcher::BuildCatStatList(SubTableCube& sub, std::vector<AggregationStatistic>& list) {
  SyntaxVariableName* variable = sub.GetComputationalVariable();
  QUILT_ASSERT(variable != nullptr, "a cube without scale statistics has a computational variable");
  if (variable->GetType() == kConverterMRSet) {
    auto* set = static_cast<SyntaxMRVariableSet*>(variable);
    set->GetAggregationVariable()->GetTableDimension()->SetComputingCounts(set->GetCountDuplicates());
  }
  AppendStatistics(variable->GetIndex(), variable->GetStatistics(), list);
  return variable;
}

void CubeDispatcher::SetInternalTotal(SubTableCube& sub) {
  for (int j = 0; j < sub.GetVarCount(); ++j) {
    AggregationVariable* aggregationVariable = sub[j]->GetAggregationVariable();
    if (aggregationVariable == nullptr) continue;
    TableDimension* dimension = aggregationVariable->GetTableDimension();
    if (dimension != nullptr) dimension->SetComputingTotal();
  }
}

void CubeDispatcher::Aggregate() { _data->_aggregationTable->AddNewCase(); }

void CubeDispatcher::Finalize() { _data->_aggregationTable->CompleteCases(); }

void CubeDispatcher::Reset() { _data->_aggregationTable->ResetAggregator(); }

void CubeDispatcher::ClearDeep() {
  if (_data->_aggregationTable != nullptr) _data->_aggregationTable->GetTableMetaData().ClearDeep();
}

void CubeDispatcher::PrintDataDbg() { _data->_aggregationTable->PrintDataDbg(); }

void CubeDispatcher::AddTitleParameters(BpProcedure& procedure, BpComposite& composite, int tableNumber) const {
  if (_data->_table->HasTitle()) {
    composite.Add(BpString(_data->_table->GetTitle(), false));
  } else {
    composite.Add(BpNumber(static_cast<double>(tableNumber), procedure.Count()));
  }
}

bool CubeDispatcher::IsTableEmpty(BpProcedure& procedure, ProcedureDataSource& dataSource, int tableNumber) {
  AggregationTable& aggregationTable = *_data->_aggregationTable;
  TableMetadata& metadata = aggregationTable.GetTableMetaData();
  bool separate = dataSource.SplitsSeparate();
  unsigned splitCount = separate ? dataSource.SplitVariableCount() : 0;

  BpComposite removed(separate ? msg::kSplitVariablesRemoved
                               : msg::kVariablesRemoved,
                      true);
  if (separate) {
    removed.Sublist();
    removed.SplitList();
    removed.EndSublist();
  }
  bool removedDue = false;
  _data->_quiltTable->ClearPostComputeRequiredCat();
  removed.Sublist();
  for (int i = 0; i < metadata.NumberOfDimensions(); ++i) {
    TableDimension& dimension = *metadata.GetDimension(i);
    if (dimension.GetNumberOfCategories() == 0) {
      removed.Add(BpVariable(*dataSource.GetVariable(dimension.GetSourceVarIndices()[0]), BpVariable::kShowDefault));
      removedDue = true;
    }
    // The categories that computed categories need reach the table here, before rendering.
    if (!dimension.GetPcomputeRequiredCats().empty()) {
      _data->_quiltTable->SetPostComputeRequiredCat(dimension.GetPcomputeRequiredCats());
    }
  }
  removed.EndSublist();
  AddTitleParameters(procedure, removed, tableNumber);
  removed.Finish();

  bool hasEmptyCubes = aggregationTable.HasEmptyCubes();
  // The listwise wording speaks of scale variables: a table without any gets the plain one.
  bool listwise = metadata.GetListwise() && !metadata.GetValidCount().empty();
  BpComposite empty(splitCount != 0
                        ? (listwise ? msg::kSplitSubtablesUnspecifiedEmpty
                                    : msg::kSplitSubtablesEmpty)
                        : (listwise ? msg::kSubtablesUnspecifiedEmpty
                                    : msg::kSubtablesEmpty),
                    true);
  if (splitCount != 0) {
    empty.Sublist();
    empty.SplitList();
    empty.EndSublist();
  }
  AddTitleParameters(procedure, empty, tableNumber);
  empty.Finish();

  if (removedDue) {
    BpError(removed, kBpShowAlways, kBpLevelWarning);
  } else if (hasEmptyCubes) {
    BpError(empty, kBpShowAlways, kBpLevelWarning);
  }
  return aggregationTable.IsTableEmpty();
}

bool CubeDispatcher::IsScaleMissing(BpProcedure& procedure, ProcedureDataSource& dataSource, int tableNumber) {
  TableMetadata& metadata = _data->_aggregationTable->GetTableMetaData();
  // Groups laid out together make one table over all of them: no group to name.
  bool split = dataSource.SplitsSeparate() && dataSource.SplitVariableCount() != 0;
  BpComposite composite(split ? msg::kSplitNoVariables
                              : msg::kNoCasesForScaleVariables,
                        true);
  if (split) {
    composite.Sublist();
    composite.SplitList();
    composite.EndSublist();
  }
  bool due = false;
  const std::vector<double>& validCounts = metadata.GetValidCount();
  composite.Sublist();
  for (std::size_t i = 0; i < validCounts.size(); ++i) {
    if (validCounts[i] > 0) continue;
    int index = metadata.GetCaseReaderVarIndex(static_cast<int>(i));
    composite.Add(BpVariable(*dataSource.GetVariable(index), BpVariable::kShowDefault));
    due = true;
  }
  composite.EndSublist();
  AddTitleParameters(procedure, composite, tableNumber);
  composite.Finish();
  if (due) BpError(composite, kBpShowAlways, kBpLevelWarning);
  return due;
}

void CubeDispatcher::ReportOverflow(BpProcedure& procedure, ProcedureDataSource& dataSource,
                                    int tableNumber) {
  const std::vector<int> indices = _data->_aggregationTable->GetOverflowVarIndices();
  if (indices.empty()) return;
  BpComposite composite(msg::kStatisticsOverflow, true);
  composite.Sublist();
  for (int index : indices)
    composite.Add(BpVariable(*dataSource.GetVariable(index), BpVariable::kShowDefault));
  composite.EndSublist();
  AddTitleParameters(procedure, composite, tableNumber);
  composite.Finish();
  BpError(composite, kBpShowAlways, kBpLevelWarning);
}

void CubeDispatcher::BuildTable(BpProcedure* procedure, ProcedureDataSource* dataSource, int tableNumber,
                                bool controlPackageMode, const std::string& splitText) {
  QUILT_ASSERT(procedure != nullptr && dataSource != nullptr, "a table is built for a procedure and its data");
  // The table is built even when empty: the warnings say why it holds nothing.
  IsTableEmpty(*procedure, *dataSource, tableNumber);
  IsScaleMissing(*procedure, *dataSource, tableNumber);
  ReportOverflow(*procedure, *dataSource, tableNumber);
  TableDelivery(_data->_table, procedure, dataSource)
      .RenderTable(_data->_quiltTable, tableNumber, splitText, controlPackageMode);
  if (std::ostream* dump = TableDumpChannel::Get()) {
    *dump << "table " << tableNumber;
    if (!splitText.empty()) *dump << " split " << splitText;
    *dump << "\n";
    _data->_quiltTable->Dump(*dump);
  }
}
