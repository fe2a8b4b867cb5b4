// DictionaryReaderTest.cpp - the JSON dictionary: what it sets up and each error with its JSON path
#include <gtest/gtest.h>

#include <string>

#include "host/data/DataError.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/FormatText.h"
#include "host/data/TARN_ValueLabelMap.h"

namespace {

const char* kCsv =
    "id,region,income,city,tv,radio,web,b1,b2,wt,wave\n"
    "1,1,52000,Leeds,1,0,1,3,,1.5,1\n"
    "2,2,,York,0,0,1,1,2,0.5,2\n";

std::shared_ptr<Dataset> Load(const std::string& dictionary, DatasetLoadOptions options = {}) {
  return DatasetLoader::LoadText(kCsv, dictionary, options, "survey.csv", "survey.dict.json");
}

std::string LoadError(const std::string& dictionary, DatasetLoadOptions options = {}) {
  try {
    Load(dictionary, options);
  } catch (const DataError& error) {
    return error.what();
  }
  ADD_FAILURE() << "no DataError for: " << dictionary;
  return "";
}

}  // namespace

TEST(DictionaryReader, SetsUpVariablesInDictionaryOrderThenTheRest) {
  const auto dataset = Load(R"({
    "variables": [
      {"name": "income", "label": "Household income", "format": "DOLLAR10.2", "measure": "scale",
       "missing": {"range": ["LO", -1], "values": [999999]}},
      {"name": "region", "label": "Region", "type": "numeric", "format": "F2.0", "measure": "nominal",
       "values": {"2": "South", "1": "North"}, "missing": {"values": [9]}},
      {"name": "city", "type": "string", "width": 12}
    ]})");
  ASSERT_EQ(dataset->GetVariableCount(), 11);
  EXPECT_STREQ(dataset->GetVariable(0).GetName(), "income");
  EXPECT_STREQ(dataset->GetVariable(1).GetName(), "region");
  EXPECT_STREQ(dataset->GetVariable(2).GetName(), "city");
  EXPECT_STREQ(dataset->GetVariable(3).GetName(), "id");  // unlisted columns follow in file order
  EXPECT_STREQ(dataset->GetVariable(10).GetName(), "wave");

  const TARN_Variable& income = dataset->GetVariable(0);
  EXPECT_STREQ(income.GetLabel(), "Household income");
  EXPECT_EQ(FormatToText(income.GetFormat()), "DOLLAR10.2");
  EXPECT_EQ(income.GetMeasurementLevel(), kMeasureScale);
  const OBS* low = nullptr;
  const OBS* high = nullptr;
  const OBS* extra = nullptr;
  EXPECT_EQ(income.GetMissingValues(low, high, extra), kMissingRangeAndValue);
  EXPECT_EQ(extra->number, 999999.0);
  EXPECT_EQ(dataset->GetCells(0, 1)->number, TARN_SystemMissing());

  const TARN_Variable& region = dataset->GetVariable(1);
  EXPECT_EQ(region.GetMeasurementLevel(), kMeasureNominal);
  TARN_ValueLabelMap labels(region.GetValueLabels());
  ASSERT_EQ(labels.Size(), 2);
  const OBS* value = nullptr;
  const char* label = nullptr;
  ASSERT_TRUE(labels.GetNextPair(value, label));
  EXPECT_EQ(value->number, 2.0);  // the dictionary's order, not sorted
  EXPECT_STREQ(label, "South");

  const TARN_Variable& city = dataset->GetVariable(2);
  EXPECT_EQ(city.GetType(), 12);
  EXPECT_EQ(FormatToText(city.GetFormat()), "A12");
  EXPECT_EQ(dataset->GetVariable(3).GetMeasurementLevel(), kMeasureUnknown);
}

TEST(DictionaryReader, SetsWeightAndSplit) {
  const auto dataset = Load(R"({"mrsets": [
      {"name": "$media", "label": "Media used", "type": "dichotomies", "counted": 1,
       "variables": ["tv", "radio", "web"], "labels": "countedvaluelabels"},
      {"name": "$brands", "type": "categories", "variables": ["b1", "b2"]}],
    "weight": "wt", "split": {"variables": ["wave", "region"], "layout": "layered"}})");
  EXPECT_EQ(dataset->GetWeightVariable(), dataset->FindVariable("wt"));
  ASSERT_EQ(dataset->GetSplitVariables().size(), 2u);
  EXPECT_EQ(dataset->GetSplitVariables()[0], dataset->FindVariable("wave"));
  EXPECT_EQ(dataset->GetSplitLayout(), kSplitLayered);
  const auto& sets = dataset->GetVariableSets();
  ASSERT_EQ(sets.size(), 2u);
  EXPECT_EQ(sets[0].GetName(VariableSet::kAsDefined), "$media");
  EXPECT_EQ(sets[0].GetType(), VariableSet::kMR_Dichotomy);
  EXPECT_EQ(sets[0].GetValue(), "1");
  EXPECT_TRUE(sets[0].qUseVariableCategoryLabels());
  EXPECT_EQ(sets[1].GetType(), VariableSet::kMR_Category);
  EXPECT_EQ(sets[1].GetVariableNames(VariableSet::kUpperCase), (std::vector<std::string>{"B1", "B2"}));
}

