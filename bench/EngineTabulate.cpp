// EngineTabulate.cpp - times the three benchmark tabulations of the sample survey through the engine, loading
// included
//
// Usage: EngineTabulate PREFIX   (reads PREFIX.csv and PREFIX.dict.json, as make_survey.py writes them)
//
// The tables, unweighted:
//   1. (region > agegrp) + wave BY gender [COUNT COLPCT.COUNT]: a stacked and nested table;
//   2. region BY gender with MEAN, STDDEV and MEDIAN of score;
//   3. $media (dichotomy set, counted value 1) BY agegrp [COUNT COLPCT.COUNT].
// Each is timed in its own data pass, then all three in one pass as the procedure reads
// them. A few cells are printed as "check NAME VALUE" lines, which bench/run_bench.sh
// compares with pandas' figures for the same cells.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "aggregator/CellKey.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationCube.h"
#include "host/engine/AggregationMDSet.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/AggregationTable.h"
#include "host/engine/AggregationVariable.h"
#include "host/engine/CellStatistics.h"
#include "host/engine/CubeAggregator.h"
#include "host/engine/StatValues.h"
#include "host/engine/TableDimension.h"
#include "host/engine/TableEncryptionCodes.h"

namespace {

using Codes = TableEncryptionCodes;
using Clock = std::chrono::steady_clock;

double Seconds(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// Processor time of this process: on a machine shared with builds the wall clock says more
// about the neighbours than about the tabulation.
double CpuSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// One benchmark table with the variables it reads; the variables outlive the table.
struct Tabulation {
  std::vector<std::unique_ptr<AggregationVariable>> _variables;
  std::unique_ptr<AggregationTable> _table;
  int _kind = 0;

  AggregationVariable* Variable(const ProcedureDataSource& source, const char* name) {
    _variables.push_back(std::make_unique<AggregationVariable>(source.FindVarIndex(name), name));
    return _variables.back().get();
  }
};

std::unique_ptr<Tabulation> MakeTabulation(int kind, const ProcedureDataSource& source,
                                           TARN_InputCaseIterator* iterator) {
  auto tabulation = std::make_unique<Tabulation>();
  tabulation->_kind = kind;
  tabulation->_table = std::make_unique<AggregationTable>(iterator, &source, /*weighted=*/false,
                                                          /*pairwiseMissing=*/true, /*baseWeightIndex=*/-1);
  AggregationTable& table = *tabulation->_table;
  const std::vector<AggregationStatistic> counts = {AggregationStatistic(Codes::kStatCount),
                                                    AggregationStatistic(Codes::kStatColPctCount)};
  if (kind == 1) {
    AggregationVariable* region = tabulation->Variable(source, "region");
    AggregationVariable* agegrp = tabulation->Variable(source, "agegrp");
    AggregationVariable* wave = tabulation->Variable(source, "wave");
    AggregationVariable* gender = tabulation->Variable(source, "gender");
    AggregationCube* nested = table.CreateCube();
    nested->AddCategoricalVariable(region, Codes::kDimensionRow);
    nested->AddCategoricalVariable(agegrp, Codes::kDimensionRow);
    nested->AddCategoricalVariable(gender, Codes::kDimensionColumn);
    nested->CreateCubeAggregator();
    nested->AddCategoryStatistics(counts, agegrp);
    AggregationCube* stacked = table.CreateCube();
    stacked->AddCategoricalVariable(wave, Codes::kDimensionRow);
    stacked->AddCategoricalVariable(gender, Codes::kDimensionColumn);
    stacked->CreateCubeAggregator();
    stacked->AddCategoryStatistics(counts, wave);
  } else if (kind == 2) {
    AggregationVariable* region = tabulation->Variable(source, "region");
    AggregationVariable* gender = tabulation->Variable(source, "gender");
    const int score = source.FindVarIndex("score");
    AggregationCube* cube = table.CreateCube();
    cube->AddCategoricalVariable(region, Codes::kDimensionRow);
    cube->AddCategoricalVariable(gender, Codes::kDimensionColumn);
    cube->CreateCubeAggregator();
    cube->AddScaleStatistics({AggregationStatistic(score, Codes::kStatMean),
                              AggregationStatistic(score, Codes::kStatStdDev),
                              AggregationStatistic(score, Codes::kStatMedian)});
  } else {
    std::vector<int> members;
    for (const char* name : {"tv", "radio", "web", "print", "social"})
      members.push_back(source.FindVarIndex(name));
    OBS counted{};
    counted.number = 1.0;
    tabulation->_variables.push_back(std::make_unique<AggregationMDSet>(members, "$media", &counted,
                                                                        /*countedValueSize=*/1,
                                                                        /*useCountedValueLabels=*/false));
    AggregationVariable* media = tabulation->_variables.back().get();
    AggregationVariable* agegrp = tabulation->Variable(source, "agegrp");
    AggregationCube* cube = table.CreateCube();
    cube->AddCategoricalVariable(media, Codes::kDimensionRow);
    cube->AddCategoricalVariable(agegrp, Codes::kDimensionColumn);
    cube->CreateCubeAggregator();
    cube->AddCategoryStatistics(counts, media);
  }
  return tabulation;
}

// One data pass over all cases into the given tables, as the procedure's case loop runs it.
struct Timing {
  double _cpu = 0.0;
  double _wall = 0.0;
};

Timing Pass(ProcedureDataSource& source, const std::vector<int>& kinds,
            std::vector<std::unique_ptr<Tabulation>>& made) {
  std::unique_ptr<TARN_InputCaseIterator> iterator(source.MakeIterator(nullptr));
  made.clear();
  const Clock::time_point start = Clock::now();
  const double cpu = CpuSeconds();
  for (int kind : kinds) made.push_back(MakeTabulation(kind, source, iterator.get()));
  auto* reader = static_cast<ProcDSIterator*>(iterator.get());
  while (reader->NextCase() != 0) {
    if (reader->SplitGroupEnd()) continue;
    for (auto& tabulation : made) tabulation->_table->AddNewCase();
  }
  for (auto& tabulation : made) tabulation->_table->CompleteCases();
  // The tables keep the iterator's address but read it only while cases are added.
  return {CpuSeconds() - cpu, Seconds(start)};
}

int EncodingOf(TableDimension* dimension, double number) {
  for (const AggregationCategory* category : dimension->GetCategories()) {
    if (category->GetCatType() == AggregationCategory::kValue && category->GetCatValue()->number == number) {
      return category->GetCatEncoding();
    }
  }
  return -999;
}

double Read(const CubeAggregator& cube, std::initializer_list<int> codes,
            const AggregationStatistic& statistic) {
  CellKey key(static_cast<int>(codes.size()));
  int i = 0;
  for (int code : codes) key[i++] = code;
  const StatValues* values = cube.GetStatValuesByKey(key);
  const int index = cube.GetCellStats()->GetIndex(statistic, statistic.GetVarIndex() < 0);
  if (values == nullptr || index < 0) return TARN_SystemMissing();
  return values->GetStatValue(index).GetValue1();
}

void PrintChecks(const ProcedureDataSource& source, std::vector<std::unique_ptr<Tabulation>>& made) {
  const AggregationStatistic count(Codes::kStatCount);
  const AggregationStatistic colpct(Codes::kStatColPctCount);
  for (auto& tabulation : made) {
    const std::vector<CubeAggregator*> cubes = tabulation->_table->GetCubeAggregators();
    if (tabulation->_kind == 1) {
      const CubeAggregator& nested = *cubes[0];
      const int r1 = EncodingOf(nested.GetDimension(0), 1);
      const int a1 = EncodingOf(nested.GetDimension(1), 1);
      const int g1 = EncodingOf(nested.GetDimension(2), 1);
      std::printf("check t1_count_r1_a1_g1 %.6f\n", Read(nested, {r1, a1, g1}, count));
      std::printf("check t1_colpct_r1_a1_g1 %.6f\n", Read(nested, {r1, a1, g1}, colpct));
      const CubeAggregator& stacked = *cubes[1];
      const int w1 = EncodingOf(stacked.GetDimension(0), 1);
      const int g2 = EncodingOf(stacked.GetDimension(1), 2);
      std::printf("check t1_count_w1_g2 %.6f\n", Read(stacked, {w1, g2}, count));
      std::printf("check t1_colpct_w1_g2 %.6f\n", Read(stacked, {w1, g2}, colpct));
    } else if (tabulation->_kind == 2) {
      const CubeAggregator& cube = *cubes[0];
      const int score = source.FindVarIndex("score");
      const int r1 = EncodingOf(cube.GetDimension(0), 1);
      const int g1 = EncodingOf(cube.GetDimension(1), 1);
      std::printf("check t2_mean_r1_g1 %.6f\n",
                  Read(cube, {r1, g1}, AggregationStatistic(score, Codes::kStatMean)));
      std::printf("check t2_stddev_r1_g1 %.6f\n",
                  Read(cube, {r1, g1}, AggregationStatistic(score, Codes::kStatStdDev)));
      std::printf("check t2_median_r1_g1 %.6f\n",
                  Read(cube, {r1, g1}, AggregationStatistic(score, Codes::kStatMedian)));
    } else {
      const CubeAggregator& cube = *cubes[0];
      const int a1 = EncodingOf(cube.GetDimension(1), 1);
      // Members are encoded by their place in the set: tv is 0.
      std::printf("check t3_count_tv_a1 %.6f\n", Read(cube, {0, a1}, count));
      std::printf("check t3_colpct_tv_a1 %.6f\n", Read(cube, {0, a1}, colpct));
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: EngineTabulate PREFIX [TABLE] (reads PREFIX.csv and PREFIX.dict.json)\n");
    return 2;
  }
  // A table number alone times that table over several passes, for a profiler.
  const int only = argc == 3 ? std::atoi(argv[2]) : 0;
  const std::string prefix = argv[1];
  const Clock::time_point start = Clock::now();
  const double cpu = CpuSeconds();
  std::shared_ptr<Dataset> dataset = DatasetLoader::LoadFiles(prefix + ".csv", prefix + ".dict.json", {});
  const Timing load{CpuSeconds() - cpu, Seconds(start)};
  ProcedureDataSource source(dataset);
  const double cases = static_cast<double>(dataset->GetCaseCount());
  // Times are processor seconds, the wall clock in brackets.
  std::printf("load: %.0f cases in %.2f s (wall %.2f s)\n", cases, load._cpu, load._wall);
  // What the data set itself holds, so that peak memory tells what the tables add.
  std::printf("data set: %.0f MB of case data\n", static_cast<double>(dataset->GetDataBytes()) / 1048576.0);
  auto report = [cases](const char* what, const Timing& timing) {
    std::printf("%s: %.3f s, %.1f M cases/s (wall %.3f s)\n", what, timing._cpu, cases / timing._cpu / 1e6,
                timing._wall);
  };

  const char* names[] = {"", "table 1 ((region > agegrp) + wave BY gender, COUNT COLPCT)",
                         "table 2 (region BY gender, score MEAN STDDEV MEDIAN)",
                         "table 3 ($media BY agegrp, COUNT COLPCT)"};
  std::vector<std::unique_ptr<Tabulation>> made;
  if (only >= 1 && only <= 3) {
    for (int repeat = 0; repeat < 5; ++repeat) report(names[only], Pass(source, {only}, made));
    return 0;
  }
  for (int kind = 1; kind <= 3; ++kind) report(names[kind], Pass(source, {kind}, made));
  const Timing all = Pass(source, {1, 2, 3}, made);
  report("all three in one pass", all);
  std::printf("total: load and one pass of all three: %.2f s (wall %.2f s)\n", load._cpu + all._cpu,
              load._wall + all._wall);
  PrintChecks(source, made);
  return 0;
}
