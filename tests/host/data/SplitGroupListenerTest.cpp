// SplitGroupListenerTest.cpp - the iterator names each split group as it enters it
#include "host/data/SplitGroupListener.h"

#include <gtest/gtest.h>

#include <memory>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcDSIterator.h"

namespace {

TEST(SplitGroupListener, AnnouncesEachGroupAtItsFirstCaseWithLabelsOrFormattedValues) {
  const std::string dictionary = R"({
    "variables": [
      {"name": "wave", "label": "Survey wave", "values": {"1": "First"}},
      {"name": "city", "type": "string", "width": 12},
      {"name": "score", "format": "F5.1"}
    ],
    "split": {"variables": ["wave", "city"]}
  })";
  auto dataset = DatasetLoader::LoadText("wave,city,score\n1,Oslo,1\n1,Oslo,2\n2,Oslo,3\n2,Bergen,4\n", dictionary, {});
  std::vector<SplitGroupPairs> announced;
  std::vector<std::size_t> casesRead;
  std::size_t cases = 0;
  SplitGroupListener::Install([&](const SplitGroupPairs& pairs) {
    announced.push_back(pairs);
    casesRead.push_back(cases);
  });
  ProcDSIterator iterator(dataset);
  while (iterator.NextCase() != 0) {
    if (!iterator.SplitGroupEnd()) ++cases;
  }
  SplitGroupListener::Install(nullptr);

  // Three groups: (1, Oslo), (2, Oslo), (2, Bergen); each announced before its first case
  // is counted, so after 0, 2 and 3 cases.
  const std::vector<SplitGroupPairs> expected = {
      {{"Survey wave", "First"}, {"city", "Oslo"}},
      {{"Survey wave", "2"}, {"city", "Oslo"}},
      {{"Survey wave", "2"}, {"city", "Bergen"}},
  };
  EXPECT_EQ(announced, expected);
  EXPECT_EQ(casesRead, (std::vector<std::size_t>{0, 2, 3}));
}

TEST(SplitGroupListener, DataWithoutSplitsAnnounceNothing) {
  auto dataset = DatasetLoader::LoadText("x\n1\n2\n", "", {});
  int announcements = 0;
  SplitGroupListener::Install([&](const SplitGroupPairs&) { ++announcements; });
  ProcDSIterator iterator(dataset);
  while (iterator.NextCase() != 0) {
  }
  SplitGroupListener::Install(nullptr);
  EXPECT_EQ(announcements, 0);
}

}  // namespace
