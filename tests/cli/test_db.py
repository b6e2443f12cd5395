"""ketra db: the import and export of species data, and the user's own files."""

import json

from data_files import ARGON, INGREDIENTS, PROPEP, SPECIES, TABLES, Data
from host import (DATA, DOCUMENT, GOOD, INTERNAL, MIXTURE, RESOURCES, SOURCE, USAGE, changed,
                  species_records)


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
