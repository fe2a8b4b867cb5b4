#!/usr/bin/env python3
"""doc_examples.py QUILT REPO [--update] - keeps the user's guide true to the program.

1. Runs every example of docs/guide/ and docs/reference/ through the program QUILT and compares
   what it prints with the text in the page. An example is a fenced block ```quilt holding
   command text, optionally followed (blank lines between at most) by a ```text block with the
   output. The info string after ```quilt may hold NAME=VALUE options:
     width=N (text width, default 80), format=json|html, split=VARS, weight=VAR,
     data=FILE (relative to the repository), status=N (exit status expected, default 0),
     part=yes (the text need only be found among the lines printed).
   The procedure's heading ("Quilt" underlined) that starts the output of every command is left
   out of the pages. With --update the text blocks are rewritten from the program (review the diff).
2. Checks that the reference has a page for every subcommand, and that every keyword a
   subcommand's parser compares with (its upper-case string literals in src/parser/) appears in
   that page's code; and that every statistic keyword of the program's vocabulary
   (quilt --list-statistics) is on the statistics page, a confidence variant such as
   MEAN.LCL on a line that names MEAN and .LCL.
3. Checks that `quilt help NAME` prints every page, and a statistic's entry.
"""
import re
import subprocess
import sys
import tempfile
from pathlib import Path

HEADING = ["Quilt", "=====", ""]
# Parse nodes whose keywords belong to another page as well as their own.
ALSO_ON = {"SyntaxVariableName.cpp": ["categories"], "Statistics.cpp": ["statistics"]}


def fenced_blocks(lines):
    """(first, last, language, options) of each fenced block; first and last are the fences."""
    index = 0
    while index < len(lines):
        if lines[index].startswith("```"):
            words = lines[index][3:].split()
            end = index + 1
            while end < len(lines) and lines[end].rstrip() != "```":
                end += 1
            options = dict(word.split("=", 1) for word in words[1:] if "=" in word)
            yield index, end, (words[0] if words else ""), options
            index = end
        index += 1


def run_example(quilt, repo, command, options):
    args = [quilt, "--width", options.get("width", "80")]
    for option, flag in (("format", "-f"), ("split", "--split"), ("weight", "--weight")):
        if option in options:
            args += [flag, options[option]]
    if "data" in options:
        args += ["-d", str(repo / options["data"])]
    with tempfile.TemporaryDirectory() as work:
        (Path(work) / "example.qlt").write_text(command + "\n")
        result = subprocess.run(args + ["example.qlt"], cwd=work, capture_output=True, text=True, timeout=60)
    lines = [line.rstrip() for line in (result.stdout + result.stderr).splitlines()]
    for start in range(len(lines) - len(HEADING), -1, -1):
        if lines[start: start + len(HEADING)] == HEADING:
            del lines[start: start + len(HEADING)]
    while lines and not lines[-1]:
        lines.pop()
    return result.returncode, lines


def contains(lines, part):
    return any(lines[start: start + len(part)] == part for start in range(len(lines) - len(part) + 1))


def check_examples(quilt, repo, pages, update):
    failures, count = [], 0
    for page in pages:
        lines = page.read_text().splitlines()
        blocks = list(fenced_blocks(lines))
        replacements = []
        for number, (first, last, language, options) in enumerate(blocks):
            if language != "quilt":
                continue
            count += 1
            where = f"{page.relative_to(repo)}:{first + 1}"
            status, output = run_example(quilt, repo, "\n".join(lines[first + 1: last]), options)
            if status != int(options.get("status", "0")):
                failures.append(f"{where}: exit status {status}\n  " + "\n  ".join(output))
            following = blocks[number + 1] if number + 1 < len(blocks) else None
            if not following or following[2] != "text" or any(l.strip() for l in lines[last + 1: following[0]]):
                continue
            expected = [line.rstrip() for line in lines[following[0] + 1: following[1]]]
            if options.get("part") == "yes" and expected and contains(output, expected):
                continue
            if output != expected:
                if update and options.get("part") != "yes":
                    replacements.append((following[0] + 1, following[1], output))
                else:
                    failures.append(f"{where}: the program prints\n" + "\n".join(output))
        for start, end, output in reversed(replacements):
            lines[start:end] = output
        if replacements:
            page.write_text("\n".join(lines) + "\n")
    return failures, count


