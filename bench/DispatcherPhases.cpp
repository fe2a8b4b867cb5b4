// DispatcherPhases.cpp - splits one three-table run over the benchmark survey into loading, the
// engine's data pass and the cube dispatchers' own work, with a timer around each phase
//
// Usage: DispatcherPhases PREFIX [REPEATS]   (reads PREFIX.csv and PREFIX.dict.json, as
//        examples/make_survey.py writes them; REPEATS delivers each table that many more
//        times after the timed run, for a steadier figure of one delivery; default 20)
//
// The phases follow the run of one command as the driver makes it, with the same calls in
// the same order (the file has no split groups and no weight, so there is one group and
// every case is accepted):
//   load      the CSV and dictionary into the active data set;
//   parse     the command, cut into sub-tables and validated;
//   declare   one CubeDispatcher per table: the engine's tables, cubes, variables and
//             statistics, then the preliminary header trees and axis cubes (CreateCubes);
//   pass      every case read and handed to every dispatcher (Aggregate);
//   finalize  the engine closing the group (Finalize: CompleteCases);
//   deliver   BuildTable: the table's warnings, the final header trees (BuildCompleteTable)
//             and the rendering of the main table into the output document.
// BuildCompleteTable on its own is timed on a second QuiltTable built from the same parsed
// table after the pass: the benchmark tables consult no axis cube (their outer variables show
// empty categories), so the twin's final trees are those the dispatcher builds.
// Times are wall seconds, with processor seconds in brackets.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "CubeDispatcher.h"
#include "host/data/ActiveDataSet.h"
#include "host/data/AdjustMeasurementLevels.h"
#include "host/data/DatasetLoader.h"
#include "host/data/HostRecords.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/output/BpComposite.h"
#include "host/output/BpProcedure.h"
#include "host/output/OutputDocument.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/SyntaxReader.h"
#include "parser/SyntaxTableSubcommand.h"
#include "tablebuilder/QuiltTable.h"

namespace {

using Clock = std::chrono::steady_clock;

// The three benchmark tabulations of bench/README.md, as one command and so one data pass.
constexpr const char* kCommand =
    "QUILT /TABLE (region > agegrp) + wave BY gender [COUNT COLPCT.COUNT]"
    " /TABLE region > score [MEAN STDDEV MEDIAN] BY gender"
    " /TABLE $media BY agegrp [COUNT COLPCT.COUNT]";

/// Wall and processor time since construction.
class PhaseTimer {
 public:
  PhaseTimer() : _wallStart(Clock::now()), _cpuStart(std::clock()) {}
  double Wall() const { return std::chrono::duration<double>(Clock::now() - _wallStart).count(); }
  double Cpu() const { return static_cast<double>(std::clock() - _cpuStart) / CLOCKS_PER_SEC; }

 private:
  Clock::time_point _wallStart;
  std::clock_t _cpuStart;
};

struct Phase {
  const char* name;
  double wall = 0;
  double cpu = 0;
};

void Print(const Phase& phase, double totalWall) {
  std::printf("%-34s %9.4f s (cpu %9.4f s) %6.2f%%\n", phase.name, phase.wall, phase.cpu,
              totalWall > 0 ? 100.0 * phase.wall / totalWall : 0.0);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s PREFIX [REPEATS]\n", argv[0]);
    return 2;
  }
  const std::string prefix = argv[1];
  const int repeats = argc > 2 ? std::atoi(argv[2]) : 20;
  std::vector<Phase> phases;

  PhaseTimer loadTimer;
  ActiveDataSet::Install(DatasetLoader::LoadFiles(prefix + ".csv", prefix + ".dict.json", {}));
  SetUpHostRecords(*ActiveDataSet::Get(), /*controlPackage=*/false);
  OutputDocument document;
  OutputDocument::Install(&document);
  phases.push_back({"load", loadTimer.Wall(), loadTimer.Cpu()});

  // The entry's objects, in the entry's order.
  BpProcedure procedure("Quilt", 4);
  LexedCommand lexed = Lexer::Lex(kCommand);
  TARN_TokenSequence tokens(&lexed, true);
  ProcedureDataSource dataSource;
  AdjustMeasurementLevels(dataSource);

