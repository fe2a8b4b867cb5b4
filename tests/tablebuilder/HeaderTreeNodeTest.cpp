// HeaderTreeNodeTest.cpp - tree operations of header trees: splicing, nesting, statistics, copies
#include "tablebuilder/HeaderTreeNode.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "host/engine/AggregationCategory.h"
#include "host/engine/TableEncryptionCodes.h"
#include "parser/Statistics.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/StatTreeNode.h"

namespace {

// Placeholders a variable gives away for another dimension belong to the caller, which in
// the builder nests or frees them; a test frees them when it is done.
struct GivenAway : std::vector<HeaderTreeNode*> {
  GivenAway() = default;
  GivenAway(const GivenAway&) = delete;
  GivenAway& operator=(const GivenAway&) = delete;
  ~GivenAway() {
    for (HeaderTreeNode* node : *this) delete node;
  }
};

using Codes = TableEncryptionCodes;
using Node = HeaderTreeNode;

// Owns the parse-side objects the nodes point at, so that each test reads like a tree.
struct Fixture {
  // Variables made here read no dictionary: no data source of an earlier test is reached.
  Fixture() { SyntaxConverter().SetDataSource(nullptr); }

  std::vector<std::unique_ptr<SyntaxVariableName>> variables;
  std::vector<std::unique_ptr<Statistics>> statistics;
  std::vector<std::unique_ptr<AggregationCategory>> categories;

