// SampleTables.cpp - the shared sample documents of the writer tests
#include "SampleTables.h"

#include <string>

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

BpString Text(const char* text) {
  return BpString(text, /*translate=*/false);
}

}  // namespace

void BuildSampleDocument(OutputDocument& document) {
  OutputDocument::Install(&document);
  {
    BpProcedure procedure("Quilt", 4);
    BpError(BpString(msg::kSplitsAsRowsNotProcessed, true), kBpShowAlways, kBpLevelWarning);
    {
      BpPivotTable pivot =
          procedure.PivotTable(Text("Brand use by region"), BpString(msg::kQuiltTable, true), true);
      pivot.Caption(Text("Survey wave 3"));
      pivot.CornerText(Text("Region"));
      pivot.Note(BpAnnotation(Text("Weighted by design weight.")));
      BpDimension stats = pivot.Dimension(BpString(msg::kStatistics, true), BpPivotTable::kSortAsCreated);
      stats.Position(BpDimension::kPlaceColumn, 1, true, false);
      BpDimension rows = pivot.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
      rows.Position(BpDimension::kPlaceRow, 1, true, false);
      BpDimension columns = pivot.Dimension(Text("Column"), BpPivotTable::kSortAsCreated);
      columns.Position(BpDimension::kPlaceColumn, 2, true, false);
      BpDimension layers = pivot.Dimension(Text("Layer"), BpPivotTable::kSortAsCreated);
      layers.Position(BpDimension::kPlaceLayer, 1, true, false);

      // Axes first, in the order a reader sees them; "Other" never gets a cell.
      BpGroup region = rows.Group(Text("Region"), true, BpPivotTable::kSortAsCreated);
      region.Category(Text("North"));
      region.Category(Text("South"));
      region.Category(Text("Other"));
      BpGroup totals = rows.Group(Text("DummyGroup"), false, BpPivotTable::kSortAsCreated);
      totals.Category(Text("Total"));
      BpGroup gender = columns.Group(Text("Gender"), true, BpPivotTable::kSortAsCreated);
      gender.Category(Text("Male"));
      gender.Category(Text("Female"));
      stats.Category(BpString("Count", true));
      stats.Category(BpString("Column N %", true));
      BpGroup wave = layers.Group(Text("Wave"), true, BpPivotTable::kSortAsCreated);
      wave.Category(Text("2024"));
      wave.Category(Text("2025"));

      // counts[layer][row][column], column shares computed by hand per layer and gender:
      // 2024: North 30/20, South 10/60, Total 40/80 -> Male 75.0% 25.0%, Female 25.0% 75.0%
      // 2025: North 12/18, South 28/2,  Total 40/20 -> Male 30.0% 70.0%, Female 90.0% 10.0%
      const char* waves[] = {"2024", "2025"};
      const char* places[] = {"North", "South", "Total"};
      const char* genders[] = {"Male", "Female"};
      const double counts[2][3][2] = {{{30, 20}, {10, 60}, {40, 80}}, {{12, 18}, {28, 2}, {40, 20}}};
      for (int layerIndex = 0; layerIndex < 2; ++layerIndex) {
        wave.Category(Text(waves[layerIndex]));
        for (int rowIndex = 0; rowIndex < 3; ++rowIndex) {
          BpGroup rowGroup = rowIndex < 2 ? region : totals;
          rowGroup.Category(Text(places[rowIndex]));
          for (int columnIndex = 0; columnIndex < 2; ++columnIndex) {
            gender.Category(Text(genders[columnIndex]));
            const double count = counts[layerIndex][rowIndex][columnIndex];
            const double total = counts[layerIndex][2][columnIndex];
            stats.Category(BpString("Count", true)).Cell(BpNumber(count, BpProcedure::Count()));
            BpCategory share = stats.Category(BpString("Column N %", true));
            share.Cell(BpNumber(100.0 * count / total, BpProcedure::Percent()));
            if (layerIndex == 0 && rowIndex == 0 && columnIndex == 0) {
              share.Marker(Text("B"));
              share.CellNote(BpAnnotation(Text("Fewer than 50 cases.")));
            }
          }
        }
      }
    }
    {
      BpPivotTable cancelled = procedure.PivotTable(Text("Never shown"), Text("Quilt Table"), true);
      BpDimension rows = cancelled.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
      rows.Position(BpDimension::kPlaceRow, 1, true, false);
      rows.Category(Text("A")).Cell(BpNumber(1, BpProcedure::Count()));
      cancelled.Destroy();
    }
    {
      BpComposite title(msg::kQuiltTableNumbered, true);
      title.Add(BpNumber(3, BpProcedure::Count()));
      title.Finish();
      BpPivotTable pivot = procedure.PivotTable(title, BpString(msg::kQuiltTable, true), true);
      pivot.HideTitle();
      BpDimension rows = pivot.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
      rows.Position(BpDimension::kPlaceRow, 1, true, false);
      BpDimension columns = pivot.Dimension(Text("Column"), BpPivotTable::kSortAsCreated);
      columns.Position(BpDimension::kPlaceColumn, 1, true, false);
      BpGroup age = rows.Group(Text("Age group"), true, BpPivotTable::kSortAsCreated);
      columns.Category(BpString("Mean", true));
      // Means by hand: 18-34: (20+30)/2 = 25; 35+: (40+60)/2 = 50; a missing mean shows ".".
      age.Category(Text("18-34"));
      columns.Category(BpString("Mean", true)).Cell(BpNumber(25.0, BpProcedure::GeneralStat()));
      age.Category(Text("35+"));
      columns.Category(BpString("Mean", true)).Cell(BpNumber(50.0, BpProcedure::GeneralStat()));
      age.Category(Text("Unknown"));
      columns.Category(BpString("Mean", true))
          .Cell(BpNumber(-1.7976931348623157e+308, BpProcedure::GeneralStat()));
    }
  }
  OutputDocument::Install(nullptr);
}

