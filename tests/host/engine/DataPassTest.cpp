// DataPassTest.cpp - the data pass read in blocks and case by case, against a naive tabulation; the debug
// dump
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "EngineTestSupport.h"
#include "host/engine/AggregationMCSet.h"
#include "host/engine/AggregationMDSet.h"

namespace {

using namespace enginetest;

// Any reader other than the data set's own, which the engine must read case by case.
class ForwardingIterator : public TARN_InputCaseIterator {
 public:
  explicit ForwardingIterator(TARN_InputCaseIterator* inner) : _inner(inner) {}
  const double* GetNumericValue(int index) const override { return _inner->GetNumericValue(index); }
  const OBS* GetObsPointer(unsigned index) const override { return _inner->GetObsPointer(index); }

 protected:
  int DoNextCase() override { return _inner->NextCase(); }

 private:
  TARN_InputCaseIterator* _inner;
};

constexpr int kCases = 2600;
constexpr int kFirstGroup = 1500;  // split s = 1, then s = 2: both groups span block boundaries

// Random survey-like data with every kind of trouble: a user-missing code and empty
// values in the categorical a, missing scale values, zero, negative and empty weights.
std::string MakeCsv() {
  std::mt19937 random(5);
  std::ostringstream csv;
  csv << "s,a,b,x,d1,d2,d3,c1,c2,w\n";
  const char* weights[] = {"0.5", "1", "1.5", "2", "3", "0", "-1", ""};
  for (int i = 0; i < kCases; ++i) {
    csv << (i < kFirstGroup ? 1 : 2) << ',';
    const int a = static_cast<int>(random() % 6);  // 0..3 a value, 4 user-missing, 5 empty
    csv << (a < 4 ? std::to_string(a + 1) : (a == 4 ? "9" : "")) << ',';
    csv << 1 + random() % 3 << ',';
    const int x = static_cast<int>(random() % 24);  // 0..20 a value, 21 user-missing, else empty
    csv << (x <= 20 ? std::to_string(x) : (x == 21 ? "99" : "")) << ',';
    for (int d = 0; d < 3; ++d) csv << random() % 2 << ',';
    for (int c = 0; c < 2; ++c) {
      const int code = static_cast<int>(random() % 4);
      csv << (code == 0 ? "" : std::to_string(code)) << ',';
    }
    csv << weights[random() % 8] << '\n';
  }
  return csv.str();
}

const char* kDict = R"({"variables":[{"name":"s"},{"name":"a","missing":{"values":[9]}},{"name":"b"},)"
                    R"({"name":"x","missing":{"values":[99]}},{"name":"d1"},{"name":"d2"},{"name":"d3"},)"
                    R"({"name":"c1"},{"name":"c2"},{"name":"w"}],"weight":"w","split":{"variables":["s"]}})";

// The same three tables over one harness: a > b BY $d carried by a; $c BY b carried by
// the set; a BY b with scale statistics of x.
struct Tables {
  Harness _h;
  std::unique_ptr<TARN_InputCaseIterator> _forwarding;
  AggregationVariable* _a = nullptr;
  AggregationVariable* _b = nullptr;
  AggregationVariable* _dichotomies = nullptr;
  AggregationVariable* _categories = nullptr;
  CubeAggregator* _nested = nullptr;
  CubeAggregator* _sets = nullptr;
  CubeAggregator* _scale = nullptr;

