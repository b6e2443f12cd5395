#!/usr/bin/env python3
"""Checks the text files of the tree.

Sources, scripts and documents: UTF-8, lines end in a line feed, no tabs (a Makefile's recipes excepted),
no blanks at a line's end, one line feed at the end of the file. C++ lines hold at most 100 characters,
except in tables kept from the formatter.
Files whose line ends are part of their format are left alone by git, as .gitattributes must say; report
texts (tests/reports/**/report.*.txt) end every line in CR LF.

Prints one line per fault and ends with status 1 if there is any.
"""

import argparse
import os
import pathlib
import sys

SUFFIXES = {".h", ".cpp", ".py", ".sh", ".cmake", ".md", ".cff", ".json", ".in", ".yml", ".yaml"}
NAMES = {"CMakeLists.txt", "Makefile", "packages.txt", "run", ".clang-format", ".clang-tidy", ".clangd",
         ".editorconfig", ".gitattributes", ".gitignore"}
# parts of the tree whose bytes are data
DATA = ("resources/", "tests/reports/", "tests/documents/", "tests/data/", "tests/validation/data/")
SKIPPED_FOLDERS = {".git", "build", ".cache", "__pycache__"}
LONGEST_CPP_LINE = 100
UNTOUCHED = ("resources/*.inp -text", "tests/reports/** -text", "tests/documents/**/*.cfg -text")


def files(root):
    for folder, folders, names in os.walk(root):
        folders[:] = sorted(name for name in folders if name not in SKIPPED_FOLDERS)
        for name in sorted(names):
            yield pathlib.Path(folder) / name


def source_faults(path, data):
    """Line and fault of everything wrong with a source text."""
    try:
        text = data.decode("utf-8")
    except UnicodeDecodeError:
        yield 1, "not UTF-8"
        return
    if data and not data.endswith(b"\n"):
        yield text.count("\n") + 1, "no line feed at the end of the file"
    if data.endswith(b"\n\n"):
        yield text.count("\n"), "blank lines at the end of the file"
    formatted = path.suffix in (".h", ".cpp")
    for number, line in enumerate(text.split("\n"), 1):
        if "// clang-format o" in line:
            formatted = line.rstrip().endswith("on")
        if "\r" in line:
            yield number, "carriage return"
        elif line != line.rstrip():
            yield number, "blanks at the end of the line"
        if "\t" in (line.lstrip("\t") if path.name == "Makefile" else line):
            yield number, "tab"
        if formatted and len(line) > LONGEST_CPP_LINE:
            yield number, f"longer than {LONGEST_CPP_LINE} characters"


def report_faults(data):
    for number, line in enumerate(data.split(b"\n")[:-1], 1):
        if not line.endswith(b"\r"):
            yield number, "a report's line ends in CR LF"


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--root", type=pathlib.Path,
                        default=pathlib.Path(__file__).resolve().parent.parent,
                        help="the source tree to check (default: the one of this script)")
    root = parser.parse_args().root

    faults = 0
    for path in files(root):
        name = path.relative_to(root).as_posix()
        if name.startswith("tests/reports/") and path.name.startswith("report."):
            found = report_faults(path.read_bytes())
        elif name.startswith(DATA) and path.suffix not in (".h", ".cpp", ".md"):
            continue
        elif path.suffix in SUFFIXES or path.name in NAMES:
            found = source_faults(path, path.read_bytes())
        else:
            continue
        for line, fault in found:
            faults += 1
            print(f"{name}:{line}: {fault}")

    attributes = root / ".gitattributes"
    lines = attributes.read_text(encoding="utf-8").splitlines() if attributes.exists() else []
    for wanted in UNTOUCHED:
        if wanted not in lines:
            faults += 1
            print(f".gitattributes:1: lacks '{wanted}'")
    if faults:
        print(f"check-text: {faults} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
