"""ketra db: what is wrong with files of species data, the import and export of them, and the user's
own files."""

import json
import random
import re

from host import (DATA, DOCUMENT, GOOD, INTERNAL, MIXTURE, RESOURCES, SOURCE, USAGE, HostCase,
                  changed, species_records)

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


class LintOfShippedFiles(Data):
    def test_they_have_no_errors_and_the_warnings_that_are_documented(self):
        files = [RESOURCES / name for name in ("properties.inp", "trans.inp", "thermo.inp")]
        findings, summaries = self.lint(GOOD, *files)
        self.assertEqual(summaries, [
            f"{files[0]}: properties file, 24 records: no faults found",
            f"{files[1]}: transport file, 102 records: no faults found",
            f"{files[2]}: species file, 2110 records: 0 errors, {len(findings)} warnings"])
        # docs/data.md, "Known limits"
        known = {"molar mass": {"Zn", "Zn+", "Zn(cr)", "Zn(L)", "ZnSO4(a)", "ZnSO4(a')", "ZnSO4(b)",
                                "LMP-103S"},
                 "Cp jumps": {"Be(a)", "Fe2O3(cr)", "Fe3O4(cr)", "Mg(cr)"},
                 "S jumps": {"NaCN(II)", "NaCN(III)"},
                 "loses decimals": {"Air", "JP-7"}}
        found = {what: {line.split(": ")[2] for line in findings if what in line}
                 for what in known}
        self.assertEqual(found, known)
        self.assertTrue(all(any(what in line for what in known) for line in findings), findings)

    def test_tables_alone_are_for_the_species_of_the_resources(self):
        for name, records in (("properties.inp", 24), ("trans.inp", 102)):
            _, summaries = self.lint(GOOD, RESOURCES / name, arguments=("--resources", RESOURCES))
            self.assertIn(f" {records} records: no faults found", summaries[0])
        findings, _ = self.lint(DOCUMENT, RESOURCES / "trans.inp",
                                arguments=("--resources", self.small))
        self.assertIn('no species file has "Ar"', findings[0])