TEST(DictionaryReader, CommandLineOverridesWeightAndSplit) {
  DatasetLoadOptions options;
  options.weightVariable = "region";
  options.splitVariables = {"wave"};
  const auto dataset =
      Load(R"({"weight": "wt", "split": {"variables": ["region"], "layout": "layered"}})", options);
  EXPECT_EQ(dataset->GetWeightVariable(), dataset->FindVariable("region"));
  EXPECT_EQ(dataset->GetSplitVariables(), std::vector<int>{dataset->FindVariable("wave")});
  EXPECT_EQ(dataset->GetSplitLayout(), kSplitLayered);  // the layout still comes from the dictionary
}

TEST(DictionaryReader, EachErrorNamesItsJsonPath) {
  struct Row {
    const char* dictionary;
    const char* message;
  };
  // Nesting past the reader's bound, which keeps every walk of the document shallow.
  const std::string deep = R"({"variables": [{"name": "id", "values": )" + std::string(70, '[') + "]";
  std::string deepMessage = "survey.dict.json: variables[0].values";
  for (int level = 4; level < 65; ++level) deepMessage += "[0]";  // the 65th level is refused
  deepMessage += ": nested more than 64 levels deep";
  const Row rows[] = {
      {R"({"variables": [)",
       "survey.dict.json: variables[0]: not valid JSON: parse error at line 1, column 16: syntax error while "
       "parsing value - unexpected end of input; expected '[', '{', or a literal"},
      {"{\"variables\": [{\"name\": \"id\",\n \"values\": {\"1\": 2e555}}]}",
       "survey.dict.json: variables[0].values['1']: '2e555' is out of the range of numbers (line 2, column "
       "18)"},
      {"2e555", "survey.dict.json: '2e555' is out of the range of numbers (line 1, column 1)"},
      // The parser quotes what it read; a byte that is not UTF-8 is shown escaped.
      {"{\"variables\": [{\"name\": \"id\", \"label\": \"caf\xE9\"}]}",
       "survey.dict.json: variables[0].label: not valid JSON: parse error at line 1, column 45: syntax error "
       "while parsing value - invalid string: ill-formed UTF-8 byte; last read: '\"caf\\xE9\"'"},
      {deep.c_str(), deepMessage.c_str()},
      {R"([1, 2])", "survey.dict.json: the dictionary is not a JSON object"},
      {R"({"varables": []})", "survey.dict.json: varables: unknown key"},
      {R"({"variables": [{"name": "nope"}]})",
       "survey.dict.json: variables[0].name: 'nope' is not a column of survey.csv"},
      {R"({"variables": [{"name": "id"}, {"name": "ID"}]})",
       "survey.dict.json: variables[1].name: 'ID' is listed twice"},
      {R"({"variables": [{"name": "id"}, {"name": "2x"}]})",
       "survey.dict.json: variables[1].name: '2x' is not a valid variable name"},
      {R"({"variables": [{"label": "x"}]})", "survey.dict.json: variables[0]: the variable has no name"},
      {R"({"variables": [{"name": "id", "lable": "x"}]})",
       "survey.dict.json: variables[0]: unknown key 'lable'"},
      {R"({"variables": [{"name": "id"}, {"name": "wt"}, {"name": "region", "format": "F8.x"}]})",
       "survey.dict.json: variables[2].format: 'F8.x' is not a format (it has no decimals after the point)"},
      {R"({"variables": [{"name": "id", "format": "Q8"}]})",
       "survey.dict.json: variables[0].format: 'Q8' is not a format ('Q' is not a format name)"},
      {R"({"variables": [{"name": "id", "type": "numeric", "format": "A8"}]})",
       "survey.dict.json: variables[0].format: 'A8' is a string format for a numeric variable"},
      {R"({"variables": [{"name": "id", "type": "text"}]})",
       "survey.dict.json: variables[0].type: 'text' is not numeric or string"},
      {R"({"variables": [{"name": "id", "measure": "interval"}]})",
       "survey.dict.json: variables[0].measure: 'interval' is not nominal, ordinal or scale"},
      {R"({"variables": [{"name": "id", "values": {"one": "One"}}]})",
       "survey.dict.json: variables[0].values['one']: 'one' is not a number"},
      {R"({"variables": [{"name": "id", "missing": {"values": [1, 2, 3, 4]}}]})",
       "survey.dict.json: variables[0].missing.values: at most three missing values"},
      {R"({"variables": [{"name": "id", "missing": {"range": [1, 5], "values": [8, 9]}}]})",
       "survey.dict.json: variables[0].missing.values: at most one missing value beside a range"},
      {R"({"variables": [{"name": "id", "missing": {"range": [5, 1]}}]})",
       "survey.dict.json: variables[0].missing.range: the low end is above the high end"},
      {R"({"variables": [{"name": "city", "missing": {"range": ["a", "b"]}}]})",
       "survey.dict.json: variables[0].missing.range: a string variable has no missing range"},
      {R"({"variables": [{"name": "city", "width": 5, "values": {"Bradford": "B"}}]})",
       "survey.dict.json: variables[0].values['Bradford']: 'Bradford' is longer than the width 5"},
      {R"({"mrsets": [{"name": "media", "type": "categories", "variables": ["tv", "web"]}]})",
       "survey.dict.json: mrsets[0].name: 'media' is not a valid set name (a name beginning with '$')"},
      {R"({"mrsets": [{"name": "$m", "type": "dichotomies", "counted": 1, "variables": ["tv", "wb"]}]})",
       "survey.dict.json: mrsets[0].variables[1]: 'wb' is not a variable"},
      {R"({"mrsets": [{"name": "$m", "type": "categories", "variables": ["b1", "city"]}]})",
       "survey.dict.json: mrsets[0].variables[1]: 'city' is a string but 'b1' is numeric"},
      {R"({"mrsets": [{"name": "$m", "type": "dichotomies", "variables": ["tv", "web"]}]})",
       "survey.dict.json: mrsets[0].counted: a dichotomy set needs a counted value"},
      {R"({"mrsets": [{"name": "$m", "type": "dichotomies", "counted": "yes", "variables": ["tv", "web"]}]})",
       "survey.dict.json: mrsets[0].counted: 'yes' is not a number, but the variables are numeric"},
      {R"({"mrsets": [{"name": "$m", "type": "categories", "variables": ["b1"]}]})",
       "survey.dict.json: mrsets[0].variables: a set needs at least two variables"},
      {R"({"mrsets": [{"name": "$m", "type": "categories", "variables": ["b1", "b2"]},
                      {"name": "$M", "type": "categories", "variables": ["b1", "b2"]}]})",
       "survey.dict.json: mrsets[1].name: '$M' is defined twice"},
      {R"({"weight": "city"})",
       "survey.dict.json: weight: 'city' is a string variable; a weight must be numeric"},
      {R"({"weight": "w"})", "survey.dict.json: weight: 'w' is not a variable of survey.csv"},
      {R"({"split": {"variables": ["wave", "wavee"]}})",
       "survey.dict.json: split.variables[1]: 'wavee' is not a variable of survey.csv"},
      {R"({"split": {"variables": ["wave"], "layout": "stacked"}})",
       "survey.dict.json: split.layout: 'stacked' is not separate or layered"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(LoadError(row.dictionary), row.message) << row.dictionary;
  }
}

