// QuiltDistFunTest.cpp - distribution functions against an independent reference table, and their edges
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <initializer_list>
#include <limits>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "host/data/Obs.h"
#include "tablebuilder/QuiltDistFun.h"

namespace {

using Q = QuiltDistFun;
constexpr double kMissing = TARN_SystemMissing();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// One row of reference/dist_reference.tsv: written by dist_reference.py from scipy.stats,
// checked against mpmath at 40 digits (see the script).
struct ReferenceRow {
  std::string function;
  std::string region;
  std::vector<double> args;
  double expected = 0.0;
  std::string line;
};

std::vector<ReferenceRow> ReadReference() {
  std::ifstream file(std::string(QUILT_SOURCE_DIR) + "/tests/tablebuilder/reference/dist_reference.tsv");
  std::vector<ReferenceRow> rows;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> cells;
    std::stringstream stream(line);
    for (std::string cell; std::getline(stream, cell, '\t');) cells.push_back(cell);
    ReferenceRow row{cells.at(0), cells.at(1), {}, std::stod(cells.at(5)), line};
    for (int i = 2; i < 5; ++i) {
      if (!cells[i].empty()) row.args.push_back(std::stod(cells[i]));
    }
    rows.push_back(row);
  }
  return rows;
}

double Evaluate(const ReferenceRow& row) {
  const std::vector<double>& a = row.args;
  long ifault = 0;
  if (row.function == "CdfNorm")
    return a.size() == 1 ? Q::CdfNorm(a[0], 0.0, 1.0) : Q::CdfNorm(a[0], a[1], a[2]);
  if (row.function == "IdfNorm") return Q::IdfNorm(a[0], 0.0, 1.0);
  if (row.function == "CdfChi") return Q::CdfChi(a[0], a[1]);
  if (row.function == "IdfChi") return Q::IdfChi(a[0], a[1]);
  if (row.function == "CdfT") return Q::CdfT(a[0], a[1]);
  if (row.function == "IdfT") return Q::IdfT(a[0], a[1]);
  if (row.function == "CdfF") return Q::CdfF(a[0], a[1], a[2]);
  if (row.function == "IdfF") return Q::IdfF(a[0], a[1], a[2]);
  if (row.function == "dnlgam") return Q::dnlgam(a[0]);
  if (row.function == "gammadUpper") return Q::gammad(a[0], a[1], /*lowerTail=*/false, ifault);
  if (row.function == "cdfbet") return Q::cdfbet(a[0], a[1], a[2], ifault);
  ADD_FAILURE() << "unknown function in the reference table: " << row.line;
  return kNaN;
}

// Each region of the reference table with the tolerance it meets: |got - expected| <=
// relative |expected| + absolute. The measured worst case of each is in docs/distributions.md.
struct Region {
  const char* name;
  double relative;
  double absolute;
};

const Region kRegions[] = {
    // Every probability of the normal law, the chi-square, t and F laws up to 1000 degrees of
    // freedom in all, log-gamma, the upper gamma tail, central chi-square and normal quantiles.
    {"full", 1e-12, 0.0},
    // The probability is the exponential of a sum of terms of size df log(df), so the
    // relative error grows with the degrees of freedom: about 1e-11 at 1e4, 1e-9 at 1e6.
    {"df1e4", 2e-11, 0.0},
    {"df1e6", 3e-9, 0.0},
    {"df1e8", 3e-7, 0.0},
    // One minus an exponential (chi-square with 2 df, t with 2, F with 2 numerator df) or
    // one half plus an arctangent (t with 1 df): exact to about 1e-16 absolute, no better.
    {"complement", 1e-12, 3e-16},
    // Quantiles of the chi-square in the tails, from the bisection fallback (relative width
    // 1e-8), from the leading term of the series below 5e-7, or against a lower tail near 1.
    {"chi-tail", 3e-8, 0.0},
    // t and F quantiles for p in [1e-4, 1 - 1e-4] and df from 1 to 1000: the inverse beta
    // stops at a Newton step of about 1e-10 in the beta scale.
    {"beta-inverse", 5e-8, 0.0},
    // The normal approximation of the incomplete beta function at a = b = 1e12.
    {"peizer-pratt", 0.0, 0.03},
};

