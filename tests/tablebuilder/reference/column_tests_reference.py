#!/usr/bin/python3
"""Writes ColumnTestsReference.inc: a small survey and the p-values of the column means and
column proportions tests on it, computed here with numpy and scipy from the raw cases.

The formulas follow the tests as described in docs/column-tests.md. Where a standard
routine computes the same thing (unweighted data, single variables), the script checks its
own numbers against it: scipy.stats.ttest_ind for two-column pooled variances, a statsmodels
OLS contrast for the variance pooled over all columns, and statsmodels proportions_ztest for
the z test of two proportions. Run it with Debian's python3 from this directory.
"""
import math

import numpy as np
import pandas as pd
import scipy.stats as st
import statsmodels.formula.api as smf
from statsmodels.stats.proportion import proportions_ztest

from column_tests_core import adjust, t_p

ALPHA = 0.999999  # the runner shows every pair whose adjusted p-value is below this

# ---------------------------------------------------------------- the survey
# Blocks of cases: row category r, column category c, and their frequency weights. Column 1
# weighs 2.4 in row 1 (5 cases, rounded to 2) and 10.4 in all; column 2 weighs 5 in row 1
# and 20.6 in all; column 3 is a single case of weight 1.4.
rng = np.random.default_rng(20261123)
blocks = [
    (1, 1, [0.4, 0.5, 0.5, 0.5, 0.5]),
    (2, 1, [1, 1.5, 1.5, 1, 2, 1]),
    (1, 2, [1, 1, 1, 0.5, 0.5, 0.5, 0.5]),
    (2, 2, [2, 2, 2, 2, 2, 2, 2, 1.6]),
    (1, 3, [1.4]),
    (1, 4, [1, 1, 0.8, 0.8]),
    (2, 4, [1, 1, 1, 1, 1]),
]
centre = {1: 10, 2: 13, 3: 20, 4: 7}
cycle = {1: [1, 2, 3], 2: [1, 2], 3: [2], 4: [1, 2, 3]}  # g by column: no case of g 3 in column 2
cases = []
for r, c, weights in blocks:
    for k, fw in enumerate(weights):
        seen = sum(1 for case in cases if case["c"] == c)
        cases.append({
            "l": 1, "r": r, "g": cycle[c][seen % len(cycle[c])], "c": c,
            "x": round(float(rng.normal(centre[c] + 4 * (r - 1), 3)), 1),
            "fw": fw, "bw": round(float(rng.uniform(0.5, 2.5)), 2),
            "d1": int(rng.random() < 0.6), "d2": int(rng.random() < 0.5), "d3": int(rng.random() < 0.45),
        })
data = pd.DataFrame(cases)
data["d4"] = data["d2"]  # $e = d1 d2 d4: its last two columns hold the same cases
SETS = {"$d": ["d1", "d2", "d3"], "$e": ["d1", "d2", "d4"]}


def members(variable):
    """The columns or rows of a variable: (label, selector) pairs."""
    if variable in SETS:
        return [(m, data[m] == 1) for m in SETS[variable]]
    return [(v, data[variable] == v) for v in sorted(data[variable].unique())]


def set_total(variable):
    return np.logical_or.reduce([data[m] == 1 for m in SETS[variable]])


def weights_of(weighting):
    return {"unweighted": np.ones(len(data)), "frequency": data["fw"].to_numpy(),
            "base": data["bw"].to_numpy()}[weighting]


def sums(selector, w):
    sel = selector.to_numpy() if hasattr(selector, "to_numpy") else selector
    return float(w[sel].sum()), float((w[sel] ** 2).sum()), float(sel.sum())


def rnd(v):
    return math.floor(v + 0.5)


