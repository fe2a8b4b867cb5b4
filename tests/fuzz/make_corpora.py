#!/usr/bin/env python3
"""make_corpora.py - seed corpora and the keyword dictionary for the fuzz harnesses.

    make_corpora.py SOURCE_DIR OUT_DIR

Writes OUT_DIR/<Harness>/ with one seed per file, from the example commands, the commands
quoted in the tests and in their data-file corpora, the sample survey and its dictionary, the CSV and JSON texts of the
data tests, and tests/fuzz/seeds/<Harness>/ (inputs that once crashed); and OUT_DIR/quilt.dict,
libFuzzer's dictionary of the command language's keywords and operators.
"""
import hashlib
import pathlib
import re
import sys

SOURCE = pathlib.Path(sys.argv[1])
OUT = pathlib.Path(sys.argv[2])

# The CSV harness reads its first byte as the delimiter choice (',' is choice 0), and the
# command harness as the data-set choice (0: plain, 1: weighted and split, 2: layered).
PREFIX = {"LexerFuzzer": [b""], "CommandFuzzer": [b"\x00", b"\x01"], "CsvFuzzer": [b","],
          "DictionaryFuzzer": [b""]}

STRING = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
RAW = re.compile(r'R"\((.*?)\)"', re.S)


def unescape(text):
    """The bytes of a C++ string literal's body."""
    out = bytearray()
    i = 0
    while i < len(text):
        c = text[i]
        if c != "\\":
            out += c.encode()
            i += 1
            continue
        nxt = text[i + 1]
        if nxt == "x":
            digits = re.match(r"[0-9a-fA-F]+", text[i + 2:]).group(0)
            out.append(int(digits, 16) & 0xFF)
            i += 2 + len(digits)
            continue
        out += {"n": b"\n", "t": b"\t", "r": b"\r", "0": b"\0", "\\": b"\\", '"': b'"', "'": b"'"}.get(
            nxt, nxt.encode())
        i += 2
    return bytes(out)


def add(seeds, harness, data):
    for prefix in PREFIX[harness]:
        seeds.setdefault(harness, set()).add(prefix + data)


def main():
    seeds = {}
    tests = sorted((SOURCE / "tests").rglob("*.cpp"))
    for path in sorted((SOURCE / "examples").glob("*.qlt")):
        for harness in ("LexerFuzzer", "CommandFuzzer"):
            add(seeds, harness, path.read_bytes())
    for path in tests:
        source = path.read_text(encoding="utf-8", errors="replace")
        for literal in STRING.findall(source):
            data = unescape(literal)
            if data.lstrip().upper().startswith(b"QUILT"):
                add(seeds, "LexerFuzzer", data)
                add(seeds, "CommandFuzzer", data)
            elif b"\n" in data and b"," in data and "data" in path.parts:
                add(seeds, "CsvFuzzer", data)
        for raw in RAW.findall(source):
            if raw.lstrip().startswith(("{", "[")):
                add(seeds, "DictionaryFuzzer", raw.encode())
    # The data-file corpora of the tests hold commands too, one a line after a case's prefix.
    for path in sorted((SOURCE / "tests").rglob("*.txt")):
        if "golden" in path.parts:
            continue
        for line in path.read_bytes().split(b"\n"):
            start = line.find(b"QUILT")
            if start >= 0 and not line.startswith(b"#"):
                add(seeds, "LexerFuzzer", line[start:])
                add(seeds, "CommandFuzzer", line[start:])
    survey = (SOURCE / "examples" / "survey.csv").read_bytes().split(b"\n")
    add(seeds, "CsvFuzzer", b"\n".join(survey[:30]) + b"\n")
    add(seeds, "DictionaryFuzzer", (SOURCE / "examples" / "survey.dict.json").read_bytes())
    for folder in sorted((SOURCE / "tests" / "fuzz" / "seeds").glob("*")):
        for path in sorted(folder.iterdir()):
            seeds.setdefault(folder.name, set()).add(path.read_bytes())

    for harness, items in seeds.items():
        folder = OUT / harness
        folder.mkdir(parents=True, exist_ok=True)
        for data in items:
            (folder / hashlib.sha1(data).hexdigest()).write_bytes(data)

    # Every upper-case word the parser compares tokens with, and every operator.
    words = set()
    for path in sorted((SOURCE / "src" / "parser").glob("*.cpp")):
        words.update(re.findall(r'"([A-Z][A-Z0-9_.]{1,30})"', path.read_text(encoding="utf-8")))
    kinds = (SOURCE / "src" / "host" / "tokens" / "TokenKinds.def").read_text(encoding="utf-8")
    words.update(re.findall(r'^(?:PUNCTUATOR|RESERVED_WORD)\(\w+, "([^"]+)"\)', kinds, re.M))
    words.update(["QUILT", "/TABLE", "'label'", ")DATE", ")TIME", "$media", "$brands", "region", "score"])
    with open(OUT / "quilt.dict", "w", encoding="utf-8") as out:
        for word in sorted(words):
            out.write('"' + word.replace("\\", "\\\\").replace('"', '\\"') + '"\n')
    print(" ".join(f"{harness}:{len(items)}" for harness, items in sorted(seeds.items())), f"keywords:{len(words)}")


if __name__ == "__main__":
    main()
