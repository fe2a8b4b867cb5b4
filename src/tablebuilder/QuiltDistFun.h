// QuiltDistFun.h - cumulative and inverse distribution functions of the normal, t, chi-square and F laws
#pragma once

/// Static distribution functions in double precision, after the classic published
/// algorithms (AS 239 for the incomplete gamma integral, AS 91 for the inverse chi-square,
/// AS 241 for the inverse normal, AS 109 with AS R83 for the inverse beta). They never throw:
/// whatever cannot be computed (an argument out of range, an overflow, no convergence) gives
/// the system-missing value, which callers test for. The significance tests use CdfChi,
/// CdfT and CdfNorm; the rest completes the interface.
class QuiltDistFun {
 public:
  /// P(chi-square with `df` degrees of freedom <= x). df <= 0: missing; x <= 0: 0.
  static double CdfChi(double x, double df);
  /// The x with CdfChi(x, df) = p. p = 0: 0; p outside [0, 1) or df <= 0: missing.
  static double IdfChi(double p, double df);
  /// P(F with df1, df2 degrees of freedom <= x). A df <= 0: missing; x <= 0: 0.
  static double CdfF(double x, double df1, double df2);
  static double IdfF(double p, double df1, double df2);
  /// P(normal with `mean` and `sd` <= x). sd <= 0: missing.
  static double CdfNorm(double x, double mean, double sd);
  /// p outside (0, 1) or sd <= 0: missing; p = 0.5 gives `mean` exactly.
  static double IdfNorm(double p, double mean, double sd);
  /// P(Student t with `df` degrees of freedom <= x). df <= 0: missing; x = 0: 0.5.
  static double CdfT(double x, double df);
  static double IdfT(double p, double df);

  // The inner routines, public so that their own edges can be tested. Each takes its
  // arguments by value and reports through `ifault`: 0 no fault, 1 an argument out of
  // range, 2 overflow or no convergence.

  /// The regularised incomplete gamma integral P(p, x), or its upper tail (AS 239).
  static double gammad(double x, double p, bool lowerTail, long& ifault);
  /// Inverse chi-square (AS 91), falling back on idfchb.
  static double tarnidfchi(double p, double df, long& ifault);
  /// Bisection on gammad from a starting value, the fallback of tarnidfchi.
  static double idfchb(double p, double df, double start, long& ifault);
  static double tarncdff(double x, double df1, double df2, long& ifault);
  static double tarnidff(double p, double df1, double df2, long& ifault);
  static double tarncdft(double t, double df, long& ifault);
  static double tarnidft(double p, double df, long& ifault);
  /// The standard normal distribution function.
  static double prbnrm(double z);
  /// The inverse standard normal (AS 241, PPND16); p outside (0, 1): missing.
  static double probit(double p);
  /// The regularised incomplete beta function I_x(a, b).
  static double cdfbet(double x, double a, double b, long& ifault);
  /// Its inverse (AS 109 with AS R83); -1 stands for every failure.
  static double betinv(double p, double a, double b);
  /// log Gamma(x); x <= 0: missing.
  static double dnlgam(double x);
  /// The auxiliary function of the Peizer-Pratt approximation.
  static double cbtaux(double u);
  static double derf(double x);
  static double derfc(double x);
};
