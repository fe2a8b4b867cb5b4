#!/usr/bin/python3
"""Prints the chi-square tests of the delivered-tables survey (DeliveredTablesSupport.h) that
DeliveredTablesTest and its goldens show, from scipy.stats: chi-square, degrees of freedom,
significance and the facts behind the notes, per test.

The test itself is ../../tablebuilder/reference/chisquare_core.py.

Run: /usr/bin/python3 tests/tablerenderer/reference/chisquare_tables_reference.py
"""
import os
import sys

import numpy as np

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tablebuilder", "reference"))
from chisquare_core import chi_square  # noqa: E402

# region gender grp score q wt wave; q 9 is user-missing.
SURVEY = [
    (1, 1, 10, 2.0, 1, 1.0, 1), (1, 1, 20, 4.0, 2, 2.0, 1), (1, 2, 10, -3.0, 1, 1.0, 1),
    (2, 1, 10, 6.0, 9, 0.5, 1), (2, 2, 20, 1.0, 2, 1.0, 1), (3, 1, 10, -8.0, 2, 1.0, 1),
    (3, 1, 20, -2.0, 1, 1.5, 1), (1, 1, 10, 0.0, 2, 1.0, 2), (1, 2, 20, 5.0, 1, 2.0, 2),
    (1, 2, 10, 7.0, 9, 1.0, 2), (2, 2, 20, 3.0, 1, 1.0, 2), (2, 1, 10, 2.0, 1, 0.5, 2),
    (2, 2, 20, -1.0, 2, 1.0, 2), (3, 1, 10, -4.0, 1, 1.0, 2),
]
CASES = [dict(zip(("region", "gender", "grp", "score", "q", "wt", "wave"), row)) for row in SURVEY]
CATEGORIES = {"region": [1, 2, 3, 4], "gender": [1, 2], "q": [1, 2], "wave": [1, 2]}


def test(rows, columns, select=lambda case: True, weight=None, base=False, row_categories=None):
    row_categories = row_categories or [[v] for v in CATEGORIES[rows]]
    w = np.zeros((len(row_categories), len(CATEGORIES[columns])))
    w2 = 0.0
    for case in CASES:
        if not select(case) or case["q"] == 9 and "q" in (rows, columns):
            continue
        weight_of = case[weight] if weight else 1.0
        for i, values in enumerate(row_categories):
            if case[rows] in values and case[columns] in CATEGORIES[columns]:
                w[i, CATEGORIES[columns].index(case[columns])] += weight_of
                w2 += weight_of ** 2
    x, dof, p, low, below_one, non_integer, n = chi_square(w, (w.sum(), w2) if base else None)
    if n == 0:
        return "no test: no cases"
    if x is None:
        return "no test (low %s, below one %s, non-integer %s)" % (low, below_one, non_integer)
    return "X %.6f df %d p %.6f (low %s, below one %s, non-integer %s)" % (x, dof, p, low, below_one, non_integer)


def main():
    print("plain: region BY gender:", test("region", "gender"))
    for region in (1, 2, 3, 4):
        print("nested: region %d > gender BY q:" % region,
              test("gender", "q", select=lambda case, region=region: case["region"] == region))
    for wave in (1, 2):
        print("layers: region BY gender, wave %d:" % wave,
              test("region", "gender", select=lambda case, wave=wave: case["wave"] == wave))
    print("weighted by wt (ALPHA=0.1): region BY gender:", test("region", "gender", weight="wt"))
    print("base weight wt: region BY gender:", test("region", "gender", weight="wt", base=True))
    print("subtotal North+South, East, West: region BY gender:",
          test("region", "gender", row_categories=[[1, 2], [3], [4]]))
    print("q BY gender:", test("q", "gender"))


if __name__ == "__main__":
    main()