TEST(DictionaryReader, CommandLineNamesAreCheckedToo) {
  DatasetLoadOptions weight;
  weight.weightVariable = "nothere";
  EXPECT_EQ(LoadError("", weight), "--weight: 'nothere' is not a variable of survey.csv");
  DatasetLoadOptions layout;
  layout.splitVariables = {"wave"};
  layout.splitLayout = "sideways";
  EXPECT_EQ(LoadError("", layout), "--split-layout: 'sideways' is not separate or layered");
}

TEST(DictionaryReader, StringValueLabelsAndMissingValues) {
  const auto dataset = Load(R"({"variables": [{"name": "city", "width": 8,
      "values": {"Leeds": "City of Leeds"}, "missing": {"values": ["York", ""]}}]})");
  const TARN_Variable& city = dataset->GetVariable(0);
  TARN_ValueLabelMap labels(city.GetValueLabels());
  EXPECT_STREQ(labels.GetLabel(std::string("Leeds")), "City of Leeds");
  EXPECT_STREQ(labels.GetLabel(dataset->GetCells(0, 0)), "City of Leeds");
  EXPECT_TRUE(city.IsMissing(dataset->GetCells(0, 1)));  // "York" is user-missing
  EXPECT_FALSE(city.IsMissing(dataset->GetCells(0, 0)));
}
