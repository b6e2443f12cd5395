"""Reads the species file by a reading of its own, and evaluates the functions of its species."""

import re

import numpy

WORD_BEHIND_STRUCTURE = re.compile(r".*(structure|STRUCTURE)\s?(\S+).+")
# Half the width of the band in which libketra blends two phases of a substance, K.
HALF_BANDS = (("H2O(", 20.0), ("AL2O3(", 100.0), ("MgO(", 100.0), ("", 35.0))


class Species:
    """One record: its name, its atoms and, interval by interval, (T1, T2, a0 .. a6, b0, b1)."""

    def __init__(self, line):
        blank = line.find(" ")
        self.name = line[:blank].strip()
        description = line[blank:].strip()
        lower = description.lower()
        if "excited" in lower:
            self.name += " excited"
        word = WORD_BEHIND_STRUCTURE.match(description)
        if "structure" in lower and word:
            self.name += " " + word.group(2)
        for state in ("singlet", "triplet"):
            if state in lower:
                self.name += " " + state
        self.atoms = {}
        self.condensed = False
        self.intervals = []

    @property
    def lowest(self):
        return self.intervals[0][0]

    @property
    def highest(self):
        return self.intervals[-1][1]

    def read(self, lines):
        """Takes the lines of the record behind the first one; returns how many they are."""
        head = lines[0]
        for k in range(5):
            field = head[10 + 8 * k:18 + 8 * k]
            symbol = field[:2].strip().upper()
            number = float(field[2:])
            if symbol and number != 0.0:
                self.atoms[symbol] = self.atoms.get(symbol, 0.0) + number
        self.condensed = int(head[50:52]) != 0
        count = int(head[:2])
        for k in range(count):
            first, second, third = lines[1 + 3 * k:4 + 3 * k]
            numbers = [second[16 * j:16 * j + 16] for j in range(5)]
            numbers += [third[:16], third[16:32], third[48:64], third[64:80]]
            self.intervals.append([float(first[:11]), float(first[11:22])] +
                                  [float(text.replace("D", "E")) for text in numbers])
        return 1 + 3 * count if count else 2


def read_species(path):
    """All species of the file by their names, and the names of those that can be products."""
    species, products = {}, []
    reactant = False
    lines = path.read_text(encoding="ascii").splitlines()
    at = next(i for i, line in enumerate(lines) if line.startswith("thermo")) + 2
    while at < len(lines):
        line = lines[at]
        at += 1
        if line.startswith("END PRODUCTS"):
            reactant = True
        if not line.strip() or line.startswith(("!", "thermo", "END")):
            continue
        record = Species(line)
        at += record.read(lines[at:at + 40])
        species[record.name] = record
        if not reactant:
            products.append(record.name)
    return species, products


class Table:
    """The functions of a list of species, evaluated together."""

    def __init__(self, species):
        self.species = species
        rows = [row for one in species for row in one.intervals]
        self.owner = numpy.array([i for i, one in enumerate(species) for _ in one.intervals], int)
        self.rows = numpy.array(rows).reshape(len(rows), 11)

    def at(self, T):
        """Which species have data at T, and their H/(R T) and S/R. Of two intervals that share
        the bound T the lower one counts."""
        holding = numpy.flatnonzero((self.rows[:, 0] <= T) & (T <= self.rows[:, 1]))
        present, first = numpy.unique(self.owner[holding], return_index=True)
        c = self.rows[holding[first], 2:].T
        log = numpy.log(T)
        h = (-c[0] / T**2 + c[1] * log / T + c[2] + c[3] * T / 2 + c[4] * T**2 / 3 +
             c[5] * T**3 / 4 + c[6] * T**4 / 5 + c[7] / T)
        s = (-c[0] / T**2 / 2 - c[1] / T + c[2] * log + c[3] * T + c[4] * T**2 / 2 +
             c[5] * T**3 / 3 + c[6] * T**4 / 4 + c[8])
        return present, h, s


class Band:
    """Where libketra blends two phases of a substance instead of telling them apart."""

    def __init__(self, lower, upper, boundary, half):
        self.names = (lower.name, upper.name)
        self.lowest, self.highest = boundary - half, boundary + half

    def holds(self, T):
        return self.lowest <= T <= self.highest


def bands_of(condensed):
    """The bands of a list of condensed phases: of the phases of one formula the first two in the
    order of the file make a pair, then the next two."""
    left = list(condensed)
    bands = []
    while left:
        first = left.pop(0)
        second = next((one for one in left if list(one.atoms.items()) == list(first.atoms.items())),
                      None)
        if second is None:
            continue
        left.remove(second)
        half = next(width for start, width in HALF_BANDS if first.name.startswith(start))
        if second.lowest > first.lowest:
            bands.append(Band(first, second, first.highest, half))
        else:
            bands.append(Band(second, first, first.lowest, half))
    return bands