// A value with what it should be, exactly or within a tolerance.
struct Expectation {
  const char* name;
  double got;
  double expected;
  double tolerance = 0.0;
};

void ExpectAll(std::initializer_list<Expectation> cases) {
  for (const Expectation& c : cases) EXPECT_NEAR(c.got, c.expected, c.tolerance) << c.name;
}

class DistFunReference : public testing::TestWithParam<Region> {};

TEST_P(DistFunReference, AgreesWithTheReferenceWithinTheRegionsTolerance) {
  const Region& region = GetParam();
  int count = 0;
  for (const ReferenceRow& row : ReadReference()) {
    if (row.region != region.name) continue;
    ++count;
    const double got = Evaluate(row);
    EXPECT_LE(std::fabs(got - row.expected), region.relative * std::fabs(row.expected) + region.absolute)
        << row.line << "\n  got " << got;
  }
  EXPECT_GT(count, 0) << "no row of region " << region.name;
}

INSTANTIATE_TEST_SUITE_P(Regions, DistFunReference, testing::ValuesIn(kRegions),
                         [](const testing::TestParamInfo<Region>& info) {
                           std::string name = info.param.name;
                           for (char& c : name) {
                             if (c == '-') c = '_';
                           }
                           return name;
                         });

// Whatever cannot be computed is the system-missing value: arguments out of range, numbers
// that are no numbers, infinite degrees of freedom.
TEST(QuiltDistFun, OutOfRangeArgumentsGiveMissing) {
  ExpectAll({
      {"CdfChi df 0", Q::CdfChi(5, 0), kMissing},
      {"CdfChi df < 0", Q::CdfChi(5, -1), kMissing},
      {"CdfChi x NaN", Q::CdfChi(kNaN, 3), kMissing},
      {"CdfChi df inf", Q::CdfChi(5, kInf), kMissing},
      {"IdfChi p 1", Q::IdfChi(1, 3), kMissing},
      {"IdfChi p < 0", Q::IdfChi(-0.1, 3), kMissing},
      {"IdfChi df 0", Q::IdfChi(0.5, 0), kMissing},
      {"IdfChi p NaN", Q::IdfChi(kNaN, 3), kMissing},
      {"CdfF df1 0", Q::CdfF(1, 0, 5), kMissing},
      {"CdfF df2 < 0", Q::CdfF(1, 5, -2), kMissing},
      {"CdfF x NaN", Q::CdfF(kNaN, 5, 5), kMissing},
      {"IdfF p 1", Q::IdfF(1, 2, 3), kMissing},
      {"IdfF p < 0", Q::IdfF(-0.5, 2, 3), kMissing},
      {"IdfF df2 0", Q::IdfF(0.5, 2, 0), kMissing},
      {"CdfNorm sd 0", Q::CdfNorm(0, 0, 0), kMissing},
      {"CdfNorm sd < 0", Q::CdfNorm(0, 0, -1), kMissing},
      {"CdfNorm x NaN", Q::CdfNorm(kNaN, 0, 1), kMissing},
      {"IdfNorm p 0", Q::IdfNorm(0, 0, 1), kMissing},
      {"IdfNorm p 1", Q::IdfNorm(1, 0, 1), kMissing},
      {"IdfNorm sd 0", Q::IdfNorm(0.5, 0, 0), kMissing},
      {"CdfT df 0", Q::CdfT(1, 0), kMissing},
      {"CdfT x NaN", Q::CdfT(kNaN, 4), kMissing},
      {"CdfT df inf", Q::CdfT(1, kInf), kMissing},
      {"IdfT p 0", Q::IdfT(0, 5), kMissing},
      {"IdfT p 1", Q::IdfT(1, 5), kMissing},
      {"IdfT df < 0", Q::IdfT(0.3, -1), kMissing},
      {"IdfT df NaN", Q::IdfT(0.3, kNaN), kMissing},
  });
}

