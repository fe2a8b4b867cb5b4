"""The Python module: the showcase run through quilt.run against the program's JSON output, and
tables of the sample survey against pandas' own crosstab, from a CSV file and from a DataFrame."""
import json
import math
import os
import sys

import pytest

from quilt_json import SHOWCASE, SURVEY, WAVES, json_output

pd = pytest.importorskip("pandas", reason="python3-pandas is not installed")
if not os.environ.get("QUILT_PYTHON_PATH"):
    pytest.skip("the Python module was not built (pybind11-dev or python3-dev was missing, QUILT_PYTHON_MODULE "
                "is off, or this is a sanitizer build)", allow_module_level=True)
sys.path.insert(0, os.environ["QUILT_PYTHON_PATH"])
import quilt  # noqa: E402

DICTIONARY = json.load(open(SURVEY.replace(".csv", ".dict.json"), encoding="utf-8"))


def label(path, depth):
    """A label path padded with "" to an index's depth, as the module pads shorter paths."""
    return tuple(path) + ("",) * (depth - len(path))


def key(labels):
    return labels if len(labels) > 1 else labels[0]


@pytest.mark.parametrize("path, split", [(SHOWCASE, None), (WAVES, "wave")], ids=["showcase", "waves"])
def test_frames_hold_the_numbers_of_the_json_output(path, split):
    with open(path, encoding="utf-8") as file:
        tables = quilt.run(file.read(), data=SURVEY, split=split)
    reference = [(item, headings) for item, headings in json_output(["--split", split, path] if split else [path])
                 if item["type"] == "table"]
    assert [(table.title, table.subtype, table.headings) for table in tables] == \
        [(item["title"], item["subtype"], list(headings)) for item, headings in reference]
    for table, (item, _) in zip(tables, reference):
        frame, text = table.to_frame(), table.text
        assert [(note.mark, note.text) for note in table.notes] == [(n["mark"], n["text"]) for n in item["notes"]]
        numbers = 0
        layer_depth = max([len(cell["layer"]) for cell in item["cells"]] + [0])
        for cell in item["cells"]:
            row = key(label(cell["layer"], layer_depth) + label(cell["row"], frame.index.nlevels - layer_depth))
            column = key(label(cell["column"], frame.columns.nlevels))
            value = frame.loc[row, column]
            expected = cell.get("number", math.nan)
            if expected <= -1.7976931348623157e308:
                expected = math.nan  # the missing value, shown as "."
            assert value == pytest.approx(expected, nan_ok=True), (table.title, row, column)
            shown = " ".join([cell["text"], *cell["markers"]] + (["[" + ",".join(cell["notes"]) + "]"]
                                                                   if cell["notes"] else []))
            assert text.loc[row, column] == shown
            numbers += not math.isnan(expected)
        assert frame.notna().sum().sum() == numbers, table.title  # and no number elsewhere


def survey_frame():
    """The sample survey as pandas reads it, value labels applied and user-missing values out."""
    frame = pd.read_csv(SURVEY)
    for variable in DICTIONARY["variables"]:
        name = variable["name"]
        missing = variable.get("missing", {}).get("values", [])
        frame.loc[frame[name].isin(missing), name] = math.nan
        if "values" in variable:
            labels = {float(value): label for value, label in variable["values"].items()
                      if float(value) not in missing}
            order = [label for value, label in sorted(labels.items())]
            frame[name] = pd.Categorical(frame[name].map(labels), categories=order,
                                         ordered=variable["measure"] == "ordinal")
    return frame


def test_weighted_counts_match_pandas_crosstab():
    # Unweighted counts and column percentages of the same survey are checked against the CSV
    # itself by tests/tablerenderer/SurveyCountsTest.cpp.
    survey = survey_frame()
    weighted = pd.crosstab(survey["agegrp"], survey["q1"], values=survey["wt"], aggfunc="sum").fillna(0)
    # The program rounds cell counts to whole cases for display only.
    [table] = quilt.run("QUILT /TABLE agegrp BY q1 [COUNT F8.3].", data=SURVEY, weight="wt")
    frame = table.to_frame()
    for age in weighted.index:
        for answer in weighted.columns:
            assert frame.loc[("Age group", age), ("Satisfaction: Overall service", answer, "Count")] == \
                pytest.approx(weighted.loc[age, answer])  # reference: pandas


def test_dataframe_with_categoricals_and_strings():
    survey = survey_frame()
    # A string column and an ordered categorical stand in for coded variables.
    frame = pd.DataFrame({"region": survey["region"].astype(str).where(survey["region"].notna(), None),
                          "agegrp": survey["agegrp"], "score": survey["score"]})
    counts = pd.crosstab(frame["agegrp"], frame["region"])  # reference: pandas
    means = frame.groupby("agegrp")["score"].mean()

    tables = quilt.run("QUILT /TABLE agegrp BY region [COUNT].\nQUILT /TABLE agegrp BY score [MEAN].", data=frame)
    result = tables[0].to_frame()
    for age in counts.index:
        for region in counts.columns:
            assert result.loc[("agegrp", age), ("region", region, "Count")] == counts.loc[age, region]
    result = tables[1].to_frame()
    for age in means.index:
        assert result.loc[("agegrp", age), ("score", "Mean")] == pytest.approx(means[age], abs=0.005)
    assert list(result.index.get_level_values(1)) == list(survey["agegrp"].cat.categories)


def test_messages_errors_and_drawings():
    with pytest.warns(quilt.QuiltWarning, match="TITLE is given more than once"):
        [table] = quilt.run("QUILT /TABLE gender /TITLES TITLE='a' TITLE='Gender'.", data=SURVEY)
    assert table.title == "Gender"
    assert "<table>" in table._repr_html_() and "Male" in table._repr_html_()
    assert "Male" in str(table) and "─" in str(table)

    with pytest.raises(quilt.CommandError) as raised:
        quilt.run("QUILT /TABLE gender.\nQUILT /TABLE region BY nosuch.", data=SURVEY)
    assert raised.value.message == "Unrecognized variable nosuch in the TABLE subcommand."
    assert raised.value.place == "<command>:2:24"
    assert [table.title for table in raised.value.results] == ["Quilt Table 1"]

    with pytest.raises(quilt.CommandError) as raised:
        quilt.run("QUILT /TABLE gender\n  /TITLES TITLE='x' . more.", data=SURVEY)
    assert raised.value.place == "<command>:2:21"

    with pytest.raises(quilt.DataError, match="no-such.csv"):
        quilt.run("QUILT /TABLE gender.", data="no-such.csv")
