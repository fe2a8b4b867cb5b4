// BpPivotTableTest.cpp - identity of groups and categories, cell selection, delivery, notes, splits, messages
#include <gtest/gtest.h>

#include <sstream>

#include "GoldenFile.h"
#include "host/output/BpAnnotation.h"
#include "host/output/BpCategory.h"
#include "host/output/BpComposite.h"
#include "host/output/BpDimension.h"
#include "host/output/BpError.h"
#include "host/output/BpNumber.h"
#include "host/output/BpPivotTable.h"
#include "host/output/BpProcedure.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "host/output/OutputDocument.h"

namespace {

BpString Text(const std::string& text) {
  return BpString(text, /*translate=*/false);
}

BpComposite Composite(const char* templateText, double number) {
  BpComposite composite(templateText, /*translate=*/true);
  composite.Add(BpNumber(number, BpProcedure::Count()));
  composite.Finish();
  return composite;
}

/// Installs a fresh document for one test and removes it afterwards.
class BpPivotTableTest : public ::testing::Test {
 protected:
  void SetUp() override { OutputDocument::Install(&_document); }
  void TearDown() override { OutputDocument::Install(nullptr); }
  const DeliveredTable& OnlyTable() const {
    const auto tables = _document.Tables();
    EXPECT_EQ(tables.size(), 1u);
    return *tables.front();
  }
  OutputDocument _document;
};

TEST_F(BpPivotTableTest, EqualTextsYieldTheSameChild) {
  {
    BpProcedure procedure("Quilt", 4);
    BpPivotTable pivot = procedure.PivotTable(Text("T"), Text("Quilt Table"), true);
    BpDimension rows = pivot.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, true, false);
    // Groups: same plain text twice is one group; a translated text of the same letters is not.
    BpGroup first = rows.Group(Text("Age"), true, BpPivotTable::kSortAsCreated);
    BpGroup again = rows.Group(Text("Age"), true, BpPivotTable::kSortAsCreated);
    rows.Group(BpString("Age", true), true, BpPivotTable::kSortAsCreated).Category(Text("x")).Cell(Text("3"));
    first.Category(Text("young")).Cell(Text("1"));
    again.Category(Text("young")).Cell(Text("2"));  // same cell: replaces "1"
    // Composites: equal template and equal number argument are one category.
    first.Category(Composite("Quilt Table ^1", 7)).Cell(Text("7a"));
    again.Category(Composite("Quilt Table ^1", 7)).Marker(Text("M"));
    first.Category(Composite("Quilt Table ^1", 8)).Cell(Text("8"));
  }
  const DeliveredTable& table = OnlyTable();
  const DeliveredNode& root = table.dimensions[0].root;
  ASSERT_EQ(root.children.size(), 2u);
  ASSERT_EQ(root.children[0].children.size(), 3u);  // young, Quilt Table 7, Quilt Table 8
  EXPECT_EQ(root.children[0].children[1].label, "Quilt Table 7");
  ASSERT_NE(table.FindCell({0}), nullptr);
  EXPECT_EQ(table.FindCell({0})->text, "2");
  EXPECT_EQ(table.FindCell({1})->text, "7a");
  EXPECT_EQ(table.FindCell({1})->markers, std::vector<std::string>{"M"});
  EXPECT_EQ(table.FindCell({2})->text, "8");
  EXPECT_EQ(table.FindCell({3})->text, "3");
}

TEST_F(BpPivotTableTest, CellGoesToTheCurrentCategoryOfEveryDimension) {
  {
    BpProcedure procedure("Quilt", 4);
    BpPivotTable pivot = procedure.PivotTable(Text("T"), Text("Quilt Table"), true);
    BpDimension rows = pivot.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, true, false);
    BpDimension columns = pivot.Dimension(Text("Column"), BpPivotTable::kSortAsCreated);
    columns.Position(BpDimension::kPlaceColumn, 1, true, false);
    BpCategory a = rows.Category(Text("a"));
    rows.Category(Text("b"));
    BpCategory x = columns.Category(Text("x"));
    // Written through the category object of "a", but "b" is the current row.
    a.Cell(Text("b-x"));
    columns.Category(Text("y"));
    x.Cell(Text("b-y"));
    rows.Category(Text("a"));
    x.Cell(Text("a-y"));
  }
  const DeliveredTable& table = OnlyTable();
  EXPECT_EQ(table.FindCell({1, 0})->text, "b-x");
  EXPECT_EQ(table.FindCell({1, 1})->text, "b-y");
  EXPECT_EQ(table.FindCell({0, 1})->text, "a-y");
  EXPECT_EQ(table.FindCell({0, 0}), nullptr);
}

