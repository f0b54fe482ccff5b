#!/usr/bin/env python3
# scripts/lint.py -- the house rules that can be checked line by line. Prints what breaks them; silent otherwise.
import os
import re
import subprocess
import sys

columns = 110
layers = [["storage", "numbers"], ["poly"], ["quoly", "gcd"], ["matrix"], ["session"]]
rank = {folder: level for level, folders in enumerate(layers) for folder in folders}
# The one header by which the lower folders reach up, and what it is made of.
upward_headers = {"session/report.h", "session/errnums.h", "session/errors.def"}

# Things that are to be said in the issue tracker, or to be done rather than said.
to_do = re.compile(r"\b(?:%s)\b" % "|".join(["TO" + "DO", "FIX" + "ME", "X" * 3, "HA" + "CK"]))
# Comments explain themselves; they refer to no document by number, and to no document outside this tree.
numbered_section = re.compile(r"\b[Pp]art [1-9]\.[0-9]|\b[Pp]arts [1-9]\.[0-9]")
document = re.compile(r"[\w./-]*\w\.md\b")

include = re.compile(r'\s*#\s*include\s+"([^"]+)"')


def tracked_files():
    command = "git -c safe.directory=* ls-files -z --cached --others --exclude-standard".split()
    listed = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout
    return sorted(f for f in listed.decode().split("\0") if f and os.path.isfile(f))


def is_data(path):
    """Files whose bytes are the data of a test or of the product."""
    return (path.startswith(("BACKWARD/", "tests/fuzz/corpus/")) or ".files/" in path or ".made/" in path
            or path.startswith("tests/session/") and path.endswith((".in", ".out", ".kelstart")))


def opening_problem(path, lines):
    """Sources open with their path and what they are; a header with the guard before that. A test or a benchmark
    mirrors the path of a source, and opens with what it checks."""
    if path.endswith(".cpp") and path.startswith(("tests/unit/", "tests/oracle/", "tests/hostile/", "bench/")):
        return None if lines and lines[0].startswith("// ") else "the file must open with a comment: what it checks"
    first = 1 if path.endswith(".h") and lines and lines[0] == "#pragma once" else 0
    if path.endswith(".h") and first == 0:
        return "a header opens with #pragma once"
    if len(lines) <= first or not lines[first].startswith("// %s -- " % path):
        return "the file must open with the line: // %s -- ..." % path
    return None


def reach(path, folder):
    """The highest layer that a file may include: the bodies of the accounting read the records of all values."""
    return rank["quoly"] if folder == "storage" and path.endswith(".cpp") else rank[folder]


def include_problems(path, lines):
    folder = path.split("/")[0]
    if folder not in rank:
        return
    included = [(n, m[1]) for n, m in ((n, include.match(line)) for n, line in enumerate(lines, 1)) if m]
    own = os.path.splitext(path)[0] + ".h"
    if path.endswith(".cpp") and os.path.exists(own) and included and included[0][1] != own:
        yield included[0][0], "the header %s comes first" % own
    for n, header in included:
        target = header.split("/")[0]
        if target in rank and rank[target] > reach(path, folder) and header not in upward_headers:
            yield n, "%s may not include %s" % (folder, header)


def line_problems(path, lines, names):
    code = path.endswith((".h", ".cpp"))
    for n, line in enumerate(lines, 1):
        if code and len(line) > columns:
            yield n, "%d columns, more than %d" % (len(line), columns)
        if "\t" in line and not path.endswith((".in", ".out")):
            yield n, "a tab"
        if line != line.rstrip():
            yield n, "blanks at the end of the line"
        if to_do.search(line):
            yield n, "do it, or write an issue: " + to_do.search(line)[0]
        if numbered_section.search(line):
            yield n, "a section number of a document"
        for m in document.finditer(line):
            if os.path.basename(m[0]) not in names:
                yield n, "no such document: " + m[0]


def problems(path, names):
    with open(path, "rb") as f:
        content = f.read()
    try:
        text = content.decode("utf-8")
    except UnicodeDecodeError:
        yield 1, "not UTF-8"
        return
    lines = text.split("\n")
    if text and lines[-1] != "":
        yield len(lines), "no line end at the end of the file"
    lines = lines[:-1]
    if path.endswith((".h", ".cpp")):
        opening = opening_problem(path, lines)
        if opening:
            yield 1, opening
        yield from include_problems(path, lines)
    yield from line_problems(path, lines, names)


def main():
    paths = sys.argv[1:] or tracked_files()
    names = {os.path.basename(path) for path in tracked_files()}
    found = 0
    for path in paths:
        if is_data(path):
            continue
        for line, problem in problems(path, names):
            print("%s:%d: %s" % (path, line, problem))
            found += 1
    if found:
        print("%d house rules broken" % found)
    return 1 if found else 0


sys.exit(main())
