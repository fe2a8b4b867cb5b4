// MessageWordingTest.cpp - the messages a user reads for whole commands, word for word, and where they stand
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "QuiltProgram.h"

namespace {

namespace fs = std::filesystem;

// Wave 1 has no valid score; wave 2 has two. `zero` weighs every case 0.
constexpr const char* kCsv =
    "region,gender,score,wave,zero\n"
    "1,1,,1,0\n"
    "2,2,,1,0\n"
    "1,2,5,2,0\n"
    "2,1,7,2,0\n";

constexpr const char* kDictionary = R"({"variables": [
  {"name": "region", "label": "Region", "values": {"1": "North", "2": "South"}},
  {"name": "gender", "label": "Gender", "values": {"1": "Male", "2": "Female"}},
  {"name": "score", "label": "Score", "format": "F4.1", "measure": "scale"},
  {"name": "wave", "label": "Wave", "values": {"1": "First", "2": "Second"}}],
 "mrsets": [{"name": "$ones", "label": "Answered 1", "type": "dichotomies", "counted": 1,
             "variables": ["region", "gender"]}]})";

struct RunCase {
  const char* name;
  std::string command;
  const char* weight = "";       // case weight variable, or none
  const char* splitLayout = "";  // "separate" or "layered" by wave, or no split
  const char* csv = kCsv;
};

/// Runs one command on the small data set and returns the JSON document it wrote.
nlohmann::json RunCommand(const RunCase& run) {
  const fs::path folder = fs::temp_directory_path() / (std::string("quilt-wording-") + run.name);
  fs::create_directories(folder);
  std::ofstream(folder / "small.csv", std::ios::binary) << run.csv;
  std::ofstream(folder / "small.dict.json", std::ios::binary) << kDictionary;
  ProgramOptions options;
  options.dataPath = (folder / "small.csv").string();
  options.dictionaryPath = (folder / "small.dict.json").string();
  options.commandTexts = {run.command};
  options.format = "json";
  options.weightVariable = run.weight;
  if (*run.splitLayout != '\0') {
    options.splitVariables = {"wave"};
    options.splitLayout = run.splitLayout;
  }
  std::ostringstream output;
  std::ostringstream errors;
  QuiltProgram(options, errors).Run(output);
  fs::remove_all(folder);
  EXPECT_TRUE(errors.str().empty()) << errors.str();
  return nlohmann::json::parse(output.str());
}

/// The document as a reader meets it: one line per item, two blanks of indent per heading
/// level; headings as "# text", tables as "table" and their title, messages as level and text.
void Outline(const nlohmann::json& items, int depth, bool withTables, std::vector<std::string>& lines) {
  for (const nlohmann::json& item : items) {
    const std::string pad(static_cast<std::size_t>(depth) * 2, ' ');
    const std::string type = item.value("type", "");
    if (type == "heading") {
      if (withTables) lines.push_back(pad + "# " + item.value("text", ""));
      Outline(item["children"], depth + 1, withTables, lines);
    } else if (type == "message") {
      lines.push_back((withTables ? pad : "") + item.value("level", "") + ": " + item.value("text", ""));
    } else if (type == "table" && withTables) {
      lines.push_back(pad + "table " + item.value("title", ""));
    }
  }
}

struct WordingCase {
  RunCase run;
  std::vector<std::string> messages;  // every message of the run, in order, as level: text
};

void PrintTo(const WordingCase& wordingCase, std::ostream* out) {
  *out << wordingCase.run.name;
}

class MessageWording : public ::testing::TestWithParam<WordingCase> {};

TEST_P(MessageWording, ReadsAsWorded) {
  std::vector<std::string> messages;
  Outline(RunCommand(GetParam().run)["items"], 0, /*withTables=*/false, messages);
  EXPECT_EQ(messages, GetParam().messages);
}

const std::string kLongText(1100, 'x');

