"""The quilt program's JSON output, read as the reference for the other formats' tests."""
import json
import os
import subprocess

SOURCE_DIR = os.environ.get("QUILT_SOURCE_DIR", os.path.join(os.path.dirname(__file__), "..", ".."))
QUILT = os.environ.get("QUILT_BINARY", "")
SHOWCASE = os.path.join(SOURCE_DIR, "examples", "showcase.qlt")
WAVES = os.path.join(SOURCE_DIR, "examples", "showcase-waves.qlt")
SURVEY = os.path.join(SOURCE_DIR, "examples", "survey.csv")
# The two runs of `make run`: the showcase, and the table by wave as split groups.
SHOWCASE_RUNS = [[SHOWCASE], ["--split", "wave", WAVES]]


def run_quilt(args):
    """Runs the program; returns its standard output as bytes. Exit 1 (a command failed) is
    expected in some runs; anything above is not."""
    done = subprocess.run([QUILT, *args], capture_output=True, check=False)
    assert done.returncode in (0, 1), done.stderr.decode(errors="replace")
    return done.stdout


def items(document, headings=()):
    """Every table and message of a JSON document in order, as (item, headings above it)."""
    for item in document["items"] if "items" in document else document:
        if item["type"] == "heading":
            yield from items(item["children"], (*headings, item["text"]))
        else:
            yield item, headings


def json_output(args):
    document = json.loads(run_quilt([*args, "-f", "json"]))
    return list(items(document))


def cell_marks(cell):
    """A cell's letters and note marks as the other formats show them: "A B [a]"."""
    parts = list(cell["markers"])
    if cell["notes"]:
        parts.append("[" + ",".join(cell["notes"]) + "]")
    return " ".join(parts)


def with_marks(text, marks):
    return text + (" [" + ",".join(marks) + "]" if marks else "")