void BuildWideDocument(OutputDocument& document, int columnCount) {
  OutputDocument::Install(&document);
  {
    BpProcedure procedure("Quilt", 4);
    BpPivotTable pivot = procedure.PivotTable(Text("Ratings of every brand"), Text("Quilt Table"), true);
    BpDimension rows = pivot.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, true, false);
    BpDimension columns = pivot.Dimension(Text("Column"), BpPivotTable::kSortAsCreated);
    columns.Position(BpDimension::kPlaceColumn, 1, true, false);
    BpGroup brand = columns.Group(Text("Brand rated"), true, BpPivotTable::kSortAsCreated);
    for (int rowIndex = 1; rowIndex <= 2; ++rowIndex) {
      rows.Category(Text(rowIndex == 1 ? "Customers with a long relationship" : "New customers"));
      for (int columnIndex = 1; columnIndex <= columnCount; ++columnIndex) {
        const std::string label = "Brand number " + std::to_string(columnIndex);
        // value = 1000 * row + column, so each cell names its own place.
        brand.Category(Text(label.c_str()))
            .Cell(BpNumber(1000.0 * rowIndex + columnIndex, BpProcedure::Count()));
      }
    }
  }
  OutputDocument::Install(nullptr);
}

void BuildEmptyAndDeepDocument(OutputDocument& document) {
  OutputDocument::Install(&document);
  {
    BpProcedure procedure("Quilt", 4);
    {
      BpPivotTable pivot = procedure.PivotTable(Text("Quilt Table 1"), Text("Quilt Table"), true);
      pivot.HideTitle();
      BpDimension rows = pivot.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
      rows.Position(BpDimension::kPlaceRow, 1, true, false);
      BpDimension columns = pivot.Dimension(Text("Column"), BpPivotTable::kSortAsCreated);
      columns.Position(BpDimension::kPlaceColumn, 1, true, false);
    }
    BpPivotTable pivot = procedure.PivotTable(Text("Purchases by year"), Text("Quilt Table"), true);
    BpDimension rows = pivot.Dimension(Text("Row"), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, true, false);
    BpDimension columns = pivot.Dimension(Text("Column"), BpPivotTable::kSortAsCreated);
    columns.Position(BpDimension::kPlaceColumn, 1, true, false);
    BpGroup region =
        rows.Group(Text("Region of residence of the respondent"), true, BpPivotTable::kSortAsCreated);
    int rowIndex = 0;
    for (const char* area : {"North East of the country", "South West of the country"}) {
      BpGroup age =
          region.Group(Text(area), true, BpPivotTable::kSortAsCreated)
              .Group(Text("Age group at the time of the interview"), true, BpPivotTable::kSortAsCreated);
      for (const char* years : {"Eighteen to thirty-four years", "Thirty-five years or older"}) {
        ++rowIndex;
        for (int year = 2019; year <= 2024; ++year) {
          age.Category(Text(years));
          // value = 10 * row + column, so each cell names its own place.
          columns.Category(Text(std::to_string(year).c_str()))
              .Cell(BpNumber(10.0 * rowIndex + (year - 2018), BpProcedure::Count()));
        }
      }
    }
  }
  OutputDocument::Install(nullptr);
}
