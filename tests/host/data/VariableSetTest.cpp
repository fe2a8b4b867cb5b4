// VariableSetTest.cpp - multiple-response sets: names by case, validation, the set list
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/VariableSet.h"

namespace {

VariableSet MakeSet(const std::string& name, int type, const std::vector<std::string>& members,
                    const std::string& counted = "") {
  VariableSet set;
  set.SetName(name);
  set.SetType(type);
  set.SetVariableNames(members);
  set.SetValue(counted);
  return set;
}

}  // namespace

TEST(VariableSet, NamesInTheAskedCaseKeepTheirDollar) {
  const VariableSet set = MakeSet("$Media", VariableSet::kMR_Dichotomy, {"TV", "radio"}, "1");
  EXPECT_EQ(set.GetName(VariableSet::kAsDefined), "$Media");
  EXPECT_EQ(set.GetName(VariableSet::kUpperCase), "$MEDIA");
  EXPECT_EQ(set.GetName(VariableSet::kLowerCase), "$media");
  EXPECT_EQ(set.GetVariableNames(VariableSet::kUpperCase), (std::vector<std::string>{"TV", "RADIO"}));
  EXPECT_EQ(set.GetVariableNames(VariableSet::kAsDefined), (std::vector<std::string>{"TV", "radio"}));
  EXPECT_EQ(set.GetValue(), "1");
  EXPECT_FALSE(set.qUseVariableCategoryLabels());
  // A category set has no counted value, whatever was stored.
  EXPECT_EQ(MakeSet("$b", VariableSet::kMR_Category, {"a", "b"}, "1").GetValue(), "");
}

TEST(VariableSet, Validate) {
  struct Row {
    VariableSet set;
    int result;
  };
  const Row rows[] = {
      {MakeSet("$ok", VariableSet::kMR_Category, {"a", "b"}), VariableSet::kNoError},
      {MakeSet("ok", VariableSet::kMR_Category, {"a", "b"}), VariableSet::kInvalidName},
      {MakeSet("$", VariableSet::kMR_Category, {"a", "b"}), VariableSet::kInvalidName},
      {MakeSet("$one", VariableSet::kMR_Category, {"a"}), VariableSet::kNoMembers},
      {MakeSet("$twice", VariableSet::kMR_Category, {"a", "A"}), VariableSet::kDuplicateMember},
      {MakeSet("$d", VariableSet::kMR_Dichotomy, {"a", "b"}), VariableSet::kNoCountedValue},
      {MakeSet("$d", VariableSet::kMR_Dichotomy, {"a", "b"}, "1"), VariableSet::kNoError},
  };
  for (const Row& row : rows)
    EXPECT_EQ(row.set.Validate(), row.result) << row.set.GetName(VariableSet::kAsDefined);
}

TEST(VariableSet, CheckedAgainstTheDictionary) {
  auto dataset = DatasetLoader::LoadText("a,b,s\n1,2,x\n", "", {});
  dataset->AddVariableSet(MakeSet("$good", VariableSet::kMR_Category, {"a", "B"}));
  dataset->AddVariableSet(MakeSet("$mixed", VariableSet::kMR_Category, {"a", "s"}));
  dataset->AddVariableSet(MakeSet("$lost", VariableSet::kMR_Category, {"a", "gone"}));
  ProcedureDataSource source(dataset);
  const std::vector<VariableSet> sets = VariableSets(source, kVarSetsMultipleResponse);
  ASSERT_EQ(sets.size(), 3u);
  EXPECT_EQ(sets[0].Validate(), VariableSet::kNoError);
  EXPECT_EQ(sets[1].Validate(), VariableSet::kMixedTypes);
  EXPECT_EQ(sets[2].Validate(), VariableSet::kUnknownMember);
  EXPECT_TRUE(VariableSets(source, 2).empty());  // no other kind of set exists
  EXPECT_EQ(sets[0].GetLabel(source), "");
}
