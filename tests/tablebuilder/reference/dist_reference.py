#!/usr/bin/python3
"""Writes dist_reference.tsv: distribution and quantile functions of the normal, t, chi-square
and F laws on a grid of degrees of freedom and probabilities, for QuiltDistFunTest.

Values come from scipy.stats and are checked against mpmath at 40 digits. Where scipy is off by
more than 1e-14 relative (its t and F quantiles are, by up to 1e-9 and in far tails by far more,
and some of its far-tail probabilities by a little), the mpmath value is written and the row says
so in its last column.

Columns: function, region, up to three arguments, expected value, source. A region groups cases
of like accuracy; the test holds one tolerance per region.

Run: /usr/bin/python3 tests/tablebuilder/reference/dist_reference.py
"""
import math
import os
import sys

import mpmath as mp
from scipy import special, stats

mp.mp.dps = 40
OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "dist_reference.tsv")

PROBABILITIES = [1e-300, 1e-200, 1e-100, 1e-30, 1e-10, 1e-4, 0.025, 0.3, 0.7, 0.975, 1 - 1e-4, 1 - 1e-10]
DFS = [0.5, 1, 2, 3, 5, 10, 30, 100, 1e3, 1e4, 1e5, 1e6]
F_DFS = [(0.5, 3), (1, 1), (2, 7), (3, 0.5), (5, 5), (4, 30), (30, 4), (10, 100), (100, 1e4),
         (1e3, 2), (1e6, 1e6), (1e6, 10)]


def betainc(a, b, x, y):
    """I_x(a, b) with y = 1 - x given apart, so that neither loses digits near 1, by the continued
    fraction (modified Lentz) on the side of the mean where that converges; mpmath's own route
    through 2F1 fails or cancels at large a and b."""
    if x <= 0:
        return mp.mpf(0)
    if x > (a + 1) / (a + b + 2):
        return 1 - betainc(b, a, y, x)
    front = mp.exp(a * mp.log(x) + b * mp.log(y) - mp.log(a) - mp.log(mp.beta(a, b)))
    c, d = mp.mpf(1), 1 / (1 - (a + b) * x / (a + 1))
    h = d
    for m in range(1, 10**6):
        for numerator in (m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m)),
                          -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1))):
            d = 1 / (1 + numerator * d)
            c = 1 + numerator / c
            h *= d * c
        if abs(d * c - 1) < mp.mpf(10) ** -42:
            return front * h
    raise ArithmeticError("continued fraction of I_x(%s, %s) at %s" % (a, b, x))


def cdf(law, x, a=None, b=None):
    """P(X <= x) at 40 digits."""
    x = mp.mpf(x)
    if law == "Norm":
        return mp.ncdf(x)
    if x <= 0 and law in ("Chi", "F"):
        return mp.mpf(0)
    if law == "Chi":
        k = mp.mpf(a) / 2
        if x / 2 > k:
            return 1 - mp.gammainc(k, x / 2, mp.inf, regularized=True)
        return mp.gammainc(k, 0, x / 2, regularized=True)
    if law == "T":
        n = mp.mpf(a)
        tail = betainc(n / 2, mp.mpf(1) / 2, n / (n + x * x), x * x / (n + x * x)) / 2
        return tail if x < 0 else 1 - tail
    n, m = mp.mpf(a), mp.mpf(b)
    return betainc(n / 2, m / 2, n * x / (n * x + m), m / (n * x + m))


def quantile(law, p, a=None, b=None, start=None):
    """The x with cdf(x) = p at 40 digits: a bracketing root search on the logarithm of the
    nearer tail, over log x for the laws on (0, inf) and on the negative side for t."""
    p = mp.mpf(p)
    if law in ("Norm", "T") and p > 0.5:
        return -quantile(law, 1 - p, a, b, None if start is None else -start)
    lower = p <= 0.5
    target = mp.log(p if lower else 1 - p)
    guess = mp.mpf(0)
    if start is not None and math.isfinite(start) and start != 0:
        guess = mp.mpf(start) if law == "Norm" else mp.log(abs(start))

    def gap(u):
        x = u if law == "Norm" else (-mp.exp(u) if law == "T" else mp.exp(u))
        value = cdf(law, x, a, b)
        return mp.log(value if lower else 1 - value) - target

    # A bracket grown outward from the guess, then bisection while it is wide and regula falsi
    # with the Illinois halving once it is narrow.
    lo, hi = guess - 1, guess + 1
    g_lo, g_hi = gap(lo), gap(hi)
    width = 1
    while (g_lo > 0) == (g_hi > 0):
        width *= 2
        if abs(g_lo) < abs(g_hi):
            lo, g_lo = lo - width, gap(lo - width)
        else:
            hi, g_hi = hi + width, gap(hi + width)
    for step in range(400):
        mid = (lo + hi) / 2 if hi - lo > 1e-6 else (lo * g_hi - hi * g_lo) / (g_hi - g_lo)
        g_mid = gap(mid)
        if g_mid == 0 or hi - lo < mp.mpf(10) ** -36 * (1 + abs(mid)):
            break
        if (g_mid > 0) == (g_hi > 0):
            hi, g_hi = mid, g_mid
            g_lo /= 2
        else:
            lo, g_lo = mid, g_mid
            g_hi /= 2
    root = mid
    return root if law == "Norm" else (-mp.exp(root) if law == "T" else mp.exp(root))


