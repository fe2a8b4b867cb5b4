// StatDistributions.h - quantiles and intervals the confidence limits need
#pragma once

/// Normal and Student quantiles, the binomial distribution function and its inverse, and
/// the Wilson score interval. All pure functions.
class StatDistributions {
 public:
  /// Φ⁻¹(p) for 0 < p < 1.
  static double NormalQuantile(double p);
  /// The p quantile of Student's t with `df` > 0 degrees of freedom (non-integer allowed).
  static double StudentQuantile(double p, double df);
  /// Regularised incomplete beta I_x(a, b).
  static double IncompleteBeta(double x, double a, double b);
  /// P(B <= k) for B ~ Binomial(n, q).
  static double BinomialCdf(int k, int n, double q);
  /// The smallest k with P(B <= k) >= a.
  static int BinomialInverse(double a, int n, double q);
  /// Wilson score interval of a proportion p on n (effective) cases at quantile z.
  static void Wilson(double p, double n, double z, double& low, double& high);
};
