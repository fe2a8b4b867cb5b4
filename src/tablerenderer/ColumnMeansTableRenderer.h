// ColumnMeansTableRenderer.h - "Comparisons of Means": the pairwise comparison of column means of each row
#pragma once

#include "tablerenderer/ColumnTestTableRenderer.h"

struct ColumnMeansResult;

/// COMPARETEST TYPE=MEAN. For each row leaf that shows the mean of a scale variable and each
/// tested column variable, compares the means of the variable's columns pairwise and writes
/// into each column the letters of the columns whose mean is significantly smaller; merged,
/// the letters or APA subscripts become markers of the main table's mean cells.
class ColumnMeansTableRenderer : public ColumnTestTableRenderer {
 public:
  using ColumnTestTableRenderer::ColumnTestTableRenderer;

 protected:
  const char* TitleKey() const override;
  /// MEAN and UMEAN.
  bool IsTestedStatistic(int code) const override;
  void RenderTestTable(const std::vector<CubeAggregator*>& cubes, const SigTestSettings& settings,
                       bool captionFree) override;

 private:
  /// The facts behind the notes, gathered over all rows and layers.
  struct Flags {
    bool numericalProblem = false;
    bool zeroPooled = false;
    bool nonIntegerCounts = false;
    bool overlapProblem = false;
  };

  /// One layer: every row leaf against every tested column variable of `columns`.
  void RenderColumnMean2DTable(const std::vector<CubeAggregator*>& cubes, const std::vector<Family>& columns,
                               const QuiltTable::CategoryKey& layerKey, int layerIndex,
                               const SigTestSettings& settings, Flags& flags);
  /// Writes the result of one row of one column variable.
  void WriteRow(ColumnMeansResult& result, const Family& columns, const SigTestSettings& settings);
};
