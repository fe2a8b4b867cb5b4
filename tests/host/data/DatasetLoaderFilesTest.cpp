// DatasetLoaderFilesTest.cpp - loading from files: the dictionary beside the data, explicit paths, unreadable
// files
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "host/data/DataError.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"

namespace {

// A fresh directory under the temp directory, removed with the fixture.
class DatasetLoaderFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    _directory = std::filesystem::temp_directory_path() /
                 ("quilt-data-test-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                  "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(_directory);
  }
  void TearDown() override { std::filesystem::remove_all(_directory); }

  std::string Write(const std::string& name, const std::string& text) const {
    const std::filesystem::path path = _directory / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }

  std::filesystem::path _directory;
};

const char* kDictionary = R"({"variables": [{"name": "x", "label": "From the dictionary"}]})";

}  // namespace

TEST_F(DatasetLoaderFiles, PicksUpTheDictionaryBesideTheData) {
  const std::string csv = Write("poll.csv", "x,y\n1,2\n");
  Write("poll.dict.json", kDictionary);
  const auto dataset = DatasetLoader::LoadFiles(csv, "", {});
  EXPECT_STREQ(dataset->GetVariable(0).GetLabel(), "From the dictionary");
}

TEST_F(DatasetLoaderFiles, WithoutADictionaryEverythingIsInferred) {
  const std::string csv = Write("bare.csv", "x,y\n1,a\n");
  const auto dataset = DatasetLoader::LoadFiles(csv, "", {});
  EXPECT_STREQ(dataset->GetVariable(0).GetLabel(), "");
  EXPECT_EQ(dataset->GetVariable(1).GetType(), 1);
}

TEST_F(DatasetLoaderFiles, AnExplicitDictionaryWinsAndNamesItsErrors) {
  const std::string csv = Write("poll.csv", "x,y\n1,2\n");
  Write("poll.dict.json", R"({"variables": [{"name": "nope"}]})");
  const std::string other = Write("other.json", kDictionary);
  EXPECT_STREQ(DatasetLoader::LoadFiles(csv, other, {})->GetVariable(0).GetLabel(), "From the dictionary");
  try {
    DatasetLoader::LoadFiles(csv, "", {});
    FAIL() << "the dictionary beside the data names a column that does not exist";
  } catch (const DataError& error) {
    EXPECT_EQ(std::string(error.what()), (_directory / "poll.dict.json").string() +
                                             ": variables[0].name: 'nope' is not a column of " + csv);
  }
}

TEST_F(DatasetLoaderFiles, UnreadableFilesAreDataErrors) {
  const std::string missing = (_directory / "absent.csv").string();
  try {
    DatasetLoader::LoadFiles(missing, "", {});
    FAIL() << "no error for a missing file";
  } catch (const DataError& error) {
    EXPECT_EQ(std::string(error.what()).rfind(missing + ": cannot open the data file", 0), 0u)
        << error.what();
  }
  const std::string csv = Write("poll.csv", "x\n1\n");
  const std::string empty = Write("empty.json", "  \n");
  EXPECT_THROW(DatasetLoader::LoadFiles(csv, empty, {}), DataError);
  EXPECT_THROW(DatasetLoader::LoadFiles(csv, (_directory / "none.json").string(), {}), DataError);
}
