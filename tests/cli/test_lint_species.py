"""ketra db lint: what is wrong with a species file."""

import random
import re

from data_files import ARGON, BINDER, SPECIES, WATER, Data
from host import DOCUMENT, GOOD, changed


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
