// ParseDumpCommandTest.cpp - quilt --dump-parse on the sample survey: what each command was parsed into
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "QuiltProgram.h"

namespace {

struct DumpRun {
  int status = -1;
  std::string output;
};

DumpRun RunDump(const std::vector<std::string>& commands) {
  ProgramOptions options;
  options.dataPath = QuiltProgram::DefaultDataPath();
  options.commandTexts = commands;
  options.dumpParse = true;
  std::ostringstream output;
  std::ostringstream errors;
  QuiltProgram program(std::move(options), errors);
  DumpRun run;
  run.status = program.Run(output);
  run.output = output.str();
  return run;
}

// The dump's content is pinned by the parser's golden dumps (tests/golden/parser); here, that
// the program prints it for each command, names the one that failed and goes on.
TEST(ParseDumpCommand, EachCommandIsDumpedAndAFailedOneIsNamed) {
  const DumpRun run = RunDump({"QUILT /TABLE region > agegrp + gender BY q1 [COUNT COLPCT].",
                               "QUILT /TABLE region BY gender BY agegrp BY wave.", "QUILT /TABLE gender."});
  // The failed parse sets the exit status; the commands before and after it still dump.
  EXPECT_EQ(run.status, kExitCommandError);
  const size_t first = run.output.find("== command at -e:1\n");
  // ">" binds tighter than "+", and BY splits the rest: two cubes, the second gender by q1.
  const size_t cubes = run.output.find(
      "  cubes: 2\n    cube 1 stattype=categorical\n      row region categorical outer stats=none totals=none\n");
  const size_t failed = run.output.find("not parsed: see the messages");
  const size_t next = run.output.find("table 1 title=\"1\"\n  expression: Gender");
  ASSERT_NE(first, std::string::npos) << run.output;
  ASSERT_NE(cubes, std::string::npos) << run.output;
  ASSERT_NE(failed, std::string::npos) << run.output;
  ASSERT_NE(next, std::string::npos) << run.output;
  EXPECT_LT(cubes, failed);
  EXPECT_LT(failed, next);
}

}  // namespace
