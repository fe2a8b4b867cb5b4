// QuiltTableTestTreesTest.cpp - the reduced trees of the significance tests and the column letters
#include <gtest/gtest.h>

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
  const char* key;
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

struct GoldenCase {
  const char* name;
  const char* command;
  TestCall call = {};
  std::vector<EmptyLeaf> empty = {};
  BuiltTable::Options options = {};
};

class TestTreesGolden : public testing::TestWithParam<GoldenCase> {};

// Each dump ends in the trees of every test. They were checked node by node against the
// reduction rules by hand; the comment of each case says what to look for.
TEST_P(TestTreesGolden, DumpMatches) {
  const GoldenCase& param = GetParam();
  std::unique_ptr<BuiltTable> built = BuildWithTests(param.command, param.call, param.empty, param.options);
  ASSERT_TRUE(built);
  std::string dump = std::string("Command: ") + param.command + "\n";
  if (param.options.totals) dump += "With TOTAL=YES on every categorical variable\n";
  if (!param.empty.empty()) {
    dump += "Leaves without data:";
    for (const EmptyLeaf& leaf : param.empty) dump += std::string(" ") + "RCL"[leaf.dimension] + ":" + leaf.key;
    dump += "\n";
  }
  dump += "Tests built with unweighted=" + std::to_string(param.call.unweighted) +
          " merged=" + std::to_string(param.call.merged) + " apa=" + std::to_string(param.call.apa) + "\n";
  dump += built->Dump();
  EXPECT_TRUE(MatchesGoldenFile(std::string("tablebuilder/") + param.name + ".txt", dump));
}

BuiltTable::Options WithTotals() {
  BuiltTable::Options options;
  options.totals = true;
  return options;
}

// The survey's empty cells, read off its nine cases: South has no Old, West has only
// Middle, and West has no gender at all.
const std::vector<EmptyLeaf> kEmptyRegionAge = {{0, "South/Old"}, {0, "West/Young"}, {0, "West/Old"}};

INSTANTIATE_TEST_SUITE_P(
    QuiltTable, TestTreesGolden,
    testing::Values(
        // One chi-square for each region: agegrp stays a leaf carrying the three texts.
        GoldenCase{"test_chisquare", "QUILT /TABLE region > agegrp BY gender [COUNT] /SIGTEST TYPE=CHISQUARE."},
        // Lettered afresh within each gender; the counts drop out below the letters.
        GoldenCase{"test_proportions", "QUILT /TABLE region BY gender > agegrp [COUNT] /COMPARETEST TYPE=PROP."},
        // Rows keep region > score, which has a mean; columns are lettered.
        GoldenCase{"test_means", "QUILT /TABLE region > score [MEAN] BY gender /COMPARETEST TYPE=MEAN."},
        // Nested columns: one chi-square of region by agegrp within each gender, so the
        // columns keep the gender categories and agegrp as a leaf below each.
        GoldenCase{"test_chisquare_nested_columns",
                   "QUILT /TABLE region BY gender > agegrp [COUNT] /SIGTEST TYPE=CHISQUARE."},
        // Layers are kept with their categories as leaves: a third tree.
        GoldenCase{"test_chisquare_layers", "QUILT /TABLE region BY gender [COUNT] BY agegrp /SIGTEST TYPE=CHISQUARE."},
        // Empty leaves leave the test: South loses Old, West keeps only Middle.
        GoldenCase{"test_proportions_empty_leaves",
                   "QUILT /TABLE region > agegrp BY gender [COUNT] /COMPARETEST TYPE=PROP.",
                   {},
                   kEmptyRegionAge},
        // Totals and subtotals of the columns are never compared: three letters, A to C.
        GoldenCase{"test_proportions_totals",
                   "QUILT /TABLE region BY agegrp [COUNT] /CATEGORIES VARIABLES=agegrp "
                   "[1, 2, SUBTOTAL='Young or middle', 3] TOTAL=YES /COMPARETEST TYPE=PROP."},
        // CATEGORIES=SUBTOTALS: the subtotal stands for Young and Middle, so two letters.
        GoldenCase{"test_proportions_subtotals",
                   "QUILT /TABLE region BY agegrp [COUNT] /CATEGORIES VARIABLES=agegrp "
                   "[1, 2, SUBTOTAL='Young or middle', 3] TOTAL=YES /COMPARETEST TYPE=PROP CATEGORIES=SUBTOTALS."},
        // Totals of the rows drop out of a chi-square as well, with TOTAL=YES on every variable.
        GoldenCase{"test_chisquare_totals",
                   "QUILT /TABLE region > agegrp BY gender [COUNT] /SIGTEST TYPE=CHISQUARE.",
                   {},
                   {},
                   WithTotals()},
        // Merged, simple style: the main table's letters carry one mean and one count below
        // them into the test's columns; STDDEV drops out, and score's name reaches no
        // later sibling since it has none.
        GoldenCase{"test_means_merged_statistics",
                   "QUILT /TABLE region > score [MEAN STDDEV COUNT] BY gender /COMPARETEST TYPE=MEAN MERGE=YES "
                   "STYLE=SIMPLE.",
                   {true, true, false}},
        // Statistics in the rows, tests apart: score stays a leaf without its statistics.
        GoldenCase{"test_means_statistics_in_rows",
                   "QUILT /TABLE region > score [MEAN STDDEV] BY gender /SLABELS POSITION=ROW "
                   "/COMPARETEST TYPE=MEAN."},
        // Two scale variables stacked: only score has a mean and is kept; income leaves.
        GoldenCase{"test_means_stacked_scales",
                   "QUILT /TABLE region > (score [MEAN] + income [SUM]) BY gender /COMPARETEST TYPE=MEAN."},
        // Merged, simple style, two scale variables stacked: score's name reaches income as
        // a prior variable in the main table's rows; below the letters only the mean stays.
        GoldenCase{"test_means_stacked_merged",
                   "QUILT /TABLE region > (score [MEAN] + income [SUM]) BY gender /COMPARETEST TYPE=MEAN MERGE=YES "
                   "STYLE=SIMPLE.",
                   {true, true, false}},
        // A scale variable outside: the categories below it are kept, with scaleAbove.
        GoldenCase{"test_means_scale_outer", "QUILT /TABLE score [MEAN] > region BY gender /COMPARETEST TYPE=MEAN."},
        // Letters of merged tests in the main table's columns: the chi-square reads its
        // height limit one level deeper (agegrp stays a leaf below each gender), the merged
        // proportions keep each letter with its count below it.
        GoldenCase{"test_chisquare_lettered_columns",
                   "QUILT /TABLE region BY gender > agegrp [COUNT] /SIGTEST TYPE=CHISQUARE /COMPARETEST TYPE=PROP "
                   "MERGE=YES STYLE=SIMPLE.",
                   {true, true, false}},
        // Merged proportions in APA style: no letters, the counts stay below the categories.
        GoldenCase{"test_proportions_merged_apa",
                   "QUILT /TABLE region BY gender [COUNT COLPCT.COUNT] /COMPARETEST TYPE=PROP MERGE=YES.",
                   {true, true, true}}),
    [](const testing::TestParamInfo<GoldenCase>& info) { return info.param.name; });

