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

std::string LoadError(const std::string& dictionary) {
  try {
    Load(dictionary);
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

// Nesting past the reader's bound, which keeps every walk of the document shallow. The other
// errors, each naming its JSON path, are cases of LoadErrors.txt.
TEST(DictionaryReader, DeepNestingIsRefusedAtItsBound) {
  std::string message = "survey.dict.json: variables[0].values";
  for (int level = 4; level < 65; ++level) message += "[0]";  // the 65th level is refused
  EXPECT_EQ(LoadError(R"({"variables": [{"name": "id", "values": )" + std::string(70, '[') + "]"),
            message + ": nested more than 64 levels deep");
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