const WordingCase kWordingCases[] = {
    // A scale variable has no categories, so no totals: the one TOTALS is ignored, not doubled.
    {{"scale-totals", "QUILT /TABLE score [TOTALS[MEAN]] BY gender."},
     {"warning: Subcommand TABLE: score is a scale variable, which has no categories to total; its TOTALS "
      "are ignored."}},
    {{"categories-not-in-table", "QUILT /TABLE region BY gender /CATEGORIES VARIABLES=wave TOTAL=YES."},
     {"warning: Subcommand CATEGORIES: wave is not a variable of this table; the settings given for it are "
      "ignored."}},
    // No case weighs anything: the table has categories but no cases. Its cells are shown,
    // empty; under LISTWISE without scale variables the plain wording holds.
    {{"empty-subtables", "QUILT /TABLE region BY gender.", "zero"},
     {"warning: Some subtables of table 1 have no cases: their cells are empty."}},
    {{"empty-subtables-listwise-no-scale", "QUILT /SMISSING LISTWISE /TABLE region BY gender.", "zero"},
     {"warning: Some subtables of table 1 have no cases: their cells are empty."}},
    {{"empty-subtables-listwise", "QUILT /SMISSING LISTWISE /TABLE region > score [MEAN] BY gender.", "zero"},
     {"warning: Some subtables of table 1 have no cases: their cells are empty. Scale statistics count only "
      "the cases valid on every scale variable of the table (SMISSING=LISTWISE).",
      "warning: There are no valid cases for the scale variables Score in table 1. Their statistics are "
      "missing."}},
    // Groups laid out together: one table, no group to name.
    {{"layered-scale-without-cases", "QUILT /TABLE region > score [MEAN].", "zero", "layered"},
     {"warning: Some subtables of table 1 have no cases: their cells are empty.",
      "warning: There are no valid cases for the scale variables Score in table 1. Their statistics are "
      "missing.",
      "warning: Split groups laid out together are not shown as rows: the tables cover all split groups "
      "together."}},
    {{"percentile-range", "QUILT /TABLE region BY gender /CATEGORIES VARIABLES=region KEY=PTILE(score 0)."},
     {"fatal: -e:1:76: Subcommand CATEGORIES: invalid percentile at \"0\": a percentile must be a number greater than "
      "0 and less than 100."}},
    {{"cilevel-range", "QUILT /TABLE score [MEAN] BY gender /CRITERIA CILEVEL=100."},
     {"fatal: -e:1:55: Subcommand CRITERIA: 100 is not a valid CILEVEL; it must be greater than 0 and less than "
      "100."}},
    {{"alpha-twice", "QUILT /TABLE region BY gender /COMPARETEST TYPE=PROP ALPHA=0.05 0.05."},
     {"warning: Subcommand COMPARETEST: the two ALPHA values are equal. One significance level is used."}},
    // The period that ends the command is the token where the subcommand falls short; the
    // location is that of the last token, the period being no token.
    {{"incomplete-at-period", "QUILT /TABLE region /CRITERIA CILEVEL=."},
     {"fatal: -e:1:38: Subcommand CRITERIA is incomplete (at \".\")."}},
    {{"empty-title", "QUILT /TABLE region /TITLES TITLE=''."},
     {"fatal: -e:1:35: Subcommand TITLES: the quoted text after TITLE is empty (''). Give a text, or leave out the "
      "keyword it belongs to."}},
    // Two texts over the limit: one warning, naming the first.
    {{"long-texts", "QUILT /TABLE region /TITLES TITLE='" + kLongText + "' CAPTION='" + kLongText + "'."},
     {"warning: Subcommand TITLES: the text after TITLE is longer than 1023 bytes; only its first 1023 bytes "
      "are used."}},
    // ORDER, KEY and MISSING against an explicit list, in the same subcommand or for the variable.
    {{"order-with-list", "QUILT /TABLE region /CATEGORIES VARIABLES=region [1, 2] ORDER=D."},
     {"fatal: -e:1:63: Subcommand CATEGORIES: ORDER, KEY and MISSING cannot be combined with an explicit category "
      "list: the list itself fixes the categories and their order (name MISSING in the list to show missing "
      "values)."}},
    {{"missing-then-list",
      "QUILT /TABLE region /CATEGORIES VARIABLES=region MISSING=INCLUDE /CATEGORIES VARIABLES=region [1, 2]."},
     {"fatal: -e:1:100: Subcommand CATEGORIES: variable region has an explicit category list, which cannot be combined "
      "with ORDER, KEY or MISSING: the list itself fixes the categories and their order (name MISSING in the "
      "list to show missing values)."}},
    {{"units-without-width", "QUILT /FORMAT UNITS=cm /TABLE region."},
     {"warning: Subcommand FORMAT: UNITS=CM is given without MINCOLWIDTH or MAXCOLWIDTH; there is no width to "
      "convert, so it is ignored."}},
    // The set is the only variable to test: refused when the table is read, or, standing alone
    // in the columns, when its test trees come out empty.
    {{"chi-square-sets-left-out", "QUILT /TABLE $ones BY wave /SIGTEST TYPE=CHISQUARE INCLUDEMRSETS=NO."},
     {"warning: Subcommand TABLE: the counted value has different value labels in the multiple dichotomy set "
      "$ones.",
      "warning: The chi-square test is not performed for table 1 because the variables it would test are "
      "multiple response sets, which INCLUDEMRSETS=NO leaves out."}},
    {{"means-sets-left-out", "QUILT /TABLE score BY $ones /COMPARETEST TYPE=MEAN INCLUDEMRSETS=NO."},
     {"warning: Subcommand TABLE: the counted value has different value labels in the multiple dichotomy set "
      "$ones.",
      "warning: Pairwise comparisons of column means are not performed for table 1 because the variables it "
      "would test are multiple response sets, which INCLUDEMRSETS=NO leaves out."}},
    {{"chi-square-without-columns", "QUILT /TABLE region /SIGTEST TYPE=CHISQUARE."},
     {"warning: The chi-square test is not performed for table 1 because no subtable crosses a categorical row "
      "variable with a categorical column variable (subtables with a scale variable are not tested)."}},
    {{"no-cases", "QUILT /TABLE region.", "", "", "region,gender,score,wave,zero\n"},
     {"fatal: There are no cases in the active data set. No tables were produced."}},
};

