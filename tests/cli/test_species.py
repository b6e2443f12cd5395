"""ketra species: what the database holds, as a table and as JSON."""

import json

from host import DATA, GOOD, HYDROGEN_OXYGEN, RESOURCES, HostCase, species_records


class SpeciesList(HostCase):
    def names(self, *arguments):
        """The names of the table, and the table itself."""
        done = self.expect(GOOD, "species", "--resources", self.small, *arguments)
        self.assertEqual(done.stderr, b"")
        lines = done.stdout.decode().splitlines()
        self.assertEqual(lines[0].split()[:2], ["name", "phase"])
        return [line.split()[0] for line in lines[1:]], lines[1:]

    def test_without_a_pattern_all_species_are_listed(self):
        self.assertEqual(set(self.names()[0]), set(HYDROGEN_OXYGEN))

    def test_a_pattern_is_a_part_of_a_name_without_regard_to_case(self):
        self.assertEqual(set(self.names("h2o")[0]), {"H2O", "H2O2", "H2O(cr)", "H2O(L)"})
        self.assertEqual(set(self.names("(l)")[0]), {"H2O(L)", "H2(L)", "O2(L)"})

    def test_a_shell_pattern_matches_the_whole_name(self):
        self.assertEqual(set(self.names("h?o*")[0]), {"H2O", "H2O2", "H2O(cr)", "H2O(L)"})
        self.assertEqual(set(self.names("[o]?")[0]), {"O2", "O3", "OH"})
        self.assertEqual(self.names("*(cr)")[0], ["H2O(cr)"])

    def test_a_pattern_without_a_match_is_missing_data(self):
        done = self.expect(DATA, "species", "Xe", "--resources", self.small)
        self.assertEqual(done.stdout, b"")
        self.assertIn(b'no species name holds "Xe"', done.stderr)
        done = self.expect(DATA, "species", "out.json", "--resources", self.small)
        self.assertIn(b"--json=FILE", done.stderr)

    def test_rows_tell_phase_formula_mass_heat_range_and_source(self):
        rows = {line.split()[0]: line for line in self.names()[1]}
        self.assertRegex(rows["H2O"], r"gas +H2O +18\.015\d+ +-241\.826 +200\.0 - 6000\.0 +thermo.inp")
        self.assertRegex(rows["O2(L)"], r"liquid +O2 +31\.998\d+ +-12\.979 +90\.17 only +thermo.inp")
        self.assertRegex(rows["H2O(cr)"], r"solid +H2O")

    def test_json_holds_the_same_in_si_units(self):
        done = self.expect(GOOD, "species", "O2*", "--json", "--resources", self.small)
        species = {s["name"]: s for s in json.loads(done.stdout)["species"]}
        self.assertEqual(set(species), {"O2", "O2(L)"})
        liquid = species["O2(L)"]
        self.assertEqual((liquid["phase"], liquid["formula"], liquid["elements"]),
                         ("liquid", "O2", {"O": 2.0}))
        self.assertAlmostEqual(liquid["M"], 0.0319988, places=12)
        self.assertEqual((liquid["dHf"], liquid["Tmin"], liquid["Tmax"]), (-12979.0, 90.17, 90.17))
        self.assertTrue(liquid["fixedTemperature"])
        self.assertEqual(liquid["source"], str(self.small / "thermo.inp"))
        self.assertFalse(species["O2"]["fixedTemperature"])

    def test_json_to_a_file_takes_nothing_from_the_pattern(self):
        out = self.folder / "all.json"
        done = self.expect(GOOD, "species", "H2", f"--json={out}", "--resources", self.small)
        self.assertEqual(done.stdout, b"")
        self.assertEqual({s["name"] for s in json.loads(out.read_text())["species"]},
                         {"H2", "H2O", "H2O2", "H2O(cr)", "H2O(L)", "H2(L)"})

    def test_the_shipped_file_is_held_whole_with_ions_and_metals_spelt_as_usual(self):
        done = self.expect(GOOD, "species", "--json", "--resources", RESOURCES)
        species = {s["name"]: s for s in json.loads(done.stdout)["species"]}
        shipped = {name for name, _, _ in species_records((RESOURCES / "thermo.inp").read_text())}
        self.assertEqual(set(species), shipped)
        self.assertGreater(len(shipped), 2000)
        self.assertEqual(species["AL2O3(L)"]["formula"], "Al2O3")
        self.assertEqual((species["Cs+"]["formula"], species["Cs+"]["charge"]), ("Cs+", 1.0))
        self.assertEqual((species["e-"]["formula"], species["e-"]["charge"]), ("e-", -1.0))
