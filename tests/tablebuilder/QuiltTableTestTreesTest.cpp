// QuiltTableTestTreesTest.cpp - the reduced trees of the significance tests and the column letters
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "GoldenFile.h"
#include "TableBuilderTestSupport.h"
#include "host/engine/AggregationCategory.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltTable.h"

namespace {

using Node = HeaderTreeNode;

// The leaf labels of a tree, left to right: category labels, fixed texts and letters.
void CollectLeafLabels(const Node* node, std::vector<std::string>& out) {
  if (node->IsLeaf()) {
    if (node->GetCategory() != nullptr) {
      out.push_back(node->GetCategory()->GetCatLabel());
    } else if (node->GetType() == Node::kHNodeTypeLabel || node->GetType() == Node::kHNodeTypeLetter) {
      out.push_back(node->GetLabel());
    } else {
      out.push_back(Node::TypeName(node->GetType()));
    }
    return;
  }
  for (const Node* child : node->GetChildren()) CollectLeafLabels(child, out);
}

std::vector<std::string> LeafLabels(const Node* node) {
  std::vector<std::string> out;
  CollectLeafLabels(node, out);
  return out;
}

std::unique_ptr<BuiltTable> BuildWithTests(const std::string& command, bool merged = false, bool apa = true) {
  std::unique_ptr<BuiltTable> built = BuiltTable::Build(command);
  if (!built) return nullptr;
  built->RunData();
  built->Table().BuildStatTestTables(/*unweightedData=*/true, merged, apa);
  return built;
}

struct GoldenCase {
  const char* name;
  const char* command;
};

class TestTreesGolden : public testing::TestWithParam<GoldenCase> {};

TEST_P(TestTreesGolden, DumpMatches) {
  std::unique_ptr<BuiltTable> built = BuildWithTests(GetParam().command);
  ASSERT_TRUE(built);
  const std::string dump = std::string("Command: ") + GetParam().command + "\n" + built->Dump();
  EXPECT_TRUE(MatchesGoldenFile(std::string("tablebuilder/") + GetParam().name + ".txt", dump));
}

INSTANTIATE_TEST_SUITE_P(
    QuiltTable, TestTreesGolden,
    testing::Values(GoldenCase{"test_chisquare", "QUILT /TABLE region > agegrp BY gender [COUNT] /SIGTEST TYPE=CHISQUARE."},
                    GoldenCase{"test_proportions", "QUILT /TABLE region BY gender > agegrp [COUNT] /COMPARETEST TYPE=PROP."},
                    GoldenCase{"test_means", "QUILT /TABLE region > score [MEAN] BY gender /COMPARETEST TYPE=MEAN."}),
    [](const testing::TestParamInfo<GoldenCase>& info) { return info.param.name; });

TEST(QuiltTableTestTrees, ChiSquareRowsEndInTheTestLabelsBelowTheInnerVariable) {
  std::unique_ptr<BuiltTable> built =
      BuildWithTests("QUILT /TABLE region > agegrp BY gender [COUNT] /SIGTEST TYPE=CHISQUARE.");
  ASSERT_TRUE(built);
  const std::vector<std::vector<Node*>>& trees = built->Table().GetSigTestTrees();
  ASSERT_EQ(trees.size(), 1u);
  ASSERT_EQ(trees[0].size(), 2u);  // rows and columns; the layer tree is a bare root
  // One entry per outer category, the inner variable a leaf with the three texts below it.
  std::vector<std::string> expected;
  for (int region = 0; region < 3; ++region) expected.insert(expected.end(), {"Chi-square", "df", "Sig."});
  EXPECT_EQ(LeafLabels(trees[0][0]), expected);
  const Node* region = trees[0][0]->GetChildren()[0];
  ASSERT_EQ(region->GetNChildren(), 3);
  EXPECT_EQ(region->GetChildren()[1]->GetCategory()->GetCatLabel(), "South");
  EXPECT_EQ(LeafLabels(trees[0][1]), (std::vector<std::string>{"CatVariable"}));
}

TEST(QuiltTableTestTrees, SeparateProportionsTablesLetterEachLowestColumnGroup) {
  std::unique_ptr<BuiltTable> built =
      BuildWithTests("QUILT /TABLE region BY gender > agegrp [COUNT] /COMPARETEST TYPE=PROP.");
  ASSERT_TRUE(built);
  const std::vector<std::vector<Node*>>& trees = built->Table().GetSigTestTrees();
  ASSERT_EQ(trees.size(), 1u);
  ASSERT_EQ(trees[0].size(), 2u);
  // Three age groups under each gender, lettered afresh within each gender.
  EXPECT_EQ(LeafLabels(trees[0][1]), (std::vector<std::string>{"(A)", "(B)", "(C)", "(A)", "(B)", "(C)"}));
}

TEST(QuiltTableTestTrees, MeansTestKeepsTheBranchesWithAMean) {
  std::unique_ptr<BuiltTable> built =
      BuildWithTests("QUILT /TABLE region > score [MEAN] + agegrp BY gender /COMPARETEST TYPE=MEAN.");
  ASSERT_TRUE(built);
  const std::vector<std::vector<Node*>>& trees = built->Table().GetSigTestTrees();
  ASSERT_EQ(trees.size(), 1u);
  ASSERT_EQ(trees[0].size(), 2u);
  // The stacked agegrp has no scale variable and drops out of the row tree.
  EXPECT_EQ(LeafLabels(trees[0][0]), std::vector<std::string>(3, "ScaleVariable"));  // one per region
  EXPECT_EQ(LeafLabels(trees[0][1]), (std::vector<std::string>{"(A)", "(B)"}));
}

TEST(QuiltTableTestTrees, ATableWithoutTestsGetsNoTrees) {
  std::unique_ptr<BuiltTable> built = BuildWithTests("QUILT /TABLE region BY gender [COUNT].");
  ASSERT_TRUE(built);
  EXPECT_FALSE(built->Table().HasSigTests());
  EXPECT_TRUE(built->Table().GetSigTestTrees().empty());
}

// Free-standing category nodes of the given types, with labels, for the selection rules.
struct CategoryList {
  std::vector<std::unique_ptr<AggregationCategory>> categories;
  std::vector<std::unique_ptr<Node>> nodes;
  std::vector<Node*> list;

