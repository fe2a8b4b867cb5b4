// DataLoadBenchmark.cpp - time and memory of loading a 1,000,000 x 20 numeric CSV file
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"

namespace {

constexpr int kRows = 1000000;
constexpr int kColumns = 20;

// Writes the file once per process: half the columns small category codes, half values
// with two decimals, about one field in fifty empty, as survey exports look.
const std::string& NumericCsvPath() {
  static const std::string path = [] {
    const std::filesystem::path directory = std::filesystem::temp_directory_path() / "quilt-data-load-bench";
    std::filesystem::create_directories(directory);
    const std::filesystem::path file = directory / "numeric.csv";
    std::ofstream stream(file, std::ios::binary);
    for (int column = 0; column < kColumns; ++column) stream << (column ? "," : "") << "v" << column + 1;
    stream << '\n';
    std::mt19937_64 random(20240611);
    std::uniform_int_distribution<int> code(1, 9);
    std::uniform_int_distribution<int> cents(0, 9999999);
    std::uniform_int_distribution<int> empty(0, 49);
    char buffer[32];
    std::string line;
    for (int row = 0; row < kRows; ++row) {
      line.clear();
      for (int column = 0; column < kColumns; ++column) {
        if (column) line += ',';
        if (empty(random) == 0) continue;
        if (column % 2 == 0) {
          line += static_cast<char>('0' + code(random));
        } else {
          const int value = cents(random);
          std::snprintf(buffer, sizeof buffer, "%d.%02d", value / 100, value % 100);
          line += buffer;
        }
      }
      line += '\n';
      stream << line;
    }
    return file.string();
  }();
  return path;
}

void BM_LoadNumericCsv(benchmark::State& state) {
  const std::string& path = NumericCsvPath();
  const double fileBytes = static_cast<double>(std::filesystem::file_size(path));
  double dataBytes = 0;
  for (auto _ : state) {
    auto dataset = DatasetLoader::LoadFiles(path, "", {});
    benchmark::DoNotOptimize(dataset.get());
    dataBytes = static_cast<double>(dataset->GetDataBytes());
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  // The numeric size is 8 bytes per value; memory is judged against it.
  const double numericBytes = 8.0 * kRows * kColumns;
  state.counters["file_MB"] = fileBytes / 1e6;
  state.counters["data_vs_numeric"] = dataBytes / numericBytes;
  state.counters["peak_rss_vs_numeric"] = static_cast<double>(usage.ru_maxrss) * 1024.0 / numericBytes;
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kRows) * kColumns);
}
BENCHMARK(BM_LoadNumericCsv)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
