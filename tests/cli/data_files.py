"""What the tests of species data share: small files of each kind, and the lint of them."""

import json

from host import DATA, DOCUMENT, GOOD, SOURCE, HostCase

INGREDIENTS = SOURCE / "tests/data/ingredients.propep"

ARGON = "Ar                gas, atom".ljust(80) + """
 2 g 3/98 AR 1.000    0.00    0.00    0.00    0.00 0   39.9480000        0.00000
    200.000   1000.0007 -2.0 -1.0  0.0  1.0  2.0  3.0  4.0  0.0         6197.428
 0.000000000D+00 0.000000000D+00 2.500000000D+00 0.000000000D+00 0.000000000D+00
 0.000000000D+00 0.000000000D+00                -7.453750000D+02 4.379674910D+00
   1000.000   6000.0007 -2.0 -1.0  0.0  1.0  2.0  3.0  4.0  0.0         6197.428
 2.010538475D+01-5.992661070D-02 2.500069401D+00-3.992141160D-08 1.205272140D-11
-1.819015576D-15 1.078576636D-19                -7.449939610D+02 4.379180110D+00
"""

WATER = "H2O(L)            liquid".ljust(80) + """
 1 g 8/01 H  2.000O  1.000    0.00    0.00    0.00 2   18.0152800  -285830.00000
    273.150    373.1507 -2.0 -1.0  0.0  1.0  2.0  3.0  4.0  0.0        13278.000
 0.000000000D+00 0.000000000D+00 9.000000000D+00 0.000000000D+00 0.000000000D+00
 0.000000000D+00 0.000000000D+00                -3.706112110D+04-4.290000000D+01
"""

BINDER = "Binder            made-up binder, liquid".ljust(80) + """
 0 madeup C  1.000H  2.000    0.00    0.00    0.00 1   14.0265800  -100000.00000
    298.150      0.0000  0.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0            0.000
"""

# The records begin in the lines 3 and 11; behind the mark in line 16 that of the reactant, in line 17.
SPECIES = ("thermo\n    200.00   1000.00   6000.00  20000.\n" + ARGON + WATER + "END PRODUCTS\n" +
           BINDER + "END REACTANTS\n")

# Three lines of comment, and the head of the table in line 3.
TABLES = """\
!Format Version 2
!
H2O(L)            2, 3
  0.101325     280.00          4.20094        999.9110      1433.5698      571.98080      373.12         2256.4716
  0.101325     300.00          4.18131        997.0476       890.0225      606.51608
  0.101325     400.00          4.18131        937.0476       490.0225      606.51608
  1.000000     280.00          4.20094        999.9210      1433.5698      571.98080      399.99         2014.4716
  1.000000     300.00          4.18131        997.0576       890.0225      606.51608
  1.000000     400.00          4.18131        937.0576       490.0225      606.51608
"""

TRANSPORT = """\
transport property coefficients
Ar                                V2C1
 V    200.0   1000.0 0.61205763E+00-0.67714354E+02 0.19040660E+03 0.21588272E+01
 V   1000.0   5000.0 0.69357334E+00 0.70953943E+02-0.28386007E+05 0.14856447E+01
 C    200.0   1000.0 0.60968928E+00-0.70892249E+02 0.58420624E+03 0.19337152E+01
Ar              H2O(L)            V1C0
 V    300.0   1000.0 0.61205763E+00-0.67714354E+02 0.19040660E 03 0.21588272E+01
end
"""

PROPEP = """\
* made-up ingredients
   1METHANE (GAS)                        1C   4H   0    0    0    0  -1000  .05
   2WATER                                2H   1O   0    0    0    0  -3792 .0361
   3LAST                                 1C   0    0    0    0    0    -10 .0361
"""
LAST_ONE = "PROPEP file, 2 records: 1 error, 0 warnings"


class Data(HostCase):
    def lint(self, code, *files, arguments=()):
        """Lints files. Returns the lines of findings, and the summaries."""
        done = self.expect(code, "db", "lint", *files, *arguments)
        return done.stderr.decode().splitlines(), done.stdout.decode().splitlines()

    def kept(self, path):
        """The number of species of a file that the library keeps."""
        folder = self.folder / "as-resources"
        folder.mkdir(exist_ok=True)
        (folder / "thermo.inp").write_bytes(path.read_bytes())
        done = self.ketra("species", "--json", "--resources", folder)
        if done.returncode == DATA:
            return 0
        self.assertEqual(done.returncode, GOOD, done.stderr)
        return len(json.loads(done.stdout)["species"])


class TableCheck(Data):
    def check(self, text, *expected, records=1):
        self.write(SPECIES, "species.inp")
        path = self.write(text, "tables.inp")
        faulty = any(severity == "error" for _, severity, *_ in expected)
        findings, summaries = self.lint(DOCUMENT if faulty else GOOD, path,
                                        self.folder / "species.inp")
        self.assertEqual(len(findings), len(expected), "\n".join(findings))
        for finding, (line, severity, record, *words) in zip(findings, expected):
            start = f"{path}:{line}: {severity}: " + (record and record + ": ")
            self.assertTrue(finding.startswith(start), finding)
            for word in words:
                self.assertIn(word, finding)
        self.assertIn(f" {records} record", summaries[0])
