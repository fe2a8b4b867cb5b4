// QuiltTableTestTreesTest.cpp - the reduced trees of the significance tests and the column letters
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "GoldenFile.h"
#include "TableBuilderTestSupport.h"
#include "host/engine/AggregationCategory.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltTable.h"

namespace {

using Node = HeaderTreeNode;

// How the delivery would call the builder: whether the data are unweighted, whether the
// tests are merged into the main table, and in which style.
struct TestCall {
  bool unweighted = true;
  bool merged = false;
  bool apa = true;
};

// Leaves that the main table's rendering found without data, by dimension (0 rows, 1
// columns, 2 layers) and leaf key ("North/Old"). Every other leaf counts as written.
struct EmptyLeaf {
  int dimension;
  std::string key;
};

std::string KeyText(const QuiltTable::CategoryKey& key) {
  std::string text;
  for (const AggregationCategory* category : key) text += (text.empty() ? "" : "/") + category->GetCatLabel();
  return text;
}

// Marks the leaves of one final tree as the rendering of the main table does before the
// test trees are built: empty where listed, written elsewhere.
void MarkLeaves(Node* tree, int dimension, const std::vector<EmptyLeaf>& empty) {
  QuiltTable::CategoryKey key;
  bool keyChanged = false;
  int emptyCount = 0;
  for (Node* leaf = QuiltTable::FirstLeaf(tree, key, keyChanged, emptyCount); leaf != nullptr;
       leaf = QuiltTable::NextLeaf(leaf, key, keyChanged, emptyCount)) {
    bool isEmpty = false;
    for (const EmptyLeaf& entry : empty) isEmpty = isEmpty || (entry.dimension == dimension && KeyText(key) == entry.key);
    leaf->SetEmpty(isEmpty);
  }
}

// no-data=R:South/Old,R:West/Young: each leaf with the letter of its dimension.
std::vector<EmptyLeaf> ParseNoData(const std::string& noData) {
  std::vector<EmptyLeaf> empty;
  for (std::size_t start = 0; start < noData.size();) {
    const std::size_t comma = std::min(noData.find(',', start), noData.size());
    const std::string leaf = noData.substr(start, comma - start);
    empty.push_back({static_cast<int>(std::string("RCL").find(leaf[0])), leaf.substr(2)});
    start = comma + 1;
  }
  return empty;
}

std::unique_ptr<BuiltTable> BuildWithTests(const std::string& command, TestCall call = {},
                                           const std::vector<EmptyLeaf>& empty = {},
                                           BuiltTable::Options options = {}) {
  std::unique_ptr<BuiltTable> built = BuiltTable::Build(command, options);
  if (!built) return nullptr;
  built->RunData();
  QuiltTable& table = built->Table();
  // Merged letters go into the main table's columns before its cells are written.
  if (call.merged && !call.apa) table.addLettersToMergedColumns(table.GetColHeaderRoot(), 0);
  if (!empty.empty()) {
    MarkLeaves(table.GetRowHeaderRoot(), 0, empty);
    MarkLeaves(table.GetColHeaderRoot(), 1, empty);
    MarkLeaves(table.GetLayerHeaderRoot(), 2, empty);
  }
  table.BuildStatTestTables(call.unweighted, call.merged, call.apa);
  return built;
}

class TestTreesGolden : public testing::TestWithParam<BuilderCase> {};

// The commands and what each dump shows are in cases/test_trees.txt.
TEST_P(TestTreesGolden, DumpMatches) {
  const BuilderCase& param = GetParam();
  TestCall call;
  call.unweighted = param.Setting("weighted") != "yes";
  call.merged = param.Setting("merged") == "yes";
  call.apa = param.Setting("style") != "simple";
  const std::vector<EmptyLeaf> empty = ParseNoData(param.Setting("no-data"));
  BuiltTable::Options options;
  options.totals = param.Setting("totals") == "yes";
  std::unique_ptr<BuiltTable> built = BuildWithTests(param.command, call, empty, options);
  ASSERT_TRUE(built);
  std::string dump = "Command: " + param.command + "\n";
  if (options.totals) dump += "With TOTAL=YES on every categorical variable\n";
  if (!empty.empty()) {
    dump += "Leaves without data:";
    for (const EmptyLeaf& leaf : empty) dump += std::string(" ") + "RCL"[leaf.dimension] + ":" + leaf.key;
    dump += "\n";
  }
  dump += "Tests built with unweighted=" + std::to_string(call.unweighted) + " merged=" + std::to_string(call.merged) +
          " apa=" + std::to_string(call.apa) + "\n";
  dump += built->Dump();
  EXPECT_TRUE(MatchesGoldenFile("tablebuilder/" + param.name + ".txt", dump));
}

INSTANTIATE_TEST_SUITE_P(QuiltTable, TestTreesGolden, testing::ValuesIn(ReadBuilderCases("test_trees.txt")),
                         [](const testing::TestParamInfo<BuilderCase>& info) { return info.param.name; });

// The names of the variables at the top of a tree, left to right.
std::string TopVariables(const Node* root) {
  std::string names;
  for (const Node* child : root->GetChildren()) {
    if (child->GetVariable() != nullptr) names += (names.empty() ? "" : " ") + child->GetVariable()->GetNameToken();
  }
  return names;
}

// The trees of every test setting: the top variables of each tree, joined by " | ", settings
// by "; ", "none" for a setting without trees.
std::string DescribeTrees(const QuiltTable& table) {
  std::string text = table.HasSigTests() ? "" : "no tests";
  for (const std::vector<Node*>& trees : table.GetSigTestTrees()) {
    text += text.empty() ? "" : "; ";
    if (trees.empty()) text += "none";
    for (std::size_t i = 0; i < trees.size(); ++i) text += (i > 0 ? " | " : "") + TopVariables(trees[i]);
  }
  return text;
}

// Whether a test has trees, and which variables they keep, depends on the statistics the
// tested variables carry, on the weighting, on the leaves without data and on the sets. Each
// row's trees (rows | columns) are worked out from the reduction rules.
TEST(QuiltTableTestTrees, TreesFollowStatisticsWeightingEmptyLayersAndSets) {
  struct Row {
    const char* command;
    bool unweighted;
    const char* noData;  // as in cases/test_trees.txt
    const char* trees;
  };
  const Row rows[] = {
      {"QUILT /TABLE region BY gender [COUNT].", true, "", "no tests"},
      {"QUILT /TABLE region BY gender [COUNT] /SIGTEST TYPE=CHISQUARE.", false, "", "region | gender"},
      {"QUILT /TABLE region BY gender [COLPCT.COUNT] /COMPARETEST TYPE=PROP.", false, "", "region | gender"},
      // Unweighted counts stand for the data only when the data are unweighted.
      {"QUILT /TABLE region BY gender [UCOUNT] /SIGTEST TYPE=CHISQUARE.", true, "", "region | gender"},
      {"QUILT /TABLE region BY gender [UCOUNT] /SIGTEST TYPE=CHISQUARE.", false, "", "none"},
      {"QUILT /TABLE region BY gender [UCOLPCT.COUNT] /COMPARETEST TYPE=PROP.", false, "", "none"},
      // Row percentages serve the chi-square (the parser refuses them for proportions).
      {"QUILT /TABLE region BY gender [ROWPCT.COUNT] /SIGTEST TYPE=CHISQUARE.", false, "", "region | gender"},
      {"QUILT /TABLE region BY gender [UROWPCT.COUNT] /SIGTEST TYPE=CHISQUARE.", true, "", "region | gender"},
      {"QUILT /TABLE region BY gender [UROWPCT.COUNT] /SIGTEST TYPE=CHISQUARE.", false, "", "none"},
      // A means test needs a mean: UMEAN only on unweighted data.
      {"QUILT /TABLE region > score [UMEAN] BY gender /COMPARETEST TYPE=MEAN.", true, "", "region | gender"},
      {"QUILT /TABLE region > score [UMEAN] BY gender /COMPARETEST TYPE=MEAN.", false, "", "none"},
      // A layer tree left with nothing (no data in any layer) takes the whole test with it.
      {"QUILT /TABLE region BY gender [COUNT] BY agegrp /SIGTEST TYPE=CHISQUARE.", true,
       "L:Young,L:Middle,L:Old", "none"},
      // A multiple-response set innermost in its dimension leaves a test that excludes sets;
      // an outer one stays, since its categories only split the table.
      {"QUILT /TABLE region + $media BY gender [COUNT] /SIGTEST TYPE=CHISQUARE INCLUDEMRSETS=YES.", true, "",
       "region $media | gender"},
      {"QUILT /TABLE region + $media BY gender [COUNT] /SIGTEST TYPE=CHISQUARE INCLUDEMRSETS=NO.", true, "",
       "region | gender"},
      {"QUILT /TABLE $media > agegrp BY gender [COUNT] /SIGTEST TYPE=CHISQUARE INCLUDEMRSETS=NO.", true, "",
       "$media | gender"},
      {"QUILT /TABLE region BY gender + $media [COUNT] /COMPARETEST TYPE=PROP INCLUDEMRSETS=NO.", true, "",
       "region | gender"},
      {"QUILT /TABLE region BY gender + $media [COUNT] /COMPARETEST TYPE=PROP INCLUDEMRSETS=YES.", true, "",
       "region | gender $media"},
      // In the means rows a set with a scale variable right below its categories (height 2)
      // is innermost; one with another variable between them (height 4) is not.
      {"QUILT /TABLE region > score [MEAN] + $media > score [MEAN] BY gender /COMPARETEST TYPE=MEAN "
       "INCLUDEMRSETS=NO.",
       true, "", "region | gender"},
      {"QUILT /TABLE region > score [MEAN] + $media > score [MEAN] BY gender /COMPARETEST TYPE=MEAN "
       "INCLUDEMRSETS=YES.",
       true, "", "region $media | gender"},
      {"QUILT /TABLE $media > region > score [MEAN] BY gender /COMPARETEST TYPE=MEAN INCLUDEMRSETS=NO.", true, "",
       "$media | gender"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.command) + (row.unweighted ? " unweighted" : " weighted"));
    TestCall call;
    call.unweighted = row.unweighted;
    std::unique_ptr<BuiltTable> built = BuildWithTests(row.command, call, ParseNoData(row.noData));
    ASSERT_TRUE(built);
    EXPECT_EQ(DescribeTrees(built->Table()), row.trees);
  }
}

