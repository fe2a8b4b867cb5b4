#!/usr/bin/env python3
"""Rewrites catalogue key strings in C++ sources into their symbolic names (msg::k<name>).

The catalogue (src/host/output/MessageCatalogue.def) gives each key a name; code should name a
message by `msg::k<name>` from host/output/MessageKeys.h so that a mistyped name fails to
compile. This script replaces every string literal (adjacent literals joined, as the compiler
joins them) whose text is a key by that key's constant, and adds the include where it is
missing. Running it again changes nothing, so it can be re-run after merging a branch that
still passes key strings.

Keys that read as plain words and are their own wording ("Statistics", "df", "Chi-square")
are also ordinary labels and names elsewhere; those are rewritten only where they are passed
to be translated, that is when the literal is followed by the `true` of a translate flag
(`BpString("Statistics", true)`). Every other key is rewritten wherever it stands.

Usage: scripts/symbolic_message_names.py [--check] [paths...]
  With no paths it walks src/, app/, python/ and tests/ of the repository. With --check it
  rewrites nothing and exits 1 when some file would change (for CI and reviews).
"""

import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DEF_FILE = os.path.join(ROOT, "src", "host", "output", "MessageCatalogue.def")
KEYS_HEADER = "host/output/MessageKeys.h"
DEFAULT_DIRS = ["src", "app", "python", "tests"]
EXTENSIONS = (".cpp", ".h", ".cc", ".hpp")

ENTRY = re.compile(
    r'QUILT_MESSAGE\(\s*([A-Za-z_]\w*)\s*,\s*"((?:[^"\\]|\\.)*)"\s*,\s*((?:"(?:[^"\\]|\\.)*"\s*)+)\)')
# A file-local alias of a named key, `const char* const kMissing = msg::kMissingSubcommand;`:
# left over from the string era, it hides the catalogue name, so it is folded into its uses.
ALIAS = re.compile(
    r'^[ \t]*(?:static\s+)?(?:constexpr\s+|const\s+)*char\s*(?:\*\s*)?(?:const\s+)?(k\w+)(?:\[\])?\s*=\s*'
    r'(msg::k\w+)\s*;[ \t]*\n', re.MULTILINE)
TRANSLATE_FLAG = re.compile(r'\s*,\s*(?:/\*[^*]*\*/\s*)?true\b')


def load_catalogue():
    """Maps each key, as written in source (escapes kept), to (name, self_worded)."""
    with open(DEF_FILE, encoding="utf-8") as handle:
        text = handle.read()
    catalogue = {}
    for match in ENTRY.finditer(text):
        name, key, wording_literals = match.groups()
        wording = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', wording_literals))
        catalogue[key] = (name, wording == key)
    return catalogue


def literal_runs(source):
    """Yields (start, end, joined_text) for each run of adjacent ordinary string literals
    outside comments, character literals and raw strings."""
    i = 0
    n = len(source)
    while i < n:
        c = source[i]
        if source.startswith("//", i):
            i = source.find("\n", i)
            i = n if i < 0 else i
            continue
        if source.startswith("/*", i):
            i = source.find("*/", i + 2)
            i = n if i < 0 else i + 2
            continue
        if c == "'":
            before = source[max(0, i - 3):i]
            if i > 0 and source[i - 1].isalnum() and not re.search(r"(?:^|\W)(?:u8|u|U|L)$", before):
                i += 1  # a digit separator, as in 1'000
                continue
            i += 1
            while i < n and source[i] != "'":
                i += 2 if source[i] == "\\" else 1
            i += 1
            continue
        if c == "R" and source.startswith('R"', i) and (i == 0 or not (source[i - 1].isalnum() or source[i - 1] == "_")):
            open_paren = source.find("(", i + 2)
            delimiter = source[i + 2:open_paren]
            close = source.find(")" + delimiter + '"', open_paren)
            i = n if close < 0 else close + len(delimiter) + 2
            continue
        if c == '"':
            prefix = re.search(r"(?:u8|u|U|L)$", source[max(0, i - 2):i])
            if prefix and (i - len(prefix.group(0)) == 0 or not (source[i - len(prefix.group(0)) - 1].isalnum())):
                i = skip_literal(source, i)
                continue
            if i > 0 and (source[i - 1].isalnum() or source[i - 1] == "_"):
                i = skip_literal(source, i)  # part of an identifier-like prefix we do not handle
                continue
            start = i
            pieces = []
            end = i
            while True:
                close = skip_literal(source, i)
                pieces.append(source[i + 1:close - 1])
                end = close
                j = close
                while j < n and source[j] in " \t\r\n":
                    j += 1
                if j < n and source[j] == '"':
                    i = j
                    continue
                break
            yield start, end, "".join(pieces)
            i = end
            continue
        i += 1