  PhaseTimer parseTimer;
  SyntaxReader reader;
  reader.SetDataSource(&dataSource);
  try {
    reader.ReadTokens(&tokens);
  } catch (const BpComposite& composite) {
    std::fprintf(stderr, "the command does not parse: %s\n", composite.GetKey().c_str());
    return 1;
  }
  phases.push_back({"parse", parseTimer.Wall(), parseTimer.Cpu()});
  const std::vector<SyntaxTableSubcommand*> tables = reader.GetTable();

  std::unique_ptr<TARN_InputCaseIterator> input(dataSource.MakeIterator(nullptr));
  auto* iterator = dynamic_cast<ProcDSIterator*>(input.get());
  if (iterator == nullptr) return 1;

  PhaseTimer declareTimer;
  std::vector<std::unique_ptr<CubeDispatcher>> dispatchers;
  for (SyntaxTableSubcommand* table : tables) {
    dispatchers.push_back(std::make_unique<CubeDispatcher>(table));
    dispatchers.back()->CreateCubes(*iterator);
  }
  phases.push_back({"declare (CreateCubes)", declareTimer.Wall(), declareTimer.Cpu()});

  PhaseTimer passTimer;
  long cases = 0;
  while (iterator->NextCase() != 0) {
    for (auto& dispatcher : dispatchers) dispatcher->Aggregate();
    ++cases;
  }
  phases.push_back({"data pass (Aggregate)", passTimer.Wall(), passTimer.Cpu()});

  PhaseTimer finalizeTimer;
  for (auto& dispatcher : dispatchers) dispatcher->Finalize();
  phases.push_back({"finalize (CompleteCases)", finalizeTimer.Wall(), finalizeTimer.Cpu()});

  PhaseTimer deliverTimer;
  for (size_t i = 0; i < dispatchers.size(); ++i) {
    dispatchers[i]->BuildTable(&procedure, &dataSource, static_cast<int>(i) + 1, false, "");
  }
  phases.push_back({"deliver (BuildTable)", deliverTimer.Wall(), deliverTimer.Cpu()});

  double totalWall = 0;
  double totalCpu = 0;
  for (const Phase& phase : phases) {
    totalWall += phase.wall;
    totalCpu += phase.cpu;
  }
  std::printf("%ld cases, %zu tables, one pass\n", cases, tables.size());
  for (const Phase& phase : phases) Print(phase, totalWall);
  Print({"total", totalWall, totalCpu}, totalWall);

  // One delivery again, many times: the first one above also paid for first touches.
  if (repeats > 0) {
    PhaseTimer again;
    for (int repeat = 0; repeat < repeats; ++repeat) {
      for (size_t i = 0; i < dispatchers.size(); ++i) {
        dispatchers[i]->BuildTable(&procedure, &dataSource, static_cast<int>(i) + 1, false, "");
      }
    }
    std::printf("deliver, mean of %d more: %.6f s (cpu %.6f s) for the three tables\n", repeats,
                again.Wall() / repeats, again.Cpu() / repeats);

    PhaseTimer preliminary;
    for (int repeat = 0; repeat < repeats; ++repeat) {
      for (SyntaxTableSubcommand* table : tables) QuiltTable().BuildTableTreesFromSyntax(table);
    }
    const double preliminaryWall = preliminary.Wall() / repeats;
    const double preliminaryCpu = preliminary.Cpu() / repeats;
    PhaseTimer complete;
    for (int repeat = 0; repeat < repeats; ++repeat) {
      for (SyntaxTableSubcommand* table : tables) {
        QuiltTable twin;
        twin.BuildTableTreesFromSyntax(table);
        twin.BuildCompleteTable();
      }
    }
    std::printf("preliminary trees, mean of %d: %.6f s (cpu %.6f s) for the three tables\n", repeats, preliminaryWall,
                preliminaryCpu);
    std::printf("BuildCompleteTable, mean of %d: %.6f s (cpu %.6f s) for the three tables\n", repeats,
                complete.Wall() / repeats - preliminaryWall, complete.Cpu() / repeats - preliminaryCpu);
  }
  for (auto& dispatcher : dispatchers) dispatcher->ClearDeep();
  OutputDocument::Install(nullptr);
  return 0;
}
