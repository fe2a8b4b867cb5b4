// CubeDispatcher.h - the bridge from one parsed table to the aggregation engine and delivery
#pragma once

#include <string>
#include <vector>

class AggregationStatistic;
class AggregationVariable;
class BpComposite;
class BpProcedure;
class ProcDSIterator;
class ProcedureDataSource;
class SubTableCube;
class SyntaxTableSubcommand;
class SyntaxVariableName;

/// Stands for one TABLE subcommand during the data pass. It declares the engine's table,
/// cubes, variables and statistics once, forwards each accepted case, and at a group's end
/// reports the table's warnings and hands the table to delivery.
///
/// Calling order: CreateCubes once; per group any number of Aggregate, one Finalize, one
/// BuildTable; Reset when another group can follow; ClearDeep right before deletion.
class CubeDispatcher {
public:
  /// `table` is not owned and must outlive the dispatcher. Nothing is declared yet.
  explicit CubeDispatcher(SyntaxTableSubcommand* table);
  virtual ~CubeDispatcher();
  CubeDispatcher(const CubeDispatcher&) = delete;
  CubeDispatcher& operator=(const CubeDispatcher&) = delete;

  /// Declares the table to the engine over `iterator`; returns the number of cubes.
  int CreateCubes(ProcDSIterator& iterator);
  /// Reads the iterator's current case into every cube of the table.
  void Aggregate();
  /// Closes the data of the current split group.
  void Finalize();
  /// Empties the cubes for the next split group, keeping every declaration.
  void Reset();
  /// Releases what hangs under the table's metadata; called right before deletion.
  void ClearDeep();
  /// Reports the table's warnings, then renders and delivers it. `tableNumber` counts from 1.
  void BuildTable(BpProcedure* procedure, ProcedureDataSource* dataSource, int tableNumber,
                  bool controlPackageMode, const std::string& splitText);
  /// Writes the engine's cells to the debug channel.
  void PrintDataDbg();

private:
  /// The engine's object for a variable node or set node, not yet configured.
  AggregationVariable* CreateAggregationVariable(SyntaxVariableName& variable);
  /// Adds the cube's categorical variables in key order, creating each engine object at
  /// the node's first cube.
  void AddCatVarsToCube(SubTableCube& sub);
  /// Declares the statistic each sorted variable orders its categories by.
  void SetSortStats(SubTableCube& sub, bool& needTotal);
  /// The statistics of the cube's scale variables, with what a comparison of means reads.
  void BuildScaleStatList(SubTableCube& sub, std::vector<AggregationStatistic>& list, bool hasPairWise,
                          bool weighted);
  /// The statistics of the cube's computational variable; returns that variable.
  SyntaxVariableName* BuildCatStatList(SubTableCube& sub, std::vector<AggregationStatistic>& list);
  /// Has every dimension of the cube accumulate its total, shown or not.
  void SetInternalTotal(SubTableCube& sub);
  /// Warns of variables without categories, else of empty sub-tables; answers whether
  /// the table holds no case at all.
  bool IsTableEmpty(BpProcedure& procedure, ProcedureDataSource& dataSource, int tableNumber);
  /// Warns of scale variables without a valid case.
  bool IsScaleMissing(BpProcedure& procedure, ProcedureDataSource& dataSource, int tableNumber);
  /// Warns of scale variables whose sums or moments went beyond the range of numbers, so
  /// that a "." in their cells is explained.
  void ReportOverflow(BpProcedure& procedure, ProcedureDataSource& dataSource, int tableNumber);
  /// The table placeholder of a warning: the user's title, else the table number.
  void AddTitleParameters(BpProcedure& procedure, BpComposite& composite, int tableNumber) const;

  struct Data;
  Data* _data;
};
