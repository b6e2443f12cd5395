#!/usr/bin/env python3
"""Checks that a page shows the tables that the program of the deviations prints.

Every row that the program prints for the options below must stand in the page: the same words, and the same
numbers within one unit of their last digit (a number with an exponent within a third of itself), so that
another compiler does not make the page wrong.

Prints the rows that the page lacks and ends with status 1 if there is any.
"""

import argparse
import pathlib
import re
import subprocess
import sys

OPTIONS = ["", "--summary", "--chambers", "--nozzles", "--standard-state", "--gases", "--flames", "--explosives",
           "--atmosphere", "--engines"]
NUMBER = re.compile(r"(?<![\w.])[-+]?\d+(?:\.\d+)?(?:[eE][-+]?\d+)?")
ROUNDING = 1e-9  # what an error may be of figures that agree to all their digits


def skeleton(row):
    """The row without its numbers."""
    return NUMBER.sub("#", row)


def unit(number):
    """How far the same number may be printed elsewhere."""
    if "e" in number.lower():
        return abs(float(number)) / 3 + ROUNDING
    if "." in number:
        return 1.01 * 10.0 ** -len(number.split(".")[1])
    return 1.0 if number[0] in "+-" or len(number) > 3 else 0.0


def same(row, other):
    """The numbers of two rows with the same words."""
    return all(abs(float(a) - float(b)) <= unit(a)
               for a, b in zip(NUMBER.findall(row), NUMBER.findall(other), strict=True))


def missing(program, page):
    """The printed rows that the page does not show."""
    shown = {}
    for line in page.splitlines():
        shown.setdefault(skeleton(line), []).append(line)
    for option in OPTIONS:
        printed = subprocess.run([program] + option.split(), check=True, capture_output=True, text=True).stdout
        rows = [line for line in printed.splitlines() if line.startswith("|")]
        if not rows:
            yield option, "(no table)"
        for row in rows:
            if not any(same(row, other) for other in shown.get(skeleton(row), [])):
                yield option, row


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="ketra_deviations")
    parser.add_argument("page", type=pathlib.Path, help="docs/verification.md")
    arguments = parser.parse_args()
    faults = list(missing(arguments.program, arguments.page.read_text(encoding="utf-8")))
    for option, row in faults:
        print(f"{option or 'without an option'}: {row}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
