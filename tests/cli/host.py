"""What the tests of the command line share: starting the program, and documents to give it."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

PROGRAM = os.environ["KETRA_PROGRAM"]
SOURCE = pathlib.Path(os.environ["KETRA_SOURCE_DIR"])
RESOURCES = pathlib.Path(os.environ.get("KETRA_TEST_RESOURCES", SOURCE / "resources"))

GOOD, USAGE, DOCUMENT, DATA, NOT_CONVERGED, SOME_FAILED, INTERNAL = 0, 2, 3, 4, 5, 6, 70

# Line numbers matter: the tests name them.
CHAMBER = """\
version = 1.2;
name = "test";
info = "LOX/LH2";
generalOptions = { multiphase = true; ions = false; };
combustionChamberConditions = {
    pressure = { value = 10.0; unit = "MPa"; };
};
nozzleFlow = { calculateNozzleFlow = false; };
propellant = {
    components = {
        ratio = { value = 6.0; unit = "O/F"; };
        oxidizer = ( { name = "O2(L)"; massFraction = 1.0; } );
        fuel = ( { name = "H2(L)"; massFraction = 1.0; } );
    };
};
"""

MIXTURE = """\
combustionChamberConditions = { pressure = { value = 1.0; unit = "MPa"; }; };
nozzleFlow = { calculateNozzleFlow = false; };
propellant = {
    mixture = {
        species = ( %s );
    };
};
"""

# The species of hydrogen and oxygen: enough to burn, and quick to load.
HYDROGEN_OXYGEN = ("H", "HO2", "H2", "H2O", "H2O2", "O", "OH", "O2", "O3", "H2O(cr)", "H2O(L)",
                   "H2(L)", "O2(L)")


def changed(text, old, new):
    """The text with its one occurrence of `old` replaced."""
    assert text.count(old) == 1, f"{old!r} stands {text.count(old)} times"
    return text.replace(old, new)


def engine(*groups, ratio='value = 6.0; unit = "O/F";', exit="areaRatio = 40.0;"):
    """A whole engine of hydrogen and oxygen: the groups stand in nozzleFlow beside its exit."""
    if exit:
        groups = (f"nozzleExitConditions = {{ {exit} }};",) + groups
    text = changed(CHAMBER, "calculateNozzleFlow = false;", " ".join(groups))
    return changed(text, 'value = 6.0; unit = "O/F";', ratio)


# Conditions of the nozzle flow.
FINITE = "nozzleInletConditions = { contractionAreaRatio = 2.0; };"
FROZEN = "freezingConditions = { calculate = true; expansionRatio = 2.0; };"
SEA_LEVEL = 'ambientConditions = { pressure = { value = 1.0; unit = "atm"; }; };'

# So rich in hydrogen, and expanded so far, that the exit is colder than the species' data.
COLD = engine(ratio='value = 0.3; unit = "O/F";', exit="areaRatio = 400.0;")


def species_records(text):
    """The records of a species file as (name, lines, reactant only)."""
    lines = text.splitlines()
    at = next(i for i, line in enumerate(lines) if line.strip().lower() == "thermo") + 2
    reactant = False
    while at < len(lines):
        if lines[at].startswith("END"):
            reactant = True
            at += 1
            continue
        intervals = int(lines[at + 1][:2])
        length = 2 + (3 * intervals if intervals else 1)
        yield lines[at].split()[0], lines[at:at + length], reactant
        at += length


def write_species_file(folder, names):
    """A species file with the named records of the shipped one, in a new folder."""
    folder.mkdir(parents=True)
    wanted = [r for r in species_records((RESOURCES / "thermo.inp").read_text()) if r[0] in names]
    assert len(wanted) == len(names)
    lines = ["thermo", "    200.00   1000.00   6000.00  20000."]
    lines += [line for _, record, reactant in wanted if not reactant for line in record]
    lines += ["END PRODUCTS".ljust(80)]
    lines += [line for _, record, reactant in wanted if reactant for line in record]
    lines += ["END REACTANTS".ljust(80)]
    (folder / "thermo.inp").write_text("\n".join(lines) + "\n")
    return folder


def write_properties_file(folder, names):
    """A properties file with the tables of the named species."""
    lines = (RESOURCES / "properties.inp").read_text(encoding="utf-8").splitlines()
    kept, keep = lines[:7], False
    for line in lines[7:]:
        if line[0] not in " !":
            keep = line.split()[0] in names
        if keep:
            kept.append(line)
    (folder / "properties.inp").write_text("\n".join(kept) + "\n", encoding="utf-8")


class HostCase(unittest.TestCase):
    """Each test runs in an empty folder of its own."""

    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.shared = pathlib.Path(tempfile.mkdtemp(prefix="ketra-cli-"))
        cls.small = write_species_file(cls.shared / "small", HYDROGEN_OXYGEN)
        write_properties_file(cls.small, HYDROGEN_OXYGEN)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.shared)

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=self.shared))

    def write(self, text, name="case.cfg"):
        path = self.folder / name
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return path

    def ketra(self, *arguments, environment=None, **options):
        """Runs the program. Output is kept as bytes, line ends and all."""
        variables = {k: v for k, v in os.environ.items()
                     if k not in ("KETRA_RESOURCES", "KETRA_USER")}
        variables.update(environment or {})
        return subprocess.run([PROGRAM, *map(str, arguments)], cwd=self.folder, env=variables,
                              stdin=subprocess.DEVNULL, timeout=300,
                              **{"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options})

    def expect(self, code, *arguments, **options):
        """Runs the program and holds its exit status against the expected one."""
        done = self.ketra(*arguments, **options)
        self.assertEqual(done.returncode, code,
                         f"\n{arguments}\nstdout: {done.stdout}\nstderr: {done.stderr}")
        return done

    def check(self, code, text, *arguments):
        """Checks a document with the small species file. Returns its messages."""
        path = self.write(text)
        done = self.expect(code, "check", path, "--resources", self.small, *arguments)
        return done.stderr.decode()

    def results(self, text, *arguments, resources=None):
        """Runs a document and returns its results."""
        path = self.write(text)
        done = self.expect(GOOD, "run", path, "--resources", resources or self.small, "--json", "-",
                           *arguments)
        return json.loads(done.stdout)
