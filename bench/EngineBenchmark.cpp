// EngineBenchmark.cpp - cases per second through the engine's per-case path
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "host/data/DatasetLoader.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/engine/AggregationCube.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/AggregationTable.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/TableEncryptionCodes.h"

namespace {

using Codes = TableEncryptionCodes;

// The sample survey named by QUILT_BENCH_CSV (bench/run_bench.sh writes one), or else
// 1,000,000 generated cases of region (1-8), gender (1-2), agegrp (1-6), income (scale)
// and a weight.
std::shared_ptr<ProcedureDataSource> Source() {
  static std::shared_ptr<ProcedureDataSource> source = []() -> std::shared_ptr<ProcedureDataSource> {
    const char* path = std::getenv("QUILT_BENCH_CSV");
    if (path != nullptr && *path != '\0') {
      // The dictionary beside the data, as make_survey.py writes it, when there is one.
      std::string dictionary = path;
      if (dictionary.size() > 4 && dictionary.substr(dictionary.size() - 4) == ".csv") {
        dictionary = dictionary.substr(0, dictionary.size() - 4) + ".dict.json";
      }
      if (!std::ifstream(dictionary).good()) dictionary.clear();
      DatasetLoadOptions options;
      options.weightVariable = "wt";
      return std::make_shared<ProcedureDataSource>(DatasetLoader::LoadFiles(path, dictionary, options));
    }
    std::mt19937 random(7);
    std::string csv = "region,gender,agegrp,income,wt\n";
    csv.reserve(30'000'000);
    for (int i = 0; i < 1'000'000; ++i) {
      csv += std::to_string(1 + random() % 8) + "," + std::to_string(1 + random() % 2) + "," +
             std::to_string(1 + random() % 6) + "," + std::to_string(random() % 100000) + "," +
             std::to_string(0.5 + (random() % 100) / 100.0) + "\n";
    }
    const std::string dict = R"({"variables":[{"name":"region"},{"name":"gender"},{"name":"agegrp"},)"
                             R"({"name":"income"},{"name":"wt"}],"weight":"wt"})";
    return std::make_shared<ProcedureDataSource>(DatasetLoader::LoadText(csv, dict, {}));
  }();
  return source;
}

// kind 0: region > agegrp BY gender [COUNT COLPCT]; 1: the same weighted;
// 2: region BY gender [MEAN, MEDIAN of income].
void RunTable(benchmark::State& state) {
  const int kind = static_cast<int>(state.range(0));
  auto source = Source();
  std::size_t cases = 0;
  for (auto _ : state) {
    std::unique_ptr<TARN_InputCaseIterator> iterator(source->MakeIterator(nullptr));
    AggregationTable table(iterator.get(), source.get(), kind == 1, true, -1);
    AggregationVariable region(source->FindVarIndex("region"), "region");
    AggregationVariable agegrp(source->FindVarIndex("agegrp"), "agegrp");
    AggregationVariable gender(source->FindVarIndex("gender"), "gender");
    AggregationCube* cube = table.CreateCube();
    cube->AddCategoricalVariable(&region, Codes::kDimensionRow);
    if (kind != 2) cube->AddCategoricalVariable(&agegrp, Codes::kDimensionRow);
    cube->AddCategoricalVariable(&gender, Codes::kDimensionColumn);
    cube->CreateCubeAggregator();
    if (kind == 2) {
      const int income = source->FindVarIndex("income");
      cube->AddScaleStatistics(
          {AggregationStatistic(income, Codes::kStatMean), AggregationStatistic(income, Codes::kStatMedian)});
    } else {
      cube->AddCategoryStatistics(
          {AggregationStatistic(Codes::kStatCount), AggregationStatistic(Codes::kStatColPctCount)}, &gender);
    }
    auto* reader = static_cast<ProcDSIterator*>(iterator.get());
    while (reader->NextCase() != 0) {
      if (reader->SplitGroupEnd()) continue;
      table.AddNewCase();
      ++cases;
    }
    table.CompleteCases();
    benchmark::DoNotOptimize(table.IsTableEmpty());
  }
  state.SetItemsProcessed(static_cast<int64_t>(cases));
}

BENCHMARK(RunTable)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