class LintOfSpecies(Data):
    def check(self, text, *expected):
        """The findings are those expected: line, severity, record, words; and as many records are
        counted as the library keeps."""
        path = self.write(text, "species.inp")
        faulty = any(severity == "error" for _, severity, *_ in expected)
        findings, summaries = self.lint(DOCUMENT if faulty else GOOD, path)
        self.assertEqual(len(findings), len(expected), "\n".join(findings))
        for finding, (line, severity, record, *words) in zip(findings, expected):
            start = f"{path}:{line}: {severity}: " + (record and record + ": ")
            self.assertTrue(finding.startswith(start), finding)
            for word in words:
                self.assertIn(word, finding)
        counted = int(re.search(r"species file, (\d+) record", summaries[0]).group(1))
        self.assertEqual(counted, self.kept(path))

    def changed(self, old, new):
        return changed(SPECIES, old, new)

    def test_a_good_file_has_no_faults(self):
        self.check(SPECIES)
        self.check(SPECIES.replace("\n", "\r\n"))
        self.check(SPECIES + "\n! comment\n")
        self.check(ARGON + WATER)

    def test_a_number_of_atoms_that_drops_the_record(self):
        # What is left of the record makes two others be lost, as it does in the library.
        for number in (" 0.000", "-1.000", "      "):
            self.check(self.changed("AR 1.000", "AR" + number),
                       (4, "error", "Ar", "the library drops the record here"),
                       (11, "error", "", "its own record is lost"),
                       (17, "error", "", "its own record is lost"))
        self.check(self.changed("AR 1.000", "AR 1.0x0"),
                   (4, "error", "Ar", 'columns 13-18 hold " 1.0x0"', "number of atoms of AR"))

    def test_a_lower_temperature_that_drops_the_record(self):
        for old, new in (("    200.000", "      0.000"), ("    200.000", "  20001.000")):
            self.check(self.changed(old, new),
                       (5, "error", "Ar", "the library drops the record here"),
                       (11, "error", "", "its own record is lost"),
                       (17, "error", "", "its own record is lost"))

    def test_a_blank_line_inside_a_record(self):
        self.check(self.changed("\n    273.150", "\n  \n    273.150"),
                   (13, "error", "H2O(L)", "a blank line interrupts the record"))

    def test_a_record_that_swallows_the_next_one(self):
        self.check(self.changed(" 2 g 3/98", " 3 g 3/98"),
                   (11, "error", "Ar", "columns 1-11 hold \"H2O(L)     \""),
                   (11, "error", "Ar", "the library drops the record here"),
                   (11, "error", "", "its own record is lost"),
                   (17, "error", "", "its own record is lost"))

    def test_lines_between_the_records(self):
        self.check("    passed over\n" + SPECIES,
                   (1, "warning", "", "the line is passed over, since it begins with blanks"))
        self.check(changed(SPECIES, "6000.00  20000.\n", "6000.00  20000.\n    passed over\n"),
                   (3, "warning", "", "the line is passed over"))
        self.check(changed(SPECIES, WATER, "\n! comment\n" + WATER))
        self.check(changed(SPECIES, "    273.150 ", "END PRODUCTS\n    273.150 "),
                   (13, "warning", "H2O(L)", "a mark stands inside a record"))

    def test_a_file_that_ends_inside_a_record(self):
        text = SPECIES[:SPECIES.index(" 0.000000000D+00 0.000000000D+00 9.0")]
        self.check(text, (13, "error", "H2O(L)", "the file ends inside the record"))

    def test_values_out_of_their_columns(self):
        for old, new, line, columns in (
                (" 2 g 3/98", "2  g 3/98", 4, None),
                ("0   39.9480000 ", "0  39.9480000x ", 4, '53-65 hold "  39.9480000x"'),
                ("39.9480000        0.00000", "39.9480000      0.0 0.000", 4, "66-80"),
                ("2   18.0152800", " 2  18.0152800", 12, '51-52 hold "  "'),
                ("    200.000   1000.000", "   200.00    1000.000 ", 5, None),
                ("    273.150    373.150", "    273.150 373.150 x ", 13, '12-22 hold " 373.150 x "'),
                ("    273.150    373.150", "  273.150    373.150  ", 13, None),
                (" 9.000000000D+00 ", "  9.00000000D+00x", 14, '49-64')):
            with self.subTest(new=new):
                text = self.changed(old, new)
                record = "Ar" if line < 11 else "H2O(L)"
                path = self.write(text, "species.inp")
                findings, _ = self.lint(DOCUMENT if columns else GOOD, path)
                if columns:
                    self.assertTrue(findings[0].startswith(f"{path}:{line}: error: {record}: columns "
                                                           f"{columns}"), findings)

    def test_blanks_belong_between_the_columns(self):
        self.check(self.changed(" 2 g 3/98", " 2xg 3/98"),
                   (4, "error", "Ar", 'columns 3-3 hold "x"'))
        self.check(self.changed("0.0         6197.428\n 0.0", "0.0 x       6197.428\n 0.0"),
                   (5, "error", "Ar", 'columns 64-65 hold " x"'))

    def test_tabs_and_text_behind_the_columns(self):
        self.check(self.changed(" 2 g 3/98 AR 1.000    0.00", " 2 g 3/98 AR 1.000\t   0.00"),
                   (4, "error", "Ar", "a tab shifts the columns"))
        self.check(self.changed("4.379674910D+00", "4.379674910D+00 note"),
                   (7, "warning", "Ar", "behind column 80"))

    def test_formulas(self):
        self.check(self.changed("H  2.000O  1.000    0.00", "H  2.000O  1.000QQ  0.00"),
                   (12, "error", "H2O(L)", '"QQ" is no element'))
        self.check(self.changed("O  1.000    0.00", "O  1.000N   0.00"),
                   (12, "warning", "H2O(L)", "N with the number 0 is left out"))
        self.check(self.changed("O  1.000    0.00", "O  1.000    1.00"),
                   (12, "error", "H2O(L)", "a number of atoms without a symbol"))
        self.check(self.changed("AR 1.000", "QQ 1.000"),
                   (4, "error", "Ar", '"QQ" is no element'),
                   (3, "error", "Ar", "the formula has no known element"))
        self.check(self.changed("C  1.000H  2.000", "C  1.000H 2.0004"),
                   (18, "warning", "Binder", "H 2.0004 loses decimals when the file is saved: 2."))

    def test_molar_mass_against_formula(self):
        self.check(self.changed("   39.9480000", "   39.9530000"),
                   (3, "warning", "Ar", "39.953 and 39.948 g/mol"))
        self.check(self.changed("   39.9480000", "   39.9519000"))
        self.check(self.changed("   39.9480000", "   49.9480000"),
                   (3, "error", "Ar", "49.948 and 39.948 g/mol. Mend the formula"))
        self.check(self.changed("   14.0265800", "    0.0000000"),
                   (17, "error", "Binder", "0 and 14.0266 g/mol"))

    def test_heat_of_formation_against_the_coefficients(self):
        self.check(self.changed("-285830.00000", "-285820.00000"),
                   (11, "warning", "H2O(L)", "H(298.15)", "and -285820 J/mol"))
        self.check(self.changed("-285830.00000", "-285826.00000"))
        self.check(self.changed("-285830.00000", " -68315.00000"),
                   (11, "error", "H2O(L)", "H(298.15)", "-68315 J/mol. Mend"))

    def test_jumps_where_intervals_meet(self):
        # Argon: Cp/R = 2.5. Constants of integration of the second interval are moved.
        for old, new, what, slip in (
                ("2.500069401D+00", "2.510069401D+00", "Cp jumps at 1000 K", False),
                ("-7.449939610D+02", "-7.410000000D+02", "H jumps at 1000 K", False),
                ("-7.449939610D+02", "-9.449939610D+03", "H jumps at 1000 K", True),
                ("4.379180110D+00", "4.389180110D+00", "S jumps at 1000 K", False),
                ("4.379180110D+00", "6.379180110D+00", "S jumps at 1000 K", True)):
            with self.subTest(new=new):
                path = self.write(self.changed(old, new), "species.inp")
                findings, _ = self.lint(DOCUMENT if slip else GOOD, path)
                wanted = [line for line in findings if what in line]
                self.assertEqual(len(wanted), 1, findings)
                self.assertIn("error: Ar" if slip else "warning: Ar", wanted[0])

    def test_intervals_that_do_not_meet(self):
        self.check(self.changed("   1000.000   6000", "   1010.000   6000"),
                   (3, "error", "Ar", "no data from 1000 to 1010 K"))
        self.check(self.changed("   1000.000   6000", "    990.000   6000"),
                   (3, "warning", "Ar", "990 to 6000 K begins inside of the one before"))
        self.check(self.changed("   6000.0007", "   1000.0007"),
                   (3, "error", "Ar", "1000 to 1000 K holds no temperature"))

    def test_exponents_and_coefficients_that_are_not_read(self):
        self.check(self.changed("373.1507 -2.0 -1.0", "373.1507 -3.0 -1.0"),
                   (13, "error", "H2O(L)", 'columns 24-28 hold " -3.0"', "where -2.0 is assumed"))
        self.check(self.changed("373.1507 -2.0", "373.1508 -2.0"),
                   (13, "warning", "H2O(L)", "always seven are read"))
        self.check(self.changed("0.000000000D+00                -3.706112110D+04",
                                "0.000000000D+00 1.000000000D+00-3.706112110D+04"),
                   (15, "warning", "H2O(L)", "an eighth coefficient"))
        self.check(self.changed("0.000000000D+00                -3.706112110D+04",
                                "0.000000000D+00 0.000000000D+00-3.706112110D+04"))
        self.check(self.changed(" 0.000000000D+00 0.000000000D+00 9.0", " 0.000000000D+00                 9.0"),
                   (14, "warning", "H2O(L)", "no coefficient in columns 17-32"))

    def test_names(self):
        self.check(SPECIES.replace("END REACTANTS\n", BINDER + "END REACTANTS\n"),
                   (20, "error", "Binder", "takes the place of the one of this name in line 17"))
        long = changed(BINDER, "Binder            made-up", "Binder-with-a-long-name made-up")
        self.check(SPECIES + long, (21, "warning", "Binder-with-a-long-name",
                                    'cut to "Binder-with-a-lo"'))
        longer = changed(BINDER, "Binder            made-up", "Binder-with-a-longer-name made-up")
        self.check(SPECIES + long + longer,
                   (21, "warning", "Binder-with-a-long-name", "cut to"),
                   (24, "warning", "Binder-with-a-longer-name", "cut to"),
                   (24, "error", "Binder-with-a-longer-name", "first 16 characters of"))
        self.check(SPECIES + changed(BINDER, "Binder    ", "  Binder  "),
                   (21, "error", "", "a record begins with blanks"))
        self.check(self.changed("gas, atom" + " " * 40, "gas, atom" + 40 * "x" + "xxxxxxxxxxxxxxx"),
                   (3, "warning", "Ar", "description is cut to 62 characters"))

    def test_a_record_of_one_temperature_among_the_products(self):
        self.check(ARGON + BINDER, (9, "error", "Binder", "lost when the file is saved"))

    def test_files_over_each_other(self):
        first, second = self.write(SPECIES, "first.inp"), self.write(WATER, "second.inp")
        findings, summaries = self.lint(GOOD, first, second)
        self.assertEqual(findings, [f"{second}:1: warning: H2O(L): the record takes the place of "
                                    f"{first}:11. Rename it if both are wanted"])
        self.assertEqual(summaries, [f"{first}: species file, 3 records: no faults found",
                                     f"{second}: species file, 1 record: 0 errors, 1 warning"])
        self.lint(DOCUMENT, first, second, arguments=("--strict",))

    def test_any_byte_may_be_damaged(self):
        """Nothing crashes, and as many records are counted as the library keeps."""
        generator = random.Random(5)
        data = SPECIES.encode()
        for number in range(40):
            damaged = bytearray(data)
            for _ in range(generator.randint(1, 8)):
                damaged[generator.randrange(len(damaged))] = generator.choice(
                    b"\0\t\r\n 09-.DEx\xff")
            if generator.random() < 0.3:
                damaged = damaged[:generator.randrange(len(damaged))]
            path = self.write(bytes(damaged), f"damaged-{number}.inp")
            done = self.ketra("db", "lint", path)
            self.assertIn(done.returncode, (GOOD, DOCUMENT), done)
            counted = re.search(rb"species file, (\d+) record", done.stdout)
            if counted and self.kept(path):
                self.assertEqual(int(counted.group(1)), self.kept(path), damaged)


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