// Whether a test has trees at all depends on the statistics that the tested variables carry
// and on the weighting: each row gives the number of trees the first test gets (2 for rows
// and columns, 0 when nothing is left to test), worked out from the reduction rules.
TEST(QuiltTableTestTrees, WhichStatisticsMakeATestable) {
  struct Row {
    const char* command;
    bool unweighted;
    size_t trees;
  };
  const Row rows[] = {
      {"QUILT /TABLE region BY gender [COUNT] /SIGTEST TYPE=CHISQUARE.", false, 2},
      {"QUILT /TABLE region BY gender [COLPCT.COUNT] /COMPARETEST TYPE=PROP.", false, 2},
      // Unweighted counts stand for the data only when the data are unweighted.
      {"QUILT /TABLE region BY gender [UCOUNT] /SIGTEST TYPE=CHISQUARE.", true, 2},
      {"QUILT /TABLE region BY gender [UCOUNT] /SIGTEST TYPE=CHISQUARE.", false, 0},
      {"QUILT /TABLE region BY gender [UCOLPCT.COUNT] /COMPARETEST TYPE=PROP.", false, 0},
      // Row percentages serve the chi-square (the parser refuses them for proportions).
      {"QUILT /TABLE region BY gender [ROWPCT.COUNT] /SIGTEST TYPE=CHISQUARE.", false, 2},
      {"QUILT /TABLE region BY gender [UROWPCT.COUNT] /SIGTEST TYPE=CHISQUARE.", true, 2},
      {"QUILT /TABLE region BY gender [UROWPCT.COUNT] /SIGTEST TYPE=CHISQUARE.", false, 0},
      // A means test needs a mean: UMEAN only on unweighted data.
      {"QUILT /TABLE region > score [UMEAN] BY gender /COMPARETEST TYPE=MEAN.", true, 2},
      {"QUILT /TABLE region > score [UMEAN] BY gender /COMPARETEST TYPE=MEAN.", false, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.command) + (row.unweighted ? " unweighted" : " weighted"));
    TestCall call;
    call.unweighted = row.unweighted;
    std::unique_ptr<BuiltTable> built = BuildWithTests(row.command, call);
    ASSERT_TRUE(built);
    const std::vector<std::vector<Node*>>& trees = built->Table().GetSigTestTrees();
    // One vector per test setting, even an empty one.
    ASSERT_EQ(trees.size(), 1u);
    EXPECT_EQ(trees[0].size(), row.trees);
  }
}

