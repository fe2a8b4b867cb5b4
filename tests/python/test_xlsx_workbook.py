"""Workbooks written with -f xlsx, read back with openpyxl and compared cell by cell with the
JSON output of the same run: labels, numbers, the text their number formats show, marks."""
import decimal
import json
import os
import re
import subprocess
import tempfile

import pytest

from quilt_json import SHOWCASE_RUNS, SURVEY, cell_marks, items, json_output, run_quilt, with_marks

openpyxl = pytest.importorskip("openpyxl", reason="python3-openpyxl is not installed")

LEVELS = {"warning": "Warning", "error": "Error", "fatal": "Fatal error"}
# Beside the showcase: a fatal error for the messages sheet, and a title that is too long
# and holds every character a sheet name may not.
EXTRA = ["-e", "QUILT /TABLE region BY nosuch",
         "-e", "QUILT /TABLE gender BY agegrp /TITLES TITLE='[Gender] by age: */? and a long tail'"]


def render(value, code):
    """`value` as a spreadsheet shows it under `code`, for the codes a workbook of ours uses:
    sections split by ';', quoted literals, an integer part of # 0 and grouping commas,
    decimals, an E+00 exponent. Rounds half away from zero on 15 significant digits."""
    sections = re.findall(r'(?:"[^"]*"|[^;])+', code)
    negative = value < 0
    section = sections[1] if negative and len(sections) > 1 else sections[0]
    sign = "-" if negative and len(sections) == 1 else ""
    match = re.fullmatch(r'((?:"[^"]*"|[^#0,.E])*)([#0,]+)(?:\.(0+))?(E\+00)?((?:"[^"]*"|[^#0,.E])*)', section)
    assert match, f"number format not understood: {code!r}"
    prefix, integer, decimals, exponent, suffix = match.groups()
    places = len(decimals or "")
    magnitude = decimal.Decimal(format(abs(value), ".15g"))
    power = 0
    if exponent and magnitude != 0:
        power = magnitude.adjusted()
        magnitude = magnitude.scaleb(-power)
    digits = str(magnitude.quantize(decimal.Decimal(1).scaleb(-places), rounding=decimal.ROUND_HALF_UP))
    if exponent and digits.startswith("10"):
        power += 1
        digits = str((magnitude / 10).quantize(decimal.Decimal(1).scaleb(-places), rounding=decimal.ROUND_HALF_UP))
    whole, _, fraction = digits.partition(".")
    whole = whole.zfill(integer.count("0"))
    if integer.count("0") == 0 and whole == "0":
        whole = ""
    if "," in integer:
        whole = f"{int(whole):,}"
    text = whole + ("." + fraction if places else "")
    if exponent:
        text += "E" + ("-" if power < 0 else "+") + f"{abs(power):02d}"
    literal = lambda part: part.replace('"', "")
    return sign + literal(prefix) + text + literal(suffix)


class Sheet:
    """A worksheet as a reader sees it: a merged range shows its value in every cell it covers."""

    def __init__(self, worksheet):
        self.worksheet = worksheet
        self.ranges = {}
        for merged in worksheet.merged_cells.ranges:
            bounds = (merged.min_row, merged.min_col, merged.max_row, merged.max_col)
            for row in range(merged.min_row, merged.max_row + 1):
                for column in range(merged.min_col, merged.max_col + 1):
                    self.ranges[(row, column)] = bounds

    def range_at(self, row, column):
        return self.ranges.get((row, column), (row, column, row, column))

    def value(self, row, column):
        first_row, first_column, _, _ = self.range_at(row, column)
        value = self.worksheet.cell(first_row, first_column).value
        return None if value == "" else value

    def blank_row(self, row):
        return all(self.worksheet.cell(row, column).value in (None, "") and (row, column) not in self.ranges
                   for column in range(1, self.worksheet.max_column + 1))

    def lines(self, row):
        """Column A of the rows from `row` to the next blank row, and the row after it."""
        found = []
        while row <= self.worksheet.max_row and not self.blank_row(row):
            found.append(self.value(row, 1))
            row += 1
        return found, row + 1

    def path(self, cells):
        """The labels of header cells in order, each merged range once, blanks left out."""
        seen, labels = set(), []
        for row, column in cells:
            bounds = self.range_at(row, column)
            if bounds not in seen and self.value(row, column) is not None:
                labels.append(self.value(row, column))
            seen.add(bounds)
        return tuple(labels)


