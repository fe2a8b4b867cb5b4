// StatDistributions.cpp - quantiles and intervals the confidence limits need
#include "host/engine/StatDistributions.h"

#include <cmath>

#include "host/QuiltAssert.h"

namespace {

// Continued fraction of the incomplete beta (modified Lentz).
double BetaFraction(double x, double a, double b) {
  constexpr double kTiny = 1e-300;
  constexpr double kEpsilon = 1e-15;
  double c = 1.0;
  double d = 1.0 - (a + b) * x / (a + 1.0);
  if (std::fabs(d) < kTiny) d = kTiny;
  d = 1.0 / d;
  double h = d;
  for (int m = 1; m <= 500; ++m) {
    const double m2 = 2.0 * m;
    double aa = m * (b - m) * x / ((a + m2 - 1.0) * (a + m2));
    d = 1.0 + aa * d;
    if (std::fabs(d) < kTiny) d = kTiny;
    c = 1.0 + aa / c;
    if (std::fabs(c) < kTiny) c = kTiny;
    d = 1.0 / d;
    h *= d * c;
    aa = -(a + m) * (a + b + m) * x / ((a + m2) * (a + m2 + 1.0));
    d = 1.0 + aa * d;
    if (std::fabs(d) < kTiny) d = kTiny;
    c = 1.0 + aa / c;
    if (std::fabs(c) < kTiny) c = kTiny;
    d = 1.0 / d;
    const double delta = d * c;
    h *= delta;
    if (std::fabs(delta - 1.0) < kEpsilon) break;
  }
  return h;
}

double StudentCdf(double t, double df) {
  const double x = df / (df + t * t);
  const double tail = 0.5 * StatDistributions::IncompleteBeta(x, df / 2.0, 0.5);
  return t >= 0 ? 1.0 - tail : tail;
}

}  // namespace

double StatDistributions::NormalQuantile(double p) {
  QUILT_ASSERT(p > 0.0 && p < 1.0, "a normal quantile needs 0 < p < 1");
  // Acklam's rational approximation, refined by one Halley step on erfc.
  static const double a[] = {-3.969683028665376e+01, 2.209460984245205e+02,  -2.759285104469687e+02,
                             1.383577518672690e+02,  -3.066479806614716e+01, 2.506628277459239e+00};
  static const double b[] = {-5.447609879822406e+01, 1.615858368580409e+02, -1.556989798598866e+02,
                             6.680131188771972e+01, -1.328068155288572e+01};
  static const double c[] = {-7.784894002430293e-03, -3.223964580411365e-01, -2.400758277161838e+00,
                             -2.549732539343734e+00, 4.374664141464968e+00,  2.938163982698783e+00};
  static const double d[] = {7.784695709041462e-03, 3.224671290700398e-01, 2.445134137142996e+00,
                             3.754408661907416e+00};
  double x = 0.0;
  if (p < 0.02425) {
    const double q = std::sqrt(-2.0 * std::log(p));
    x = (((((c[0] * q + c[1]) * q + c[2]) * q + c[3]) * q + c[4]) * q + c[5]) /
        ((((d[0] * q + d[1]) * q + d[2]) * q + d[3]) * q + 1.0);
  } else if (p > 1.0 - 0.02425) {
    const double q = std::sqrt(-2.0 * std::log(1.0 - p));
    x = -(((((c[0] * q + c[1]) * q + c[2]) * q + c[3]) * q + c[4]) * q + c[5]) /
        ((((d[0] * q + d[1]) * q + d[2]) * q + d[3]) * q + 1.0);
  } else {
    const double q = p - 0.5;
    const double r = q * q;
    x = (((((a[0] * r + a[1]) * r + a[2]) * r + a[3]) * r + a[4]) * r + a[5]) * q /
        (((((b[0] * r + b[1]) * r + b[2]) * r + b[3]) * r + b[4]) * r + 1.0);
  }
  const double e = 0.5 * std::erfc(-x / std::sqrt(2.0)) - p;
  const double u = e * std::sqrt(2.0 * M_PI) * std::exp(x * x / 2.0);
  return x - u / (1.0 + x * u / 2.0);
}

double StatDistributions::IncompleteBeta(double x, double a, double b) {
  if (x <= 0.0) return 0.0;
  if (x >= 1.0) return 1.0;
  const double front = std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) + a * std::log(x) +
                                b * std::log(1.0 - x));
  if (x < (a + 1.0) / (a + b + 2.0)) return front * BetaFraction(x, a, b) / a;
  return 1.0 - front * BetaFraction(1.0 - x, b, a) / b;
}

double StatDistributions::StudentQuantile(double p, double df) {
  QUILT_ASSERT(df > 0.0, "Student's t needs positive degrees of freedom");
  double low = -1e4;
  double high = 1e4;
  for (int i = 0; i < 200; ++i) {
    const double mid = (low + high) / 2.0;
    if (StudentCdf(mid, df) < p) {
      low = mid;
    } else {
      high = mid;
    }
  }
  return (low + high) / 2.0;
}

double StatDistributions::BinomialCdf(int k, int n, double q) {
  if (k < 0) return 0.0;
  if (k >= n) return 1.0;
  return IncompleteBeta(1.0 - q, n - k, k + 1.0);
}

int StatDistributions::BinomialInverse(double a, int n, double q) {
  int low = 0;
  int high = n;
  while (low < high) {
    const int mid = (low + high) / 2;
    if (BinomialCdf(mid, n, q) >= a) {
      high = mid;
    } else {
      low = mid + 1;
    }
  }
  return low;
}

void StatDistributions::Wilson(double p, double n, double z, double& low, double& high) {
  const double z2 = z * z;
  const double centre = (p + z2 / (2.0 * n)) / (1.0 + z2 / n);
  const double half = z / (1.0 + z2 / n) * std::sqrt(p * (1.0 - p) / n + z2 / (4.0 * n * n));
  low = centre - half;
  high = centre + half;
}
