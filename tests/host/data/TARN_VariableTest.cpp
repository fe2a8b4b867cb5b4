// TARN_VariableTest.cpp - missing-value tests, value labels and free-standing variables
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "host/data/ObsValue.h"
#include "host/data/TARN_ValueLabelMap.h"
#include "host/data/TARN_Variable.h"

namespace {

bool Missing(const TARN_Variable& variable, double value) {
  return variable.IsMissing(ObsValue(value).Obs());
}

ObsValue Text(int width, const std::string& text) {
  ObsValue value(width, nullptr, -1);
  value = text;
  return value;
}

}  // namespace

TEST(TARN_Variable, MissingValueKindsAndTheirTests) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  struct Row {
    const char* what;
    int kind;
    double missing[3];
    double notMissing[3];
  };
  const Row rows[] = {
      {"none", kMissingNone, {TARN_SystemMissing(), TARN_SystemMissing(), TARN_SystemMissing()}, {0, 9, -1}},
      {"three values", kMissingThreeValues, {7, 8, 9}, {6, 10, 8.5}},
      {"range 1..5", kMissingRange, {1, 3.5, 5}, {0.99, 5.01, -1}},
      {"LO..-1 and 99", kMissingRangeAndValue, {-1e300, -1, 99}, {0, 98, 100}},
  };
  for (const Row& row : rows) {
    TARN_Variable variable;
    if (row.kind == kMissingThreeValues) {
      const ObsValue values[] = {7.0, 8.0, 9.0};
      variable.SetMissingValues(values, 3);
    } else if (row.kind == kMissingRange) {
      variable.SetMissingRange(1, 5, nullptr);
    } else if (row.kind == kMissingRangeAndValue) {
      const double extra = 99;
      variable.SetMissingRange(-kInfinity, -1, &extra);
    }
    const OBS* slots[3] = {nullptr, nullptr, nullptr};
    EXPECT_EQ(variable.GetMissingValues(slots[0], slots[1], slots[2]), row.kind) << row.what;
    for (double value : row.missing) EXPECT_TRUE(Missing(variable, value)) << row.what << " " << value;
    for (double value : row.notMissing) EXPECT_FALSE(Missing(variable, value)) << row.what << " " << value;
    // System-missing is missing for every numeric variable, but never user-missing.
    EXPECT_FALSE(variable.IsUserMissing(ObsValue(TARN_SystemMissing()).Obs())) << row.what;
  }
}

TEST(TARN_Variable, MissingSlotsPointAtTheValues) {
  TARN_Variable variable;
  const double extra = 99;
  variable.SetMissingRange(-5, -1, &extra);
  const OBS* low = nullptr;
  const OBS* high = nullptr;
  const OBS* third = nullptr;
  ASSERT_EQ(variable.GetMissingValues(low, high, third), kMissingRangeAndValue);
  EXPECT_EQ(low->number, -5);
  EXPECT_EQ(high->number, -1);
  EXPECT_EQ(third->number, 99);
  const ObsValue two[] = {1.0, 2.0};
  variable.SetMissingValues(two, 2);
  EXPECT_EQ(variable.GetMissingValues(low, high, third), kMissingTwoValues);
  EXPECT_EQ(third, nullptr);
}

TEST(TARN_Variable, StringMissingValuesIgnoreTrailingBlanks) {
  TARN_Variable variable(10);
  const ObsValue values[] = {Text(10, "NA"), Text(10, "")};
  variable.SetMissingValues(values, 2);
  EXPECT_TRUE(variable.IsMissing(Text(10, "NA").Obs()));
  EXPECT_TRUE(variable.IsMissing(Text(10, "").Obs()));
  EXPECT_FALSE(variable.IsMissing(Text(10, "NA2").Obs()));
  EXPECT_FALSE(variable.IsMissing(Text(10, "na").Obs()));  // case matters in values
}

TEST(TARN_Variable, FreeStandingVariableAndCopies) {
  TARN_Variable variable;
  EXPECT_EQ(variable.GetType(), 0);
  EXPECT_EQ(variable.GetFormat(), kDefaultFormat);
  EXPECT_STREQ(variable.GetLabel(), "");
  EXPECT_EQ(variable.GetValueLabels(), nullptr);
  variable.SetName("Région_1");
  variable.SetLabel("Region");
  EXPECT_STREQ(variable.GetUpperCaseName(), "RéGION_1");  // only ASCII letters fold
  TARN_Variable copy(variable);
  copy.SetLabel("Other");
  EXPECT_STREQ(variable.GetLabel(), "Region");
  TARN_Variable text(20);
  FormatType type = kFormatNone;
  int width = 0;
  int decimals = 0;
  text.GetFormatEx(type, width, decimals);
  EXPECT_EQ(type, kFormatA);
  EXPECT_EQ(width, 20);
  text = copy;
  EXPECT_EQ(text.GetType(), 0);
  EXPECT_STREQ(text.GetName(), "Région_1");
}

TEST(TARN_ValueLabelMap, LooksUpByCellsByTextAndEnumeratesInOrder) {
  TARN_Variable variable;
  variable.AddValueLabel(2.0, "Two");
  variable.AddValueLabel(1.0, "One");
  variable.AddValueLabel(2.0, "Deux");  // relabels, keeps its place
  TARN_ValueLabelMap map(variable.GetValueLabels());
  ASSERT_EQ(map.Size(), 2);
  EXPECT_STREQ(map.GetLabel(ObsValue(1.0).Obs()), "One");
  EXPECT_EQ(map.GetLabel(ObsValue(3.0).Obs()), nullptr);
  EXPECT_STREQ(map.GetLabel(std::string("2.0")), "Deux");
  EXPECT_STREQ(map.GetLabel(std::string(" 1 ")), "One");
  EXPECT_EQ(map.GetLabel(std::string("one")), nullptr);
  // A counted value handed over as blank-padded text reaches the numeric label.
  const ObsValue countedText = Text(8, "1");
  EXPECT_STREQ(map.GetLabel(countedText.Obs()), "One");

  const OBS* value = nullptr;
  const char* label = nullptr;
  std::string seen;
  for (int pass = 0; pass < 2; ++pass) {
    map.Reset();
    while (map.GetNextPair(value, label))
      seen += std::to_string(static_cast<int>(value->number)) + label + ";";
  }
  EXPECT_EQ(seen, "2Deux;1One;2Deux;1One;");
  EXPECT_FALSE(map.GetNextPair(value, label));
}

TEST(TARN_ValueLabelMap, EmptyAndStringMaps) {
  TARN_ValueLabelMap none(nullptr);
  EXPECT_EQ(none.Size(), 0);
  EXPECT_EQ(none.GetLabel(std::string("1")), nullptr);
  const OBS* value = nullptr;
  const char* label = nullptr;
  EXPECT_FALSE(none.GetNextPair(value, label));

  TARN_Variable city(12);
  city.AddValueLabel(Text(12, "LDS"), "Leeds");
  TARN_ValueLabelMap map(city.GetValueLabels());
  EXPECT_STREQ(map.GetLabel(std::string("LDS")), "Leeds");
  EXPECT_STREQ(map.GetLabel(std::string("LDS   ")), "Leeds");
  EXPECT_EQ(map.GetLabel(std::string("LDS and more text")), nullptr);  // longer than the width
}
