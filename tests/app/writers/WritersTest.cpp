// WritersTest.cpp - every writer against golden files, and one
// table through all writers
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "GoldenFile.h"
#include "SampleTables.h"
#include "host/Utf8Text.h"
#include "host/output/BpCategory.h"
#include "host/output/BpDimension.h"
#include "host/output/BpError.h"
#include "host/output/BpGroup.h"
#include "host/output/BpNumber.h"
#include "host/output/BpPivotTable.h"
#include "host/output/BpProcedure.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "host/output/OutputDocument.h"
#include "writers/OutputWriter.h"

namespace {

std::string Render(const OutputDocument& document, const std::string& format, WriterOptions options = {}) {
  std::unique_ptr<OutputWriter> writer = OutputWriter::Create(format, options);
  EXPECT_NE(writer, nullptr);
  std::ostringstream out;
  writer->Write(document, out);
  return out.str();
}

}  // namespace

TEST(OutputWriter, CreateKnowsEachFormatAndRejectsOthers) {
  EXPECT_NE(OutputWriter::Create("text", {}), nullptr);
  EXPECT_NE(OutputWriter::Create("json", {}), nullptr);
  EXPECT_NE(OutputWriter::Create("html", {}), nullptr);
  EXPECT_EQ(OutputWriter::Create("pdf", {}), nullptr);
}

// The sample document in each format, and the text in ASCII: every label, number, marker and
// note of it is pinned by the golden files, worked out by hand in SampleTables.cpp.
TEST(OutputWriter, SampleDocumentMatchesGoldenInEveryFormat) {
  OutputDocument document;
  BuildSampleDocument(document);
  WriterOptions ascii;
  ascii.ascii = true;
  EXPECT_TRUE(MatchesGoldenFile("output/sample.txt", Render(document, "text")));
  EXPECT_TRUE(MatchesGoldenFile("output/sample-ascii.txt", Render(document, "text", ascii)));
  EXPECT_TRUE(MatchesGoldenFile("output/sample.html", Render(document, "html")));
  EXPECT_TRUE(MatchesGoldenFile("output/sample.json", Render(document, "json")));
  // The JSON tree keeps the hidden group (marked not shown) and the drawn formats never show
  // it; a destroyed table and a category without cells appear in no format.
  for (const char* format : {"text", "html", "json"}) {
    const std::string output = Render(document, format);
    EXPECT_EQ(output.find("Other"), std::string::npos) << format;
    EXPECT_EQ(output.find("Never shown"), std::string::npos) << format;
    EXPECT_EQ(output.find("DummyGroup") == std::string::npos, std::string(format) != "json") << format;
  }
}

TEST(TextWriter, WideTableIsCutIntoPanelsThatRepeatRowHeaders) {
  OutputDocument document;
  BuildWideDocument(document, 12);
  WriterOptions options;
  options.width = 80;
  options.ascii = true;
  const std::string text = Render(document, "text", options);
  EXPECT_TRUE(MatchesGoldenFile("output/wide-panels.txt", text));
  std::istringstream lines(text);
  std::string line;
  int panels = 0;
  int rowHeaderRepeats = 0;
  while (std::getline(lines, line)) {
    EXPECT_LE(static_cast<int>(line.size()), 80) << line;
    if (line.rfind("(columns ", 0) == 0) ++panels;
    if (line.find("New customers") != std::string::npos) ++rowHeaderRepeats;
  }
  EXPECT_GT(panels, 1);
  EXPECT_EQ(rowHeaderRepeats, panels);
  // Cell values name their place (1000 * row + column): the last column's value shows.
  EXPECT_NE(text.find("2012"), std::string::npos);
}

