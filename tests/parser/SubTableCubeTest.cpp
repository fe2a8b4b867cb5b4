// SubTableCubeTest.cpp - multiple-response sets innermost in a cube, and the marks the tests put on them
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "parser/SubTableCube.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"

namespace {

// Runs `ask` on the first cube of the one table of `expression`.
template <class Ask>
void OnFirstCube(const std::string& expression, Ask ask) {
  const KeptParse parse("QUILT /TABLE " + expression + ".");
  ASSERT_TRUE(parse.Succeeded()) << expression << ": " << parse.Error().key;
  ask(*(*parse.Tables().at(0))[0]);
}

TEST(SubTableCube, ASetStandsInnermostWhereItsAxisEndsOrAtTheEnd) {
  struct Case {
    const char* expression;
    bool inner;
  };
  const std::vector<Case> cases = {
      {"$cats BY a", true},       // innermost in the rows
      {"a BY $cats", true},       // last, in the columns
      {"a > $cats BY b", true},   // innermost in the rows below a
      {"$cats > a BY b", false},  // outer in the rows
      {"a BY b BY $cats", false}, // in the layers it is no inner set
      {"$cats", false},           // a cube of one variable has no inside
  };
  for (const Case& c : cases) {
    OnFirstCube(c.expression, [&](SubTableCube& cube) { EXPECT_EQ(cube.HasMRSetInner(), c.inner) << c.expression; });
  }
}

TEST(SubTableCube, MarkingInnermostSetsForTests) {
  struct Case {
    const char* expression;
    bool includeRows;
    bool forPairs;
    bool marked;
    const char* row;     // the inner row set marked, or "none"
    const char* column;  // the inner column set marked, or "none"
    bool extraDim;
  };
  const std::vector<Case> cases = {
      // A column set compared in pairs needs the extra dimension for its overlaps.
      {"a BY $dich", true, true, true, "none", "$dich", true},
      {"a BY $dich", true, false, true, "none", "$dich", false},
      // A row set is marked only when rows are included, and never asks for the dimension.
      {"$cats BY a", true, true, true, "$cats", "none", false},
      {"$cats BY a", false, true, false, "none", "none", false},
      {"$cats BY $dich", true, true, true, "$cats", "$dich", true},
      // A single set in the columns counts only for pairwise tests.
      {"BY $dich", true, true, true, "none", "$dich", true},
      {"BY $dich", true, false, false, "none", "none", false},
      // An outer set is not inner.
      {"a BY $dich > b", true, true, false, "none", "none", false},
  };
  for (const Case& c : cases) {
    OnFirstCube(c.expression, [&](SubTableCube& cube) {
      EXPECT_EQ(cube.MarkInnermostMRSets(c.includeRows, c.forPairs), c.marked) << c.expression;
      const SyntaxVariableName* row = cube.GetInnerRowMRforTest();
      const SyntaxVariableName* column = cube.GetInnerColMRforTest();
      EXPECT_EQ(row == nullptr ? "none" : row->GetNameToken(), c.row) << c.expression;
      EXPECT_EQ(column == nullptr ? "none" : column->GetNameToken(), c.column) << c.expression;
      EXPECT_EQ(cube.NeedExtraDim(), c.extraDim) << c.expression;
    });
  }
}

TEST(SubTableCube, StatTypeFollowsTheCarrierOfTheStatistics) {
  struct Case {
    const char* expression;
    int type;
  };
  const std::vector<Case> cases = {
      {"x BY a", SubTableCube::kCubeStatScale},
      {"a [COUNT] BY b", SubTableCube::kCubeStatCategorical},
      {"$cats [COUNT] BY a", SubTableCube::kCubeStatMRSet},
      // A default COUNT is removable, and that outranks the set.
      {"a BY $cats", SubTableCube::kCubeStatRemovable},
  };
  for (const Case& c : cases) {
    OnFirstCube(c.expression, [&](SubTableCube& cube) { EXPECT_EQ(cube.GetCubeStatType(), c.type) << c.expression; });
  }
}

TEST(SubTableCube, ACopyKeepsEverythingButTheEngineCube) {
  OnFirstCube("a BY $dich", [](SubTableCube& cube) {
    cube.MarkInnermostMRSets(/*includeRows=*/true, /*forPairs=*/true);
    SubTableCube* original = &cube;
    const SubTableCube copy(original);
    EXPECT_EQ(SummarizeCube(copy), SummarizeCube(cube));
    EXPECT_EQ(copy.GetComputationalVariable(), cube.GetComputationalVariable());
    EXPECT_EQ(copy.GetInnerColMRforTest(), cube.GetInnerColMRforTest());
    EXPECT_TRUE(copy.NeedExtraDim());
    EXPECT_EQ(copy.GetAggregationCube(), nullptr);
    // Past the categorical variables the positions run on into the scale list.
    EXPECT_EQ(copy.GetVarCount(), 2);
    EXPECT_EQ(copy[1]->GetNameToken(), "$dich");
  });
}

TEST(SubTableCube, NameQueriesAskTheComputationalVariable) {
  OnFirstCube("a BY b [COUNT COLPCT.COUNT] + x", [](SubTableCube& cube) {
    EXPECT_TRUE(cube.CatVarNameIsComputational("B"));
    EXPECT_FALSE(cube.CatVarNameIsComputational("a"));
    EXPECT_TRUE(cube.CatVarWithStatExists("b", 18));   // COLPCT.COUNT is code 18
    EXPECT_FALSE(cube.CatVarWithStatExists("b", 10));  // ROWPCT.COUNT was not asked
    EXPECT_FALSE(cube.CatVarWithStatExists("a", 1));   // a does not carry the statistics
  });
  OnFirstCube("x [MEAN PTILE 25] BY a", [](SubTableCube& cube) {
    EXPECT_TRUE(cube.ScaleVarWithStatExists("x", 179, -1.0));  // MEAN is code 179
    EXPECT_TRUE(cube.ScaleVarWithStatExists("x", 468, 25.0));  // PTILE 25 (468)
    EXPECT_FALSE(cube.ScaleVarWithStatExists("x", 468, 50.0));
  });
}

}  // namespace