  SyntaxVariableName* Variable(const std::string& name, bool scale = false) {
    variables.push_back(std::make_unique<SyntaxVariableName>(static_cast<int>(variables.size()), name));
    if (scale) variables.back()->SetVariableType(Codes::kVariableScale);
    return variables.back().get();
  }
  StatTreeNode* Stat(Codes::StatisticCodes code, const std::string& word, double cutPoint = -1.0) {
    statistics.push_back(std::make_unique<Statistics>(code, word, word));
    if (cutPoint > 0.0) statistics.back()->Number(cutPoint, std::to_string(static_cast<int>(cutPoint)));
    return Node::Create(*statistics.back(), true);
  }
  const AggregationCategory* Category(int type, int encoding, const std::string& label) {
    categories.push_back(std::make_unique<AggregationCategory>(type, encoding, 0));
    categories.back()->SetCatLabel(label, true);
    return categories.back().get();
  }
  // A variable node with one category node per label: a small final subtree.
  Node* VariableWithCategories(const std::string& name, const std::vector<std::string>& labels) {
    GivenAway unused;
    Node* node = Node::Create(Variable(name), /*keepHere=*/false, unused);
    int encoding = 1;
    for (const std::string& label : labels) node->AddChild(Node::Create(Category(1, encoding++, label)), false);
    return node;
  }
};

std::string Dump(const Node& node) {
  std::ostringstream out;
  node.Dump(out);
  return out.str();
}

// The labels of the leaves, left to right, to compare shapes without the whole dump.
void CollectLeaves(const Node* node, std::vector<std::string>& out) {
  if (node->IsLeaf()) {
    if (node->GetType() == Node::kHNodeTypeStatistic) {
      out.push_back(static_cast<const StatTreeNode*>(node)->GetLabel());
    } else if (node->GetCategory() != nullptr) {
      out.push_back(node->GetCategory()->GetCatLabel());
    } else {
      out.push_back(Node::TypeName(node->GetType()));
    }
    return;
  }
  for (const Node* child : node->GetChildren()) CollectLeaves(child, out);
}

std::vector<std::string> Leaves(const Node* node) {
  std::vector<std::string> out;
  CollectLeaves(node, out);
  return out;
}

// Checks the bookkeeping of every node against a recount.
void ExpectConsistent(const Node* node) {
  if (node->IsLeaf()) {
    EXPECT_EQ(node->GetNLeaves(), 1);
    return;
  }
  int leaves = 0;
  int height = 0;
  for (size_t i = 0; i < node->GetChildren().size(); ++i) {
    const Node* child = node->GetChildren()[i];
    EXPECT_EQ(child->GetParent(), node);
    EXPECT_EQ(child->GetNextSibling(), i + 1 < node->GetChildren().size() ? node->GetChildren()[i + 1] : nullptr);
    leaves += child->GetNLeaves();
    height = std::max(height, child->GetMaxHeight() + 1);
    ExpectConsistent(child);
  }
  EXPECT_EQ(node->GetNChildren(), static_cast<int>(node->GetChildren().size()));
  EXPECT_EQ(node->GetNLeaves(), leaves);
  EXPECT_EQ(node->GetMaxHeight(), height);
}

TEST(HeaderTreeNode, CreationSetsKindAndStartingFields) {
  Fixture f;
  std::unique_ptr<Node> root(Node::CreateRoot());
  EXPECT_EQ(root->GetType(), Node::kHNodeTypeRoot);
  EXPECT_EQ(root->GetNLeaves(), 1);
  EXPECT_EQ(root->GetCubeIndexInDim(), -1);

  std::vector<Node*> collector;
  std::unique_ptr<Node> scale(Node::Create(f.Variable("income", /*scale=*/true), /*keepHere=*/true, collector));
  EXPECT_EQ(scale->GetType(), Node::kHNodeTypeScaleVariable);
  EXPECT_TRUE(scale->IsLeaf());
  EXPECT_EQ(scale->GetCubeIndexInDim(), 0);

  std::unique_ptr<Node> kept(Node::Create(f.Variable("region"), /*keepHere=*/true, collector));
  EXPECT_EQ(kept->GetType(), Node::kHNodeTypeCatVariable);
  ASSERT_EQ(kept->GetNChildren(), 1);
  EXPECT_EQ(kept->GetChildren()[0]->GetType(), Node::kHNodeTypeTempCategories);
  EXPECT_TRUE(collector.empty());

  // Labels that another dimension shows leave the variable bare and go to the collector.
  std::unique_ptr<Node> given(Node::Create(f.Variable("gender"), /*keepHere=*/false, collector));
  EXPECT_TRUE(given->IsLeaf());
  ASSERT_EQ(collector.size(), 1u);
  EXPECT_EQ(collector[0]->GetVariable()->GetNameToken(), "gender");
  delete collector[0];

  std::unique_ptr<Node> letter(Node::Create("B", true));
  EXPECT_EQ(letter->GetType(), Node::kHNodeTypeLetter);
  EXPECT_EQ(letter->GetLabel(), "B");
  std::unique_ptr<Node> label(Node::Create(std::string("Chi-square")));
  EXPECT_EQ(label->GetType(), Node::kHNodeTypeLabel);
}

TEST(HeaderTreeNode, AddingARootSplicesItsChildrenInOrder) {
  Fixture f;
  std::unique_ptr<Node> root(Node::CreateRoot());
  root->AddChild(f.VariableWithCategories("a", {"a1", "a2"}), false);
  Node* stack = Node::CreateRoot();
  stack->AddChild(f.VariableWithCategories("b", {"b1"}), false);
  stack->AddChild(f.VariableWithCategories("c", {"c1", "c2", "c3"}), false);
  EXPECT_EQ(root->AddChild(stack, false), 3);  // a, b, c: the root of b + c is gone

  ASSERT_EQ(root->GetNChildren(), 3);
  EXPECT_EQ(root->GetChildren()[1]->GetVariable()->GetNameToken(), "b");
  EXPECT_EQ(root->GetChildren()[2]->GetVariable()->GetNameToken(), "c");
  EXPECT_EQ(root->GetNLeaves(), 6);  // 2 + 1 + 3 categories
  EXPECT_EQ(root->GetMaxHeight(), 2);
  ExpectConsistent(root.get());
}

TEST(HeaderTreeNode, NestPutsTheSubtreeUnderTheFirstLeafAndClonesUnderTheOthers) {
  Fixture f;
  std::unique_ptr<Node> outer(f.VariableWithCategories("a", {"a1", "a2", "a3"}));
  Node* inner = f.VariableWithCategories("b", {"b1", "b2"});
  outer->Nest(inner);

  const auto& leaves = outer->GetChildren();
  ASSERT_EQ(leaves.size(), 3u);
  EXPECT_EQ(leaves[0]->GetChildren()[0], inner);
  EXPECT_NE(leaves[1]->GetChildren()[0], inner);
  EXPECT_NE(leaves[2]->GetChildren()[0], inner);
  EXPECT_EQ(outer->GetNLeaves(), 6);  // 3 outer categories times 2 inner ones
  EXPECT_EQ(outer->GetMaxHeight(), 3);
  EXPECT_EQ(Leaves(outer.get()), (std::vector<std::string>{"b1", "b2", "b1", "b2", "b1", "b2"}));
  ExpectConsistent(outer.get());
}

TEST(HeaderTreeNode, NestingARootStacksItsChildrenUnderEveryLeaf) {
  Fixture f;
  std::unique_ptr<Node> outer(f.VariableWithCategories("a", {"a1", "a2"}));
  Node* stack = Node::CreateRoot();
  stack->AddChild(f.VariableWithCategories("b", {"b1"}), false);
  stack->AddChild(f.VariableWithCategories("c", {"c1", "c2"}), false);
  outer->Nest(stack);
  EXPECT_EQ(Leaves(outer.get()), (std::vector<std::string>{"b1", "c1", "c2", "b1", "c1", "c2"}));
  ExpectConsistent(outer.get());
}

TEST(HeaderTreeNode, NestBelowStatisticsPutsTheSubtreeBetween) {
  Fixture f;
  GivenAway unused;
  std::unique_ptr<Node> scale(Node::Create(f.Variable("income", true), true, unused));
  std::vector<StatTreeNode*> regular{f.Stat(Codes::kStatMean, "Mean"), f.Stat(Codes::kStatSum, "Sum")};
  std::vector<StatTreeNode*> none;
  scale->AddStats(regular, none);
  ASSERT_EQ(scale->GetNChildren(), 2);

  scale->Nest(f.VariableWithCategories("b", {"b1", "b2"}));
  ASSERT_EQ(scale->GetNChildren(), 1);
  EXPECT_EQ(scale->GetChildren()[0]->GetType(), Node::kHNodeTypeCatVariable);
  EXPECT_EQ(Leaves(scale.get()), (std::vector<std::string>{"Mean", "Sum", "Mean", "Sum"}));
  EXPECT_EQ(scale->GetMaxHeight(), 3);
  ExpectConsistent(scale.get());
}

TEST(HeaderTreeNode, NestStackOfStatisticsOnStatisticsChangesNothing) {
  Fixture f;
  std::unique_ptr<Node> root(f.VariableWithCategories("a", {"a1"}));
  root->NestStack(std::vector<StatTreeNode*>{f.Stat(Codes::kStatCount, "Count")});
  const std::string before = Dump(*root);
  root->NestStack(std::vector<StatTreeNode*>{f.Stat(Codes::kStatColPctCount, "Column N %")});
  root->NestStack(std::vector<Node*>{f.Stat(Codes::kStatRowPctCount, "Row N %")});
  EXPECT_EQ(Dump(*root), before);
}

TEST(HeaderTreeNode, NestStackOnAStatisticParentMovesTheStatisticsDown) {
  Fixture f;
  std::unique_ptr<Node> outer(f.VariableWithCategories("a", {"a1", "a2"}));
  outer->NestStack(std::vector<StatTreeNode*>{f.Stat(Codes::kStatCount, "Count")});
  outer->NestStack(std::vector<Node*>{f.VariableWithCategories("b", {"b1", "b2"})});
  EXPECT_EQ(Leaves(outer.get()), (std::vector<std::string>{"Count", "Count", "Count", "Count"}));
  EXPECT_EQ(outer->GetMaxHeight(), 4);  // a -> a1 -> b -> b1 -> Count
  ExpectConsistent(outer.get());
}

struct MergeCase {
  const char* name;
  Codes::StatisticCodes totalCode;
  double totalCut;
  int expectedChildren;  // the regular PTILE 25 and COUNT, plus the total when it differs
};

class AddStatsMerge : public testing::TestWithParam<MergeCase> {};

TEST_P(AddStatsMerge, TotalStatisticEqualToARegularOneMerges) {
  Fixture f;
  GivenAway unused;
  std::unique_ptr<Node> variable(Node::Create(f.Variable("a"), false, unused));
  std::vector<StatTreeNode*> regular{f.Stat(Codes::kStatPtile, "Percentile", 25), f.Stat(Codes::kStatCount, "Count")};
  std::vector<StatTreeNode*> total{f.Stat(GetParam().totalCode, "Total", GetParam().totalCut)};
  variable->AddStats(regular, total);
  EXPECT_EQ(variable->GetNChildren(), GetParam().expectedChildren);
  EXPECT_TRUE(regular.empty());
  EXPECT_TRUE(total.empty());
}

INSTANTIATE_TEST_SUITE_P(HeaderTreeNode, AddStatsMerge,
                         testing::Values(MergeCase{"SamePercentile", Codes::kStatPtile, 25, 2},
                                         MergeCase{"OtherCutPoint", Codes::kStatPtile, 75, 3},
                                         MergeCase{"SameCount", Codes::kStatCount, -1, 2},
                                         MergeCase{"OtherStatistic", Codes::kStatColPctCount, -1, 3}),
                         [](const testing::TestParamInfo<MergeCase>& info) { return info.param.name; });

TEST(HeaderTreeNode, AddStatsGivesTotalChildrenTheTotalStatistics) {
  Fixture f;
  for (const bool withTotalStats : {true, false}) {
    SCOPED_TRACE(withTotalStats ? "total statistics given" : "no total statistics");
    GivenAway unused;
    std::unique_ptr<Node> variable(Node::Create(f.Variable("a"), false, unused));
    variable->AddChild(Node::Create(f.Category(AggregationCategory::kValue, 1, "a1")), false);
    variable->AddChild(Node::Create(f.Category(AggregationCategory::kSubtotal, 2, "Sub")), false);
    variable->AddChild(Node::Create(f.Category(AggregationCategory::kTotal, 3, "Total")), false);
    std::vector<StatTreeNode*> regular{f.Stat(Codes::kStatCount, "Count")};
    std::vector<StatTreeNode*> total;
    if (withTotalStats) total.push_back(f.Stat(Codes::kStatSum, "Sum"));
    variable->AddStats(regular, total);
    const std::string totalLabel = withTotalStats ? "Sum" : "Count";
    EXPECT_EQ(Leaves(variable.get()), (std::vector<std::string>{"Count", totalLabel, totalLabel}));
    EXPECT_TRUE(regular.empty());
    ExpectConsistent(variable.get());
  }
}

TEST(HeaderTreeNode, NestStatsReachesTheLevelAboveTheLeaves) {
  Fixture f;
  std::unique_ptr<Node> outer(f.VariableWithCategories("a", {"a1", "a2"}));
  outer->Nest(f.VariableWithCategories("b", {"b1", "b2", "b3"}));
  std::vector<StatTreeNode*> regular{f.Stat(Codes::kStatCount, "Count")};
  std::vector<StatTreeNode*> total;
  outer->NestStats(regular, total);
  EXPECT_EQ(outer->GetNLeaves(), 6);  // one statistic under each of 2 x 3 categories
  EXPECT_EQ(Leaves(outer.get()), std::vector<std::string>(6, "Count"));
  ExpectConsistent(outer.get());
}

TEST(HeaderTreeNode, InsertChildPushesALevelInBetween) {
  Fixture f;
  std::unique_ptr<Node> category(Node::Create(f.Category(AggregationCategory::kValue, 1, "a1")));
  category->AddChild(f.Stat(Codes::kStatCount, "Count"), false);
  category->AddChild(f.Stat(Codes::kStatColPctCount, "Column N %"), false);
  Node* letter = Node::Create("A", true);
  category->insertChild(letter);
  ASSERT_EQ(category->GetNChildren(), 1);
  EXPECT_EQ(category->GetChildren()[0], letter);
  EXPECT_EQ(letter->GetNChildren(), 2);
  EXPECT_EQ(category->GetMaxHeight(), 2);
  ExpectConsistent(category.get());
}

TEST(HeaderTreeNode, CloneIsDeepAndForgetsTheEmptyStateWhileCreateCopyKeepsIt) {
  Fixture f;
  std::unique_ptr<Node> source(f.VariableWithCategories("a", {"a1", "a2"}));
  source->SetEmpty(true);
  source->GetChildren()[0]->SetEmpty(false);
  source->SetChildLoc(7);

  std::unique_ptr<Node> clone(source->Clone());
  EXPECT_EQ(clone->GetEmptyState(), Node::kEmptyUnknown);
  EXPECT_EQ(clone->GetChildren()[0]->GetEmptyState(), Node::kEmptyUnknown);
  EXPECT_EQ(clone->GetCloneKids(), 2);
  EXPECT_EQ(clone->GetChildLoc(), 7u);
  EXPECT_EQ(clone->GetParent(), nullptr);
  EXPECT_NE(clone->GetChildren()[0], source->GetChildren()[0]);
  ExpectConsistent(clone.get());

  std::unique_ptr<Node> copy(Node::CreateCopy(source.get()));
  EXPECT_TRUE(copy->IsEmpty());
  EXPECT_TRUE(copy->IsLeaf());
  EXPECT_EQ(copy->GetNLeaves(), 1);
  EXPECT_EQ(copy->GetCloneKids(), 2);
}

TEST(HeaderTreeNode, StatisticCopiesStayStatistics) {
  Fixture f;
  std::unique_ptr<StatTreeNode> stat(f.Stat(Codes::kStatPtile, "Percentile", 25));
  stat->SetHidden(true);
  stat->SetEmpty(true);
  stat->SetIncludeEmpty(true);
  stat->SetCubeIndexInDim(3);
  std::unique_ptr<Node> copy(Node::CreateCopy(stat.get()));
  ASSERT_EQ(copy->GetType(), Node::kHNodeTypeStatistic);
  const auto* copied = static_cast<const StatTreeNode*>(copy.get());
  EXPECT_EQ(copied->GetStatType(), Codes::kStatPtile);
  EXPECT_EQ(copied->GetPtileValue(), 25.0);
  EXPECT_EQ(copied->GetLabel(), "Percentile 25");
  EXPECT_TRUE(copied->IsHidden());
  EXPECT_TRUE(copied->IsEmpty());
  EXPECT_TRUE(copied->IsIncludeEmpty());
  EXPECT_EQ(copied->GetCubeIndexInDim(), 3);
}

TEST(HeaderTreeNode, PriorVarsReachLaterSiblingsOnly) {
  Fixture f;
  std::unique_ptr<Node> root(Node::CreateRoot());
  for (const char* name : {"a", "b", "c"}) root->AddChild(f.VariableWithCategories(name, {"x"}), false);
  root->GetChildren()[1]->AddPriorVar("b", /*skipThis=*/true);
  EXPECT_FALSE(root->GetChildren()[0]->varPresent("b"));
  EXPECT_FALSE(root->GetChildren()[1]->varPresent("b"));
  EXPECT_TRUE(root->GetChildren()[2]->varPresent("b"));
  root->GetChildren()[0]->addProperty("merged");
  root->GetChildren()[0]->addProperty("A");
  EXPECT_EQ(root->GetChildren()[0]->getProperties(), "merged,A");
}

TEST(HeaderTreeNode, PropagateEmptyInfoMarksInnerNodesFromTheirLeaves) {
  Fixture f;
  std::unique_ptr<Node> root(Node::CreateRoot());
  root->AddChild(f.VariableWithCategories("a", {"a1", "a2"}), false);
  root->AddChild(f.VariableWithCategories("b", {"b1"}), false);
  Node* a = root->GetChildren()[0];
  a->GetChildren()[0]->SetEmpty(true);
  a->GetChildren()[1]->SetEmpty(true);
  root->GetChildren()[1]->GetChildren()[0]->SetEmpty(false);
  EXPECT_FALSE(root->PropagateEmptyInfo());
  EXPECT_TRUE(a->IsEmpty());
  EXPECT_EQ(root->GetChildren()[1]->GetEmptyState(), Node::kEmptyNo);
  EXPECT_EQ(root->GetEmptyState(), Node::kEmptyNo);
}

TEST(StatTreeNode, FormatFamilyFollowsThePrimaryStatistic) {
  struct Row {
    int primary;
    int conf;
    StatTreeNode::StatFormatCodes expected;
  };
  const Row rows[] = {
      {Codes::kStatCount, Codes::kConfNone, StatTreeNode::kStatFormatCount},
      {Codes::kStatUResponses, Codes::kConfNone, StatTreeNode::kStatFormatCount},
      {Codes::kStatColPctCount, Codes::kConfNone, StatTreeNode::kStatFormatPercent},
      {Codes::kStatMean, Codes::kConfNone, StatTreeNode::kStatFormatMean},
      {Codes::kStatMean, Codes::kConfLcl, StatTreeNode::kStatFormatMean},
      {Codes::kStatMean, Codes::kConfSe, StatTreeNode::kStatFormatStdDev},
      {Codes::kStatPtile, Codes::kConfUcl, StatTreeNode::kStatFormatMean},
      {Codes::kStatMedian, Codes::kConfSe, StatTreeNode::kStatFormatStdDev},
      {Codes::kStatMode, Codes::kConfNone, StatTreeNode::kStatFormatVariable},
      {Codes::kStatVariance, Codes::kConfNone, StatTreeNode::kStatFormatStdDev},
      {Codes::kStatUSum, Codes::kConfNone, StatTreeNode::kStatFormatSum},
      {Codes::kStatRange, Codes::kConfNone, StatTreeNode::kStatFormatDifference},
      {Codes::kStatColPctSum, Codes::kConfNone, StatTreeNode::kStatFormatPercent},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(StatTreeNode::DetermineStatFormatCode(row.primary, row.conf), row.expected)
        << "primary " << row.primary << " conf " << row.conf;
  }
}

TEST(HeaderTreeNode, DumpShowsOneNodePerLineIndentedByDepth) {
  Fixture f;
  std::unique_ptr<Node> root(Node::CreateRoot());
  root->AddChild(f.VariableWithCategories("a", {"a1"}), true);
  root->GetChildren()[0]->GetChildren()[0]->AddChild(f.Stat(Codes::kStatCount, "Count"), true);
  // Written by hand from the tree above: root -> a -> a1 -> Count, one leaf, height 3.
  EXPECT_EQ(Dump(*root),
            "Root leaves=1 height=3 slot=-1 loc=0 includeEmpty=0 sameCube=0 empty=unknown\n"
            "  CatVariable a leaves=1 height=2 slot=0 loc=0 includeEmpty=0 sameCube=0 empty=unknown\n"
            "    Category 'a1' value leaves=1 height=1 slot=0 loc=0 includeEmpty=0 sameCube=0 empty=unknown\n"
            "      Statistic 'Count' code=1 primary=1 conf=0 format=0 hidden=0 leaves=1 height=0 slot=0 loc=0 "
            "includeEmpty=0 sameCube=0 empty=unknown\n");
}

}  // namespace