  Tables(const std::string& csv, bool caseByCase) : _h(csv, kDict, /*weighted=*/true) {
    if (caseByCase) {
      _forwarding = std::make_unique<ForwardingIterator>(_h._iterator.get());
      _h._table = std::make_unique<AggregationTable>(_forwarding.get(), _h._source.get(), true, true, -1);
    }
    _a = _h.Variable("a");
    _b = _h.Variable("b");
    OBS counted;
    counted.number = 1;
    _dichotomies = _h.Own(std::make_unique<AggregationMDSet>(
        std::vector<int>{_h.Index("d1"), _h.Index("d2"), _h.Index("d3")}, "$d", &counted, 1, false));
    _categories =
        _h.Own(std::make_unique<AggregationMCSet>(std::vector<int>{_h.Index("c1"), _h.Index("c2")}, "$c"));
    _nested = _h.Cube(
        {{_a, Codes::kDimensionRow}, {_b, Codes::kDimensionRow}, {_dichotomies, Codes::kDimensionColumn}},
        Statistics({Codes::kStatCount, Codes::kStatValidN, Codes::kStatTotalN, Codes::kStatRowPctCount,
                    Codes::kStatUCount}),
        _a);
    _sets =
        _h.Cube({{_categories, Codes::kDimensionRow}, {_b, Codes::kDimensionColumn}},
                Statistics({Codes::kStatCount, Codes::kStatResponses, Codes::kStatColPctCount}), _categories);
    AggregationCube* scale = _h._table->CreateCube();
    scale->AddCategoricalVariable(_a, Codes::kDimensionRow);
    scale->AddCategoricalVariable(_b, Codes::kDimensionColumn);
    _scale = scale->CreateCubeAggregator();
    const int x = _h.Index("x");
    scale->AddScaleStatistics(
        {AggregationStatistic(x, Codes::kStatMean), AggregationStatistic(x, Codes::kStatMedian),
         AggregationStatistic(x, Codes::kStatStdDev), AggregationStatistic(x, Codes::kStatMode),
         AggregationStatistic(x, Codes::kStatValidN)});
  }
};

// Every key of a cube by the values of its categories (0 stands for the total, -1..-3
// for the members of a set), with the encoding each harness gives them.
std::vector<int> CodesOf(TableDimension* dimension, const std::vector<int>& values) {
  std::vector<int> codes;
  for (int value : values) {
    if (value == 0) {
      codes.push_back(kCellKeyTotal);
    } else if (value < 0) {
      codes.push_back(-value - 1);  // a dichotomy member's encoding is its place
    } else {
      codes.push_back(Encoding(dimension, value));
    }
  }
  return codes;
}

void ExpectSameCells(const CubeAggregator& blocks, const CubeAggregator& single,
                     const std::vector<std::vector<int>>& blockCodes,
                     const std::vector<std::vector<int>>& singleCodes) {
  const std::size_t n = blockCodes.size();
  std::vector<std::size_t> odometer(n, 0);
  while (true) {
    CellKey left(static_cast<int>(n));
    CellKey right(static_cast<int>(n));
    for (std::size_t i = 0; i < n; ++i) {
      left[static_cast<int>(i)] = blockCodes[i][odometer[i]];
      right[static_cast<int>(i)] = singleCodes[i][odometer[i]];
    }
    const StatValues* a = blocks.GetStatValuesByKey(left);
    const StatValues* b = single.GetStatValuesByKey(right);
    ASSERT_EQ(a == nullptr, b == nullptr);
    if (a != nullptr) {
      ASSERT_EQ(a->Size(), b->Size());
      for (int s = 0; s < a->Size(); ++s) {
        EXPECT_DOUBLE_EQ(a->GetStatValue(s).GetValue1(), b->GetStatValue(s).GetValue1()) << "statistic " << s;
        EXPECT_DOUBLE_EQ(a->GetStatValue(s).GetValue2(), b->GetStatValue(s).GetValue2()) << "statistic " << s;
      }
    }
    std::size_t i = 0;
    for (; i < n; ++i) {
      if (++odometer[i] < blockCodes[i].size()) break;
      odometer[i] = 0;
    }
    if (i == n) break;
  }
}

struct Naive {
  std::map<std::tuple<int, int>, double> _countWithAMedium;  // (a, b): weight of cases with some d = 1
  std::map<std::tuple<int, int>, double> _weightX;           // (a, b): total weight of valid x
  std::map<std::tuple<int, int>, double> _sumX;              // (a, b): weighted sum of valid x
};

// The tabulation written out plainly, one split group at a time.
Naive Tabulate(const std::string& csv, int group) {
  Naive naive;
  std::istringstream in(csv);
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line)) {
    std::vector<std::string> fields;
    std::stringstream row(line);
    std::string field;
    while (std::getline(row, field, ',')) fields.push_back(field);
    if (fields.size() < 10) fields.resize(10);
    if (std::stoi(fields[0]) != group) continue;
    if (fields[9].empty() || !(std::stod(fields[9]) > 0)) continue;  // the weight drops the case
    const double w = std::stod(fields[9]);
    if (fields[1].empty() || fields[1] == "9") continue;  // a is missing: no cell in any cube
    const auto key = std::make_tuple(std::stoi(fields[1]), std::stoi(fields[2]));
    if (fields[4] == "1" || fields[5] == "1" || fields[6] == "1") naive._countWithAMedium[key] += w;
    if (!fields[3].empty() && fields[3] != "99") {
      naive._weightX[key] += w;
      naive._sumX[key] += w * std::stod(fields[3]);
    }
  }
  return naive;
}

