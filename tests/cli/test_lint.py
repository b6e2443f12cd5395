"""ketra db lint: the shipped files, and what holds for files of any kind."""

import random

from data_files import ARGON, PROPEP, SPECIES, TABLES, TRANSPORT, Data
from host import DATA, DOCUMENT, GOOD, RESOURCES, USAGE, changed


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
