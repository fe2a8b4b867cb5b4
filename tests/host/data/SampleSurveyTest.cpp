// SampleSurveyTest.cpp - the bundled sample survey loads with its dictionary and sets intact
#include <gtest/gtest.h>

#include <string>

#include "host/data/AdjustMeasurementLevels.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/TARN_ValueLabelMap.h"
#include "host/data/VariableSet.h"

TEST(SampleSurvey, LoadsWithItsDictionary) {
  const std::string path = std::string(QUILT_SOURCE_DIR) + "/examples/survey.csv";
  const auto dataset = DatasetLoader::LoadFiles(path, "", {});
  // make_survey.py writes 2,000 cases in 21 columns, no weight or split in the dictionary.
  EXPECT_EQ(dataset->GetCaseCount(), 2000u);
  ASSERT_EQ(dataset->GetVariableCount(), 21);
  EXPECT_EQ(dataset->GetWeightVariable(), -1);
  EXPECT_TRUE(dataset->GetSplitVariables().empty());

  ProcedureDataSource source(dataset);
  AdjustMeasurementLevels(source);
  for (int index = 0; index < source.ColumnCount(); ++index) {
    EXPECT_NE(source.GetVariable(index)->GetMeasurementLevel(), kMeasureUnknown) << index;
    EXPECT_STRNE(source.GetVariable(index)->GetLabel(), "") << index;  // every variable is labelled
  }
  const int q1 = source.FindVarIndex("q1");
  ASSERT_GE(q1, 0);
  TARN_ValueLabelMap labels(source.GetVariable(q1)->GetValueLabels());
  EXPECT_STREQ(labels.GetLabel(std::string("9")), "No answer");
  const ObsValue nine(9.0);
  EXPECT_TRUE(source.GetVariable(q1)->IsMissing(nine.Obs()));

  const auto sets = VariableSets(source, kVarSetsMultipleResponse);
  ASSERT_EQ(sets.size(), 2u);
  EXPECT_EQ(sets[0].GetName(VariableSet::kAsDefined), "$media");
  EXPECT_EQ(sets[0].GetVariableNames(VariableSet::kAsDefined).size(), 5u);
  EXPECT_EQ(sets[1].GetName(VariableSet::kAsDefined), "$brands");
  for (const VariableSet& set : sets) EXPECT_EQ(set.Validate(), VariableSet::kNoError);

  // Waves are written in order, so splitting by wave makes exactly four groups.
  DatasetLoadOptions options;
  options.splitVariables = {"wave"};
  options.weightVariable = "wt";
  ProcedureDataSource split(DatasetLoader::LoadFiles(path, "", options));
  auto* iterator = dynamic_cast<ProcDSIterator*>(split.MakeIterator(nullptr));
  ASSERT_NE(iterator, nullptr);
  int boundaries = 0;
  while (iterator->NextCase() != 0) boundaries += iterator->SplitGroupEnd() ? 1 : 0;
  EXPECT_EQ(boundaries, 3);
  delete iterator;
}