// A table with real layers whose layer tree is left with nothing takes the whole test with
// it: here the main table found no data in any layer.
TEST(QuiltTableTestTrees, ALayerTreeWithNothingTestableDropsTheTest) {
  std::unique_ptr<BuiltTable> built =
      BuildWithTests("QUILT /TABLE region BY gender [COUNT] BY agegrp /SIGTEST TYPE=CHISQUARE.", TestCall(),
                     {{2, "Young"}, {2, "Middle"}, {2, "Old"}});
  ASSERT_TRUE(built);
  ASSERT_FALSE(built->Table().GetLayerHeaderRoot()->IsLeaf());
  const std::vector<std::vector<Node*>>& trees = built->Table().GetSigTestTrees();
  ASSERT_EQ(trees.size(), 1u);
  EXPECT_TRUE(trees[0].empty());
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
  const auto sizes = [&table]() {
    std::vector<size_t> out;
    for (const std::vector<Node*>& trees : table.GetSigTestTrees()) out.push_back(trees.size());
    return out;
  };
  EXPECT_EQ(sizes(), (std::vector<size_t>{2, 2, 2}));
  // The chi-square keeps agegrp alone: below each region stands only score. The means test
  // keeps the other branch, score under each of the three regions.
  const std::vector<std::vector<Node*>>& trees = table.GetSigTestTrees();
  EXPECT_EQ(LeafLabels(trees[0][0]), (std::vector<std::string>{"Chi-square", "df", "Sig."}));
  EXPECT_EQ(trees[0][0]->GetChildren()[0]->GetVariable()->GetNameToken(), "agegrp");
  EXPECT_EQ(LeafLabels(trees[2][0]), std::vector<std::string>(3, "ScaleVariable"));
  table.BuildStatTestTables(/*unweightedData=*/true, /*merged=*/false, /*apa=*/true);
  EXPECT_EQ(sizes(), (std::vector<size_t>{2, 2, 2}));
  EXPECT_EQ(LeafLabels(table.GetSigTestTrees()[0][0]), (std::vector<std::string>{"Chi-square", "df", "Sig."}));
}

// The names of the variables at the top of a tree, left to right.
std::string TopVariables(const Node* root) {
  std::string names;
  for (const Node* child : root->GetChildren()) {
    if (child->GetVariable() != nullptr) names += (names.empty() ? "" : " ") + child->GetVariable()->GetNameToken();
  }
  return names;
}

// A multiple-response set innermost in its dimension leaves a test that excludes sets; an
// outer one stays, since its categories only split the table. The expected variables are
// read off the reduction rules for each command.
TEST(QuiltTableTestTrees, SetsInnermostLeaveTestsThatExcludeThem) {
  struct Row {
    const char* command;
    const char* rows;
    const char* columns;
  };
  const Row rows[] = {
      {"QUILT /TABLE region + $media BY gender [COUNT] /SIGTEST TYPE=CHISQUARE INCLUDEMRSETS=YES.", "region $media",
       "gender"},
      {"QUILT /TABLE region + $media BY gender [COUNT] /SIGTEST TYPE=CHISQUARE INCLUDEMRSETS=NO.", "region",
       "gender"},
      {"QUILT /TABLE $media > agegrp BY gender [COUNT] /SIGTEST TYPE=CHISQUARE INCLUDEMRSETS=NO.", "$media",
       "gender"},
      {"QUILT /TABLE region BY gender + $media [COUNT] /COMPARETEST TYPE=PROP INCLUDEMRSETS=NO.", "region",
       "gender"},
      {"QUILT /TABLE region BY gender + $media [COUNT] /COMPARETEST TYPE=PROP INCLUDEMRSETS=YES.", "region",
       "gender $media"},
      // In the means rows a set with a scale variable right below its categories (height 2)
      // is innermost; one with another variable between them (height 4) is not.
      {"QUILT /TABLE region > score [MEAN] + $media > score [MEAN] BY gender /COMPARETEST TYPE=MEAN "
       "INCLUDEMRSETS=NO.",
       "region", "gender"},
      {"QUILT /TABLE region > score [MEAN] + $media > score [MEAN] BY gender /COMPARETEST TYPE=MEAN "
       "INCLUDEMRSETS=YES.",
       "region $media", "gender"},
      {"QUILT /TABLE $media > region > score [MEAN] BY gender /COMPARETEST TYPE=MEAN INCLUDEMRSETS=NO.", "$media",
       "gender"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.command);
    std::unique_ptr<BuiltTable> built = BuildWithTests(row.command);
    ASSERT_TRUE(built);
    const std::vector<std::vector<Node*>>& trees = built->Table().GetSigTestTrees();
    ASSERT_EQ(trees.size(), 1u);
    ASSERT_EQ(trees[0].size(), 2u);
    EXPECT_EQ(TopVariables(trees[0][0]), row.rows);
    EXPECT_EQ(TopVariables(trees[0][1]), row.columns);
  }
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