class LintOfProperties(TableCheck):
    def test_good_tables(self):
        self.check(TABLES)
        self.check(TABLES.replace("\n", "\r\n"))
        self.check(changed(TABLES, "      606.51608\n  0.101325     400", "\n  0.101325     400"))

    def test_the_format_version(self):
        self.check(changed(TABLES, "!Format Version 2\n", ""),
                   (2, "warning", "H2O(L)", "Format Version 2"))

    def test_a_species_that_no_file_has(self):
        self.check(changed(TABLES, "H2O(L)", "H2O(X)"),
                   (3, "error", "H2O(X)", "no species file has this species"), records=0)

    def test_counts(self):
        for counts in ("0, 3", "1001, 3", "2; 3", "99999999999,3"):
            self.check(changed(TABLES, " 2, 3", " " + counts),
                       (3, "error", "H2O(L)", f'"{counts}" in place of the numbers', "whole file"),
                       records=0)
        self.check(changed(TABLES, " 2, 3", " 3, 3"),
                   (3, "error", "H2O(L)", "the file ends inside the table", "3 lines are missing"))

    def test_values_out_of_their_columns(self):
        self.check(changed(TABLES, "0.101325     280.00 ", "0.101325     280.00x"),
                   (4, "error", "H2O(L)", 'columns 16-29 hold "280.00x'))
        self.check(changed(TABLES, "300.00          4.18131        997.0476",
                           "300.00         -4.18131        997.0476"),
                   (5, "error", "H2O(L)", "in place of the specific heat"))
        self.check(changed(TABLES, "300.00          4.18131        997.0476",
                           "300.00                         997.0476"),
                   (5, "error", "H2O(L)", "in place of the specific heat"))
        self.check(changed(TABLES, "  0.101325     300.00", "  0.101325    x300.00"),
                   (5, "error", "H2O(L)", "column 15 is not read"))

    def test_pressures_and_temperatures(self):
        self.check(changed(TABLES, "  0.101325     300.00", "  0.201325     300.00"),
                   (5, "warning", "H2O(L)", "the pressure 0.201325 MPa is not read"))
        self.check(changed(TABLES, "  1.000000     280.00", "  0.100000     280.00")
                   .replace("  1.000000", "  0.100000"),
                   (7, "error", "H2O(L)", "the pressures do not rise"))
        self.check(changed(TABLES, "  1.000000     300.00", "  1.000000     310.00"),
                   (8, "error", "H2O(L)", "the temperature 310 K is not read"))
        self.check(TABLES.replace(" 400.00 ", " 290.00 "),
                   (6, "error", "H2O(L)", "the temperatures do not rise"),
                   (3, "warning", "H2O(L)", "boiling temperatures lie above the last temperature"))

    def test_boiling_temperatures(self):
        self.check(changed(TABLES, "399.99 ", "430.01 "),
                   (3, "warning", "H2O(L)", "1 of 2 boiling temperatures", "400 K"))
        self.check(changed(TABLES, "606.51608\n  0.101325     400", "606.51608      373.12\n  0.101325     400"),
                   (5, "warning", "H2O(L)", "first line of a pressure only"))

    def test_two_tables_of_a_species(self):
        self.check(TABLES + TABLES, (12, "error", "H2O(L)", "takes the place of the one in line 3"))


