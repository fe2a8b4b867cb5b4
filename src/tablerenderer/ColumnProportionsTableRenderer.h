// ColumnProportionsTableRenderer.h - "Comparisons of Proportions", and the control package's table of
// sentences
#pragma once

#include <memory>

#include "tablerenderer/ColumnTestTableRenderer.h"

struct ColumnProportionsResult;

/// COMPARETEST TYPE=PROP. For each tested row variable and column variable, compares in
/// each row category the column proportions pairwise and writes into each cell the letters
/// of the columns whose proportion is significantly smaller; merged, the letters or APA
/// subscripts become markers of the main table's count cells.
///
/// In the control package mode a table of a 0/1 variable in the rows and at most five
/// columns of one column variable, not merged, is shown instead as sentences, one for each
/// pair of columns, saying whether the response rates differ.
class ColumnProportionsTableRenderer : public ColumnTestTableRenderer {
 public:
  ColumnProportionsTableRenderer(BpProcedure* procedure, BpHeading heading, ProcedureDataSource* dataSource,
                                 QuiltTable* table);
  ~ColumnProportionsTableRenderer() override;

  /// Asks for the table of sentences where the table qualifies.
  void showControlPackageTest();

 protected:
  const char* TitleKey() const override;
  /// COUNT, UCOUNT, COLPCT.COUNT and UCOLPCT.COUNT.
  bool IsTestedStatistic(int code) const override;
  void RenderTestTable(const std::vector<CubeAggregator*>& cubes, const SigTestSettings& settings,
                       bool captionFree) override;
  /// Replaces the table by the sentences when it qualifies.
  void FinishTable() override;

 private:
  struct ControlData;

  /// One layer: every tested row variable against every tested column variable.
  void RenderColumnProp2DTable(const std::vector<CubeAggregator*>& cubes, const std::vector<Family>& rows,
                               const std::vector<Family>& columns, const QuiltTable::CategoryKey& layerKey,
                               int layerIndex, const SigTestSettings& settings, bool& nonIntegerCounts,
                               bool& overlapProblem);
  /// Writes the result of one row variable against one column variable.
  void WriteBlock(ColumnProportionsResult& result, const Family& rows, const Family& columns,
                  const SigTestSettings& settings);
  /// Whether the table is one the sentences can describe: not merged, no layers, one 0/1
  /// row variable with its two categories, one column variable with at most five columns.
  bool IsControlPackageCandidate() const;
  void renderControlPackageTestTable();

  std::unique_ptr<ControlData> _control;
};
