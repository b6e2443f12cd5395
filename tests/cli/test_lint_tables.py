"""ketra db lint: what is wrong with properties and transport files."""

from data_files import TABLES, TRANSPORT, TableCheck
from host import changed


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