def scipy_law(law, a, b):
    return {"Norm": stats.norm(), "Chi": stats.chi2(a), "T": stats.t(a), "F": stats.f(a, b)}[law]


rows = []


def emit(function, region, args, scipy_value, exact):
    exact = float(exact)
    source = "scipy"
    if not (abs(scipy_value - exact) <= 1e-14 * abs(exact)):
        scipy_value, source = exact, "mpmath"
    cells = ["%.17g" % v for v in args] + [""] * (3 - len(args))
    rows.append([function, region] + cells + ["%.17g" % scipy_value, source])


def cdf_region(law, dfs):
    """Where a probability is one minus an exponential or an arctangent, its accuracy is absolute;
    elsewhere the relative error grows with the degrees of freedom."""
    if (law == "Chi" and dfs[0] == 2) or (law == "T" and dfs[0] in (1, 2)) or (law == "F" and dfs[0] == 2):
        return "complement"
    total = sum(dfs)
    return "full" if total <= 1000 else ("df1e4" if total <= 2e4 else "df1e6")


def idf_region(law, p, x, dfs):
    """The region of a quantile, or None where the inverse is not accurate enough to test."""
    central = 1e-4 <= p <= 1 - 1e-4
    if law == "Norm":
        return "full"
    if law == "Chi":
        return "full" if central and x >= 5e-7 else "chi-tail"
    return "beta-inverse" if central and 1 <= min(dfs) and max(dfs) <= 1000 else None


def cases(law, *dfs):
    law_of_scipy = scipy_law(law, *dfs, *[None] * (2 - len(dfs)))
    for p in PROBABILITIES:
        x = float(quantile(law, p, *dfs, *[None] * (2 - len(dfs)), start=law_of_scipy.ppf(p)))
        # Beyond 1e150, df / t^2 underflows in the t distribution function.
        if not math.isfinite(x) or x == 0 or abs(x) > 1e150:
            continue
        region = idf_region(law, p, x, dfs)
        if region:
            emit("Idf" + law, region, [p, *dfs], law_of_scipy.ppf(p), x)
        emit("Cdf" + law, "full" if law == "Norm" else cdf_region(law, dfs), [x, *dfs], law_of_scipy.cdf(x),
             cdf(law, x, *dfs))


cases("Norm")
for x, mean, sd in [(103.0, 100.0, 2.0), (-1.5, 2.0, 0.25)]:
    emit("CdfNorm", "full", [x, mean, sd], stats.norm(mean, sd).cdf(x), mp.ncdf((mp.mpf(x) - mean) / sd))
for df in DFS:
    cases("Chi", df)
    cases("T", df)
# Below df 0.32 and for p that are not small, the inverse chi-square starts from its own iteration.
cases("Chi", 0.1)
for df1, df2 in F_DFS:
    cases("F", df1, df2)

# The inner routines that the distribution functions above do not reach in full: log-gamma on
# both sides of 8, where it changes method, and the upper tail of the incomplete gamma integral.
for x in (1e-300, 0.1, 0.75, 3.5, 7.9, 8, 8.5, 30, 1e3, 1e6, 1e15):
    emit("dnlgam", "full", [x], special.gammaln(x), mp.loggamma(x))
for x, shape in ((0.5, 3), (5, 3), (50, 3), (2, 0.3), (40, 1), (300, 250)):
    emit("gammadUpper", "full", [x, shape], special.gammaincc(shape, x),
         mp.gammainc(shape, x, mp.inf, regularized=True))
# Student's t on population-sized bases, where the incomplete beta function needs far more terms
# than the classic 10,000.
for df in (3e7, 1e8):
    for x in (-2.0, -4.0):
        emit("CdfT", "df1e8", [x, df], stats.t(df).cdf(x), cdf("T", x, df))
# Where the continued fraction of the incomplete beta function does not converge, a normal
# approximation takes over; at a = b = 1e12 the beta law is normal to far better than it is, so
# the reference is the normal law with the beta's mean and variance.
for x in (0.5000001, 0.4999995):
    a = 1e12
    emit("cdfbet", "peizer-pratt", [x, a, a], stats.norm.cdf((x - 0.5) * math.sqrt(8 * a + 4)),
         stats.norm.cdf((x - 0.5) * math.sqrt(8 * a + 4)))

with open(OUT, "w") as out:
    out.write("# written by dist_reference.py: scipy.stats, checked against mpmath at 40 digits\n")
    for row in rows:
        out.write("\t".join(row) + "\n")
print("%d rows, %d from mpmath" % (len(rows), sum(row[-1] == "mpmath" for row in rows)), file=sys.stderr)