TEST_F(BpPivotTableTest, HiddenGroupAddsNoHeaderLevelWhileItsCategoriesShow) {
  {
    BpProcedure procedure("Quilt", 4);
    BpPivotTable pivot = procedure.PivotTable(Text("T"), Text("Quilt Table"), true);
    BpDimension rows = pivot.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, true, false);
    BpDimension stats = pivot.Dimension(BpString(msg::kStatistics, true), BpPivotTable::kSortAsCreated);
    stats.Position(BpDimension::kPlaceColumn, 1, true, /*hideLabels=*/true);
    stats.Category(BpString("Count", true));
    BpGroup visible = rows.Group(Text("Sex"), true, BpPivotTable::kSortAsCreated);
    BpGroup hidden = visible.Group(Text("DummyGroup"), false, BpPivotTable::kSortAsCreated);
    hidden.Category(Text("Male")).Cell(Text("1"));
    rows.Category(Text("Male"));  // on the root: a different category from the hidden group's
    stats.Category(BpString("Count", true)).Cell(Text("2"));
  }
  const DeliveredTable& table = OnlyTable();
  EXPECT_EQ(table.dimensions[0].leafPaths[0], (std::vector<std::string>{"Sex", "Male"}));
  EXPECT_EQ(table.dimensions[0].leafPaths[1], (std::vector<std::string>{"Male"}));
  EXPECT_TRUE(table.dimensions[1].leafPaths[0].empty());  // labels hidden
}

TEST_F(BpPivotTableTest, NotesGetMarksInOrderOfFirstUseUnlessTheyBringTheirOwn) {
  {
    BpProcedure procedure("Quilt", 4);
    BpPivotTable pivot = procedure.PivotTable(Text("T"), Text("Quilt Table"), true);
    BpDimension rows = pivot.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, true, false);
    BpCategory one = rows.Category(Text("one"));
    one.Cell(Text("1"));
    one.CellNote(BpAnnotation(Text("first note")));
    pivot.Note(BpAnnotation(Text("table note")));
    pivot.CaptionNote(BpAnnotation(Text("significant"), Text("*")));
    BpCategory two = rows.Category(Text("two"));
    two.Cell(Text("2"));
    two.CellNote(BpAnnotation(Text("first note")));  // same note, same mark
    two.CellNote(BpAnnotation(Text("third note")));
  }
  const DeliveredTable& table = OnlyTable();
  EXPECT_EQ(table.FindCell({0})->noteMarks, std::vector<std::string>{"a"});
  EXPECT_EQ(table.tableNoteMarks, std::vector<std::string>{"b"});
  EXPECT_EQ(table.captionNoteMarks, std::vector<std::string>{"*"});
  EXPECT_EQ(table.FindCell({1})->noteMarks, (std::vector<std::string>{"a", "c"}));
  ASSERT_EQ(table.notes.size(), 4u);
  EXPECT_EQ(table.FindNote("c")->text, "third note");
  EXPECT_EQ(table.FindNote("*")->text, "significant");
}

TEST_F(BpPivotTableTest, MessagesStandInOrderAmongTheTables) {
  {
    BpProcedure procedure("Quilt", 4);
    BpError(BpString(msg::kUnspecifiedError, true), kBpShowAlways, kBpLevelWarning);
    { BpPivotTable pivot = procedure.PivotTable(Text("T"), Text("Quilt Table"), true); }
    BpComposite composite(msg::kUnknownKeyword, /*translate=*/true);
    composite.Add(Text("TABLE"));
    composite.Add(Text("FOO"));
    composite.Finish();
    BpError(composite, kBpShowAlways, kBpLevelFatal);
  }
  const auto items = _document.Items();
  ASSERT_EQ(items.size(), 1u);
  const auto children = items[0]->GetChildren();
  ASSERT_EQ(children.size(), 3u);
  EXPECT_EQ(children[0]->GetKind(), OutputItem::kMessage);
  EXPECT_EQ(children[1]->GetKind(), OutputItem::kTable);
  EXPECT_EQ(children[2]->GetLevel(), kBpLevelFatal);
  EXPECT_EQ(children[2]->GetKey(), msg::kUnknownKeyword);
  EXPECT_EQ(children[2]->GetArguments(), (std::vector<std::string>{"TABLE", "FOO"}));
  EXPECT_EQ(children[2]->GetText(), "Subcommand TABLE: unknown keyword \"FOO\".");
  EXPECT_TRUE(_document.HasMessageAtLeast(kBpLevelFatal));
  EXPECT_EQ(_document.Messages().size(), 2u);
}