// Exact values at the edges, worked by hand from the definitions, and two classic
// quantiles of printed tables.
TEST(QuiltDistFun, EdgeValues) {
  ExpectAll({
      {"CdfChi x 0", Q::CdfChi(0, 5), 0.0},
      {"CdfChi x < 0", Q::CdfChi(-1, 5), 0.0},
      {"CdfChi x inf", Q::CdfChi(kInf, 3), 1.0},
      {"IdfChi p 0", Q::IdfChi(0, 3), 0.0},
      {"CdfT t 0, df 0.5", Q::CdfT(0, 0.5), 0.5},
      {"CdfT t 0, df 7", Q::CdfT(0, 7), 0.5},
      {"CdfT t 0, df 1e6", Q::CdfT(0, 1e6), 0.5},
      {"CdfT t 1, df 1", Q::CdfT(1, 1), 0.75},  // 1/2 + atan(1)/pi
      {"CdfT t inf", Q::CdfT(kInf, 3), 1.0},
      {"IdfT p 0.5", Q::IdfT(0.5, 7), 0.0},
      {"CdfNorm x = mean", Q::CdfNorm(0, 0, 1), 0.5},
      {"CdfNorm x -inf", Q::CdfNorm(-kInf, 0, 1), 0.0},
      {"IdfNorm p 0.5", Q::IdfNorm(0.5, 3.25, 2), 3.25},
      {"CdfF x 1, equal df", Q::CdfF(1, 5, 5), 0.5},  // I_1/2(a, a) = 1/2
      {"CdfF x 0", Q::CdfF(0, 3, 4), 0.0},
      {"IdfF p 0", Q::IdfF(0, 3, 4), 0.0},
      // chi-square(1) 0.95 = 1.959963984540054^2 and the normal 0.975 quantile, as printed in
      // every table (here to 16 digits from scipy.stats.norm.ppf(0.975)).
      {"CdfChi 95% of 1 df", Q::CdfChi(3.841458820694124, 1), 0.95, 1e-9},
      {"CdfNorm 97.5%", Q::CdfNorm(1.959963984540054, 0, 1), 0.975, 1e-9},
  });
}

// Very large arguments do not fail, and they do not run for long: where the series or the
// continued fraction cannot be evaluated, the normal approximation answers.
TEST(QuiltDistFun, VeryLargeArgumentsGiveWayToTheNormalApproximation) {
  // x = df: z = 1 / (3 sqrt(df / 2)), which is 0 to double precision, so exactly 1/2.
  EXPECT_EQ(Q::CdfChi(1e300, 1e300), 0.5);
  // reference: scipy.stats.chi2.cdf(1e15, 1e15) and (1.8e16, 1.8e16); the series would need
  // some 1e8 terms here.
  EXPECT_NEAR(Q::CdfChi(1e15, 1e15), 0.5000000059470804, 1e-15);
  EXPECT_NEAR(Q::CdfChi(1.8e16, 1.8e16), 0.5000000014017403, 1e-15);
  // The upper tail at x = shape = 1e20: Q(a, a) = 1/2 - 1 / (3 sqrt(2 pi a)) + O(a^-3/2).
  long ifault = 0;
  EXPECT_NEAR(Q::gammad(1e20, 1e20, /*lowerTail=*/false, ifault),
              0.5 - 1 / (3 * std::sqrt(2e20 * std::numbers::pi)), 1e-16);
}

