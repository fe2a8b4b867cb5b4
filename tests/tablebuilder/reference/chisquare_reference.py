#!/usr/bin/python3
"""Writes chisquare_reference.inc: the cases of QuiltSigTestsChiSquareTest with their data and
the chi-square, degrees of freedom, significance and flags each must give.

Cases on single variables take their statistic, degrees of freedom and p-value from
scipy.stats.chi2_contingency (without continuity correction) on the table of counts, rounded
half up where weights are not whole. Cases with a multiple-response set, which scipy does not
cover, use the corrected variance written out below (each cell's expected count E times one
minus the share of the set category's total in N) and scipy.stats.chi2.sf. The effective-base
case scales the statistic on plain weights by W / Q, total weight over total squared weight.

The test and its flags are in chisquare_core.py.

Each data row is one group of cases: the variables' values, then w, a frequency weight (the
number of cases) or, in the effective-base case, a base weight.

Run: /usr/bin/python3 tests/tablebuilder/reference/chisquare_reference.py
"""
import os

import numpy as np
from scipy import stats

from chisquare_core import chi_square, flags

OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "chisquare_reference.inc")
MISSING = None


def single_variables(rows, select, base=None):
    r_values = sorted({row["r"] for row in rows if row["r"] is not MISSING})
    c_values = sorted({row["c"] for row in rows if row["c"] is not MISSING})
    weights = np.zeros((len(r_values), len(c_values)))
    for row in rows:
        if select(row) and row["r"] is not MISSING and row["c"] is not MISSING:
            weights[r_values.index(row["r"]), c_values.index(row["c"])] += row["w"]
    return chi_square(weights, base)[:6]


def with_set(rows, set_on_rows):
    """The dichotomy set $d of d1..d3 (counted 1) against c (set in rows) or r (set in columns).
    Only unit weights here, so nothing is rounded."""
    other = "c" if set_on_rows else "r"
    values = sorted({row[other] for row in rows if row[other] is not MISSING})
    members = ["d1", "d2", "d3"]
    # O(member, value): cases holding both; the set's total for a value: cases with any member.
    o = np.zeros((len(members), len(values)))
    set_total = np.zeros(len(values))
    for row in rows:
        if row[other] is MISSING:
            continue
        j = values.index(row[other])
        held = [k for k, m in enumerate(members) if row[m] == 1]
        for k in held:
            o[k, j] += row["w"]
        if held:
            set_total[j] += row["w"]
    if not set_on_rows:
        o = o.T  # rows: r's values; columns: the members
    n = set_total.sum()
    row_totals = set_total if not set_on_rows else o.sum(axis=1)
    col_totals = set_total if set_on_rows else o.sum(axis=0)
    x = 0.0
    expected = np.zeros(o.shape)
    kept_rows = [i for i in range(o.shape[0]) if row_totals[i] > 0]
    kept_cols = [j for j in range(o.shape[1]) if col_totals[j] > 0]
    for i in kept_rows:
        for j in kept_cols:
            e = row_totals[i] * col_totals[j] / n
            expected[i, j] = e
            share = row_totals[i] / n if set_on_rows else col_totals[j] / n
            v = e * (1 - share)
            if v > 0:
                x += (o[i, j] - e) ** 2 / v
    low, below_one = flags(expected, kept_rows, kept_cols, o.shape[0], o.shape[1])
    dof = len(kept_rows) * (len(kept_cols) - 1) if set_on_rows else (len(kept_rows) - 1) * len(kept_cols)
    return x, dof, stats.chi2.sf(x, dof), low, below_one, False


def effective_base(rows):
    return single_variables(rows, lambda row: True, (sum(row["w"] for row in rows), sum(row["w"] ** 2 for row in rows)))


def cells(counts, **fixed):
    """Groups of cases from a matrix of counts: row value i + 1, column value j + 1."""
    return [dict(fixed, r=i + 1, c=j + 1, w=n) for i, line in enumerate(counts) for j, n in enumerate(line) if n]


def case(name, layout, weighting, path, rows, result):
    return dict(name=name, layout=layout, weighting=weighting, path=path, rows=rows, result=result)