TEST_F(BpPivotTableTest, EachSplitGroupGetsItsOwnHeading) {
  {
    BpProcedure procedure("Quilt", 4);
    for (const char* region : {"North", "South"}) {
      procedure.SplitChange();
      _document.SetSplitPairs({{"Region", region}});
      BpPivotTable pivot =
          procedure.PivotTable(Text(std::string("table in ") + region), Text("Quilt Table"), true);
    }
    procedure.SplitChange();  // after the last group: nothing follows, so no heading
  }
  const auto groups = _document.Items()[0]->GetChildren();
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups[0]->GetText(), "Region: North");
  EXPECT_EQ(groups[1]->GetText(), "Region: South");
  ASSERT_EQ(groups[1]->GetChildren().size(), 1u);
  EXPECT_EQ(groups[1]->GetChildren()[0]->GetTable()->title, "table in South");
}

TEST_F(BpPivotTableTest, FirstGroupNamedByItsPairsNeedsNoSplitChange) {
  _document.SetSplitPairs({{"Stale", "pair"}});  // left from an earlier command
  {
    BpProcedure procedure("Quilt", 4);
    _document.SetSplitPairs({{"Region", "North"}, {"Wave", "2"}});
    { BpPivotTable first = procedure.PivotTable(Text("first group"), Text("Quilt Table"), true); }
    procedure.SplitChange();
    _document.SetSplitPairs({});
    { BpPivotTable second = procedure.PivotTable(Text("second group"), Text("Quilt Table"), true); }
  }
  const auto groups = _document.Items()[0]->GetChildren();
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups[0]->GetText(), "Region: North, Wave: 2");
  EXPECT_EQ(groups[1]->GetText(), "Split group 2");  // no pairs were set for it
}

TEST_F(BpPivotTableTest, FormatFamilies) {
  // Counts without decimals, percentages with one and a percent sign, significance with three.
  EXPECT_EQ(BpNumber(1234, BpProcedure::Count()).GetText(), "1234");
  EXPECT_EQ(BpNumber(12.345, BpProcedure::Percent()).GetText(), "12.3%");
  EXPECT_EQ(BpNumber(0.04951, BpProcedure::Significance()).GetText(), "0.050");
  EXPECT_EQ(BpNumber(2.5, BpProcedure::GeneralStat()).GetText(), "2.50");
  EXPECT_EQ(BpNumber(-1.7976931348623157e+308, BpProcedure::Count()).GetText(), ".");
  EXPECT_FALSE(BpNumber(1.0 / 0.0, BpProcedure::Count()).HasNumber());
}

TEST_F(BpPivotTableTest, DumpMatchesGolden) {
  {
    BpProcedure procedure("Quilt", 4);
    BpHeading heading = procedure.Heading(Text("Table 1"));
    BpPivotTable pivot = heading.PivotTable(Text("Main"), BpString(msg::kQuiltTable, true), true);
    pivot.SetProperty(BpPivotTable::kPropertyMergedTitle, Text("Main"));
    pivot.Caption(Text("caption"));
    pivot.CornerText(Text("corner"));
    pivot.MinDataColumnWidth(40);
    pivot.MaxDataColumnWidth(72);
    BpDimension rows = pivot.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, true, false);
    BpGroup hidden = rows.Group(Text("DummyGroup 1"), false, BpPivotTable::kSortAsCreated);
    BpCategory cell = hidden.Category(Text("a"));
    cell.Cell(BpNumber(0.5, BpProcedure::Percent()));
    cell.Marker(Text("A"));
    cell.CellNote(BpAnnotation(Text("note")));
  }
  std::ostringstream out;
  _document.Dump(out);
  EXPECT_TRUE(MatchesGoldenFile("output/document-dump.txt", out.str()));
}

}  // namespace
