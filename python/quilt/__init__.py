"""Quilt for notebooks: tabulation commands run on a CSV file or a pandas DataFrame.

    import quilt
    tables = quilt.run("QUILT /TABLE region BY gender [COUNT COLPCT.COUNT].", data="survey.csv")
    tables[0].to_frame()

See docs/python.md.
"""
import collections
import json
import math
import os
import re
import warnings

from . import _quilt

__all__ = ["run", "Table", "Note", "CommandError", "DataError", "QuiltWarning"]

DataError = _quilt.DataError
DataError.__doc__ = "The data or the dictionary cannot be read: the message says what and where."
DataError.__module__ = __name__

# How messages and errors name the command text of a call.
ORIGIN = "<command>"


class QuiltWarning(UserWarning):
    """A warning of a command: it was reported, and the work went on."""


class CommandError(Exception):
    """A command ended with an error.

    `message` is its text, `place` where it is ("<command>:3", or "<command>:3:14" where the
    position in the line is known). `results` holds the tables the call delivered all the
    same (other commands, or tables before the error), `messages` every message as
    (level, text) pairs."""

    def __init__(self, message, place, results=(), messages=()):
        super().__init__(f"{place}: {message}")
        self.message = message
        self.place = place
        self.results = list(results)
        self.messages = list(messages)


class Note(collections.namedtuple("Note", "mark text")):
    """A note of a table; cells, the title or the caption refer to it by its mark."""

    def __str__(self):
        return f"{self.mark}. {self.text}"


# The value a missing statistic holds; it shows as "." and becomes NaN in a frame.
_SYSTEM_MISSING = -1.7976931348623157e308


class Table:
    """One delivered table."""

    def __init__(self, delivered):
        self._delivered = delivered
        self.title = delivered.title
        self.subtype = delivered.subtype
        self.merged_title = delivered.merged_title
        self.caption = delivered.caption
        self.corner = delivered.corner
        self.notes = [Note(mark, text) for mark, text in delivered.notes]
        self.headings = list(delivered.headings)
        self.layers = [tuple(path) for path in delivered.layers if path]

    def _grid(self, value_of, empty):
        """Rows (layers outermost), columns and the cells' values laid out as a frame."""
        import pandas as pd

        table = self._delivered
        rows, columns = _index(table.rows), _index(table.columns)
        layers = _index(table.layers) if self.layers else None
        if layers is not None:
            tuples = [_as_tuple(layer) + _as_tuple(row) for layer in layers for row in rows]
            rows = pd.MultiIndex.from_tuples(tuples) if tuples else pd.Index([])
        grid = [[empty] * len(columns) for _ in range(len(rows))]
        for cell in table.cells:
            grid[cell.layer * len(table.rows) + cell.row][cell.column] = value_of(cell)
        return pd.DataFrame(grid, index=rows, columns=columns)

    def to_frame(self):
        """The numbers as a pandas DataFrame: row and column labels from the table's
        dimensions (a MultiIndex where they nest or stack, a shorter label path padded with
        ""), layers as the outer levels of the rows. A cell without a number (a missing
        statistic, a text) is NaN."""
        def number(cell):
            if not cell.has_number or not math.isfinite(cell.number) or cell.number <= _SYSTEM_MISSING:
                return math.nan
            return cell.number

        return self._grid(number, math.nan).astype(float)

    @property
    def text(self):
        """The cells as shown, laid out as to_frame() lays out the numbers: formatted text
        with letters and note marks ("75.0% B [b]"); "" where the table has no cell."""
        def shown(cell):
            parts = [cell.text, *cell.markers]
            if cell.notes:
                parts.append("[" + ",".join(cell.notes) + "]")
            return " ".join(part for part in parts if part)

        return self._grid(shown, "")

    def _repr_html_(self):
        return self._delivered.html

    def __str__(self):
        return self._delivered.text

    def __repr__(self):
        table = self._delivered
        shape = f"{len(table.rows)} rows x {len(table.columns)} columns"
        if self.layers:
            shape += f" x {len(self.layers)} layers"
        return f"<quilt.Table {self.title!r}: {shape}>"


def _as_tuple(label):
    return label if isinstance(label, tuple) else (label,)


def _index(paths):
    """An axis's label paths as an index; paths of unequal length padded with "" at the end."""
    import pandas as pd

    width = max([len(path) for path in paths] + [1])
    tuples = [tuple(path) + ("",) * (width - len(path)) for path in paths]
    if width == 1:
        return pd.Index([labels[0] for labels in tuples], dtype=object)
    return pd.MultiIndex.from_tuples(tuples)