class LintOfTransport(TableCheck):
    def test_a_good_file(self):
        self.check(TRANSPORT, records=2)
        self.check(TRANSPORT.replace("\n", "\r\n"), records=2)

    def test_species_that_no_file_has(self):
        self.check(changed(TRANSPORT, "Ar                                V2C1",
                           "Ne                                V2C1"),
                   (2, "error", "Ne", 'no species file has "Ne"'), records=1)
        self.check(changed(TRANSPORT, "Ar              H2O(L)", "Ar              H2O   "),
                   (6, "warning", "Ar + H2O", "the data of the pair are never used"), records=2)

    def test_blocks(self):
        self.check(changed(TRANSPORT, "Ar              H2O(L)            V1C0",
                           "Ar                                V1C0"),
                   (6, "error", "Ar", "takes the place of the one in line 2"), records=1)
        self.check(changed(TRANSPORT, "end\n", "H2O(L)          Ar                V0C0\nend\n"),
                   (8, "warning", "H2O(L) + Ar", "the block has no lines"),
                   (8, "warning", "H2O(L) + Ar", "line 6 has this pair in the other order"),
                   records=3)
        self.check(changed(TRANSPORT, "V1C0", "V2C0")[:-4],
                   (6, "error", "Ar + H2O(L)", "the file ends inside the block"), records=2)

    def test_counts_and_letters(self):
        self.check(changed(TRANSPORT, "V1C0", "V1D0"),
                   (6, "error", "Ar + H2O(L)", 'columns 35-38 hold "V1D0"'), records=2)
        self.check(changed(TRANSPORT, "V2C1", "V1C2"),
                   (4, "error", "Ar", "counts as one of conductivity"),
                   (5, "warning", "Ar", "begins at 200 K, but the one before ends at 5000 K"),
                   records=2)

    def test_a_lower_temperature_that_ends_the_file(self):
        self.check(changed(TRANSPORT, " V   1000.0", " V      0.0"),
                   (4, "error", "Ar", "gives the whole file up here"), records=1)

    def test_columns_and_intervals(self):
        self.check(changed(TRANSPORT, "0.70953943E+02", "0.7095394xE+02"),
                   (4, "error", "Ar", 'columns 36-50 hold " 0.7095394xE+02"'),
                   (4, "warning", "Ar", "the viscosity jumps"), records=2)
        self.check(changed(TRANSPORT, " V   1000.0", " V   1100.0"),
                   (4, "warning", "Ar", "begins at 1100 K, but the one before ends at 1000 K"),
                   records=2)
        self.check(changed(TRANSPORT, " C    200.0   1000.0", " C   1000.0   1000.0"),
                   (5, "error", "Ar", "the interval holds no temperature"), records=2)
        self.check(changed(TRANSPORT, "0.14856447E+01", "0.15856447E+01"),
                   (4, "warning", "Ar", "the viscosity jumps by 1"), records=2)
        self.check(changed(TRANSPORT, "0.14856447E+01", "0.24856447E+01"),
                   (4, "error", "Ar", "the viscosity jumps by 1"), records=2)

    def test_the_end(self):
        self.check(changed(TRANSPORT, "end\n", ""),
                   (7, "warning", "", 'no line "end"'), records=2)
        self.check(TRANSPORT + "more\n",
                   (9, "warning", "", 'behind the line "end" is not read'), records=2)


