// DeliveredTablesSupport.h - a fourteen-case survey written to a scratch folder, one command run over it, and cell lookup in the JSON
//
// The data are small on purpose: every number a delivered table shows can be worked out by
// hand from the rows below, and the tests say how beside each expectation.
#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace delivered {

/// The rows, one per case: region gender grp score q wt wave.
///
///  #  region gender grp score  q  wt  wave
///  1  1 North  1 M  10    2.0  1  1.0  1
///  2  1 North  1 M  20    4.0  2  2.0  1
///  3  1 North  2 F  10   -3.0  1  1.0  1
///  4  2 South  1 M  10    6.0  9  0.5  1
///  5  2 South  2 F  20    1.0  2  1.0  1
///  6  3 East   1 M  10   -8.0  2  1.0  1
///  7  3 East   1 M  20   -2.0  1  1.5  1
///  8  1 North  1 M  10    0.0  2  1.0  2
///  9  1 North  2 F  20    5.0  1  2.0  2
/// 10  1 North  2 F  10    7.0  9  1.0  2
/// 11  2 South  2 F  20    3.0  1  1.0  2
/// 12  2 South  1 M  10    2.0  1  0.5  2
/// 13  2 South  2 F  20   -1.0  2  1.0  2
/// 14  3 East   1 M  10   -4.0  1  1.0  2
///
/// region 4 "West" is labelled but never occurs; grp has neither a variable label nor value
/// labels; q = 9 "No answer" is user-missing; score is a scale variable with one decimal.
inline const char* kSurveyCsv =
    "region,gender,grp,score,q,wt,wave\n"
    "1,1,10,2.0,1,1.0,1\n"
    "1,1,20,4.0,2,2.0,1\n"
    "1,2,10,-3.0,1,1.0,1\n"
    "2,1,10,6.0,9,0.5,1\n"
    "2,2,20,1.0,2,1.0,1\n"
    "3,1,10,-8.0,2,1.0,1\n"
    "3,1,20,-2.0,1,1.5,1\n"
    "1,1,10,0.0,2,1.0,2\n"
    "1,2,20,5.0,1,2.0,2\n"
    "1,2,10,7.0,9,1.0,2\n"
    "2,2,20,3.0,1,1.0,2\n"
    "2,1,10,2.0,1,0.5,2\n"
    "2,2,20,-1.0,2,1.0,2\n"
    "3,1,10,-4.0,1,1.0,2\n";

inline const char* kSurveyDictionary = R"({
  "variables": [
    {"name": "region", "label": "Region", "format": "F1.0", "measure": "nominal",
     "values": {"1": "North", "2": "South", "3": "East", "4": "West"}},
    {"name": "gender", "label": "Gender", "format": "F1.0", "measure": "nominal",
     "values": {"1": "Male", "2": "Female"}},
    {"name": "grp", "format": "F2.0", "measure": "nominal"},
    {"name": "score", "label": "Score", "format": "F5.1", "measure": "scale"},
    {"name": "q", "label": "Rating", "format": "F1.0", "measure": "ordinal",
     "values": {"1": "Low", "2": "High", "9": "No answer"}, "missing": {"values": [9]}},
    {"name": "wt", "label": "Weight", "format": "F4.1", "measure": "scale"},
    {"name": "wave", "label": "Wave", "format": "F1.0", "measure": "nominal",
     "values": {"1": "First", "2": "Second"}}
  ]
})";

/// How one command is run: the command and the program options that differ from the default.
struct RunSettings {
  RunSettings(std::string commandText, std::string weight = {}, std::vector<std::string> split = {},
              std::string layout = {}, std::string dictionaryMembers = {})
      : command(std::move(commandText)),
        weightVariable(std::move(weight)),
        splitVariables(std::move(split)),
        splitLayout(std::move(layout)),
        extraDictionaryMembers(std::move(dictionaryMembers)) {}

  std::string command;
  std::string weightVariable;               // empty: unweighted
  std::vector<std::string> splitVariables;  // empty: no split groups
  std::string splitLayout;                  // empty: separate
  std::string extraDictionaryMembers;       // JSON members added to the dictionary, e.g. "weight": "wt"
  std::string dataPath;                     // empty: the fourteen-case survey; else this CSV file
  bool controlPackage = false;              // run as the control package front end
};