def everything():
    out = []
    rows = cells([[10, 20], [30, 40]])
    out.append(case("two by two", "kPlain", "kFrequency", 0, rows, single_variables(rows, lambda r: True)))
    rows = cells([[12, 5, 9], [7, 14, 3], [20, 8, 11], [4, 6, 15]])
    out.append(case("four by three", "kPlain", "kFrequency", 0, rows, single_variables(rows, lambda r: True)))
    # Row 2 occurs only with c missing: a category of the dimension without a case in the test.
    rows = cells([[10, 20], [0, 0], [30, 40]]) + [dict(r=2, c=MISSING, w=5)]
    out.append(case("empty row", "kPlain", "kFrequency", 0, rows, single_variables(rows, lambda r: True)))
    rows = cells([[1, 2]]) + [dict(r=2, c=MISSING, w=4)]
    out.append(case("one nonempty row", "kPlain", "kFrequency", 0, rows, single_variables(rows, lambda r: True)))
    # Weights 2.5 and 2.4 round to 3 and 2; the others are whole.
    rows = [dict(r=1, c=1, w=2.5), dict(r=1, c=2, w=2.4), dict(r=2, c=1, w=6), dict(r=2, c=2, w=1)]
    out.append(case("rounded weights", "kPlain", "kFrequency", 0, rows, single_variables(rows, lambda r: True)))
    # Eight of ten cells expect 10, two expect 2: a share of exactly 0.8.
    rows = cells([[12, 8, 10, 10, 2], [8, 12, 10, 10, 2]])
    out.append(case("share of exactly 0.8", "kPlain", "kFrequency", 0, rows,
                    single_variables(rows, lambda r: True)))
    # Row 3 occurs in layer 2 only, so it is an empty row of layer 1.
    rows = cells([[10, 20], [30, 40]], l=1) + cells([[8, 2], [3, 9], [4, 4]], l=2)
    for layer in (1, 2):
        out.append(case("layer %d" % layer, "kLayered", "kFrequency", layer, rows,
                        single_variables(rows, lambda r, layer=layer: r["l"] == layer)))
    rows = cells([[6, 1], [2, 7]], o=1) + cells([[3, 3], [3, 3]], o=2)
    for outer in (1, 2):
        out.append(case("outer category %d" % outer, "kNested", "kFrequency", outer, rows,
                        single_variables(rows, lambda r, outer=outer: r["o"] == outer)))
    # Groups of cases with the members they hold; d1 and d2 overlap often, d3 is rare.
    patterns = [((1, 0, 0), 1, 7), ((1, 1, 0), 1, 5), ((0, 1, 0), 1, 2), ((0, 0, 1), 1, 1), ((0, 0, 0), 1, 3),
                ((1, 0, 0), 2, 2), ((1, 1, 0), 2, 3), ((0, 1, 0), 2, 8), ((0, 1, 1), 2, 4), ((0, 0, 0), 2, 2),
                ((1, 1, 1), 3, 3), ((0, 0, 1), 3, 6), ((1, 0, 0), 3, 1)]
    rows = [dict(d1=d[0], d2=d[1], d3=d[2], c=value, w=n) for d, value, n in patterns]
    out.append(case("set in the rows", "kRowSet", "kFrequency", 0, rows, with_set(rows, True)))
    # In the columns, r takes the values in another order and d3 is held more often.
    patterns = [((1, 0, 0), 2, 4), ((1, 1, 0), 2, 6), ((0, 1, 1), 2, 2), ((0, 0, 1), 1, 5), ((0, 0, 0), 1, 3),
                ((1, 0, 1), 1, 2), ((1, 1, 0), 3, 1), ((0, 1, 0), 3, 7), ((1, 1, 1), 3, 2), ((0, 0, 1), 3, 3)]
    rows = [dict(d1=d[0], d2=d[1], d3=d[2], r=value, w=n) for d, value, n in patterns]
    out.append(case("set in the columns", "kColumnSet", "kFrequency", 0, rows, with_set(rows, False)))
    # One case per row, base weights between 0.5 and 3.
    weights = [1, 2, 0.5, 3, 1.5, 1, 2.5, 0.5, 1, 2, 3, 1, 0.5, 1.5, 2, 1, 1, 2.5, 0.5, 2, 1, 3, 1.5, 1]
    values = [(1, 1), (1, 2), (1, 3), (2, 1), (2, 2), (2, 3)]
    rows = [dict(r=values[k % 6][0], c=values[(k * 5 + k // 6) % 6][1], w=w) for k, w in enumerate(weights)]
    out.append(case("effective base", "kPlain", "kBase", 0, rows, effective_base(rows)))
    return out


def csv_of(rows):
    names = [name for name in ("r", "c", "l", "o", "d1", "d2", "d3") if any(name in row for row in rows)] + ["w"]

    def text(value):
        if value is MISSING:
            return ""
        return repr(value) if isinstance(value, float) else str(value)

    lines = [",".join(names)] + [",".join(text(row.get(name, MISSING)) for name in names) for row in rows]
    return "\\n".join(lines) + "\\n"


def number(value):
    return "kMissing" if value is None else repr(float(value))


def main():
    with open(OUT, "w") as out:
        out.write("// written by chisquare_reference.py from scipy.stats; do not edit\n")
        out.write("// name, layout, weighting, path value, data, chi-square, df, significance, lowExpected,\n")
        out.write("// minExpectedBelowOne, nonIntegerCounts\n")
        for c in everything():
            x, dof, p, low, below_one, non_integer = c["result"]
            out.write('{"%s", %s, %s, %d, "%s", %s, %s, %s, %s, %s, %s},\n' % (
                c["name"], c["layout"], c["weighting"], c["path"], csv_of(c["rows"]), number(x), number(dof),
                number(p), str(low).lower(), str(below_one).lower(), str(non_integer).lower()))


if __name__ == "__main__":
    main()