class LintOfPropep(Data):
    def check(self, text, *expected, records):
        path = self.write(text, "ingredients.txt")
        findings, summaries = self.lint(DOCUMENT, path)
        self.assertEqual(len(findings), len(expected) + 1, "\n".join(findings))
        for finding, (line, severity, record, *words) in zip(findings, expected):
            start = f"{path}:{line}: {severity}: " + (record and record + ": ")
            self.assertTrue(finding.startswith(start), finding)
            for word in words:
                self.assertIn(word, finding)
        self.assertIn("the last ingredient of a file is left out", findings[-1])
        self.assertIn(f"PROPEP file, {records} record", summaries[0])
        # The library reads as many.
        done = self.ketra("db", "import-propep", path)
        self.assertEqual(max(len(done.stdout.splitlines()) - 1, 0), records, done)

    def test_a_good_file_loses_its_last_ingredient(self):
        self.check(PROPEP, records=2)
        self.check(PROPEP.replace("\n", "\r\n"), records=2)

    def test_the_sample_file(self):
        findings, summaries = self.lint(DOCUMENT, INGREDIENTS)
        self.assertEqual([(finding.split(":")[1], finding.split(": ")[1]) for finding in findings],
                         [("2", "warning"), ("7", "warning"), ("7", "warning"), ("9", "error"),
                          ("10", "warning"), ("11", "error"), ("15", "error"), ("17", "error")])
        self.assertEqual(summaries, [f"{INGREDIENTS}: PROPEP file, 5 records: 4 errors, 4 warnings"])

    def test_formulas(self):
        for old, new, words in (("  4H ", "  4XX", '"XX" is no element in capitals'),
                                ("  4H ", "  4h ", '"h" is no element in capitals'),
                                ("  4H ", "9e9H ", "more atoms than any formula has")):
            self.check(changed(PROPEP, old, new), (2, "error", "METHANE (GAS)", words), records=1)
        self.check(changed(PROPEP, "  4H ", "  xH "),
                   (2, "error", "METHANE (GAS)", 'columns 45-47 hold "  x"'),
                   (2, "warning", "METHANE (GAS)", "H has no number of atoms"), records=2)
        self.check(changed(PROPEP, "  0  -1000", "  1CL-1000"),
                   (2, "error", "METHANE (GAS)", "there is a sixth element"), records=1)
        self.check(changed(PROPEP, "  4H ", " -4H "),
                   (2, "error", "METHANE (GAS)", "a negative number of atoms"), records=2)
        self.check(changed(PROPEP, "  4H ", "4.5H "),
                   (2, "error", "METHANE (GAS)", "the decimals are cut off"), records=2)
        self.check(changed(PROPEP, "  4H   0  ", "  4H   0N "),
                   (2, "warning", "METHANE (GAS)", "N has no number of atoms"), records=2)
        self.check(changed(PROPEP, "  1C   4H ", "  0    0  "),
                   (2, "error", "METHANE (GAS)", "no element, so that"), records=2)

    def test_names(self):
        self.check(changed(PROPEP, "WATER  ", "METHANE"),
                   (3, "error", "METHANE", "takes the place of the one in line 2"), records=1)
        self.check(changed(PROPEP, "WATER             ", "DIHYDROGEN-MONOXIDE"[:18]),
                   (3, "warning", "DIHYDROGEN-MONOXID", 'cut to "DIHYDROGEN-MONOX"'), records=2)
        self.check(changed(PROPEP, "WATER", "     "),
                   (3, "error", "", "there is no name in columns 5-39"), records=1)
        self.check("+        NO RECORD\n" + PROPEP,
                   (1, "warning", "", "is passed over"), records=2)

    def test_data(self):
        for old, new, severity, words in (
                ("-3792", "-379x", "error", 'columns 70-74 hold "-379x"'),
                ("-3792", "99999", "warning", "a heat of formation of 99999 cal/g"),
                (".0361\n   3", ".036x\n   3", "error", 'columns 75-80 hold " .036x"'),
                (" .0361\n   3", "2.0361\n   3", "warning", "a density of 2.0361 lb/in3"),
                (" .0361\n   3", " .0000\n   3", "warning", "a density of 0 lb/in3")):
            self.check(changed(PROPEP, old, new), (3, severity, "WATER", words), records=2)
        self.check(changed(PROPEP, "-3792", " 1e99"),
                   (3, "warning", "WATER", "a heat of formation of 1e+99 cal/g"),
                   (3, "error", "WATER", "the ingredient is dropped"), records=1)
        self.check(changed(PROPEP, "-3792", "  inf"),
                   (3, "error", "WATER", 'columns 70-74 hold "  inf"'),
                   (3, "error", "WATER", "the ingredient is dropped"), records=1)
        self.check(changed(PROPEP, "-3792 ", "-379 \t"),
                   (3, "error", "", "a tab shifts the columns"), records=2)


class LintOfAnything(Data):
    def test_other_files(self):
        for content in (b"", b"no data here\n", b"\0" * 1000, bytes(range(256)) * 20,
                        b"thermo\r 200.\r", b'{ "species": [ "H2" ] }\n'):
            with self.subTest(content=content[:10]):
                path = self.write(content, "other")
                done = self.expect(DOCUMENT, "db", "lint", path)
                self.assertIn(b": error: ", done.stderr)

    def test_a_file_without_records(self):
        path = self.write("thermo\nEND PRODUCTS\nEND REACTANTS\n", "empty.inp")
        findings, summaries = self.lint(GOOD, path)
        self.assertEqual(findings, [f"{path}: warning: the file holds no record. Add some, or take "
                                    "the file away"])
        self.assertEqual(summaries, [f"{path}: species file, 0 records: 0 errors, 1 warning"])

    def test_a_file_that_is_not_there(self):
        done = self.expect(DATA, "db", "lint", "none.inp")
        self.assertIn(b"none.inp: the file cannot be read", done.stderr)
        self.expect(DATA, "db", "lint", ".")
        self.expect(USAGE, "db", "lint")
        self.expect(USAGE, "db")

    def test_kinds_are_told_by_content(self):
        for text, kind in ((SPECIES, "species"), (ARGON, "species"), (TABLES, "properties"),
                           (TABLES.split("\n", 2)[2], "properties"), (TRANSPORT, "transport"),
                           (TRANSPORT.split("\n", 1)[1], "transport"), (PROPEP, "PROPEP")):
            path = self.write(text, "file")
            done = self.ketra("db", "lint", path, self.write(SPECIES, "species.inp"))
            self.assertIn(f"file: {kind} file, ", done.stdout.decode())
            self.assertEqual(path.read_text(), text) # nothing is changed

    def test_damaged_files_of_all_kinds(self):
        generator = random.Random(3)
        species = self.write(SPECIES, "species.inp")
        for number in range(60):
            damaged = bytearray(generator.choice((TABLES, TRANSPORT, PROPEP)).encode())
            for _ in range(generator.randint(1, 6)):
                damaged[generator.randrange(len(damaged))] = generator.randrange(256)
            path = self.write(bytes(damaged[:generator.randrange(len(damaged) + 1)]), "damaged")
            done = self.ketra("db", "lint", path, species)
            self.assertIn(done.returncode, (GOOD, DOCUMENT), (number, done))


