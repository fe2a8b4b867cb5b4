// ProcDSIteratorTest.cpp - the read protocol: boundaries between split groups, the end, weights
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/data/ActiveDataSet.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"

namespace {

// One read of the protocol: what NextCase returned, whether it was a group end, and the id
// of the case it delivered (0 for a read that delivered none).
struct Read {
  int more;
  bool groupEnd;
  double id;
  bool operator==(const Read&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Read& read) {
  return stream << "{" << read.more << "," << read.groupEnd << "," << read.id << "}";
}

// Reads until NextCase has returned 0 twice, recording each read.
std::vector<Read> ReadAll(ProcDSIterator& iterator, int idIndex) {
  std::vector<Read> reads;
  int zeros = 0;
  while (zeros < 2) {
    const int more = iterator.NextCase() != 0 ? 1 : 0;
    const bool delivered = more != 0 && !iterator.SplitGroupEnd();
    reads.push_back({more, iterator.SplitGroupEnd(), delivered ? *iterator.GetNumericValue(idIndex) : 0});
    if (more == 0) ++zeros;
  }
  return reads;
}

std::unique_ptr<ProcDSIterator> MakeIterator(ProcedureDataSource& source) {
  TARN_InputCaseIterator* iterator = source.MakeIterator(nullptr);
  auto* typed = dynamic_cast<ProcDSIterator*>(iterator);
  EXPECT_NE(typed, nullptr);
  return std::unique_ptr<ProcDSIterator>(typed);
}

const char* kWaves = "id,wave,wt\n1,1,1\n2,1,0\n3,2,\n4,3,2\n5,3,1\n";

}  // namespace

TEST(ProcDSIterator, WithoutSplitsTheOnlyGroupEndIsTheEnd) {
  ProcedureDataSource source(DatasetLoader::LoadText(kWaves, "", {}));
  auto iterator = MakeIterator(source);
  const std::vector<Read> expected = {{1, false, 1}, {1, false, 2}, {1, false, 3}, {1, false, 4},
                                      {1, false, 5}, {0, true, 0},  {0, true, 0}};
  EXPECT_EQ(ReadAll(*iterator, 0), expected);
}

TEST(ProcDSIterator, SplitGroupsAreRunsOfEqualValuesWithOneBoundaryReadBetween) {
  DatasetLoadOptions options;
  options.splitVariables = {"wave"};
  ProcedureDataSource source(DatasetLoader::LoadText(kWaves, "", options));
  EXPECT_TRUE(source.SplitsSeparate());
  ASSERT_EQ(source.SplitVariableCount(), 1u);
  EXPECT_EQ(source.SplitVariableIndex(0), 1);
  EXPECT_EQ(source.SplitVariableIndex(1), -1);
  auto iterator = MakeIterator(source);
  // Waves 1,1 | 2 | 3,3: two boundaries, then the end.
  const std::vector<Read> expected = {{1, false, 1}, {1, false, 2}, {1, true, 0}, {1, false, 3}, {1, true, 0},
                                      {1, false, 4}, {1, false, 5}, {0, true, 0}, {0, true, 0}};
  EXPECT_EQ(ReadAll(*iterator, 0), expected);
}

TEST(ProcDSIterator, ALeadingBoundaryAnnouncesTheFirstGroup) {
  DatasetLoadOptions options;
  options.splitVariables = {"wave"};
  options.splitLayout = "layered";
  auto dataset = DatasetLoader::LoadText(kWaves, "", options);
  dataset->SetLeadingBoundary(true);
  ProcedureDataSource source(dataset);
  EXPECT_FALSE(source.SplitsSeparate());
  auto iterator = MakeIterator(source);
  const std::vector<Read> reads = ReadAll(*iterator, 0);
  ASSERT_GE(reads.size(), 2u);
  EXPECT_EQ(reads[0], (Read{1, true, 0}));
  EXPECT_EQ(reads[1], (Read{1, false, 1}));
  EXPECT_EQ(reads.size(), 10u);  // the nine reads of the separate case plus the leading one
}

TEST(ProcDSIterator, SplitsOnStringsAndOnSeveralVariables) {
  DatasetLoadOptions options;
  options.splitVariables = {"a", "b"};
  // (x,1) (x,1) | (x,2) | (y,2): a change in either variable starts a group.
  ProcedureDataSource source(DatasetLoader::LoadText("id,a,b\n1,x,1\n2,x,1\n3,x,2\n4,y,2\n", "", options));
  auto iterator = MakeIterator(source);
  const std::vector<Read> expected = {{1, false, 1}, {1, false, 2}, {1, true, 0}, {1, false, 3},
                                      {1, true, 0},  {1, false, 4}, {0, true, 0}, {0, true, 0}};
  EXPECT_EQ(ReadAll(*iterator, 0), expected);
}

TEST(ProcDSIterator, WeightsAreReadableAfterEveryReadIncludingBoundariesAndTheEnd) {
  DatasetLoadOptions options;
  options.weightVariable = "wt";
  options.splitVariables = {"wave"};
  auto dataset = DatasetLoader::LoadText(kWaves, "", options);
  dataset->SetLeadingBoundary(true);
  ProcedureDataSource source(dataset);
  ASSERT_EQ(source.GetWeightVarIndex(), 2);
  auto iterator = MakeIterator(source);
  std::vector<double> weights;
  while (iterator->NextCase() != 0) {
    if (!iterator->SplitGroupEnd()) weights.push_back(*iterator->GetNumericValue(2));
  }
  // Read right after the leading boundary and after the end, as the run driver does.
  EXPECT_EQ(*iterator->GetNumericValue(2), 1.0);  // the last case's weight
  EXPECT_EQ(weights, (std::vector<double>{1, 0, TARN_SystemMissing(), 2, 1}));
}

TEST(ProcDSIterator, EmptyDataSetEndsAtOnceAndStillAnswersAccessors) {
  DatasetLoadOptions options;
  options.splitVariables = {"wave"};
  ProcedureDataSource source(DatasetLoader::LoadText("id,wave,name\n", "", options));
  auto iterator = MakeIterator(source);
  EXPECT_EQ(iterator->NextCase(), 0);
  EXPECT_TRUE(iterator->SplitGroupEnd());
  EXPECT_EQ(*iterator->GetNumericValue(0), TARN_SystemMissing());
  EXPECT_EQ(iterator->NextCase(), 0);
}

TEST(ProcedureDataSource, AttachesToTheActiveDataSet) {
  ActiveDataSet::Clear();
  {
    ProcedureDataSource none;
    EXPECT_TRUE(none.FatalError());
    EXPECT_EQ(none.ColumnCount(), 0);
    EXPECT_EQ(none.MakeIterator(nullptr), nullptr);
    EXPECT_EQ(none.GetWeightVarIndex(), -1);
  }
  ActiveDataSet::Install(DatasetLoader::LoadText(kWaves, "", {}));
  ProcedureDataSource active;
  ActiveDataSet::Clear();  // the source keeps its data set for the run
  EXPECT_FALSE(active.FatalError());
  EXPECT_EQ(active.ColumnCount(), 3);
  EXPECT_EQ(active.FindVarIndex("WAVE", 0), 1);
  EXPECT_EQ(active.FindVarIndex("nope", 0), -1);
  EXPECT_EQ(active.GetVariable(3), nullptr);
  EXPECT_EQ(active.GetWeightVarIndex(), -1);
  EXPECT_EQ(active.SplitVariableCount(), 0u);
  auto iterator = MakeIterator(active);
  EXPECT_EQ(iterator->NextCase(), 1);
}
