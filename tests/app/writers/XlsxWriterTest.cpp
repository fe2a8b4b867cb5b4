// XlsxWriterTest.cpp - the workbook writer over the sample documents and over labels that are
// not UTF-8. The workbooks' contents are read back by tests/python/test_xlsx_workbook.py, which
// runs this test with QUILT_WORKBOOK_DIR set so that the files are kept there.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "SampleTables.h"
#include "host/output/BpCategory.h"
#include "host/output/BpDimension.h"
#include "host/output/BpNumber.h"
#include "host/output/BpPivotTable.h"
#include "host/output/BpProcedure.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "host/output/OutputDocument.h"
#include "writers/OutputWriter.h"

namespace {

std::string Render(const OutputDocument& document, const std::string& format) {
  std::ostringstream out;
  OutputWriter::Create(format, {})->Write(document, out);
  EXPECT_TRUE(out.good()) << format;
  return out.str();
}

void Keep(const std::string& name, const std::string& bytes) {
  const char* directory = std::getenv("QUILT_WORKBOOK_DIR");
  if (directory == nullptr) return;
  std::ofstream file(std::filesystem::path(directory) / name, std::ios::binary);
  file << bytes;
  ASSERT_TRUE(file.good()) << name;
}

// A title with a byte that starts no character and a control byte, and a category label cut
// inside a two-byte character.
void BuildBadBytesDocument(OutputDocument& document) {
  OutputDocument::Install(&document);
  {
    BpProcedure procedure("Quilt", 4);
    BpPivotTable pivot =
        procedure.PivotTable(BpString("Brand\xff use\x01", false), BpString(msg::kQuiltTable, true), true);
    BpDimension rows = pivot.Dimension(BpString("Row", false), BpPivotTable::kSortAsCreated);
    rows.Position(BpDimension::kPlaceRow, 1, true, false);
    rows.Category(BpString("caf\xc3", false)).Cell(BpNumber(7, BpProcedure::Count()));
  }
  OutputDocument::Install(nullptr);
}

}  // namespace

TEST(XlsxWriter, WritesSampleDocument) {
  struct Case {
    const char* name;
    void (*build)(OutputDocument&);
  };
  for (const Case& sample : {Case{"sample", BuildSampleDocument}, Case{"deep", BuildEmptyAndDeepDocument},
                             Case{"bad-bytes", BuildBadBytesDocument}}) {
    OutputDocument document;
    sample.build(document);
    const std::string workbook = Render(document, "xlsx");
    EXPECT_EQ(workbook.rfind("PK\x03\x04", 0), 0u)
        << sample.name << ": not a zip archive, as every workbook is";
    Keep(std::string(sample.name) + ".xlsx", workbook);
    // The JSON writer stands as the reference only for text that is UTF-8 already.
    if (std::string(sample.name) != "bad-bytes")
      Keep(std::string(sample.name) + ".json", Render(document, "json"));
  }
}
