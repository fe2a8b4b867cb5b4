// QuiltDistFunTest.cpp - distribution functions against an independent reference table and hand-worked edges
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "host/data/Obs.h"
#include "tablebuilder/QuiltDistFun.h"

namespace {

using Q = QuiltDistFun;
constexpr double kMissing = TARN_SystemMissing();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// One row of reference/dist_reference.tsv, written by dist_reference.py from scipy.stats and
// checked against mpmath at 40 digits (see the script), or of the hand-worked edges in
// cases/dist_edges.txt: function, region, arguments, expected value ("missing" for the
// system-missing value), source.
struct ReferenceRow {
  std::string function;
  std::string region;
  std::vector<double> args;
  double expected = 0.0;
  std::string line;
};

std::vector<ReferenceRow> ReadReference() {
  std::vector<ReferenceRow> rows;
  for (const char* path : {"reference/dist_reference.tsv", "cases/dist_edges.txt"}) {
    std::ifstream file(std::string(QUILT_SOURCE_DIR) + "/tests/tablebuilder/" + path);
    EXPECT_TRUE(file.good()) << "cannot read " << path;
    std::string line;
    while (std::getline(file, line)) {
      if (line.empty() || line[0] == '#') continue;
      std::vector<std::string> cells;
      std::istringstream stream(line);
      for (std::string cell; stream >> cell;) cells.push_back(cell);
      const std::string& expected = cells.at(cells.size() - 2);
      ReferenceRow row{cells.at(0), cells.at(1), {}, expected == "missing" ? kMissing : std::stod(expected), line};
      for (std::size_t i = 2; i + 2 < cells.size(); ++i) row.args.push_back(std::stod(cells[i]));
      rows.push_back(row);
    }
  }
  return rows;
}

double Evaluate(const ReferenceRow& row) {
  const std::vector<double>& a = row.args;
  const std::string& f = row.function;
  long ifault = -1;
  if (f == "CdfNorm") return a.size() == 1 ? Q::CdfNorm(a[0], 0.0, 1.0) : Q::CdfNorm(a[0], a[1], a[2]);
  if (f == "IdfNorm") return a.size() == 1 ? Q::IdfNorm(a[0], 0.0, 1.0) : Q::IdfNorm(a[0], a[1], a[2]);
  if (f == "CdfChi") return Q::CdfChi(a[0], a[1]);
  if (f == "IdfChi") return Q::IdfChi(a[0], a[1]);
  if (f == "CdfT") return Q::CdfT(a[0], a[1]);
  if (f == "IdfT") return Q::IdfT(a[0], a[1]);
  if (f == "CdfF") return Q::CdfF(a[0], a[1], a[2]);
  if (f == "IdfF") return Q::IdfF(a[0], a[1], a[2]);
  if (f == "dnlgam") return Q::dnlgam(a[0]);
  if (f == "cbtaux") return Q::cbtaux(a[0]);
  if (f == "derf") return Q::derf(a[0]);
  if (f == "derfc") return Q::derfc(a[0]);
  if (f == "probit") return Q::probit(a[0]);
  if (f == "betinv") return Q::betinv(a[0], a[1], a[2]);
  if (f == "gammadUpper" || f == "gammadLower") return Q::gammad(a[0], a[1], f == "gammadLower", ifault);
  if (f == "cdfbet") return Q::cdfbet(a[0], a[1], a[2], ifault);
  // The inner routines report through ifault; the row expects the ifault they left.
  if (f == "fault:gammad") Q::gammad(a[0], a[1], /*lowerTail=*/true, ifault);
  if (f == "fault:tarnidfchi") Q::tarnidfchi(a[0], a[1], ifault);
  if (f == "fault:idfchb") Q::idfchb(a[0], a[1], a[2], ifault);
  if (f == "fault:tarncdff") Q::tarncdff(a[0], a[1], a[2], ifault);
  if (f == "fault:tarnidff") Q::tarnidff(a[0], a[1], a[2], ifault);
  if (f == "fault:tarncdft") Q::tarncdft(a[0], a[1], ifault);
  if (f == "fault:tarnidft") Q::tarnidft(a[0], a[1], ifault);
  if (f == "fault:cdfbet") Q::cdfbet(a[0], a[1], a[2], ifault);
  if (f.rfind("fault:", 0) == 0) return static_cast<double>(ifault);
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
    // The hand-worked edges of cases/dist_edges.txt: exact, or as far as the row's source goes.
    {"edge", 0.0, 0.0},
    {"printed", 0.0, 1e-9},
    {"huge-df", 0.0, 1e-15},
    {"huge-shape", 0.0, 1e-16},
};

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
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
