// QuiltDriver.h - sequences one run: parse, declare the tables, one pass over the cases, deliver
#pragma once

#include <string>
#include <vector>

#include "parser/SyntaxReader.h"

class BpProcedure;
class CubeDispatcher;
class ProcDSIterator;
class ProcedureDataSource;
class TARN_TokenSequence;

/// Runs one command between the entry and the rest of the procedure. It owns the parser,
/// turns each parsed table into a CubeDispatcher, and makes the single pass over the active
/// data: the weight test, the split groups, and delivery at each group end.
///
/// Calling order: ParseSyntax, then (only when it returned 0) CreateCubeDispatchers, then
/// AggregateAndBuildTables. Plain class, not polymorphic.
class QuiltDriver {
public:
  /// Attaches the data source to the parser; no weight variable is tested yet.
  explicit QuiltDriver(ProcedureDataSource* dataSource);
  ~QuiltDriver();
  QuiltDriver(const QuiltDriver&) = delete;
  QuiltDriver& operator=(const QuiltDriver&) = delete;

  /// Parses the whole command. A parse error has been reported at fatal level when the
  /// result is 1; 0 means the tables are ready to be declared.
  int ParseSyntax(TARN_TokenSequence* tokens);

  /// Makes one dispatcher per parsed table, in TABLE order, and declares each table to the
  /// aggregation engine. `iterator` is not owned. Always returns 0.
  int CreateCubeDispatchers(ProcDSIterator* iterator);

  /// The text that names the split group the iterator stands in: "label: value, ...".
  /// Empty without split variables or when the groups are not delivered separately.
  std::string getSplitText();

  /// The one pass over the cases, with delivery of every table at each group end that is
  /// delivered separately and at the end of the data. Always returns 0.
  int AggregateAndBuildTables(BpProcedure* procedure, bool controlPackageMode);

  /// The dictionary index of the case weight the driver tests; -1 without one.
  int GetBaseWeightVarIndex() const { return _baseWeightVarIndex; }

private:
  /// One read: the next case, and its base weight when a base weight variable is set.
  int ReadCase(double& weight);
  void FinalizeAndBuildTables(BpProcedure& procedure, bool controlPackageMode, const std::string& splitText);

  SyntaxReader _reader;
  ProcedureDataSource* _dataSource;  // not owned
  ProcDSIterator* _activeIterator = nullptr;  // not owned; null until CreateCubeDispatchers
  std::vector<CubeDispatcher*> _cubeDispatchers;  // owned, one per table in TABLE order
  int _baseWeightVarIndex = -1;  // dictionary index of the tested case weight; -1 for none
};
