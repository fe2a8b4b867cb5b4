// CubeDispatcherTest.cpp - a table declared to the engine, fed by the data pass, and its warnings
#include "CubeDispatcher.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "DriverRunFixture.h"
#include "host/output/BpError.h"
#include "host/output/MessageKeys.h"

namespace {

// Only value 1 of g is labelled. A labelled value is a category even without cases (empty
// categories are included by default), while an unlabelled value (shown as '' in the dump)
// is a category only where the engine found it.
constexpr const char* kLabelledG = R"({"variables": [{"name": "g", "values": {"1": "one"}}]})";

/// Whole commands run through the entry, seen through the table dump (which categories the
/// engine found after each split group) and what was reported.
class DispatcherRun : public DriverRunFixture {
 protected:
  /// The category labels of the final row tree of each dumped table, in order.
  std::vector<std::vector<std::string>> FinalRowCategories() const {
    std::vector<std::vector<std::string>> tables;
    std::istringstream lines(_dump.str());
    std::string line;
    bool inRows = false;
    while (std::getline(lines, line)) {
      if (line.rfind("Final rows:", 0) == 0) {
        tables.emplace_back();
        inRows = true;
      } else if (line.rfind("Final ", 0) == 0 || line.rfind("table ", 0) == 0) {
        inRows = false;
      } else if (inRows) {
        std::size_t open = line.find("Category '");
        if (open == std::string::npos) continue;
        open += 10;
        tables.back().push_back(line.substr(open, line.find('\'', open) - open));
      }
    }
    return tables;
  }

  std::vector<const OutputItem*> Warnings() const {
    std::vector<const OutputItem*> warnings;
    for (const OutputItem* message : _document.Messages()) {
      if (message->GetLevel() == kBpLevelWarning) warnings.push_back(message);
    }
    return warnings;
  }

  std::string DumpText() const { return _dump.str(); }
};

// Categories 2, 3 and 4 are held only by cases whose weight is zero, negative or missing:
// weighted, the driver must not hand those cases to the engine, so only category 1 is
// found; unweighted, every case counts.
TEST_F(DispatcherRun, CasesWithoutPositiveWeightNeverReachTheEngine) {
  for (const bool weighted : {true, false}) {
    SCOPED_TRACE(weighted ? "weighted" : "unweighted");
    DatasetLoadOptions options;
    if (weighted) options.weightVariable = "wt";
    Install("g,wt\n1,1\n1,2.5\n2,0\n3,-1\n4,\n", kLabelledG, options);
    _dump.str("");
    Run("QUILT /TABLE g");
    const auto tables = FinalRowCategories();
    ASSERT_EQ(tables.size(), 1u);
    const std::vector<std::string> expected =
        weighted ? std::vector<std::string>{"one"} : std::vector<std::string>{"one", "", "", ""};
    EXPECT_EQ(tables[0], expected);
    ActiveDataSet::Clear();
    ResetHostRecords();
  }
}

struct WarningCase {
  const char* name;
  const char* csv;
  const char* command;
  const char* key;
  std::vector<std::string> arguments;
};

class DispatcherWarnings : public DispatcherRun, public ::testing::WithParamInterface<WarningCase> {};

TEST_P(DispatcherWarnings, ReportsTheTableWarningWithItsPlaceholders) {
  const WarningCase& param = GetParam();
  Install(param.csv);
  Run(param.command);
  const auto warnings = Warnings();
  ASSERT_EQ(warnings.size(), 1u) << DumpText();
  EXPECT_EQ(warnings[0]->GetKey(), param.key);
  EXPECT_EQ(warnings[0]->GetArguments(), param.arguments);
  // The table is still built, empty or not.
  EXPECT_NE(DumpText().find("table 1"), std::string::npos);
}

// h is missing in every case, so it has no category; the table is named by its number
// (counted from 1) or by its title when it has one.
INSTANTIATE_TEST_SUITE_P(
    Tables, DispatcherWarnings,
    ::testing::Values(
        WarningCase{"RemovedVariableByNumber", "g,h\n1,\n2,\n", "QUILT /TABLE g /TABLE g BY h",
                    msg::kVariablesRemoved, {"h", "2"}},
        WarningCase{"RemovedVariableByTitle", "g,h\n1,\n2,\n", "QUILT /TABLE g BY h /TITLES TITLE='Brand by age'",
                    msg::kVariablesRemoved, {"h", "Brand by age"}}),
    [](const ::testing::TestParamInfo<WarningCase>& info) { return info.param.name; });

// Wave 1 finds value 2 besides the labelled 1; wave 2 finds 3, 4 and 5: each group starts clean.
TEST_F(DispatcherRun, SeparateSplitGroupsEachGetTheirOwnCategories) {
  DatasetLoadOptions options;
  options.splitVariables = {"wave"};
  options.splitLayout = "separate";
  Install("wave,g\n1,1\n1,2\n2,3\n2,4\n2,5\n", kLabelledG, options);
  Run("QUILT /TABLE g");
  const auto tables = FinalRowCategories();
  ASSERT_EQ(tables.size(), 2u);
  EXPECT_EQ(tables[0], (std::vector<std::string>{"one", ""}));
  EXPECT_EQ(tables[1], (std::vector<std::string>{"one", "", "", ""}));
}

// A variable that stands in two sub-tables is one engine variable: both column sub-tables
// find the row categories, which they could not if the second cube held a fresh object.
TEST_F(DispatcherRun, SharedRowVariableServesBothSubTables) {
  Install("g,a,b\n2,1,1\n3,1,2\n", kLabelledG);
  Run("QUILT /TABLE g BY a + b");
  const auto tables = FinalRowCategories();
  ASSERT_EQ(tables.size(), 1u);
  EXPECT_EQ(tables[0], (std::vector<std::string>{"one", "", ""}));
  EXPECT_TRUE(Warnings().empty());
}

}  // namespace