def strict_json(text):
    """The species of the library's export, as JSON: the comment taken off, the brackets around the
    list turned into those of a list, and words put between double quotes, whatever they had."""
    head, _, body = text.partition("*/")
    assert head.startswith("/*"), head[:20]
    body = body.strip()
    assert body.startswith("{[") and body.endswith("]}"), (body[:5], body[-5:])
    body = body[1:-1]
    out, at = [], 0
    while at < len(body):
        if body[at] in "'\"":
            end = body.index(body[at], at + 1)
            out.append(json.dumps(body[at + 1:end]))
            at = end + 1
        else:
            out.append(body[at])
            at += 1
    return "".join(out)


def exported(species):
    """A species of the strict export, its numbers with the digits that the library's export has."""
    def fixed(decimals, value):
        return float(f"{value:.{decimals}f}")
    return {
        "name": species["name"], "descr": species["descr"].replace('"', "'"), "ref": species["ref"],
        "elements": [{"name": e["name"], "number": fixed(3, e["number"])}
                     for e in species["elements"]],
        "condensed": species["condensed"],
        "M": fixed(7 if species["M"] > 0.01 else 12, species["M"]),
        "dHf298_15": fixed(5, species["dHf298_15"]),
        "dH298_15_0": fixed(3 if "T" in species else 5, species["dH298_15_0"]),
        "intervals": [{"T1": fixed(3, i["T1"]), "T2": fixed(3, i["T2"]), "exp": i["exp"],
                       "coefficients": [float(f"{c:.9E}") for c in i["coefficients"]]}
                      for i in species["intervals"]],
    }


class Export(Data):
    def strict(self, *arguments):
        done = self.expect(GOOD, "db", "export-json", "-", "--strict", *arguments)
        return json.loads(done.stdout)

    def test_the_libraries_form_has_the_data_of_the_shipped_file(self):
        out = self.folder / "species.json"
        done = self.expect(GOOD, "db", "export-json", out, "--resources", RESOURCES)
        self.assertEqual(done.stdout.decode(), f"{out}: 2110 species\n")
        species = json.loads(strict_json(out.read_text()))
        self.assertEqual(species, [exported(s) for s in self.strict("--resources", RESOURCES)["species"]])

    def test_strict_json_has_the_numbers_of_the_file(self):
        species = self.strict("--resources", RESOURCES)["species"]
        records = list(species_records((RESOURCES / "thermo.inp").read_text()))
        self.assertEqual([s["name"] for s in species], [name for name, _, _ in records])

        def number(field):
            return float(field.replace("D", "E"))
        for s, (name, lines, _) in zip(species, records):
            header = lines[1]
            self.assertEqual((s["ref"], s["condensed"]), (header[3:9].strip(), int(header[50:52])))
            self.assertEqual((s["M"], s["dHf298_15"]), (float(header[52:65]), float(header[65:80])))
            self.assertEqual(s["elements"], [
                {"name": header[at:at + 2].strip(), "number": float(header[at + 2:at + 8])}
                for at in range(10, 50, 8) if header[at:at + 2].strip()], name)
            self.assertEqual(s["dH298_15_0"], float(lines[2][65:80]))
            if "T" in s:
                self.assertEqual((len(lines), s["T"], s["intervals"]), (3, float(lines[2][:11]), []))
                continue
            self.assertEqual(len(lines), 2 + 3 * len(s["intervals"]))
            for i, interval in enumerate(s["intervals"]):
                bounds, first, second = lines[2 + 3 * i:5 + 3 * i]
                self.assertEqual((interval["T1"], interval["T2"]),
                                 (float(bounds[:11]), float(bounds[11:22])))
                fields = [first[at:at + 16] for at in range(0, 80, 16)]
                fields += [second[at:at + 16] for at in (0, 16, 48, 64)]
                self.assertEqual(interval["coefficients"], [number(f) for f in fields], name)

    def test_a_file_of_ones_own(self):
        path = self.write(SPECIES, "own.inp")
        out = self.folder / "own.json"
        self.expect(GOOD, "db", "export-json", out, "--species", path)
        self.assertEqual([s["name"] for s in json.loads(strict_json(out.read_text()))],
                         ["Ar", "H2O(L)", "Binder"])
        first = out.read_text()
        self.expect(GOOD, "db", "export-json", out, "--species", path)
        self.assertEqual((self.folder / "own~.json").read_text(), first)
        done = self.expect(GOOD, "db", "export-json", out, "--species", path, "--strict")
        self.assertEqual(done.stdout.decode(), f"{out}: 3 species\n")
        self.assertEqual(json.loads(out.read_text())["species"][2]["T"], 298.15)

    def test_the_golden_file_reads(self):
        text = (SOURCE / "tests/data/species.json.txt").read_text()
        species = {s["name"]: s for s in json.loads(strict_json(text))}
        self.assertEqual(species["e-"]["M"], 0.000548579903)
        self.assertEqual(species["Binder"]["intervals"], [])
        self.assertEqual(species["Ar"]["intervals"][1]["coefficients"][0], 20.10538475)

    def test_failures(self):
        done = self.expect(USAGE, "db", "export-json", "-", "--resources", self.small)
        self.assertIn(b"--strict", done.stderr)
        for strict in ((), ("--strict",)):
            done = self.expect(INTERNAL, "db", "export-json", "none/x.json", "--resources",
                               self.small, *strict)
            self.assertIn(b"cannot write none/x.json", done.stderr)
        done = self.expect(DATA, "db", "export-json", "x", "--species", "none.inp")
        self.assertIn(b"none.inp", done.stderr)
        self.expect(DATA, "db", "export-json", "x", "--species", self.write("", "empty.inp"))


