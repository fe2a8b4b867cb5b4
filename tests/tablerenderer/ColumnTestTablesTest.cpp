// ColumnTestTablesTest.cpp - "Comparisons of Means" and "Comparisons of Proportions", on their own and
// merged, against goldens and scipy's numbers
//
// The commands, their key cells and notes are in cases/comparisons.txt; the letters and p-values
// in its comments come from reference/column_tests_reference.py (scipy.stats.t,
// statsmodels' proportions_ztest and multipletests on the bundled survey).
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "DeliveredTablesSupport.h"
#include "host/output/BpCellText.h"
#include "host/output/BpComposite.h"
#include "tablerenderer/ColumnTestTableRenderer.h"

namespace {

QUILT_CASE_FILE_TESTS(ComparisonTables, BundledSurvey, "comparisons.txt", "tablerenderer/comparisons")

TEST(ComparisonTables, LongCellTextsGoInPiecesOf255Bytes) {
  struct Row {
    std::size_t length;
    std::vector<std::size_t> pieces;  // empty: one plain string
  };
  const Row rows[] = {{255, {}}, {256, {255, 1}}, {511, {255, 255, 1}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.length);
    const std::string text(row.length, 'x');
    std::unique_ptr<BpCellText> cell = ColumnTestTableRenderer::DispatchLongString(text);
    EXPECT_EQ(cell->GetText(), text);
    const auto* composite = dynamic_cast<const BpComposite*>(cell.get());
    ASSERT_EQ(composite != nullptr, !row.pieces.empty());
    if (composite == nullptr) continue;
    std::string joined;
    for (std::size_t piece : row.pieces) joined += (joined.empty() ? "" : ", ") + std::string(piece, 'x');
    EXPECT_EQ(composite->GetArguments(), std::vector<std::string>{joined});
  }
}

}  // namespace
