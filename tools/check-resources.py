#!/usr/bin/env python3
"""Checks the shipped data files: checksums against resources/SOURCES.md, and every column of every
record by a reading of its own, independent of the library."""

import argparse
import hashlib
import math
import pathlib
import re
import sys

WIDTH = 80
NUMBER = re.compile(r"^ *[-+]?(\d+\.?\d*|\.\d+)([DE][-+]\d+)?$")
TRANSPORT_HEAD = re.compile(r"^(\S.{14}) (.{15})   V(\d)C(\d)$")


class Checker:
    def __init__(self):
        self.problems = []

    def say(self, where, text):
        self.problems.append(f"{where}: {text}")

    def number(self, where, field):
        """The value of a field that must be filled up to its right end."""
        if not NUMBER.match(field):
            self.say(where, f"not a number: '{field}'")
            return math.nan
        return float(field.replace("D", "E"))


def check_sums(folder, checker):
    sources = (folder / "SOURCES.md").read_text(encoding="utf-8")
    listed = dict(re.findall(r"`([\w.]+)`[^\n]*?`([0-9a-f]{64})`", sources))
    present = {p.name for p in folder.glob("*.inp")}
    for name in sorted(present | listed.keys()):
        if name not in listed:
            checker.say("SOURCES.md", f"no checksum of {name}")
        elif name not in present:
            checker.say("SOURCES.md", f"{name} is not there")
        else:
            found = hashlib.sha256((folder / name).read_bytes()).hexdigest()
            if found != listed[name]:
                checker.say(name, f"sha256 is {found}")


def check_formula(where, field, checker):
    for k in range(5):
        symbol, number = field[8 * k:8 * k + 2], field[8 * k + 2:8 * k + 8]
        if symbol.strip():
            if not re.match(r"^[A-Z][A-Z ]$", symbol):
                checker.say(where, f"symbol '{symbol}'")
            if checker.number(where, number) == 0:
                checker.say(where, f"no atoms of {symbol}")
        elif number != "  0.00":
            checker.say(where, f"number '{number}' of no element")


def check_species(path, checker):
    lines = path.read_bytes().decode("ascii").split("\n")
    if lines.pop() != "":
        checker.say(path.name, "no line end at the end")
    for i, line in enumerate(lines, 1):
        if len(line) != WIDTH:
            checker.say(f"{path.name}:{i}", f"{len(line)} characters")
    names = set()
    i = next(k for k, line in enumerate(lines) if line.startswith("thermo")) + 2
    reactants = False
    while i < len(lines):
        where = f"{path.name}:{i + 1}"
        if lines[i].startswith("END PRODUCTS"):
            reactants = True
            i += 1
            continue
        if lines[i].startswith("END REACTANTS"):
            break
        name = lines[i].split(" ")[0]
        if name in names or not name:
            checker.say(where, f"name '{name}' again")
        names.add(name)
        header = lines[i + 1]
        intervals = int(header[0:2])
        check_formula(where, header[10:50], checker)
        for begin, end in ((50, 52), (52, 65), (65, 80)):
            checker.number(where, header[begin:end])
        i += 2
        if intervals == 0:
            if not reactants:
                checker.say(where, "a record of one temperature among the products")
            checker.number(where, lines[i][0:11])
            i += 1
            continue
        upper = None
        for _ in range(intervals):
            low, high = (checker.number(where, lines[i][a:a + 11]) for a in (0, 11))
            if not low < high or upper not in (None, low):
                checker.say(where, f"interval {low} to {high} K behind {upper} K")
            upper = high
            if lines[i][22:65] != "7 -2.0 -1.0  0.0  1.0  2.0  3.0  4.0  0.0  ":
                checker.say(where, "exponents")
            fields = [lines[i + 1][16 * k:16 * k + 16] for k in range(5)]
            fields += [lines[i + 2][a:a + 16] for a in (0, 16, 48, 64)]
            for field in fields:
                checker.number(where, field)
            i += 3
    return names