# ---------------------------------------------------------------- column means
def means(s):
    w = weights_of(s["weighting"])
    x = data["x"].to_numpy()
    row = members(s["rows"])[s["fixed"]][1].to_numpy()
    cols = [sel.to_numpy() & row for _, sel in members(s["columns"])]
    mr = s["columns"] in SETS
    eff = s["weighting"] == "base"
    out = {"pairs": [], "small": [], "nonInteger": False, "overlap": False}
    family, identical = [], []
    col = []
    for sel in cols:
        W, W2, U = sums(sel, w)
        m = float((w[sel] * x[sel]).sum() / W)
        ss = float((w[sel] * (x[sel] - m) ** 2).sum())
        col.append(dict(W=W, W2=W2, U=U, m=m, ss=ss, sel=sel))
    if eff:
        for cc in col:
            cc["neff"] = cc["W"] ** 2 / cc["W2"]
            cc["d"] = cc["W"] - cc["W"] / cc["neff"]
        k = len(col)
        df0 = sum(cc["neff"] for cc in col) - k
        pooled = sum(cc["ss"] for cc in col) / sum(cc["d"] for cc in col)
        tested = list(range(len(col)))
    else:
        for i, cc in enumerate(col):
            cc["n"] = rnd(cc["W"])
            out["nonInteger"] |= cc["n"] != cc["W"]
            if cc["n"] < 2:
                out["small"].append(i)
            else:
                cc["ssn"] = cc["ss"] / (cc["W"] - 1) * (cc["n"] - 1)
        tested = [i for i, cc in enumerate(col) if cc["n"] >= 2]
        df0 = sum(col[i]["n"] for i in tested) - len(tested)
        pooled = sum(col[i]["ssn"] for i in tested) / df0
    for a in tested:
        for b in tested:
            if b <= a or (eff and not (col[a]["U"] > 1 or col[b]["U"] > 1)):
                continue
            ca, cb = col[a], col[b]
            size_a, size_b = (ca["neff"], cb["neff"]) if eff else (ca["n"], cb["n"])
            if s["allCats"]:
                p_var, df = pooled, df0
            elif eff:
                p_var, df = (ca["ss"] + cb["ss"]) / (ca["d"] + cb["d"]), ca["neff"] + cb["neff"] - 2
            else:
                df = ca["n"] + cb["n"] - 2
                p_var = (ca["ssn"] + cb["ssn"]) / df
            f = 1 / size_a + 1 / size_b
            if mr:
                both = ca["sel"] & cb["sel"]
                Wab = float(w[both].sum())
                if ca["U"] == both.sum() == cb["U"]:
                    identical.append((a, b))
                shared = 0.5 * Wab * (ca["W"] / ca["W2"] + cb["W"] / cb["W2"]) if eff else rnd(Wab)
                f -= 2 * shared / (size_a * size_b)
                df -= shared
                if f <= 1e-12:
                    out["overlap"] = True
                    continue
            t = abs(ca["m"] - cb["m"]) / math.sqrt(p_var) / math.sqrt(f)
            family.append([a, b, a if ca["m"] >= cb["m"] else b, t_p(t, df)])
    adjust(family, identical, s["adjust"])
    out["pairs"] = [(0, a, b, receiver, p) for a, b, receiver, p in family]
    # Cross-checks on unweighted single variables.
    if s["weighting"] == "unweighted" and not mr:
        frame = pd.DataFrame({"x": x, "col": np.select(cols, range(len(cols)), -1)})
        frame = frame[frame["col"].isin(tested)]
        fit = smf.ols("x ~ C(col) - 1", frame).fit()
        for _, a, b, _, p in out["pairs"] if s["adjust"] == "none" else []:
            if s["allCats"]:
                contrast = np.zeros(len(tested))
                contrast[tested.index(a)], contrast[tested.index(b)] = 1, -1
                check = float(fit.t_test(contrast).pvalue)
            else:
                check = st.ttest_ind(x[cols[a]], x[cols[b]]).pvalue
            assert abs(check - p) < 1e-12, (s["name"], a, b, check, p)
    return out


