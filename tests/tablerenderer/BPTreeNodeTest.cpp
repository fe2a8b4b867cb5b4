// BPTreeNodeTest.cpp - category labels: set members and the label references of computed categories
#include "tablerenderer/BPTreeNode.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/data/DatasetLoader.h"
#include "host/data/ProcedureDataSource.h"
#include "host/engine/AggregationCategory.h"
#include "host/output/BpCellText.h"
#include "host/output/OutputDocument.h"

namespace {

// q is numeric with labels for 1 and 2; city is a string with a label for "LDN".
constexpr const char* kCsv = "q,city\n1,LDN\n2,PAR\n";
constexpr const char* kDictionary = R"({"variables": [
  {"name": "q", "label": "Quality", "values": {"1": "Poor", "2": "Good"}},
  {"name": "city", "label": "Home city", "values": {"LDN": "London"}}]})";

class CategoryLabels : public ::testing::Test {
 protected:
  void SetUp() override {
    _dataSource = std::make_unique<ProcedureDataSource>(DatasetLoader::LoadText(kCsv, kDictionary, {}));
    OutputDocument::Install(&_document);
  }
  void TearDown() override { OutputDocument::Install(nullptr); }

  /// A computed category of variable `varIndex` (-1: a set's) with the label `label`.
  static AggregationCategory Computed(int varIndex, const std::string& label) {
    AggregationCategory category(AggregationCategory::kPcompute, 0, varIndex);
    category.SetCatLabel(label, false);
    return category;
  }

  std::unique_ptr<ProcedureDataSource> _dataSource;
  OutputDocument _document;
};

TEST_F(CategoryLabels, ComputedCategoryLabelReferencesExpand) {
  struct Case {
    int varIndex;
    const char* label;
    const char* expected;
  };
  const Case cases[] = {
      // Without a variable, a reference names a variable, replaced by its label.
      {-1, "Sum of )LABEL[q]", "Sum of Quality"},
      {-1, ")LABEL[nosuch] and )LABEL[city]", "nosuch and Home city"},
      // A numeric variable's reference names a value; its value label replaces it.
      {0, ")LABEL[1] or )LABEL[2]", "Poor or Good"},
      {0, ")LABEL[1.0] only", "Poor only"},
      {0, "Value )LABEL[7]", "Value 7"},
      // A string variable's reference is a quoted value.
      {1, ")LABEL['LDN'] vs )LABEL['PAR']", "London vs 'PAR'"},
      // An unterminated reference stays as written.
      {0, "Top )LABEL[1", "Top )LABEL[1"},
  };
  for (const Case& test : cases) {
    const AggregationCategory category = Computed(test.varIndex, test.label);
    bool isDefault = true;
    EXPECT_EQ(BPTreeNode::GetCategoryText(&category, _dataSource.get(), isDefault), test.expected) << test.label;
    EXPECT_FALSE(isDefault);
  }
}

TEST_F(CategoryLabels, OnlyComputedCategoriesExpandReferences) {
  AggregationCategory total(AggregationCategory::kTotal, 0, 0);
  total.SetCatLabel("Total )LABEL[1]", true);
  bool isDefault = false;
  EXPECT_EQ(BPTreeNode::GetCategoryText(&total, _dataSource.get(), isDefault), "Total )LABEL[1]");
  EXPECT_TRUE(isDefault);
}

// Value categories (a value label, or the value where there is none) are in every delivered
// golden; unlabelled-values shows values without labels.

TEST_F(CategoryLabels, SetMembersShowTheirOwnLabelOrTheVariable) {
  AggregationCategory member(AggregationCategory::kVariable, 0, 0);
  EXPECT_EQ(BPTreeNode::MakeCategoryText(&member, _dataSource.get())->GetText(), "Quality");
  member.SetCatLabel("Counted as quality", false);
  member.SetUseLabelForVar(true);
  EXPECT_EQ(BPTreeNode::MakeCategoryText(&member, _dataSource.get())->GetText(), "Counted as quality");
}

TEST_F(CategoryLabels, AnUnknownCategoryTypeWarnsAndMakesNoLabel) {
  AggregationCategory odd(42, 0, 0);
  EXPECT_EQ(BPTreeNode::MakeCategoryText(&odd, _dataSource.get()), nullptr);
  ASSERT_EQ(_document.Items().size(), 1u);
}

}  // namespace
