// ParseDumpTest.cpp - whole commands against golden parse dumps: trees, expressions, settings and cubes
#include <gtest/gtest.h>

#include <string>

#include "ParserTestSupport.h"
#include "GoldenFile.h"

namespace {

struct DumpCase {
  const char* name;     // golden file tests/golden/parser/<name>.txt
  const char* command;
};

class ParseDumps : public testing::TestWithParam<DumpCase> {};

TEST_P(ParseDumps, MatchTheGoldenFile) {
  const DumpCase& c = GetParam();
  const KeptParse parse(c.command);
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  EXPECT_TRUE(MatchesGoldenFile(std::string("parser/") + c.name + ".txt",
                                std::string("command: ") + c.command + "\n\n" + parse.ParseDump()));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, ParseDumps,
    testing::Values(
        // Two stacked row terms, one of them nested, crossed with the column that carries
        // the statistics.
        DumpCase{"stacked_rows_by_column", "QUILT /TABLE a > b + c BY d [COUNT COLPCT]."},
        // A bracket on a paren reaches both leaves; an empty row axis in the second table.
        DumpCase{"paren_bracket_and_empty_axis", "QUILT /TABLE (a + b) [COUNT] BY e /TABLE BY c BY d."},
        // Percentiles with their labels and formats, summaries sharing a cube.
        DumpCase{"summaries", "QUILT /TABLE x [MEAN PTILE 25 'Quartile' COMMA8.2] + y BY a /CRITERIA CILEVEL=90."},
        // ">" binds tighter than "+" and BY looser than both; a paren regroups; an empty
        // column axis between two BYs; a bracket after a nesting paren reaches only its leaf;
        // GT is written as ">".
        DumpCase{"precedence_parens_and_empty_column",
                 "QUILT /TABLE a + b > c BY d > (e + b) /TABLE (a + b) > c BY BY d"
                 " /TABLE (a > b) [COLPCT] + c GT d > e."},
        // Totals on a set, a test that stays and one that is dropped.
        DumpCase{"totals_and_tests",
                 "QUILT /TABLE $dich [COUNT TOTALS [COUNT]] BY a /SIGTEST TYPE=CHISQUARE"
                 " /COMPARETEST TYPE=MEAN."}),
    [](const testing::TestParamInfo<DumpCase>& info) { return std::string(info.param.name); });

}  // namespace