// Three groups of three statistics; the width holds four data columns beside the row
// labels, so a panel that filled up would cut the second group. Each panel must instead
// hold whole groups, so that every group label keeps the width of its columns.
TEST(TextWriter, PanelsEndAtGroupBoundaries) {
  OutputDocument document;
  OutputDocument::Install(&document);
  {
    BpProcedure procedure("Quilt", 4);
    BpPivotTable pivot = procedure.PivotTable(BpString("Groups", false), BpString(msg::kQuiltTable, true), true);
    BpDimension rows = pivot.Dimension(BpString("Row", true), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, true, false);
    BpDimension columns = pivot.Dimension(BpString("Column", true), BpPivotTable::kSortAsCreated);
    columns.Position(BpDimension::kPlaceColumn, 1, true, false);
    rows.Category(BpString("Only row", false));
    for (const char* group : {"Northern region", "Southern region", "Western region"}) {
      BpGroup named = columns.Group(BpString(group, false), true, BpPivotTable::kSortAsCreated);
      for (const char* statistic : {"Count", "Mean", "Sum"}) {
        named.Category(BpString(statistic, false)).Cell(BpNumber(12345, BpProcedure::Count()));
      }
    }
  }
  OutputDocument::Install(nullptr);
  WriterOptions options;
  options.width = 50;
  options.ascii = true;
  const std::string text = Render(document, "text", options);
  // Each panel starts at a group's first column: 1, 4 or 7, never in between.
  std::istringstream lines(text);
  std::string line;
  int panels = 0;
  while (std::getline(lines, line)) {
    if (line.rfind("(columns ", 0) != 0) continue;
    ++panels;
    const int first = std::stoi(line.substr(9));
    EXPECT_EQ((first - 1) % 3, 0) << line;
  }
  EXPECT_GT(panels, 1) << text;
  for (const char* group : {"Northern region", "Southern region", "Western region"}) {
    EXPECT_NE(text.find(group), std::string::npos) << group << " is shown whole\n" << text;
  }
}

// The empty table shows its title and one line in place of a box. The deep table's row labels
// wrap so that three of its six year columns stand beside them, where at their full width
// (four levels of up to 30 characters) only one would fit the 80 characters.
TEST(TextWriter, EmptyTableAndDeepRowHeadersMatchGolden) {
  OutputDocument document;
  BuildEmptyAndDeepDocument(document);
  WriterOptions options;
  options.width = 80;
  options.ascii = true;
  const std::string text = Render(document, "text", options);
  EXPECT_TRUE(MatchesGoldenFile("output/empty-and-deep.txt", text));
  EXPECT_NE(text.find("(columns 1-3 of 6)"), std::string::npos) << text;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) EXPECT_LE(static_cast<int>(line.size()), 80) << line;
}

// Even a title the outline carries (hidden) names a table without cells, in every format.
TEST(OutputWriter, TableWithoutAnyCellStillShowsItsTitle) {
  OutputDocument document;
  OutputDocument::Install(&document);
  {
    BpProcedure procedure("Quilt", 4);
    BpPivotTable pivot =
        procedure.PivotTable(BpString("Nothing here", false), BpString(msg::kQuiltTable, true), true);
    pivot.HideTitle();
    BpDimension rows = pivot.Dimension(BpString("Row", false), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, true, false);
    rows.Category(BpString("never written", false));
  }
  OutputDocument::Install(nullptr);
  for (const char* format : {"text", "html", "json"}) {
    const std::string output = Render(document, format);
    EXPECT_NE(output.find("Nothing here"), std::string::npos) << format;
    EXPECT_EQ(output.find("never written"), std::string::npos) << format;
    if (std::string(format) != "json") {
      EXPECT_NE(output.find("(no cases)"), std::string::npos) << format;
    }
  }
}

TEST(OutputWriter, LabelsThatAreNotUtf8StillGiveValidOutput) {
  // Labels reach the writers from data and commands; whatever their bytes (a Latin-1
  // letter, a cut sequence, a NUL, a terminal escape, a carriage return), each writer's
  // output must be valid UTF-8 without stray controls, and JSON must still parse.
  const std::string bad = std::string("caf\xE9 \xC3 a\0b \x1B[2J \r", 17);
  OutputDocument document;
  OutputDocument::Install(&document);
  {
    BpProcedure procedure("Quilt", 4);
    BpError(BpString("message " + bad, false), kBpShowAlways, kBpLevelWarning);
    BpPivotTable pivot =
        procedure.PivotTable(BpString("title " + bad, false), BpString(msg::kQuiltTable, true), true);
    BpDimension rows = pivot.Dimension(BpString("dimension " + bad, false), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, false, false);
    rows.Category(BpString("row " + bad, false)).Cell(BpString("cell " + bad, false));
  }
  OutputDocument::Install(nullptr);
  for (const char* format : {"text", "html", "json"}) {
    const std::string output = Render(document, format);
    EXPECT_EQ(Utf8Text::FindInvalidByte(output), Utf8Text::kAllValid) << format;
    EXPECT_EQ(output.find_first_of(std::string("\r\x1B", 2)), std::string::npos) << format;
    EXPECT_NE(output.find("caf\xEF\xBF\xBD"), std::string::npos) << format;  // "caf" and U+FFFD
  }
  EXPECT_TRUE(nlohmann::json::accept(Render(document, "json")));
}
