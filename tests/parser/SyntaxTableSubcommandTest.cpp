// SyntaxTableSubcommandTest.cpp - what the table's own checks let through (the refusals are lines of diagnostics.txt)
#include <gtest/gtest.h>

#include "ParserTestSupport.h"

namespace {

TEST(TableChecks, LetThroughWhatCanStand) {
  const char* const commands[] = {
      // Source categories shown under SIGTEST; COMPARETEST makes no check of hidden ones.
      "QUILT /PCOMPUTE &top=EXPR([1]+[2]) /PPROPERTIES &top HIDESOURCECATS=NO /TABLE a BY b /SIGTEST TYPE=CHISQUARE.",
      "QUILT /PCOMPUTE &top=EXPR([1]+[2]) /PPROPERTIES &top HIDESOURCECATS=YES /TABLE a BY b /COMPARETEST TYPE=PROP.",
      // Two BYs are three axes, the most a table has.
      "QUILT /TABLE a BY b BY c.",
  };
  for (const char* command : commands) {
    const ParseOutcome outcome = ParseCommand(command);
    EXPECT_TRUE(outcome.succeeded) << command << ": " << outcome.error.key;
  }
}

}  // namespace
