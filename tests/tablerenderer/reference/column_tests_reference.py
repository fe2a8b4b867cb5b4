#!/usr/bin/python3
"""Prints the letters of the column comparison tables that ColumnTestTablesTest and its goldens
show, computed from the bundled survey (examples/survey.csv) with scipy and statsmodels:

- column means: Student's t with the variance pooled over every column with at least two cases
  (scipy.stats.t), p two-sided;
- column proportions: the two-sided z test with the pooled proportion
  (statsmodels.stats.proportion.proportions_ztest); a cell at 0% or 100% takes no part;
- adjustment per row (../../tablebuilder/reference/column_tests_core.py): Bonferroni as m * p,
  not cut at 1, Benjamini-Hochberg with multipletests(method="fdr_bh").

A column gets the letter of every column with a significantly smaller value: upper case at the
first level, lower case at the second, larger one only. A pair that is not significant is
"similar", which the APA subscripts and the control package's sentences read.

Run: /usr/bin/python3 tests/tablerenderer/reference/column_tests_reference.py
"""
import csv
import itertools
import math
import os

import sys

import numpy as np
from statsmodels.stats.proportion import proportions_ztest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "tablebuilder", "reference"))
from column_tests_core import adjust, t_p  # noqa: E402

SURVEY = os.path.join(HERE, "..", "..", "..", "examples", "survey.csv")
MISSING = {"q1": {9}}


def load():
    with open(SURVEY, newline="") as handle:
        return [{name: float(text) if text.strip() != "" else None for name, text in row.items()}
                for row in csv.DictReader(handle)]


CASES = load()


def valid(case, name):
    value = case[name]
    return value is not None and value not in MISSING.get(name, set())


def letter(index, upper=True):
    return chr((ord("A") if upper else ord("a")) + index)


def letters(values, pairs, method, alphas):
    """Letters per column from the pairs (i, j, p) of one row; values decide who receives."""
    family = [[i, j, None, p] for i, j, p in pairs]
    adjust(family, [], method)
    adjusted = [f[3] for f in family]
    texts = [[] for _ in values]
    similar = []
    for (i, j, _), q in zip(pairs, adjusted):
        receiver, other = (i, j) if values[i] >= values[j] else (j, i)
        if q < alphas[0]:
            texts[receiver].append(letter(other))
        else:
            similar.append((i, j))
            if len(alphas) > 1 and q < alphas[1]:
                texts[receiver].append(letter(other, upper=False))
    return [" ".join(t) for t in texts], list(adjusted), similar


def means_row(select, column, categories, method="bonferroni", alphas=(0.05,), scale="score"):
    groups = [[c[scale] for c in CASES if select(c) and c[column] == k and valid(c, scale)] for k in categories]
    counts = [len(g) for g in groups]
    means = [float(np.mean(g)) if g else float("nan") for g in groups]
    tested = [i for i, n in enumerate(counts) if n >= 2]
    ss = sum(sum((x - means[i]) ** 2 for x in groups[i]) for i in tested)
    df = sum(counts[i] for i in tested) - len(tested)
    pooled = ss / df
    pairs = []
    for i, j in itertools.combinations(tested, 2):
        t = (means[i] - means[j]) / math.sqrt(pooled * (1 / counts[i] + 1 / counts[j]))
        pairs.append((i, j, t_p(t, df)))
    texts, adjusted, similar = letters(means, pairs, method, alphas)
    return means, texts, [(letter(i) + letter(j), round(p, 6), round(q, 6)) for (i, j, p), q in zip(pairs, adjusted)], similar


def props_block(select, row, row_categories, column, column_categories, method="bonferroni", alphas=(0.05,)):
    counts = np.array([[sum(1 for c in CASES if select(c) and valid(c, row) and c[row] == r and c[column] == k)
                        for k in column_categories] for r in row_categories], dtype=float)
    bases = counts.sum(axis=0)
    result = []
    for r in range(len(row_categories)):
        share = counts[r] / bases
        taking = [k for k in range(len(column_categories)) if bases[k] >= 2 and 0 < counts[r, k] < bases[k]]
        pairs = []
        for i, j in itertools.combinations(taking, 2):
            _, p = proportions_ztest([counts[r, i], counts[r, j]], [bases[i], bases[j]])
            pairs.append((i, j, p))
        texts, adjusted, similar = letters(list(share), pairs, method, alphas)
        result.append((row_categories[r], [round(s, 4) for s in share], texts,
                       [(letter(i) + letter(j), round(p, 6), round(q, 6)) for (i, j, p), q in zip(pairs, adjusted)],
                       similar))
    return result


def show(title, rows):
    print(title)
    for row in rows:
        print("   ", row)


ALL = lambda case: True
AGES = [1, 2, 3, 4, 5, 6]
WAVES = [1, 2, 3, 4]


def means_by_gender(columns, method, alphas=(0.05,)):
    for gender in (1, 2):
        show("  gender %d" % gender, means_row(lambda c, g=gender: c["gender"] == g, "agegrp", columns, method, alphas))


print("means-bonferroni and means-merged-apa: gender > score BY agegrp, Bonferroni")
means_by_gender(AGES, "bonferroni")
print("means-bh: the same, Benjamini-Hochberg")
means_by_gender(AGES, "bh")
print("means-none-two-alphas-showsig: agegrp [3, 4, 5], no adjustment, levels 0.01 and 0.05")
means_by_gender([3, 4, 5], "none", (0.01, 0.05))

print("props-layers-bh: web BY agegrp BY gender, Benjamini-Hochberg, one test per gender")
for gender in (1, 2):
    show("  gender %d" % gender, props_block(lambda c, g=gender: c["gender"] == g, "web", [0, 1], "agegrp", AGES, "bh"))
print("props-nested-columns-none: q1 BY wave > gender, no adjustment, one test per wave")
for wave in WAVES:
    show("  wave %d" % wave, props_block(lambda c, w=wave: c["wave"] == w, "q1", [1, 2, 3, 4, 5], "gender", [1, 2],
                                         "none"))
print("props-merged-subtotal: radio BY agegrp [1, 2, SUBTOTAL=Young, 5], subtotals tested")
young = [dict(c, agegrp=12 if c["agegrp"] in (1, 2) else c["agegrp"]) for c in CASES]
saved, CASES[:] = list(CASES), young
show("  Young, 55-64", props_block(ALL, "radio", [0, 1], "agegrp", [12, 5]))
CASES[:] = saved
print("props-stacked: tv + web BY agegrp, Bonferroni")
for row in ("tv", "web"):
    show("  " + row, props_block(ALL, row, [0, 1], "agegrp", AGES))
print("control-package: radio BY agegrp [1, 2, 5]; the sentences read the similar pairs of row 1")
show("  ", props_block(ALL, "radio", [0, 1], "agegrp", [1, 2, 5]))

print("showcase: tv + radio + web BY agegrp, merged letters, Bonferroni")
for row in ("tv", "radio", "web"):
    show("  " + row, [r[:3] for r in props_block(ALL, row, [0, 1], "agegrp", AGES)])
print("showcase: score + income BY agegrp, Bonferroni")
for scale in ("score", "income"):
    show("  " + scale, means_row(ALL, "agegrp", AGES, scale=scale)[:2])
