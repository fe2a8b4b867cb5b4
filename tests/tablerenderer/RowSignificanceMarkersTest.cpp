// RowSignificanceMarkersTest.cpp - subscript letters from the relation of similar columns
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tablerenderer/markers/RowSignificanceMarkers.h"

namespace {

// The letters of every column, joined with blanks, columns separated by "; ", and "none"
// for a column without letters.
std::string Letters(RowSignificanceMarkers& row, std::size_t columns) {
  std::string text;
  for (std::size_t column = 0; column < columns; ++column) {
    if (column > 0) text += "; ";
    const std::vector<std::string> markers = row.getMarkersForColumn(column);
    if (markers.empty()) text += "none";
    for (std::size_t i = 0; i < markers.size(); ++i) text += (i > 0 ? " " : "") + markers[i];
  }
  return text;
}

struct MarkerCase {
  std::size_t columns;
  std::vector<std::pair<std::size_t, std::size_t>> similar;
  std::vector<std::size_t> removed;
  const char* letters;
};

// Letters worked by hand: one letter per clique of mutually similar columns, cliques
// opened from left to right.
TEST(RowSignificanceMarkers, LettersFollowTheSimilarPairs) {
  const MarkerCase cases[] = {
      {3, {}, {}, "a; b; c"},
      {3, {{0, 1}, {0, 2}, {1, 2}}, {}, "a; a; a"},
      {3, {{0, 1}, {1, 2}}, {}, "a; a b; b"},
      {4, {{0, 1}, {2, 3}}, {}, "a; a; b; b"},
      {4, {{0, 1}, {1, 2}, {2, 3}}, {}, "a; a b; b c; c"},
      {4, {{0, 3}}, {1}, "a; none; b; a"},
      {5, {{0, 1}, {0, 2}, {1, 2}, {2, 3}, {3, 4}}, {}, "a; a; a b; b c; c"},
      // 1 is similar to both ends, which differ from each other: it carries both letters.
      {3, {{0, 2}, {1, 2}}, {}, "a; b; a b"},
      // A removed column gets no letter even where it was marked similar first.
      {3, {{0, 1}, {1, 2}}, {1}, "a; none; b"},
  };
  for (const MarkerCase& c : cases) {
    SCOPED_TRACE(c.letters);
    RowSignificanceMarkers row;
    row.setNumColumns(c.columns);
    for (const auto& [first, second] : c.similar) EXPECT_TRUE(row.markColumnsSimilar(first, second));
    for (std::size_t column : c.removed) EXPECT_TRUE(row.removeColumn(column));
    EXPECT_EQ(Letters(row, c.columns), c.letters);
  }
}

// Bijective base 26: 0 a, 25 z, 26 aa, 27 ab, 701 zz, 702 aaa (26 + 26^2 = 702).
TEST(RowSignificanceMarkers, MarkerTextsCountInBijectiveBase26) {
  const std::pair<std::uint64_t, const char*> cases[] = {{0, "a"},   {25, "z"},  {26, "aa"},  {27, "ab"},
                                                         {51, "az"}, {52, "ba"}, {701, "zz"}, {702, "aaa"}};
  for (const auto& [marker, text] : cases) EXPECT_EQ(RowSignificanceMarkers::makeMarker(marker), text);
}

// 28 columns with no similar pair each open a marker of their own; column 27 is similar to
// column 25, so it carries z and its own ab, in the order of the numbers (z before aa/ab).
TEST(RowSignificanceMarkers, ManyColumnsOrderMarkersByNumber) {
  RowSignificanceMarkers row;
  row.setNumColumns(28);
  EXPECT_EQ(row.getMarkersForColumn(25), std::vector<std::string>{"z"});
  EXPECT_EQ(row.getMarkersForColumn(26), std::vector<std::string>{"aa"});
  EXPECT_EQ(row.getMarkersForColumn(27), std::vector<std::string>{"ab"});

  RowSignificanceMarkers chained;
  chained.setNumColumns(28);
  chained.markColumnsSimilar(25, 27);
  chained.markColumnsSimilar(26, 27);
  // 0..24 a..y; 25 and 27 share z; 26 opens aa, which 27 joins.
  EXPECT_EQ(chained.getMarkersForColumn(27), (std::vector<std::string>{"z", "aa"}));
}

TEST(RowSignificanceMarkers, OutOfRangeChangesNothing) {
  RowSignificanceMarkers row;
  row.setNumColumns(5);
  row.setNumColumns(3);  // never shrinks
  EXPECT_FALSE(row.removeColumn(5));
  EXPECT_FALSE(row.markColumnsSimilar(1, 5));
  EXPECT_TRUE(row.getSimilarColumnsForColumn(1).empty());
  EXPECT_TRUE(row.getSimilarColumnsForColumn(9).empty());
  EXPECT_TRUE(row.getMarkersForColumn(5).empty());
  EXPECT_EQ(Letters(row, 5), "a; b; c; d; e");
}

// The first calculation is final; a copy carries its letters and calculates nothing again.
TEST(RowSignificanceMarkers, CalculatedRowIsFinalAndCopiesKeepItsLetters) {
  RowSignificanceMarkers row;
  row.setNumColumns(3);
  row.markColumnsSimilar(0, 1);
  row.calculateSubscripts();
  row.markColumnsSimilar(1, 2);  // too late to change a letter
  EXPECT_TRUE(row.removeColumn(0));
  row.calculateSubscripts();
  RowSignificanceMarkers copy(row);
  RowSignificanceMarkers assigned;
  assigned = row;
  EXPECT_EQ(copy.getSimilarColumnsForColumn(1), (std::set<std::uint64_t>{0, 2}));
  for (RowSignificanceMarkers* r : {&row, &copy, &assigned}) EXPECT_EQ(Letters(*r, 3), "a; a; b");
  // An uncalculated copy calculates on its own, from the relation it copied.
  RowSignificanceMarkers fresh;
  fresh.setNumColumns(3);
  fresh.markColumnsSimilar(1, 2);
  RowSignificanceMarkers freshCopy = fresh;
  EXPECT_EQ(Letters(freshCopy, 3), "a; b; b");
}

}  // namespace