def read_table(sheet, table, headings):
    """The cells of one table's sheet by (layer, row, column) label paths, checking the lines
    around them on the way."""
    assert sheet.value(1, 1) == with_marks(table["title"], table["tableNotes"])
    intro, row = sheet.lines(2)
    merged = table["mergedTitle"] if table["mergedTitle"] != table["title"] else ""
    assert intro == [text for text in (merged, " / ".join(headings[1:])) if text]
    found = {}
    layers = list(dict.fromkeys(tuple(cell["layer"]) for cell in table["cells"]))
    if not layers:
        assert sheet.value(row, 1) == "(no cases)"
        row += 1
    for layer in layers:
        if layer:
            assert sheet.value(row, 1) == " / ".join(layer)
            row += 1
        # The corner spans the row-header columns and every column-header row.
        _, _, last_header_row, label_columns = sheet.range_at(row, 1)
        header_rows = range(row, last_header_row + 1)
        row = last_header_row + 1
        while row <= sheet.worksheet.max_row and not sheet.blank_row(row):
            row_path = sheet.path((row, column) for column in range(1, label_columns + 1))
            for column in range(label_columns + 1, sheet.worksheet.max_column + 1):
                _, first, _, last = sheet.range_at(last_header_row, column)
                if column != first:
                    continue  # the marks column beside a number, under the same header
                cell = sheet.worksheet.cell(row, column)
                marks = sheet.worksheet.cell(row, column + 1).value if last > column else None
                if cell.value is None and marks is None:
                    continue
                key = (layer, row_path, sheet.path((header, column) for header in header_rows))
                assert key not in found, key
                found[key] = (cell.value, cell.number_format, marks)
            row += 1
        row += 1
    closing, _ = sheet.lines(row)
    caption = [with_marks(table["caption"], table["captionNotes"])] if table["caption"] else []
    assert closing == caption + [note["mark"] + ". " + note["text"] for note in table["notes"]]
    return found


def check_workbook(path, reference):
    workbook = openpyxl.load_workbook(path)
    tables = [(item, headings) for item, headings in reference if item["type"] == "table"]
    messages = [(item, headings) for item, headings in reference if item["type"] == "message"]
    names = workbook.sheetnames
    assert len(names) == len(tables) + (1 if messages else 0)
    assert len({name.lower() for name in names}) == len(names)
    for name, (table, _) in zip(names, tables):
        assert 0 < len(name) <= 31 and not set(name) & set("[]:*?/\\") and name.strip("'") == name, name
        # The title, its middle left out where it is too long, and a number where it repeats.
        title = re.sub(r"[\s\[\]:*?/\\]+", " ", table["title"]).strip()
        head, _, tail = re.sub(r" \(\d+\)$", "", name).partition("\u2026")
        assert title.startswith(head) and title.endswith(tail), (name, title)

    for name, (table, headings) in zip(names, tables):
        found = read_table(Sheet(workbook[name]), table, headings)
        expected = {(tuple(cell["layer"]), tuple(l for l in cell["row"] if l), tuple(l for l in cell["column"] if l)):
                    cell for cell in table["cells"]}
        assert len(expected) == len(table["cells"])
        assert found.keys() == expected.keys(), name
        for key, cell in expected.items():
            value, code, marks = found[key]
            if isinstance(value, (int, float)):
                assert value == pytest.approx(cell["number"], rel=1e-15), key
                assert render(value, code) == cell["text"], (key, code)
            else:
                assert (value or "") == cell["text"], key
            assert (marks or "") == cell_marks(cell), key

    if messages:
        rows = list(workbook["Messages"].iter_rows(min_row=2, values_only=True))
        assert [(level, text, where or "") for level, text, where in rows] == [
            (LEVELS[item["level"]], item["text"], " / ".join(headings[1:])) for item, headings in messages]


@pytest.mark.parametrize("args", SHOWCASE_RUNS + [SHOWCASE_RUNS[0] + EXTRA], ids=["showcase", "waves", "messages"])
def test_workbook_shows_every_cell_of_the_json_output(args, tmp_path):
    workbook = tmp_path / "tables.xlsx"
    run_quilt([*args, "-f", "xlsx", "-o", str(workbook)])
    check_workbook(workbook, json_output(args))


def test_format_column_widths_reach_the_workbook(tmp_path):
    """MINCOLWIDTH and MAXCOLWIDTH of 1 inch are 12 characters (6 points to one): the columns of
    short counts widen to 12, plus the one character of margin the writer adds."""
    workbook = tmp_path / "widths.xlsx"
    run_quilt(["-d", SURVEY, "-e",
               "QUILT /FORMAT MINCOLWIDTH=1 MAXCOLWIDTH=1 UNITS=INCHES /TABLE region BY gender"
               " /TITLES TITLE='Widths'", "-f", "xlsx", "-o", str(workbook)])
    sheet = openpyxl.load_workbook(workbook)["Widths"]
    widths = [sheet.column_dimensions[letter].width for letter in "CD"]
    assert widths == [pytest.approx(13, abs=0.75)] * 2


def test_sample_documents_with_letters_notes_layers_and_bad_bytes(tmp_path):
    """The writers' sample documents hold what the showcase lacks: significance letters, notes
    on cells, a hidden title, an empty table, deep row headers, and labels that are not UTF-8."""
    writers_test = os.environ.get("QUILT_WRITERS_TEST")
    if not writers_test:
        pytest.skip("QUILT_WRITERS_TEST (the test_writers binary) is not set")
    subprocess.run([writers_test, "--gtest_filter=XlsxWriter.WritesSampleDocument"], check=True,
                   capture_output=True, env={**os.environ, "QUILT_WORKBOOK_DIR": str(tmp_path)})
    for name in ("sample", "deep"):
        reference = list(items(json.loads((tmp_path / f"{name}.json").read_text())))
        check_workbook(tmp_path / f"{name}.xlsx", reference)
    # Each bad byte, and the control byte, shows as U+FFFD; the cut character as one U+FFFD.
    workbook = openpyxl.load_workbook(tmp_path / "bad-bytes.xlsx")
    sheet = workbook.worksheets[0]
    assert workbook.sheetnames[0] == sheet["A1"].value == "Brand\ufffd use\ufffd"
    assert [cell.value for cell in sheet[4]] == ["caf\ufffd", 7]