// Both readers give the very same cells in both split groups, and they agree with the
// plain tabulation: the block reader's weight filter, block boundaries and group ends
// lose or double no case.
TEST(DataPass, BlockReaderAgreesWithCaseByCaseReaderAndNaiveTabulation) {
  const std::string csv = MakeCsv();
  Tables blocks(csv, /*caseByCase=*/false);
  Tables single(csv, /*caseByCase=*/true);
  for (int group = 1; group <= 2; ++group) {
    SCOPED_TRACE("split group " + std::to_string(group));
    ASSERT_TRUE(blocks._h.RunGroup());
    ASSERT_TRUE(single._h.RunGroup());
    const std::vector<int> aValues = {0, 1, 2, 3, 4};
    const std::vector<int> bValues = {0, 1, 2, 3};
    const std::vector<int> dMembers = {0, -1, -2, -3};
    const std::vector<int> cValues = {0, 1, 2, 3};
    auto codes = [](const std::vector<std::pair<AggregationVariable*, std::vector<int>>>& positions) {
      std::vector<std::vector<int>> result;
      for (const auto& [variable, values] : positions)
        result.push_back(CodesOf(variable->GetTableDimension(), values));
      return result;
    };
    ExpectSameCells(*blocks._nested, *single._nested,
                    codes({{blocks._a, aValues}, {blocks._b, bValues}, {blocks._dichotomies, dMembers}}),
                    codes({{single._a, aValues}, {single._b, bValues}, {single._dichotomies, dMembers}}));
    ExpectSameCells(*blocks._sets, *single._sets,
                    codes({{blocks._categories, cValues}, {blocks._b, bValues}}),
                    codes({{single._categories, cValues}, {single._b, bValues}}));
    ExpectSameCells(*blocks._scale, *single._scale, codes({{blocks._a, aValues}, {blocks._b, bValues}}),
                    codes({{single._a, aValues}, {single._b, bValues}}));

    const Naive naive = Tabulate(csv, group);
    TableDimension* a = blocks._a->GetTableDimension();
    TableDimension* b = blocks._b->GetTableDimension();
    const int x = blocks._h.Index("x");
    for (int aValue = 1; aValue <= 4; ++aValue) {
      for (int bValue = 1; bValue <= 3; ++bValue) {
        const auto key = std::make_tuple(aValue, bValue);
        const int aCode = Encoding(a, aValue);
        const int bCode = Encoding(b, bValue);
        ASSERT_GE(aCode, 0);
        ASSERT_GE(bCode, 0);
        const double count = blocks._nested->GetCount(Key({aCode, bCode, kCellKeyTotal}), /*weighted=*/true,
                                                      /*squared=*/false);
        EXPECT_NEAR(count, naive._countWithAMedium.count(key) ? naive._countWithAMedium.at(key) : 0.0, 1e-9);
        const double mean =
            Value(*blocks._scale, Key({aCode, bCode}), AggregationStatistic(x, Codes::kStatMean));
        EXPECT_NEAR(mean, naive._sumX.at(key) / naive._weightX.at(key), 1e-9);
      }
    }
    blocks._h._table->ResetAggregator();
    single._h._table->ResetAggregator();
  }
}

