// DriverRunFixture.h - installs a data set, an output document and the table dump for one test, and runs whole commands
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "TableDumpChannel.h"
#include "host/data/ActiveDataSet.h"
#include "host/data/DatasetLoader.h"
#include "host/data/HostRecords.h"
#include "host/output/OutputDocument.h"
#include "host/tokens/Lexer.h"
#include "quilt.h"

/// Runs commands through the procedure's entry as the program does, on a data set of the
/// test's own, with the table dump switched on so that a test sees the trees of each table
/// after each split group; everything installed is put back after the test.
class DriverRunFixture : public ::testing::Test {
 protected:
  void TearDown() override {
    TableDumpChannel::Install(nullptr);
    OutputDocument::Install(nullptr);
    ActiveDataSet::Clear();
    ResetHostRecords();
  }

  void Install(const std::string& csv, const std::string& dictionary = "", DatasetLoadOptions options = {}) {
    ActiveDataSet::Install(DatasetLoader::LoadText(csv, dictionary, options));
    SetUpHostRecords(*ActiveDataSet::Get(), /*controlPackage=*/false);
    OutputDocument::Install(&_document);
    TableDumpChannel::Install(&_dump);
  }

  void Run(const std::string& text) {
    LexedCommand command = Lexer::Lex(text);
    quilt_(&command);
  }

  OutputDocument _document;
  std::ostringstream _dump;
};
