// QuiltTableTest.cpp - preliminary and final trees of whole commands, slots, axis cubes and cell keys
#include "tablebuilder/QuiltTable.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "GoldenFile.h"
#include "TableBuilderTestSupport.h"
#include "host/engine/AggregationCategory.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/StatTreeNode.h"

namespace {

using Node = HeaderTreeNode;
using Key = QuiltTable::CategoryKey;

// Every statistic node of a tree, in leaf order.
void CollectStatistics(const Node* node, std::vector<const StatTreeNode*>& out) {
  if (node->GetType() == Node::kHNodeTypeStatistic) out.push_back(static_cast<const StatTreeNode*>(node));
  for (const Node* child : node->GetChildren()) CollectStatistics(child, out);
}

class QuiltTableGolden : public testing::TestWithParam<BuilderCase> {};

// The commands and what each dump shows are in cases/tables.txt.
TEST_P(QuiltTableGolden, DumpMatches) {
  const BuilderCase& param = GetParam();
  BuiltTable::Options options;
  if (!param.Setting("empty").empty()) options.emptyInclude = param.Setting("empty") == "include";
  options.totals = param.Setting("totals") == "yes";
  std::unique_ptr<BuiltTable> built = BuiltTable::Build(param.command, options);
  ASSERT_TRUE(built);
  built->RunData();
  const std::string dump = "Command: " + param.command + "\n" + built->Dump();
  EXPECT_TRUE(MatchesGoldenFile("tablebuilder/" + param.name + ".txt", dump));
}

INSTANTIATE_TEST_SUITE_P(QuiltTable, QuiltTableGolden, testing::ValuesIn(ReadBuilderCases("tables.txt")),
                         [](const testing::TestParamInfo<BuilderCase>& info) { return info.param.name; });

struct SlotCase {
  const char* command;
  int rows;
  int columns;
  int layers;
};

TEST(QuiltTable, SlotCountsFollowTheStackedTerms) {
  const SlotCase cases[] = {
      {"QUILT /TABLE region.", 1, 1, 1},
      {"QUILT /TABLE region + agegrp.", 2, 1, 1},
      {"QUILT /TABLE (region + agegrp) > gender.", 2, 1, 1},
      {"QUILT /TABLE region + agegrp BY gender + region BY agegrp + gender.", 2, 2, 2},
      {"QUILT /TABLE BY region + gender.", 1, 2, 1},
      // Two scale summands share one sub-table; a categorical one after them opens another.
      {"QUILT /TABLE score + income.", 1, 1, 1},
      {"QUILT /TABLE score + income + region.", 2, 1, 1},
  };
  for (const SlotCase& slotCase : cases) {
    SCOPED_TRACE(slotCase.command);
    std::unique_ptr<BuiltTable> built = BuiltTable::Build(slotCase.command);
    ASSERT_TRUE(built);
    QuiltTable& table = built->Table();
    EXPECT_EQ(table.GetNRows(), slotCase.rows);
    EXPECT_EQ(table.GetNColumns(), slotCase.columns);
    EXPECT_EQ(table.GetNLayers(), slotCase.layers);
    // Layers vary fastest: the running number of (r, c, l) is (r * columns + c) * layers + l.
    const int last = slotCase.rows * slotCase.columns * slotCase.layers - 1;
    EXPECT_EQ(table.GetCubeIndex(slotCase.rows - 1, slotCase.columns - 1, slotCase.layers - 1), last);
  }
}

TEST(QuiltTable, GetCubeIndexOfTwoSlotsSkipsTheDimensionWithOneSlot) {
  std::unique_ptr<BuiltTable> built = BuiltTable::Build("QUILT /TABLE region + agegrp BY gender BY agegrp + gender.");
  ASSERT_TRUE(built);
  const QuiltTable& table = built->Table();
  ASSERT_EQ(table.GetNColumns(), 1);
  // Rows and layers, both of two slots: (r, l) is r * 2 + l.
  EXPECT_EQ(table.GetCubeIndex(1, 0), 2);
  EXPECT_EQ(table.GetCubeIndex(1, 1), 3);
  EXPECT_EQ(table.GetCubeIndex(1, 0, 1), 3);
}

TEST(QuiltTable, HiddenStatisticLabelsKeepTheStatisticsOutOfEveryDimension) {
  std::unique_ptr<BuiltTable> built = BuiltTable::Build("QUILT /TABLE region [COUNT] BY gender /SLABELS VISIBLE=NO.");
  ASSERT_TRUE(built);
  QuiltTable& table = built->Table();
  EXPECT_FALSE(table.AreStatsVisible());
  ASSERT_NE(table.GetStatTree(), nullptr);
  std::vector<const StatTreeNode*> inDimensions;
  for (const Node* root : {table.GetPrelimRowRoot(), table.GetPrelimColRoot(), table.GetPrelimLayerRoot()}) {
    CollectStatistics(root, inDimensions);
  }
  EXPECT_TRUE(inDimensions.empty());
  std::vector<const StatTreeNode*> hidden;
  CollectStatistics(table.GetStatTree(), hidden);
  ASSERT_EQ(hidden.size(), 1u);
  EXPECT_TRUE(hidden[0]->IsHidden());
}

struct AxisCubeCase {
  const char* command;
  bool emptyInclude;
  int expectedResult;  // the sum over the three dimensions
  bool rowFlag;
};

TEST(QuiltTable, AxisCubesAreMadeForNestingsWithoutEmptyCategories) {
  const AxisCubeCase cases[] = {
      // Two levels below the outermost: a cube of region x agegrp and one of all three.
      {"QUILT /TABLE region > agegrp > gender.", false, 2, true},
      // With EMPTY=INCLUDE from the outermost variable on, no cube, and -1 per nesting.
      {"QUILT /TABLE region > agegrp > gender.", true, -1, false},
      // No nesting, no cube.
      {"QUILT /TABLE region + agegrp BY gender.", false, 0, false},
      // Each summand of a nested stack has a slot and a cube of its own.
      {"QUILT /TABLE (region + agegrp) > gender.", false, 2, true},
      {"QUILT /TABLE region BY gender > agegrp.", false, 1, false},
  };
  for (const AxisCubeCase& axisCase : cases) {
    SCOPED_TRACE(axisCase.command);
    BuiltTable::Options options;
    options.emptyInclude = axisCase.emptyInclude;
    std::unique_ptr<BuiltTable> built = BuiltTable::Build(axisCase.command, options);
    ASSERT_TRUE(built);
    EXPECT_EQ(built->GetAxisCubeResult(), axisCase.expectedResult);
    EXPECT_EQ(built->Table().HasRowAxisCubes(), axisCase.rowFlag);
  }
}

TEST(QuiltTable, AStackWithNoDataAnywhereStillGetsAHeader) {
  BuiltTable::Options options;
  options.emptyInclude = false;
  std::unique_ptr<BuiltTable> built = BuiltTable::Build("QUILT /TABLE region > agegrp + late > gender [COUNT].", options);
  ASSERT_TRUE(built);
  built->RunData();
  // late's only case has no gender: its branch shows the label of an empty stack, once for
  // the variable and once for what was nested below it.
  const Node* late = built->Table().GetRowHeaderRoot()->GetChildren()[1];
  ASSERT_EQ(late->GetNChildren(), 1);
  const Node* label = late->GetChildren()[0];
  EXPECT_EQ(label->GetCategory()->GetCatLabel(), "No valid categories");
  ASSERT_EQ(label->GetNChildren(), 1);
  const Node* gender = label->GetChildren()[0];
  EXPECT_EQ(gender->GetVariable()->GetNameToken(), "gender");
  ASSERT_EQ(gender->GetNChildren(), 1);
  EXPECT_EQ(gender->GetChildren()[0]->GetCategory(), label->GetCategory());
  // The label is the table's own and outlives the trees of a group.
  const AggregationCategory* noValid = label->GetCategory();
  built->Table().BuildCompleteTable();
  EXPECT_EQ(built->Table().GetRowHeaderRoot()->GetChildren()[1]->GetChildren()[0]->GetCategory(), noValid);
}

// That the final trees are rebuilt for each split group, not added to, is pinned by the
// goldens of split groups (tests/golden/tablerenderer/delivered/split-*, showcase-waves).
// Combine2CellKeys and Combine3CellKeys, which put a category carried by CLABELS back in its
// place, are pinned by the delivered goldens of every CLABELS option
// (tests/golden/tablerenderer/delivered/clabels-*): a misplaced category sends the cells to
// other places, and so is GetLabelCarry, which says where each option carries a category.
TEST(QuiltTable, LeafWalkOverATreeWithoutCategoriesKeepsAnEmptyKey) {
  std::unique_ptr<BuiltTable> built = BuiltTable::Build("QUILT /TABLE score [MEAN SUM VALIDN].");
  ASSERT_TRUE(built);
  built->RunData();
  Key key;
  bool keyChanged = false;
  int emptyCount = 0;
  int leaves = 0;
  for (Node* leaf = QuiltTable::FirstLeaf(built->Table().GetColHeaderRoot(), key, keyChanged, emptyCount);
       leaf != nullptr; leaf = QuiltTable::NextLeaf(leaf, key, keyChanged, emptyCount)) {
    ++leaves;
    EXPECT_TRUE(key.empty());
    EXPECT_EQ(emptyCount, 1);  // the statistics of a bare dimension show without data
  }
  EXPECT_EQ(leaves, 3);
  EXPECT_FALSE(keyChanged);
}

}  // namespace