// The debug dump names the table's cubes, their positions and every cell in key order
// (the total first, as its encoding -100 is the smallest). g = 1, 1, 2 and h = 1, 2, 1
// give the cells (1,1) 1 case, (1,2) 1, (2,1) 1, and their totals: g 1 twice, g 2 once,
// h 1 twice, h 2 once, all three. Before CompleteCases only the case cells exist.
TEST(DataPass, DebugDumpListsCellsInKeyOrder) {
  Harness h("g,h\n1,1\n1,2\n2,1\n", "");
  AggregationVariable* g = h.Variable("g");
  AggregationVariable* hv = h.Variable("h");
  h.Cube({{g, Codes::kDimensionRow}, {hv, Codes::kDimensionColumn}},
         {AggregationStatistic(Codes::kStatCount)}, hv);
  auto* iterator = static_cast<ProcDSIterator*>(h._iterator.get());
  while (iterator->NextCase() != 0) {
    if (!iterator->SplitGroupEnd()) h._table->AddNewCase();
  }
  testing::internal::CaptureStderr();
  h._table->PrintDataDbg();
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "aggregation table: 1 sub-table cubes, 0 axis cubes\n"
            "sub-table 1 cube: 2 positions (row, column), 3 cells, cases still arriving\n"
            "  (0, 0) count 1 (1 cases), valid 1, total 1, responses 1\n"
            "  (0, 1) count 1 (1 cases), valid 1, total 1, responses 1\n"
            "  (1, 0) count 1 (1 cases), valid 1, total 1, responses 1\n");
  h._table->CompleteCases();
  testing::internal::CaptureStderr();
  h._table->PrintDataDbg();
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "aggregation table: 1 sub-table cubes, 0 axis cubes\n"
            "sub-table 1 cube: 2 positions (row, column), 8 cells\n"
            "  (total, total) count 3 (3 cases), valid 3, total 3, responses 3\n"
            "  (total, 0) count 2 (2 cases), valid 2, total 2, responses 2\n"
            "  (total, 1) count 1 (1 cases), valid 1, total 1, responses 1\n"
            "  (0, total) count 2 (2 cases), valid 2, total 2, responses 2\n"
            "  (0, 0) count 1 (1 cases), valid 1, total 1, responses 1\n"
            "  (0, 1) count 1 (1 cases), valid 1, total 1, responses 1\n"
            "  (1, total) count 1 (1 cases), valid 1, total 1, responses 1\n"
            "  (1, 0) count 1 (1 cases), valid 1, total 1, responses 1\n");
}

// Values the direct array does not hold (large, negative, fractional, -0 beside 0) and a
// cube of four positions, whose direct index then covers only 16 encodings a position, so
// that most cells of v are found by hash: every count must still be the plain one. v runs
// over 40 values, 2 cases each, crossed with three constant variables.
TEST(DataPass, ValuesAndCellsBeyondTheDirectIndex) {
  const double special[] = {5000, -1, 2.5, -0.0, 0, 1e9};
  std::string csv = "v,p,q,r\n";
  std::map<double, double> expected;
  for (int i = 0; i < 80; ++i) {
    const double v = i % 40 < 6 ? special[i % 40] : static_cast<double>(i % 40);
    std::ostringstream line;
    line << v << ",1,1,1\n";
    csv += line.str();
    expected[v == 0.0 ? 0.0 : v] += 1;  // -0 and 0 are one category
  }
  Harness h(csv, "");
  AggregationVariable* v = h.Variable("v");
  CubeAggregator* agg = h.Cube({{h.Variable("p"), Codes::kDimensionRow},
                                {h.Variable("q"), Codes::kDimensionRow},
                                {v, Codes::kDimensionRow},
                                {h.Variable("r"), Codes::kDimensionColumn}},
                               {AggregationStatistic(Codes::kStatCount)}, v);
  h.RunGroup();
  TableDimension* dimension = v->GetTableDimension();
  ASSERT_EQ(dimension->GetNumberOfCategories(), static_cast<int>(expected.size()));
  for (const auto& [value, count] : expected) {
    const int code = Encoding(dimension, value);
    ASSERT_GE(code, 0) << value;
    EXPECT_DOUBLE_EQ(agg->GetCount(Key({0, 0, code, 0}), false, false), count) << value;
  }
  EXPECT_DOUBLE_EQ(
      agg->GetCount(Key({kCellKeyTotal, kCellKeyTotal, kCellKeyTotal, kCellKeyTotal}), false, false), 80);
}