// The inner routines report through ifault: 1 for an argument out of range, 2 for a
// computation that failed.
TEST(QuiltDistFun, InnerRoutinesReportTheirFaults) {
  // Each call returns the ifault its routine left.
  const auto fault = [](auto routine) {
    long ifault = -1;
    routine(ifault);
    return static_cast<double>(ifault);
  };
  ExpectAll({
      {"gammad shape 0", fault([](long& f) { Q::gammad(1, 0, true, f); }), 1},
      {"tarnidfchi p 1", fault([](long& f) { Q::tarnidfchi(1, 3, f); }), 1},
      {"tarnidfchi valid", fault([](long& f) { Q::tarnidfchi(0.5, 3, f); }), 0},
      {"idfchb start 0", fault([](long& f) { Q::idfchb(0.5, 3, 0, f); }), 1},
      // P(chi-square(1) <= 50) > 1/2 already at the lower end, start / 4 = 25 in gamma units.
      {"idfchb start too high", fault([](long& f) { Q::idfchb(0.5, 1, 100, f); }), 2},
      // P(chi-square(10) <= 0.04) < 1/2 even after the upper end doubles.
      {"idfchb start too low", fault([](long& f) { Q::idfchb(0.5, 10, 0.01, f); }), 2},
      {"tarncdff df1 0", fault([](long& f) { Q::tarncdff(1, 0, 5, f); }), 1},
      {"tarnidff p 1", fault([](long& f) { Q::tarnidff(1, 2, 3, f); }), 1},
      {"tarncdft df < 0", fault([](long& f) { Q::tarncdft(1, -1, f); }), 1},
      {"tarnidft p 0", fault([](long& f) { Q::tarnidft(0, 5, f); }), 1},
      // The Newton step of the inverse beta overflows: exp(735) at the starting value.
      {"tarnidft overflow", fault([](long& f) { Q::tarnidft(1e-100, 1000, f); }), 2},
      {"cdfbet a 0", fault([](long& f) { Q::cdfbet(0.5, 0, 1, f); }), 1},
      {"cdfbet valid", fault([](long& f) { Q::cdfbet(0.3, 2, 3, f); }), 0},
  });
}

// Edges of the inner routines, each from its definition.
TEST(QuiltDistFun, InnerRoutineEdges) {
  long f = 0;
  ExpectAll({
      {"dnlgam 0", Q::dnlgam(0), kMissing},
      {"dnlgam < 0", Q::dnlgam(-1.5), kMissing},
      {"dnlgam 1", Q::dnlgam(1), 0.0},
      {"dnlgam 2", Q::dnlgam(2), 0.0},
      {"dnlgam 1/2", Q::dnlgam(0.5), std::log(std::numbers::pi) / 2},
      {"cbtaux < 0", Q::cbtaux(-1), kMissing},
      {"cbtaux 0", Q::cbtaux(0), 1.0},
      {"cbtaux 1", Q::cbtaux(1), 0.0},
      {"cbtaux huge", Q::cbtaux(1e300), -1.0},
      {"cbtaux 2", Q::cbtaux(2), -3.0 + 4.0 * std::numbers::ln2},  // (1 - 4 + 4 ln 2) / 1
      {"derf 0", Q::derf(0), 0.0},
      {"derf 7", Q::derf(7), 1.0},
      {"derf -7", Q::derf(-7), -1.0},
      {"derfc 0", Q::derfc(0), 1.0},
      {"derfc 30", Q::derfc(30), 0.0},  // exp(-900) is below the smallest double
      {"derfc -30", Q::derfc(-30), 2.0},
      {"probit 1/2", Q::probit(0.5), 0.0},
      {"probit 0", Q::probit(0), kMissing},
      {"gammad x 0, lower", Q::gammad(0, 3, true, f), 0.0},
      {"gammad x 0, upper", Q::gammad(0, 3, false, f), 1.0},
      {"cdfbet x 0", Q::cdfbet(0, 2, 3, f), 0.0},
      {"cdfbet x 1", Q::cdfbet(1, 2, 3, f), 1.0},
      {"cdfbet uniform", Q::cdfbet(0.3, 1, 1, f), 0.3},
      {"cdfbet symmetric, x 1/2", Q::cdfbet(0.5, 4, 4, f), 0.5},
      {"betinv p 0", Q::betinv(0, 2, 3), 0.0},
      {"betinv p 1", Q::betinv(1, 2, 3), 1.0},
      {"betinv a < 0", Q::betinv(0.3, -1, 2), -1.0},
      {"betinv p > 1", Q::betinv(1.5, 2, 3), -1.0},
      {"betinv symmetric, p 1/2", Q::betinv(0.5, 3, 3), 0.5},
      {"betinv b negligible", Q::betinv(0.3, 1e25, 1e4), 1.0},
      // The density at the start is below exp(-1024): the mean a / (a + b) stands in.
      {"betinv overflow", Q::betinv(2e-300, 5000, 0.5), 5000 / 5000.5},
  });
}

}  // namespace
