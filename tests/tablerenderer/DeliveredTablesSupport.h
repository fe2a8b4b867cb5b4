// DeliveredTablesSupport.h - a fourteen-case survey written to a scratch folder, one command run over it, and cell lookup in the JSON
//
// The data are small on purpose: every number a delivered table shows can be worked out by
// hand from the rows below, and the tests say how beside each expectation.
#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace delivered {

/// The cases, numbered 1 to 14 in the comments of the tests: region (1 North, 2 South, 3 East;
/// 4 "West" is labelled but never occurs), gender (1 Male, 2 Female), grp (neither a variable
/// label nor value labels), score (scale, one decimal), q (9 "No answer" is user-missing), wt,
/// wave.
inline const char* kSurveyCsv =
    "region,gender,grp,score,q,wt,wave\n"
    "1,1,10,2.0,1,1.0,1\n"  // 1
    "1,1,20,4.0,2,2.0,1\n"  // 2
    "1,2,10,-3.0,1,1.0,1\n"  // 3
    "2,1,10,6.0,9,0.5,1\n"  // 4
    "2,2,20,1.0,2,1.0,1\n"  // 5
    "3,1,10,-8.0,2,1.0,1\n"  // 6
    "3,1,20,-2.0,1,1.5,1\n"  // 7
    "1,1,10,0.0,2,1.0,2\n"  // 8
    "1,2,20,5.0,1,2.0,2\n"  // 9
    "1,2,10,7.0,9,1.0,2\n"  // 10
    "2,2,20,3.0,1,1.0,2\n"  // 11
    "2,1,10,2.0,1,0.5,2\n"  // 12
    "2,2,20,-1.0,2,1.0,2\n"  // 13
    "3,1,10,-4.0,1,1.0,2\n";  // 14

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
  std::string command;
  std::string weightVariable;               // empty: unweighted
  std::vector<std::string> splitVariables;  // empty: no split groups
  std::string splitLayout;                  // empty: separate
  std::string extraDictionaryMembers;       // JSON members added to the dictionary, e.g. "weight": "wt"
  std::string dataPath;                     // empty: the fourteen-case survey; else this CSV file
  std::string csvText;                      // else, where given: these data, without a dictionary
  bool controlPackage = false;              // run as the control package front end
};

/// `command` on the bundled two-thousand-case survey (examples/survey.csv).
RunSettings OnBundledSurvey(const std::string& command);

/// Writes the survey to a fresh scratch folder, runs `settings` on it (or on the data file
/// they name) in `format` ("text" or "json"), expects exit status 0 and returns what the
/// program wrote.
std::string RunOnSurvey(const RunSettings& settings, const std::string& format);

/// Every table item of a JSON document, in order, headings walked through.
std::vector<nlohmann::json> TablesOf(const nlohmann::json& document);

/// One command of a case file: its name, also the golden files' name, and how it runs.
struct GoldenCase {
  std::string name;
  RunSettings settings;
};

/// The test name of a golden case: its name with "-" as "_".
std::string GoldenTestName(const ::testing::TestParamInfo<GoldenCase>& info);

/// Runs `golden` in both writers and compares with `folder`/NAME.txt and NAME.json.
void ExpectGoldens(const GoldenCase& golden, const std::string& folder);

/// One check line of a case file: the case it runs, its kind and its JSON arguments.
struct CaseCheck {
  std::string caseName;
  std::string kind;
  nlohmann::json args;
};

/// A file of tests/tablerenderer/cases/. Each case starts with a line "== NAME" and its
/// settings (weight=VARIABLE, split=V1,V2, layout=separate or layered, data=bundled for
/// examples/survey.csv, control=yes for the control package front end, golden=no for a case
/// that has checks only), then the command on one line, then optionally "dictionary MEMBERS"
/// (JSON members added to the small survey's dictionary), "csv TEXT" (a JSON string: data of
/// its own, without a dictionary) and check lines, whose arguments are JSON, TABLE counting
/// the delivered tables from 0:
///   cell TABLE, [ROW, COLUMN, LAYER], TEXTS  the texts of every cell with these labels,
///                                            outermost first, in table order: none where the
///                                            category is left out, several where only hidden
///                                            groups tell them apart
///   texts TABLE, TEXTS                       the texts of all cells of the table
///   subtypes SUBTYPES                        the subtype of every delivered table
///   notes TABLE, "", PREFIXES                the caption, then the caption's and the table's
///                                            notes, each starting with its prefix
///   notes TABLE, LABEL, PREFIXES             each cell whose last row label is LABEL, then
///                                            "MARK NOTE" for each of its notes, by prefix
///   output FORMAT, FRAGMENTS                 the output holds the fragments in this order
///   lacks FORMAT, FRAGMENT                   the output does not hold the fragment
/// Lines starting with "#" say where the numbers come from.
struct CaseFile {
  std::vector<GoldenCase> cases;  // with goldens
  std::vector<GoldenCase> probes;  // golden=no
  std::vector<CaseCheck> checks;
};
CaseFile ReadCaseFile(const std::string& fileName);

/// Runs the case of each check line once per format and expects what the line says.
void ExpectChecks(const CaseFile& file);

}  // namespace delivered

/// The tests every case file gets, in a test file's anonymous namespace: `Cases()` reads
/// `fileName` once; `Suite`.TextAndJsonMatchTheirGoldens runs each case (instantiated as
/// `Prefix`) against its goldens in `folder`; `Suite`.ChecksHold runs the file's check lines.
#define QUILT_CASE_FILE_TESTS(Suite, Prefix, fileName, folder)                                        \
  const delivered::CaseFile& Cases() {                                                               \
    static const delivered::CaseFile file = delivered::ReadCaseFile(fileName);                      \
    return file;                                                                                     \
  }                                                                                                  \
  class Suite : public ::testing::TestWithParam<delivered::GoldenCase> {};                          \
  TEST_P(Suite, TextAndJsonMatchTheirGoldens) { delivered::ExpectGoldens(GetParam(), folder); }     \
  INSTANTIATE_TEST_SUITE_P(Prefix, Suite, ::testing::ValuesIn(Cases().cases), delivered::GoldenTestName); \
  TEST(Suite, ChecksHold) { delivered::ExpectChecks(Cases()); }
