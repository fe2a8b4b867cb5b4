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

TEST(ParseDumpCommand, StackedRowTermsCrossedWithTheColumnMakeTwoCubes) {
  const DumpRun run = RunDump({"QUILT /TABLE region > agegrp + gender BY q1 [COUNT COLPCT]."});
  EXPECT_EQ(run.status, kExitSuccess);
  // ">" binds tighter than "+", and BY splits the rest: (region > agegrp) + gender in the
  // rows, q1 in the columns carrying the statistics of the bracket.
  const std::string expected =
      "  cubes: 2\n"
      "    cube 1 stattype=categorical\n"
      "      row region categorical outer stats=none totals=none\n"
      "      row agegrp categorical stats=none totals=none\n"
      "      column q1 categorical computational stats=[COUNT \"Count\", COLPCT \"Column %\"] totals=none\n"
      "    cube 2 stattype=categorical\n"
      "      row gender categorical stats=none totals=none\n"
      "      column q1 categorical computational stats=[COUNT \"Count\", COLPCT \"Column %\"] totals=none\n";
  EXPECT_NE(run.output.find(expected), std::string::npos) << run.output;
  EXPECT_NE(run.output.find("== command at -e:1\n"), std::string::npos) << run.output;
}

TEST(ParseDumpCommand, ACommandThatFailsToParseIsNamedAndTheNextStillDumps) {
  const DumpRun run = RunDump({"QUILT /TABLE region BY gender BY agegrp BY wave.", "QUILT /TABLE gender."});
  // The failed parse sets the exit status; the third BY is named in the message.
  EXPECT_EQ(run.status, kExitCommandError);
  const size_t failed = run.output.find("not parsed: see the messages");
  const size_t next = run.output.find("table 1 title=\"1\"\n  expression: Gender");
  ASSERT_NE(failed, std::string::npos) << run.output;
  ASSERT_NE(next, std::string::npos) << run.output;
  EXPECT_LT(failed, next);
  EXPECT_NE(run.output.find("BY"), std::string::npos);
}

}  // namespace