def code_words(text):
    """The words a page shows as code: in fenced blocks and in `spans`."""
    words, prose = set(), []
    in_fence = False
    for line in text.splitlines():
        if line.startswith("```"):
            in_fence = not in_fence
        elif in_fence:
            words.update(re.findall(r"[\w.$]+", line))
        else:
            prose.append(line)
    for span in re.findall(r"`([^`]+)`", "\n".join(prose)):
        words.update(word.strip(".") for word in re.findall(r"[\w.$]+", span))
    return words


def check_keywords(quilt, repo):
    failures = []
    reference = repo / "docs" / "reference"
    words = {page.stem: code_words(page.read_text()) for page in reference.glob("*.md")}
    for source in sorted((repo / "src" / "parser").glob("*.cpp")):
        text = source.read_text()
        named = re.search(r'GetSubcommandName\(\) const \{\s*return "(\w+)";', text)
        own = [named.group(1).lower()] if named and named.group(1) != "QUILT" else []
        targets = own + ALSO_ON.get(source.name, [])
        if not targets:
            continue
        for target in own:
            if target not in words:
                failures.append(f"docs/reference/{target}.md: missing (the subcommand {target.upper()})")
        shown = set().union(*(words.get(target, set()) for target in targets))
        for keyword in sorted(set(re.findall(r'"([A-Z][A-Z0-9]*)"', text)) - shown):
            failures.append(f"{source.name}: keyword {keyword} is on none of the pages {targets}")
    statistics = (reference / "statistics.md").read_text()
    listed = code_words(statistics)
    lines = statistics.splitlines()
    vocabulary = subprocess.run([quilt, "--list-statistics"], capture_output=True, text=True, check=True)
    for keyword in vocabulary.stdout.split():
        primary, point, suffix = keyword.rpartition(".")
        variant = suffix in ("LCL", "UCL", "SE") and primary
        if variant and not any(f"`{primary}`" in line and f"`.{suffix}`" in line for line in lines):
            failures.append(f"statistics.md: no line names `{primary}` with `.{suffix}`")
        elif not variant and keyword not in listed:
            failures.append(f"statistics.md: statistic {keyword} is missing")
    return failures


def check_help(quilt, pages):
    """`quilt help NAME` prints each page, a statistic's entry, and refuses an unknown name."""
    asked = [(["help", page.stem], 0, page.read_text().splitlines()[0]) for page in pages]
    asked += [(["--help-topic", "CAT"], 0, "# CATEGORIES"), (["help", "colpct.count"], 0, 'COLPCT.COUNT: "Column %"'),
              (["help", "nosuch"], 2, "")]
    failures = []
    for args, status, first in asked:
        shown = subprocess.run([quilt] + args, capture_output=True, text=True)
        if shown.returncode != status or shown.stdout.split("\n")[0] != first:
            failures.append(f"quilt {' '.join(args)}: status {shown.returncode}, first line {shown.stdout[:60]!r}")
    return failures


def main():
    quilt, repo = str(Path(sys.argv[1]).resolve()), Path(sys.argv[2]).resolve()
    pages = sorted((repo / "docs" / "guide").glob("*.md")) + sorted((repo / "docs" / "reference").glob("*.md"))
    failures, count = check_examples(quilt, repo, pages, "--update" in sys.argv)
    failures += check_keywords(quilt, repo) + check_help(quilt, pages)
    for failure in failures:
        print(failure, end="\n\n")
    print(f"{count} examples in {len(pages)} pages; {len(failures)} problems")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
