// HeaderTreeNodeTest.cpp - tree operations of header trees: splicing, nesting, statistics, copies
#include "tablebuilder/HeaderTreeNode.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "TableBuilderTestSupport.h"
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

TEST(HeaderTreeNode, NestingARootStacksItsChildrenUnderEveryLeaf) {
  Fixture f;
  std::unique_ptr<Node> outer(f.VariableWithCategories("a", {"a1", "a2"}));
  Node* stack = Node::CreateRoot();
  stack->AddChild(f.VariableWithCategories("b", {"b1"}), false);
  stack->AddChild(f.VariableWithCategories("c", {"c1", "c2"}), false);
  outer->Nest(stack);
  EXPECT_EQ(LeafLabels(outer.get()), (std::vector<std::string>{"b1", "c1", "c2", "b1", "c1", "c2"}));
  ExpectConsistent(outer.get());
}

TEST(HeaderTreeNode, NestBelowStatisticsPutsTheSubtreeBetween) {
  Fixture f;
  GivenAway unused;
  std::unique_ptr<Node> scale(Node::Create(f.Variable("income", true), true, unused));
  std::vector<Node*> regular{f.Stat(Codes::kStatMean, "Mean"), f.Stat(Codes::kStatSum, "Sum")};
  std::vector<Node*> none;
  scale->AddStats(regular, none);
  ASSERT_EQ(scale->GetNChildren(), 2);

  scale->Nest(f.VariableWithCategories("b", {"b1", "b2"}));
  ASSERT_EQ(scale->GetNChildren(), 1);
  EXPECT_EQ(scale->GetChildren()[0]->GetType(), Node::kHNodeTypeCatVariable);
  EXPECT_EQ(LeafLabels(scale.get()), (std::vector<std::string>{"Mean", "Sum", "Mean", "Sum"}));
  EXPECT_EQ(scale->GetMaxHeight(), 3);
  ExpectConsistent(scale.get());
}

TEST(HeaderTreeNode, NestStackOnStatisticsKeepsThemInnermost) {
  Fixture f;
  std::unique_ptr<Node> outer(f.VariableWithCategories("a", {"a1", "a2"}));
  outer->NestStack(std::vector<Node*>{f.Stat(Codes::kStatCount, "Count")});
  // Statistics nested on statistics change nothing.
  const std::string before = Dump(*outer);
  outer->NestStack(std::vector<Node*>{f.Stat(Codes::kStatColPctCount, "Column N %")});
  outer->NestStack(std::vector<Node*>{f.Stat(Codes::kStatRowPctCount, "Row N %")});
  EXPECT_EQ(Dump(*outer), before);
  // A variable nested on a statistic parent goes between it and its statistics.
  outer->NestStack(std::vector<Node*>{f.VariableWithCategories("b", {"b1", "b2"})});
  EXPECT_EQ(LeafLabels(outer.get()), (std::vector<std::string>{"Count", "Count", "Count", "Count"}));
  EXPECT_EQ(outer->GetMaxHeight(), 4);  // a -> a1 -> b -> b1 -> Count
  ExpectConsistent(outer.get());
}

// A total statistic equal to a regular one (PTILE 25, COUNT) merges with it; one that differs
// stays beside them.
TEST(HeaderTreeNode, TotalStatisticEqualToARegularOneMerges) {
  const std::tuple<Codes::StatisticCodes, double, int> cases[] = {
      {Codes::kStatPtile, 25, 2}, {Codes::kStatPtile, 75, 3}, {Codes::kStatCount, -1, 2}, {Codes::kStatColPctCount, -1, 3}};
  for (const auto& [totalCode, totalCut, expectedChildren] : cases) {
    SCOPED_TRACE(std::to_string(totalCode) + " " + std::to_string(totalCut));
    Fixture f;
    GivenAway unused;
    std::unique_ptr<Node> variable(Node::Create(f.Variable("a"), false, unused));
    std::vector<Node*> regular{f.Stat(Codes::kStatPtile, "Percentile", 25), f.Stat(Codes::kStatCount, "Count")};
    std::vector<Node*> total{f.Stat(totalCode, "Total", totalCut)};
    variable->AddStats(regular, total);
    EXPECT_EQ(variable->GetNChildren(), expectedChildren);
    EXPECT_TRUE(regular.empty());
    EXPECT_TRUE(total.empty());
  }
}

TEST(HeaderTreeNode, AddStatsGivesTotalChildrenTheTotalStatistics) {
  Fixture f;
  for (const bool withTotalStats : {true, false}) {
    SCOPED_TRACE(withTotalStats ? "total statistics given" : "no total statistics");
    GivenAway unused;
    std::unique_ptr<Node> variable(Node::Create(f.Variable("a"), false, unused));
    variable->AddChild(Node::Create(f.Category(AggregationCategory::kValue, 1, "a1")), false);
    variable->AddChild(Node::Create(f.Category(AggregationCategory::kSubtotal, 2, "Sub")), false);
    variable->AddChild(Node::Create(f.Category(AggregationCategory::kTotal, 3, "Total")), false);
    std::vector<Node*> regular{f.Stat(Codes::kStatCount, "Count")};
    std::vector<Node*> total;
    if (withTotalStats) total.push_back(f.Stat(Codes::kStatSum, "Sum"));
    variable->AddStats(regular, total);
    const std::string totalLabel = withTotalStats ? "Sum" : "Count";
    EXPECT_EQ(LeafLabels(variable.get()), (std::vector<std::string>{"Count", totalLabel, totalLabel}));
    EXPECT_TRUE(regular.empty());
    ExpectConsistent(variable.get());
  }
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
      {Codes::kStatMaximum, Codes::kConfNone, StatTreeNode::kStatFormatVariable},
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

}  // namespace