def _frame_data(frame, dictionary):
    """A DataFrame as CSV text and a dictionary: numbers and strings as they are, booleans as
    0/1, categoricals as codes with their categories as value labels (ordered ones ordinal).
    Entries of `dictionary` override what is inferred for their variables."""
    import pandas as pd
    from pandas.api import types

    given = {entry["name"].lower(): entry for entry in (dictionary or {}).get("variables", [])}
    variables, columns = [], {}
    for name in frame.columns:
        series = frame[name]
        entry = {"name": str(name)}
        if isinstance(series.dtype, pd.CategoricalDtype):
            categories = series.cat.categories
            if types.is_numeric_dtype(categories.dtype):
                values = series.astype(float)
                labels = {_number_key(value): str(value) for value in categories}
            else:
                values = (series.cat.codes + 1).where(series.cat.codes >= 0)
                labels = {str(code + 1): str(value) for code, value in enumerate(categories)}
            entry.update(type="numeric", measure="ordinal" if series.cat.ordered else "nominal", values=labels)
        elif types.is_bool_dtype(series.dtype):
            values = series.astype(float)
            entry.update(type="numeric", measure="nominal", values={"0": "False", "1": "True"})
        elif types.is_numeric_dtype(series.dtype) and not types.is_complex_dtype(series.dtype):
            values = series.astype(float)
            if values.isin([math.inf, -math.inf]).any():
                raise DataError(f"DataFrame: column {name!r}: infinite values cannot be tabulated")
            entry["type"] = "numeric"
        elif types.is_object_dtype(series.dtype) or types.is_string_dtype(series.dtype):
            values = series.map(lambda value: "" if value is None or (isinstance(value, float) and math.isnan(value))
                                else str(value))
            entry["type"] = "string"
        else:
            raise DataError(f"DataFrame: column {name!r}: values of type {series.dtype} cannot be tabulated; "
                            "convert them to numbers, strings or a categorical")
        entry.update(given.get(str(name).lower(), {}))
        variables.append(entry)
        columns[str(name)] = values
    csv_text = pd.DataFrame(columns).to_csv(index=False, lineterminator="\n")
    described = dict(dictionary or {})
    described["variables"] = variables
    return csv_text, json.dumps(described)


def _number_key(value):
    return repr(float(value))


def _place(message, places):
    """(text, place) of an error message: the position it starts with, else its command's."""
    if message.place:
        return message.text, message.place
    match = re.match(re.escape(ORIGIN) + r":(\d+(?::\d+)?): (.*)", message.text, re.S)
    if match:
        return match.group(2), f"{ORIGIN}:{match.group(1)}"
    origin, line = places[message.command]
    return message.text, f"{origin}:{line}"


def run(command, data=None, dictionary=None, weight=None, split=None):
    """Runs one or more commands (text as in a command file) and returns their tables.

    data: a CSV file (path), a pandas DataFrame, or None for the bundled sample survey.
    dictionary: a dictionary file (path) or the dictionary itself as a dict; with a CSV
        path and no dictionary, NAME.dict.json beside NAME.csv is used when present. With a
        DataFrame its entries override what the columns imply.
    weight: the case weight variable; split: a split variable or a list of them.

    Warnings are issued as QuiltWarning. A command that ends with an error raises
    CommandError after every command has run; it carries the tables delivered. Data that
    cannot be read raises DataError."""
    split = [split] if isinstance(split, str) else list(split or [])
    csv_path, csv_text, csv_name, dictionary_path, dictionary_json = b"", b"", "", b"", ""
    if isinstance(dictionary, dict):
        dictionary_json = json.dumps(dictionary)
    elif dictionary is not None:
        dictionary_path = os.fsencode(dictionary)
    if data is None:
        data = _quilt.default_data_path()
    if hasattr(data, "columns") and hasattr(data, "dtypes"):
        text, dictionary_json = _frame_data(data, dictionary if isinstance(dictionary, dict) else
                                            _read_dictionary(dictionary))
        csv_text, csv_name, dictionary_path = text.encode("utf-8"), "DataFrame", b""
    else:
        csv_path = os.fsencode(data)
    result = _quilt.run(commands=command, origin=ORIGIN, csv_path=csv_path, csv_text=csv_text, csv_name=csv_name,
                        dictionary_path=dictionary_path, dictionary_json=dictionary_json, weight=weight or "",
                        split=split)
    tables = [Table(table) for table in result.tables]
    errors = []
    for message in result.messages:
        if message.level == "warning":
            warnings.warn(message.text, QuiltWarning, stacklevel=2)
        else:
            errors.append(message)
    if errors:
        text, place = _place(errors[0], result.command_places)
        raise CommandError(text, place, tables, [(message.level, message.text) for message in result.messages])
    return tables


def _read_dictionary(path):
    if path is None:
        return None
    with open(path, encoding="utf-8") as file:
        return json.load(file)