/// The bundled two-thousand-case survey (examples/survey.csv), for tests whose differences
/// need more cases than the small survey has.
RunSettings OnBundledSurvey(std::string command, bool controlPackage = false);

/// Writes the survey to a fresh scratch folder, runs `settings` on it (or on the data file
/// they name) in `format` ("text" or "json"), expects exit status 0 and returns what the
/// program wrote.
std::string RunOnSurvey(const RunSettings& settings, const std::string& format);

/// One cell looked for by the labels a reader sees around it, outermost first.
struct CellPath {
  std::vector<std::string> row;
  std::vector<std::string> column;
  std::vector<std::string> layer;
};

/// Every table item of a JSON document, in order, headings walked through.
std::vector<nlohmann::json> TablesOf(const nlohmann::json& document);

/// The texts of all cells of `table` at `path`, in the order the table lists them. Usually
/// one; several when equal labels stand apart only through hidden grouping.
std::vector<std::string> CellTexts(const nlohmann::json& table, const CellPath& path);

/// One command of a golden test: its name, also the golden files' name, and how it runs.
struct GoldenCase {
  std::string name;
  RunSettings settings;
};

/// The test name of a golden case: its name with "-" as "_".
std::string GoldenTestName(const ::testing::TestParamInfo<GoldenCase>& info);

/// Runs `golden` in both writers and compares with `folder`/NAME.txt and NAME.json.
void ExpectGoldens(const GoldenCase& golden, const std::string& folder);

/// One cell of a golden case, found by its labels in the JSON output, and the text it must
/// show. `table` counts the delivered tables of the run from 0.
struct CellCase {
  std::string goldenCase;
  int table;
  CellPath path;
  std::vector<std::string> expected;  // every cell at that path, in table order: none where the
                                      // category is left out, several where only hidden
                                      // groups or a hidden statistics dimension tell them apart
};

/// The case called `name`; a test failure when there is none.
const GoldenCase& FindGoldenCase(std::span<const GoldenCase> cases, const std::string& name);

/// Runs the golden case of each cell and expects the cell's texts.
void ExpectCellTexts(std::span<const GoldenCase> cases, std::span<const CellCase> cells);

/// The golden cases and key cells of one file of tests/tablerenderer/cases/. Each case starts
/// with a line "== NAME" and its settings (weight=VARIABLE, split=V1,V2, layout=separate or
/// layered, data=bundled for examples/survey.csv, control=yes for the control package front
/// end), then the command on one line, then optionally "dictionary MEMBERS" (JSON members
/// added to the small survey's dictionary) and the case's key cells, each a line
/// "cell TABLE, [ROW, COLUMN, LAYER], EXPECTED" whose lists are JSON arrays of labels and texts.
/// Lines starting with "#" say where the numbers come from.
struct CaseFile {
  std::vector<GoldenCase> cases;
  std::vector<CellCase> cells;
};
CaseFile ReadCaseFile(const std::string& fileName);

}  // namespace delivered

/// The tests every case file gets, in a test file's anonymous namespace: `Cases()` reads
/// `fileName` once; `Suite`.TextAndJsonMatchTheirGoldens runs each case (instantiated as
/// `Prefix`) against its goldens in `folder`; `Suite`.KeyCellsShowTheirTexts checks the file's
/// cell lines.
#define QUILT_CASE_FILE_TESTS(Suite, Prefix, fileName, folder)                                        \
  const delivered::CaseFile& Cases() {                                                               \
    static const delivered::CaseFile file = delivered::ReadCaseFile(fileName);                      \
    return file;                                                                                     \
  }                                                                                                  \
  class Suite : public ::testing::TestWithParam<delivered::GoldenCase> {};                          \
  TEST_P(Suite, TextAndJsonMatchTheirGoldens) { delivered::ExpectGoldens(GetParam(), folder); }     \
  INSTANTIATE_TEST_SUITE_P(Prefix, Suite, ::testing::ValuesIn(Cases().cases), delivered::GoldenTestName); \
  TEST(Suite, KeyCellsShowTheirTexts) { delivered::ExpectCellTexts(Cases().cases, Cases().cells); }