# ---------------------------------------------------------------- column proportions
def proportions(s):
    w = weights_of(s["weighting"])
    eff = s["weighting"] == "base"
    rows = members(s["rows"])
    cols = [sel.to_numpy() for _, sel in members(s["columns"])]
    row_mr, col_mr = s["rows"] in SETS, s["columns"] in SETS
    R, C = len(rows), len(cols)
    out = {"pairs": [], "small": [], "bad": [], "nonInteger": False, "overlap": False}
    cell = [[sums(rsel.to_numpy() & cols[c], w) for c in range(C)] for _, rsel in rows]
    out["nonInteger"] = not eff and any(rnd(v[0]) != v[0] for line in cell for v in line)
    if row_mr:
        total = np.asarray(set_total(s["rows"]))
        base = [sums(total & cols[c], w) for c in range(C)]
        neff = [b[0] ** 2 / b[1] for b in base]
    else:
        base = [tuple(sum(cell[r][c][v] for r in range(R)) for v in range(3)) for c in range(C)]
        neff = [sum(cell[r][c][0] ** 2 / cell[r][c][1] for r in range(R) if cell[r][c][1] > 0) for c in range(C)]

    def overlap_of(i, j):
        """Weight, cases and effective size shared by columns i and j over the rows."""
        both = cols[i] & cols[j]
        if row_mr:
            Wb, W2b, Ub = sums(total & both, w)
            e = 0.5 * Wb * (base[i][0] / base[i][1] + base[j][0] / base[j][1])
            return Wb, Ub, e
        Wsum = Usum = esum = 0.0
        for r, (_, rsel) in enumerate(rows):
            Wb, W2b, Ub = sums(rsel.to_numpy() & both, w)
            Wsum, Usum = Wsum + Wb, Usum + Ub
            if W2b > 0:
                esum += 0.5 * Wb * (cell[r][i][0] / cell[r][i][1] + cell[r][j][0] / cell[r][j][1])
        return Wsum, Usum, esum

    if not eff:
        out["small"] = [c for c in range(C) if base[c][0] < 2]
    for r in range(R):
        family, identical = [], []
        part = [c for c in range(C) if (base[c][0] > 0 if eff else base[c][0] >= 2)]
        if not eff:
            for c in list(part):
                if cell[r][c][0] <= 0 or cell[r][c][0] >= base[c][0]:
                    out["bad"].append((r, c))
                    part.remove(c)
        prop = {c: cell[r][c][0] / base[c][0] for c in part}
        for a in part:
            for b in part:
                if b <= a or (eff and not (base[a][2] > 1 or base[b][2] > 1)):
                    continue
                xa, xb = cell[r][a][0], cell[r][b][0]
                Wo, Uo, e = overlap_of(a, b) if col_mr else (0, 0, 0)
                if eff and ((xa <= 0 and xb <= 0) or (xa >= base[a][0] and xb >= base[b][0])):
                    if col_mr and base[a][2] == Uo and base[b][2] == Uo:
                        identical.append((a, b))
                    else:
                        family.append([a, b, a if prop[a] >= prop[b] else b, 1.0])
                    continue
                if eff:
                    q = (xa + xb) / (base[a][0] + base[b][0])
                    size_a, size_b, df = neff[a], neff[b], neff[a] + neff[b] - 2
                else:
                    size_a, size_b = rnd(base[a][0]), rnd(base[b][0])
                    q = (size_a * prop[a] + size_b * prop[b]) / (size_a + size_b)
                f = 1 / size_a + 1 / size_b
                if col_mr:
                    shared = e if eff else rnd(Wo)
                    f -= 2 * shared / (size_a * size_b)
                    if eff:
                        df -= shared
                    if base[a][2] == Uo == base[b][2]:
                        identical.append((a, b))
                    if f <= 1e-12:
                        out["overlap"] = True
                        continue
                z = (prop[a] - prop[b]) / math.sqrt(q * (1 - q) * f)
                p = t_p(z, df) if eff else 2 * st.norm.sf(abs(z))
                if s["weighting"] == "unweighted" and not col_mr and not row_mr and s["adjust"] == "none":
                    _, check = proportions_ztest([xa, xb], [base[a][0], base[b][0]])
                    assert abs(check - p) < 1e-12, (s["name"], r, a, b, check, p)
                family.append([a, b, a if prop[a] >= prop[b] else b, p])
        adjust(family, identical, s["adjust"])
        out["pairs"] += [(r, a, b, receiver, p) for a, b, receiver, p in family]
    return out


