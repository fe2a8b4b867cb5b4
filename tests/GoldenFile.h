// GoldenFile.h - compares a test's output with a golden file, or rewrites the file on request
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#ifndef QUILT_SOURCE_DIR
#define QUILT_SOURCE_DIR "."
#endif

/// Checks `actual` against tests/golden/<relativePath>. With QUILT_UPDATE_GOLDEN=1 in the
/// environment the file is written instead and the check passes; review the diff before
/// committing. A missing golden file fails with a hint rather than passing silently.
inline ::testing::AssertionResult MatchesGoldenFile(const std::string& relativePath,
                                                    const std::string& actual) {
  const std::filesystem::path path =
      std::filesystem::path(QUILT_SOURCE_DIR) / "tests" / "golden" / relativePath;
  const char* update = std::getenv("QUILT_UPDATE_GOLDEN");
  if (update != nullptr && std::string(update) == "1") {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << actual;
    if (!file) return ::testing::AssertionFailure() << "cannot write golden file " << path;
    return ::testing::AssertionSuccess();
  }
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    return ::testing::AssertionFailure()
           << "golden file " << path << " is missing; run with QUILT_UPDATE_GOLDEN=1 to create it";
  }
  std::ostringstream expected;
  expected << file.rdbuf();
  if (expected.str() == actual) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "output differs from " << path << "\n--- expected\n"
                                       << expected.str() << "\n--- actual\n"
                                       << actual;
}
