"""The two-sided p-value of a t statistic and the adjustment of a family of column pairs,
shared by column_tests_reference.py and ../../tablerenderer/reference/column_tests_reference.py."""
import scipy.stats as st
from statsmodels.stats.multitest import multipletests


def t_p(t, df):
    return 2 * st.t.sf(abs(t), df)


def adjust(family, identical, method):
    """Adjusts [first, second, receiver, p] lists of one row in place. Columns found to hold
    the same cases stand for one column: each pair counts once under its representatives."""
    if method == "none" or not family:
        return
    representative = {}
    for a, b in identical:
        if a not in representative:
            representative.setdefault(b, a)
    key = [tuple(sorted((representative.get(f[0], f[0]), representative.get(f[1], f[1])))) for f in family]
    distinct = list(dict.fromkeys(key))
    first_p = {k: family[key.index(k)][3] for k in distinct}
    if method == "bonferroni":
        for f in family:
            f[3] *= len(distinct)
    else:
        adjusted = dict(zip(distinct, multipletests([first_p[k] for k in distinct], method="fdr_bh")[1]))
        for f, k in zip(family, key):
            f[3] = float(adjusted[k])