// A group reset before it was completed drops the cases still waiting in a block: the
// next group counts its own cases only (3, of g = 2).
TEST(DataPass, ResetWithoutCompletionDropsWaitingCases) {
  Harness h("s,g\n1,1\n1,1\n2,2\n2,2\n2,2\n",
            R"({"variables":[{"name":"s"},{"name":"g"}],"split":{"variables":["s"]}})");
  AggregationVariable* g = h.Variable("g");
  CubeAggregator* agg = h.Cube({{g, Codes::kDimensionRow}}, {AggregationStatistic(Codes::kStatCount)}, g);
  auto* iterator = static_cast<ProcDSIterator*>(h._iterator.get());
  // The first group's two cases are read and abandoned.
  while (iterator->NextCase() != 0 && !(iterator->SplitGroupEnd() && iterator->GetCaseIndex() > 0)) {
    if (!iterator->SplitGroupEnd()) h._table->AddNewCase();
  }
  h._table->ResetAggregator();
  ASSERT_TRUE(h.RunGroup());
  EXPECT_DOUBLE_EQ(agg->GetCount(Key({kCellKeyTotal}), false, false), 3);
  ASSERT_EQ(g->GetTableDimension()->GetNumberOfCategories(), 1);
  EXPECT_EQ(g->GetTableDimension()->GetCategories()[0]->GetCatValue()->number, 2);
}

// A dichotomy set and the category set that says the same thing (member j holds j where
// d_j is 1) give the same cells: the dichotomy set is kept by combination of members while
// cases arrive and handed to its members at the end, the category set case by case. Both
// with the set carrying the statistics and with g carrying them, frequency-weighted, over
// random cases with empty g and cases without any member.
TEST(DataPass, DichotomySetMatchesTheEquivalentCategorySet) {
  std::mt19937 random(9);
  std::string csv = "d1,d2,d3,c1,c2,c3,g,w\n";
  for (int i = 0; i < 3000; ++i) {
    std::string dichotomies;
    std::string categories;
    for (int j = 1; j <= 3; ++j) {
      const bool counted = random() % 3 == 0;
      dichotomies += counted ? "1," : "0,";
      categories += counted ? std::to_string(j) + "," : ",";
    }
    const int g = static_cast<int>(random() % 4);
    csv += dichotomies + categories + (g == 0 ? "" : std::to_string(g)) + "," +
           std::to_string(1 + random() % 3) + "\n";
  }
  const std::string dict = R"({"variables":[{"name":"d1"},{"name":"d2"},{"name":"d3"},{"name":"c1"},)"
                           R"({"name":"c2"},{"name":"c3"},{"name":"g"},{"name":"w"}],"weight":"w"})";
  const std::vector<AggregationStatistic> statistics =
      Statistics({Codes::kStatCount, Codes::kStatResponses, Codes::kStatTotalN, Codes::kStatColPctCount,
                  Codes::kStatRowPctCount, Codes::kStatColPctResponses});
  for (bool setCarries : {true, false}) {
    SCOPED_TRACE(setCarries ? "the set carries the statistics" : "g carries the statistics");
    Harness h(csv, dict, /*weighted=*/true);
    OBS counted;
    counted.number = 1;
    AggregationVariable* dichotomies = h.Own(std::make_unique<AggregationMDSet>(
        std::vector<int>{h.Index("d1"), h.Index("d2"), h.Index("d3")}, "$d", &counted, 1, false));
    AggregationVariable* categories = h.Own(std::make_unique<AggregationMCSet>(
        std::vector<int>{h.Index("c1"), h.Index("c2"), h.Index("c3")}, "$c"));
    AggregationVariable* g = h.Variable("g");
    CubeAggregator* cubes[2] = {nullptr, nullptr};
    AggregationVariable* sets[2] = {dichotomies, categories};
    for (int c = 0; c < 2; ++c) {
      AggregationCube* cube = h._table->CreateCube();
      cube->AddCategoricalVariable(sets[c], Codes::kDimensionRow);
      cube->AddCategoricalVariable(g, Codes::kDimensionColumn);
      cubes[c] = cube->CreateCubeAggregator();
      cube->AddCategoryStatistics(statistics, setCarries ? sets[c] : g);
    }
    h.RunGroup();
    std::vector<int> gCodes = {kCellKeyTotal};
    for (int value = 1; value <= 3; ++value) gCodes.push_back(Encoding(g->GetTableDimension(), value));
    for (int member = 0; member <= 3; ++member) {
      // Member 0 stands for the set's total; dichotomy member j - 1 is category j.
      const int dichotomyCode = member == 0 ? kCellKeyTotal : member - 1;
      const int categoryCode =
          member == 0 ? kCellKeyTotal : Encoding(categories->GetTableDimension(), member);
      for (int gCode : gCodes) {
        const StatValues* left = cubes[0]->GetStatValuesByKey(Key({dichotomyCode, gCode}));
        const StatValues* right = cubes[1]->GetStatValuesByKey(Key({categoryCode, gCode}));
        ASSERT_NE(left, nullptr);
        ASSERT_NE(right, nullptr);
        for (int s = 0; s < left->Size(); ++s) {
          EXPECT_NEAR(left->GetStatValue(s).GetValue1(), right->GetStatValue(s).GetValue1(), 1e-9)
              << "member " << member << ", g code " << gCode << ", statistic " << s;
          EXPECT_DOUBLE_EQ(left->GetStatValue(s).GetValue2(), right->GetStatValue(s).GetValue2());
        }
        EXPECT_DOUBLE_EQ(cubes[0]->GetCount(Key({dichotomyCode, gCode}), true, true),
                         cubes[1]->GetCount(Key({categoryCode, gCode}), true, true));
      }
    }
  }
}