SCENARIOS = [
    # name, test, weighting, rows, columns, fixed row (means), allCats, adjust
    ("means: variance pooled over all columns", "means", "unweighted", "r", "c", 0, True, "none"),
    ("means: variance of the tested pair", "means", "unweighted", "r", "c", 0, False, "none"),
    ("means: weighted counts rounded", "means", "frequency", "r", "c", 0, True, "none"),
    ("means: set in the columns", "means", "unweighted", "r", "$d", 0, True, "none"),
    ("means: set in the columns holding the same cases", "means", "unweighted", "r", "$e", 0, False, "none"),
    ("means: identical set columns count once", "means", "unweighted", "r", "$e", 0, False, "bonferroni"),
    ("means: set in the rows", "means", "unweighted", "$d", "c", 0, True, "none"),
    ("means: base weight, all columns", "means", "base", "r", "c", 0, True, "none"),
    ("means: base weight, tested pair", "means", "base", "r", "c", 0, False, "none"),
    ("means: base weight, set in the columns", "means", "base", "r", "$d", 0, True, "none"),
    ("proportions: unweighted", "proportions", "unweighted", "g", "c", 0, True, "none"),
    ("proportions: Benjamini-Hochberg by row", "proportions", "unweighted", "g", "c", 0, True, "bh"),
    ("proportions: Bonferroni by row", "proportions", "unweighted", "g", "c", 0, True, "bonferroni"),
    ("proportions: weighted bases 10.4 and 20.6", "proportions", "frequency", "g", "c", 0, True, "none"),
    ("proportions: set in the rows", "proportions", "unweighted", "$d", "c", 0, True, "none"),
    ("proportions: set in the columns", "proportions", "unweighted", "g", "$d", 0, True, "none"),
    ("proportions: base weight", "proportions", "base", "g", "c", 0, True, "none"),
    ("proportions: base weight, set in the rows", "proportions", "base", "$d", "c", 0, True, "none"),
    ("proportions: base weight, set in the columns", "proportions", "base", "g", "$d", 0, True, "none"),
]


def cpp_list(items):
    return "{" + ", ".join(items) + "}"


def main():
    lines = []
    for name, test, weighting, rows, columns, fixed, all_cats, adjust in SCENARIOS:
        s = dict(name=name, weighting=weighting, rows=rows, columns=columns, fixed=fixed, allCats=all_cats,
                 adjust=adjust)
        out = means(s) if test == "means" else proportions(s)
        pairs = cpp_list("{%d, %d, %d, %d, %.12g}" % p for p in out["pairs"])
        small = cpp_list(str(c) for c in out["small"])
        bad = cpp_list("{%d, %d}" % b for b in out.get("bad", []))
        lines.append('    {"%s", %s, k%s, "%s", "%s", %d, %s, PresentationCodes::kAdjust%s,\n     %s,\n     %s, %s, %s, %s},' % (
            name, "true" if test == "means" else "false", weighting.capitalize(), rows, columns, fixed,
            "true" if all_cats else "false", {"none": "None", "bh": "BH", "bonferroni": "Bonferroni"}[adjust],
            pairs, small, bad, "true" if out["nonInteger"] else "false", "true" if out["overlap"] else "false"))
    csv = data.to_csv(index=False, lineterminator="\n")
    with open("ColumnTestsReference.inc", "w") as f:
        f.write("// ColumnTestsReference.inc - written by column_tests_reference.py; do not edit by hand\n")
        f.write("// Pairs: {row, first column, second column, column receiving the letter, p-value}.\n")
        f.write("constexpr double kReferenceAlpha = %r;\n" % ALPHA)
        f.write('const char* const kColumnTestsCsv = R"(%s)";\n' % csv)
        f.write("const ReferenceScenario kReferenceScenarios[] = {\n%s\n};\n" % "\n".join(lines))


if __name__ == "__main__":
    main()