def skip_literal(source, i):
    """The index just past the string literal opening at `i`."""
    i += 1
    while i < len(source) and source[i] != '"':
        i += 2 if source[i] == "\\" else 1
    return i + 1


def add_include(source, path):
    if KEYS_HEADER in source:
        return source
    lines = source.split("\n")
    stem = os.path.splitext(os.path.basename(path))[0]
    includes = [index for index, line in enumerate(lines) if line.startswith('#include "')]
    if includes and os.path.splitext(os.path.basename(lines[includes[0]].split('"')[1]))[0] == stem:
        candidates = includes[1:]  # the file's own header stays first
    else:
        candidates = includes
    new_line = f'#include "{KEYS_HEADER}"'
    if candidates:
        position = None
        for index in candidates:
            if lines[index] > new_line:
                position = index
                break
        if position is None:
            position = candidates[-1] + 1
        lines.insert(position, new_line)
        return "\n".join(lines)
    if includes:  # only the file's own header: a project group of its own after it
        lines[includes[0] + 1:includes[0] + 1] = ["", new_line]
        return "\n".join(lines)
    pragma = next((index for index, line in enumerate(lines) if line.startswith("#pragma once")), None)
    anchor = pragma if pragma is not None else 0
    lines[anchor + 1:anchor + 1] = ["", new_line]
    return "\n".join(lines)


def rewrite(source, path, catalogue):
    pieces = []
    last = 0
    changed = False
    for start, end, text in literal_runs(source):
        entry = catalogue.get(text)
        if entry is None:
            continue
        name, self_worded = entry
        suffix = re.match(r"[A-Za-z_]\w*", source[end:])
        if self_worded and not TRANSLATE_FLAG.match(source, end):
            continue
        replacement = "msg::k" + name
        stop = end
        if suffix:
            if suffix.group(0) != "s":
                continue
            replacement = f"std::string({replacement})"
            stop = end + 1
        pieces.append(source[last:start])
        pieces.append(replacement)
        last = stop
        changed = True
    if changed:
        pieces.append(source[last:])
        source = add_include("".join(pieces), path)
    return fold_aliases(source, path)


def fold_aliases(source, path):
    """Replaces each file-local alias of a named key by the name itself. Only in .cpp files:
    an alias in a header may be used by files this run does not see."""
    if not path.endswith((".cpp", ".cc")):
        return source
    for match in list(ALIAS.finditer(source)):
        alias, name = match.groups()
        if len(re.findall(r"\b" + alias + r"\s*=", source)) > 1:
            continue  # declared more than once (in different scopes): leave it to a person
        start = source.find(match.group(0))
        end = start + len(match.group(0))
        # Keep one blank line where the alias block stood, not two.
        if source[max(0, start - 2):start] == "\n\n" and source[end:end + 1] == "\n":
            end += 1
        source = source[:start] + source[end:]
        source = re.sub(r"(?<![:\w])" + alias + r"\b", name, source)
    return source


def files_under(paths):
    for path in paths:
        if os.path.isfile(path):
            yield path
            continue
        for directory, _, names in os.walk(path):
            for name in sorted(names):
                if name.endswith(EXTENSIONS):
                    yield os.path.join(directory, name)


def main(arguments):
    check = "--check" in arguments
    paths = [argument for argument in arguments if argument != "--check"]
    if not paths:
        paths = [os.path.join(ROOT, directory) for directory in DEFAULT_DIRS]
    catalogue = load_catalogue()
    if not catalogue:
        sys.exit(f"no entries read from {DEF_FILE}")
    pending = []
    for path in files_under(paths):
        with open(path, encoding="utf-8", errors="surrogateescape") as handle:
            source = handle.read()
        result = rewrite(source, path, catalogue)
        if result == source:
            continue
        pending.append(path)
        if not check:
            with open(path, "w", encoding="utf-8", errors="surrogateescape") as handle:
                handle.write(result)
    for path in pending:
        print(("would rewrite " if check else "rewrote ") + os.path.relpath(path, ROOT))
    return 1 if check and pending else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