class Import(Data):
    def test_ingredients_are_listed(self):
        done = self.expect(GOOD, "db", "import-propep", INGREDIENTS)
        lines = done.stdout.decode().splitlines()
        self.assertEqual([line.split()[0] for line in lines],
                         ["name", "AMMONIUM", "HTPB", "OXYGEN", "ALUMINUM", "NITROCELLULOSE"])
        self.assertRegex(lines[1], r"solid +ClH4NO4 +117\.4891 +-296\.126 +1948\.7 +PERCHLORATE")
        self.assertRegex(lines[3], r"gas +O2 +31\.9988 +0\.000 +1\.4 +\(GASEOUS\)")
        # Why the others are missing; each fault once.
        self.assertEqual(len(done.stderr.splitlines()), 8)
        self.assertEqual(done.stderr.count(b": error: "), 4)

    def test_picks_are_written_with_their_densities(self):
        self.expect(GOOD, "db", "import-propep", INGREDIENTS, "--pick", "HTPB", "AMMONIUM", "--out",
                    "mine.inp")
        _, summaries = self.lint(GOOD, self.folder / "mine.inp", self.folder / "mine-properties.inp")
        self.assertIn("species file, 2 records: no faults found", summaries[0])
        self.assertIn("properties file, 2 records: no faults found", summaries[1])
        species = dict((name, lines) for name, lines, reactant in
                       species_records((self.folder / "mine.inp").read_text()) if reactant)
        self.assertEqual(set(species), {"AMMONIUM", "HTPB"})
        M = 35.453 + 4 * 1.00794 + 14.0067 + 4 * 15.9994
        self.assertAlmostEqual(float(species["AMMONIUM"][1][65:80]), -602 * 4.1868 * M, places=5)

    def test_without_picks_all_are_written_that_have_elements(self):
        path = self.write(changed(PROPEP, "  1C   4H ", "  0    0  "), "ingredients.txt")
        done = self.expect(GOOD, "db", "import-propep", path, "--out", "mine")
        self.assertIn(b"METHANE has no elements and is not written", done.stderr)
        self.assertEqual(self.kept(self.folder / "mine"), 1)
        self.assertTrue((self.folder / "mine-properties").exists())

    def test_failures(self):
        done = self.expect(DATA, "db", "import-propep", INGREDIENTS, "--pick", "AMONIUM", "--out", "x")
        self.assertIn(b'no ingredient "AMONIUM" was read', done.stderr)
        self.assertIn(b'Is it "AMMONIUM"', done.stderr)
        self.assertFalse((self.folder / "x").exists())
        done = self.expect(DOCUMENT, "db", "import-propep", RESOURCES / "trans.inp")
        self.assertIn(b"this is a transport file, not a PROPEP file", done.stderr)
        done = self.expect(DOCUMENT, "db", "import-propep", self.write("x\n", "x"))
        self.assertIn(b"this is no PROPEP file", done.stderr)
        self.expect(DATA, "db", "import-propep", "none")
        done = self.expect(INTERNAL, "db", "import-propep", INGREDIENTS, "--out", "none/mine.inp")
        self.assertIn(b"cannot write none/mine.inp", done.stderr)
        only = self.write(PROPEP.splitlines()[1] + "\n", "only.txt")
        done = self.expect(DATA, "db", "import-propep", only)
        self.assertIn(b"there is no ingredient", done.stderr)