  CategoryList(std::initializer_list<std::pair<int, const char*>> items) {
    for (const auto& [type, label] : items) {
      categories.push_back(std::make_unique<AggregationCategory>(type, 0, 0));
      categories.back()->SetCatLabel(label, true);
      nodes.emplace_back(Node::Create(categories.back().get()));
      list.push_back(nodes.back().get());
    }
  }
};

std::string Labels(const std::vector<Node*>& nodes) {
  std::string text;
  for (const Node* node : nodes) text += (text.empty() ? "" : " ") + node->GetCategory()->GetCatLabel();
  return text;
}

TEST(QuiltTableTestTrees, SubtotalSelectionReplacesTheCategoriesItSums) {
  constexpr int kValue = AggregationCategory::kValue;
  constexpr int kSubtotal = AggregationCategory::kSubtotal;
  constexpr int kHidden = AggregationCategory::kHSubtotal;
  constexpr int kTotal = AggregationCategory::kTotal;
  constexpr int kComputed = AggregationCategory::kPcompute;
  struct Row {
    const char* name;
    CategoryList categories;
    bool useSubtotals;
    bool positionAfter;
    const char* expected;
  };
  const Row rows[] = {
      {"without subtotals only plain categories and hidden subtotals stay",
       CategoryList{{kValue, "1"}, {kValue, "2"}, {kSubtotal, "S12"}, {kHidden, "H"}, {kComputed, "P"},
                    {kTotal, "T"}},
       false, true, "1 2 H"},
      {"after: a subtotal replaces what precedes it, later categories stay",
       CategoryList{{kValue, "1"}, {kValue, "2"}, {kSubtotal, "S12"}, {kValue, "3"}, {kTotal, "T"}}, true, true,
       "S12 3"},
      {"before: the mirror image",
       CategoryList{{kTotal, "T"}, {kValue, "0"}, {kSubtotal, "S12"}, {kValue, "1"}, {kValue, "2"}}, true, false,
       "0 S12"},
      {"a hidden subtotal stands for categories that are not listed",
       CategoryList{{kValue, "1"}, {kSubtotal, "S1"}, {kHidden, "H23"}, {kValue, "4"}, {kComputed, "P"}}, true,
       true, "S1 H23 4"},
  };
  for (const Row& row : rows) {
    std::vector<Node*> out;
    const int count = QuiltTable::ProcessSubtotalCategs(row.categories.list, out, row.useSubtotals, row.positionAfter);
    EXPECT_EQ(Labels(out), row.expected) << row.name;
    EXPECT_EQ(count, static_cast<int>(out.size())) << row.name;
  }
}

TEST(QuiltTableTestTrees, LettersWidenBeyondTwentySixColumns) {
  struct Row {
    int columns;
    int index;
    const char* expected;
  };
  // Base 26 with A as 0, the width of the largest index, always in brackets here.
  const Row rows[] = {{3, 0, "(A)"}, {3, 2, "(C)"}, {26, 25, "(Z)"}, {27, 0, "(AA)"}, {27, 26, "(BA)"}};
  for (const Row& row : rows) {
    const int columns = row.columns;
    SCOPED_TRACE(columns);
    std::unique_ptr<Node> root(Node::CreateRoot());
    std::vector<std::unique_ptr<AggregationCategory>> owned;
    for (int i = 0; i < columns; ++i) {
      owned.push_back(std::make_unique<AggregationCategory>(AggregationCategory::kValue, i, 0));
      root->AddChild(Node::Create(owned.back().get()), false);
    }
    QuiltTable table;
    table.AddLettersToColumns(root.get());
    const std::vector<std::string> letters = LeafLabels(root.get());
    ASSERT_EQ(letters.size(), static_cast<size_t>(columns));
    EXPECT_EQ(letters[static_cast<size_t>(row.index)], row.expected);
  }
}

TEST(QuiltTableTestTrees, MergedLettersSkipTotalsAndComputedCategories) {
  CategoryList categories{{AggregationCategory::kValue, "1"},
                          {AggregationCategory::kTotal, "T"},
                          {AggregationCategory::kPcompute, "P"},
                          {AggregationCategory::kValue, "2"}};
  std::unique_ptr<Node> root(Node::CreateRoot());
  for (std::unique_ptr<Node>& node : categories.nodes) root->AddChild(node.release(), false);
  QuiltTable table;
  EXPECT_TRUE(table.addLettersToMergedColumns(root.get(), 0));
  EXPECT_FALSE(table.addLettersToMergedColumns(nullptr, 0));
  const std::vector<Node*>& children = root->GetChildren();
  // The letter is counted over the four siblings, but only the value categories take one.
  ASSERT_EQ(children[0]->GetNChildren(), 1);
  EXPECT_EQ(children[0]->GetChildren()[0]->GetLabel(), "(A)");
  EXPECT_EQ(children[0]->GetChildren()[0]->getProperties(), "(A)");
  EXPECT_TRUE(children[1]->IsLeaf());
  EXPECT_TRUE(children[2]->IsLeaf());
  EXPECT_EQ(children[3]->GetChildren()[0]->GetLabel(), "(B)");
}

}  // namespace
