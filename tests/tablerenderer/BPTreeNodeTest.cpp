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

  std::unique_ptr<ProcedureDataSource> _dataSource;
  OutputDocument _document;
};

TEST_F(CategoryLabels, ComputedCategoryLabelReferencesExpand) {
  struct Case {
    int type;
    int varIndex;
    const char* label;
    const char* expected;
  };
  constexpr int kComputed = AggregationCategory::kPcompute;
  const Case cases[] = {
      // Without a variable, a reference names a variable, replaced by its label.
      {kComputed, -1, "Sum of )LABEL[q]", "Sum of Quality"},
      {kComputed, -1, ")LABEL[nosuch] and )LABEL[city]", "nosuch and Home city"},
      // A numeric variable's reference names a value; its value label replaces it.
      {kComputed, 0, ")LABEL[1] or )LABEL[2]", "Poor or Good"},
      {kComputed, 0, ")LABEL[1.0] only", "Poor only"},
      {kComputed, 0, "Value )LABEL[7]", "Value 7"},
      // A string variable's reference is a quoted value.
      {kComputed, 1, ")LABEL['LDN'] vs )LABEL['PAR']", "London vs 'PAR'"},
      // An unterminated reference stays as written.
      {kComputed, 0, "Top )LABEL[1", "Top )LABEL[1"},
      // Only computed categories expand references; a total keeps its default label.
      {AggregationCategory::kTotal, 0, "Total )LABEL[1]", "Total )LABEL[1]"},
  };
  for (const Case& test : cases) {
    AggregationCategory category(test.type, 0, test.varIndex);
    const bool isDefaultLabel = test.type == AggregationCategory::kTotal;
    category.SetCatLabel(test.label, isDefaultLabel);
    bool isDefault = !isDefaultLabel;
    EXPECT_EQ(BPTreeNode::GetCategoryText(&category, _dataSource.get(), isDefault), test.expected) << test.label;
    EXPECT_EQ(isDefault, isDefaultLabel) << test.label;
  }
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