INSTANTIATE_TEST_SUITE_P(SmallData, MessageWording, ::testing::ValuesIn(kWordingCases),
                         [](const ::testing::TestParamInfo<WordingCase>& info) {
                           std::string name = info.param.run.name;
                           for (char& c : name) {
                             if (c == '-') c = '_';
                           }
                           return name;
                         });

// Each group's messages stand under the group's heading, in the order they were made, for
// the first table of a group as for the later ones.
TEST(MessageWording, SeparateSplitMessagesFollowTheirGroupHeading) {
  std::vector<std::string> outline;
  const RunCase run = {
      "split-order",
      "QUILT /TABLE region > score [MEAN] /TABLE region [COUNT] /TABLE score [MEAN] BY gender.", "",
      "separate"};
  Outline(RunCommand(run)["items"], 0, /*withTables=*/true, outline);
  const std::vector<std::string> expected = {
      "# Quilt",
      "  # Wave: First",
      "    warning: In split Wave=First there are no valid cases for the scale variables Score in table 1. "
      "Their statistics are missing.",
      "    table Quilt Table 1",
      "    table Quilt Table 2",
      "    warning: In split Wave=First there are no valid cases for the scale variables Score in table 3. "
      "Their statistics are missing.",
      "    table Quilt Table 3",
      "  # Wave: Second",
      "    table Quilt Table 1",
      "    table Quilt Table 2",
      "    table Quilt Table 3",
  };
  EXPECT_EQ(outline, expected);
}

}  // namespace