// A dichotomy set too large to be kept by combination of members (20 members) takes the
// path of entries; a case counts member j when (case + j) % 3 == 0, so each member is
// counted in a third of the 30 cases (10), and every case counts 6 or 7 members.
TEST(DataPass, LargeDichotomySetCountsEachMember) {
  constexpr int kMembers = 20;
  constexpr int kRows = 30;
  std::string csv;
  for (int j = 0; j < kMembers; ++j) csv += "m" + std::to_string(j) + ",";
  csv += "g\n";
  double responses = 0;
  for (int i = 0; i < kRows; ++i) {
    for (int j = 0; j < kMembers; ++j) {
      const bool counted = (i + j) % 3 == 0;
      csv += counted ? "1," : "0,";
      responses += counted ? 1 : 0;
    }
    csv += std::to_string(1 + i % 2) + "\n";
  }
  Harness h(csv, "");
  std::vector<int> members;
  for (int j = 0; j < kMembers; ++j) members.push_back(h.Index("m" + std::to_string(j)));
  OBS counted;
  counted.number = 1;
  AggregationVariable* set = h.Own(std::make_unique<AggregationMDSet>(members, "$m", &counted, 1, false));
  AggregationVariable* g = h.Variable("g");
  CubeAggregator* agg =
      h.Cube({{set, Codes::kDimensionRow}, {g, Codes::kDimensionColumn}},
             {AggregationStatistic(Codes::kStatCount), AggregationStatistic(Codes::kStatResponses)}, set);
  h.RunGroup();
  ASSERT_EQ(set->GetTableDimension()->GetNumberOfCategories(), kMembers);
  for (int j = 0; j < kMembers; ++j) {
    EXPECT_DOUBLE_EQ(Value(*agg, Key({j, kCellKeyTotal}), AggregationStatistic(Codes::kStatCount)), 10) << j;
  }
  EXPECT_DOUBLE_EQ(Value(*agg, Key({kCellKeyTotal, kCellKeyTotal}), AggregationStatistic(Codes::kStatCount)),
                   kRows);
  EXPECT_DOUBLE_EQ(
      Value(*agg, Key({kCellKeyTotal, kCellKeyTotal}), AggregationStatistic(Codes::kStatResponses)),
      responses);
}

}  // namespace
