"""The Pearson chi-square test of a table of weights, shared by chisquare_reference.py and
../../tablerenderer/reference/chisquare_tables_reference.py.

Counts are weights rounded half up (floor(x + 0.5)) unless a base weight applies; then the
statistic on plain weights is scaled by W / Q, total weight over total squared weight. Rows and
columns without cases leave the test (scipy.stats.chi2_contingency without continuity
correction) but still count among the cells whose expected counts are judged: lowExpected when
80% or fewer of all R x C cells expect more than 5 cases, minExpectedBelowOne when a tested
cell expects 1 or less, nonIntegerCounts when a rounded weight was not whole.
"""
import numpy as np
from scipy import stats


def flags(expected, kept_rows, kept_cols, n_rows, n_cols):
    cells = [expected[i, j] for i in kept_rows for j in kept_cols]
    above = sum(1 for e in cells if e > 5)
    return above / n_rows / n_cols <= 0.8, any(e <= 1 for e in cells)


def chi_square(weights, base=None):
    """x, df, p, lowExpected, minExpectedBelowOne, nonIntegerCounts and N of the R x C matrix
    `weights` (every category, empty ones included); x, df and p are None where fewer than two
    rows or columns hold cases. `base` is (W, Q) under a base weight."""
    observed = weights if base else np.floor(weights + 0.5)
    non_integer = not base and bool(np.any(observed != weights))
    kept_rows = [i for i in range(observed.shape[0]) if observed[i].sum() > 0]
    kept_cols = [j for j in range(observed.shape[1]) if observed[:, j].sum() > 0]
    n = observed.sum()
    expected = np.outer(observed.sum(axis=1), observed.sum(axis=0)) / n if n > 0 else observed * 0
    low, below_one = flags(expected, kept_rows, kept_cols, *observed.shape)
    if len(kept_rows) < 2 or len(kept_cols) < 2:
        return None, None, None, low, below_one, non_integer, n
    x, p, dof, _ = stats.chi2_contingency(observed[np.ix_(kept_rows, kept_cols)], correction=False)
    if base:
        x = x * base[0] / base[1]
        p = stats.chi2.sf(x, dof)
    return x, dof, p, low, below_one, non_integer, n