// Each test setting gets its own vector, in order, so that settings and trees pair up; a
// second call replaces the trees of the first instead of adding to them.
TEST(QuiltTableTestTrees, TreesPairWithTheSettingsAndAreRebuiltEachTime) {
  std::unique_ptr<BuiltTable> built = BuildWithTests(
      "QUILT /TABLE region > score [MEAN] + agegrp BY gender /SIGTEST TYPE=CHISQUARE /COMPARETEST TYPE=PROP "
      "/COMPARETEST TYPE=MEAN.");
  ASSERT_TRUE(built);
  QuiltTable& table = built->Table();
  ASSERT_EQ(table.GetSigTestSettings().size(), 3u);
  EXPECT_EQ(DescribeTrees(table), "agegrp | gender; agegrp | gender; region | gender");
  // The chi-square keeps agegrp alone: below each region stands only score. The means test
  // keeps the other branch, score under each of the three regions.
  const std::vector<std::vector<Node*>>& trees = table.GetSigTestTrees();
  EXPECT_EQ(LeafLabels(trees[0][0]), (std::vector<std::string>{"Chi-square", "df", "Sig."}));
  EXPECT_EQ(trees[0][0]->GetChildren()[0]->GetVariable()->GetNameToken(), "agegrp");
  EXPECT_EQ(LeafLabels(trees[2][0]), std::vector<std::string>(3, "ScaleVariable"));
  table.BuildStatTestTables(/*unweightedData=*/true, /*merged=*/false, /*apa=*/true);
  EXPECT_EQ(DescribeTrees(table), "agegrp | gender; agegrp | gender; region | gender");
  EXPECT_EQ(LeafLabels(table.GetSigTestTrees()[0][0]), (std::vector<std::string>{"Chi-square", "df", "Sig."}));
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
      // The table shows a hidden subtotal in place of the categories it sums, which are not
      // in the list: it is tested as one category.
      {"without subtotals plain categories and hidden subtotals stay",
       CategoryList{{kValue, "1"}, {kValue, "2"}, {kSubtotal, "S12"}, {kHidden, "H"}, {kComputed, "P"},
                    {kTotal, "T"}},
       false, true, "1 2 H"},
      {"after: a subtotal replaces what precedes it, later categories stay",
       CategoryList{{kValue, "1"}, {kValue, "2"}, {kSubtotal, "S12"}, {kValue, "3"}, {kTotal, "T"}}, true, true,
       "S12 3"},
      {"before: the mirror image",
       CategoryList{{kTotal, "T"}, {kValue, "0"}, {kSubtotal, "S12"}, {kValue, "1"}, {kValue, "2"}}, true, false,
       "0 S12"},
      {"with subtotals a hidden subtotal stays, and so does a category it does not sum",
       CategoryList{{kValue, "1"}, {kSubtotal, "S1"}, {kValue, "X"}, {kHidden, "H23"}, {kValue, "4"},
                    {kComputed, "P"}},
       true, true, "S1 X H23 4"},
      {"before: the same in mirror image",
       CategoryList{{kValue, "0"}, {kHidden, "H12"}, {kValue, "X"}, {kSubtotal, "S3"}, {kValue, "3"}}, true, false,
       "0 H12 X S3"},
  };
  for (const Row& row : rows) {
    std::vector<Node*> out;
    const int count = QuiltTable::ProcessSubtotalCategs(row.categories.list, out, row.useSubtotals, row.positionAfter);
    EXPECT_EQ(Labels(out), row.expected) << row.name;
    EXPECT_EQ(count, static_cast<int>(out.size())) << row.name;
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