class UsersFiles(Data):
    def setUp(self):
        super().setUp()
        self.user = self.folder / "user"
        self.species_file = self.user / "resources/usr_thermo.inp"
        self.tables_file = self.user / "resources/usr_properties.inp"
        self.own = self.write(SPECIES, "own.inp")

    def add(self, code, *files, **options):
        return self.expect(code, "db", "add", *files, "--user", self.user, "--resources", self.small,
                           **options)

    def remove(self, code, *names):
        return self.expect(code, "db", "remove", *names, "--user", self.user, "--resources",
                           self.small)

    def listed(self):
        """Names and sources of the species that the other commands work with."""
        done = self.expect(GOOD, "species", "--json", "--resources", self.small,
                           environment={"KETRA_USER": str(self.user)})
        return {s["name"]: s["source"].rsplit("/", 1)[1] for s in json.loads(done.stdout)["species"]}

    def test_species_are_added_and_removed(self):
        done = self.add(GOOD, self.own)
        self.assertEqual(done.stdout.decode().splitlines(), [
            "Ar: added", f"H2O(L): takes the place of that in {self.small}/thermo.inp",
            "Binder: added"])
        listed = self.listed()
        self.assertEqual([listed[name] for name in ("Ar", "H2O(L)", "Binder", "H2")],
                         ["usr_thermo.inp"] * 3 + ["thermo.inp"])
        done = self.remove(GOOD, "Ar", "H2O(L)", "Ar")
        self.assertEqual(done.stdout.decode().splitlines(), [
            "Ar: removed", "H2O(L): removed; the one that comes with the program counts again"])
        listed = self.listed()
        self.assertNotIn("Ar", listed)
        self.assertEqual((listed["H2O(L)"], listed["Binder"]), ("thermo.inp", "usr_thermo.inp"))

    def test_the_file_is_of_the_users_kind_and_the_one_before_is_kept(self):
        self.add(GOOD, self.own)
        first = self.species_file.read_text()
        self.assertIn("USER-DEFINED DATABASE", first)
        self.assertEqual(self.kept(self.species_file), 3)
        done = self.add(GOOD, self.write(changed(ARGON, "gas, atom", "new, atom"), "new.inp"))
        self.assertEqual(done.stdout, b"Ar: replaces your own\n")
        self.assertEqual((self.user / "resources/usr_thermo~.inp").read_text(), first)
        self.assertIn("new, atom", self.species_file.read_text())
        self.assertEqual(self.kept(self.species_file), 3)

    def test_tables_are_added_for_the_users_and_for_shipped_species(self):
        tables = self.write(TABLES + TABLES.replace("H2O(L)", "Binder"), "tables.inp")
        done = self.add(GOOD, tables, self.own) # in any order
        self.assertEqual(done.stdout.decode().splitlines()[3:],
                         ["table of H2O(L): added", "table of Binder: added"])
        _, summaries = self.lint(GOOD, self.tables_file, self.species_file)
        self.assertIn("properties file, 2 records: no faults found", summaries[0])
        self.remove(GOOD, "Binder")
        self.assertNotIn("Binder", self.tables_file.read_text())
        self.assertIn("H2O(L)", self.tables_file.read_text())
        done = self.add(GOOD, self.write(TABLES.replace("H2O(L)", "O2(L) "), "oxygen.inp"))
        self.assertEqual(done.stdout.decode(),
                         f"table of O2(L): takes the place of that in {self.small}/properties.inp\n")
        self.assertIn("O2(L)", self.tables_file.read_text())
        self.assertIn("H2O(L)", self.tables_file.read_text())

    def test_a_document_can_use_them(self):
        self.expect(GOOD, "db", "import-propep", INGREDIENTS, "--out", "mine.inp")
        self.add(GOOD, "mine.inp", "mine-properties.inp")
        document = self.write(MIXTURE % '{ name = "NITROCELLULOSE"; massFraction = 1.0; }')
        environment = {"KETRA_USER": str(self.user)}
        self.expect(GOOD, "check", document, "--resources", RESOURCES, environment=environment)
        self.expect(DATA, "check", document, "--resources", RESOURCES)

    def test_files_with_faults_are_refused_and_nothing_is_changed(self):
        self.add(GOOD, self.own)
        before = self.species_file.read_bytes()
        bad = self.write(changed(SPECIES, "AR 1.000", "QQ 1.000"), "bad.inp")
        done = self.add(DOCUMENT, self.own, bad)
        self.assertIn(b'"QQ" is no element', done.stderr)
        self.assertIn(b"bad.inp: 2 errors, 0 warnings; nothing was added", done.stderr)
        unknown = self.write(TABLES.replace("H2O(L)", "H2O(X)"), "unknown.inp")
        done = self.add(DOCUMENT, unknown)
        self.assertIn(b"no species file has this species", done.stderr)
        for path, words in ((INGREDIENTS, b"import-propep"), (RESOURCES / "trans.inp", b"transport"),
                            (self.write("x\n", "x"), b"no file of species")):
            self.assertIn(words, self.add(DOCUMENT, path).stderr)
        self.add(DATA, "none.inp")
        self.assertEqual(self.species_file.read_bytes(), before)

    def test_a_users_file_with_faults_is_not_written_anew(self):
        self.add(GOOD, self.own)
        text = self.species_file.read_text()
        self.species_file.write_text(changed(text, "AR 1.000", "AR 0.000"))
        for done in (self.add(DOCUMENT, self.own), self.remove(DOCUMENT, "Binder")):
            self.assertIn(b"your file has faults", done.stderr)
        self.assertEqual(self.species_file.read_text(), changed(text, "AR 1.000", "AR 0.000"))

    def test_only_what_is_the_users_can_be_removed_and_all_or_nothing(self):
        self.add(GOOD, self.own)
        before = self.species_file.read_bytes()
        done = self.remove(DATA, "Ar", "O2(L)")
        self.assertIn(b'no species "O2(L)": it comes with the program and stays. Nothing was '
                      b"removed.", done.stderr)
        done = self.remove(DATA, "Bindr")
        self.assertIn(b'Is it "Binder"?', done.stderr)
        self.assertEqual(self.species_file.read_bytes(), before)

    def test_the_folder_must_be_stated(self):
        for command in (("add", self.own), ("remove", "Ar")):
            done = self.expect(USAGE, "db", *command, "--resources", self.small)
            self.assertIn(b"KETRA_USER", done.stderr)
        self.expect(GOOD, "db", "add", self.own, "--resources", self.small,
                    environment={"KETRA_USER": "by-variable"})
        self.assertTrue((self.folder / "by-variable/resources/usr_thermo.inp").exists())
        done = self.expect(DATA, "species", "--resources", self.small,
                           environment={"KETRA_USER": "nowhere"})
        self.assertIn(b'no folder "nowhere"', done.stderr)

    def test_a_folder_that_cannot_be_made(self):
        self.write("", "file")
        done = self.expect(INTERNAL, "db", "add", self.own, "--user", "file", "--resources",
                           self.small)
        self.assertIn(b"cannot make", done.stderr)