def check_tables(path, checker):
    lines = path.read_bytes().decode("utf-8").split("\n")
    tables = 0
    i = 0
    while i < len(lines):
        where = f"{path.name}:{i + 1}"
        line = lines[i]
        i += 1
        if line.startswith("!") and len(line) != 120:
            checker.say(where, f"comment of {len(line)} characters")
        if not line or line.startswith("!"):
            continue
        counts = re.match(r"^(\S{1,16}) +(\d+), *(\d+)$", line)
        if not counts:
            checker.say(where, f"no head of a table: {line}")
            break
        tables += 1
        pressures, temperatures = int(counts.group(2)), int(counts.group(3))
        for k in range(pressures * temperatures):
            where = f"{path.name}:{i + 1}"
            columns = 8 if k % temperatures == 0 else 6
            for c in range(columns):
                checker.number(where, lines[i][15 * c:15 * c + 15].rstrip())
            if lines[i][15 * columns:]:
                checker.say(where, "more columns than expected")
            i += 1
    return tables


def check_interval(where, line, letter, upper, checker):
    """One line of coefficients. Returns its upper bound."""
    if line[:2] != f" {letter}":
        checker.say(where, f"no line of {letter}")
    low, high = (checker.number(where, line[a:a + 9]) for a in (2, 11))
    if not 0 < low < high or upper not in (None, low):
        checker.say(where, f"interval {low} to {high} K behind {upper} K")
    values = [checker.number(where, line[a:a + 15]) for a in (20, 35, 50, 65)]
    for T in (low, high):
        log = values[0] * math.log(T) + values[1] / T + values[2] / T ** 2 + values[3]
        if not math.log(1e-3) < log < math.log(1e6):  # micropoise, microwatt/(cm K); electrons least
            checker.say(where, f"{math.exp(log):.3g} at {T} K")
    return high


def check_transport(path, names, checker):
    lines = path.read_bytes().decode("ascii").split("\n")
    if lines.pop() != "" or lines.pop().rstrip() != "end":
        checker.say(path.name, "no line 'end' at the end")
    for i, line in enumerate(lines, 1):
        if len(line) != WIDTH:
            checker.say(f"{path.name}:{i}", f"{len(line)} characters")
    if lines[0].rstrip() != "transport property coefficients":
        checker.say(path.name, "no title")
    blocks = set()
    i = 1
    while i < len(lines):
        where = f"{path.name}:{i + 1}"
        head = TRANSPORT_HEAD.match(lines[i].rstrip())
        if not head:
            checker.say(where, f"no head of a block: {lines[i]}")
            break
        pair = tuple(filter(None, (head.group(1).rstrip(), head.group(2).rstrip())))
        if tuple(sorted(pair)) in blocks:
            checker.say(where, f"block {pair} again")
        blocks.add(tuple(sorted(pair)))
        for name in pair:
            if name not in names:
                checker.say(where, f"{name} is no species")
        i += 1
        for letter, count in zip("VC", head.groups()[2:]):
            upper = None
            for _ in range(int(count)):
                where = f"{path.name}:{i + 1}"
                upper = check_interval(where, lines[i], letter, upper, checker)
                i += 1
    return len(blocks)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    default = pathlib.Path(__file__).resolve().parent.parent / "resources"
    parser.add_argument("folder", nargs="?", type=pathlib.Path, default=default,
                        help="folder of the data files (default: %(default)s)")
    folder = parser.parse_args().folder
    checker = Checker()
    check_sums(folder, checker)
    species = check_species(folder / "thermo.inp", checker)
    tables = check_tables(folder / "properties.inp", checker)
    blocks = check_transport(folder / "trans.inp", species, checker)
    for problem in checker.problems[:50]:
        print(problem, file=sys.stderr)
    print(f"{len(species)} species, {tables} tables, {blocks} transport blocks, "
          f"{len(checker.problems)} problems")
    return 1 if checker.problems else 0


if __name__ == "__main__":
    sys.exit(main())
